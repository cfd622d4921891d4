#include "Ordering.h"

#include "Database.h"
#include "Disagreement.h"

#include <Vokit/TypedProperties>

#include <algorithm>
#include <numeric>
#include <utility>

using vogen::PropertySet;
using vogen::StringProperty;

namespace {

// Two runs that lie side by side become one; of equal items the left one comes first.
template <class Less>
void mergeRuns(const size_t *left, const size_t *middle, const size_t *end, size_t *merged,
               const Less &isLess)
{
    const size_t *right = middle;
    while (left != middle || right != end) {
        const bool takeRight = left == middle || (right != end && isLess(*right, *left));
        *merged++ = takeRight ? *right++ : *left++;
    }
}

// By merging, which goes wrong with no comparison at all. TypeTool's of doubles is not one that
// std::sort may be given: 0 is the same as 0.6, and 0.6 as 1.2, but 0 is less than 1.2.
template <class Less>
void mergeSort(std::vector<size_t> &items, const Less &isLess)
{
    const size_t size = items.size();
    std::vector<size_t> merged(size);
    for (size_t width = 1; width < size; width *= 2) {
        for (size_t begin = 0; begin < size; begin += 2 * width) {
            const size_t middle = std::min(begin + width, size);
            const size_t end = std::min(middle + width, size);
            mergeRuns(items.data() + begin, items.data() + middle, items.data() + end,
                      merged.data() + begin, isLess);
        }
        items.swap(merged);
    }
}

QString pathOf(const PropertySet &recording)
{
    return StringProperty::getValue(recording[QStringLiteral("path")], QString());
}

} // namespace

Ordering::Ordering(const SortKey &key)
    : m_key(key)
{}

void Ordering::add(qlonglong id, const PropertySet &recording)
{
    m_ids.push_back(id);
    m_values.push_back(m_key.valueOf(recording));
}

std::vector<qlonglong> Ordering::takeSorted()
{
    std::vector<size_t> order(m_ids.size());
    std::iota(order.begin(), order.end(), size_t(0));
    mergeSort(order,
              [this](size_t a, size_t b) { return SortKey::isLess(m_values[a], m_values[b]); });
    m_values = {};
    std::vector<qlonglong> sorted;
    sorted.reserve(order.size());
    for (const size_t index : order)
        sorted.push_back(m_ids[index]);
    m_ids = {};
    return sorted;
}

OrderComparer::OrderComparer(const SortKey &key, std::vector<qlonglong> inMemory)
    : m_key(key)
    , m_inMemory(std::move(inMemory))
{}

void OrderComparer::add(qlonglong inSqlite)
{
    const size_t place = m_place++;
    if (m_inMemory.at(place) == inSqlite)
        return;
    if (m_differences++ == 0) {
        m_firstPlace = place;
        m_firstInSqlite = inSqlite;
    }
}

OrderComparison OrderComparer::result(Database &database) const
{
    OrderComparison comparison;
    comparison.rows = static_cast<qlonglong>(m_inMemory.size());
    comparison.differences = m_differences;
    if (m_differences == 0)
        return comparison;
    const PropertySet inMemory = database.recording(m_inMemory[m_firstPlace]);
    const PropertySet inSqlite = database.recording(m_firstInSqlite);
    comparison.place = static_cast<qlonglong>(m_firstPlace) + 1;
    comparison.inMemory = pathOf(inMemory);
    comparison.inSqlite = pathOf(inSqlite);
    comparison.reason = m_key.explains(inMemory, inSqlite) ? m_key.rule() : unexplained();
    return comparison;
}
