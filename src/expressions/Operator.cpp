#include <Vokit/Operator>

#include <QDataStream>
#include <QTextStream>

#include <algorithm>

namespace vogen {

namespace {
constexpr qint32 gRecordVersion = 1;

constexpr qint32 gUsualOperandCount = 16;

// How far a list is filled up with operands that the data doesn't hold. A damaged count may promise
// two thousand millions of them, in each of the operators that nest around it.
constexpr qint32 gMissingOperandLimit = 1024;
} // namespace

Operator::Operator() = default;
Operator::~Operator() = default;

bool Operator::equals(const Expression *other) const
{
    const auto *node = dynamic_cast<const Operator *>(other);
    return node && std::equal(operands.begin(), operands.end(), node->operands.begin(),
                              node->operands.end(),
                              [](const ExpressionHandle &a, const ExpressionHandle &b) {
                                  return Expression::equals(a.constData(), b.constData());
                              });
}

void Operator::collectPlaceholders(QList<QVariant> &values) const
{
    for (const ExpressionHandle &operand : operands)
        operand->collectPlaceholders(values);
}

bool Operator::isEmpty() const
{
    return operands.isEmpty();
}

void Operator::write(QDataStream &stream) const
{
    stream << gRecordVersion << static_cast<qint32>(operands.size());
    for (const ExpressionHandle &operand : operands)
        writeExpression(stream, operand);
}

void Operator::read(QDataStream &stream)
{
    qint32 version = 0;
    qint32 count = 0;
    stream >> version >> count;
    operands.clear();
    operands.reserve(qBound(0, count, gUsualOperandCount));
    while (operands.size() < count) {
        operands.append(readExpression(stream));
        if (stream.status() != QDataStream::Ok && stream.atEnd())
            break;
    }
    // Behind the end of the data every operand is the empty expression.
    while (operands.size() < std::min(count, gMissingOperandLimit))
        operands.append(ExpressionHandle());
}

void Operator::writeWithCode(QDataStream &stream, qint32 code) const
{
    stream << gRecordVersion << code;
    Operator::write(stream);
}

qint32 Operator::readWithCode(QDataStream &stream)
{
    qint32 version = 0;
    qint32 code = 0;
    stream >> version >> code;
    Operator::read(stream);
    return code;
}

void Operator::append(ExpressionHandle operand)
{
    operands.append(operand);
}

const Expression &Operator::missingOperand()
{
    static const ExpressionHandle none;
    return *none;
}

void Operator::printOperands(QTextStream &stream, PrintStyle style, int first,
                             const char *separator) const
{
    printList(stream, style, operands, first, separator);
}

void Operator::printList(QTextStream &stream, PrintStyle style,
                         const QList<ExpressionHandle> &nodes, int first, const char *separator)
{
    for (int i = first; i < nodes.size(); ++i) {
        if (i > first)
            stream << separator;
        nodes.at(i)->print(stream, style);
    }
}

void Operator::printChain(QTextStream &stream, PrintStyle style, const char *separator) const
{
    const bool brackets = (style & PrintNested) && operands.size() >= 2;
    if (brackets)
        stream << '(';
    printOperands(stream, style | PrintNested, 0, separator);
    if (brackets)
        stream << ')';
}

} // namespace vogen
