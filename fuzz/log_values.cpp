#include "Fuzz.h"

#include <Vokit/ActionLogContextSwitchEntry>
#include <Vokit/ExportLogEntries>
#include <Vokit/LogEntryFactory>
#include <Vokit/ParseXMLLogEntry>
#include <Vokit/XMLLogReader>
#include <Vokit/XMLLogWriter>

#include <QBuffer>
#include <QLocale>

#include <memory>
#include <vector>

using fuzz::require;
using vo::LogEntry;
using vo::LogValue;
using vo::TLogValue;

namespace {

using Entry = std::unique_ptr<LogEntry>;

const vo::FourChars gClasses[] = {
    QStringLiteral("ExpD"), QStringLiteral("ExpS"), QStringLiteral("ExpW"), QStringLiteral("ExpE"),
    QStringLiteral("ExpA"), QStringLiteral("ExpR"), QStringLiteral("XmlP"), QStringLiteral("ALog")};

/// Values out of bytes, until they are used up.
class Values
{
public:
    Values(const unsigned char *data, size_t size)
        : m_data(data)
        , m_end(data + size)
    {}

    bool atEnd() const { return m_data == m_end; }

    quint64 number(int bytes)
    {
        quint64 value = 0;
        for (; bytes > 0; --bytes)
            value = value << 8 | (m_data == m_end ? 0 : *m_data++);
        return value;
    }

    QString text()
    {
        QString text;
        for (quint64 left = number(1); left > 0 && !atEnd(); --left)
            text.append(QChar(static_cast<ushort>(number(2))));
        return text;
    }

    QDateTime date()
    {
        switch (number(1) % 8) {
        case 0:
            return QDateTime();
        case 1:
            return QDateTime(QDate(), QTime(1, 2));
        case 2:
            return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(number(8)), Qt::UTC);
        case 3:
            return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(number(8)));
        case 4:
            return QDateTime(QDate(static_cast<int>(number(2)), 3, 29), QTime(2, 30));
        default:
            return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(number(4)), Qt::LocalTime);
        }
    }

private:
    const unsigned char *m_data;
    const unsigned char *const m_end;
};

template <typename T>
TLogValue<T> *valueAs(LogValue *value)
{
    return dynamic_cast<TLogValue<T> *>(value);
}

void fill(LogEntry &entry, Values &values)
{
    for (LogValue *value : entry.values()) {
        if (auto *const text = valueAs<QString>(value))
            text->setValue(values.text());
        else if (auto *const number = valueAs<int>(value))
            number->setValue(static_cast<int>(values.number(4)));
        else
            valueAs<QDateTime>(value)->setValue(values.date());
    }
}

// What XML 1.0 can't hold is left out; half of a surrogate pair is a question mark.
QString readable(const QString &text)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result.append(c).append(text.at(++i));
        } else if (c.isSurrogate()) {
            result.append(QLatin1Char('?'));
        } else if ((c >= QLatin1Char(' ') || QStringLiteral("\t\n\r").contains(c)) &&
                   c.unicode() < 0xFFFE) {
            result.append(c);
        }
    }
    return result;
}

QDateTime readable(const QDateTime &date)
{
    const QLocale locale = QLocale::system();
    return locale.toDateTime(locale.toString(date, QLocale::ShortFormat), QLocale::ShortFormat);
}

void compare(LogValue *written, LogValue *read, const QDateTime &before)
{
    require(read->id() == written->id(), "a value has another place");
    if (auto *const text = valueAs<QString>(written)) {
        require(valueAs<QString>(read)->value() == readable(text->value()), "another text");
    } else if (auto *const number = valueAs<int>(written)) {
        require(valueAs<int>(read)->value() == number->value(), "another number");
    } else {
        const QDateTime date = valueAs<QDateTime>(read)->value();
        if (written->hasValue())
            require(date == readable(valueAs<QDateTime>(written)->value()), "another date");
        else
            require(date >= before && date <= QDateTime::currentDateTime(),
                    "a date that was not written is not the time of reading");
    }
}

QByteArray written(const std::vector<Entry> &entries)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    vo::XMLLogWriter writer(nullptr, QString(), QDateTime::currentDateTime());
    writer.setDevice(&buffer);
    writer.setStartDocumentName(QStringLiteral("Client.vol"));
    writer.writeStartDocument();
    for (const Entry &entry : entries)
        entry->writeTo(writer);
    return bytes;
}

// The identifier of a renamed result's source begins with a zero byte, which no reader passes.
bool stopsTheReader(const LogEntry &entry)
{
    for (const LogValue *value : entry.values()) {
        if (value->id().value() >> 24 == 0 && value->hasValue())
            return true;
    }
    return false;
}

} // namespace

// Bytes as the values of entries, which come back from a log file as they are told to.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    fuzz::silenceQt();
    Values values(data, size);
    std::vector<Entry> entries;
    while (!values.atEnd()) {
        const auto index = static_cast<size_t>(values.number(1)) % std::size(gClasses);
        entries.emplace_back(vo::logEntryFactory()->create(gClasses[index]));
        fill(*entries.back(), values);
    }

    const QByteArray bytes = written(entries);
    const QDateTime before = QDateTime::currentDateTime();
    vo::XMLLogReader reader(nullptr);
    reader.addData(bytes);
    for (const Entry &entry : entries) {
        const Entry read(reader.readNextLogEntry());
        require(read != nullptr, "an entry is missing");
        if (stopsTheReader(*entry)) {
            require(dynamic_cast<ParseXMLLogEntry *>(read.get()) != nullptr &&
                        reader.error() == QXmlStreamReader::NotWellFormedError,
                    "a zero byte was read");
            return 0;
        }
        require(read->id() == entry->id(), "another class");
        require(read->values().size() == entry->values().size(), "other values");
        for (int i = 0; i < entry->values().size(); ++i)
            compare(entry->values().at(i), read->values().at(i), before);
    }
    require(!Entry(reader.readNextLogEntry()), "an entry too many");
    require(reader.error() == QXmlStreamReader::PrematureEndOfDocumentError,
            "a live log ends in another way");
    return 0;
}
