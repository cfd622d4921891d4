#include <QtTest>

#include "ProgramRun.h"

namespace {

const char gLikeNote[] = "LIKE in memory: case counts, % stands for points only, and characters "
                         "such as * keep their meaning in regular expressions; in SQLite % stands "
                         "for any text, and the case of a to z does not count";
const char gRegexpNote[] = "REGEXP in memory matches the whole text, by QRegExp; in SQLite a part "
                           "is enough, by QRegularExpression";

} // namespace

class tst_ArchiveSearchPatterns : public QObject
{
    Q_OBJECT

private slots:
    void patterns_data();
    void patterns();
    void wrongRegexp_data();
    void wrongRegexp();
    void texts();
    void notBlamedWithoutCause();
    void textReport();
};

void tst_ArchiveSearchPatterns::patterns_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("inMemory"); // of the files
    QTest::addColumn<QStringList>("inSqlite");

    using List = QStringList;
    const auto like = [](const char *pattern) { return List{"--name-like", pattern}; };
    const auto regexp = [](const char *pattern) { return List{"--name-regexp", pattern}; };

    QTest::newRow("LIKE, a plain text")
        << like("abc") << List{"abc", "abcd", "xabc"} << List{"abc"} << List{"abc"};
    QTest::newRow("LIKE, _ is one character on both sides")
        << like("a_c") << List{"abc", "a.c", "ac", "abbc"} << List{"a.c", "abc"}
        << List{"a.c", "abc"};
    QTest::newRow("LIKE, a point is a point on both sides")
        << like("a.c") << List{"a.c", "abc"} << List{"a.c"} << List{"a.c"};
    QTest::newRow("LIKE, % is for points in memory")
        << like("a%c") << List{"ac", "a.c", "a..c", "abc"} << List{"a..c", "a.c", "ac"}
        << List{"a..c", "a.c", "abc", "ac"};
    QTest::newRow("LIKE, case counts in memory")
        << like("abc") << List{"abc", "ABC"} << List{"abc"} << List{"ABC", "abc"};
    QTest::newRow("LIKE, case beyond ASCII counts on both sides")
        << like("\xc3\xa9") << List{"\xc3\xa9", "\xc3\x89"} << List{QString::fromUtf8("\xc3\xa9")}
        << List{QString::fromUtf8("\xc3\xa9")};
    QTest::newRow("LIKE, a star repeats in memory")
        << like("ab*") << List{"ab*", "abb", "a"} << List{"a", "abb"} << List{"ab*"};
    QTest::newRow("LIKE, what is no regular expression matches nothing in memory")
        << like("[") << List{"[", "a"} << List{} << List{"["};
    QTest::newRow("LIKE, what would be a place to bind")
        << like("a?:b'_") << List{"a?:b'c", ":b'c"} << List{":b'c"} << List{"a?:b'c"};
    QTest::newRow("LIKE, a character beyond U+FFFF is two in memory")
        << like("_") << List{"\xf0\x9f\x8e\xa5", "a"} << List{"a"}
        << List{"a", QString::fromUtf8("\xf0\x9f\x8e\xa5")};
    QTest::newRow("REGEXP, the whole name")
        << regexp("a.*c") << List{"abc", "ac", "ab"} << List{"abc", "ac"} << List{"abc", "ac"};
    QTest::newRow("REGEXP, a part is enough in SQLite")
        << regexp("b") << List{"abc", "b", "a"} << List{"b"} << List{"abc", "b"};
    QTest::newRow("REGEXP, case counts on both sides")
        << regexp("B") << List{"b", "B"} << List{"B"} << List{"B"};
    QTest::newRow("REGEXP with a quote") << regexp("it's(\\.x)?") << List{"it's", "it's.x", "its"}
                                         << List{"it's", "it's.x"} << List{"it's", "it's.x"};
    QTest::newRow("both, and another condition")
        << like("a_") + regexp(".b") + List{"--min-size", "0"} << List{"ab", "ac", "cb"}
        << List{"ab"} << List{"ab"};
    QTest::newRow("one of both is enough")
        << like("a_") + regexp(".b") + List{"--any"} << List{"ab", "ac", "cb", "x"}
        << List{"ab", "ac", "cb"} << List{"ab", "ac", "cb"};
}

void tst_ArchiveSearchPatterns::patterns()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, files);
    QFETCH(QStringList, inMemory);
    QFETCH(QStringList, inSqlite);
    const Tree tree;
    for (const QString &file : qAsConst(files))
        tree.addFile(file.toUtf8());

    const ProgramRun run = runProgram(options + QStringList{"--json", tree.path()});
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.paths(), inMemory);
    QCOMPARE(run.json["sqlite"]["matches"].toInt(-1), inSqlite.size());

    // Each difference is told, and is the rule's.
    QStringList differing;
    const QJsonArray disagreements = run.array("disagreements");
    for (const QJsonValue &row : disagreements) {
        differing.append(row["path"].toString());
        const QString reason = row["conditions"][0]["reason"].toString();
        QVERIFY2(reason.endsWith("has other rules in SQLite, as the notes tell"),
                 qPrintable(reason));
    }
    differing.sort();
    QStringList expected;
    for (const QString &file : qAsConst(files)) {
        if (inMemory.contains(file) != inSqlite.contains(file))
            expected.append(file);
    }
    expected.sort();
    QCOMPARE(differing, expected);
    QCOMPARE(run.exitCode, expected.isEmpty() ? 0 : 1);
    QJsonArray notes;
    if (options.contains("--name-like"))
        notes.append(gLikeNote);
    if (options.contains("--name-regexp"))
        notes.append(gRegexpNote);
    QCOMPARE(run.array("notes"), notes);
}

void tst_ArchiveSearchPatterns::wrongRegexp_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("for both sides") << "(" << QByteArray("unexpected end");
    QTest::newRow("in memory") << "(?<=a)b" << QByteArray("lookbehinds not supported");
    QTest::newRow("for SQLite") << "a{3,2}" << QByteArray();
}

void tst_ArchiveSearchPatterns::wrongRegexp()
{
    QFETCH(QString, pattern);
    QFETCH(QByteArray, reason);
    const Tree tree;
    const ProgramRun run = runProgram({"--name-regexp", pattern, tree.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.startsWith("archive-search: '" + pattern.toUtf8() +
                                   "' is not a regular expression: " + reason),
             run.errors.constData());
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(run.output, QByteArray());
}

void tst_ArchiveSearchPatterns::texts()
{
    const Tree tree;
    const ProgramRun run =
        runProgram({"--json", "--name-like", "it's", "--name-regexp", "a.b", tree.path()});
    const QJsonObject filter = run.json["filter"].toObject();
    QCOMPARE(filter["code"].toString(), QString("like(name,\"it's\") && regexp(name,\"a.b\")"));
    for (const char *style : {"sql", "sqlPlaceholders"}) {
        QCOMPARE(filter[QLatin1String(style)].toString(),
                 QString("(name LIKE 'it''s') AND (name REGEXP 'a.b')"));
    }
    QCOMPARE(run.array("bindValues"), QJsonArray());
}

void tst_ArchiveSearchPatterns::notBlamedWithoutCause()
{
    // SQLite drops a byte order mark in front of a text, which no rule of LIKE has to do with.
    const Tree tree;
    tree.addFile("\xef\xbb\xbf"
                 "abc");
    for (const char *option : {"--name-like", "--name-regexp"}) {
        const ProgramRun run = runProgram({"--json", option, "abc", tree.path()});
        QCOMPARE(run.exitCode, 1);
        const QJsonObject row = run.array("disagreements").first().toObject();
        QCOMPARE(row["memory"], QJsonValue(false));
        QCOMPARE(row["reason"].toString(), QString("no known rule explains it"));
    }
}

void tst_ArchiveSearchPatterns::textReport()
{
    const Tree tree;
    tree.addFile("abc");
    const ProgramRun run = runProgram({"--name-like", "A%", tree.path()});
    QCOMPARE(run.exitCode, 1);
    const QByteArray expected = QByteArray("\nNotes\n  ") + gLikeNote +
                                "\n"
                                "\n"
                                "Memory and SQLite disagree on 1 of 1 rows\n"
                                "  abc\n"
                                "    memory: no match, SQLite: a match\n"
                                "    like(name,\"A%\") is false in memory and true in SQLite:\n"
                                "      LIKE has other rules in SQLite, as the notes tell\n";
    QVERIFY2(run.output.endsWith(expected), run.output.constData());
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchPatterns)

#include "tst_ArchiveSearchPatterns.moc"
