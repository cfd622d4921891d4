#include <Vokit/BooleanOperator>

#include "IsExactly_p.h"
#include "expressions/NodeAccess_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/NotOperator>

#include <QTextStream>

namespace vogen {

namespace {

const ConstExpression gFalse(QVariant(false), false);
[[maybe_unused]] const bool gRegistered[] = {
    Expression::registerExpressionClass(BooleanOperator(gFalse, BooleanOperator::And, gFalse)),
    Expression::registerExpressionClass(NotOperator(gFalse)),
};

} // namespace

BooleanOperator::BooleanOperator(ExpressionHandle left, BoolOp operation, ExpressionHandle right)
    : op(operation)
{
    append(left);
    append(right);
}

BooleanOperator::BooleanOperator(BoolOp operation)
    : op(operation)
{}

BooleanOperator::~BooleanOperator() = default;

QVariant BooleanOperator::evaluate(const PropertySet &properties, bool *isConstant) const
{
    return toVariant(combine(properties, isConstant));
}

Expression *BooleanOperator::clone() const
{
    return new BooleanOperator(*this);
}

bool BooleanOperator::equals(const Expression *other) const
{
    const auto *boolean = dynamic_cast<const BooleanOperator *>(other);
    return boolean && op == boolean->op && Operator::equals(other);
}

void BooleanOperator::print(QTextStream &stream, PrintStyle style) const
{
    if (op == And)
        printChain(stream, style, style & PrintCode ? " && " : " AND ");
    else
        printChain(stream, style, style & PrintCode ? " || " : " OR ");
}

void BooleanOperator::write(QDataStream &stream) const
{
    writeWithCode(stream, op);
}

void BooleanOperator::read(QDataStream &stream)
{
    op = static_cast<BoolOp>(readWithCode(stream));
}

BooleanOperator &BooleanOperator::append(ExpressionHandle operand)
{
    Operator::append(operand);
    return *this;
}

ExpressionHandle BooleanOperator::join(const ExpressionList &list, BoolOp operation)
{
    return joinOperands(list, BooleanOperator(operation));
}

BooleanOperator BooleanOperator::operator&&(ExpressionHandle right)
{
    return Operator::joined(*this, And, right);
}

BooleanOperator BooleanOperator::operator||(ExpressionHandle right)
{
    return Operator::joined(*this, Or, right);
}

BooleanOperator &BooleanOperator::operator&=(ExpressionHandle right)
{
    return Operator::extend(*this, And, right);
}

BooleanOperator &BooleanOperator::operator|=(ExpressionHandle right)
{
    return Operator::extend(*this, Or, right);
}

Truth BooleanOperator::truth(const PropertySet &properties, bool *isConstant) const
{
    if (!isExactly<BooleanOperator>(*this))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return combine(properties, isConstant);
}

Truth BooleanOperator::combine(const PropertySet &properties, bool *isConstant) const
{
    if (isConstant)
        *isConstant = true;
    for (const ExpressionHandle &operand : operands) {
        bool constant = false;
        const Truth condition = NodeAccess::truth(*operand, properties, &constant);
        if (isConstant && !constant)
            *isConstant = false;
        const bool decided = op == And ? condition != Truth::True : condition == Truth::True;
        if (decided)
            return condition;
    }
    return truthOf(op == And);
}

} // namespace vogen
