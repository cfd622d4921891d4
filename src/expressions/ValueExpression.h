#pragma once

#include <Vokit/Expression>
#include <Vokit/PropertySet>

namespace vogen {

/**
 * A reference to a property by name, looked up anew in the set that evaluate() is given.
 *
 * Its value is NULL when the set doesn't hold the name. Blanks in the name print as "_". An alias,
 * empty in all trees that operators build, is looked up before the name, and SQL text gets " AS "
 * and the alias behind the name, wherever the node stands.
 */
class VOKIT_EXPORT ValueExpression : public virtual Expression
{
public:
    ValueExpression(const QString &propertyName, const QString &secondName);
    /// Keeps the property's name, not the property.
    ValueExpression(const BaseProperty &property, const QString &secondName);

    using Expression::collectPlaceholders;
    using Expression::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    /// Whether the name is empty, whatever the alias is.
    bool isEmpty() const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;
    ~ValueExpression() override;

    /// "*", all columns.
    static const ValueExpression star;

protected:
    QString name;
    QString alias;

private:
    ValueView valueInPlace(const PropertySet &properties) const override;

    PropertySet::const_iterator find(const PropertySet &properties) const;
};

} // namespace vogen
