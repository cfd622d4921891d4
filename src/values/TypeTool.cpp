#include <Vokit/TypeTool>

#include "properties/ValueView_p.h"
#include "time/MachineArithmetic_p.h"
#include "values/Numbers_p.h"

#include <Vokit/CTimeTranscoder>
#include <Vokit/IllegalArgumentException>
#include <Vokit/TimeConversions>

#include <cmath>
#include <limits>

namespace vogen {

using vo::CTimeTranscoder;

constexpr int INT_LEAST = std::numeric_limits<int>::min();
constexpr int INT_GREATEST = std::numeric_limits<int>::max();

const QDate TypeTool::EPOCH = QDate::fromJulianDay(2440588);
const QTime TypeTool::MIDNIGHT = QTime::fromMSecsSinceStartOfDay(0);
const QVariant TypeTool::INVALID;

namespace {

bool isNumber(ValueView value)
{
    return TypeTool::isNumeric(static_cast<QVariant::Type>(value.type()));
}

bool isDateLike(ValueView value)
{
    return TypeTool::isDate(static_cast<QVariant::Type>(value.type()));
}

bool becomesText(const QVariant &value)
{
    return value.canConvert(QVariant::String);
}

// a - b, wrapped in 64 bits and then cut to int: the wrap is part of the rule.
int saturatedDifference(long long a, long long b)
{
    return static_cast<int>(qBound<long long>(INT_LEAST, vo::wrappingSubtract(a, b), INT_GREATEST));
}

int saturatedDifference(double a, double b)
{
    const double difference = a - b;
    if (std::isnan(difference) || difference < INT_LEAST)
        return INT_LEAST;
    if (difference > INT_GREATEST)
        return INT_GREATEST;
    return static_cast<int>(difference);
}

// Of a date or a number.
long long microSeconds(ValueView value)
{
    constexpr long long perDay = CTimeTranscoder::MICROSECONDS_PER_DAY;
    switch (value.type()) {
    case QMetaType::Int:
    case QMetaType::UInt:
        return numberAs<long long>(value) * 1000;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return numberAs<long long>(value);
    case QMetaType::Double:
        return vo::truncated(value.as<double>() * perDay);
    case QMetaType::QDate:
        return vo::wrappingMultiply<long long>(TypeTool::EPOCH.daysTo(value.as<QDate>()), perDay);
    case QMetaType::QTime:
        return TypeTool::MIDNIGHT.msecsTo(value.as<QTime>()) * 1000LL;
    default:
        return vo::toMicroSeconds(value.as<QDateTime>());
    }
}

} // namespace

bool TypeTool::throwOK() const
{
    if (!ok)
        throw vo::IllegalArgumentException(QString(), QStringLiteral("can't compare values"),
                                           nullptr);
    return true;
}

bool TypeTool::compareInPlace(ValueView a, ValueView b, int *order) const
{
    if (a.type() == QMetaType::QString && b.type() == QMetaType::QString) {
        *order = QString::compare(a.as<QString>(), b.as<QString>());
        return true;
    }
    if (isNumber(a) && isNumber(b)) {
        const QVariant::Type common = coerceNumericTypes(a, b);
        if (common == QVariant::Invalid)
            return false; // left to the comparison of texts
        if (common == QVariant::ULongLong || common == QVariant::Double)
            *order = saturatedDifference(numberAs<double>(a), numberAs<double>(b));
        else
            *order = saturatedDifference(numberAs<long long>(a), numberAs<long long>(b));
        return true;
    }
    if ((isDateLike(a) && (isDateLike(b) || isNumber(b))) || (isDateLike(b) && isNumber(a))) {
        *order = saturatedDifference(microSeconds(a), microSeconds(b));
        return true;
    }
    return false;
}

bool TypeTool::matchInPlace(ValueView a, ValueView b, int *order) const
{
    if (a.type() == QMetaType::QString && b.type() == QMetaType::QString) {
        *order = a.as<QString>() == b.as<QString>() ? 0 : 1; // asks for the lengths first
        return true;
    }
    return compareInPlace(a, b, order);
}

int TypeTool::compare(const QVariant &a, const QVariant &b)
{
    ok = true;
    int order = 0;
    if (compareInPlace(ValueView(a), ValueView(b), &order))
        return order;
    if (isList(a.type()) && isList(b.type())) {
        QVariantList left = a.toList();
        QVariantList right = b.toList();
        return compareList(left, right);
    }
    if (becomesText(a) && becomesText(b))
        return QString::compare(a.toString(), b.toString());
    ok = false;
    return 0;
}

bool TypeTool::equals(const QVariant &a, const QVariant &b)
{
    const int order = compare(a, b);
    if (ok)
        return order == 0;

    const QVariant::Type common = coerceOtherTypes(a, b);
    ok = common != QVariant::Invalid;
    // Only whether both conversions end alike counts, not what they give.
    QVariant left = a;
    QVariant right = b;
    return ok && left.convert(common) == right.convert(common);
}

bool TypeTool::contains(const QList<QVariant> &list, const QVariant &value)
{
    for (const QVariant &item : list) {
        if (equals(item, value))
            return true;
    }
    return false;
}

QVariant::Type TypeTool::coerceNumericTypes(const QVariant &a, const QVariant &b) const
{
    return coerceNumericTypes(ValueView(a), ValueView(b));
}

QVariant::Type TypeTool::coerceNumericTypes(ValueView a, ValueView b) const
{
    const auto left = static_cast<QVariant::Type>(a.type());
    const auto right = static_cast<QVariant::Type>(b.type());
    if (left == right)
        return left;
    if (left == QVariant::Double || right == QVariant::Double)
        return QVariant::Double;
    if (!isNumeric(left) || !isNumeric(right))
        return QVariant::Invalid;

    const auto isUnsigned = [](QVariant::Type type) {
        return type == QVariant::UInt || type == QVariant::ULongLong;
    };
    if (isUnsigned(left) && isUnsigned(right))
        return QVariant::ULongLong;
    if (!isUnsigned(left) && !isUnsigned(right))
        return QVariant::LongLong;

    // One signed side and one unsigned. A constant takes the other side's type when it fits.
    const bool signedIsLeft = !isUnsigned(left);
    const ValueView signedSide = signedIsLeft ? a : b;
    const ValueView unsignedSide = signedIsLeft ? b : a;
    const QVariant::Type signedType = signedIsLeft ? left : right;
    const QVariant::Type unsignedType = signedIsLeft ? right : left;
    const bool signedConstant = signedIsLeft ? leftConstant : rightConstant;
    const bool unsignedConstant = signedIsLeft ? rightConstant : leftConstant;
    if (signedType == QVariant::LongLong && unsignedType == QVariant::UInt)
        return QVariant::LongLong; // holds all of both

    // Strict: the largest signed value itself does not count as fitting.
    const qulonglong bound = signedType == QVariant::Int
                                 ? static_cast<qulonglong>(INT_GREATEST)
                                 : static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    const bool fitsSigned = unsignedConstant && numberAs<qulonglong>(unsignedSide) < bound;
    const bool fitsUnsigned = signedConstant && numberAs<qlonglong>(signedSide) >= 0;

    // When both fit, the right side is the one that changes, but for UInt against Int, where the
    // left one is.
    const bool signedFirst = signedIsLeft || unsignedType == QVariant::UInt;
    if (fitsSigned && (signedFirst || !fitsUnsigned))
        return signedType;
    if (fitsUnsigned)
        return unsignedType;
    return unsignedType == QVariant::UInt ? QVariant::LongLong : QVariant::Invalid;
}

QVariant::Type TypeTool::coerceOtherTypes(const QVariant &a, const QVariant &b) const
{
    if (b.canConvert(a.type()))
        return a.type();
    if (a.canConvert(b.type()))
        return b.type();
    if (becomesText(a) && becomesText(b))
        return QVariant::String;
    return QVariant::Invalid;
}

int TypeTool::compareList(QList<QVariant> &a, QList<QVariant> &b)
{
    auto left = a.begin();
    auto right = b.begin();
    for (; left != a.end() && right != b.end(); ++left, ++right) {
        const int order = compare(*left, *right);
        if (order != 0 || !ok)
            return order;
    }
    if (left == a.end())
        return right == b.end() ? 0 : INT_LEAST;
    return INT_GREATEST;
}

QString TypeTool::invertString(const QString &string)
{
    constexpr ushort mark = 0xFFFF;
    QString inverted = string;
    bool marked = false;
    for (int i = string.size() - 1; i >= 0; --i) {
        const ushort unit = i < inverted.size() ? inverted.at(i).unicode() : ushort(0);
        if (unit == mark) {
            // The units whose code is the index go, not the unit at the index: texts that were
            // inverted once are compared with texts inverted now.
            marked = true;
            inverted.remove(QChar(static_cast<ushort>(i)), Qt::CaseSensitive);
            continue;
        }
        // After a removal the index may lie behind the end; the gap is filled with blanks.
        if (i >= inverted.size())
            inverted.resize(i + 1, QLatin1Char(' '));
        inverted[i] = QChar(static_cast<ushort>(~unit));
    }
    if (!marked)
        inverted.append(QChar(mark));
    return inverted;
}

bool TypeTool::isNumeric(QVariant::Type type)
{
    switch (type) {
    case QVariant::Int:
    case QVariant::UInt:
    case QVariant::LongLong:
    case QVariant::ULongLong:
    case QVariant::Double:
        return true;
    default:
        return false;
    }
}

bool TypeTool::isDate(QVariant::Type type)
{
    return type == QVariant::Date || type == QVariant::Time || type == QVariant::DateTime;
}

bool TypeTool::isList(QVariant::Type type)
{
    return type == QVariant::List || type == QVariant::StringList;
}

long long TypeTool::dateMicroSeconds(const QVariant &value)
{
    if (isNumeric(value.type()) || isDate(value.type()))
        return microSeconds(ValueView(value));
    if (!becomesText(value))
        return 0;
    return vo::toMicroSeconds(QDateTime::fromString(value.toString(), Qt::TextDate));
}

double TypeTool::dateSeconds(const QVariant &value)
{
    return static_cast<double>(dateMicroSeconds(value)) / 1000000.0;
}

} // namespace vogen
