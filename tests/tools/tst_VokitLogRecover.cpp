#include <QtTest>

#include "LogBytes.h"
#include "examples/ProgramRun.h"

#include <Vokit/ActionLog>
#include <Vokit/ExportActionLog>
#include <Vokit/XMLLogReader>

#include <memory>

using namespace bytes;
using vo::ActionLog;
using vo::ExportActionLog;
using vo::XMLLogReader;

namespace {

QByteArray stored(const char *name)
{
    return contentOf(QStringLiteral(STORED_LOGS "/") + name);
}

/// What XMLLogReader reads of a file, an entry a line, and how it ends.
struct Reading
{
    explicit Reading(const QString &name)
    {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s: not readable", qPrintable(name));
        XMLLogReader reader(&file);
        while (!reader.atEnd() && reader.error() == QXmlStreamReader::NoError) {
            if (const std::unique_ptr<vo::LogEntry> entry{reader.readNextLogEntry()})
                entries << text(*entry);
        }
        error = reader.error();
    }

    static QString text(const vo::LogEntry &entry)
    {
        QStringList values{entry.id().toString()};
        for (const vo::LogValue *value : entry.values())
            values << value->id().toString() + '=' + value->toString();
        return values.join('|');
    }

    QStringList entries;
    QXmlStreamReader::Error error = QXmlStreamReader::NoError;
};

QByteArray numberOf(int count, const char *one)
{
    return QByteArray::number(count) + ' ' + one + (count == 1 ? "" : "s");
}

} // namespace

/// recover: what comes back of a damaged file, and what is told of the rest.
class tst_VokitLogRecover : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<Tree>(); }

    void entries_data();
    void entries();
    void intact_data();
    void intact();
    void header_data();
    void header();
    void unknownClass();
    void otherLocale();
    void nothingWhole_data();
    void nothingWhole();
    void renamed();
    void setAside();
    void openedInVain();
    void report();
    void reportOfIntact();
    void summary();
    void manyGaps();
    void terminal();

private:
    QString path(const QString &name) const { return m_files->path(name); }
    QString file(const char *name, const QByteArray &content) const
    {
        QFile writer(path(name));
        if (!writer.open(QIODevice::WriteOnly) || writer.write(content) != content.size())
            qFatal("%s: not written", name);
        return writer.fileName();
    }
    ProgramRun recover(const QByteArray &content, const QStringList &options = {}) const
    {
        return runProgram(QStringList{"recover", file("old.vol", content), "-o", path("new.vol")} +
                          options);
    }

    std::unique_ptr<Tree> m_files;
};

void tst_VokitLogRecover::entries_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<QByteArray>>("entries");
    QTest::addColumn<int>("gaps");
    QTest::addColumn<int>("bytes");

    using List = QList<QByteArray>;
    const auto row = [](const char *name, const QByteArray &content, const List &list, int gaps,
                        int size) { QTest::newRow(name) << content << list << gaps << size; };
    const QByteArray log = gHead + gOne;
    const QByteArray torn = gTwo.left(34);
    const QByteArray illegal = entry("a\x01z");
    const QByteArray twoTags = gTwo.chopped(2) + "></Entry>";
    const List both{gOne, gTwo};

    row("torn end", log + gTwo + torn, both, 1, 34);
    row("torn entry, more behind", log + torn + gTwo, both, 1, 34);
    row("torn in a value that holds markup", gHead + torn + gOne + torn + gTwo, both, 2, 68);
    row("unfinished root tag", gDeclaration + gOpenRoot + gOne + gTwo, both, 1, gOpenRoot.size());
    row("no root", gOne + gTwo, both, 1, 0);
    row("a value that XML does not allow", log + illegal + gTwo, both, 1, illegal.size());
    row("two logs", log + gHead + gTwo, both, 1, gHead.size());
    row("two logs, the first one closed", log + gEnd.trimmed() + gHead + gTwo, both, 1,
        gEnd.trimmed().size() + gHead.size());
    row("foreign bytes in front", "mail: <x" + log + gTwo, both, 1, 8 + gDeclaration.size());
    row("foreign bytes between", log + "oops" + gTwo, both, 1, 4);
    row("an entry in a comment", log + "<!--" + gOne + "-->" + gTwo, both, 1, 7 + gOne.size());
    row("a tail of zeros", log + gTwo + QByteArray(4096, '\0'), both, 1, 4096);
    row("a block of zeros", log + torn + QByteArray(512, '\0') + gTwo, both, 1, 34 + 512);
    row("closed, and torn inside", log + torn + gTwo + gEnd, both, 1, 34);
    row("an entry of two tags", log + torn + twoTags, {gOne, twoTags}, 1, 34);
    row("one entry, one byte", "x" + gOne, {gOne}, 1, 1);
}

void tst_VokitLogRecover::entries()
{
    QFETCH(QByteArray, content);
    QFETCH(QList<QByteArray>, entries);
    QFETCH(int, gaps);
    QFETCH(int, bytes);
    const ProgramRun run = recover(content);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(contentOf(path("old.vol")), content);

    QStringList originals;
    for (const QByteArray &entry : entries)
        originals += Reading(file("one.vol", "<Entries>" + entry + "</Entries>")).entries;
    const Reading recovered(path("new.vol"));
    QCOMPARE(recovered.error, QXmlStreamReader::NoError);
    QCOMPARE(recovered.entries, originals);
    QCOMPARE(recovered.entries.size(), entries.size());
    const QByteArray document = contentOf(path("new.vol"));
    QVERIFY(document.endsWith(entries.join() + gEnd));

    const QByteArray whole = entries.size() == 1 ? "1 entry" : "2 entries";
    const QByteArray start = "recovered " + whole + " to " + path("new.vol").toUtf8() +
                             "\nskipped " + numberOf(gaps, "gap") + ", " + numberOf(bytes, "byte") +
                             '\n';
    QVERIFY2(run.output.startsWith(start), run.output);
    QCOMPARE(run.output.count("\n  "), gaps);
    const ProgramRun check = runProgram({"check", path("new.vol")});
    QCOMPARE(check.output, path("new.vol").toUtf8() + ": complete document, " + whole + '\n');
}

void tst_VokitLogRecover::intact_data()
{
    QTest::addColumn<QByteArray>("content");

    for (const char *const name : {"entries.vol", "backup.vol", "texts.vol"})
        QTest::newRow(name) << stored(name);
    QTest::newRow("no entry") << gHead;
    QTest::newRow("a root that is not ended") << gDeclaration + gOpenRoot;
    QTest::newRow("empty") << QByteArray();
}

// The same entries, and the end tag.
void tst_VokitLogRecover::intact()
{
    QFETCH(QByteArray, content);
    const ProgramRun run = recover(content);
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.endsWith("\nskipped nothing\n"));
    const Reading before(path("old.vol"));
    const Reading after(path("new.vol"));
    QCOMPARE(after.error, QXmlStreamReader::NoError);
    const QStringList entries =
        content.contains("<Entry ") ? before.entries.mid(0, after.entries.size()) : QStringList();
    QCOMPARE(after.entries, entries);
    QCOMPARE(after.entries.size(), content.count("<Entry "));
    if (content.contains(gHead))
        QVERIFY(contentOf(path("new.vol")).startsWith(gHead));
}

void tst_VokitLogRecover::header_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("start");

    const QByteArray other = QByteArray(gHead).replace("client.vol", "other.vol");
    QTest::newRow("open") << gDeclaration + gOpenRoot + gOne << gHead + gOne;
    QTest::newRow("of two logs, the first") << other + gOne + gHead + gTwo << other + gOne + gTwo;
    QTest::newRow("none: a new one")
        << gOne << gDeclaration + R"(<Entries Version="v0.1" LogFile="" Date="20)";
}

void tst_VokitLogRecover::header()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, start);
    QCOMPARE(recover(content).exitCode, 0);
    const QByteArray document = contentOf(path("new.vol"));
    QVERIFY2(document.startsWith(start), document);
}

// The program can't know what an application has added, and keeps it.
void tst_VokitLogRecover::unknownClass()
{
    const QByteArray door = R"(<Entry ID="Door" Time="x" who="a &amp; b" when='"'/>)";
    QCOMPARE(recover("x" + gHead + door).exitCode, 0);
    QVERIFY(contentOf(path("new.vol")).endsWith('>' + door + gEnd));
}

// Dates go over as they are.
void tst_VokitLogRecover::otherLocale()
{
    const QByteArray german = R"(<Entry ID="ExpD" Time="21.11.26 15:04" User="ann" Text="x"/>)";
    QCOMPARE(recover(gHead + german, {"--locale", "de_DE"}).exitCode, 0);
    QCOMPARE(contentOf(path("new.vol")), gHead + german + gEnd);
}

void tst_VokitLogRecover::nothingWhole_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("a text") << QByteArray("dear all,\n");
    QTest::newRow("a root and a torn entry") << gHead + gOne.chopped(1);
    QTest::newRow("zeros") << QByteArray(100000, '\0');
    QTest::newRow("half a root") << gDeclaration + "<Entr";
}

void tst_VokitLogRecover::nothingWhole()
{
    QFETCH(QByteArray, content);
    const ProgramRun run = recover(content, {"--report", path("report.json")});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.errors, "vokit-log: '" + path("old.vol").toUtf8() + "': no whole entry found\n");
    QCOMPARE(QDir(m_files->path()).entryList(QDir::Files), QStringList{"old.vol"});
    const ProgramRun out = runProgram({"recover", path("old.vol"), "-o", "-"});
    QCOMPARE(out.exitCode, 2);
    QCOMPARE(out.output, QByteArray());
}

void tst_VokitLogRecover::renamed()
{
    const ProgramRun run = recover(stored("rename.vol"), {"--report", path("report.json")});
    QCOMPARE(run.output,
             "recovered 3 entries to " + path("new.vol").toUtf8() +
                 "\nskipped nothing\n"
                 "  illegal character: 4 bytes from byte 277 on (line 1, column 278): a name that "
                 "XML does not allow, in an entry that was kept; its value stands under another "
                 "name, at the end of the entry\n");
    const Reading reading(path("new.vol"));
    QCOMPARE(reading.error, QXmlStreamReader::NoError);
    const QString time = "|Time=21 Nov 2026 15:04:05";
    QCOMPARE(reading.entries.size(), 3);
    QCOMPARE(reading.entries[0], "ExpD" + time + "|User=|Text=3 clips");
    QVERIFY2(reading.entries[1].startsWith("ExpR" + time + "|User=ann|Text='%1%2' to '%1%3'."),
             qPrintable(reading.entries[1]));
    QVERIFY(reading.entries[1].contains("|path=/media/usb/|"));
    QVERIFY(reading.entries[1].contains("|dest=new.avi"));
    QCOMPARE(reading.entries[2], "ExpE" + time + "|User=bob|Text=disk full");
    QVERIFY(contentOf(path("new.vol")).contains(" dest=\"new.avi\" src=\"old.avi\"/>"));
    const QJsonObject report = QJsonDocument::fromJson(contentOf(path("report.json"))).object();
    QCOMPARE(report["skippedBytes"].toInt(-1), 0);
    QCOMPARE(report["gaps"].toArray().size(), 1);
    QCOMPARE(report["gaps"].toArray()[0].toObject()["entryKept"].toBool(), true);
}

/// What a client leaves that renames an export, and is started again.
void tst_VokitLogRecover::setAside()
{
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_files->path()));
    ActionLog::getInstance()->setSuspended(false);
    ExportActionLog::send("3 clips", ExportActionLog::StateFinished);
    ExportActionLog::send("/usb/", "new.avi", "old.avi");
    ExportActionLog::send("disk full", ExportActionLog::StateError);
    ActionLog::deleteActionLog();
    ActionLog::getInstance()->setSuspended(false);
    ExportActionLog::send("again", ExportActionLog::StateFinished);
    const QDir folder = ActionLog::defaultFileInfo().dir();
    ActionLog::deleteActionLog();

    const QStringList aside = folder.entryList({"*.vol.corrupt"});
    QCOMPARE(aside.size(), 1);
    const QString old = folder.filePath(aside.first());
    QCOMPARE(Reading(old).error, QXmlStreamReader::NotWellFormedError);
    const ProgramRun run = runProgram({"recover", old, "-o", path("new.vol")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.contains("in an entry that was kept"));
    const Reading reading(path("new.vol"));
    QCOMPARE(reading.error, QXmlStreamReader::NoError);
    QCOMPARE(reading.entries.size(), 3);
    QVERIFY(reading.entries[0].startsWith("ExpD|") && reading.entries[0].endsWith("=3 clips"));
    QVERIFY(reading.entries[1].startsWith("ExpR|") && reading.entries[1].contains("=new.avi"));
    QVERIFY(reading.entries[2].startsWith("ExpE|") && reading.entries[2].endsWith("=disk full"));
}

/// What a client leaves that opens its log, logs nothing, and logs when it is started again.
void tst_VokitLogRecover::openedInVain()
{
    const QString name = path("client.vol");
    {
        ActionLog log(name);
        log.setSuspended(false);
        log.activate();
    }
    const QByteArray header = contentOf(name);
    QVERIFY(header.endsWith('"')); // the tag is open
    QFile file(name);
    QVERIFY(file.open(QIODevice::Append));
    file.write(gOne + gTwo); // as older clients do
    file.close();
    QVERIFY(Reading(name).error != QXmlStreamReader::NoError);
    const ProgramRun run = runProgram({"recover", name, "-o", path("new.vol")});
    QVERIFY2(run.output.contains("\nskipped 1 gap, "), run.output);
    QVERIFY(run.output.contains("\n  unfinished root tag: "));
    QCOMPARE(contentOf(path("new.vol")), header + '>' + gOne + gTwo + gEnd);
    const Reading reading(path("new.vol"));
    QCOMPARE(reading.error, QXmlStreamReader::NoError);
    QCOMPARE(reading.entries.size(), 2);
}

void tst_VokitLogRecover::report()
{
    const QByteArray illegal = entry("a\x01z");
    const QByteArray start = gHead + gOne;
    const QByteArray content = start + gRename + illegal + gTwo + gTwo.left(34);
    QCOMPARE(recover(content, {"--report", path("report.json")}).exitCode, 0);
    const QByteArray json = contentOf(path("report.json"));
    QVERIFY(json.endsWith("}\n"));
    const auto gap = [](const char *kind, int position, int length, bool isKept) {
        return QJsonObject{{"kind", kind}, {"position", position},   {"length", length},
                           {"line", 1},    {"column", position + 1}, {"entryKept", isKept}};
    };
    const int behind = start.size() + gRename.size();
    const QJsonObject expected{
        {"input", path("old.vol")},
        {"output", path("new.vol")},
        {"entries", 3},
        {"bytesRead", content.size()},
        {"condition", "damaged"},
        {"header", QJsonObject{{"Version", "v0.1"},
                               {"LogFile", "/logs/client.vol"},
                               {"Date", "2026-11-21T15:04:05"}}},
        {"gaps",
         QJsonArray{gap("illegal character", start.size() + gRename.indexOf('\0'), 4, true),
                    gap("illegal character", behind, illegal.size(), false),
                    gap("truncated end", behind + illegal.size() + gTwo.size(), 34, false)}},
        {"skippedBytes", illegal.size() + 34}};
    QCOMPARE(QJsonDocument::fromJson(json).object(), expected);
}

void tst_VokitLogRecover::reportOfIntact()
{
    const QString name = path("re \"port\"\n.json");
    QCOMPARE(recover(gHead, {"--report", name}).exitCode, 0);
    const QJsonObject report = QJsonDocument::fromJson(contentOf(name)).object();
    QCOMPARE(report["condition"].toString(), QString("live"));
    QCOMPARE(report["entries"].toInt(-1), 0);
    QVERIFY(report["gaps"].isArray());
    QVERIFY(report["gaps"].toArray().isEmpty());
    QCOMPARE(recover("", {"--report", name, "--force"}).exitCode, 0);
    const QJsonObject empty = QJsonDocument::fromJson(contentOf(name)).object();
    QCOMPARE(empty["condition"].toString(), QString("empty"));
    QVERIFY(empty["header"].isObject());
    QVERIFY(empty["header"].toObject().isEmpty());
}

void tst_VokitLogRecover::summary()
{
    const QByteArray start = gHead + gOne;
    const QByteArray position = QByteArray::number(start.size());
    const ProgramRun run = recover(start + gTwo.left(34) + gTwo + "</");
    QCOMPARE(run.output,
             "recovered 2 entries to " + path("new.vol").toUtf8() +
                 "\nskipped 2 gaps, 36 bytes\n"
                 "  torn entry: 34 bytes from byte " +
                 position + " on (line 1, column " + QByteArray::number(start.size() + 1) +
                 ")\n"
                 "  truncated end: 2 bytes from byte " +
                 QByteArray::number(start.size() + 34 + gTwo.size()) + " on (line 1, column " +
                 QByteArray::number(start.size() + 35 + gTwo.size()) + ")\n");
}

// All of them in a pipe and in the report; more than the buffers hold.
void tst_VokitLogRecover::manyGaps()
{
    constexpr int count = 20000;
    const ProgramRun run =
        recover(gHead + (gOne + "<Entry ").repeated(count), {"--report", path("report.json")});
    QCOMPARE(run.output.count("\n  "), count);
    const Reading reading(path("new.vol"));
    QCOMPARE(reading.error, QXmlStreamReader::NoError);
    QCOMPARE(reading.entries.size(), count);
    const QJsonObject report = QJsonDocument::fromJson(contentOf(path("report.json"))).object();
    QCOMPARE(report["gaps"].toArray().size(), count);
    QCOMPARE(report["skippedBytes"].toInt(), count * 6 + 1); // a blank is the end of the last one
}

void tst_VokitLogRecover::terminal()
{
    const QByteArray content = gHead + (gOne + "<Entry ").repeated(25);
    QString name;
    const int master = openTerminal(name);
    QVERIFY(master >= 0);
    QProcess process;
    process.setStandardOutputFile(name);
    process.start(PROGRAM, {"recover", file("old.vol", content), "-o", path("new.vol")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QByteArray shown(1 << 16, '\0');
    shown.resize(static_cast<int>(::read(master, shown.data(), static_cast<size_t>(shown.size()))));
    for (char more[4096]; !shown.contains("lists all");) {
        const ssize_t size = ::read(master, more, sizeof more);
        QVERIFY(size > 0);
        shown.append(more, static_cast<int>(size));
    }
    ::close(master);
    QCOMPARE(shown.count("\n  "), 20);
    QVERIFY(shown.endsWith("\r\nand 5 more; --report FILE lists all\r\n"));
    QVERIFY(shown.contains("\nskipped 25 gaps, "));
}

QTEST_GUILESS_MAIN(tst_VokitLogRecover)
#include "tst_VokitLogRecover.moc"
