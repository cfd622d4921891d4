#include <Vokit/ArithmeticOperators>

#include "expressions/Operands_p.h"

using namespace vogen;

namespace {

using Handle = ExpressionHandle;
using Property = const BaseProperty &;
using Value = const QVariant &;
using Num = NumericOperator;

} // namespace

// clang-format off
Num operator+(Handle a, Handle b) { return {a, Num::Add, b}; }
Num operator-(Handle a, Handle b) { return {a, Num::Subtract, b}; }
Num operator*(Handle a, Handle b) { return {a, Num::Multiply, b}; }
Num operator/(Handle a, Handle b) { return {a, Num::Divide, b}; }
Num operator%(Handle a, Handle b) { return {a, Num::Modulo, b}; }
Num operator&(Handle a, Handle b) { return {a, Num::BitAnd, b}; }
Num operator|(Handle a, Handle b) { return {a, Num::BitOr, b}; }
Num operator^(Handle a, Handle b) { return {a, Num::BitXor, b}; }
Num operator+(const Expression &a, const Expression &b) { return {a, Num::Add, b}; }

Num operator+(Property a, Value b) { return {reference(a), Num::Add, bindable(b)}; }
Num operator-(Property a, Value b) { return {reference(a), Num::Subtract, bindable(b)}; }
Num operator*(Property a, Value b) { return {reference(a), Num::Multiply, bindable(b)}; }
Num operator/(Property a, Value b) { return {reference(a), Num::Divide, bindable(b)}; }
Num operator%(Property a, Value b) { return {reference(a), Num::Modulo, bindable(b)}; }
Num operator&(Property a, Value b) { return {reference(a), Num::BitAnd, bindable(b)}; }
Num operator|(Property a, Value b) { return {reference(a), Num::BitOr, bindable(b)}; }
Num operator^(Property a, Value b) { return {reference(a), Num::BitXor, bindable(b)}; }

UnaryOperator operator-(Handle operand) { return {UnaryOperator::Minus, operand}; }
UnaryOperator operator-(Property property) { return {UnaryOperator::Minus, reference(property)}; }
UnaryOperator operator~(Handle operand) { return {UnaryOperator::BitNot, operand}; }

Handle operator+(Handle operand) { return operand; }
ValueExpression operator+(Property property) { return reference(property); }
// clang-format on
