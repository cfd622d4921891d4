#include "actionlog/ShortDateFormat_p.h"

#include "actionlog/LocalClock_p.h"

#include <algorithm>

namespace vo {

namespace {

constexpr int gMonths = 12;
constexpr int gFirstYear = 1000; // to 9999: four digits and no sign
constexpr int gLastYear = 9999;
constexpr int gMostUnits = 128; // longer ones are left to Qt

/// Gathers a text in place.
class Output
{
public:
    QString text() const { return QString(m_units, m_size); }

    void number(int number, int digits)
    {
        int size = 1;
        for (int rest = number / 10; rest > 0; rest /= 10)
            ++size;
        size = std::max(size, digits);
        for (int i = size - 1; i >= 0; --i, number /= 10)
            m_units[m_size + i] = QLatin1Char(static_cast<char>('0' + number % 10));
        m_size += size;
    }

    void append(const QString &text)
    {
        std::copy(text.begin(), text.end(), m_units + m_size);
        m_size += text.size();
    }

private:
    QChar m_units[gMostUnits];
    int m_size = 0;
};

int toHour12(int hour)
{
    return hour % 12 == 0 ? 12 : hour % 12;
}

/// Takes a text from the front.
class Cursor
{
public:
    explicit Cursor(const QString &text)
        : m_rest(text)
    {}

    bool atEnd() const { return m_rest.isEmpty(); }

    /// From one digit, or as many as @p least says, up to @p most.
    bool number(int least, int most, int *number)
    {
        int count = 0;
        *number = 0;
        while (count < most && count < m_rest.size() && isDigit(m_rest.at(count)))
            *number = *number * 10 + (m_rest.at(count++).unicode() - '0');
        m_rest = m_rest.mid(count);
        return count >= least;
    }

    bool literal(const QString &text)
    {
        if (text.isEmpty() || !m_rest.startsWith(text))
            return false;
        m_rest = m_rest.mid(text.size());
        return true;
    }

private:
    static bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

    QStringView m_rest;
};

// Each month, both ends of the day and of the hour, one and two digits, both sides of 2000.
std::vector<QDateTime> tellingDates()
{
    std::vector<QDateTime> dates;
    for (int month = 1; month <= gMonths; ++month)
        dates.emplace_back(QDate(1995 + month, month, 2 * month + 1),
                           QTime(2 * month - 1, 5 * month - 1, month));
    dates.emplace_back(QDate(2026, 3, 5), QTime(0, 0));
    dates.emplace_back(QDate(2026, 11, 21), QTime(12, 0, 59));
    dates.emplace_back(QDate(1970, 1, 1), QTime(23, 59, 59));
    return dates;
}

} // namespace

ShortDateFormat::ShortDateFormat(const QLocale &locale)
    : m_am(locale.amText())
    , m_pm(locale.pmText())
{
    for (int month = 1; month <= gMonths; ++month)
        m_months.append(locale.monthName(month, QLocale::ShortFormat));
    m_trusted = takeApart(locale.dateTimeFormat(QLocale::ShortFormat)) && agreesWithQt(locale);
}

std::optional<QString> ShortDateFormat::print(const QDateTime &dateTime) const
{
    if (!m_trusted || !dateTime.isValid())
        return {};
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    if (year < gFirstYear || year > gLastYear)
        return {};
    Output text;
    for (const Part &part : m_parts) {
        switch (part.kind) {
        case Kind::Day:
            text.number(day, part.digits);
            break;
        case Kind::Month:
            text.number(month, part.digits);
            break;
        case Kind::MonthName:
            text.append(m_months.at(month - 1));
            break;
        case Kind::Year:
            text.number(year, part.digits);
            break;
        case Kind::ShortYear:
            text.number(year % 100, part.digits);
            break;
        case Kind::Hour:
            text.number(time.hour(), part.digits);
            break;
        case Kind::Hour12:
            text.number(toHour12(time.hour()), part.digits);
            break;
        case Kind::Minute:
            text.number(time.minute(), part.digits);
            break;
        case Kind::Second:
            text.number(time.second(), part.digits);
            break;
        case Kind::AmPm:
            text.append(time.hour() < 12 ? m_am : m_pm);
            break;
        case Kind::Literal:
            text.append(part.text);
            break;
        }
    }
    return text.text();
}

std::optional<QDateTime> ShortDateFormat::read(const QString &text) const
{
    if (!m_trusted)
        return {};
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool isPm = false;
    bool is12 = false;
    Cursor cursor(text);
    for (const Part &part : m_parts) {
        bool found = false;
        switch (part.kind) {
        case Kind::Day:
            found = cursor.number(part.digits, 2, &day);
            break;
        case Kind::Month:
            found = cursor.number(part.digits, 2, &month);
            break;
        case Kind::MonthName:
            for (month = 1; month <= gMonths && !found; ++month)
                found = cursor.literal(m_months.at(month - 1));
            --month;
            break;
        case Kind::Year:
            found = cursor.number(4, 4, &year);
            break;
        case Kind::ShortYear:
            found = cursor.number(2, 2, &year);
            year += 1900; // as Qt reads it
            break;
        case Kind::Hour12:
            is12 = true;
            found = cursor.number(part.digits, 2, &hour);
            break;
        case Kind::Hour:
            found = cursor.number(part.digits, 2, &hour);
            break;
        case Kind::Minute:
            found = cursor.number(part.digits, 2, &minute);
            break;
        case Kind::Second:
            found = cursor.number(part.digits, 2, &second);
            break;
        case Kind::AmPm:
            isPm = cursor.literal(m_pm);
            found = isPm || cursor.literal(m_am);
            break;
        case Kind::Literal:
            found = cursor.literal(part.text);
            break;
        }
        if (!found)
            return {};
    }
    if (is12) {
        if (hour > 12)
            return {};
        hour = hour % 12 + (isPm ? 12 : 0);
    }
    const QDate date(year, month, day);
    const QTime time(hour, minute, second);
    if (!cursor.atEnd() || !date.isValid() || !time.isValid())
        return {};
    const QDateTime result(date, time);
    // Of an hour that comes twice, QDateTime takes the one that the C library thought of last.
    if (!result.isValid() || !LocalClock::isEven(date))
        return {};
    return result;
}

bool ShortDateFormat::takeApart(const QString &format)
{
    for (int i = 0; i < format.size();) {
        const QChar c = format.at(i);
        if (c == QLatin1Char('\''))
            return false; // quoted words are rare
        const bool isLetter = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
                              (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
        if (!isLetter) {
            m_parts.push_back({Kind::Literal, 0, QString(c)});
            ++i;
        } else if (format.midRef(i, 2) == QLatin1String("AP")) {
            m_parts.push_back({Kind::AmPm, 0, QString()});
            i += 2;
        } else {
            int count = 1;
            while (i + count < format.size() && format.at(i + count) == c)
                ++count;
            if (!addPart(c, count))
                return false;
            i += count;
        }
    }
    if (mostUnits() > gMostUnits)
        return false;
    const auto isAmPm = [](const Part &part) { return part.kind == Kind::AmPm; };
    if (std::none_of(m_parts.begin(), m_parts.end(), isAmPm)) {
        for (Part &part : m_parts) {
            if (part.kind == Kind::Hour12)
                part.kind = Kind::Hour;
        }
    }
    return true;
}

// How long a text can become.
int ShortDateFormat::mostUnits() const
{
    constexpr int mostDigits = 4;
    const auto size = [](const QString &text) { return text.size(); };
    int longestName = std::max(size(m_am), size(m_pm));
    for (const QString &month : m_months)
        longestName = std::max(longestName, size(month));
    int sum = 0;
    for (const Part &part : m_parts)
        sum += std::max({mostDigits, longestName, size(part.text)});
    return sum;
}

bool ShortDateFormat::addPart(QChar letter, int count)
{
    struct Token
    {
        char letter;
        int count;
        Kind kind;
        int digits;
    };
    static constexpr Token tokens[] = {
        {'d', 1, Kind::Day, 1},    {'d', 2, Kind::Day, 2},       {'M', 1, Kind::Month, 1},
        {'M', 2, Kind::Month, 2},  {'M', 3, Kind::MonthName, 0}, {'y', 2, Kind::ShortYear, 2},
        {'y', 4, Kind::Year, 4},   {'H', 1, Kind::Hour, 1},      {'H', 2, Kind::Hour, 2},
        {'h', 1, Kind::Hour12, 1}, {'h', 2, Kind::Hour12, 2},    {'m', 1, Kind::Minute, 1},
        {'m', 2, Kind::Minute, 2}, {'s', 1, Kind::Second, 1},    {'s', 2, Kind::Second, 2},
    };
    for (const Token &token : tokens) {
        if (letter == QLatin1Char(token.letter) && count == token.count) {
            m_parts.push_back({token.kind, token.digits, QString()});
            return true;
        }
    }
    return false;
}

bool ShortDateFormat::agreesWithQt(const QLocale &locale) const
{
    ShortDateFormat candidate(*this);
    candidate.m_trusted = true;
    const auto agrees = [&](const QDateTime &date) {
        const QString text = locale.toString(date, QLocale::ShortFormat);
        return candidate.print(date) == text &&
               candidate.read(text) == locale.toDateTime(text, QLocale::ShortFormat);
    };
    const std::vector<QDateTime> dates = tellingDates();
    return std::all_of(dates.begin(), dates.end(), agrees);
}

} // namespace vo
