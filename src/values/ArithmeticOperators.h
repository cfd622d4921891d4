#pragma once

#include <Vokit/BaseProperty>
#include <Vokit/NumericOperator>
#include <Vokit/UnaryOperator>
#include <Vokit/ValueExpression>

/**
 * @file
 * Arithmetic in operator syntax, beside the comparisons of ExpressionOperators.h.
 *
 * @code
 * const ExpressionHandle mebibytes = (size + 4096) / ExpressionHandle(ConstExpression(1048576,
 * true)); const ExpressionHandle filter = mebibytes > ExpressionHandle(ConstExpression(10, true));
 * @endcode
 *
 * The property stands on the left, with a value on the right, which is bindable; or handles stand
 * on both sides. +property makes a handle of a property.
 *
 * @warning A node turns into a QString by itself, and a QString takes a number as a character: node
 *          + 1 and node + "x" compile and are texts, no trees. Write the constant as a handle, or
 *          begin with the property: p + 1.
 */

// clang-format off
VOKIT_EXPORT vogen::NumericOperator operator+(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator-(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator*(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator/(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator%(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator&(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator|(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NumericOperator operator^(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
/// For two nodes, which would otherwise fit handles and QStrings alike.
VOKIT_EXPORT vogen::NumericOperator operator+(const vogen::Expression &a, const vogen::Expression &b);

VOKIT_EXPORT vogen::NumericOperator operator+(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator-(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator*(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator/(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator%(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator&(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator|(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::NumericOperator operator^(const vogen::BaseProperty &a, const QVariant &b);

VOKIT_EXPORT vogen::UnaryOperator operator-(vogen::ExpressionHandle operand);
VOKIT_EXPORT vogen::UnaryOperator operator-(const vogen::BaseProperty &property);
VOKIT_EXPORT vogen::UnaryOperator operator~(vogen::ExpressionHandle operand);

/// No operation: the handle itself, and a reference to the property.
VOKIT_EXPORT vogen::ExpressionHandle operator+(vogen::ExpressionHandle operand);
VOKIT_EXPORT vogen::ValueExpression operator+(const vogen::BaseProperty &property);
// clang-format on
