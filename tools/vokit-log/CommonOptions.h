#pragma once

#include <QCommandLineParser>
#include <QStringList>

/**
 * @file
 * What the verbs have in common on the command line.
 */

/// What the help of a verb says besides its options.
struct VerbHelp
{
    const char *usage; ///< behind "Usage: vokit-log"
    const char *description;
    const char *rest;                ///< formats and examples
    const char *exitCodes = nullptr; ///< if they are not those of the worst file
};

/**
 * Reads the command line, after the verb has added its options. The files are the positional
 * arguments: at least one.
 *
 * @param arguments those of the command line, from the verb on
 * @return false if the help was asked for; it has been printed
 * @throws UsageFailure for unknown options, and without a file
 */
bool parseVerb(QCommandLineParser &parser, const QStringList &arguments, const VerbHelp &help);

/// The file that an option names.
/// @throws UsageFailure unless it is given once, with a name that can be one
QString fileOf(const QCommandLineParser &parser, const QString &option);

/// The value of an option, or the first of @p words.
/// @throws UsageFailure for a value that is none of @p words
QString choiceOf(const QCommandLineParser &parser, const QString &option, const QStringList &words);
