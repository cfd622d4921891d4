#pragma once

#include "Verb.h"

namespace vo {
class VolFile;
}

/// How a file is, as users are told.
enum class LogState {
    Complete,
    Live,
    Torn,
    Damaged,
    Empty, ///< without a byte; as good as a live log
    NoLog  ///< with neither an entry nor the start tag of a root; as bad as a damaged one
};

/// @param log read to its end
LogState stateOf(const vo::VolFile &log);

/// "live" and the like, as scripts get it.
const char *stateName(LogState state);

ExitCode exitCodeOf(LogState state);
