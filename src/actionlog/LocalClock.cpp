#include "actionlog/LocalClock_p.h"

#include <QByteArray>

#include <cstdlib>
#include <ctime>

namespace vo {

namespace {

constexpr qint64 gMillisecondsPerSecond = 1000;
constexpr std::time_t gLongestChange = 7200;  // of an offset, in seconds
constexpr std::time_t gYear2038 = 2145916800; // from here on Qt has summer times of its own

// Lets the C library look at the zone again, as seldom as can be.
void refreshZone(std::time_t second)
{
    struct Seen
    {
        QByteArray zone;
        std::time_t second = -1;
    };
    thread_local Seen seen;
    const char *const zone = std::getenv("TZ");
    const bool isSame = zone ? seen.zone == zone : seen.zone.isNull();
    if (isSame && (zone || seen.second == second))
        return;
    seen = {QByteArray(zone), second};
    tzset();
}

} // namespace

QDateTime LocalClock::now()
{
    const qint64 milliseconds = QDateTime::currentMSecsSinceEpoch();
    const auto second = static_cast<std::time_t>(milliseconds / gMillisecondsPerSecond);
    refreshZone(second);
    const auto at = [](std::time_t time) {
        std::tm parts{};
        localtime_r(&time, &parts);
        return parts;
    };
    const std::tm local = at(second);
    // A zone that counts leap seconds has a second 60, and QTime has none.
    // Near a change of the offset a wall clock shows some times twice, and only Qt tells them
    // apart.
    if (milliseconds < 0 || second >= gYear2038 - gLongestChange || local.tm_sec > 59 ||
        at(second - gLongestChange).tm_gmtoff != local.tm_gmtoff ||
        at(second + gLongestChange).tm_gmtoff != local.tm_gmtoff)
        return QDateTime::currentDateTime();
    return {QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
            QTime(local.tm_hour, local.tm_min, local.tm_sec,
                  static_cast<int>(milliseconds % gMillisecondsPerSecond))};
}

} // namespace vo
