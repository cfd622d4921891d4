#include "OptionValues.h"

#include "Failure.h"

#include <QMap>
#include <QRegExp>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace {

[[noreturn]] void refuse(const QString &text, const char *explanation)
{
    throw Failure(QStringLiteral("'%1' is not %2").arg(text, QLatin1String(explanation)));
}

qlonglong bytesOfUnit(const QString &unit)
{
    const int step = unit.isEmpty() ? 0 : 1 + QStringLiteral("KMGT").indexOf(unit.toUpper());
    return qlonglong(1) << (10 * step);
}

} // namespace

qlonglong parseSize(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([0-9]+)(\\.[0-9]+)?([KMGTkmgt]?)\\z"));
    const QRegularExpressionMatch match = form.match(text);
    const bool hasFraction = !match.captured(2).isEmpty();
    if (!match.hasMatch() || (hasFraction && match.captured(3).isEmpty()))
        refuse(text, "a size: use a number, or one with K, M, G or T behind it");

    // The whole part stays an integer, since a double would round sizes from 2^53 on.
    bool fits = false;
    const qlonglong whole = match.captured(1).toLongLong(&fits);
    const qlonglong unit = bytesOfUnit(match.captured(3));
    if (!fits || whole >= std::numeric_limits<qlonglong>::max() / unit)
        refuse(text, "a size: it is too large for 64 bits");
    const double part = hasFraction ? match.captured(2).prepend(QLatin1Char('0')).toDouble() : 0;
    return whole * unit + static_cast<qlonglong>(part * static_cast<double>(unit));
}

QDateTime parseDate(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A\\d{4}-\\d\\d-\\d\\d(T\\d\\d:\\d\\d(:\\d\\d(\\.\\d{1,3})?)?"
                       "(Z|[+-]\\d\\d:\\d\\d)?)?\\z"));
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!form.match(text).hasMatch() || !date.isValid())
        refuse(text, "a date: use 2026-03-05, 2026-03-05T10:00 or 2026-03-05T10:00:00+02:00");

    // Filters count a date in seconds of 32 bits; one outside would silently become another.
    const qint64 seconds = date.toSecsSinceEpoch();
    if (seconds < 0 || seconds >= std::numeric_limits<quint32>::max())
        refuse(text, "a date that a filter can hold: use one from 1970-01-01 to 2106-02-07");
    return date.toUTC();
}

double parseDays(const QString &text)
{
    bool isNumber = false;
    const double days = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(days) || days < 0)
        refuse(text, "a number of days: use one such as 7 or 0.5");
    return days;
}

QString parseRegexp(const QString &text)
{
    const QRegExp inMemory(text);
    const QRegularExpression inSqlite(text);
    const QString error = !inMemory.isValid() ? inMemory.errorString() : inSqlite.errorString();
    if (!inMemory.isValid() || !inSqlite.isValid())
        throw Failure(QStringLiteral("'%1' is not a regular expression: %2").arg(text, error));
    return text;
}

SplitChoice parseSplit(const QString &text)
{
    using vo::ActionLog;
    static const QMap<QString, ActionLog::ESplitPolicy> policies{
        {QStringLiteral("none"), ActionLog::SplitNone},
        {QStringLiteral("daily"), ActionLog::SplitDaily},
        {QStringLiteral("weekly"), ActionLog::SplitWeekly},
        {QStringLiteral("monthly"), ActionLog::SplitMonthly}};
    const auto named = policies.constFind(text);
    if (named != policies.constEnd())
        return {*named, {}};
    constexpr const char *right = "a way to split: use none, daily, weekly, monthly or a size";
    if (text.isEmpty() || !text.at(0).isDigit())
        refuse(text, right);
    const qlonglong size = parseSize(text);
    if (size < 1 || size > std::numeric_limits<int>::max())
        refuse(text, "a size to split at: use one from 1 to 2147483647 bytes");
    return {ActionLog::SplitBySize, static_cast<int>(size)};
}

QString parseUser(const QString &text)
{
    if (text.isEmpty())
        refuse(text, "the name of a user");
    return text;
}

int parseCount(const QString &text)
{
    bool isNumber = false;
    const int count = text.toInt(&isNumber);
    if (!isNumber || count < 0)
        refuse(text, "a count: use a whole number, 0 or more");
    return count;
}
