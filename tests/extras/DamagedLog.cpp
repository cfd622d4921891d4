#include "DamagedLog.h"

#include <Vokit/Vokit.h>

#include <QBuffer>

#include <algorithm>

namespace test {

namespace {

/// A class of another application's: it writes, and no reader has it.
class Stranger : public vo::LogEntry
{
public:
    Stranger(const QString &text, int number)
        : m_text(0x6E6F7465, "note", text)
        , m_number(0x6E756D20, "number", number)
    {
        append(&m_text);
        append(&m_number);
    }
    vo::FourChars id() const override { return 0x5374726E; }
    vo::LogCategory category() const override { return vo::LogCatSystem; }
    QString descriptionText() const override { return {}; }
    QString action() const override { return {}; }

private:
    vo::TLogValue<QString> m_text;
    vo::TLogValue<int> m_number;
};

// Texts as users have them, and such as they should not have.
QString anyText(Dice &dice)
{
    static const QString texts[] = {
        QString(),
        "Gate 1",
        "/media/usb/clip 0001.avi",
        "'%1%2' to '%1%3'.",
        "Format='%1'; Source='%2'; Date and time from='%4'; Date and time to '%5'; Target='%3'.",
        "a < b && c > \"d\"",
        "tab\tline\nreturn\r\n",
        QString::fromUtf8("Fußgängerübergang Süd – 東京 камера"),
        QString::fromUtf8("\xF0\x9F\x8E\xA5 \xF0\x9F\x94\xA5"),
        "<Entry ID=\"ExpD\" Text=\"quoted\"/>",
        "]]> --> ?> </Entries>",
        "O'Hara",
    };
    constexpr int longest = 90000; // beyond a block
    if (dice.once(400))
        return QString(dice.between(longest / 2, longest), QLatin1Char('x'));
    if (dice.once(40))
        return texts[2].repeated(dice.between(10, 60));
    return texts[dice.below(int(std::size(texts)))];
}

QDateTime anyDate(Dice &dice)
{
    constexpr int year = 365 * 24 * 3600;
    static const QDateTime start(QDate(2026, 1, 1), QTime(0, 0));
    return dice.once(8) ? QDateTime() : start.addSecs(dice.below(year));
}

std::unique_ptr<vo::LogEntry> anyEntry(Dice &dice)
{
    constexpr int classCount = 9;
    const QString a = anyText(dice);
    const QString b = anyText(dice);
    const QString c = anyText(dice);
    switch (dice.below(classCount)) {
    case 0:
        return std::make_unique<vo::ActionLogContextSwitchEntry>(a, b);
    case 1:
        return std::make_unique<ExportStartLogEntry>(a, "AVI", b, c, anyDate(dice), anyDate(dice));
    case 2:
        return std::make_unique<ExportWrittenLogEntry>(a, "AVI", b, c, anyDate(dice),
                                                       anyDate(dice));
    case 3:
        return std::make_unique<ExportDoneLogEntry>(a);
    case 4:
        return std::make_unique<ExportErrorLogEntry>(a);
    case 5:
        return std::make_unique<ExportAbortLogEntry>(a);
    case 6:
        return std::make_unique<ExportRenameLogEntry>(a, b, dice.once(2) ? QString() : c, b);
    case 7:
        return std::make_unique<ParseXMLLogEntry>(a, b, dice.below(100), dice.below(100));
    default:
        return std::make_unique<Stranger>(a, dice.below(10));
    }
}

// The places of the names of an entry's attributes. Values hold no quotes.
std::vector<Range> namesOf(const QByteArray &bytes, Range entry)
{
    std::vector<Range> names;
    bool isQuoted = false;
    for (int at = entry.begin; at < entry.end; ++at) {
        isQuoted ^= bytes.at(at) == '"';
        if (!isQuoted && bytes.at(at) == ' ') {
            const int end = bytes.indexOf('=', at);
            if (end < 0 || end > entry.end)
                break;
            names.push_back({at + 1, end});
            at = end;
        }
    }
    return names;
}

} // namespace

WrittenLog writeLog(Dice &dice, int entryCount)
{
    static const QString users[] = {"ann", "bob (admin)", QString::fromUtf8("Jürgen"), ""};
    WrittenLog log;
    QBuffer buffer(&log.bytes);
    buffer.open(QIODevice::WriteOnly);
    QTextStream stream(&buffer);
    vo::XMLLogWriter writer(&stream, "", QDateTime(QDate(2026, 1, 1), QTime(8, 0)));
    writer.setStartDocumentName("/logs/client.vol");
    if (dice.once(2))
        writer.setAppVersion("7.1 \"beta\"");
    writer.writeStartDocument();
    log.rootTag = log.bytes.indexOf("<Entries");
    log.rootTagEnd = log.bytes.size();
    QDateTime time(QDate(2026, 1, 1), QTime(8, 0));
    for (int i = 0; i < entryCount; ++i) {
        const std::unique_ptr<vo::LogEntry> entry = anyEntry(dice);
        time = time.addSecs(dice.below(3600));
        entry->setTime(time);
        entry->setUser(users[dice.below(int(std::size(users)))]);
        const int before = log.bytes.size();
        entry->writeTo(writer);
        // The first one closes the root's start tag, too.
        log.entries.push_back({before + (i == 0 ? 1 : 0), log.bytes.size()});
    }
    log.isClosed = dice.once(3);
    if (log.isClosed)
        writer.writeEndDocument();
    return log;
}

const char *DamagedLog::name(Kind kind)
{
    static constexpr const char *names[] = {"undamaged",
                                            "truncated",
                                            "torn tail, more behind",
                                            "unfinished root tag",
                                            "zero in names",
                                            "flipped bytes",
                                            "removed blocks",
                                            "foreign blocks within",
                                            "two logs run together",
                                            "foreign bytes in front",
                                            "zeroed blocks"};
    static_assert(std::size(names) == KindCount);
    return names[kind];
}

DamagedLog::DamagedLog(Dice &dice, WrittenLog log)
    : m_dice(dice)
    , m_log(std::make_shared<const WrittenLog>(std::move(log)))
    , m_logs{m_log}
    , m_pieces{{m_log, {}, 0, m_log->bytes.size()}}
{}

void DamagedLog::damage(Kind kind)
{
    constexpr int longestBlock = 4096;
    const int blocks = m_dice.between(1, 3);
    const auto place = [this] { return m_dice.below(size() + 1); };
    switch (kind) {
    case Truncated: {
        const int at = place();
        remove(at, size() - at);
        break;
    }
    case TornTail:
        tearTail();
        break;
    case UnfinishedRoot:
        leaveRootOpen();
        break;
    case ZeroInName:
        zeroNames();
        break;
    case FlippedBytes:
        flipBytes();
        break;
    case RemovedBlocks:
        for (int i = 0; i < blocks; ++i)
            remove(place(), m_dice.between(1, longestBlock));
        break;
    case ForeignBlocks:
        for (int i = 0; i < blocks; ++i)
            insertForeign(m_dice.once(2) ? place() : entryStart(), foreignBlock());
        break;
    case RunTogether:
        insert(size(), {addLog(), {}, 0, m_logs.back()->bytes.size()});
        break;
    case ForeignFront:
        insertForeign(0, foreignBlock());
        break;
    case ZeroedBlocks:
        for (int i = 0; i < blocks; ++i)
            replace(place(), QByteArray(m_dice.between(1, longestBlock), '\0'));
        break;
    case Undamaged:
    case KindCount:
        break;
    }
    join();
}

QByteArray DamagedLog::bytes() const
{
    QByteArray bytes;
    bytes.reserve(size());
    for (const Piece &piece : m_pieces) {
        if (piece.log)
            bytes.append(piece.log->bytes.constData() + piece.begin, piece.size);
        else
            bytes.append(piece.foreign);
    }
    return bytes;
}

std::vector<Range> DamagedLog::intact() const
{
    std::vector<Range> ranges;
    int at = 0;
    for (const Piece &piece : m_pieces) {
        if (piece.log) {
            for (const Range &entry : piece.log->entries) {
                if (entry.begin >= piece.begin && entry.end <= piece.begin + piece.size)
                    ranges.push_back(
                        {at + entry.begin - piece.begin, at + entry.end - piece.begin});
            }
        }
        at += piece.size;
    }
    return ranges;
}

int DamagedLog::written() const
{
    int count = 0;
    for (const auto &log : m_logs)
        count += static_cast<int>(log->entries.size());
    return count;
}

bool DamagedLog::isHit(Range range) const
{
    int border = 0;
    for (const Piece &piece : m_pieces) {
        border += piece.size;
        if (border > range.begin)
            return border < range.end;
    }
    return false;
}

int DamagedLog::size() const
{
    int size = 0;
    for (const Piece &piece : m_pieces)
        size += piece.size;
    return size;
}

// Makes a border of pieces at a place; the index of the piece behind it.
std::size_t DamagedLog::split(int at)
{
    std::size_t i = 0;
    for (; i < m_pieces.size() && at >= m_pieces[i].size; ++i)
        at -= m_pieces[i].size;
    if (i == m_pieces.size() || at == 0)
        return i;
    Piece rest = m_pieces[i];
    rest.begin += at;
    rest.size -= at;
    rest.foreign = rest.foreign.mid(at);
    m_pieces[i].size = at;
    m_pieces[i].foreign.truncate(at);
    m_pieces.insert(m_pieces.begin() + static_cast<std::ptrdiff_t>(i) + 1, rest);
    return i + 1;
}

void DamagedLog::insert(int at, const Piece &piece)
{
    const std::size_t index = split(at);
    m_pieces.insert(m_pieces.begin() + static_cast<std::ptrdiff_t>(index), piece);
}

void DamagedLog::insertForeign(int at, const QByteArray &bytes)
{
    insert(at, {nullptr, bytes, 0, bytes.size()});
}

void DamagedLog::remove(int at, int size)
{
    const std::size_t begin = split(at);
    const std::size_t end = split(at + size);
    m_pieces.erase(m_pieces.begin() + static_cast<std::ptrdiff_t>(begin),
                   m_pieces.begin() + static_cast<std::ptrdiff_t>(end));
}

// Up to the end; nothing grows.
void DamagedLog::replace(int at, const QByteArray &bytes)
{
    const QByteArray fitting = bytes.left(size() - at);
    remove(at, fitting.size());
    insertForeign(at, fitting);
}

// Pieces that belong together have no border.
void DamagedLog::join()
{
    std::vector<Piece> joined;
    for (const Piece &piece : m_pieces) {
        if (piece.size == 0)
            continue;
        Piece *const last = joined.empty() ? nullptr : &joined.back();
        if (last && last->log && last->log == piece.log && last->begin + last->size == piece.begin)
            last->size += piece.size;
        else
            joined.push_back(piece);
    }
    m_pieces.swap(joined);
}

int DamagedLog::entryStart()
{
    const std::vector<Range> entries = intact();
    return entries.empty()
               ? size()
               : entries[static_cast<std::size_t>(m_dice.below(int(entries.size())))].begin;
}

// What the next session of a client writes.
std::shared_ptr<const WrittenLog> DamagedLog::addLog()
{
    constexpr int mostEntries = 30;
    m_logs.push_back(
        std::make_shared<const WrittenLog>(writeLog(m_dice, m_dice.below(mostEntries))));
    return m_logs.back();
}

// A crash cuts the last entry, and a client that doesn't look appends.
void DamagedLog::tearTail()
{
    const std::vector<Range> entries = intact();
    if (!entries.empty()) {
        const Range last = entries[static_cast<std::size_t>(m_dice.below(int(entries.size())))];
        const int at = m_dice.between(last.begin + 1, last.end - 1);
        remove(at, size() - at);
    }
    const auto next = addLog();
    if (!next->entries.empty()) {
        const int begin = next->entries.front().begin;
        insert(size(), {next, {}, begin, next->bytes.size() - begin});
    }
}

// A log that was opened and closed without an entry, or not even that far.
void DamagedLog::leaveRootOpen()
{
    if (m_dice.once(2)) { // its ">" is lost
        remove(m_log->rootTagEnd, 1);
        return;
    }
    const int at = m_dice.between(m_log->rootTag + 1, m_log->rootTagEnd);
    remove(at, size() - at);
    const auto next = addLog();
    if (!next->entries.empty()) {
        const int begin = next->entries.front().begin;
        insert(size(), {next, {}, begin, next->bytes.size() - begin});
    }
}

void DamagedLog::zeroNames()
{
    const std::vector<Range> entries = intact();
    const QByteArray all = bytes();
    const int count = entries.empty() ? 0 : m_dice.between(1, 4);
    for (int i = 0; i < count; ++i) {
        const auto entry = entries[static_cast<std::size_t>(m_dice.below(int(entries.size())))];
        const std::vector<Range> names = namesOf(all, entry);
        const Range name = names[static_cast<std::size_t>(m_dice.below(int(names.size())))];
        const int at = m_dice.once(2) ? name.begin : m_dice.between(name.begin, name.end - 1);
        if (all.at(at) != '\0')
            replace(at, QByteArray(1, '\0'));
    }
}

void DamagedLog::flipBytes()
{
    constexpr int bits = 8;
    const int count = size() == 0 ? 0 : m_dice.between(1, 8);
    for (int i = 0; i < count; ++i) {
        const int at = m_dice.below(size());
        const int flip = m_dice.once(2) ? 1 << m_dice.below(bits) : m_dice.between(1, 255);
        replace(at, QByteArray(1, static_cast<char>(bytes().at(at) ^ flip)));
    }
}

// What else lies on a disk; whole entries don't. What opens a comment or its like comes now and
// then: if another block closes it, the entries between are in it, and don't come back.
QByteArray DamagedLog::foreignBlock()
{
    static const char *const texts[] = {
        "Nov 21 15:04:05 host kernel: [12.5] eth0: link up\n",
        "<event level=\"3\"><data name=\"x\">1 &lt; 2</data></event>\r\n",
        "<!DOCTYPE html><html><body class='a'><br/>&nbsp;</body></html>",
        "<!-- a comment --><?php echo \"<p>\"; ?><![CDATA[ <a> ]]>",
        "{\"time\": \"2026-11-21\", \"user\": \"ann\", \"ok\": true}\n",
        "\" Text=\"",
        "/>",
        "<Entry ",
        "<Entry ID=\"ExpD\" Text='",
        "</Entries>",
        "<Entries",
        "&#0;",
        "<\xFF\xFE",
        "a",
        " "};
    static const char *const hiding[] = {"<!--", "-->", "<![CDATA[", "]]>", "<!DOCTYPE a [", "]>"};
    constexpr int longest = 3000;
    QByteArray block;
    switch (m_dice.below(3)) {
    case 0:
        for (int i = m_dice.between(1, longest); i > 0; --i)
            block += static_cast<char>(m_dice.below(256));
        return block;
    case 1:
        return QByteArray(texts[m_dice.below(5)]).repeated(m_dice.between(1, 40));
    default:
        for (int i = m_dice.between(1, 6); i > 0; --i)
            block += m_dice.once(40) ? hiding[m_dice.below(int(std::size(hiding)))]
                                     : texts[m_dice.below(int(std::size(texts)))];
        return block;
    }
}

} // namespace test
