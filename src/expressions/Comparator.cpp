#include <Vokit/Comparator>

#include "expressions/OperandValue_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ElementOf>
#include <Vokit/TypeTool>

#include <QDataStream>
#include <QTextStream>

#include <typeinfo>

namespace vogen {

namespace {

constexpr qint32 gRecordVersion = 1;

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

// A value of op that no enumerator names comes from a damaged stream: NULL.
Truth compareViews(TypeTool &tool, const ValueView &left, Comparator::CompOp op,
                   const ValueView &right)
{
    bool holds = false;
    switch (op) {
    case Comparator::NotEqual:
        holds = !tool.equals(left, right);
        break;
    case Comparator::Less:
        holds = tool.compare(left, right) < 0;
        break;
    case Comparator::Equal:
        holds = tool.equals(left, right);
        break;
    case Comparator::Greater:
        holds = tool.compare(left, right) > 0;
        break;
    case Comparator::LessEqual:
        holds = tool.compare(left, right) <= 0;
        break;
    case Comparator::GreaterEqual:
        holds = tool.compare(left, right) >= 0;
        break;
    default:
        return Truth::Null;
    }
    return tool.wasOK() ? truthOf(holds) : Truth::Null;
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
    stream << gRecordVersion << static_cast<qint32>(op);
    Operator::write(stream);
}

void Comparator::read(QDataStream &stream)
{
    qint32 version = 0;
    qint32 code = 0;
    stream >> version >> code;
    op = static_cast<CompOp>(code);
    Operator::read(stream);
}

Truth Comparator::truth(const PropertySet &properties, bool *isConstant) const
{
    if (typeid(*this) != typeid(Comparator))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return compare(properties, isConstant);
}

Truth Comparator::compare(const PropertySet &properties, bool *isConstant) const
{
    OperandValue left(operandAt(0));
    OperandValue right(operandAt(1));
    if (!left.readInPlace(properties))
        left.evaluate(properties);
    if (!right.readInPlace(properties)) {
        left.keep();
        right.evaluate(properties);
    }
    if (isConstant)
        *isConstant = left.isConstant() && right.isConstant();
    TypeTool tool(left.isConstant(), right.isConstant());
    return compareViews(tool, left.view(), op, right.view());
}

} // namespace vogen
