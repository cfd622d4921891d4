#include "GapList.h"

#include "Failure.h"

#include <algorithm>
#include <type_traits>

static_assert(std::is_trivially_copyable_v<GapList::Item>);

namespace {
constexpr qint64 gItemSize = sizeof(GapList::Item);
} // namespace

GapList::GapList(qint64 limit)
    : m_limit(limit)
{}

void GapList::append(const Item &item)
{
    if (m_count++ >= m_limit)
        return;
    if (!m_file.isOpen() && !m_file.open())
        refuse();
    if (m_file.write(reinterpret_cast<const char *>(&item), gItemSize) != gItemSize)
        refuse();
}

void GapList::forEach(qint64 number, const std::function<void(const Item &)> &take)
{
    number = std::min({number, m_count, m_limit});
    if (number == 0)
        return;
    if (!m_file.flush() || !m_file.seek(0))
        refuse();
    for (qint64 i = 0; i < number; ++i) {
        Item item{};
        if (m_file.read(reinterpret_cast<char *>(&item), gItemSize) != gItemSize)
            refuse();
        take(item);
    }
}

void GapList::refuse()
{
    m_file.flush(); // where there was room for a part, it is the rest that tells why
    throw Failure(QStringLiteral("cannot keep the list of gaps: %1").arg(m_file.errorString()));
}
