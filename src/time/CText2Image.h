#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

/**
 * Glyphs for writing a time stamp into a picture: the digits, ":", ".", "-", the space, and an
 * hourglass. White with grey edges on black, so a label reads on any picture. README.md in
 * resources/ tells how they are drawn.
 *
 * A glyph is a cell of 16 x 20 pixels, 960 bytes: 20 rows of 48 bytes with no gaps, the BOTTOM row
 * first, three bytes for each pixel (blue, green, red; all equal, as the glyphs are grey).
 *
 * @code
 * vo::CText2Image glyphs; // reads the bitmap: make one, keep it
 * unsigned char *cell = glyphs.allocCharImage_RGB();
 * for (char character : vo::CTimeTranscoder(frameTime).toString()) {
 *     glyphs.digit2Image(cell, character);
 *     // copy cell into the picture
 * }
 * glyphs.freeCharImage_RGB(cell);
 * @endcode
 *
 * Nothing fails, and copying a glyph allocates nothing. Any number of threads may share an object,
 * each with a buffer of its own.
 */
class VOKIT_EXPORT CText2Image
{
public:
    // With a type of its own, any number is a value of it, and symbol2Image may be asked for it.
    enum eGraphicSymbol : int { eHourglass = 0 };

    CText2Image();
    ~CText2Image();
    CText2Image(const CText2Image &) = delete;
    CText2Image &operator=(const CText2Image &) = delete;

    /**
     * Copies the glyph of @p character to @p image, which holds sizeOfCharImage() bytes.
     *
     * Meant for the digits, ":", ".", "-" and the space. Any other character stands for the cell
     * that lies so far behind "0" in the bitmap, as ";" for "."; beyond the bitmap's 16 cells the
     * buffer stays as it was.
     */
    void digit2Image(unsigned char *image, char character) const;

    /// The same for a symbol. Any value but eHourglass leaves the buffer as it was.
    void symbol2Image(unsigned char *image, eGraphicSymbol symbol) const;

    /// A buffer for one glyph, not initialised. The caller's: release it with freeCharImage_RGB().
    unsigned char *allocCharImage_RGB() const;

    /// @param image from allocCharImage_RGB() of any object, or null
    void freeCharImage_RGB(unsigned char *image) const;

    int sizeOfCharImage() const; ///< in bytes: 960
    int getWidth() const;        ///< in pixels: 16
    int getHeight() const;       ///< in pixels: 20

private:
    void copyCell(unsigned char *image, int cell) const;

    unsigned char *m_pixels = nullptr;
    unsigned char *m_header = nullptr;
    int m_cellCount = 0; // cells beside each other: a row of the bitmap has as many times 48 bytes
};

} // namespace vo
