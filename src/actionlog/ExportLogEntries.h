#pragma once

#include <Vokit/LogEntryOf>

/**
 * @file
 * What the log says of an export: how the writing of a file began and ended, how the export ended
 * as a whole, and that a result got a new name. ExportActionLog makes them.
 *
 * The first value is a sentence, which may have placeholders for the values behind it.
 */

namespace vo {

/// The writing of one file: in which format, from where to where, and of which period.
template <class Entry, quint32 Id>
class ExportPeriodLogEntry : public LogEntryOf<Entry, Id, LogCatExport>
{
public:
    ExportPeriodLogEntry(const QString &text, const QString &format, const QString &source,
                         const QString &dest, const QDateTime &from, const QDateTime &to)
        : mText(0x54657874, QStringLiteral("text"), text)
        , mFormat(0x466F726D, QStringLiteral("format"), format)
        , mSource(0x73726350, QStringLiteral("source"), source)
        , mDest(0x64737450, QStringLiteral("dest"), dest)
        , mFrom(0x66726F6D, QStringLiteral("from"), from)
        , mTo(0x746F2020, QStringLiteral("to"), to)
    {
        for (LogValue *value :
             std::initializer_list<LogValue *>{&mText, &mFormat, &mSource, &mDest, &mFrom, &mTo})
            this->append(value);
    }

private:
    TLogValue<QString> mText;
    TLogValue<QString> mFormat;
    TLogValue<QString> mSource;
    TLogValue<QString> mDest;
    TLogValue<QDateTime> mFrom;
    TLogValue<QDateTime> mTo;
};

/// How an export ended, in words.
template <class Entry, quint32 Id>
class ExportTextLogEntry : public LogEntryOf<Entry, Id, LogCatExport>
{
public:
    explicit ExportTextLogEntry(const QString &text)
        : mText(0x54657874, QStringLiteral("text"), text)
    {
        this->append(&mText);
    }

private:
    TLogValue<QString> mText;
};

} // namespace vo

/// The writing of a file begins.
class VOKIT_EXPORT ExportStartLogEntry
    : public vo::ExportPeriodLogEntry<ExportStartLogEntry, 0x45787053>
{
public:
    using ExportPeriodLogEntry::ExportPeriodLogEntry;
    ~ExportStartLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;
};

/// A file has been written.
class VOKIT_EXPORT ExportWrittenLogEntry
    : public vo::ExportPeriodLogEntry<ExportWrittenLogEntry, 0x45787057>
{
public:
    using ExportPeriodLogEntry::ExportPeriodLogEntry;
    ~ExportWrittenLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;
};

/// All of an export is done.
class VOKIT_EXPORT ExportDoneLogEntry
    : public vo::ExportTextLogEntry<ExportDoneLogEntry, 0x45787044>
{
public:
    using ExportTextLogEntry::ExportTextLogEntry;
    ~ExportDoneLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;
};

/// An export failed.
class VOKIT_EXPORT ExportErrorLogEntry
    : public vo::ExportTextLogEntry<ExportErrorLogEntry, 0x45787045>
{
public:
    using ExportTextLogEntry::ExportTextLogEntry;
    ~ExportErrorLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;
};

/// An export was given up.
class VOKIT_EXPORT ExportAbortLogEntry
    : public vo::ExportTextLogEntry<ExportAbortLogEntry, 0x45787041>
{
public:
    using ExportTextLogEntry::ExportTextLogEntry;
    ~ExportAbortLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;
};

/**
 * A result got a new name.
 *
 * @warning The identifier of the source begins with a zero byte, and so does its attribute in the
 *          file, which no XML reader passes: an entry with a source that isn't empty is the last
 * one that is read, and the next start moves the file aside as corrupt.
 */
class VOKIT_EXPORT ExportRenameLogEntry
    : public vo::LogEntryOf<ExportRenameLogEntry, 0x45787052, vo::LogCatExport>
{
public:
    ExportRenameLogEntry(const QString &text, const QString &path, const QString &source,
                         const QString &dest);
    ~ExportRenameLogEntry() override;

    static vo::LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const vo::LogEntryRegistrar sRegistrar;

    vo::TLogValue<QString> mText;
    vo::TLogValue<QString> mPath;
    vo::TLogValue<QString> mSource;
    vo::TLogValue<QString> mDest;
};
