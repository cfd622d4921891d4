#include "Exports.h"

#include <Vokit/XMLLogWriter>

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <cstdio>

/**
 * @file
 * What scripts/large-log needs beside vokit-log:
 *
 *     large_log write FILE BYTES   makes a live log of at least that size
 *     large_log walk FILE          touches all values of its entries by QXmlStreamReader alone
 */

namespace {

constexpr int gEntries = 100000;

// A log with that many entries, as one write of the file system's would have it.
QByteArray smallLog()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, QString(), QDateTime::currentDateTime());
    writer.writeStartDocument();
    for (const Export &record : exports(gEntries)) {
        const std::unique_ptr<ExportStartLogEntry> entry = toEntry(record);
        entry->setTime(record.time);
        entry->setUser(record.user);
        entry->writeTo(writer);
    }
    return buffer.data();
}

int writeLog(const QString &name, qint64 size)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    const QByteArray log = smallLog();
    const QByteArray entries = log.mid(log.indexOf("<Entry "));
    file.write(log);
    while (file.error() == QFileDevice::NoError && file.size() < size)
        file.write(entries);
    return file.error() == QFileDevice::NoError && file.flush() ? 0 : 1;
}

int walk(const QString &name)
{
    const qint64 length = walkedLength(name);
    std::printf("%lld characters\n", length);
    return length < 0 ? 1 : 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("write"))
        return writeLog(arguments.at(2), arguments.at(3).toLongLong());
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("walk"))
        return walk(arguments.at(2));
    std::fputs("large_log: see its source\n", stderr);
    return 2;
}
