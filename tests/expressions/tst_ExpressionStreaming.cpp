#include "support/Sets.h"
#include "support/Trees.h"

#include <Vokit/ExpressionOperators>

#include <QTimeZone>
#include <QtTest>

#include <sys/resource.h>

using namespace vogen;
using namespace test;

Q_DECLARE_METATYPE(vogen::ExpressionHandle)

namespace {

QByteArray envelope(const char *key)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << key;
    return bytes;
}

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

// The record of ValueExpression for a name of one letter, alias empty.
QByteArray reference(const char *letter)
{
    return envelope("N5vogen15ValueExpressionE") +
           hex("00000002"
               "00000002"
               "00") +
           letter + hex("00000000");
}

QByteArray constant(const char *placeholder, const char *variant)
{
    return envelope("N5vogen15ConstExpressionE") + hex("00000001") + hex(placeholder) +
           hex(variant);
}

const char *const gFive = "00000002"
                          "00"
                          "00000005"; // QVariant of the int 5

// Lets no request for more than a gigabyte succeed. The sanitizers need all addresses, and refuse
// such a request in their own way.
class LimitedMemory
{
public:
    LimitedMemory()
    {
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
        ::getrlimit(RLIMIT_AS, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = 1U << 30;
        m_limited = ::setrlimit(RLIMIT_AS, &limit) == 0;
#endif
    }
    ~LimitedMemory()
    {
        if (m_limited)
            ::setrlimit(RLIMIT_AS, &m_before);
    }
    LimitedMemory(const LimitedMemory &) = delete;
    LimitedMemory &operator=(const LimitedMemory &) = delete;

    explicit operator bool() const
    {
        return m_limited;
    }

private:
    rlimit m_before{};
    bool m_limited = false;
};

} // namespace

class tst_ExpressionStreaming : public QObject
{
    Q_OBJECT

private slots:
    void registry();
    void registration();
    void bytes_data();
    void bytes();
    void roundTrip_data();
    void roundTrip();
    void unknownKey();
    void unknownKeyWithin();
    void endsEarly_data();
    void endsEarly();
    void counts_data();
    void counts();
    void moreThanAreFilledUp();
    void countsWithinCounts();
    void lengthsThatLie();
    void zonesNobodyKnows();
};

void tst_ExpressionStreaming::registry()
{
    const QStringList keys{
        "N5vogen10ComparatorE",         "N5vogen11NotOperatorE",     "N5vogen13UnaryOperatorE",
        "N5vogen14CastExpressionE",     "N5vogen14ExpressionListE",  "N5vogen15BooleanOperatorE",
        "N5vogen15ConstExpressionE",    "N5vogen15NumericOperatorE", "N5vogen15ValueExpressionE",
        "N5vogen18FunctionExpressionE", "N5vogen9ElementOfE"};
    for (const QString &key : keys) {
        QVERIFY2(Expression::expressionClassMap().contains(key), qPrintable(key));
        const ExpressionHandle &prototype = Expression::expressionClassMap()[key];
        QCOMPARE(QString(typeid(*prototype.constData()).name()), key);
    }
}

void tst_ExpressionStreaming::registration()
{
    const ExpressionHandle probe = Probe(1);
    QVERIFY(Expression::registerExpressionClass(probe));
    const QString key = typeid(Probe).name();
    const ExpressionHandle registered = Expression::expressionClassMap().value(key);
    QVERIFY(registered.constData() != probe.constData()); // a node of the registry's own
    QVERIFY(!Expression::registerExpressionClass(Probe(2)));
    QCOMPARE(Expression::expressionClassMap().value(key).constData(), registered.constData());
    QCOMPARE(evaluated(Expression::expressionClassMap().value(key)), QString("int:1 const"));
    QVERIFY(readBack(written(Probe(5)))->evaluate(PropertySet(), nullptr) == QVariant(1));
    Expression::expressionClassMap().remove(key);
}

void tst_ExpressionStreaming::bytes_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    QTest::addColumn<QByteArray>("expected");
    const IntProperty a("a");
    QTest::newRow("a reference") << ref("a")
                                 << hex("0000001a") + QByteArray("N5vogen15ValueExpressionE", 26) +
                                        hex("00000002"
                                            "00000002"
                                            "0061"
                                            "00000000");
    QTest::newRow("a null alias is written as such")
        << ExpressionHandle(ValueExpression("a", QString()))
        << envelope("N5vogen15ValueExpressionE") + hex("00000002"
                                                       "00000002"
                                                       "0061"
                                                       "ffffffff");
    QTest::newRow("a bindable constant") << bound(5) << constant("01", gFive);
    QTest::newRow("a literal constant") << literal(5) << constant("00", gFive);
    QTest::newRow("the empty expression") << ExpressionHandle()
                                          << envelope("N5vogen14ExpressionListE") + hex("00000001"
                                                                                        "00000000");
    QTest::newRow("a list") << ExpressionHandle(ref("a") << literal(5))
                            << envelope("N5vogen14ExpressionListE") +
                                   hex("00000001"
                                       "00000002") +
                                   reference("a") + constant("00", gFive);
    QTest::newRow("a comparison") << ExpressionHandle(a < 5)
                                  << hex("00000015") + QByteArray("N5vogen10ComparatorE", 21) +
                                         hex("00000001"
                                             "00000001"
                                             "00000001"
                                             "00000002") +
                                         reference("a") + constant("01", gFive);
    QTest::newRow("an ElementOf") << ExpressionHandle(ElementOf(a).append(QVariant(5)))
                                  << envelope("N5vogen9ElementOfE") +
                                         hex("00000001"
                                             "00000002") +
                                         reference("a") + constant("01", gFive);
    QTest::newRow("an Or") << ExpressionHandle(ref("a") || ref("b"))
                           << envelope("N5vogen15BooleanOperatorE") +
                                  hex("00000001"
                                      "00000001"
                                      "00000001"
                                      "00000002") +
                                  reference("a") + reference("b");
    QTest::newRow("a negation") << ExpressionHandle(!ref("a"))
                                << envelope("N5vogen11NotOperatorE") +
                                       hex("00000001"
                                           "00000001") +
                                       reference("a");
}

void tst_ExpressionStreaming::bytes()
{
    QFETCH(ExpressionHandle, e);
    QFETCH(QByteArray, expected);
    QCOMPARE(written(e).toHex(), expected.toHex());
    QCOMPARE(written(readBack(expected)).toHex(), expected.toHex());
}

void tst_ExpressionStreaming::roundTrip_data()
{
    QTest::addColumn<ExpressionHandle>("e");
    const IntProperty a("a");
    const StringProperty b("b c");
    QTest::newRow("a filter") << ExpressionHandle(
        ((a > 5 && a < 9LL) || ElementOf(b).append(QVariant("x")).append(QVariant())) &&
        !(b == QDate(2026, 3, 5)) && ref("d", "alias") != literal(2.5));
    QTest::newRow("lists in lists") << ExpressionHandle(a << b << bound(QVariantList{1, "a"}));
    QTest::newRow("an empty And") << ExpressionHandle(BooleanOperator(BooleanOperator::And));
    QTest::newRow("operations nobody knows") << ExpressionHandle(
        Comparator(literal(1), static_cast<Comparator::CompOp>(99), literal(2)));
}

void tst_ExpressionStreaming::roundTrip()
{
    QFETCH(ExpressionHandle, e);
    for (const int version : {int(QDataStream::Qt_4_7), int(QDataStream::Qt_5_15)}) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            out.setByteOrder(order);
            Expression::writeExpression(out, e);
            QDataStream in(bytes);
            in.setVersion(version);
            in.setByteOrder(order);
            const ExpressionHandle back = Expression::readExpression(in);
            QVERIFY(in.atEnd());
            QCOMPARE(in.status(), QDataStream::Ok);
            QVERIFY(back.equals(e));
            QCOMPARE(bindable(back), bindable(e));
            QCOMPARE(print(back, Readable), print(e, Readable));
            QCOMPARE(written(back), written(e));
        }
    }
}

void tst_ExpressionStreaming::unknownKey()
{
    QDataStream stream(envelope("N5vogen7UnknownE") + hex("2a"));
    QCOMPARE(Expression::readExpression(stream).constData(), ExpressionList::empty().constData());
    quint8 next = 0;
    stream >> next; // right behind the key
    QCOMPARE(int(next), 0x2a);
    QCOMPARE(stream.status(), QDataStream::Ok);
}

void tst_ExpressionStreaming::unknownKeyWithin()
{
    // The record behind an unknown key isn't skipped: whatever encloses it reads on there.
    const QByteArray list = envelope("N5vogen14ExpressionListE") + hex("00000001"
                                                                       "00000002");
    QCOMPARE(print(readBack(list + envelope("gone") + reference("a")), Sql), QString(",a"));
}

void tst_ExpressionStreaming::endsEarly_data()
{
    QTest::addColumn<int>("cut");
    const int size = written(ref("a") < bound(5)).size();
    for (int cut = 0; cut < size; ++cut)
        QTest::newRow(qPrintable(QString("after %1 bytes").arg(cut))) << cut;
}

void tst_ExpressionStreaming::endsEarly()
{
    QFETCH(int, cut);
    const ExpressionHandle whole = ref("a") < bound(5);
    const ExpressionHandle e = readBack(written(whole).left(cut));
    // Whatever it is, it can be used.
    QVERIFY(!e.equals(whole));
    print(e, Sql);
    e->evaluate(setOf({new IntProperty("a", "", 1)}), nullptr);
    QVERIFY(readBack(written(e)).equals(e));
}

void tst_ExpressionStreaming::counts_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("as many as there are") << hex("00000002") << "a,b";
    QTest::newRow("fewer") << hex("00000001") << "a";
    QTest::newRow("none") << hex("00000000") << "";
    QTest::newRow("negative") << hex("ffffffff") << "";
    QTest::newRow("the least") << hex("80000000") << "";
    QTest::newRow("more: the empty expression for the rest") << hex("00000005") << "a,b,,,";
    QTest::newRow("as many as are filled up") << hex("00000400") << "a,b" + QString(1022, ',');
    QTest::newRow("more than are filled up") << hex("00000401") << "a,b" + QString(1022, ',');
    QTest::newRow("two thousand millions") << hex("7fffffff") << "a,b" + QString(1022, ',');
}

void tst_ExpressionStreaming::counts()
{
    QFETCH(QByteArray, count);
    const ExpressionHandle e = readBack(envelope("N5vogen14ExpressionListE") + hex("00000001") +
                                        count + reference("a") + reference("b"));
    QTEST(print(e, Sql), "text");
    QVERIFY(readBack(written(e)).equals(e));
}

void tst_ExpressionStreaming::moreThanAreFilledUp()
{
    // The bound is for what the data doesn't hold: a long list is read as long as it is.
    ExpressionList list;
    for (int i = 0; i < 3000; ++i)
        list.append(ExpressionHandle());
    QVERIFY(readBack(written(list)).equals(list));
}

void tst_ExpressionStreaming::countsWithinCounts()
{
    // Each of these lists promises two thousand millions of operands and holds one at the most.
    const QByteArray level =
        envelope("N5vogen14ExpressionListE") + hex("00000001") + hex("7fffffff");
    const ExpressionHandle e = readBack(level.repeated(500));
    QCOMPARE(print(e, Sql), QString(500 * 1023, ','));
}

void tst_ExpressionStreaming::lengthsThatLie()
{
    // Qt makes room for as many items as the record of the list promises.
    const QByteArray record = constant("01", "00000009"
                                             "00"
                                             "7fffffff");
    const LimitedMemory limited;
    QDataStream stream(record);
    const ExpressionHandle e = Expression::readExpression(stream);
    QVERIFY(!e->evaluate(PropertySet(), nullptr).toBool());
    if (limited)
        QCOMPARE(bindable(e), QString("? <- NULL"));
}

void tst_ExpressionStreaming::zonesNobodyKnows()
{
    const QDateTime noon(QDate(2026, 3, 5), QTime(12, 0), QTimeZone("Europe/Berlin"));
    const auto writtenElsewhere = [](const QVariant &value) {
        return written(bound(value))
            .replace(QByteArray("\0B\0e\0r\0l\0i\0n", 12), QByteArray("\0N\0o\0w\0h\0e\0r", 12));
    };
    QCOMPARE(readBack(writtenElsewhere(noon))->evaluate(PropertySet(), nullptr),
             QVariant(QDateTime()));
    const QVariant values[] = {noon, QVariantList{1, noon}, QVariantMap{{"at", noon}},
                               QVariantHash{{"at", QVariantList{noon}}}};
    for (const QVariant &value : values) {
        QVERIFY(readBack(written(bound(value))).equals(bound(value)));
        const ExpressionHandle e = readBack(writtenElsewhere(value));
        QVERIFY(!e.equals(bound(value)));
        QVERIFY(readBack(written(e)).equals(e));
    }
}

QTEST_APPLESS_MAIN(tst_ExpressionStreaming)
#include "tst_ExpressionStreaming.moc"
