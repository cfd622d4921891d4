#include <Vokit/LogEntryFactory>

#include "actionlog/EntryClock_p.h"

#include <QCoreApplication>

namespace vo {

LogEntryFactory::LogEntryFactory() = default;
LogEntryFactory::~LogEntryFactory() = default;

void LogEntryFactory::registerCreator(const FourChars &id, Creator creator, const char *name)
{
    mCreators[id] = creator;
    mNames[id] = name;
}

LogEntry *LogEntryFactory::create(FourChars id)
{
    const Creator creator = mCreators[id];
    if (!creator)
        return nullptr;
    const EntryClock::Call call(creator);
    return creator();
}

QStringList LogEntryFactory::entryNames() const
{
    QStringList names;
    for (const char *name : mNames)
        names.append(QCoreApplication::translate("ActionLog", name));
    names.sort();
    return names;
}

LogEntryFactory *logEntryFactory()
{
    static LogEntryFactory factory;
    return &factory;
}

LogEntryRegistrar::LogEntryRegistrar(FourChars id, LogEntryFactory::Creator creator,
                                     const char *name)
{
    logEntryFactory()->registerCreator(id, creator, name);
}

} // namespace vo
