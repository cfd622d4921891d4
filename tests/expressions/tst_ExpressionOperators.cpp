#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionOperators>

#include <QtTest>

#include <type_traits>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)
Q_DECLARE_METATYPE(vogen::Comparator::CompOp)

namespace {

// Whether an expression of these operands compiles.
template <typename L, typename R, typename = void>
struct Comparable : std::false_type
{
};
template <typename L, typename R>
struct Comparable<L, R, std::void_t<decltype(std::declval<L>() == std::declval<R>())>>
    : std::true_type
{
};
template <typename L, typename R, typename = void>
struct Joinable : std::false_type
{
};
template <typename L, typename R>
struct Joinable<L, R, std::void_t<decltype(std::declval<L>() && std::declval<R>())>>
    : std::true_type
{
};

using Property = const IntProperty &;
using Handle = ExpressionHandle;

} // namespace

class tst_ExpressionOperators : public QObject
{
    Q_OBJECT

private slots:
    void comparisons_data();
    void comparisons();
    void bindableValues_data();
    void bindableValues();
    void shapesThatDontExist();
    void logic();
    void lists();
    void textStreams();
    void propertiesNeedNotLive();
    void emptyHandles();
    void namespaces();
};

void tst_ExpressionOperators::comparisons_data()
{
    QTest::addColumn<ExpressionHandle>("built");
    QTest::addColumn<Comparator::CompOp>("op");
    QTest::addColumn<ExpressionHandle>("right");
    const IntProperty p("p");
    const IntProperty q("q");
    const Handle l = ref("p");
    const Handle h = ref("h");
    const Handle five = bound(5);
    const auto row = [](const char *name, const Handle &built, Comparator::CompOp op,
                        const Handle &right) { QTest::newRow(name) << built << op << right; };

    row("handle < handle", l < h, Comparator::Less, h);
    row("handle <= handle", l <= h, Comparator::LessEqual, h);
    row("handle == handle", l == h, Comparator::Equal, h);
    row("handle != handle", l != h, Comparator::NotEqual, h);
    row("handle >= handle", l >= h, Comparator::GreaterEqual, h);
    row("handle > handle", l > h, Comparator::Greater, h);

    row("property < value", p < 5, Comparator::Less, five);
    row("property <= value", p <= 5, Comparator::LessEqual, five);
    row("property == value", p == 5, Comparator::Equal, five);
    row("property != value", p != 5, Comparator::NotEqual, five);
    row("property >= value", p >= 5, Comparator::GreaterEqual, five);
    row("property > value", p > 5, Comparator::Greater, five);

    row("property < property", p < q, Comparator::Less, ref("q"));
    row("property <= property", p <= q, Comparator::LessEqual, ref("q"));
    row("property == property", p == q, Comparator::Equal, ref("q"));
    row("property != property", p != q, Comparator::NotEqual, ref("q"));
    row("property >= property", p >= q, Comparator::GreaterEqual, ref("q"));
    row("property > property", p > q, Comparator::Greater, ref("q"));

    row("property < handle", p < h, Comparator::Less, h);
    row("property <= handle", p <= h, Comparator::LessEqual, h);
    row("property == handle", p == h, Comparator::Equal, h);
    row("property != handle", p != h, Comparator::NotEqual, h);
    row("property >= handle", p >= h, Comparator::GreaterEqual, h);
    row("property > handle", p > h, Comparator::Greater, h);
    row("property == node", p == !h, Comparator::Equal, !h);
}

void tst_ExpressionOperators::comparisons()
{
    QFETCH(ExpressionHandle, built);
    QFETCH(Comparator::CompOp, op);
    QFETCH(ExpressionHandle, right);
    const Handle expected = Comparator(ref("p"), op, right);
    QVERIFY(built.equals(expected));
    QCOMPARE(bindable(built), bindable(expected)); // values are bindable, which equals() can't see
    QCOMPARE(written(built), written(expected));   // the alias is empty, not null
}

void tst_ExpressionOperators::bindableValues_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QString>("text");
    const StringProperty p("p");
    const auto row = [](const Handle &e, const char *text) { QTest::newRow(text) << e << text; };
    row(p == 5, "p = ? <- int:5");
    row(p == 5u, "p = ? <- uint:5");
    row(p == 5LL, "p = ? <- qlonglong:5");
    row(p == 5ULL, "p = ? <- qulonglong:5");
    row(p == 2.5, "p = ? <- double:2.5");
    row(p == 2.5f, "p = ? <- float:2.5");
    row(p == true, "p = ? <- bool:true");
    row(p == "text", "p = ? <- QString:text");
    row(p == QString("text"), "p = ? <- QString:text");
    row(p == QLatin1String("text"), "p = ? <- QString:text");
    row(p == QDate(1970, 1, 2), "p = ? <- qlonglong:86400000000");
    row(p == QTime(0, 0, 1), "p = ? <- qlonglong:1000000");
    row(p == QVariant(), "p = ? <- NULL");
    row(p == QVariant::Int, "p = ? <- int:0"); // a null int, not the number 2
}

void tst_ExpressionOperators::bindableValues()
{
    QFETCH(ExpressionHandle, e);
    QTEST(bindable(e), "text");
}

void tst_ExpressionOperators::shapesThatDontExist()
{
    QVERIFY((Comparable<Property, int>::value));
    QVERIFY((Comparable<Property, Property>::value));
    QVERIFY((Comparable<Property, Handle>::value));
    QVERIFY((Comparable<Handle, Handle>::value));
    // The property stands on the left, and a handle on the left wants a handle on the right.
    QVERIFY(!(Comparable<Handle, Property>::value));
    QVERIFY(!(Comparable<Handle, int>::value));
    QVERIFY(!(Comparable<int, Property>::value));
    QVERIFY(!(Comparable<QVariant, Property>::value));
    QVERIFY((Joinable<Handle, Handle>::value));
    QVERIFY(!(Joinable<Property, Property>::value));
    QVERIFY(!(std::is_convertible_v<Comparator, bool>));
    QVERIFY((std::is_same_v<decltype(std::declval<Property>() == 5), Comparator>));
    QVERIFY((std::is_same_v<decltype(std::declval<Handle>() || std::declval<Handle>()),
                            BooleanOperator>));
    QVERIFY((std::is_same_v<decltype(!std::declval<Handle>()), NotOperator>));
    QVERIFY((std::is_same_v<decltype(std::declval<Handle>() << std::declval<Handle>()),
                            ExpressionList>));
}

void tst_ExpressionOperators::logic()
{
    const Handle a = ref("a");
    const Handle b = ref("b");
    const Handle c = ref("c");
    QCOMPARE(print(a && b, Sql), QString("a AND b"));
    QCOMPARE(print(a || b, Sql), QString("a OR b"));
    QCOMPARE(print(!a, Sql), QString(" NOT a"));
    QCOMPARE(print(a && b && c, Sql), QString("a AND b AND c"));
    QCOMPARE(print(a || b || c, Sql), QString("a OR b OR c"));
    QCOMPARE(print((a || b) && c, Sql), QString("(a OR b) AND c"));
    const IntProperty p("p");
    QCOMPARE(print((p == 1) && (!(p == 2) || a), Sql), QString("p = 1 AND ( NOT p = 2 OR a)"));
    QCOMPARE(print((p == 1) == (p == 2), Sql), QString("p = 1 = p = 2"));
    QCOMPARE(print(a == a, Sql), QString("a = a")); // also for two handles on one node
}

void tst_ExpressionOperators::lists()
{
    const IntProperty p("p");
    const IntProperty q("q");
    const Handle a = ref("a");
    QCOMPARE(written(a << a), written(ExpressionList(a, a)));
    QCOMPARE(written(p << a), written(ExpressionList(ref("p"), a)));
    QCOMPARE(written(a << p), written(ExpressionList(a, ref("p"))));
    QCOMPARE(written(p << q), written(ExpressionList(ref("p"), ref("q"))));

    // Two at a time: a chain nests, although it prints flat.
    const Handle chain = literal(1) << literal(2) << literal(3);
    QCOMPARE(print(chain, Sql), QString("1,2,3"));
    QCOMPARE(evaluated(chain), QString("[[int:1,int:2],int:3] const"));
    QCOMPARE(evaluated(p << q << literal(3)), QString("[[NULL,NULL],int:3]"));
}

void tst_ExpressionOperators::textStreams()
{
    const IntProperty p("p q");
    const Handle h = p == "x";
    QString text;
    QTextStream stream(&text);
    stream << h << ';' << *h << ';' << (p == 5) << ';' << !h;
    stream.flush();
    QCOMPARE(text, QString("p_q = 'x';p_q = 'x';p_q = 5; NOT p_q = 'x'"));
    QCOMPARE(text.section(';', 0, 0), QString(*h));
    QCOMPARE(&(stream << h), &stream);
}

void tst_ExpressionOperators::propertiesNeedNotLive()
{
    Handle e;
    {
        const IntProperty gone("a", "", 1);
        e = gone == 5;
    }
    QCOMPARE(evaluated(e, setOf({new U64Property("a", "", 5)})), QString("bool:true"));
    PropertySet set = setOf({new IntProperty("a", "", 5)});
    QCOMPARE(evaluated(set["a"] == 5, set), QString("bool:true"));
}

void tst_ExpressionOperators::emptyHandles()
{
    const IntProperty p("p");
    QCOMPARE(print(p == Handle(), Sql), QString("p = "));
    QCOMPARE(print(Handle() && Handle(), Sql), QString(" AND "));
    QCOMPARE(evaluated(Handle() && literal(true)), QString("NULL const"));
    QCOMPARE(evaluated(Handle() || literal(true)), QString("bool:true const"));
    QCOMPARE(print(!Handle(), Sql), QString(" NOT "));
    QCOMPARE(evaluated(!Handle()), QString("NULL const"));
}

namespace app {

// A namespace with operators of its own hides the global ones, until it asks for them.
struct Own
{
};
[[maybe_unused]] bool operator==(Own, Own)
{
    return true;
}
using ::operator==;

QString filter(const IntProperty &p)
{
    return p == 5;
}

} // namespace app

void tst_ExpressionOperators::namespaces()
{
    QCOMPARE(app::filter(IntProperty("p")), QString("p = 5"));
}

QTEST_APPLESS_MAIN(tst_ExpressionOperators)
#include "tst_ExpressionOperators.moc"
