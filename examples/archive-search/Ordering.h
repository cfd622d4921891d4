#pragma once

#include "SortKey.h"

#include <vector>

class Database;

/// Where the orders of memory and SQLite part, among the rows that both have found.
struct OrderComparison
{
    qlonglong rows = 0;
    qlonglong differences = 0; ///< places that hold another row; the members below tell the first
    qlonglong place = 0;       ///< from 1
    QString inMemory;          ///< the path at that place
    QString inSqlite;
    QString reason;
};

/// Puts rows into order in memory. What it keeps of each is its id and the value it is sorted by.
class Ordering
{
public:
    explicit Ordering(const SortKey &key);

    /// Ids have to ascend: they decide where the values don't.
    void add(qlonglong id, const vogen::PropertySet &recording);

    /// The ids in order. All that was added is gone then.
    std::vector<qlonglong> takeSorted();

private:
    SortKey m_key;
    std::vector<qlonglong> m_ids;
    std::vector<QVariant> m_values;
};

/// Compares @p inMemory, an order of ids, with the one in which SQLite gives them.
class OrderComparer
{
public:
    OrderComparer(const SortKey &key, std::vector<qlonglong> inMemory);

    /// The next id that SQLite gives.
    void add(qlonglong inSqlite);

    /// Looks up the rows at the first difference in the database.
    OrderComparison result(Database &database) const;

private:
    SortKey m_key;
    std::vector<qlonglong> m_inMemory;
    size_t m_place = 0;
    qlonglong m_differences = 0;
    size_t m_firstPlace = 0;
    qlonglong m_firstInSqlite = 0;
};
