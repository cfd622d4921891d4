#pragma once

#include <Vokit/Expression>
#include <Vokit/PropertySet>

#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

#include <array>

class Database;

/// A column of the groups: a function of the library over a group's rows.
struct GroupColumn
{
    const char *name;     ///< of the function
    const char *inMemory; ///< what it really gives
    const char *inSqlite;
    vogen::ExpressionHandle expression;
    /// What the group's value becomes with one more row.
    QVariant (*join)(const GroupColumn &column, const QVariant &value,
                     const vogen::PropertySet &recording);
};

/// The values of one group, in the order of groupColumns(); none where a side has no such group.
struct Group
{
    QList<QVariant> inMemory;
    QList<QVariant> inSqlite;

    /// Whether the two sides agree, once max and min of one side have changed places.
    bool agrees() const;
};

/// count, max and min.
const std::array<GroupColumn, 3> &groupColumns();

/**
 * The matches, grouped by extension, in memory and by a GROUP BY.
 *
 * Both sides have the same nodes: SQLite gets them printed. In memory a node sees one row at a
 * time, so its value is joined to that of the rows before; what stays is one value for each group
 * and column.
 */
class Groups
{
public:
    Groups();

    /// Takes a match in memory.
    void add(const vogen::PropertySet &recording);
    /// Takes the matches in SQLite.
    void addFrom(Database &database, const vogen::ExpressionHandle &filter);

    const QMap<QString, Group> &byExtension() const { return m_groups; }
    bool agree() const;

    static QString rule(); ///< how memory and SQLite differ, in one line

private:
    vogen::ExpressionHandle m_key;
    QMap<QString, Group> m_groups;
};

/// The key and the columns as a list, as it stands behind SELECT.
vogen::ExpressionHandle groupSelection();
