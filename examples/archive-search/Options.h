#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for. An empty list or optional stands for an option not given.
struct Options
{
    QByteArray folder; ///< the bytes as typed: a folder's name need not be text

    QStringList names;
    std::optional<QString> nameLike; ///< patterns
    std::optional<QString> nameRegexp;
    QStringList extensions; ///< without the dot; an empty one means files that have none
    std::optional<qlonglong> minSize;
    std::optional<qlonglong> maxSize;
    std::optional<QDateTime> newerThan;
    std::optional<QDateTime> olderThan;
    std::optional<double> maxAge; ///< days
    bool notHidden = false;
    QString loadFilter; ///< a file with one more condition
    bool any = false;   ///< one condition is enough

    QString saveFilter;          ///< the file that takes the filter
    std::optional<QString> sort; ///< a column, with "-" in front for the reverse
    bool groupByExtension = false;
    bool showCode = false;
    QString database; ///< empty: in memory
    int limit = 10;   ///< how many matches are listed
    bool json = false;
    bool quiet = false;

    QString answer; ///< the help or the version, to be printed in place of a search
};

/// Needs the QCoreApplication that was made from the same @p argc and @p argv.
/// @throws Failure for wrong use
Options parseOptions(int argc, const char *const *argv);
