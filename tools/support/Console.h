#pragma once

#include <QByteArray>
#include <QString>

/// To be called first of all: opens standard streams that came in closed, takes names as UTF-8, in
/// arguments as on the disk, whatever the locale says, and lets a write beyond the limit on the
/// size of files fail, as on a full disk, instead of ending the program.
void prepareConsole();

/// What the system says of the last call that failed.
QString systemReason();

/// False if its reader has gone away, which is no failure where SIGPIPE is ignored.
/// @throws Failure if the output can't be written
bool writeOutput(const QByteArray &text);

/// A line on the standard error: the program's name, and the message as printable text.
void warn(const QString &message);
