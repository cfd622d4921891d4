#include <Vokit/ConstExpression>

#include "IsExactly_p.h"
#include "expressions/PrintStyle_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/TypeTool>

#include <QDataStream>
#include <QDateTime>
#include <QRegExp>
#include <QTextStream>
#include <QTimeZone>

#include <new>

namespace vogen {

namespace {

constexpr qint32 gRecordVersion = 1;

template <class Container>
void forgetLostZones(QVariant &value, Container items);

// A date whose zone this machine doesn't know is an invalid one. Qt reads it as such, but would
// crash when it is to be written again.
void forgetLostZones(QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QDateTime: {
        const QDateTime date = value.toDateTime();
        if (date.timeSpec() == Qt::TimeZone && !date.timeZone().isValid())
            value = QDateTime();
        break;
    }
    case QMetaType::QVariantList:
        return forgetLostZones(value, value.toList());
    case QMetaType::QVariantMap:
        return forgetLostZones(value, value.toMap());
    case QMetaType::QVariantHash:
        return forgetLostZones(value, value.toHash());
    default:
        break;
    }
}

template <class Container>
void forgetLostZones(QVariant &value, Container items)
{
    for (QVariant &item : items)
        forgetLostZones(item);
    value = items;
}

} // namespace

ConstExpression::ConstExpression(const QVariant &literal, bool bindable)
    : value(literal)
    , placeholder(bindable)
{}

ConstExpression::~ConstExpression() = default;

QVariant ConstExpression::evaluate(const PropertySet & /*properties*/, bool *isConstant) const
{
    if (isConstant)
        *isConstant = true;
    return value;
}

Expression *ConstExpression::clone() const
{
    return new ConstExpression(*this);
}

bool ConstExpression::equals(const Expression *other) const
{
    const auto *constant = dynamic_cast<const ConstExpression *>(other);
    return constant && value == constant->value;
}

void ConstExpression::print(QTextStream &stream, PrintStyle style) const
{
    printValue(stream, value, placeholder ? style : without(style, PrintPlaceholders));
}

void ConstExpression::collectPlaceholders(QList<QVariant> &values) const
{
    if (!placeholder)
        return;
    if (TypeTool::isDate(value.type()))
        values.append(QVariant(static_cast<qlonglong>(TypeTool::dateMicroSeconds(value))));
    else
        values.append(value);
}

bool ConstExpression::isEmpty() const
{
    return value.type() == QVariant::Invalid;
}

void ConstExpression::write(QDataStream &stream) const
{
    stream << gRecordVersion << placeholder << value;
}

void ConstExpression::read(QDataStream &stream)
{
    qint32 version = 0;
    stream >> version >> placeholder;
    try {
        stream >> value;
    } catch (const std::bad_alloc &) {
        value = QVariant(); // Qt believed a length that lies
    }
    forgetLostZones(value);
}

ConstExpression ConstExpression::time(int hour, int minute, int second, int millisecond)
{
    return {QTime(hour, minute, second, millisecond), false};
}

ConstExpression ConstExpression::date(int year, int month, int day)
{
    return {QDate(year, month, day), false};
}

ConstExpression ConstExpression::dateTime(int year, int month, int day, int hour, int minute,
                                          int second, int millisecond)
{
    return {
        QDateTime(QDate(year, month, day), QTime(hour, minute, second, millisecond), Qt::LocalTime),
        false};
}

void ConstExpression::printValue(QTextStream &stream, const QVariant &literal, PrintStyle style)
{
    if (style & PrintPlaceholders)
        stream << '?';
    else if (TypeTool::isNumeric(literal.type()))
        stream << stringValue(literal);
    else if (TypeTool::isDate(literal.type())) {
        if (style & PrintSql)
            stream << QString::number(TypeTool::dateMicroSeconds(literal)); // decimal in any stream
        else
            stream << stringValue(literal);
    } else if (style & PrintSql)
        stream << '\'' << stringValue(literal).replace(QLatin1Char('\''), QLatin1String("''"))
               << '\'';
    else
        stream << '"' << stringValue(literal) << '"';
}

QString ConstExpression::stringValue(const QVariant &literal)
{
    return literal.type() == QVariant::RegExp ? literal.toRegExp().pattern() : literal.toString();
}

ValueView ConstExpression::valueInPlace(const PropertySet & /*properties*/) const
{
    if (!isExactly<ConstExpression>(*this))
        return {}; // a client's class may evaluate in its own way
    return ValueView(value, true);
}

} // namespace vogen
