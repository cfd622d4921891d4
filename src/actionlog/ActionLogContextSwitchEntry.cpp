#include <Vokit/ActionLogContextSwitchEntry>

#include "actionlog/EntryClock_p.h"

namespace vo {

const char *const ActionLogContextSwitchEntry::sAction =
    QT_TRANSLATE_NOOP("ActionLog", "Switched log");
const char *const ActionLogContextSwitchEntry::sDescriptionText =
    QT_TRANSLATE_NOOP("ActionLog", "Switched logging from '%1' to '%2'.");
const LogEntryRegistrar ActionLogContextSwitchEntry::sRegistrar = registrar();

ActionLogContextSwitchEntry::ActionLogContextSwitchEntry(const QString &oldFile,
                                                         const QString &newFile)
    : mOldFile(0x66696C4F, QStringLiteral("oldFile"), oldFile)
    , mNewFile(0x66696C4E, QStringLiteral("newFile"), newFile)
{
    append(&mOldFile);
    append(&mNewFile);
}

ActionLogContextSwitchEntry::~ActionLogContextSwitchEntry() = default;

LogEntry *ActionLogContextSwitchEntry::create()
{
    const EntryClock::Marking marking(&ActionLogContextSwitchEntry::create);
    return new ActionLogContextSwitchEntry(QString(), QString());
}

} // namespace vo
