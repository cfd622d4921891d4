#pragma once

#include <Vokit/LogEntryOf>

/// A search begins, is done, or has failed: this program's own entry in the audit log.
class SearchLogEntry
    : public vo::LogEntryOf<SearchLogEntry, 0x46696E64 /* "Find" */, vo::LogCatLocalArchive>
{
public:
    enum class State { Started, Finished, Failed };

    /// The numbers are 0 unless the search is done.
    SearchLogEntry(State state, const QString &folder, const QString &filter, qlonglong rows = 0,
                   qlonglong matches = 0);

    // For the log, which makes an entry before it reads the values.
    static vo::LogEntry *create();

    static constexpr const char *sAction = "Archive search";
    // The filter stands last: a "%1" in it finds nothing left to be filled in.
    static constexpr const char *sDescriptionText =
        "Search %1: %2 rows, %3 matches in '%4' by the filter '%5'.";

private:
    static const vo::LogEntryRegistrar sRegistrar;

    vo::TLogValue<QString> mState;
    vo::TLogValue<int> mRows;
    vo::TLogValue<int> mMatches;
    vo::TLogValue<QString> mFolder;
    vo::TLogValue<QString> mFilter;
};
