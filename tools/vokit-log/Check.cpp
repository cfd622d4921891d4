#include "Check.h"

#include "CommonOptions.h"
#include "Console.h"
#include "GapList.h"
#include "GapText.h"
#include "InputFile.h"
#include "JsonText.h"
#include "LogState.h"
#include "OutputBlocks.h"
#include "PrintableText.h"

#include <VokitExtras/VolFile>

#include <algorithm>

using vo::VolFile;
using vo::VolGap;

namespace {

constexpr VerbHelp gHelp = {
    "check [OPTION...] FILE...",

    R"(Tells in one line for each file how it is:

  complete document      its root has its end tag, and nothing is amiss
  live log, open-ended   the root is open, as the log leaves it, and nothing is amiss
  torn at its end        it breaks off there, and nothing else is amiss
  damaged                something else is amiss; a gap is what is part of no whole entry
  empty                  it has no byte; as good as a live log
  no log                 it has neither an entry nor the start tag of a log; as bad as damaged

A value that was damaged into another one that XML allows can't be seen.)",

    R"(
Examples:
  vokit-log check --gaps client.vol client.vol.corrupt
  vokit-log check --quiet client.vol || vokit-log recover client.vol -o client-whole.vol
)",
};

struct Options
{
    bool hasGaps;
    bool isJson;
    bool isQuiet;
};

QString stateText(LogState state, const VolFile &log)
{
    const QString entries = counted(log.entryCount(), "entry", "entries");
    const VolGap &gap = log.firstGap();
    switch (state) {
    case LogState::Complete:
        return QStringLiteral("complete document, %1").arg(entries);
    case LogState::Live:
        return QStringLiteral("live log, open-ended, %1").arg(entries);
    case LogState::Torn:
        return QStringLiteral("torn at its end, %1, %2 lost from byte %3 on")
            .arg(entries, counted(gap.length, "byte", "bytes"))
            .arg(gap.position);
    case LogState::Damaged:
        return QStringLiteral("damaged at line %1, column %2, %3, %4")
            .arg(gap.line)
            .arg(gap.column)
            .arg(counted(log.gapCount(), "gap", "gaps"), entries);
    case LogState::Empty:
    case LogState::NoLog:
        break;
    }
    return QLatin1String(stateName(state));
}

void printText(OutputBlocks &output, const QString &name, const VolFile &log, GapList &gaps)
{
    const QString text =
        QStringLiteral("%1: %2\n").arg(printable(name), stateText(stateOf(log), log));
    output.add(text.toUtf8());
    gaps.forEach(gaps.count(), [&](const GapList::Item &item) {
        output.add("  " + gapText(item.gap).toUtf8() + '\n');
    });
}

void printJson(OutputBlocks &output, const QString &name, const VolFile &log, GapList &gaps,
               bool hasGaps)
{
    output.add(R"({"file":)" + jsonString(name) + R"(,"condition":")" + stateName(stateOf(log)) +
               R"(","entries":)" + QByteArray::number(log.entryCount()) + R"(,"gaps":)" +
               QByteArray::number(log.gapCount()) + R"(,"firstGap":)" +
               (log.gapCount() > 0 ? gapJson(log.firstGap()) : QByteArray("null")));
    if (hasGaps) {
        QByteArray before = R"(,"gapList":[)";
        gaps.forEach(gaps.count(), [&](const GapList::Item &item) {
            output.add(before + gapJson(item.gap));
            before = ",";
        });
        output.add(gaps.count() > 0 ? "]" : before + ']');
    }
    output.add("}\n");
}

void readToEnd(InputFile &file, VolFile &log, GapList *gaps)
{
    for (VolFile::Token token = log.readNext(); token != VolFile::End; token = log.readNext()) {
        if (token == VolFile::Gap && gaps)
            gaps->append({log.gap(), false});
    }
    file.checkEnd();
}

ExitCode checkFile(const QString &name, const Options &options)
{
    InputFile file(name);
    VolFile log(file.device());
    GapList gaps;
    readToEnd(file, log, options.hasGaps ? &gaps : nullptr);
    OutputBlocks output(&writeOutput);
    if (options.isJson)
        printJson(output, name, log, gaps, options.hasGaps);
    else if (!options.isQuiet)
        printText(output, name, log, gaps);
    output.flush();
    return exitCodeOf(stateOf(log));
}

} // namespace

ExitCode check(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOptions({
        {"gaps", "Tell of each gap: its kind, its bytes, and where it is."},
        {"format",
         "\"text\", which is the default, or \"json\": one object a line, with file, condition, "
         "entries, gaps, firstGap, and for --gaps gapList.",
         "FORMAT"},
        {{"q", "quiet"},
         "Print nothing: the exit code tells. Files that can't be read give their "
         "warnings all the same."},
    });
    if (!parseVerb(parser, arguments, gHelp))
        return Intact;
    Options options{};
    const QString format = choiceOf(parser, "format", {"text", "json"});
    options.isQuiet = parser.isSet("quiet");
    options.isJson = format == QLatin1String("json") && !options.isQuiet;
    options.hasGaps = parser.isSet("gaps") && !options.isQuiet;

    ExitCode worst = Intact;
    const QStringList files = parser.positionalArguments();
    for (const QString &file : files) {
        try {
            worst = std::max(worst, checkFile(file, options));
        } catch (const InputFailure &failure) {
            warn(failure.message());
            worst = std::max(worst, Unusable);
        }
    }
    return worst;
}
