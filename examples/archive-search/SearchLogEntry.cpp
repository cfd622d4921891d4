#include "SearchLogEntry.h"

#include <algorithm>
#include <limits>

namespace {

QString stateText(SearchLogEntry::State state)
{
    switch (state) {
    case SearchLogEntry::State::Started:
        return QStringLiteral("started");
    case SearchLogEntry::State::Finished:
        return QStringLiteral("finished");
    case SearchLogEntry::State::Failed:
        break;
    }
    return QStringLiteral("failed");
}

// A log holds whole numbers of 32 bits.
int toInt(qlonglong count)
{
    return static_cast<int>(std::min<qlonglong>(count, std::numeric_limits<int>::max()));
}

} // namespace

const vo::LogEntryRegistrar SearchLogEntry::sRegistrar = registrar();

SearchLogEntry::SearchLogEntry(State state, const QString &folder, const QString &filter,
                               qlonglong rows, qlonglong matches)
    : mState(0x53746174 /* "Stat" */, QStringLiteral("state"), stateText(state))
    , mRows(0x526F7773 /* "Rows" */, QStringLiteral("rows"), toInt(rows))
    , mMatches(0x48697473 /* "Hits" */, QStringLiteral("matches"), toInt(matches))
    , mFolder(0x466F6C64 /* "Fold" */, QStringLiteral("folder"), folder)
    , mFilter(0x46696C74 /* "Filt" */, QStringLiteral("filter"), filter)
{
    append(&mState);
    append(&mRows);
    append(&mMatches);
    append(&mFolder);
    append(&mFilter);
}

vo::LogEntry *SearchLogEntry::create()
{
    return new SearchLogEntry(State::Started, QString(), QString());
}
