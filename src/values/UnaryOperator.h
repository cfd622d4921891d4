#pragma once

#include <Vokit/Operator>

namespace vogen {

/**
 * A negation, which is also a descending term of ORDER BY, or an inversion of bits.
 *
 * Minus gives a value that sorts the other way round, so that sorting in memory follows a term that
 * prints with " DESC" under PrintOrderBy: a number is taken from 0, a date from 1970, and a text is
 * inverted by TypeTool::invertString. The 0 is a constant and the operand's type decides, so an
 * unsigned property becomes a negative long long, or a double for 64 bits.
 *
 * BitNot gives a whole number back as it is: it is the exclusive or with 0, and stored trees rely
 * on it. All else, NULL included, is NULL. A text or a NULL counts as constant.
 */
class VOKIT_EXPORT UnaryOperator : public Operator
{
public:
    /// In every stored tree: never renumber, never reuse.
    enum UnaryOp : qint32 { Minus = 0, BitNot = 1 };

    UnaryOperator(UnaryOp operation, ExpressionHandle operand);
    ~UnaryOperator() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

protected:
    UnaryOp op;
};

} // namespace vogen
