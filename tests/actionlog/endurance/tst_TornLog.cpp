#include "Journal.h"

namespace {

constexpr int gShort = 20;
constexpr int gLong = 50'000;

} // namespace

/// Files as a crash or a full disk leaves them, cut at every place.
class tst_TornLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cutAnywhere_data();
    void cutAnywhere();
    void unfinishedRootTagStays();
    void onlyTheTornEntryGoes_data();
    void onlyTheTornEntryGoes();

private:
    QTemporaryDir m_dir;
    QString m_file;
};

void tst_TornLog::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_file = m_dir.filePath("Client.vol");
}

void tst_TornLog::cutAnywhere_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("step");
    QTest::newRow("short entries, at every byte") << gShort << 1;
    QTest::newRow("long entries, in all parts of a character") << gLong << 16381;
}

void tst_TornLog::cutAnywhere()
{
    QFETCH(int, size);
    QFETCH(int, step);
    QFile::remove(m_file);
    QVector<int> ends; // where the file ended behind each entry
    {
        journal::Log log(m_file);
        for (int i = 0; i < 2; ++i) {
            journal::log(log, i, size);
            ends.append(static_cast<int>(QFileInfo(m_file).size()));
        }
    }
    const QByteArray whole = journal::bytes(m_file);
    QCOMPARE(whole.size(), ends.last());
    const int rootEnd = whole.indexOf("<Entry ");
    QVector<int> cuts;
    for (int cut = rootEnd; cut <= whole.size(); ++cut) {
        const bool isNearAnEnd = std::any_of(ends.cbegin(), ends.cend(),
                                             [cut](int end) { return std::abs(cut - end) < 3; });
        if (cut % step == 0 || isNearAnEnd)
            cuts.append(cut);
    }
    QVERIFY(cuts.size() > 15);
    for (const int cut : qAsConst(cuts)) {
        journal::write(m_file, whole.left(cut));
        QVector<int> expected;
        for (int i = 0; i < ends.size() && ends.at(i) <= cut; ++i)
            expected.append(i);
        {
            journal::Log log(m_file);
            journal::log(log, 7, size);
            journal::log(log, 8, size);
            QCOMPARE(log.failures(), 0);
            expected << 7 << 8;
            QCOMPARE(journal::numbers(log), expected);
        }
        QVERIFY2(journal::readAgain(m_file, size) == expected,
                 qPrintable(QString("cut at %1").arg(cut)));
    }
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files), QStringList("Client.vol"));
}

// What activate() alone leaves. The entry behind it ends what can be read, and the next start sets
// the file aside.
void tst_TornLog::unfinishedRootTagStays()
{
    QFile::remove(m_file);
    {
        journal::Log log(m_file);
        log.activate();
    }
    const QByteArray header = journal::bytes(m_file);
    QVERIFY(!header.endsWith('>'));
    {
        journal::Log log(m_file);
        journal::log(log, 1, gShort);
        QCOMPARE(log.failures(), 0);
    }
    QVERIFY(journal::bytes(m_file).startsWith(header + "<Entry "));
    {
        journal::Log log(m_file);
        journal::log(log, 2, gShort);
        QCOMPARE(log.failures(), 1);
        journal::log(log, 3, gShort);
        QCOMPARE(log.failures(), 1);
    }
    QCOMPARE(journal::readAgain(m_file, gShort), QVector<int>{3});
}

void tst_TornLog::onlyTheTornEntryGoes_data()
{
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<int>("kept");
    QTest::newRow("nothing torn") << QByteArray() << 0;
    QTest::newRow("a line end") << QByteArray("\n") << 1;
    QTest::newRow("text") << QByteArray("text") << 4;
    QTest::newRow("an element of another name, whole") << QByteArray("<Entryx/>") << 9;
    QTest::newRow("behind a line end") << QByteArray("\n<Entry ID=\"Exp") << 0;
    QTest::newRow("behind text") << QByteArray("text<Ent") << 4;
    QTest::newRow("a comment without an end, and entries in it")
        << QByteArray("<!-- <Entry ID=\"ExpD\"/><Entry ID=\"Exp") << -1;
    QTest::newRow("a comment without an end, whole entries in it")
        << QByteArray("<!-- <Entry ID=\"ExpD\"/> ") << -1;
    QTest::newRow("an entry's first character") << QByteArray("<") << 0;
    QTest::newRow("an entry's name") << QByteArray("<Entry") << 0;
    QTest::newRow("in a value") << QByteArray("<Entry ID=\"ExpD\" Text=\"a") << 0;
    QTest::newRow("behind the value") << QByteArray("<Entry ID=\"ExpD\" Text=\"a\"") << 0;
    QTest::newRow("before the last character") << QByteArray("<Entry ID=\"ExpD\" Text=\"a\"/") << 0;
    QTest::newRow("in a character") << QByteArray("<Entry ID=\"ExpD\" Text=\"\xE2\x82") << 0;
    QTest::newRow("in an escape") << QByteArray("<Entry ID=\"ExpD\" Text=\"&l") << 0;
    QTest::newRow("longer than a block")
        << QByteArray("<Entry ID=\"ExpD\" Text=\"") + QByteArray(20000, 'x') << 0;
}

void tst_TornLog::onlyTheTornEntryGoes()
{
    QFETCH(QByteArray, end);
    QFETCH(int, kept);
    const QByteArray whole("<?xml version=\"1.0\"?><Entries><Entry ID=\"ExpD\" Text=\"1:\"/>");
    journal::write(m_file, whole + end);
    {
        journal::Log log(m_file);
        journal::log(log, 2, 0);
    }
    const QByteArray grown = journal::bytes(m_file);
    const QByteArray before = whole + end.left(kept);
    if (kept < 0) { // nothing is torn off, and nothing behind it is read
        QVERIFY(grown.startsWith(whole + end));
        return;
    }
    QVERIFY(grown.startsWith(before));
    QVERIFY(grown.mid(before.size()).startsWith("<Entry ID=\"ExpD\" Time="));
    QCOMPARE(grown.count("Text=\"2:"), 1);
}

QTEST_GUILESS_MAIN(tst_TornLog)
#include "tst_TornLog.moc"
