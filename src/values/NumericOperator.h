#pragma once

#include <Vokit/Operator>

namespace vogen {

class ExpressionList;

/**
 * One arithmetic operation over two or more operands, from left to right, by the rules of TypeTool.
 *
 * A chain of one operation is one flat node: a - b - c has three operands and means (a - b) - c.
 * The first step that fails, such as a division by 0, ends it with NULL; what stands behind is not
 * evaluated. Without operands it is NULL and prints nothing.
 *
 * Only " mod " has blanks around it; PrintCode writes "%".
 */
class VOKIT_EXPORT NumericOperator : public Operator
{
public:
    /// In every stored tree: never renumber, never reuse.
    enum NumOp : qint32 {
        Add = 0,
        Subtract = 1,
        Multiply = 2,
        Divide = 3,
        Modulo = 4,
        BitAnd = 5,
        BitOr = 6,
        BitXor = 7
    };

    NumericOperator(ExpressionHandle left, NumOp operation, ExpressionHandle right);
    /// An empty chain, to be filled by append().
    explicit NumericOperator(NumOp operation);
    ~NumericOperator() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

    NumericOperator &append(ExpressionHandle operand);

    /// An empty list gives the empty expression, a single operand stays as it is, and only two or
    /// more become a chain.
    static ExpressionHandle join(const ExpressionList &list, NumOp operation);

    /**
     * One step: replaces @p value by the result, and makes it constant only if both were.
     *
     * @return false if the step failed; also for a code that is no operation, which changes nothing
     */
    static bool apply(QVariant &value, bool &isConstant, NumOp operation, const QVariant &operand,
                      bool operandConstant);

    /**
     * Makes a chain of the same operation longer, and so changes this object, and returns a copy of
     * it; a chain of another one stays as it is and becomes the first operand of a new node.
     */
    NumericOperator operator+(ExpressionHandle right);
    NumericOperator operator-(ExpressionHandle right);
    NumericOperator operator*(ExpressionHandle right);
    NumericOperator operator/(ExpressionHandle right);
    NumericOperator operator%(ExpressionHandle right);
    NumericOperator operator&(ExpressionHandle right);
    NumericOperator operator|(ExpressionHandle right);
    NumericOperator operator^(ExpressionHandle right);
    /// For a node on the right, which would otherwise fit a handle and a QString alike.
    NumericOperator operator+(const Expression &right);

    /// Makes a chain of the same operation longer; one of another becomes its own first operand.
    NumericOperator &operator+=(ExpressionHandle right);
    NumericOperator &operator-=(ExpressionHandle right);
    NumericOperator &operator*=(ExpressionHandle right);
    NumericOperator &operator/=(ExpressionHandle right);
    NumericOperator &operator%=(ExpressionHandle right);
    NumericOperator &operator&=(ExpressionHandle right);
    NumericOperator &operator|=(ExpressionHandle right);
    NumericOperator &operator^=(ExpressionHandle right);

protected:
    NumOp op;

private:
    friend class Operator; // joins chains
};

} // namespace vogen
