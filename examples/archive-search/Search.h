#pragma once

#include "Disagreement.h"
#include "FolderWalk.h"

#include <Vokit/PropertySet>

#include <vector>

class Database;
class Filter;
struct Options;

/// What one side found, and how long it took.
struct SideResult
{
    qlonglong matches = 0;
    qint64 nanoseconds = 0;
};

struct SearchResult
{
    qlonglong rows = 0;
    qlonglong notUtf8 = 0;
    SkippedEntries skipped;
    SideResult memory;
    SideResult sqlite;
    qint64 loadNanoseconds = 0;                   ///< for inserting the rows and the commit
    std::vector<vogen::PropertySet> firstMatches; ///< in memory, in the order of the walk
    qlonglong disagreementCount = 0;
    std::vector<Disagreement> disagreements; ///< the first ones
};

/**
 * Walks the folder, evaluates the filter in memory and runs it in SQLite.
 *
 * Rows pass by in batches. What stays of each is one bit, and its row in the database.
 *
 * @throws Failure from the walk's beginning or from the database
 */
SearchResult search(const Options &options, const Filter &filter, FolderWalk &walk,
                    Database &database);
