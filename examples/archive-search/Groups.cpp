#include "Groups.h"

#include "Database.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/FunctionExpression>
#include <Vokit/NumericOperator>
#include <Vokit/ValueExpression>

#include <algorithm>
#include <cstring>

using vogen::ConstExpression;
using vogen::ExpressionHandle;
using vogen::ExpressionList;
using vogen::FunctionExpression;
using vogen::NumericOperator;
using vogen::PropertySet;
using vogen::ValueExpression;

namespace {

ValueExpression property(const char *name)
{
    return {QLatin1String(name), QLatin1String("")};
}

// One row counts 1, so the counts add up.
QVariant sum(const GroupColumn &column, const QVariant &value, const PropertySet &recording)
{
    const ExpressionHandle soFar = ConstExpression(value, false);
    return NumericOperator(soFar, NumericOperator::Add, column.expression)
        .evaluate(recording, nullptr);
}

// max and min of one row are its own value; the same function picks from that and the one so far.
QVariant pick(const GroupColumn &column, const QVariant &value, const PropertySet &recording)
{
    const ExpressionList both(ConstExpression(value, false), column.expression);
    return FunctionExpression(QLatin1String(column.name), both, false).evaluate(recording, nullptr);
}

} // namespace

bool Group::agrees() const
{
    if (inMemory.isEmpty() || inSqlite.isEmpty())
        return false;
    int here = 0;
    for (const GroupColumn &column : groupColumns()) {
        int there = 0;
        for (const GroupColumn &other : groupColumns()) {
            const bool meanTheSame = std::strcmp(column.inMemory, other.inSqlite) == 0;
            if (meanTheSame && inMemory.at(here) != inSqlite.at(there))
                return false;
            ++there;
        }
        ++here;
    }
    return true;
}

const std::array<GroupColumn, 3> &groupColumns()
{
    static const std::array<GroupColumn, 3> columns = {{
        {"count", "rows", "rows", vogen::count(property("size"), false), &sum},
        {"max", "smallest", "greatest", vogen::max(property("size")), &pick},
        {"min", "greatest", "smallest", vogen::min(property("size")), &pick},
    }};
    return columns;
}

Groups::Groups()
    : m_key(property("extension"))
{}

void Groups::add(const PropertySet &recording)
{
    QList<QVariant> &values = m_groups[m_key->evaluate(recording, nullptr).toString()].inMemory;
    const bool isFirst = values.isEmpty();
    int index = 0;
    for (const GroupColumn &column : groupColumns()) {
        if (isFirst)
            values.append(column.expression->evaluate(recording, nullptr));
        else
            values[index] = column.join(column, values.at(index), recording);
        ++index;
    }
}

void Groups::addFrom(Database &database, const ExpressionHandle &filter)
{
    database.group(filter, groupSelection(), m_key, [this](QList<QVariant> values) {
        const QString extension = values.takeFirst().toString();
        m_groups[extension].inSqlite = values;
    });
}

bool Groups::agree() const
{
    return std::all_of(m_groups.begin(), m_groups.end(), [](const Group &g) { return g.agrees(); });
}

QString Groups::rule()
{
    return QStringLiteral("In memory max is the value that compares smallest and min the one that "
                          "compares greatest; in SQLite it is the other way round");
}

ExpressionHandle groupSelection()
{
    ExpressionList list;
    list.append(ExpressionHandle(property("extension")));
    for (const GroupColumn &column : groupColumns())
        list.append(column.expression);
    return list;
}
