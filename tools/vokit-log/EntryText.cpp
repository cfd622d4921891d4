#include "EntryText.h"

namespace {

constexpr int gLength = 19; // of 2026-11-21 15:04:05

/// Writes numbers into a text of that length, from its end on.
void putNumber(QChar *&end, int number, int digits)
{
    for (; digits > 0; --digits, number /= 10)
        *--end = QLatin1Char(static_cast<char>('0' + number % 10));
}

} // namespace

QString dateText(const QDateTime &date, char between)
{
    const QTime time = date.time();
    int year = 0;
    int month = 0;
    int day = 0;
    date.date().getDate(&year, &month, &day);

    QString text(gLength, QLatin1Char(':'));
    QChar *end = text.data() + gLength;
    putNumber(end, time.second(), 2);
    putNumber(--end, time.minute(), 2);
    putNumber(--end, time.hour(), 2);
    *--end = QLatin1Char(between);
    putNumber(end, day, 2);
    *--end = QLatin1Char('-');
    putNumber(end, month, 2);
    *--end = QLatin1Char('-');
    putNumber(end, year, 4);
    return text;
}

QString valueText(const QVariant &value)
{
    return value.type() == QVariant::DateTime ? dateText(value.toDateTime(), 'T')
                                              : value.toString();
}
