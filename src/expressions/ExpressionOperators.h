#pragma once

#include <Vokit/BaseProperty>
#include <Vokit/BooleanOperator>
#include <Vokit/CastExpression>
#include <Vokit/Comparator>
#include <Vokit/ConstExpression>
#include <Vokit/ElementOf>
#include <Vokit/ExpressionList>
#include <Vokit/NotOperator>
#include <Vokit/ValueExpression>

/**
 * @file
 * Filters in operator syntax. Each operator returns a node by value, which becomes part of a tree
 * as soon as it is used as an ExpressionHandle.
 *
 * @code
 * const ExpressionHandle filter = (camera == 7 || camera == 9) && duration >= 30 && !archived;
 * @endcode
 *
 * where camera and duration are properties and archived is a handle.
 *
 * What stands where:
 *     comparisons   the property on the left; a value, a property or a handle on the right. A
 *                   handle on the left wants a handle on the right.
 *     logic         handles on both sides. A chain of one kind stays flat: a && b && c has three.
 *     <<            two expressions become a list of exactly two: a << b << c is a list of the
 *                   list of a and b, and of c.
 *
 * A property leaves its name in the tree, nothing else, and need not live on. A value is bindable;
 * one that is to stay literal is written ConstExpression(value, false).
 *
 * @warning In a namespace that declares any operator of the same name these are not found; put
 *          `using ::operator==;` into it. long and size_t are no QVariant: cast to qlonglong or
 *          qulonglong. Conditions that may be missing go through BooleanOperator::join, as an
 *          empty handle makes an And NULL.
 */

class QDataStream;
class QTextStream;

// clang-format off
VOKIT_EXPORT vogen::Comparator operator<(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator<=(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator==(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator!=(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator>=(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator>(vogen::ExpressionHandle a, vogen::ExpressionHandle b);

VOKIT_EXPORT vogen::Comparator operator<(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::Comparator operator<=(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::Comparator operator==(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::Comparator operator!=(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::Comparator operator>=(const vogen::BaseProperty &a, const QVariant &b);
VOKIT_EXPORT vogen::Comparator operator>(const vogen::BaseProperty &a, const QVariant &b);

VOKIT_EXPORT vogen::Comparator operator<(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::Comparator operator<=(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::Comparator operator==(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::Comparator operator!=(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::Comparator operator>=(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::Comparator operator>(const vogen::BaseProperty &a, const vogen::BaseProperty &b);

VOKIT_EXPORT vogen::Comparator operator<(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator<=(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator==(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator!=(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator>=(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::Comparator operator>(const vogen::BaseProperty &a, vogen::ExpressionHandle b);

VOKIT_EXPORT vogen::BooleanOperator operator&&(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::BooleanOperator operator||(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::NotOperator operator!(vogen::ExpressionHandle operand);

VOKIT_EXPORT vogen::ExpressionList operator<<(vogen::ExpressionHandle a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::ExpressionList operator<<(const vogen::BaseProperty &a, vogen::ExpressionHandle b);
VOKIT_EXPORT vogen::ExpressionList operator<<(vogen::ExpressionHandle a, const vogen::BaseProperty &b);
VOKIT_EXPORT vogen::ExpressionList operator<<(const vogen::BaseProperty &a, const vogen::BaseProperty &b);
// clang-format on

/// SQL text, as Expression::operator QString() gives it. The second form is for nodes, which would
/// otherwise fit a handle and a QString alike.
VOKIT_EXPORT QTextStream &operator<<(QTextStream &stream, vogen::ExpressionHandle e);
VOKIT_EXPORT QTextStream &operator<<(QTextStream &stream, const vogen::Expression &e);

/// As Expression::writeExpression(); Expression::readExpression() reads it back.
VOKIT_EXPORT QDataStream &operator<<(QDataStream &stream, vogen::ExpressionHandle e);
VOKIT_EXPORT QDataStream &operator<<(QDataStream &stream, const vogen::Expression &e);
