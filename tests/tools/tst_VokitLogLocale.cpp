#include "LogFiles.h"

#include <QtTest>

/// Dates of systems that speak another language; none of their locales is installed here.
class tst_VokitLogLocale : public QObject
{
    Q_OBJECT

private slots:
    void times_data();
    void times();
    void values();
    void years_data();
    void years();
    void environment();
    void output();
};

void tst_VokitLogLocale::times_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QByteArray>("time");
    QTest::addColumn<QByteArray>("shown");
    const auto row = [](const char *name, const QStringList &before, const char *time,
                        const char *shown) {
        QTest::newRow(name) << before << QByteArray(time) << QByteArray(shown);
    };
    const char *const german = "21.11.26 15:04";
    const char *const read = "2026-11-21 15:04:00";
    const char *const unread = "'21.11.26 15:04'";
    row("not asked for", {"show"}, german, unread);
    row("of Germany", {"show", "--locale", "de_DE"}, german, read);
    row("with its codeset", {"show", "--locale=de_DE.UTF-8"}, german, read);
    row("with a hyphen", {"show", "--locale=de-DE"}, german, read);
    row("a language", {"show", "--locale=de"}, german, read);
    row("ahead of the verb", {"--locale", "de_DE", "show"}, german, read);
    row("the last one counts", {"--locale=en_US", "show", "--locale", "de_DE"}, german, read);
    row("of the United States", {"show", "--locale=en_US"}, "11/21/26 3:04 PM", read);
    row("not what stands there", {"show", "--locale=en_US"}, german, unread);
    row("C", {"show", "--locale=C"}, "21 Nov 2026 15:04:05", "2026-11-21 15:04:05");
    row("C with a codeset", {"show", "--locale=C.UTF-8"}, "21 Nov 2026 15:04:05",
        "2026-11-21 15:04:05");
    row("C reads no other", {"show", "--locale=C"}, german, unread);
}

void tst_VokitLogLocale::times()
{
    QFETCH(QStringList, before);
    QFETCH(QByteArray, time);
    QFETCH(QByteArray, shown);
    const ProgramRun run = runProgram(before + QStringList{"-"}, head() + done("a", "ann", time));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, doneLine("a", "ann", shown));
    QCOMPARE(run.exitCode, 0);
}

void tst_VokitLogLocale::values()
{
    const QByteArray bytes = head() +
                             R"(<Entry ID="ExpS" Time="21.11.26 15:04" User="ann" Text="%4" )"
                             R"(from="20.11.26 08:00" to="20.11.26 09:30"/>)";
    const ProgramRun german = runProgram(
        {"show", "--locale", "de_DE", "--format", "json", "--since", "2026-11-21", "-"}, bytes);
    QCOMPARE(german.errors, QByteArray());
    const QJsonObject values = german.json.value("values").toObject();
    QCOMPARE(german.json.value("time").toString(), QString("2026-11-21T15:04:00"));
    QCOMPARE(values.value("from").toString(), QString("2026-11-20T08:00:00"));

    const ProgramRun unread =
        runProgram({"show", "--format", "json", "--since", "2026-11-21", "-"}, bytes);
    QCOMPARE(unread.exitCode, 0);
    QCOMPARE(unread.output, QByteArray());
    QVERIFY(unread.errors.contains("the time of 1 entry can't be read"));
    QVERIFY(unread.errors.contains("--locale"));

    const ProgramRun days =
        runProgram({"report", "--by", "day", "--format", "csv", "--locale", "de_DE", "-"}, bytes);
    QCOMPARE(days.output, QByteArray("day,count\r\n2026-11-21,1\r\n"));
}

void tst_VokitLogLocale::years_data()
{
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<QByteArray>("time");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("the century of the file")
        << QByteArray("2026-11-21T15:04:05") << QByteArray("21.11.26 15:04")
        << QByteArray("2026-11-21 15:04:00");
    QTest::newRow("an old file") << QByteArray("1999-12-31T23:00:00")
                                 << QByteArray("31.12.99 23:00")
                                 << QByteArray("1999-12-31 23:00:00");
    QTest::newRow("and the year after")
        << QByteArray("1999-12-31T23:00:00") << QByteArray("01.01.00 00:00")
        << QByteArray("2000-01-01 00:00:00");
}

void tst_VokitLogLocale::years()
{
    QFETCH(QByteArray, date);
    QFETCH(QByteArray, time);
    QFETCH(QByteArray, shown);
    const ProgramRun run =
        runProgram({"show", "--locale", "de_DE", "-"}, head(date) + done("a", "ann", time));
    QCOMPARE(run.output, doneLine("a", "ann", shown));

    // Each file has its own.
    const Folder folder;
    const QString other = folder.write("other.vol", head() + done("b", "ann", "21.11.26 15:04"));
    const QString file = folder.write("file.vol", head(date) + done("a", "ann", time));
    const ProgramRun both = runProgram({"show", "--locale", "de_DE", other, file, other});
    QCOMPARE(both.output.count(doneLine("b", "ann", "2026-11-21 15:04:00")), 2);
    QCOMPARE(both.output.count(doneLine("a", "ann", shown)), 1);
}

// The option is stronger than each variable that says something of dates.
void tst_VokitLogLocale::environment()
{
    const QByteArray german = head() + done("a", "ann", "21.11.26 15:04");
    const QByteArray read = doneLine("a", "ann", "2026-11-21 15:04:00");
    {
        const Variable all("LC_ALL", "de_DE.UTF-8");
        QCOMPARE(runProgram({"show", "-"}, german).output, read);
        QCOMPARE(runProgram({"show", "--locale", "C", "-"}, head() + done("a")).output,
                 doneLine("a"));
    }
    const Variable all("LC_ALL", "");
    const Variable time("LC_TIME", "en_US.UTF-8");
    const Variable language("LANG", "fr_FR.UTF-8");
    QCOMPARE(runProgram({"show", "--locale", "de_DE", "-"}, german).output, read);
}

void tst_VokitLogLocale::output()
{
    const QByteArray name = "zo\xC3\xA9";
    const QByteArray bytes = head() + done(name, name, "21.11.26 15:04");
    for (const char *locale : {"C", "POSIX", "de_DE.ISO-8859-1"}) {
        const Variable all("LC_ALL", locale);
        const ProgramRun run = runProgram(
            {"show", "--locale", "de_DE", "--user", QString::fromUtf8(name), "-"}, bytes);
        QCOMPARE(run.output, doneLine(name, name, "2026-11-21 15:04:00"));
    }
}

QTEST_GUILESS_MAIN(tst_VokitLogLocale)
#include "tst_VokitLogLocale.moc"
