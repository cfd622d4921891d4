#include <Vokit/ExpressionOperators>

#include "expressions/Operands_p.h"

#include <QTextStream>

using namespace vogen;

namespace {

constexpr auto Less = Comparator::Less;
constexpr auto LessEqual = Comparator::LessEqual;
constexpr auto Equal = Comparator::Equal;
constexpr auto NotEqual = Comparator::NotEqual;
constexpr auto GreaterEqual = Comparator::GreaterEqual;
constexpr auto Greater = Comparator::Greater;

using Handle = ExpressionHandle;
using Property = const BaseProperty &;
using Value = const QVariant &;

} // namespace

// clang-format off
Comparator operator<(Handle a, Handle b) { return {a, Less, b}; }
Comparator operator<=(Handle a, Handle b) { return {a, LessEqual, b}; }
Comparator operator==(Handle a, Handle b) { return {a, Equal, b}; }
Comparator operator!=(Handle a, Handle b) { return {a, NotEqual, b}; }
Comparator operator>=(Handle a, Handle b) { return {a, GreaterEqual, b}; }
Comparator operator>(Handle a, Handle b) { return {a, Greater, b}; }

Comparator operator<(Property a, Value b) { return {reference(a), Less, bindable(b)}; }
Comparator operator<=(Property a, Value b) { return {reference(a), LessEqual, bindable(b)}; }
Comparator operator==(Property a, Value b) { return {reference(a), Equal, bindable(b)}; }
Comparator operator!=(Property a, Value b) { return {reference(a), NotEqual, bindable(b)}; }
Comparator operator>=(Property a, Value b) { return {reference(a), GreaterEqual, bindable(b)}; }
Comparator operator>(Property a, Value b) { return {reference(a), Greater, bindable(b)}; }

Comparator operator<(Property a, Property b) { return {reference(a), Less, reference(b)}; }
Comparator operator<=(Property a, Property b) { return {reference(a), LessEqual, reference(b)}; }
Comparator operator==(Property a, Property b) { return {reference(a), Equal, reference(b)}; }
Comparator operator!=(Property a, Property b) { return {reference(a), NotEqual, reference(b)}; }
Comparator operator>=(Property a, Property b) { return {reference(a), GreaterEqual, reference(b)}; }
Comparator operator>(Property a, Property b) { return {reference(a), Greater, reference(b)}; }

Comparator operator<(Property a, Handle b) { return {reference(a), Less, b}; }
Comparator operator<=(Property a, Handle b) { return {reference(a), LessEqual, b}; }
Comparator operator==(Property a, Handle b) { return {reference(a), Equal, b}; }
Comparator operator!=(Property a, Handle b) { return {reference(a), NotEqual, b}; }
Comparator operator>=(Property a, Handle b) { return {reference(a), GreaterEqual, b}; }
Comparator operator>(Property a, Handle b) { return {reference(a), Greater, b}; }

BooleanOperator operator&&(Handle a, Handle b) { return {a, BooleanOperator::And, b}; }
BooleanOperator operator||(Handle a, Handle b) { return {a, BooleanOperator::Or, b}; }
NotOperator operator!(Handle operand) { return NotOperator(operand); }

ExpressionList operator<<(Handle a, Handle b) { return {a, b}; }
ExpressionList operator<<(Property a, Handle b) { return {reference(a), b}; }
ExpressionList operator<<(Handle a, Property b) { return {a, reference(b)}; }
ExpressionList operator<<(Property a, Property b) { return {reference(a), reference(b)}; }
// clang-format on

QTextStream &operator<<(QTextStream &stream, ExpressionHandle e)
{
    return stream << *e.constData();
}

QTextStream &operator<<(QTextStream &stream, const Expression &e)
{
    e.print(stream, Expression::PrintSql);
    return stream;
}

QDataStream &operator<<(QDataStream &stream, ExpressionHandle e)
{
    Expression::writeExpression(stream, e);
    return stream;
}

QDataStream &operator<<(QDataStream &stream, const Expression &e)
{
    return stream << ExpressionHandle(e);
}
