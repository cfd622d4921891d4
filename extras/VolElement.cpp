#include <VokitExtras/VolElement>

#include "VolTag_p.h"

namespace vo {

namespace {
constexpr int gLength = 4; // of an identifier
} // namespace

VolElement::VolElement() = default;
VolElement::~VolElement() = default;
VolElement::VolElement(const VolElement &) = default;
VolElement::VolElement(VolElement &&) noexcept = default;
VolElement &VolElement::operator=(const VolElement &) = default;
VolElement &VolElement::operator=(VolElement &&) noexcept = default;

QString VolElement::name(int index) const
{
    const Attribute &attribute = m_attributes.at(static_cast<std::size_t>(index));
    return QString::fromUtf8(m_bytes.constData() + attribute.name,
                             attribute.nameEnd - attribute.name);
}

FourChars VolElement::attributeId(int index) const
{
    const Attribute &attribute = m_attributes.at(static_cast<std::size_t>(index));
    quint32 id = 0;
    for (int i = 0; i < gLength; ++i) {
        const int place = attribute.name + i;
        const char c = place < attribute.nameEnd ? m_bytes.at(place) : ' ';
        if (c & 0x80)
            return FourChars(name(index)); // not a byte a character
        id = id << 8 | static_cast<uchar>(c);
    }
    return id;
}

QString VolElement::value(int index) const
{
    const Attribute &attribute = m_attributes.at(static_cast<std::size_t>(index));
    const char *const begin = m_bytes.constData() + attribute.value;
    const char *const end = m_bytes.constData() + attribute.valueEnd;
    return attribute.isPlain ? QString::fromLatin1(begin, static_cast<int>(end - begin))
                             : VolTag::text(begin, end);
}

QString VolElement::valueOf(FourChars id) const
{
    for (int i = 0; i < attributeCount(); ++i) {
        if (attributeId(i) == id)
            return value(i);
    }
    return {};
}

int VolElement::indexOf(QLatin1String name) const
{
    for (int i = 0; i < attributeCount(); ++i) {
        const Attribute &attribute = m_attributes[static_cast<std::size_t>(i)];
        if (QLatin1String(m_bytes.constData() + attribute.name,
                          attribute.nameEnd - attribute.name) == name)
            return i;
    }
    return -1;
}

} // namespace vo
