#include "DateOption.h"

#include "UsageFailure.h"

#include <VokitExtras/VolRow>

#include <QRegularExpression>

#include <limits>

namespace {

[[noreturn]] void refuse(const QString &text, const char *reason)
{
    throw UsageFailure(QStringLiteral("'%1' is no date%2").arg(text, QLatin1String(reason)));
}

QDate dayOf(const QString &text)
{
    if (text == QLatin1String("today"))
        return QDate::currentDate();
    if (text == QLatin1String("yesterday"))
        return QDate::currentDate().addDays(-1);
    return QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
}

DateSpan spanOf(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d(:\\d\\d)?\\z"));
    if (!form.match(text).hasMatch()) {
        const QDate day = dayOf(text); // midnight is not the start of every one
        return {vo::VolRow::dateOf(day.startOfDay()),
                vo::VolRow::dateOf(day.addDays(1).startOfDay())};
    }
    const QDateTime time = vo::VolRow::dateOf(QDateTime::fromString(text, Qt::ISODate));
    return {time, time.addSecs(1)};
}

} // namespace

DateSpan parseDate(const QString &text)
{
    DateSpan span = spanOf(text);
    if (!span.begin.isValid())
        refuse(text, ": use 2026-11-21, 2026-11-21T15:04, 2026-11-21T15:04:05, today or yesterday");
    // Filters count a date in seconds of 32 bits; one outside would silently become another.
    const qint64 end = span.end.toSecsSinceEpoch();
    if (span.begin.toSecsSinceEpoch() < 0 || end >= std::numeric_limits<quint32>::max())
        refuse(text, " that a filter can hold: use one from 1970-01-02 to 2106-02-06");
    return span;
}
