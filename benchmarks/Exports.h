#pragma once

#include <Vokit/ExportLogEntries>

#include <QDateTime>
#include <QString>

#include <memory>
#include <string>
#include <vector>

/**
 * @file
 * The exports that the benchmarks of the audit log write and read, the same in every run: some 265
 * bytes of XML each.
 */

/// What an entry of the log says of the begin of an export.
struct Export
{
    QDateTime time; ///< local, as the others; three quarters of them differ from the one before
    QString user;
    QString text;
    QString format;
    QString source;
    QString dest;   ///< differs from all others
    QDateTime from; ///< seven seconds behind that of the export before
    QDateTime to;   ///< equal to no other date of the field, nor of `from`
};

/// The names of the user of all exports.
extern const char gPrimaryName[];
extern const char gSecondaryName[];

/// The first @p count exports of the one sequence.
std::vector<Export> exports(int count);

/// Its time is now.
std::unique_ptr<ExportStartLogEntry> toEntry(const Export &record);

/// As a log file holds a date.
QString toShortText(const QDateTime &date);

/// All fields but the time, in one line.
QString toLine(const Export &record);
/// The same, of an entry that was made of the export.
QString toLine(const vo::LogEntry &entry);

/// The length of all values in a log, as a bare loop of QXmlStreamReader has it.
/// @return -1 for a file that can't be read
qint64 walkedLength(const QString &fileName);

/// The end of a benchmark's name: the zone of local times is named by TZ ("/tz"), or looked up in
/// /etc/localtime over and over ("/notz").
std::string zoneSuffix();
