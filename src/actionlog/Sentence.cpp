#include "actionlog/Sentence_p.h"

#include <algorithm>
#include <limits>

namespace vo {

namespace {

constexpr qint64 gMostRepeated = 1 << 20; // characters

// How often the lowest placeholder stands in a text: that is where QString::arg() puts a value.
qint64 placesOfNext(const QString &text)
{
    const QLatin1Char sign('%');
    int lowest = std::numeric_limits<int>::max();
    qint64 count = 0;
    for (int i = text.indexOf(sign); i >= 0; i = text.indexOf(sign, i + 1)) {
        const QStringRef rest = text.midRef(i + 1, 3); // "L" and two digits at the most
        const int first = rest.startsWith(QLatin1Char('L')) ? 1 : 0;
        const auto digit = [&](int at) { return at < rest.size() ? rest.at(at).digitValue() : -1; };
        if (digit(first) < 0)
            continue;
        const bool isLong = digit(first + 1) >= 0;
        const int number = isLong ? 10 * digit(first) + digit(first + 1) : digit(first);
        count = number < lowest ? 1 : count + (number == lowest ? 1 : 0);
        lowest = std::min(lowest, number);
    }
    return count;
}

} // namespace

void Sentence::fillIn(const QString &value)
{
    m_filledOnce += value.size();
    const bool mayBeLong = m_text.size() * qint64(value.size()) > gMostRepeated;
    m_isFull = mayBeLong &&
               m_text.size() + placesOfNext(m_text) * value.size() > m_filledOnce + gMostRepeated;
    if (!m_isFull)
        m_text = m_text.arg(value, 0, QLatin1Char(' '));
}

} // namespace vo
