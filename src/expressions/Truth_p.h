#pragma once

#include <QVariant>

namespace vogen {

/// A condition's three outcomes, without the QVariant around them.
enum class Truth : int { Null, False, True };

constexpr Truth truthOf(bool condition)
{
    return condition ? Truth::True : Truth::False;
}

inline Truth truthOf(const QVariant &value)
{
    return value.canConvert(QVariant::Bool) ? truthOf(value.toBool()) : Truth::Null;
}

inline QVariant toVariant(Truth truth)
{
    return truth == Truth::Null ? QVariant() : QVariant(truth == Truth::True);
}

} // namespace vogen
