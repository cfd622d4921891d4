#include <QtTest>

#include "ProgramRun.h"

namespace {

// The paths of the listed matches, as listed.
QStringList listed(const ProgramRun &run)
{
    QStringList result;
    const QJsonArray matches = run.array("matches");
    for (const QJsonValue &match : matches)
        result.append(match["path"].toString());
    return result;
}

QString groupText(const QJsonValue &group)
{
    const auto side = [&](const char *name) {
        const QJsonValue values = group[QLatin1String(name)];
        return QStringLiteral("%1 %2 %3")
            .arg(values["count"].toInt(-1))
            .arg(values["max"].toInt(-1))
            .arg(values["min"].toInt(-1));
    };
    return group["extension"].toString() + ": " + side("memory") + " | " + side("sqlite");
}

} // namespace

class tst_ArchiveSearchOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void sorted_data();
    void sorted();
    void sortedByOwnerKeepsTheRows();
    void tiesGoByRow();
    void limitTakesTheFirst();
    void sortedMatchesAreWhole();
    void noMatchesToSort();
    void wrongField_data();
    void wrongField();

    void closeDoublesAreOrderedDifferently();
    void datesInReverseCountWholeSeconds();
    void charactersBeyondThePlane();
    void unexplainedOrder();
    void rowsOfOneSideHaveNoPlace();
    void notes_data();
    void notes();

    void groups();
    void groupsOfTheMatchesOnly();
    void groupsThatDiffer();
    void noGroups();

    void textReport();
    void showCode();
    void onlyWhatWasAskedFor();

private:
    Tree m_tree;
};

void tst_ArchiveSearchOrder::initTestCase()
{
    m_tree.addFile("b.mp4", 300, utc("2026-03-05T10:00:00Z"));
    m_tree.addFile("sub/B.avi", 20, utc("2026-03-05T10:00:01Z"));
    m_tree.addFile("sub/deep/ab", Q_INT64_C(5) << 30, utc("2030-01-01T00:00:00Z"));
    m_tree.addFile(".abc.mp4", 1, utc("1990-01-01T00:00:00Z"));
}

void tst_ArchiveSearchOrder::sorted_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QStringList>("paths");

    using List = QStringList;
    QTest::newRow("numbers as numbers")
        << "size" << List{".abc.mp4", "sub/B.avi", "b.mp4", "sub/deep/ab"};
    QTest::newRow("numbers, in reverse")
        << "-size" << List{"sub/deep/ab", "b.mp4", "sub/B.avi", ".abc.mp4"};
    QTest::newRow("texts by code")
        << "name" << List{".abc.mp4", "sub/B.avi", "sub/deep/ab", "b.mp4"};
    QTest::newRow("texts, in reverse")
        << "-name" << List{"b.mp4", "sub/deep/ab", "sub/B.avi", ".abc.mp4"};
    QTest::newRow("paths") << "path" << List{".abc.mp4", "b.mp4", "sub/B.avi", "sub/deep/ab"};
    QTest::newRow("dates") << "modified" << List{".abc.mp4", "b.mp4", "sub/B.avi", "sub/deep/ab"};
    QTest::newRow("dates, in reverse")
        << "-modified" << List{"sub/deep/ab", "sub/B.avi", "b.mp4", ".abc.mp4"};
}

void tst_ArchiveSearchOrder::sorted()
{
    QFETCH(QString, field);
    const ProgramRun run = runProgram({"--json", "--sort", field, m_tree.path()});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    QTEST(listed(run), "paths");
    const QJsonObject order = run.json["order"].toObject();
    QCOMPARE(order["by"].toString(), field);
    QCOMPARE(order["rows"].toInt(), 4);
    QCOMPARE(order["differences"].toInt(-1), 0);
    QVERIFY(!order.contains("first"));
}

void tst_ArchiveSearchOrder::sortedByOwnerKeepsTheRows()
{
    // One owner, so each row ties with each other: the order of the walk stays, both ways.
    const QStringList walked = listed(runProgram({"--json", m_tree.path()}));
    for (const char *field : {"owner", "-owner", "permissions", "-link"}) {
        const ProgramRun run = runProgram({"--json", "--sort", field, m_tree.path()});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(listed(run), walked);
    }
}

void tst_ArchiveSearchOrder::tiesGoByRow()
{
    const Tree tree;
    for (int i = 0; i < 300; ++i)
        tree.addFile(QByteArray::number(i), i % 3);
    const QStringList walked = listed(runProgram({"--json", "--limit", "300", tree.path()}));
    QStringList expected;
    for (const int size : {2, 1, 0}) {
        for (const QString &path : walked) {
            if (path.toInt() % 3 == size)
                expected.append(path);
        }
    }
    const ProgramRun run = runProgram({"--json", "--limit", "300", "--sort", "-size", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(listed(run), expected);
    QCOMPARE(run.json["order"]["differences"].toInt(-1), 0);
}

void tst_ArchiveSearchOrder::limitTakesTheFirst()
{
    const ProgramRun run = runProgram(
        {"--json", "--sort=-size", "--limit", "2", "--name-regexp", ".*b.*", m_tree.path()});
    QCOMPARE(listed(run), (QStringList{"sub/deep/ab", "b.mp4"}));
    QCOMPARE(run.json["order"]["rows"].toInt(), 3);
    QCOMPARE(listed(runProgram({"--json", "--sort", "size", "--limit", "0", m_tree.path()})),
             QStringList());
}

void tst_ArchiveSearchOrder::sortedMatchesAreWhole()
{
    const auto rowOf = [&](const QStringList &options) {
        QJsonObject row = runProgram(options + QStringList{"--json", "--name", "ab", m_tree.path()})
                              .array("matches")
                              .first()
                              .toObject();
        row.remove("age"); // goes on between two runs
        return row;
    };
    QCOMPARE(rowOf({"--sort", "size"}), rowOf({}));
    QCOMPARE(rowOf({}).size(), 10);
}

void tst_ArchiveSearchOrder::noMatchesToSort()
{
    const ProgramRun run = runProgram(
        {"--json", "--sort", "size", "--group-by-extension", "--name", "none", m_tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json["order"]["rows"].toInt(-1), 0);
    QCOMPARE(run.json["groups"]["byExtension"].toArray(), QJsonArray());
}

void tst_ArchiveSearchOrder::wrongField_data()
{
    QTest::addColumn<QString>("field");
    for (const char *field : {"sizes", "", "-", "--size", "Size", "id", "size DESC"})
        QTest::newRow(field) << field;
}

void tst_ArchiveSearchOrder::wrongField()
{
    QFETCH(QString, field);
    const ProgramRun run = runProgram({"--sort", field, m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, "archive-search: '" + field.toUtf8() +
                             "' is no field to sort by: use one of path, name, extension, size, "
                             "modified, age, hidden, depth, link, permissions, owner, or one with "
                             "- in front for the reverse order\n");
    QCOMPARE(run.output, QByteArray());
}

void tst_ArchiveSearchOrder::closeDoublesAreOrderedDifferently()
{
    // In memory the two young ones tie, so one of the two orders of SQLite is another one.
    const Tree tree;
    tree.addFile("young", 0, daysAgo(0.2));
    tree.addFile("younger", 0, daysAgo(0.1));
    tree.addFile("old", 0, daysAgo(7));
    const QStringList walked = listed(runProgram({"--json", tree.path()}));
    const bool youngFirst = walked.indexOf("young") < walked.indexOf("younger");
    const QString tied = youngFirst ? "young" : "younger";
    const QString other = youngFirst ? "younger" : "young";
    const QString disagreeing = youngFirst ? "age" : "-age";
    const QString agreeing = youngFirst ? "-age" : "age";
    const int place = youngFirst ? 1 : 2;

    const ProgramRun same = runProgram({"--json", "--sort", agreeing, tree.path()});
    QCOMPARE(same.exitCode, 0);
    QCOMPARE(same.json["order"]["differences"].toInt(-1), 0);

    const ProgramRun run = runProgram({"--json", "--sort", disagreeing, tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.number("disagreementCount"), 0);
    const QJsonObject order = run.json["order"].toObject();
    QCOMPARE(order["differences"].toInt(), 2);
    QCOMPARE(order["first"]["place"].toInt(), place);
    QCOMPARE(order["first"]["memory"].toString(), tied);
    QCOMPARE(order["first"]["sqlite"].toString(), other);
    QVERIFY(order["first"]["reason"].toString().contains("differ by less than 1"));
    QCOMPARE(run.array("notes").size(), 1);

    const ProgramRun text = runProgram({"--sort", disagreeing, tree.path()});
    QCOMPARE(text.exitCode, 1);
    const QString expected =
        QStringLiteral("\nMemory and SQLite agree on all rows.\n"
                       "Memory and SQLite disagree on the order: 2 of 3 places hold another row\n"
                       "  first at place %1: %2 in memory, %3 in SQLite:\n"
                       "      Numbers with a fraction that differ by less than 1 are the same in "
                       "memory, and not in SQLite: their order may differ\n")
            .arg(place)
            .arg(tied, other);
    QVERIFY2(text.output.endsWith(expected.toUtf8()), text.output.constData());
}

void tst_ArchiveSearchOrder::datesInReverseCountWholeSeconds()
{
    const Tree tree;
    tree.addFile("epoch", 0, 0);
    tree.addFile("later", 0, utc("2026-03-05T10:00:00Z"));
    const ProgramRun run = runProgram({"--json", "--sort", "-modified", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(listed(run), (QStringList{"epoch", "later"}));
    QCOMPARE(run.json["order"]["first"]["sqlite"].toString(), QString("later"));
    QVERIFY(run.json["order"]["first"]["reason"].toString().contains("whole seconds"));
    QCOMPARE(runProgram({"--sort", "modified", tree.path()}).exitCode, 0);

    // Within one second the row decides in memory, whichever way the walk went.
    const Tree second;
    second.addFile("a", 0, utc("2026-03-05T10:00:00.250Z"));
    second.addFile("b", 0, utc("2026-03-05T10:00:00.750Z"));
    const QStringList walked = listed(runProgram({"--json", second.path()}));
    const ProgramRun close = runProgram({"--json", "--sort", "-modified", second.path()});
    QCOMPARE(listed(close), walked);
    QCOMPARE(close.exitCode, walked.first() == "a" ? 1 : 0);
}

void tst_ArchiveSearchOrder::charactersBeyondThePlane()
{
    const Tree tree;
    tree.addFile("\xf0\x9f\x8e\xa5"); // U+1F3A5: D83C DFA5 in UTF-16
    tree.addFile("\xef\xbc\x81");     // U+FF01
    const ProgramRun run = runProgram({"--json", "--sort", "name", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(listed(run).first(), QString::fromUtf8("\xf0\x9f\x8e\xa5"));
    QCOMPARE(run.json["order"]["differences"].toInt(), 2);
    QVERIFY(run.json["order"]["first"]["reason"].toString().contains("UTF-16"));
}

void tst_ArchiveSearchOrder::unexplainedOrder()
{
    // SQLite drops a byte order mark in front of a text. The rule of texts is not to blame.
    const Tree tree;
    tree.addFile("\xef\xbb\xbf"
                 "a");
    tree.addFile("b");
    const ProgramRun run = runProgram({"--json", "--sort", "name", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.json["order"]["first"]["reason"].toString(), QString("no known rule explains it"));
}

void tst_ArchiveSearchOrder::rowsOfOneSideHaveNoPlace()
{
    const Tree tree;
    tree.addFile("abc", 1);
    tree.addFile("ABC", 2);
    tree.addFile("x", 3);
    const ProgramRun run = runProgram(
        {"--json", "--sort", "-size", "--name-like", "abc", "--name", "x", "--any", tree.path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(listed(run), (QStringList{"x", "abc"}));
    QCOMPARE(run.number("disagreementCount"), 1);
    QCOMPARE(run.json["order"]["rows"].toInt(), 2);
    QCOMPARE(run.json["order"]["differences"].toInt(-1), 0);
}

void tst_ArchiveSearchOrder::notes_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("note"); // the beginning of the only one
    using List = QStringList;
    QTest::newRow("nothing") << List{} << "";
    QTest::newRow("size") << List{"--sort", "-size"} << "";
    QTest::newRow("a date") << List{"--sort", "modified"} << "";
    QTest::newRow("a date in reverse") << List{"--sort", "-modified"} << "A date that sorts";
    QTest::newRow("a truth") << List{"--sort", "-hidden"} << "";
    QTest::newRow("a text") << List{"--sort", "-owner"} << "Texts are ordered by UTF-16";
    QTest::newRow("a double") << List{"--sort", "age", "--limit", "0"} << "Numbers with a fraction";
    QTest::newRow("groups") << List{"--group-by-extension"}
                            << "In memory max is the value that compares smallest";
}

void tst_ArchiveSearchOrder::notes()
{
    QFETCH(QStringList, options);
    QFETCH(QString, note);
    const QJsonArray notes =
        runProgram(options + QStringList{"--json", m_tree.path()}).array("notes");
    QCOMPARE(notes.size(), note.isEmpty() ? 0 : 1);
    QVERIFY(note.isEmpty() || notes.first().toString().startsWith(note));
    const ProgramRun text = runProgram(options + QStringList{m_tree.path()});
    QCOMPARE(text.output.contains("\nNotes\n  " + note.toUtf8()), !note.isEmpty());
}

void tst_ArchiveSearchOrder::groups()
{
    const Tree tree;
    tree.addFile("1.avi", 10);
    tree.addFile("sub/2.avi", 30);
    tree.addFile("3.avi", 20);
    tree.addFile("4.AVI", 7);
    tree.addFile("none", 1);
    const ProgramRun run = runProgram({"--json", "--group-by-extension", tree.path()});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.exitCode, 0);
    const QJsonObject groups = run.json["groups"].toObject();
    QStringList texts;
    const QJsonArray array = groups["byExtension"].toArray();
    for (const QJsonValue &group : array)
        texts.append(groupText(group));
    // count, max and min; max in memory is the smallest
    QCOMPARE(texts,
             (QStringList{": 1 1 1 | 1 1 1", "AVI: 1 7 7 | 1 7 7", "avi: 3 10 30 | 3 30 10"}));
    QCOMPARE(groups["agree"], QJsonValue(true));
    QCOMPARE(
        groups["meaning"].toObject(),
        (QJsonObject{
            {"memory", QJsonObject{{"count", "rows"}, {"max", "smallest"}, {"min", "greatest"}}},
            {"sqlite", QJsonObject{{"count", "rows"}, {"max", "greatest"}, {"min", "smallest"}}}}));
}

void tst_ArchiveSearchOrder::groupsOfTheMatchesOnly()
{
    const ProgramRun run = runProgram(
        {"--json", "--group-by-extension", "--min-size", "20", "--limit", "0", m_tree.path()});
    QStringList texts;
    const QJsonArray array = run.json["groups"]["byExtension"].toArray();
    for (const QJsonValue &group : array)
        texts.append(groupText(group).section(' ', 0, 1));
    QCOMPARE(texts, (QStringList{": 1", "avi: 1", "mp4: 1"}));
    // more than 32 bits
    QCOMPARE(array.first()["memory"]["max"].toDouble(), 5368709120.0);
    QCOMPARE(array.first()["sqlite"]["min"].toDouble(), 5368709120.0);
}

void tst_ArchiveSearchOrder::groupsThatDiffer()
{
    const Tree tree;
    tree.addFile("ab.x", 1);
    tree.addFile("AB.y", 2);
    const QStringList options{"--group-by-extension", "--name-like", "ab._", tree.path()};
    const ProgramRun run = runProgram(QStringList{"--json"} + options);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.json["groups"]["agree"], QJsonValue(false));
    const QJsonArray array = run.json["groups"]["byExtension"].toArray();
    QCOMPARE(groupText(array.at(0)), QString("x: 1 1 1 | 1 1 1"));
    QCOMPARE(array.at(1)["memory"], QJsonValue());
    QCOMPARE(array.at(1)["sqlite"]["count"].toInt(), 1);

    const ProgramRun text = runProgram(options);
    QVERIFY(text.output.contains("  y                      -                -                -"
                                 "         1                2                2\n"));
    QVERIFY(text.output.endsWith(
        "\nMemory and SQLite disagree on some groups, and not only by max and min.\n"));

    // The rows agree here: SQLite drops the byte order mark that one extension begins with.
    const Tree marked;
    marked.addFile("a.\xef\xbb\xbfx");
    const ProgramRun byMark = runProgram({"--json", "--group-by-extension", marked.path()});
    QCOMPARE(byMark.number("disagreementCount"), 0);
    QCOMPARE(byMark.json["groups"]["agree"], QJsonValue(false));
    QCOMPARE(byMark.exitCode, 1);
}

void tst_ArchiveSearchOrder::noGroups()
{
    const Tree tree;
    const ProgramRun run = runProgram({"--json", "--group-by-extension", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.json["groups"]["byExtension"], QJsonValue(QJsonArray()));
    QCOMPARE(run.json["groups"]["agree"], QJsonValue(true));
}

void tst_ArchiveSearchOrder::textReport()
{
    const ProgramRun run =
        runProgram({"--sort", "-size", "--limit", "1", "--group-by-extension", m_tree.path()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.contains("\n  memory sort "));
    QVERIFY(run.output.contains("\n  SQLite sort "));
    const QByteArray expected =
        "\nFirst matches by -size\n"
        "               size  modified (UTC)       path\n"
        "      5,368,709,120  2030-01-01 00:00:00  sub/deep/ab\n"
        "\n"
        "Groups                                                memory"
        "                                      SQLite\n"
        "  extension          count    max: smallest    min: greatest"
        "     count    max: greatest    min: smallest\n"
        "  (none)                 1    5,368,709,120    5,368,709,120"
        "         1    5,368,709,120    5,368,709,120\n"
        "  avi                    1               20               20"
        "         1               20               20\n"
        "  mp4                    2                1              300"
        "         2              300                1\n"
        "\n"
        "Notes\n"
        "  In memory max is the value that compares smallest and min the one that compares "
        "greatest; in SQLite it is the other way round\n"
        "\n"
        "Memory and SQLite agree on all rows.\n"
        "Memory and SQLite agree on the order of 4 rows.\n"
        "Memory and SQLite agree on all groups, but for max and min: each is the other's.\n";
    QVERIFY2(run.output.endsWith(expected), run.output.constData());
}

void tst_ArchiveSearchOrder::showCode()
{
    const QStringList options{"--show-code", "--sort", "-modified", "--group-by-extension",
                              "--any",       "--name", "it's",      "--not-hidden",
                              m_tree.path()};
    const ProgramRun text = runProgram(options);
    QCOMPARE(text.exitCode, 0);
    QVERIFY2(text.output.contains("\nCode\n"
                                  "  filter      name == \"it's\" ||  ! hidden == \"true\"\n"
                                  "  as SQL      name = 'it''s' OR  NOT hidden = 'true'\n"
                                  "  sort key    -modified\n"
                                  "  as SQL      modified DESC\n"
                                  "  columns     extension,count(size),max(size),min(size)\n"
                                  "  as SQL      extension,count(size),max(size),min(size)\n"
                                  "\nRecordings\n"),
             text.output.constData());

    const QJsonObject code = runProgram(QStringList{"--json"} + options).json["code"].toObject();
    QCOMPARE(code.keys(), (QStringList{"columns", "filter", "sortKey"}));
    QCOMPARE(code["sortKey"].toObject(),
             (QJsonObject{{"code", "-modified"}, {"sql", "modified DESC"}}));
    QCOMPARE(code["columns"]["sql"].toString(),
             QString("extension,count(size),max(size),min(size)"));
    QCOMPARE(code["filter"]["code"].toString(),
             QString("name == \"it's\" ||  ! hidden == \"true\""));
    QCOMPARE(runProgram({"--json", "--show-code", m_tree.path()}).json["code"].toObject(),
             QJsonObject());
}

void tst_ArchiveSearchOrder::onlyWhatWasAskedFor()
{
    const ProgramRun run = runProgram({"--json", m_tree.path()});
    for (const char *key : {"order", "groups", "code"})
        QVERIFY2(!run.json.contains(QLatin1String(key)), key);
    const ProgramRun text = runProgram({m_tree.path()});
    for (const char *words : {"Groups", "Code", "Notes", "sort", "order"})
        QVERIFY2(!text.output.contains(words), words);
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchOrder)

#include "tst_ArchiveSearchOrder.moc"
