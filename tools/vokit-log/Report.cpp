#include "Report.h"

#include "CommonOptions.h"
#include "CsvFormat.h"
#include "EntryCount.h"
#include "EntryFilter.h"
#include "EntryReader.h"
#include "JsonText.h"
#include "Output.h"
#include "PrintableText.h"
#include "UsageFailure.h"

namespace {

constexpr VerbHelp gHelp = {
    "report --by COLUMN [OPTION...] FILE...",
    "Counts the entries of log files, all together. Of several options that choose\n"
    "entries all must hold.",
    "\nFormats:\n"
    "  table  A line for each user, category and so on, and the total.\n"
    "  csv    The same without the total, with a header. A ' stands in front of text\n"
    "         that a spreadsheet would take for a formula.\n"
    "  json   One object: by, total, and counts, a list of objects with name and\n"
    "         count.\n"
    "The largest counts come first, and days by date. Entries without a user, a time\n"
    "that can be read or a known class are counted under words in brackets, behind\n"
    "all others, and so are those under more than 50,000 names. Of a name the first\n"
    "200 characters count.\n"
    "\nExamples:\n"
    "  vokit-log report --by user --since 2026-11-01 client.vol\n"
    "  vokit-log report --by day --category Error --format csv *.vol\n"};

void addOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {QStringLiteral("by"), QStringLiteral("What to count by: user, category, day or action."),
         QStringLiteral("COLUMN")},
        {QStringLiteral("format"), QStringLiteral("table, if not given; csv or json."),
         QStringLiteral("FORMAT")},
    });
    addFilterOptions(parser);
}

const EntryCount::Column &columnOf(const QCommandLineParser &parser)
{
    const QString by = QStringLiteral("by");
    if (!parser.isSet(by))
        throw UsageFailure(QStringLiteral("--by is needed: user, category, day or action"));
    const std::vector<EntryCount::Column> &columns = EntryCount::columns();
    QStringList names;
    for (const EntryCount::Column &column : columns)
        names.append(QLatin1String(column.name));
    const int index = names.indexOf(choiceOf(parser, by, names));
    return columns[static_cast<std::size_t>(index)];
}

// Counts stand in front: names may be of any length.
void writeTable(Output &output, const EntryCount &count)
{
    constexpr int width = 12;
    const auto writeLine = [&](const QString &number, const QString &name) {
        const QString line = number.rightJustified(width) + QLatin1String("  ") + name;
        output.add(line.toUtf8() + '\n');
    };
    writeLine(QStringLiteral("Entries"), QLatin1String(count.column().heading));
    for (const EntryCount::Line &line : count.lines())
        writeLine(QString::number(line.count), printable(line.name));
    writeLine(QString::number(count.total()), QStringLiteral("Total"));
}

void writeCsv(Output &output, const EntryCount &count)
{
    output.add(safeCsvLine({QLatin1String(count.column().name), QStringLiteral("count")}));
    for (const EntryCount::Line &line : count.lines())
        output.add(safeCsvLine({line.name, QString::number(line.count)}));
}

void writeJson(Output &output, const EntryCount &count)
{
    output.add(R"({"by":")" + QByteArray(count.column().name) + R"(","total":)" +
               QByteArray::number(count.total()) + R"(,"counts":[)");
    QByteArray before;
    for (const EntryCount::Line &line : count.lines()) {
        output.add(before + R"({"name":)" + jsonString(line.name) + R"(,"count":)" +
                   QByteArray::number(line.count) + '}');
        before = ",";
    }
    output.add("]}\n");
}

} // namespace

ExitCode report(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parseVerb(parser, arguments, gHelp))
        return Intact;
    const EntryCount::Column &column = columnOf(parser);
    const QString format = choiceOf(parser, QStringLiteral("format"), {"table", "csv", "json"});
    EntryFilter filter(parser);

    Output output;
    EntryCount count(column);
    const ExitCode code =
        EntryReader(filter, count, output).readFiles(parser.positionalArguments());
    if (format == QLatin1String("csv"))
        writeCsv(output, count);
    else if (format == QLatin1String("json"))
        writeJson(output, count);
    else
        writeTable(output, count);
    output.flush();
    return code;
}
