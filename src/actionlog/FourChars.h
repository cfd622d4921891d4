#pragma once

#include <Vokit/vokit_export.h>

#include <QString>

#include <type_traits>

class QByteArray;
class QTextStream;

namespace vo {

/**
 * An identifier of four characters, held as one number: the first character is the most significant
 * byte, so that identifiers sort as the bytes they spell.
 *
 * A text becomes Latin-1; what is longer is cut, what is shorter ends in blanks.
 */
class VOKIT_EXPORT FourChars
{
public:
    constexpr FourChars() = default;
    /// From a constant such as 0x54696D65, "Time".
    template <typename Number, typename = std::enable_if_t<std::is_convertible_v<Number, quint32>>>
    constexpr FourChars(Number value) // a template, or 0 could be a null pointer, too
        : mValue(static_cast<quint32>(value))
    {}
    FourChars(const QString &text);
    explicit FourChars(const QStringRef &text);
    /// As for the text; a null pointer gives the value 0.
    FourChars(const QString *text);

    /// Pads @p bytes with blanks to four, in place, and takes the first four.
    void initFourChars(QByteArray &bytes);

    constexpr quint32 value() const { return mValue; }
    /// Always four characters; a zero byte is one of them.
    QString toString() const;
    void writeTo(QTextStream &stream) const;

    constexpr bool operator==(FourChars other) const { return mValue == other.mValue; }
    constexpr bool operator!=(FourChars other) const { return mValue != other.mValue; }
    constexpr bool operator<(FourChars other) const { return mValue < other.mValue; }

private:
    quint32 mValue = 0;
};

} // namespace vo
