#pragma once

#include <Vokit/BaseProperty>

#include <QMetaType>
#include <QVariant>

namespace vogen {

/**
 * A value seen where it lies: its meta type and its address, in place of a QVariant of its own.
 *
 * Evaluation reads most values once, to compare them; this spares it the copy. A view owns nothing
 * and holds as long as the object behind it is neither changed nor destroyed.
 */
class ValueView
{
public:
    /// Sees nothing; isNull() is true.
    constexpr ValueView() = default;

    /// @param isConstant whether it is a written constant, and no property's value
    explicit ValueView(const QVariant &variant, bool isConstant = false)
        : ValueView(dataOf(variant), static_cast<int>(variant.data_ptr().type), isConstant)
    {}

    template <typename T>
    static ValueView of(const T &value)
    {
        return {&value, qMetaTypeId<T>(), false};
    }

    /// The value that variantValue() gives; null when it is made anew at each call.
    static ValueView ofProperty(const BaseProperty &property) { return property.valueInPlace(); }

    bool isNull() const { return m_data == nullptr; }
    bool isConstant() const { return m_type < 0; }

    /// As QVariant::userType() has it.
    int type() const { return isConstant() ? ~m_type : m_type; }

    /// The value itself; T must be what type() says.
    template <typename T>
    const T &as() const
    {
        return *static_cast<const T *>(m_data);
    }

private:
    // QVariant::constData(), of which Qt has no inline form.
    static const void *dataOf(const QVariant &variant)
    {
        const QVariant::DataPtr &d = variant.data_ptr();
        return d.is_shared ? d.data.shared->ptr : static_cast<const void *>(&d.data);
    }

    ValueView(const void *data, int type, bool isConstant)
        : m_data(data)
        , m_type(isConstant ? ~type : type)
    {}

    const void *m_data = nullptr;
    // Complemented for a constant: views are passed in two registers, with nothing to take apart.
    int m_type = QMetaType::UnknownType;
};

} // namespace vogen
