#include "support/Trees.h"

#include <Vokit/IllegalArgumentException>
#include <Vokit/TimeConversions>
#include <Vokit/TypeTool>

#include <QRect>
#include <QRegExp>
#include <QtTest>

#include <limits>

using namespace vogen;
using V = QVariant;

Q_DECLARE_METATYPE(QVariant::Type)

namespace {

constexpr int gLeast = std::numeric_limits<int>::min();
constexpr int gGreatest = std::numeric_limits<int>::max();
constexpr qlonglong gLeast64 = std::numeric_limits<qlonglong>::min();
constexpr qlonglong gGreatest64 = std::numeric_limits<qlonglong>::max();
const double gNaN = std::numeric_limits<double>::quiet_NaN();

// Values and which of them are constants.
enum Constants { None = 0, Left = 1, Right = 2, Both = 3 };

TypeTool toolFor(int constants)
{
    return {(constants & Left) != 0, (constants & Right) != 0};
}

QDateTime utc(int year, int month, int day, int hour = 0, int minute = 0, int msec = 0)
{
    return {QDate(year, month, day), QTime(hour, minute, 0, msec), Qt::UTC};
}

QString units(std::initializer_list<ushort> codes)
{
    QString text;
    for (const ushort code : codes)
        text.append(QChar(code));
    return text;
}

QString hex(const QString &text)
{
    QStringList codes;
    for (const QChar c : text)
        codes.append(QString::number(c.unicode(), 16));
    return codes.join(' ');
}

} // namespace

class tst_TypeTool : public QObject
{
    Q_OBJECT

private slots:
    void classes();
    void coerceNumericTypes_data();
    void coerceNumericTypes();
    void coerceOtherTypes_data();
    void coerceOtherTypes();
    void compare_data();
    void compare();
    void equals_data();
    void equals();
    void compareList_data();
    void compareList();
    void contains();
    void outcome();
    void invertString_data();
    void invertString();
    void invertedTextsSortTheOtherWay();
    void dateMicroSeconds_data();
    void dateMicroSeconds();
    void dateSeconds();
    void constants();
};

void tst_TypeTool::classes()
{
    const QList<QVariant::Type> numeric{V::Int, V::UInt, V::LongLong, V::ULongLong, V::Double};
    const QList<QVariant::Type> dates{V::Date, V::Time, V::DateTime};
    const QList<QVariant::Type> lists{V::List, V::StringList};
    for (int i = V::Invalid; i <= QMetaType::Float; ++i) {
        const auto type = static_cast<QVariant::Type>(i);
        QCOMPARE(TypeTool::isNumeric(type), numeric.contains(type));
        QCOMPARE(TypeTool::isDate(type), dates.contains(type));
        QCOMPARE(TypeTool::isList(type), lists.contains(type));
    }
    QVERIFY(!TypeTool::isNumeric(V::Bool));
}

void tst_TypeTool::coerceNumericTypes_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<int>("constants");
    QTest::addColumn<QVariant::Type>("common");
    const auto row = [](const char *name, const V &left, const V &right, int constants,
                        QVariant::Type common) {
        QTest::newRow(name) << left << right << constants << common;
    };

    // Equal types, and whatever meets a double.
    row("Int, Int", 1, 2, None, V::Int);
    row("ULongLong, ULongLong", 1ULL, 2ULL, None, V::ULongLong);
    row("text, text: the same type", "a", "b", None, V::String);
    row("a double takes any integer along", 1, 1.9, None, V::Double);
    row("from the left too", 1.9, 5ULL, Both, V::Double);
    row("a double and a text", 1.9, "a", None, V::Double);
    row("an int and a text: none", 1, "a", Both, V::Invalid);
    row("an int and a bool: none", 1, true, Both, V::Invalid);

    // Pairs that need no constant.
    row("Int, LongLong", 1, 2LL, None, V::LongLong);
    row("LongLong, Int", 1LL, 2, Both, V::LongLong);
    row("UInt, LongLong", 1u, 2LL, Both, V::LongLong);
    row("LongLong, UInt", 1LL, 2u, Both, V::LongLong);
    row("UInt, ULongLong", 1u, 2ULL, Both, V::ULongLong);
    row("ULongLong, UInt", 1ULL, 2u, None, V::ULongLong);

    row("Int, UInt: neither constant", 1, 2u, None, V::LongLong);
    row("Int, UInt: a small right constant becomes Int", -1, 5u, Right, V::Int);
    row("Int, UInt: 2147483646 still fits", 1, 2147483646u, Right, V::Int);
    row("Int, UInt: 2147483647 does not, the bound is strict", 1, 2147483647u, Right, V::LongLong);
    row("Int, UInt: a left constant that is not negative becomes UInt", 0, 5u, Left, V::UInt);
    row("Int, UInt: a negative left constant", -1, 5u, Left, V::LongLong);
    row("Int, UInt: both fit, the right one changes", 1, 5u, Both, V::Int);
    row("Int, UInt: the right one too great, the left one fits", 1, 2147483647u, Both, V::UInt);
    row("Int, UInt: neither fits", -1, 2147483647u, Both, V::LongLong);

    row("UInt, Int: neither constant", 2u, 1, None, V::LongLong);
    row("UInt, Int: a small left constant becomes Int", 5u, -1, Left, V::Int);
    row("UInt, Int: strict on the left", 2147483647u, -1, Left, V::LongLong);
    row("UInt, Int: a right constant that is not negative becomes UInt", 5u, 0, Right, V::UInt);
    row("UInt, Int: a negative right constant", 5u, -1, Right, V::LongLong);
    row("UInt, Int: both fit, the left one changes", 5u, 1, Both, V::Int);
    row("UInt, Int: the left one too great, the right one fits", 2147483647u, 1, Both, V::UInt);

    row("Int, ULongLong: neither constant: none", -1, 5ULL, None, V::Invalid);
    row("Int, ULongLong: a small right constant becomes Int", -1, 5ULL, Right, V::Int);
    row("Int, ULongLong: strict", -1, 2147483647ULL, Right, V::Invalid);
    row("Int, ULongLong: a left constant becomes ULongLong", 0, 5ULL, Left, V::ULongLong);
    row("Int, ULongLong: a negative left constant", -1, 5ULL, Left, V::Invalid);
    row("Int, ULongLong: both fit, the right one changes", 1, 5ULL, Both, V::Int);
    row("Int, ULongLong: the right one too great", 1, 2147483647ULL, Both, V::ULongLong);

    row("ULongLong, Int: neither constant: none", 5ULL, -1, None, V::Invalid);
    row("ULongLong, Int: a right constant becomes ULongLong", 5ULL, 0, Right, V::ULongLong);
    row("ULongLong, Int: a negative right constant", 5ULL, -1, Right, V::Invalid);
    row("ULongLong, Int: a small left constant becomes Int", 5ULL, -1, Left, V::Int);
    row("ULongLong, Int: strict on the left", 2147483647ULL, -1, Left, V::Invalid);
    row("ULongLong, Int: both fit, the right one changes", 5ULL, 1, Both, V::ULongLong);
    row("ULongLong, Int: the right one negative, the left one fits", 5ULL, -1, Both, V::Int);

    const qulonglong bound = 9223372036854775807ULL;
    row("LongLong, ULongLong: neither constant: none", -1LL, 5ULL, None, V::Invalid);
    row("LongLong, ULongLong: a small right constant", -1LL, bound - 1, Right, V::LongLong);
    row("LongLong, ULongLong: strict", -1LL, bound, Right, V::Invalid);
    row("LongLong, ULongLong: a left constant", 0LL, bound, Left, V::ULongLong);
    row("LongLong, ULongLong: a negative left constant", -1LL, 5ULL, Left, V::Invalid);
    row("LongLong, ULongLong: both fit, the right one changes", 1LL, 5ULL, Both, V::LongLong);
    row("LongLong, ULongLong: the right one too great", 1LL, bound, Both, V::ULongLong);

    row("ULongLong, LongLong: neither constant: none", 5ULL, -1LL, None, V::Invalid);
    row("ULongLong, LongLong: a right constant", 5ULL, 0LL, Right, V::ULongLong);
    row("ULongLong, LongLong: a negative right constant", 5ULL, -1LL, Right, V::Invalid);
    row("ULongLong, LongLong: a small left constant", bound - 1, -1LL, Left, V::LongLong);
    row("ULongLong, LongLong: strict on the left", bound, -1LL, Left, V::Invalid);
    row("ULongLong, LongLong: both fit, the right one changes", 5ULL, 1LL, Both, V::ULongLong);
    row("ULongLong, LongLong: the right one negative", 5ULL, -1LL, Both, V::LongLong);
}

void tst_TypeTool::coerceNumericTypes()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(int, constants);
    QTEST(toolFor(constants).coerceNumericTypes(left, right), "common");
}

void tst_TypeTool::coerceOtherTypes_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<QVariant::Type>("common");
    QTest::newRow("the left type when the right goes there") << V("a") << V(5) << V::String;
    QTest::newRow("the left type first") << V(5) << V("a") << V::Int;
    QTest::newRow("the right type when only the left goes there")
        << V(QStringList{"a", "b"}) << V(QVariantList{}) << V::StringList;
    QTest::newRow("a rect goes nowhere") << V(QRect()) << V(5) << V::Invalid;
    QTest::newRow("both become text only") << V(5) << V(QDate(2026, 3, 5)) << V::String;
    QTest::newRow("two maps") << V(QVariantMap()) << V(QVariantMap()) << V::Map;
    QTest::newRow("two invalid values") << V() << V() << V::Invalid;
    QTest::newRow("an invalid value and an int") << V() << V(5) << V::Invalid;
}

void tst_TypeTool::coerceOtherTypes()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QTEST(TypeTool(false, false).coerceOtherTypes(left, right), "common");
}

void tst_TypeTool::compare_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<int>("constants");
    QTest::addColumn<int>("order");
    QTest::addColumn<bool>("signOnly");
    QTest::addColumn<bool>("ok");
    const auto row = [](const char *name, const V &left, const V &right, int order,
                        int constants = None) {
        QTest::newRow(name) << left << right << constants << order << false << true;
    };
    // Of texts only the sign is promised.
    const auto texts = [](const char *name, const V &left, const V &right, int sign,
                          int constants = None) {
        QTest::newRow(name) << left << right << constants << sign << true << true;
    };
    const auto fails = [](const char *name, const V &left, const V &right) {
        QTest::newRow(name) << left << right << int(None) << 0 << false << false;
    };

    // Integers by their difference.
    row("ints: the difference", 3, 10, -7);
    row("ints: same", 4, 4, 0);
    row("ints: saturated above", gGreatest, -1, gGreatest);
    row("ints: saturated below", gLeast, 1, gLeast);
    row("uints: signed difference", 1u, 3u, -2);
    row("uint and negative int", 4294967295u, -1, gGreatest);
    row("long longs: saturated", 5000000000LL, 0LL, gGreatest);
    row("long longs: saturated below", -5000000000LL, 0LL, gLeast);
    row("long longs more than 2^63 apart: the difference wraps", gLeast64, 1LL, gGreatest);
    row("the same the other way round", gGreatest64, -1LL, gLeast);
    row("int and long long", 5, 4LL, 1);

    // Doubles and unsigned long longs by the truncated difference of doubles.
    row("less than 1 apart is the same", 1, 1.9, 0);
    row("1 apart is not", 1, 2.0, -1);
    row("truncated toward zero", 5.75, 3.0, 2);
    row("truncated toward zero, negative", 3.0, 5.75, -2);
    row("doubles: saturated above", 1e300, 0.0, gGreatest);
    row("doubles: saturated below", -1e300, 0.0, gLeast);
    row("doubles: the greatest int is not cut", 2147483647.0, 0.0, gGreatest);
    row("doubles: the least int is not cut", -2147483648.0, 0.0, gLeast);
    row("doubles: a NaN is the least int", gNaN, 1.0, gLeast);
    row("doubles: a NaN on the right too", 1.0, gNaN, gLeast);
    row("doubles: infinities of one sign differ by NaN", std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::infinity(), gLeast);
    row("ULongLong: by doubles", 10ULL, 3ULL, 7);
    row("ULongLong: below a double's precision is the same", 18446744073709551615ULL,
        18446744073709551614ULL, 0);
    row("ULongLong and UInt", 5ULL, 7u, -2);

    // No common type: as text.
    texts("Int and ULongLong properties: texts", -1, 5ULL, -1); // "-1" and "5"
    texts("so 10 sorts before 9", 10, 9ULL, -1);
    row("a constant that fits meets as a number", -1, 5ULL, -6, Right);
    texts("a constant that doesn't fit: texts", -3, 2147483647ULL, -1, Right);
    texts("LongLong and ULongLong properties: texts", 10LL, 9ULL, -1);

    // Dates on the scale of microseconds.
    row("dates: same", QDate(2026, 3, 5), QDate(2026, 3, 5), 0);
    row("dates: a day is more than an int holds", QDate(2026, 3, 6), QDate(2026, 3, 5), gGreatest);
    row("times: microseconds", QTime(0, 0, 0, 5), QTime(0, 0, 0, 3), 2000);
    row("date and date with time", QDate(2026, 3, 5), utc(2026, 3, 5), 0);
    row("date and time and a time: since the epoch and since midnight", utc(1970, 1, 1, 2),
        QTime(2, 0), 0);
    row("time and int: milliseconds", QTime(0, 0, 1), 1000, 0);
    row("time and uint: milliseconds", QTime(0, 0, 1), 999u, 1000);
    row("time and long long: microseconds", QTime(0, 0, 0, 1), 1000LL, 0);
    row("double and date: days", 1.0, QDate(1970, 1, 2), 0);
    row("number on the left", 0, QDate(1970, 1, 2), gLeast);
    row("a local time and its UTC", QDateTime(QDate(2026, 3, 5), QTime(5, 30)), utc(2026, 3, 5), 0);

    // Lists.
    row("lists: item by item", QVariantList{1, 2}, QVariantList{1, 5}, -3);
    row("lists: the shorter is smaller", QVariantList{1}, QVariantList{1, 5}, gLeast);
    row("lists: the longer is greater", QVariantList{1, 5}, QVariantList{1}, gGreatest);
    row("lists: empty ones", QVariantList{}, QVariantList{}, 0);
    row("string lists too", QStringList{"a"}, QVariantList{"a"}, 0);
    row("lists in lists", QVariantList{QVariantList{1}}, QVariantList{QVariantList{3}}, -2);
    fails("lists with items that can't be compared", QVariantList{V()}, QVariantList{1});
    row("a difference before that item decides", QVariantList{1, V()}, QVariantList{2, 1}, -1);
    texts("a list of one text against a text: as text", QStringList{"a"}, "a", 0);
    fails("a list and a text", QVariantList{"a"}, "a");
    fails("an empty string list and a text", QStringList(), "a");

    // Texts.
    texts("texts by code unit", "a", "b", -1);
    texts("texts: case counts", "a", "B", 1);
    texts("texts: a longer one", "ab", "a", 1);
    texts("texts: same", "same", QString("same"), 0);
    texts("a null text is an empty text", QString(), "", 0);
    texts("bool and int: texts", true, 1, 1);
    texts("bools: texts", true, true, 0);
    texts("a date and a text: the date's text", QDate(2026, 3, 5), "2026-03-05", 0);
    texts("a number and its text", 5, "5", 0);
    texts("a number and a text with a zero in front", 5, "05", 1);
    texts("bytes and text", QByteArray("a"), "a", 0);
    texts("a float is no number here: texts", V(1.5f), 1.5, 0);
    texts("a float whose text shows all digits", V(0.1f), 0.1, 1);

    // Nothing to compare by.
    fails("invalid and int", V(), 5);
    fails("int and invalid", 5, V());
    fails("invalid and invalid", V(), V());
    fails("invalid and text", V(), "");
    fails("invalid and date", V(), QDate(2026, 3, 5));
    fails("maps", QVariantMap(), QVariantMap());
    fails("patterns", QRegExp("a"), QRegExp("a"));
    fails("a date and a map", QDate(2026, 3, 5), QVariantMap());
}

void tst_TypeTool::compare()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(int, constants);
    QFETCH(bool, signOnly);
    TypeTool tool = toolFor(constants);
    const int order = tool.compare(left, right);
    QTEST(signOnly ? (order > 0) - (order < 0) : order, "order");
    QTEST(tool.wasOK(), "ok");
}

void tst_TypeTool::equals_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<int>("constants");
    QTest::addColumn<bool>("equal");
    QTest::addColumn<bool>("ok");
    const auto row = [](const char *name, const V &left, const V &right, bool equal, bool ok = true,
                        int constants = None) {
        QTest::newRow(name) << left << right << constants << equal << ok;
    };
    row("ints", 5, 5, true);
    row("ints that differ", 5, 6, false);
    row("int and double less than 1 apart", 1, 1.9, true);
    row("texts", "abc", QString("abc"), true);
    row("texts of one length", "abc", "abd", false);
    row("texts: case counts", "abc", "Abc", false);
    row("a null text and an empty one", QString(), "", true);
    row("bool and int: texts differ", true, 1, false);
    row("a bool and its text", true, "true", true);
    row("an int and its text", 5, "5", true);
    row("-1 and 18446744073709551615: texts differ", -1, 18446744073709551615ULL, false);
    row("0 and a constant 0", 0, 0ULL, true, true, Right);
    row("date and date with time", QDate(2026, 3, 5), utc(2026, 3, 5), true);
    row("lists", QVariantList{1, "a"}, QVariantList{1, "a"}, true);
    row("invalid and invalid", V(), V(), false, false);
    row("invalid and int", V(), 5, false, false);
    row("text and invalid", "", V(), false, false);
    // Where compare() can't, both going into one type is enough.
    row("two maps, whatever they hold", QVariantMap{{"a", 1}}, QVariantMap(), true);
    row("two patterns", QRegExp("a"), QRegExp("b"), true);
    row("two rects", QRect(1, 2, 3, 4), QRect(), true);
    row("a map and a rect", QVariantMap(), QRect(), false, false);
    row("a text and a list of two texts", "x", QStringList{"a", "b"}, true);
    row("a text and an empty list of texts", "x", QStringList(), true);
    row("a list and a scalar", QVariantList{}, 5, false, false);
    row("two lists that begin with an invalid item", QVariantList{V()}, QVariantList{V()}, true);
    row("an empty list and a bool", QVariantList{}, true, false, false);
}

void tst_TypeTool::equals()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(int, constants);
    TypeTool tool = toolFor(constants);
    QTEST(tool.equals(left, right), "equal");
    QTEST(tool.wasOK(), "ok");
}

void tst_TypeTool::compareList_data()
{
    QTest::addColumn<QVariantList>("left");
    QTest::addColumn<QVariantList>("right");
    QTest::addColumn<int>("order");
    QTest::addColumn<bool>("ok");
    QTest::newRow("both empty") << QVariantList{} << QVariantList{} << 0 << true;
    QTest::newRow("empty and longer") << QVariantList{} << QVariantList{1} << gLeast << true;
    QTest::newRow("longer and empty") << QVariantList{1} << QVariantList{} << gGreatest << true;
    QTest::newRow("the first difference")
        << QVariantList{1, 5, 9} << QVariantList{1, 3, 100} << 2 << true;
    QTest::newRow("the same") << QVariantList{1, "a"} << QVariantList{1, "a"} << 0 << true;
    QTest::newRow("an item that can't be compared ends it")
        << QVariantList{V(), 1} << QVariantList{V(), 2} << 0 << false;
    QTest::newRow("a prefix is smaller, whatever follows")
        << QVariantList{1} << QVariantList{1, V()} << gLeast << true;
}

void tst_TypeTool::compareList()
{
    QFETCH(QVariantList, left);
    QFETCH(QVariantList, right);
    const QVariantList leftBefore = left;
    TypeTool tool(false, false);
    QTEST(tool.compareList(left, right), "order");
    QTEST(tool.wasOK(), "ok");
    QCOMPARE(left, leftBefore);
}

void tst_TypeTool::contains()
{
    TypeTool tool(false, false);
    QVERIFY(tool.contains({1, 2, 3}, 2));
    QVERIFY(tool.contains({V(), 2}, 2)); // one that can't be compared is passed over
    QVERIFY(tool.wasOK());
    QVERIFY(!tool.contains({1, 3}, 2));
    QVERIFY(tool.wasOK());
    QVERIFY(!tool.contains({1, V()}, 2));
    QVERIFY(!tool.wasOK()); // as the last item left it
    QVERIFY(!tool.contains({}, 2));
    QVERIFY(!tool.wasOK()); // an empty list asks nothing
    QVERIFY(tool.contains({"a", "2"}, 2));
    // The item stands left, so its flag is the left one.
    QVERIFY(TypeTool(true, false).contains({5ULL}, 5));
}

void tst_TypeTool::outcome()
{
    TypeTool tool(false, false);
    const QVariant value(7);
    QVERIFY(tool.wasOK());
    QCOMPARE(&tool.returnOK(value), &value);
    QVERIFY(tool.throwOK());

    tool.compare(V(), V());
    QVERIFY(!tool.wasOK());
    QCOMPARE(&tool.returnOK(value), &TypeTool::INVALID);
    try {
        tool.throwOK();
        QFAIL("a failure throws");
    } catch (const vo::IllegalArgumentException &e) {
        QCOMPARE(e.argument(), QString());
        QCOMPARE(e.message(), QString("can't compare values"));
        QVERIFY(!e.cause());
    }
    tool.compare(1, 2);
    QVERIFY(tool.wasOK()); // tells about the last operation only
}

void tst_TypeTool::invertString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("inverted");
    QTest::newRow("empty: the mark alone") << QString() << units({0xFFFF});
    QTest::newRow("complements and the mark") << QString("ab") << units({0xFF9E, 0xFF9D, 0xFFFF});
    QTest::newRow("not its own inverse: the mark stays")
        << units({0xFF9E, 0xFF9D, 0xFFFF}) << units({'a', 'b', 0xFFFF});
    QTest::newRow("a zero becomes the mark's code, but is none")
        << units({0}) << units({0xFFFF, 0xFFFF});
    QTest::newRow("a mark removes the units whose code is its index")
        << units({2, 2, 0xFFFF}) << units({0xFFFF, 0xFFFF});
    QTest::newRow("the walk goes on behind the new end, which grows again")
        << units({4, 4, 4, 4, 0xFFFF}) << units({0xFFFF, 0xFFDF, 0xFFDF, 0xFFFF});
    QTest::newRow("a mark at index 0 removes zeroes")
        << units({0xFFFF, 'a'}) << units({0xFFFF, 0xFF9E});
}

void tst_TypeTool::invertString()
{
    QFETCH(QString, text);
    QFETCH(QString, inverted);
    QCOMPARE(hex(TypeTool::invertString(text)), hex(inverted));
}

void tst_TypeTool::invertedTextsSortTheOtherWay()
{
    const QStringList ascending{"", "A", "Ab", "a", "aa", "ab", "abc", "b", QString(QChar(0xE9))};
    for (int i = 0; i + 1 < ascending.size(); ++i) {
        const QString lower = TypeTool::invertString(ascending.at(i + 1));
        const QString upper = TypeTool::invertString(ascending.at(i));
        QVERIFY2(QString::compare(lower, upper) < 0, qPrintable(ascending.at(i + 1)));
    }
}

void tst_TypeTool::dateMicroSeconds_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<long long>("microSeconds");
    const long long day = 86400000000LL;
    const long long noDate = 4294967294999000LL; // what an invalid QDateTime counts
    QTest::newRow("int: milliseconds") << V(1) << 1000LL;
    QTest::newRow("int: the least") << V(gLeast) << -2147483648000LL;
    QTest::newRow("uint: milliseconds") << V(4294967295u) << 4294967295000LL;
    QTest::newRow("long long: microseconds") << V(1LL) << 1LL;
    QTest::newRow("unsigned long long: microseconds") << V(5ULL) << 5LL;
    QTest::newRow("unsigned long long: wraps") << V(18446744073709551615ULL) << -1LL;
    QTest::newRow("double: days") << V(1.0) << day;
    QTest::newRow("double: truncated") << V(-1.5e-11) << -1LL;
    QTest::newRow("double: too great") << V(1e30) << gLeast64;
    QTest::newRow("double: NaN") << V(gNaN) << gLeast64;
    QTest::newRow("date") << V(QDate(1970, 1, 2)) << day;
    QTest::newRow("date before the epoch") << V(QDate(1969, 12, 31)) << -day;
    QTest::newRow("invalid date") << V(QDate()) << 0LL;
    QTest::newRow("a date far away wraps")
        << V(QDate::fromJulianDay(784354017364))
        << static_cast<long long>((784354017364ULL - 2440588ULL) * 86400000000ULL);
    QTest::newRow("time") << V(QTime(0, 0, 1)) << 1000000LL;
    QTest::newRow("time: the last of the day") << V(QTime(23, 59, 59, 999)) << day - 1000;
    QTest::newRow("invalid time") << V(QTime()) << 0LL;
    QTest::newRow("date and time") << V(utc(1970, 1, 2, 0, 0, 5)) << day + 5000;
    QTest::newRow("local date and time") << V(QDateTime(QDate(1970, 1, 1), QTime(5, 30))) << 0LL;
    QTest::newRow("invalid date and time") << V(QDateTime()) << noDate;
    QTest::newRow("text as Qt::TextDate") << V("Fri Jan 2 00:00:01 1970 GMT") << day + 1000000;
    QTest::newRow("text that is no date") << V("2026-03-05") << noDate;
    QTest::newRow("bool: by its text") << V(true) << noDate;
    QTest::newRow("a null text") << V(QString()) << noDate;
    QTest::newRow("invalid") << V() << 0LL;
    QTest::newRow("a map") << V(QVariantMap()) << 0LL;
    QTest::newRow("a null int counts as what it holds") << V(V::Int) << 0LL;
}

void tst_TypeTool::dateMicroSeconds()
{
    QFETCH(QVariant, value);
    QTEST(TypeTool::dateMicroSeconds(value), "microSeconds");
}

void tst_TypeTool::dateSeconds()
{
    QCOMPARE(TypeTool::dateSeconds(V(1500000LL)), 1.5);
    QCOMPARE(TypeTool::dateSeconds(V(-250)), -0.25);
}

void tst_TypeTool::constants()
{
    QCOMPARE(TypeTool::EPOCH, QDate(1970, 1, 1));
    QCOMPARE(TypeTool::MIDNIGHT, QTime(0, 0, 0, 0));
    QCOMPARE(TypeTool::INVALID.type(), V::Invalid);
}

QTEST_APPLESS_MAIN(tst_TypeTool)
#include "tst_TypeTool.moc"
