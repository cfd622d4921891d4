#include <Vokit/ExportLogEntries>

#include "actionlog/EntryClock_p.h"

// clang-format off
const char *const ExportStartLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export start");
const char *const ExportWrittenLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export written");
const char *const ExportDoneLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export done");
const char *const ExportErrorLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export error");
const char *const ExportAbortLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export abort");
const char *const ExportRenameLogEntry::sAction = QT_TRANSLATE_NOOP("ActionLog", "Export rename");

// No message: the sentence is the first value.
const char *const ExportStartLogEntry::sDescriptionText = "%1";
const char *const ExportWrittenLogEntry::sDescriptionText = "%1";
const char *const ExportDoneLogEntry::sDescriptionText = "%1";
const char *const ExportErrorLogEntry::sDescriptionText = "%1";
const char *const ExportAbortLogEntry::sDescriptionText = "%1";
const char *const ExportRenameLogEntry::sDescriptionText = "%1";

const vo::LogEntryRegistrar ExportStartLogEntry::sRegistrar = registrar();
const vo::LogEntryRegistrar ExportWrittenLogEntry::sRegistrar = registrar();
const vo::LogEntryRegistrar ExportDoneLogEntry::sRegistrar = registrar();
const vo::LogEntryRegistrar ExportErrorLogEntry::sRegistrar = registrar();
const vo::LogEntryRegistrar ExportAbortLogEntry::sRegistrar = registrar();
const vo::LogEntryRegistrar ExportRenameLogEntry::sRegistrar = registrar();

ExportStartLogEntry::~ExportStartLogEntry() = default;
ExportWrittenLogEntry::~ExportWrittenLogEntry() = default;
ExportDoneLogEntry::~ExportDoneLogEntry() = default;
ExportErrorLogEntry::~ExportErrorLogEntry() = default;
ExportAbortLogEntry::~ExportAbortLogEntry() = default;
ExportRenameLogEntry::~ExportRenameLogEntry() = default;
// clang-format on

namespace {

// An entry to be filled: the dates are those of its making, unless it gets others.
template <class Entry>
vo::LogEntry *emptyPeriodEntry()
{
    const vo::EntryClock::Marking marking(&Entry::create);
    const QDateTime now = vo::EntryClock::now();
    return new Entry(QString(), QString(), QString(), QString(), now, now);
}

template <class Entry>
vo::LogEntry *emptyTextEntry()
{
    const vo::EntryClock::Marking marking(&Entry::create);
    return new Entry(QString());
}

} // namespace

vo::LogEntry *ExportStartLogEntry::create()
{
    return emptyPeriodEntry<ExportStartLogEntry>();
}

vo::LogEntry *ExportWrittenLogEntry::create()
{
    return emptyPeriodEntry<ExportWrittenLogEntry>();
}

vo::LogEntry *ExportDoneLogEntry::create()
{
    return emptyTextEntry<ExportDoneLogEntry>();
}

vo::LogEntry *ExportErrorLogEntry::create()
{
    return emptyTextEntry<ExportErrorLogEntry>();
}

vo::LogEntry *ExportAbortLogEntry::create()
{
    return emptyTextEntry<ExportAbortLogEntry>();
}

ExportRenameLogEntry::ExportRenameLogEntry(const QString &text, const QString &path,
                                           const QString &source, const QString &dest)
    : mText(0x54657874, QStringLiteral("text"), text)
    , mPath(0x70617468, QStringLiteral("path"), path)
    , mSource(0x00737263, QStringLiteral("source"), source) // begins with a zero byte
    , mDest(0x64657374, QStringLiteral("dest"), dest)
{
    append(&mText);
    append(&mPath);
    append(&mSource);
    append(&mDest);
}

vo::LogEntry *ExportRenameLogEntry::create()
{
    const vo::EntryClock::Marking marking(&ExportRenameLogEntry::create);
    return new ExportRenameLogEntry(QString(), QString(), QString(), QString());
}
