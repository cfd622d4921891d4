#pragma once

#include <Vokit/LogEntryOf>

namespace vo {

/// The log moved to another file: the last entry of the old one and the first that the new one
/// gets.
class VOKIT_EXPORT ActionLogContextSwitchEntry
    : public LogEntryOf<ActionLogContextSwitchEntry, 0x414C6F67, LogCatActionLog>
{
public:
    ActionLogContextSwitchEntry(const QString &oldFile, const QString &newFile);
    ~ActionLogContextSwitchEntry() override;

    static LogEntry *create();

    static const char *const sAction;
    static const char *const sDescriptionText;

private:
    static const LogEntryRegistrar sRegistrar;

    TLogValue<QString> mOldFile;
    TLogValue<QString> mNewFile;
};

} // namespace vo
