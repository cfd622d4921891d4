#include "MatchList.h"

#include "Recording.h"

#include <algorithm>

void MatchList::add(qlonglong id, const vogen::PropertySet &recording)
{
    const QVariant modified = recording[QStringLiteral("modified")].variantValue();
    const quint64 time = toSqlValue(modified).toULongLong();
    oldest = ids.empty() ? time : std::min(oldest, time);
    newest = std::max(newest, time);
    ids.push_back(id);
}
