#include "support/Logged.h"
#include "support/RecordedDestination.h"

#include <Vokit/IInterface>
#include <Vokit/Persistable>

#include <QtTest>

#include <memory>

using test::logged;
using test::RecordedDestination;
using vo::IPersistDestination;
using vo::Log;

namespace {

class OnlyLoads : public vo::Persistable
{
public:
    void load(IPersistDestination *destination) override
    {
        number = destination->value("Number", QVariant()).toInt();
    }
    int number = 0;
};

class OnlySaves : public vo::Persistable
{
public:
    void save(IPersistDestination *destination) override { destination->setValue("Number", 7); }
};

class DoesNeither : public vo::Persistable
{
};

const QString gSaveMissing =
    "Warning: You should overwrite Persistable::save for class PN2vo11PersistableE\n";
const QString gLoadMissing =
    "Warning: You should overwrite Persistable::load for class PN2vo11PersistableE\n";

} // namespace

Q_DECLARE_METATYPE(std::shared_ptr<vo::Persistable>)

class tst_Persistable : public QObject
{
    Q_OBJECT

private slots:
    void forgotten_data();
    void forgotten();
    void logLevel_data();
    void logLevel();
    void switchedOff();
    void noDestination();
    void classTree();
};

void tst_Persistable::forgotten_data()
{
    QTest::addColumn<std::shared_ptr<vo::Persistable>>("object");
    QTest::addColumn<QString>("saveTells");
    QTest::addColumn<QString>("loadTells");
    QTest::addColumn<QStringList>("calls");
    using Shared = std::shared_ptr<vo::Persistable>;
    QTest::newRow("overrides load only")
        << Shared(new OnlyLoads) << gSaveMissing << QString() << QStringList();
    QTest::newRow("overrides save only")
        << Shared(new OnlySaves) << QString() << gLoadMissing << QStringList("setValue Number");
    QTest::newRow("overrides neither: the same text for another class")
        << Shared(new DoesNeither) << gSaveMissing << gLoadMissing << QStringList();
    QTest::newRow("the base itself")
        << Shared(new vo::Persistable) << gSaveMissing << gLoadMissing << QStringList();
}

void tst_Persistable::forgotten()
{
    QFETCH(std::shared_ptr<vo::Persistable>, object);
    RecordedDestination destination;
    QTEST(logged([&] { object->save(&destination); }), "saveTells");
    QTEST(logged([&] { object->load(&destination); }), "loadTells");
    QTEST(destination.calls, "calls");
}

void tst_Persistable::logLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("written");
    QTest::newRow("debug: below") << int(Log::LevelDebug) << true;
    QTest::newRow("info: below") << int(Log::LevelInfo) << true;
    QTest::newRow("warning: just passes") << int(Log::LevelWarning) << true;
    QTest::newRow("error: above") << int(Log::LevelError) << false;
}

void tst_Persistable::logLevel()
{
    QFETCH(int, level);
    QFETCH(bool, written);
    const auto logLevel = static_cast<Log::ELevel>(level);
    DoesNeither object;
    RecordedDestination destination;
    QCOMPARE(logged([&] { object.save(&destination); }, logLevel),
             written ? gSaveMissing : QString());
    QCOMPARE(logged([&] { object.load(&destination); }, logLevel),
             written ? gLoadMissing : QString());
}

void tst_Persistable::switchedOff()
{
    DoesNeither object;
    RecordedDestination destination;
    QCOMPARE(logged([&] {
                 Log::instance().setStream(Log::LevelWarning, nullptr);
                 object.save(&destination);
                 object.load(&destination);
             }),
             QString());
}

void tst_Persistable::noDestination()
{
    DoesNeither object;
    QCOMPARE(logged([&] { object.save(nullptr); }), gSaveMissing); // ignored, so never looked at
    QCOMPARE(logged([&] { object.load(nullptr); }), gLoadMissing);
}

void tst_Persistable::classTree()
{
    QVERIFY(std::has_virtual_destructor_v<vo::Persistable>);
    QVERIFY((!std::is_base_of_v<vo::IInterface, vo::Persistable>));
    QCOMPARE(sizeof(vo::Persistable), sizeof(void *)); // no fields
}

QTEST_GUILESS_MAIN(tst_Persistable)
#include "tst_Persistable.moc"
