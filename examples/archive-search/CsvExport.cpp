#include "CsvExport.h"

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

#include <algorithm>

using vo::ExportActionLog;

namespace {

QString field(const QString &text)
{
    const auto needsQuotes = [](QChar c) { return QStringLiteral(",\"\r\n").contains(c); };
    if (std::none_of(text.begin(), text.end(), needsQuotes))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QByteArray line(const QStringList &values)
{
    QStringList fields;
    for (const QString &value : values)
        fields.append(field(value));
    return (fields.join(QLatin1Char(',')) + QLatin1String("\r\n")).toUtf8();
}

QString text(const QVariant &value)
{
    return value.type() == QVariant::DateTime ? value.toDateTime().toString(Qt::ISODateWithMs)
                                              : value.toString();
}

QByteArray line(const vogen::PropertySet &recording)
{
    QStringList values;
    for (const Column &column : recordingColumns())
        values.append(text(recording[column.name].variantValue()));
    return line(values);
}

// False if it was given up.
bool write(const MatchList &matches, Database &database, const HeldSignals &held)
{
    WholeFile file("export to", matches.file);
    file.write(line(columnNames()));
    for (const qlonglong id : matches.ids) {
        if (held.isWaiting())
            return false;
        file.write(line(database.recording(id)));
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
