#include "Options.h"

#include "Failure.h"
#include "FileName.h"
#include "OptionValues.h"
#include "Recording.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

namespace {

const char gDescription[] =
    R"(Finds files twice, by a filter in memory and by the same filter as SQL in SQLite, and compares.

SIZE is a number of bytes, or one with K, M, G or T behind it: 4096, 10K, 1.5M.
DATE is 2026-03-05 or 2026-03-05T10:00, local time unless a zone follows: 2026-03-05T10:00:00Z.
It lies between 1970 and 2106; a file's date outside counts as 2106-02-07.

Exit codes:
  0  done
  1  done, but memory and SQLite disagree on some rows or on their order, or their groups differ
     by more than max and min changing places; also where a rule explains it
  2  wrong use, or a folder, a database, a filter or an output that can't be used
  3  done, but some entries could not be read

Each search is logged, and each export: who, when, what. The log is
  $XDG_STATE_HOME/Vokit/archive-search/archive-search.vol, or below ~/.local/state,
and --log and --split are kept in
  $XDG_CONFIG_HOME/Vokit/archive-search.ini, or below ~/.config.
A log that can't be used gives a warning, and changes no exit code of a search.)";

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {"name", "Files of this name; may be given again.", "NAME"},
        {"name-like",
         "Files whose name matches this pattern of LIKE. In memory case counts and % stands for "
         "points only; in SQLite % stands for any text, and the case of a to z does not count.",
         "PATTERN"},
        {"name-regexp",
         "Files whose name matches this regular expression: the whole name in memory, a part of "
         "it in SQLite.",
         "PATTERN"},
        {"extension",
         "Files with one of these extensions, such as mp4,avi; an empty one stands "
         "for files that have none.",
         "LIST"},
        {"min-size", "Files of this size or larger.", "SIZE"},
        {"max-size", "Files of this size or smaller.", "SIZE"},
        {"newer-than", "Files modified after this date.", "DATE"},
        {"older-than", "Files modified before this date.", "DATE"},
        {"max-age",
         "Files modified at most so many days ago. In memory, numbers with a "
         "fraction that differ by less than 1 are the same; SQLite is exact.",
         "DAYS"},
        {"not-hidden", "Files whose path has no part that begins with a dot."},
        {"load-filter",
         "Files for which the filter in this file holds, saved by --save-filter: one more "
         "condition. Load only what you trust.",
         "FILE"},
        {"any", "One condition is enough (OR); else all (AND)."},
        {"save-filter", "Write the filter, all conditions joined, into this file.", "FILE"},
        {"sort",
         "List the matches in the order of this field, with - in front in reverse; equal ones in "
         "the order of their rows. The orders of memory and SQLite are compared. Fields: " +
             columnNames().join(", ") + '.',
         "FIELD"},
        {"group-by-extension",
         "Count the matches of each extension, with max and min of their sizes. In memory max is "
         "the smallest and min the greatest; in SQLite it is the other way round."},
        {"show-code", "Print the filter, the sort key and the columns of groups as code and SQL."},
        {"database",
         "Keep the rows in table \"recordings\" of this SQLite file, in place of "
         "the table's old rows.",
         "FILE"},
        {"export-to",
         "Write all matches into this file as CSV, in the order in which they are listed; it is "
         "replaced as a whole, or not at all.",
         "FILE"},
        {"limit", "List so many matches, the first ones; 10 if not given.", "N"},
        {"json", "Print one JSON object."},
        {"quiet", "No progress bar."},
        {"user", "Who searches, for the log; if not given, the user whom the program runs as.",
         "NAME"},
        {"second-user", "Who has signed in as well; stands in brackets in the log.", "NAME"},
        {"log",
         "From now on log in this file, which becomes a log if it isn't there; one that is no log "
         "may be set aside.",
         "FILE"},
        {"split",
         "From now on begin a new log when a day, a week or a month is over, or when the file is "
         "larger than SIZE; the old one stays beside it. At first: 1M.",
         "none|daily|weekly|monthly|SIZE"},
        {"no-log", "Log nothing this time."},
        {"show-log", "Print the log. FOLDER may be left out; then nothing is searched."},
        {{"h", "help"}, "Print this help."},
        {{"v", "version"}, "Print the version."},
    });
}

QString answerTo(const QCommandLineParser &parser)
{
    if (parser.isSet("help"))
        return parser.helpText();
    if (parser.isSet("version")) {
        return QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                             QCoreApplication::applicationVersion());
    }
    return {};
}

QStringList splitExtensions(const QStringList &lists)
{
    QStringList extensions;
    for (const QString &list : lists) {
        const QStringList parts = list.split(QLatin1Char(','));
        for (const QString &part : parts)
            extensions += part.mid(part.startsWith(QLatin1Char('.')) ? 1 : 0);
    }
    return extensions;
}

template <typename Value>
std::optional<Value> valueOf(const QCommandLineParser &parser, const QString &option,
                             Value (*parse)(const QString &))
{
    if (!parser.isSet(option))
        return {};
    return parse(parser.value(option));
}

// Decoding loses a name that isn't UTF-8, so the bytes are fetched from where the text came from.
QByteArray asTyped(const QString &argument, int argc, const char *const *argv)
{
    const QStringList arguments = QCoreApplication::arguments();
    const int index = arguments.lastIndexOf(argument);
    return index > 0 && index < argc ? QByteArray(argv[index]) : argument.toUtf8();
}

QString fileOf(const QCommandLineParser &parser, const QString &option, const char *use)
{
    QString file = parser.value(option);
    if (parser.isSet(option) && file.isEmpty())
        throw Failure(QStringLiteral("--%1 needs the name of a file").arg(option));
    if (file.contains(QChar(QChar::ReplacementCharacter))) {
        throw Failure(
            QStringLiteral("cannot %1 '%2': the name is not UTF-8").arg(QLatin1String(use), file));
    }
    return file;
}

QString absoluteFileOf(const QCommandLineParser &parser, const QString &option, const char *use)
{
    const QString file = fileOf(parser, option, use);
    return file.isEmpty() ? file : absoluteName(file);
}

QString asGiven(const QString &text)
{
    return text;
}

AuditOptions auditOptions(const QCommandLineParser &parser)
{
    AuditOptions options;
    options.user = valueOf(parser, "user", &parseUser);
    options.secondUser = valueOf(parser, "second-user", &parseUser);
    options.split = valueOf(parser, "split", &parseSplit);
    options.file = absoluteFileOf(parser, "log", "log in");
    options.noLog = parser.isSet("no-log");
    options.show = parser.isSet("show-log");
    return options;
}

// Whatever belongs to a search needs a folder, and would do nothing without one.
bool isOnlyAboutTheLog(const QCommandLineParser &parser)
{
    static const QStringList about{"show-log", "log",         "no-log", "split",
                                   "user",     "second-user", "json",   "quiet"};
    const QStringList given = parser.optionNames();
    return parser.isSet("show-log") && parser.positionalArguments().isEmpty() &&
           std::all_of(given.begin(), given.end(),
                       [](const QString &option) { return about.contains(option); });
}

QByteArray folderArgument(const QCommandLineParser &parser, int argc, const char *const *argv)
{
    const QStringList folders = parser.positionalArguments();
    if (folders.size() != 1) {
        throw Failure(QStringLiteral("one folder is needed, %1 are given; --help tells more")
                          .arg(folders.size()));
    }
    return asTyped(folders.first(), argc, argv);
}

} // namespace

Options parseOptions(int argc, const char *const *argv)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(gDescription));
    parser.addPositionalArgument("FOLDER", "The folder to search.");
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        throw Failure(parser.errorText());

    Options options;
    options.answer = answerTo(parser);
    if (!options.answer.isEmpty())
        return options;
    options.search = !isOnlyAboutTheLog(parser);
    if (options.search)
        options.folder = folderArgument(parser, argc, argv);
    options.names = parser.values("name");
    options.nameLike = valueOf(parser, "name-like", &asGiven);
    options.nameRegexp = valueOf(parser, "name-regexp", &parseRegexp);
    options.extensions = splitExtensions(parser.values("extension"));
    options.minSize = valueOf(parser, "min-size", &parseSize);
    options.maxSize = valueOf(parser, "max-size", &parseSize);
    options.newerThan = valueOf(parser, "newer-than", &parseDate);
    options.olderThan = valueOf(parser, "older-than", &parseDate);
    options.maxAge = valueOf(parser, "max-age", &parseDays);
    options.notHidden = parser.isSet("not-hidden");
    options.loadFilter = fileOf(parser, "load-filter", "load filter");
    options.any = parser.isSet("any");
    options.saveFilter = fileOf(parser, "save-filter", "save filter");
    options.sort = valueOf(parser, "sort", &asGiven);
    options.groupByExtension = parser.isSet("group-by-extension");
    options.showCode = parser.isSet("show-code");
    options.database = fileOf(parser, "database", "use database");
    options.exportTo = absoluteFileOf(parser, "export-to", "export to");
    options.limit = valueOf(parser, "limit", &parseCount).value_or(options.limit);
    options.json = parser.isSet("json");
    options.quiet = parser.isSet("quiet");
    options.audit = auditOptions(parser);
    return options;
}
