#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/Comparator>
#include <Vokit/ExpressionOperators>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)
Q_DECLARE_METATYPE(vogen::Comparator::CompOp)

namespace {

ExpressionHandle compared(const ExpressionHandle &left, Comparator::CompOp op,
                          const ExpressionHandle &right)
{
    return Comparator(left, op, right);
}

} // namespace

class tst_Comparator : public QObject
{
    Q_OBJECT

private slots:
    void codes();
    void operators_data();
    void operators();
    void nulls_data();
    void nulls();
    void constantFlag_data();
    void constantFlag();
    void constantsDecideTheType();
    void unknownOperator();
    void missingOperands();
    void printing_data();
    void printing();
    void equality();
    void evaluationOrder();
    void leftValueIsReadFirst();
    void copies();
};

void tst_Comparator::codes()
{
    QCOMPARE(int(Comparator::NotEqual), 0);
    QCOMPARE(int(Comparator::Less), 1);
    QCOMPARE(int(Comparator::Equal), 2);
    QCOMPARE(int(Comparator::Greater), 3);
    QCOMPARE(int(Comparator::LessEqual), 4);
    QCOMPARE(int(Comparator::GreaterEqual), 5);
    QCOMPARE(sizeof(Comparator::CompOp), size_t(4));
}

void tst_Comparator::operators_data()
{
    QTest::addColumn<Comparator::CompOp>("op");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QVariant>("less");
    QTest::addColumn<QVariant>("same");
    QTest::addColumn<QVariant>("greater");
    QTest::newRow("!=") << Comparator::NotEqual << " != "
                        << " != " << QVariant(true) << QVariant(false) << QVariant(true);
    QTest::newRow("<") << Comparator::Less << " < "
                       << " < " << QVariant(true) << QVariant(false) << QVariant(false);
    QTest::newRow("==") << Comparator::Equal << " = "
                        << " == " << QVariant(false) << QVariant(true) << QVariant(false);
    QTest::newRow(">") << Comparator::Greater << " > "
                       << " > " << QVariant(false) << QVariant(false) << QVariant(true);
    QTest::newRow("<=") << Comparator::LessEqual << " <= "
                        << " <= " << QVariant(true) << QVariant(true) << QVariant(false);
    QTest::newRow(">=") << Comparator::GreaterEqual << " >= "
                        << " >= " << QVariant(false) << QVariant(true) << QVariant(true);
}

void tst_Comparator::operators()
{
    QFETCH(Comparator::CompOp, op);
    QFETCH(QString, words);
    QFETCH(QString, code);
    const auto text = [op](Style style) { return print(compared(ref("a"), op, bound(5)), style); };
    QCOMPARE(text(Readable), "a" + words + "5");
    QCOMPARE(text(Sql), "a" + words + "5");
    QCOMPARE(text(Placeholders), "a" + words + "?");
    QCOMPARE(text(Code), "a" + code + "5");
    QCOMPARE(text(Code | Sql), "a" + code + "5");

    const auto holds = [op](const QVariant &left, const QVariant &right) {
        // By the variants of constants, and by the values of properties seen in place.
        const PropertySet set =
            setOf({new VariantProperty("l", "", left), new VariantProperty("r", "", right)});
        const QVariant constants =
            compared(literal(left), op, literal(right))->evaluate(PropertySet(), nullptr);
        const QVariant properties = compared(ref("l"), op, ref("r"))->evaluate(set, nullptr);
        return constants == properties ? constants : QVariant("they differ");
    };
    QTEST(holds(4, 5), "less");
    QTEST(holds(5, 5), "same");
    QTEST(holds(6, 5), "greater");
    QTEST(holds("a", "b"), "less");
    QTEST(holds("b", "b"), "same");
    QTEST(holds("b", "a"), "greater");
    QTEST(holds(QDate(2026, 3, 5), QDateTime(QDate(2026, 3, 5), QTime(0, 1), Qt::UTC)), "less");
    QTEST(holds(1.5, 1), "same"); // less than 1 apart
    QTEST(holds(QVariantList{1}, QVariantList{}), "greater");
    QCOMPARE(holds(QVariant(), 5), QVariant());
    QCOMPARE(holds(5, QVariant()), QVariant());
    QCOMPARE(holds(QVariant(), QVariant()), QVariant());
}

void tst_Comparator::nulls_data()
{
    QTest::addColumn<ExpressionHandle>("comparison");
    QTest::addColumn<QString>("value");
    const QVariantMap map;
    QTest::newRow("a missing property") << ExpressionHandle(ref("x") == literal(5)) << "NULL";
    QTest::newRow("NotEqual is NULL too") << ExpressionHandle(ref("x") != literal(5)) << "NULL";
    QTest::newRow("two missing properties") << ExpressionHandle(ref("x") == ref("y")) << "NULL";
    QTest::newRow("a missing property, ordered")
        << ExpressionHandle(ref("x") < literal(5)) << "NULL";
    QTest::newRow("NULL and NULL") << ExpressionHandle(null() == null()) << "NULL const";
    QTest::newRow("maps are equal, whatever they hold")
        << ExpressionHandle(literal(QVariantMap{{"a", 1}}) == literal(map)) << "bool:true const";
    QTest::newRow("maps have no order")
        << ExpressionHandle(literal(map) < literal(map)) << "NULL const";
    QTest::newRow("the empty expression and a number")
        << ExpressionHandle(ExpressionHandle() == literal(5)) << "NULL const";
}

void tst_Comparator::nulls()
{
    QFETCH(ExpressionHandle, comparison);
    QTEST(evaluated(comparison), "value");
}

void tst_Comparator::constantFlag_data()
{
    QTest::addColumn<ExpressionHandle>("comparison");
    QTest::addColumn<QString>("value");
    QTest::newRow("both constant")
        << ExpressionHandle(literal(1) < literal(2)) << "bool:true const";
    QTest::newRow("left a property") << ExpressionHandle(ref("a") < literal(8)) << "bool:true";
    QTest::newRow("right a property") << ExpressionHandle(literal(8) < ref("a")) << "bool:false";
    QTest::newRow("both properties") << ExpressionHandle(ref("a") == ref("a")) << "bool:true";
    QTest::newRow("a comparison of constants within")
        << ExpressionHandle(ExpressionHandle(literal(1) < literal(2)) == literal(true))
        << "bool:true const";
    QTest::newRow("a property deep within")
        << ExpressionHandle(ExpressionHandle(literal(1) < ref("a")) == literal(true))
        << "bool:true";
}

void tst_Comparator::constantFlag()
{
    QFETCH(ExpressionHandle, comparison);
    const PropertySet set = setOf({new IntProperty("a", "", 7)});
    QTEST(evaluated(comparison, set), "value");
    QVERIFY(comparison->evaluate(set, nullptr).isValid());
}

void tst_Comparator::constantsDecideTheType()
{
    const PropertySet set = setOf({new IntProperty("i", "", 10), new U64Property("u", "", 9)});
    QCOMPARE(evaluated(ref("i") < ref("u"), set), QString("bool:true")); // texts: "10" and "9"
    QCOMPARE(evaluated(ref("i") < bound(9ULL), set), QString("bool:false"));
    QCOMPARE(evaluated(bound(10) < ref("u"), set), QString("bool:false"));
    QCOMPARE(evaluated(ref("u") > bound(10), set), QString("bool:false"));
}

void tst_Comparator::unknownOperator()
{
    const auto op = static_cast<Comparator::CompOp>(77);
    QCOMPARE(evaluated(compared(literal(1), op, literal(1))), QString("NULL const"));
    QCOMPARE(evaluated(compared(literal(1), op, ref("a"))), QString("NULL"));
    QCOMPARE(print(compared(ref("a"), op, literal(1)), Sql), QString("a1"));
    QCOMPARE(print(compared(ref("a"), static_cast<Comparator::CompOp>(-1), literal(1)), Code),
             QString("a1"));
}

void tst_Comparator::missingOperands()
{
    const Comparator bare(Comparator::Equal);
    QVERIFY(bare.isEmpty());
    QCOMPARE(print(bare, Sql), QString(" = "));
    QCOMPARE(evaluated(bare), QString("bool:true const")); // two empty lists
    Comparator one(Comparator::Less);
    one.append(literal(1));
    QCOMPARE(print(one, Sql), QString("1 < "));
    QCOMPARE(evaluated(one), QString("NULL const"));
    one.append(literal(2));
    one.append(literal("a third is neither printed nor evaluated"));
    QCOMPARE(print(one, Sql), QString("1 < 2"));
    QCOMPARE(evaluated(one), QString("bool:true const"));
}

void tst_Comparator::printing_data()
{
    QTest::addColumn<ExpressionHandle>("comparison");
    QTest::addColumn<QString>("sql");
    const ExpressionHandle both = ref("a") && ref("b");
    const ExpressionHandle inner = ref("a") == literal(1);
    QTest::newRow("NULL is an empty text") << ExpressionHandle(ref("a") == null()) << "a = ''";
    QTest::newRow("a chain on the left gets brackets")
        << ExpressionHandle(both == literal(1)) << "(a AND b) = 1";
    QTest::newRow("a chain on the right gets brackets")
        << ExpressionHandle(literal(1) == both) << "1 = (a AND b)";
    QTest::newRow("a comparison within a comparison gets none")
        << ExpressionHandle(inner == inner) << "a = 1 = a = 1";
    QTest::newRow("the empty expression prints nothing")
        << ExpressionHandle(ref("a") == ExpressionHandle()) << "a = ";
    QTest::newRow("an alias prints wherever it stands")
        << ExpressionHandle(ref("a", "b") == literal(1)) << "a AS b = 1";
}

void tst_Comparator::printing()
{
    QFETCH(ExpressionHandle, comparison);
    QTEST(print(comparison, Sql), "sql");
    QTEST(print(comparison, Sql | Nested), "sql"); // no brackets of its own
}

void tst_Comparator::equality()
{
    const ExpressionHandle less = ref("a") < literal(1);
    QVERIFY(less.equals(ref("a") < bound(1)));
    QVERIFY(!less.equals(ref("a") <= literal(1))); // other operation
    QVERIFY(!less.equals(literal(1) < ref("a")));  // swapped
    QVERIFY(!less.equals(ref("a") < literal(2)));
    QVERIFY(!less.equals(ref("a") && literal(1))); // other class
    QVERIFY(!less.equals(ref("a")));
    QVERIFY(!less->equals(nullptr));
}

void tst_Comparator::evaluationOrder()
{
    QStringList log;
    const ExpressionHandle e =
        ExpressionHandle(Probe(QVariant(), true, &log)) == Probe("right", true, &log);
    QCOMPARE(evaluated(e), QString("NULL const"));
    QCOMPARE(log, (QStringList{"", "right"})); // both, although the first is NULL
}

void tst_Comparator::leftValueIsReadFirst()
{
    // The right operand changes the very property that stands on the left.
    PropertySet set = setOf({new IntProperty("a", "", 1)});
    const auto raise = [&set] { IntProperty::setValue(set["a"], 2); };
    QCOMPARE(evaluated(ref("a") == Probe(1, true, nullptr, raise), set), QString("bool:true"));
    QCOMPARE(IntProperty::getValue(set["a"], 0), 2);
    QCOMPARE(evaluated(ExpressionHandle(Probe(3, true, nullptr,
                                              [&set] { IntProperty::setValue(set["a"], 3); })) ==
                           ref("a"),
                       set),
             QString("bool:true"));
    const ExpressionHandle list = ref("s") == Probe("old", true, nullptr, [&set] {
                                      set.add(shared(new StringProperty("s", "", "new")));
                                  });
    set.add(shared(new StringProperty("s", "", "old")));
    QCOMPARE(evaluated(list, set), QString("bool:true")); // the property itself has gone
}

void tst_Comparator::copies()
{
    Comparator a(literal(1), Comparator::Less, literal(2));
    const Comparator b(ref("x"), Comparator::Equal, literal(3));
    a = b;
    QVERIFY(a.equals(&b));
    a = *&a;
    QCOMPARE(print(a, Sql), QString("x = 3"));
    QCOMPARE(print(Comparator(b), Sql), QString("x = 3"));
}

QTEST_APPLESS_MAIN(tst_Comparator)
#include "tst_Comparator.moc"
