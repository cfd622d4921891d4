#include <Vokit/CText2Image>

#include <QtTest>

#include <algorithm>
#include <limits>
#include <thread>
#include <type_traits>

// The glyphs against the bitmap in the sources, which the test takes apart by itself: pixel by
// pixel, from the header's own numbers.

namespace {

using vo::CText2Image;

constexpr int gWidth = 16;
constexpr int gHeight = 20;
constexpr int gCellSize = 960;
constexpr char gUntouched = '\x5a';

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QByteArray gBitmap = contentOf(QStringLiteral(DIGITS_BMP));

// Of so many bytes at that place of the bitmap, the least significant first.
qint64 numberAt(int place, int size)
{
    qint64 number = 0;
    for (int i = 0; i < size; ++i)
        number |= qint64(static_cast<uchar>(gBitmap.at(place + i))) << (8 * i);
    return number;
}

// Blue, green, red of a pixel; (0, 0) is the upper left one.
QByteArray pixel(int x, int y)
{
    const auto rowSize = static_cast<int>((numberAt(18, 4) * 3 + 3) / 4 * 4);
    const auto row = static_cast<int>(numberAt(22, 4)) - 1 - y;
    return gBitmap.mid(static_cast<int>(numberAt(10, 4)) + row * rowSize + x * 3, 3);
}

// The bytes that a glyph has to be: from the bottom row up.
QByteArray cellInBitmap(int cell)
{
    QByteArray bytes;
    for (int y = gHeight - 1; y >= 0; --y) {
        for (int x = 0; x < gWidth; ++x)
            bytes += pixel(cell * gWidth + x, y);
    }
    return bytes;
}

/// Lets @p copy write into a buffer between two others, and returns all three.
template <typename Copy>
QByteArray writtenBy(Copy copy)
{
    QByteArray bytes(3 * gCellSize, gUntouched);
    copy(reinterpret_cast<unsigned char *>(bytes.data()) + gCellSize);
    return bytes;
}

QByteArray expectedAround(const QByteArray &cell)
{
    const QByteArray around(gCellSize, gUntouched);
    return around + cell + around;
}

const QByteArray gNothingWritten(3 * gCellSize, gUntouched);

} // namespace

class tst_CText2Image : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void bitmap_data();
    void bitmap();
    void resource();
    void cellsLookRight_data();
    void cellsLookRight();
    void glyphsDiffer();
    void digits_data();
    void digits();
    void charactersBeyondTheBitmap_data();
    void charactersBeyondTheBitmap();
    void firstRowIsTheBottomRow();
    void symbols_data();
    void symbols();
    void sizes();
    void buffers();
    void sharedByThreads();
    void signatures();
};

void tst_CText2Image::initTestCase()
{
    QCOMPARE(gBitmap.size(), 15414);
}

void tst_CText2Image::bitmap_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("size");
    QTest::addColumn<qint64>("number");
    QTest::newRow("magic BM") << 0 << 2 << qint64('B' | 'M' << 8);
    QTest::newRow("size of the file") << 2 << 4 << qint64(15414);
    QTest::newRow("reserved") << 6 << 4 << qint64(0);
    QTest::newRow("offset of the pixels") << 10 << 4 << qint64(54);
    QTest::newRow("size of the info header") << 14 << 4 << qint64(40);
    QTest::newRow("width") << 18 << 4 << qint64(256);
    QTest::newRow("height, positive: bottom to top") << 22 << 4 << qint64(20);
    QTest::newRow("planes") << 26 << 2 << qint64(1);
    QTest::newRow("bits per pixel") << 28 << 2 << qint64(24);
    QTest::newRow("no compression") << 30 << 4 << qint64(0);
    QTest::newRow("size of the pixels") << 34 << 4 << qint64(15360);
    QTest::newRow("no palette") << 46 << 4 << qint64(0);
}

void tst_CText2Image::bitmap()
{
    QFETCH(int, place);
    QFETCH(int, size);
    QTEST(numberAt(place, size), "number");
}

void tst_CText2Image::resource()
{
    QCOMPARE(contentOf(QStringLiteral(":/Text2Image/digits.bmp")), gBitmap);
}

void tst_CText2Image::cellsLookRight_data()
{
    QTest::addColumn<int>("cell");
    QTest::addColumn<bool>("black");
    QTest::addColumn<int>("leastHeight"); // from the first to the last row with a light pixel
    for (int digit = 0; digit < 10; ++digit)
        QTest::addRow("%d", digit) << digit << false << 17;
    QTest::newRow(":") << 10 << false << 10;
    QTest::newRow(".") << 11 << false << 3;
    QTest::newRow("-") << 12 << false << 3;
    QTest::newRow("space") << 13 << true << 0;
    QTest::newRow("hourglass") << 14 << false << 17;
    QTest::newRow("no use") << 15 << true << 0;
}

void tst_CText2Image::cellsLookRight()
{
    QFETCH(int, cell);
    QFETCH(bool, black);
    QFETCH(int, leastHeight);
    int top = gHeight, bottom = gHeight - 1, white = 0, grey = 0;
    for (int y = 0; y < gHeight; ++y) {
        for (int x = 0; x < gWidth; ++x) {
            const QByteArray colour = pixel(cell * gWidth + x, y);
            QVERIFY(colour.at(0) == colour.at(1) && colour.at(1) == colour.at(2));
            const auto light = static_cast<uchar>(colour.at(0));
            white += light == 255 ? 1 : 0;
            grey += light > 0 && light < 255 ? 1 : 0;
            if (light > 127) {
                top = std::min(top, y);
                bottom = y;
            }
        }
    }
    QCOMPARE(white == 0 && grey == 0, black);
    QCOMPARE(white > 0 && grey > 0, !black);
    QVERIFY(bottom - top + 1 >= leastHeight);
}

void tst_CText2Image::glyphsDiffer()
{
    QSet<QByteArray> glyphs;
    for (int cell = 0; cell < 15; ++cell)
        glyphs.insert(cellInBitmap(cell));
    QCOMPARE(glyphs.size(), 15);
}

void tst_CText2Image::digits_data()
{
    QTest::addColumn<char>("character");
    QTest::addColumn<int>("cell");
    for (char digit = '0'; digit <= '9'; ++digit)
        QTest::addRow("%c", digit) << digit << digit - '0';
    QTest::newRow(":") << ':' << 10;
    QTest::newRow(".") << '.' << 11;
    QTest::newRow("-") << '-' << 12;
    QTest::newRow("space") << ' ' << 13;
    // By the same distance from "0" as the digits.
    QTest::newRow("; as .") << ';' << 11;
    QTest::newRow("< as -") << '<' << 12;
    QTest::newRow("= as space") << '=' << 13;
    QTest::newRow("> as hourglass") << '>' << 14;
    QTest::newRow("? as the cell of no use") << '?' << 15;
}

void tst_CText2Image::digits()
{
    QFETCH(char, character);
    QFETCH(int, cell);
    const CText2Image glyphs;
    const QByteArray written =
        writtenBy([&](unsigned char *image) { glyphs.digit2Image(image, character); });
    QVERIFY(written == expectedAround(cellInBitmap(cell)));
    if (character == ' ')
        QVERIFY(written == expectedAround(QByteArray(gCellSize, '\0')));
}

void tst_CText2Image::charactersBeyondTheBitmap_data()
{
    QTest::addColumn<char>("character");
    for (const char character : {'/', '@', 'A', 'z', '\x7f', '\0', '\n', '\x80', '\xff'})
        QTest::addRow("%02x", static_cast<uchar>(character)) << character;
}

void tst_CText2Image::charactersBeyondTheBitmap()
{
    QFETCH(char, character);
    const CText2Image glyphs;
    QVERIFY(writtenBy([&](unsigned char *image) { glyphs.digit2Image(image, character); }) ==
            gNothingWritten);
}

void tst_CText2Image::firstRowIsTheBottomRow()
{
    const CText2Image glyphs;
    unsigned char image[gCellSize];
    glyphs.digit2Image(image, '7');
    const QByteArray pixels = gBitmap.mid(54);
    for (int row = 0; row < gHeight; ++row) {
        const QByteArray copied(reinterpret_cast<const char *>(image) + row * 48, 48);
        QCOMPARE(copied, pixels.mid(row * 768 + 336, 48));
    }
    // The bar of the seven is on top: in the last rows of the buffer.
    QVERIFY(image[18 * 48 + 4 * 3] > 127);
    QVERIFY(image[1 * 48 + 13 * 3] == 0);
}

void tst_CText2Image::symbols_data()
{
    QTest::addColumn<int>("symbol");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("the hourglass")
        << int(CText2Image::eHourglass) << expectedAround(cellInBitmap(14));
    for (const int other : {1, -1, 14, std::numeric_limits<int>::min()})
        QTest::addRow("%d: untouched", other) << other << gNothingWritten;
}

void tst_CText2Image::symbols()
{
    QFETCH(int, symbol);
    QFETCH(QByteArray, written);
    const CText2Image glyphs;
    QVERIFY(writtenBy([&](unsigned char *image) {
                glyphs.symbol2Image(image, static_cast<CText2Image::eGraphicSymbol>(symbol));
            }) == written);
}

void tst_CText2Image::sizes()
{
    const CText2Image glyphs;
    QCOMPARE(glyphs.getWidth(), 16);
    QCOMPARE(glyphs.getHeight(), 20);
    QCOMPARE(glyphs.sizeOfCharImage(), 960);
    QCOMPARE(glyphs.sizeOfCharImage(), glyphs.getWidth() * glyphs.getHeight() * 3);
    QCOMPARE(int(CText2Image::eHourglass), 0);
}

void tst_CText2Image::buffers()
{
    unsigned char *image = nullptr;
    {
        CText2Image glyphs;
        glyphs.freeCharImage_RGB(nullptr);
        image = glyphs.allocCharImage_RGB();
        glyphs.symbol2Image(image, CText2Image::eHourglass);
    }
    // The buffer outlives the object that it came from.
    const QByteArray kept(reinterpret_cast<const char *>(image), gCellSize);
    QVERIFY(kept == cellInBitmap(14));
    CText2Image().freeCharImage_RGB(image);
}

void tst_CText2Image::sharedByThreads()
{
    const CText2Image glyphs;
    const auto allRight = [&glyphs](bool *right) {
        *right = true;
        for (int i = 0; i < 2000; ++i) {
            QByteArray image(gCellSize, gUntouched);
            glyphs.digit2Image(reinterpret_cast<unsigned char *>(image.data()),
                               static_cast<char>('0' + i % 10));
            *right = *right && image.mid(0, 48) == gBitmap.mid(54 + i % 10 * 48, 48);
        }
    };
    bool first = false, second = false;
    std::thread one(allRight, &first);
    std::thread other(allRight, &second);
    one.join();
    other.join();
    QVERIFY(first && second);
}

void tst_CText2Image::signatures()
{
    QVERIFY(!std::is_polymorphic_v<CText2Image>);
    // Two owners of one bitmap would delete it twice.
    QVERIFY(!std::is_copy_constructible_v<CText2Image>);
    QVERIFY(!std::is_copy_assignable_v<CText2Image>);
}

QTEST_APPLESS_MAIN(tst_CText2Image)
#include "tst_CText2Image.moc"
