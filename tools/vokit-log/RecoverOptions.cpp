#include "RecoverOptions.h"

#include "CommonOptions.h"
#include "UsageFailure.h"

namespace {

constexpr VerbHelp gHelp = {
    "recover [OPTION...] FILE -o NEW",

    R"(Writes every whole entry of FILE, in order, to NEW: a complete document, which any reader of
logs reads to its end. FILE is never written to. NEW appears whole or not at all.

Then it tells what was skipped. A name that XML does not allow costs no entry if the rest is
whole: its value stands under another name, at the end of the entry.)",

    R"(
Examples:
  vokit-log recover client.vol.corrupt -o client-whole.vol
  vokit-log recover --report skipped.json client.vol -o - | gzip > client-whole.vol.gz
)",

    R"(
Exit codes:
  0  NEW stands, whatever was skipped
  2  there is no whole entry, but something else: nothing was written
  3  FILE could not be read, or NEW or REPORT not be written
  4  wrong use; nothing was done
)"};

[[noreturn]] void refuse(const QString &reason)
{
    throw UsageFailure(reason + QStringLiteral("; see vokit-log recover --help"));
}

} // namespace

std::optional<RecoverOptions> parseRecoverOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOptions({
        {{"o", "output"}, "The new file; - is the standard output.", "NEW"},
        {"report",
         "Write what was read and what was skipped into this file, whole or not at all: one JSON "
         "object with input, output, entries, bytesRead, condition, header, gaps, skippedBytes.",
         "REPORT"},
        {"force", "Replace NEW and REPORT if they are there."},
    });
    if (!parseVerb(parser, arguments, gHelp))
        return {};
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        refuse(QStringLiteral("one file is needed, %1 are given").arg(files.size()));
    RecoverOptions options;
    options.input = files.first();
    options.output = fileOf(parser, "output");
    if (parser.isSet("report"))
        options.report = fileOf(parser, "report");
    if (options.report == QLatin1String("-"))
        refuse(QStringLiteral("--report goes to a file only"));
    options.force = parser.isSet("force");
    return options;
}
