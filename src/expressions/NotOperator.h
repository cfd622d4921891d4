#pragma once

#include <Vokit/Operator>

namespace vogen {

/**
 * The negation of a condition; NULL where QVariant can't make a bool of it.
 *
 * Both texts, " NOT " and " ! ", begin with a blank, wherever they stand.
 */
class VOKIT_EXPORT NotOperator : public Operator
{
public:
    /// @note NotOperator(n) of another NotOperator n is a copy; !n negates it.
    explicit NotOperator(ExpressionHandle operand);
    ~NotOperator() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;

private:
    Truth truth(const PropertySet &properties, bool *isConstant) const override;

    Truth negate(const PropertySet &properties, bool *isConstant) const;
};

} // namespace vogen
