#include "support/Sets.h"

#include <Vokit/DefaultValidators>
#include <Vokit/IllegalProperty>
#include <Vokit/UnexpectedTypeException>

#include <QTranslator>
#include <QtTest>

#include <limits>

using namespace vogen;
using test::setOf;

namespace {

const QString gOutOfRange = QStringLiteral("Value out of range.");

using Shared = boost::shared_ptr<PropertyValidator>;

// Answers for one context, as a catalogue would.
class OneContext : public QTranslator
{
public:
    explicit OneContext(const QByteArray &context)
        : m_context(context)
    {}
    QString translate(const char *context, const char *source, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return context == m_context ? QString("translated: %1").arg(source) : QString();
    }
    bool isEmpty() const override { return false; }

private:
    QByteArray m_context;
};

} // namespace

Q_DECLARE_METATYPE(boost::shared_ptr<BaseProperty>)

class tst_DefaultValidators : public QObject
{
    Q_OBJECT

private slots:
    void ranges_data();
    void ranges();
    void aGoodValueClearsTheVerdict();
    void otherClassesThrow();
    void aThrowEndsTheWalkOfTheSet();
    void illegalProperty();
    void noMetaObjectOfTheirOwn();
    void translationContext();
};

void tst_DefaultValidators::ranges_data()
{
    QTest::addColumn<boost::shared_ptr<BaseProperty>>("property");
    QTest::addColumn<bool>("accepted");
    const auto row = [](const char *name, BaseProperty *property, bool accepted) {
        QTest::newRow(name) << boost::shared_ptr<BaseProperty>(property) << accepted;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();

    const Shared ints(new DefaultIntValidator(0, 10));
    row("int: the smallest", new IntProperty("p", "", 0, ints), true);
    row("int: the greatest", new IntProperty("p", "", 10, ints), true);
    row("int: below", new IntProperty("p", "", -1, ints), false);
    row("int: above", new IntProperty("p", "", 11, ints), false);

    const Shared wrongWay(new DefaultUIntValidator(5, 2));
    row("uint, bounds the wrong way: below both", new UIntProperty("p", "", 1, wrongWay), false);
    row("uint, bounds the wrong way: between", new UIntProperty("p", "", 3, wrongWay), false);
    row("uint, bounds the wrong way: above both", new UIntProperty("p", "", 6, wrongWay), false);
    const Shared uints(new DefaultUIntValidator(1, 4000000000u));
    row("uint: compared without a sign", new UIntProperty("p", "", 4000000000u, uints), true);
    row("uint: above", new UIntProperty("p", "", 4000000001u, uints), false);
    row("uint: below", new UIntProperty("p", "", 0, uints), false);

    const Shared u64s(new DefaultU64Validator(1, 18446744073709551614ULL));
    row("U64: the greatest", new U64Property("p", "", 18446744073709551614ULL, u64s), true);
    row("U64: above", new U64Property("p", "", 18446744073709551615ULL, u64s), false);

    const Shared floats(new DefaultFloatValidator(0.5f, 1.5f));
    row("float: the smallest", new FloatProperty("p", "", 0.5f, floats), true);
    row("float: above", new FloatProperty("p", "", 1.6f, floats), false);
    row("float: NaN", new FloatProperty("p", "", static_cast<float>(nan), floats), false);

    const Shared doubles(new DefaultDoubleValidator(0.0, 1.0));
    row("double: the greatest", new DoubleProperty("p", "", 1.0, doubles), true);
    row("double: minus zero is zero", new DoubleProperty("p", "", -0.0, doubles), true);
    row("double: below", new DoubleProperty("p", "", -1e-9, doubles), false);
    row("double: NaN", new DoubleProperty("p", "", nan, doubles), false);
    row("double: NaN as a bound rejects all",
        new DoubleProperty("p", "", 0.5, Shared(new DefaultDoubleValidator(nan, 1.0))), false);
}

void tst_DefaultValidators::ranges()
{
    QFETCH(boost::shared_ptr<BaseProperty>, property);
    QFETCH(bool, accepted);
    PropertySet set;
    property->setValid(!accepted);
    QCOMPARE(property->validate(set), accepted);
    QCOMPARE(property->isValid(), accepted);
    QCOMPARE(property->errorText(), accepted ? QString() : gOutOfRange);
    QCOMPARE(property->errorText().isNull(), accepted);
}

void tst_DefaultValidators::aGoodValueClearsTheVerdict()
{
    PropertySet set = setOf({new IntProperty("p", "", 11, Shared(new DefaultIntValidator(0, 10)))});
    set.validate();
    QVERIFY(!set["p"].isValid());
    QCOMPARE(set["p"].errorText(), gOutOfRange);
    IntProperty::setValue(set["p"], 5);
    QVERIFY(!set["p"].isValid()); // until asked again
    set.validate();
    QVERIFY(set["p"].isValid());
    QVERIFY(set["p"].errorText().isNull());
}

void tst_DefaultValidators::otherClassesThrow()
{
    PropertySet set;
    U64Property property("p", "", 5, Shared(new DefaultIntValidator(0, 10)));
    QVERIFY_EXCEPTION_THROWN(property.validate(set), vo::UnexpectedTypeException);
    QVERIFY(property.isValid());
}

void tst_DefaultValidators::aThrowEndsTheWalkOfTheSet()
{
    const Shared ints(new DefaultIntValidator(0, 10));
    PropertySet set = setOf({new IntProperty("a", "", 99, ints), new U64Property("b", "", 5, ints),
                             new IntProperty("c", "", 99, ints)});
    QVERIFY_EXCEPTION_THROWN(set.validate(), vo::UnexpectedTypeException);
    QVERIFY(!set["a"].isValid());
    QVERIFY(set["c"].isValid()); // not reached
}

void tst_DefaultValidators::illegalProperty()
{
    PropertySet set;
    BaseProperty &illegal = IllegalProperty::ms_illegalProperty;
    QVERIFY(DefaultIntValidator(0, 10).validate(set, illegal)); // judged as 0
    QVERIFY(illegal.isValid());
    QVERIFY(!DefaultDoubleValidator(1.0, 2.0).validate(set, illegal));
    QVERIFY(!illegal.isValid());
    QCOMPARE(illegal.errorText(), gOutOfRange);
    illegal.setErrorText(QString());
}

void tst_DefaultValidators::noMetaObjectOfTheirOwn()
{
    const DefaultIntValidator validator(0, 10);
    const QObject &object = validator;
    QCOMPARE(object.metaObject(), &QObject::staticMetaObject);
    QVERIFY(!object.parent());
    QVERIFY((std::is_base_of_v<PropertyValidator, DefaultU64Validator>));
}

void tst_DefaultValidators::translationContext()
{
    PropertySet set;
    IntProperty property("p", "", 11, Shared(new DefaultIntValidator(0, 10)));
    OneContext own("DefaultIntValidator");
    QCoreApplication::installTranslator(&own);
    property.validate(set);
    QCOMPARE(property.errorText(), gOutOfRange); // not looked up there
    QCoreApplication::removeTranslator(&own);

    OneContext qobject("QObject");
    QCoreApplication::installTranslator(&qobject);
    property.validate(set);
    QCOMPARE(property.errorText(), "translated: " + gOutOfRange);
    QCoreApplication::removeTranslator(&qobject);
}

QTEST_GUILESS_MAIN(tst_DefaultValidators)
#include "tst_DefaultValidators.moc"
