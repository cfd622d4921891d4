#pragma once

#include <QString>

#include <vector>

namespace vogen {
class PropertySet;
}

/// All matches, in the order in which they are listed, for an export.
struct MatchList
{
    void add(qlonglong id, const vogen::PropertySet &recording);

    QString folder; ///< that was searched
    QString file;   ///< that takes them
    std::vector<qlonglong> ids;
    quint64 oldest = 0; ///< modification, in microseconds since 1970; 0 if there is no match
    quint64 newest = 0;
};
