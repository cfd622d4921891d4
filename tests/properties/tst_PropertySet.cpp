#include "support/Sets.h"

#include <Vokit/IllegalProperty>
#include <Vokit/UnexpectedTypeException>

#include <QtTest>

using namespace vogen;
using test::dumped;
using test::setOf;
using test::shared;

namespace {

const QString gHeavyRule = QStringLiteral("=======================================");

// Notes whom it was asked to judge, and rejects them all.
class Recorder : public PropertyValidator
{
public:
    explicit Recorder(QStringList *log)
        : m_log(log)
    {}
    bool validate(PropertySet &set, BaseProperty &property) override
    {
        m_log->append(QString("%1 of %2").arg(property.name()).arg(set.count()));
        property.setValid(false);
        return false;
    }

private:
    QStringList *m_log;
};

} // namespace

class tst_PropertySet : public QObject
{
    Q_OBJECT

private slots:
    void unknownNames();
    void addAndRemove();
    void order();
    void copiesShareTheProperties();
    void copiesHaveTheirOwnNames();
    void nodesDieWithTheLastSet();
    void find();
    void equality_data();
    void equality();
    void equalityGoesByTheOwnName();
    void validate();
    void dump();
    void variantValues();
    void setVariantValues();
    void metaType();
};

void tst_PropertySet::unknownNames()
{
    PropertySet set;
    const PropertySet &constant = set;
    QCOMPARE(&set["missing"], static_cast<BaseProperty *>(&IllegalProperty::ms_illegalProperty));
    QCOMPARE(&constant["missing"],
             static_cast<const BaseProperty *>(&IllegalProperty::ms_illegalProperty));
    QCOMPARE(set.count(), 0);
    QVERIFY(!set.contains("missing"));
    set.remove("missing");
    QCOMPARE(set.count(), 0);
}

void tst_PropertySet::addAndRemove()
{
    PropertySet set = setOf({new IntProperty("a", "", 1), new IntProperty("b", "", 2)});
    QCOMPARE(set.count(), 2);
    set.add(shared(new StringProperty("a", "", "again"))); // takes the place of the first
    QCOMPARE(set.count(), 2);
    QCOMPARE(set["a"].type(), QString("StringProperty"));
    QVERIFY(set.contains("a"));
    QVERIFY(!set.contains("A"));
    set.remove("a");
    QCOMPARE(set.allPropertyNames(), QStringList{"b"});
    set.clear();
    QCOMPARE(set.count(), 0);
    QVERIFY(set.begin() == set.end());
}

void tst_PropertySet::order()
{
    const PropertySet set =
        setOf({new IntProperty(QString(QChar(0xE9))), new IntProperty("b"), new IntProperty("B"),
               new IntProperty(""), new IntProperty("a")});
    const QStringList names{"", "B", "a", "b", QString(QChar(0xE9))};
    QCOMPARE(set.allPropertyNames(), names);
    QStringList walked;
    for (PropertySet::const_iterator it = set.begin(); it != set.end(); ++it)
        walked.append(it.key() + it.value()->name());
    QCOMPARE(walked, (QStringList{"", "BB", "aa", "bb", QString(2, QChar(0xE9))}));
}

void tst_PropertySet::copiesShareTheProperties()
{
    PropertySet first = setOf({new IntProperty("a", "", 1)});
    PropertySet copy(first);
    PropertySet assigned;
    QCOMPARE(&(assigned = first), &assigned);
    IntProperty::setValue(copy["a"], 2);
    QCOMPARE(IntProperty::getValue(first["a"], 0), 2);
    QCOMPARE(IntProperty::getValue(assigned["a"], 0), 2);
    for (PropertySet::iterator it = copy.begin(); it != copy.end(); ++it)
        QVERIFY(it.value()->setVariantValue(3));
    QCOMPARE(IntProperty::getValue(first["a"], 0), 3);
}

void tst_PropertySet::copiesHaveTheirOwnNames()
{
    PropertySet first = setOf({new IntProperty("a"), new IntProperty("b")});
    PropertySet second = first;
    second.remove("a");
    second.add(shared(new IntProperty("c")));
    QVERIFY(first.contains("a"));
    QVERIFY(!first.contains("c"));
    second.clear();
    QCOMPARE(first.count(), 2);
}

void tst_PropertySet::nodesDieWithTheLastSet()
{
    const boost::shared_ptr<BaseProperty> property(new IntProperty("a"));
    {
        PropertySet first;
        first.add(property);
        PropertySet second = first;
        first.remove("a");
        QCOMPARE(property.use_count(), 2L);
        second.clear();
        QCOMPARE(property.use_count(), 1L);
    }
    QCOMPARE(property.use_count(), 1L);
}

void tst_PropertySet::find()
{
    const PropertySet set = setOf({new IntProperty("a", "", 1)});
    QCOMPARE(set.find("a").value()->variantValue(), QVariant(1));
    QVERIFY(set.find("b") == set.end());
}

void tst_PropertySet::equality_data()
{
    QTest::addColumn<PropertySet>("left");
    QTest::addColumn<PropertySet>("right");
    QTest::addColumn<bool>("equal");
    const auto one = [](BaseProperty *property) { return setOf({property}); };
    const PropertySet five = one(new IntProperty("a", "", 5));
    QTest::newRow("two empty sets") << PropertySet() << PropertySet() << true;
    QTest::newRow("itself") << five << five << true;
    QTest::newRow("same value, other description")
        << five << one(new IntProperty("a", "x", 5)) << true;
    QTest::newRow("other value") << five << one(new IntProperty("a", "", 6)) << false;
    QTest::newRow("other name") << five << one(new IntProperty("b", "", 5)) << false;
    QTest::newRow("one more") << five << setOf({new IntProperty("a", "", 5), new IntProperty("b")})
                              << false;
    QTest::newRow("an int and its text: the right side is converted")
        << five << one(new StringProperty("a", "", "5")) << true;
    QTest::newRow("an int and a text with a zero in front")
        << five << one(new StringProperty("a", "", "05")) << true;
    QTest::newRow("the same the other way round: the int becomes 5")
        << one(new StringProperty("a", "", "05")) << five << false;
    const PropertySet invalid = one(new VariantProperty("a"));
    QTest::newRow("an invalid value differs from itself") << invalid << invalid << false;
    QTest::newRow("an invalid value on the right") << five << invalid << false;
    QTest::newRow("an invalid value on the left") << invalid << five << false;
    QTest::newRow("nested sets by value")
        << one(new PropertySetProperty("a", "", five))
        << one(new PropertySetProperty("a", "", one(new IntProperty("a", "", 5)))) << true;
}

void tst_PropertySet::equality()
{
    QFETCH(PropertySet, left);
    QFETCH(PropertySet, right);
    QFETCH(bool, equal);
    QCOMPARE(left == right, equal);
    QCOMPARE(left != right, !equal);
}

void tst_PropertySet::equalityGoesByTheOwnName()
{
    PropertySet left = setOf({new IntProperty("a", "", 1), new IntProperty("b", "", 2)});
    const PropertySet right = setOf({new IntProperty("a", "", 1), new IntProperty("b", "", 1)});
    QVERIFY(left != right);
    left["b"].setVariantValue(1);
    left["b"].setName("a"); // still filed under "b", looked up as "a"
    QVERIFY(left == right);
    left["b"].setName("gone");
    QVERIFY(left != right);
}

void tst_PropertySet::validate()
{
    QStringList log;
    const boost::shared_ptr<PropertyValidator> recorder(new Recorder(&log));
    PropertySet set = setOf({new IntProperty("b", "", 0, recorder), new IntProperty("none"),
                             new StringProperty("a", "", "", recorder)});
    const PropertySet untouched = set;
    set.validate();
    QCOMPARE(log, (QStringList{"a of 3", "b of 3"})); // in order, and the first did not stop it
    QVERIFY(!set["a"].isValid());
    QVERIFY(!set["b"].isValid());
    QVERIFY(set["none"].isValid());
    QVERIFY(!untouched["a"].isValid()); // the same object

    QCOMPARE(set["a"].validator(), recorder);
    set["a"].setValidator(boost::shared_ptr<PropertyValidator>());
    set["a"].setValid(true);
    set.validate();
    QVERIFY(set["a"].isValid());
}

void tst_PropertySet::dump()
{
    QCOMPARE(dumped(PropertySet()), gHeavyRule + "\n" + gHeavyRule);
    PropertySet set = setOf({new BoolProperty("b", "second", true), new IntProperty("a")});
    QCOMPARE(dumped(set),
             gHeavyRule + "\n" + dumped(set["a"]) + "\n" + dumped(set["b"]) + "\n" + gHeavyRule);
    QString text;
    QTextStream stream(&text);
    QCOMPARE(&set.dump(stream), &stream);
}

void tst_PropertySet::variantValues()
{
    QVERIFY(PropertySet().variantValues().isEmpty());
    PropertySet set = setOf({new IntProperty("a", "", 1), new VariantProperty("v"),
                             new PropertySetProperty("s", "", setOf({new BoolProperty("x")}))});
    set["a"].setName("renamed");
    QCOMPARE(set.variantValues(),
             (QVariantMap{{"a", 1}, {"s", QVariantMap{{"x", false}}}, {"v", QVariant()}}));
}

void tst_PropertySet::setVariantValues()
{
    PropertySet set = setOf({new IntProperty("a", "", 1), new IntProperty("c", "", 3)});
    QVERIFY(set.setVariantValues({}));
    QVERIFY(set.setVariantValues({{"a", 5}}));
    QCOMPARE(set.variantValues(), (QVariantMap{{"a", 5}, {"c", 3}}));

    QVERIFY(!set.setVariantValues({{"a", QVariantList{}}, {"c", "7"}}));
    QCOMPARE(set.variantValues(), (QVariantMap{{"a", 5}, {"c", 7}}));

    // An unknown name leaves an entry without a property behind.
    QVERIFY(!set.setVariantValues({{"b", 1}, {"c", 8}}));
    QCOMPARE(set.count(), 3);
    QVERIFY(set.contains("b"));
    QCOMPARE(set.allPropertyNames(), (QStringList{"a", "b", "c"}));
    QVERIFY(!set.find("b").value());
    QCOMPARE(IntProperty::getValue(set["c"], 0), 8);
    QVERIFY(!set.setVariantValues({{"b", 1}})); // and goes on refusing it
    set.remove("b");
    QCOMPARE(set.count(), 2);
}

void tst_PropertySet::metaType()
{
    QVERIFY(PropertySet::MetaType != 0);
    QCOMPARE(QMetaType::type("vogen::PropertySet"), PropertySet::MetaType);
    QCOMPARE(QMetaType::typeName(PropertySet::MetaType), "vogen::PropertySet");
    QCOMPARE(qMetaTypeId<PropertySet>(), PropertySet::MetaType);

    const PropertySet set = setOf({new IntProperty("a", "", 4)});
    void *const copy = QMetaType::create(PropertySet::MetaType, &set);
    QVERIFY(*static_cast<PropertySet *>(copy) == set);
    QMetaType::destroy(PropertySet::MetaType, copy);
    void *const fresh = QMetaType::create(PropertySet::MetaType);
    QCOMPARE(static_cast<PropertySet *>(fresh)->count(), 0);
    QMetaType::destroy(PropertySet::MetaType, fresh);
}

QTEST_APPLESS_MAIN(tst_PropertySet)
#include "tst_PropertySet.moc"
