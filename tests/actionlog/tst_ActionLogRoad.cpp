#include "LogFixture.h"

#include <Vokit/ActionLogContextSwitchEntry>
#include <Vokit/ILogUserSource>

#include <QtTest>

using namespace test;
using vo::ActionLog;

namespace {

/// A log on F.vol, which exists or not, and what a row does with it.
struct Stage
{
    LogFixture fixture;
    ActionLog log{fixture.path("F.vol")};
    SignalRecord record{log, fixture};

    Stage() { log.setSuspended(false); }
    QString path(const QString &name) const { return fixture.path(name); }
    void remark(const QString &text) { log.log(Remark(text)); }
    void write(const QString &name, const QByteArray &bytes) const
    {
        fixture.write(path(name), bytes);
    }
    /// A log of an earlier process, with remarks.
    QByteArray logFile(const QString &name, const QList<QByteArray> &texts) const
    {
        QByteArray bytes = LogFixture::head(path(name)) + '>';
        for (const QByteArray &text : texts)
            bytes += LogFixture::entry(text);
        return bytes;
    }
    void writeLog(const QString &name, const QList<QByteArray> &texts) const
    {
        write(name, logFile(name, texts));
    }
    /// Sends the log to a file, with nothing written for it.
    void choose(const QString &name)
    {
        log.setSuspended(true);
        log.switchFileHandle(path(name));
        log.setSuspended(false);
        record.take();
    }
    /// Makes the name of a file that is moved aside now a taken one.
    void takeName(const QString &name) const { write(name, "taken"); }
};

using Operation = std::function<void(Stage &)>;

} // namespace

Q_DECLARE_METATYPE(Operation)

/// What a log does to its file, to other files and to its list, whatever befalls the file.
class tst_ActionLogRoad : public QObject
{
    Q_OBJECT

private slots:
    void outcomes_data();
    void outcomes();
    void bytesOfANewFile();
    void instanceMakesItsDirectoryAlone();
    void suspendedTouchesNothing();
    void stampsTheCallersEntry();
    void firstEntryNeverSplitsByDate();
    void bytesOfADamagedFileSurvive();
    void writesBehindAFileThatStays_data();
    void writesBehindAFileThatStays();
    void readOnlyFile_data();
    void readOnlyFile();
    void readOnlyDirectory();
    void namesOfMovedFilesTellTheTime();
};

void tst_ActionLogRoad::outcomes_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QStringList>("disk");
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QStringList>("record");

    const auto row = [](const char *name, Operation operation, QStringList disk, QStringList list,
                        QStringList record) {
        QTest::newRow(name) << operation << disk << list << record;
    };
    const QStringList first{"adding(0, 0)", "added(0, 0)"};
    const QStringList second{"adding(1, 1)", "added(1, 1)"};
    const QStringList third{"adding(2, 2)", "added(2, 2)"};

    row("construction touches nothing", [](Stage &) {}, {}, {}, {});
    row("activate makes the file with its header", [](Stage &s) { s.log.activate(); },
        {"F.vol = Open(~/F.vol)"}, {}, {});
    row("activate twice makes one header",
        [](Stage &s) {
            s.log.activate();
            s.log.activate();
        },
        {"F.vol = Open(~/F.vol)"}, {}, {});
    row(
        "activate reads what is there",
        [](Stage &s) {
            s.writeLog("F.vol", {"old"});
            s.log.activate();
        },
        {"F.vol = Log(~/F.vol): old"}, {"old"}, first);
    row(
        "the first entry makes the file", [](Stage &s) { s.remark("one"); },
        {"F.vol = Log(~/F.vol): one"}, {"one"}, first);
    row(
        "the first entry behind activate",
        [](Stage &s) {
            s.log.activate();
            s.remark("one");
        },
        {"F.vol = Log(~/F.vol): one"}, {"one"}, first);
    row(
        "the first entry in an empty file",
        [](Stage &s) {
            s.write("F.vol", "");
            s.remark("one");
        },
        {"F.vol = Log(~/F.vol): one"}, {"one"}, first);
    row(
        "an open file gets one longer",
        [](Stage &s) {
            s.remark("one");
            s.remark("two");
        },
        {"F.vol = Log(~/F.vol): one, two"}, {"one", "two"}, first + second);
    row(
        "a closed file with content is read and gets one longer",
        [](Stage &s) {
            s.writeLog("F.vol", {"old", "older"});
            s.remark("new");
        },
        {"F.vol = Log(~/F.vol): old, older, new"}, {"old", "older", "new"}, first + second + third);
    row(
        "a split leaves a new file with the entry",
        [](Stage &s) {
            s.log.setSplitPolicy(ActionLog::SplitBySize, 100);
            s.remark("one");
            s.remark("two");
        },
        {"F.vol = Log(~/F.vol): two", "Voco 2026-03-05 12-00-00.vol = Log(~/F.vol): one"}, {"two"},
        first + QStringList{"removing(0, 1)", "removed(0, 1)"} + first);
    row(
        "close writes nothing",
        [](Stage &s) {
            s.remark("one");
            s.log.close();
        },
        {"F.vol = Log(~/F.vol): one"}, {"one"}, first);

    const QString xml = "errorXml(Opening and ending tag mismatch., 1, %1)";
    const auto damaged = [](Stage &s) {
        s.write("F.vol", s.logFile("F.vol", {"old"}) + "</Wrong>");
    };
    // The column is counted from the directory's name on.
    row(
        "bad XML is moved away with what was read in the list",
        [=](Stage &s) {
            damaged(s);
            s.remark("lost");
        },
        {"F 2026-03-05 12-00-00.vol.corrupt = Log(~/F.vol): old + </Wrong>"}, {"old", "XmlP"},
        first + second + QStringList{xml});
    row(
        "behind bad XML the next entry starts a file",
        [=](Stage &s) {
            damaged(s);
            s.remark("lost");
            s.remark("next");
        },
        {"F 2026-03-05 12-00-00.vol.corrupt = Log(~/F.vol): old + </Wrong>",
         "F.vol = Log(~/F.vol): next"},
        {"old", "XmlP", "next"}, first + second + QStringList{xml} + third);
    row(
        "bad XML with the name taken: the file stays",
        [=](Stage &s) {
            damaged(s);
            s.takeName("F 2026-03-05 12-00-00.vol.corrupt");
            s.remark("lost");
        },
        {"F 2026-03-05 12-00-00.vol.corrupt = taken", "F.vol = Log(~/F.vol): old + </Wrong>"},
        {"old", "XmlP"},
        first + second + QStringList{xml, "errorFile(~/F 2026-03-05 12-00-00.vol.corrupt, 3)"});
    row(
        "no log at all is bad XML too",
        [](Stage &s) {
            s.write("F.vol", "garbage");
            s.remark("lost");
        },
        {"F 2026-03-05 12-00-00.vol.corrupt = garbage"}, {"XmlP"},
        first + QStringList{"errorXml(Start tag expected., 1, 1)"});

    const QStringList switched{"switched(Voco.vol)"};
    row(
        "a chosen file below a file: the default takes over, and is made",
        [](Stage &s) {
            s.fixture.makeDefaultDirectory();
            s.write("plain", "x");
            s.choose("plain/F.vol");
            s.remark("lost");
        },
        {"plain = x", "state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog"},
        {"ALog"}, first + switched + QStringList{"errorFile(~/plain/F.vol, 1)"});
    row(
        "a chosen file in a missing directory, neither file there",
        [](Stage &s) {
            s.fixture.makeDefaultDirectory();
            s.choose("missing/F.vol");
            s.remark("lost");
            s.remark("next");
        },
        {"state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog, next"},
        {"ALog", "next"}, first + switched + QStringList{"errorFile(~/missing/F.vol, 1)"} + second);
    row(
        "a chosen file that is a directory: the default is read and gets one longer",
        [](Stage &s) {
            s.fixture.makeDefaultDirectory();
            s.writeLog("state/Maker/Voco/Voco.vol", {"old"});
            QDir().mkpath(s.path("chosen"));
            s.choose("chosen");
            s.remark("lost");
        },
        {"state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): old, ALog"},
        {"old", "ALog"}, first + second + switched + QStringList{"errorFile(~/chosen, 1)"});
    row(
        "the list of the chosen file goes when it can't be used any more",
        [](Stage &s) {
            s.fixture.makeDefaultDirectory();
            s.remark("one");
            s.log.close();
            QFile::remove(s.path("F.vol"));
            QDir().mkpath(s.path("F.vol"));
            s.record.take();
            s.remark("lost");
        },
        {"state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog"}, {"ALog"},
        QStringList{"removing(0, 1)", "removed(0, 1)"} + first + switched +
            QStringList{"errorFile(~/F.vol, 1)"});
    row(
        "the default can't be opened: nothing is written, each time",
        [](Stage &s) {
            s.choose("state/Maker/Voco/Voco.vol"); // its directory is missing
            s.log.append(new Remark("kept"));
            s.record.take();
            s.remark("lost");
            s.remark("lost too");
        },
        {}, {"kept"},
        QStringList{"errorFile(~/state/Maker/Voco/Voco.vol, 1)",
                    "errorFile(~/state/Maker/Voco/Voco.vol, 1)"});
    row(
        "a default that is a directory stays as it was",
        [](Stage &s) {
            QDir().mkpath(s.fixture.defaultFile());
            s.choose("state/Maker/Voco/Voco.vol");
            s.remark("lost");
        },
        {}, {}, QStringList{"errorFile(~/state/Maker/Voco/Voco.vol, 1)"});
    row(
        "logging starts when the default can be opened again",
        [](Stage &s) {
            s.choose("state/Maker/Voco/Voco.vol");
            s.remark("lost");
            s.fixture.makeDefaultDirectory();
            s.remark("next");
        },
        {"state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): next"}, {"next"},
        QStringList{"errorFile(~/state/Maker/Voco/Voco.vol, 1)"} + first);
    row(
        "neither the chosen file nor the default can be opened",
        [](Stage &s) {
            s.choose("missing/F.vol");
            s.remark("lost");
        },
        {}, {},
        QStringList{"errorFile(~/state/Maker/Voco/Voco.vol, 1)"} + switched +
            QStringList{"errorFile(~/missing/F.vol, 1)"});
    row(
        "a chosen link to the default is the default",
        [](Stage &s) {
            QDir().mkpath(s.fixture.defaultFile());
            QFile::link(s.fixture.defaultFile(), s.path("link.vol"));
            s.choose("link.vol");
            s.remark("lost");
        },
        {}, {}, QStringList{"errorFile(~/link.vol, 1)"});
}

void tst_ActionLogRoad::outcomes()
{
    QFETCH(Operation, operation);
    Stage stage;
    operation(stage);
    QTEST(stage.fixture.disk(), "disk");
    QTEST(entries(stage.log), "list");
    QFETCH(QStringList, record);
    // Where the damage lies depends on the length of the directory's name.
    const QByteArray damaged = stage.logFile("F.vol", {"old"}) + "</Wrong>";
    record.replaceInStrings("%1", QString::number(damaged.size()));
    QCOMPARE(stage.record.take(), record);
}

void tst_ActionLogRoad::bytesOfANewFile()
{
    Stage stage;
    stage.log.setVersions("7.1", "7.0");
    stage.remark("one");
    stage.remark("<\"two\">");
    QCOMPARE(LogFixture::contents(stage.path("F.vol")),
             LogFixture::head(stage.path("F.vol")) +
                 " ApplicationVersion=\"7.1\" LanguageVersion=\"7.0\">" + LogFixture::entry("one") +
                 LogFixture::entry("&lt;&quot;two&quot;&gt;"));
}

void tst_ActionLogRoad::instanceMakesItsDirectoryAlone()
{
    const LogFixture fixture;
    QVERIFY(!QFileInfo::exists(fixture.path("state")));
    ActionLog *const log = ActionLog::getInstance();
    QVERIFY(QFileInfo(fixture.path("state/Maker/Voco")).isDir());
    QCOMPARE(fixture.disk(), QStringList());
    QVERIFY(log->entries().isEmpty() && log->isSuspended() && !log->isOpen());
    ActionLog::deleteActionLog();
}

void tst_ActionLogRoad::suspendedTouchesNothing()
{
    Stage stage;
    stage.log.setSuspended(true);
    const Remark entry("one");
    entry.setTime(QDateTime(QDate(2001, 2, 3), QTime(4, 5)));
    entry.setUser("me");
    stage.log.log(entry);
    QCOMPARE(entry.time(), QDateTime(QDate(2001, 2, 3), QTime(4, 5)));
    QCOMPARE(entry.user(), QString("me"));
    QCOMPARE(stage.fixture.disk(), QStringList());
    QCOMPARE(stage.record.take(), QStringList());
}

void tst_ActionLogRoad::stampsTheCallersEntry()
{
    struct Somebody : vo::ILogUserSource
    {
        QString primaryName() const override { return "anna"; }
        QString secondaryName() const override { return QString(); }
    } somebody;
    Stage stage;
    stage.log.setUserSource(&somebody);
    const Remark entry("one");
    entry.setTime(QDateTime(QDate(2001, 2, 3), QTime(4, 5)));
    entry.setUser("me");
    stage.log.log(entry);
    QCOMPARE(entry.time(), QDateTime(QDate(2026, 3, 5), QTime(12, 0)));
    QCOMPARE(entry.user(), QString("anna"));
    QVERIFY(*stage.log.entries().at(0) == entry);
    QVERIFY(stage.log.entries().at(0) != &entry);
    QCOMPARE(LogFixture::contents(stage.path("F.vol")),
             LogFixture::head(stage.path("F.vol")) +
                 "><Entry ID=\"Rmrk\" Time=\"5 Mar 2026 12:00:00\" User=\"anna\" Text=\"one\"/>");
}

void tst_ActionLogRoad::firstEntryNeverSplitsByDate()
{
    Stage stage;
    stage.writeLog("F.vol", {"old"}); // of 5 March
    TestClock::set(QDateTime(QDate(2026, 3, 6), QTime(12, 0)));
    stage.log.setSplitPolicy(ActionLog::SplitDaily, 1);
    stage.remark("one");
    QCOMPARE(stage.fixture.disk(), QStringList("F.vol = Log(~/F.vol): old, one"));
}

void tst_ActionLogRoad::bytesOfADamagedFileSurvive()
{
    Stage stage;
    QByteArray bytes = stage.logFile("F.vol", {"old"}) + "\r\n\xff\xfe";
    bytes.append('\0').append(QByteArray(20000, 'x'));
    stage.write("F.vol", bytes);
    stage.remark("lost");
    QCOMPARE(LogFixture::contents(stage.path("F 2026-03-05 12-00-00.vol.corrupt")), bytes);
    QVERIFY(!QFile::exists(stage.path("F.vol")));
}

void tst_ActionLogRoad::writesBehindAFileThatStays_data()
{
    QTest::addColumn<QByteArray>("damage");
    QTest::addColumn<int>("length");
    QTest::newRow("a short one") << QByteArray("</Wrong>") << 0;
    QTest::newRow("longer than a reader's block") << QByteArray("</Wrong>") << 30000;
    QTest::newRow("a second header") << QByteArray("<?xml version=\"1.0\"?>") << 9000;
    QTest::newRow("a torn entry behind the damage") << QByteArray("</Wrong><Entry ID=") << 0;
}

// A file that can't be moved aside goes on growing at its end.
void tst_ActionLogRoad::writesBehindAFileThatStays()
{
    QFETCH(QByteArray, damage);
    QFETCH(int, length);
    Stage stage;
    const QByteArray bytes =
        stage.logFile("F.vol", {"old"}) + damage + LogFixture::entry(QByteArray(length, 'x'));
    stage.write("F.vol", bytes);
    stage.takeName("F 2026-03-05 12-00-00.vol.corrupt");
    stage.remark("lost");
    QCOMPARE(LogFixture::contents(stage.path("F.vol")), bytes);
    stage.remark("next");
    QCOMPARE(entries(stage.log), (QStringList{"old", "XmlP", "next"}));
    QCOMPARE(LogFixture::contents(stage.path("F.vol")), bytes + LogFixture::entry("next"));
}

void tst_ActionLogRoad::readOnlyFile_data()
{
    QTest::addColumn<bool>("readFirst");
    QTest::newRow("readLog reads it and closes it") << true;
    QTest::newRow("log alone") << false;
}

// A file that a user may read, but not write: the list shows it, and logging goes on elsewhere.
void tst_ActionLogRoad::readOnlyFile()
{
    QFETCH(bool, readFirst);
    Stage stage;
    stage.fixture.makeDefaultDirectory();
    QVERIFY(
        QFile::setPermissions(stage.path("state/Maker/Voco"), QFile::Permissions(QFlag(0x7777))));
    stage.writeLog("F.vol", {"old"});
    stage.choose("F.vol"); // seen while it could be written
    QVERIFY(QFile::setPermissions(stage.path("F.vol"), QFile::ReadOwner | QFile::ReadOther));
    const QString complaint = asNobody([&]() -> QString {
        if (readFirst) {
            stage.log.readLog();
            if (stage.log.isOpen() || entries(stage.log) != QStringList("old"))
                return "readLog: " + entries(stage.log).join(", ");
        }
        stage.remark("lost");
        QStringList expected{"adding(0, 0)", "added(0, 0)"};
        if (readFirst)
            expected +=
                QStringList{"removing(0, 1)", "removed(0, 1)", "adding(0, 0)", "added(0, 0)"};
        expected += QStringList{"switched(Voco.vol)", "errorFile(~/F.vol, 1)"};
        const QStringList record = stage.record.take();
        if (record != expected)
            return record.join(", ");
        return entries(stage.log) == QStringList("ALog") ? QString() : "the list";
    });
    QCOMPARE(complaint, QString());
    QCOMPARE(stage.fixture.disk(),
             (QStringList{"F.vol = Log(~/F.vol): old",
                          "state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog"}));
}

// A file that can't leave its directory: nothing is read twice, and nothing is lost of it.
void tst_ActionLogRoad::readOnlyDirectory()
{
    Stage stage;
    QDir().mkpath(stage.path("fixed"));
    stage.write("fixed/F.vol", stage.logFile("fixed/F.vol", {"old"}) + "</Wrong>");
    QVERIFY(QFile::setPermissions(stage.path("fixed/F.vol"), QFile::Permissions(QFlag(0x6666))));
    QVERIFY(QFile::setPermissions(stage.path("fixed"), QFile::Permissions(QFlag(0x5555))));
    stage.choose("fixed/F.vol");
    const QString complaint = asNobody([&]() -> QString {
        stage.remark("lost");
        stage.remark("next");
        return (entries(stage.log) + stage.record.take()).join(", ");
    });
    QFile::setPermissions(stage.path("fixed"), QFile::Permissions(QFlag(0x7755)));
    const int column = (stage.logFile("fixed/F.vol", {"old"}) + "</Wrong>").size();
    QCOMPARE(complaint,
             QString("old, XmlP, next, adding(0, 0), added(0, 0), adding(1, 1), added(1, 1), "
                     "errorXml(Opening and ending tag mismatch., 1, %1), "
                     "errorFile(~/fixed/F 2026-03-05 12-00-00.vol.corrupt, 3), "
                     "adding(2, 2), added(2, 2)")
                 .arg(column));
    QCOMPARE(stage.fixture.disk(), QStringList("fixed/F.vol = Log(~/fixed/F.vol): old + </Wrong>" +
                                               QString::fromUtf8(LogFixture::entry("next"))));
}

void tst_ActionLogRoad::namesOfMovedFilesTellTheTime()
{
    Stage stage;
    stage.choose("a.b.vol"); // the name up to its first dot
    for (int seconds : {0, 1}) {
        TestClock::advance(seconds);
        stage.write("a.b.vol", "garbage");
        stage.remark("lost");
    }
    QCOMPARE(stage.fixture.disk(), (QStringList{"a 2026-03-05 12-00-00.vol.corrupt = garbage",
                                                "a 2026-03-05 12-00-01.vol.corrupt = garbage"}));
}

QTEST_GUILESS_MAIN(tst_ActionLogRoad)
#include "tst_ActionLogRoad.moc"
