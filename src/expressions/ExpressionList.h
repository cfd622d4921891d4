#pragma once

#include <Vokit/Operator>

namespace vogen {

/**
 * Expressions separated by ",": the right side of IN, the arguments of a function, and, empty, the
 * absence of an expression.
 *
 * Its value is a QVariant::List of the operands' values, NULLs included; an empty list gives an
 * empty one, which is not NULL.
 *
 * The constructor from one handle flattens; append() of a handle and the constructor from two do
 * not. operator<< depends on that.
 */
class VOKIT_EXPORT ExpressionList : public Operator
{
public:
    ExpressionList();
    /// The values as bindable constants.
    ExpressionList(const QList<QVariant> &values);
    /// Takes over the operands of a list, so that lists stay one level deep; any other node
    /// becomes the one operand.
    ExpressionList(ExpressionHandle handle);
    /// Exactly these two; a list among them stays a list within the list.
    ExpressionList(ExpressionHandle first, ExpressionHandle second);
    ~ExpressionList() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    bool isEmpty() const override;

    ExpressionList &append(const QVariant &value); ///< a bindable constant
    ExpressionList &append(ExpressionHandle handle);
    ExpressionList &append(const ExpressionList &other); ///< all operands of the other

    /// What a default handle holds.
    static ExpressionHandle empty();
};

} // namespace vogen
