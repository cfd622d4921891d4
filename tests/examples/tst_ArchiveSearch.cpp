#include <QtTest>

#include "ProgramRun.h"

#include <unistd.h>

#include <array>

class tst_ArchiveSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void filters_data();
    void filters();
    void filterTexts();
    void noFilter();
    void emptyFolder();
    void columns();
    void columnsFromThePath_data();
    void columnsFromThePath();
    void limit();
    void datesOutsideTheRange();

    void wrongUse_data();
    void wrongUse();
    void helpAndVersion();

    void closeDoublesDisagree();
    void unexplainedDisagreement();

    void textReport();
    void controlCharacters();
    void progress_data();
    void progress();
    void lostOutput_data();
    void lostOutput();

private:
    Tree m_tree;
};

void tst_ArchiveSearch::initTestCase()
{
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "Asia/Kolkata"); // UTC+05:30
    m_tree.addFile("a.mp4", 10, utc("2026-03-05T10:00:00Z"));
    m_tree.addFile("sub/a.mp4", 1023, utc("2026-03-05T18:30:00Z")); // 2026-03-06 in Kolkata
    m_tree.addFile("sub/b.avi", 1024, utc("2026-03-05T18:30:00.001Z"));
    m_tree.addFile("sub/deep/C.MP4", 1536, utc("2026-03-07T00:00:00Z"));
    m_tree.addFile("large", Q_INT64_C(5) << 30, utc("2030-01-01T00:00:00Z"));
    m_tree.addFile(".hidden.avi", 0, utc("2026-03-08T00:00:00Z"));
    m_tree.addFile(".folder/d.txt", 0, utc("2026-03-08T00:00:00Z"));
    m_tree.addFile("it's.txt", 0, utc("2026-03-08T00:00:00Z"));
}

void tst_ArchiveSearch::filters_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("paths");

    using List = QStringList;
    QTest::newRow("a name, in every folder")
        << List{"--name", "a.mp4"} << List{"a.mp4", "sub/a.mp4"};
    QTest::newRow("a name is matched as a whole, with its case")
        << List{"--name", "c.mp4"} << List{};
    QTest::newRow("a name with a quote") << List{"--name", "it's.txt"} << List{"it's.txt"};
    QTest::newRow("two names: one or the other")
        << List{"--name", "b.avi", "--name", "large"} << List{"large", "sub/b.avi"};
    QTest::newRow("extensions, with or without the dot")
        << List{"--extension", "avi,.txt"}
        << List{".folder/d.txt", ".hidden.avi", "it's.txt", "sub/b.avi"};
    QTest::newRow("extensions keep their case")
        << List{"--extension", "MP4"} << List{"sub/deep/C.MP4"};
    QTest::newRow("extensions add up") << List{"--extension", "MP4", "--extension", "mp4"}
                                       << List{"a.mp4", "sub/a.mp4", "sub/deep/C.MP4"};
    QTest::newRow("an empty extension: files that have none")
        << List{"--extension", ""} << List{"large"};
    QTest::newRow("an empty extension, written with a dot or =")
        << List{"--extension=", "--extension", "."} << List{"large"};
    QTest::newRow("an empty extension among others")
        << List{"--extension", "MP4,"} << List{"large", "sub/deep/C.MP4"};
    QTest::newRow("the least size counts in")
        << List{"--min-size", "1024"} << List{"large", "sub/b.avi", "sub/deep/C.MP4"};
    QTest::newRow("K is 1024") << List{"--min-size", "1K", "--max-size", "1k"} << List{"sub/b.avi"};
    QTest::newRow("a fraction of K")
        << List{"--min-size", "1.5K", "--max-size", "1.5K"} << List{"sub/deep/C.MP4"};
    QTest::newRow("sizes of more than 32 bits")
        << List{"--min-size", "5G", "--max-size", "5120M"} << List{"large"};
    QTest::newRow("nothing of that size") << List{"--min-size", "1T"} << List{};
    QTest::newRow("newer than a date: local midnight, which counts out")
        << List{"--newer-than", "2026-03-06", "--max-size", "2K", "--not-hidden"}
        << List{"it's.txt", "sub/b.avi", "sub/deep/C.MP4"};
    QTest::newRow("older than a local time")
        << List{"--older-than", "2026-03-05T15:31"} << List{"a.mp4"};
    QTest::newRow("older than that, which counts out")
        << List{"--older-than", "2026-03-05T15:30"} << List{};
    QTest::newRow("older than a time in UTC")
        << List{"--older-than", "2026-03-05T10:00:00.001Z"} << List{"a.mp4"};
    QTest::newRow("older than a time with an offset")
        << List{"--older-than", "2026-03-05T11:00:01+01:00"} << List{"a.mp4"};
    QTest::newRow("hidden: a part of the path with a dot in front")
        << List{"--extension", "avi,txt", "--not-hidden"} << List{"it's.txt", "sub/b.avi"};
    QTest::newRow("all conditions")
        << List{"--name", "a.mp4", "--min-size", "11"} << List{"sub/a.mp4"};
    QTest::newRow("any condition") << List{"--name", "a.mp4", "--min-size", "4G", "--any"}
                                   << List{"a.mp4", "large", "sub/a.mp4"};
    QTest::newRow("any of the one condition")
        << List{"--any", "--extension", "avi"} << List{".hidden.avi", "sub/b.avi"};
    QTest::newRow("an age that all have")
        << List{"--max-age", "100000"}
        << List{".folder/d.txt", ".hidden.avi", "a.mp4",     "it's.txt",
                "large",         "sub/a.mp4",   "sub/b.avi", "sub/deep/C.MP4"};
}

void tst_ArchiveSearch::filters()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, paths);
    const ProgramRun run = runProgram(options + QStringList{"--json", m_tree.path()});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.paths(), paths);
    QCOMPARE(run.number("rows"), 8);
    QCOMPARE(run.json["memory"].toObject()["matches"].toInt(-1), paths.size());
    QCOMPARE(run.json["sqlite"].toObject()["matches"].toInt(-1), paths.size());
    QCOMPARE(run.array("disagreements").size(), 0);
}

void tst_ArchiveSearch::filterTexts()
{
    const ProgramRun run =
        runProgram({"--json", "--name", "it's", "--extension", "a,b", "--min-size", "1K",
                    "--newer-than", "2026-03-05T15:30", "--not-hidden", m_tree.path()});
    const QJsonObject filter = run.json["filter"].toObject();
    QCOMPARE(filter["readable"].toString(),
             QString("name = \"it's\" AND extension IN (\"a\",\"b\") AND size >= 1024 AND "
                     "modified > 2026-03-05T10:00:00.000Z AND  NOT hidden = \"true\""));
    QCOMPARE(filter["code"].toString(),
             QString("name == \"it's\" && extension IN (\"a\",\"b\") && size >= 1024 && "
                     "modified > 2026-03-05T10:00:00.000Z &&  ! hidden == \"true\""));
    QCOMPARE(filter["sql"].toString(),
             QString("name = 'it''s' AND extension IN ('a','b') AND size >= 1024 AND "
                     "modified > 1772704800000000 AND  NOT hidden = 'true'"));
    QCOMPARE(filter["sqlPlaceholders"].toString(),
             QString("name = ? AND extension IN (?,?) AND size >= ? AND modified > ? AND  "
                     "NOT hidden = ?"));

    QStringList bound;
    const QJsonArray values = run.array("bindValues");
    for (const QJsonValue &value : values)
        bound.append(value["type"].toString() + ':' + value["value"].toVariant().toString());
    QCOMPARE(bound, (QStringList{"QString:it's", "QString:a", "QString:b", "qlonglong:1024",
                                 "qlonglong:1772704800000000", "bool:true"}));
}

void tst_ArchiveSearch::noFilter()
{
    const ProgramRun json = runProgram({"--json", m_tree.path()});
    QCOMPARE(json.exitCode, 0);
    QCOMPARE(json.paths().size(), 8);
    QCOMPARE(json.json["sqlite"].toObject()["matches"].toInt(), 8);
    QCOMPARE(json.json["filter"].toObject()["sql"].toString(), QString());

    const ProgramRun text = runProgram({m_tree.path()});
    QVERIFY(text.output.contains("none: every row matches, and the SQL has no WHERE"));
}

void tst_ArchiveSearch::emptyFolder()
{
    const Tree tree;
    const ProgramRun run = runProgram({"--json", "--name", "x", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.number("rows"), 0);
    QCOMPARE(run.array("matches"), QJsonArray());
    QCOMPARE(runProgram({tree.path()}).exitCode, 0);
}

void tst_ArchiveSearch::columns()
{
    const ProgramRun run = runProgram({"--json", "--name", "C.MP4", m_tree.path()});
    QJsonObject row = run.array("matches").first().toObject();
    const double age = row.take("age").toDouble();
    const double expected =
        static_cast<double>(QDateTime::currentMSecsSinceEpoch() - utc("2026-03-07T00:00:00Z")) /
        86400000.0;
    QVERIFY2(qAbs(age - expected) < 0.01, qPrintable(QString::number(age)));
    QVERIFY(!row.take("owner").toString().isEmpty());
    QCOMPARE(row, (QJsonObject{{"path", "sub/deep/C.MP4"},
                               {"name", "C.MP4"},
                               {"extension", "MP4"},
                               {"size", 1536},
                               {"modified", "2026-03-07T00:00:00.000Z"},
                               {"hidden", false},
                               {"depth", 2},
                               {"link", false},
                               {"permissions", 0640}}));
}

void tst_ArchiveSearch::columnsFromThePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<int>("depth");
    QTest::newRow("a hidden file's dot begins no extension") << ".profile"
                                                             << "" << true << 0;
    QTest::newRow("a hidden file may have one") << "a/.profile.bak"
                                                << "bak" << true << 1;
    QTest::newRow("the last dot counts") << "a.tar.gz"
                                         << "gz" << false << 0;
    QTest::newRow("a dot at the end") << "a."
                                      << "" << false << 0;
    QTest::newRow("a folder's dot is none of the file's") << "a.b/c"
                                                          << "" << false << 1;
    QTest::newRow("in a hidden folder") << "a/.b/c/d"
                                        << "" << true << 3;
    QTest::newRow("a dot elsewhere hides nothing") << "a./b..c"
                                                   << "c" << false << 1;
}

void tst_ArchiveSearch::columnsFromThePath()
{
    QFETCH(QString, path);
    const Tree tree;
    tree.addFile(path.toUtf8());
    const QJsonObject row = runProgram({"--json", tree.path()}).array("matches").first().toObject();
    QCOMPARE(row["path"].toString(), path);
    QTEST(row["extension"].toString(), "extension");
    QTEST(row["hidden"].toBool(), "hidden");
    QTEST(row["depth"].toInt(), "depth");
}

void tst_ArchiveSearch::limit()
{
    QCOMPARE(runProgram({"--json", "--limit", "3", m_tree.path()}).paths().size(), 3);
    const ProgramRun none = runProgram({"--json", "--limit", "0", m_tree.path()});
    QCOMPARE(none.paths().size(), 0);
    QCOMPARE(none.json["memory"].toObject()["matches"].toInt(), 8);
}

void tst_ArchiveSearch::datesOutsideTheRange()
{
    const Tree tree;
    tree.addFile("before", 0, utc("1960-01-01T00:00:00Z"));
    tree.addFile("in", 0, utc("1970-01-01T00:00:00Z"));
    tree.addFile("after", 0, utc("2200-01-01T00:00:00Z"));
    const ProgramRun run =
        runProgram({"--json", "--newer-than", "2106-02-07T06:28:14.999Z", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.paths(), (QStringList{"after", "before"}));
}

void tst_ArchiveSearch::wrongUse_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("message");

    using List = QStringList;
    const QByteArray noSize = " is not a size: use a number, or one with K, M, G or T behind it";
    const QByteArray noDate =
        " is not a date: use 2026-03-05, 2026-03-05T10:00 or 2026-03-05T10:00:00+02:00";
    for (const char *size : {"12x", "", "-5", "1.5", "K", "1 K", "1e3", "0x10"})
        QTest::addRow("size '%s'", size)
            << List{"--min-size", size} << '\'' + QByteArray(size) + '\'' + noSize;
    for (const char *size : {"9223372036854775808", "8388608T"})
        QTest::addRow("size '%s'", size)
            << List{"--max-size", size}
            << '\'' + QByteArray(size) + "' is not a size: it is too large for 64 bits";
    for (const char *date : {"2026-13-01", "2026-02-29", "", "yesterday", "2026-03-05x",
                             "2026-03-05T25:00", "2026-03-05T10:00+2", "2026-3-5"})
        QTest::addRow("date '%s'", date)
            << List{"--newer-than", date} << '\'' + QByteArray(date) + '\'' + noDate;
    for (const char *date : {"1969-12-31T23:59:59Z", "2106-02-07T06:28:15Z"})
        QTest::addRow("date '%s'", date)
            << List{"--older-than", date}
            << '\'' + QByteArray(date) +
                   "' is not a date that a filter can hold: use one from 1970-01-01 to "
                   "2106-02-07";
    for (const char *days : {"week", "-1", "inf", "nan", ""})
        QTest::addRow("days '%s'", days)
            << List{"--max-age", days}
            << '\'' + QByteArray(days) + "' is not a number of days: use one such as 7 or 0.5";
    QTest::newRow("limit") << List{"--limit", "-1"}
                           << QByteArray("'-1' is not a count: use a whole number, 0 or more");
    QTest::newRow("unknown option") << List{"--colour"} << QByteArray("Unknown option 'colour'.");
    QTest::newRow("two folders") << List{"x"}
                                 << QByteArray(
                                        "one folder is needed, 2 are given; --help tells more");
    QTest::newRow("no name of a database")
        << List{"--database", ""} << QByteArray("--database needs the name of a file");
}

void tst_ArchiveSearch::wrongUse()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, message);
    const ProgramRun run = runProgram(options + QStringList{m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, "archive-search: " + message + '\n');
    QCOMPARE(run.output, QByteArray());
}

void tst_ArchiveSearch::helpAndVersion()
{
    for (const char *option : {"--help", "-h"}) {
        const ProgramRun help = runProgram({option});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.output.contains("Exit codes:"));
        for (const char *known :
             {"--newer-than <DATE>", "--sort <FIELD>", "--group-by-extension", "--show-code",
              "--name-like <PATTERN>", "--name-regexp <PATTERN>", "--save-filter <FILE>",
              "--load-filter <FILE>", "disagree on some rows or on their order"})
            QVERIFY2(help.output.contains(known), known);
    }
    QCOMPARE(runProgram({"--version"}).output, QByteArray("archive-search 0.1.0\n"));
}

void tst_ArchiveSearch::closeDoublesDisagree()
{
    const Tree tree;
    tree.addFile("young", 0, daysAgo(0.5));
    tree.addFile("between", 0, daysAgo(2.5));
    tree.addFile("old", 0, daysAgo(3.5));
    const ProgramRun run = runProgram({"--json", "--max-age", "2", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.paths(), (QStringList{"between", "young"}));
    QCOMPARE(run.json["sqlite"].toObject()["matches"].toInt(), 1);
    QCOMPARE(run.number("disagreementCount"), 1);

    const QJsonObject row = run.array("disagreements").first().toObject();
    QCOMPARE(row["path"].toString(), QString("between"));
    QCOMPARE(row["memory"], QJsonValue(true));
    QCOMPARE(row["sqlite"], QJsonValue(false));
    const QJsonArray conditions = row["conditions"].toArray();
    QCOMPARE(conditions.size(), 1);
    QCOMPARE(conditions.first()["condition"].toString(), QString("age <= 2"));
    QCOMPARE(conditions.first()["memory"], QJsonValue(true));
    QCOMPARE(conditions.first()["sqlite"], QJsonValue(false));
    const QString reason = conditions.first()["reason"].toString();
    QVERIFY2(reason.startsWith("age is 2.5"), qPrintable(reason));
    QVERIFY2(reason.contains("differ by less than 1"), qPrintable(reason));

    const ProgramRun text = runProgram({"--max-age", "2", tree.path()});
    QCOMPARE(text.exitCode, 1);
    QVERIFY(text.output.contains("Memory and SQLite disagree on 1 of 3 rows\n"
                                 "  between\n"
                                 "    memory: a match, SQLite: no match\n"
                                 "    age <= 2 is true in memory and false in SQLite:\n"
                                 "      age is 2.5"));
}

void tst_ArchiveSearch::unexplainedDisagreement()
{
    // SQLite drops a byte order mark in front of a text, so that two names become one.
    const Tree tree;
    tree.addFile("\xef\xbb\xbfmarked", 7);
    tree.addFile("marked");
    const ProgramRun run =
        runProgram({"--json", "--name=" + QString(QChar(0xfeff)) + "marked", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.array("matches").size(), 1);
    QCOMPARE(run.array("matches").first()["size"].toInt(), 7);
    QCOMPARE(run.json["sqlite"].toObject()["matches"].toInt(), 2);
    const QJsonObject row = run.array("disagreements").first().toObject();
    QCOMPARE(row["path"].toString(), QString("marked"));
    QCOMPARE(row["conditions"].toArray().first()["reason"].toString(),
             QString("no known rule explains it"));
}

void tst_ArchiveSearch::textReport()
{
    const Tree tree;
    tree.addFile("a.mp4", 1234567, utc("2026-03-05T10:00:00Z"));
    tree.addFile("b.txt");
    const ProgramRun run = runProgram({"--extension", "mp4", "--min-size", "1K", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.startsWith("Filter\n"
                                  "  readable    extension IN (\"mp4\") AND size >= 1024\n"
                                  "  code        extension IN (\"mp4\") && size >= 1024\n"
                                  "  SQL         extension IN ('mp4') AND size >= 1024\n"
                                  "  SQL, bound  extension IN (?) AND size >= ?\n"
                                  "  bind values\n"
                                  "     1  QString    mp4\n"
                                  "     2  qlonglong  1024\n"
                                  "\n"
                                  "Recordings\n"
                                  "  rows                     2\n"
                                  "  skipped                  0\n"
                                  "  not UTF-8                0\n"
                                  "\n"
                                  "Results            matches            ms        rows/s\n"
                                  "  memory                   1 "));
    QVERIFY(run.output.endsWith("\n"
                                "First matches\n"
                                "               size  modified (UTC)       path\n"
                                "          1,234,567  2026-03-05 10:00:00  a.mp4\n"
                                "\n"
                                "Memory and SQLite agree on all rows.\n"));
}

void tst_ArchiveSearch::controlCharacters()
{
    const Tree tree;
    tree.addFile("\x1b]0;owned\x07\x7f\xc2\x9b\xe2\x80\xae\nx");
    const ProgramRun run = runProgram({"--name", "\x1b[31m", "--not-hidden", "--any", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.contains("  \\x1b]0;owned\\x07\\x7f\\x9b\\x202e\\x0ax\n"));
    QVERIFY(run.output.contains("name = \"\\x1b[31m\""));
    for (const char *dangerous : {"\x1b", "\x07", "\x7f", "\xc2\x9b", "\xe2\x80\xae"})
        QVERIFY(!run.output.contains(dangerous));

    const ProgramRun missing = runProgram({tree.path("\x1b[2J")});
    QCOMPARE(missing.exitCode, 2);
    QVERIFY(!missing.errors.contains('\x1b'));
}

void tst_ArchiveSearch::progress_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("visible");
    QTest::newRow("on a terminal") << QStringList{} << true;
    QTest::newRow("not with --quiet") << QStringList{"--quiet"} << false;
    QTest::newRow("not with --json") << QStringList{"--json"} << false;
}

void tst_ArchiveSearch::progress()
{
    QFETCH(QStringList, options);
    QFETCH(bool, visible);
    QString terminal;
    const int master = openTerminal(terminal);
    QVERIFY(master >= 0);
    BoundProcess process;
    process.setStandardErrorFile(terminal, QIODevice::Append);
    const ProgramRun run = resultOf(process, PROGRAM, options + QStringList{m_tree.path()});
    QCOMPARE(run.exitCode, 0);

    std::array<char, 4096> buffer;
    QCOMPARE(::fcntl(master, F_SETFL, O_NONBLOCK), 0);
    const ssize_t length = ::read(master, buffer.data(), buffer.size());
    const QByteArray seen(buffer.data(), static_cast<int>(qMax<ssize_t>(length, 0)));
    ::close(master);
    QCOMPARE(seen.contains("100 %"), visible);
    QCOMPARE(seen.endsWith("\r\x1b[K"), visible); // erased
    QCOMPARE(seen.isEmpty(), !visible);
}

void tst_ArchiveSearch::lostOutput_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("errors");
    const QByteArray full = "archive-search: cannot write the output: No space left on device\n";
    QTest::newRow("a reader that has gone")
        << QByteArray("\"$0\" \"$1\" | true") << 0 << QByteArray();
    QTest::newRow("a reader that has gone, and no signal")
        << QByteArray("trap '' PIPE; { \"$0\" \"$1\"; echo $? >&2; } | sleep 0") << 0
        << QByteArray("0\n");
    QTest::newRow("closed") << QByteArray("exec \"$0\" \"$1\" >&-") << 2
                            << QByteArray("archive-search: cannot write the output: "
                                          "Bad file descriptor\n");
    QTest::newRow("a full disk") << QByteArray("exec \"$0\" \"$1\" >/dev/full") << 2 << full;
}

void tst_ArchiveSearch::lostOutput()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, errors);
    const ProgramRun run = runScript(script.constData(), {m_tree.path()});
    QTEST(run.exitCode, "exitCode");
    QCOMPARE(run.errors, errors);
}

QTEST_GUILESS_MAIN(tst_ArchiveSearch)

#include "tst_ArchiveSearch.moc"
