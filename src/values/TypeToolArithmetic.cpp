#include <Vokit/TypeTool>

#include "time/MachineArithmetic_p.h"
#include "values/Numbers_p.h"

#include <Vokit/CTimeTranscoder>
#include <Vokit/TimeConversions>

#include <type_traits>

namespace vogen {

namespace {

constexpr auto gDay = static_cast<unsigned long long>(vo::CTimeTranscoder::MICROSECONDS_PER_DAY);
constexpr auto gDayAsDouble = static_cast<double>(gDay);

template <typename Number>
constexpr bool isDouble = std::is_same_v<Number, double>;

bool movesDates(const QVariant &value)
{
    return TypeTool::isDate(value.type()) || TypeTool::isNumeric(value.type());
}

} // namespace

// Both numbers in their common type; false, with nothing done, where there is none.
template <typename Operation>
bool TypeTool::compute(const QVariant &a, const QVariant &b, Operation operation, QVariant *result)
{
    ok = true;
    if (!isNumeric(a.type()) || !isNumeric(b.type()))
        return false;
    const ValueView left(a);
    const ValueView right(b);
    switch (coerceNumericTypes(left, right)) {
    case QVariant::Int:
        *result = operation(numberAs<int>(left), numberAs<int>(right));
        return true;
    case QVariant::UInt:
        *result = operation(numberAs<uint>(left), numberAs<uint>(right));
        return true;
    case QVariant::LongLong:
        *result = operation(numberAs<qlonglong>(left), numberAs<qlonglong>(right));
        return true;
    case QVariant::ULongLong:
        *result = operation(numberAs<qulonglong>(left), numberAs<qulonglong>(right));
        return true;
    case QVariant::Double:
        *result = operation(numberAs<double>(left), numberAs<double>(right));
        return true;
    default:
        return false;
    }
}

QVariant TypeTool::fail()
{
    ok = false;
    return {};
}

QVariant TypeTool::do_add(const QVariant &a, const QVariant &b)
{
    const auto add = [](auto x, auto y) {
        if constexpr (isDouble<decltype(x)>)
            return QVariant(x + y);
        else
            return QVariant(vo::wrappingAdd(x, y));
    };
    QVariant result;
    if (compute(a, b, add, &result))
        return result;
    if (isDate(a.type()) && movesDates(b))
        return dateAdd(a, dateMicroSeconds(b));
    if (isDate(b.type()) && isNumeric(a.type()))
        return dateAdd(b, dateMicroSeconds(a));
    if (a.canConvert(QVariant::String) && b.canConvert(QVariant::String))
        return QVariant(a.toString() + b.toString());
    return fail();
}

QVariant TypeTool::do_subtract(const QVariant &a, const QVariant &b)
{
    // An unsigned difference never wraps below zero; it changes its type as soon as it gets there.
    const auto subtract = [](auto x, auto y) {
        using Number = decltype(x);
        if constexpr (isDouble<Number>) {
            return QVariant(x - y);
        } else {
            if (std::is_signed_v<Number> || y < x)
                return QVariant(vo::wrappingSubtract(x, y));
            if constexpr (std::is_same_v<Number, uint>)
                return QVariant(static_cast<qlonglong>(x) - static_cast<qlonglong>(y));
            else
                return QVariant(static_cast<double>(x) - static_cast<double>(y));
        }
    };
    QVariant result;
    if (compute(a, b, subtract, &result))
        return result;
    if (isDate(a.type()) && movesDates(b))
        return dateAdd(a, vo::wrappingSubtract(0LL, dateMicroSeconds(b)));
    return fail();
}

QVariant TypeTool::do_multiply(const QVariant &a, const QVariant &b)
{
    const auto multiply = [](auto x, auto y) {
        if constexpr (isDouble<decltype(x)>)
            return QVariant(x * y);
        else
            return QVariant(vo::wrappingMultiply(x, y));
    };
    QVariant result;
    return compute(a, b, multiply, &result) ? result : fail();
}

QVariant TypeTool::do_divide(const QVariant &a, const QVariant &b)
{
    const auto divide = [this](auto x, auto y) {
        if (y == 0)
            return fail(); // no infinity for doubles either
        if constexpr (isDouble<decltype(x)>)
            return QVariant(x / y);
        else
            return QVariant(vo::wrappingDivide(x, y));
    };
    QVariant result;
    return compute(a, b, divide, &result) ? result : fail();
}

QVariant TypeTool::do_modulo(const QVariant &a, const QVariant &b)
{
    const auto modulo = [this](auto x, auto y) {
        if constexpr (isDouble<decltype(x)>)
            return fail();
        else
            return y == 0 ? fail() : QVariant(vo::wrappingModulo(x, y));
    };
    QVariant result;
    return compute(a, b, modulo, &result) ? result : fail();
}

namespace {

// An operation on bits as one on numbers: doubles have none, and that is no failure.
template <typename Operation>
auto onBits(Operation operation)
{
    return [operation](auto x, auto y) {
        if constexpr (isDouble<decltype(x)>)
            return QVariant();
        else
            return QVariant(static_cast<decltype(x)>(operation(x, y)));
    };
}

} // namespace

QVariant TypeTool::do_bitand(const QVariant &a, const QVariant &b)
{
    QVariant result;
    compute(a, b, onBits([](auto x, auto y) { return x & y; }), &result);
    return result;
}

QVariant TypeTool::do_bitor(const QVariant &a, const QVariant &b)
{
    QVariant result;
    compute(a, b, onBits([](auto x, auto y) { return x | y; }), &result);
    return result;
}

QVariant TypeTool::do_bitxor(const QVariant &a, const QVariant &b)
{
    QVariant result;
    compute(a, b, onBits([](auto x, auto y) { return x ^ y; }), &result);
    return result;
}

QVariant TypeTool::dateAdd(const QVariant &value, long long microSeconds)
{
    const long long moved = vo::wrappingAdd(dateMicroSeconds(value), microSeconds);
    const QDateTime dateTime = vo::fromMicroSeconds(moved);
    // Unsigned in all divisions: what lies before 1970 reads as far beyond the first day, and so
    // widens a Date or a Time.
    const auto total = static_cast<unsigned long long>(moved);
    switch (static_cast<int>(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
        return QVariant(static_cast<int>(total / 1000));
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return total % 1000 == 0 ? QVariant(static_cast<int>(total / 1000)) : QVariant(total);
    case QMetaType::Double:
        return QVariant(static_cast<double>(total) / gDayAsDouble);
    case QMetaType::QDate:
        return total % gDay == 0 ? QVariant(dateTime.date()) : QVariant(dateTime);
    case QMetaType::QTime:
        return total / gDay == 0 ? QVariant(dateTime.time()) : QVariant(dateTime);
    default:
        return QVariant(dateTime);
    }
}

namespace {

QVariant dateAsNumber(long long microSeconds, QVariant::Type type)
{
    const auto total = static_cast<unsigned long long>(microSeconds);
    switch (type) {
    case QVariant::Int: // cut to 32 bits first, divided then
        return QVariant(static_cast<int>(total) / 1000);
    case QVariant::UInt:
        return QVariant(static_cast<uint>(total) / 1000);
    case QVariant::Double:
        return QVariant(static_cast<double>(total) / gDayAsDouble);
    default:
        return QVariant(total);
    }
}

unsigned long long frameTime(const QVariant &number)
{
    if (number.type() == QVariant::Double)
        return vo::truncatedUnsigned(number.toDouble() * gDayAsDouble);
    return static_cast<unsigned long long>(TypeTool::dateMicroSeconds(number));
}

} // namespace

QVariant TypeTool::castDate(const QVariant &value, QVariant::Type type)
{
    if (isDate(value.type()) && isNumeric(type))
        return dateAsNumber(dateMicroSeconds(value), type);
    if (!isNumeric(value.type()) || !isDate(type))
        return {};
    const QDateTime dateTime = vo::fromFrameTime(frameTime(value));
    if (type == QVariant::Date)
        return QVariant(dateTime.date());
    if (type == QVariant::Time)
        return QVariant(dateTime.time());
    return QVariant(dateTime);
}

} // namespace vogen
