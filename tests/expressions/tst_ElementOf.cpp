#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ElementOf>
#include <Vokit/ExpressionOperators>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

ExpressionHandle in(const ExpressionHandle &value, const QList<ExpressionHandle> &candidates)
{
    ElementOf element(value);
    for (const ExpressionHandle &candidate : candidates)
        element.append(candidate);
    return element;
}

} // namespace

class tst_ElementOf : public QObject
{
    Q_OBJECT

private slots:
    void construction();
    void evaluate_data();
    void evaluate();
    void stopsAtTheFirstMatch();
    void valueIsReadFirst();
    void printing_data();
    void printing();
    void equality();
    void withoutOperands();
};

void tst_ElementOf::construction()
{
    const IntProperty camera("camera");
    ElementOf element(camera);
    element.append(QVariant(1)).append(literal(2)).append(ExpressionList(QList<QVariant>{3, 4}));
    QCOMPARE(bindable(element), QString("camera IN (?,2,?,?) <- int:1, int:3, int:4"));
    QCOMPARE(print(element, Sql), QString("camera IN (1,2,3,4)"));

    // A handle on a list is one candidate.
    QCOMPARE(evaluated(in(literal(1), {ExpressionList(QList<QVariant>{1})})),
             QString("bool:false const"));

    ElementOf copy(element);
    copy.append(QVariant(5));
    QCOMPARE(print(element, Sql), QString("camera IN (1,2,3,4)"));
    element = copy;
    element = *&element;
    QCOMPARE(print(element, Sql), QString("camera IN (1,2,3,4,5)"));
}

void tst_ElementOf::evaluate_data()
{
    QTest::addColumn<ExpressionHandle>("element");
    QTest::addColumn<QString>("value");
    QTest::newRow("found") << in(ref("a"), {bound(1), bound(5)}) << "bool:true";
    QTest::newRow("not found") << in(ref("a"), {bound(1), bound(2)}) << "bool:false";
    QTest::newRow("all constant") << in(literal(1), {literal(1)}) << "bool:true const";
    QTest::newRow("all constant, not found") << in(literal(1), {literal(2)}) << "bool:false const";
    QTest::newRow("no candidates") << in(literal(1), {}) << "bool:false const";
    QTest::newRow("no candidates for a property") << in(ref("a"), {}) << "bool:false";
    QTest::newRow("a property as candidate") << in(literal(5), {ref("a")}) << "bool:true";
    QTest::newRow("a missing property is in nothing") << in(ref("x"), {bound(1)}) << "bool:false";
    QTest::newRow("NULL is not in NULL: false, not NULL")
        << in(null(), {null()}) << "bool:false const";
    QTest::newRow("a candidate that can't be compared is passed over")
        << in(ref("a"), {null(), ref("x"), bound(5)}) << "bool:true";
    QTest::newRow("texts") << in(ref("s"), {bound("x"), bound("text")}) << "bool:true";
    QTest::newRow("by the rules of TypeTool: less than 1 apart")
        << in(ref("a"), {bound(5.9)}) << "bool:true";
    QTest::newRow("a number and its text") << in(ref("a"), {bound("5")}) << "bool:true";
    QTest::newRow("a constant meets a property as a number")
        << in(ref("u"), {bound(9)}) << "bool:true";
    QTest::newRow("two properties without a common type meet as texts")
        << in(ref("u"), {ref("nine")}) << "bool:true";
    QTest::newRow("a computed value") << in(ref("a") == bound(5), {bound(true)}) << "bool:true";
}

void tst_ElementOf::evaluate()
{
    QFETCH(ExpressionHandle, element);
    const PropertySet set = setOf({new IntProperty("a", "", 5), new StringProperty("s", "", "text"),
                                   new U64Property("u", "", 9), new IntProperty("nine", "", 9)});
    QTEST(evaluated(element, set), "value");
    QVERIFY(element->evaluate(set, nullptr).isValid());
    QCOMPARE(evaluated(!!element, set), evaluated(element, set)); // as a condition
}

void tst_ElementOf::stopsAtTheFirstMatch()
{
    QStringList log;
    const auto probe = [&log](const QVariant &value, bool constant) {
        return ExpressionHandle(Probe(value, constant, &log));
    };
    QCOMPARE(evaluated(in(probe(1, true), {probe(0, true), probe(1, true), probe(2, false)})),
             QString("bool:true const")); // the last one's flag does not count
    QCOMPARE(log, (QStringList{"1", "0", "1"}));
    log.clear();
    QCOMPARE(evaluated(in(probe(1, true), {probe(0, false), probe(1, true)})),
             QString("bool:true"));
    QCOMPARE(evaluated(in(probe(1, false), {probe(1, true)})), QString("bool:true"));
}

void tst_ElementOf::valueIsReadFirst()
{
    // A candidate changes the property that is looked for.
    PropertySet set = setOf({new IntProperty("a", "", 1)});
    const ExpressionHandle change =
        Probe(7, true, nullptr, [&set] { IntProperty::setValue(set["a"], 2); });
    QCOMPARE(evaluated(in(ref("a"), {change, literal(2), literal(1)}), set), QString("bool:true"));
    QCOMPARE(evaluated(in(ref("a"), {literal(1), change, literal(7)}), set), QString("bool:false"));
}

void tst_ElementOf::printing_data()
{
    QTest::addColumn<ExpressionHandle>("element");
    QTest::addColumn<QString>("sql");
    const ExpressionHandle both = ref("a") && ref("b");
    QTest::newRow("no candidates") << in(ref("a"), {}) << "a IN ()";
    QTest::newRow("texts") << in(ref("a b"), {bound("x"), bound("O'Hara")})
                           << "a_b IN ('x','O''Hara')";
    QTest::newRow("a chain looked for gets brackets, a candidate none")
        << in(both, {both}) << "(a AND b) IN (a AND b)";
}

void tst_ElementOf::printing()
{
    QFETCH(ExpressionHandle, element);
    QTEST(print(element, Sql), "sql");
    QTEST(print(element, Sql | Nested), "sql");
}

void tst_ElementOf::equality()
{
    const ExpressionHandle element = in(ref("a"), {literal(1), literal(2)});
    QVERIFY(element.equals(in(ref("a"), {bound(1), bound(2)})));
    QVERIFY(!element.equals(in(ref("a"), {literal(2), literal(1)}))); // other order
    QVERIFY(!element.equals(in(ref("b"), {literal(1), literal(2)})));
    QVERIFY(!element.equals(ref("a")));
    QVERIFY(!element->equals(nullptr));
}

void tst_ElementOf::withoutOperands()
{
    // As a damaged stream may leave it.
    const ElementOf bare;
    QCOMPARE(print(bare, Sql), QString(" IN ()"));
    QCOMPARE(evaluated(bare), QString("bool:false const"));
    QVERIFY(bare.isEmpty());
}

QTEST_APPLESS_MAIN(tst_ElementOf)
#include "tst_ElementOf.moc"
