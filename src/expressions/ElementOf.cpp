#include <Vokit/ElementOf>

#include "IsExactly_p.h"
#include "expressions/NodeAccess_p.h"
#include "expressions/Operands_p.h"
#include "expressions/PrintStyle_p.h"

#include <Vokit/ExpressionList>
#include <Vokit/TypeTool>

#include <QTextStream>

namespace vogen {

ElementOf::ElementOf() = default;

ElementOf::ElementOf(ExpressionHandle value)
{
    append(value);
}

ElementOf::ElementOf(const BaseProperty &property)
{
    append(reference(property));
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
    Operator::append(bindable(value));
    return *this;
}

ElementOf &ElementOf::append(const ExpressionList &list)
{
    operands += operandsOf(list);
    return *this;
}

Truth ElementOf::truth(const PropertySet &properties, bool *isConstant) const
{
    if (!isExactly<ElementOf>(*this))
        return Expression::truth(properties, isConstant); // a client's class has its own evaluate()
    return truthOf(findCandidate(properties, isConstant));
}

bool ElementOf::findCandidate(const PropertySet &properties, bool *isConstant) const
{
    const ValueView value = NodeAccess::valueInPlace(operandAt(0), properties);
    if (isConstant)
        *isConstant = true;
    if (value.isNull())
        return findEvaluated(1, properties, isConstant);
    if (isConstant)
        *isConstant = value.isConstant();

    for (int i = 1; i < operands.size(); ++i) {
        const ValueView candidate = NodeAccess::valueInPlace(*operands.at(i), properties);
        const TypeTool tool(value.isConstant(), candidate.isConstant());
        int order = 0;
        if (candidate.isNull() || !tool.matchInPlace(value, candidate, &order))
            return findEvaluated(i, properties, isConstant);
        if (isConstant && !candidate.isConstant())
            *isConstant = false;
        if (order == 0)
            return true;
    }
    return false;
}

// The candidates from the first one that takes a QVariant on. Nothing has run before it, so the
// value is what it was in place.
bool ElementOf::findEvaluated(int first, const PropertySet &properties, bool *isConstant) const
{
    bool valueConstant = false;
    const QVariant value = operandAt(0).evaluate(properties, &valueConstant);
    if (isConstant && !valueConstant)
        *isConstant = false;
    for (int i = first; i < operands.size(); ++i) {
        bool candidateConstant = false;
        const QVariant candidate = operands.at(i)->evaluate(properties, &candidateConstant);
        if (isConstant && !candidateConstant)
            *isConstant = false;
        if (TypeTool(valueConstant, candidateConstant).equals(value, candidate))
            return true;
    }
    return false;
}

} // namespace vogen
