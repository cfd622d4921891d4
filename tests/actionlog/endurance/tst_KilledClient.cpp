#include "Journal.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/*
 * tst_KilledClient: kills a client that logs, and reads what it leaves. VOKIT_KILLS in the
 * environment is the number of kills for each row.
 *
 * The client is this program itself, called as "tst_KilledClient --log FILE FIRST SIZE SPLIT": it
 * logs for ever, and writes the number of each entry to its output when log() has returned.
 */

namespace {

constexpr int gUsualKills = 13;
constexpr int gKillsPerFile = 5;
constexpr int gReady = 0; // the numbers of entries begin behind it

int logForEver(char **arguments)
{
    QCoreApplication::setApplicationName("Client");
    const QString file = QString::fromLocal8Bit(arguments[0]);
    const int size = std::atoi(arguments[2]);
    const int split = std::atoi(arguments[3]);
    vo::ActionLog log(file);
    log.setSplitPolicy(split > 0 ? vo::ActionLog::SplitBySize : vo::ActionLog::SplitNone, split);
    log.setSuspended(false);
    int number = std::atoi(arguments[1]);
    const auto tell = [](int value) {
        return ::write(STDOUT_FILENO, &value, sizeof value) == sizeof value;
    };
    bool isHeard = tell(gReady); // that it is about to begin
    for (; isHeard; ++number) {
        journal::log(log, number, size);
        isHeard = tell(number);
    }
    return 0;
}

/// A client, from its start to its end by SIGKILL.
class Client
{
public:
    explicit Client(const QStringList &arguments)
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            qFatal("no pipe");
        QList<QByteArray> words{QCoreApplication::applicationFilePath().toLocal8Bit(), "--log"};
        for (const QString &argument : arguments)
            words.append(argument.toLocal8Bit());
        std::vector<char *> list;
        for (QByteArray &word : words)
            list.push_back(word.data());
        list.push_back(nullptr);
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::execv(list.front(), list.data());
            ::_exit(1);
        }
        ::close(ends[1]);
        m_told = ends[0];
        next();
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;
    ~Client() { ::close(m_told); }

    /// Kills it that long after so many entries. The number of the last entry whose log() had
    /// returned; 0 for none.
    int killAfter(int entries, std::chrono::microseconds delay)
    {
        int last = gReady;
        for (; entries > 0; --entries)
            last = next();
        // What it tells must be taken, or it would wait.
        std::thread listener([this, &last] {
            for (int number = next(); number >= 0; number = next())
                last = number;
        });
        std::this_thread::sleep_for(delay);
        ::kill(m_process, SIGKILL);
        listener.join();
        int status = 0;
        ::waitpid(m_process, &status, 0);
        m_wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        return last;
    }

    bool wasKilled() const { return m_wasKilled; }

private:
    int next()
    {
        int number = -1;
        return ::read(m_told, &number, sizeof number) == sizeof number ? number : -1;
    }

    pid_t m_process = -1;
    int m_told = -1;
    bool m_wasKilled = false;
};

} // namespace

class tst_KilledClient : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void entriesSurvive_data();
    void entriesSurvive();

private:
    void readAfter(const QString &file, int number, int size, int split);

    QVector<int> m_found;
    int m_torn = 0;
    std::mt19937 m_random{20261121};
};

void tst_KilledClient::initTestCase()
{
    QCoreApplication::setApplicationName("Client");
}

void tst_KilledClient::entriesSurvive_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("split");
    QTest::newRow("short entries") << 20 << 0;
    QTest::newRow("long entries") << 50'000 << 0;
    QTest::newRow("short entries, split") << 20 << 2000;
    QTest::newRow("long entries, split") << 50'000 << 250'000;
}

// The next start logs its own entry. What then stands in the file and in its archives is read.
void tst_KilledClient::readAfter(const QString &file, int number, int size, int split)
{
    const QByteArray left = journal::bytes(file);
    m_torn += QFile::exists(file) && !left.isEmpty() && !left.endsWith('>') ? 1 : 0;
    {
        journal::Log log(file);
        log.setSplitPolicy(split > 0 ? vo::ActionLog::SplitBySize : vo::ActionLog::SplitNone,
                           split);
        journal::log(log, number, size);
        QCOMPARE(log.failures(), 0);
    }
    m_found.clear();
    const QFileInfoList files = QFileInfo(file).dir().entryInfoList({"*.vol"}, QDir::Files);
    for (const QFileInfo &each : files) {
        const QVector<int> numbers = journal::readAgain(each.filePath(), size);
        QVERIFY(std::is_sorted(numbers.cbegin(), numbers.cend()));
        QVERIFY(!numbers.contains(-1));
        m_found += numbers;
    }
    QCOMPARE(QFileInfo(file).dir().entryList({"*.corrupt"}), QStringList());
    std::sort(m_found.begin(), m_found.end());
    if (split == 0)
        QVERIFY(std::adjacent_find(m_found.cbegin(), m_found.cend()) == m_found.cend());
    m_found.erase(std::unique(m_found.begin(), m_found.end()), m_found.end());
}

void tst_KilledClient::entriesSurvive()
{
    QFETCH(int, size);
    QFETCH(int, split);
    bool isNumber = false;
    int kills = qEnvironmentVariableIntValue("VOKIT_KILLS", &isNumber);
    if (!isNumber)
        kills = gUsualKills;
    m_torn = 0;
    int entries = 0;
    int unreturned = 0;
    int beforeTheFirst = 0;
    std::unique_ptr<QTemporaryDir> dir;
    int number = 1;
    QVector<int> expected;
    for (int kill = 0; kill < kills; ++kill) {
        if (kill % gKillsPerFile == 0) {
            dir = std::make_unique<QTemporaryDir>();
            number = 1;
            expected.clear();
        }
        const QString file = dir->filePath("Live.vol");
        Client client(
            {file, QString::number(number), QString::number(size), QString::number(split)});
        // Now and then within the first entry, in which the file is read.
        const bool inFirst = kill % 4 == 0;
        const auto before = inFirst ? 0 : static_cast<int>(1 + m_random() % 12);
        const std::chrono::microseconds delay(m_random() % (inFirst ? 20'000 : 2000));
        const int last = client.killAfter(before, delay);
        QVERIFY(client.wasKilled());
        beforeTheFirst += last == gReady ? 1 : 0;
        const int returned = std::max(last, number - 1);
        entries += returned - number + 1;

        const int own = returned + 2; // one behind the entry that the kill met
        readAfter(file, own, size, split);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QString("kill %1 after %2 us").arg(kill).arg(delay.count())));
        expected += journal::range(number, returned);
        if (m_found.contains(own - 1)) {
            ++unreturned;
            expected.append(own - 1);
        }
        expected.append(own);
        if (m_found != expected)
            QFAIL(qPrintable(QString("kill %1 after %2 us: %3 entries are there, of %4")
                                 .arg(kill)
                                 .arg(delay.count())
                                 .arg(m_found.size())
                                 .arg(expected.size())));
        number = own + 1;
    }
    qInfo("seed 20261121: %d kills, %d of them ahead of a first entry and %d with a torn one; %d "
          "entries had returned, %d more were whole",
          kills, beforeTheFirst, m_torn, entries, unreturned);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 6 && qstrcmp(argv[1], "--log") == 0)
        return logForEver(argv + 2);
    tst_KilledClient test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KilledClient.moc"
