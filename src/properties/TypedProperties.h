#pragma once

#include <Vokit/BaseProperty>
#include <Vokit/PropertySet>

#include <QDate>
#include <QDateTime>
#include <QRect>
#include <QStringList>
#include <QTime>

#include <type_traits>

/**
 * @file
 * The fifteen typed properties. One template says what they share; they differ in
 *
 *     class                 value                 value line of dump()        apart from that
 *     IntProperty           int                   decimal
 *     S64Property           long long             decimal
 *     UIntProperty          unsigned int          decimal
 *     U64Property           unsigned long long    decimal
 *     StringProperty        QString               the text
 *     StringListProperty    QStringList           items joined by ","         takes every variant
 *     FloatProperty         float                 as QTextStream has it       variant is a float
 *     DoubleProperty        double                as QTextStream has it
 *     BoolProperty          bool                  0 or 1
 *     RectProperty          QRect                 (left,top,width,height)
 *     VariantProperty       QVariant              QVariant::toString()        takes every variant
 *     DateProperty          QDate                 Qt::TextDate                no getValue, setValue
 *     TimeProperty          QTime                 Qt::TextDate
 *     DateTimeProperty      QDateTime             Qt::TextDate
 *     PropertySetProperty   PropertySet           the embedded dump           variant is a map
 */

namespace vogen {

/**
 * A property with a value of type @p T. @p Self is the class derived from it, such as IntProperty.
 *
 * @code
 * IntProperty camera("camera", "Camera number", 7);
 * IntProperty::setValue(camera, 8);
 * IntProperty::getValue(set["camera"], 0); // the value; 0 if the set has no such property
 * @endcode
 */
template <class Self, typename T>
class VOKIT_EXPORT TypedProperty : public BaseProperty
{
public:
    using Value = T;
    /// How a value is passed: numbers, bool and QRect by value, all else by const reference.
    using Argument =
        std::conditional_t<std::is_arithmetic_v<T> || std::is_same_v<T, QRect>, T, const T &>;

    TypedProperty(
        const QString &name, const QString &description = QString(), Argument value = T(),
        boost::shared_ptr<PropertyValidator> validator = boost::shared_ptr<PropertyValidator>());

    /**
     * The value of a property that is known by reference only.
     *
     * @return @p defaultValue for IllegalProperty, which stands for a name that a set doesn't hold
     * @throws vo::UnexpectedTypeException for a property of any other class
     */
    static T getValue(const BaseProperty &property, Argument defaultValue);

    /**
     * Assigns the value. Neither validates it nor touches isValid() and errorText().
     *
     * @throws vo::UnexpectedTypeException for any other class, IllegalProperty included: a read
     *         of an unknown name gives the default, a write to it is an error
     */
    static void setValue(BaseProperty &property, Argument value);

    QString type() const override;
    QTextStream &dump(QTextStream &stream) const override;
    QVariant variantValue() const override;
    bool setVariantValue(const QVariant &value) override;

private:
    ValueView valueInPlace() const override;

    T m_value;
};

// Exported from their first mention on, or the template over them would stay hidden.
class VOKIT_EXPORT IntProperty;
class VOKIT_EXPORT S64Property;
class VOKIT_EXPORT UIntProperty;
class VOKIT_EXPORT U64Property;
class VOKIT_EXPORT StringProperty;
class VOKIT_EXPORT StringListProperty;
class VOKIT_EXPORT FloatProperty;
class VOKIT_EXPORT DoubleProperty;
class VOKIT_EXPORT BoolProperty;
class VOKIT_EXPORT RectProperty;
class VOKIT_EXPORT VariantProperty;
class VOKIT_EXPORT DateProperty;
class VOKIT_EXPORT TimeProperty;
class VOKIT_EXPORT DateTimeProperty;
class VOKIT_EXPORT PropertySetProperty;

// Compiled once, in the library. Exported one by one, or a template over QStringList, which Qt does
// not export, would stay hidden.
extern template class VOKIT_EXPORT TypedProperty<IntProperty, int>;
extern template class VOKIT_EXPORT TypedProperty<S64Property, long long>;
extern template class VOKIT_EXPORT TypedProperty<UIntProperty, unsigned int>;
extern template class VOKIT_EXPORT TypedProperty<U64Property, unsigned long long>;
extern template class VOKIT_EXPORT TypedProperty<StringProperty, QString>;
extern template class VOKIT_EXPORT TypedProperty<StringListProperty, QStringList>;
extern template class VOKIT_EXPORT TypedProperty<FloatProperty, float>;
extern template class VOKIT_EXPORT TypedProperty<DoubleProperty, double>;
extern template class VOKIT_EXPORT TypedProperty<BoolProperty, bool>;
extern template class VOKIT_EXPORT TypedProperty<RectProperty, QRect>;
extern template class VOKIT_EXPORT TypedProperty<VariantProperty, QVariant>;
extern template class VOKIT_EXPORT TypedProperty<DateProperty, QDate>;
extern template class VOKIT_EXPORT TypedProperty<TimeProperty, QTime>;
extern template class VOKIT_EXPORT TypedProperty<DateTimeProperty, QDateTime>;
extern template class VOKIT_EXPORT TypedProperty<PropertySetProperty, PropertySet>;

class VOKIT_EXPORT IntProperty : public TypedProperty<IntProperty, int>
{
public:
    using TypedProperty::TypedProperty;
    ~IntProperty() override;
};

class VOKIT_EXPORT S64Property : public TypedProperty<S64Property, long long>
{
public:
    using TypedProperty::TypedProperty;
    ~S64Property() override;
};

class VOKIT_EXPORT UIntProperty : public TypedProperty<UIntProperty, unsigned int>
{
public:
    using TypedProperty::TypedProperty;
    ~UIntProperty() override;
};

class VOKIT_EXPORT U64Property : public TypedProperty<U64Property, unsigned long long>
{
public:
    using TypedProperty::TypedProperty;
    ~U64Property() override;
};

class VOKIT_EXPORT StringProperty : public TypedProperty<StringProperty, QString>
{
public:
    using TypedProperty::TypedProperty;
    ~StringProperty() override;
};

/// setVariantValue() never fails: a text is split at ",", "a,,b" into three items and "" into one.
class VOKIT_EXPORT StringListProperty : public TypedProperty<StringListProperty, QStringList>
{
public:
    using TypedProperty::TypedProperty;
    ~StringListProperty() override;

    /// Names "StringProperty" as the expected class when it throws; callers match on that text.
    static void setValue(BaseProperty &property, const QStringList &value);
};

/// Its variant has the meta type QMetaType::Float, not Double.
class VOKIT_EXPORT FloatProperty : public TypedProperty<FloatProperty, float>
{
public:
    using TypedProperty::TypedProperty;
    ~FloatProperty() override;
};

class VOKIT_EXPORT DoubleProperty : public TypedProperty<DoubleProperty, double>
{
public:
    using TypedProperty::TypedProperty;
    ~DoubleProperty() override;
};

class VOKIT_EXPORT BoolProperty : public TypedProperty<BoolProperty, bool>
{
public:
    using TypedProperty::TypedProperty;
    ~BoolProperty() override;
};

class VOKIT_EXPORT RectProperty : public TypedProperty<RectProperty, QRect>
{
public:
    using TypedProperty::TypedProperty;
    ~RectProperty() override;
};

class VOKIT_EXPORT VariantProperty : public TypedProperty<VariantProperty, QVariant>
{
public:
    using TypedProperty::TypedProperty;
    ~VariantProperty() override;
};

/// The one class without a typed door: it is reached through variantValue() and setVariantValue().
class VOKIT_EXPORT DateProperty : public TypedProperty<DateProperty, QDate>
{
public:
    using TypedProperty::TypedProperty;
    ~DateProperty() override;

    static QDate getValue(const BaseProperty &property, const QDate &defaultValue) = delete;
    static void setValue(BaseProperty &property, const QDate &value) = delete;
};

class VOKIT_EXPORT TimeProperty : public TypedProperty<TimeProperty, QTime>
{
public:
    using TypedProperty::TypedProperty;
    ~TimeProperty() override;
};

class VOKIT_EXPORT DateTimeProperty : public TypedProperty<DateTimeProperty, QDateTime>
{
public:
    using TypedProperty::TypedProperty;
    ~DateTimeProperty() override;
};

/**
 * A set within a set.
 *
 * getValue() and setValue() copy the set as PropertySet does: the copy leads to the same property
 * objects. The variant is a QVariantMap of names to values, with nested maps for nested sets.
 */
class VOKIT_EXPORT PropertySetProperty : public TypedProperty<PropertySetProperty, PropertySet>
{
public:
    using TypedProperty::TypedProperty;
    ~PropertySetProperty() override;
};

} // namespace vogen
