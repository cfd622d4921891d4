#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>
#include <Vokit/SwitchCase>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

class tst_SwitchCase : public QObject
{
    Q_OBJECT

private slots:
    void printing_data();
    void printing();
    void evaluate_data();
    void evaluate();
    void flag();
    void laterCasesAreNotEvaluated();
    void placeholders();
    void equality();
    void notReadBack();
};

void tst_SwitchCase::printing_data()
{
    QTest::addColumn<ExpressionHandle>("node");
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("readable");
    const IntProperty p("p q");
    const ExpressionHandle one = literal(1);
    const ExpressionHandle two = literal(2);
    const ExpressionHandle yes = literal("yes");
    const ExpressionHandle no = literal("no");

    QTest::newRow("no cases") << ExpressionHandle(SwitchCase(p)) << "CASE p_q END"
                              << "switch(p_q)\n{\n\n}\n";
    QTest::newRow("only a default")
        << ExpressionHandle(SwitchCase(p).defaultCase(no)) << "CASE p_q ELSE 'no' END"
        << "switch(p_q)\n{\ndefault: return \"no\"\n}\n";
    QTest::newRow("a case, no default")
        << ExpressionHandle(SwitchCase(p).switchCase(one, yes)) << "CASE p_q WHEN 1 THEN 'yes' END"
        << "switch(p_q)\n{\n\tcase 1: return \"yes\";\n\n}\n";
    QTest::newRow("two cases and a default")
        << ExpressionHandle(SwitchCase(p).switchCase(one, yes).switchCase(two, no).defaultCase(one))
        << "CASE p_q WHEN 1 THEN 'yes' WHEN 2 THEN 'no' ELSE 1 END"
        << "switch(p_q)\n{\n\tcase 1: return \"yes\";\n\tcase 2: return \"no\";\n"
           "default: return 1\n}\n";
    QTest::newRow("the last default counts")
        << ExpressionHandle(SwitchCase(p).defaultCase(no).defaultCase(yes))
        << "CASE p_q ELSE 'yes' END"
        << "switch(p_q)\n{\ndefault: return \"yes\"\n}\n";
    QTest::newRow("an empty node is no default")
        << ExpressionHandle(SwitchCase(p).defaultCase(null())) << "CASE p_q END"
        << "switch(p_q)\n{\n\n}\n";
    QTest::newRow("ifThen") << ExpressionHandle(ifThen(ref("a") == one, yes, no))
                            << "CASE  WHEN a = 1 THEN 'yes' ELSE 'no' END"
                            << "if (a = 1) return \"yes\";\nelse return \"no\"";
    QTest::newRow("ifThen without else")
        << ExpressionHandle(ifThen(ref("a"), yes, ExpressionHandle()))
        << "CASE  WHEN a THEN 'yes' END"
        << "if (a) return \"yes\";\n";
    QTest::newRow("two conditions")
        << ExpressionHandle(ifThen(ref("a"), one, two).switchCase(ref("b"), two))
        << "CASE  WHEN a THEN 1 WHEN b THEN 2 ELSE 2 END"
        << "if (a) return 1;\nelse if (b) return 2;\nelse return 2";
    QTest::newRow("an empty selector of another class")
        << ExpressionHandle(SwitchCase(ref("")).switchCase(one, two)) << "CASE  WHEN 1 THEN 2 END"
        << "if (1) return 2;\n";
    QTest::newRow("no brackets in it, none around it")
        << ExpressionHandle(SwitchCase(p).switchCase(ref("a") && ref("b"), ref("a") || ref("b")) ==
                            one)
        << "CASE p_q WHEN a AND b THEN a OR b END = 1"
        << "switch(p_q)\n{\n\tcase a AND b: return a OR b;\n\n}\n = 1";
}

void tst_SwitchCase::printing()
{
    QFETCH(ExpressionHandle, node);
    QFETCH(QString, readable);
    QTEST(print(node, Sql), "sql");
    QTEST(print(node, Sql | Nested), "sql");
    QCOMPARE(print(node, Readable), readable);
    // PrintCode changes the operators within, and nothing of the node.
    QCOMPARE(
        print(node, Code),
        QString(readable).replace(" = ", " == ").replace(" AND ", " && ").replace(" OR ", " || "));
}

void tst_SwitchCase::evaluate_data()
{
    QTest::addColumn<ExpressionHandle>("node");
    QTest::addColumn<QString>("value");
    const ExpressionHandle yes = literal("yes");
    const ExpressionHandle no = literal("no");
    const auto row = [](const char *name, const ExpressionHandle &node, const char *value) {
        QTest::newRow(name) << node << value;
    };
    row("a case matches", SwitchCase(ref("i")).switchCase(literal(7), yes).defaultCase(no),
        "QString:yes");
    row("the first of two",
        SwitchCase(ref("i")).switchCase(literal(7), yes).switchCase(literal(7), no), "QString:yes");
    row("the second", SwitchCase(ref("i")).switchCase(literal(1), no).switchCase(literal(7), yes),
        "QString:yes");
    row("none: the default", SwitchCase(ref("i")).switchCase(literal(1), yes).defaultCase(no),
        "QString:no");
    row("none and no default: an empty list", SwitchCase(ref("i")).switchCase(literal(1), yes),
        "[]");
    row("no cases", SwitchCase(ref("i")).defaultCase(no), "QString:no");
    row("compared as constants: two properties too",
        SwitchCase(ref("i")).switchCase(ref("u"), yes).defaultCase(no), "QString:yes");
    row("a missing selector matches nothing",
        SwitchCase(ref("x")).switchCase(null(), yes).defaultCase(no), "QString:no");
    // Without a selector the conditions meet an empty list.
    row("ifThen of true: the else-result", ifThen(literal(true), yes, no), "QString:no");
    row("ifThen of a comparison", ifThen(ref("i") == literal(7), yes, no), "QString:no");
    row("ifThen of an empty list: the one that matches", ifThen(ExpressionHandle(), yes, no),
        "QString:yes");
    row("ifThen without else", ifThen(literal(true), yes, ExpressionHandle()), "[]");
}

void tst_SwitchCase::evaluate()
{
    QFETCH(ExpressionHandle, node);
    const PropertySet set = setOf({new IntProperty("i", "", 7), new U64Property("u", "", 7)});
    QTEST(shown(node->evaluate(set, nullptr)), "value");
}

void tst_SwitchCase::flag()
{
    const PropertySet set = setOf({new IntProperty("i", "", 7)});
    QCOMPARE(evaluated(SwitchCase(ref("i")).switchCase(ref("i"), ref("i")), set),
             QString("int:7 const")); // always
}

void tst_SwitchCase::laterCasesAreNotEvaluated()
{
    QStringList log;
    const auto probe = [&log](const QVariant &value) {
        return ExpressionHandle(Probe(value, false, &log));
    };
    SwitchCase node(probe(2));
    node.defaultCase(probe("default")).switchCase(probe(1), probe("one"));
    node.switchCase(probe(2), probe("two")).switchCase(probe(3), probe("three"));
    QCOMPARE(evaluated(node), QString("QString:two const"));
    QCOMPARE(log, (QStringList{"2", "1", "2", "two"}));
}

void tst_SwitchCase::placeholders()
{
    // In the order of the list: the default before the cases, behind which it is printed.
    SwitchCase node(ref("a"));
    node.switchCase(bound(1), bound(2)).defaultCase(bound(3));
    QCOMPARE(bindable(node), QString("CASE a WHEN ? THEN ? ELSE ? END <- int:3, int:1, int:2"));
}

void tst_SwitchCase::equality()
{
    const ExpressionHandle node = ifThen(ref("a"), literal(1), literal(2));
    QVERIFY(node.equals(ifThen(ref("a"), literal(1), literal(2))));
    QVERIFY(!node.equals(ifThen(ref("a"), literal(2), literal(1))));
    QVERIFY(!node.equals(ifThen(ref("a"), literal(1), ExpressionHandle())));
    QVERIFY(!node.equals(ExpressionList(ref("a"), literal(1))));
    QVERIFY(!node->equals(nullptr));
    SwitchCase copy(ref("x"));
    copy = ifThen(ref("a"), literal(1), literal(2));
    copy = *&copy;
    QVERIFY(copy.equals(node.constData()));
    copy.defaultCase(literal(9)); // a copy's list is its own
    QVERIFY(!copy.equals(node.constData()));
}

void tst_SwitchCase::notReadBack()
{
    const ExpressionHandle node = ifThen(ref("a"), literal(1), literal(2));
    const QByteArray bytes = written(node);
    QVERIFY(bytes.startsWith(QByteArray::fromHex("00000015") + "N5vogen10SwitchCaseE"));
    QCOMPARE(readBack(bytes).constData(), ExpressionList::empty().constData());
}

QTEST_APPLESS_MAIN(tst_SwitchCase)
#include "tst_SwitchCase.moc"
