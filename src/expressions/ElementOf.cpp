#include <Vokit/ElementOf>

#include "expressions/OperandValue_p.h"
#include "expressions/PrintStyle_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/TypeTool>
#include <Vokit/ValueExpression>

#include <QTextStream>

#include <typeinfo>

namespace vogen {

ElementOf::ElementOf() = default;

ElementOf::ElementOf(ExpressionHandle value)
{
    append(value);
}

ElementOf::ElementOf(const BaseProperty &property)
{
    append(ValueExpression(property, QStringLiteral("")));
}

ElementOf::~ElementOf() = default;

QVariant ElementOf::evaluate(const PropertySet &properties, bool *isConstant) const
{
    return findCandidate(properties, isConstant);
}

Expression *ElementOf::clone() const
{
    return new ElementOf(*this);
}

bool ElementOf::equals(const Expression *other) const
{
    return dynamic_cast<const ElementOf *>(other) && Operator::equals(other);
}

void ElementOf::print(QTextStream &stream, PrintStyle style) const
{
    operandAt(0).print(stream, style | PrintNested);
    stream << " IN (";
    printOperands(stream, without(style, PrintNested), 1, ",");
    stream << ')';
}

ElementOf &ElementOf::append(ExpressionHandle candidate)
{
    Operator::append(candidate);
    return *this;
}

ElementOf &ElementOf::append(const QVariant &value)
{
    Operator::append(ConstExpression(value, true));
    return *this;
}

ElementOf &ElementOf::append(const ExpressionList &list)
{
    operands += operandsOf(list);
    return *this;
}

Truth ElementOf::truth(const PropertySet &properties, bool *isConstant) const
{
    if (typeid(*this) != typeid(ElementOf))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return truthOf(findCandidate(properties, isConstant));
}

bool ElementOf::findCandidate(const PropertySet &properties, bool *isConstant) const
{
    OperandValue value(operandAt(0));
    if (!value.readInPlace(properties))
        value.evaluate(properties);
    if (isConstant)
        *isConstant = value.isConstant();

    for (int i = 1; i < operands.size(); ++i) {
        OperandValue candidate(*operands.at(i));
        if (!candidate.readInPlace(properties)) {
            value.keep();
            candidate.evaluate(properties);
        }
        if (isConstant && !candidate.isConstant())
            *isConstant = false;
        if (TypeTool(value.isConstant(), candidate.isConstant())
                .equals(value.view(), candidate.view()))
            return true;
    }
    return false;
}

} // namespace vogen
