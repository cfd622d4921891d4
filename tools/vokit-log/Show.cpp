#include "Show.h"

#include "CommonOptions.h"
#include "CsvFormat.h"
#include "EntryFilter.h"
#include "EntryReader.h"
#include "Follow.h"
#include "JsonFormat.h"
#include "Output.h"
#include "ProseFormat.h"
#include "Terminal.h"
#include "UsageFailure.h"
#include "XmlFormat.h"

#include <memory>

namespace {

constexpr VerbHelp gHelp = {
    "show [OPTION...] FILE...",
    "Prints the entries of log files, and where something is no whole entry. Of\n"
    "several options that choose entries all must hold.",
    "\nFormats:\n"
    "  prose  A line for each entry: time, user (- for none), action (for a class\n"
    "         that is unknown here its identifier in brackets) and description.\n"
    "         Times that can't be read stand in single quotes as in the file; one\n"
    "         inside is doubled. Gaps stand in their place, as in \"-- torn entry:\n"
    "         34 bytes from byte 1234 on (line 1, column 1200)\"; the first byte is\n"
    "         byte 0. In the other formats they are warnings.\n"
    "  csv    RFC 4180, with a header: file, time, id, category, user, action,\n"
    "         description, values (as JSON). A ' stands in front of text that a\n"
    "         spreadsheet would take for a formula: what begins with =, +, -, @,\n"
    "         a tab or a carriage return.\n"
    "  json   An object a line: file, position, time (ISO 8601, local; or null, and\n"
    "         timeText), id, category, user, action, description, values.\n"
    "  xml    One log, complete; entries keep their bytes.\n"
    "\nExamples:\n"
    "  vokit-log show --since yesterday --category Export,Error client.vol\n"
    "  vokit-log show --format json --follow client.vol | collector\n"};

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {QStringLiteral("format"), QStringLiteral("prose, if not given; csv, json or xml."),
         QStringLiteral("FORMAT")},
        {{QStringLiteral("f"), QStringLiteral("follow")},
         QStringLiteral("Go on with what comes, of one file and of those that take its name, until "
                        "interrupted. Not with --format xml.")},
        {QStringLiteral("color"),
         QStringLiteral("auto, if not given: colours on a terminal, unless NO_COLOR is set; always "
                        "or never."),
         QStringLiteral("WHEN")},
    });
    addFilterOptions(parser);
}

bool isFollowed(const QCommandLineParser &parser, const QString &format)
{
    if (!parser.isSet(QStringLiteral("follow")))
        return false;
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1 || files.first() == QLatin1String("-"))
        throw UsageFailure(QStringLiteral("--follow needs one file, and one that has a name"));
    if (format == QLatin1String("xml"))
        throw UsageFailure(QStringLiteral("--follow has no end, and --format xml needs one"));
    return true;
}

std::unique_ptr<EntrySink> makeFormat(const QString &format, Output &output,
                                      ProseFormat::Headings headings, bool hasColours)
{
    if (format == QLatin1String("csv"))
        return std::make_unique<CsvFormat>(output);
    if (format == QLatin1String("json"))
        return std::make_unique<JsonFormat>(output);
    if (format == QLatin1String("xml"))
        return std::make_unique<XmlFormat>(output);
    return std::make_unique<ProseFormat>(output, headings, hasColours);
}

} // namespace

ExitCode show(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parseVerb(parser, arguments, gHelp))
        return Intact;
    const QStringList files = parser.positionalArguments();
    const QString format =
        choiceOf(parser, QStringLiteral("format"), {"prose", "csv", "json", "xml"});
    const QString color = choiceOf(parser, QStringLiteral("color"), {"auto", "always", "never"});
    const bool follows = isFollowed(parser, format);
    EntryFilter filter(parser);

    Output output;
    const auto headings = files.size() > 1 ? ProseFormat::EachFile : ProseFormat::ButTheFirst;
    const auto sink = makeFormat(format, output, headings, wantsColours(color));
    EntryReader reader(filter, *sink, output);
    const ExitCode code = follows ? follow(files.first(), reader, output) : reader.readFiles(files);
    output.flush();
    return code;
}
