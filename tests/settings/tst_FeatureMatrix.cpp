#include "Doomed.h"
#include "Rights.h"

#include <QtTest>

#include <limits>

using namespace test;
using namespace vo;

/// The table and its questions; what is saved and loaded is in tst_FeatureMatrixPersistence.
class tst_FeatureMatrix : public QObject
{
    Q_OBJECT

private slots:
    void fresh_data();
    void fresh();
    void setAllowed_data();
    void setAllowed();
    void outsideTheBounds_data();
    void outsideTheBounds();
    void lockedCells();
    void groups();
    void isFeatureAllowed_data();
    void isFeatureAllowed();
    void rowOfAGroupIsItsIdentifier();
    void groupOutsideTheBounds();
    void deletesWhatWasAdded();
    void replacedGroupsAreTheCallersAgain();
};

void tst_FeatureMatrix::fresh_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("cells");
    QTest::newRow("3 by 2") << 3 << 2 << "11/11/11";
    QTest::newRow("1 by 1") << 1 << 1 << "1";
    QTest::newRow("no rows") << 0 << 2 << "";
    QTest::newRow("no columns") << 2 << 0 << "/";
    QTest::newRow("nothing") << 0 << 0 << "";
}

void tst_FeatureMatrix::fresh()
{
    QFETCH(int, rows);
    QFETCH(int, columns);
    const FeatureMatrix matrix(rows, columns); // no groups: the bounds alone make the cells
    QCOMPARE(matrix.rows(), rows);
    QCOMPARE(matrix.columns(), columns);
    QTEST(cellsOf(matrix), "cells");
    QVERIFY(!matrix.isModified());
    QVERIFY(matrix.lockedCells().isEmpty());
    QVERIFY(!matrix.containsFeatureGroup(0));
}

void tst_FeatureMatrix::setAllowed_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("allowed");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("modified");
    QTest::newRow("takes a right") << "111/111" << 0 << 1 << false << "101/111" << true;
    QTest::newRow("the last cell") << "111/111" << 1 << 2 << false << "111/110" << true;
    QTest::newRow("what it holds: true") << "111/111" << 0 << 1 << true << "111/111" << false;
}

void tst_FeatureMatrix::setAllowed()
{
    QFETCH(QString, before);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(bool, allowed);
    const auto matrix = rights(before);
    QVERIFY(!matrix->isModified());
    matrix->setAllowed(row, column, allowed);
    QCOMPARE(matrix->isAllowed(row, column), allowed);
    QTEST(cellsOf(*matrix), "after");
    QTEST(matrix->isModified(), "modified");
    matrix->setAllowed(row, column, true);
    QCOMPARE(cellsOf(*matrix), before);
    QTEST(matrix->isModified(), "modified"); // there and back is no way to undo it
}

void tst_FeatureMatrix::outsideTheBounds_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    const int greatest = std::numeric_limits<int>::max();
    const int smallest = std::numeric_limits<int>::min();
    QTest::newRow("row just above") << 2 << 0;
    QTest::newRow("column just above") << 0 << 3;
    QTest::newRow("row below") << -1 << 0;
    QTest::newRow("column below") << 0 << -1;
    QTest::newRow("row far above") << greatest << 0;
    QTest::newRow("column far above") << 1 << greatest;
    QTest::newRow("both far below") << smallest << smallest;
}

void tst_FeatureMatrix::outsideTheBounds()
{
    QFETCH(int, row);
    QFETCH(int, column);
    const auto matrix = rights(2, 3);
    QVERIFY(!matrix->isAllowed(row, column));
    for (const bool allowed : {true, false}) {
        matrix->setAllowed(row, column, allowed);
        QVERIFY(!matrix->isAllowed(row, column));
    }
    QCOMPARE(cellsOf(*matrix), QString("111/111"));
    QVERIFY(!matrix->isModified());
}

void tst_FeatureMatrix::lockedCells()
{
    const auto matrix = rights("11/11");
    matrix->disableAbilityToChange(1, 0);
    matrix->disableAbilityToChange(0, 1);
    matrix->disableAbilityToChange(1, 0);
    matrix->disableAbilityToChange(7, -7); // a note: not looked at
    const QList<QPair<int, int>> noted = {{1, 0}, {0, 1}, {1, 0}, {7, -7}};
    QCOMPARE(matrix->lockedCells(), noted);
    QVERIFY(!matrix->isModified());
    QCOMPARE(cellsOf(*matrix), QString("11/11"));

    matrix->setAllowed(1, 0, false); // nothing here heeds the note
    QVERIFY(!matrix->isAllowed(1, 0));
    QVERIFY(matrix->isModified());
    QCOMPARE(matrix->lockedCells(), noted);
}

void tst_FeatureMatrix::groups()
{
    FeatureMatrix matrix(4, 1);
    matrix.addFeatureGroup(new FeatureGroup(3, "", ""));
    matrix.addUserGroup(new UserGroup(0));
    QVERIFY(matrix.containsFeatureGroup(3));
    QVERIFY(!matrix.containsFeatureGroup(0));
    QVERIFY(!matrix.containsFeatureGroup(-3));
    matrix.addFeatureToGroup(new Feature(50), 3);
    QVERIFY(matrix.isFeatureAllowed(50, 0));
    QVERIFY(!matrix.isModified()); // that is said of cells only
}

void tst_FeatureMatrix::isFeatureAllowed_data()
{
    QTest::addColumn<QString>("cells"); // 3 groups by 2 user groups
    QTest::addColumn<int>("feature");   // 10 in groups 0 and 2; 11 in group 1; 12 in none
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("allowed");
    QTest::newRow("both groups allow it") << "11/11/11" << 10 << 0 << true;
    QTest::newRow("only the first does") << "10/00/00" << 10 << 0 << true;
    QTest::newRow("only the last does") << "01/11/10" << 10 << 0 << true;
    QTest::newRow("neither does, others do") << "01/11/01" << 10 << 0 << false;
    QTest::newRow("another column") << "01/11/01" << 10 << 1 << true;
    QTest::newRow("in one group, allowed") << "00/10/00" << 11 << 0 << true;
    QTest::newRow("in one group, not allowed") << "11/01/11" << 11 << 0 << false;
    QTest::newRow("in no group, all cells allowed") << "11/11/11" << 12 << 0 << false;
    QTest::newRow("a column outside the bounds") << "11/11/11" << 10 << 2 << false;
    QTest::newRow("a column below") << "11/11/11" << 10 << -1 << false;
}

void tst_FeatureMatrix::isFeatureAllowed()
{
    QFETCH(QString, cells);
    QFETCH(int, feature);
    QFETCH(int, column);
    const auto matrix = rights(cells);
    matrix->addFeatureToGroup(new Feature(10), 0);
    matrix->addFeatureToGroup(new Feature(11), 1);
    matrix->addFeatureToGroup(new Feature(10), 2);
    QTEST(matrix->isFeatureAllowed(feature, column), "allowed");
}

void tst_FeatureMatrix::rowOfAGroupIsItsIdentifier()
{
    FeatureMatrix matrix(6, 1); // the one group stands in row 5
    matrix.addUserGroup(new UserGroup(0));
    matrix.addFeatureGroup(new FeatureGroup(5, "", ""));
    matrix.addFeatureToGroup(new Feature(1), 5);
    matrix.setAllowed(0, 0, false);
    QVERIFY(matrix.isFeatureAllowed(1, 0));
    matrix.setAllowed(5, 0, false);
    QVERIFY(!matrix.isFeatureAllowed(1, 0));
}

void tst_FeatureMatrix::groupOutsideTheBounds()
{
    FeatureMatrix matrix(1, 1);
    matrix.addFeatureGroup(new FeatureGroup(1, "", ""));
    matrix.addFeatureGroup(new FeatureGroup(-1, "", ""));
    matrix.addFeatureToGroup(new Feature(7), 1);
    matrix.addFeatureToGroup(new Feature(7), -1);
    QVERIFY(!matrix.isFeatureAllowed(7, 0));
}

void tst_FeatureMatrix::deletesWhatWasAdded()
{
    QStringList ends;
    {
        // More groups than bounds, and fewer: what is released goes by what there is.
        FeatureMatrix matrix(1, 5);
        matrix.addUserGroup(new DoomedUserGroup(ends, "user 1", 1));
        matrix.addUserGroup(new DoomedUserGroup(ends, "user 0", 0));
        matrix.addFeatureGroup(new DoomedFeatureGroup(ends, "group 2", 2, "", ""));
        matrix.addFeatureGroup(new DoomedFeatureGroup(ends, "group 0", 0, "", ""));
        matrix.addFeatureToGroup(new DoomedFeature(ends, "feature 9", 9), 0);
        matrix.addFeatureToGroup(new DoomedFeature(ends, "feature 4", 4), 0);
        matrix.disableAbilityToChange(0, 0);
        QVERIFY(ends.isEmpty());
    }
    QCOMPARE(ends,
             QStringList({"group 0", "feature 4", "feature 9", "group 2", "user 0", "user 1"}));
}

void tst_FeatureMatrix::replacedGroupsAreTheCallersAgain()
{
    QStringList ends;
    auto *const group = new DoomedFeatureGroup(ends, "old group", 0, "", "");
    auto *const user = new DoomedUserGroup(ends, "old user", 0);
    {
        FeatureMatrix matrix(1, 1);
        matrix.addFeatureGroup(group);
        matrix.addUserGroup(user);
        matrix.addFeatureToGroup(new Feature(5), 0);
        matrix.addFeatureGroup(new DoomedFeatureGroup(ends, "new group", 0, "", ""));
        matrix.addUserGroup(new DoomedUserGroup(ends, "new user", 0));
        QVERIFY(!matrix.isFeatureAllowed(5, 0)); // went with the old group
    }
    QCOMPARE(ends, QStringList({"new group", "new user"}));
    delete group;
    delete user;
}

QTEST_GUILESS_MAIN(tst_FeatureMatrix)
#include "tst_FeatureMatrix.moc"
