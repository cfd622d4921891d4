#include <Vokit/CText2Image>

#include <QByteArray>
#include <QLocale>
#include <QResource>

#include <cstddef>
#include <cstring>

namespace vo {

namespace {

constexpr int WIDTH = 16;
constexpr int HEIGHT = 20;
constexpr std::ptrdiff_t ROW_SIZE = 48; // three bytes per pixel
constexpr int CELL_SIZE = 960;
constexpr int HEADER_SIZE = 54; // of a BMP file with a BITMAPINFOHEADER

// Where a glyph stands in the strip; a digit stands at its own value.
enum Cell { ColonCell = 10, PointCell, DashCell, SpaceCell, HourglassCell };

QByteArray readResource(const QString &path)
{
    const QResource resource(path, QLocale());
    const QByteArray bytes(reinterpret_cast<const char *>(resource.data()),
                           static_cast<int>(resource.size()));
    return resource.compressionAlgorithm() == QResource::NoCompression ? bytes : qUncompress(bytes);
}

unsigned char *newCopy(const char *bytes, int size)
{
    auto *const copy = new unsigned char[static_cast<size_t>(size)];
    std::memcpy(copy, bytes, static_cast<size_t>(size));
    return copy;
}

int cellOf(char character)
{
    switch (character) {
    case ' ':
        return SpaceCell;
    case '-':
        return DashCell;
    case ':':
        return ColonCell;
    case '.':
        return PointCell;
    default:
        return static_cast<signed char>(character) - '0';
    }
}

} // namespace

CText2Image::CText2Image()
{
    const QByteArray bitmap = readResource(QStringLiteral(":/Text2Image/digits.bmp"));
    const int pixelsSize = bitmap.size() - HEADER_SIZE;
    // The bitmap is linked into the library; without it there is no cell, and no glyph is copied.
    if (pixelsSize < 0)
        return;
    m_header = newCopy(bitmap.constData(), HEADER_SIZE);
    m_pixels = newCopy(bitmap.constData() + HEADER_SIZE, pixelsSize);
    m_cellCount = pixelsSize / CELL_SIZE;
}

CText2Image::~CText2Image()
{
    delete[] m_pixels;
    delete[] m_header;
}

void CText2Image::digit2Image(unsigned char *image, char character) const
{
    copyCell(image, cellOf(character));
}

void CText2Image::symbol2Image(unsigned char *image, eGraphicSymbol symbol) const
{
    if (symbol == eHourglass)
        copyCell(image, HourglassCell);
}

unsigned char *CText2Image::allocCharImage_RGB() const
{
    return new unsigned char[CELL_SIZE];
}

void CText2Image::freeCharImage_RGB(unsigned char *image) const
{
    delete[] image;
}

int CText2Image::sizeOfCharImage() const
{
    return CELL_SIZE;
}

int CText2Image::getWidth() const
{
    return WIDTH;
}

int CText2Image::getHeight() const
{
    return HEIGHT;
}

void CText2Image::copyCell(unsigned char *image, int cell) const
{
    if (cell < 0 || cell >= m_cellCount)
        return;
    const std::ptrdiff_t stripRowSize = m_cellCount * ROW_SIZE;
    const unsigned char *row = m_pixels + cell * ROW_SIZE;
    for (int i = 0; i < HEIGHT; ++i) {
        std::memcpy(image, row, ROW_SIZE);
        image += ROW_SIZE;
        row += stripRowSize;
    }
}

} // namespace vo
