#include "AuditTrail.h"
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
#include <QTextCodec>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace {

enum ExitCode { Done = 0, Disagreeing = 1, Unusable = 2, Incomplete = 3 };

// A standard stream that came in closed would give its number to the next thing that is opened,
// and a report would be written into that.
void occupyStandardStreams()
{
    int descriptor = STDIN_FILENO;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor > STDERR_FILENO)
        ::close(descriptor);
}

void writeOutput(const QByteArray &text)
{
    const auto size = static_cast<size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return;
    // A reader that has gone away wants no more, and no complaint either.
    if (errno != EPIPE) {
        const std::string reason = std::generic_category().message(errno);
        throw Failure(
            QStringLiteral("cannot write the output: %1").arg(QString::fromStdString(reason)));
    }
}

void warn(const QString &message)
{
    const QByteArray line = printable(QStringLiteral("archive-search: ") + message).toUtf8();
    std::fprintf(stderr, "%s\n", line.constData());
}

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
    occupyStandardStreams();
    // Names are UTF-8 here whatever the locale says, in arguments as on the disk.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    qInstallMessageHandler(&handleMessage);
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Vokit"));
    QCoreApplication::setApplicationName(QStringLiteral("archive-search"));
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
