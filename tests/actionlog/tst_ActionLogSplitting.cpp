#include "LogFixture.h"

#include <QtTest>

using namespace test;
using vo::ActionLog;
using vo::LogEntry;

namespace {

QDateTime noonOf(const QDate &date)
{
    return QDateTime(date, QTime(12, 0));
}

} // namespace

Q_DECLARE_METATYPE(vo::ActionLog::ESplitPolicy)

/// When a log file ends, under which name it is kept, and what becomes of chosen entries.
class tst_ActionLogSplitting : public QObject
{
    Q_OBJECT

private slots:
    void byDate_data();
    void byDate();
    void stepsOfASplit();
    void bySize_data();
    void bySize();
    void bySizeOfAFileNotYetOpen();
    void policyAloneDoesNothing();
    void returnValue_data();
    void returnValue();
    void archiveNamesUpToTheFirstDot();
    void archiveIsACopyByteForByte();
    void dateStaysThatOfTheFirstFile();
    void takenNameStaysWithTheLiveFile_data();
    void takenNameStaysWithTheLiveFile();
    void sizeAsksAgainEachSecond();
    void readOnlyDirectoryNeverSplits();
    void freshFileSplitsInItsTurn();
    void backupEntriesWritesADocument();
    void backupEntriesLeavesAFileAlone();
    void backupEntriesRaises();
    void deleteEntries_data();
    void deleteEntries();
};

void tst_ActionLogSplitting::byDate_data()
{
    QTest::addColumn<ActionLog::ESplitPolicy>("policy");
    QTest::addColumn<QDate>("previous");
    QTest::addColumn<QDate>("current");
    QTest::addColumn<QString>("stamp"); // empty for no split

    const auto row = [](const char *name, ActionLog::ESplitPolicy policy, const char *previous,
                        const char *current, const char *stamp) {
        QTest::newRow(name) << policy << QDate::fromString(previous, Qt::ISODate)
                            << QDate::fromString(current, Qt::ISODate) << QString(stamp);
    };
    row("daily: the next day", ActionLog::SplitDaily, "2026-03-04", "2026-03-05", "2026-10-04");
    row("daily: the same day", ActionLog::SplitDaily, "2026-03-05", "2026-03-05", "");
    row("daily: a week of one digit", ActionLog::SplitDaily, "2026-01-01", "2026-01-02",
        "2026-1-01");
    row("daily: the last day of the year", ActionLog::SplitDaily, "2026-12-30", "2026-12-31",
        "2026-53-30");
    row("daily: not into January", ActionLog::SplitDaily, "2025-12-31", "2026-01-01", "");
    row("daily: not while the number is smaller", ActionLog::SplitDaily, "2025-03-06", "2026-03-05",
        "");
    row("daily: not at the same number of another year", ActionLog::SplitDaily, "2025-03-05",
        "2026-03-05", "");
    row("daily: once the number has passed", ActionLog::SplitDaily, "2025-03-04", "2026-03-05",
        "2025-10-04");
    row("daily: numbers, not dates, are compared", ActionLog::SplitDaily, "2027-01-01",
        "2026-03-05", "2027-53-01");
    row("weekly: the next week", ActionLog::SplitWeekly, "2026-03-01", "2026-03-02", "2026-9");
    row("weekly: two digits", ActionLog::SplitWeekly, "2026-03-08", "2026-03-09", "2026-10");
    row("weekly: the same week", ActionLog::SplitWeekly, "2026-03-02", "2026-03-08", "");
    row("weekly: not into the first week", ActionLog::SplitWeekly, "2025-12-28", "2025-12-29", "");
    row("weekly: from week 1 of the year before", ActionLog::SplitWeekly, "2025-12-31",
        "2026-01-05", "2025-1");
    row("weekly: 1 January in week 53 of the year before", ActionLog::SplitWeekly, "2026-12-27",
        "2027-01-01", "2026-52");
    row("monthly: the next month", ActionLog::SplitMonthly, "2026-02-28", "2026-03-01", "2026-Feb");
    row("monthly: the same month", ActionLog::SplitMonthly, "2026-03-01", "2026-03-31", "");
    row("monthly: the same month of another year", ActionLog::SplitMonthly, "2025-03-01",
        "2026-03-31", "");
    row("monthly: not into January", ActionLog::SplitMonthly, "2025-12-31", "2026-01-01", "");
    row("monthly: resumes in February", ActionLog::SplitMonthly, "2026-01-31", "2026-02-01",
        "2026-Jan");
    for (int value : {0, 3, 5, 6, 7, 9, 15, 16, -1}) {
        QTest::addRow("%d: never", value) << static_cast<ActionLog::ESplitPolicy>(value)
                                          << QDate(2026, 1, 31) << QDate(2026, 3, 5) << QString();
    }
}

void tst_ActionLogSplitting::byDate()
{
    QFETCH(ActionLog::ESplitPolicy, policy);
    QFETCH(QDate, previous);
    QFETCH(QDate, current);
    QFETCH(QString, stamp);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    TestClock::set(noonOf(previous));
    log.log(Remark("old"));
    TestClock::set(noonOf(current));
    log.setSplitPolicy(policy, 1);
    log.log(Remark("new"));
    if (stamp.isEmpty()) {
        QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): old, new"));
        QCOMPARE(entries(log), (QStringList{"old", "new"}));
    } else {
        QStringList disk{"F " + stamp + ".vol = Log(~/F.vol): old", "F.vol = Log(~/F.vol): new"};
        QCOMPARE(fixture.disk(), disk);
        QCOMPARE(entries(log), QStringList("new"));
    }
}

// What an onlooker sees, in order, and what is on the disk meanwhile.
void tst_ActionLogSplitting::stepsOfASplit()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitDaily, 1);
    log.log(Remark("old"));
    log.log(Remark("older"));
    TestClock::advance(24 * 60 * 60);
    QStringList steps;
    const auto step = [&](const QString &name) {
        steps
            << QString("%1: %2; %3").arg(name, entries(log).join(", "), fixture.disk().join(", "));
    };
    connect(&log, &ActionLog::removingLogEntries,
            [&](int a, int b) { step(QString("removing %1 %2").arg(a).arg(b)); });
    connect(&log, &ActionLog::logEntriesRemoved,
            [&](int a, int b) { step(QString("removed %1 %2").arg(a).arg(b)); });
    connect(&log, &ActionLog::addingLogEntries,
            [&](int a, int b) { step(QString("adding %1 %2").arg(a).arg(b)); });
    log.log(Remark("new"));
    const QString archive = "F 2026-10-05.vol = Log(~/F.vol): old, older";
    QCOMPARE(steps,
             (QStringList{"removing 0 2: old, older; " + archive, "removed 0 2: ; " + archive,
                          "adding 0 0: ; " + archive + ", F.vol = Log(~/F.vol): new"}));
}

void tst_ActionLogSplitting::bySize_data()
{
    QTest::addColumn<int>("more"); // than the size of the file with one entry
    QTest::addColumn<bool>("splits");
    QTest::newRow("one byte less than the file") << -1 << true;
    QTest::newRow("the size of the file: not yet greater") << 0 << false;
    QTest::newRow("one byte more") << 1 << false;
    QTest::newRow("0: any content") << INT_MIN << true;
    QTest::newRow("a negative size") << INT_MIN + 1 << true;
}

void tst_ActionLogSplitting::bySize()
{
    QFETCH(int, more);
    QFETCH(bool, splits);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    const int size = LogFixture::contents(fixture.path("F.vol")).size();
    log.setSplitPolicy(ActionLog::SplitBySize, more == INT_MIN       ? 0
                                               : more == INT_MIN + 1 ? -5
                                                                     : size + more);
    TestClock::advance(7);
    log.log(Remark("two"));
    if (splits)
        QCOMPARE(fixture.disk(), (QStringList{"F.vol = Log(~/F.vol): two",
                                              "Voco 2026-03-05 12-00-07.vol = Log(~/F.vol): one"}));
    else
        QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one, two"));
}

void tst_ActionLogSplitting::bySizeOfAFileNotYetOpen()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "whatever it holds");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitBySize, 0);
    log.log(Remark("one"));
    QCOMPARE(fixture.disk(), (QStringList{"F.vol = Log(~/F.vol): one",
                                          "Voco 2026-03-05 12-00-00.vol = whatever it holds"}));
    QCOMPARE(entries(log), QStringList("one"));

    const LogFixture empty;
    empty.write(empty.path("F.vol"), "");
    ActionLog emptyLog(empty.path("F.vol"));
    emptyLog.setSuspended(false);
    emptyLog.setSplitPolicy(ActionLog::SplitBySize, 0);
    emptyLog.log(Remark("one"));
    QCOMPARE(empty.disk(), QStringList("F.vol = Log(~/F.vol): one"));
}

void tst_ActionLogSplitting::policyAloneDoesNothing()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    QCOMPARE(log.splitPolicy(), ActionLog::SplitBySize);
    QCOMPARE(log.splitSize(), 1048576);
    log.setSuspended(false);
    log.log(Remark("one"));
    SignalRecord record(log, fixture);
    log.setSplitPolicy(ActionLog::SplitMonthly, 1);
    QCOMPARE(log.splitPolicy(), ActionLog::SplitMonthly);
    QCOMPARE(log.splitSize(), 1);
    QCOMPARE(record.take(), QStringList());
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one"));
}

void tst_ActionLogSplitting::returnValue_data()
{
    QTest::addColumn<ActionLog::ESplitPolicy>("policy");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<bool>("result");
    QTest::newRow("none, 0") << ActionLog::SplitNone << 0 << false << true;
    QTest::newRow("none, with a size") << ActionLog::SplitNone << 1 << false << true;
    QTest::newRow("by size, not due") << ActionLog::SplitBySize << 1048576 << false << true;
    QTest::newRow("by size, moved") << ActionLog::SplitBySize << 0 << false << true;
    QTest::newRow("by size, not moved") << ActionLog::SplitBySize << 0 << true << false;
    QTest::newRow("daily, moved") << ActionLog::SplitDaily << 0 << false << true;
    QTest::newRow("daily, not moved: true all the same")
        << ActionLog::SplitDaily << 0 << true << true;
}

void tst_ActionLogSplitting::returnValue()
{
    QFETCH(ActionLog::ESplitPolicy, policy);
    QFETCH(int, size);
    QFETCH(bool, taken);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitNone, 0);
    log.log(Remark("one"));
    TestClock::advance(24 * 60 * 60);
    log.log(Remark("two")); // current and previous differ by a day now
    if (taken) {
        fixture.write(fixture.path("Voco 2026-03-06 12-00-00.vol"), "taken");
        fixture.write(fixture.path("F 2026-10-05.vol"), "taken");
    }
    log.setSplitPolicy(policy, size);
    QTEST(log.split(), "result");
}

void tst_ActionLogSplitting::archiveNamesUpToTheFirstDot()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("my.own.log.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitWeekly, 0);
    log.log(Remark("one"));
    TestClock::set(noonOf(QDate(2026, 3, 9)));
    log.log(Remark("two"));
    QCOMPARE(fixture.disk(), (QStringList{"my 2026-10.vol = Log(~/my.own.log.vol): one",
                                          "my.own.log.vol = Log(~/my.own.log.vol): two"}));
}

void tst_ActionLogSplitting::archiveIsACopyByteForByte()
{
    const LogFixture fixture;
    const QByteArray bytes = LogFixture::head("elsewhere") + ">\r\n" +
                             LogFixture::entry("\xc3\xa9&#13;") + "\r\n<!-- \r -->\r\n";
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    log.setSplitPolicy(ActionLog::SplitBySize, 1);
    log.log(Remark("two"));
    QCOMPARE(LogFixture::contents(fixture.path("Voco 2026-03-05 12-00-00.vol")),
             bytes + LogFixture::entry("one"));
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
             LogFixture::head(fixture.path("F.vol")) + '>' + LogFixture::entry("two"));

    ActionLog reader(fixture.path("Voco 2026-03-05 12-00-00.vol"));
    reader.readLog();
    QCOMPARE(entries(reader), (QStringList{QString::fromUtf8("\xc3\xa9\r"), "one"}));
}

void tst_ActionLogSplitting::dateStaysThatOfTheFirstFile()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitDaily, 0);
    log.log(Remark("one"));
    TestClock::advance(24 * 60 * 60);
    log.log(Remark("two"));
    QVERIFY(LogFixture::contents(fixture.path("F.vol"))
                .startsWith(LogFixture::head(fixture.path("F.vol")) +
                            "><Entry ID=\"Rmrk\" "
                            "Time=\"6 Mar 2026 12:00:00\""));
}

void tst_ActionLogSplitting::takenNameStaysWithTheLiveFile_data()
{
    QTest::addColumn<ActionLog::ESplitPolicy>("policy");
    QTest::addColumn<QString>("name");
    QTest::newRow("by date") << ActionLog::SplitDaily << "F 2026-10-05.vol";
    QTest::newRow("by size") << ActionLog::SplitBySize << "Voco 2026-03-06 12-00-00.vol";
}

// No word of it, nothing lost, nothing read twice.
void tst_ActionLogSplitting::takenNameStaysWithTheLiveFile()
{
    QFETCH(ActionLog::ESplitPolicy, policy);
    QFETCH(QString, name);
    const LogFixture fixture;
    fixture.write(fixture.path(name), "taken");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    log.setSplitPolicy(policy, 0);
    TestClock::advance(24 * 60 * 60);
    SignalRecord record(log, fixture);
    log.log(Remark("two"));
    log.log(Remark("three")); // a date policy does not ask again on that day
    QCOMPARE(record.take(),
             (QStringList{"adding(1, 1)", "added(1, 1)", "adding(2, 2)", "added(2, 2)"}));
    QStringList disk{name + " = taken", "F.vol = Log(~/F.vol): one, two, three"};
    disk.sort();
    QCOMPARE(fixture.disk(), disk);
    QCOMPARE(entries(log), (QStringList{"one", "two", "three"}));
}

void tst_ActionLogSplitting::sizeAsksAgainEachSecond()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitBySize, 0);
    for (const char *text : {"one", "two", "three"})
        log.log(Remark(text)); // the third finds the name of this second taken
    TestClock::advance(1);
    log.log(Remark("four"));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = Log(~/F.vol): four",
                          "Voco 2026-03-05 12-00-00.vol = Log(~/F.vol): one",
                          "Voco 2026-03-05 12-00-01.vol = Log(~/F.vol): two, three"}));
    QCOMPARE(entries(log), QStringList("four"));
}

void tst_ActionLogSplitting::readOnlyDirectoryNeverSplits()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), LogFixture::head("F") + '>' + LogFixture::entry("old"));
    QVERIFY(QFile::setPermissions(fixture.path("F.vol"), QFile::Permissions(QFlag(0x6666))));
    QVERIFY(QFile::setPermissions(fixture.path("."), QFile::Permissions(QFlag(0x5555))));
    const QString said = asNobody([&] {
        ActionLog log(fixture.path("F.vol"));
        log.setSuspended(false);
        log.log(Remark("one"));
        log.setSplitPolicy(ActionLog::SplitBySize, 0);
        SignalRecord record(log, fixture);
        log.log(Remark("two"));
        log.log(Remark("three"));
        return (entries(log) + record.take()).join(", ");
    });
    QFile::setPermissions(fixture.path("."), QFile::Permissions(QFlag(0x7755)));
    QCOMPARE(said, QString("old, one, two, three, adding(2, 2), added(2, 2), adding(3, 3), "
                           "added(3, 3)"));
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(F): old, one, two, three"));
}

// The log looks at the file of today, not at what it saw when it was constructed.
void tst_ActionLogSplitting::freshFileSplitsInItsTurn()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("later/F.vol"));
    QVERIFY(!log.fileInfo().exists() && !log.fileInfo().isWritable());
    QDir().mkpath(fixture.path("later"));
    log.setSuspended(false);
    log.log(Remark("one"));
    log.setSplitPolicy(ActionLog::SplitBySize, 0);
    log.log(Remark("two"));
    QCOMPARE(fixture.disk(),
             (QStringList{"later/F.vol = Log(~/later/F.vol): two",
                          "later/Voco 2026-03-05 12-00-00.vol = Log(~/later/F.vol): one"}));
}

void tst_ActionLogSplitting::backupEntriesWritesADocument()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setVersions("7.1", "7.0");
    SignalRecord record(log, fixture);
    const Remark one("one"), two("<two>");
    QList<LogEntry *> list;
    for (const Remark *remark : {&two, &one})
        list << const_cast<Remark *>(remark);
    const QByteArray head = LogFixture::head(""); // no versions either
    QVERIFY(log.backupEntries(list, fixture.path("chosen.xml")));
    QCOMPARE(LogFixture::contents(fixture.path("chosen.xml")),
             head + '>' + LogFixture::entry("&lt;two&gt;") + LogFixture::entry("one") +
                 "</Entries>\n");
    QList<LogEntry *> none;
    QVERIFY(log.backupEntries(none, fixture.path("none.xml")));
    QCOMPARE(LogFixture::contents(fixture.path("none.xml")), head + "/>\n");
    QCOMPARE(record.take(), QStringList());
    QVERIFY(log.entries().isEmpty());
    QCOMPARE(list.size(), 2);

    ActionLog reader(fixture.path("chosen.xml"));
    reader.readLog();
    QCOMPARE(entries(reader), (QStringList{"<two>", "one"}));
}

void tst_ActionLogSplitting::backupEntriesLeavesAFileAlone()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    Remark one("one");
    QList<LogEntry *> list{&one};
    for (const QByteArray &old : {QByteArray("there"), QByteArray()}) {
        fixture.write(fixture.path("chosen.xml"), old);
        QVERIFY(log.backupEntries(list, fixture.path("chosen.xml")));
        QCOMPARE(LogFixture::contents(fixture.path("chosen.xml")), old);
    }
    QVERIFY(log.backupEntries(list, fixture.path("."))); // a directory exists, too
    QCOMPARE(fixture.disk(), QStringList("chosen.xml = "));
}

void tst_ActionLogSplitting::backupEntriesRaises()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    QList<LogEntry *> list;
    const QString name = fixture.path("missing/chosen.xml");
    try {
        log.backupEntries(list, name);
        QFAIL("nothing was raised");
    } catch (const vo::ActionLogFileException &e) {
        QCOMPARE(e.type(), vo::ActionLogFileException::eOpenFailed);
        QCOMPARE(e.file(), name);
        QCOMPARE(e.message(), "Could not open file '" + name + "'");
    }
}

void tst_ActionLogSplitting::deleteEntries_data()
{
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QList<int>>("chosen"); // -1 for an entry of nobody's
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("record");
    const QStringList two{"one", "two"};
    const QStringList one{"one"};
    const QStringList removal{"removing(0, 0)", "removed(0, 0)"};
    QTest::newRow("the only entry goes") << one << QList<int>{0} << QStringList() << removal;
    QTest::newRow("another entry: the only one stays")
        << one << QList<int>{-1} << one << QStringList();
    QTest::newRow("the only entry behind another one")
        << one << QList<int>{-1, 0} << QStringList() << removal;
    QTest::newRow("two of two stay") << two << QList<int>{0, 1} << two << QStringList();
    QTest::newRow("the first of two stays") << two << QList<int>{0} << two << QStringList();
    QTest::newRow("the last of two stays") << two << QList<int>{1} << two << QStringList();
    QTest::newRow("one of three stays") << QStringList{"one", "two", "three"} << QList<int>{2}
                                        << QStringList{"one", "two", "three"} << QStringList();
    QTest::newRow("nothing chosen") << one << QList<int>() << one << QStringList();
}

void tst_ActionLogSplitting::deleteEntries()
{
    QFETCH(QStringList, log);
    QFETCH(QList<int>, chosen);
    const LogFixture fixture;
    ActionLog actionLog(fixture.path("F.vol"));
    for (const QString &text : log)
        actionLog.append(new Remark(text));
    Remark nobodys("one"); // equal in every value: identity counts
    QList<LogEntry *> list;
    for (int index : chosen)
        list << (index < 0 ? &nobodys : actionLog.entries().at(index));
    const QList<LogEntry *> before = list;
    SignalRecord record(actionLog, fixture);
    QVERIFY(actionLog.deleteEntries(list));
    QVERIFY(list == before);
    QTEST(entries(actionLog), "left");
    QTEST(record.take(), "record");
}

QTEST_GUILESS_MAIN(tst_ActionLogSplitting)
#include "tst_ActionLogSplitting.moc"
