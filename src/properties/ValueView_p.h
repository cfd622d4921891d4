#pragma once

#include <QMetaType>
#include <QVariant>

namespace vogen {

class BaseProperty;

/**
 * A value seen where it lies: its meta type and its address, in place of a QVariant of its own.
 *
 * Evaluation reads most values once, to compare them. This spares it the copy. A view owns nothing
 * and holds as long as the object behind it is neither changed nor destroyed.
 */
class ValueView
{
public:
    /// Sees nothing; isNull() is true.
    ValueView() = default;

    explicit ValueView(const QVariant &variant)
        : m_type(variant.userType())
        , m_data(variant.constData())
        , m_variant(&variant)
    {}

    template <typename T>
    static ValueView of(const T &value)
    {
        ValueView view;
        view.m_type = qMetaTypeId<T>();
        view.m_data = &value;
        return view;
    }

    /// The value that variantValue() gives; null when it is made anew at each call.
    static ValueView ofProperty(const BaseProperty &property);

    bool isNull() const { return m_data == nullptr; }

    /// As QVariant::userType() has it.
    int type() const { return m_type; }

    /// The value itself; T must be what type() says.
    template <typename T>
    const T &as() const
    {
        return *static_cast<const T *>(m_data);
    }

    /// As a QVariant: the one seen, flags included, or @p storage filled with the value.
    const QVariant &variant(QVariant &storage) const
    {
        if (m_variant)
            return *m_variant;
        storage = QVariant(m_type, m_data);
        return storage;
    }

private:
    int m_type = QMetaType::UnknownType;
    const void *m_data = nullptr;
    const QVariant *m_variant = nullptr;
};

} // namespace vogen
