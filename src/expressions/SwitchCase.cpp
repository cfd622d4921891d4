#include <Vokit/SwitchCase>

#include "expressions/Operands_p.h"
#include "expressions/PrintStyle_p.h"

#include <Vokit/TypeTool>

#include <QTextStream>

namespace vogen {

SwitchCase::SwitchCase(ExpressionHandle selector)
{
    append(selector);
    append(ExpressionHandle());
}

SwitchCase::SwitchCase(const BaseProperty &property)
    : SwitchCase(ExpressionHandle(reference(property)))
{}

SwitchCase::~SwitchCase() = default;

QVariant SwitchCase::evaluate(const PropertySet &properties, bool *isConstant) const
{
    // Constant by rule, though the operands may read properties: in a comparison around it the
    // other side's type decides.
    TypeTool tool(true, true);
    if (isConstant)
        *isConstant = true;
    const QVariant selector = operandAt(Selector).evaluate(properties, nullptr);
    for (int i = FirstCase; i < operands.size(); i += 2) {
        if (tool.equals(selector, operandAt(i).evaluate(properties, nullptr)))
            return operandAt(i + 1).evaluate(properties, nullptr);
    }
    return operandAt(Default).evaluate(properties, nullptr);
}

Expression *SwitchCase::clone() const
{
    return new SwitchCase(*this);
}

bool SwitchCase::equals(const Expression *other) const
{
    return dynamic_cast<const SwitchCase *>(other) && Operator::equals(other);
}

void SwitchCase::print(QTextStream &stream, PrintStyle style) const
{
    const PrintStyle inner = without(style, PrintNested);
    if (style & PrintSql)
        printSql(stream, inner);
    else if (operandAt(Selector).isEmpty())
        printIfElse(stream, inner);
    else
        printSwitch(stream, inner);
}

SwitchCase &SwitchCase::switchCase(ExpressionHandle value, ExpressionHandle result)
{
    append(value);
    append(result);
    return *this;
}

SwitchCase &SwitchCase::defaultCase(ExpressionHandle result)
{
    operands[Default] = result;
    return *this;
}

// A missing selector leaves two blanks behind CASE: texts are compared with stored ones.
void SwitchCase::printSql(QTextStream &stream, PrintStyle style) const
{
    stream << "CASE ";
    if (!operandAt(Selector).isEmpty())
        operandAt(Selector).print(stream, style);
    for (int i = FirstCase; i < operands.size(); i += 2) {
        stream << " WHEN ";
        operandAt(i).print(stream, style);
        stream << " THEN ";
        operandAt(i + 1).print(stream, style);
    }
    if (hasDefault()) {
        stream << " ELSE ";
        operandAt(Default).print(stream, style);
    }
    stream << " END";
}

void SwitchCase::printSwitch(QTextStream &stream, PrintStyle style) const
{
    stream << "switch(";
    operandAt(Selector).print(stream, style);
    stream << ")\n{\n";
    for (int i = FirstCase; i < operands.size(); i += 2) {
        stream << "\tcase ";
        operandAt(i).print(stream, style);
        stream << ": return ";
        operandAt(i + 1).print(stream, style);
        stream << ";\n";
    }
    if (hasDefault()) {
        stream << "default: return ";
        operandAt(Default).print(stream, style);
    }
    stream << "\n}\n";
}

void SwitchCase::printIfElse(QTextStream &stream, PrintStyle style) const
{
    for (int i = FirstCase; i < operands.size(); i += 2) {
        if (i > FirstCase)
            stream << "else ";
        stream << "if (";
        operandAt(i).print(stream, style);
        stream << ") return ";
        operandAt(i + 1).print(stream, style);
        stream << ";\n";
    }
    if (hasDefault()) {
        stream << "else return ";
        operandAt(Default).print(stream, style);
    }
}

bool SwitchCase::hasDefault() const
{
    return !operandAt(Default).isEmpty();
}

SwitchCase ifThen(ExpressionHandle condition, ExpressionHandle thenResult,
                  ExpressionHandle elseResult)
{
    SwitchCase node{ExpressionHandle()};
    node.switchCase(condition, thenResult).defaultCase(elseResult);
    return node;
}

} // namespace vogen
