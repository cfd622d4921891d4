#pragma once

#include <Vokit/LogEntryOf>

/// Says that a log file could not be read any further: shown among its entries, never written.
class VOKIT_EXPORT ParseXMLLogEntry
    : public vo::LogEntryOf<ParseXMLLogEntry, 0x586D6C50, vo::LogCatError>
{
public:
    /// The sentence names the error first; the values behind it are called by names of their own,
    /// which lists show: "source" holds the error's text, and "error" the file.
    ParseXMLLogEntry(const QString &source, const QString &error, const int &line,
                     const int &column);
    ~ParseXMLLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;

    vo::TLogValue<QString> mSource;
    vo::TLogValue<QString> mError;
    vo::TLogValue<int> mLine;
    vo::TLogValue<int> mColumn;
};
