#pragma once

#include <Vokit/LogEntry>
#include <Vokit/XMLLogReader>

#include <VokitExtras/VolFile>

#include <QBuffer>
#include <QTemporaryFile>

#include <algorithm>
#include <memory>
#include <vector>

/// What VolFile gives of a file, held against the file's bytes and against XMLLogReader. Knows
/// nothing of Qt Test, so that the fuzz target has it, too.
namespace test {

/// A gap, or an entry with its place.
struct VolToken
{
    bool isEntry = false;
    vo::VolEntry entry;
    vo::VolGap gap;

    qint64 position() const { return isEntry ? entry.position() : gap.position; }
    qint64 end() const { return isEntry ? position() + entry.bytes().size() : gap.end(); }
};

struct VolReading
{
    std::vector<VolToken> tokens;
    std::vector<vo::VolHeader> headers; ///< each that VolFile had at some time
    vo::VolFile::Condition condition = vo::VolFile::Live;
    qint64 entryCount = 0;
    qint64 gapCount = 0;
    vo::VolGap firstGap;
    qint64 position = 0;

    std::vector<vo::VolEntry> entries() const
    {
        std::vector<vo::VolEntry> list;
        for (const VolToken &token : tokens) {
            if (token.isEntry)
                list.push_back(token.entry);
        }
        return list;
    }
    std::vector<vo::VolGap> gaps() const
    {
        std::vector<vo::VolGap> list;
        for (const VolToken &token : tokens) {
            if (!token.isEntry)
                list.push_back(token.gap);
        }
        return list;
    }
};

/// Adds what comes up to the next End. Gives up behind @p most tokens.
inline void readOn(vo::VolFile &log, VolReading &reading, std::size_t most = ~std::size_t(0))
{
    while (reading.tokens.size() < most) {
        const vo::VolFile::Token token = log.readNext();
        if (!log.header().isNull() &&
            (reading.headers.empty() ||
             reading.headers.back().position() != log.header().position()))
            reading.headers.push_back(log.header());
        if (token == vo::VolFile::End)
            break;
        VolToken next;
        next.isEntry = token == vo::VolFile::Entry;
        if (next.isEntry)
            next.entry = log.entry();
        else
            next.gap = log.gap();
        reading.tokens.push_back(std::move(next));
    }
    reading.condition = log.condition();
    reading.entryCount = log.entryCount();
    reading.gapCount = log.gapCount();
    reading.firstGap = log.firstGap();
    reading.position = log.position();
}

inline VolReading readVol(QIODevice *device)
{
    vo::VolFile log(device);
    VolReading reading;
    readOn(log, reading);
    return reading;
}

inline VolReading readVol(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return readVol(&buffer);
}

/// "torn entry 31+12 at 1:32"
inline QString told(const vo::VolGap &gap)
{
    return QStringLiteral("%1 %2+%3 at %4:%5")
        .arg(QLatin1String(gap.kindName()))
        .arg(gap.position)
        .arg(gap.length)
        .arg(gap.line)
        .arg(gap.column);
}

/// "ExpD|21 Nov 2026 15:04:05|ann|text"; a date from @p before on is "now", since it is that of
/// reading. "null" for none.
inline QString told(const vo::LogEntry *entry, const QDateTime &before)
{
    if (!entry)
        return QStringLiteral("null");
    QString text = entry->id().toString();
    for (const vo::LogValue *value : entry->values()) {
        const auto *date = dynamic_cast<const vo::TLogValue<QDateTime> *>(value);
        const bool isNow = date && date->value() >= before;
        text += QLatin1Char('|') + (isNow ? QStringLiteral("now") : value->toString());
    }
    return text;
}

/// "entry 9+18 ExpD" and gaps as above, in order.
inline QStringList told(const VolReading &reading)
{
    QStringList list;
    for (const VolToken &token : reading.tokens) {
        list.append(token.isEntry ? QStringLiteral("entry %1+%2 %3")
                                        .arg(token.position())
                                        .arg(token.entry.bytes().size())
                                        .arg(token.entry.id().toString())
                                  : told(token.gap));
    }
    return list;
}

inline bool isWhite(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Lines and columns, counted anew from the bytes. Goes forward only.
class Places
{
public:
    explicit Places(const QByteArray &bytes)
        : m_bytes(bytes)
    {}
    bool isAt(const vo::VolGap &gap)
    {
        for (; m_at < gap.position; ++m_at) {
            const char c = m_bytes.at(m_at);
            m_line += c == '\n';
            m_column = c == '\n' ? 1 : m_column + ((c & 0xC0) != 0x80);
        }
        return gap.line == m_line && gap.column == m_column;
    }

private:
    const QByteArray &m_bytes;
    int m_at = 0;
    qint64 m_line = 1;
    qint64 m_column = 1;
};

/// The size of the root's start tag that bytes begin with: it may be unfinished at their end. 0 for
/// none that Qt's reader takes.
inline int rootTagSize(const QByteArray &bytes)
{
    char quote = 0;
    int end = 0;
    for (; end < bytes.size() && (quote || bytes.at(end) != '>'); ++end) {
        const char c = bytes.at(end);
        if (quote)
            quote = c == quote ? 0 : quote;
        else if (c == '"' || c == '\'')
            quote = c;
    }
    QXmlStreamReader reader(bytes.left(end) + '>');
    const bool isRoot = reader.readNextStartElement() && reader.name() == QLatin1String("Entries");
    return isRoot ? std::min(end + 1, bytes.size()) : 0;
}

/// Whether bytes that VolFile passed over without a word are what a log has around its entries.
inline bool isFrame(QByteArray bytes, qint64 position)
{
    while (true) {
        const auto black = std::find_if_not(bytes.cbegin(), bytes.cend(), isWhite);
        position += black - bytes.cbegin();
        bytes.remove(0, static_cast<int>(black - bytes.cbegin()));
        int size = 0;
        if (bytes.isEmpty())
            return true;
        if (position == 0 && bytes.startsWith("\xEF\xBB\xBF"))
            size = 3;
        else if (position <= 3 && bytes.startsWith("<?xml"))
            size = bytes.indexOf("?>") + 2;
        else if (bytes.startsWith("<Entries"))
            size = rootTagSize(bytes);
        else if (bytes.startsWith("</Entries"))
            size = bytes.indexOf('>') + 1;
        if (size < 1 || size > bytes.size())
            return false;
        position += size;
        bytes.remove(0, size);
    }
}

/// What is amiss between a reading and the bytes it is of: tokens stand in order, overlap nowhere,
/// tell what is there, and leave nothing out. Empty for nothing.
inline QString misreading(const VolReading &reading, const QByteArray &bytes)
{
    qint64 covered = 0;
    qint64 gaps = 0;
    Places places(bytes);
    for (std::size_t i = 0; i < reading.tokens.size(); ++i) {
        const VolToken &token = reading.tokens[i];
        const QString name =
            token.isEntry ? QStringLiteral("entry at %1").arg(token.position()) : told(token.gap);
        // An odd name is a gap within the entry that follows.
        const bool isInNext = !token.isEntry && i + 1 < reading.tokens.size() &&
                              reading.tokens[i + 1].isEntry &&
                              reading.tokens[i + 1].position() < token.end();
        const qint64 begin = isInNext ? reading.tokens[i + 1].position() : token.position();
        if (begin < covered || token.position() < begin || token.end() > bytes.size())
            return name + QStringLiteral(" is out of place");
        if (isInNext && token.end() > reading.tokens[i + 1].end())
            return name + QStringLiteral(" overlaps an entry");
        if (!token.isEntry && (token.gap.length < 0 || !places.isAt(token.gap)))
            return name + QStringLiteral(" has a wrong line or column");
        if (token.isEntry && bytes.mid(static_cast<int>(token.position()),
                                       token.entry.bytes().size()) != token.entry.bytes())
            return name + QStringLiteral(" is not what stands there");
        if (!isFrame(bytes.mid(static_cast<int>(covered), static_cast<int>(begin - covered)),
                     covered))
            return QStringLiteral("nothing is told of bytes between %1 and %2")
                .arg(covered)
                .arg(begin);
        covered = isInNext ? begin : token.end();
        gaps += !token.isEntry;
    }
    if (!isFrame(bytes.mid(static_cast<int>(covered)), covered))
        return QStringLiteral("nothing is told of bytes behind %1").arg(covered);
    if (gaps != reading.gapCount ||
        static_cast<qint64>(reading.tokens.size()) - gaps != reading.entryCount)
        return QStringLiteral("the counts are wrong");
    return {};
}

/// A file for XMLLogReader, which reads no other device.
class ReaderFile
{
public:
    QFile *with(const QByteArray &bytes)
    {
        const bool isReady = (m_file.isOpen() || m_file.open()) && m_file.resize(0) &&
                             m_file.seek(0) && m_file.write(bytes) == bytes.size() &&
                             m_file.flush() && m_file.seek(0);
        if (!isReady)
            qFatal("no temporary file");
        return &m_file;
    }

private:
    QTemporaryFile m_file;
};

struct ReaderResult
{
    QStringList entries; ///< "null" for a class that isn't registered
    QXmlStreamReader::Error error = QXmlStreamReader::NoError;
    bool isWhole() const
    {
        return error == QXmlStreamReader::NoError ||
               error == QXmlStreamReader::PrematureEndOfDocumentError;
    }
};

inline ReaderResult readByReader(const QByteArray &bytes)
{
    static ReaderFile file;
    const QDateTime before = QDateTime::currentDateTime();
    vo::XMLLogReader reader(file.with(bytes));
    ReaderResult result;
    while (!reader.atEnd() && reader.error() == QXmlStreamReader::NoError) {
        const std::unique_ptr<vo::LogEntry> entry(reader.readNextLogEntry());
        result.entries.append(told(entry.get(), before));
    }
    result.entries.removeLast(); // what the end gives
    result.error = reader.error();
    return result;
}

/// Every element by its attributes, as Qt's reader has them: those that no class knows, too.
inline QStringList elements(const QByteArray &bytes)
{
    QXmlStreamReader reader(bytes);
    QStringList list;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        QString text;
        for (const QXmlStreamAttribute &attribute : reader.attributes())
            text += attribute.name() + QLatin1Char('=') + attribute.value() + QLatin1Char('|');
        list.append(text);
    }
    return list;
}

inline QString told(const vo::VolElement &element)
{
    QString text;
    for (int i = 0; i < element.attributeCount(); ++i)
        text += element.name(i) + QLatin1Char('=') + element.value(i) + QLatin1Char('|');
    return text;
}

/**
 * What VolFile and XMLLogReader don't agree on; empty for nothing.
 *
 * They have to agree on a file in which VolFile finds no gap: that it is whole, on each entry, and
 * on each attribute. Of a file with a gap only the reading itself is looked at.
 */
inline QString disagreement(const VolReading &reading, const QByteArray &bytes)
{
    const QString wrong = misreading(reading, bytes);
    if (!wrong.isEmpty() || reading.gapCount > 0)
        return wrong;
    const QDateTime before = QDateTime::currentDateTime();
    const ReaderResult other = readByReader(bytes);
    if (!other.isWhole())
        return QStringLiteral("no gap, and XMLLogReader stops");
    const bool isClosed = other.error == QXmlStreamReader::NoError;
    if (reading.condition != (isClosed ? vo::VolFile::Complete : vo::VolFile::Live))
        return QStringLiteral("the condition is another one");
    QStringList entries;
    QStringList found;
    if (!reading.headers.empty() && reading.headers.back().bytes().endsWith('>'))
        found.append(told(reading.headers.back()));
    for (const vo::VolEntry &entry : reading.entries()) {
        entries.append(told(entry.toLogEntry().get(), before));
        found.append(told(entry));
    }
    if (entries != other.entries)
        return QStringLiteral("other entries: ") + entries.join(QLatin1Char(';')) +
               QStringLiteral(" and ") + other.entries.join(QLatin1Char(';'));
    if (found != elements(bytes))
        return QStringLiteral("other attributes: ") + found.join(QLatin1Char(';')) +
               QStringLiteral(" and ") + elements(bytes).join(QLatin1Char(';'));
    return {};
}

inline QString disagreement(const QByteArray &bytes)
{
    return disagreement(readVol(bytes), bytes);
}

/// The same of a file that nothing is amiss with: a gap is one thing more to complain of.
inline QString complaint(const QByteArray &bytes)
{
    const VolReading reading = readVol(bytes);
    return reading.gapCount > 0 ? told(reading.firstGap) : disagreement(reading, bytes);
}

} // namespace test
