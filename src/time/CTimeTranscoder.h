#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

/// The units of the day, for frame times and for date arithmetic.
class VOKIT_EXPORT CTimeTranscoder
{
public:
    static constexpr long long MILLISECONDS_PER_DAY = 86400000;
    static constexpr long long MICROSECONDS_PER_DAY = 86400000000;
};

} // namespace vo
