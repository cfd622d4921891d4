#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ArithmeticOperators>
#include <Vokit/ExpressionOperators>
#include <Vokit/TypeTool>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

constexpr Style OrderBy = Expression::PrintSql | Expression::PrintOrderBy;

} // namespace

class tst_UnaryOperator : public QObject
{
    Q_OBJECT

private slots:
    void codes();
    void negated_data();
    void negated();
    void dates();
    void printing_data();
    void printing();
    void sortsTheOtherWay();
    void plusIsNoNode();
    void equality();
    void unknownOperation();
    void stored();
};

void tst_UnaryOperator::codes()
{
    QCOMPARE(int(UnaryOperator::Minus), 0);
    QCOMPARE(int(UnaryOperator::BitNot), 1);
}

void tst_UnaryOperator::negated_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("minusConstant");
    QTest::addColumn<QString>("minusProperty");
    QTest::addColumn<QString>("bitNotProperty");
    const QString inverted = "QString:" + QString(QChar(0xFF9E)) + QChar(0xFF9D) + QChar(0xFFFF);
    QTest::newRow("Int") << QVariant(5) << "int:-5 const"
                         << "int:-5"
                         << "int:5";
    QTest::newRow("the least Int wraps")
        << QVariant(std::numeric_limits<int>::min()) << "int:-2147483648 const"
        << "int:-2147483648"
        << "int:-2147483648";
    QTest::newRow("LongLong") << QVariant(5LL) << "qlonglong:-5 const"
                              << "qlonglong:-5"
                              << "qlonglong:5";
    QTest::newRow("UInt: a constant fits an Int, a property makes a LongLong")
        << QVariant(5u) << "int:-5 const"
        << "qlonglong:-5"
        << "uint:5";
    QTest::newRow("ULongLong: a property makes a Double") << QVariant(5ULL) << "int:-5 const"
                                                          << "double:-5"
                                                          << "qulonglong:5";
    QTest::newRow("Double: has no bits") << QVariant(1.5) << "double:-1.5 const"
                                         << "double:-1.5"
                                         << "NULL";
    // A text, and what has one, always counts as constant; so does what has no negation.
    QTest::newRow("text") << QVariant("ab") << inverted + " const" << inverted + " const"
                          << "NULL const";
    QTest::newRow("Bool goes by its text")
        << QVariant(true) << "QString:" + TypeTool::invertString("true") + " const"
        << "QString:" + TypeTool::invertString("true") + " const"
        << "NULL const";
    QTest::newRow("NULL") << QVariant() << "NULL const"
                          << "NULL const"
                          << "NULL const";
    QTest::newRow("a list") << QVariant(QVariantList{1}) << "NULL const"
                            << "NULL const"
                            << "NULL const";
}

void tst_UnaryOperator::negated()
{
    QFETCH(QVariant, value);
    const PropertySet set = setOf({new VariantProperty("p", "", value)});
    QTEST(evaluated(-literal(value)), "minusConstant");
    QTEST(evaluated(-ref("p"), set), "minusProperty");
    QTEST(evaluated(~ref("p"), set), "bitNotProperty");
    QCOMPARE((-literal(value)).evaluate(set, nullptr).isValid(),
             !evaluated(-literal(value)).startsWith("NULL"));
}

void tst_UnaryOperator::dates()
{
    const auto minus = [](const QVariant &value) {
        return (-literal(value)).evaluate(PropertySet(), nullptr);
    };
    const QDateTime noon(QDate(1970, 1, 1), QTime(12, 0), Qt::UTC);
    const QVariant negated = minus(noon);
    QCOMPARE(negated.type(), QVariant::DateTime);
    QCOMPARE(negated.toDateTime(),
             QDateTime::fromMSecsSinceEpoch((4294967296LL - 43200) * 1000, Qt::UTC));
    QCOMPARE(minus(QDate(1970, 1, 1)).toDateTime(), QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
    QCOMPARE(evaluated(~literal(noon)), QString("NULL const"));
    const PropertySet set = setOf({new DateTimeProperty("d", "", noon)});
    bool isConstant = true;
    (-ref("d")).evaluate(set, &isConstant);
    QVERIFY(!isConstant);
}

void tst_UnaryOperator::printing_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("orderBy");
    const IntProperty p("p q");
    const ExpressionHandle sum = ref("a") + ref("b");
    QTest::newRow("minus a property") << ExpressionHandle(-p) << "-p_q"
                                      << "p_q DESC";
    QTest::newRow("minus a handle") << ExpressionHandle(-ref("a")) << "-a"
                                    << "a DESC";
    QTest::newRow("bit not") << ExpressionHandle(~ref("a")) << "~a"
                             << "a";
    QTest::newRow("a sum: brackets, but not in ordering") << ExpressionHandle(-sum) << "-(a+b)"
                                                          << "a+b DESC";
    QTest::newRow("twice") << ExpressionHandle(-(-ref("a"))) << "--a"
                           << "a DESC DESC";
}

void tst_UnaryOperator::printing()
{
    QFETCH(ExpressionHandle, e);
    QTEST(print(e, Sql), "sql");
    QTEST(print(e, Code), "sql");
    QTEST(print(e, OrderBy), "orderBy");
}

void tst_UnaryOperator::sortsTheOtherWay()
{
    const auto keyOf = [](const QVariant &value) {
        return (-literal(value)).evaluate(PropertySet(), nullptr);
    };
    const QList<QVariantList> ascending{{-5, 0, 7}, {1.5, 3.5, 8.0}, {"", "a", "ab", "b"}};
    for (const QVariantList &values : ascending) {
        for (int i = 0; i + 1 < values.size(); ++i)
            QVERIFY(TypeTool(false, false).compare(keyOf(values.at(i)), keyOf(values.at(i + 1))) >
                    0);
    }
}

void tst_UnaryOperator::plusIsNoNode()
{
    const IntProperty p("p");
    const ExpressionHandle h = ref("h");
    QCOMPARE((+h).constData(), h.constData());
    QVERIFY((std::is_same_v<decltype(+p), ValueExpression>));
    QCOMPARE(written(+p), written(ref("p")));
}

void tst_UnaryOperator::equality()
{
    const ExpressionHandle e = -ref("a");
    QVERIFY(e.equals(-ref("a")));
    QVERIFY(!e.equals(~ref("a")));
    QVERIFY(!e.equals(-ref("b")));
    QVERIFY(!e.equals(!ref("a")));
    QVERIFY(!e->equals(nullptr));
}

void tst_UnaryOperator::unknownOperation()
{
    // From a damaged stream.
    const ExpressionHandle e = UnaryOperator(static_cast<UnaryOperator::UnaryOp>(7), literal(5));
    QCOMPARE(evaluated(e), QString("NULL const"));
    QCOMPARE(print(e, Sql), QString("5"));
    QCOMPARE(print(e, OrderBy), QString("5"));
}

void tst_UnaryOperator::stored()
{
    const ExpressionHandle e = ~ref("a");
    QVERIFY(readBack(written(e)).equals(e));
    QCOMPARE(written(e).left(44).toHex(),
             (QByteArray::fromHex("00000018") + QByteArray("N5vogen13UnaryOperatorE", 24) +
              QByteArray::fromHex("00000001"
                                  "00000001"
                                  "00000001"
                                  "00000001"))
                 .toHex());
}

QTEST_APPLESS_MAIN(tst_UnaryOperator)
#include "tst_UnaryOperator.moc"
