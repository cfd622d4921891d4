#include "support/Trees.h"

#include <Vokit/TypeTool>

#include <QtTest>

#include <cmath>
#include <limits>

using namespace vogen;
using test::shown;
using V = QVariant;

namespace {

constexpr int gLeast = std::numeric_limits<int>::min();
constexpr qlonglong gLeast64 = std::numeric_limits<qlonglong>::min();
constexpr qulonglong gGreatestU64 = std::numeric_limits<qulonglong>::max();
const double gNaN = std::numeric_limits<double>::quiet_NaN();

using Operation = QVariant (TypeTool::*)(const QVariant &, const QVariant &);

Operation operationOf(const QString &sign)
{
    if (sign == "+")
        return &TypeTool::do_add;
    if (sign == "-")
        return &TypeTool::do_subtract;
    if (sign == "*")
        return &TypeTool::do_multiply;
    if (sign == "/")
        return &TypeTool::do_divide;
    if (sign == "%")
        return &TypeTool::do_modulo;
    if (sign == "&")
        return &TypeTool::do_bitand;
    return sign == "|" ? &TypeTool::do_bitor : &TypeTool::do_bitxor;
}

QDateTime utc(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return {QDate(year, month, day), QTime(hour, minute, second), Qt::UTC};
}

} // namespace

class tst_TypeToolArithmetic : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void datesAndTexts_data();
    void datesAndTexts();
    void constantsDecideTheType();
    void eachOperationTellsOfItself();
    void dateAdd_data();
    void dateAdd();
    void castDate_data();
    void castDate();
};

// "FAILS" stands for an invalid value with ok false, "NULL" for one with ok true.
void tst_TypeToolArithmetic::numbers_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const V &left, const char *sign, const V &right,
                        const char *result) {
        QTest::newRow(name) << left << sign << right << result;
    };

    row("Int +", 2, "+", 3, "int:5");
    row("Int + wraps", 2147483647, "+", 1, "int:-2147483648");
    row("UInt + wraps", 4294967295u, "+", 2u, "uint:1");
    row("LongLong + wraps", gLeast64, "+", -1LL, "qlonglong:9223372036854775807");
    row("ULongLong + wraps", gGreatestU64, "+", 1ULL, "qulonglong:0");
    row("Double +", 1.5, "+", 2.25, "double:3.75");
    row("Int + Double", 1, "+", 0.5, "double:1.5");
    row("Int + LongLong", 2147483647, "+", 1LL, "qlonglong:2147483648");
    row("Int + UInt", -1, "+", 1u, "qlonglong:0");
    row("UInt + ULongLong", 1u, "+", 2ULL, "qulonglong:3");

    row("Int -", 2, "-", 5, "int:-3");
    row("Int - wraps", gLeast, "-", 1, "int:2147483647");
    row("LongLong -", 2LL, "-", 5LL, "qlonglong:-3");
    row("UInt - stays unsigned above 0", 5u, "-", 2u, "uint:3");
    row("UInt - below 0", 2u, "-", 5u, "qlonglong:-3");
    row("UInt - equal: already a LongLong", 3u, "-", 3u, "qlonglong:0");
    row("UInt - of the greatest", 0u, "-", 4294967295u, "qlonglong:-4294967295");
    row("ULongLong - stays unsigned above 0", 5ULL, "-", 2ULL, "qulonglong:3");
    row("ULongLong - below 0", 2ULL, "-", 5ULL, "double:-3");
    row("ULongLong - equal: already a Double", 3ULL, "-", 3ULL, "double:0");
    row("Double -", 1.0, "-", 2.5, "double:-1.5");

    row("Int *", -3, "*", 4, "int:-12");
    row("Int * wraps", 65536, "*", 65536, "int:0");
    row("Int * wraps, the least", gLeast, "*", -1, "int:-2147483648");
    row("UInt *", 65537u, "*", 65536u, "uint:65536");
    row("LongLong * wraps", gLeast64, "*", -1LL, "qlonglong:-9223372036854775808");
    row("ULongLong *", 4294967296ULL, "*", 4294967296ULL, "qulonglong:0");
    row("Double *", 1.5, "*", 4, "double:6");
    row("Text *", "a", "*", 2, "FAILS");
    row("Date *", QDate(2026, 3, 5), "*", 2, "FAILS");
    row("Int * ULongLong: no common type", 2, "*", 3ULL, "FAILS");

    row("Int / truncates", 7, "/", -2, "int:-3");
    row("Int / truncates, negative", -7, "/", 2, "int:-3");
    row("Int / the least by -1 wraps", gLeast, "/", -1, "int:-2147483648");
    row("LongLong / the least by -1 wraps", gLeast64, "/", -1LL, "qlonglong:-9223372036854775808");
    row("UInt /", 7u, "/", 2u, "uint:3");
    row("ULongLong /", gGreatestU64, "/", 2ULL, "qulonglong:9223372036854775807");
    row("Double /", 7.0, "/", 2, "double:3.5");
    row("Int / 0", 7, "/", 0, "FAILS");
    row("ULongLong / 0", 7ULL, "/", 0ULL, "FAILS");
    row("Double / 0", 1.0, "/", 0, "FAILS");
    row("Double / -0.0", 1.0, "/", -0.0, "FAILS");
    row("Double / NaN", 1.0, "/", gNaN, "double:nan");
    row("Text /", "a", "/", 2, "FAILS");

    row("Int %", 7, "%", 3, "int:1");
    row("Int % has the dividend's sign", -7, "%", 2, "int:-1");
    row("Int % negative divisor", 7, "%", -2, "int:1");
    row("Int % the least by -1", gLeast, "%", -1, "int:0");
    row("LongLong % the least by -1", gLeast64, "%", -1LL, "qlonglong:0");
    row("UInt %", 7u, "%", 4u, "uint:3");
    row("ULongLong %", gGreatestU64, "%", 10ULL, "qulonglong:5");
    row("Int % 0", 7, "%", 0, "FAILS");
    row("UInt % 0", 7u, "%", 0u, "FAILS");
    row("Double %", 7.5, "%", 2, "FAILS");

    row("Int &", 6, "&", 3, "int:2");
    row("Int & of a negative", -1, "&", 5, "int:5");
    row("UInt |", 6u, "|", 9u, "uint:15");
    row("LongLong ^", -1LL, "^", 5LL, "qlonglong:-6");
    row("ULongLong ^", gGreatestU64, "^", 1ULL, "qulonglong:18446744073709551614");
    row("Int | LongLong", 1, "|", 4294967296LL, "qlonglong:4294967297");
    row("Double &: no failure", 1.5, "&", 1, "NULL");
    row("Double |: no failure", 1, "|", 1.0, "NULL");
    row("Text ^: no failure", "a", "^", 1, "NULL");
    row("NULL &: no failure", V(), "&", 1, "NULL");
    row("Int & ULongLong: no common type, no failure", 1, "&", 1ULL, "NULL");
    row("Bool is no number", true, "&", true, "NULL");
}

void tst_TypeToolArithmetic::numbers()
{
    QFETCH(QVariant, left);
    QFETCH(QString, sign);
    QFETCH(QVariant, right);
    TypeTool tool(false, false);
    const QVariant value = (tool.*operationOf(sign))(left, right);
    const bool failed = !value.isValid() && !tool.wasOK();
    QTEST(failed ? QString("FAILS") : shown(value), "result");
    QCOMPARE(tool.wasOK(), !failed);
}

void tst_TypeToolArithmetic::datesAndTexts_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<QVariant>("result"); // invalid for a failure
    const auto row = [](const char *name, const V &left, const char *sign, const V &right,
                        const V &result) {
        QTest::newRow(name) << left << sign << right << result;
    };
    const QDate day(2026, 3, 5);
    const int dayInMilliseconds = 86400000;

    row("Date + a day in Int", day, "+", dayInMilliseconds, QDate(2026, 3, 6));
    row("Date + a day in Double", day, "+", 1.0, QDate(2026, 3, 6));
    row("Date + a millisecond widens", day, "+", 1, utc(2026, 3, 5));
    row("Date + a microsecond widens, in whole seconds", day, "+", 1LL, utc(2026, 3, 5));
    row("Date + Time", day, "+", QTime(1, 2, 3), utc(2026, 3, 5, 1, 2, 3));
    row("Int + Date", dayInMilliseconds, "+", day, QDate(2026, 3, 6));
    row("Double + Date", 1.0, "+", day, QDate(2026, 3, 6));
    row("Time + two hours past midnight widens", QTime(23, 0), "+", 7200000, utc(1970, 1, 2, 1, 0));
    row("Time + within the day", QTime(1, 0), "+", 7200000, QTime(3, 0));
    row("Time + before the day widens", QTime(1, 0), "+", -7200000,
        QDateTime::fromMSecsSinceEpoch((4294967296LL - 3600) * 1000, Qt::UTC));
    row("DateTime + seconds", utc(2026, 3, 5), "+", 61000, utc(2026, 3, 5, 0, 1, 1));

    row("Date - a day", day, "-", 1.0, QDate(2026, 3, 4));
    row("Date - the same date", day, "-", day, QDate(1970, 1, 1));
    row("Time - Time", QTime(3, 0), "-", QTime(1, 0), QTime(2, 0));
    row("Int - Date", 5, "-", day, V());
    row("Text - Text", "ab", "-", "b", V());
    row("Date - Text", day, "-", "b", V());

    row("Text + Int", "a", "+", 1, "a1");
    row("Int + Text", 1, "+", "a", "1a");
    row("Text + null Text", "a", "+", QString(), "a");
    row("Int + ULongLong: joined digits", 1, "+", 2ULL, "12");
    row("Bool + Bool: texts", true, "+", false, "truefalse");
    row("DateTime + Text", utc(2026, 3, 5), "+", "x", "2026-03-05T00:00:00.000Zx");
    row("Text + Date", "x", "+", day, "x2026-03-05");
    row("NULL + NULL", V(), "+", V(), V());
    row("NULL + Int", V(), "+", 1, V());
    row("Text + a list of two", "x", "+", QStringList{"a", "b"}, V());
    row("Date + NULL", day, "+", V(), V());
}

void tst_TypeToolArithmetic::datesAndTexts()
{
    QFETCH(QVariant, left);
    QFETCH(QString, sign);
    QFETCH(QVariant, right);
    QFETCH(QVariant, result);
    TypeTool tool(false, false);
    const QVariant value = (tool.*operationOf(sign))(left, right);
    QCOMPARE(value.userType(), result.userType());
    QCOMPARE(value, result);
    QCOMPARE(tool.wasOK(), result.isValid());
    if (value.type() == V::DateTime)
        QCOMPARE(value.toDateTime().timeSpec(), Qt::UTC);
}

void tst_TypeToolArithmetic::constantsDecideTheType()
{
    QCOMPARE(shown(TypeTool(false, true).do_add(-1, 5ULL)), QString("int:4"));
    QCOMPARE(shown(TypeTool(true, false).do_add(5, 5ULL)), QString("qulonglong:10"));
    QCOMPARE(shown(TypeTool(false, true).do_subtract(2, 5u)), QString("int:-3"));
    QCOMPARE(shown(TypeTool(true, false).do_subtract(0, 5u)), QString("qlonglong:-5"));
    QCOMPARE(shown(TypeTool(true, false).do_subtract(0, 5ULL)), QString("double:-5"));
    QCOMPARE(shown(TypeTool(true, true).do_multiply(6LL, 7ULL)), QString("qlonglong:42"));
}

void tst_TypeToolArithmetic::eachOperationTellsOfItself()
{
    TypeTool tool(false, false);
    tool.do_divide(1, 0);
    QVERIFY(!tool.wasOK());
    tool.do_bitand(1.5, 1);
    QVERIFY(tool.wasOK());
    tool.do_modulo(1.5, 1);
    QVERIFY(!tool.wasOK());
    tool.do_add(1, 1);
    QVERIFY(tool.wasOK());
}

void tst_TypeToolArithmetic::dateAdd_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<long long>("span");
    QTest::addColumn<QVariant>("result");
    const long long day = 86400000000LL;
    const QDate date(2026, 3, 5);
    const auto row = [](const char *name, const V &value, long long span, const V &result) {
        QTest::newRow(name) << value << span << result;
    };
    row("Int: milliseconds again", 5, 2000, 7);
    row("Int: a fraction is cut", 5, 1999, 6);
    row("UInt becomes Int", 5u, 0, 5);
    row("UInt: the low 32 bits", 4294967295u, 0, -1);
    row("Int below 0: an unsigned division", 0, -1000, int(uint(18446744073709550ULL)));
    row("LongLong that divides by 1000 becomes Int", 5000LL, 0, 5);
    row("LongLong that doesn't becomes ULongLong", 5000LL, 1, 5001ULL);
    row("LongLong below 0", 0LL, -1, 18446744073709551615ULL);
    row("ULongLong", 1ULL, 1, 2ULL);
    row("Double: days", 1.0, day / 2, 1.5);
    row("Double below 0", 0.0, -1, 18446744073709551615.0 / 86400000000.0);
    row("Date by a day", date, day, QDate(2026, 3, 6));
    row("Date back by a day", date, -day, QDate(2026, 3, 4));
    row("Date by an hour", date, 3600000000LL, utc(2026, 3, 5, 1));
    row("Date moved to before 1970 widens", QDate(1970, 1, 1), -day,
        QDateTime::fromMSecsSinceEpoch((4294967296LL - 86400) * 1000, Qt::UTC));
    row("Time within the day", QTime(1, 0), day - 3600000001LL, QTime(23, 59, 59));
    row("Time at its end widens", QTime(1, 0), day - 3600000000LL, utc(1970, 1, 2));
    row("DateTime: UTC, whole seconds", utc(2026, 3, 5), 1999999, utc(2026, 3, 5, 0, 0, 1));
    row("text: as what it counts", "Fri Jan 2 00:00:00 1970 GMT", 1000000,
        utc(1970, 1, 2, 0, 0, 1));
    row("NULL: from 1970", V(), 1000000, utc(1970, 1, 1, 0, 0, 1));
    row("the sum wraps", std::numeric_limits<qlonglong>::max(), 1, V(9223372036854775808ULL));
}

void tst_TypeToolArithmetic::dateAdd()
{
    QFETCH(QVariant, value);
    QFETCH(long long, span);
    QFETCH(QVariant, result);
    const QVariant moved = TypeTool::dateAdd(value, span);
    QCOMPARE(moved.userType(), result.userType());
    QCOMPARE(moved, result);
}

void tst_TypeToolArithmetic::castDate_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("result");
    const auto row = [](const char *name, const V &value, V::Type type, const V &result) {
        QTest::newRow(name) << value << int(type) << result;
    };
    const QDate date(1970, 1, 2); // 86400000000 microseconds: 500654080 in 32 bits
    row("Time to Int", QTime(0, 0, 1), V::Int, 1000);
    row("Date to Int: cut to 32 bits, then divided", date, V::Int, 500654);
    row("Time to Int: a negative low half", QTime(0, 50), V::Int, int(3000000000u) / 1000);
    row("Time to UInt: the same half without a sign", QTime(0, 50), V::UInt, 3000000u);
    row("Date to LongLong: comes unsigned", date, V::LongLong, 86400000000ULL);
    row("Date to ULongLong", date, V::ULongLong, 86400000000ULL);
    row("Date before 1970 to ULongLong", QDate(1969, 12, 31), V::ULongLong,
        18446743987309551616ULL);
    row("Date to Double", date, V::Double, 1.0);
    row("DateTime to Double", utc(1970, 1, 1, 12), V::Double, 0.5);

    row("Int to Date", 86400000, V::Date, date);
    row("Int to Time", 3600000, V::Time, QTime(1, 0));
    row("Int to DateTime", 1000, V::DateTime, utc(1970, 1, 1, 0, 0, 1));
    row("UInt to DateTime", 4294967295u, V::DateTime, utc(1970, 2, 19, 17, 2, 47));
    row("LongLong to DateTime", 1999999LL, V::DateTime, utc(1970, 1, 1, 0, 0, 1));
    row("ULongLong to Date", 86400000000ULL, V::Date, date);
    row("Double to DateTime", 1.5, V::DateTime, utc(1970, 1, 2, 12));
    row("Double to Date", 1.5, V::Date, date);
    const auto frames = [](qulonglong n) {
        return QDateTime::fromMSecsSinceEpoch(qint64(n / 1000000 % 4294967296ULL) * 1000, Qt::UTC);
    };
    row("Int below 0: as a huge unsigned count", -1000, V::DateTime,
        frames(18446744073708551616ULL));
    row("Double below 0: the same", -1.0, V::DateTime, frames(18446743987309551616ULL));
    row("Double above 2^63", 150000000.0, V::DateTime, frames(12960000000000000000ULL));
    row("Double above 2^64", 1e30, V::DateTime, frames(0));
    row("Double: NaN", gNaN, V::DateTime, frames(9223372036854775808ULL));

    row("Date to Time", date, V::Time, V());
    row("Int to Double", 5, V::Double, V());
    row("text to Date", "1970-01-02", V::Date, V());
    row("Date to text", date, V::String, V());
    row("NULL to Date", V(), V::Date, V());
    row("Bool to Date", true, V::Date, V());
}

void tst_TypeToolArithmetic::castDate()
{
    QFETCH(QVariant, value);
    QFETCH(int, type);
    QFETCH(QVariant, result);
    const QVariant cast = TypeTool::castDate(value, static_cast<V::Type>(type));
    QCOMPARE(cast.userType(), result.userType());
    QCOMPARE(cast, result);
}

QTEST_APPLESS_MAIN(tst_TypeToolArithmetic)
#include "tst_TypeToolArithmetic.moc"
