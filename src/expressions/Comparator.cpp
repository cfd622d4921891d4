#include <Vokit/Comparator>

#include "IsExactly_p.h"
#include "expressions/NodeAccess_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ElementOf>
#include <Vokit/TypeTool>

#include <QTextStream>

namespace vogen {

namespace {

const char *operatorText(Comparator::CompOp op, Expression::PrintStyle style)
{
    switch (op) {
    case Comparator::NotEqual:
        return " != ";
    case Comparator::Less:
        return " < ";
    case Comparator::Equal:
        return style & Expression::PrintCode ? " == " : " = ";
    case Comparator::Greater:
        return " > ";
    case Comparator::LessEqual:
        return " <= ";
    case Comparator::GreaterEqual:
        return " >= ";
    }
    return ""; // from a damaged stream
}

// Whether the operation holds for an order, as TypeTool::compare() gives it. A value that no
// enumerator names comes from a damaged stream: NULL.
Truth holdsFor(Comparator::CompOp op, int order)
{
    switch (op) {
    case Comparator::NotEqual:
        return truthOf(order != 0);
    case Comparator::Less:
        return truthOf(order < 0);
    case Comparator::Equal:
        return truthOf(order == 0);
    case Comparator::Greater:
        return truthOf(order > 0);
    case Comparator::LessEqual:
        return truthOf(order <= 0);
    case Comparator::GreaterEqual:
        return truthOf(order >= 0);
    }
    return Truth::Null;
}

// Whether equality is asked for, which has roads of its own where there is no order.
bool asksForEquality(Comparator::CompOp op)
{
    return op == Comparator::Equal || op == Comparator::NotEqual;
}

const ConstExpression gZero(QVariant(0), false);
[[maybe_unused]] const bool gRegistered[] = {
    Expression::registerExpressionClass(Comparator(gZero, Comparator::Equal, gZero)),
    Expression::registerExpressionClass(ElementOf(gZero)),
};

} // namespace

Comparator::Comparator(ExpressionHandle left, CompOp operation, ExpressionHandle right)
    : op(operation)
{
    append(left);
    append(right);
}

Comparator::Comparator(CompOp operation)
    : op(operation)
{}

Comparator::~Comparator() = default;

QVariant Comparator::evaluate(const PropertySet &properties, bool *isConstant) const
{
    return toVariant(compare(properties, isConstant));
}

Expression *Comparator::clone() const
{
    return new Comparator(*this);
}

bool Comparator::equals(const Expression *other) const
{
    const auto *comparator = dynamic_cast<const Comparator *>(other);
    return comparator && op == comparator->op && Operator::equals(other);
}

void Comparator::print(QTextStream &stream, PrintStyle style) const
{
    operandAt(0).print(stream, style | PrintNested);
    stream << operatorText(op, style);
    operandAt(1).print(stream, style | PrintNested);
}

void Comparator::write(QDataStream &stream) const
{
    writeWithCode(stream, op);
}

void Comparator::read(QDataStream &stream)
{
    op = static_cast<CompOp>(readWithCode(stream));
}

Truth Comparator::truth(const PropertySet &properties, bool *isConstant) const
{
    if (!isExactly<Comparator>(*this))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return compare(properties, isConstant);
}

Truth Comparator::compare(const PropertySet &properties, bool *isConstant) const
{
    const ValueView left = NodeAccess::valueInPlace(operandAt(0), properties);
    const ValueView right = NodeAccess::valueInPlace(operandAt(1), properties);
    if (left.isNull() || right.isNull())
        return compareEvaluated(properties, isConstant);

    const TypeTool tool(left.isConstant(), right.isConstant());
    int order = 0;
    const bool done = asksForEquality(op) ? tool.matchInPlace(left, right, &order)
                                          : tool.compareInPlace(left, right, &order);
    if (!done)
        return compareEvaluated(properties, isConstant);
    if (isConstant)
        *isConstant = left.isConstant() && right.isConstant();
    return holdsFor(op, order);
}

Truth Comparator::compareEvaluated(const PropertySet &properties, bool *isConstant) const
{
    bool leftConstant = false;
    bool rightConstant = false;
    const QVariant left = operandAt(0).evaluate(properties, &leftConstant);
    const QVariant right = operandAt(1).evaluate(properties, &rightConstant);
    if (isConstant)
        *isConstant = leftConstant && rightConstant;

    TypeTool tool(leftConstant, rightConstant);
    const int order =
        asksForEquality(op) ? int(!tool.equals(left, right)) : tool.compare(left, right);
    return tool.wasOK() ? holdsFor(op, order) : Truth::Null;
}

} // namespace vogen
