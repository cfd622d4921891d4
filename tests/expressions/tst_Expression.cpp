#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionList>
#include <Vokit/ExpressionOperators>

#include <QtTest>

#include <memory>
#include <type_traits>
#include <utility>

using namespace vogen;
using namespace test;

namespace {

// A client's class that evaluates in its own way, on the road past its base.
class AlwaysTrue : public Comparator
{
public:
    using Comparator::Comparator;
    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override
    {
        Comparator::evaluate(properties, isConstant); // may still be called
        return true;
    }
    Expression *clone() const override { return new AlwaysTrue(*this); }
};

class TwiceTheValue : public ConstExpression
{
public:
    using ConstExpression::ConstExpression;
    QVariant evaluate(const PropertySet & /*properties*/, bool *isConstant) const override
    {
        if (isConstant)
            *isConstant = true;
        return value.toInt() * 2;
    }
    Expression *clone() const override { return new TwiceTheValue(*this); }
};

class OtherColumn : public ValueExpression
{
public:
    using ValueExpression::ValueExpression;
    QVariant evaluate(const PropertySet & /*properties*/, bool * /*isConstant*/) const override
    {
        return QString("other " + name);
    }
    Expression *clone() const override { return new OtherColumn(*this); }
};

class ComputedProperty : public IntProperty
{
public:
    using IntProperty::IntProperty;
    QVariant variantValue() const override { return 42; }
};

// One that derives from the abstract base alone.
class Fixed : public BaseProperty
{
public:
    Fixed()
        : BaseProperty("fixed", QString(), boost::shared_ptr<PropertyValidator>())
    {}
    QString type() const override { return "Fixed"; }
    QTextStream &dump(QTextStream &stream) const override { return stream; }
    QVariant variantValue() const override { return 43; }
    bool setVariantValue(const QVariant & /*value*/) override { return false; }
};

template <class Base>
class NeverTrue : public Base
{
public:
    using Base::Base;
    QVariant evaluate(const PropertySet & /*properties*/, bool *isConstant) const override
    {
        if (isConstant)
            *isConstant = true;
        return false;
    }
    Expression *clone() const override { return new NeverTrue(*this); }
};

} // namespace

class tst_Expression : public QObject
{
    Q_OBJECT

private slots:
    void printStyles();
    void emptyExpression();
    void handlesShare();
    void handlesCopyOnWrite();
    void handlesStayWhole();
    void handlesEqual();
    void staticEquals();
    void toString();
    void copiesAreNewNodes();
    void clientClassesKeepTheirRules();
    void clientPropertiesKeepTheirValue();
    void nodesOfAClientTakePart();
};

void tst_Expression::printStyles()
{
    QCOMPARE(int(Expression::PrintReadable), 0);
    QCOMPARE(int(Expression::PrintCode), 1);
    QCOMPARE(int(Expression::PrintSql), 2);
    QCOMPARE(int(Expression::PrintPlaceholders), 4);
    QCOMPARE(int(Expression::PrintOrderBy), 8);
    QCOMPARE(int(Expression::PrintDistinct), 16);
    QCOMPARE(int(Expression::PrintNested), 2048);
    const auto both = Expression::PrintSql | Expression::PrintPlaceholders;
    QVERIFY((std::is_same_v<decltype(both), const Expression::PrintStyle>));
    QCOMPARE(int(both), 6);
}

void tst_Expression::emptyExpression()
{
    const ExpressionHandle one;
    const ExpressionHandle other;
    QVERIFY(one.constData());
    QCOMPARE(one.constData(), other.constData());
    QCOMPARE(ExpressionList::empty().constData(), one.constData());
    QVERIFY(ExpressionHandle().equals(ExpressionHandle()));
    QVERIFY(one->isEmpty());
    QCOMPARE(print(one, Sql), QString());
    QCOMPARE(evaluated(one), QString("[] const"));
    QVERIFY(dynamic_cast<const ExpressionList *>(one.constData()));
}

void tst_Expression::handlesShare()
{
    const ExpressionHandle a = literal(5);
    const ExpressionHandle b = a; // NOLINT(performance-unnecessary-copy-initialization)
    QCOMPARE(a.constData(), b.constData());
    ExpressionHandle c;
    c = b;
    QCOMPARE(c.constData(), a.constData());
    QCOMPARE(&*a, a.constData());

    // Operators on handles share them too.
    const ExpressionHandle both = a && a;
    QCOMPARE(a->ref.loadRelaxed(), 5);
    QCOMPARE(print(both, Sql), QString("5 AND 5"));
}

void tst_Expression::handlesCopyOnWrite()
{
    ExpressionHandle a = ExpressionList(literal(1), literal(2));
    const ExpressionHandle b = a;
    dynamic_cast<ExpressionList &>(*a).append(literal(3)); // a write access: a gets its own node
    QVERIFY(a.constData() != b.constData());
    QCOMPARE(print(a, Sql), QString("1,2,3"));
    QCOMPARE(print(b, Sql), QString("1,2"));

    const Expression *alone = a.constData();
    a->collectPlaceholders(); // nobody shares it: no copy
    QCOMPARE(a.constData(), alone);

    // The empty expression that all default handles share stays empty.
    ExpressionHandle empty;
    dynamic_cast<ExpressionList &>(*empty).append(literal(1));
    QVERIFY(ExpressionHandle()->isEmpty());
}

void tst_Expression::handlesStayWhole()
{
    ExpressionHandle a = literal(5);
    const ExpressionHandle b = std::move(a);
    QVERIFY(a.constData()); // NOLINT(bugprone-use-after-move): no handle is ever null
    QVERIFY(a.equals(b));
    a = std::as_const(a);
    QCOMPARE(print(a, Sql), QString("5"));
}

void tst_Expression::handlesEqual()
{
    const ExpressionHandle a = ref("a");
    QVERIFY(a.equals(a));
    QVERIFY(a.equals(ref("a")));
    QVERIFY(!a.equals(ref("b")));
    QVERIFY(!a.equals(literal("a")));
    // The same node is equal without being asked: a Probe equals nothing but itself.
    const ExpressionHandle probe = Probe(1);
    QVERIFY(probe.equals(probe));
    QVERIFY(!probe.equals(Probe(1)));
    QVERIFY(ExpressionHandle(probe && a).equals(probe && a));
}

void tst_Expression::staticEquals()
{
    const ConstExpression five(5, false);
    const ConstExpression alsoFive(5, true);
    QVERIFY(Expression::equals(nullptr, nullptr));
    QVERIFY(!Expression::equals(nullptr, &five));
    QVERIFY(!Expression::equals(&five, nullptr));
    QVERIFY(Expression::equals(&five, &alsoFive));
    QVERIFY(!five.equals(nullptr));
}

void tst_Expression::toString()
{
    const ExpressionHandle e = ref("a b") == literal("x");
    QCOMPARE(e->toString(), QString("a_b = 'x'"));
    QCOMPARE(e->toString(Expression::PrintCode), QString("a_b == \"x\""));
    const QString converted = *e;
    QCOMPARE(converted, e->toString(Expression::PrintSql));
    QVERIFY(ConstExpression(QVariant("text"), false).toString(Expression::PrintSql) == "'text'");
}

void tst_Expression::copiesAreNewNodes()
{
    const ExpressionHandle shared = literal(5);
    const ExpressionHandle again = shared; // NOLINT(performance-unnecessary-copy-initialization)
    const auto &node = dynamic_cast<const ConstExpression &>(*shared);
    ConstExpression copy(node);
    QCOMPARE(copy.ref.loadRelaxed(), 0);
    copy = node;
    QCOMPARE(copy.ref.loadRelaxed(), 0);
    QCOMPARE(shared->ref.loadRelaxed(), 2);
    const std::unique_ptr<Expression> clone(shared->clone());
    QCOMPARE(clone->ref.loadRelaxed(), 0);
    QVERIFY(clone->equals(shared.constData()));
    QCOMPARE(again.constData(), shared.constData());
}

// The library reads its own nodes past evaluate(); a class derived from one of them is asked.
void tst_Expression::clientClassesKeepTheirRules()
{
    const PropertySet set = setOf({new IntProperty("a", "", 1)});
    const AlwaysTrue wrong(literal(1), Comparator::Equal, literal(2));
    QCOMPARE(evaluated(wrong, set), QString("bool:true const"));
    QCOMPARE(evaluated(ExpressionHandle(wrong) && wrong, set), QString("bool:true const"));
    QCOMPARE(evaluated(!ExpressionHandle(wrong), set), QString("bool:false const"));
    QCOMPARE(evaluated(NeverTrue<NotOperator>(literal(false)) || literal(false)),
             QString("bool:false const"));

    NeverTrue<ElementOf> element(literal(1));
    element.append(QVariant(1));
    QCOMPARE(evaluated(!ExpressionHandle(element)), QString("bool:true const"));
    const NeverTrue<BooleanOperator> chain(literal(true), BooleanOperator::And, literal(true));
    QCOMPARE(evaluated(!ExpressionHandle(chain)), QString("bool:true const"));

    QCOMPARE(evaluated(ExpressionHandle(TwiceTheValue(4, true)) == literal(8)),
             QString("bool:true const"));
    QCOMPARE(evaluated(ExpressionHandle(OtherColumn("a", "")) == literal("other a"), set),
             QString("bool:true"));
}

void tst_Expression::clientPropertiesKeepTheirValue()
{
    const PropertySet set = setOf({new ComputedProperty("a", "", 1)});
    QCOMPARE(evaluated(ref("a"), set), QString("int:42"));
    QCOMPARE(evaluated(ref("a") == literal(42), set), QString("bool:true"));
    QCOMPARE(evaluated(ElementOf(ref("a")).append(QVariant(42)), set), QString("bool:true"));

    QCOMPARE(evaluated(ref("fixed") == literal(43), setOf({new Fixed})), QString("bool:true"));

    const PropertySet nested =
        setOf({new PropertySetProperty("s", "", set), new VariantProperty("v", "", 5)});
    QCOMPARE(ref("s")->evaluate(nested, nullptr), QVariant(QVariantMap{{"a", 42}}));
    QCOMPARE(evaluated(ref("s") == ref("s"), nested), QString("bool:true"));
    QCOMPARE(evaluated(ref("v") == literal(5), nested), QString("bool:true"));
}

void tst_Expression::nodesOfAClientTakePart()
{
    QStringList log;
    const ExpressionHandle e = (ExpressionHandle(Probe(3, true, &log)) < Probe(4, true, &log)) &&
                               ExpressionHandle(Probe(true, false, &log));
    QCOMPARE(evaluated(e), QString("bool:true"));
    QCOMPARE(log, (QStringList{"3", "4", "true"})); // each once, left to right
    QCOMPARE(print(e, Sql), QString("nested < nested AND nested"));
}

QTEST_APPLESS_MAIN(tst_Expression)
#include "tst_Expression.moc"
