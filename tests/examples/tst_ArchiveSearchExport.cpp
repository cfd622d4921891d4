#include <QtTest>

#include "ProgramRun.h"

#include <csignal>

namespace {

const char gHeader[] =
    "path,name,extension,size,modified,age,hidden,depth,link,permissions,owner\r\n";

/// A process to which someone has pressed Ctrl-C, and which hasn't got to see it yet.
class InterruptedProcess : public BoundProcess
{
protected:
    void setupChildProcess() override
    {
        BoundProcess::setupChildProcess();
        sigset_t interrupt;
        ::sigemptyset(&interrupt);
        ::sigaddset(&interrupt, SIGINT);
        ::sigprocmask(SIG_BLOCK, &interrupt, nullptr);
        ::raise(SIGINT);
    }
};

} // namespace

/// --export-to: the file, and what the log says of it.
class tst_ArchiveSearchExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void content();
    void quoted_data();
    void quoted();
    void order();
    void nothingFound();
    void logged();
    void replaced();
    void refused_data();
    void refused();
    void notWritable();
    void interrupted();

private:
    ProgramRun run(const QStringList &options) const
    {
        return runProgram(options + QStringList{m_tree.path()}, {}, m_scratch->path());
    }
    QStringList entries() const;
    QString path(const QString &name) const { return m_scratch->path(name); }
    QString period(const char *target) const;

    Tree m_tree;
    std::unique_ptr<Tree> m_scratch; ///< for the home and the files of each test
};

void tst_ArchiveSearchExport::initTestCase()
{
    m_tree.addFile("b.avi", 20, utc("2026-03-05T18:30:00.001Z"));
    m_tree.addFile("sub/a.txt", 100, utc("2026-03-05T10:00:00Z"));
    m_tree.addFile("sub/.c.avi", 3, utc("2026-03-08T00:00:00Z"));
}

void tst_ArchiveSearchExport::init()
{
    m_scratch = std::make_unique<Tree>();
}

void tst_ArchiveSearchExport::cleanup()
{
    m_scratch.reset();
}

/// What the log says behind the two lines of the search, without time and user.
QStringList tst_ArchiveSearchExport::entries() const
{
    const QByteArray output = runProgram({"--show-log"}, {}, m_scratch->path()).output;
    QStringList lines = QString::fromUtf8(output).split('\n', Qt::SkipEmptyParts).mid(2);
    for (QString &line : lines)
        line = line.section('|', 2);
    return lines;
}

QString tst_ArchiveSearchExport::period(const char *target) const
{
    return QString("text: Format='%1'; Source='%2'; Date and time from='%4'; Date and time to "
                   "'%5'; Target='%3'.|format: unknown|source: ") +
           m_tree.path() + "|dest: " + path(target) +
           "|from: 5 Mar 2026 15:30:00|to: 8 Mar 2026 05:30:00|"; // in Kolkata
}

void tst_ArchiveSearchExport::content()
{
    const ProgramRun result = run({"--json", "--name", "b.avi", "--export-to", path("x.csv")});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    const QByteArray csv = contentOf(path("x.csv"));
    const QByteArray row = "b.avi,b.avi,avi,20,2026-03-05T18:30:00.001Z,";
    QVERIFY2(csv.startsWith(gHeader + row), csv);
    QVERIFY2(
        csv.endsWith(",false,0,false,416," + QFileInfo(path("x.csv")).owner().toUtf8() + "\r\n"),
        csv);
    QCOMPARE(csv.count('\n'), 2);
    const qlonglong modified = 1772735400001000;
    QCOMPARE(
        result.json.value("export").toObject(),
        (QJsonObject{
            {"file", path("x.csv")}, {"rows", 1}, {"oldest", modified}, {"newest", modified}}));
    const ProgramRun text = run({"--export-to", path("x.csv")});
    QVERIFY(text.output.endsWith("\n3 matches are in '" + path("x.csv").toUtf8() + "'.\n"));
}

void tst_ArchiveSearchExport::quoted_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("field");

    const auto row = [](const char *name, const char *field) {
        QTest::newRow(field) << QByteArray(name) << QByteArray(field);
    };
    row("plain", "plain");
    row(" blanks ", " blanks ");
    row("a,b", "\"a,b\"");
    row("say \"hi\"", "\"say \"\"hi\"\"\"");
    row("\"", "\"\"\"\"");
    row("line\nfeed", "\"line\nfeed\"");
    row("carriage\rreturn", "\"carriage\rreturn\"");
    row("semicolon;'", "semicolon;'");
    row("\xc3\xa4\xf0\x9f\x98\x80", "\xc3\xa4\xf0\x9f\x98\x80");
    row("not \xff UTF-8", "not \xef\xbf\xbd UTF-8");
}

void tst_ArchiveSearchExport::quoted()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, field);
    const Tree tree;
    tree.addFile(name);
    const ProgramRun result =
        runProgram({"--export-to", path("x.csv"), tree.path()}, {}, m_scratch->path());
    QCOMPARE(result.exitCode, 0);
    const QByteArray csv = contentOf(path("x.csv"));
    QVERIFY2(csv.startsWith(gHeader + field + ',' + field + ",,0,1970-01-01T00:00:00.000Z,"), csv);
}

void tst_ArchiveSearchExport::order()
{
    // All matches, also those beyond the limit of the list.
    const ProgramRun result =
        run({"--sort", "-size", "--limit", "1", "--export-to", path("x.csv")});
    QCOMPARE(result.exitCode, 0);
    QList<QByteArray> names;
    const QList<QByteArray> lines = contentOf(path("x.csv")).split('\n');
    for (const QByteArray &line : lines)
        names.append(line.split(',').first());
    QCOMPARE(names, (QList<QByteArray>{"path", "sub/a.txt", "b.avi", "sub/.c.avi", ""}));
}

void tst_ArchiveSearchExport::nothingFound()
{
    QCOMPARE(run({"--name", "nothing", "--export-to", path("x.csv")}).exitCode, 0);
    QCOMPARE(contentOf(path("x.csv")), QByteArray(gHeader));
    QVERIFY(entries().value(0).startsWith("text: Format='%1'; Source='%2'; Target='%3'.|"));
}

void tst_ArchiveSearchExport::logged()
{
    QCOMPARE(run({"--export-to", path("x.csv")}).exitCode, 0);
    QCOMPARE(entries(),
             (QStringList{period("x.csv") + "Export start", period("x.csv") + "Export written",
                          "text: 3 matches are in '" + path("x.csv") + "'|Export done"}));
}

void tst_ArchiveSearchExport::replaced()
{
    m_scratch->addFile("x.csv", 100000);
    QCOMPARE(::symlink("x.csv", m_scratch->bytes("link.csv")), 0);
    QCOMPARE(run({"--export-to", path("link.csv")}).exitCode, 0);
    QCOMPARE(contentOf(path("x.csv")).count('\n'), 4);
    QVERIFY(QFileInfo(path("link.csv")).isSymLink());
}

void tst_ArchiveSearchExport::refused_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("folder") << "folder";
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("link to a pipe") << "link";
}

void tst_ArchiveSearchExport::refused()
{
    QFETCH(QString, target);
    QVERIFY(QDir().mkpath(path("folder")));
    QCOMPARE(::mkfifo(m_scratch->bytes("pipe"), 0600), 0);
    m_scratch->addLink("pipe", "link"); // of a device, root would lose the real one
    const ProgramRun result = run({"--export-to", path(target)});
    QCOMPARE(result.exitCode, 2);
    const QString reason =
        QString("cannot export to '%1': it is not a regular file").arg(path(target));
    QCOMPARE(QString::fromUtf8(result.errors), "archive-search: " + reason + '\n');
    QCOMPARE(entries(), (QStringList{period(qPrintable(target)) + "Export start",
                                     "text: " + reason + "|Export error"}));
}

void tst_ArchiveSearchExport::notWritable()
{
    m_scratch->addFile("shut/x.csv", 7);
    m_scratch->setMode("shut", 0555);
    const ProgramRun result = run({"--export-to", path("shut/x.csv")});
    m_scratch->setMode("shut", 0755);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.errors.startsWith("archive-search: cannot export to '"));
    QCOMPARE(QFileInfo(path("shut/x.csv")).size(), 7);
    QVERIFY(entries().value(1).endsWith("|Export error"));
}

void tst_ArchiveSearchExport::interrupted()
{
    m_scratch->addFile("folder/x.csv", 7);
    InterruptedProcess process;
    const ProgramRun result =
        resultOf(process, PROGRAM, {"--export-to", path("folder/x.csv"), m_tree.path()}, {},
                 m_scratch->path());
    const QString reason = "the export to '" + path("folder/x.csv") + "' was interrupted";
    QCOMPARE(QString::fromUtf8(result.errors), "archive-search: " + reason + '\n');
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QDir(path("folder")).entryList(QDir::Files | QDir::Hidden), QStringList{"x.csv"});
    QCOMPARE(QFileInfo(path("folder/x.csv")).size(), 7);
    QCOMPARE(entries(), (QStringList{period("folder/x.csv") + "Export start",
                                     "text: " + reason + "|Export abort"}));
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchExport)
#include "tst_ArchiveSearchExport.moc"
