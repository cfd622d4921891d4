#pragma once

#include <Vokit/Operator>

namespace vogen {

class BaseProperty;

/**
 * One of several results, by the value of a selector: SQL's CASE. Outside SQL it prints as a switch
 * statement, or as an if/else chain when the selector is empty.
 *
 * @code
 * SwitchCase level(priority);
 * level.switchCase(low, quiet).switchCase(high, loud).defaultCase(normal); // all handles
 * @endcode
 *
 * It is meant for printing. In memory the values are compared as constants, and the result always
 * counts as one, whatever it read. Without a selector no condition that is a bool, a number or a
 * text matches, so an if/else chain gives its default result: the conditions work in the database.
 *
 * @warning It can be written to a stream, but not read back. A bindable constant in the default
 *          result is collected before those of the cases and printed behind them: bind in that
 *          order, or keep the default literal.
 */
class VOKIT_EXPORT SwitchCase : public Operator
{
public:
    SwitchCase(ExpressionHandle selector);
    SwitchCase(const BaseProperty &property);
    ~SwitchCase() override;

    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;

    SwitchCase &switchCase(ExpressionHandle value, ExpressionHandle result);
    /// The last one given counts. The empty expression is none.
    SwitchCase &defaultCase(ExpressionHandle result);

private:
    // Places in the list of operands; from FirstCase on, values and results take turns.
    enum Place { Selector = 0, Default = 1, FirstCase = 2 };

    void printSql(QTextStream &stream, PrintStyle style) const;
    void printSwitch(QTextStream &stream, PrintStyle style) const;
    void printIfElse(QTextStream &stream, PrintStyle style) const;
    bool hasDefault() const;
};

/// An if/else of one condition; see SwitchCase for what it is in memory.
VOKIT_EXPORT SwitchCase ifThen(ExpressionHandle condition, ExpressionHandle thenResult,
                               ExpressionHandle elseResult);

} // namespace vogen
