#include <Vokit/ExpressionOperators>

#include <QTextStream>

using namespace vogen;

namespace {

ExpressionHandle ref(const BaseProperty &property)
{
    return ValueExpression(property, QStringLiteral(""));
}

ExpressionHandle bind(const QVariant &value)
{
    return ConstExpression(value, true);
}

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

Comparator operator<(Property a, Value b) { return {ref(a), Less, bind(b)}; }
Comparator operator<=(Property a, Value b) { return {ref(a), LessEqual, bind(b)}; }
Comparator operator==(Property a, Value b) { return {ref(a), Equal, bind(b)}; }
Comparator operator!=(Property a, Value b) { return {ref(a), NotEqual, bind(b)}; }
Comparator operator>=(Property a, Value b) { return {ref(a), GreaterEqual, bind(b)}; }
Comparator operator>(Property a, Value b) { return {ref(a), Greater, bind(b)}; }

Comparator operator<(Property a, Property b) { return {ref(a), Less, ref(b)}; }
Comparator operator<=(Property a, Property b) { return {ref(a), LessEqual, ref(b)}; }
Comparator operator==(Property a, Property b) { return {ref(a), Equal, ref(b)}; }
Comparator operator!=(Property a, Property b) { return {ref(a), NotEqual, ref(b)}; }
Comparator operator>=(Property a, Property b) { return {ref(a), GreaterEqual, ref(b)}; }
Comparator operator>(Property a, Property b) { return {ref(a), Greater, ref(b)}; }

Comparator operator<(Property a, Handle b) { return {ref(a), Less, b}; }
Comparator operator<=(Property a, Handle b) { return {ref(a), LessEqual, b}; }
Comparator operator==(Property a, Handle b) { return {ref(a), Equal, b}; }
Comparator operator!=(Property a, Handle b) { return {ref(a), NotEqual, b}; }
Comparator operator>=(Property a, Handle b) { return {ref(a), GreaterEqual, b}; }
Comparator operator>(Property a, Handle b) { return {ref(a), Greater, b}; }

BooleanOperator operator&&(Handle a, Handle b) { return {a, BooleanOperator::And, b}; }
BooleanOperator operator||(Handle a, Handle b) { return {a, BooleanOperator::Or, b}; }
NotOperator operator!(Handle operand) { return NotOperator(operand); }

ExpressionList operator<<(Handle a, Handle b) { return {a, b}; }
ExpressionList operator<<(Property a, Handle b) { return {ref(a), b}; }
ExpressionList operator<<(Handle a, Property b) { return {a, ref(b)}; }
ExpressionList operator<<(Property a, Property b) { return {ref(a), ref(b)}; }
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
