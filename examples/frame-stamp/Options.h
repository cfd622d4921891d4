#pragma once

#include <QPoint>
#include <QString>

/// What the command line asks for.
struct Options
{
    QString answer; ///< of --help or --version: print it, and do nothing else
    QString input;  ///< empty: the test picture
    QString output; ///< a file, or a folder for a file that is named after the time
    unsigned long long frameTime = 0;
    QPoint place{16, 16};
    bool hourglass = false;
};

/// @throws Failure when the command line is wrong
Options parseOptions();
