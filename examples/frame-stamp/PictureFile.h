#pragma once

#include "Picture.h"

#include <QString>

/**
 * Reads a BMP file of 24 bits per pixel, not compressed, or a binary PPM file ("P6") of one byte
 * per colour. What the file begins with decides, not its name.
 *
 * @throws Failure when the file can't be read, is damaged, or is of another kind
 */
Picture readPicture(const QString &path);

/**
 * Writes a BMP or PPM file, as the name ends. An existing file is replaced as a whole or not at
 * all.
 *
 * @throws Failure when the name ends otherwise, or the file can't be written
 */
void writePicture(const Picture &picture, const QString &path);
