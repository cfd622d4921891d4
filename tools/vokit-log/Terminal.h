#pragma once

#include <QString>
#include <QStringList>

/// How many columns the terminal behind the standard output has; 0 if there is none.
int terminalWidth();

/// Whether "--color" with this word asks for colours.
/// @param choice "always", "never", or "auto": on a terminal that isn't "dumb", unless NO_COLOR is
/// set
bool wantsColours(const QString &choice);

/// The columns that a printable text takes.
int columnsOf(const QString &text);

/// A text in lines that fit: broken at blanks, and within a word that is longer than a line. The
/// blanks at a break go.
QStringList wrapped(const QString &text, int firstWidth, int width);
