#include "LogFiles.h"

#include <Vokit/ActionLog>
#include <Vokit/ExportLogEntries>

#include <QtTest>

#include <csignal>

/// A log that grows, is split, moved away and cut.
class tst_VokitLogFollow : public QObject
{
    Q_OBJECT

private slots:
    void grows();
    void startsWithoutAnEntry();
    void formats();
    void filtered();
    void interrupted_data();
    void interrupted();
    void acrossSplits();
    void acrossARename();
    void acrossAReplacement();
    void tornBeforeTheNextFile();
    void cutShort();
    void cutBack();
    void noFile();
    void noRegularFile();
    void readerGone();
    void fullDisk();

private:
    const Folder m_folder;
};

namespace {

constexpr int gPatience = 20000; // milliseconds

class Following
{
public:
    explicit Following(const QStringList &arguments)
    {
        m_process.start(PROGRAM, QStringList{"show", "--follow"} + arguments);
    }
    ~Following()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Following(const Following &) = delete;
    Following &operator=(const Following &) = delete;

    /// Whether that is what it prints from the last time on, and nothing more for a while.
    bool prints(const QByteArray &text)
    {
        QElapsedTimer timer;
        timer.start();
        while (m_output.size() < text.size() && timer.elapsed() < gPatience)
            read();
        if (m_output != text)
            qWarning("it printed: %s%s", m_output.constData(),
                     m_process.readAllStandardError().constData());
        return std::exchange(m_output, {}) == text;
    }
    bool printsNothing()
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 700) // several looks at the file
            read();
        return prints({});
    }

    /// The exit code.
    int end(int signal = SIGINT)
    {
        ::kill(static_cast<pid_t>(m_process.processId()), signal);
        return finish();
    }
    int finish()
    {
        if (!m_process.waitForFinished(gPatience) || m_process.exitStatus() != QProcess::NormalExit)
            return -1;
        m_output += m_process.readAllStandardOutput();
        return m_process.exitCode();
    }
    QByteArray errors() { return m_process.readAllStandardError(); }

private:
    void read()
    {
        m_process.waitForReadyRead(50);
        m_output += m_process.readAllStandardOutput();
    }

    BoundProcess m_process;
    QByteArray m_output;
};

QByteArray heading(const QString &file)
{
    return "\n==> " + file.toUtf8() + " <==\n";
}

} // namespace

void tst_VokitLogFollow::grows()
{
    const QString file = m_folder.write("grows.vol", head() + done("a"));
    Following run({file});
    QVERIFY(run.prints(doneLine("a")));
    m_folder.append("grows.vol", done("b"));
    QVERIFY(run.prints(doneLine("b")));

    // An entry that is being written.
    const QByteArray entry = done("c");
    m_folder.append("grows.vol", entry.left(20));
    QVERIFY(run.printsNothing());
    m_folder.append("grows.vol", entry.mid(20));
    QVERIFY(run.prints(doneLine("c")));

    // Damage is told when something whole stands behind it.
    const int size = head().size() + done("a").size() + done("b").size() + entry.size();
    m_folder.append("grows.vol", "x" + done("d"));
    QVERIFY(run.prints("-- foreign bytes: 1 byte from byte " + QByteArray::number(size) +
                       " on (line 1, column " + QByteArray::number(size + 1) + ")\n" +
                       doneLine("d")));
    QCOMPARE(run.end(), 2);
    QCOMPARE(run.errors(), QByteArray());
}

void tst_VokitLogFollow::startsWithoutAnEntry()
{
    const QString file = m_folder.write("start.vol", "");
    Following run({file});
    QVERIFY(run.printsNothing());
    const QByteArray root = head();
    m_folder.append("start.vol", root.left(root.size() - 1));
    QVERIFY(run.printsNothing());
    m_folder.append("start.vol", ">" + done("a"));
    QVERIFY(run.prints(doneLine("a")));
    QCOMPARE(run.end(), 0);
}

void tst_VokitLogFollow::formats()
{
    const QString file = m_folder.write("formats.vol", head());
    Following csv({"--format", "csv", file});
    Following json({"--format", "json", file});
    QVERIFY(csv.prints("file,time,id,category,user,action,description,values\r\n"));
    m_folder.append("formats.vol", "x" + done("a"));
    QVERIFY(csv.prints(file.toUtf8() + ",2026-11-21 15:04:05,ExpD,Export,ann,Export done,a,"
                                       "\"{\"\"text\"\":\"\"a\"\"}\"\r\n"));
    QVERIFY(json.prints("{\"file\":\"" + file.toUtf8() +
                        "\",\"position\":112,\"time\":\"2026-11-21T15:04:05\",\"id\":\"ExpD\","
                        "\"category\":\"Export\",\"user\":\"ann\",\"action\":\"Export done\","
                        "\"description\":\"a\",\"values\":{\"text\":\"a\"}}\n"));
    QCOMPARE(csv.end(), 2);
    QCOMPARE(json.end(), 2);
    const QByteArray warning = "vokit-log: " + file.toUtf8() +
                               ": foreign bytes: 1 byte from byte 111 on (line 1, column 112)\n";
    QCOMPARE(csv.errors(), warning);
    QCOMPARE(json.errors(), warning);
}

void tst_VokitLogFollow::filtered()
{
    const QString file = m_folder.write("filtered.vol", head() + done("a", "bob"));
    Following run({"--user", "ann", "--since", "2026-11-21", file});
    m_folder.append("filtered.vol", done("b") + done("c", "ann", "soon") + done("d", "bob"));
    QVERIFY(run.prints(doneLine("b")));
    QCOMPARE(run.end(), 0);
    QVERIFY(run.errors().startsWith("vokit-log: the time of 1 entry can't be read"));
}

void tst_VokitLogFollow::interrupted_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("SIGINT") << QByteArray() << SIGINT << 0;
    QTest::newRow("SIGTERM") << QByteArray() << SIGTERM << 0;
    QTest::newRow("in the middle of an entry") << QByteArray("<Entry ID=") << SIGINT << 0;
    QTest::newRow("damaged") << "x" + done("b", "bob") << SIGTERM << 2;
}

void tst_VokitLogFollow::interrupted()
{
    QFETCH(QByteArray, tail);
    QFETCH(int, signal);
    const QString file = m_folder.write("interrupted.vol", head() + done("a") + tail);
    Following run({"--user", "ann", "--format", "json", file});
    QVERIFY(run.prints(runProgram({"show", "--user", "ann", "--format", "json", file}).output));
    QElapsedTimer timer;
    timer.start();
    QTEST(run.end(signal), "exitCode");
    QVERIFY(timer.elapsed() < 5000);
}

// Not one of the entries is lost, and none comes twice.
void tst_VokitLogFollow::acrossSplits()
{
    const Folder folder;
    const QString file = folder.path("split.vol");
    const Variable userName("USERNAME", "ann");
    vo::ActionLog log(file);
    log.setSuspended(false);
    log.setSplitPolicy(vo::ActionLog::SplitBySize, 600);
    log.log(ExportDoneLogEntry("0"));
    int splits = 0;
    Following run({file});
    const auto lineOf = [](int number, const QDateTime &time) {
        return doneLine(QByteArray::number(number), "ann (System)",
                        time.toString("yyyy-MM-dd HH:mm:ss").toLatin1());
    };
    QVERIFY(run.prints(lineOf(0, log.entries().last()->time())));
    for (int i = 1; i < 20; ++i) {
        const QStringList before = QFileInfo(file).dir().entryList(QDir::Files);
        log.log(ExportDoneLogEntry(QString::number(i)));
        const bool isSplit = QFileInfo(file).dir().entryList(QDir::Files) != before;
        splits += isSplit ? 1 : 0;
        const QByteArray line = lineOf(i, log.entries().last()->time());
        QVERIFY(run.prints((isSplit ? heading(file) : QByteArray()) + line));
    }
    QVERIFY2(splits >= 2, qPrintable(QString::number(splits)));
    QCOMPARE(run.end(), 0);
    QCOMPARE(run.errors(), QByteArray());
}

void tst_VokitLogFollow::acrossARename()
{
    const QString file = m_folder.write("renamed.vol", head() + done("a"));
    Following run({file});
    QVERIFY(run.prints(doneLine("a")));
    QVERIFY(QFile::rename(file, m_folder.path("renamed.1")));
    QVERIFY(run.printsNothing());
    // Whoever has it open goes on writing until the new one is there.
    m_folder.append("renamed.1", done("b"));
    QVERIFY(run.prints(doneLine("b")));
    m_folder.append("renamed.1", done("c"));
    m_folder.write("renamed.vol", head() + done("d"));
    QVERIFY(run.prints(doneLine("c") + heading(file) + doneLine("d")));
    m_folder.append("renamed.1", done("x"));
    m_folder.append("renamed.vol", done("e"));
    QVERIFY(run.prints(doneLine("e")));
    QCOMPARE(run.end(), 0);
    QCOMPARE(run.errors(), QByteArray());
}

void tst_VokitLogFollow::acrossAReplacement()
{
    const QString file = m_folder.write("replaced.vol", head() + done("a"));
    Following run({file});
    QVERIFY(run.prints(doneLine("a")));
    const QString next = m_folder.write("next.vol", head() + done("b"));
    QCOMPARE(::rename(QFile::encodeName(next).constData(), QFile::encodeName(file).constData()), 0);
    QVERIFY(run.prints(heading(file) + doneLine("b")));
    QCOMPARE(run.end(), 0);
}

void tst_VokitLogFollow::tornBeforeTheNextFile()
{
    const QByteArray bytes = head() + done("a");
    const QString file = m_folder.write("torn.vol", bytes + "<Entry ID=");
    Following run({file});
    QVERIFY(run.prints(doneLine("a")));
    QVERIFY(QFile::remove(file));
    QVERIFY(run.printsNothing());
    m_folder.write("torn.vol", head() + done("b"));
    QVERIFY(run.prints("-- truncated end: 10 bytes from byte " + QByteArray::number(bytes.size()) +
                       " on (line 1, column " + QByteArray::number(bytes.size() + 1) + ")\n" +
                       heading(file) + doneLine("b")));
    QCOMPARE(run.end(), 1);
}

void tst_VokitLogFollow::cutShort()
{
    const QString file = m_folder.write("cut.vol", head() + done("a") + done("b"));
    Following run({file});
    QVERIFY(run.prints(doneLine("a") + doneLine("b")));
    m_folder.write("cut.vol", head() + done("c"));
    QVERIFY(run.prints(heading(file) + doneLine("c")));
    QCOMPARE(run.end(), 0);
}

// As the client does with an entry that a crash has left unfinished: nothing that was shown goes.
void tst_VokitLogFollow::cutBack()
{
    const QByteArray bytes = head() + done("a");
    const QString file = m_folder.write("back.vol", bytes + "<Entry ID=");
    Following run({file});
    QVERIFY(run.prints(doneLine("a")));
    QVERIFY(QFile::resize(file, bytes.size()));
    QVERIFY(run.printsNothing());
    m_folder.append("back.vol", done("b"));
    QVERIFY(run.prints(doneLine("b")));
    QCOMPARE(run.end(), 0);
}

void tst_VokitLogFollow::noFile()
{
    Following run({m_folder.path("none.vol")});
    QCOMPARE(run.finish(), 3);
    QCOMPARE(run.errors(), "vokit-log: cannot read '" + m_folder.path("none.vol").toUtf8() +
                               "': No such file or directory\n");
}

void tst_VokitLogFollow::noRegularFile()
{
    const QString pipe = m_folder.path("pipe");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &name : {pipe, m_folder.path("")}) {
        Following run({name});
        QCOMPARE(run.finish(), 3);
        QCOMPARE(run.errors(),
                 "vokit-log: cannot follow '" + name.toUtf8() + "': it is not a regular file\n");
    }
}

// Even if nothing more is written to the log.
void tst_VokitLogFollow::readerGone()
{
    const QString file = m_folder.write("reader.vol", head() + done("a"));
    const ProgramRun run = runScript("{ \"$0\" show -f \"$1\"; echo $? >&2; } | head -n 1", {file});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, doneLine("a"));
    QCOMPARE(run.errors, QByteArray("0\n"));
}

void tst_VokitLogFollow::fullDisk()
{
    const QString file = m_folder.write("full.vol", head() + done("a"));
    const ProgramRun run = runScript("exec \"$0\" show -f \"$1\" >/dev/full", {file});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors,
             QByteArray("vokit-log: cannot write the output: No space left on device\n"));
}

QTEST_GUILESS_MAIN(tst_VokitLogFollow)
#include "tst_VokitLogFollow.moc"
