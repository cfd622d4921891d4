#include <QtTest>

#include "LogBytes.h"
#include "examples/ProgramRun.h"

#include <csignal>
#include <memory>

using namespace bytes;

namespace {

const QByteArray gDamaged = gHead + gOne + gTwo.left(34) + gTwo;
const QByteArray gWhole = gHead + gOne + gTwo + gEnd;

} // namespace

/// recover: which files it writes, when it refuses to, and what is left when it fails.
class tst_VokitLogRecoverFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void standardInput();
    void standardOutput();
    void outputLost();
    void readerGoesAway();
    void unreadable_data();
    void unreadable();
    void readFails();
    void existing_data();
    void existing();
    void permissions_data();
    void permissions();
    void sameFile_data();
    void sameFile();
    void sameAsInputDescriptor();
    void reportIsOutput_data();
    void reportIsOutput();
    void noFile_data();
    void noFile();
    void notWritable();
    void fullDisk_data();
    void fullDisk();
    void interrupted();
    void wrongUse_data();
    void wrongUse();
    void help();

private:
    QString path(const QString &name) const { return m_files->path(name); }
    void write(const QString &name, const QByteArray &content) const
    {
        QFile writer(path(name));
        QVERIFY(writer.open(QIODevice::WriteOnly));
        QCOMPARE(writer.write(content), qint64(content.size()));
    }
    QStringList names() const
    {
        return QDir(m_files->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    /// In the folder of the test.
    ProgramRun recover(const QStringList &arguments) const
    {
        return runScript("cd \"$1\" && shift && exec \"$0\" recover \"$@\"",
                         QStringList{m_files->path()} + arguments);
    }

    std::unique_ptr<Tree> m_files;
};

void tst_VokitLogRecoverFiles::init()
{
    m_files = std::make_unique<Tree>();
    write("old.vol", gDamaged);
}

void tst_VokitLogRecoverFiles::standardInput()
{
    const QStringList arguments{"recover",       "-",        "--output",
                                path("new.vol"), "--report", path("r.json")};
    const ProgramRun pipe = runProgram(arguments, gDamaged);
    QCOMPARE(pipe.exitCode, 0);
    QCOMPARE(contentOf(path("new.vol")), gWhole);
    const QJsonObject report = QJsonDocument::fromJson(contentOf(path("r.json"))).object();
    QCOMPARE(report["input"].toString(), QString("-"));
}

void tst_VokitLogRecoverFiles::standardOutput()
{
    const ProgramRun run = recover({"old.vol", "-o", "-", "--report", "r.json"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, gWhole);
    QVERIFY(run.errors.startsWith("recovered 2 entries to the standard output\n"
                                  "skipped 1 gap, 34 bytes\n  torn entry: 34 bytes from byte "));
    QCOMPARE(run.errors.count('\n'), 3);
    QCOMPARE(names(), (QStringList{"old.vol", "r.json"}));
    const QJsonObject report = QJsonDocument::fromJson(contentOf(path("r.json"))).object();
    QCOMPARE(report["output"].toString(), QString("-"));
}

void tst_VokitLogRecoverFiles::outputLost()
{
    const char *const script = "\"$0\" recover \"$1\" -o - --report \"$2\" >/dev/full";
    const ProgramRun run = runScript(script, {path("old.vol"), path("r.json")});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors,
             QByteArray("vokit-log: cannot write the output: No space left on device\n"));
    QCOMPARE(names(), QStringList{"old.vol"});
    // The document stands already.
    const ProgramRun summary = runScript("exec \"$0\" recover \"$1\" -o \"$2\" >/dev/full",
                                         {path("old.vol"), path("new.vol")});
    QCOMPARE(summary.exitCode, 3);
    QCOMPARE(contentOf(path("new.vol")), gWhole);
}

void tst_VokitLogRecoverFiles::readerGoesAway()
{
    write("old.vol", gHead + gOne.repeated(20000));
    const ProgramRun run =
        runScript("trap '' PIPE; cd \"$1\"; { \"$0\" recover old.vol -o - --report "
                  "r.json; echo $? >code; } | head -c 1",
                  {m_files->path()});
    QCOMPARE(run.output, QByteArray("<"));
    QCOMPARE(contentOf(path("code")), QByteArray("3\n"));
    QCOMPARE(run.errors,
             QByteArray("vokit-log: cannot write the output: its reader has gone away\n"));
    QCOMPARE(names(), (QStringList{"code", "old.vol"}));
}

void tst_VokitLogRecoverFiles::unreadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("missing") << "missing" << QByteArray("No such file or directory");
    QTest::newRow("a folder") << "." << QByteArray("file to open is a directory");
    QTest::newRow("no right") << "locked" << QByteArray("Permission denied");
    QTest::newRow("a read that fails") << "/proc/self/mem" << QByteArray("Input/output error");
}

void tst_VokitLogRecoverFiles::unreadable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    write("locked", gDamaged);
    m_files->setMode("locked", 0);
    const ProgramRun run = recover({name, "-o", "new.vol", "--report", "r.json"});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errors, "vokit-log: cannot read '" + name.toUtf8() + "': " + reason + '\n');
    QCOMPARE(names(), (QStringList{"locked", "old.vol"}));
}

// With an old file in the place: it stays.
void tst_VokitLogRecoverFiles::readFails()
{
    write("new.vol", "before");
    QCOMPARE(recover({"/proc/self/mem", "-o", "new.vol", "--force"}).exitCode, 3);
    QCOMPARE(contentOf(path("new.vol")), QByteArray("before"));
    QCOMPARE(names(), (QStringList{"new.vol", "old.vol"}));
}

void tst_VokitLogRecoverFiles::existing_data()
{
    QTest::addColumn<QString>("made");
    QTest::addColumn<QString>("target");

    QTest::newRow("a file") << "new.vol"
                            << "new.vol";
    QTest::newRow("a link to a file") << "link"
                                      << "new.vol";
    QTest::newRow("a link to nowhere") << "nowhere"
                                       << "gone.vol";
}

void tst_VokitLogRecoverFiles::existing()
{
    QFETCH(QString, made);
    QFETCH(QString, target);
    write("new.vol", "before");
    m_files->addLink("new.vol", "link");
    m_files->addLink("gone.vol", "nowhere");
    const QStringList before = names();
    const QByteArray refusal = "vokit-log: cannot write '" + made.toUtf8() +
                               "': it is there already; --force replaces it\n";
    for (const QStringList &options :
         {QStringList{"-o", made}, QStringList{"-o", "free.vol", "--report", made}}) {
        const ProgramRun refused = recover(QStringList{"old.vol"} + options);
        QCOMPARE(refused.exitCode, 3);
        QCOMPARE(refused.errors, refusal);
        QCOMPARE(refused.output, QByteArray());
        QCOMPARE(names(), before);
        QCOMPARE(contentOf(path("new.vol")), QByteArray("before"));
    }
    QCOMPARE(recover({"old.vol", "--force", "-o", made}).exitCode, 0);
    QCOMPARE(contentOf(path(made)), gWhole);
    QCOMPARE(contentOf(path(target)), gWhole); // a link stays one
}

void tst_VokitLogRecoverFiles::permissions_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray usual = "\"$0\" recover old.vol -o new.vol --report r.json";
    QTest::newRow("private") << QByteArray("600") << usual << QByteArray("600");
    QTest::newRow("of a group") << QByteArray("640") << usual << QByteArray("640");
    QTest::newRow("public") << QByteArray("644") << usual << QByteArray("644");
    QTest::newRow("not beyond the umask") << QByteArray("666") << usual << QByteArray("644");
    QTest::newRow("read-only") << QByteArray("440") << usual << QByteArray("640");
    QTest::newRow("standard input")
        << QByteArray("600") << QByteArray("\"$0\" recover - -o new.vol --report r.json <old.vol")
        << QByteArray("600");
    QTest::newRow("in place of a public one")
        << QByteArray("600")
        << "touch new.vol r.json; chmod 666 new.vol r.json; " + usual + " --force"
        << QByteArray("600");
    QTest::newRow("from a pipe") << QByteArray("600")
                                 << QByteArray(
                                        "cat old.vol | \"$0\" recover - -o new.vol --report r.json")
                                 << QByteArray("644");
}

// What is recovered is as private as the log.
void tst_VokitLogRecoverFiles::permissions()
{
    QFETCH(QByteArray, mode);
    QFETCH(QByteArray, command);
    const QByteArray script = "cd \"$1\"; umask 022; chmod " + mode + " old.vol; (" + command +
                              ") >/dev/null; stat -c %a new.vol r.json";
    const ProgramRun run = runScript(script.constData(), {m_files->path()});
    QFETCH(QByteArray, expected);
    QCOMPARE(run.output, expected + '\n' + expected + '\n');
}

void tst_VokitLogRecoverFiles::sameFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isReport");

    for (const bool isReport : {false, true}) {
        const auto row = [isReport](const char *title, const char *name) {
            QTest::addRow("%s%s", title, isReport ? ", report" : "") << QString(name) << isReport;
        };
        row("itself", "old.vol");
        row("by another path", "./folder/../old.vol");
        row("a link", "soft");
        row("a link to a link", "softer");
        row("a hard link", "hard");
    }
}

void tst_VokitLogRecoverFiles::sameFile()
{
    QFETCH(QString, name);
    QFETCH(bool, isReport);
    QVERIFY(QDir(m_files->path()).mkdir("folder"));
    m_files->addLink("old.vol", "soft");
    m_files->addLink("soft", "softer");
    QCOMPARE(::link(m_files->bytes("old.vol").constData(), m_files->bytes("hard").constData()), 0);
    const QStringList before = names();
    const QStringList options =
        isReport ? QStringList{"-o", "new.vol", "--report", name} : QStringList{"-o", name};
    for (const QStringList &force : {QStringList(), QStringList{"--force"}}) {
        const ProgramRun run = recover(QStringList{"old.vol"} + options + force);
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.errors, "vokit-log: cannot write '" + name.toUtf8() +
                                 "': it is the file that is to be recovered\n");
        QCOMPARE(contentOf(path("old.vol")), gDamaged);
        QCOMPARE(names(), before);
    }
}

void tst_VokitLogRecoverFiles::sameAsInputDescriptor()
{
    const ProgramRun run =
        runScript("exec \"$0\" recover - --force -o \"$1\" <\"$1\"", {path("old.vol")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.endsWith("it is the file that is to be recovered\n"));
    QCOMPARE(contentOf(path("old.vol")), gDamaged);
}

void tst_VokitLogRecoverFiles::reportIsOutput_data()
{
    QTest::addColumn<QString>("report");

    QTest::newRow("the same name") << "new.vol";
    QTest::newRow("by another path") << "./new.vol";
    QTest::newRow("by a linked folder") << "folder/new.vol";
    QTest::newRow("by a link") << "link";
}

void tst_VokitLogRecoverFiles::reportIsOutput()
{
    QFETCH(QString, report);
    m_files->addLink(".", "folder");
    if (report == "link") {
        write("new.vol", "before");
        m_files->addLink("new.vol", "link");
    }
    const QStringList before = names();
    const ProgramRun run = recover({"old.vol", "--force", "-o", "new.vol", "--report", report});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors,
             "vokit-log: cannot write '" + report.toUtf8() + "': the entries go there\n");
    QCOMPARE(names(), before);
}

void tst_VokitLogRecoverFiles::noFile_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("a folder") << "folder";
    QTest::newRow("a pipe") << "pipe";
    QTest::newRow("a device") << "/dev/full";
    QTest::newRow("a link to a device") << "link";
}

void tst_VokitLogRecoverFiles::noFile()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_files->path()).mkdir("folder"));
    QCOMPARE(::mkfifo(m_files->bytes("pipe").constData(), 0600), 0);
    m_files->addLink("/dev/full", "link");
    const QStringList before = names();
    const QByteArray refusal =
        "vokit-log: cannot write '" + name.toUtf8() + "': it is not a regular file\n";
    QCOMPARE(recover({"old.vol", "-o", name}).errors, refusal);
    QCOMPARE(recover({"old.vol", "-o", name, "--force"}).errors, refusal);
    const ProgramRun report = recover({"old.vol", "-o", "new.vol", "--report", name, "--force"});
    QCOMPARE(report.errors, refusal);
    QCOMPARE(report.exitCode, 3);
    QCOMPARE(names(), before);
}

void tst_VokitLogRecoverFiles::notWritable()
{
    const ProgramRun missing = recover({"old.vol", "-o", "none/new.vol"});
    QCOMPARE(missing.exitCode, 3);
    QCOMPARE(missing.errors,
             QByteArray("vokit-log: cannot write 'none/new.vol': No such file or directory\n"));
    QVERIFY(QDir(m_files->path()).mkdir("locked"));
    m_files->setMode("locked", 0500);
    const ProgramRun locked = recover({"old.vol", "-o", "locked/new.vol"});
    QCOMPARE(locked.exitCode, 3);
    QCOMPARE(locked.errors,
             QByteArray("vokit-log: cannot write 'locked/new.vol': Permission denied\n"));
    const ProgramRun report = recover({"old.vol", "-o", "new.vol", "--report", "none/r.json"});
    QCOMPARE(report.exitCode, 3);
    QCOMPARE(names(), (QStringList{"locked", "old.vol"}));
}

void tst_VokitLogRecoverFiles::fullDisk_data()
{
    QTest::addColumn<int>("limit"); // in units of 512 bytes
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("gaps");
    QTest::addColumn<QByteArray>("what");

    const QByteArray document = "write 'new.vol'";
    QTest::newRow("no room for the first block") << 128 << 2000 << 0 << document;
    QTest::newRow("no room for a later block") << 1000 << 20000 << 0 << document;
    QTest::newRow("no room for what is left at the end") << 270 << 2050 << 0 << document;
    QTest::newRow("no room for the report") << 128 << 1 << 900 << QByteArray("write 'r.json'");
    QTest::newRow("no room for the gaps")
        << 128 << 1 << 5000 << QByteArray("keep the list of gaps");
}

// A limit stands for a full disk.
void tst_VokitLogRecoverFiles::fullDisk()
{
    QFETCH(int, limit);
    QFETCH(int, entries);
    QFETCH(int, gaps);
    QFETCH(QByteArray, what);
    write("old.vol", gHead + QByteArray("<Entry ").repeated(gaps) + gOne.repeated(entries));
    const char *const script = "cd \"$1\" && ulimit -f \"$2\" && "
                               "exec \"$0\" recover old.vol -o new.vol --report r.json";
    const ProgramRun run = runScript(script, {m_files->path(), QString::number(limit)});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors, "vokit-log: cannot " + what + ": File too large\n");
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(names(), QStringList{"old.vol"});
}

// What has been begun goes before the signal does its work.
void tst_VokitLogRecoverFiles::interrupted()
{
    QProcess process;
    process.start(PROGRAM, {"recover", "-", "-o", path("new.vol"), "--report", path("r.json")});
    process.write(gHead + gOne.repeated(5000));
    QVERIFY(process.waitForBytesWritten());
    const QString status = QString("/proc/%1/status").arg(process.processId());
    QTRY_VERIFY(!contentOf(status).contains("SigBlk:\t0000000000000000\n")); // it has begun
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
    process.write(gOne.repeated(5000));
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(process.exitCode(), SIGTERM);
    QCOMPARE(names(), QStringList{"old.vol"});
}

void tst_VokitLogRecoverFiles::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");

    const auto row = [](const char *name, const QStringList &arguments, const char *message) {
        QTest::newRow(name) << arguments << QByteArray(message);
    };
    row("no file", {"-o", "new.vol"}, "no file is given; see vokit-log recover --help");
    row("two files", {"old.vol", "b.vol", "-o", "new.vol"},
        "one file is needed, 2 are given; see vokit-log recover --help");
    row("no output", {"old.vol"}, "--output needs the name of a file");
    row("an empty output", {"old.vol", "-o", ""}, "--output needs the name of a file");
    row("two outputs", {"old.vol", "-o", "new.vol", "-o", "b.vol"},
        "--output is given more than once");
    row("an output without its value", {"old.vol", "-o"},
        "Missing value after '-o'; see vokit-log recover --help");
    row("an empty report", {"old.vol", "-o", "new.vol", "--report", ""},
        "--report needs the name of a file");
    row("a report on the standard output", {"old.vol", "-o", "new.vol", "--report", "-"},
        "--report goes to a file only; see vokit-log recover --help");
    row("an unknown option", {"old.vol", "-o", "new.vol", "--forced"},
        "Unknown option 'forced'; see vokit-log recover --help");
}

void tst_VokitLogRecoverFiles::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const ProgramRun run = recover(arguments);
    QCOMPARE(run.exitCode, 4);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errors, "vokit-log: " + message + '\n');
    QCOMPARE(names(), QStringList{"old.vol"});
}

void tst_VokitLogRecoverFiles::help()
{
    const ProgramRun run = runProgram({"recover", "--help"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors, QByteArray());
    QVERIFY(run.output.startsWith("Usage: vokit-log recover [OPTION...] FILE -o NEW\n"));
    QVERIFY(run.output.contains("\n  0  NEW stands, whatever was skipped\n"));
    QCOMPARE(run.output.count("Exit codes"), 1);
    QVERIFY(run.output.contains("\nExamples:\n"));
}

QTEST_GUILESS_MAIN(tst_VokitLogRecoverFiles)
#include "tst_VokitLogRecoverFiles.moc"
