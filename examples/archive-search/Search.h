#pragma once

#include "Disagreement.h"
#include "FolderWalk.h"
#include "Groups.h"
#include "MatchList.h"
#include "Ordering.h"

#include <Vokit/PropertySet>

#include <optional>
#include <vector>

class Database;
struct Options;
struct Query;

/// What one side found, and how long it took.
struct SideResult
{
    qlonglong matches = 0;
    qint64 nanoseconds = 0;
};

/// How the two sides have sorted, and how long it took.
struct OrderResult
{
    OrderComparison comparison;
    qint64 memoryNanoseconds = 0; ///< without the evaluation of the sort keys
    qint64 sqliteNanoseconds = 0; ///< with the filter
};

struct SearchResult
{
    qlonglong rows = 0;
    qlonglong notUtf8 = 0;
    SkippedEntries skipped;
    SideResult memory;
    SideResult sqlite;
    qint64 loadNanoseconds = 0;                   ///< for inserting the rows and the commit
    std::vector<vogen::PropertySet> firstMatches; ///< in memory, as sorted or as the walk met them
    qlonglong disagreementCount = 0;
    std::vector<Disagreement> disagreements; ///< the first ones

    std::optional<OrderResult> order;  ///< if the query has a sort key
    Groups groups;                     ///< empty if the query asks for none
    std::optional<MatchList> exported; ///< if the options ask for it

    /// Whether memory and SQLite have the same rows, in the same order, in the same groups.
    bool sidesAgree() const;
};

/**
 * Walks the folder, evaluates the query in memory and runs it in SQLite.
 *
 * Rows pass by in batches. What stays of each is one bit, and its row in the database; with a sort
 * key also the value of each match.
 *
 * @throws Failure from the walk's beginning or from the database
 */
SearchResult search(const Options &options, const Query &query, FolderWalk &walk,
                    Database &database);
