#include "LogFixture.h"

#include <QtTest>

using namespace test;
using vo::ActionLog;

/// A file that a crash or a full disk cut short is cut back to its last whole entry before the next
/// one is appended. Every other end stays.
class tst_ActionLogTail : public QObject
{
    Q_OBJECT

private slots:
    void tails_data();
    void tails();
    void everyLengthOfATornEntry();
    void rootOfAnotherName();
    void unfinishedRootStays();
    void unfinishedRootIsMovedAwayAtTheNextStart();
    void fileInThePlaceOfAnOpenRoot();
    void readingAloneCutsNothing();
    void activateAndThenLog();
    void afterAFailedSplit();
    void archiveOfATornFileIsWhatLayThere();
    void fileOfBeforeIsForgotten();
    void fullDevice();
};

void tst_ActionLogTail::tails_data()
{
    QTest::addColumn<QByteArray>("before"); // behind the root's start tag
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<QByteArray>("kept"); // of it
    QTest::addColumn<QStringList>("read");
    QTest::addColumn<QStringList>("next"); // what is read when two entries stand behind it

    const QByteArray one = LogFixture::entry("one");
    const QStringList behind{"two", "three"};
    const QStringList bothBehindOne{"one", "two", "three"};
    const auto cut = [&](const char *name, const QByteArray &tail) {
        QTest::newRow(name) << one << tail << QByteArray() << QStringList{"one"} << bothBehindOne;
    };
    const auto stays = [&](const char *name, const QByteArray &tail) {
        QTest::newRow(name) << one << tail << tail << QStringList{"one"} << bothBehindOne;
    };
    const auto spoils = [&](const char *name, const QByteArray &tail, const QStringList &next) {
        QTest::newRow(name) << one << tail << tail << QStringList{"one"} << next;
    };
    cut("<", "<");
    cut("<E", "<E");
    cut("<Entr", "<Entr");
    cut("<Entry", "<Entry");
    cut("<Entry and a blank", "<Entry ");
    cut("within a name", "<Entry I");
    cut("behind a name", "<Entry ID");
    cut("behind a name with blanks", "<Entry ID=\"ExpS\" to  ");
    cut("behind the equals sign", "<Entry ID=");
    cut("within a value", "<Entry ID=\"Rmrk\" Text=\"tor");
    cut("behind a value", "<Entry ID=\"Rmrk\" Text=\"torn\"");
    cut("ahead of the last bracket", "<Entry ID=\"Rmrk\" Text=\"torn\"/");
    cut("within an escape", "<Entry ID=\"Rmrk\" Text=\"&am");
    cut("within a character of two bytes", "<Entry ID=\"Rmrk\" Text=\"\xc3");
    cut("within a character of three bytes", "<Entry ID=\"Rmrk\" Text=\"\xe2\x82");
    cut("within a character of four bytes", "<Entry ID=\"Rmrk\" Text=\"\xf0\x9f\x98");
    cut("within a value of 100 kB", "<Entry ID=\"Rmrk\" Text=\"" + QByteArray(100000, 'x'));
    cut("within a character at the end of 100 kB",
        "<Entry ID=\"Rmrk\" Text=\"" + QByteArray(100000, 'x') + "\xe2");
    for (int size : {4094, 4095, 4096, 4097, 8191, 8192, 8193, 16384}) {
        QTest::addRow("a tail of %d bytes", size)
            << one << "<Entry Text=\"" + QByteArray(size - 13, 'x') << QByteArray()
            << QStringList{"one"} << bothBehindOne;
    }
    // As another program may write it.
    cut("a bracket in a value", "<Entry ID=\"Rmrk\" Text=\"a > b");
    cut("brackets in values in single quotes", "<Entry ID='Rmrk' Text='\"a\"/> b");
    cut("a tag that begins with a line break", "<Entry\r\nID=\"Rmrk\"");
    cut("behind line breaks", "\r\n\r\n\t <Entry ID=\"Rm");
    cut("behind a line break, the first letter", "\n<");
    QTest::newRow("with line breaks between the entries")
        << "\r\n" + one + "\r\n" + one << QByteArray("\r\n<Entry ID=\"Rmrk\"\r\nText=\"x\r\n")
        << QByteArray() << QStringList{"one", "one"} << QStringList{"one", "one", "two", "three"};
    QTest::newRow("the first entry")
        << QByteArray() << QByteArray("<Entry ID=\"Rm") << QByteArray() << QStringList() << behind;
    QTest::newRow("the first entry, a bracket of it")
        << QByteArray() << QByteArray("<") << QByteArray() << QStringList() << behind;
    cut("within an end tag", "<Entry ID=\"Rmrk\" Text=\"\"></Ent");
    cut("ahead of an end tag", "<Entry ID=\"Rmrk\" Text=\"\"></");

    cut("ahead of an end tag's bracket", "<Entry ID=\"Rmrk\" Text=\"\"></Entry\n");
    cut("an end tag behind line breaks", "<Entry ID=\"Rmrk\" Text=\"\">\r\n</Entr");
    const QByteArray open("<Entry ID=\"Rmrk\" Text=\"open\">");
    const auto cutFrom = [&](const char *name, const QByteArray &kept, const QByteArray &tail,
                             const QStringList &read) {
        QTest::newRow(name) << one << kept + tail << kept << read << read + behind;
    };
    cutFrom("behind text", "text", "<Entry ID=", {"one"});
    cutFrom("behind a comment about an entry", "<!-- <Entry -->", "<Entry ID=", {"one"});
    cutFrom("within an entry", open, "<Entry ID=", {"one", "open"});
    cutFrom("the end tag of an entry with text", open + "text", "</En", {"one", "open"});
    cutFrom("the end tag of an entry that holds one", open + one, "\n</Entry",
            {"one", "open", "one"});
    cutFrom("the end tag of an entry with a comment", open + "<!-- <Entry -->", "</",
            {"one", "open"});
    cutFrom("the end tag of an entry behind an old one", open + "<Other/>", "</", {"one", "open"});

    stays("whole", "");
    stays("whole, with line breaks behind", "\r\n\r\n");
    stays("an entry of an unknown class", "<Entry ID=\"????\" Odd=\"1\"/>");
    stays("a comment about an entry", "<!-- <Entry ID=\"Rmrk\"> -->");
    stays("a comment about an entry, and a blank", "<!-- <Entry --> ");
    stays("a comment about the end of one", "<!-- </Entry --> ");
    stays("a comment that a line break splits", "<!-- <Entry -\r-> ");
    stays("a section about an entry", "<![CDATA[<Entry ]]>");
    stays("an instruction about an entry", "<?about <Entry ?> ");
    const auto isRead = [&](const char *name, const QByteArray &tail, const char *text) {
        const QStringList read{"one", text};
        QTest::newRow(name) << one << tail << tail << read << read + behind;
    };
    isRead("whole, with an end tag", "<Entry ID=\"Rmrk\" Text=\"a\"></Entry>", "a");
    isRead("whole, with a bracket in a value", "<Entry ID=\"Rmrk\" Text=\"a > b\"/>", "a > b");
    isRead("open, and a comment about one", open + "<!-- <Entry --> ", "open");

    spoils("another element cut short", "<Entrys ID=", {"one", "XmlP"});
    spoils("the root's end tag cut short", "</Entr", {"one", "XmlP"});
    spoils("a comment cut short", "<!-- torn", {"one"});
    spoils("a comment cut short within an entry", "<!-- <Entry ID=", {"one"});
    spoils("a comment cut short ahead of its bracket", "<!-- <Entry --", {"one", "XmlP"});
    spoils("a section cut short within an entry", "<![CDATA[<Entry ID=", {"one"});
    spoils("a section cut short within an end tag", "<![CDATA[<Entry></Ent", {"one"});
}

void tst_ActionLogTail::tails()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, tail);
    QFETCH(QByteArray, kept);
    QFETCH(QStringList, read);
    QFETCH(QStringList, next);
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    const QByteArray whole = LogFixture::head(file) + '>' + before;
    fixture.write(file, whole + tail);
    ActionLog log(file);
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    log.log(Remark("two"));
    log.log(Remark("three"));
    QStringList all = entries(log);
    all.removeAll("Rmrk"); // a start tag whose end tag was torn off has been read
    QCOMPARE(all, read + (QStringList{"two", "three"}));
    QCOMPARE(record.take().filter("error"), QStringList());
    QCOMPARE(LogFixture::contents(file),
             whole + kept + LogFixture::entry("two") + LogFixture::entry("three"));

    log.close();
    ActionLog again(file);
    try {
        again.readLog();
    } catch (const vo::ActionLogXmlException &) {
        QVERIFY(next.contains("XmlP"));
    }
    QCOMPARE(entries(again), next);
}

// Wherever the writing of an entry breaks off, nothing else is lost.
void tst_ActionLogTail::everyLengthOfATornEntry()
{
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    const QByteArray whole = LogFixture::head(file) + '>' + LogFixture::entry("one");
    const QByteArray entry = LogFixture::entry("&lt;\xc3\xa9\xe2\x82\xac&quot;\xf0\x9f\x98\x80");
    for (int size = 0; size <= entry.size(); ++size) {
        fixture.write(file, whole + entry.left(size));
        ActionLog log(file);
        log.setSuspended(false);
        log.log(Remark("two"));
        QCOMPARE(LogFixture::contents(file),
                 whole + (size == entry.size() ? entry : QByteArray()) + LogFixture::entry("two"));
    }
}

// As short as a log can be.
void tst_ActionLogTail::rootOfAnotherName()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), "<p><");
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("one"));
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), "<p>" + LogFixture::entry("one"));
}

void tst_ActionLogTail::unfinishedRootStays()
{
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    const QByteArray declaration("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    const QByteArray head = LogFixture::head(file);
    QList<QByteArray> starts{declaration + '\n', declaration + "\r\n<", "<E", "<Entr"};
    for (int size = 1; size <= head.size(); ++size)
        starts << head.left(size);
    for (const QByteArray &start : qAsConst(starts)) {
        fixture.write(file, start);
        ActionLog log(file);
        log.setSuspended(false);
        SignalRecord record(log, fixture);
        log.log(Remark("one"));
        QCOMPARE(LogFixture::contents(file), start + LogFixture::entry("one"));
        QCOMPARE(record.take(), (QStringList{"adding(0, 0)", "added(0, 0)"}));
    }
}

void tst_ActionLogTail::unfinishedRootIsMovedAwayAtTheNextStart()
{
    const LogFixture fixture;
    const QByteArray bytes = LogFixture::head(fixture.path("F.vol")) + LogFixture::entry("one");
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    log.log(Remark("two"));
    QCOMPARE(LogFixture::contents(fixture.path("F 2026-03-05 12-00-00.vol.corrupt")), bytes);
    QCOMPARE(entries(log), QStringList("XmlP"));
}

// The open root tag that a log has left behind is closed there, and in no file that takes its
// place.
void tst_ActionLogTail::fileInThePlaceOfAnOpenRoot()
{
    const LogFixture fixture;
    const QString file = fixture.path("F.vol");
    const QByteArray other = LogFixture::head("other") + '>' + LogFixture::entry("one");
    for (const QByteArray &bytes : {QByteArray(), other}) {
        ActionLog log(file);
        log.activate();
        log.close();
        const QByteArray header = LogFixture::head(file);
        QCOMPARE(LogFixture::contents(file), header);
        if (!bytes.isEmpty())
            fixture.write(file, bytes);
        log.setSuspended(false);
        log.log(Remark("two"));
        QCOMPARE(LogFixture::contents(file),
                 (bytes.isEmpty() ? header + '>' : bytes) + LogFixture::entry("two"));
        log.close();
        QVERIFY(QFile::remove(file));
    }
}

void tst_ActionLogTail::readingAloneCutsNothing()
{
    const LogFixture fixture;
    const QByteArray bytes =
        LogFixture::head("F") + '>' + LogFixture::entry("one") + "<Entry ID=\"Rm";
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.readLog();
    log.readLog();
    log.activate();
    log.log(Remark("suspended"));
    log.close();
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")), bytes);
    QCOMPARE(entries(log), QStringList("one"));
}

void tst_ActionLogTail::activateAndThenLog()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"),
                  LogFixture::head("F") + '>' + LogFixture::entry("one") + "<Entry ID=\"Rm");
    ActionLog log(fixture.path("F.vol"));
    log.activate();
    log.readLog();
    log.setSuspended(false);
    log.log(Remark("two"));
    QCOMPARE(fixture.disk(), QStringList("F.vol = Log(F): one, two"));
}

void tst_ActionLogTail::afterAFailedSplit()
{
    const LogFixture fixture;
    fixture.write(fixture.path("Voco 2026-03-05 12-00-00.vol"), "taken");
    fixture.write(fixture.path("F.vol"),
                  LogFixture::head("F") + '>' + LogFixture::entry("one") + "<Entry ID=\"Rm");
    ActionLog log(fixture.path("F.vol"));
    log.readLog();
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitBySize, 0);
    log.log(Remark("two"));
    QCOMPARE(fixture.disk(),
             (QStringList{"F.vol = Log(F): one, two", "Voco 2026-03-05 12-00-00.vol = taken"}));
    QCOMPARE(entries(log), (QStringList{"one", "two"}));
}

void tst_ActionLogTail::archiveOfATornFileIsWhatLayThere()
{
    const LogFixture fixture;
    const QByteArray bytes =
        LogFixture::head("F") + '>' + LogFixture::entry("one") + "<Entry ID=\"Rm";
    fixture.write(fixture.path("F.vol"), bytes);
    ActionLog log(fixture.path("F.vol"));
    log.readLog();
    log.setSuspended(false);
    log.setSplitPolicy(ActionLog::SplitBySize, 0);
    log.log(Remark("two"));
    QCOMPARE(LogFixture::contents(fixture.path("Voco 2026-03-05 12-00-00.vol")), bytes);
    QCOMPARE(LogFixture::contents(fixture.path("F.vol")),
             LogFixture::head(fixture.path("F.vol")) + '>' + LogFixture::entry("two"));
}

// What was read of one file says nothing of the end of another.
void tst_ActionLogTail::fileOfBeforeIsForgotten()
{
    const LogFixture fixture;
    fixture.write(fixture.path("F.vol"), LogFixture::head("F") + "><Entry ID=\"Rm");
    const QByteArray other =
        LogFixture::head("G") + '>' + LogFixture::entry("one") + "</Wrong><Entry ID=\"Rm";
    fixture.write(fixture.path("G.vol"), other);
    fixture.write(fixture.path("G 2026-03-05 12-00-00.vol.corrupt"), "taken");
    ActionLog log(fixture.path("F.vol"));
    log.readLog();
    log.switchFileHandle(fixture.path("G.vol")); // suspended
    log.setSuspended(false);
    log.log(Remark("lost"));
    log.log(Remark("two"));
    QCOMPARE(LogFixture::contents(fixture.path("G.vol")), other + LogFixture::entry("two"));
}

// What a device can't take passes in silence, and so does the next entry, however long.
void tst_ActionLogTail::fullDevice()
{
    const LogFixture fixture;
    QVERIFY(QFile::link("/dev/full", fixture.path("F.vol")));
    ActionLog log(fixture.path("F.vol"));
    log.setSuspended(false);
    SignalRecord record(log, fixture);
    log.log(Remark(QString(100000, 'x')));
    log.log(Remark("two"));
    log.log(Remark(QString(100000, 'y')));
    QCOMPARE(log.entries().size(), 3);
    QCOMPARE(record.take().filter("error"), QStringList());

    // What it never took does not turn up in the file that comes next.
    for (bool content : {false, true}) {
        const QString name = content ? "G.vol" : "H.vol";
        const QByteArray old = LogFixture::head(fixture.path(name)) + '>' +
                               (content ? LogFixture::entry("old") : QByteArray());
        if (content)
            fixture.write(fixture.path(name), old);
        ActionLog moving(fixture.path("F.vol"));
        moving.setSuspended(false);
        moving.log(Remark(QString(100000, 'x')));
        moving.setSuspended(true);
        moving.switchFileHandle(fixture.path(name));
        moving.setSuspended(false);
        moving.log(Remark("one"));
        QCOMPARE(LogFixture::contents(fixture.path(name)), old + LogFixture::entry("one"));
    }
}

QTEST_GUILESS_MAIN(tst_ActionLogTail)
#include "tst_ActionLogTail.moc"
