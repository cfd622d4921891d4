#include "LogFiles.h"

#include <QtTest>

/// Prose, files and what is wrong with them, and the command line.
class tst_VokitLogShow : public QObject
{
    Q_OBJECT

private slots:
    void prose();
    void oneLineAnEntry();
    void unknownClass();
    void noTime();
    void hostileTimes_data();
    void hostileTimes();
    void gaps();
    void manyGaps();
    void severalFiles();
    void exitCodes_data();
    void exitCodes();
    void standardInput();
    void oddNames();
    void lostOutput_data();
    void lostOutput();
    void valuesThatMultiply();
    void outputOntoTheInput();
    void wrongUse_data();
    void wrongUse();
    void help();

private:
    const Folder m_folder;
};

void tst_VokitLogShow::prose()
{
    const ProgramRun run = runProgram({"show", stored("entries.vol")});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(
        run.output,
        QByteArray(
            "2026-11-21 15:04:05  ann (second)  Switched log  Switched logging from '/logs/a.vol' "
            "to '/logs/b.vol'.\n"
            "2026-11-21 15:04:05  ann  Export start  Format='AVI'; Source='Gate 1'; Date and time "
            "from='20 Nov 2026 08:00:00'; Date and time to '20 Nov 2026 09:30:59'; "
            "Target='/media/usb'.\n"
            "2026-11-21 15:04:05  ann  Export written  Format='unknown'; Source='Gate 1'.\n"
            "2026-11-21 15:04:05  -  Export done  3 clips\n"
            "2026-11-21 15:04:05  bob  Export error  disk full\n"
            "2026-11-21 15:04:05  bob  Export abort\n"
            "2026-11-21 15:04:05  Unknown  Action log error  Error 'Start tag expected.' reading "
            "action log '/logs/a.vol' in line '1', column '-7'.\n"
            "2026-11-21 15:04:05  ann  Export rename  '/media/usb/' to '/media/usb/new.avi'.\n"));
}

void tst_VokitLogShow::oneLineAnEntry()
{
    const QString file = m_folder.write(
        "lines.vol", head() +
                         done("a&#10;2026-11-21 15:04:05  eve  Export done  b", "x&#13;&#10;y") +
                         done("\xE2\x80\xA8\xE2\x80\xA9\xC2\x85 \xE2\x80\xAE") +
                         done("&#x9;\\ \xC3\xA9", "u", "&#10;z") + "</Entries>");
    const ProgramRun run = runProgram({"show", file});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output,
             doneLine("a\\x0a2026-11-21 15:04:05  eve  Export done  b", "x\\x0d\\x0ay") +
                 doneLine("\\x2028\\x2029\\x85 \\x202e") +
                 doneLine("\\x09\\ \xC3\xA9", "u", "'\\x0az'"));
}

void tst_VokitLogShow::unknownClass()
{
    const QString file = m_folder.write(
        "door.vol", head() + R"(<Entry ID="Door" Time="21 Nov 2026 15:04:05" User="ann" )"
                             R"(Name="Gate 1" Seco="30"/></Entries>)");
    const ProgramRun run = runProgram({"show", file});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, QByteArray("2026-11-21 15:04:05  ann  [Door]  Name: Gate 1 Seco: 30\n"));
}

void tst_VokitLogShow::noTime()
{
    const QString file = m_folder.write("time.vol", head() + done("a", "ann", "21.11.26 15:04") +
                                                        R"(<Entry ID="ExpD" Text="b"/></Entries>)");
    const ProgramRun run = runProgram({"show", file});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output,
             doneLine("a", "ann", "'21.11.26 15:04'") + doneLine("b", "-", "(no time)"));
}

void tst_VokitLogShow::hostileTimes_data()
{
    QTest::addColumn<QByteArray>("time");
    QTest::addColumn<QByteArray>("shown");
    const auto row = [](const char *time, const char *shown) {
        QTest::newRow(time) << QByteArray(time) << QByteArray(shown);
    };
    row("(no time)", "'(no time)'");
    row("2026-11-21 15:04:05", "'2026-11-21 15:04:05'"); // a date of no locale here
    row("-- torn entry: 1 byte from byte 0 on (line 1, column 1)",
        "'-- torn entry: 1 byte from byte 0 on (line 1, column 1)'");
    row("==&gt; other.vol &lt;==", "'==> other.vol <=='");
    row("soon'  eve  Export done  b", "'soon''  eve  Export done  b'");
    row("'", "''''");
    row("''", "''''''");
    row("\\'", "'\\'''");
    row(" ", "' '");
    row("&#10;a&#155;2J", "'\\x0aa\\x9b2J'");
}

// It begins the line, so it must look like nothing else that does.
void tst_VokitLogShow::hostileTimes()
{
    QFETCH(QByteArray, time);
    QFETCH(QByteArray, shown);
    const ProgramRun run = runProgram({"show", "-"}, head() + done("a", "ann", time));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, doneLine("a", "ann", shown));
    QCOMPARE(run.exitCode, 0);
}

void tst_VokitLogShow::gaps()
{
    const QByteArray torn = "<Entry ID=\"ExpD\" Time=\"21 No";
    const QString file = m_folder.write("gaps.vol", head() + done("a") + torn + done("b") + "x\n" +
                                                        done("c") + "<E");
    const ProgramRun run = runProgram({"show", file});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, QByteArray());
    const int tornAt = head().size() + done("a").size();
    const int foreignAt = tornAt + torn.size() + done("b").size();
    const int endAt = foreignAt + 2 + done("c").size();
    const QByteArray expected =
        doneLine("a") + "-- torn entry: " + QByteArray::number(torn.size()) + " bytes from byte " +
        QByteArray::number(tornAt) + " on (line 1, column " + QByteArray::number(tornAt + 1) +
        ")\n" + doneLine("b") + "-- foreign bytes: 1 byte from byte " +
        QByteArray::number(foreignAt) + " on (line 1, column " + QByteArray::number(foreignAt + 1) +
        ")\n" + doneLine("c") + "-- truncated end: 2 bytes from byte " + QByteArray::number(endAt) +
        " on (line 2, column " + QByteArray::number(done("c").size() + 1) + ")\n";
    QCOMPARE(run.output, expected);

    // In every other format they are warnings.
    for (const char *format : {"csv", "json", "xml"}) {
        const ProgramRun other = runProgram({"show", "--format", format, file});
        QCOMPARE(other.exitCode, 2);
        QCOMPARE(other.output.contains("torn entry"), false);
        const QList<QByteArray> warnings = other.errors.split('\n');
        QCOMPARE(warnings.size(), 4);
        QCOMPARE(warnings.first(), "vokit-log: " + file.toUtf8() + ": torn entry: " +
                                       QByteArray::number(torn.size()) + " bytes from byte " +
                                       QByteArray::number(tornAt) + " on (line 1, column " +
                                       QByteArray::number(tornAt + 1) + ")");
    }
}

void tst_VokitLogShow::manyGaps()
{
    QByteArray bytes = head();
    for (int i = 0; i < 22; ++i)
        bytes += "x" + done("a");
    const QString many = m_folder.write("many.vol", bytes);
    const QString few = m_folder.write("few.vol", head() + "x" + done("a"));
    const ProgramRun run = runProgram({"show", "--format", "json", many, few});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output.count('\n'), 23);
    const QList<QByteArray> warnings = run.errors.split('\n');
    QCOMPARE(warnings.size(), 23); // with an empty one at the end
    QCOMPARE(warnings.at(20), "vokit-log: " + many.toUtf8() + ": and 2 more");
    QVERIFY(warnings.at(21).startsWith("vokit-log: " + few.toUtf8() + ": foreign bytes: 1 byte "));

    QCOMPARE(runProgram({"show", many}).output.count("-- foreign bytes"), 22);
}

void tst_VokitLogShow::severalFiles()
{
    const QByteArray name = "a\nb.vol";
    const QString first = m_folder.write(name.constData(), head() + done("a"));
    const QString second = m_folder.write("second.vol", head());
    const ProgramRun run = runProgram({"show", first, m_folder.path("none.vol"), second});
    QCOMPARE(run.exitCode, 3);
    const QByteArray shown = first.toUtf8().replace("\n", "\\x0a");
    QCOMPARE(run.output,
             "==> " + shown + " <==\n" + doneLine("a") + "\n==> " + second.toUtf8() + " <==\n");
    QCOMPARE(run.errors, "vokit-log: cannot read '" + m_folder.path("none.vol").toUtf8() +
                             "': No such file or directory\n");
}

void tst_VokitLogShow::exitCodes_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<int>("exitCode");
    const QByteArray live = head() + done("a");
    const QByteArray complete = live + "</Entries>";
    const QByteArray torn = live + "<Entry ID=\"Ex";
    const QByteArray damaged = head() + "x" + done("a");
    QTest::newRow("complete and live") << complete << live << 0;
    QTest::newRow("an empty file") << QByteArray() << live << 0;
    QTest::newRow("torn") << complete << torn << 1;
    QTest::newRow("the worst one, not the last") << damaged << torn << 2;
    QTest::newRow("damaged last") << torn << damaged << 2;
}

void tst_VokitLogShow::exitCodes()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(int, exitCode);
    const QStringList files{m_folder.write("first.vol", first),
                            m_folder.write("second.vol", second)};
    for (const char *format : {"prose", "csv", "json", "xml"})
        QCOMPARE(runProgram(QStringList{"show", "--format", format} + files).exitCode, exitCode);
    QCOMPARE(runProgram(QStringList{"report", "--by", "user"} + files).exitCode, exitCode);
    QCOMPARE(runProgram(QStringList{"show"} + files + QStringList{m_folder.path("none")}).exitCode,
             3);
}

void tst_VokitLogShow::standardInput()
{
    const ProgramRun run = runProgram({"show", "-"}, head() + done("a") + done("b"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.output, doneLine("a") + doneLine("b"));
    QCOMPARE(runScript("exec \"$0\" show - <&-", {}).exitCode, 3);
    const ProgramRun folder = runScript("exec \"$0\" show - < /", {});
    QCOMPARE(folder.exitCode, 3);
    QCOMPARE(folder.errors, QByteArray("vokit-log: cannot read '-': Is a directory\n"));
}

void tst_VokitLogShow::oddNames()
{
    const QString here = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder.path("")));
    for (const char *name : {":x", "-x", "--locale", "x y", "\xC3\xA9", "a\nb"}) {
        m_folder.write(name, head() + done("a"));
        const ProgramRun run = runProgram({"show", "--", QString::fromUtf8(name)});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.output, doneLine("a"));
    }
    QVERIFY(QDir::setCurrent(here));
}

void tst_VokitLogShow::lostOutput_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("errors");
    const QByteArray full = "vokit-log: cannot write the output: No space left on device\n";
    QTest::newRow("a full disk") << QByteArray("exec \"$0\" show \"$1\" >/dev/full") << 3 << full;
    QTest::newRow("a full disk, and a report")
        << QByteArray("exec \"$0\" report --by user \"$1\" >/dev/full") << 3 << full;
    QTest::newRow("a full disk, and help")
        << QByteArray("exec \"$0\" show --help >/dev/full") << 3 << full;
    QTest::newRow("a reader that goes away")
        << QByteArray("{ \"$0\" show \"$1\"; echo $? >&2; } | head -n 1 >/dev/null") << 0
        << QByteArray("0\n");
    QTest::newRow("a reader of XML that goes away")
        << QByteArray("{ \"$0\" show --format xml \"$1\"; echo $? >&2; } | true") << 0
        << QByteArray("0\n");
    const QByteArray closed("vokit-log: cannot write the output: Bad file descriptor\n");
    QTest::newRow("closed") << QByteArray("exec \"$0\" show \"$1\" >&-") << 3 << closed;
    QTest::newRow("closed, and XML")
        << QByteArray("exec \"$0\" show --format xml \"$1\" >&-") << 3 << closed;
    QTest::newRow("closed, and a check")
        << QByteArray("exec \"$0\" check \"$1\" >&-") << 3 << closed;
    QTest::newRow("closed, and a recovery")
        << QByteArray("exec \"$0\" recover \"$1\" -o - >&-") << 3 << closed;
    QTest::newRow("all closed") << QByteArray("exec \"$0\" show \"$1\" <&- >&- 2>&-") << 3
                                << QByteArray();
}

void tst_VokitLogShow::lostOutput()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, errors);
    QByteArray bytes = head();
    for (int i = 0; i < 20000; ++i)
        bytes += done("a");
    const ProgramRun run = runScript(script.constData(), {m_folder.write("long.vol", bytes)});
    QTEST(run.exitCode, "exitCode");
    QCOMPARE(run.errors, errors);
}

// Values may hold the places of other values, which multiply.
void tst_VokitLogShow::valuesThatMultiply()
{
    const auto many = [](const char *place) { return QByteArray(place).repeated(300); };
    for (const char *date : {"21 Nov 2026 15:04:06", "no date"}) {
        const QByteArray bytes = head() + "<Entry ID=\"ExpS\" Text=\"" + many("%1") + "\" Form=\"" +
                                 many("%2") + "\" srcP=\"" + many("%3") + "\" dstP=\"" +
                                 many("%4") + "\" from=\"" + date + "\" to  =\"z\"/>" + done("end");
        for (const char *format : {"prose", "json", "csv"}) {
            const ProgramRun run = runProgram({"show", "--format", format, "-"}, bytes);
            QCOMPARE(run.exitCode, 0);
            QVERIFY(run.output.size() < 4000000);
            QVERIFY(run.output.right(200).contains("end"));
        }
        const ProgramRun found =
            runProgram({"report", "--by", "action", "--contains", "end", "-"}, bytes);
        QCOMPARE(found.exitCode, 0);
        QVERIFY(found.output.contains("Export done"));
    }
}

// What would read its own output for ever.
void tst_VokitLogShow::outputOntoTheInput()
{
    const QByteArray bytes = head() + done("a");
    const QString file = m_folder.write("both.vol", bytes);
    for (const char *verb : {"show", "show --format xml", "check", "report --by user"}) {
        const ProgramRun run =
            runScript("exec \"$0\" " + QByteArray(verb) + " \"$1\" >>\"$1\"", {file});
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.errors,
                 "vokit-log: cannot read '" + file.toUtf8() + "': the output goes there\n");
    }
    const ProgramRun redirected = runScript("exec \"$0\" recover - -o - <\"$1\" >>\"$1\"", {file});
    QCOMPARE(redirected.exitCode, 3);
    QFile after(file);
    QVERIFY(after.open(QIODevice::ReadOnly));
    QVERIFY(after.readAll().startsWith(bytes));
    QVERIFY(after.size() < 2 * bytes.size() + 1000); // the empty frames of XML and tables
}

void tst_VokitLogShow::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QStringList &arguments, const char *message) {
        QTest::newRow(name) << arguments << QByteArray(message);
    };
    const QString file = stored("entries.vol");
    row("no verb", {}, "no verb is given; see vokit-log --help");
    row("no such verb", {"shw"}, "there is no verb 'shw'; see vokit-log --help");
    row("no file", {"show"}, "no file is given; see vokit-log show --help");
    row("no file to report of", {"report", "--by", "user"},
        "no file is given; see vokit-log report --help");
    row("no such option", {"show", "--fast", file},
        "Unknown option 'fast'; see vokit-log show --help");
    row("a format", {"show", "--format", "table", file},
        "'table' is nothing for --format: use prose, csv, json, xml");
    row("a format of reports", {"report", "--by", "user", "--format", "xml", file},
        "'xml' is nothing for --format: use table, csv, json");
    row("a color", {"show", "--color", "red", file},
        "'red' is nothing for --color: use auto, always, never");
    row("no column", {"report", file}, "--by is needed: user, category, day or action");
    row("no such column", {"report", "--by", "id", file},
        "'id' is nothing for --by: use user, category, day, action");
    row("two files to follow", {"show", "-f", file, file},
        "--follow needs one file, and one that has a name");
    row("the input to follow", {"show", "-f", "-"},
        "--follow needs one file, and one that has a name");
    row("XML to follow", {"show", "-f", "--format", "xml", file},
        "--follow has no end, and --format xml needs one");
    row("a locale", {"show", "--locale", "xx_XX", file},
        "'xx_XX' is no known locale: use one such as de_DE, or C");
    row("no locale", {"show", file, "--locale"}, "--locale needs a name, such as de_DE");
    const char *const save = "--save-filter";
    row("a filter of nothing", {"show", save, "f", file},
        "--save-filter needs something to save: --category, --user, --id, --since, --until or "
        "--filter");
    row("a filter with a text", {"show", "--user", "ann", "--contains", "x", save, "f", file},
        "--contains can't be saved by --save-filter: it is no expression");
    row("a filter of a text", {"report", "--by", "user", "--contains", "x", save, "f", file},
        "--contains can't be saved by --save-filter: it is no expression");
    row("a filter without a name", {"show", "--user", "ann", save, "", file},
        "--save-filter needs the name of a file");
    row("a filter with two names", {"show", "--user", "ann", save, "f", save, "g", file},
        "--save-filter is given more than once");
    row("a filter to the standard output", {"show", "--user", "ann", save, "-", file},
        "--save-filter goes to a file only");
    row("a filter and no such format", {"show", "--user", "ann", save, "f", "--format", "x", file},
        "'x' is nothing for --format: use prose, csv, json, xml");
    row("an identifier", {"show", "--id", "ExpDo", file},
        "'ExpDo' is no identifier of four characters");
    row("no identifier", {"show", "--id", "ExpD,,ExpE", file},
        "'' is no identifier of four characters");
    row("an identifier beyond Latin-1", {"show", "--id", "Exp\u4E00", file},
        "'Exp\u4E00' is no identifier of four characters");
}

void tst_VokitLogShow::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, message);
    const ProgramRun run = runProgram(arguments);
    QCOMPARE(run.errors, "vokit-log: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.exitCode, 4);
    QVERIFY(!QFile::exists("f"));
}

void tst_VokitLogShow::help()
{
    for (const char *verb : {"show", "report"}) {
        const ProgramRun run = runProgram({verb, "--help"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(run.output.startsWith(QByteArray("Usage: vokit-log ") + verb));
        for (const char *part :
             {"\nOptions:\n", "\nFormats:\n", "\nExit codes", "\nExamples:\n", "--category",
              "--user", "--id", "--since", "--until", "--contains", "--filter", "--save-filter",
              "--locale", "--format", "spreadsheet", "\n  4  wrong use"})
            QVERIFY2(run.output.contains(part), part);
        QCOMPARE(run.output.count(QByteArray("\n  vokit-log ") + verb), 2);
        const QList<QByteArray> lines = run.output.split('\n');
        for (const QByteArray &line : lines)
            QVERIFY2(line.size() <= 80, line.constData());
    }
    QVERIFY(runProgram({"--help"}).output.contains("--locale"));
}

QTEST_GUILESS_MAIN(tst_VokitLogShow)
#include "tst_VokitLogShow.moc"
