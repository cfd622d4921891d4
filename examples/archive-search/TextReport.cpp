#include "TextReport.h"

#include "AuditTrail.h"
#include "PrintableText.h"
#include "Query.h"
#include "Search.h"

#include <Vokit/TypedProperties>

#include <QDateTime>
#include <QLocale>
#include <QTextStream>

using vogen::DateTimeProperty;
using vogen::Expression;
using vogen::ExpressionHandle;
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
constexpr int gExtensionWidth = 14;
constexpr int gCountWidth = 10;

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

// One column of the groups is a count, the others are sizes.
int columnWidth(int column)
{
    return column == 0 ? gCountWidth : gSizeWidth;
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
    if (result.order) {
        writeTiming(stream, QStringLiteral("memory sort"), QString(),
                    result.order->memoryNanoseconds, result.memory.matches);
        writeTiming(stream, QStringLiteral("SQLite sort"), QString(),
                    result.order->sqliteNanoseconds, result.rows);
    }
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

void writeMatches(QTextStream &stream, const Query &query, const SearchResult &result)
{
    if (result.firstMatches.empty())
        return;
    stream << "\nFirst matches";
    if (query.sortKey)
        stream << " by " << query.sortKey->text();
    stream << "\n"
           << "               size  modified (UTC)       path\n";
    for (const PropertySet &recording : result.firstMatches)
        writeMatch(stream, recording);
}

void writeGroupHeader(QTextStream &stream)
{
    QString memory;
    QString sqlite;
    int index = 0;
    for (const GroupColumn &column : groupColumns()) {
        const QString name = QLatin1String(column.name);
        const auto titled = [&](const char *meaning) {
            const QString title = index == 0 ? name : name + ": " + QLatin1String(meaning);
            return title.rightJustified(columnWidth(index));
        };
        memory += titled(column.inMemory);
        sqlite += titled(column.inSqlite);
        ++index;
    }
    const int sideWidth = memory.size();
    stream << "\nGroups" << QString(gExtensionWidth - 4, QLatin1Char(' '))
           << QStringLiteral("memory").rightJustified(sideWidth)
           << QStringLiteral("SQLite").rightJustified(sideWidth) << '\n'
           << "  " << QStringLiteral("extension").leftJustified(gExtensionWidth) << memory << sqlite
           << '\n';
}

QString groupSideText(const QList<QVariant> &values)
{
    QString text;
    for (int i = 0; i < static_cast<int>(groupColumns().size()); ++i) {
        const QString value =
            i < values.size() ? number(values.at(i).toLongLong()) : QStringLiteral("-");
        text += value.rightJustified(columnWidth(i));
    }
    return text;
}

void writeGroups(QTextStream &stream, const Query &query, const SearchResult &result)
{
    if (!query.grouped)
        return;
    writeGroupHeader(stream);
    const QMap<QString, Group> &groups = result.groups.byExtension();
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        const QString name =
            group.key().isEmpty() ? QStringLiteral("(none)") : printable(group.key());
        stream << "  " << name.leftJustified(gExtensionWidth) << groupSideText(group->inMemory)
               << groupSideText(group->inSqlite) << '\n';
    }
}

void writeNotes(QTextStream &stream, const Query &query)
{
    const QStringList notes = query.notes();
    if (notes.isEmpty())
        return;
    stream << "\nNotes\n";
    for (const QString &note : notes)
        stream << "  " << note << '\n';
}

void writeOrder(QTextStream &stream, const OrderComparison &order)
{
    if (order.differences == 0) {
        stream << "Memory and SQLite agree on the order of " << number(order.rows) << " rows.\n";
        return;
    }
    stream << "Memory and SQLite disagree on the order: " << number(order.differences) << " of "
           << number(order.rows) << " places hold another row\n"
           << "  first at place " << number(order.place) << ": " << printable(order.inMemory)
           << " in memory, " << printable(order.inSqlite) << " in SQLite:\n      " << order.reason
           << '\n';
}

void writeGroupAgreement(QTextStream &stream, const Groups &groups)
{
    stream << (groups.agree()
                   ? "Memory and SQLite agree on all groups, but for max and min: each is the "
                     "other's.\n"
                   : "Memory and SQLite disagree on some groups, and not only by max and min.\n");
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

void writeFilter(QTextStream &stream, const Filter &filter)
{
    stream << "Filter\n";
    if (filter.isEmpty()) {
        stream << "  none: every row matches, and the SQL has no WHERE\n";
        return;
    }
    for (const NamedStyle &named : gStyles) {
        stream << "  " << QString::fromLatin1(named.heading).leftJustified(gHeadingWidth)
               << printable(filter.expression()->toString(named.style)) << '\n';
    }
    writeBindValues(stream, filter.expression()->collectPlaceholders());
}

void writeCode(QTextStream &stream, const Query &query)
{
    stream << "\nCode\n";
    if (query.filter.isEmpty() && !query.sortKey && !query.grouped)
        stream << "  none\n";
    const auto write = [&](const char *heading, const ExpressionHandle &expression,
                           Expression::PrintStyle extra) {
        const auto line = [&](const char *title, Expression::PrintStyle style) {
            stream << "  " << QString::fromLatin1(title).leftJustified(gHeadingWidth)
                   << printable(expression->toString(style)) << '\n';
        };
        line(heading, Expression::PrintCode);
        line("as SQL", Expression::PrintSql | extra);
    };
    if (!query.filter.isEmpty())
        write("filter", query.filter.expression(), Expression::PrintReadable);
    if (query.sortKey)
        write("sort key", query.sortKey->expression(), Expression::PrintOrderBy);
    if (query.grouped)
        write("columns", groupSelection(), Expression::PrintReadable);
}

void writeExport(QTextStream &stream, const MatchList &matches)
{
    stream << "\n"
           << number(static_cast<qlonglong>(matches.ids.size())) << " matches are in '"
           << printable(matches.file) << "'.\n";
}

} // namespace

QString queryText(const Query &query)
{
    QString text;
    QTextStream stream(&text);
    writeFilter(stream, query.filter);
    if (query.withCode)
        writeCode(stream, query);
    return text;
}

QString resultText(const Query &query, const SearchResult &result)
{
    QString text;
    QTextStream stream(&text);
    writeTotals(stream, result);
    writeMatches(stream, query, result);
    writeGroups(stream, query, result);
    writeNotes(stream, query);
    writeDisagreements(stream, result);
    if (result.order)
        writeOrder(stream, result.order->comparison);
    if (query.grouped)
        writeGroupAgreement(stream, result.groups);
    if (result.exported)
        writeExport(stream, *result.exported);
    return text;
}

QString logText(const AuditReport &audit)
{
    QString text;
    for (const QString &line : audit.entries.value_or(QStringList()))
        text += printable(line) + QLatin1Char('\n');
    return text;
}

QString logSection(const AuditReport &audit)
{
    return audit.entries ? "\nLog " + printable(audit.file) + '\n' + logText(audit) : QString();
}
