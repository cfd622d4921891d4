#pragma once

#include <Vokit/Operator>

namespace vogen {

class BaseProperty;
class ExpressionList;

/**
 * Whether a value is among others: SQL's IN.
 *
 * Candidates are compared in order, by TypeTool::equals, up to the first match. The result is true
 * or false and never NULL: a candidate that can't be compared doesn't match.
 *
 * @code
 * ElementOf inYard(camera);
 * inYard.append(QVariant(3)).append(QVariant(4)); // camera IN (3,4)
 * @endcode
 */
class VOKIT_EXPORT ElementOf : public Operator
{
public:
    ElementOf();
    ElementOf(ExpressionHandle value);
    ElementOf(const BaseProperty &property);
    ~ElementOf() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;

    ElementOf &append(ExpressionHandle candidate);
    ElementOf &append(const QVariant &value);      ///< a bindable constant
    ElementOf &append(const ExpressionList &list); ///< each operand of the list

private:
    Truth truth(const PropertySet &properties, bool *isConstant) const override;

    bool findCandidate(const PropertySet &properties, bool *isConstant) const;
    bool findEvaluated(int first, const PropertySet &properties, bool *isConstant) const;
};

} // namespace vogen
