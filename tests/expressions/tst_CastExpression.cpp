#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ArithmeticOperators>
#include <Vokit/ExpressionOperators>

#include <QtTest>

using namespace vogen;
using namespace test;
using V = QVariant;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

class tst_CastExpression : public QObject
{
    Q_OBJECT

private slots:
    void functions_data();
    void functions();
    void evaluate_data();
    void evaluate();
    void flag();
    void printing();
    void placeholders_data();
    void placeholders();
    void equality();
    void emptyOperand();
    void stored();
    void unknownTypes_data();
    void unknownTypes();
};

void tst_CastExpression::functions_data()
{
    QTest::addColumn<ExpressionHandle>("cast");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    const ExpressionHandle a = ref("a");
    QTest::newRow("toBool") << ExpressionHandle(toBool(a)) << 1 << "bool";
    QTest::newRow("toInt") << ExpressionHandle(toInt(a)) << 2 << "int";
    QTest::newRow("toUInt") << ExpressionHandle(toUInt(a)) << 3 << "uint";
    QTest::newRow("toLongLong") << ExpressionHandle(toLongLong(a)) << 4 << "qlonglong";
    QTest::newRow("toULongLong") << ExpressionHandle(toULongLong(a)) << 5 << "qulonglong";
    QTest::newRow("toDouble") << ExpressionHandle(toDouble(a)) << 6 << "double";
    QTest::newRow("toString") << ExpressionHandle(toString(a)) << 10 << "QString";
    QTest::newRow("toDate") << ExpressionHandle(toDate(a)) << 14 << "QDate";
    QTest::newRow("toTime") << ExpressionHandle(toTime(a)) << 15 << "QTime";
    QTest::newRow("toDateTime") << ExpressionHandle(toDateTime(a)) << 16 << "QDateTime";
}

void tst_CastExpression::functions()
{
    QFETCH(ExpressionHandle, cast);
    QFETCH(int, type);
    QFETCH(QString, name);
    QVERIFY(cast.equals(CastExpression(static_cast<V::Type>(type), ref("a"))));
    QCOMPARE(print(cast, Sql), "CAST(a AS " + name + ")");
    QCOMPARE(print(cast, Readable), "CAST(a AS " + name + ")");
    QCOMPARE(print(cast, Code), "(" + name + ")a");
}

void tst_CastExpression::evaluate_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("result");
    const auto row = [](const char *name, const V &value, V::Type type, const V &result) {
        QTest::newRow(name) << value << int(type) << result;
    };
    row("text to Int", "12", V::Int, 12);
    row("text that is no number: 0 of the type", "abc", V::Int, 0);
    row("Double to Int rounds", 2.5, V::Int, 3);
    row("Int to String", 5, V::String, "5");
    row("Int to Bool", 5, V::Bool, true);
    row("Bool to String", true, V::String, "true");
    row("text to Date", "2026-03-05", V::Date, QDate(2026, 3, 5));
    row("Date to DateTime", QDate(2026, 3, 5), V::DateTime,
        QDateTime(QDate(2026, 3, 5), QTime(0, 0)));
    row("Date to LongLong: microseconds, unsigned", QDate(1970, 1, 2), V::LongLong, 86400000000ULL);
    row("Time to Int: milliseconds", QTime(0, 0, 1), V::Int, 1000);
    row("Double to Date: days", 1.0, V::Date, QDate(1970, 1, 2));
    row("a list to Int", QVariantList{1}, V::Int, V());
    row("Bool to Date", true, V::Date, V());
    row("NULL to Int", V(), V::Int, V());
    row("NULL to Date", V(), V::Date, V());
}

void tst_CastExpression::evaluate()
{
    QFETCH(QVariant, value);
    QFETCH(int, type);
    QFETCH(QVariant, result);
    const ExpressionHandle cast = CastExpression(static_cast<V::Type>(type), literal(value));
    const QVariant actual = cast->evaluate(PropertySet(), nullptr);
    QCOMPARE(actual.userType(), result.userType());
    QCOMPARE(actual, result);
}

void tst_CastExpression::flag()
{
    const PropertySet set = setOf({new StringProperty("a", "", "7")});
    QCOMPARE(evaluated(toInt(literal("7"))), QString("int:7 const"));
    QCOMPARE(evaluated(toInt(ref("a")), set), QString("int:7"));
    QCOMPARE(evaluated(toInt(ref("a")) == literal(7), set), QString("bool:true"));
}

void tst_CastExpression::printing()
{
    const ExpressionHandle both = ref("a") && ref("b");
    QCOMPARE(print(toInt(both), Sql), QString("CAST(a AND b AS int)"));
    QCOMPARE(print(toInt(both), Code), QString("(int)(a && b)"));
    // Nested, the operand's brackets stand within.
    QCOMPARE(print(toInt(both) == literal(1), Sql), QString("CAST((a AND b) AS int) = 1"));
    QCOMPARE(print(toInt(ref("a") + literal(1)), Code), QString("(int)(a+1)"));
    const CastExpression noName(V::Invalid, ref("a"));
    QCOMPARE(noName.toString(Sql), QString("CAST(a AS )"));
}

void tst_CastExpression::placeholders_data()
{
    QTest::addColumn<ExpressionHandle>("cast");
    QTest::addColumn<QString>("text");
    QTest::newRow("the bound value has the type")
        << ExpressionHandle(toString(bound(5))) << "CAST(? AS QString) <- QString:5";
    QTest::newRow("all that lie within")
        << ExpressionHandle(toInt(bound("1") << bound("2"))) << "CAST(?,? AS int) <- int:1, int:2";
    QTest::newRow("and none before it") << ExpressionHandle(bound("0") << toInt(bound("1")))
                                        << "?,CAST(? AS int) <- QString:0, int:1";
    QTest::newRow("a date is a number by then")
        << ExpressionHandle(toString(bound(QDate(1970, 1, 2))))
        << "CAST(? AS QString) <- QString:86400000000";
    QTest::newRow("which goes to no date: NULL")
        << ExpressionHandle(toDate(bound(QDate(1970, 1, 2)))) << "CAST(? AS QDate) <- NULL";
    QTest::newRow("casts in casts") << ExpressionHandle(toInt(toString(bound(5.0))))
                                    << "CAST(CAST(? AS QString) AS int) <- int:5";
}

void tst_CastExpression::placeholders()
{
    QFETCH(ExpressionHandle, cast);
    QTEST(bindable(cast), "text");
}

void tst_CastExpression::equality()
{
    const ExpressionHandle cast = toInt(ref("a"));
    QVERIFY(cast.equals(toInt(ref("a"))));
    QVERIFY(!cast.equals(toUInt(ref("a"))));
    QVERIFY(!cast.equals(toInt(ref("b"))));
    QVERIFY(!cast.equals(ref("a")));
    QVERIFY(!cast->equals(nullptr));
    const ExpressionHandle probe = Probe(1); // equal to nothing but itself
    QVERIFY(ExpressionHandle(toInt(probe)).equals(toInt(probe)));
    CastExpression copy = toBool(ref("b"));
    copy = toInt(ref("a"));
    copy = *&copy;
    QVERIFY(copy.equals(cast.constData()));
}

void tst_CastExpression::emptyOperand()
{
    QVERIFY(toInt(ExpressionHandle()).isEmpty());
    QVERIFY(!toInt(ref("a")).isEmpty());
    QCOMPARE(evaluated(toInt(ExpressionHandle())), QString("NULL const"));
    QCOMPARE(print(toInt(ExpressionHandle()), Sql), QString("CAST( AS int)"));
}

void tst_CastExpression::stored()
{
    const ExpressionHandle cast = toString(ref("a") == bound(5));
    const QByteArray bytes = written(cast);
    QCOMPARE(bytes.left(37).toHex(),
             (QByteArray::fromHex("00000019") + QByteArray("N5vogen14CastExpressionE", 25) +
              QByteArray::fromHex("00000001"
                                  "0000000a"))
                 .toHex());
    QVERIFY(readBack(bytes).equals(cast));
    QCOMPARE(bindable(readBack(bytes)), bindable(cast));

    // The stream operators are writeExpression().
    QByteArray streamed;
    QDataStream stream(&streamed, QIODevice::WriteOnly);
    stream << cast << *cast << toString(ref("a") == bound(5));
    QCOMPARE(streamed, bytes + bytes + bytes);
}

void tst_CastExpression::unknownTypes_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 0, 58, 127, 135, 200, 1023, 5000, 2147483647, -2147483647})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

// As a damaged stream may hold them.
void tst_CastExpression::unknownTypes()
{
    QFETCH(int, type);
    QByteArray bytes = written(toInt(bound(5)));
    QDataStream stream(&bytes, QIODevice::ReadWrite);
    stream.skipRawData(33);
    stream << type;
    const ExpressionHandle cast = readBack(bytes);
    QCOMPARE(written(cast), bytes);
    QVERIFY(print(cast, Sql).startsWith("CAST(5 AS "));
    QVERIFY(!cast->evaluate(PropertySet(), nullptr).isValid());
    QCOMPARE(cast->collectPlaceholders().size(), 1);
}

QTEST_APPLESS_MAIN(tst_CastExpression)
#include "tst_CastExpression.moc"
