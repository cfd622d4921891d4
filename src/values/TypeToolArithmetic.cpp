#include <Vokit/TypeTool>

#include "time/MachineArithmetic_p.h"
#include "values/Numbers_p.h"

#include <Vokit/CTimeTranscoder>
#include <Vokit/TimeConversions>

#include <functional>
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

// Two numbers of one type. Integers wrap; what has no result is invalid, and a failure where it
// clears ok.

template <typename Number>
QVariant sum(Number x, Number y)
{
    if constexpr (isDouble<Number>)
        return QVariant(x + y);
    else
        return QVariant(vo::wrappingAdd(x, y));
}

// An unsigned difference never wraps below zero; it changes its type as soon as it gets there.
template <typename Number>
QVariant difference(Number x, Number y)
{
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
}

template <typename Number>
QVariant product(Number x, Number y)
{
    if constexpr (isDouble<Number>)
        return QVariant(x * y);
    else
        return QVariant(vo::wrappingMultiply(x, y));
}

// There is no infinity for doubles either.
template <typename Number>
QVariant quotient(Number x, Number y, bool &ok)
{
    ok = y != 0;
    if (!ok)
        return {};
    if constexpr (isDouble<Number>)
        return QVariant(x / y);
    else
        return QVariant(vo::wrappingDivide(x, y));
}

template <typename Number>
QVariant remainder(Number x, Number y, bool &ok)
{
    if constexpr (isDouble<Number>) {
        ok = false;
        return {};
    } else {
        ok = y != 0;
        return ok ? QVariant(vo::wrappingModulo(x, y)) : QVariant();
    }
}

// Doubles have no bits, and that is no failure.
template <typename Number, typename Operation>
QVariant bits(Number x, Number y, Operation operation)
{
    if constexpr (isDouble<Number>)
        return {};
    else
        return QVariant(static_cast<Number>(operation(x, y)));
}

} // namespace

// Both numbers in their common type; false, with nothing done, where there is none.
template <typename Operation>
bool TypeTool::compute(ValueView a, ValueView b, Operation operation, QVariant *result)
{
    switch (coerceNumericTypes(a, b)) {
    case QVariant::Int:
        *result = operation(numberAs<int>(a), numberAs<int>(b));
        return true;
    case QVariant::UInt:
        *result = operation(numberAs<uint>(a), numberAs<uint>(b));
        return true;
    case QVariant::LongLong:
        *result = operation(numberAs<qlonglong>(a), numberAs<qlonglong>(b));
        return true;
    case QVariant::ULongLong:
        *result = operation(numberAs<qulonglong>(a), numberAs<qulonglong>(b));
        return true;
    case QVariant::Double:
        *result = operation(numberAs<double>(a), numberAs<double>(b));
        return true;
    default:
        return false;
    }
}

bool TypeTool::computeInPlace(Arithmetic operation, ValueView a, ValueView b, QVariant *result)
{
    ok = true;
    if (!isNumeric(static_cast<QVariant::Type>(a.type())) ||
        !isNumeric(static_cast<QVariant::Type>(b.type())))
        return false;
    const auto run = [&](auto function) { return compute(a, b, function, result); };
    switch (operation) {
    case Arithmetic::Add:
        return run([](auto x, auto y) { return sum(x, y); });
    case Arithmetic::Subtract:
        return run([](auto x, auto y) { return difference(x, y); });
    case Arithmetic::Multiply:
        return run([](auto x, auto y) { return product(x, y); });
    case Arithmetic::Divide:
        return run([this](auto x, auto y) { return quotient(x, y, ok); });
    case Arithmetic::Modulo:
        return run([this](auto x, auto y) { return remainder(x, y, ok); });
    case Arithmetic::BitAnd:
        return run([](auto x, auto y) { return bits(x, y, std::bit_and<>()); });
    case Arithmetic::BitOr:
        return run([](auto x, auto y) { return bits(x, y, std::bit_or<>()); });
    case Arithmetic::BitXor:
        return run([](auto x, auto y) { return bits(x, y, std::bit_xor<>()); });
    }
    return false;
}

bool TypeTool::computeNumbers(Arithmetic operation, const QVariant &a, const QVariant &b,
                              QVariant *result)
{
    return computeInPlace(operation, ValueView(a), ValueView(b), result);
}

QVariant TypeTool::fail()
{
    ok = false;
    return {};
}

QVariant TypeTool::do_add(const QVariant &a, const QVariant &b)
{
    QVariant result;
    if (computeNumbers(Arithmetic::Add, a, b, &result))
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
    QVariant result;
    if (computeNumbers(Arithmetic::Subtract, a, b, &result))
        return result;
    if (isDate(a.type()) && movesDates(b))
        return dateAdd(a, vo::wrappingSubtract(0LL, dateMicroSeconds(b)));
    return fail();
}

QVariant TypeTool::do_multiply(const QVariant &a, const QVariant &b)
{
    QVariant result;
    return computeNumbers(Arithmetic::Multiply, a, b, &result) ? result : fail();
}

QVariant TypeTool::do_divide(const QVariant &a, const QVariant &b)
{
    QVariant result;
    return computeNumbers(Arithmetic::Divide, a, b, &result) ? result : fail();
}

QVariant TypeTool::do_modulo(const QVariant &a, const QVariant &b)
{
    QVariant result;
    return computeNumbers(Arithmetic::Modulo, a, b, &result) ? result : fail();
}

// Values that are no numbers have no bits: an invalid result, and no failure.

QVariant TypeTool::do_bitand(const QVariant &a, const QVariant &b)
{
    QVariant result;
    computeNumbers(Arithmetic::BitAnd, a, b, &result);
    return result;
}

QVariant TypeTool::do_bitor(const QVariant &a, const QVariant &b)
{
    QVariant result;
    computeNumbers(Arithmetic::BitOr, a, b, &result);
    return result;
}

QVariant TypeTool::do_bitxor(const QVariant &a, const QVariant &b)
{
    QVariant result;
    computeNumbers(Arithmetic::BitXor, a, b, &result);
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
