#include "TestClock.h"

#include <sys/time.h>

namespace {

qint64 gNow = 0; // ms since 1970

qint64 noon()
{
    static const qint64 time =
        QDateTime(QDate(2026, 3, 5), QTime(12, 0), Qt::LocalTime).toMSecsSinceEpoch();
    return time;
}

} // namespace

// Qt asks this function for the time, and the dynamic linker finds it here first.
extern "C" int gettimeofday(timeval *__restrict time, void *__restrict /*zone*/) noexcept
{
    const qint64 now = gNow ? gNow : noon();
    time->tv_sec = static_cast<time_t>(now / 1000);
    time->tv_usec = static_cast<suseconds_t>(now % 1000 * 1000);
    return 0;
}

namespace test {

void TestClock::set(const QDateTime &now)
{
    gNow = now.toMSecsSinceEpoch();
}

void TestClock::advance(int seconds)
{
    gNow = (gNow ? gNow : noon()) + seconds * 1000LL;
}

} // namespace test
