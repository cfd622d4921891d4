#pragma once

#include <QString>
#include <QStringList>

/// How a run ended; of several files, the worst. Scripts go by the numbers.
enum ExitCode {
    Intact = 0,   ///< each file is complete, or a live log
    Torn = 1,     ///< one is torn at its end
    Damaged = 2,  ///< one is damaged
    Unusable = 3, ///< one could not be read, or the output not be written
    WrongUse = 4  ///< the command line is wrong; nothing was done
};

/**
 * What the program can do: one of these for each verb, in a pair of files of its own. main.cpp has
 * the list.
 */
struct Verb
{
    const char *name;
    const char *summary; ///< half a line, for the help of the program
    /// @param arguments those of the command line, from the verb on
    /// @throws Failure for what makes the verb impossible: Unusable
    /// @throws UsageFailure for a wrong command line: WrongUse
    ExitCode (*run)(const QStringList &arguments);
};
