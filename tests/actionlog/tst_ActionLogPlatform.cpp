#include "LogFixture.h"

#include <QtTest>

using namespace test;
using vo::ActionLog;
using vo::ActionLogFileException;
using Hooks = vo::FileEncryptHooks;

namespace {

Hooks &hooks()
{
    return vo::FileEncrypt::hooks;
}

std::function<Hooks::Answer(const QString &)> answering(Hooks::Answer answer)
{
    return [answer](const QString &) { return answer; };
}

/// Answers so for one file, and opens all others.
std::function<Hooks::Answer(const QString &)> answeringFor(const QString &file,
                                                           Hooks::Answer answer)
{
    return [file, answer](const QString &name) { return name == file ? answer : Hooks::Opens; };
}

QByteArray onDisk(QByteArray text, char key)
{
    for (char &c : text)
        c = static_cast<char>(c ^ key);
    return text;
}

QByteArray logOf(const QString &file, const QByteArray &entries)
{
    return LogFixture::head(file) + '>' + entries;
}

} // namespace

/// The log on a client's FileEncrypt: see hooked/Vokit/FileEncrypt.
class tst_ActionLogPlatform : public QObject
{
    Q_OBJECT

private slots:
    void init() { hooks() = Hooks(); }
    void invalidHeaderIsMovedAside();
    void invalidHeaderOfTheDefaultFile();
    void invalidHeaderWithTheNameTaken();
    void invalidHeaderRaises();
    void headerFlagDecidesForEveryFile();
    void otherFailuresGoToTheDefault();
    void logonFailed();
    void logonFailedForTheDefaultFile_data();
    void logonFailedForTheDefaultFile();
    void anyOtherExceptionGetsOut();
    void cipher();
    void cipherAndMovesAside_data();
    void cipherAndMovesAside();
    void cipherAndTornTail();
    void oneWriteForEachEntry();
    void openModes();
    void aMoveThatFailedDoesNotTruncate();
};

void tst_ActionLogPlatform::invalidHeaderIsMovedAside()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    fixture.write(fixture.path("F.b.vol"), "of another version");
    hooks().answer = [](const QString &name) {
        return QFile::exists(name) ? Hooks::HeaderIncompatible : Hooks::Opens;
    };
    ActionLog log(fixture.path("F.b.vol"));
    log.setSuspended(false);
    log.append(new Remark("kept"));
    SignalRecord record(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(record.take(), QStringList("errorFile(~/F.b.vol, 4)"));
    QCOMPARE(fixture.disk(),
             QStringList("F 2026-03-05 12-00-00.vol.invalidHeader = of another version"));
    QCOMPARE(entries(log), QStringList("kept"));
    QVERIFY(!log.isOpen());

    hooks().answer = nullptr;
    log.log(Remark("one"));
    QCOMPARE(record.take(), (QStringList{"adding(1, 1)", "added(1, 1)"}));
    QCOMPARE(fixture.disk(),
             (QStringList{"F 2026-03-05 12-00-00.vol.invalidHeader = of another version",
                          "F.b.vol = Log(~/F.b.vol): one"}));
}

void tst_ActionLogPlatform::invalidHeaderOfTheDefaultFile()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    fixture.write(fixture.defaultFile(), "of another version");
    hooks().answer = answering(Hooks::HeaderIncompatible);
    ActionLog log(fixture.defaultFile());
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(record.take(), QStringList("errorFile(~/state/Maker/Voco/Voco.vol, 4)"));
    QCOMPARE(fixture.disk(), QStringList("state/Maker/Voco/Voco 2026-03-05 12-00-00.vol."
                                         "invalidHeader = of another version"));
}

void tst_ActionLogPlatform::invalidHeaderWithTheNameTaken()
{
    const LogFixture fixture;
    const QStringList disk{"F 2026-03-05 12-00-00.vol.invalidHeader = taken",
                           "F.vol = of another version"};
    fixture.write(fixture.path("F.vol"), "of another version");
    fixture.write(fixture.path("F 2026-03-05 12-00-00.vol.invalidHeader"), "taken");
    hooks().answer = answering(Hooks::HeaderIncompatible);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(record.take(), QStringList("errorFile(~/F 2026-03-05 12-00-00.vol.invalidHeader, 3)"));
    QCOMPARE(fixture.disk(), disk);
    QVERIFY(!log.isOpen());
}

// Only log() moves anything aside.
void tst_ActionLogPlatform::invalidHeaderRaises()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "of another version");
    hooks().answer = answering(Hooks::HeaderIncompatible);
    ActionLog log(fixture.path("F.vol"));
    for (const std::function<void()> &road : {std::function<void()>([&] { log.readLog(); }),
                                              std::function<void()>([&] { log.activate(); })}) {
        try {
            road();
            QFAIL("nothing was raised");
        } catch (const ActionLogFileException &e) {
            QCOMPARE(e.type(), ActionLogFileException::eInvalidHeader);
            QCOMPARE(e.file(), fixture.path("F.vol"));
            QCOMPARE(e.message(),
                     "Action log '" + fixture.path("F.vol") + "' invalid header version.");
        }
    }
    QCOMPARE(fixture.disk(), QStringList("F.vol = of another version"));
}

// That of the log's own file, whichever was to be opened.
void tst_ActionLogPlatform::headerFlagDecidesForEveryFile()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "of another version");
    ActionLog log(fixture.path("F.vol"));
    QFile other(fixture.path("missing/other"));
    const auto typeOf = [&] {
        try {
            log.open(other, QIODevice::ReadWrite);
        } catch (const ActionLogFileException &e) {
            return QString("%1 %2").arg(e.type()).arg(fixture.withoutPath(e.message()));
        }
        return QString();
    };
    QCOMPARE(typeOf(), QString("1 Could not open file '~/missing/other'"));
    hooks().answer = answering(Hooks::HeaderIncompatible);
    QVERIFY_EXCEPTION_THROWN(log.activate(), ActionLogFileException);
    QCOMPARE(typeOf(), QString("4 Action log '~/missing/other' invalid header version."));
    QList<vo::LogEntry *> none;
    QVERIFY_EXCEPTION_THROWN(log.backupEntries(none, other.fileName()), ActionLogFileException);
}

void tst_ActionLogPlatform::otherFailuresGoToTheDefault()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    fixture.write(fixture.path("F.vol"), "content");
    hooks().answer = answeringFor(fixture.path("F.vol"), Hooks::Fails);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(record.take(), (QStringList{"adding(0, 0)", "added(0, 0)", "switched(Voco.vol)",
                                         "errorFile(~/F.vol, 1)"}));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = content",
                          "state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog"}));
}

void tst_ActionLogPlatform::logonFailed()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    fixture.write(fixture.path("F.vol"), "content");
    hooks().answer = [&](const QString &name) {
        if (name == fixture.path("F.vol"))
            throw vo::ActionLogImpersonateException("no", "anna", 1326);
        return Hooks::Opens;
    };
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.append(new Remark("of F"));
    SignalRecord record(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(record.take(),
             (QStringList{"removing(0, 1)", "removed(0, 1)", "adding(0, 0)", "added(0, 0)",
                          "switched(Voco.vol)", "errorLogon(anna, 1326)"}));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = content",
                          "state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/Voco.vol): ALog"}));
    QCOMPARE(entries(log), QStringList("ALog"));
}

void tst_ActionLogPlatform::logonFailedForTheDefaultFile_data()
{
    QTest::addColumn<bool>("newAccount");
    QTest::addColumn<QStringList>("record");
    const QStringList logon{"errorLogon(anna, 5)"};
    QTest::newRow("there is nowhere to go") << false << logon;
    // The new account makes the log move to its own file, once; then it has taken effect.
    QTest::newRow("with a new account")
        << true << logon + QStringList{"switched(Voco.vol)"} + logon;
}

void tst_ActionLogPlatform::logonFailedForTheDefaultFile()
{
    QFETCH(bool, newAccount);
    QFETCH(QStringList, record);
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    hooks().answer = [](const QString &) -> Hooks::Answer {
        throw vo::ActionLogImpersonateException("no", "anna", 5);
    };
    ActionLog log(fixture.defaultFile());
    log.setSuspended(false);
    if (newAccount)
        log.setFileUserPassword("anna", "wrong");
    SignalRecord signalRecord(log, fixture);
    log.log(Remark("lost"));
    QCOMPARE(signalRecord.take(), record);
    log.log(Remark("lost"));
    QCOMPARE(signalRecord.take(), QStringList("errorLogon(anna, 5)"));
    QCOMPARE(fixture.disk(), QStringList());
}

void tst_ActionLogPlatform::anyOtherExceptionGetsOut()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    hooks().answer = [](const QString &) -> Hooks::Answer {
        throw vo::ActionLogException("of no type that log() knows");
    };
    QVERIFY_EXCEPTION_THROWN(log.log(Remark("lost")), vo::ActionLogException);
    QCOMPARE(record.take(), QStringList());
    hooks().answer = nullptr;
    const QScopedPointer<QThread> other(QThread::create([&] { log.log(Remark("one")); }));
    other->start();
    QVERIFY(other->wait(30000));
    QCOMPARE(entries(log), QStringList("one"));
}

void tst_ActionLogPlatform::cipher()
{
    hooks().key = 0x5A;
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    {
        ActionLog log(file);
        log.activate();
        log.setSuspended(false);
        log.log(Remark("one"));
    }
    QCOMPARE(LogFixture::contents(file), onDisk(logOf(file, LogFixture::entry("one")), 0x5A));
    ActionLog log(file);
    log.setSuspended(false);
    log.log(Remark("two"));
    QCOMPARE(entries(log), (QStringList{"one", "two"}));
    QCOMPARE(LogFixture::contents(file),
             onDisk(logOf(file, LogFixture::entry("one") + LogFixture::entry("two")), 0x5A));
}

void tst_ActionLogPlatform::cipherAndMovesAside_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<QString>("name");
    QTest::newRow("a split") << QByteArray() << "Voco 2026-03-05 12-00-00.vol";
    QTest::newRow("a damaged file")
        << QByteArray("</Wrong>\r\n") << "F 2026-03-05 12-00-00.vol.corrupt";
}

// The bytes on the disk are kept, and not the text that they stand for.
void tst_ActionLogPlatform::cipherAndMovesAside()
{
    QFETCH(QByteArray, tail);
    QFETCH(QString, name);
    hooks().key = 0x5A;
    const LogFixture fixture;
    const QByteArray bytes = onDisk(
        logOf("F", LogFixture::entry(QByteArray(20000, 'x')) + LogFixture::entry("old")) + tail,
        0x5A);
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    if (tail.isEmpty()) {
        log.readLog(); // an open file
        log.setSplitPolicy(ActionLog::SplitBySize, 1);
    }
    log.log(Remark("one"));
    QCOMPARE(LogFixture::contents(fixture.path(name)), bytes);
    QCOMPARE(QFile::exists(fixture.path("F.vol")), tail.isEmpty());
}

void tst_ActionLogPlatform::cipherAndTornTail()
{
    hooks().key = 0x5A;
    const LogFixture fixture;
    const QByteArray whole = logOf("F", LogFixture::entry("one"));
    for (const QByteArray &tail :
         {QByteArray("<Entry ID=\"Rm"), "<Entry Text=\"" + QByteArray(20000, 'x'),
          QByteArray("<Entry Text=\"\xc3")}) {
        fixture.write(fixture.path("F.vol"), onDisk(whole + tail, 0x5A));
        ActionLog log(fixture.path("F.vol"));
        log.setSuspended(false);
        log.log(Remark("two"));
        QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
                 onDisk(whole + LogFixture::entry("two"), 0x5A));
    }
}

void tst_ActionLogPlatform::oneWriteForEachEntry()
{
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    ActionLog log(file);
    log.setSuspended(false);
    log.log(Remark("one"));
    const QByteArray long1(100000, 'x');
    log.log(Remark(QString::fromLatin1(long1)));
    log.log(Remark("two"));
    const qint64 first = logOf(file, LogFixture::entry("one")).size();
    QCOMPARE(hooks().written, (QList<qint64>{first, LogFixture::entry(long1).size(),
                                             LogFixture::entry("two").size()}));

    hooks().written.clear();
    ActionLog activated(fixture.path("G.vol"));
    activated.activate();
    QCOMPARE(LogFixture::contents(fixture.path("G.vol")), LogFixture::head(fixture.path("G.vol")));
    activated.setSuspended(false);
    activated.log(Remark("one"));
    QCOMPARE(hooks().written, (QList<qint64>{LogFixture::head(fixture.path("G.vol")).size(),
                                             1 + LogFixture::entry("one").size()}));
}

void tst_ActionLogPlatform::openModes()
{
    const QIODevice::OpenMode reading = QIODevice::ReadWrite | QIODevice::Text;
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    log.log(Remark("two"));
    QCOMPARE(hooks().opened, (QList<QIODevice::OpenMode>{reading, reading | QIODevice::Truncate}));
    hooks().opened.clear();
    ActionLog next(fixture.path("F.vol"));
    next.setSuspended(false);
    next.log(Remark("three"));
    QCOMPARE(hooks().opened, QList<QIODevice::OpenMode>{reading});
    hooks().opened.clear();
    ActionLog reader(fixture.path("F.vol"));
    QVERIFY(reader.readEntries(QIODevice::ReadOnly));
    QCOMPARE(hooks().opened, QList<QIODevice::OpenMode>{QIODevice::ReadOnly | QIODevice::Text});
}

void tst_ActionLogPlatform::aMoveThatFailedDoesNotTruncate()
{
    hooks().key = 0x5A;
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one")); // opened with Truncate
    QString name("missing/aside.vol");
    QVERIFY(!log.backupFile(name));
    log.log(Remark("two"));
    QCOMPARE(entries(log), (QStringList{"one", "two"}));
    QCOMPARE(
        LogFixture::contents(fixture.path("F.vol")),
        onDisk(logOf(fixture.path("F.vol"), LogFixture::entry("one") + LogFixture::entry("two")),
               0x5A));
}

QTEST_GUILESS_MAIN(tst_ActionLogPlatform)
#include "tst_ActionLogPlatform.moc"
