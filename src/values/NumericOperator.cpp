#include <Vokit/NumericOperator>

#include "expressions/NodeAccess_p.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionList>
#include <Vokit/TypeTool>
#include <Vokit/UnaryOperator>

#include <iterator>
#include <utility>

namespace vogen {

namespace {

/// What an operation is: how it is computed, and how it prints.
struct Operation
{
    QVariant (TypeTool::*compute)(const QVariant &, const QVariant &);
    const char *text;
    const char *codeText;
};

// By NumOp.
constexpr Operation gOperations[] = {
    {&TypeTool::do_add, "+", "+"},        {&TypeTool::do_subtract, "-", "-"},
    {&TypeTool::do_multiply, "*", "*"},   {&TypeTool::do_divide, "/", "/"},
    {&TypeTool::do_modulo, " mod ", "%"}, {&TypeTool::do_bitand, "&", "&"},
    {&TypeTool::do_bitor, "|", "|"},      {&TypeTool::do_bitxor, "^", "^"},
};

// Null for a code that no enumerator names, which only a damaged stream brings.
const Operation *find(NumericOperator::NumOp operation)
{
    const auto index = static_cast<quint32>(operation);
    return index < std::size(gOperations) ? &gOperations[index] : nullptr;
}

static_assert(int(NumericOperator::Add) == int(TypeTool::Arithmetic::Add) &&
              int(NumericOperator::BitXor) == int(TypeTool::Arithmetic::BitXor));

// Of a code that no enumerator names, it is none either.
TypeTool::Arithmetic arithmetic(NumericOperator::NumOp operation)
{
    return static_cast<TypeTool::Arithmetic>(operation);
}

const ConstExpression gZero(QVariant(0), false);
[[maybe_unused]] const bool gRegistered[] = {
    Expression::registerExpressionClass(NumericOperator(gZero, NumericOperator::Add, gZero)),
    Expression::registerExpressionClass(UnaryOperator(UnaryOperator::Minus, gZero)),
};

} // namespace

NumericOperator::NumericOperator(ExpressionHandle left, NumOp operation, ExpressionHandle right)
    : op(operation)
{
    append(left);
    append(right);
}

NumericOperator::NumericOperator(NumOp operation)
    : op(operation)
{}

NumericOperator::~NumericOperator() = default;

QVariant NumericOperator::evaluate(const PropertySet &properties, bool *isConstant) const
{
    if (operands.isEmpty())
        return {};
    const Expression &first = *operands.first();
    QVariant value;
    ValueView left = NodeAccess::valueInPlace(first, properties);
    bool constant = left.isConstant();
    bool evaluated = false; // else the first value lies in its node or property
    const auto evaluateFirst = [&] {
        value = first.evaluate(properties, &constant);
        evaluated = true;
    };
    if (left.isNull() || operands.size() == 1) {
        evaluateFirst();
        left = ValueView(value);
    }

    bool done = true;
    for (int i = 1; i < operands.size() && done; ++i) {
        const Expression &operand = *operands.at(i);
        const ValueView right = NodeAccess::valueInPlace(operand, properties);
        bool operandConstant = right.isConstant();
        TypeTool tool(constant, operandConstant);
        QVariant result;
        if (!right.isNull() && tool.computeInPlace(arithmetic(op), left, right, &result)) {
            value = std::move(result);
            done = tool.wasOK();
        } else {
            if (!evaluated)
                evaluateFirst(); // before another operand runs
            const QVariant next = operand.evaluate(properties, &operandConstant);
            done = apply(value, constant, op, next, operandConstant);
        }
        constant = constant && operandConstant; // of an unknown operation, too
        evaluated = true;
        left = ValueView(value);
    }
    if (isConstant)
        *isConstant = constant;
    return done ? value : QVariant();
}

Expression *NumericOperator::clone() const
{
    return new NumericOperator(*this);
}

bool NumericOperator::equals(const Expression *other) const
{
    const auto *numeric = dynamic_cast<const NumericOperator *>(other);
    return numeric && op == numeric->op && Operator::equals(other);
}

void NumericOperator::print(QTextStream &stream, PrintStyle style) const
{
    const Operation *known = find(op);
    if (known)
        printChain(stream, style, style & PrintCode ? known->codeText : known->text);
    else
        printChain(stream, style, "");
}

void NumericOperator::write(QDataStream &stream) const
{
    writeWithCode(stream, op);
}

void NumericOperator::read(QDataStream &stream)
{
    op = static_cast<NumOp>(readWithCode(stream));
}

NumericOperator &NumericOperator::append(ExpressionHandle operand)
{
    Operator::append(operand);
    return *this;
}

ExpressionHandle NumericOperator::join(const ExpressionList &list, NumOp operation)
{
    return joinOperands(list, NumericOperator(operation));
}

bool NumericOperator::apply(QVariant &value, bool &isConstant, NumOp operation,
                            const QVariant &operand, bool operandConstant)
{
    const Operation *known = find(operation);
    if (!known)
        return false;
    TypeTool tool(isConstant, operandConstant);
    value = (tool.*known->compute)(value, operand);
    isConstant = isConstant && operandConstant;
    return tool.wasOK();
}

// clang-format off
NumericOperator NumericOperator::operator+(ExpressionHandle right) { return Operator::joined(*this, Add, right); }
NumericOperator NumericOperator::operator-(ExpressionHandle right) { return Operator::joined(*this, Subtract, right); }
NumericOperator NumericOperator::operator*(ExpressionHandle right) { return Operator::joined(*this, Multiply, right); }
NumericOperator NumericOperator::operator/(ExpressionHandle right) { return Operator::joined(*this, Divide, right); }
NumericOperator NumericOperator::operator%(ExpressionHandle right) { return Operator::joined(*this, Modulo, right); }
NumericOperator NumericOperator::operator&(ExpressionHandle right) { return Operator::joined(*this, BitAnd, right); }
NumericOperator NumericOperator::operator|(ExpressionHandle right) { return Operator::joined(*this, BitOr, right); }
NumericOperator NumericOperator::operator^(ExpressionHandle right) { return Operator::joined(*this, BitXor, right); }
NumericOperator NumericOperator::operator+(const Expression &right) { return Operator::joined(*this, Add, right); }

NumericOperator &NumericOperator::operator+=(ExpressionHandle right) { return Operator::extend(*this, Add, right); }
NumericOperator &NumericOperator::operator-=(ExpressionHandle right) { return Operator::extend(*this, Subtract, right); }
NumericOperator &NumericOperator::operator*=(ExpressionHandle right) { return Operator::extend(*this, Multiply, right); }
NumericOperator &NumericOperator::operator/=(ExpressionHandle right) { return Operator::extend(*this, Divide, right); }
NumericOperator &NumericOperator::operator%=(ExpressionHandle right) { return Operator::extend(*this, Modulo, right); }
NumericOperator &NumericOperator::operator&=(ExpressionHandle right) { return Operator::extend(*this, BitAnd, right); }
NumericOperator &NumericOperator::operator|=(ExpressionHandle right) { return Operator::extend(*this, BitOr, right); }
NumericOperator &NumericOperator::operator^=(ExpressionHandle right) { return Operator::extend(*this, BitXor, right); }
// clang-format on

} // namespace vogen
