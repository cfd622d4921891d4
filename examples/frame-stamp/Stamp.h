#pragma once

#include "Picture.h"

#include <QPoint>
#include <QSize>

#include <string>

/// What is to be written: the characters that vo::CText2Image knows, and an hourglass behind them.
struct Stamp
{
    std::string text;
    bool hourglass = false;
};

/// In pixels.
QSize sizeOf(const Stamp &stamp);

/// Writes the stamp with its upper left corner at @p place. It lies within the picture.
void writeStamp(Picture &picture, const Stamp &stamp, QPoint place);
