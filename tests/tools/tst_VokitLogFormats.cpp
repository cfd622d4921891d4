#include "LogFiles.h"

#include <Vokit/LogEntry>
#include <Vokit/XMLLogReader>

#include <QtTest>

/// CSV, JSON and XML, with values that try to break them.
class tst_VokitLogFormats : public QObject
{
    Q_OBJECT

private slots:
    void csv();
    void csvFormulas_data();
    void csvFormulas();
    void json();
    void jsonKeys();
    void jsonHostile();
    void jsonSameNames();
    void xml();
    void xmlOfNothing();
    void xmlNeverWellFormed();
    void nothingReadable_data();
    void nothingReadable();

private:
    const Folder m_folder;
};

namespace {

constexpr char gCsvHeader[] = "file,time,id,category,user,action,description,values\r\n";

QList<QJsonObject> objects(const QByteArray &output)
{
    QList<QJsonObject> result;
    QList<QByteArray> lines = output.split('\n');
    if (lines.takeLast() != "")
        return {};
    for (const QByteArray &line : qAsConst(lines)) {
        QJsonParseError error;
        result.append(QJsonDocument::fromJson(line, &error).object());
        if (error.error != QJsonParseError::NoError)
            return {};
    }
    return result;
}

/// What a document reads as, "id description" for each entry; "?" for the null entry before the
/// root's end.
QStringList readBack(const Folder &folder, const QByteArray &document)
{
    QFile file(folder.write("back.vol", document));
    if (!file.open(QIODevice::ReadOnly))
        return {"unreadable"};
    vo::XMLLogReader reader(&file);
    QStringList result;
    while (!reader.atEnd()) {
        const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
        if (entry)
            result.append(entry->id().toString() + ' ' + entry->description());
    }
    return result;
}

} // namespace

void tst_VokitLogFormats::csv()
{
    const QString file = stored("backup.vol");
    const ProgramRun run = runProgram({"show", "--format", "csv", file});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(
        run.output,
        gCsvHeader + file.toUtf8() +
            ",2026-11-21 15:04:05,ALog,Action log,ann (second),Switched log,Switched logging from "
            "'/logs/a.vol' to '/logs/b.vol'.,\"{\"\"oldFile\"\":\"\"/logs/a.vol\"\",\"\"newFile\"\""
            ":\"\"/logs/b.vol\"\"}\"\r\n" +
            file.toUtf8() +
            ",2026-11-21 15:04:05,ExpS,Export,ann,Export start,Format='AVI'; Source='Gate 1'; Date "
            "and time from='20 Nov 2026 08:00:00'; Date and time to '20 Nov 2026 09:30:59'; "
            "Target='/media/usb'.,\"{\"\"text\"\":\"\"Format='%1'; Source='%2'; Date and time "
            "from='%4'; Date and time to '%5'; Target='%3'.\"\",\"\"format\"\":\"\"AVI\"\",\"\""
            "source\"\":\"\"Gate 1\"\",\"\"dest\"\":\"\"/media/usb\"\",\"\"from\"\":\"\"2026-11-20T"
            "08:00:00\"\",\"\"to\"\":\"\"2026-11-20T09:30:59\"\"}\"\r\n");
    // No entry, no line; the header is there all the same.
    QCOMPARE(runProgram({"show", "--format", "csv", stored("header.vol")}).output,
             QByteArray(gCsvHeader));
}

void tst_VokitLogFormats::csvFormulas_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("field");
    const auto row = [](const char *text, const char *field) {
        QTest::newRow(field) << QByteArray(text) << QByteArray(field);
    };
    row("=1+1", "'=1+1");
    row("+1", "'+1");
    row("-1", "'-1");
    row("@x", "'@x");
    row("&#9;x", "'\tx");
    row("&#13;x", "\"'\rx\"");
    row("=&quot;a&quot;,b", "\"'=\"\"a\"\",b\"");
    row("&#10;=x", "\"\n=x\"");
    row("a=1", "a=1");
    row("'", "'");
}

void tst_VokitLogFormats::csvFormulas()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, field);
    const ProgramRun run =
        runProgram({"show", "--format", "csv", "-"}, head() + done(text, text, text));
    QCOMPARE(run.exitCode, 0);
    const QByteArray line = gCsvHeader + QByteArray("'-,") + field + ",ExpD,Export," + field +
                            ",Export done," + field + ",\"{\"\"text\"\":";
    QVERIFY2(run.output.startsWith(line), run.output.constData());
}

void tst_VokitLogFormats::json()
{
    const QString file = stored("rename.vol");
    const ProgramRun run = runProgram({"show", "--format", "json", file});
    QCOMPARE(run.exitCode, 2);
    const QByteArray start = "{\"file\":\"" + file.toUtf8() + "\",\"position\":";
    QCOMPARE(run.output,
             start +
                 R"(116,"time":"2026-11-21T15:04:05","id":"ExpD","category":"Export","user":"",)"
                 R"("action":"Export done","description":"3 clips","values":{"text":"3 clips"}})"
                 "\n" +
                 start +
                 R"(177,"time":"2026-11-21T15:04:05","id":"ExpR","category":"Export","user":"ann",)"
                 R"("action":"Export rename","description":"'/media/usb/old.avi' to )"
                 R"('/media/usb/new.avi'.","values":{"text":"'%1%2' to '%1%3'.",)"
                 R"("path":"/media/usb/","source":"old.avi","dest":"new.avi"}})"
                 "\n" +
                 start +
                 R"(308,"time":"2026-11-21T15:04:05","id":"ExpE","category":"Export","user":"bob",)"
                 R"("action":"Export error","description":"disk full",)"
                 R"("values":{"text":"disk full"}})"
                 "\n");
    const QByteArray bytes = contentOf(file);
    const QList<QJsonObject> entries = objects(run.output);
    for (const QJsonObject &entry : entries)
        QVERIFY(bytes.mid(entry.value("position").toInt()).startsWith("<Entry ID="));
}

void tst_VokitLogFormats::jsonKeys()
{
    const QStringList keys{"action",   "category", "description", "file",  "id",
                           "position", "time",     "user",        "values"};
    const ProgramRun run = runProgram(
        {"show", "--format", "json", "-"},
        head() + done("a") + done("b", "ann", "yesterday") +
            R"(<Entry ID="XmlP" Time="21 Nov 2026 15:04:05" errL="12" errC="x"/>)"
            R"(<Entry ID="ExpS" Time="21 Nov 2026 15:04:05" from="20 Nov 2026 08:00:00" to="?"/>)"
            R"(<Entry ID="Door" Time="21 Nov 2026 15:04:05" Seco="30"/>)");
    QCOMPARE(run.exitCode, 0);
    const QList<QJsonObject> entries = objects(run.output);
    QCOMPARE(entries.size(), 5);
    QCOMPARE(entries.at(0).keys(), keys);
    QCOMPARE(entries.at(0).value("file").toString(), QString("-"));

    QStringList unread = keys;
    unread.insert(7, "timeText");
    QCOMPARE(entries.at(1).keys(), unread);
    QCOMPARE(entries.at(1).value("time"), QJsonValue(QJsonValue::Null));
    QCOMPARE(entries.at(1).value("timeText").toString(), QString("yesterday"));

    const QJsonObject numbers = entries.at(2).value("values").toObject();
    QVERIFY2(run.output.contains(":12,"), run.output.constData()); // a number, and so is the next
    QCOMPARE(numbers.keys().size(), 4);

    const QJsonObject dates = entries.at(3).value("values").toObject();
    QCOMPARE(dates.value("from").toString(), QString("2026-11-20T08:00:00"));
    QCOMPARE(dates.value("to").toString(), QString("?"));

    QCOMPARE(entries.at(4).keys(), keys);
    QCOMPARE(entries.at(4).value("category").toString(), QString());
    QCOMPARE(entries.at(4).value("values").toObject(), (QJsonObject{{"Seco", "30"}}));
}

void tst_VokitLogFormats::jsonHostile()
{
    // Each as it stands in the file, and as it is meant.
    const QList<QPair<QByteArray, QString>> texts = {
        {"a&#10;b&#13;c&#9;d", "a\nb\rc\td"},
        {"&quot;},{&quot;", "\"},{\""},
        {"\\u0041\\", "\\u0041\\"},
        {"\xE2\x80\xA8 \xE2\x80\xA9 \xC2\x85 \x7F", QString("\u2028 \u2029 \u0085 \u007F")},
        {"\xF0\x9F\x8E\xA5", QString::fromUtf8("\xF0\x9F\x8E\xA5")},
    };
    QByteArray bytes = head();
    for (const auto &text : texts)
        bytes += done(text.first, text.first, text.first);
    const QString file = m_folder.write("a\"\n\\.vol", bytes);
    const ProgramRun run = runProgram({"show", "--format", "json", file});
    QCOMPARE(run.exitCode, 0);
    // For every reader a line is a line.
    for (const char *end : {"\r", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xC2\x85", "\x7F"})
        QVERIFY(!run.output.contains(end));
    const QList<QJsonObject> entries = objects(run.output);
    QCOMPARE(entries.size(), texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        const QString &text = texts.at(i).second;
        QCOMPARE(entries.at(i).value("file").toString(), file);
        QCOMPARE(entries.at(i).value("user").toString(), text);
        QCOMPARE(entries.at(i).value("timeText").toString(), text);
        QCOMPARE(entries.at(i).value("values").toObject().value("text").toString(), text);
    }
}

// The class calls "Text" "text", and the file has one of that name besides.
void tst_VokitLogFormats::jsonSameNames()
{
    const ProgramRun run =
        runProgram({"show", "--format", "json", "-"},
                   head() + R"(<Entry ID="ExpD" Time="21 Nov 2026 15:04:05" Text="a" text="b"/>)");
    QVERIFY2(run.output.endsWith("\"values\":{\"text\":\"a\",\"text (2)\":\"b\"}}\n"),
             run.output.constData());
}

void tst_VokitLogFormats::xml()
{
    const QByteArray odd = "<Entry  ID='Door'\n Name=\"&#x41;\"  />";
    const QString first = m_folder.write("first.vol", head("2026-03-01T10:00:00") + done("a") +
                                                          odd + "x" + done("b"));
    const QString second = m_folder.write("second.vol", head() + done("c") + "</Entries>");
    const ProgramRun run = runProgram({"show", "--format", "xml", first, second});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, head("2026-03-01T10:00:00") + done("a") + odd + done("b") + done("c") +
                             "</Entries>\n");
    QCOMPARE(readBack(m_folder, run.output), (QStringList{"ExpD a", "ExpD b", "ExpD c"}));

    // The header is that of the first file, whatever is chosen of it.
    const ProgramRun some =
        runProgram({"show", "--format", "xml", "--contains", "c", first, second});
    QCOMPARE(some.output, head("2026-03-01T10:00:00") + done("c") + "</Entries>\n");
}

void tst_VokitLogFormats::xmlOfNothing()
{
    const QString none = m_folder.path("none.vol");
    const QString broken = "/proc/self/mem"; // can be opened
    for (const QStringList &files :
         {QStringList{none}, {none, m_folder.path("")}, {none, broken}}) {
        const ProgramRun run = runProgram(QStringList{"show", "--format", "xml"} + files);
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.errors.count("vokit-log: cannot read '"), files.size());
        QCOMPARE(run.output.count("<Entries "), 1);
        QVERIFY(run.output.endsWith("\"></Entries>\n"));
        QCOMPARE(readBack(m_folder, run.output), QStringList());
    }
    const ProgramRun header = runProgram({"show", "--format", "xml", stored("header.vol")});
    QCOMPARE(header.exitCode, 0);
    QCOMPARE(header.output, contentOf(stored("header.vol")).trimmed() + "></Entries>\n");
}

// A renamed export has a name that no reader of XML takes.
void tst_VokitLogFormats::xmlNeverWellFormed()
{
    const ProgramRun run = runProgram({"show", "--format", "xml", stored("rename.vol")});
    QCOMPARE(run.exitCode, 2);
    QVERIFY(!run.output.contains('\0'));
    const QStringList entries = readBack(m_folder, run.output);
    QCOMPARE(entries.size(), 3);
    QVERIFY(entries.at(1).startsWith("ExpR"));
    QCOMPARE(entries.at(2), QString("ExpE disk full"));
}

void tst_VokitLogFormats::nothingReadable_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("prose") << QStringList{"show"} << QByteArray();
    QTest::newRow("csv") << QStringList{"show", "--format", "csv"} << QByteArray(gCsvHeader);
    QTest::newRow("json") << QStringList{"show", "--format", "json"} << QByteArray();
    const QStringList report{"report", "--by", "day", "--format"};
    QTest::newRow("a table") << report + QStringList{"table"}
                             << QByteArray("     Entries  Day\n           0  Total\n");
    QTest::newRow("counts in csv") << report + QStringList{"csv"} << QByteArray("day,count\r\n");
    QTest::newRow("counts in json") << report + QStringList{"json"}
                                    << QByteArray("{\"by\":\"day\",\"total\":0,\"counts\":[]}\n");
}

// Each output is complete, and of nothing.
void tst_VokitLogFormats::nothingReadable()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, output);
    const QString none = m_folder.path("none.vol");
    const QString folder = QFileInfo(none).path();
    const QString closed = m_folder.write("closed.vol", head() + done("a"));
    QVERIFY(QFile::setPermissions(closed, {}));
    const ProgramRun run = runProgram(arguments + QStringList{none, folder, closed});
    QVERIFY(QFile::remove(closed));
    const auto warning = [](const QString &name, const char *reason) {
        return "vokit-log: cannot read '" + name.toUtf8() + "': " + reason + '\n';
    };
    QCOMPARE(run.errors, warning(none, "No such file or directory") +
                             warning(folder, "file to open is a directory") +
                             warning(closed, "Permission denied"));
    QCOMPARE(run.output, output);
    QCOMPARE(run.exitCode, 3);

    const QString broken = "/proc/self/mem"; // can be opened
    const ProgramRun brokenRun = runProgram(arguments + QStringList{broken});
    QCOMPARE(brokenRun.errors, warning(broken, "Input/output error"));
    QCOMPARE(brokenRun.output, output);
    QCOMPARE(brokenRun.exitCode, 3);
}

QTEST_GUILESS_MAIN(tst_VokitLogFormats)
#include "tst_VokitLogFormats.moc"
