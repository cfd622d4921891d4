#include "Rights.h"
#include "support/Logged.h"
#include "support/RecordedDestination.h"

#include <Vokit/Settings>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace test;
using namespace vo;

namespace {

const QString gIncompatible = "Error: Saved matrix not compatible with current matrix.\n";
const QByteArray gAllOf32("4294967295+");

QString ones(int count)
{
    return QString(count, '1');
}

RecordedDestination destinationWith(const QVariant &rows, const QVariant &columns,
                                    const QVariant &matrix)
{
    RecordedDestination destination;
    destination.values = {{"FeatureMatrix/Rows", rows},
                          {"FeatureMatrix/Columns", columns},
                          {"FeatureMatrix/Matrix", matrix}};
    return destination;
}

} // namespace

class tst_FeatureMatrixPersistence : public QObject
{
    Q_OBJECT

private slots:
    void savedText_data();
    void savedText();
    void savedInOrder();
    void countsAreThoseOfTheGroups_data();
    void countsAreThoseOfTheGroups();
    void savingEndsTheChange();
    void loaded_data();
    void loaded();
    void incompatible_data();
    void incompatible();
    void incompatibleBelowNoLogLevel();
    void groupsLeftOpenByNobody();
    void lockedCellsAreLoaded();
    void roundTrips_data();
    void roundTrips();
    void settingsFile();
};

void tst_FeatureMatrixPersistence::savedText_data()
{
    QTest::addColumn<QString>("cells");
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char *name, const QString &cells, const char *text) {
        QTest::newRow(name) << cells << QByteArray(text);
    };
    row("2 by 3, all", "111/111", "63+");
    row("2 by 3, all but (0, 1)", "101/111", "61+");
    row("the first cell is the lowest bit", "101/001", "37+");
    row("one cell", "1", "1+");
    row("one cell, not allowed", "0", "0+");
    row("none of six", "000/000", "0+");
    row("the 32nd cell alone is the highest bit", QString(31, '0') + '1', "2147483648+");
    row("31 cells", ones(31), "2147483647+");
    row("32 cells: one number only", ones(32), "4294967295+");
    row("32 cells, as 4 by 8", "11111111/11111111/11111111/11111111", "4294967295+");
    row("33 cells: a number for the last", ones(33), "4294967295+1+");
    row("33 cells, the last not allowed", ones(32) + '0', "4294967295+0+");
    row("64 cells: two numbers", ones(31) + '0' + ones(32), "2147483647+4294967295+");
    row("numbers run on over rows", ones(20) + '/' + ones(20), "4294967295+255+");
}

void tst_FeatureMatrixPersistence::savedText()
{
    QFETCH(QString, cells);
    const auto matrix = rights(cells);
    RecordedDestination destination;
    matrix->save(&destination);
    const QVariant text = destination.values.value("FeatureMatrix/Matrix");
    QCOMPARE(text.type(), QVariant::ByteArray);
    QTEST(text.toByteArray(), "text");
    QCOMPARE(cellsOf(*matrix), cells);
}

void tst_FeatureMatrixPersistence::savedInOrder()
{
    RecordedDestination destination;
    destination.beginGroup("Rights"); // the caller's group stays the outer one
    rights("101/001")->save(&destination);
    QCOMPARE(
        destination.calls,
        QStringList({"beginGroup Rights", "beginGroup FeatureMatrix",
                     "setValue Rights/FeatureMatrix/Rows", "setValue Rights/FeatureMatrix/Columns",
                     "setValue Rights/FeatureMatrix/Matrix", "endGroup"})); // and no sync
    QCOMPARE(destination.values,
             (QMap<QString, QVariant>{{"Rights/FeatureMatrix/Rows", 2},
                                      {"Rights/FeatureMatrix/Columns", 3},
                                      {"Rights/FeatureMatrix/Matrix", QByteArray("37+")}}));
    QCOMPARE(destination.values["Rights/FeatureMatrix/Rows"].type(), QVariant::Int);
    QCOMPARE(destination.values["Rights/FeatureMatrix/Columns"].type(), QVariant::Int);
}

void tst_FeatureMatrixPersistence::countsAreThoseOfTheGroups_data()
{
    QTest::addColumn<QList<int>>("featureGroups"); // bounds are always 3 by 2
    QTest::addColumn<QList<int>>("userGroups");
    QTest::addColumn<QByteArray>("text");
    using Ids = QList<int>;
    QTest::newRow("no groups") << Ids() << Ids() << QByteArray();
    QTest::newRow("no user groups") << Ids{0, 1, 2} << Ids() << QByteArray();
    QTest::newRow("no feature groups") << Ids() << Ids{0, 1} << QByteArray();
    QTest::newRow("fewer than the bounds") << Ids{0, 1} << Ids{0} << QByteArray("1+");
    QTest::newRow("rows are counted from 0, whatever the identifiers")
        << Ids{1, 2} << Ids{1} << QByteArray("1+");
    QTest::newRow("more: cells outside the bounds are not allowed")
        << Ids{0, 1, 2, 3} << Ids{0, 1, 2} << QByteArray("209+");
}

void tst_FeatureMatrixPersistence::countsAreThoseOfTheGroups()
{
    QFETCH(QList<int>, featureGroups);
    QFETCH(QList<int>, userGroups);
    FeatureMatrix matrix(3, 2);
    for (int id : featureGroups)
        matrix.addFeatureGroup(new FeatureGroup(id, "", ""));
    for (int id : userGroups)
        matrix.addUserGroup(new UserGroup(id));
    matrix.setAllowed(0, 1, false);
    matrix.setAllowed(1, 0, false);
    RecordedDestination destination;
    matrix.save(&destination);
    const auto &values = destination.values;
    QCOMPARE(values["FeatureMatrix/Rows"], QVariant(featureGroups.size()));
    QCOMPARE(values["FeatureMatrix/Columns"], QVariant(userGroups.size()));
    QTEST(values["FeatureMatrix/Matrix"].toByteArray(), "text");
}

void tst_FeatureMatrixPersistence::savingEndsTheChange()
{
    const auto matrix = rights("11/10");
    QVERIFY(matrix->isModified());
    RecordedDestination destination;
    const FeatureMatrix &constMatrix = *matrix;
    constMatrix.save(&destination);
    QVERIFY(!matrix->isModified());
    matrix->setAllowed(0, 0, false);
    QVERIFY(matrix->isModified());
}

void tst_FeatureMatrixPersistence::loaded_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<bool>("modifiedBefore");
    QTest::addColumn<QVariant>("text");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("modified");
    const auto row = [](const char *name, const QString &before, bool modifiedBefore,
                        const QByteArray &text, const QString &after, bool modified) {
        QTest::newRow(name) << before << modifiedBefore << QVariant(text) << after << modified;
    };
    const QString all = "111/111";
    const QString all32 = ones(32);
    const QString all64 = ones(32) + '/' + ones(32);
    const QString cleared32 = '0' + ones(31);

    row("fits, cells change", all, false, "37+", "101/001", false);
    row("fits, no cell changes", all, false, "63+", all, false);
    row("ends a change", "000/000", true, "63+", all, false);
    row("bits behind the last cell don't count", all, false, "4294967263+", "111/110", false);
    row("more numbers than needed", all, false, "37+5+9+", "101/001", false);
    row("what follows the last '+' doesn't count", all, false, "37+999", "101/001", false);

    row("empty text", "101/111", true, "", "101/111", true);
    row("empty text, not modified", all, false, "", all, false);
    row("no '+'", all, false, "37", all, false);
    row("no number before the '+': 0", all, false, "+", "000/000", false);
    row("no number: 0", all, false, "abc+", "000/000", false);
    row("trailing letters: 0", all, false, "37x+", "000/000", false);
    row("hexadecimal: 0", all, false, "0x3f+", "000/000", false);
    row("negative: 0", all, false, "-1+", "000/000", false);
    row("too large for 32 bits: 0", all, false, "4294967359+", "000/000", false);
    row("a leading zero is decimal all the same", "000/000", true, "063+", all, false);

    row("32 cells: a change stays a change", cleared32, false, gAllOf32, all32, true);
    row("32 cells: no cell changes", all32, false, gAllOf32, all32, false);
    row("32 cells: an earlier change stays, too", all32, true, gAllOf32, all32, true);
    row("32 cells, another number behind them", cleared32, true, gAllOf32 + "0+", all32, false);
    row("32 cells, no '+' behind that", cleared32, true, gAllOf32 + "0", all32, true);
    row("64 cells", '0' + all64.mid(1), false, gAllOf32 + gAllOf32, all64, true);

    row("too short: the rest stays", '0' + ones(31) + "/01" + ones(30), true, gAllOf32,
        all32 + "/01" + ones(30), true);
    row("too short, no cell changes", all64, false, gAllOf32, all64, false);
    row("too short, a cell changes", all64, false, "4294967294+", '0' + all64.mid(1), true);
    row("33 cells", ones(33), false, gAllOf32 + "0+", ones(32) + '0', false);
    row("33 cells, the second number is missing", ones(33), false, "4294967294+0", '0' + ones(32),
        true);

    QTest::newRow("no such key") << all << false << QVariant() << all << false;
    QTest::newRow("as text") << all << false << QVariant("37+") << "101/001" << false;
}

void tst_FeatureMatrixPersistence::loaded()
{
    QFETCH(QString, before);
    QFETCH(bool, modifiedBefore);
    QFETCH(QVariant, text);
    const auto matrix = rights(before);
    RecordedDestination elsewhere;
    matrix->save(&elsewhere); // ends the changes of the set-up
    if (modifiedBefore) {
        const bool first = matrix->isAllowed(0, 0);
        matrix->setAllowed(0, 0, !first);
        matrix->setAllowed(0, 0, first);
    }
    QCOMPARE(matrix->isModified(), modifiedBefore);

    const QStringList rows = before.split('/');
    RecordedDestination destination = destinationWith(rows.size(), rows.at(0).size(), text);
    QCOMPARE(logged([&] { matrix->load(&destination); }), QString());
    QTEST(cellsOf(*matrix), "after");
    QTEST(matrix->isModified(), "modified");
}

void tst_FeatureMatrixPersistence::incompatible_data()
{
    QTest::addColumn<QVariant>("rows");
    QTest::addColumn<QVariant>("columns");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char *name, const QVariant &rows, const QVariant &columns,
                        bool fits) { QTest::newRow(name) << rows << columns << fits; };
    row("fits", 2, 3, true);
    row("as texts, as INI files give them", "2", "3", true);
    row("a row too many", 3, 3, false);
    row("a row too few", 1, 3, false);
    row("a column too many", 2, 4, false);
    row("a column too few", 2, 2, false);
    row("the other way round", 3, 2, false);
    row("nothing saved", QVariant(), QVariant(), false);
    row("no number", "two", 3, false);
    row("negative", -2, 3, false);
}

void tst_FeatureMatrixPersistence::incompatible()
{
    QFETCH(QVariant, rows);
    QFETCH(QVariant, columns);
    QFETCH(bool, fits);
    RecordedDestination destination = destinationWith(rows, columns, QByteArray("0+"));
    const auto matrix = rights("101/111");
    QCOMPARE(logged([&] { matrix->load(&destination); }), fits ? QString() : gIncompatible);
    QCOMPARE(cellsOf(*matrix), QString(fits ? "000/000" : "101/111"));
    QCOMPARE(matrix->isModified(), !fits);

    const auto untouched = rights("111/111");
    logged([&] { untouched->load(&destination); });
    QVERIFY(!untouched->isModified());
}

void tst_FeatureMatrixPersistence::incompatibleBelowNoLogLevel()
{
    RecordedDestination destination;
    for (const auto level : {Log::LevelDebug, Log::LevelWarning, Log::LevelError})
        QCOMPARE(logged([&] { rights(2, 3)->load(&destination); }, level), gIncompatible);
    QCOMPARE(logged([&] {
                 Log::instance().setStream(Log::LevelError, nullptr); // switched off
                 rights(2, 3)->load(&destination);
             }),
             QString());
    QCOMPARE(logged([&] { FeatureMatrix(2, 3).load(&destination); }), QString()); // 0 is 0
}

void tst_FeatureMatrixPersistence::groupsLeftOpenByNobody()
{
    const QStringList both = {"beginGroup FeatureMatrix", "endGroup"};
    for (int rows : {2, 5}) { // one fits, one doesn't
        RecordedDestination destination = destinationWith(rows, 3, QByteArray("37+"));
        logged([&] { rights(2, 3)->load(&destination); });
        QCOMPARE(destination.calls, both);
    }
}

void tst_FeatureMatrixPersistence::lockedCellsAreLoaded()
{
    RecordedDestination destination = destinationWith(2, 3, QByteArray("37+"));
    const auto matrix = rights(2, 3);
    matrix->disableAbilityToChange(0, 1);
    matrix->load(&destination);
    QCOMPARE(cellsOf(*matrix), QString("101/001"));
    QCOMPARE(matrix->lockedCells(), (QList<QPair<int, int>>{{0, 1}}));
}

void tst_FeatureMatrixPersistence::roundTrips_data()
{
    QTest::addColumn<QString>("cells");
    QTest::newRow("one cell") << "0";
    QTest::newRow("6 cells") << "101/001";
    QTest::newRow("31 cells") << QString(31, '0');
    QTest::newRow("32 cells") << '0' + ones(30) + '0';
    QTest::newRow("33 cells") << ones(31) + "00";
    QTest::newRow("3 by 32 cells") << '0' + ones(31) + '/' + ones(31) + "0/" + QString(32, '0');
    QTest::newRow("5 by 13 cells")
        << "1110111011101/0000000000000/1111111111111/0101010101010/1000000000001";
}

void tst_FeatureMatrixPersistence::roundTrips()
{
    QFETCH(QString, cells);
    const auto matrix = rights(cells);
    QTemporaryDir dir;
    const QString file = dir.filePath("rights.ini");
    RecordedDestination memory;
    matrix->save(&memory);
    {
        Settings settings(file, QSettings::IniFormat);
        matrix->save(&settings);
    }
    Settings settings(file, QSettings::IniFormat);
    for (IPersistDestination *source : {static_cast<IPersistDestination *>(&memory),
                                        static_cast<IPersistDestination *>(&settings)}) {
        const auto other = rights(matrix->rows(), matrix->columns());
        QCOMPARE(logged([&] { other->load(source); }), QString());
        QCOMPARE(cellsOf(*other), cells);
    }
}

void tst_FeatureMatrixPersistence::settingsFile()
{
    QTemporaryDir dir;
    const QString name = dir.filePath("rights.ini");
    {
        Settings settings(name, QSettings::IniFormat);
        rights("101/001")->save(&settings);
        FeatureMatrix(3, 2).save(&settings); // in its place: no groups, so nothing
        rights("101/111")->save(&settings);
        QVERIFY(!QFile::exists(name)); // it is not synced here
    }
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray("[FeatureMatrix]\nColumns=3\nMatrix=@ByteArray(61+)\nRows=2\n"));
}

QTEST_GUILESS_MAIN(tst_FeatureMatrixPersistence)
#include "tst_FeatureMatrixPersistence.moc"
