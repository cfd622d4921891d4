#pragma once

#include <Vokit/Operator>

namespace vogen {

class ExpressionList;

/**
 * A chain of conditions, joined by AND or OR.
 *
 * Conditions are evaluated left to right, up to the first one that decides. A condition that is
 * NULL, or that QVariant can't make a bool of, ends an And with NULL, and counts as false in an Or.
 * So an And that meets a NULL first is NULL, and one that meets a false first is false; an Or is
 * never NULL. An empty And is true, an empty Or is false. A database has other rules for NULL.
 */
class VOKIT_EXPORT BooleanOperator : public Operator
{
public:
    /// In every stored tree: never renumber, never reuse.
    enum BoolOp : qint32 { And = 0, Or = 1 };

    /// Neither operand is flattened.
    BooleanOperator(ExpressionHandle left, BoolOp operation, ExpressionHandle right);
    /// An empty chain, to be filled by append().
    explicit BooleanOperator(BoolOp operation);
    ~BooleanOperator() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

    BooleanOperator &append(ExpressionHandle operand);

    /**
     * Joins conditions that may be none or one: an empty list gives the empty expression, a single
     * condition stays as it is, and only two or more become a chain.
     */
    static ExpressionHandle join(const ExpressionList &list, BoolOp operation);

    /**
     * Makes a chain of the same kind longer, and so changes this object, and returns a copy of it;
     * a chain of the other kind stays as it is and becomes the first operand of a new node.
     */
    BooleanOperator operator&&(ExpressionHandle right);
    BooleanOperator operator||(ExpressionHandle right);

    /// Makes a chain of the same kind longer; one of the other kind becomes its own first operand.
    BooleanOperator &operator&=(ExpressionHandle right);
    BooleanOperator &operator|=(ExpressionHandle right);

protected:
    BoolOp op;

private:
    friend class Operator; // joins chains

    Truth truth(const PropertySet &properties, bool *isConstant) const override;

    Truth combine(const PropertySet &properties, bool *isConstant) const;
};

} // namespace vogen
