#include "support/Sets.h"

#include <Vokit/IllegalProperty>
#include <Vokit/UnexpectedTypeException>

#include <QtTest>

#include <limits>
#include <type_traits>

using namespace vogen;
using test::dumped;
using test::setOf;

namespace {

const QString gRule = QStringLiteral("--------------------------------------------\n");

// One property of each class, called "p".
BaseProperty *make(const QString &type)
{
    const QString name = QStringLiteral("p");
    const QString description = QStringLiteral("about p");
    if (type == "IntProperty")
        return new IntProperty(name, description, -5);
    if (type == "S64Property")
        return new S64Property(name, description, -5000000000LL);
    if (type == "UIntProperty")
        return new UIntProperty(name, description, 4000000000u);
    if (type == "U64Property")
        return new U64Property(name, description, 18446744073709551615ULL);
    if (type == "StringProperty")
        return new StringProperty(name, description, QStringLiteral("some text"));
    if (type == "StringListProperty")
        return new StringListProperty(name, description, {"a", "", "b"});
    if (type == "FloatProperty")
        return new FloatProperty(name, description, 1.5f);
    if (type == "DoubleProperty")
        return new DoubleProperty(name, description, 1.0 / 3);
    if (type == "BoolProperty")
        return new BoolProperty(name, description, true);
    if (type == "RectProperty")
        return new RectProperty(name, description, QRect(1, 2, 30, 40));
    if (type == "VariantProperty")
        return new VariantProperty(name, description, QVariant(7));
    if (type == "DateProperty")
        return new DateProperty(name, description, QDate(2026, 3, 5));
    if (type == "TimeProperty")
        return new TimeProperty(name, description, QTime(9, 8, 7, 6));
    if (type == "DateTimeProperty")
        return new DateTimeProperty(name, description,
                                    QDateTime(QDate(2026, 3, 5), QTime(9, 8, 7), Qt::UTC));
    if (type == "PropertySetProperty")
        return new PropertySetProperty(name, description, setOf({new IntProperty("inner", "", 3)}));
    return new IllegalProperty;
}

const QStringList gTypes{"IntProperty",   "S64Property",      "UIntProperty",
                         "U64Property",   "StringProperty",   "StringListProperty",
                         "FloatProperty", "DoubleProperty",   "BoolProperty",
                         "RectProperty",  "VariantProperty",  "DateProperty",
                         "TimeProperty",  "DateTimeProperty", "PropertySetProperty"};

QVariantMap map(const char *key, const QVariant &value)
{
    return {{QString::fromLatin1(key), value}};
}

// The four texts of the exception that the call throws; "none" when it throws nothing.
template <typename Call>
QString thrown(Call call)
{
    try {
        call();
    } catch (const vo::UnexpectedTypeException &e) {
        return QStringList{e.name(), e.actualType(), e.expectedType(), e.message()}.join('|') +
               (e.cause() ? "|cause" : "");
    }
    return "none";
}

// Reads and writes "p" by the typed door of Property, and names what went wrong.
template <class Property>
void addDoors(const char *own)
{
    using Value = typename Property::Value;
    for (const QString &type : gTypes) {
        const boost::shared_ptr<BaseProperty> property(make(type));
        const QString read = thrown([&] { Property::getValue(*property, Value()); });
        const QString write = thrown([&] { Property::setValue(*property, Value()); });
        QTest::newRow(qPrintable(QString("%1 through %2").arg(type, own)))
            << type << QString(own) << read << write;
    }
}

template <typename Property, typename = void>
struct HasTypedDoor : std::false_type
{
};
template <typename Property>
struct HasTypedDoor<
    Property, std::void_t<decltype(Property::getValue(std::declval<const BaseProperty &>(),
                                                      std::declval<typename Property::Value>()))>>
    : std::true_type
{
};

// A client's own class, with a value that it makes anew each time.
class DoublingProperty : public IntProperty
{
public:
    using IntProperty::IntProperty;
    QVariant variantValue() const override { return IntProperty::getValue(*this, 0) * 2; }
};

} // namespace

class tst_TypedProperties : public QObject
{
    Q_OBJECT

private slots:
    void construction();
    void typedDoors_data();
    void typedDoors();
    void typedValues();
    void setValueLeavesTheVerdict();
    void dateHasNoTypedDoor();
    void variantValue_data();
    void variantValue();
    void setVariantValue_data();
    void setVariantValue();
    void setVariantValueOfEmbeddedSet();
    void dump_data();
    void dump();
    void illegalProperty();
    void validateWithoutValidator();
    void derivedClassThroughTheBase();
};

void tst_TypedProperties::construction()
{
    const IntProperty plain("n");
    QCOMPARE(plain.name(), QString("n"));
    QVERIFY(plain.description().isNull());
    QVERIFY(plain.errorText().isNull());
    QVERIFY(plain.isValid());
    QVERIFY(!plain.validator());
    QCOMPARE(plain.variantValue(), QVariant(0));

    for (const QString &type : gTypes) {
        const boost::shared_ptr<BaseProperty> property(make(type));
        QCOMPARE(property->type(), type);
        QCOMPARE(property->name(), QString("p"));
        QCOMPARE(property->description(), QString("about p"));
        QVERIFY(property->isValid());
    }
    QCOMPARE(StringProperty("s").variantValue(), QVariant(QString()));
    QCOMPARE(BoolProperty("b").variantValue(), QVariant(false));
    QVERIFY(!VariantProperty("v").variantValue().isValid());

    IntProperty changed("n");
    changed.setName("m");
    changed.setDescription("d");
    changed.setErrorText("e");
    changed.setValid(false);
    QCOMPARE(changed.name(), QString("m"));
    QCOMPARE(changed.description(), QString("d"));
    QCOMPARE(changed.errorText(), QString("e"));
    QVERIFY(!changed.isValid());
}

void tst_TypedProperties::typedDoors_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("door");
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("write");
    addDoors<IntProperty>("IntProperty");
    addDoors<S64Property>("S64Property");
    addDoors<UIntProperty>("UIntProperty");
    addDoors<U64Property>("U64Property");
    addDoors<StringProperty>("StringProperty");
    addDoors<StringListProperty>("StringListProperty");
    addDoors<FloatProperty>("FloatProperty");
    addDoors<DoubleProperty>("DoubleProperty");
    addDoors<BoolProperty>("BoolProperty");
    addDoors<RectProperty>("RectProperty");
    addDoors<VariantProperty>("VariantProperty");
    addDoors<TimeProperty>("TimeProperty");
    addDoors<DateTimeProperty>("DateTimeProperty");
    addDoors<PropertySetProperty>("PropertySetProperty");
}

// Every class through every door: its own opens, any other throws and says which it wanted.
void tst_TypedProperties::typedDoors()
{
    QFETCH(QString, type);
    QFETCH(QString, door);
    QFETCH(QString, read);
    QFETCH(QString, write);
    if (type == door) {
        QCOMPARE(read, QString("none"));
        QCOMPARE(write, QString("none"));
        return;
    }
    const QString texts = "p|" + type + "|%1|Property has the wrong type.";
    QCOMPARE(read, texts.arg(door));
    // The one class that names another when it is written to.
    QCOMPARE(write, texts.arg(door == "StringListProperty" ? "StringProperty" : door));
}

void tst_TypedProperties::typedValues()
{
    PropertySet set = setOf({make("IntProperty")});
    QCOMPARE(IntProperty::getValue(set["p"], 0), -5);
    IntProperty::setValue(set["p"], 9);
    QCOMPARE(IntProperty::getValue(set["p"], 0), 9);

    QCOMPARE(IntProperty::getValue(set["missing"], 7), 7);
    QCOMPARE(StringListProperty::getValue(set["missing"], {"x"}), QStringList{"x"});
    QCOMPARE(thrown([&] { IntProperty::setValue(set["missing"], 7); }),
             QString("|IllegalProperty|IntProperty|Property has the wrong type."));
    QCOMPARE(thrown([&] { StringListProperty::setValue(set["missing"], {}); }),
             QString("|IllegalProperty|StringProperty|Property has the wrong type."));

    StringListProperty list("list");
    StringListProperty::setValue(list, {"a", "b"});
    QCOMPARE(StringListProperty::getValue(list, {}), (QStringList{"a", "b"}));
    RectProperty rect("rect");
    RectProperty::setValue(rect, QRect(1, 2, 3, 4));
    QCOMPARE(RectProperty::getValue(rect, QRect()), QRect(1, 2, 3, 4));

    // A set comes out as a copy that leads to the same properties.
    PropertySetProperty nested("nested", "", set);
    IntProperty::setValue(PropertySetProperty::getValue(nested, PropertySet())["p"], 12);
    QCOMPARE(IntProperty::getValue(set["p"], 0), 12);

    try {
        IntProperty::getValue(list, 0);
        QFAIL("a list is no int");
    } catch (const vo::IllegalArgumentException &e) { // as clients catch the family
        QCOMPARE(e.argument(), QString("list"));
        QCOMPARE(QString(e.what()), QString("Property has the wrong type."));
    }
}

void tst_TypedProperties::setValueLeavesTheVerdict()
{
    IntProperty property("p");
    property.setValid(false);
    property.setErrorText("old verdict");
    IntProperty::setValue(property, 3);
    QVERIFY(property.setVariantValue(4));
    QVERIFY(!property.isValid());
    QCOMPARE(property.errorText(), QString("old verdict"));
}

void tst_TypedProperties::dateHasNoTypedDoor()
{
    QVERIFY(HasTypedDoor<TimeProperty>::value);
    QVERIFY(HasTypedDoor<StringListProperty>::value);
    QVERIFY(!HasTypedDoor<DateProperty>::value);
}

void tst_TypedProperties::variantValue_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("metaType");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("int") << "IntProperty" << int(QMetaType::Int) << QVariant(-5);
    QTest::newRow("S64") << "S64Property" << int(QMetaType::LongLong) << QVariant(-5000000000LL);
    QTest::newRow("uint") << "UIntProperty" << int(QMetaType::UInt) << QVariant(4000000000u);
    QTest::newRow("U64") << "U64Property" << int(QMetaType::ULongLong)
                         << QVariant(18446744073709551615ULL);
    QTest::newRow("string") << "StringProperty" << int(QMetaType::QString) << QVariant("some text");
    QTest::newRow("list") << "StringListProperty" << int(QMetaType::QStringList)
                          << QVariant(QStringList{"a", "", "b"});
    QTest::newRow("float is no double")
        << "FloatProperty" << int(QMetaType::Float) << QVariant(1.5f);
    QTest::newRow("double") << "DoubleProperty" << int(QMetaType::Double) << QVariant(1.0 / 3);
    QTest::newRow("bool") << "BoolProperty" << int(QMetaType::Bool) << QVariant(true);
    QTest::newRow("rect") << "RectProperty" << int(QMetaType::QRect)
                          << QVariant(QRect(1, 2, 30, 40));
    QTest::newRow("variant") << "VariantProperty" << int(QMetaType::Int) << QVariant(7);
    QTest::newRow("date") << "DateProperty" << int(QMetaType::QDate) << QVariant(QDate(2026, 3, 5));
    QTest::newRow("time") << "TimeProperty" << int(QMetaType::QTime) << QVariant(QTime(9, 8, 7, 6));
    QTest::newRow("date and time")
        << "DateTimeProperty" << int(QMetaType::QDateTime)
        << QVariant(QDateTime(QDate(2026, 3, 5), QTime(9, 8, 7), Qt::UTC));
    QTest::newRow("set is a map") << "PropertySetProperty" << int(QMetaType::QVariantMap)
                                  << QVariant(map("inner", 3));
    QTest::newRow("illegal") << "IllegalProperty" << int(QMetaType::UnknownType) << QVariant();
}

void tst_TypedProperties::variantValue()
{
    QFETCH(QString, type);
    const boost::shared_ptr<BaseProperty> property(make(type));
    QTEST(property->variantValue().userType(), "metaType");
    QTEST(property->variantValue(), "value");
}

void tst_TypedProperties::setVariantValue_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QVariant>("given");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<QVariant>("after");
    const QVariantList list{1, 2};
    const auto row = [](const char *name, const char *type, const QVariant &given, bool taken,
                        const QVariant &after) {
        QTest::newRow(name) << QString(type) << given << taken << after;
    };

    row("int from text", "IntProperty", "12", true, 12);
    row("int from text without a number: taken as 0", "IntProperty", "abc", true, 0);
    row("int from double: rounded", "IntProperty", 2.5, true, 3);
    row("int from a list: refused", "IntProperty", list, false, -5);
    row("int from nothing: refused", "IntProperty", QVariant(), false, -5);
    row("S64 from text", "S64Property", "-9223372036854775808", true,
        std::numeric_limits<qlonglong>::min());
    row("S64 from a date: refused", "S64Property", QDate(2026, 3, 5), false, -5000000000LL);
    row("uint from int", "UIntProperty", 5, true, 5u);
    row("uint from a rect: refused", "UIntProperty", QRect(), false, 4000000000u);
    row("U64 from text", "U64Property", "18446744073709551614", true, 18446744073709551614ULL);
    row("U64 from a map: refused", "U64Property", map("a", 1), false, 18446744073709551615ULL);
    row("string from int", "StringProperty", 5, true, "5");
    row("string from bool", "StringProperty", true, true, "true");
    row("string from a list of two: refused", "StringProperty", QStringList{"a", "b"}, false,
        "some text");
    row("string from a rect: refused", "StringProperty", QRect(), false, "some text");
    row("list from a list", "StringListProperty", QStringList{"x", "y"}, true,
        QStringList{"x", "y"});
    row("list from text: split, empty parts kept", "StringListProperty", "a,,b", true,
        QStringList{"a", "", "b"});
    row("list from text without a comma", "StringListProperty", "a", true, QStringList{"a"});
    row("list from an empty text: one empty item", "StringListProperty", "", true, QStringList{""});
    row("list from a variant list", "StringListProperty", QVariantList{"a", 2}, true,
        QStringList{"a", "2"});
    row("list from an int: its text", "StringListProperty", 5, true, QStringList{"5"});
    row("list from nothing: one empty item", "StringListProperty", QVariant(), true,
        QStringList{""});
    row("float from double: narrowed", "FloatProperty", 0.1, true, 0.1f);
    row("float from text", "FloatProperty", "2.5", true, 2.5f);
    row("float from a date: refused", "FloatProperty", QDate(2026, 3, 5), false, 1.5f);
    row("double from int", "DoubleProperty", 4, true, 4.0);
    row("double from a list: refused", "DoubleProperty", list, false, 1.0 / 3);
    row("bool from int", "BoolProperty", 0, true, false);
    row("bool from text: only false, 0 and nothing are false", "BoolProperty", "no", true, true);
    row("bool from a text that is false", "BoolProperty", "FALSE", true, false);
    row("bool from a rect: refused", "BoolProperty", QRect(), false, true);
    row("rect from a rect", "RectProperty", QRect(5, 6, 7, 8), true, QRect(5, 6, 7, 8));
    row("rect from text: refused", "RectProperty", "1,2,3,4", false, QRect(1, 2, 30, 40));
    row("variant takes anything", "VariantProperty", list, true, list);
    row("variant takes nothing", "VariantProperty", QVariant(), true, QVariant());
    row("date from a date and time", "DateProperty", QDateTime(QDate(2025, 1, 2), QTime(3, 4)),
        true, QDate(2025, 1, 2));
    row("date from ISO text", "DateProperty", "2025-01-02", true, QDate(2025, 1, 2));
    row("date from an int: refused", "DateProperty", 5, false, QDate(2026, 3, 5));
    row("time from text", "TimeProperty", "01:02:03", true, QTime(1, 2, 3));
    row("time from an int: refused", "TimeProperty", 5, false, QTime(9, 8, 7, 6));
    row("date and time from a date", "DateTimeProperty", QDate(2025, 1, 2), true,
        QDateTime(QDate(2025, 1, 2), QTime(0, 0)));
    row("date and time from a bool: refused", "DateTimeProperty", true, false,
        QDateTime(QDate(2026, 3, 5), QTime(9, 8, 7), Qt::UTC));
    row("set from text: refused", "PropertySetProperty", "x", false, map("inner", 3));
    row("set from an empty map", "PropertySetProperty", QVariantMap(), true, map("inner", 3));
    row("illegal takes nothing", "IllegalProperty", 5, false, QVariant());
}

void tst_TypedProperties::setVariantValue()
{
    QFETCH(QString, type);
    QFETCH(QVariant, given);
    QFETCH(QVariant, after);
    const boost::shared_ptr<BaseProperty> property(make(type));
    QTEST(property->setVariantValue(given), "taken");
    QCOMPARE(property->variantValue(), after);
    QCOMPARE(property->variantValue().userType(), after.userType());
}

void tst_TypedProperties::setVariantValueOfEmbeddedSet()
{
    PropertySet inner = setOf(
        {new IntProperty("a", "", 1), new IntProperty("b", "", 2), new IntProperty("c", "", 3)});
    PropertySetProperty property("p", "", inner);
    QVERIFY(!property.setVariantValue(
        QVariantMap{{"a", 10}, {"aa", "unknown"}, {"b", QVariantList{}}, {"c", 30}}));
    QCOMPARE(property.variantValue(), QVariant(QVariantMap{{"a", 10}, {"b", 2}, {"c", 30}}));
    QCOMPARE(inner.count(), 3); // the unknown name left no entry
    QVERIFY(property.setVariantValue(map("b", 20)));
    QCOMPARE(property.variantValue(), QVariant(QVariantMap{{"a", 10}, {"b", 20}, {"c", 30}}));

    PropertySetProperty outer("o", "", setOf({new PropertySetProperty("p", "", inner)}));
    QVERIFY(outer.setVariantValue(map("p", map("a", 7))));
    QCOMPARE(IntProperty::getValue(inner["a"], 0), 7);
    QCOMPARE(outer.variantValue(), QVariant(map("p", QVariantMap{{"a", 7}, {"b", 20}, {"c", 30}})));
}

void tst_TypedProperties::dump_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("valueLine");
    QTest::newRow("int") << "IntProperty"
                         << "Property value: -5\n";
    QTest::newRow("S64") << "S64Property"
                         << "Property value: -5000000000\n";
    QTest::newRow("uint") << "UIntProperty"
                          << "Property value: 4000000000\n";
    QTest::newRow("U64") << "U64Property"
                         << "Property value: 18446744073709551615\n";
    QTest::newRow("string") << "StringProperty"
                            << "Property value: some text\n";
    QTest::newRow("list") << "StringListProperty"
                          << "Property value: a,,b\n";
    QTest::newRow("float") << "FloatProperty"
                           << "Property value: 1.5\n";
    QTest::newRow("double: six digits") << "DoubleProperty"
                                        << "Property value: 0.333333\n";
    QTest::newRow("bool is a digit") << "BoolProperty"
                                     << "Property value: 1\n";
    QTest::newRow("rect") << "RectProperty"
                          << "Property value: (1,2,30,40)\n";
    QTest::newRow("variant") << "VariantProperty"
                             << "Property value: 7\n";
    QTest::newRow("date") << "DateProperty"
                          << "Property value: Thu Mar 5 2026\n";
    QTest::newRow("time") << "TimeProperty"
                          << "Property value: 09:08:07\n";
    QTest::newRow("date and time") << "DateTimeProperty"
                                   << "Property value: Thu Mar 5 09:08:07 2026 GMT\n";
    const QString heavy = "=======================================";
    QTest::newRow("set") << "PropertySetProperty"
                         << "Embedded property set: \n" + heavy +
                                "\nProperty name: inner\nProperty description: \n"
                                "Property value: 3\n" +
                                gRule + "\n" + heavy + "\n";
}

void tst_TypedProperties::dump()
{
    QFETCH(QString, type);
    QFETCH(QString, valueLine);
    const boost::shared_ptr<BaseProperty> property(make(type));
    property->setValid(false);
    property->setErrorText("never printed");
    QCOMPARE(dumped(*property),
             "Property name: p\nProperty description: about p\n" + valueLine + gRule);
}

void tst_TypedProperties::illegalProperty()
{
    const IllegalProperty property;
    QVERIFY(property.name().isNull());
    QVERIFY(property.description().isNull());
    QVERIFY(property.errorText().isNull());
    QVERIFY(!property.isValid());
    QVERIFY(!property.validator());
    QCOMPARE(property.type(), QString("IllegalProperty"));
    QCOMPARE(dumped(property), QString("IllegaProperty\n"));
    QCOMPARE(StringProperty::getValue(IllegalProperty::ms_illegalProperty, "d"), QString("d"));
    QCOMPARE(dumped(StringListProperty("empty")),
             "Property name: empty\nProperty description: \nProperty value: \n" + gRule);
}

void tst_TypedProperties::validateWithoutValidator()
{
    PropertySet set;
    IntProperty property("p");
    property.setValid(false);
    property.setErrorText("kept");
    QVERIFY(property.validate(set));
    QVERIFY(!property.isValid());
    QCOMPARE(property.errorText(), QString("kept"));
    QVERIFY(IllegalProperty::ms_illegalProperty.validate(set));
    QVERIFY(!IllegalProperty::ms_illegalProperty.isValid());
}

void tst_TypedProperties::derivedClassThroughTheBase()
{
    DoublingProperty property("p", "", 4);
    QCOMPARE(IntProperty::getValue(property, 0), 4);
    IntProperty::setValue(property, 5);
    QCOMPARE(property.variantValue(), QVariant(10));
    QCOMPARE(property.type(), QString("IntProperty"));
}

QTEST_APPLESS_MAIN(tst_TypedProperties)
#include "tst_TypedProperties.moc"
