#include "AuditTrail.h"
#include "Console.h"
#include "CsvExport.h"
#include "Database.h"
#include "Failure.h"
#include "FileName.h"
#include "FilterFile.h"
#include "FolderWalk.h"
#include "JsonReport.h"
#include "Options.h"
#include "PrintableText.h"
#include "Query.h"
#include "Search.h"
#include "SearchLogEntry.h"
#include "TextReport.h"

#include <Vokit/Expression>

#include <QCoreApplication>
#include <QSet>

namespace {

enum ExitCode { Done = 0, Disagreeing = 1, Unusable = 2, Incomplete = 3 };

void warnOnce(const QString &message)
{
    static QSet<QString> told;
    if (!told.contains(message))
        warn(message);
    told.insert(message);
}

// Qt repeats some warnings for each row, as for a regular expression that it can't read.
void handleMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                   const QString &message)
{
    warnOnce(message);
}

void warnOfSkipped(const SkippedEntries &skipped)
{
    for (const QString &message : skipped.messages)
        warn(message);
    if (skipped.count > skipped.messages.size())
        warn(QStringLiteral("and %1 more").arg(skipped.count - skipped.messages.size()));
}

ExitCode exitCode(const SearchResult &result)
{
    if (!result.sidesAgree())
        return Disagreeing;
    return result.skipped.count > 0 ? Incomplete : Done;
}

SearchResult loggedSearch(const Options &options, const Query &query, FolderWalk &walk,
                          Database &database, AuditTrail &trail)
{
    using State = SearchLogEntry::State;
    const QString folder = printable(absoluteName(QString::fromUtf8(options.folder)));
    const QString filter =
        printable(query.filter.expression()->toString(vogen::Expression::PrintReadable));
    trail.log(SearchLogEntry(State::Started, folder, filter));
    try {
        SearchResult result = search(options, query, walk, database);
        const qlonglong matches = result.memory.matches;
        trail.log(SearchLogEntry(State::Finished, folder, filter, result.rows, matches));
        return result;
    } catch (const Failure &) {
        trail.log(SearchLogEntry(State::Failed, folder, filter));
        throw;
    }
}

ExitCode showLog(const Options &options)
{
    const AuditReport audit = AuditTrail(options.audit, &warnOnce).fullReport();
    writeOutput(options.json ? jsonReport(audit) : logText(audit).toUtf8());
    return audit.complete ? Done : Incomplete;
}

ExitCode run(const Options &options)
{
    if (!options.search)
        return showLog(options);
    const Query query(options);
    FolderWalk walk(options.folder, FolderWalk::Detail::Status);
    Database database(options.database); // behind the walk: a wrong folder must not cost the table
    AuditTrail trail(options.audit, &warnOnce);
    if (!options.saveFilter.isEmpty())
        saveFilter(query.filter.expression(), options.saveFilter);
    if (!options.json)
        writeOutput(queryText(query).toUtf8());

    const SearchResult result = loggedSearch(options, query, walk, database, trail);
    warnOfSkipped(result.skipped);
    if (result.exported)
        exportMatches(*result.exported, database);
    const AuditReport audit = options.audit.show ? trail.fullReport() : trail.report();
    writeOutput(options.json ? jsonReport(query, result, audit)
                             : (resultText(query, result) + logSection(audit)).toUtf8());
    return exitCode(result);
}

} // namespace

int main(int argc, char *argv[])
{
    prepareConsole();
    QCoreApplication::setApplicationName(QStringLiteral("archive-search")); // begins each warning
    qInstallMessageHandler(&handleMessage);
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Vokit"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    try {
        const Options options = parseOptions(argc, argv);
        if (options.answer.isEmpty())
            return run(options);
        writeOutput(options.answer.toUtf8());
        return Done;
    } catch (const Failure &failure) {
        warn(failure.message());
        return Unusable;
    }
}
