#include "Query.h"

#include "Groups.h"
#include "Options.h"

Query::Query(const Options &options)
    : filter(options)
    , grouped(options.groupByExtension)
    , withCode(options.showCode)
{
    if (options.sort)
        sortKey.emplace(*options.sort);
}

QStringList Query::notes() const
{
    QStringList notes = filter.notes();
    if (sortKey && !sortKey->rule().isEmpty())
        notes.append(sortKey->rule());
    if (grouped)
        notes.append(Groups::rule());
    return notes;
}
