#include <Vokit/CTimeTranscoder>

#include <QDateTime>
#include <QLocale>

#include <ctime>
#include <string_view>

namespace vo {

namespace {

// The forms of the two texts, in Qt's tokens.
constexpr std::string_view DISPLAY_FORM = "dd.MM.yyyy-hh:mm:ss.zzz";
constexpr std::string_view ID_FORM = "yyyyMMdd_hhmmss_zzz";

// From here on Qt has a summer time of its own (that of 2037), and the C library another.
constexpr unsigned long long MILLISECONDS_TO_2038 = 2145916800000;

template <int digitCount>
void writeDigits(char *place, int value)
{
    for (int i = digitCount - 1; i >= 0; --i) {
        place[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

// The C locale: the system's may have digits of its own, which neither toInt nor Latin-1 knows.
std::string formatted(const QDateTime &dateTime, std::string_view form)
{
    const QString qtForm = QString::fromLatin1(form.data(), static_cast<int>(form.size()));
    return QLocale::c().toString(dateTime, qtForm).toLatin1().toStdString();
}

int field(const QDateTime &dateTime, const char *token)
{
    return QLocale::c().toString(dateTime, QString::fromLatin1(token)).toInt();
}

} // namespace

CTimeTranscoder::CTimeTranscoder(unsigned long long time)
    : m_microsecond(static_cast<int>(time % 1000))
{
    breakUp(time / 1000);
}

CTimeTranscoder::CTimeTranscoder(unsigned int time)
    : m_microsecond(0)
{
    breakUp(time);
}

void CTimeTranscoder::breakUp(unsigned long long milliSeconds)
{
    if (readFieldsFromSystem(milliSeconds)) {
        writeTexts();
        return;
    }
    const QDateTime base(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC);
    readFieldsAndTexts(base.addMSecs(static_cast<qint64>(milliSeconds)).toTimeSpec(Qt::LocalTime));
}

// What Qt does itself before 2038, without a QDateTime in between. False where Qt has another view.
bool CTimeTranscoder::readFieldsFromSystem(unsigned long long milliSeconds)
{
    if (milliSeconds >= MILLISECONDS_TO_2038)
        return false;
    const auto seconds = static_cast<std::time_t>(milliSeconds / 1000);
    std::tm local;
    ::tzset(); // localtime_r looks at the zone once only
    // A zone that counts leap seconds has a second 60, and QTime has none.
    if (::localtime_r(&seconds, &local) == nullptr || local.tm_sec > 59)
        return false;
    m_millisecond = static_cast<int>(milliSeconds % 1000);
    m_second = local.tm_sec;
    m_minute = local.tm_min;
    m_hour = local.tm_hour;
    m_day = local.tm_mday;
    m_month = local.tm_mon + 1;
    m_year = local.tm_year + 1900;
    return true;
}

// For years of four digits. Each number takes the place of its token.
void CTimeTranscoder::writeTexts()
{
    m_string = DISPLAY_FORM;
    char *const display = m_string.data();
    writeDigits<2>(display, m_day);
    writeDigits<2>(display + 3, m_month);
    writeDigits<4>(display + 6, m_year);
    writeDigits<2>(display + 11, m_hour);
    writeDigits<2>(display + 14, m_minute);
    writeDigits<2>(display + 17, m_second);
    writeDigits<3>(display + 20, m_millisecond);

    m_idString = ID_FORM;
    char *const id = m_idString.data();
    writeDigits<4>(id, m_year);
    writeDigits<2>(id + 4, m_month);
    writeDigits<2>(id + 6, m_day);
    writeDigits<2>(id + 9, m_hour);
    writeDigits<2>(id + 11, m_minute);
    writeDigits<2>(id + 13, m_second);
    writeDigits<3>(id + 16, m_millisecond);
}

void CTimeTranscoder::readFieldsAndTexts(const QDateTime &local)
{
    m_millisecond = field(local, "zzz");
    m_second = field(local, "ss");
    m_minute = field(local, "mm");
    m_hour = field(local, "hh");
    m_day = field(local, "dd");
    m_month = field(local, "MM");
    m_year = field(local, "yyyy");
    m_string = formatted(local, DISPLAY_FORM);
    m_idString = formatted(local, ID_FORM);
}

} // namespace vo
