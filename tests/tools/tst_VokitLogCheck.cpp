#include <QtTest>

#include "LogBytes.h"
#include "examples/ProgramRun.h"

using namespace bytes;

namespace {

QByteArray stored(const char *name)
{
    return contentOf(QStringLiteral(STORED_LOGS "/") + name);
}

// Where something begins, as messages say it of a file of one line in ASCII.
QByteArray at(int position)
{
    return "line 1, column " + QByteArray::number(position + 1);
}

QByteArray range(int length, int position)
{
    return QByteArray::number(length) + (length == 1 ? " byte" : " bytes") + " from byte " +
           QByteArray::number(position) + " on (" + at(position) + ")\n";
}

} // namespace

/// check: what it says of each file, and by its exit code.
class tst_VokitLogCheck : public QObject
{
    Q_OBJECT

private slots:
    void conditions_data();
    void conditions();
    void gaps_data();
    void gaps();
    void json();
    void jsonOfIntact();
    void manyGaps();
    void worst_data();
    void worst();
    void unreadable_data();
    void unreadable();
    void standardInput();
    void odd_data();
    void odd();
    void otherLocale();
    void quiet();
    void wrongUse_data();
    void wrongUse();
    void help();
    void outputLost_data();
    void outputLost();

private:
    QString file(const char *name, const QByteArray &content) const
    {
        QFile writer(m_files.path(name));
        if (!writer.open(QIODevice::WriteOnly) || writer.write(content) != content.size())
            qFatal("%s: not written", name);
        return writer.fileName();
    }

    Tree m_files;
};

void tst_VokitLogCheck::conditions_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("exitCode");

    const auto row = [](const char *name, const QByteArray &content, const QByteArray &text,
                        int exitCode) { QTest::newRow(name) << content << text << exitCode; };
    const QByteArray log = gHead + gOne;
    const int size = log.size();

    row("a backup", stored("backup.vol"), "complete document, 2 entries", 0);
    row("one entry, closed", log + gEnd, "complete document, 1 entry", 0);
    row("no entry, closed", gHead + gEnd, "complete document, 0 entries", 0);
    row("all classes", stored("entries.vol"), "live log, open-ended, 8 entries", 0);
    row("one entry, open", log, "live log, open-ended, 1 entry", 0);
    row("a root alone", stored("header.vol"), "live log, open-ended, 0 entries", 0);
    row("a root that is not ended", gDeclaration + gOpenRoot, "live log, open-ended, 0 entries", 0);

    row("torn in an entry", log + gTwo.left(34),
        "torn at its end, 1 entry, 34 bytes lost from byte " + QByteArray::number(size) + " on", 1);
    row("torn by all but one byte", log + "<",
        "torn at its end, 1 entry, 1 byte lost from byte " + QByteArray::number(size) + " on", 1);
    row("torn in the first entry", gHead + gOne.left(7),
        "torn at its end, 0 entries, 7 bytes lost from byte " + QByteArray::number(gHead.size()) +
            " on",
        1);
    row("torn in the root's tag", gDeclaration + gOpenRoot.left(30),
        "torn at its end, 0 entries, 30 bytes lost from byte 38 on", 1);
    row("torn in the root's end tag", log + "</Entr",
        "torn at its end, 1 entry, 6 bytes lost from byte " + QByteArray::number(size) + " on", 1);

    row("a torn entry and more behind", log + gTwo.left(34) + gOne + gTwo,
        "damaged at " + at(size) + ", 1 gap, 3 entries", 2);
    row("a torn entry and a torn end", log + gTwo.left(34) + gOne + gTwo.left(20),
        "damaged at " + at(size) + ", 2 gaps, 2 entries", 2);
    row("an unfinished root and entries behind", gDeclaration + gOpenRoot + gOne + gTwo,
        "damaged at " + at(38) + ", 1 gap, 2 entries", 2);
    row("no root", gOne + gTwo, "damaged at " + at(0) + ", 1 gap, 2 entries", 2);
    row("a rename", stored("rename.vol"), "damaged at " + at(277) + ", 1 gap, 3 entries", 2);
    row("a control character", log + entry("a\x01z") + gTwo,
        "damaged at " + at(size) + ", 1 gap, 2 entries", 2);
    row("two logs", log + gHead + gTwo, "damaged at " + at(size) + ", 1 gap, 2 entries", 2);
    row("foreign bytes in front", "mail:" + log, "damaged at " + at(0) + ", 1 gap, 1 entry", 2);
    row("a tail of zeros", log + QByteArray(4096, '\0'),
        "damaged at " + at(size) + ", 1 gap, 1 entry", 2);
    row("entries behind the end", log + gEnd.trimmed() + gTwo,
        "damaged at " + at(size) + ", 1 gap, 2 entries", 2);
    row("damage in the third line", gHead + '\n' + gOne + "\n \xc3\xa4oops" + gTwo,
        "damaged at line 3, column 2, 1 gap, 2 entries", 2);

    row("empty", "", "empty", 0);
    row("white space", " \r\n\t", "no log", 2);
    row("a text", "dear all,\n", "no log", 2);
    row("zeros", QByteArray(5000, '\0'), "no log", 2);
    row("other XML", "<html><body class=\"Entry\"/></html>", "no log", 2);
    row("a declaration alone", gDeclaration, "no log", 2);
}

void tst_VokitLogCheck::conditions()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, text);
    const QString name = file("a.vol", content);
    const ProgramRun run = runProgram({"check", name});
    QCOMPARE(run.output, name.toUtf8() + ": " + text + '\n');
    QCOMPARE(run.errors, QByteArray());
    QTEST(run.exitCode, "exitCode");
    QCOMPARE(contentOf(name), content);
}

void tst_VokitLogCheck::gaps_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("lines");

    const QByteArray log = gHead + gOne;
    const int size = log.size();
    QTest::newRow("none") << log << QByteArray();
    QTest::newRow("torn entry") << log + gTwo.left(34) + gOne << "  torn entry: " + range(34, size);
    QTest::newRow("unfinished root tag") << gDeclaration + gOpenRoot + gOne
                                         << "  unfinished root tag: " + range(gOpenRoot.size(), 38);
    QTest::newRow("no root") << gOne << "  unfinished root tag: " + range(0, 0);
    QTest::newRow("a name") << log + gRename
                            << "  illegal character: " + range(4, size + gRename.indexOf('\0'));
    // The declaration is one at the start of a file only.
    QTest::newRow("foreign bytes") << "x" + log << "  foreign bytes: " + range(39, 0);
    QTest::newRow("truncated end") << log + gTwo.left(9) << "  truncated end: " + range(9, size);
    QTest::newRow("several") << "x" + log + gTwo.left(34) + gOne + "</E"
                             << "  foreign bytes: " + range(39, 0) +
                                    "  torn entry: " + range(34, size + 1) +
                                    "  truncated end: " + range(3, size + 35 + gOne.size());
}

void tst_VokitLogCheck::gaps()
{
    QFETCH(QByteArray, content);
    const ProgramRun run = runProgram({"check", "--gaps", file("a.vol", content)});
    const int behindFirst = run.output.indexOf('\n') + 1;
    QTEST(run.output.mid(behindFirst), "lines");
}

void tst_VokitLogCheck::json()
{
    const QString name = file("a \"b\".vol", "x" + gHead + gOne + gTwo.left(34) + gOne);
    const QByteArray position = QByteArray::number(1 + gHead.size() + gOne.size());
    const QByteArray first =
        R"({"kind":"foreign bytes","position":0,"length":39,"line":1,"column":1})";
    const QByteArray start = R"({"file":")" + m_files.path().toUtf8() +
                             R"(/a \"b\".vol","condition":"damaged","entries":2,"gaps":2,)"
                             R"("firstGap":)" +
                             first;
    const ProgramRun run = runProgram({"check", "--format", "json", name});
    QCOMPARE(run.output, start + "}\n");
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(runProgram({"check", "--format=json", "--gaps", name}).output,
             start + R"(,"gapList":[)" + first + R"(,{"kind":"torn entry","position":)" + position +
                 R"(,"length":34,"line":1,"column":)" + QByteArray::number(position.toInt() + 1) +
                 "}]}\n");
}

void tst_VokitLogCheck::jsonOfIntact()
{
    const QStringList names{file("complete", gHead + gEnd), file("live", gHead + gOne),
                            file("torn", gHead + '<'),      file("empty", ""),
                            file("no log", "oops"),         file("damaged", gOne)};
    const ProgramRun run = runProgram(QStringList{"check", "--gaps", "--format", "json"} + names);
    QCOMPARE(run.exitCode, 2);
    QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QCOMPARE(lines.size(), names.size());
    for (int i = 0; i < lines.size(); ++i) {
        const QJsonObject object = QJsonDocument::fromJson(lines[i]).object();
        QCOMPARE(object["file"].toString(), names[i]);
        QCOMPARE(object["condition"].toString(), QFileInfo(names[i]).fileName());
        const int gaps = i == 0 || i == 1 || i == 3 ? 0 : 1;
        QCOMPARE(object["gaps"].toInt(-1), gaps);
        QCOMPARE(object["firstGap"].isNull(), gaps == 0);
        QVERIFY(object.contains("firstGap"));
        QCOMPARE(object["gapList"].toArray().size(), gaps);
    }
}

// More than one block of output, and more than a file's buffer.
void tst_VokitLogCheck::manyGaps()
{
    constexpr int count = 20000;
    const QString name = file("many.vol", gHead + QByteArray("<Entry ").repeated(count) + gOne);
    const ProgramRun text = runProgram({"check", "--gaps", name});
    QCOMPARE(text.output.count('\n'), count + 1);
    QVERIFY(text.output.endsWith("  torn entry: " + range(6, gHead.size() + 7 * (count - 1))));
    const ProgramRun json = runProgram({"check", "--gaps", "--format", "json", name});
    const QJsonArray list = json.array("gapList");
    QCOMPARE(json.number("gaps"), qint64(count));
    QCOMPARE(list.size(), count);
    QCOMPARE(list.last().toObject()["position"].toInt(), gHead.size() + 7 * (count - 1));
}

void tst_VokitLogCheck::worst_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("intact ones") << QStringList{"complete", "live", "empty"} << 0;
    QTest::newRow("a torn one") << QStringList{"live", "torn", "complete"} << 1;
    QTest::newRow("a damaged one first") << QStringList{"damaged", "torn", "live"} << 2;
    QTest::newRow("a damaged one last") << QStringList{"live", "torn", "damaged"} << 2;
    QTest::newRow("a torn one and no log") << QStringList{"torn", "none"} << 2;
    QTest::newRow("the same one twice") << QStringList{"live", "live"} << 0;
}

void tst_VokitLogCheck::worst()
{
    QFETCH(QStringList, names);
    file("complete", gHead + gEnd);
    file("live", gHead);
    file("empty", "");
    file("torn", gHead + '<');
    file("damaged", gOne);
    file("none", "oops");
    QStringList arguments{"check"};
    for (const QString &name : qAsConst(names))
        arguments << m_files.path(name);
    const ProgramRun run = runProgram(arguments);
    QTEST(run.exitCode, "exitCode");
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.size(), names.size() + 1);
    for (int i = 0; i < names.size(); ++i)
        QVERIFY2(lines[i].startsWith(arguments[i + 1].toUtf8() + ": "), lines[i]);
}

void tst_VokitLogCheck::unreadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("missing") << m_files.path("missing") << QByteArray("No such file or directory");
    QTest::newRow("a folder") << m_files.path() << QByteArray("file to open is a directory");
    QTest::newRow("no right") << m_files.path("locked") << QByteArray("Permission denied");
    QTest::newRow("a read that fails") << "/proc/self/mem" << QByteArray("Input/output error");
    QTest::newRow("no name") << "" << QByteArray("it has no name");
    QTest::newRow("a resource's name") << ":/nothing" << QByteArray("No such file or directory");
}

void tst_VokitLogCheck::unreadable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    file("locked", gHead);
    m_files.setMode("locked", 0);
    const QString before = file("before", gOne);
    const QString behind = file("behind", gHead);
    const ProgramRun run = runProgram({"check", before, name, behind});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors, "vokit-log: cannot read '" + name.toUtf8() + "': " + reason + '\n');
    QCOMPARE(run.output, before.toUtf8() + ": damaged at line 1, column 1, 1 gap, 1 entry\n" +
                             behind.toUtf8() + ": live log, open-ended, 0 entries\n");
}

void tst_VokitLogCheck::standardInput()
{
    const ProgramRun pipe = runProgram({"check", "-"}, gHead + gOne);
    QCOMPARE(pipe.output, QByteArray("-: live log, open-ended, 1 entry\n"));
    QCOMPARE(pipe.exitCode, 0);
    const QString name = file("a.vol", gHead + gOne + '<');
    const ProgramRun redirected = runScript("exec \"$0\" check - <\"$1\"", {name});
    QVERIFY(redirected.output.startsWith("-: torn at its end, 1 entry, 1 byte lost"));
    QCOMPARE(redirected.exitCode, 1);
    const ProgramRun closed = runScript("exec \"$0\" check - <&-", {});
    QCOMPARE(closed.errors, QByteArray("vokit-log: cannot read '-': Bad file descriptor\n"));
    QCOMPARE(closed.exitCode, 3);
    const ProgramRun folder = runScript("exec \"$0\" check - </", {});
    QCOMPARE(folder.errors, QByteArray("vokit-log: cannot read '-': Is a directory\n"));
    QCOMPARE(folder.exitCode, 3);
    const ProgramRun fifo = runScript("mkfifo \"$1\" && (cat \"$2\" >\"$1\" & \"$0\" check \"$1\")",
                                      {m_files.path("fifo"), name});
    QVERIFY(fifo.output.endsWith(": torn at its end, 1 entry, 1 byte lost from byte " +
                                 QByteArray::number(gHead.size() + gOne.size()) + " on\n"));
}

void tst_VokitLogCheck::odd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("shown");

    QTest::newRow("escape sequences") << "a\x1b[31m.vol" << QByteArray("a\\x1b[31m.vol");
    QTest::newRow("a line feed") << "a\n.vol" << QByteArray("a\\x0a.vol");
    QTest::newRow("beyond ASCII") << QString::fromUtf8("\xc3\xa4.vol")
                                  << QByteArray("\xc3\xa4.vol");
    QTest::newRow("an option's") << "--gaps" << QByteArray("--gaps");
}

void tst_VokitLogCheck::odd()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, shown);
    QFile writer(m_files.path(name));
    QVERIFY(writer.open(QIODevice::WriteOnly));
    writer.close();
    const char *const script = "cd \"$1\" && exec \"$0\" check -- \"$2\"";
    QCOMPARE(runScript(script, {m_files.path(), name}).output, shown + ": empty\n");
    const ProgramRun json = runProgram({"check", "--format", "json", m_files.path(name)});
    QCOMPARE(json.output.count('\n'), 1);
    QCOMPARE(json.json["file"].toString(), m_files.path(name));
}

void tst_VokitLogCheck::otherLocale()
{
    const QString name = file("a.vol", gHead + gOne);
    const ProgramRun run = runProgram({"check", "--locale", "de_DE", name});
    QCOMPARE(run.output, runProgram({"check", name}).output);
    QCOMPARE(run.exitCode, 0);
}

void tst_VokitLogCheck::quiet()
{
    const QString torn = file("torn", gHead + '<');
    for (const char *const option : {"-q", "--quiet"}) {
        for (const QStringList &more : {QStringList(), QStringList{"--gaps", "--format", "json"}}) {
            const ProgramRun run = runProgram(QStringList{"check", option, torn} + more);
            QCOMPARE(run.output + run.errors, QByteArray());
            QCOMPARE(run.exitCode, 1);
        }
    }
    const ProgramRun missing = runProgram({"check", "-q", torn, m_files.path("missing")});
    QCOMPARE(missing.output, QByteArray());
    QVERIFY(missing.errors.startsWith("vokit-log: cannot read "));
    QCOMPARE(missing.exitCode, 3);
}

void tst_VokitLogCheck::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");

    const auto row = [](const char *name, const QStringList &arguments, const char *message) {
        QTest::newRow(name) << arguments << QByteArray(message);
    };
    row("no file", {}, "no file is given");
    row("options alone", {"--gaps"}, "no file is given");
    row("an unknown option", {"--gap", "f"}, "Unknown option 'gap'");
    row("an unknown format", {"--format", "xml", "f"}, "'xml' is nothing for --format");
    row("a format without its value", {"f", "--format"}, "Missing value after '--format'");
    row("a value that there is not", {"--gaps=1", "f"}, "Unexpected value after '--gaps'");
}

void tst_VokitLogCheck::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const ProgramRun run = runProgram(QStringList{"check"} + arguments);
    QCOMPARE(run.exitCode, 4);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(run.errors.startsWith("vokit-log: " + message), run.errors);
    QCOMPARE(run.errors.count('\n'), 1);
}

void tst_VokitLogCheck::help()
{
    for (const char *const option : {"--help", "-h"}) {
        const ProgramRun run = runProgram({"check", option});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(run.output.startsWith("Usage: vokit-log check [OPTION...] FILE...\n"));
        for (const char *const part : {"\n  4  wrong use", "\nExamples:\n", "--gaps", "--locale"})
            QVERIFY2(run.output.contains(part), part);
    }
}

void tst_VokitLogCheck::outputLost_data()
{
    QTest::addColumn<QByteArray>("options");

    for (const char *const options : {"", "--gaps", "--format json", "--gaps --format json"})
        QTest::newRow(*options ? options : "none") << QByteArray(options);
}

// Once, however many files there are: no other one would fare better.
void tst_VokitLogCheck::outputLost()
{
    QFETCH(QByteArray, options);
    const QString name = file("a.vol", gOne);
    const QByteArray script = "exec \"$0\" check " + options + " \"$1\" \"$1\" >/dev/full";
    const ProgramRun run = runScript(script, {name});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors,
             QByteArray("vokit-log: cannot write the output: No space left on device\n"));
}

QTEST_GUILESS_MAIN(tst_VokitLogCheck)
#include "tst_VokitLogCheck.moc"
