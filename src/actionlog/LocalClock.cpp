#include "actionlog/LocalClock_p.h"

#include <array>
#include <cstdlib>
#include <ctime>

namespace vo {

ZoneSetting::ZoneSetting()
    : m_value(std::getenv("TZ"))
{}

bool ZoneSetting::isCurrent() const
{
    const char *const value = std::getenv("TZ");
    return value ? isSet() && m_value == value : !isSet();
}

namespace {

constexpr qint64 gMillisecondsPerSecond = 1000;
constexpr std::time_t gSecondsPerDay = 86400;
constexpr std::time_t gLongestChange = 7200;  // of an offset, in seconds
constexpr std::time_t gYear2038 = 2145916800; // from here on Qt has summer times of its own

// Lets the C library look at the zone again, as seldom as can be.
void refreshZone(std::time_t second)
{
    struct Seen
    {
        ZoneSetting zone;
        std::time_t second = -1;
    };
    thread_local Seen seen;
    const bool isKnown = seen.second >= 0 && seen.zone.isCurrent();
    if (isKnown && (seen.zone.isSet() || seen.second == second))
        return;
    seen = {ZoneSetting(), second};
    tzset();
}

std::tm localTime(std::time_t time)
{
    std::tm parts{};
    localtime_r(&time, &parts);
    return parts;
}

} // namespace

QDateTime LocalClock::now()
{
    const qint64 milliseconds = QDateTime::currentMSecsSinceEpoch();
    const auto second = static_cast<std::time_t>(milliseconds / gMillisecondsPerSecond);
    refreshZone(second);
    const std::tm local = localTime(second);
    // A zone that counts leap seconds has a second 60, and QTime has none.
    // Near a change of the offset a wall clock shows some times twice, and only Qt tells them
    // apart.
    if (milliseconds < 0 || second >= gYear2038 - gLongestChange || local.tm_sec > 59 ||
        localTime(second - gLongestChange).tm_gmtoff != local.tm_gmtoff ||
        localTime(second + gLongestChange).tm_gmtoff != local.tm_gmtoff)
        return QDateTime::currentDateTime();
    return {QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
            QTime(local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<int>(milliseconds % gMillisecondsPerSecond))};
}

bool LocalClock::isEven(const QDate &date)
{
    struct Day
    {
        qint64 number = -1;
        bool isEven = false;
    };
    struct Known
    {
        ZoneSetting zone;
        std::array<Day, 16> days; // the entries of a log share few
    };
    thread_local Known known;
    if (!known.zone.isCurrent())
        known = Known();
    const qint64 number = date.toJulianDay();
    Day &day = known.days.at(static_cast<std::size_t>(number) % known.days.size());
    if (day.number != number) {
        static const qint64 sEpoch = QDate(1970, 1, 1).toJulianDay();
        const std::time_t midnight = (number - sEpoch) * gSecondsPerDay; // in UTC
        const std::time_t start = midnight - localTime(midnight).tm_gmtoff;
        const std::time_t end = start + gSecondsPerDay;
        day = {number, localTime(start - 2 * gLongestChange).tm_gmtoff ==
                               localTime(end + 2 * gLongestChange).tm_gmtoff &&
                           end < gYear2038};
    }
    return day.isEven;
}

QDateTime LocalClock::firstOf(const QDateTime &local)
{
    if (local.isValid() && !isEven(local.date())) {
        for (const std::time_t change : {gLongestChange, gLongestChange / 2, gLongestChange / 4}) {
            QDateTime earlier = local.addSecs(-change);
            if (earlier.date() == local.date() && earlier.time() == local.time())
                return earlier;
        }
    }
    return local;
}

} // namespace vo
