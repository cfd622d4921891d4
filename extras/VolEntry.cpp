#include <VokitExtras/VolEntry>

#include "VolTag_p.h"

#include <Vokit/LogEntry>
#include <Vokit/LogEntryFactory>
#include <Vokit/XMLLogReader>

#include <algorithm>
#include <cctype>

namespace vo {

namespace {
constexpr int gLength = 4; // of an identifier
} // namespace

FourChars VolEntry::id() const
{
    const int index = indexOf(QLatin1String("ID"));
    return FourChars(index < 0 ? QString() : value(index));
}

bool VolEntry::isKnown() const
{
    return logEntryFactory()->contains(id());
}

std::unique_ptr<LogEntry> VolEntry::toLogEntry() const
{
    if (!isKnown())
        return nullptr;
    QXmlStreamAttributes attributes;
    attributes.reserve(attributeCount());
    for (int i = 0; i < attributeCount(); ++i)
        attributes.append(name(i), value(i));
    return std::unique_ptr<LogEntry>(XMLLogReader::entryOf(attributes));
}

bool VolEntry::isWellFormed() const
{
    return std::all_of(m_attributes.begin(), m_attributes.end(),
                       [this](const Attribute &attribute) { return hasLegalName(attribute); });
}

QByteArray VolEntry::wellFormedBytes() const
{
    if (isWellFormed())
        return bytes();
    const std::unique_ptr<LogEntry> entry(logEntryFactory()->create(id()));
    QByteArray element("<Entry");
    QByteArray behind;
    for (const Attribute &attribute : m_attributes) {
        const QByteArray name = m_bytes.mid(attribute.name, attribute.nameEnd - attribute.name);
        // With its quotes, which the value may need.
        const QByteArray value =
            '=' + m_bytes.mid(attribute.value - 1, attribute.valueEnd - attribute.value + 2);
        if (hasLegalName(attribute))
            element += ' ' + name + value;
        else
            behind += ' ' + legalName(name, behind, entry.get()) + value;
    }
    return element + behind + "/>";
}

bool VolEntry::hasLegalName(const Attribute &attribute) const
{
    return VolTag::isName(m_bytes.constData() + attribute.name,
                          m_bytes.constData() + attribute.nameEnd);
}

// What is left of a name: one that the class doesn't know.
QByteArray VolEntry::legalName(const QByteArray &name, const QByteArray &others,
                               LogEntry *entry) const
{
    QByteArray legal;
    for (const char &c : name) {
        if (VolTag::isName(&c, &c + 1) || (!legal.isEmpty() && std::isdigit(uchar(c))))
            legal += c;
    }
    const auto isTaken = [&] {
        return indexOf(QLatin1String(legal)) >= 0 || others.contains(' ' + legal + '=');
    };
    const auto isOfClass = [&] { return entry && entry->logValue(FourChars(QString(legal))); };
    for (int i = 0; legal.isEmpty() || isTaken() || (isOfClass() && i < gLength); ++i)
        legal.prepend('_');
    return legal;
}

// The place of the first name that XML doesn't allow.
std::pair<int, int> VolEntry::oddName() const
{
    const auto odd = std::find_if_not(m_attributes.begin(), m_attributes.end(),
                                      [this](const auto &a) { return hasLegalName(a); });
    return {odd->name, odd->nameEnd};
}

// Whether there is a name that neither XML allows nor the class has.
bool VolEntry::hasStrayName() const
{
    const std::unique_ptr<LogEntry> entry(isKnown() ? logEntryFactory()->create(id()) : nullptr);
    for (int i = 0; i < attributeCount(); ++i) {
        const bool isOfClass =
            entry && name(i).size() <= gLength && entry->logValue(FourChars(name(i)));
        if (!isOfClass && !hasLegalName(m_attributes[static_cast<std::size_t>(i)]))
            return true;
    }
    return false;
}

} // namespace vo
