#pragma once

#include <Vokit/PropertyValidator>
#include <Vokit/vokit_export.h>

#include <boost/shared_ptr.hpp>

#include <QString>
#include <QTextStream>
#include <QVariant>

namespace vogen {

class PropertySet;
class ValueView;

/**
 * One named, described value with an optional validator.
 *
 * The value has two doors. The typed one is getValue() and setValue() of each class in
 * TypedProperties.h; it throws on the wrong class. The untyped one is variantValue() and
 * setVariantValue(), which convert by the rules of QVariant and answer with a bool. Neither runs
 * the validator: isValid() and errorText() tell of the last validate(), not of the value of now.
 *
 * Nothing here locks: a property belongs to one thread at a time.
 */
class VOKIT_EXPORT BaseProperty
{
public:
    virtual ~BaseProperty();

    /**
     * Asks the validator, and returns its verdict.
     *
     * Without a validator the answer is true, and isValid() and errorText() stay as they are.
     */
    virtual bool validate(PropertySet &set);

    /// The name of the concrete class, such as "IntProperty".
    virtual QString type() const = 0;

    /// Writes name, description and value as a block of text that ends in a rule.
    virtual QTextStream &dump(QTextStream &stream) const = 0;

    virtual QVariant variantValue() const = 0;

    /// True when the value was taken; false leaves the old one. QVariant::canConvert decides, so
    /// the text "abc" is taken by an IntProperty, as 0.
    virtual bool setVariantValue(const QVariant &value) = 0;

    const QString &name() const { return m_name; }
    const QString &description() const { return m_description; }
    const QString &errorText() const { return m_errorText; }
    bool isValid() const { return m_isValid; }
    const boost::shared_ptr<PropertyValidator> &validator() const { return m_validator; }

    /// @warning A PropertySet goes on filing the property under the name it had at add().
    void setName(const QString &name) { m_name = name; }
    void setDescription(const QString &description) { m_description = description; }
    void setErrorText(const QString &text) { m_errorText = text; }
    void setValid(bool valid) { m_isValid = valid; }
    void setValidator(const boost::shared_ptr<PropertyValidator> &validator)
    {
        m_validator = validator;
    }

protected:
    /// Null strings, no validator, not valid.
    BaseProperty();
    /// Valid until a validation says otherwise.
    BaseProperty(const QString &name, const QString &description,
                 const boost::shared_ptr<PropertyValidator> &validator);
    BaseProperty(const BaseProperty &) = default;
    BaseProperty &operator=(const BaseProperty &) = default;

private:
    friend class ValueView;

    // What variantValue() would give, seen where it lies, so that a filter reads it without a copy.
    // A null view, as here, sends the reader to variantValue().
    virtual ValueView valueInPlace() const;

    QString m_description;
    QString m_errorText;
    bool m_isValid = false;
    boost::shared_ptr<PropertyValidator> m_validator;
    QString m_name;
};

} // namespace vogen
