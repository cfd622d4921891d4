#include <QtTest>

#include "ProgramRun.h"

#include <unistd.h>

#include <atomic>
#include <thread>

class tst_ArchiveSearchFolders : public QObject
{
    Q_OBJECT

private slots:
    void wrongFolder_data();
    void wrongFolder();
    void unreadableEntries();
    void manyUnreadableEntries();
    void namesThatAreNotUtf8();
    void folderThatIsNotUtf8();
    void linksAreNotFollowed();
    void folderThatIsALink();
    void folderThatChanges();
};

void tst_ArchiveSearchFolders::wrongFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("missing") << "none" << QByteArray("No such file or directory");
    QTest::newRow("a file") << "a.mp4" << QByteArray("Not a directory");
    QTest::newRow("below a file") << "a.mp4/x" << QByteArray("Not a directory");
}

void tst_ArchiveSearchFolders::wrongFolder()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, reason);
    const Tree tree;
    tree.addFile("a.mp4");
    const QByteArray folder = tree.path(name).toUtf8();
    const ProgramRun run = runProgram({tree.path(name)});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.errors, "archive-search: cannot read folder '" + folder + "': " + reason + '\n');
    QCOMPARE(run.output, QByteArray());
}

void tst_ArchiveSearchFolders::unreadableEntries()
{
    const Tree tree;
    tree.addFile("closed/x");
    tree.addFile("names only/y");
    tree.addFile("unreadable content");
    tree.setMode("closed", 0);
    tree.setMode("names only", 0400);
    tree.setMode("unreadable content", 0);
    const ProgramRun run = runProgram({"--json", tree.path()});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.number("skipped"), 2);
    QCOMPARE(run.paths(), QStringList{"unreadable content"});
    QVERIFY(
        run.errors.contains("archive-search: cannot read folder 'closed': Permission denied\n"));
    QVERIFY(run.errors.contains(
        "archive-search: cannot read file 'names only/y': Permission denied\n"));
    QCOMPARE(run.errors.count('\n'), 2);

    const ProgramRun root = runProgram({tree.path("closed")});
    QCOMPARE(root.exitCode, 2);
    tree.setMode("closed", 0700);
    tree.setMode("names only", 0700);
}

void tst_ArchiveSearchFolders::manyUnreadableEntries()
{
    const Tree tree;
    for (int i = 0; i < 25; ++i)
        tree.addFile("names only/" + QByteArray::number(i));
    tree.setMode("names only", 0400);
    const ProgramRun run = runProgram({"--json", tree.path()});
    tree.setMode("names only", 0700);
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.number("skipped"), 25);
    QCOMPARE(run.errors.count('\n'), 11);
    QVERIFY(run.errors.endsWith("archive-search: and 15 more\n"));
}

void tst_ArchiveSearchFolders::namesThatAreNotUtf8()
{
    const Tree tree;
    tree.addFile("caf\xe9.mp4", 1);
    tree.addFile("caf\xc3\xa9.mp4", 2);
    tree.addFile("\xef\xbb\xbfmark", 3); // a byte order mark is UTF-8, and part of the name
    tree.addFile("cut\xc3", 4);
    const ProgramRun run = runProgram({"--json", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.number("rows"), 4);
    QCOMPARE(run.number("notUtf8"), 2);
    for (const char *name :
         {"caf\xc3\xa9.mp4", "caf\xef\xbf\xbd.mp4", "cut\xef\xbf\xbd", "\xef\xbb\xbfmark"})
        QVERIFY2(run.output.contains(QByteArray("\"path\": \"") + name + '"'), name);

    const ProgramRun found = runProgram({"--json", "--extension", "mp4", tree.path()});
    QCOMPARE(found.paths().size(), 2);
}

void tst_ArchiveSearchFolders::folderThatIsNotUtf8()
{
    const Tree tree;
    QCOMPARE(::mkdir(tree.bytes("caf\xe9").constData(), 0700), 0);
    const int file = ::open(tree.bytes("caf\xe9/inside").constData(), O_CREAT | O_WRONLY, 0600);
    QVERIFY(file >= 0);
    ::close(file);

    const ProgramRun run = runScript("cd \"$1\" && exec \"$0\" --json caf*", {tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.paths(), QStringList{"inside"});
    const ProgramRun above = runProgram({"--json", tree.path()});
    QCOMPARE(above.number("rows"), 1);
    QCOMPARE(above.number("notUtf8"), 1);
}

void tst_ArchiveSearchFolders::linksAreNotFollowed()
{
    const Tree tree;
    tree.addFile("sub/file");
    tree.addLink("..", "sub/loop");
    tree.addLink("nowhere", "dangling");
    const ProgramRun run = runProgram({"--json", tree.path()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.paths(), (QStringList{"dangling", "sub/file", "sub/loop"}));
    const QJsonArray rows = run.array("matches");
    for (const QJsonValue &row : rows)
        QCOMPARE(row["link"].toBool(), row["path"].toString() != "sub/file");
}

void tst_ArchiveSearchFolders::folderThatIsALink()
{
    const Tree tree;
    tree.addFile("sub/file");
    tree.addLink("sub", "link");
    QCOMPARE(runProgram({"--json", tree.path("link")}).paths(), QStringList{"file"});
}

void tst_ArchiveSearchFolders::folderThatChanges()
{
    const Tree tree;
    for (int i = 0; i < 500; ++i)
        tree.addFile(QByteArray::number(i % 20) + "/stays" + QByteArray::number(i));

    std::atomic<bool> stop = false;
    std::thread changer([&] {
        for (int i = 0; !stop; ++i) {
            const QString folder = tree.path(QString::number(i % 20) + "/comes and goes");
            QDir().mkpath(folder);
            QFile(folder + "/file").open(QIODevice::WriteOnly);
            QDir(folder).removeRecursively();
        }
    });
    QVector<ProgramRun> runs;
    for (int i = 0; i < 20; ++i)
        runs.append(runProgram({"--json", "--extension", "", tree.path()}));
    stop = true;
    changer.join();

    for (const ProgramRun &run : qAsConst(runs)) {
        QVERIFY2(run.exitCode == 0 || run.exitCode == 3, run.errors.constData());
        QCOMPARE(run.exitCode == 3, run.number("skipped") > 0);
        QVERIFY(run.number("rows") >= 500);
        QCOMPARE(run.json["memory"].toObject()["matches"],
                 run.json["sqlite"].toObject()["matches"]);
    }
}

QTEST_GUILESS_MAIN(tst_ArchiveSearchFolders)

#include "tst_ArchiveSearchFolders.moc"
