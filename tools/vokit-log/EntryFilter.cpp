#include "EntryFilter.h"

#include "CommonOptions.h"
#include "Console.h"
#include "DateOption.h"
#include "EntryText.h"
#include "FileName.h"
#include "FilterFile.h"
#include "GapText.h"
#include "UsageFailure.h"

#include <Vokit/ExpressionOperators>
#include <Vokit/LogCategory>
#include <Vokit/TypedProperties>

#include <QFileInfo>

#include <algorithm>

using vogen::BooleanOperator;
using vogen::DateTimeProperty;
using vogen::ElementOf;
using vogen::ExpressionHandle;
using vogen::ExpressionList;
using vogen::StringProperty;

namespace {

const QString gCategory = QStringLiteral("category");
const QString gUser = QStringLiteral("user");
const QString gId = QStringLiteral("id");
const QString gTime = QStringLiteral("time");
const QString gSince = QStringLiteral("since");
const QString gUntil = QStringLiteral("until");
const QString gContains = QStringLiteral("contains");
const QString gFilter = QStringLiteral("filter");
const QString gSaveFilter = QStringLiteral("save-filter");

QStringList parts(const QStringList &lists)
{
    QStringList result;
    for (const QString &list : lists)
        result += list.split(QLatin1Char(','));
    return result;
}

QString categoryOf(const QString &text)
{
    const QStringList names = vo::LogCategory::categoryNames();
    const QString wanted = text.trimmed();
    const auto name = std::find_if(names.begin(), names.end(), [&](const QString &known) {
        return known.compare(wanted, Qt::CaseInsensitive) == 0;
    });
    if (name == names.end()) {
        throw UsageFailure(QStringLiteral("there is no category '%1'; there are: %2")
                               .arg(wanted, names.join(QLatin1String(", "))));
    }
    return *name;
}

QString idOf(const QString &text)
{
    constexpr int length = 4;
    QString id = vo::FourChars(text).toString();
    if (text.isEmpty() || id != text.leftJustified(length))
        throw UsageFailure(QStringLiteral("'%1' is no identifier of four characters").arg(text));
    return id;
}

QString asGiven(const QString &text)
{
    return text;
}

// The property stands for the column: an expression takes its name and nothing else.
void addChoice(ExpressionList &conditions, const QString &column, const QStringList &words,
               QString (*valueOf)(const QString &))
{
    if (words.isEmpty())
        return;
    ElementOf choice{StringProperty(column)};
    for (const QString &word : words)
        choice.append(QVariant(valueOf(word)));
    conditions.append(ExpressionHandle(choice));
}

ExpressionHandle expressionFrom(const QCommandLineParser &parser)
{
    ExpressionList conditions;
    addChoice(conditions, gId, parts(parser.values(gId)), &idOf);
    addChoice(conditions, gCategory, parts(parser.values(gCategory)), &categoryOf);
    addChoice(conditions, gUser, parser.values(gUser), &asGiven);
    const DateTimeProperty time(gTime);
    const QStringList beginnings = parser.values(gSince);
    for (const QString &text : beginnings)
        conditions.append(ExpressionHandle(time >= QVariant(parseDate(text).begin)));
    const QStringList ends = parser.values(gUntil);
    for (const QString &text : ends)
        conditions.append(ExpressionHandle(time < QVariant(parseDate(text).end)));
    const QStringList files = parser.values(gFilter);
    for (const QString &file : files)
        conditions.append(loadFilter(file));
    return BooleanOperator::join(conditions, BooleanOperator::And);
}

// A wildcard may bring a log to where one name is expected. What is no regular file is refused
// anyway.
void requireNothingButFilter(const QString &file)
{
    if (!QFileInfo(absoluteName(file)).isFile())
        return;
    try {
        loadFilter(file);
    } catch (const Failure &) {
        throw Failure(
            QStringLiteral("cannot save filter '%1': what is there is no filter").arg(file));
    }
}

void saveFilterFrom(const QCommandLineParser &parser, const ExpressionHandle &filter)
{
    const QString file = fileOf(parser, gSaveFilter);
    if (file == QLatin1String("-"))
        throw UsageFailure(QStringLiteral("--save-filter goes to a file only"));
    if (parser.isSet(gContains)) {
        throw UsageFailure(QStringLiteral("--contains can't be saved by --save-filter: it is no "
                                          "expression"));
    }
    if (filter->isEmpty()) {
        throw UsageFailure(QStringLiteral("--save-filter needs something to save: --category, "
                                          "--user, --id, --since, --until or --filter"));
    }
    requireNothingButFilter(file);
    saveFilter(filter, file);
}

// All, as none are named, for a filter of a file: what it asks for, only it knows.
QStringList columnsFor(const QCommandLineParser &parser)
{
    if (parser.isSet(gFilter))
        return {};
    QStringList columns{gId}; // which costs nothing
    for (const QString &column : {gCategory, gUser}) {
        if (parser.isSet(column))
            columns.append(column);
    }
    if (parser.isSet(gSince) || parser.isSet(gUntil))
        columns.append(gTime);
    return columns;
}

bool contains(const QStringMatcher &text, const vo::VolRow &row)
{
    const auto holds = [&text](const QString &column) { return text.indexIn(column) >= 0; };
    const std::vector<vo::VolRow::Value> &values = row.values();
    return holds(row.user()) || holds(row.action()) || holds(row.description()) ||
           std::any_of(values.begin(), values.end(), [&](const vo::VolRow::Value &value) {
               return holds(valueText(value.value));
           });
}

} // namespace

void addFilterOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {gCategory,
         "Entries of these categories, as they are called in --format csv; an unknown one brings "
         "the list of all. As every LIST: separated by commas, or given several times.",
         "LIST"},
        {gUser, "Entries of this user; given several times, of any of them.", "NAME"},
        {gId, "Entries of these classes, by the identifiers in the file, such as ExpD.", "LIST"},
        {gSince,
         "Entries of this time or later: 2026-11-21, 2026-11-21T15:04:05, today, yesterday.",
         "DATE"},
        {gUntil, "Entries of this time or earlier; a date alone includes the day.", "DATE"},
        {gContains,
         "Entries with this text in the user, the action, the description or a value; upper and "
         "lower case are the same.",
         "TEXT"},
        {gFilter,
         "Entries for which the filter in this file holds: an expression in the byte stream of Qt "
         "5.15, over id, category, time, user, action, description and the values by name.",
         "FILE"},
        {gSaveFilter,
         "Write these options, joined, into this file for --filter, whole or not at all, and go "
         "on. It may replace a filter, and nothing else. today and yesterday are saved as the days "
         "that they are now. Not with --contains, which is no expression.",
         "FILE"},
    });
}

EntryFilter::EntryFilter(const QCommandLineParser &parser)
    : m_expression(expressionFrom(parser))
    , m_asksForTime(parser.isSet(gSince) || parser.isSet(gUntil))
    , m_columns(columnsFor(parser))
{
    const QStringList texts = parser.values(gContains);
    for (const QString &text : texts)
        m_texts.emplace_back(text, Qt::CaseInsensitive);
    if (parser.isSet(gSaveFilter))
        saveFilterFrom(parser, m_expression);
}

bool EntryFilter::matches(const vo::VolRow &row)
{
    if (m_asksForTime && !row.time().isValid())
        ++m_unreadTimes;
    if (!m_expression->isEmpty() && !m_expression->evaluate(row.set(), nullptr).toBool())
        return false;
    return std::all_of(m_texts.begin(), m_texts.end(),
                       [&row](const QStringMatcher &text) { return contains(text, row); });
}

void EntryFilter::warnOfUnreadTimes() const
{
    if (m_unreadTimes == 0)
        return;
    warn(QStringLiteral("the time of %1 can't be read, and matches neither --since nor --until; if "
                        "the log was written under another locale, --locale helps")
             .arg(counted(m_unreadTimes, "entry", "entries")));
}
