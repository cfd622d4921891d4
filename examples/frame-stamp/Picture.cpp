#include "Picture.h"

Picture newPicture(int width, int height)
{
    return {width, height, QByteArray(width * 3 * height, '\0')};
}

Picture testPicture()
{
    // Blue 1, green 2, red 4: white, yellow, cyan, green, magenta, red, blue, grey.
    constexpr int bars[] = {7, 6, 3, 2, 5, 4, 1, 0};
    Picture picture = newPicture(640, 360);
    for (int y = 0; y < picture.height; ++y) {
        char *pixel = picture.row(y);
        const int bright = 255 - y * 200 / picture.height;
        for (int x = 0; x < picture.width; ++x) {
            const int bar = bars[x * 8 / picture.width];
            for (int colour = 0; colour < 3; ++colour)
                *pixel++ = static_cast<char>((bar >> colour & 1) != 0 ? bright : bright / 3);
        }
    }
    return picture;
}
