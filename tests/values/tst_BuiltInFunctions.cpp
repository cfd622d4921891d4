#include "support/Trees.h"

#include <Vokit/FunctionExpression>

#include <QtTest>

#include <cstdlib>

using namespace vogen;
using test::shown;
using V = QVariant;
using F = FunctionExpression;

namespace {

QVariant result(const QString &name, const QVariantList &values)
{
    return F::functionMap().value(name).function(values);
}

bool matches(const QString &subject, const QString &pattern, const QString &escape = QString())
{
    return F::like({subject, pattern, escape}).toBool();
}

} // namespace

class tst_BuiltInFunctions : public QObject
{
    Q_OBJECT

private slots:
    void values_data();
    void values();
    void clocks();
    void randomNumbers();
    void like_data();
    void like();
    void likeIsFiledAsTranslated();
    void likeForgetsTheOldest();
    void regexp_data();
    void regexp();
};

void tst_BuiltInFunctions::values_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *what, const char *name, const QVariantList &arguments,
                        const char *value) {
        QTest::newRow(what) << QString(name) << arguments << QString::fromUtf8(value);
    };
    const V null;

    row("abs of a negative Int", "abs", {-5}, "int:5");
    row("abs of a positive Int", "abs", {5}, "int:5");
    row("abs of 0", "abs", {0}, "int:0");
    row("abs of the least Int wraps", "abs", {std::numeric_limits<int>::min()}, "int:-2147483648");
    row("abs of -0.5: the same as 0, so left", "abs", {-0.5}, "double:-0.5");
    row("abs of -1.0", "abs", {-1.0}, "double:1");
    row("abs of a LongLong", "abs", {-5LL}, "qlonglong:5");
    row("abs of a text after 0", "abs", {"a"}, "QString:a");
    row("abs of a text before 0 fails", "abs", {"!"}, "NULL");
    row("abs of NULL", "abs", {null}, "NULL");

    row("min keeps the greatest", "min", {3, 5}, "int:5");
    row("min of three", "min", {3, 9, 5}, "int:9");
    row("min on a tie keeps the first", "min", {1, 1.5}, "int:1");
    row("min of texts", "min", {"10", "9"}, "QString:9");
    row("min of one", "min", {7}, "int:7");
    row("min with NULL: what can't be compared stays", "min", {null, 5}, "NULL");
    row("min with NULL behind", "min", {5, null}, "int:5");
    row("max keeps the smallest", "max", {3, 5}, "int:3");
    row("max of three", "max", {3, 1, 5}, "int:1");
    row("max on a tie keeps the first", "max", {1.5, 1}, "double:1.5");

    row("count", "count", {1, 2}, "int:2");
    row("count of a NULL", "count", {null}, "int:1");
    row("count of nothing", "count", {}, "int:0");

    row("group_concat begins with a comma", "group_concat", {"a", "b"}, "QString:,a,b");
    row("group_concat of one", "group_concat", {"a"}, "QString:,a");
    row("group_concat: an empty text doubles none", "group_concat", {"", "b"}, "QString:,b");
    row("group_concat: a text that ends in one", "group_concat", {"a,", "b"}, "QString:,a,b");
    row("group_concat of numbers", "group_concat", {1, 2.5}, "QString:,1,2.5");
    row("group_concat of nothing", "group_concat", {}, "QString:");

    row("coalesce: the first that is not null", "coalesce", {null, 5, 6}, "int:5");
    row("coalesce: an empty text is not null", "coalesce", {null, ""}, "QString:");
    row("coalesce: a null text is", "coalesce", {QString(), 0}, "int:0");
    row("coalesce: all null", "coalesce", {null, QString()}, "NULL");
    row("ifnull", "ifnull", {null, "x"}, "QString:x");
    row("ifnull of more than two", "ifnull", {null, null, 3}, "int:3");

    row("nullif of equal values: the first", "nullif", {1, 1}, "int:1");
    row("nullif of others: NULL", "nullif", {1, 2}, "NULL");
    row("nullif by TypeTool", "nullif", {1, 1.9}, "int:1");
    row("nullif of two NULLs: they can't be compared", "nullif", {null, null}, "NULL");
    row("nullif of maps: equal, whatever they hold", "nullif", {"x", QStringList()}, "QString:x");

    row("hex", "hex", {255}, "QString:ff");
    row("hex of a text", "hex", {"255"}, "QString:ff");
    row("hex of -1", "hex", {-1}, "QString:ffffffffffffffff");
    row("hex of 0", "hex", {0}, "QString:0");
    row("hex of what is no number", "hex", {"abc"}, "QString:0");
    row("hex of NULL", "hex", {null}, "QString:0");

    row("round up", "round", {2.5}, "double:3");
    row("round down", "round", {2.4999}, "double:2");
    row("round a negative half up", "round", {-2.5}, "double:-2");
    row("round an Int", "round", {7}, "double:7");
    row("round NULL", "round", {null}, "double:0");

    row("length", "length", {"abc"}, "int:3");
    row("length in code units", "length", {QString::fromUtf8("\xf0\x9f\x8e\xa5")}, "int:2");
    row("length of an Int", "length", {1234}, "int:4");
    row("length of NULL", "length", {null}, "int:0");
    row("lower", "lower", {QString::fromUtf8("AbC\xc3\x84")}, "QString:abc\xc3\xa4");
    row("lower of NULL: an empty text", "lower", {null}, "QString:");
    row("upper", "upper", {"abC"}, "QString:ABC");
    row("upper of a Bool", "upper", {true}, "QString:TRUE");
    row("quote changes nothing", "quote", {"it's"}, "QString:it's");
    row("quote of a placeholder", "quote", {"%1%2"}, "QString:%1%2");
    row("quote of an Int", "quote", {5}, "QString:5");
    row("trim", "trim", {" \t a b\n "}, "QString:a b");
}

void tst_BuiltInFunctions::values()
{
    QFETCH(QString, name);
    QFETCH(QVariantList, arguments);
    QTEST(shown(result(name, arguments)), "value");
}

void tst_BuiltInFunctions::clocks()
{
    const QDateTime before = QDateTime::currentDateTime();
    const QVariant now = result("currentDateTime", {});
    const QVariant date = result("currentDate", {});
    const QVariant time = result("currentTime", {});
    const QDateTime after = QDateTime::currentDateTime();
    QCOMPARE(now.type(), V::DateTime);
    QVERIFY(before <= now.toDateTime() && now.toDateTime() <= after);
    QCOMPARE(now.toDateTime().timeSpec(), Qt::LocalTime);
    QCOMPARE(date.type(), V::Date);
    QVERIFY(before.date() <= date.toDate() && date.toDate() <= after.date());
    QCOMPARE(time.type(), V::Time);
    if (before.date() == after.date()) // unless midnight came between
        QVERIFY(before.time() <= time.toTime() && time.toTime() <= after.time());
}

void tst_BuiltInFunctions::randomNumbers()
{
    std::srand(7);
    const int expected = std::rand();
    std::srand(7);
    QCOMPARE(result("random", {}), QVariant(expected));
}

void tst_BuiltInFunctions::like_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("escape");
    QTest::addColumn<QStringList>("matching");
    QTest::addColumn<QStringList>("others");
    const auto row = [](const char *what, const char *pattern, const char *escape,
                        const QStringList &matching, const QStringList &others) {
        QTest::newRow(what) << QString(pattern) << QString(escape) << matching << others;
    };
    row("as it stands", "abc", "", {"abc"}, {"ABC", "xabc", "abcd", ""});
    row("one character", "a_c", "", {"abc", "a.c", "a_c"}, {"ac", "abbc"});
    // Not "a.c", which finds what the row above has filed.
    row("a point is a point", "d.f", "", {"d.f"}, {"def"});
    row("percent means points", "a%c", "", {"ac", "a.c", "a..c"}, {"abc", "a%c"});
    row("percent alone", "%", "", {"", ".", "..."}, {"a"});
    row("an escaped underscore", "a!_c", "!", {"a.c"}, {"abc", "a_c"});
    row("an escaped percent", "a!%", "!", {"a\\", "a\\xyz"}, {"a", "a%"});
    row("a longer escape", "aESC_c", "ESC", {"a.c"}, {"abc"});
    row("a backslash with an escape", "a\\c", "!", {"a\\c"}, {"ac"});
    row("an empty pattern", "", "", {""}, {"a"});
    row("what QRegExp knows keeps its meaning", "ab+|c", "", {"ab", "abb", "c"}, {"ab+|c"});
    row("an escaped digit, and no such group", "a!1c", "!", {"ac"}, {"a1c", "aac"});
    row("a group by its number", "(a|b)\\1", "", {"aa", "bb"}, {"ab", "a"});
    row("no group of that number", "(a|b)\\2", "", {"a", "b"}, {"ab", "aa"});
    row("a group's number without bounds", "a\\223372036854775808b", "", {}, {"ab", "b"});
    row("a group's number that an int can't hold", "(a)\\4294967297", "", {}, {"a", "aa"});
    row("behind backslashes that stand for themselves", "a\\\\\\\\12345", "", {"a\\\\12345"},
        {"a"});
    row("of many digits in a class", "[\\123456789]", "", {}, {"", "1", "9"});
    row("a backslash at the end", "a\\", "", {}, {"a\\", "a"});
    row("an invalid pattern matches nothing", "a(", "", {}, {"a(", "a", ""});
    row("an invalid pattern: not even nothing", "[", "", {}, {""});
}

void tst_BuiltInFunctions::like()
{
    QFETCH(QString, pattern);
    QFETCH(QString, escape);
    QFETCH(QStringList, matching);
    QFETCH(QStringList, others);
    for (int round = 0; round < 2; ++round) { // made, then perhaps found
        for (const QString &subject : qAsConst(matching))
            QVERIFY2(matches(subject, pattern, escape), qPrintable(subject));
        for (const QString &subject : qAsConst(others))
            QVERIFY2(!matches(subject, pattern, escape), qPrintable(subject));
    }
    // Without a third value, and with NULLs.
    if (escape.isEmpty() && !matching.isEmpty())
        QCOMPARE(F::like({matching.first(), pattern}), QVariant(true));
    QCOMPARE(F::like({V(), V()}), QVariant(true));
    QCOMPARE(F::like({V(), V()}).type(), V::Bool);
}

void tst_BuiltInFunctions::likeIsFiledAsTranslated()
{
    // Translated by itself, the pattern wants a backslash and any text.
    QVERIFY(matches("q\\xx", "q\\.*"));
    QVERIFY(!matches("q..", "q\\.*"));
    // "q%" is filed as "q\.*": from now on that pattern finds the other's expression.
    QVERIFY(matches("q..", "q%"));
    QVERIFY(matches("q..", "q\\.*"));
    QVERIFY(!matches("q\\xx", "q\\.*"));
    // But not under another escape.
    QVERIFY(!matches("q..", "q\\.*", "!"));
}

void tst_BuiltInFunctions::likeForgetsTheOldest()
{
    matches("", "z%"); // files "z\.*"
    QVERIFY(matches("z..", "z\\.*"));
    for (int i = 0; i < 99; ++i)
        matches("", QString("pattern %1").arg(i));
    QVERIFY(matches("z..", "z\\.*")); // still there, and used last now
    for (int i = 0; i < 100; ++i)
        matches("", QString("another %1").arg(i));
    QVERIFY(!matches("z..", "z\\.*")); // made anew from the pattern itself
}

void tst_BuiltInFunctions::regexp_data()
{
    QTest::addColumn<QVariant>("subject");
    QTest::addColumn<QVariant>("pattern");
    QTest::addColumn<bool>("matching");
    QTest::newRow("a part is not enough") << V("abc") << V("b") << false;
    QTest::newRow("the whole") << V("abc") << V(".*b.*") << true;
    QTest::newRow("case counts") << V("ABC") << V("abc") << false;
    QTest::newRow("unless the pattern says otherwise")
        << V("ABC") << V(QRegExp("abc", Qt::CaseInsensitive)) << true;
    QTest::newRow("a wildcard pattern")
        << V("abc") << V(QRegExp("a*", Qt::CaseSensitive, QRegExp::Wildcard)) << true;
    QTest::newRow("a group that isn't there") << V("ab") << V("a\\1b") << true;
    QTest::newRow("a group that isn't there, in any case")
        << V("AB") << V(QRegExp("a\\3b", Qt::CaseInsensitive)) << true;
    QTest::newRow("a group by its number") << V("aa") << V(QRegExp("(a)\\1")) << true;
    QTest::newRow("a plain text has no groups")
        << V("a\\1") << V(QRegExp("a\\1", Qt::CaseSensitive, QRegExp::FixedString)) << true;
    QTest::newRow("a number") << V(123) << V("[0-9]+") << true;
    QTest::newRow("NULL and an empty pattern") << V() << V() << true;
    QTest::newRow("NULL and a pattern") << V() << V("a") << false;
    QTest::newRow("an invalid pattern") << V("a(") << V("a(") << false;
}

void tst_BuiltInFunctions::regexp()
{
    QFETCH(QVariant, subject);
    QFETCH(QVariant, pattern);
    for (int round = 0; round < 2; ++round) // made, then found
        QTEST(F::regexp({subject, pattern}).toBool(), "matching");
    QCOMPARE(F::regexp({subject, pattern}).type(), V::Bool);
}

QTEST_APPLESS_MAIN(tst_BuiltInFunctions)
#include "tst_BuiltInFunctions.moc"
