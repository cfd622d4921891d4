#include "EntryCount.h"

#include "EntryText.h"

#include <algorithm>

namespace {

// So much is kept, whatever a file holds.
constexpr int gMostNames = 50000;
constexpr int gLongestName = 200;

QString dayOf(const vo::VolRow &row)
{
    constexpr int length = 10; // of 2026-11-21
    const QDateTime time = row.time();
    return time.isValid() ? dateText(time, ' ').left(length) : QString();
}

QString cut(const QString &name)
{
    QString front = name.left(gLongestName);
    if (front.size() < name.size() && front.at(front.size() - 1).isHighSurrogate())
        front.chop(1);
    return front;
}

} // namespace

const std::vector<EntryCount::Column> &EntryCount::columns()
{
    static const std::vector<Column> theColumns = {
        {"user", "User", "(no user)", [](const vo::VolRow &row) { return row.user(); }, false},
        {"category", "Category", "(unknown class)",
         [](const vo::VolRow &row) { return row.category(); }, false},
        {"day", "Day", "(no time)", &dayOf, true},
        {"action", "Action", "(unknown class)", [](const vo::VolRow &row) { return row.action(); },
         false},
    };
    return theColumns;
}

void EntryCount::entry(const vo::VolFile & /*file*/, const vo::VolRow &row)
{
    ++m_total;
    const QString name = cut(m_column.valueOf(row));
    if (name.isEmpty()) {
        ++m_without;
        return;
    }
    const auto counted = m_counts.find(name);
    if (counted != m_counts.end())
        ++*counted;
    else if (m_counts.size() < gMostNames)
        m_counts.insert(name, 1);
    else
        ++m_others;
}

std::vector<EntryCount::Line> EntryCount::lines() const
{
    std::vector<Line> lines;
    lines.reserve(static_cast<std::size_t>(m_counts.size()));
    for (auto counted = m_counts.begin(); counted != m_counts.end(); ++counted)
        lines.push_back({counted.key(), counted.value()});
    std::sort(lines.begin(), lines.end(), [this](const Line &a, const Line &b) {
        const bool byName = m_column.isSortedByName || a.count == b.count;
        return byName ? a.name < b.name : a.count > b.count;
    });
    if (m_without > 0)
        lines.push_back({QLatin1String(m_column.without), m_without});
    if (m_others > 0)
        lines.push_back({QStringLiteral("(others)"), m_others});
    return lines;
}
