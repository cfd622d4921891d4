#include <Vokit/ExpressionList>

#include "expressions/Operands_p.h"
#include "expressions/PrintStyle_p.h"

#include <QTextStream>

namespace vogen {

ExpressionList::ExpressionList() = default;

ExpressionList::ExpressionList(const QList<QVariant> &values)
{
    for (const QVariant &value : values)
        append(value);
}

ExpressionList::ExpressionList(ExpressionHandle handle)
{
    if (const auto *list = dynamic_cast<const ExpressionList *>(handle.constData()))
        operands += operandsOf(*list);
    else
        append(handle);
}

ExpressionList::ExpressionList(ExpressionHandle first, ExpressionHandle second)
{
    append(first);
    append(second);
}

ExpressionList::~ExpressionList() = default;

QVariant ExpressionList::evaluate(const PropertySet &properties, bool *isConstant) const
{
    QList<QVariant> values;
    bool allConstant = true;
    for (const ExpressionHandle &operand : operands) {
        bool constant = false;
        values.append(operand->evaluate(properties, &constant));
        allConstant &= constant;
    }
    if (isConstant)
        *isConstant = allConstant;
    return values;
}

Expression *ExpressionList::clone() const
{
    return new ExpressionList(*this);
}

bool ExpressionList::equals(const Expression *other) const
{
    return dynamic_cast<const ExpressionList *>(other) && Operator::equals(other);
}

void ExpressionList::print(QTextStream &stream, PrintStyle style) const
{
    printOperands(stream, without(style, PrintNested), 0, ",");
}

bool ExpressionList::isEmpty() const
{
    return operands.isEmpty();
}

ExpressionList &ExpressionList::append(const QVariant &value)
{
    Operator::append(bindable(value));
    return *this;
}

ExpressionList &ExpressionList::append(ExpressionHandle handle)
{
    Operator::append(handle);
    return *this;
}

ExpressionList &ExpressionList::append(const ExpressionList &other)
{
    operands += operandsOf(other);
    return *this;
}

ExpressionHandle ExpressionList::empty()
{
    return {};
}

} // namespace vogen
