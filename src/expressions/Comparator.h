#pragma once

#include <Vokit/Operator>

namespace vogen {

/**
 * A comparison of two values, by the rules of TypeTool.
 *
 * Both operands are always evaluated. Where the two can't be compared the result is NULL, for
 * NotEqual too. SQL text has no IS NULL: a comparison with NULL prints as one with ''.
 */
class VOKIT_EXPORT Comparator : public Operator
{
public:
    /// In every stored tree: never renumber, never reuse.
    enum CompOp : qint32 {
        NotEqual = 0,
        Less = 1,
        Equal = 2,
        Greater = 3,
        LessEqual = 4,
        GreaterEqual = 5
    };

    Comparator(ExpressionHandle left, CompOp operation, ExpressionHandle right);
    /// Without operands, for reading from a stream.
    explicit Comparator(CompOp operation);
    ~Comparator() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

protected:
    CompOp op;

private:
    Truth truth(const PropertySet &properties, bool *isConstant) const override;

    Truth compare(const PropertySet &properties, bool *isConstant) const;
    Truth compareEvaluated(const PropertySet &properties, bool *isConstant) const;
};

} // namespace vogen
