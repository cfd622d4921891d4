#include "Doomed.h"

#include <QtTest>

#include <limits>

using namespace test;
using namespace vo;

class tst_FeatureGroup : public QObject
{
    Q_OBJECT

private slots:
    void identifiers_data();
    void identifiers();
    void features();
    void replacedFeatureIsTheCallersAgain();
    void sameFeatureTwice();
    void deletesItsFeatures();
    void classes();
};

void tst_FeatureGroup::identifiers_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("zero") << 0;
    QTest::newRow("some") << 17;
    QTest::newRow("negative: kept, though no row of a matrix") << -1;
    QTest::newRow("greatest") << std::numeric_limits<int>::max();
}

void tst_FeatureGroup::identifiers()
{
    QFETCH(int, id);
    QCOMPARE(UserGroup(id).id(), id);
    QCOMPARE(Feature(id).id(), id);
    const FeatureGroup group(id, "Playback", "Search and play");
    QCOMPARE(group.id(), id);
    QCOMPARE(group.firstText(), QString("Playback"));
    QCOMPARE(group.secondText(), QString("Search and play"));
    QVERIFY(group.features().isEmpty());
    QVERIFY(!group.containsFeature(id));
}

void tst_FeatureGroup::features()
{
    FeatureGroup group(0, QString(), QString());
    auto *const late = new Feature(9);
    auto *const early = new Feature(2);
    group.addFeature(late);
    group.addFeature(early);
    QCOMPARE(group.features(), (QMap<int, Feature *>{{2, early}, {9, late}}));
    QVERIFY(group.containsFeature(2));
    QVERIFY(group.containsFeature(9));
    QVERIFY(!group.containsFeature(3));
    QCOMPARE(group.features().size(), 2); // asking adds nothing
}

void tst_FeatureGroup::replacedFeatureIsTheCallersAgain()
{
    QStringList ends;
    auto *const first = new DoomedFeature(ends, "first", 5);
    {
        FeatureGroup group(0, QString(), QString());
        group.addFeature(first);
        group.addFeature(new DoomedFeature(ends, "second", 5));
        QCOMPARE(group.features().size(), 1);
        QVERIFY(ends.isEmpty());
    }
    QCOMPARE(ends, QStringList("second"));
    delete first;
}

void tst_FeatureGroup::sameFeatureTwice()
{
    QStringList ends;
    {
        FeatureGroup group(0, QString(), QString());
        auto *const feature = new DoomedFeature(ends, "once", 5);
        group.addFeature(feature);
        group.addFeature(feature);
    }
    QCOMPARE(ends, QStringList("once"));
}

void tst_FeatureGroup::deletesItsFeatures()
{
    QStringList ends;
    {
        DoomedFeatureGroup group(ends, "group", 0, "", "");
        group.addFeature(new DoomedFeature(ends, "nine", 9));
        group.addFeature(new DoomedFeature(ends, "two", 2));
    }
    QCOMPARE(ends, QStringList({"group", "two", "nine"}));
}

void tst_FeatureGroup::classes()
{
    QVERIFY(std::has_virtual_destructor_v<UserGroup>);
    QVERIFY(std::has_virtual_destructor_v<Feature>);
    QVERIFY(std::has_virtual_destructor_v<FeatureGroup>);
    QVERIFY(!std::is_copy_constructible_v<FeatureGroup>); // two owners of one feature
    QVERIFY(!std::is_copy_constructible_v<FeatureMatrix>);
}

QTEST_GUILESS_MAIN(tst_FeatureGroup)
#include "tst_FeatureGroup.moc"
