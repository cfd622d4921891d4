#pragma once

#include <Vokit/vokit_export.h>

#include <QDateTime>

#include <type_traits>

/**
 * Conversions between QDateTime and the units in which the system counts time.
 *
 * Every count starts at 1970-01-01 00:00:00 UTC. "Frame time" is the time stamp of a video frame:
 * unsigned microseconds. The seconds behind all of them are the unsigned 32-bit count of
 * QDateTime::toTime_t(), which reaches to 2106-02-07 06:28:15 UTC; a date outside it, and an
 * invalid one, counts as that function has it (4294967295 for most).
 *
 * A QDateTime made from a count has whole seconds only: msec() is 0 whatever the count says. The
 * way back keeps milliseconds, so a count that went through a QDateTime is cut to the second.
 *
 * Nothing here fails, throws or locks; any thread may call it.
 *
 * @code
 * vo::fromFrameTime(1500000);   // 1970-01-01 00:00:01 UTC
 * vo::toFrameTime(frameTaken);  // microseconds; the last three digits are 0
 * @endcode
 */
namespace vo {

/// Local time. Only the low 32 bits count.
VOKIT_EXPORT QDateTime fromSeconds(long long seconds);
/// The same for every other integer, which would fit the overload for doubles as well.
template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
QDateTime fromSeconds(Integer seconds)
{
    return fromSeconds(static_cast<long long>(seconds));
}

/// UTC, as all functions below.
VOKIT_EXPORT QDateTime fromSeconds(double seconds);
VOKIT_EXPORT QDateTime fromMilliSeconds(long long milliSeconds);
VOKIT_EXPORT QDateTime fromMicroSeconds(long long microSeconds);
VOKIT_EXPORT QDateTime fromNanoSeconds(long long nanoSeconds);
VOKIT_EXPORT QDateTime fromFrameTime(unsigned long long frameTime);

VOKIT_EXPORT long long toSeconds(const QDateTime &dateTime);
VOKIT_EXPORT double toSecondsFrac(const QDateTime &dateTime);
VOKIT_EXPORT double toSecondsFrac(const unsigned long long &frameTime);
VOKIT_EXPORT long long toMilliSeconds(const QDateTime &dateTime);
VOKIT_EXPORT long long toMicroSeconds(const QDateTime &dateTime);
VOKIT_EXPORT long long toNanoSeconds(const QDateTime &dateTime);
VOKIT_EXPORT unsigned long long toFrameTime(const QDateTime &dateTime);

/// The same of QDateTime::currentDateTime().
VOKIT_EXPORT long long currentSeconds();
VOKIT_EXPORT double currentSecondsFrac();
VOKIT_EXPORT long long currentMilliSeconds();
VOKIT_EXPORT long long currentMicroSeconds();
VOKIT_EXPORT long long currentNanoSeconds();
VOKIT_EXPORT unsigned long long currentFrameTime();

} // namespace vo
