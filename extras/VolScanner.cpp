#include "VolScanner_p.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>
#include <tuple>

namespace vo {

namespace {

constexpr std::string_view gByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view gDeclaration = "<?xml";
constexpr std::string_view gRoot = "<Entries";
constexpr std::string_view gRootEnd = "</Entries";
constexpr std::string_view gEntry = "<Entry";
constexpr std::string_view gEntryEnd = "</Entry";

/// Markup that the log never writes, and that may hold what looks like an entry.
struct Hiding
{
    std::string_view begin;
    std::string_view end;
};
constexpr Hiding gHidings[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<!DOCTYPE", "]>"}};
constexpr std::size_t gDocumentType = 2; ///< the index; it hides what stands in its brackets

constexpr std::string_view gStarts[] = {gDeclaration, gRoot, gRootEnd, gEntry};
constexpr std::size_t gLongestStart = gRootEnd.size() + 1;

constexpr int toInt(std::size_t size)
{
    return static_cast<int>(size);
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

// Whether a tag of that name begins here: "<Entry" begins "<Entries" as well.
bool startsTag(std::string_view text, std::string_view tag)
{
    return startsWith(text, tag) && text.size() > tag.size() &&
           (VolTag::isWhite(text[tag.size()]) || text[tag.size()] == '/' ||
            text[tag.size()] == '>');
}

// A file of another encoding is not one of the log's.
bool isDeclaration(std::string_view text)
{
    QXmlStreamReader reader(QByteArray(text.data(), static_cast<int>(text.size())) + "<Entries/>");
    const QStringRef encoding = reader.readNext() == QXmlStreamReader::StartDocument
                                    ? reader.documentEncoding()
                                    : QStringRef();
    const bool isUtf8 =
        encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0;
    return isUtf8 && reader.readNextStartElement();
}

} // namespace

VolScanner::VolScanner(QIODevice *device)
    : m_window(device)
{
    static_assert(std::size(gHidings) == std::tuple_size<decltype(m_noEndBefore)>::value);
    m_noEndBefore.fill(0);
}

VolScanner::Piece VolScanner::next(bool isLive)
{
    m_isLive = isLive;
    if (isLive || m_window.size() == 0)
        m_window.forgetEnd();
    if (m_window.position() == 0 && !skipByteOrderMark())
        return breakOff();
    skipWhite();
    if (m_window.size() == 0)
        return End;
    if (m_isClosed) { // and yet something follows
        m_isClosed = false;
        m_junk = m_rootEnd;
        return Junk;
    }
    const Piece piece =
        *m_window.begin() == '<' ? readMarkup() : refuseToNextTag(VolGap::ForeignBytes);
    m_isIntact &= piece != Junk;
    return piece;
}

// Whether so many bytes are ahead.
bool VolScanner::reach(std::size_t size)
{
    while (ahead().size() < size) {
        if (!m_window.more())
            return false;
    }
    return true;
}

std::string_view VolScanner::ahead() const
{
    return {m_window.begin(), static_cast<std::size_t>(m_window.size())};
}

// False if the file has to go on before one can tell.
bool VolScanner::skipByteOrderMark()
{
    if (!reach(gByteOrderMark.size()))
        return !m_isLive || !startsWith(gByteOrderMark, ahead());
    if (startsWith(ahead(), gByteOrderMark)) {
        m_window.consume(toInt(gByteOrderMark.size()));
        m_textStart = m_window.position();
    }
    return true;
}

void VolScanner::skipWhite()
{
    do {
        const char *const at = std::find_if_not(m_window.begin(), m_window.end(), VolTag::isWhite);
        m_window.consume(static_cast<int>(at - m_window.begin()));
    } while (m_window.size() == 0 && m_window.more());
}

VolScanner::Piece VolScanner::readMarkup()
{
    const bool canTell = reach(gLongestStart);
    const std::string_view text = ahead();
    if (startsTag(text, gEntry))
        return readEntry();
    if (startsTag(text, gRoot))
        return readRoot();
    if (startsTag(text, gRootEnd))
        return readRootEnd();
    if (startsTag(text, gDeclaration))
        return readDeclaration();
    for (std::size_t i = 0; i < std::size(gHidings); ++i) {
        if (startsWith(text, gHidings[i].begin))
            return i == gDocumentType && !hasBrackets() ? refuseToNextTag(VolGap::ForeignBytes)
                                                        : skipHidden(i);
    }
    const auto mayBecome = [text](std::string_view start) { return startsWith(start, text); };
    if (!canTell && std::any_of(std::begin(gStarts), std::end(gStarts), mayBecome))
        return breakOff();
    return refuseToNextTag(VolGap::ForeignBytes);
}

VolTag::Verdict VolScanner::readTag(std::string_view name)
{
    VolTag::Verdict verdict = VolTag::Incomplete;
    do {
        verdict = m_tag.read(m_window.begin(), m_window.end(), toInt(name.size()));
    } while (verdict == VolTag::Incomplete && m_window.more());
    return verdict;
}

VolScanner::Piece VolScanner::readEntry()
{
    switch (readTag(gEntry)) {
    case VolTag::Incomplete:
        return m_window.isFull() ? refuseToNextTag(VolGap::TornEntry) : breakOff();
    case VolTag::Malformed:
        return refuseToNextTag(VolGap::TornEntry);
    case VolTag::IllegalCharacter:
        return refuse(VolGap::IllegalCharacter, m_tag.size());
    case VolTag::IllegalName:
    case VolTag::Whole:
        break;
    }
    const int size = m_tag.isEmptyElement() ? m_tag.size() : sizeWithEndTag();
    if (size == 0)
        return breakOff();
    if (size < 0)
        return refuse(VolGap::TornEntry, m_tag.size());
    m_tag.moveTo(m_entry, front(size), m_window.position());
    if (m_entry.indexOf(QLatin1String("ID")) < 0)
        return refuse(VolGap::TornEntry, size);
    if (m_toldName != m_window.position() && !m_entry.isWellFormed())
        return tellOddName(size);
    if (!m_hasRoot) {
        m_hasRoot = true;
        if (m_isIntact)
            return refuse(VolGap::UnfinishedRootTag, 0);
    }
    m_window.consume(size);
    return Entry;
}

// Some programs write an empty element as two tags. 0 if the bytes end, negative for anything else.
int VolScanner::sizeWithEndTag()
{
    while (true) {
        const char *at =
            std::find_if_not(m_window.begin() + m_tag.size(), m_window.end(), VolTag::isWhite);
        const std::string_view rest(at, static_cast<std::size_t>(m_window.end() - at));
        if (!startsWith(rest, gEntryEnd.substr(0, rest.size())))
            return -1;
        if (rest.size() > gEntryEnd.size()) {
            at = std::find_if_not(at + gEntryEnd.size(), m_window.end(), VolTag::isWhite);
            if (at != m_window.end())
                return *at == '>' ? static_cast<int>(at + 1 - m_window.begin()) : -1;
        }
        if (!m_window.more())
            return m_window.isFull() ? -1 : 0;
    }
}

// A name that XML doesn't allow. If the class has it, the entry comes all the same, behind this.
VolScanner::Piece VolScanner::tellOddName(int size)
{
    if (m_entry.hasStrayName())
        return refuse(VolGap::IllegalCharacter, size);
    m_toldName = m_window.position();
    const auto [begin, end] = m_entry.oddName();
    m_junk = gapAhead(VolGap::IllegalCharacter, begin, end - begin);
    return Junk;
}

VolScanner::Piece VolScanner::readRoot()
{
    const bool isFirst = !m_hasRoot;
    const VolTag::Verdict verdict = readTag(gRoot);
    switch (verdict) {
    case VolTag::Incomplete:
        if (m_window.isFull())
            return refuseToNextTag(VolGap::UnfinishedRootTag);
        if (m_isLive || !isFirst || !m_tag.isWholeSoFar())
            return breakOff();
        return takeRoot(m_window.size()); // a log without an entry
    case VolTag::Malformed: {
        if (m_tag.isWholeSoFar())
            m_tag.moveTo(m_header, front(m_tag.size()), m_window.position());
        const Piece piece = refuseToNextTag(VolGap::UnfinishedRootTag);
        m_hasRoot |= piece == Junk;
        return piece;
    }
    case VolTag::IllegalCharacter:
    case VolTag::IllegalName:
        m_hasRoot = true;
        return refuse(VolGap::IllegalCharacter, m_tag.size());
    case VolTag::Whole:
        break;
    }
    if (isFirst)
        return takeRoot(m_tag.size());
    m_tag.moveTo(m_header, front(m_tag.size()), m_window.position());
    return refuse(VolGap::ForeignBytes, m_tag.size());
}

VolScanner::Piece VolScanner::takeRoot(int size)
{
    constexpr int end = 2; // "/>"
    m_hasRoot = true;
    m_tag.moveTo(m_header, front(size), m_window.position());
    m_isClosed = m_tag.isEmptyElement();
    if (m_isClosed)
        m_rootEnd = gapAhead(VolGap::ForeignBytes, size - end, end);
    m_window.consume(size);
    return Root;
}

VolScanner::Piece VolScanner::readRootEnd()
{
    if (!m_hasRoot)
        return refuseToNextTag(VolGap::ForeignBytes);
    while (true) {
        const char *const at =
            std::find_if_not(m_window.begin() + gRootEnd.size(), m_window.end(), VolTag::isWhite);
        if (at == m_window.end()) {
            if (m_window.more())
                continue;
            return m_window.isFull() ? refuseToNextTag(VolGap::ForeignBytes) : breakOff();
        }
        if (*at != '>')
            return refuseToNextTag(VolGap::ForeignBytes);
        const int size = static_cast<int>(at + 1 - m_window.begin());
        m_rootEnd = gapAhead(VolGap::ForeignBytes, 0, size);
        m_isClosed = true;
        m_window.consume(size);
        return Root;
    }
}

VolScanner::Piece VolScanner::readDeclaration()
{
    constexpr std::string_view end = "?>";
    if (m_window.position() != m_textStart)
        return refuseToNextTag(VolGap::ForeignBytes);
    while (true) {
        const std::size_t at = ahead().find(end);
        const std::size_t tag = ahead().find('<', 1);
        if (at < tag) {
            const int size = toInt(at + end.size());
            if (!isDeclaration(front(size)))
                return refuse(VolGap::ForeignBytes, size);
            m_window.consume(size);
            return Root;
        }
        if (tag != std::string_view::npos)
            return refuseToNextTag(VolGap::ForeignBytes);
        if (!m_window.more())
            return m_window.isFull() ? refuseToNextTag(VolGap::ForeignBytes) : breakOff();
    }
}

// Whether a document type opens brackets, ahead of its end or of another tag.
bool VolScanner::hasBrackets()
{
    std::size_t at = ahead().find_first_of("[<>", 1);
    while (at == std::string_view::npos && m_window.more())
        at = ahead().find_first_of("[<>", 1);
    return at != std::string_view::npos && ahead()[at] == '[';
}

// To its end, if that isn't too far. What has been searched is not searched again.
VolScanner::Piece VolScanner::skipHidden(std::size_t index)
{
    constexpr int enough = VolWindow::gGreatestSize / 2;
    const Hiding &hiding = gHidings[index];
    qint64 &noEndBefore = m_noEndBefore.at(index);
    while (true) {
        const std::string_view near = front(enough);
        const qint64 from =
            std::max<qint64>(toInt(hiding.begin.size()), noEndBefore - m_window.position());
        const std::size_t at = near.find(hiding.end, static_cast<std::size_t>(from));
        if (at != std::string_view::npos)
            return refuse(VolGap::ForeignBytes, toInt(at + hiding.end.size()));
        noEndBefore = m_window.position() + toInt(near.size()) - toInt(hiding.end.size() - 1);
        if (near.size() == enough)
            return refuseToNextTag(VolGap::ForeignBytes);
        if (m_window.more())
            continue;
        if (!m_isLive)
            return refuseToNextTag(VolGap::ForeignBytes);
        noEndBefore = 0; // what is to come may be something else
        return breakOff();
    }
}

// The device ends in the middle of something.
VolScanner::Piece VolScanner::breakOff()
{
    if (!m_isLive)
        return refuse(VolGap::TruncatedEnd, m_window.size());
    m_window.leave();
    return End;
}

VolScanner::Piece VolScanner::refuse(VolGap::Kind kind, int size)
{
    m_junk = gapAhead(kind, 0, size);
    m_window.consume(size);
    return Junk;
}

// Any amount, without holding it. White space at its end doesn't count. Where a file that is being
// written ends, it may go on.
VolScanner::Piece VolScanner::refuseToNextTag(VolGap::Kind kind)
{
    m_junk = gapAhead(kind, 0, 0);
    for (int from = 1;; from = 0) {
        const char *const tag = std::find(m_window.begin() + from, m_window.end(), '<');
        const auto black =
            std::find_if_not(std::make_reverse_iterator(tag),
                             std::make_reverse_iterator(m_window.begin()), VolTag::isWhite);
        if (black.base() != m_window.begin())
            m_junk.length =
                m_window.position() + (black.base() - m_window.begin()) - m_junk.position;
        const bool isFound = tag != m_window.end();
        m_window.consume(static_cast<int>(tag - m_window.begin()));
        if (isFound)
            return Junk;
        if (m_window.more())
            continue;
        if (!m_isLive)
            return Junk;
        m_window.leave(m_junk.position, {m_junk.line, m_junk.column});
        return End;
    }
}

std::string_view VolScanner::front(int size) const
{
    return ahead().substr(0, static_cast<std::size_t>(size));
}

VolGap VolScanner::gapAhead(VolGap::Kind kind, int offset, int length)
{
    const VolWindow::Place place = m_window.place(offset);
    VolGap gap;
    gap.kind = kind;
    gap.position = m_window.position() + offset;
    gap.length = length;
    gap.line = place.line;
    gap.column = place.column;
    return gap;
}

} // namespace vo
