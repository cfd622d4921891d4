#include "LogState.h"

#include <VokitExtras/VolFile>

using vo::VolFile;

LogState stateOf(const VolFile &log)
{
    if (log.position() == 0)
        return LogState::Empty;
    const VolFile::Condition condition = log.condition();
    // A log may be torn ahead of its first entry, and even in the root's start tag.
    if (condition == VolFile::Torn)
        return LogState::Torn;
    if (log.entryCount() == 0 && log.header().isNull())
        return LogState::NoLog;
    if (condition == VolFile::Damaged)
        return LogState::Damaged;
    return condition == VolFile::Complete ? LogState::Complete : LogState::Live;
}

const char *stateName(LogState state)
{
    switch (state) {
    case LogState::Complete:
        return "complete";
    case LogState::Live:
        return "live";
    case LogState::Torn:
        return "torn";
    case LogState::Damaged:
        return "damaged";
    case LogState::Empty:
        return "empty";
    case LogState::NoLog:
        return "no log";
    }
    return "";
}

ExitCode exitCodeOf(LogState state)
{
    switch (state) {
    case LogState::Complete:
    case LogState::Live:
    case LogState::Empty:
        return Intact;
    case LogState::Torn:
        return Torn;
    case LogState::Damaged:
    case LogState::NoLog:
        break;
    }
    return Damaged;
}
