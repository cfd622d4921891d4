#include "LogFixture.h"

#include <QThread>
#include <QtTest>

#include <atomic>
#include <stdexcept>

using namespace test;
using vo::ActionLog;

namespace {

/// Does something at the first call, and nothing at those that it brings about.
class Once
{
public:
    explicit Once(std::function<void()> act)
        : m_act(std::move(act))
    {}
    void operator()()
    {
        if (m_done)
            return;
        m_done = true;
        m_act();
    }

private:
    const std::function<void()> m_act;
    bool m_done = false;
};

using Connector = std::function<void(ActionLog &, std::function<void()>)>;

template <class Signal>
Connector at(Signal signal)
{
    return [signal](ActionLog &log, const std::function<void()> &act) {
        QObject::connect(
            &log, signal, &log, [act] { act(); }, Qt::DirectConnection);
    };
}

/// Runs on a thread of its own, and says whether it came to its end in time.
bool runsElsewhere(const std::function<void()> &act)
{
    const QScopedPointer<QThread> thread(QThread::create(act));
    thread->start();
    return thread->wait(30000);
}

} // namespace

Q_DECLARE_METATYPE(Connector)

/// The signals come under the lock, on the thread that logs: what slots may do there.
class tst_ActionLogSlots : public QObject
{
    Q_OBJECT

private slots:
    void logAgain_data();
    void logAgain();
    void logWhileAFileIsRead_data();
    void logWhileAFileIsRead();
    void logAtADamagedFile();
    void logAtAFallBack();
    void logAtASplit_data();
    void logAtASplit();
    void moveTheLog();
    void throwing_data();
    void throwing();
    void throwingWhileAFileIsRead();
    void heldForTheWholeLength();
    void entriesOfThreadsStayWhole();
};

void tst_ActionLogSlots::logAgain_data()
{
    QTest::addColumn<Connector>("connector");
    QTest::addColumn<QStringList>("list");
    QTest::newRow("ahead of the entry's place in the list")
        << at(&ActionLog::addingLogEntries) << QStringList{"again", "one", "two"};
    QTest::newRow("behind it") << at(&ActionLog::logEntriesAdded)
                               << QStringList{"one", "again", "two"};
}

void tst_ActionLogSlots::logAgain()
{
    QFETCH(Connector, connector);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    Once again([&] { log.log(Remark("again")); });
    connector(log, [&] { again(); });
    log.log(Remark("one"));
    log.log(Remark("two"));
    QTEST(entries(log), "list");
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one, again, two"));
}

void tst_ActionLogSlots::logWhileAFileIsRead_data()
{
    QTest::addColumn<Connector>("connector");
    QTest::newRow("adding") << at(&ActionLog::addingLogEntries);
    QTest::newRow("added") << at(&ActionLog::logEntriesAdded);
}

// Nothing is ever written into the middle of what is there.
void tst_ActionLogSlots::logWhileAFileIsRead()
{
    QFETCH(Connector, connector);
    const LogFixture fixture;
    QByteArray bytes = LogFixture::head(fixture.path("F.vol")) + '>';
    for (int i = 0; i < 1000; ++i)
        bytes += LogFixture::entry("old");
    fixture.write(fixture.path("F.vol"), bytes + "<Entry ID=\"Rm");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    Once again([&] { log.log(Remark("again")); });
    connector(log, [&] { again(); });
    log.log(Remark("one"));
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
             bytes + LogFixture::entry("again") + LogFixture::entry("one"));
    QCOMPARE(log.entries().size(), 1002);
    QCOMPARE(entries(log).count("again"), 1);
    QCOMPARE(entries(log).last(), QString("one"));
}

// It is told before the file is moved, which takes the slot's entry along.
void tst_ActionLogSlots::logAtADamagedFile()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), LogFixture::head("F") + "></Wrong>");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    connect(&log, &ActionLog::errorXml, [&] { log.log(Remark("again")); });
    log.log(Remark("lost"));
    log.log(Remark("one"));
    const QString again = QString::fromUtf8(LogFixture::entry("again"));
    QCOMPARE(fixture.disk(),
             (QStringList{"F 2026-03-05 12-00-00.vol.corrupt = Log(F) + </Wrong>" + again,
                          "F.vol = Log(~/F.vol): one"}));
    QCOMPARE(entries(log), (QStringList{"XmlP", "again", "one"}));
}

void tst_ActionLogSlots::logAtAFallBack()
{
    const LogFixture fixture;
    fixture.makeDefaultDirectory();
    ActionLog log(fixture.path("missing/F.vol"));
    log.setSuspended(false);
    connect(&log, &ActionLog::switchedFileHandle, [&] { log.log(Remark("switched")); });
    connect(&log, &ActionLog::errorFile, [&] { log.log(Remark("error")); });
    log.log(Remark("lost"));
    QCOMPARE(fixture.disk(), QStringList("state/Maker/Voco/Voco.vol = Log(~/state/Maker/Voco/"
                                         "Voco.vol): ALog, switched, error"));
    QCOMPARE(entries(log), (QStringList{"ALog", "switched", "error"}));
}

void tst_ActionLogSlots::logAtASplit_data()
{
    QTest::addColumn<Connector>("connector");
    QTest::addColumn<QStringList>("list");
    QTest::newRow("removing: it goes from the list with the others")
        << at(&ActionLog::removingLogEntries) << QStringList{"two"};
    QTest::newRow("removed") << at(&ActionLog::logEntriesRemoved) << QStringList{"again", "two"};
}

void tst_ActionLogSlots::logAtASplit()
{
    QFETCH(Connector, connector);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitDaily, 0);
    log.log(Remark("one"));
    TestClock::advance(24 * 60 * 60);
    Once again([&] { log.log(Remark("again")); });
    connector(log, [&] { again(); });
    log.log(Remark("two"));
    QTEST(entries(log), "list");
    QCOMPARE(fixture.disk(), (QStringList{"F 2026-10-05.vol = Log(~/F.vol): one",
                                          "F.vol = Log(~/F.vol): again, two"}));
}

void tst_ActionLogSlots::moveTheLog()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    Once move([&] { log.setFileInfo(QFileInfo(fixture.path("G.vol"))); });
    connect(&log, &ActionLog::logEntriesAdded, [&] { move(); });
    log.log(Remark("one"));
    log.log(Remark("two"));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = Log(~/F.vol): one, ALog", "G.vol = Log(~/G.vol): ALog, two"}));
}

void tst_ActionLogSlots::throwing_data()
{
    QTest::addColumn<Connector>("connector");
    QTest::addColumn<QStringList>("list");
    QTest::newRow("ahead of the entry's place in the list")
        << at(&ActionLog::addingLogEntries) << QStringList{"two"};
    QTest::newRow("behind it") << at(&ActionLog::logEntriesAdded) << QStringList{"one", "two"};
}

// It reaches who called log(), with the lock free. The entry is on the disk by then.
void tst_ActionLogSlots::throwing()
{
    QFETCH(Connector, connector);
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    Once fail([] { throw std::runtime_error("of a slot"); });
    connector(log, [&] { fail(); });
    QVERIFY_EXCEPTION_THROWN(log.log(Remark("one")), std::runtime_error);
    QVERIFY(runsElsewhere([&] { log.log(Remark("two")); }));
    QTEST(entries(log), "list");
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one, two"));
}

void tst_ActionLogSlots::throwingWhileAFileIsRead()
{
    const LogFixture fixture;
    QByteArray bytes = LogFixture::head(fixture.path("F.vol")) + '>';
    for (int i = 0; i < 1000; ++i)
        bytes += LogFixture::entry("old");
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    Once fail([] { throw std::runtime_error("of a slot"); });
    connect(&log, &ActionLog::logEntriesAdded, [&] { fail(); });
    QVERIFY_EXCEPTION_THROWN(log.readLog(), std::runtime_error);
    QVERIFY(runsElsewhere([&] { log.log(Remark("one")); }));
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes + LogFixture::entry("one"));
}

void tst_ActionLogSlots::heldForTheWholeLength()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    const QThread *const here = QThread::currentThread();
    const QThread *seen = nullptr;
    std::atomic<bool> over{false};
    const QScopedPointer<QThread> other(QThread::create([&] {
        log.log(Remark("two"));
        over = true;
    }));
    bool overInSlot = true;
    Once slot([&] {
        seen = QThread::currentThread();
        other->start();
        other->wait(200); // it can't get on
        overInSlot = over;
    });
    connect(
        &log, &ActionLog::logEntriesAdded, &log, [&] { slot(); }, Qt::DirectConnection);
    log.log(Remark("one"));
    QVERIFY(other->wait(30000));
    QCOMPARE(seen, here);
    QVERIFY(!overInSlot);
    QVERIFY(over);
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): one, two"));
}

void tst_ActionLogSlots::entriesOfThreadsStayWhole()
{
    const LogFixture fixture;
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([&log, i] {
            for (int k = 0; k < 50; ++k)
                log.log(Remark(QString(200, QChar('a' + i))));
        }));
    }
    for (auto &thread : threads)
        thread->start();
    for (auto &thread : threads)
        QVERIFY(thread->wait(60000));
    QCOMPARE(log.entries().size(), 200);
    const QStringList list = entries(log);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(list.count(QString(200, QChar('a' + i))), 50);
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(~/F.vol): " + list.join(", ")));
}

QTEST_GUILESS_MAIN(tst_ActionLogSlots)
#include "tst_ActionLogSlots.moc"
