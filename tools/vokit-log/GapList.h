#pragma once

#include <VokitExtras/VolGap>

#include <QTemporaryFile>

#include <functional>
#include <limits>

/// Gaps that have to wait until what stands in front of them is known. There may be more of them
/// than the memory holds, so they wait in a temporary file.
class GapList
{
public:
    struct Item
    {
        vo::VolGap gap;
        bool isEntryKept; ///< it is a name in an entry that has been read
    };

    /// @param limit how many are kept; all are counted
    explicit GapList(qint64 limit = std::numeric_limits<qint64>::max());

    /// Of those that were appended.
    qint64 count() const { return m_count; }

    /// @throws Failure if there is no room
    void append(const Item &item);

    /// The first ones, @p number of them at the most.
    /// @throws Failure if they can't be read, and what @p take throws
    void forEach(qint64 number, const std::function<void(const Item &)> &take);

private:
    [[noreturn]] void refuse();

    qint64 m_limit;
    qint64 m_count = 0;
    QTemporaryFile m_file;
};
