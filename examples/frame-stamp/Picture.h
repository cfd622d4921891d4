#pragma once

#include <QByteArray>

/// Pixels in memory: the top row first, no gaps, three bytes each (blue, green, red).
struct Picture
{
    int width = 0;
    int height = 0;
    QByteArray pixels;

    int rowSize() const { return width * 3; }
    char *row(int y) { return pixels.data() + qint64(y) * rowSize(); }
    const char *row(int y) const { return pixels.constData() + qint64(y) * rowSize(); }
};

/// A black picture.
Picture newPicture(int width, int height);

/// 640 x 360: eight colours as bars, each from bright to dark. What a label must be legible on.
Picture testPicture();
