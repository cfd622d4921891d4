#pragma once

#include <Vokit/Expression>

namespace vogen {

/**
 * A value brought into a type: by QVariant where it can, between dates and numbers by
 * TypeTool::castDate, and NULL otherwise.
 *
 * Printed as "CAST(operand AS type)", or "(type)operand" under PrintCode, with the name that Qt has
 * for the type, in SQL too: "int", "QString". Bound values have the type already.
 *
 * @code
 * toDouble(+size) / ... // a handle is wanted: + makes one of a property
 * @endcode
 */
class VOKIT_EXPORT CastExpression : public Expression
{
public:
    CastExpression(QVariant::Type targetType, ExpressionHandle e);
    ~CastExpression() override;

    using Expression::collectPlaceholders;
    using Expression::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    void collectPlaceholders(QList<QVariant> &values) const override;
    bool isEmpty() const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

protected:
    QVariant::Type type;
    ExpressionHandle operand;
};

/// Named after the target type.
VOKIT_EXPORT CastExpression toBool(ExpressionHandle e);
VOKIT_EXPORT CastExpression toInt(ExpressionHandle e);
VOKIT_EXPORT CastExpression toUInt(ExpressionHandle e);
VOKIT_EXPORT CastExpression toLongLong(ExpressionHandle e);
VOKIT_EXPORT CastExpression toULongLong(ExpressionHandle e);
VOKIT_EXPORT CastExpression toDouble(ExpressionHandle e);
VOKIT_EXPORT CastExpression toString(ExpressionHandle e);
VOKIT_EXPORT CastExpression toDate(ExpressionHandle e);
VOKIT_EXPORT CastExpression toTime(ExpressionHandle e);
VOKIT_EXPORT CastExpression toDateTime(ExpressionHandle e);

} // namespace vogen
