#include "Journal.h"

#include <Vokit/ILogUserSource>

#include <QThread>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace {

constexpr int gThreads = 8;
constexpr int gEntries = 20'000;
constexpr int gEach = gEntries / gThreads;
constexpr int gSize = 20;
constexpr auto gBlocked = std::chrono::milliseconds(50);

/// Answers with the thread that asks.
class AskingThread : public vo::ILogUserSource
{
public:
    static QString name() { return QString::number(quintptr(QThread::currentThreadId())); }
    QString primaryName() const override { return name(); }
    QString secondaryName() const override { return QStringLiteral("second"); }
};

template <typename Work>
void inThreads(Work work)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < gThreads; ++thread)
        threads.emplace_back([work, thread] { work(thread); });
    for (std::thread &thread : threads)
        thread.join();
}

bool isSaid(const std::future<void> &future)
{
    return future.wait_for(gBlocked) == std::future_status::ready;
}

} // namespace

/// One log, and many threads that log; under ThreadSanitizer as well.
class tst_LogThreads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void everyEntryOnce();
    void splitsAmongThreads();
    void signalsHoldTheLock();
    void slotLogsToo();
    void slotLogsWhileTheFileIsRead();
    void suspendedFromOutside();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_file;
};

void tst_LogThreads::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_file = m_dir->filePath("Client.vol");
    QCoreApplication::setApplicationName("Client");
}

// None lost and none torn; those of one thread in its order; the list in the order of the file;
// each signal and each question for the user on the thread that logs.
void tst_LogThreads::everyEntryOnce()
{
    AskingThread source;
    journal::Log log(m_file);
    log.setUserSource(&source);
    int signalCount = 0; // guarded by the log's lock
    int strangers = 0;
    connect(
        &log, &vo::ActionLog::logEntriesAdded, &log,
        [&](int first, int last) {
            ++signalCount;
            const QString user = log.entries().at(first)->user();
            if (first != last || first != log.entries().size() - 1 ||
                user != AskingThread::name() + QLatin1String(" (second)"))
                ++strangers;
        },
        Qt::DirectConnection);
    inThreads([&log](int thread) {
        for (int i = 0; i < gEach; ++i)
            journal::log(log, thread * gEach + i, gSize);
    });
    QCOMPARE(log.failures(), 0);
    QCOMPARE(signalCount, gEntries);
    QCOMPARE(strangers, 0);

    const QVector<int> listed = journal::numbers(log);
    QCOMPARE(journal::readAgain(m_file, gSize), listed);
    QVector<int> next(gThreads);
    for (int number : listed) {
        const int thread = number / gEach;
        QCOMPARE(number, thread * gEach + next[thread]);
        ++next[thread];
    }
    QCOMPARE(next, QVector<int>(gThreads, gEach));
}

// A live file and its archives hold them all, whole.
void tst_LogThreads::splitsAmongThreads()
{
    constexpr int count = 200;
    journal::Log log(m_file);
    log.setSplitPolicy(vo::ActionLog::SplitBySize, 1000);
    inThreads([&log](int thread) {
        for (int i = 0; i < count; ++i) {
            journal::log(log, thread * count + i, gSize);
            if (i % 50 == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(400));
        }
    });
    QCOMPARE(log.failures(), 0);
    QVector<int> found;
    const QStringList files = QDir(m_dir->path()).entryList(QDir::Files);
    QVERIFY(files.size() > 1);
    for (const QString &file : files)
        found += journal::readAgain(m_dir->filePath(file), gSize);
    std::sort(found.begin(), found.end());
    QCOMPARE(found, journal::range(0, gThreads * count - 1));
}

// While a slot runs, another thread waits with its entry.
void tst_LogThreads::signalsHoldTheLock()
{
    journal::Log log(m_file);
    std::thread other;
    std::promise<void> begun;
    std::promise<void> ended;
    const std::future<void> hasEnded = ended.get_future();
    bool waited = false;
    const auto slot = [&] {
        if (other.joinable())
            return;
        other = std::thread([&] {
            begun.set_value();
            journal::log(log, 2, gSize);
            ended.set_value();
        });
        begun.get_future().wait();
        waited = !isSaid(hasEnded);
    };
    connect(&log, &vo::ActionLog::addingLogEntries, &log, slot, Qt::DirectConnection);
    journal::log(log, 1, gSize);
    other.join();
    QVERIFY(waited);
    QCOMPARE(journal::numbers(log), (QVector<int>{1, 2}));
    QCOMPARE(journal::readAgain(m_file, gSize), (QVector<int>{1, 2}));
}

void tst_LogThreads::slotLogsToo()
{
    constexpr int count = 100;
    constexpr int answer = 1'000'000;
    journal::Log log(m_file);
    connect(
        &log, &vo::ActionLog::logEntriesAdded, &log,
        [&](int first) {
            const int number = journal::numberIn(journal::textOf(log.entries().at(first)));
            if (number < answer)
                journal::log(log, number + answer, gSize);
        },
        Qt::DirectConnection);
    inThreads([&log](int thread) {
        for (int i = 0; i < count; ++i)
            journal::log(log, thread * count + i, gSize);
    });
    const QVector<int> listed = journal::numbers(log);
    QCOMPARE(listed.size(), 2 * gThreads * count);
    for (int i = 0; i < listed.size(); i += 2) // the answer comes before any other entry
        QCOMPARE(listed.at(i) + answer, listed.at(i + 1));
    QCOMPARE(journal::readAgain(m_file, gSize), listed);
}

// The entry of a slot goes behind all that stands in the file, and never into it.
void tst_LogThreads::slotLogsWhileTheFileIsRead()
{
    constexpr int count = 500; // more than a reader takes at once
    {
        journal::Log log(m_file);
        for (int i = 0; i < count; ++i)
            journal::log(log, i, gSize);
    }
    // As a crash leaves it: the last one is torn.
    const QByteArray before = journal::bytes(m_file);
    journal::write(m_file, before.left(before.size() - 5));
    journal::Log log(m_file);
    int answers = 0;
    connect(
        &log, &vo::ActionLog::logEntriesAdded, &log,
        [&] {
            if (answers < 3)
                journal::log(log, 1000 + answers++, gSize);
        },
        Qt::DirectConnection);
    journal::log(log, 2000, gSize);
    QCOMPARE(log.failures(), 0);
    const QVector<int> found = journal::readAgain(m_file, gSize);
    QCOMPARE(found.mid(0, count - 1), journal::range(0, count - 2));
    QCOMPARE(found.size(), count - 1 + 4);
    QVector<int> listed = journal::numbers(log);
    std::sort(listed.begin(), listed.end());
    QCOMPARE(listed, found);
}

void tst_LogThreads::suspendedFromOutside()
{
    journal::Log log(m_file);
    std::atomic<bool> isOver{false};
    std::thread other([&] {
        for (bool suspended = false; !isOver; suspended = !suspended)
            log.setSuspended(suspended);
        log.setSuspended(false);
    });
    inThreads([&log](int thread) {
        for (int i = 0; i < 200; ++i)
            journal::log(log, thread * 200 + i, gSize);
    });
    isOver = true;
    other.join();
    QVERIFY(!log.isSuspended());
    journal::log(log, 5000, gSize);
    QCOMPARE(journal::readAgain(m_file, gSize), journal::numbers(log));
    QCOMPARE(journal::numbers(log).last(), 5000);
}

QTEST_GUILESS_MAIN(tst_LogThreads)
#include "tst_LogThreads.moc"
