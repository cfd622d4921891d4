#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ElementOf>
#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>

#include <QtTest>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

ExpressionList three()
{
    return ExpressionList(QList<QVariant>{1, 2, 3});
}

} // namespace

class tst_ExpressionList : public QObject
{
    Q_OBJECT

private slots:
    void construction_data();
    void construction();
    void append();
    void copiesShareOperands();
    void evaluate();
    void equality_data();
    void equality();
    void placeholdersInOrder();
    void isEmpty();
};

void tst_ExpressionList::construction_data()
{
    QTest::addColumn<ExpressionHandle>("list");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << ExpressionHandle(ExpressionList()) << " <- ";
    QTest::newRow("values are bindable")
        << ExpressionHandle(ExpressionList(QList<QVariant>{1, "b"})) << "?,? <- int:1, QString:b";
    QTest::newRow("no values") << ExpressionHandle(ExpressionList(QList<QVariant>{})) << " <- ";
    QTest::newRow("one handle on a list: its operands")
        << ExpressionHandle(ExpressionList(ExpressionHandle(three())))
        << "?,?,? <- int:1, int:2, int:3";
    QTest::newRow("one handle on a list of lists: one level only")
        << ExpressionHandle(ExpressionList(ExpressionHandle(ExpressionList(three(), ref("a")))))
        << "?,?,?,a <- int:1, int:2, int:3";
    QTest::newRow("the empty expression gives an empty list")
        << ExpressionHandle(ExpressionList(ExpressionHandle())) << " <- ";
    QTest::newRow("one handle on another node")
        << ExpressionHandle(ExpressionList(ref("a"))) << "a <- ";
    QTest::newRow("one handle on another operator")
        << ExpressionHandle(ExpressionList(ExpressionHandle(ref("a") == bound(1))))
        << "a = ? <- int:1";
    QTest::newRow("two empty expressions")
        << ExpressionHandle(ExpressionList(ExpressionHandle(), ExpressionHandle())) << ", <- ";
    QTest::newRow("no brackets in a nested operator")
        << ExpressionHandle(literal(1) == ExpressionList(ref("a") && ref("b"), literal(2)))
        << "1 = a AND b,2 <- ";
}

void tst_ExpressionList::construction()
{
    QFETCH(ExpressionHandle, list);
    QTEST(bindable(list), "text");
}

void tst_ExpressionList::append()
{
    ExpressionList list;
    list.append(QVariant(1)).append(ref("a")).append(three());
    QCOMPARE(bindable(list), QString("?,a,?,?,? <- int:1, int:1, int:2, int:3"));
    QCOMPARE(evaluated(list), QString("[int:1,NULL,int:1,int:2,int:3]"));

    // A handle on a list is one operand, the list itself gives its three.
    QCOMPARE(evaluated(ExpressionList().append(ExpressionHandle(three()))),
             QString("[[int:1,int:2,int:3]] const"));
    QCOMPARE(evaluated(ExpressionList(ExpressionHandle(three()), literal(4))),
             QString("[[int:1,int:2,int:3],int:4] const"));

    list = ExpressionList();
    list.append(list);
    QVERIFY(list.isEmpty());
    list.append(QVariant(1));
    list.append(list); // itself
    QCOMPARE(evaluated(list), QString("[int:1,int:1] const"));
}

void tst_ExpressionList::copiesShareOperands()
{
    ExpressionList first = three();
    ExpressionList copy(first);
    copy.append(literal(4));
    QCOMPARE(print(first, Sql), QString("1,2,3"));
    QCOMPARE(print(copy, Sql), QString("1,2,3,4"));
    first = copy;
    first = *&first;
    QCOMPARE(print(first, Sql), QString("1,2,3,4"));

    const ExpressionHandle shared = ref("a");
    const ExpressionList list(shared, shared);
    QCOMPARE(shared->ref.loadRelaxed(), 3);
}

void tst_ExpressionList::evaluate()
{
    const PropertySet set = setOf({new IntProperty("a", "", 7)});
    QCOMPARE(evaluated(ExpressionList(), set), QString("[] const"));
    QCOMPARE(evaluated(three(), set), QString("[int:1,int:2,int:3] const"));
    QCOMPARE(evaluated(ExpressionList(ref("a"), literal(1)), set), QString("[int:7,int:1]"));
    QCOMPARE(evaluated(ExpressionList(literal(1), ref("missing")), set), QString("[int:1,NULL]"));
    QCOMPARE(ExpressionList(ref("a")).evaluate(set, nullptr), QVariant(QVariantList{7}));
    QCOMPARE(ExpressionList().evaluate(set, nullptr).type(), QVariant::List);
}

void tst_ExpressionList::equality_data()
{
    QTest::addColumn<ExpressionHandle>("left");
    QTest::addColumn<ExpressionHandle>("right");
    QTest::addColumn<bool>("equal");
    const ExpressionHandle list = three();
    ElementOf element(literal(1));
    element.append(QVariant(2)).append(QVariant(3));
    QTest::newRow("same operands") << list << ExpressionHandle(three()) << true;
    QTest::newRow("fewer") << list << ExpressionHandle(ExpressionList(literal(1), literal(2)))
                           << false;
    QTest::newRow("more") << ExpressionHandle(ExpressionList(literal(1), literal(2))) << list
                          << false;
    QTest::newRow("other order") << list
                                 << ExpressionHandle(ExpressionList(QList<QVariant>{1, 3, 2}))
                                 << false;
    QTest::newRow("empty lists") << ExpressionHandle(ExpressionList()) << ExpressionHandle()
                                 << true;
    QTest::newRow("an ElementOf on the right") << list << ExpressionHandle(element) << false;
    QTest::newRow("an ElementOf on the left") << ExpressionHandle(element) << list << false;
    QTest::newRow("a leaf") << list << literal(1) << false;
}

void tst_ExpressionList::equality()
{
    QFETCH(ExpressionHandle, left);
    QFETCH(ExpressionHandle, right);
    QTEST(left.equals(right), "equal");
    QVERIFY(!left->equals(nullptr));
}

void tst_ExpressionList::placeholdersInOrder()
{
    const ExpressionHandle nested = ExpressionList(bound(2), literal(9)) << bound(3);
    QCOMPARE(bindable(ExpressionList(bound(1), nested)), QString("?,?,9,? <- int:1, int:2, int:3"));
}

void tst_ExpressionList::isEmpty()
{
    QVERIFY(ExpressionList().isEmpty());
    QVERIFY(!three().isEmpty());
    QVERIFY(!ExpressionList(ExpressionHandle(), ExpressionHandle()).isEmpty());
}

QTEST_APPLESS_MAIN(tst_ExpressionList)
#include "tst_ExpressionList.moc"
