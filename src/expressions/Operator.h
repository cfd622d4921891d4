#pragma once

#include <Vokit/Expression>

namespace vogen {

/**
 * A node with operands, in order.
 *
 * A copy shares the list and the operands in it; append() changes the one list only. Where a node
 * has fewer operands than its class needs, as a damaged stream may leave it, the missing ones are
 * the empty expression.
 */
class VOKIT_EXPORT Operator : public Expression
{
public:
    ~Operator() override;

    using Expression::collectPlaceholders;
    using Expression::equals;

    /// Operand by operand; which class and which operation is for the class to ask first.
    bool equals(const Expression *other) const override;
    /// In the order of the list.
    void collectPlaceholders(QList<QVariant> &values) const override;
    /// Whether there are no operands; an operand that is empty itself counts as one.
    bool isEmpty() const override;
    void write(QDataStream &stream) const override;
    /// A count that is negative reads no operand. See Expression::readExpression() for a count that
    /// the stream can't hold.
    void read(QDataStream &stream) override;

    /// Adds an operand as it is. For nodes under construction, which nobody shares yet.
    void append(ExpressionHandle operand);

protected:
    Operator();
    Operator(const Operator &other) = default;
    Operator &operator=(const Operator &other) = default;

    /// The operands of another node, as subclasses need them to add or join a list.
    static const QList<ExpressionHandle> &operandsOf(const Operator &node) { return node.operands; }

    /// The operands of @p list joined by @p chain, which is empty so far: a list of none gives the
    /// empty expression, and a single operand stays as it is.
    template <class Chain>
    static ExpressionHandle joinOperands(const Operator &list, Chain chain)
    {
        if (list.operands.isEmpty())
            return ExpressionHandle();
        if (list.operands.size() == 1)
            return list.operands.first();
        static_cast<Operator &>(chain).operands += list.operands;
        return chain;
    }

    /// Adds @p right to a chain of the operation @p joint; a chain of another one becomes the first
    /// operand of a new one, in place.
    template <class Chain, typename Operation>
    static Chain &extend(Chain &chain, Operation joint, ExpressionHandle right)
    {
        if (chain.op == joint)
            return chain.append(right);
        return chain = Chain(chain, joint, right);
    }

    /// The same for a copy: only a chain of that operation is changed itself.
    template <class Chain, typename Operation>
    static Chain joined(Chain &chain, Operation joint, ExpressionHandle right)
    {
        if (chain.op == joint)
            return chain.append(right);
        return Chain(chain, joint, right);
    }

    /// The operand at @p index, or the empty expression behind the end.
    const Expression &operandAt(int index) const
    {
        return index < operands.size() ? *operands.at(index) : missingOperand();
    }

    /// Prints the operands from @p first on, with a separator between them.
    void printOperands(QTextStream &stream, PrintStyle style, int first,
                       const char *separator) const;
    /// The same for all operands as nested ones; in brackets if the node is nested and has two.
    void printChain(QTextStream &stream, PrintStyle style, const char *separator) const;

    /// The record of a class that has an operation code: version, code and the operands' record.
    void writeWithCode(QDataStream &stream, qint32 code) const;
    qint32 readWithCode(QDataStream &stream);

    /// The nodes from @p first on, with a separator between them.
    static void printList(QTextStream &stream, PrintStyle style,
                          const QList<ExpressionHandle> &nodes, int first, const char *separator);

    QList<ExpressionHandle> operands;

private:
    static const Expression &missingOperand();
};

} // namespace vogen
