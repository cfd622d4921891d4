#include <Vokit/TimeConversions>

#include "time/MachineArithmetic_p.h"

namespace vo {

namespace {

constexpr long long NANOSECONDS_PER_SECOND = 1000000000;
constexpr long long MICROSECONDS_PER_SECOND = 1000000;
constexpr long long MILLISECONDS_PER_SECOND = 1000;

// Whole seconds, cut to the 32 bits of setTime_t: what lies below a second is dropped by rule.
template <typename Integer>
QDateTime utcFromSeconds(Integer seconds)
{
    QDateTime result;
    result.setTimeSpec(Qt::UTC);
    result.setTime_t(static_cast<uint>(seconds));
    return result;
}

} // namespace

QDateTime fromSeconds(long long seconds)
{
    return QDateTime::fromTime_t(static_cast<uint>(seconds));
}

QDateTime fromSeconds(double seconds)
{
    return fromNanoSeconds(truncated(seconds * 1000000000.0));
}

QDateTime fromMilliSeconds(long long milliSeconds)
{
    return utcFromSeconds(milliSeconds / MILLISECONDS_PER_SECOND);
}

QDateTime fromMicroSeconds(long long microSeconds)
{
    return utcFromSeconds(microSeconds / MICROSECONDS_PER_SECOND);
}

QDateTime fromNanoSeconds(long long nanoSeconds)
{
    return utcFromSeconds(nanoSeconds / NANOSECONDS_PER_SECOND);
}

QDateTime fromFrameTime(unsigned long long frameTime)
{
    return utcFromSeconds(frameTime / MICROSECONDS_PER_SECOND);
}

long long toSeconds(const QDateTime &dateTime)
{
    // By way of UTC: a local time that a clock change skips is not valid itself, its instant is.
    return dateTime.toTimeSpec(Qt::UTC).toTime_t();
}

long long toMilliSeconds(const QDateTime &dateTime)
{
    return dateTime.time().msec() + toSeconds(dateTime) * MILLISECONDS_PER_SECOND;
}

long long toMicroSeconds(const QDateTime &dateTime)
{
    return toMilliSeconds(dateTime) * 1000;
}

long long toNanoSeconds(const QDateTime &dateTime)
{
    return toMilliSeconds(dateTime) * 1000000;
}

double toSecondsFrac(const QDateTime &dateTime)
{
    return static_cast<double>(toNanoSeconds(dateTime)) / 1000000000.0;
}

double toSecondsFrac(const unsigned long long &frameTime)
{
    return static_cast<double>(frameTime) / 1000000.0;
}

unsigned long long toFrameTime(const QDateTime &dateTime)
{
    return static_cast<unsigned long long>(toMicroSeconds(dateTime));
}

long long currentSeconds()
{
    return toSeconds(QDateTime::currentDateTime());
}

double currentSecondsFrac()
{
    return toSecondsFrac(QDateTime::currentDateTime());
}

long long currentMilliSeconds()
{
    return toMilliSeconds(QDateTime::currentDateTime());
}

long long currentMicroSeconds()
{
    return toMicroSeconds(QDateTime::currentDateTime());
}

long long currentNanoSeconds()
{
    return toNanoSeconds(QDateTime::currentDateTime());
}

unsigned long long currentFrameTime()
{
    return toFrameTime(QDateTime::currentDateTime());
}

} // namespace vo
