#include "TextReport.h"

#include "Filter.h"
#include "PrintableText.h"
#include "Search.h"

#include <Vokit/TypedProperties>

#include <QDateTime>
#include <QLocale>
#include <QTextStream>

using vogen::DateTimeProperty;
using vogen::PropertySet;
using vogen::S64Property;
using vogen::StringProperty;

namespace {

constexpr double gNanosecondsPerMillisecond = 1e6;
constexpr double gNanosecondsPerSecond = 1e9;

constexpr int gHeadingWidth = 12;
constexpr int gTypeWidth = 11;
constexpr int gNumberWidth = 14;
constexpr int gSizeWidth = 17;

const QLocale &numberFormat()
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates); // 1,234,567.8
    return locale;
}

QString number(qlonglong value)
{
    return numberFormat().toString(value);
}

QString truthText(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("NULL");
    return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
}

QString matchText(bool matches)
{
    return matches ? QStringLiteral("a match") : QStringLiteral("no match");
}

void writeTiming(QTextStream &stream, const QString &heading, const QString &matches,
                 qint64 nanoseconds, qlonglong rows)
{
    const auto time = static_cast<double>(nanoseconds);
    const double rate = time > 0 ? static_cast<double>(rows) * gNanosecondsPerSecond / time : 0;
    const QString milliseconds = numberFormat().toString(time / gNanosecondsPerMillisecond, 'f', 3);
    stream << "  " << heading.leftJustified(gHeadingWidth) << matches.rightJustified(gNumberWidth)
           << milliseconds.rightJustified(gNumberWidth)
           << number(static_cast<qlonglong>(rate)).rightJustified(gNumberWidth) << '\n';
}

void writeCount(QTextStream &stream, const QString &heading, qlonglong count)
{
    stream << "  " << heading.leftJustified(gHeadingWidth)
           << number(count).rightJustified(gNumberWidth) << '\n';
}

void writeTotals(QTextStream &stream, const SearchResult &result)
{
    stream << "\nRecordings\n";
    writeCount(stream, QStringLiteral("rows"), result.rows);
    writeCount(stream, QStringLiteral("skipped"), result.skipped.count);
    writeCount(stream, QStringLiteral("not UTF-8"), result.notUtf8);

    stream << "\nResults            matches            ms        rows/s\n";
    writeTiming(stream, QStringLiteral("memory"), number(result.memory.matches),
                result.memory.nanoseconds, result.rows);
    writeTiming(stream, QStringLiteral("SQLite"), number(result.sqlite.matches),
                result.sqlite.nanoseconds, result.rows);
    writeTiming(stream, QStringLiteral("SQLite load"), QString(), result.loadNanoseconds,
                result.rows);
}

void writeMatch(QTextStream &stream, const PropertySet &recording)
{
    const qlonglong size = S64Property::getValue(recording[QStringLiteral("size")], 0);
    const QDateTime modified =
        DateTimeProperty::getValue(recording[QStringLiteral("modified")], QDateTime());
    const QString path = StringProperty::getValue(recording[QStringLiteral("path")], QString());
    stream << "  " << number(size).rightJustified(gSizeWidth) << "  "
           << modified.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) << "  " << printable(path)
           << '\n';
}

void writeMatches(QTextStream &stream, const SearchResult &result)
{
    if (result.firstMatches.empty())
        return;
    stream << "\nFirst matches\n"
           << "               size  modified (UTC)       path\n";
    for (const PropertySet &recording : result.firstMatches)
        writeMatch(stream, recording);
}

void writeDisagreement(QTextStream &stream, const Disagreement &disagreement)
{
    stream << "  " << printable(disagreement.path)
           << "\n    memory: " << matchText(disagreement.inMemory)
           << ", SQLite: " << matchText(disagreement.inSqlite) << '\n';
    for (const ConditionDifference &difference : disagreement.conditions) {
        stream << "    " << printable(difference.condition) << " is "
               << truthText(difference.inMemory) << " in memory and "
               << truthText(difference.inSqlite) << " in SQLite:\n      " << difference.reason
               << '\n';
    }
    if (disagreement.conditions.empty())
        stream << "    " << unexplained() << '\n';
}

void writeDisagreements(QTextStream &stream, const SearchResult &result)
{
    if (result.disagreementCount == 0) {
        stream << "\nMemory and SQLite agree on all rows.\n";
        return;
    }
    stream << "\nMemory and SQLite disagree on " << number(result.disagreementCount) << " of "
           << number(result.rows) << " rows\n";
    for (const Disagreement &disagreement : result.disagreements)
        writeDisagreement(stream, disagreement);
    const auto listed = static_cast<qlonglong>(result.disagreements.size());
    if (listed < result.disagreementCount)
        stream << "  and " << number(result.disagreementCount - listed) << " more\n";
}

void writeBindValues(QTextStream &stream, const QList<QVariant> &values)
{
    stream << "  bind values\n";
    int place = 0;
    for (const QVariant &value : values) {
        stream << QString::number(++place).rightJustified(6) << "  "
               << QString::fromLatin1(value.typeName()).leftJustified(gTypeWidth)
               << printable(value.toString()) << '\n';
    }
}

} // namespace

QString filterText(const Filter &filter)
{
    QString text;
    QTextStream stream(&text);
    stream << "Filter\n";
    if (filter.isEmpty()) {
        stream << "  none: every row matches, and the SQL has no WHERE\n";
        return text;
    }
    for (const NamedStyle &named : gStyles) {
        stream << "  " << QString::fromLatin1(named.heading).leftJustified(gHeadingWidth)
               << printable(filter.expression()->toString(named.style)) << '\n';
    }
    writeBindValues(stream, filter.expression()->collectPlaceholders());
    return text;
}

QString resultText(const SearchResult &result)
{
    QString text;
    QTextStream stream(&text);
    writeTotals(stream, result);
    writeMatches(stream, result);
    writeDisagreements(stream, result);
    return text;
}
