#include "support/RecordedDestination.h"

#include <Vokit/Settings>

#include <QTemporaryDir>
#include <QtTest>

#include <cstring>

using vo::IInterface;

namespace {

class Gate : public IInterface
{
public:
    using IInterface::getInterface;
    void *getInterface(const char *name) override
    {
        return std::strcmp(name, "app::IGate") == 0 ? &bar : IInterface::getInterface(name);
    }
    int bar = 0;
};

// An interface that stands second in its class: the interface's address is not the object's.
struct Weight
{
    virtual ~Weight() = default;
    int kilos = 0;
};
class HeavyGate : public Weight, public Gate
{
};

} // namespace

class tst_IInterface : public QObject
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void bothOverloadsOfAnOverride();
    void ownAddress();
    void classTree();
};

void tst_IInterface::names_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("answered");
    const auto row = [](const char *name, bool answered) {
        QTest::addRow("'%s'", name) << QByteArray(name) << answered;
    };
    row("vo::IInterface", true);
    row("vo::IPersistDestination", false);
    row("vo::Settings", false);
    row("IInterface", false);
    row("vo::IInterface ", false);
    row("vo::IInterfac", false);
    row("vo::iinterface", false);
    row("", false);
}

void tst_IInterface::names()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, answered);
    QTemporaryDir dir;
    vo::Settings settings(dir.filePath("s.ini"), QSettings::IniFormat);
    test::RecordedDestination destination;
    IInterface plain;
    for (IInterface *object :
         {static_cast<IInterface *>(&settings), static_cast<IInterface *>(&destination), &plain}) {
        const IInterface *const constObject = object;
        void *const expected = answered ? object : nullptr;
        QCOMPARE(object->getInterface(name.constData()), expected);
        QCOMPARE(constObject->getInterface(name.constData()), static_cast<const void *>(expected));
    }
}

void tst_IInterface::bothOverloadsOfAnOverride()
{
    Gate gate;
    const Gate &constGate = gate;
    QCOMPARE(gate.getInterface("app::IGate"), static_cast<void *>(&gate.bar));
    QCOMPARE(constGate.getInterface("app::IGate"), static_cast<const void *>(&gate.bar));
    QCOMPARE(constGate.getInterface("vo::IInterface"), static_cast<const void *>(&gate));
    QVERIFY(!constGate.getInterface("vo::Gate"));
}

void tst_IInterface::ownAddress()
{
    HeavyGate gate;
    IInterface *const asInterface = &gate;
    QVERIFY(static_cast<void *>(asInterface) != static_cast<void *>(&gate));
    QCOMPARE(gate.getInterface("vo::IInterface"), static_cast<void *>(asInterface));
}

void tst_IInterface::classTree()
{
    QVERIFY((std::is_base_of_v<IInterface, vo::IPersistDestination>));
    QVERIFY((std::is_base_of_v<vo::IPersistDestination, vo::Settings>));
    QVERIFY(std::is_abstract_v<vo::IPersistDestination>);
    QVERIFY(std::has_virtual_destructor_v<IInterface>);
    QVERIFY(!std::is_copy_constructible_v<vo::Settings>); // two owners of one store
}

QTEST_GUILESS_MAIN(tst_IInterface)
#include "tst_IInterface.moc"
