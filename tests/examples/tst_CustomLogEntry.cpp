#include <QtTest>

#include "ProgramRun.h"

/// The example as its readers run it.
class tst_CustomLogEntry : public QObject
{
    Q_OBJECT

private slots:
    void logsAndReads();
    void damaged();
    void unusable();
    void usage();

private:
    // A log that can't be used gives way to the default one.
    ProgramRun run(const QStringList &arguments) const
    {
        return runProgram(arguments, {}, m_folder.path());
    }

    Tree m_folder;
};

void tst_CustomLogEntry::logsAndReads()
{
    const QString file = m_folder.path("doors.vol");
    QCOMPARE(run({file, "Gate <2>", "12"}).exitCode, 0);
    const ProgramRun result = run({file, "Yard", "3"});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.errors, QByteArray());
    const QList<QByteArray> lines = result.output.split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).endsWith("  Door opened: 'Gate <2>' stood open for 12 seconds."));
    QVERIFY(lines.at(1).endsWith("  Door opened: 'Yard' stood open for 3 seconds."));
    QVERIFY(contentOf(file).endsWith(R"( Name="Yard" Seco="3"/>)"));
}

void tst_CustomLogEntry::damaged()
{
    const QString file = m_folder.path("damaged.vol");
    QFile log(file);
    QVERIFY(log.open(QIODevice::WriteOnly));
    log.write("<Entries><Entry ID=Door></Entries>");
    log.close();
    const ProgramRun first = run({file, "Yard", "3"});
    QCOMPARE(first.exitCode, 1);
    QVERIFY(first.errors.startsWith("custom-log-entry: the log was damaged and is set aside: "));
    QCOMPARE(QDir(m_folder.path()).entryList({"damaged *.vol.corrupt"}).size(), 1);
    const ProgramRun second = run({file, "Yard", "3"});
    QCOMPARE(second.exitCode, 0);
    QCOMPARE(second.output.count('\n'), 1);
}

void tst_CustomLogEntry::unusable()
{
    const ProgramRun result = run({"/dev/null/doors.vol", "Yard", "3"});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.errors.contains("custom-log-entry: cannot use '/dev/null/doors.vol'\n"));
}

void tst_CustomLogEntry::usage()
{
    QCOMPARE(run({}).exitCode, 2);
    QCOMPARE(run({m_folder.path("x.vol"), "Yard", "long"}).exitCode, 2);
    QVERIFY(!QFile::exists(m_folder.path("x.vol")));
}

QTEST_GUILESS_MAIN(tst_CustomLogEntry)
#include "tst_CustomLogEntry.moc"
