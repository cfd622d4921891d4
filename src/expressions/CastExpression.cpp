#include <Vokit/CastExpression>

#include <Vokit/TypeTool>

#include <QDataStream>
#include <QTextStream>

namespace vogen {

namespace {
constexpr qint32 gRecordVersion = 1;
}

CastExpression::CastExpression(QVariant::Type targetType, ExpressionHandle e)
    : type(targetType)
    , operand(e)
{}

CastExpression::~CastExpression() = default;

QVariant CastExpression::evaluate(const PropertySet &properties, bool *isConstant) const
{
    QVariant value = operand->evaluate(properties, isConstant);
    if (!value.canConvert(type))
        return TypeTool::castDate(value, type);
    value.convert(type); // what it gives counts, not whether it says that all went well
    return value;
}

Expression *CastExpression::clone() const
{
    return new CastExpression(*this);
}

bool CastExpression::equals(const Expression *other) const
{
    const auto *cast = dynamic_cast<const CastExpression *>(other);
    return cast && type == cast->type && operand.equals(cast->operand);
}

void CastExpression::print(QTextStream &stream, PrintStyle style) const
{
    const char *const name = QVariant::typeToName(type);
    if (style & PrintCode) {
        stream << '(' << name << ')';
        operand->print(stream, style | PrintNested);
    } else {
        stream << "CAST(";
        operand->print(stream, style);
        stream << " AS " << name << ')';
    }
}

void CastExpression::collectPlaceholders(QList<QVariant> &values) const
{
    const int before = values.size();
    operand->collectPlaceholders(values);
    for (int i = before; i < values.size(); ++i)
        values[i].convert(type);
}

bool CastExpression::isEmpty() const
{
    return operand->isEmpty();
}

void CastExpression::write(QDataStream &stream) const
{
    stream << gRecordVersion << static_cast<qint32>(type);
    writeExpression(stream, operand);
}

void CastExpression::read(QDataStream &stream)
{
    qint32 version = 0;
    qint32 code = 0;
    stream >> version >> code;
    type = static_cast<QVariant::Type>(code);
    operand = readExpression(stream);
}

// clang-format off
CastExpression toBool(ExpressionHandle e) { return {QVariant::Bool, e}; }
CastExpression toInt(ExpressionHandle e) { return {QVariant::Int, e}; }
CastExpression toUInt(ExpressionHandle e) { return {QVariant::UInt, e}; }
CastExpression toLongLong(ExpressionHandle e) { return {QVariant::LongLong, e}; }
CastExpression toULongLong(ExpressionHandle e) { return {QVariant::ULongLong, e}; }
CastExpression toDouble(ExpressionHandle e) { return {QVariant::Double, e}; }
CastExpression toString(ExpressionHandle e) { return {QVariant::String, e}; }
CastExpression toDate(ExpressionHandle e) { return {QVariant::Date, e}; }
CastExpression toTime(ExpressionHandle e) { return {QVariant::Time, e}; }
CastExpression toDateTime(ExpressionHandle e) { return {QVariant::DateTime, e}; }
// clang-format on

} // namespace vogen
