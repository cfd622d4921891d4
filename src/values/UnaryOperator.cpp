#include <Vokit/UnaryOperator>

#include <Vokit/NumericOperator>
#include <Vokit/TypeTool>

#include <QDateTime>
#include <QTextStream>

namespace vogen {

UnaryOperator::UnaryOperator(UnaryOp operation, ExpressionHandle operand)
    : op(operation)
{
    append(operand);
}

UnaryOperator::~UnaryOperator() = default;

QVariant UnaryOperator::evaluate(const PropertySet &properties, bool *isConstant) const
{
    bool operandConstant = false;
    const QVariant operand = operandAt(0).evaluate(properties, &operandConstant);

    QVariant result;
    bool constant = true;
    const auto takeFrom = [&](const QVariant &start, NumericOperator::NumOp operation) {
        result = start;
        NumericOperator::apply(result, constant, operation, operand, operandConstant);
    };
    const bool minus = op == Minus;
    if (TypeTool::isNumeric(operand.type()) && (minus || op == BitNot))
        takeFrom(QVariant(0), minus ? NumericOperator::Subtract : NumericOperator::BitXor);
    else if (TypeTool::isDate(operand.type()) && minus)
        takeFrom(QVariant(QDateTime::fromTime_t(0)), NumericOperator::Subtract);
    else if (operand.canConvert(QVariant::String) && minus)
        result = TypeTool::invertString(operand.toString());

    if (isConstant)
        *isConstant = constant;
    return result;
}

Expression *UnaryOperator::clone() const
{
    return new UnaryOperator(*this);
}

bool UnaryOperator::equals(const Expression *other) const
{
    const auto *unary = dynamic_cast<const UnaryOperator *>(other);
    return unary && op == unary->op && Operator::equals(other);
}

void UnaryOperator::print(QTextStream &stream, PrintStyle style) const
{
    if (style & PrintOrderBy) {
        operandAt(0).print(stream, style);
        if (op == Minus)
            stream << " DESC";
        return;
    }
    if (op == Minus)
        stream << '-';
    else if (op == BitNot)
        stream << '~';
    operandAt(0).print(stream, style | PrintNested);
}

void UnaryOperator::write(QDataStream &stream) const
{
    writeWithCode(stream, op);
}

void UnaryOperator::read(QDataStream &stream)
{
    op = static_cast<UnaryOp>(readWithCode(stream));
}

} // namespace vogen
