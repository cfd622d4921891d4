#include "Exports.h"

#include <QFile>
#include <QLocale>
#include <QStringList>
#include <QXmlStreamReader>

const char gPrimaryName[] = "J\u00f8rgensen";
const char gSecondaryName[] = "Shift leader";

namespace {

constexpr qint64 gSecondsBetween = 7;
constexpr qint64 gDuration = 6 * gSecondsBetween + 3;

QString joined(const QStringList &fields)
{
    return fields.join(QStringLiteral(" | "));
}

} // namespace

std::vector<Export> exports(int count)
{
    const QDateTime logged(QDate(2025, 11, 10), QTime(8, 0));
    const QDateTime recorded(QDate(2025, 10, 27), QTime(8, 0));
    std::vector<Export> records;
    records.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const QDateTime from = recorded.addSecs(gSecondsBetween * i);
        records.push_back(
            {logged.addSecs(3 * i / 4),
             QStringLiteral("%1 (%2)").arg(QString::fromUtf8(gPrimaryName),
                                           QString::fromUtf8(gSecondaryName)),
             QStringLiteral("Export of recording %1 started").arg(i), QStringLiteral("AVI"),
             QStringLiteral("Gate & hall, north/Camera %1").arg(i % 32, 2, 10, QLatin1Char('0')),
             QStringLiteral("D:/Exports/2025/Case %1/clip.avi").arg(i, 6, 10, QLatin1Char('0')),
             from, from.addSecs(gDuration)});
    }
    return records;
}

std::unique_ptr<ExportStartLogEntry> toEntry(const Export &record)
{
    return std::make_unique<ExportStartLogEntry>(record.text, record.format, record.source,
                                                 record.dest, record.from, record.to);
}

QString toShortText(const QDateTime &date)
{
    return QLocale::system().toString(date, QLocale::ShortFormat);
}

QString toLine(const Export &record)
{
    return joined({record.user, record.text, record.format, record.source, record.dest,
                   toShortText(record.from), toShortText(record.to)});
}

QString toLine(const vo::LogEntry &entry)
{
    QStringList fields;
    for (const vo::LogValue *value : entry.values().mid(1))
        fields.append(value->toString());
    return joined(fields);
}

qint64 walkedLength(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    QXmlStreamReader reader(&file);
    qint64 length = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement ||
            reader.name() != QLatin1String("Entry"))
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            length += attribute.value().size();
    }
    return length;
}

std::string zoneSuffix()
{
    return qEnvironmentVariableIsSet("TZ") ? "/tz" : "/notz";
}
