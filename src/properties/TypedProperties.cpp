#include <Vokit/TypedProperties>

#include "IsExactly_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/IllegalProperty>
#include <Vokit/StringUtils>
#include <Vokit/UnexpectedTypeException>

namespace vogen {

namespace {

// What differs between the value types: the class's name, the variant made from a value, the value
// taken from a variant, and the text of a value. Everything else stands in TypedProperty.

template <class Self>
constexpr const char *gClassName = nullptr;
template <>
constexpr const char *gClassName<IntProperty> = "IntProperty";
template <>
constexpr const char *gClassName<S64Property> = "S64Property";
template <>
constexpr const char *gClassName<UIntProperty> = "UIntProperty";
template <>
constexpr const char *gClassName<U64Property> = "U64Property";
template <>
constexpr const char *gClassName<StringProperty> = "StringProperty";
template <>
constexpr const char *gClassName<StringListProperty> = "StringListProperty";
template <>
constexpr const char *gClassName<FloatProperty> = "FloatProperty";
template <>
constexpr const char *gClassName<DoubleProperty> = "DoubleProperty";
template <>
constexpr const char *gClassName<BoolProperty> = "BoolProperty";
template <>
constexpr const char *gClassName<RectProperty> = "RectProperty";
template <>
constexpr const char *gClassName<VariantProperty> = "VariantProperty";
template <>
constexpr const char *gClassName<DateProperty> = "DateProperty";
template <>
constexpr const char *gClassName<TimeProperty> = "TimeProperty";
template <>
constexpr const char *gClassName<DateTimeProperty> = "DateTimeProperty";
template <>
constexpr const char *gClassName<PropertySetProperty> = "PropertySetProperty";

template <typename T>
QVariant toVariant(const T &value)
{
    return QVariant(value);
}

QVariant toVariant(const PropertySet &set)
{
    return QVariant(set.variantValues());
}

template <typename T>
bool fromVariant(const QVariant &variant, T &value)
{
    if (!variant.canConvert(qMetaTypeId<T>()))
        return false;
    value = variant.value<T>();
    return true;
}

bool fromVariant(const QVariant &variant, float &value)
{
    if (!variant.canConvert(QVariant::Double))
        return false;
    value = static_cast<float>(variant.toDouble());
    return true;
}

bool fromVariant(const QVariant &variant, QVariant &value)
{
    value = variant;
    return true;
}

// Asked by type first: QVariant itself says that any text "can convert" to a list, and then makes
// one item of it, whatever commas it holds.
bool fromVariant(const QVariant &variant, QStringList &value)
{
    if (variant.type() != QVariant::String && variant.canConvert(QVariant::StringList))
        value = variant.toStringList();
    else
        value = variant.toString().split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
    return true;
}

// Through PropertySet::operator[], so that an unknown key reaches IllegalProperty and leaves no
// entry behind, other than PropertySet::setVariantValues().
bool fromVariant(const QVariant &variant, PropertySet &set)
{
    if (!variant.canConvert(QVariant::Map))
        return false;
    const QVariantMap values = variant.toMap();
    bool allTaken = true;
    for (auto it = values.begin(); it != values.end(); ++it)
        allTaken &= set[it.key()].setVariantValue(it.value());
    return allTaken;
}

template <typename T>
void dumpValue(QTextStream &stream, const T &value)
{
    stream << "Property value: ";
    if constexpr (std::is_same_v<T, bool>)
        stream << static_cast<int>(value);
    else if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, QString>)
        stream << value;
    else if constexpr (std::is_same_v<T, QStringList>)
        stream << vo::StringUtils::join(value, QStringLiteral(","));
    else if constexpr (std::is_same_v<T, QVariant>)
        stream << value.toString();
    else if constexpr (std::is_same_v<T, QRect>)
        stream << '(' << value.left() << ',' << value.top() << ',' << value.width() << ','
               << value.height() << ')';
    else
        stream << value.toString(Qt::TextDate);
}

void dumpValue(QTextStream &stream, const PropertySet &set)
{
    stream << "Embedded property set: \n";
    set.dump(stream);
}

[[noreturn]] void throwWrongType(const BaseProperty &property, const char *expectedType)
{
    throw vo::UnexpectedTypeException(property.name(), property.type(), QLatin1String(expectedType),
                                      QStringLiteral("Property has the wrong type."), nullptr);
}

} // namespace

template <class Self, typename T>
TypedProperty<Self, T>::TypedProperty(const QString &name, const QString &description,
                                      Argument value,
                                      boost::shared_ptr<PropertyValidator> validator)
    : BaseProperty(name, description, validator)
    , m_value(value)
{}

template <class Self, typename T>
T TypedProperty<Self, T>::getValue(const BaseProperty &property, Argument defaultValue)
{
    if (const auto *typed = dynamic_cast<const Self *>(&property))
        return typed->m_value;
    if (dynamic_cast<const IllegalProperty *>(&property))
        return defaultValue;
    throwWrongType(property, gClassName<Self>);
}

template <class Self, typename T>
void TypedProperty<Self, T>::setValue(BaseProperty &property, Argument value)
{
    if (auto *typed = dynamic_cast<Self *>(&property))
        typed->m_value = value;
    else
        throwWrongType(property, gClassName<Self>);
}

template <class Self, typename T>
QString TypedProperty<Self, T>::type() const
{
    return QLatin1String(gClassName<Self>);
}

template <class Self, typename T>
QTextStream &TypedProperty<Self, T>::dump(QTextStream &stream) const
{
    stream << "Property name: " << name() << '\n'
           << "Property description: " << description() << '\n';
    dumpValue(stream, m_value);
    return stream << "\n--------------------------------------------\n";
}

template <class Self, typename T>
QVariant TypedProperty<Self, T>::variantValue() const
{
    return toVariant(m_value);
}

template <class Self, typename T>
bool TypedProperty<Self, T>::setVariantValue(const QVariant &value)
{
    return fromVariant(value, m_value);
}

template <class Self, typename T>
ValueView TypedProperty<Self, T>::valueInPlace() const
{
    // A class of the client's derived from this one may have a variantValue() of its own, and the
    // variant of an embedded set is made anew each time.
    if (std::is_same_v<T, PropertySet> || !isExactly<Self>(*this))
        return {};
    if constexpr (std::is_same_v<T, QVariant>)
        return ValueView(m_value);
    else
        return ValueView::of(m_value);
}

void StringListProperty::setValue(BaseProperty &property, const QStringList &value)
{
    if (!dynamic_cast<StringListProperty *>(&property))
        throwWrongType(property, gClassName<StringProperty>);
    TypedProperty::setValue(property, value);
}

// Defined here, so that each class has its virtual table here and nowhere else.
IntProperty::~IntProperty() = default;
S64Property::~S64Property() = default;
UIntProperty::~UIntProperty() = default;
U64Property::~U64Property() = default;
StringProperty::~StringProperty() = default;
StringListProperty::~StringListProperty() = default;
FloatProperty::~FloatProperty() = default;
DoubleProperty::~DoubleProperty() = default;
BoolProperty::~BoolProperty() = default;
RectProperty::~RectProperty() = default;
VariantProperty::~VariantProperty() = default;
DateProperty::~DateProperty() = default;
TimeProperty::~TimeProperty() = default;
DateTimeProperty::~DateTimeProperty() = default;
PropertySetProperty::~PropertySetProperty() = default;

template class TypedProperty<IntProperty, int>;
template class TypedProperty<S64Property, long long>;
template class TypedProperty<UIntProperty, unsigned int>;
template class TypedProperty<U64Property, unsigned long long>;
template class TypedProperty<StringProperty, QString>;
template class TypedProperty<StringListProperty, QStringList>;
template class TypedProperty<FloatProperty, float>;
template class TypedProperty<DoubleProperty, double>;
template class TypedProperty<BoolProperty, bool>;
template class TypedProperty<RectProperty, QRect>;
template class TypedProperty<VariantProperty, QVariant>;
template class TypedProperty<DateProperty, QDate>;
template class TypedProperty<TimeProperty, QTime>;
template class TypedProperty<DateTimeProperty, QDateTime>;
template class TypedProperty<PropertySetProperty, PropertySet>;

} // namespace vogen
