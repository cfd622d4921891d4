#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionOperators>
#include <Vokit/TypeTool>

#include <QRegExp>
#include <QtTest>

using namespace vogen;
using namespace test;

class tst_Leaves : public QObject
{
    Q_OBJECT

private slots:
    void printValue_data();
    void printValue();
    void constant();
    void constantEquality_data();
    void constantEquality();
    void placeholders_data();
    void placeholders();
    void dateFactories();
    void stringValue();
    void reference();
    void referenceLookUp_data();
    void referenceLookUp();
    void referencePrinting_data();
    void referencePrinting();
    void referenceEquality();
    void referenceSeesItsSet();
    void star();
};

void tst_Leaves::printValue_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("readable");
    const QDate date(1970, 1, 2);
    QTest::newRow("int") << QVariant(-5) << "-5"
                         << "-5";
    QTest::newRow("uint") << QVariant(4000000000u) << "4000000000"
                          << "4000000000";
    QTest::newRow("long long") << QVariant(-5000000000LL) << "-5000000000"
                               << "-5000000000";
    QTest::newRow("unsigned long long")
        << QVariant(18446744073709551615ULL) << "18446744073709551615"
        << "18446744073709551615";
    QTest::newRow("double") << QVariant(0.1) << "0.1"
                            << "0.1";
    QTest::newRow("date") << QVariant(date) << "86400000000"
                          << "1970-01-02";
    QTest::newRow("date before the epoch") << QVariant(QDate(1969, 12, 31)) << "-86400000000"
                                           << "1969-12-31";
    QTest::newRow("time") << QVariant(QTime(0, 0, 1)) << "1000000"
                          << "00:00:01.000";
    QTest::newRow("date and time")
        << QVariant(QDateTime(date, QTime(0, 0, 1), Qt::UTC)) << "86401000000"
        << "1970-01-02T00:00:01.000Z";
    QTest::newRow("text") << QVariant("alarm") << "'alarm'"
                          << "\"alarm\"";
    QTest::newRow("quotes double in SQL only") << QVariant("O'Hara") << "'O''Hara'"
                                               << "\"O'Hara\"";
    QTest::newRow("nothing is escaped outside SQL") << QVariant("a\"b\\") << "'a\"b\\'"
                                                    << "\"a\"b\\\"";
    QTest::newRow("empty text") << QVariant("") << "''"
                                << "\"\"";
    QTest::newRow("bool is text") << QVariant(true) << "'true'"
                                  << "\"true\"";
    QTest::newRow("float is text") << QVariant(1.5f) << "'1.5'"
                                   << "\"1.5\"";
    QTest::newRow("NULL has no keyword") << QVariant() << "''"
                                         << "\"\"";
    QTest::newRow("a pattern") << QVariant(QRegExp("a'b.*")) << "'a''b.*'"
                               << "\"a'b.*\"";
    QTest::newRow("a list of two has no text") << QVariant(QStringList{"a", "b"}) << "''"
                                               << "\"\"";
    QTest::newRow("a null int is 0") << QVariant(QVariant::Int) << "0"
                                     << "0";
}

void tst_Leaves::printValue()
{
    QFETCH(QVariant, value);
    QFETCH(QString, sql);
    QFETCH(QString, readable);
    QCOMPARE(print(literal(value), Sql), sql);
    QCOMPARE(print(literal(value), Placeholders), sql); // not bindable: the literal all the same
    QCOMPARE(print(literal(value), Sql | Nested), sql);
    QCOMPARE(print(literal(value), Readable), readable);
    QCOMPARE(print(literal(value), Code), readable);
    QCOMPARE(print(bound(value), Sql), sql);
    QCOMPARE(print(bound(value), Placeholders), QString("?"));
    QCOMPARE(print(bound(value), Expression::PrintPlaceholders), QString("?"));

    QString text;
    QTextStream stream(&text);
    ConstExpression::printValue(stream, value, Placeholders); // asks nobody whether it is bindable
    stream << ' ';
    ConstExpression::printValue(stream, value, Sql);
    stream.flush();
    QCOMPARE(text, "? " + sql);

    text.clear();
    stream << Qt::forcesign << Qt::showbase
           << Qt::hex; // of the caller's, for numbers of the caller's
    ConstExpression::printValue(stream, value, Sql);
    stream.flush();
    QCOMPARE(text, sql);
}

void tst_Leaves::constant()
{
    QCOMPARE(evaluated(literal(5)), QString("int:5 const"));
    QCOMPARE(evaluated(null()), QString("NULL const"));
    QCOMPARE(literal(5)->evaluate(PropertySet(), nullptr), QVariant(5));
    QVERIFY(null()->isEmpty());
    QVERIFY(bound(QVariant())->isEmpty());
    QVERIFY(!literal("")->isEmpty());
    QVERIFY(!literal(QVariant(QVariant::Int))->isEmpty()); // null, but of a type

    ConstExpression a(1, false);
    const ConstExpression b(2, true);
    a = b;
    QCOMPARE(bindable(a), QString("? <- int:2"));
    a = *&a;
    QCOMPARE(bindable(a), QString("? <- int:2"));
}

void tst_Leaves::constantEquality_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<bool>("equal");
    QTest::newRow("same") << QVariant(5) << QVariant(5) << true;
    QTest::newRow("by QVariant: an int and its text") << QVariant(5) << QVariant("5") << true;
    QTest::newRow("a text and an int that reads otherwise")
        << QVariant("05") << QVariant(5) << false;
    QTest::newRow("other value") << QVariant(5) << QVariant(6) << false;
    QTest::newRow("two NULLs") << QVariant() << QVariant() << true;
    QTest::newRow("a bool and 1: no TypeTool here") << QVariant(true) << QVariant(1) << true;
}

void tst_Leaves::constantEquality()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(bool, equal);
    QCOMPARE(literal(left).equals(literal(right)), equal);
    QCOMPARE(literal(left).equals(bound(right)), equal); // bindable or not does not count
    QVERIFY(!literal(left).equals(ref("a")));
    QVERIFY(!ref("a").equals(literal(left)));
}

void tst_Leaves::placeholders_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("collected");
    const QDate date(1970, 1, 2);
    QTest::newRow("int") << QVariant(5) << QVariant(5);
    QTest::newRow("text") << QVariant("a") << QVariant("a");
    QTest::newRow("bool") << QVariant(true) << QVariant(true);
    QTest::newRow("NULL") << QVariant() << QVariant();
    QTest::newRow("date") << QVariant(date) << QVariant(86400000000LL);
    QTest::newRow("time") << QVariant(QTime(0, 0, 1)) << QVariant(1000000LL);
    QTest::newRow("date and time")
        << QVariant(QDateTime(date, QTime(0, 0), Qt::UTC)) << QVariant(86400000000LL);
}

void tst_Leaves::placeholders()
{
    QFETCH(QVariant, value);
    QFETCH(QVariant, collected);
    const QList<QVariant> values = bound(value)->collectPlaceholders();
    QCOMPARE(values, QList<QVariant>{collected});
    QCOMPARE(values.first().userType(), collected.userType());
    QVERIFY(literal(value)->collectPlaceholders().isEmpty());

    QList<QVariant> appended{"before"};
    bound(value)->collectPlaceholders(appended);
    QCOMPARE(appended, (QList<QVariant>{"before", collected}));
}

void tst_Leaves::dateFactories()
{
    const ConstExpression date = ConstExpression::date(2026, 3, 5);
    QCOMPARE(date.evaluate(PropertySet(), nullptr), QVariant(QDate(2026, 3, 5)));
    QCOMPARE(date.toString(Readable), QString("2026-03-05"));
    QCOMPARE(date.toString(Placeholders), QString("1772668800000000")); // not bindable
    QVERIFY(date.collectPlaceholders().isEmpty());

    const ConstExpression time = ConstExpression::time(1, 2, 3, 4);
    QCOMPARE(time.evaluate(PropertySet(), nullptr), QVariant(QTime(1, 2, 3, 4)));
    QCOMPARE(time.toString(Sql), QString("3723004000"));

    const ConstExpression both = ConstExpression::dateTime(2026, 3, 5, 5, 30, 0, 250);
    const QDateTime value = both.evaluate(PropertySet(), nullptr).toDateTime();
    QCOMPARE(value.timeSpec(), Qt::LocalTime);
    QCOMPARE(value, QDateTime(QDate(2026, 3, 5), QTime(5, 30, 0, 250)));
    QCOMPARE(both.toString(Sql),
             QString("1772668800250000")); // half past five here is midnight UTC
    QVERIFY(both.collectPlaceholders().isEmpty());
}

void tst_Leaves::stringValue()
{
    QCOMPARE(ConstExpression::stringValue(QRegExp("a.*b")), QString("a.*b"));
    QCOMPARE(ConstExpression::stringValue(5), QString("5"));
    QCOMPARE(ConstExpression::stringValue(true), QString("true"));
    QVERIFY(ConstExpression::stringValue(QVariant()).isNull());
}

void tst_Leaves::reference()
{
    const PropertySet set = setOf({new IntProperty("a", "", 5)});
    QCOMPARE(evaluated(ref("a"), set), QString("int:5"));
    QCOMPARE(evaluated(ref("b"), set), QString("NULL"));
    QCOMPARE(ref("a")->evaluate(set, nullptr), QVariant(5));
    bool isConstant = true;
    ref("b")->evaluate(set, &isConstant);
    QVERIFY(!isConstant); // whether the property exists or not

    QVERIFY(ref("")->isEmpty());
    QVERIFY(ref("", "alias")->isEmpty());
    QVERIFY(!ref("a")->isEmpty());
    QVERIFY(ref("a")->collectPlaceholders().isEmpty());
}

void tst_Leaves::referenceLookUp_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("alias");
    QTest::addColumn<QString>("value");
    QTest::newRow("by name") << "a"
                             << ""
                             << "QString:value of a";
    QTest::newRow("by name, alias null") << "a" << QString() << "QString:value of a";
    QTest::newRow("the alias comes first") << "a"
                                           << "b"
                                           << "QString:value of b";
    QTest::newRow("an alias that isn't there") << "a"
                                               << "x"
                                               << "QString:value of a";
    QTest::newRow("only the alias is there") << "x"
                                             << "b"
                                             << "QString:value of b";
    QTest::newRow("neither") << "x"
                             << "y"
                             << "NULL";
    QTest::newRow("a blank in the name") << "a b"
                                         << ""
                                         << "QString:value of a b";
    QTest::newRow("the printed form is no name") << "a_b"
                                                 << ""
                                                 << "NULL";
    QTest::newRow("an empty name") << ""
                                   << ""
                                   << "NULL";
}

void tst_Leaves::referenceLookUp()
{
    QFETCH(QString, name);
    QFETCH(QString, alias);
    QFETCH(QString, value);
    PropertySet set =
        setOf({new StringProperty("a", "", "value of a"), new StringProperty("b", "", "value of b"),
               new StringProperty("a b", "", "value of a b")});
    const ExpressionHandle reference = ValueExpression(name, alias);
    QCOMPARE(evaluated(reference, set), value);
    QCOMPARE(evaluated(reference == reference, set),
             QString(value == "NULL" ? "NULL" : "bool:true"));

    // A property whose name is empty is found by an empty alias, ahead of any name.
    set.add(shared(new StringProperty("", "", "nameless")));
    if (alias.isEmpty())
        QCOMPARE(evaluated(reference, set), QString("QString:nameless"));
    else
        QCOMPARE(evaluated(reference, set), value);
}

void tst_Leaves::referencePrinting_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("alias");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("readable");
    QTest::newRow("plain") << "a"
                           << ""
                           << "a"
                           << "a";
    QTest::newRow("blanks") << "a b  c"
                            << ""
                            << "a_b__c"
                            << "a_b__c";
    QTest::newRow("alias in SQL only, unchanged") << "a b"
                                                  << "c d"
                                                  << "a_b AS c d"
                                                  << "a_b";
    QTest::newRow("nothing is quoted") << "a'b\""
                                       << ""
                                       << "a'b\""
                                       << "a'b\"";
    QTest::newRow("empty") << ""
                           << ""
                           << ""
                           << "";
}

void tst_Leaves::referencePrinting()
{
    QFETCH(QString, name);
    QFETCH(QString, alias);
    const ExpressionHandle reference = ValueExpression(name, alias);
    QTEST(print(reference, Sql), "sql");
    QTEST(print(reference, Placeholders | Nested), "sql");
    QTEST(print(reference, Readable), "readable");
    QTEST(print(reference, Code | Nested), "readable");
}

void tst_Leaves::referenceEquality()
{
    QVERIFY(ref("a", "b").equals(ref("a", "b")));
    QVERIFY(!ref("a", "b").equals(ref("a", "c")));
    QVERIFY(!ref("a", "b").equals(ref("c", "b")));
    QVERIFY(ref("a").equals(ValueExpression("a", QString()))); // empty and null are one text
    const IntProperty property("a");
    QVERIFY(ExpressionHandle(ValueExpression(property, "")).equals(ref("a")));

    ValueExpression copy("x", "y");
    const ValueExpression source("a", "b");
    copy = source;
    copy = *&copy;
    QVERIFY(copy.equals(&source));
}

void tst_Leaves::referenceSeesItsSet()
{
    // The tree keeps the name only: it outlives the property and works on any set.
    ExpressionHandle reference;
    {
        const IntProperty gone("a", "", 1);
        reference = ValueExpression(gone, "");
    }
    QCOMPARE(evaluated(reference, setOf({new StringProperty("a", "", "x")})), QString("QString:x"));
    PropertySet set = setOf({new IntProperty("a", "", 1)});
    IntProperty::setValue(set["a"], 2);
    QCOMPARE(evaluated(reference, set), QString("int:2"));
}

void tst_Leaves::star()
{
    QVERIFY(!ValueExpression::star.isEmpty());
    QCOMPARE(ValueExpression::star.toString(Sql), QString("*"));
    QVERIFY(ExpressionHandle(ValueExpression::star).equals(ref("*")));
}

QTEST_APPLESS_MAIN(tst_Leaves)
#include "tst_Leaves.moc"
