#include "LogFiles.h"

#include <QtTest>

class tst_VokitLogReport : public QObject
{
    Q_OBJECT

private slots:
    void table_data();
    void table();
    void csv();
    void json();
    void filtered();
    void severalFiles();
    void nothing();
    void boundedNames();
    void longNames();
    void hostileNames();

private:
    QString log() const;
    const Folder m_folder;
};

// Two users, one of them twice, and entries that have nothing to be counted by.
QString tst_VokitLogReport::log() const
{
    return m_folder.write("log.vol",
                          head() + done("a", "zoe", "21 Nov 2026 15:04:05") +
                              done("b", "bob", "3 Nov 2026 15:04:05") +
                              done("c", "zoe", "21 Nov 2026 23:59:59") + done("d", "ann", "soon") +
                              R"(<Entry ID="ExpE" Time="22 Nov 2026 00:00:00" Text="x"/>)"
                              R"(<Entry ID="Door" Time="21 Nov 2026 10:00:00" User="zoe"/>)");
}

void tst_VokitLogReport::table_data()
{
    QTest::addColumn<QString>("by");
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("users by count, then by name") << "user"
                                                  << QByteArray("     Entries  User\n"
                                                                "           3  zoe\n"
                                                                "           1  ann\n"
                                                                "           1  bob\n"
                                                                "           1  (no user)\n"
                                                                "           6  Total\n");
    QTest::newRow("categories") << "category"
                                << QByteArray("     Entries  Category\n"
                                              "           5  Export\n"
                                              "           1  (unknown class)\n"
                                              "           6  Total\n");
    QTest::newRow("days by date") << "day"
                                  << QByteArray("     Entries  Day\n"
                                                "           1  2026-11-03\n"
                                                "           3  2026-11-21\n"
                                                "           1  2026-11-22\n"
                                                "           1  (no time)\n"
                                                "           6  Total\n");
    QTest::newRow("actions") << "action"
                             << QByteArray("     Entries  Action\n"
                                           "           4  Export done\n"
                                           "           1  Export error\n"
                                           "           1  (unknown class)\n"
                                           "           6  Total\n");
}

void tst_VokitLogReport::table()
{
    QFETCH(QString, by);
    const ProgramRun run = runProgram({"report", "--by", by, log()});
    QCOMPARE(run.errors, QByteArray());
    QTEST(run.output, "lines");
    QCOMPARE(run.exitCode, 0);
}

void tst_VokitLogReport::csv()
{
    const ProgramRun run = runProgram({"report", "--by", "user", "--format", "csv", log()});
    QCOMPARE(run.output, QByteArray("user,count\r\nzoe,3\r\nann,1\r\nbob,1\r\n(no user),1\r\n"));
}

void tst_VokitLogReport::json()
{
    const ProgramRun run = runProgram({"report", "--by", "day", "--format", "json", log()});
    QCOMPARE(run.output, QByteArray("{\"by\":\"day\",\"total\":6,\"counts\":["
                                    "{\"name\":\"2026-11-03\",\"count\":1},"
                                    "{\"name\":\"2026-11-21\",\"count\":3},"
                                    "{\"name\":\"2026-11-22\",\"count\":1},"
                                    "{\"name\":\"(no time)\",\"count\":1}]}\n"));
    QCOMPARE(run.number("total"), 6);
}

void tst_VokitLogReport::filtered()
{
    const ProgramRun run = runProgram({"report", "--by", "user", "--since", "2026-11-21", "--id",
                                       "ExpD,Door", "--format", "csv", log()});
    QCOMPARE(run.output, QByteArray("user,count\r\nzoe,3\r\n"));
    QCOMPARE(run.errors.count("the time of 1 entry can't be read"), 1);
    QCOMPARE(run.exitCode, 0);
}

void tst_VokitLogReport::severalFiles()
{
    const QString damaged = m_folder.write("damaged.vol", head() + "x" + done("a", "bob"));
    const ProgramRun run = runProgram(
        {"report", "--by", "user", "--format", "csv", log(), m_folder.path("none.vol"), damaged});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.output, QByteArray("user,count\r\nzoe,3\r\nbob,2\r\nann,1\r\n(no user),1\r\n"));
    QCOMPARE(run.errors, "vokit-log: cannot read '" + m_folder.path("none.vol").toUtf8() +
                             "': No such file or directory\nvokit-log: " + damaged.toUtf8() +
                             ": foreign bytes: 1 byte from byte 111 on (line 1, column 112)\n");
}

void tst_VokitLogReport::nothing()
{
    QCOMPARE(runProgram({"report", "--by", "user", stored("header.vol")}).output,
             QByteArray("     Entries  User\n           0  Total\n"));
    QCOMPARE(runProgram({"report", "--by", "user", "--format", "json", "-"}).output,
             QByteArray("{\"by\":\"user\",\"total\":0,\"counts\":[]}\n"));
}

// 50,000 users are kept, and the one that comes first is not lost to those that come later.
void tst_VokitLogReport::boundedNames()
{
    QByteArray bytes = head();
    for (int i = 0; i < 50003; ++i)
        bytes += done("a", "u" + QByteArray::number(i));
    bytes += done("a", "u0") + done("a", "u50002");
    const ProgramRun run = runProgram({"report", "--by", "user", "-"}, bytes);
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.size(), 1 + 50000 + 1 + 1 + 1);
    QCOMPARE(lines.at(1), QByteArray("           2  u0"));
    QCOMPARE(lines.at(50001), QByteArray("           4  (others)"));
    QCOMPARE(lines.at(50002), QByteArray("       50005  Total"));
}

void tst_VokitLogReport::longNames()
{
    const QByteArray front(199, 'x');
    const QByteArray camera = "\xF0\x9F\x8E\xA5"; // two units, and no half of it is a name
    const ProgramRun run = runProgram({"report", "--by", "user", "--format", "csv", "-"},
                                      head() + done("a", front + "12") + done("a", front + "13") +
                                          done("a", front + camera));
    QCOMPARE(run.output, "user,count\r\n" + front + "1,2\r\n" + front + ",1\r\n");
}

void tst_VokitLogReport::hostileNames()
{
    const QByteArray bytes = head() + done("a", "&#10;(no user)&#155;2J") + done("a", "=1,2") +
                             done("a", "(no user)") + done("a", "");
    QCOMPARE(runProgram({"report", "--by", "user", "-"}, bytes).output,
             QByteArray("     Entries  User\n"
                        "           1  \\x0a(no user)\\x9b2J\n"
                        "           1  (no user)\n"
                        "           1  =1,2\n"
                        "           1  (no user)\n"
                        "           4  Total\n"));
    QCOMPARE(runProgram({"report", "--by", "user", "--format", "csv", "-"}, bytes).output,
             QByteArray("user,count\r\n\"\n(no user)\xC2\x9B"
                        "2J\",1\r\n(no user),1\r\n"
                        "\"'=1,2\",1\r\n(no user),1\r\n"));
}

QTEST_GUILESS_MAIN(tst_VokitLogReport)
#include "tst_VokitLogReport.moc"
