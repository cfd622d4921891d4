#pragma once

#include <Vokit/FourChars>

#include <QDateTime>
#include <QString>

#include <type_traits>

class QTextStream;

namespace vo {

/**
 * One named value of a log entry.
 *
 * The identifier names it in a log file, the name in prose. The file holds its text, so a value is
 * what its text reads back as.
 */
class VOKIT_EXPORT LogValue
{
public:
    virtual ~LogValue();

    /// Whether there is anything to write: a file leaves out a value that has none.
    virtual bool hasValue() const = 0;
    /// Takes the value that the text stands for. One that can't be read leaves an empty value.
    virtual void setValue(const QString &text) = 0;
    /// Takes the other's value if it has the same type, else nothing.
    virtual LogValue &copyFrom(const LogValue &other) = 0;
    virtual QTextStream &writeTo(QTextStream &stream) const = 0;

    /// What writeTo() writes.
    QString toString() const;

    FourChars id() const { return mId; }
    const QString &name() const { return mName; }

protected:
    LogValue(FourChars id, const QString &name);
    LogValue(const LogValue &) = default;
    LogValue &operator=(const LogValue &) = default;

private:
    FourChars mId;
    QString mName;
};

/**
 * A value of type T: QString, int or QDateTime.
 *
 * A date is written and read in the short format of the system's locale. What that format leaves
 * out, such as seconds, is lost in a file; and a file written under another locale may not read
 * back.
 */
template <typename T>
class VOKIT_EXPORT TLogValue : public LogValue
{
public:
    TLogValue(FourChars id, const QString &name, const T &value)
        : LogValue(id, name)
        , mValue(value)
    {}

    const T &value() const { return mValue; }
    /// The value itself, for a T that is no text.
    template <typename U = T, std::enable_if_t<!std::is_same<U, QString>::value, int> = 0>
    void setValue(const std::common_type_t<U> &value)
    {
        mValue = value;
    }

    /// Whether the text isn't empty, the number isn't 0, or the date isn't a default-built one.
    bool hasValue() const override;
    void setValue(const QString &text) override;
    LogValue &copyFrom(const LogValue &other) override;
    QTextStream &writeTo(QTextStream &stream) const override;

private:
    T mValue;
};

// clang-format off
template <> VOKIT_EXPORT bool TLogValue<QString>::hasValue() const;
template <> VOKIT_EXPORT bool TLogValue<QDateTime>::hasValue() const;
template <> VOKIT_EXPORT bool TLogValue<int>::hasValue() const;
template <> VOKIT_EXPORT void TLogValue<QString>::setValue(const QString &text);
template <> VOKIT_EXPORT void TLogValue<QDateTime>::setValue(const QString &text);
template <> VOKIT_EXPORT void TLogValue<int>::setValue(const QString &text);
template <> VOKIT_EXPORT QTextStream &TLogValue<QString>::writeTo(QTextStream &stream) const;
template <> VOKIT_EXPORT QTextStream &TLogValue<QDateTime>::writeTo(QTextStream &stream) const;
template <> VOKIT_EXPORT QTextStream &TLogValue<int>::writeTo(QTextStream &stream) const;
// clang-format on

extern template class TLogValue<QString>;
extern template class TLogValue<QDateTime>;
extern template class TLogValue<int>;

} // namespace vo
