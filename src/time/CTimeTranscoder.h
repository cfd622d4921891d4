#pragma once

#include <Vokit/vokit_export.h>

#include <string>

class QDateTime;

namespace vo {

/**
 * One instant, broken up once into the fields of the local calendar and two texts: one to show on
 * a frame, one for file names.
 *
 * The type of the argument is the unit: 64 bits count microseconds, as a frame time does, 32 bits
 * count milliseconds and so end in February 1970. A plain int fits both and does not compile.
 *
 * @code
 * vo::CTimeTranscoder taken(vo::currentFrameTime());
 * taken.toString();   // 21.11.2026-15:04:05.123
 * taken.toIdString(); // 20261121_150405_123
 * @endcode
 *
 * Local is what QDateTime::toTimeSpec(Qt::LocalTime) makes of the instant, in the time zone of the
 * process at that moment: the zone is looked up for each object, so a changed TZ or /etc/localtime
 * counts at once. From 2038 on Qt takes the summer time of the same day in 2037, and so does this
 * class. Before, a time is broken up without Qt.
 *
 * Digits are 0 to 9 in every locale. A year above 9999 has as many digits as it needs, in both
 * texts. Nothing fails or throws, but for a lack of memory. Objects may be made by any thread; each
 * belongs to one thread at a time, since no accessor is const.
 *
 * The constants are the units of the day, for frame times and for date arithmetic.
 */
class VOKIT_EXPORT CTimeTranscoder
{
public:
    static constexpr long long MILLISECONDS_PER_DAY = 86400000;
    static constexpr long long MICROSECONDS_PER_DAY = 86400000000;

    /// @param time microseconds since 1970-01-01 00:00:00 UTC
    CTimeTranscoder(unsigned long long time);

    /// @param time milliseconds since 1970-01-01 00:00:00 UTC
    CTimeTranscoder(unsigned int time);

    int microsecond() { return m_microsecond; } ///< below the millisecond: 0 to 999
    int millisecond() { return m_millisecond; }
    int second() { return m_second; }
    int minute() { return m_minute; }
    int hour() { return m_hour; } ///< 0 to 23
    int day() { return m_day; }
    int month() { return m_month; } ///< 1 to 12
    int year() { return m_year; }

    std::string toString() { return m_string; }     ///< dd.MM.yyyy-hh:mm:ss.zzz
    std::string toIdString() { return m_idString; } ///< yyyyMMdd_hhmmss_zzz

private:
    void breakUp(unsigned long long milliSeconds);
    bool readFieldsFromSystem(unsigned long long milliSeconds);
    void writeTexts();
    void readFieldsAndTexts(const QDateTime &local);

    int m_microsecond;
    int m_millisecond = 0;
    int m_second = 0;
    int m_minute = 0;
    int m_hour = 0;
    int m_day = 0;
    int m_month = 0;
    int m_year = 0;
    std::string m_string;
    std::string m_idString;
};

} // namespace vo
