#include <Vokit/LogValue>

#include "IsExactly_p.h"
#include "actionlog/ShortDate_p.h"

#include <QTextStream>

namespace vo {

using vogen::isExactly;

LogValue::LogValue(FourChars id, const QString &name)
    : mId(id)
    , mName(name)
{}

LogValue::~LogValue() = default;

QString LogValue::toString() const
{
    // A text stream costs more than all the rest of an entry: not for the values of our own.
    if (isExactly<TLogValue<QString>>(*this))
        return static_cast<const TLogValue<QString> *>(this)->value();
    if (isExactly<TLogValue<QDateTime>>(*this))
        return ShortDate::toText(static_cast<const TLogValue<QDateTime> *>(this)->value());
    QString text;
    {
        QTextStream stream(&text, QIODevice::ReadWrite);
        writeTo(stream);
    }
    return text;
}

template <typename T>
LogValue &TLogValue<T>::copyFrom(const LogValue &other)
{
    if (const auto *same = dynamic_cast<const TLogValue<T> *>(&other))
        mValue = same->mValue;
    return *this;
}

template <>
bool TLogValue<QString>::hasValue() const
{
    return !mValue.isEmpty();
}

template <>
bool TLogValue<QDateTime>::hasValue() const
{
    // Qt finds the first moment of 1970 in local time equal to a default-built date.
    return mValue.isValid() || mValue != QDateTime();
}

template <>
bool TLogValue<int>::hasValue() const
{
    return mValue != 0;
}

template <>
void TLogValue<QString>::setValue(const QString &text)
{
    mValue = text;
}

template <>
void TLogValue<QDateTime>::setValue(const QString &text)
{
    mValue = ShortDate::fromText(text);
}

template <>
void TLogValue<int>::setValue(const QString &text)
{
    mValue = text.toInt();
}

template <>
QTextStream &TLogValue<QString>::writeTo(QTextStream &stream) const
{
    return stream << mValue;
}

template <>
QTextStream &TLogValue<QDateTime>::writeTo(QTextStream &stream) const
{
    return stream << ShortDate::toText(mValue);
}

template <>
QTextStream &TLogValue<int>::writeTo(QTextStream &stream) const
{
    return stream << mValue;
}

template class TLogValue<QString>;
template class TLogValue<QDateTime>;
template class TLogValue<int>;

} // namespace vo
