#pragma once

#include <QByteArray>
#include <QString>

/// To be called first of all: opens standard streams that came in closed, and takes names as UTF-8,
/// in arguments as on the disk, whatever the locale says.
void prepareConsole();

/// What the system says of the last call that failed.
QString systemReason();

/// @throws Failure if the output can't be written; a reader that has gone away is none
void writeOutput(const QByteArray &text);

/// A line on the standard error: the program's name, and the message as printable text.
void warn(const QString &message);
