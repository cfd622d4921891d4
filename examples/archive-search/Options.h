#pragma once

#include <Vokit/ActionLog>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

/// When the log is to be split, and at which size if by size.
struct SplitChoice
{
    vo::ActionLog::ESplitPolicy policy;
    std::optional<int> size; ///< bytes
};

/// What the command line says of the audit log.
struct AuditOptions
{
    std::optional<QString> user;
    std::optional<QString> secondUser;
    std::optional<SplitChoice> split;
    QString file; ///< where the log moves to
    bool noLog = false;
    bool show = false;
};

/// What the command line asks for. An empty list or optional stands for an option not given.
struct Options
{
    bool search = true; ///< false if the log alone is asked for
    QByteArray folder;  ///< the bytes as typed: a folder's name need not be text

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
    QString exportTo; ///< the file that takes the matches
    int limit = 10;   ///< how many matches are listed
    bool json = false;
    bool quiet = false;
    AuditOptions audit;

    QString answer; ///< the help or the version, to be printed in place of a search
};

/// Needs the QCoreApplication that was made from the same @p argc and @p argv.
/// @throws Failure for wrong use
Options parseOptions(int argc, const char *const *argv);
