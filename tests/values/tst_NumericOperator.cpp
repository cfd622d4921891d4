#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ArithmeticOperators>
#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)
Q_DECLARE_METATYPE(vogen::NumericOperator::NumOp)

namespace {

using Num = NumericOperator;

ExpressionHandle chain(Num::NumOp op, const QVariantList &values)
{
    Num result(op);
    for (const QVariant &value : values)
        result.append(literal(value));
    return result;
}

} // namespace

/// NumericOperator, and the operators that build it.
class tst_NumericOperator : public QObject
{
    Q_OBJECT

private slots:
    void operations_data();
    void operations();
    void evaluate_data();
    void evaluate();
    void failureEndsTheChain();
    void withoutOperands();
    void apply();
    void printing_data();
    void printing();
    void join();
    void extendOrWrap();
    void everyOperatorExtendsItsOwn();
    void equality();
    void unknownOperation();
    void stored();
    void inAFilter();
};

void tst_NumericOperator::operations_data()
{
    QTest::addColumn<Num::NumOp>("op");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("codeText");
    QTest::addColumn<QString>("value"); // of 12 and 5
    QTest::addColumn<ExpressionHandle>("handles");
    QTest::addColumn<ExpressionHandle>("property");
    const ExpressionHandle a = ref("a");
    const ExpressionHandle b = literal(5);
    const IntProperty p("a");
    QTest::newRow("add") << Num::Add << 0 << "+"
                         << "+"
                         << "int:17" << ExpressionHandle(a + b) << ExpressionHandle(p + 5);
    QTest::newRow("subtract") << Num::Subtract << 1 << "-"
                              << "-"
                              << "int:7" << ExpressionHandle(a - b) << ExpressionHandle(p - 5);
    QTest::newRow("multiply") << Num::Multiply << 2 << "*"
                              << "*"
                              << "int:60" << ExpressionHandle(a * b) << ExpressionHandle(p * 5);
    QTest::newRow("divide") << Num::Divide << 3 << "/"
                            << "/"
                            << "int:2" << ExpressionHandle(a / b) << ExpressionHandle(p / 5);
    QTest::newRow("modulo") << Num::Modulo << 4 << " mod "
                            << "%"
                            << "int:2" << ExpressionHandle(a % b) << ExpressionHandle(p % 5);
    QTest::newRow("bit and") << Num::BitAnd << 5 << "&"
                             << "&"
                             << "int:4" << ExpressionHandle(a & b) << ExpressionHandle(p & 5);
    QTest::newRow("bit or") << Num::BitOr << 6 << "|"
                            << "|"
                            << "int:13" << ExpressionHandle(a | b) << ExpressionHandle(p | 5);
    QTest::newRow("bit xor") << Num::BitXor << 7 << "^"
                             << "^"
                             << "int:9" << ExpressionHandle(a ^ b) << ExpressionHandle(p ^ 5);
}

void tst_NumericOperator::operations()
{
    QFETCH(Num::NumOp, op);
    QFETCH(QString, text);
    QFETCH(QString, codeText);
    QFETCH(ExpressionHandle, handles);
    QFETCH(ExpressionHandle, property);
    QTEST(int(op), "code");
    const PropertySet set = setOf({new IntProperty("a", "", 12)});
    QTEST(evaluated(handles, set), "value");
    QTEST(evaluated(property, set), "value");
    QVERIFY(handles.equals(Num(ref("a"), op, literal(5))));
    QVERIFY(property.equals(handles));
    QCOMPARE(bindable(handles), "a" + text + "5 <- ");
    QCOMPARE(bindable(property), "a" + text + "? <- int:5");
    QCOMPARE(print(property, Readable), "a" + text + "5");
    QCOMPARE(print(property, Code), "a" + codeText + "5");
    QCOMPARE(print(property, Code | Sql), "a" + codeText + "5");
}

void tst_NumericOperator::evaluate_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const ExpressionHandle &e, const char *value) {
        QTest::newRow(name) << e << value;
    };
    row("a chain folds from the left", chain(Num::Subtract, {10, 3, 2}), "int:5 const");
    row("one operand is itself", chain(Num::Divide, {"text"}), "QString:text const");
    row("a property among constants", literal(1) + ref("i"), "int:13");
    row("a missing property", literal(1) + ref("x"), "NULL");
    row("division by 0", chain(Num::Divide, {7, 0}), "NULL const");
    row("a chain of bits goes on past a NULL", chain(Num::BitAnd, {1, 1.5, 3}), "NULL const");
    row("texts join", chain(Num::Add, {"a", 1, true}), "QString:a1true const");
    row("the constant 5 takes the property's type", ref("u") - literal(5), "qulonglong:4");
    row("an unsigned property taken from a constant", literal(0) - ref("u"), "double:-9");
    row("a constant result stays constant: both fit", literal(5ULL) + literal(-1), "int:4 const");
    row("after a property the result is no constant", ref("i") + literal(0) + ref("u"),
        "QString:129");
    row("a date moves", ref("d") + literal(1.0), "QDate:2026-03-06");
}

void tst_NumericOperator::evaluate()
{
    QFETCH(ExpressionHandle, e);
    const PropertySet set = setOf({new IntProperty("i", "", 12), new U64Property("u", "", 9),
                                   new DateProperty("d", "", QDate(2026, 3, 5))});
    QTEST(evaluated(e, set), "value");
    QCOMPARE(shown(e->evaluate(set, nullptr)), evaluated(e, set).section(" const", 0, 0));
}

void tst_NumericOperator::failureEndsTheChain()
{
    QStringList log;
    Num node(literal(7), Num::Divide, Probe(0, false, &log));
    node.append(Probe(1, true, &log));
    QCOMPARE(evaluated(node), QString("NULL"));
    QCOMPARE(log, QStringList{"0"}); // the third one is not evaluated
}

void tst_NumericOperator::withoutOperands()
{
    const Num bare(Num::Add);
    for (bool isConstant : {true, false}) {
        const bool before = isConstant;
        QVERIFY(!bare.evaluate(PropertySet(), &isConstant).isValid());
        QCOMPARE(isConstant, before); // left as it was
    }
    QVERIFY(!bare.evaluate(PropertySet(), nullptr).isValid());
    QCOMPARE(print(bare, Sql | Nested), QString());
    QVERIFY(bare.isEmpty());
}

void tst_NumericOperator::apply()
{
    QVariant value(5);
    bool isConstant = true;
    QVERIFY(Num::apply(value, isConstant, Num::Add, 2, true));
    QCOMPARE(value, QVariant(7));
    QVERIFY(isConstant);
    QVERIFY(Num::apply(value, isConstant, Num::Subtract, 10u, false));
    QCOMPARE(shown(value), QString("qlonglong:-3")); // 7 was constant: taken as unsigned
    QVERIFY(!isConstant);
    QVERIFY(!Num::apply(value, isConstant, Num::Divide, 0, true));
    QVERIFY(!value.isValid());

    value = 5;
    isConstant = true;
    QVERIFY(!Num::apply(value, isConstant, static_cast<Num::NumOp>(8), 2, false));
    QVERIFY(!Num::apply(value, isConstant, static_cast<Num::NumOp>(-1), 2, false));
    QCOMPARE(value, QVariant(5));
    QVERIFY(isConstant);
}

void tst_NumericOperator::printing_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("sql");
    const ExpressionHandle a = ref("a");
    const ExpressionHandle b = ref("b");
    const ExpressionHandle sum = a + b;
    QTest::newRow("a chain") << chain(Num::Add, {1, 2, 3}) << "1+2+3";
    QTest::newRow("nested on the left") << ExpressionHandle(sum * b) << "(a+b)*b";
    QTest::newRow("nested on the right") << ExpressionHandle(a * sum) << "a*(a+b)";
    QTest::newRow("the same operation on the right keeps its brackets")
        << ExpressionHandle(a - ExpressionHandle(a - b)) << "a-(a-b)";
    QTest::newRow("one operand nested: no brackets")
        << ExpressionHandle(a * chain(Num::Add, {1})) << "a*1";
    QTest::newRow("in a comparison") << ExpressionHandle(sum == literal(1)) << "(a+b) = 1";
    QTest::newRow("a comparison within: no brackets")
        << ExpressionHandle(ExpressionHandle(a == b) + a) << "a = b+a";
    QTest::newRow("in a list: none") << ExpressionHandle(sum << sum) << "a+b,a+b";
}

void tst_NumericOperator::printing()
{
    QFETCH(ExpressionHandle, e);
    QTEST(print(e, Sql), "sql");
    QTEST(print(e, Readable), "sql");
}

void tst_NumericOperator::join()
{
    QCOMPARE(Num::join(ExpressionList(), Num::Add).constData(),
             ExpressionList::empty().constData());
    const ExpressionHandle a = ref("a");
    QCOMPARE(Num::join(ExpressionList(a), Num::Add).constData(), a.constData());
    QCOMPARE(print(Num::join(ExpressionList(QList<QVariant>{1, 2, 3}), Num::Multiply), Sql),
             QString("1*2*3"));
}

void tst_NumericOperator::extendOrWrap()
{
    Num sum(ref("a"), Num::Add, ref("b"));
    const ExpressionHandle longer = sum + ref("c");
    QCOMPARE(print(longer, Sql), QString("a+b+c"));
    QCOMPARE(print(sum, Sql), QString("a+b+c")); // the receiver has changed
    QCOMPARE(print(sum - ref("d"), Sql), QString("(a+b+c)-d"));
    QCOMPARE(print(sum, Sql), QString("a+b+c")); // and here it has not

    QCOMPARE(&(sum += ref("d")), &sum);
    QCOMPARE(print(sum, Sql), QString("a+b+c+d"));
    sum *= ref("e");
    QCOMPARE(print(sum, Sql), QString("(a+b+c+d)*e"));

    // Nodes on both sides, a chain in one expression, and const receivers.
    const IntProperty p("p");
    QCOMPARE(print((p + 1) + (p + 2), Sql), QString("p+1+(p+2)"));
    QCOMPARE(print(+p + +p, Sql), QString("p+p"));
    QCOMPARE(print(-p + -p, Sql), QString("-p+-p"));
    QCOMPARE(print(+p - ref("q") - ref("r"), Sql), QString("p-q-r"));
    const Num constant(ref("a"), Num::Add, ref("b"));
    QCOMPARE(print(constant + ref("c"), Sql), QString("(a+b)+c"));
    QCOMPARE(print(constant + constant, Sql), QString("(a+b)+(a+b)"));
}

void tst_NumericOperator::everyOperatorExtendsItsOwn()
{
    const auto fresh = [](Num::NumOp op) { return Num(ref("a"), op, ref("b")); };
    const ExpressionHandle c = ref("c");
    QCOMPARE(print(fresh(Num::Add) + c, Sql), QString("a+b+c"));
    QCOMPARE(print(fresh(Num::Subtract) - c, Sql), QString("a-b-c"));
    QCOMPARE(print(fresh(Num::Multiply) * c, Sql), QString("a*b*c"));
    QCOMPARE(print(fresh(Num::Divide) / c, Sql), QString("a/b/c"));
    QCOMPARE(print(fresh(Num::Modulo) % c, Sql), QString("a mod b mod c"));
    QCOMPARE(print(fresh(Num::BitAnd) & c, Sql), QString("a&b&c"));
    QCOMPARE(print(fresh(Num::BitOr) | c, Sql), QString("a|b|c"));
    QCOMPARE(print(fresh(Num::BitXor) ^ c, Sql), QString("a^b^c"));

    Num node(ref("a"), Num::Add, ref("b"));
    node -= c;
    node *= c;
    node /= c;
    node %= c;
    node &= c;
    node |= c;
    node ^= c;
    node += c;
    QCOMPARE(print(node, Code), QString("((((((((a+b)-c)*c)/c)%c)&c)|c)^c)+c"));
    for (int i = 0; i < 2; ++i)
        node += c;
    QCOMPARE(print(node, Code), QString("((((((((a+b)-c)*c)/c)%c)&c)|c)^c)+c+c+c"));
}

void tst_NumericOperator::equality()
{
    const ExpressionHandle e = ref("a") + literal(1);
    QVERIFY(e.equals(ref("a") + bound(1)));
    QVERIFY(!e.equals(ref("a") - literal(1)));
    QVERIFY(!e.equals(literal(1) + ref("a")));
    QVERIFY(!e.equals(ref("a") << literal(1)));
    QVERIFY(!e->equals(nullptr));
}

void tst_NumericOperator::unknownOperation()
{
    const ExpressionHandle e = chain(static_cast<Num::NumOp>(99), {1, 2});
    QCOMPARE(evaluated(e), QString("NULL const"));
    const PropertySet set = setOf({new IntProperty("a", "", 12)});
    QCOMPARE(evaluated(Num(literal(1), static_cast<Num::NumOp>(99), ref("a")), set),
             QString("NULL"));
    QCOMPARE(print(e, Sql), QString("12"));
    QCOMPARE(print(e, Sql | Nested), QString("(12)"));
}

void tst_NumericOperator::stored()
{
    const ExpressionHandle e = (ref("a") + bound(5)) * ref("b");
    const ExpressionHandle back = readBack(written(e));
    QVERIFY(back.equals(e));
    QCOMPARE(bindable(back), bindable(e));
    QCOMPARE(written(e).left(29 + 4).toHex(),
             (QByteArray::fromHex("0000001a") + QByteArray("N5vogen15NumericOperatorE", 26) +
              QByteArray::fromHex("000000"))
                 .toHex());
    QCOMPARE(written(e).mid(30, 16).toHex(), QByteArray("00000001"
                                                        "00000002"
                                                        "00000001"
                                                        "00000002"));
}

void tst_NumericOperator::inAFilter()
{
    const S64Property size("size");
    const ExpressionHandle filter = ExpressionHandle(size + 4096) / bound(1048576) > bound(10);
    QCOMPARE(bindable(filter), QString("((size+?)/?) > ? <- int:4096, int:1048576, int:10"));
    QCOMPARE(evaluated(filter, setOf({new S64Property("size", "", 11530000)})),
             QString("bool:false"));
    QCOMPARE(evaluated(filter, setOf({new S64Property("size", "", 11534336)})),
             QString("bool:true"));
}

QTEST_APPLESS_MAIN(tst_NumericOperator)
#include "tst_NumericOperator.moc"
