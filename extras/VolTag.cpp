#include "VolTag_p.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <string_view>

namespace vo {

namespace {

constexpr uint gNoCharacter = ~0u;
constexpr std::size_t gFew = 16;
constexpr std::size_t gMostAttributes = 4096;
constexpr std::size_t gLongestName = 4096; // that Qt's reader takes

void skipWhite(const char *&at, const char *end)
{
    while (at != end && VolTag::isWhite(*at))
        ++at;
}

bool isAllowed(uint c)
{
    if (c < 0x20)
        return c == '\t' || c == '\n' || c == '\r';
    return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

// One character beyond ASCII (RFC 3629), or gNoCharacter; goes on behind what was looked at.
uint takeUtf8(const char *&at, const char *end)
{
    const auto lead = static_cast<uchar>(*at++);
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4)
        return gNoCharacter;
    uint c = lead & (0x3F >> following);
    for (int i = 0; i < following; ++i) {
        if (at == end || (*at & 0xC0) != 0x80)
            return gNoCharacter;
        c = c << 6 | (static_cast<uchar>(*at++) & 0x3F);
    }
    constexpr uint smallest[] = {0, 0x80, 0x800, 0x10000};
    return c >= smallest[following] ? c : gNoCharacter;
}

// What stands between "&" and ";": a character, or gNoCharacter. Entities of the file's own are no
// characters.
uint referenced(std::string_view name)
{
    struct Entity
    {
        std::string_view name;
        uint character;
    };
    static constexpr Entity entities[] = {
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    for (const Entity &entity : entities) {
        if (entity.name == name)
            return entity.character;
    }
    if (name.size() < 2 || name[0] != '#')
        return gNoCharacter;
    const bool isHex = name[1] == 'x';
    name.remove_prefix(isHex ? 2 : 1);
    if (name.empty())
        return gNoCharacter;
    uint c = 0;
    for (const char digit : name) {
        uint number = 0;
        if (digit >= '0' && digit <= '9')
            number = uint(digit - '0');
        else if (isHex && (digit | 0x20) >= 'a' && (digit | 0x20) <= 'f')
            number = uint((digit | 0x20) - 'a' + 10);
        else
            return gNoCharacter;
        c = std::min(c * (isHex ? 16 : 10) + number, 0x110000u); // beyond all characters
    }
    return c;
}

// What a byte of a value has to be looked at for.
enum class Kind : uchar { Plain, Quote, Reference, Other };

constexpr Kind kindOf(uint byte)
{
    if (byte == '"' || byte == '\'')
        return Kind::Quote;
    if (byte == '&')
        return Kind::Reference;
    return byte < 0x20 || byte >= 0x80 || byte == '<' ? Kind::Other : Kind::Plain;
}

struct Kinds
{
    constexpr Kinds()
    {
        for (uint byte = 0; byte < 0x100; ++byte)
            of[byte] = kindOf(byte);
    }
    Kind of[0x100] = {};
};

constexpr Kinds gKinds;

} // namespace

VolTag::Verdict VolTag::read(const char *begin, const char *end, int nameSize)
{
    m_begin = begin;
    m_attributes.clear();
    m_isEmptyElement = false;
    m_isWholeSoFar = false;
    m_hasIllegalName = false;
    m_hasIllegalCharacter = false;
    const char *at = begin + nameSize;
    while (true) {
        const char *const before = at;
        skipWhite(at, end);
        if (at == end || *at == '<') {
            m_size = static_cast<int>(before - begin);
            m_isWholeSoFar = !m_hasIllegalName && !m_hasIllegalCharacter && !hasNameTwice();
            return at == end ? Incomplete : Malformed;
        }
        if (*at == '/' || *at == '>') {
            m_isEmptyElement = *at == '/';
            if (m_isEmptyElement && ++at == end)
                return Incomplete;
            if (*at++ != '>' || hasNameTwice())
                return Malformed;
            m_size = static_cast<int>(at - begin);
            if (m_hasIllegalCharacter)
                return IllegalCharacter;
            return m_hasIllegalName ? IllegalName : Whole;
        }
        if (at == before)
            return Malformed; // white space stands in front of each attribute
        if (m_attributes.size() == gMostAttributes)
            return Malformed;
        const Verdict verdict = readAttribute(at, end);
        if (verdict != Whole)
            return verdict;
    }
}

VolTag::Verdict VolTag::readAttribute(const char *&at, const char *end)
{
    const char *const name = at;
    constexpr std::string_view behindNames = " \t\n\r=\"'<>/";
    at = std::find_first_of(at, end, behindNames.begin(), behindNames.end());
    const char *const nameEnd = at;
    skipWhite(at, end);
    if (at == end)
        return Incomplete;
    if (*at != '=' || name == nameEnd)
        return Malformed;
    ++at;
    skipWhite(at, end);
    if (at == end)
        return Incomplete;
    const char quote = *at;
    if (quote != '"' && quote != '\'')
        return Malformed;
    const char *const value = ++at;
    bool isPlain = true;
    const Verdict verdict = readValue(at, end, quote, isPlain);
    if (verdict != Whole)
        return verdict;
    const auto place = [this](const char *p) { return static_cast<int>(p - m_begin); };
    m_attributes.push_back({place(name), place(nameEnd), place(value), place(at), isPlain});
    ++at; // the quote
    m_hasIllegalName |= !isName(name, nameEnd);
    return Whole;
}

VolTag::Verdict VolTag::readValue(const char *&at, const char *end, char quote, bool &isPlain)
{
    while (true) {
        while (at != end && gKinds.of[static_cast<uchar>(*at)] == Kind::Plain)
            ++at;
        if (at == end)
            return Incomplete;
        if (*at == quote)
            return Whole;
        if (*at == '<')
            return Malformed;
        const Kind kind = gKinds.of[static_cast<uchar>(*at)];
        if (kind == Kind::Quote) {
            ++at;
            continue;
        }
        isPlain = false;
        if (kind == Kind::Reference) {
            const char *const name = ++at;
            while (at != end && *at != ';' && *at != '<' && *at != quote)
                ++at;
            if (at == end)
                return Incomplete;
            const uint c = referenced({name, static_cast<std::size_t>(at - name)});
            if (*at != ';' || c == gNoCharacter)
                return Malformed;
            m_hasIllegalCharacter |= !isAllowed(c);
            ++at;
        } else if (static_cast<uchar>(*at) < 0x80) {
            m_hasIllegalCharacter |= !isAllowed(static_cast<uchar>(*at++));
        } else {
            m_hasIllegalCharacter |= !isAllowed(takeUtf8(at, end));
        }
    }
}

void VolTag::moveTo(VolElement &element, std::string_view bytes, qint64 position)
{
    element.m_bytes.resize(0); // keeps the room
    element.m_bytes.append(bytes.data(), static_cast<int>(bytes.size()));
    element.m_attributes.swap(m_attributes);
    element.m_position = position;
}

bool VolTag::isName(const char *begin, const char *end)
{
    const std::string_view name(begin, static_cast<std::size_t>(end - begin));
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    };
    const auto isPart = [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    };
    if (name == "xmlns")
        return false; // a declaration, and no attribute
    if (!name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isPart))
        return name.size() <= gLongestName;
    const auto isBeyondAscii = [](char c) { return (c & 0x80) != 0; };
    if (std::none_of(begin, end, isBeyondAscii) || name.find(':') != name.npos)
        return false;
    // Rare, and a matter of long tables, which Qt has.
    QXmlStreamReader reader('<' + QByteArray(begin, static_cast<int>(name.size())) + "/>");
    return reader.readNextStartElement() &&
           reader.name().toUtf8() == QByteArray(begin, static_cast<int>(name.size()));
}

QString VolTag::text(const char *begin, const char *end)
{
    QString text;
    text.reserve(static_cast<int>(end - begin));
    for (const char *at = begin; at != end;) {
        uint c = static_cast<uchar>(*at);
        if (c == '&') {
            const char *const name = at + 1;
            at = std::find(name, end, ';');
            c = referenced({name, static_cast<std::size_t>(at - name)});
            at += at != end;
        } else if (isWhite(*at)) {
            at += *at == '\r' && at + 1 != end && at[1] == '\n' ? 2 : 1; // one line end
            c = ' ';
        } else if (c < 0x80) {
            ++at;
        } else {
            c = takeUtf8(at, end);
        }
        if (QChar::requiresSurrogates(c))
            text.append(QChar(QChar::highSurrogate(c))).append(QChar(QChar::lowSurrogate(c)));
        else
            text.append(QChar(c));
    }
    return text;
}

bool VolTag::hasNameTwice() const
{
    const auto nameOf = [this](const VolElement::Attribute &attribute) {
        return std::string_view(m_begin + attribute.name,
                                static_cast<std::size_t>(attribute.nameEnd - attribute.name));
    };
    if (m_attributes.size() <= gFew) {
        for (auto a = m_attributes.begin(); a != m_attributes.end(); ++a) {
            const auto same = [&](const auto &b) { return nameOf(*a) == nameOf(b); };
            if (std::any_of(m_attributes.begin(), a, same))
                return true;
        }
        return false;
    }
    std::vector<std::string_view> names(m_attributes.size());
    std::transform(m_attributes.begin(), m_attributes.end(), names.begin(), nameOf);
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

} // namespace vo
