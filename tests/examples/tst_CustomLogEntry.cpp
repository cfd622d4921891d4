#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

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
    int run(const QStringList &arguments);

    QTemporaryDir m_folder;
    QByteArray m_output;
    QByteArray m_errors;
};

int tst_CustomLogEntry::run(const QStringList &arguments)
{
    QProcess process;
    // A log that can't be used gives way to the default one.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_STATE_HOME", m_folder.filePath("state"));
    process.setProcessEnvironment(environment);
    process.start(CUSTOM_LOG_ENTRY, arguments);
    if (!process.waitForFinished())
        return -1;
    m_output = process.readAllStandardOutput();
    m_errors = process.readAllStandardError();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void tst_CustomLogEntry::logsAndReads()
{
    const QString file = m_folder.filePath("doors.vol");
    QCOMPARE(run({file, "Gate <2>", "12"}), 0);
    QCOMPARE(run({file, "Yard", "3"}), 0);
    QCOMPARE(m_errors, QByteArray());
    const QList<QByteArray> lines = m_output.split('\n');
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).endsWith("  Door opened: 'Gate <2>' stood open for 12 seconds."));
    QVERIFY(lines.at(1).endsWith("  Door opened: 'Yard' stood open for 3 seconds."));
    QFile log(file);
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().endsWith(R"( Name="Yard" Seco="3"/>)"));
}

void tst_CustomLogEntry::damaged()
{
    const QString file = m_folder.filePath("damaged.vol");
    QFile log(file);
    QVERIFY(log.open(QIODevice::WriteOnly));
    log.write("<Entries><Entry ID=Door></Entries>");
    log.close();
    QCOMPARE(run({file, "Yard", "3"}), 1);
    QVERIFY(m_errors.startsWith("custom-log-entry: the log was damaged and is set aside: "));
    QCOMPARE(QDir(m_folder.path()).entryList({"damaged *.vol.corrupt"}).size(), 1);
    QCOMPARE(run({file, "Yard", "3"}), 0);
    QCOMPARE(m_output.count('\n'), 1);
}

void tst_CustomLogEntry::unusable()
{
    QCOMPARE(run({"/dev/null/doors.vol", "Yard", "3"}), 1);
    QVERIFY(m_errors.contains("custom-log-entry: cannot use '/dev/null/doors.vol'\n"));
}

void tst_CustomLogEntry::usage()
{
    QCOMPARE(run({}), 2);
    QCOMPARE(run({m_folder.filePath("x.vol"), "Yard", "long"}), 2);
    QVERIFY(!QFile::exists(m_folder.filePath("x.vol")));
}

QTEST_GUILESS_MAIN(tst_CustomLogEntry)
#include "tst_CustomLogEntry.moc"
