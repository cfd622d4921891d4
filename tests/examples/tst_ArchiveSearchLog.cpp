#include <QtTest>

#include "ProgramRun.h"

#include <Vokit/ConstExpression>
#include <Vokit/ExportLogEntries>
#include <Vokit/ExpressionOperators>
#include <Vokit/XMLLogWriter>

#include <QSettings>

#include <pwd.h>

namespace {

constexpr char gDefaultLog[] = "state/Vokit/archive-search/archive-search.vol";

void write(const QString &file, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(file).path());
    QFile writer(file);
    QVERIFY(writer.open(QIODevice::WriteOnly));
    QCOMPARE(writer.write(bytes), qint64(bytes.size()));
}

// A log as an earlier run has left it.
void writeLog(const QString &file, const QDateTime &time)
{
    QByteArray bytes;
    QTextStream stream(&bytes);
    vo::XMLLogWriter writer(&stream, QString(), time);
    writer.writeStartDocument();
    ExportDoneLogEntry entry("earlier");
    entry.setTime(time);
    entry.writeTo(writer);
    stream.flush();
    write(file, bytes);
}

QStringList jsonLines(const ProgramRun &run)
{
    QStringList lines;
    const QJsonArray entries = run.json.value("log").toObject().value("entries").toArray();
    for (const QJsonValue &entry : entries)
        lines.append(entry.toString());
    return lines;
}

QString userName()
{
    return QString::fromUtf8(::getpwuid(::getuid())->pw_name);
}

} // namespace

class tst_ArchiveSearchLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void freshLog();
    void grows();
    void manyAtOnce();
    void failedSearch();
    void oddNames();
    void users_data();
    void users();
    void refused_data();
    void refused();

    void splitIsKept_data();
    void splitIsKept();
    void splitsBySize();
    void splitsByDate_data();
    void splitsByDate();
    void moved();
    void noLog();
    void settingsThatCantBeKept();

    void damaged_data();
    void damaged();
    void damagedAndStuck();
    void unusable_data();
    void unusable();
    void noDefaultLog();

    void showLog();
    void showLogWithASearch();
    void showDamagedLog();

private:
    ProgramRun run(const QStringList &arguments) const { return runProgram(arguments, {}, path()); }
    ProgramRun search(const QStringList &options) const;
    QStringList entries() const;
    QString path(const QString &name = QString()) const { return m_home->path(name); }
    QString log() const { return path(gDefaultLog); }
    QStringList filesBesideTheLog(const char *pattern) const;
    QString entry(const char *state, int rows, int matches) const;
    QString switched(const QString &from, const QString &to) const;

    Tree m_tree;
    std::unique_ptr<Tree> m_home; ///< a new one for each test
};

void tst_ArchiveSearchLog::initTestCase()
{
    m_tree.addFile("a.txt", 1, utc("2026-03-05T10:00:00Z"));
    m_tree.addFile("b.avi", 2, utc("2026-03-06T10:00:00Z"));
}

void tst_ArchiveSearchLog::init()
{
    m_home = std::make_unique<Tree>();
}

void tst_ArchiveSearchLog::cleanup()
{
    m_home.reset();
}

// Finds one of two files, whatever becomes of the log.
ProgramRun tst_ArchiveSearchLog::search(const QStringList &options) const
{
    const ProgramRun result =
        run(QStringList{"--json", "--extension", "txt"} + options + QStringList{m_tree.path()});
    const auto check = [&] {
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.paths(), QStringList{"a.txt"});
    };
    check();
    return result;
}

/// The log's lines without the time, and without the user where it is that of the system.
QStringList tst_ArchiveSearchLog::entries() const
{
    QStringList lines = jsonLines(run({"--show-log", "--json"}));
    for (QString &line : lines) {
        [&] { QVERIFY2(line.startsWith("Time: "), qPrintable(line)); }();
        line = line.section('|', 1);
        line.remove("User: " + userName() + '|');
    }
    return lines;
}

QStringList tst_ArchiveSearchLog::filesBesideTheLog(const char *pattern) const
{
    return QFileInfo(log()).dir().entryList({QLatin1String(pattern)});
}

QString tst_ArchiveSearchLog::entry(const char *state, int rows, int matches) const
{
    return QString("state: %1|rows: %2|matches: %3|folder: %4|filter: extension IN (\"txt\")|"
                   "Archive search")
        .arg(state)
        .arg(rows)
        .arg(matches)
        .arg(m_tree.path());
}

QString tst_ArchiveSearchLog::switched(const QString &from, const QString &to) const
{
    return QString("oldFile: %1|newFile: %2|Switched log").arg(from, to);
}

void tst_ArchiveSearchLog::freshLog()
{
    const ProgramRun result = search({});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.json.value("log").toObject(),
             (QJsonObject{{"file", log()}, {"user", userName()}, {"suspended", false}}));
    const QByteArray bytes = contentOf(log());
    QVERIFY(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Entries "));
    QVERIFY(bytes.contains(" ApplicationVersion=\"0.1.0\""));
    QCOMPARE(bytes.count("<Entry ID=\"Find\" Time=\""), 2);
    QVERIFY(bytes.contains(" Stat=\"finished\" Rows=\"2\" Hits=\"1\" Fold=\""));
    QCOMPARE(entries(), (QStringList{entry("started", 0, 0), entry("finished", 2, 1)}));
}

void tst_ArchiveSearchLog::grows()
{
    for (int i = 1; i <= 3; ++i) {
        search({});
        QCOMPARE(entries().size(), 2 * i);
    }
    QCOMPARE(contentOf(log()).count("<Entries "), 1);
}

void tst_ArchiveSearchLog::manyAtOnce()
{
    const char script[] =
        "for i in 1 2 3 4 5 6 7 8; do \"$0\" --json \"$1\" >/dev/null & done; wait";
    const ProgramRun result = runScript(script, {m_tree.path()}, path());
    QCOMPARE(result.errors, QByteArray());
    const QStringList lines = entries();
    QCOMPARE(lines.size(), 16);
    QCOMPARE(lines.filter("state: finished|rows: 2|matches: 2|").size(), 8);
    QCOMPARE(contentOf(log()).count("<Entries "), 1);
}

void tst_ArchiveSearchLog::failedSearch()
{
    QByteArray filter;
    QDataStream stream(&filter, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    vogen::Expression::writeExpression(stream, vogen::ValueExpression("nothing", "") ==
                                                   vogen::ConstExpression(1, false));
    write(path("filter"), filter);
    QCOMPARE(run({"--load-filter", path("filter"), m_tree.path()}).exitCode, 2);
    const QStringList lines = entries();
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).startsWith("state: started|"));
    QVERIFY(lines.at(1).startsWith("state: failed|rows: 0|matches: 0|"));
}

// What has no place in XML must not make the log unreadable.
void tst_ArchiveSearchLog::oddNames()
{
    const Tree tree;
    const QByteArray name("<&\"' %1 \n\x01\xef\xbf\xbf");
    tree.addFile(name + "/x");
    const ProgramRun result = run({tree.path(QString::fromUtf8(name))});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(entries().value(1), "state: finished|rows: 1|matches: 1|folder: " + tree.path() +
                                     "/<&\"' %1 \\x0a\\x01\\xffff|filter: |Archive search");
    QCOMPARE(filesBesideTheLog("*.corrupt"), QStringList());
}

void tst_ArchiveSearchLog::users_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("user");

    QTest::newRow("of the system") << QStringList() << userName();
    QTest::newRow("given") << QStringList{"--user", "eve"} << "eve";
    QTest::newRow("second") << QStringList{"--second-user", "bob"} << userName() + " (bob)";
    QTest::newRow("both") << QStringList{"--user", "eve", "--second-user", "bob"} << "eve (bob)";
    QTest::newRow("umlaut") << QStringList{"--user", "J\xc3\xb6rg <j>"}
                            << QString::fromUtf8("J\xc3\xb6rg <j>");
    QTest::newRow("escape") << QStringList{"--user", "\x1b[2J"} << "\\x1b[2J";
}

void tst_ArchiveSearchLog::users()
{
    QFETCH(QStringList, options);
    QFETCH(QString, user);
    QCOMPARE(search(options).json.value("log").toObject().value("user").toString(), user);
    const QStringList lines = jsonLines(run({"--show-log", "--json"}));
    QCOMPARE(lines.size(), 2);
    for (const QString &line : lines)
        QCOMPARE(line.split('|').at(1), "User: " + user);
}

void tst_ArchiveSearchLog::refused_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("reason");

    const QString split = "'%1' is not a way to split: use none, daily, weekly, monthly or a size";
    const QString size = "'%1' is not a size to split at: use one from 1 to 2147483647 bytes";
    for (const char *text : {"", "yearly", "Daily", "-1", " 1"})
        QTest::addRow("split '%s'", text) << QStringList{"--split", text} << split.arg(text);
    for (const char *text : {"0", "2G", "2147483648"})
        QTest::addRow("split '%s'", text) << QStringList{"--split", text} << size.arg(text);
    QTest::newRow("no user") << QStringList{"--user", ""} << "'' is not the name of a user";
    QTest::newRow("no second user")
        << QStringList{"--second-user", ""} << "'' is not the name of a user";
    QTest::newRow("no log") << QStringList{"--log", ""} << "--log needs the name of a file";
    QTest::newRow("no export") << QStringList{"--export-to", ""}
                               << "--export-to needs the name of a file";
}

void tst_ArchiveSearchLog::refused()
{
    QFETCH(QStringList, options);
    QFETCH(QString, reason);
    const ProgramRun result = run(options + QStringList{m_tree.path()});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.errors), "archive-search: " + reason + '\n');
    QVERIFY(QDir(path()).isEmpty());
}

void tst_ArchiveSearchLog::splitIsKept_data()
{
    QTest::addColumn<QString>("split");
    QTest::addColumn<int>("policy");
    QTest::addColumn<int>("size");

    QTest::newRow("none") << "none" << 0 << 1048576;
    QTest::newRow("daily") << "daily" << 1 << 1048576;
    QTest::newRow("weekly") << "weekly" << 2 << 1048576;
    QTest::newRow("monthly") << "monthly" << 4 << 1048576;
    QTest::newRow("bytes") << "300000" << 8 << 300000;
    QTest::newRow("unit") << "64K" << 8 << 65536;
    QTest::newRow("largest") << "2147483647" << 8 << 2147483647;
}

void tst_ArchiveSearchLog::splitIsKept()
{
    QFETCH(QString, split);
    const QString file = path("config/Vokit/archive-search.ini");
    search({"--split", split});
    for (int i = 0; i < 2; ++i) {
        const QSettings settings(file, QSettings::IniFormat);
        QTEST(settings.value("ActionLog/SplitState").toInt(), "policy");
        QTEST(settings.value("ActionLog/SplitSize").toInt(), "size");
        search({});
    }
}

void tst_ArchiveSearchLog::splitsBySize()
{
    search({});
    const qint64 size = QFileInfo(log()).size();
    QCOMPARE(search({"--split", QString::number(size - 1)}).errors, QByteArray());
    const QStringList archives = filesBesideTheLog("archive-search *.vol");
    QCOMPARE(archives.size(), 1);
    QCOMPARE(QFileInfo(QFileInfo(log()).dir().filePath(archives.first())).size(), size);
    QCOMPARE(entries(), (QStringList{entry("started", 0, 0), entry("finished", 2, 1)}));
    QThread::sleep(1); // an archive is named after its second
    search({});        // the size is kept
    QCOMPARE(filesBesideTheLog("archive-search *.vol").size(), 2);
}

void tst_ArchiveSearchLog::splitsByDate_data()
{
    QTest::addColumn<QString>("split");
    QTest::addColumn<bool>("isOver");
    QTest::addColumn<QString>("archive");

    // The number of the day, the week or the month decides, without the year.
    const QDate today = QDate::currentDate();
    QTest::newRow("daily") << "daily" << (today.dayOfYear() > 1) << "archive-search 2024-1-01.vol";
    QTest::newRow("weekly") << "weekly" << (today.weekNumber() > 1) << "archive-search 2024-1.vol";
    QTest::newRow("monthly") << "monthly" << (today.month() > 1) << "archive-search 2024-Jan.vol";
    QTest::newRow("none") << "none" << false << "";
}

void tst_ArchiveSearchLog::splitsByDate()
{
    QFETCH(QString, split);
    QFETCH(bool, isOver);
    writeLog(log(), QDateTime(QDate(2024, 1, 1), QTime(12, 0)));
    QCOMPARE(search({"--split", split}).errors, QByteArray());
    if (!isOver) {
        QCOMPARE(filesBesideTheLog("archive-search *"), QStringList());
        QCOMPARE(entries().size(), 3);
        return;
    }
    QTEST(filesBesideTheLog("archive-search *").join('/'), "archive");
    QCOMPARE(entries(), (QStringList{entry("started", 0, 0), entry("finished", 2, 1)}));
}

void tst_ArchiveSearchLog::moved()
{
    const QString other = path("other.vol");
    const QStringList one{entry("started", 0, 0), entry("finished", 2, 1)};
    search({});
    const ProgramRun result = search({"--log", other});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.json.value("log").toObject().value("file").toString(), other);
    QCOMPARE(entries(), QStringList(switched(log(), other)) + one);
    search({}); // kept, and no further move
    QCOMPARE(entries(), QStringList(switched(log(), other)) + one + one);
    search({"--log", log()});
    const QStringList moves{switched(log(), other), switched(other, log())};
    QCOMPARE(entries(), one + moves + one);
}

void tst_ArchiveSearchLog::noLog()
{
    const ProgramRun result =
        search({"--no-log", "--split", "daily", "--export-to", path("x.csv")});
    QCOMPARE(result.errors, QByteArray());
    QVERIFY(result.json.value("log").toObject().value("suspended").toBool());
    QVERIFY(!QFile::exists(log()));
    search({});
    search({"--no-log", "--log", path("other.vol")});
    QVERIFY(!QFile::exists(path("other.vol")));
    search({}); // where the run without a log has moved it, and with a log
    QVERIFY(QFile::exists(path("other.vol")));
    QCOMPARE(entries().size(), 2);
}

void tst_ArchiveSearchLog::settingsThatCantBeKept()
{
    write(path("config"), "a file, and no folder");
    QCOMPARE(search({}).errors, QByteArray());
    const QString settings = path("config/Vokit/archive-search.ini");
    QCOMPARE(QString::fromUtf8(search({"--split", "daily"}).errors),
             QString("archive-search: cannot keep the settings in '%1'\n").arg(settings));
    QCOMPARE(entries().size(), 4);
}

void tst_ArchiveSearchLog::damaged_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no XML") << QByteArray("hello");
    QTest::newRow("wrong nesting") << QByteArray("<Entries><Entry ID=\"Find\"></Entries>");
    QTest::newRow("no quotes") << QByteArray("<Entries><Entry ID=Find/>");
    QTest::newRow("zero byte") << QByteArray("<Entries><Entry ID=\"Fi\0d\"/>", 27);
}

void tst_ArchiveSearchLog::damaged()
{
    QFETCH(QByteArray, content);
    write(log(), content);
    const ProgramRun result = search({});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.errors.startsWith("archive-search: the log '" + log().toUtf8() +
                                      "' is damaged and goes aside: "),
             result.errors);
    QCOMPARE(result.errors.count('\n'), 1);
    const QStringList aside = filesBesideTheLog("archive-search *.vol.corrupt");
    QCOMPARE(aside.size(), 1);
    QCOMPARE(contentOf(QFileInfo(log()).dir().filePath(aside.first())), content);
    QCOMPARE(entries(), (QStringList{entry("started", 0, 0), entry("finished", 2, 1)}));
    QCOMPARE(search({}).errors, QByteArray());
}

void tst_ArchiveSearchLog::damagedAndStuck()
{
    write(log(), "hello");
    m_home->setMode("state/Vokit/archive-search", 0555);
    const ProgramRun result = search({});
    m_home->setMode("state/Vokit/archive-search", 0755);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors.count('\n'), 2);
    QVERIFY(result.errors.contains("\narchive-search: cannot set the log aside in '"));
    QVERIFY(contentOf(log()).startsWith("hello"));
}

void tst_ArchiveSearchLog::unusable_data()
{
    QTest::addColumn<QString>("file");

    QTest::newRow("folder without write access") << "shut/x.vol";
    QTest::newRow("no folder") << "nothing/x.vol";
    QTest::newRow("a folder itself") << "shut";
    QTest::newRow("below a file") << "file/x.vol";
}

void tst_ArchiveSearchLog::unusable()
{
    QFETCH(QString, file);
    QDir().mkpath(path("shut"));
    m_home->setMode("shut", 0555);
    write(path("file"), "");
    const ProgramRun result = search({"--log", path(file)});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.errors),
             QString("archive-search: cannot open the log '%1'; '%2' takes its place\n")
                 .arg(path(file), log()));
    QCOMPARE(entries(), (QStringList{switched(path(file), log()), entry("started", 0, 0),
                                     entry("finished", 2, 1)}));
    const QSettings settings(path("config/Vokit/archive-search.ini"), QSettings::IniFormat);
    QCOMPARE(settings.value("ActionLog/ActionLogPath").toString(), path(file));
    QVERIFY(settings.value("ActionLog/isDefaultLogPath").toBool());
}

void tst_ArchiveSearchLog::noDefaultLog()
{
    write(path("state"), "a file, and no folder");
    const ProgramRun result = search({"--export-to", path("x.csv")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.errors),
             QString("archive-search: cannot open the log '%1'; nothing is logged\n").arg(log()));
    QVERIFY(QFile::exists(path("x.csv")));
}

void tst_ArchiveSearchLog::showLog()
{
    const ProgramRun none = run({"--show-log"});
    QCOMPARE(none.exitCode, 0);
    QCOMPARE(none.output, QByteArray());
    QVERIFY(!QFile::exists(log()));

    search({"--user", "eve"});
    const QByteArray before = contentOf(log());
    const ProgramRun shown = run({"--show-log"});
    QCOMPARE(shown.exitCode, 0);
    QCOMPARE(shown.errors, QByteArray());
    QCOMPARE(shown.output.count('\n'), 2);
    QVERIFY(shown.output.startsWith("Time: "));
    QVERIFY(shown.output.endsWith("|User: eve|" + entry("finished", 2, 1).toUtf8() + '\n'));
    QCOMPARE(contentOf(log()), before);

    const ProgramRun wrong = run({"--show-log", "--name", "x"});
    QCOMPARE(wrong.exitCode, 2);
    QVERIFY(wrong.errors.contains("one folder is needed"));
}

void tst_ArchiveSearchLog::showLogWithASearch()
{
    const ProgramRun text = run({"--show-log", m_tree.path()});
    QCOMPARE(text.exitCode, 0);
    const QList<QByteArray> parts = text.output.split('\n');
    const int heading = parts.indexOf("Log " + log().toUtf8());
    QVERIFY(heading > 0);
    QCOMPARE(parts.size(), heading + 4); // this very search
    QCOMPARE(jsonLines(search({"--show-log"})).size(), 4);
    QCOMPARE(jsonLines(search({"--show-log", "--no-log"})).size(), 4);
}

void tst_ArchiveSearchLog::showDamagedLog()
{
    search({});
    const QByteArray content = contentOf(log()) + "<Entry";
    write(log(), content + " ID=x/>");
    const ProgramRun shown = run({"--show-log"});
    QCOMPARE(shown.exitCode, 3);
    QVERIFY(shown.errors.startsWith("archive-search: log '" + log().toUtf8() + "': "));
    QCOMPARE(shown.output.count("|Archive search\n"), 2);
    QCOMPARE(shown.output.count("|Action log error\n"), 1);
    QCOMPARE(contentOf(log()), content + " ID=x/>"); // looking at it moves nothing

    m_home->setMode(gDefaultLog, 0);
    QCOMPARE(run({"--show-log"}).exitCode, 3);
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchLog)
#include "tst_ArchiveSearchLog.moc"
