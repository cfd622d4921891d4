#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionOperators>

#include <QRect>
#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

constexpr auto And = BooleanOperator::And;
constexpr auto Or = BooleanOperator::Or;

ExpressionHandle chain(BooleanOperator::BoolOp op, const QVariantList &values)
{
    BooleanOperator result(op);
    for (const QVariant &value : values)
        result.append(literal(value));
    return result;
}

} // namespace

/// BooleanOperator and NotOperator.
class tst_BooleanOperator : public QObject
{
    Q_OBJECT

private slots:
    void codes();
    void evaluate_data();
    void evaluate();
    void constantFlag_data();
    void constantFlag();
    void stopsWhenDecided();
    void negation_data();
    void negation();
    void negationPassesTheFlagOn();
    void printing_data();
    void printing();
    void oneTreeInEachStyle();
    void join();
    void extendOrWrap();
    void extendOrWrapInPlace();
    void equality();
    void unknownOperation();
    void missingOperand();
};

void tst_BooleanOperator::codes()
{
    QCOMPARE(int(And), 0);
    QCOMPARE(int(Or), 1);
    QCOMPARE(sizeof(BooleanOperator::BoolOp), size_t(4));
}

void tst_BooleanOperator::evaluate_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("conjunction");
    QTest::addColumn<QString>("disjunction");
    const QVariant null;
    const char *const yes = "bool:true const";
    const char *const no = "bool:false const";
    const char *const nil = "NULL const";
    QTest::newRow("no operands") << QVariantList{} << yes << no;
    QTest::newRow("true") << QVariantList{true} << yes << yes;
    QTest::newRow("false") << QVariantList{false} << no << no;
    QTest::newRow("true, true") << QVariantList{true, true} << yes << yes;
    QTest::newRow("true, false") << QVariantList{true, false} << no << yes;
    QTest::newRow("false, true") << QVariantList{false, true} << no << yes;
    QTest::newRow("false, false") << QVariantList{false, false} << no << no;
    // NULL ends an And, and is false to an Or.
    QTest::newRow("NULL") << QVariantList{null} << nil << no;
    QTest::newRow("NULL, false: the NULL is met first") << QVariantList{null, false} << nil << no;
    QTest::newRow("false, NULL: the false is met first") << QVariantList{false, null} << no << no;
    QTest::newRow("NULL, true") << QVariantList{null, true} << nil << yes;
    QTest::newRow("true, NULL") << QVariantList{true, null} << nil << yes;
    QTest::newRow("NULL, NULL") << QVariantList{null, null} << nil << no;
    QTest::newRow("true, NULL, false") << QVariantList{true, null, false} << nil << yes;
    // What QVariant makes a bool of takes part, anything else is as NULL.
    QTest::newRow("numbers") << QVariantList{1, 2.5} << yes << yes;
    QTest::newRow("zero") << QVariantList{0} << no << no;
    QTest::newRow("0.4 is false") << QVariantList{0.4} << no << no;
    QTest::newRow("an empty text is false") << QVariantList{""} << no << no;
    QTest::newRow("FALSE and 0 are false") << QVariantList{"FALSE", "0"} << no << no;
    QTest::newRow("any other text is true") << QVariantList{"no"} << yes << yes;
    QTest::newRow("a list") << QVariantList{QVariant(QVariantList{true})} << nil << no;
    QTest::newRow("a date") << QVariantList{QDate(2026, 3, 5)} << nil << no;
    QTest::newRow("a rect, then true") << QVariantList{QRect(), true} << nil << yes;
}

void tst_BooleanOperator::evaluate()
{
    QFETCH(QVariantList, values);
    QFETCH(QString, conjunction);
    QFETCH(QString, disjunction);
    QCOMPARE(evaluated(chain(And, values)), conjunction);
    QCOMPARE(evaluated(chain(Or, values)), disjunction);

    // The same when each value comes out of a property, or of another node.
    PropertySet set;
    BooleanOperator properties(And);
    BooleanOperator probes(Or);
    for (int i = 0; i < values.size(); ++i) {
        const QString name = QString::number(i);
        set.add(shared(new VariantProperty(name, "", values.at(i))));
        properties.append(ValueExpression(name, ""));
        probes.append(Probe(values.at(i)));
    }
    QCOMPARE(shown(properties.evaluate(set, nullptr)), conjunction.section(' ', 0, 0));
    QCOMPARE(shown(probes.evaluate(set, nullptr)), disjunction.section(' ', 0, 0));
}

void tst_BooleanOperator::constantFlag_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("value");
    const ExpressionHandle yes = literal(true);
    const ExpressionHandle no = literal(false);
    const ExpressionHandle property = ref("t"); // true
    QTest::newRow("a property among them") << ExpressionHandle(yes && property) << "bool:true";
    QTest::newRow("decided before the property")
        << ExpressionHandle(no && property) << "bool:false const";
    QTest::newRow("Or decided before the property")
        << ExpressionHandle(yes || property) << "bool:true const";
    QTest::newRow("decided behind the property")
        << ExpressionHandle(property && no) << "bool:false";
    QTest::newRow("decided by the property") << ExpressionHandle(property || yes) << "bool:true";
    QTest::newRow("a NULL that is no constant") << ExpressionHandle(ref("x") && yes) << "NULL";
    QTest::newRow("nested") << ExpressionHandle(yes && (no || property)) << "bool:true";
}

void tst_BooleanOperator::constantFlag()
{
    QFETCH(ExpressionHandle, e);
    QTEST(evaluated(e, setOf({new BoolProperty("t", "", true)})), "value");
}

void tst_BooleanOperator::stopsWhenDecided()
{
    QStringList log;
    const auto probe = [&log](const QVariant &value) {
        return ExpressionHandle(Probe(value, true, &log));
    };
    const auto run = [&log](BooleanOperator::BoolOp op, const QList<ExpressionHandle> &operands) {
        log.clear();
        BooleanOperator node(op);
        for (const ExpressionHandle &operand : operands)
            node.append(operand);
        node.evaluate(PropertySet(), nullptr);
        return log;
    };
    QCOMPARE(run(And, {probe(1), probe(0), probe(2)}), (QStringList{"1", "0"}));
    QCOMPARE(run(And, {probe(1), probe(QVariant()), probe(2)}), (QStringList{"1", ""}));
    QCOMPARE(run(Or, {probe(0), probe(QVariant()), probe(1), probe(2)}),
             (QStringList{"0", "", "1"}));
    QCOMPARE(run(Or, {probe(0), probe("false")}), (QStringList{"0", "false"}));
}

void tst_BooleanOperator::negation_data()
{
    QTest::addColumn<QVariant>("operand");
    QTest::addColumn<QString>("value");
    QTest::newRow("true") << QVariant(true) << "bool:false const";
    QTest::newRow("false") << QVariant(false) << "bool:true const";
    QTest::newRow("NULL") << QVariant() << "NULL const";
    QTest::newRow("a number") << QVariant(7) << "bool:false const";
    QTest::newRow("a text that is false") << QVariant("false") << "bool:true const";
    QTest::newRow("a list") << QVariant(QVariantList{}) << "NULL const";
    QTest::newRow("a date") << QVariant(QDate(2026, 3, 5)) << "NULL const";
}

void tst_BooleanOperator::negation()
{
    QFETCH(QVariant, operand);
    QTEST(evaluated(!literal(operand)), "value");
    QTEST(evaluated(!(!(!literal(operand)))), "value");
}

void tst_BooleanOperator::negationPassesTheFlagOn()
{
    const PropertySet set = setOf({new BoolProperty("t", "", true)});
    QCOMPARE(evaluated(!ref("t"), set), QString("bool:false"));
    QCOMPARE(evaluated(!ref("x"), set), QString("NULL"));
    QCOMPARE((!ref("t")).evaluate(set, nullptr), QVariant(false));
}

void tst_BooleanOperator::printing_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("code");
    const ExpressionHandle a = ref("a");
    const ExpressionHandle b = ref("b");
    const ExpressionHandle c = ref("c");
    const ExpressionHandle one = chain(And, {1});
    QTest::newRow("no operands") << chain(And, {}) << ""
                                 << "";
    QTest::newRow("no operands, Or") << chain(Or, {}) << ""
                                     << "";
    QTest::newRow("one operand") << one << "1"
                                 << "1";
    QTest::newRow("And") << ExpressionHandle(a && b) << "a AND b"
                         << "a && b";
    QTest::newRow("Or") << ExpressionHandle(a || b) << "a OR b"
                        << "a || b";
    QTest::newRow("a chain of three") << ExpressionHandle(a && b && c) << "a AND b AND c"
                                      << "a && b && c";
    QTest::newRow("an Or inside an And") << ExpressionHandle((a || b) && c) << "(a OR b) AND c"
                                         << "(a || b) && c";
    QTest::newRow("an And inside an Or") << ExpressionHandle(a || (b && c)) << "a OR (b AND c)"
                                         << "a || (b && c)";
    QTest::newRow("an And inside an And on the right")
        << ExpressionHandle(a && ExpressionHandle(b && c)) << "a AND (b AND c)"
        << "a && (b && c)";
    QTest::newRow("one operand inside: no brackets") << ExpressionHandle(a && one) << "a AND 1"
                                                     << "a && 1";
    QTest::newRow("Not") << ExpressionHandle(!a) << " NOT a"
                         << " ! a";
    QTest::newRow("Not over a chain")
        << ExpressionHandle(!(a == literal(1) && b == literal(2))) << " NOT (a = 1 AND b = 2)"
        << " ! (a == 1 && b == 2)";
    QTest::newRow("Not over a comparison: no brackets")
        << ExpressionHandle(!(a == literal(1))) << " NOT a = 1"
        << " ! a == 1";
    QTest::newRow("Not over Not") << ExpressionHandle(!!a) << " NOT  NOT a"
                                  << " !  ! a";
    QTest::newRow("an empty condition leaves its sign")
        << ExpressionHandle(ExpressionHandle() && a) << " AND a"
        << " && a";
    QTest::newRow("and on the right") << ExpressionHandle(a && ExpressionHandle()) << "a AND "
                                      << "a && ";
}

void tst_BooleanOperator::printing()
{
    QFETCH(ExpressionHandle, e);
    QTEST(print(e, Sql), "sql");
    QTEST(print(e, Readable), "sql");
    QTEST(print(e, Code), "code");
    QTEST(print(e, Code | Sql), "code");
}

void tst_BooleanOperator::oneTreeInEachStyle()
{
    const IntProperty blank("a b");
    const StringProperty c("c");
    const ExpressionHandle e = blank < 5 && !(c == "x");
    QCOMPARE(print(e, Readable), QString("a_b < 5 AND  NOT c = \"x\""));
    QCOMPARE(print(e, Code), QString("a_b < 5 &&  ! c == \"x\""));
    QCOMPARE(print(e, Sql), QString("a_b < 5 AND  NOT c = 'x'"));
    QCOMPARE(bindable(e), QString("a_b < ? AND  NOT c = ? <- int:5, QString:x"));
    QCOMPARE(print(e, Sql | Nested), QString("(a_b < 5 AND  NOT c = 'x')"));
}

void tst_BooleanOperator::join()
{
    QCOMPARE(BooleanOperator::join(ExpressionList(), And).constData(),
             ExpressionList::empty().constData());
    const ExpressionHandle a = ref("a");
    QCOMPARE(BooleanOperator::join(ExpressionList(a), Or).constData(), a.constData());

    const ExpressionList two(a, ref("b"));
    const ExpressionHandle joined = BooleanOperator::join(two, And);
    QVERIFY(dynamic_cast<const BooleanOperator *>(joined.constData()));
    QCOMPARE(print(joined, Sql), QString("a AND b"));
    QCOMPARE(print(BooleanOperator::join(two, Or), Sql), QString("a OR b"));
    QCOMPARE(print(BooleanOperator::join(ExpressionList(two).append(ref("c")), Or), Sql),
             QString("a OR b OR c"));
    QCOMPARE(print(two, Sql), QString("a,b")); // the list stays as it was
}

void tst_BooleanOperator::extendOrWrap()
{
    const ExpressionHandle c = ref("c");
    BooleanOperator both(ref("a"), And, ref("b"));
    const ExpressionHandle longer = both && c;
    QCOMPARE(print(longer, Sql), QString("a AND b AND c"));
    QCOMPARE(print(both, Sql), QString("a AND b AND c")); // the left side has changed

    const ExpressionHandle wrapped = both || c;
    QCOMPARE(print(wrapped, Sql), QString("(a AND b AND c) OR c"));
    QCOMPARE(print(both, Sql), QString("a AND b AND c")); // and here it has not

    BooleanOperator either(ref("a"), Or, ref("b"));
    QCOMPARE(print(either || c, Sql), QString("a OR b OR c"));
    QCOMPARE(print(either, Sql), QString("a OR b OR c"));
    QCOMPARE(print(either && c, Sql), QString("(a OR b OR c) AND c"));
    QCOMPARE(print(either, Sql), QString("a OR b OR c"));

    // A node that is const is wrapped by the operator on handles.
    const BooleanOperator constant(ref("a"), And, ref("b"));
    QCOMPARE(print(constant && c, Sql), QString("(a AND b) AND c"));
}

void tst_BooleanOperator::extendOrWrapInPlace()
{
    BooleanOperator node(ref("a"), And, ref("b"));
    QCOMPARE(&(node &= ref("c")), &node);
    QCOMPARE(print(node, Sql), QString("a AND b AND c"));
    QCOMPARE(&(node |= ref("d")), &node);
    QCOMPARE(print(node, Sql), QString("(a AND b AND c) OR d"));
    node |= ref("e");
    QCOMPARE(print(node, Sql), QString("(a AND b AND c) OR d OR e"));
    node &= ref("f");
    QCOMPARE(print(node, Sql), QString("((a AND b AND c) OR d OR e) AND f"));

    // A handle that was made before keeps its tree.
    const ExpressionHandle before = node;
    node &= ref("g");
    QCOMPARE(print(before, Sql), QString("((a AND b AND c) OR d OR e) AND f"));
    node = *&node;
    QCOMPARE(print(node, Sql), QString("((a AND b AND c) OR d OR e) AND f AND g"));
}

void tst_BooleanOperator::equality()
{
    const ExpressionHandle a = ref("a");
    const ExpressionHandle b = ref("b");
    QVERIFY(ExpressionHandle(a && b).equals(a && b));
    QVERIFY(!ExpressionHandle(a && b).equals(b && a)); // order counts
    QVERIFY(!ExpressionHandle(a && b).equals(a || b));
    QVERIFY(!ExpressionHandle(a && b).equals(a << b));
    QVERIFY(ExpressionHandle(!a).equals(!a));
    QVERIFY(!ExpressionHandle(!a).equals(!b));
    QVERIFY(!ExpressionHandle(!a).equals(ExpressionList(a)));
    QVERIFY(!(a && b).equals(nullptr));
    QVERIFY(!(!a).equals(nullptr));
    QVERIFY(NotOperator(NotOperator(a)).equals(ExpressionHandle(!a).constData())); // a copy
}

void tst_BooleanOperator::unknownOperation()
{
    // From a damaged stream: it prints and evaluates as an Or, as anything but And does.
    const ExpressionHandle e = chain(static_cast<BooleanOperator::BoolOp>(9), {false, true});
    QCOMPARE(print(e, Sql), QString("'false' OR 'true'"));
    QCOMPARE(evaluated(e), QString("bool:true const"));
    QCOMPARE(evaluated(chain(static_cast<BooleanOperator::BoolOp>(-1), {})),
             QString("bool:false const"));
}

void tst_BooleanOperator::missingOperand()
{
    // A NotOperator whose record promised no operand.
    const QByteArray bytes = QByteArray::fromHex("00000016") +
                             QByteArray("N5vogen11NotOperatorE", 22) +
                             QByteArray::fromHex("0000000100000000");
    const ExpressionHandle e = readBack(bytes);
    QCOMPARE(print(e, Sql), QString(" NOT "));
    QCOMPARE(evaluated(e), QString("NULL const"));
}

QTEST_APPLESS_MAIN(tst_BooleanOperator)
#include "tst_BooleanOperator.moc"
