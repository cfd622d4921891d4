#pragma once

#include <VokitExtras/VolEntry>

#include <Vokit/BaseProperty>
#include <Vokit/LogValue>

#include <QVariant>

namespace vo {

/// A value of the rows of one class of entries: read from one entry after the other, and only when
/// it is asked for.
class VolCell
{
public:
    /**
     * @param value takes the values in turn; not owned
     * @param isColumn whether it is found under its name, and no other one is
     */
    VolCell(LogValue &value, bool isColumn);

    FourChars id() const { return m_value.id(); }
    const QString &name() const { return m_value.name(); }
    const boost::shared_ptr<vogen::BaseProperty> &property() const { return m_property; }
    bool isColumn() const { return m_isColumn; }

    /// The attribute that has the value; -1 for none. It isn't read yet.
    void setPlace(int place)
    {
        m_place = place;
        m_isRead = false;
    }
    int place() const { return m_place; }

    /// @param referenceYear the year that one of two digits is near to
    void read(const VolEntry &entry, int referenceYear);

    // Of what was read.

    const QString &text() const { return m_text; }
    /// Whether it is a date that isn't there, or can't be read.
    bool isNull() const { return m_isNull; }
    bool isUnreadable() const { return m_isNull && !m_text.isEmpty(); }
    /// As far as it can be read.
    QString shownText() const { return m_isNull ? m_text : m_value.toString(); }
    QVariant shown() const { return m_isNull ? QVariant(m_text) : m_property->variantValue(); }

private:
    LogValue &m_value;
    QVariant::Type m_type;
    boost::shared_ptr<vogen::BaseProperty> m_property;
    bool m_isColumn;
    int m_place = -1;
    bool m_isRead = false;
    QString m_text;
    bool m_isNull = false;
};

} // namespace vo
