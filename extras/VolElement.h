#pragma once

#include <VokitExtras/vokit_extras_export.h>

#include <Vokit/FourChars>

#include <QByteArray>
#include <QString>

#include <vector>

namespace vo {

/// An element of a log file, as it stands there: its bytes, and what they say. A value, to be kept
/// and copied at will.
class VOKIT_EXTRAS_EXPORT VolElement
{
public:
    VolElement();
    ~VolElement();
    VolElement(const VolElement &);
    VolElement(VolElement &&) noexcept;
    VolElement &operator=(const VolElement &);
    VolElement &operator=(VolElement &&) noexcept;

    bool isNull() const { return m_bytes.isEmpty(); }

    /// From "<" to ">", not one byte changed.
    const QByteArray &bytes() const { return m_bytes; }
    /// Of the first byte, counted from the start of the file.
    qint64 position() const { return m_position; }

    /// Attributes in the order of the file, those that the class doesn't know among them.
    int attributeCount() const { return static_cast<int>(m_attributes.size()); }
    QString name(int index) const;
    /// The identifier that the name stands for.
    FourChars attributeId(int index) const;
    /// With its references resolved.
    QString value(int index) const;
    /// The value of the first attribute of that identifier; a null text for none.
    QString valueOf(FourChars id) const;
    /// The index of the attribute of that name; -1 for none.
    int indexOf(QLatin1String name) const;

protected:
    friend class VolTag;

    struct Attribute
    {
        int name; ///< places in m_bytes
        int nameEnd;
        int value;
        int valueEnd;
        bool isPlain; ///< the value is ASCII, and stands as it is
    };

    QByteArray m_bytes;
    std::vector<Attribute> m_attributes;
    qint64 m_position = 0;
};

} // namespace vo
