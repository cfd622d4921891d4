#include "CsvExport.h"

#include "CsvLine.h"
#include "Database.h"
#include "Failure.h"
#include "HeldSignals.h"
#include "LogTurn.h"
#include "MatchList.h"
#include "PrintableText.h"
#include "Recording.h"
#include "WholeFile.h"

#include <Vokit/ActionLog>
#include <Vokit/ExportActionLog>

#include <QDateTime>
#include <QVariant>

using vo::ExportActionLog;

namespace {

QString text(const QVariant &value)
{
    return value.type() == QVariant::DateTime ? value.toDateTime().toString(Qt::ISODateWithMs)
                                              : value.toString();
}

QByteArray lineOf(const vogen::PropertySet &recording)
{
    QStringList values;
    for (const Column &column : recordingColumns())
        values.append(text(recording[column.name].variantValue()));
    return csvLine(values);
}

// False if it was given up.
bool write(const MatchList &matches, Database &database, const HeldSignals &held)
{
    WholeFile file("export to", matches.file);
    file.write(csvLine(columnNames()));
    for (const qlonglong id : matches.ids) {
        if (held.isWaiting())
            return false;
        file.write(lineOf(database.recording(id)));
    }
    if (held.isWaiting())
        return false;
    file.commit();
    return true;
}

void logWriting(const MatchList &matches, ExportActionLog::EState state)
{
    const LogTurn turn(*vo::ActionLog::getInstance());
    // Lists have no format of their own among those of the log.
    ExportActionLog::send(ExportActionLog::FormatUnknown, printable(matches.folder),
                          printable(matches.file), matches.oldest, matches.newest, state);
}

void logOutcome(const QString &text, ExportActionLog::EState state)
{
    const LogTurn turn(*vo::ActionLog::getInstance());
    ExportActionLog::send(printable(text), state);
}

} // namespace

void exportMatches(const MatchList &matches, Database &database)
{
    const HeldSignals held;
    logWriting(matches, ExportActionLog::StateStart);
    bool written = false;
    try {
        written = write(matches, database, held);
    } catch (const Failure &failure) {
        logOutcome(failure.message(), ExportActionLog::StateError);
        throw;
    }
    if (!written) {
        const QString message =
            QStringLiteral("the export to '%1' was interrupted").arg(matches.file);
        logOutcome(message, ExportActionLog::StateAbort);
        throw Failure(message);
    }
    logWriting(matches, ExportActionLog::StateFinished);
    logOutcome(QStringLiteral("%1 matches are in '%2'").arg(matches.ids.size()).arg(matches.file),
               ExportActionLog::StateFinished);
}
