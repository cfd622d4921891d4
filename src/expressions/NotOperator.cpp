#include <Vokit/NotOperator>

#include "IsExactly_p.h"
#include "expressions/NodeAccess_p.h"

#include <QTextStream>

namespace vogen {

NotOperator::NotOperator(ExpressionHandle operand)
{
    append(operand);
}

NotOperator::~NotOperator() = default;

QVariant NotOperator::evaluate(const PropertySet &properties, bool *isConstant) const
{
    return toVariant(negate(properties, isConstant));
}

Expression *NotOperator::clone() const
{
    return new NotOperator(*this);
}

bool NotOperator::equals(const Expression *other) const
{
    return dynamic_cast<const NotOperator *>(other) && Operator::equals(other);
}

void NotOperator::print(QTextStream &stream, PrintStyle style) const
{
    stream << (style & PrintCode ? " ! " : " NOT ");
    operandAt(0).print(stream, style | PrintNested);
}

Truth NotOperator::truth(const PropertySet &properties, bool *isConstant) const
{
    if (!isExactly<NotOperator>(*this))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return negate(properties, isConstant);
}

Truth NotOperator::negate(const PropertySet &properties, bool *isConstant) const
{
    const Truth condition = NodeAccess::truth(operandAt(0), properties, isConstant);
    return condition == Truth::Null ? condition : truthOf(condition == Truth::False);
}

} // namespace vogen
