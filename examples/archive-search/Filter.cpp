#include "Filter.h"

#include "FilterFile.h"
#include "Options.h"

#include <Vokit/BooleanOperator>
#include <Vokit/ConstExpression>
#include <Vokit/ElementOf>
#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/FunctionExpression>
#include <Vokit/TypedProperties>
#include <Vokit/ValueExpression>

using vogen::BooleanOperator;
using vogen::BoolProperty;
using vogen::ConstExpression;
using vogen::DateTimeProperty;
using vogen::DoubleProperty;
using vogen::ElementOf;
using vogen::Expression;
using vogen::ExpressionHandle;
using vogen::ExpressionList;
using vogen::FunctionExpression;
using vogen::S64Property;
using vogen::StringProperty;
using vogen::ValueExpression;

namespace {

ExpressionHandle elementOf(const StringProperty &property, const QStringList &values)
{
    ElementOf choice(property);
    for (const QString &value : values)
        choice.append(QVariant(value));
    return choice;
}

ExpressionHandle oneOf(const StringProperty &property, const QStringList &values)
{
    if (values.size() == 1)
        return property == values.first();
    return elementOf(property, values);
}

// Not by the library's like(), which always asks for an escape: SQLite refuses an empty one. The
// pattern is literal, since bindable constants among a function's arguments are never bound.
ExpressionHandle like(const StringProperty &property, const QString &pattern)
{
    ExpressionList arguments{ExpressionHandle(ValueExpression(property, QLatin1String("")))};
    arguments.append(ExpressionHandle(ConstExpression(pattern, false)));
    return FunctionExpression(QStringLiteral("like"), arguments, false);
}

ExpressionHandle regexp(const StringProperty &property, const QString &pattern)
{
    return vogen::regexp(ValueExpression(property, QLatin1String("")), pattern);
}

// The properties stand for the columns: an expression takes their names and nothing else.
std::vector<Condition> conditionsFrom(const Options &options)
{
    const StringProperty name(QStringLiteral("name"));
    const StringProperty extension(QStringLiteral("extension"));
    const S64Property size(QStringLiteral("size"));
    const DateTimeProperty modified(QStringLiteral("modified"));
    const DoubleProperty age(QStringLiteral("age"));
    const BoolProperty hidden(QStringLiteral("hidden"));

    std::vector<Condition> conditions;
    if (!options.names.isEmpty())
        conditions.push_back({name.name(), oneOf(name, options.names)});
    if (options.nameLike) {
        conditions.push_back(
            {name.name(), like(name, *options.nameLike), likeRule(*options.nameLike)});
    }
    if (options.nameRegexp) {
        conditions.push_back(
            {name.name(), regexp(name, *options.nameRegexp), regexpRule(*options.nameRegexp)});
    }
    if (!options.extensions.isEmpty())
        conditions.push_back({extension.name(), elementOf(extension, options.extensions)});
    if (options.minSize)
        conditions.push_back({size.name(), size >= *options.minSize});
    if (options.maxSize)
        conditions.push_back({size.name(), size <= *options.maxSize});
    if (options.newerThan)
        conditions.push_back({modified.name(), modified > *options.newerThan});
    if (options.olderThan)
        conditions.push_back({modified.name(), modified < *options.olderThan});
    if (options.maxAge)
        conditions.push_back({age.name(), age <= *options.maxAge});
    if (options.notHidden)
        conditions.push_back({hidden.name(), !(hidden == true)});
    if (!options.loadFilter.isEmpty())
        conditions.push_back({QString(), loadFilter(options.loadFilter)});
    return conditions;
}

ExpressionHandle joined(const std::vector<Condition> &conditions, BooleanOperator::BoolOp operation)
{
    ExpressionList list;
    for (const Condition &condition : conditions)
        list.append(condition.expression);
    return BooleanOperator::join(list, operation);
}

} // namespace

const std::array<NamedStyle, 4> gStyles = {{
    {"readable", "readable", Expression::PrintReadable},
    {"code", "code", Expression::PrintCode},
    {"sql", "SQL", Expression::PrintSql},
    {"sqlPlaceholders", "SQL, bound", Expression::PrintSql | Expression::PrintPlaceholders},
}};

Filter::Filter(const Options &options)
    : m_conditions(conditionsFrom(options))
    , m_expression(joined(m_conditions, options.any ? BooleanOperator::Or : BooleanOperator::And))
{}

bool Filter::matches(const vogen::PropertySet &recording) const
{
    if (isEmpty())
        return true;
    const QVariant result = m_expression->evaluate(recording, nullptr);
    return result.isValid() && result.toBool();
}

QStringList Filter::notes() const
{
    QStringList notes;
    for (const Condition &condition : m_conditions)
        notes += notesOnCalls(condition.expression);
    notes.removeDuplicates();
    return notes;
}
