#include <QtTest>

#include "ProgramRun.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace {

// The rows of a query on a database file, each as its values joined by "|".
QStringList query(const QString &file, const QString &statement)
{
    QStringList rows;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "tst");
        database.setDatabaseName(file);
        database.open();
        QSqlQuery reader(database);
        if (!reader.exec(statement))
            rows.append("(failed)");
        while (reader.next()) {
            QStringList values;
            for (int i = 0; reader.value(i).isValid(); ++i)
                values.append(reader.value(i).toString());
            rows.append(values.join('|'));
        }
    }
    QSqlDatabase::removeDatabase("tst");
    return rows;
}

} // namespace

class tst_ArchiveSearchDatabase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void databaseIsKept();
    void databaseInMemoryLeavesNoFile();
    void databaseRefused_data();
    void databaseRefused();
    void wrongFolderKeepsTheTable();

private:
    Tree m_tree;
};

void tst_ArchiveSearchDatabase::initTestCase()
{
    m_tree.addFile("sub/b.avi", 1024, utc("2026-03-05T18:30:00.001Z"));
    m_tree.addFile(".folder/d.txt", 0, utc("2026-03-08T00:00:00Z"));
    m_tree.addFile("large", Q_INT64_C(5) << 30);
}

void tst_ArchiveSearchDatabase::databaseIsKept()
{
    const Tree scratch;
    const QString file = scratch.path("kept.db");
    query(file, "CREATE TABLE other (x)");
    query(file, "CREATE TABLE recordings (old)");
    for (int i = 0; i < 2; ++i) { // the second time replaces the rows of the first
        const ProgramRun run = runProgram({"--database", file, "--name", "large", m_tree.path()});
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
    }
    QCOMPARE(query(file, "SELECT count(*) FROM recordings"), QStringList{"3"});
    QCOMPARE(query(file, "SELECT count(*) FROM other"), QStringList{"0"});
    QCOMPARE(query(file, "SELECT path, name, extension, size, modified, hidden, depth, link, "
                         "permissions FROM recordings WHERE name IN ('b.avi', 'd.txt') "
                         "ORDER BY path"),
             (QStringList{".folder/d.txt|d.txt|txt|0|1772928000000000|1|1|0|416",
                          "sub/b.avi|b.avi|avi|1024|1772735400001000|0|1|0|416"}));
}

void tst_ArchiveSearchDatabase::databaseInMemoryLeavesNoFile()
{
    const Tree scratch;
    const ProgramRun run =
        runScript("cd \"$1\" && exec \"$0\" --json \"$2\"", {scratch.path(), m_tree.path()});
    QCOMPARE(run.exitCode, 0);
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(scratch.path()).entryList(everything), QStringList());

    // A file may have the name that stands for a database in memory.
    runScript("cd \"$1\" && exec \"$0\" --database :memory: \"$2\"",
              {scratch.path(), m_tree.path()});
    QCOMPARE(QDir(scratch.path()).entryList(everything), QStringList{":memory:"});
}

void tst_ArchiveSearchDatabase::databaseRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("not a database") << "letter.txt" << QByteArray("file is not a database");
    QTest::newRow("a folder") << "folder" << QByteArray("unable to open database file");
    QTest::newRow("in no folder") << "none/x.db" << QByteArray("unable to open database file");
    QTest::newRow("read-only") << "closed.db" << QByteArray("attempt to write a readonly database");
    QTest::newRow("a view of that name")
        << "view.db" << QByteArray("use DROP VIEW to delete view recordings");
}

void tst_ArchiveSearchDatabase::databaseRefused()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    const Tree scratch;
    scratch.addFile("folder/x");
    QFile letter(scratch.path("letter.txt"));
    QVERIFY(letter.open(QIODevice::WriteOnly));
    letter.write(QByteArray("Dear reader, ").repeated(1000));
    letter.close();
    query(scratch.path("closed.db"), "CREATE TABLE other (x)");
    scratch.setMode("closed.db", 0400);
    query(scratch.path("view.db"), "CREATE VIEW recordings AS SELECT 1");

    const QString file = scratch.path(name);
    const QByteArray before = contentOf(file);
    const ProgramRun run = runProgram({"--database", file, m_tree.path()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors,
             "archive-search: cannot use database '" + file.toUtf8() + "': " + reason + '\n');
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(contentOf(file), before);
}

void tst_ArchiveSearchDatabase::wrongFolderKeepsTheTable()
{
    const Tree scratch;
    const QString file = scratch.path("kept.db");
    query(file, "CREATE TABLE recordings (old)");
    QCOMPARE(runProgram({"--database", file, scratch.path("none")}).exitCode, 2);
    QCOMPARE(query(file, "SELECT count(old) FROM recordings"), QStringList{"0"});
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchDatabase)

#include "tst_ArchiveSearchDatabase.moc"
