#pragma once

#include <Vokit/BaseProperty>
#include <Vokit/ConstExpression>
#include <Vokit/ValueExpression>

namespace vogen {

/// What operators make of a property: a reference whose alias is empty, and not null.
inline ValueExpression reference(const BaseProperty &property)
{
    return {property, QStringLiteral("")};
}

/// What they make of a value: a constant that may be bound.
inline ConstExpression bindable(const QVariant &value)
{
    return {value, true};
}

} // namespace vogen
