#pragma once

#include <QString>

/// What the command line asks for. Names hold nothing that a record couldn't.
struct Options
{
    QString user;
    QString group;
    QString realm;
    QString recordFile; ///< where the record to check stands; empty: print a new record

    QString answer; ///< the help or the version, to be printed in place of all else
};

/// Needs the QCoreApplication.
/// @throws Failure for wrong use; the message repeats nothing that could be a password
Options parseOptions();
