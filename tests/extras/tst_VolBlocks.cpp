#include "VolDevices.h"
#include "VolReading.h"

#include <QtTest>

using vo::VolFile;
using vo::VolGap;

namespace {

constexpr int gBlock = 64 * 1024;
constexpr int gGreatest = 16 * 1024 * 1024;
const QByteArray gRoot = "<Entries>";
const QByteArray gEntry = R"(<Entry ID="ExpD"/>)";

/// An entry of so many bytes.
QByteArray entry(int size)
{
    const QByteArray begin = R"(<Entry ID="ExpD" Text=")";
    const QByteArray end = "\"/>";
    return begin + QByteArray(size - begin.size() - end.size(), 'x') + end;
}

/// A bit of everything, of some 400 bytes.
QByteArray damagedLog()
{
    return QByteArray(
               "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?><Entries Version=\"v0.1\">"
               "<Entry ID=\"ExpD\" Text=\"\xF0\x9F\x8E\xA5 &amp; &#10;\"/>\n"
               "<!-- <Entry ID=\"ExpD\"/> -->foreign <Entry ID=\"ExpE\"></Entry>"
               "<Entry ID=\"ExpR\" ^src=\"x\"/><Entry ID=\"Ex<Entry ID=\"Nope\" a='b'/>"
               "<Entry ID=\"ExpD\" Text=\"^\"/>\r\n\r\n<Entries V=\"2\"<Entry ID=\"ExpA\"/>"
               "</Entries>\n<?xml version=\"1.0\"?><Entries/><Entry ID=\"ExpD\"> </Entry >"
               "</Entries ><Entry ID=\"Exp")
        .replace('^', '\0');
}

} // namespace

/// Where blocks end makes no difference, and nothing holds more than it may.
class tst_VolBlocks : public QObject
{
    Q_OBJECT

private slots:
    void entriesAtTheEndOfABlock_data();
    void entriesAtTheEndOfABlock();
    void everyOffset();
    void portions_data();
    void portions();
    void longEntries_data();
    void longEntries();
    void longEntryInPortions();
    void longEndTag();
    void longJunk();
    void longComment_data();
    void longComment();
    void manyComments();
    void manyTornEntries();
    void failingDevice_data();
    void failingDevice();
    void emptyDevices();
};

void tst_VolBlocks::entriesAtTheEndOfABlock_data()
{
    QTest::addColumn<int>("size");
    for (const int end : {gBlock, 2 * gBlock, 4 * gBlock}) {
        for (const int off : {-20, -2, -1, 0, 1, 2, 20})
            QTest::addRow("%d%+d", end, off) << end + off - gRoot.size();
    }
}

void tst_VolBlocks::entriesAtTheEndOfABlock()
{
    QFETCH(int, size);
    const QByteArray bytes = gRoot + entry(size) + gEntry + entry(size) + gEntry + "</Entries>";
    QCOMPARE(test::complaint(bytes), QString());
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(reading.condition, VolFile::Complete);
    QCOMPARE(test::told(reading), (QStringList{QString("entry 9+%1 ExpD").arg(size),
                                               QString("entry %1+18 ExpD").arg(9 + size),
                                               QString("entry %1+%2 ExpD").arg(27 + size).arg(size),
                                               QString("entry %1+18 ExpD").arg(27 + 2 * size)}));
}

// Each byte of a log comes to stand at the end of a block.
void tst_VolBlocks::everyOffset()
{
    const QByteArray log = gRoot + damagedLog();
    const test::VolReading alone = test::readVol("\n" + log);
    QVERIFY(alone.gapCount > 0 && alone.entryCount > 0);
    for (int off = 0; off < log.size(); ++off) {
        const QByteArray bytes = QByteArray(gBlock - off, '\n') + log;
        const test::VolReading reading = test::readVol(bytes);
        QCOMPARE(test::misreading(reading, bytes), QString());
        QCOMPARE(reading.tokens.size(), alone.tokens.size());
        for (std::size_t i = 0; i < reading.tokens.size(); ++i) {
            const int shift = gBlock - off - 1;
            QCOMPARE(reading.tokens[i].position(), alone.tokens[i].position() + shift);
            QCOMPARE(reading.tokens[i].end(), alone.tokens[i].end() + shift);
        }
    }
}

void tst_VolBlocks::portions_data()
{
    QTest::addColumn<int>("portion");
    for (const int portion : {1, 2, 3, 7, 64, 1000})
        QTest::addRow("%d", portion) << portion;
}

void tst_VolBlocks::portions()
{
    QFETCH(int, portion);
    const QByteArray bytes = damagedLog();
    test::Pipe pipe(bytes, portion);
    const test::VolReading reading = test::readVol(&pipe);
    const test::VolReading whole = test::readVol(bytes);
    QCOMPARE(test::told(reading), test::told(whole));
    QCOMPARE(reading.condition, whole.condition);
    QCOMPARE(test::misreading(reading, bytes), QString());
    QVERIFY(whole.entryCount == 6 && whole.gapCount > 6);
}

void tst_VolBlocks::longEntries_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isEntry");
    QTest::newRow("a million") << 1000000 << true;
    QTest::newRow("one less") << gGreatest - 1 << true;
    QTest::newRow("the greatest") << gGreatest << true;
    QTest::newRow("one more") << gGreatest + 1 << false;
    QTest::newRow("twice as much") << 2 * gGreatest << false;
}

void tst_VolBlocks::longEntries()
{
    QFETCH(int, size);
    QFETCH(bool, isEntry);
    const QByteArray bytes = gRoot + gEntry + entry(size) + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    const QString long_ = isEntry ? QString("entry 27+%1 ExpD").arg(size)
                                  : QString("torn entry 27+%1 at 1:28").arg(size);
    QCOMPARE(test::told(reading),
             (QStringList{"entry 9+18 ExpD", long_, QString("entry %1+18 ExpD").arg(27 + size)}));
    // At the end of the file, too.
    const test::VolReading last = test::readVol(gRoot + gEntry + entry(size));
    QCOMPARE(test::told(last), (QStringList{"entry 9+18 ExpD", long_}));
    QCOMPARE(last.condition, isEntry ? VolFile::Live : VolFile::Damaged);
}

// Little at a time doesn't mean that all is looked at anew each time.
void tst_VolBlocks::longEntryInPortions()
{
    constexpr int size = 4 * 1024 * 1024;
    constexpr int portion = 512;
    const QByteArray bytes = gRoot + entry(size) + gEntry;
    test::Pipe pipe(bytes, portion);
    QElapsedTimer timer;
    timer.start();
    const test::VolReading reading = test::readVol(&pipe);
    QCOMPARE(test::told(reading), (QStringList{QString("entry 9+%1 ExpD").arg(size),
                                               QString("entry %1+18 ExpD").arg(9 + size)}));
    // Some milliseconds; looking at it anew for each portion is 16 GiB.
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(pipe.reads() > size / portion);
}

void tst_VolBlocks::longEndTag()
{
    const QByteArray start = R"(<Entry ID="ExpD">)";
    const QByteArray end = "</Entry>";
    const int room = gGreatest - start.size() - end.size();
    const QByteArray fits = start + QByteArray(room, ' ') + end;
    QCOMPARE(test::told(test::readVol(gRoot + fits + gEntry)),
             (QStringList{QString("entry 9+%1 ExpD").arg(gGreatest),
                          QString("entry %1+18 ExpD").arg(9 + gGreatest)}));
    const QByteArray tooLong = start + QByteArray(room + 1, ' ') + end;
    QCOMPARE(
        test::told(test::readVol(gRoot + tooLong + gEntry)),
        (QStringList{
            "torn entry 9+17 at 1:10",
            QString("foreign bytes %1+8 at 1:%2").arg(10 + gGreatest - 8).arg(11 + gGreatest - 8),
            QString("entry %1+18 ExpD").arg(10 + gGreatest)}));
}

void tst_VolBlocks::longJunk()
{
    const int size = 3 * gGreatest + 5;
    for (const char fill : {'x', '\0', '>'}) {
        const QByteArray bytes = gRoot + QByteArray(size, fill) + "  " + gEntry;
        QCOMPARE(test::told(test::readVol(bytes)),
                 (QStringList{QString("foreign bytes 9+%1 at 1:10").arg(size),
                              QString("entry %1+18 ExpD").arg(size + 11)}));
    }
    const QByteArray white = gRoot + QByteArray(size, '\n') + gEntry;
    QCOMPARE(test::told(test::readVol(white)),
             QStringList{QString("entry %1+18 ExpD").arg(size + 9)});
}

void tst_VolBlocks::longComment_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("hides");
    QTest::newRow("a million") << 1000000 << true;
    QTest::newRow("half of the greatest") << gGreatest / 2 << true;
    QTest::newRow("one more") << gGreatest / 2 + 1 << false;
    QTest::newRow("the greatest") << gGreatest << false;
}

// A start whose end is far away is no comment: what it would hide is too much to lose. Wherever
// blocks end, it is the same.
void tst_VolBlocks::longComment()
{
    QFETCH(int, size);
    QFETCH(bool, hides);
    const QByteArray text(size - gEntry.size() - 7, ' ');
    for (const QByteArray &front : {QByteArray(), QByteArray(5 * gBlock / 2, '\n')}) {
        const QByteArray bytes = gRoot + front + "<!--" + gEntry + text + "-->" + gEntry;
        const test::VolReading reading = test::readVol(bytes);
        QCOMPARE(reading.entryCount, hides ? 1 : 2);
        if (hides)
            QCOMPARE(reading.firstGap.length, qint64(size));
        test::Pipe pipe(bytes, 1000);
        QCOMPARE(test::told(test::readVol(&pipe)), test::told(reading));
    }
}

// What has been searched for an end is not searched again.
void tst_VolBlocks::manyComments()
{
    for (const char *start : {"<!--", "<![CDATA[", "<!DOCTYPE", "<!DOCTYPE a ["}) {
        const QByteArray bytes = gRoot + QByteArray(start).repeated(200000) + gEntry;
        QElapsedTimer timer;
        timer.start();
        const test::VolReading reading = test::readVol(bytes);
        QCOMPARE(reading.entryCount, 1);
        QCOMPARE(reading.gapCount, 1);
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    }
}

void tst_VolBlocks::manyTornEntries()
{
    constexpr int count = 100000;
    const QByteArray bytes = gRoot + QByteArray("<Entry ID=\"").repeated(count) + gEntry;
    const test::VolReading reading = test::readVol(bytes);
    QCOMPARE(reading.gapCount, count);
    QCOMPARE(reading.entryCount, 1);
    QCOMPARE(test::misreading(reading, bytes), QString());
}

void tst_VolBlocks::failingDevice_data()
{
    QTest::addColumn<int>("good");
    QTest::addColumn<QStringList>("tokens");
    QTest::newRow("at once") << 0 << QStringList();
    QTest::newRow("behind an entry") << 27 << QStringList{"entry 9+18 ExpD"};
    QTest::newRow("in an entry") << 30
                                 << QStringList{"entry 9+18 ExpD", "truncated end 27+3 at 1:28"};
}

// What a device doesn't give is not there; the device knows why.
void tst_VolBlocks::failingDevice()
{
    QFETCH(int, good);
    test::BrokenDevice device(gRoot + gEntry + gEntry, good);
    QTEST(test::told(test::readVol(&device)), "tokens");
}

void tst_VolBlocks::emptyDevices()
{
    test::Pipe pipe({}, 1);
    const test::VolReading reading = test::readVol(&pipe);
    QVERIFY(reading.tokens.empty());
    QCOMPARE(reading.condition, VolFile::Live);
    QCOMPARE(reading.position, 0);
    QBuffer closed;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::read (QBuffer): device not open");
    QVERIFY(test::readVol(&closed).tokens.empty());
}

QTEST_GUILESS_MAIN(tst_VolBlocks)
#include "tst_VolBlocks.moc"
