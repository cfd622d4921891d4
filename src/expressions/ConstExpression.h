#pragma once

#include <Vokit/Expression>

namespace vogen {

/**
 * A literal value. An invalid QVariant is NULL.
 *
 * A bindable one (placeholder true) prints as "?" under PrintPlaceholders, and
 * collectPlaceholders() gives its value; a date then as a qlonglong of microseconds, which is also
 * what SQL text holds. Two constants are equal when their values are, bindable or not.
 *
 * SQL text has single quotes, doubled inside. NULL has no keyword here and prints as ''; a bool is
 * quoted text, 'true'. Outside SQL, texts stand in double quotes with nothing escaped.
 */
class VOKIT_EXPORT ConstExpression : public virtual Expression
{
public:
    ConstExpression(const QVariant &literal, bool bindable);

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
    ~ConstExpression() override;

    /// Constants that are not bindable; a date and time is local.
    static ConstExpression time(int hour, int minute, int second, int millisecond);
    static ConstExpression date(int year, int month, int day);
    static ConstExpression dateTime(int year, int month, int day, int hour, int minute, int second,
                                    int millisecond);

    /// Prints a value as a constant is printed; "?" whenever PrintPlaceholders is set.
    static void printValue(QTextStream &stream, const QVariant &literal, PrintStyle style);

    /// The pattern of a QRegExp; of anything else QVariant::toString().
    static QString stringValue(const QVariant &literal);

protected:
    QVariant value;
    bool placeholder;

private:
    ValueView valueInPlace(const PropertySet &properties) const override;
};

} // namespace vogen
