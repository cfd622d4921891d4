#include "Stamp.h"

#include <Vokit/CText2Image>

#include <cstring>

namespace {

/// The glyphs, and a buffer for one of them.
class Pen
{
public:
    Pen()
        : m_cell(m_glyphs.allocCharImage_RGB())
    {}
    ~Pen() { m_glyphs.freeCharImage_RGB(m_cell); }
    Pen(const Pen &) = delete;
    Pen &operator=(const Pen &) = delete;

    QSize cellSize() const { return {m_glyphs.getWidth(), m_glyphs.getHeight()}; }

    void write(Picture &picture, QPoint place, char character)
    {
        m_glyphs.digit2Image(m_cell, character);
        copyCell(picture, place);
    }

    void writeHourglass(Picture &picture, QPoint place)
    {
        m_glyphs.symbol2Image(m_cell, vo::CText2Image::eHourglass);
        copyCell(picture, place);
    }

private:
    // A glyph begins with its bottom row, the picture with its top row.
    void copyCell(Picture &picture, QPoint place) const
    {
        const auto rowSize = static_cast<size_t>(m_glyphs.getWidth()) * 3;
        const unsigned char *source = m_cell;
        for (int y = m_glyphs.getHeight() - 1; y >= 0; --y) {
            char *const target = picture.row(place.y() + y) + qint64(place.x()) * 3;
            std::memcpy(target, source, rowSize);
            source += rowSize;
        }
    }

    vo::CText2Image m_glyphs;
    unsigned char *m_cell;
};

} // namespace

QSize sizeOf(const Stamp &stamp)
{
    const QSize cell = Pen().cellSize();
    const int count = static_cast<int>(stamp.text.size()) + (stamp.hourglass ? 1 : 0);
    return {count * cell.width(), cell.height()};
}

void writeStamp(Picture &picture, const Stamp &stamp, QPoint place)
{
    Pen pen;
    const QPoint step(pen.cellSize().width(), 0);
    for (const char character : stamp.text) {
        pen.write(picture, place, character);
        place += step;
    }
    if (stamp.hourglass)
        pen.writeHourglass(picture, place);
}
