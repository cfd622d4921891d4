#include "Recordings.h"
#include "Report.h"
#include "SqlTable.h"

#include <QCoreApplication>
#include <QJSEngine>

#include <algorithm>

using namespace vogen;

namespace {

// The filter of all contestants:
//
//     (size + 4096) / 1048576 > 10 AND lower(name) = 'x'
//
// About half of the rows are large enough, and about one in three hundred has that name.

constexpr int gHeader = 4096;
constexpr int gUnit = 1048576;
constexpr int gUnits = 10;
const QString gWantedName = QStringLiteral("x");
const QString gSizeColumn = QStringLiteral("size");
const QString gNameColumn = QStringLiteral("name");

struct Row
{
    qlonglong size;
    QString name;
};

std::vector<Row> makeRows(int count)
{
    std::vector<Row> rows;
    for (const Recording &recording : recordings(count)) {
        const bool isWanted = recording.start % 300 == 0;
        const QString wanted = recording.archived ? gWantedName.toUpper() : gWantedName;
        rows.push_back({recording.size * 8, own(isWanted ? wanted : recording.note)});
    }
    return rows;
}

ExpressionHandle constant(const QVariant &value)
{
    return ConstExpression(value, true);
}

ExpressionHandle buildComputedFilter()
{
    const S64Property size(gSizeColumn);
    const StringProperty name(gNameColumn);
    const ExpressionHandle units = (size + gHeader) / constant(gUnit);
    return units > constant(gUnits) && lower(+name) == constant(gWantedName);
}

/// The rows as each contestant wants them, built ahead.
struct Rows
{
    explicit Rows(int count)
        : structs(makeRows(count))
        , filter(buildComputedFilter())
        , table("size INTEGER, name TEXT")
    {
        for (const Row &row : structs)
            maps.push_back({{gSizeColumn, row.size}, {gNameColumn, own(row.name)}});
        for (const Row &row : structs) {
            sets.emplace_back();
            add<S64Property>(sets.back(), gSizeColumn, row.size);
            add<StringProperty>(sets.back(), gNameColumn, own(row.name));
        }
        for (const Row &row : structs)
            table.insert({row.size, row.name});
        table.prepare(*filter.constData());
    }

    int count() const { return static_cast<int>(structs.size()); }

    std::vector<Row> structs;
    std::vector<QMap<QString, QVariant>> maps;
    std::vector<PropertySet> sets;
    const ExpressionHandle filter;
    SqlTable table;
};

int countByStruct(const Rows &rows)
{
    const auto matches = [](const Row &row) {
        return (row.size + gHeader) / gUnit > gUnits && row.name.toLower() == gWantedName;
    };
    return static_cast<int>(std::count_if(rows.structs.begin(), rows.structs.end(), matches));
}

int countByVariantMap(const Rows &rows)
{
    const auto matches = [](const QMap<QString, QVariant> &row) {
        return (row.constFind(gSizeColumn)->toLongLong() + gHeader) / gUnit > gUnits &&
               row.constFind(gNameColumn)->toString().toLower() == gWantedName;
    };
    return static_cast<int>(std::count_if(rows.maps.begin(), rows.maps.end(), matches));
}

/// The filter in JavaScript, compiled once. Its numbers are doubles, so a quotient is cut off.
class Script
{
public:
    explicit Script(const std::vector<Row> &rows)
        : m_rows(rows)
    {
        m_matches = m_engine.evaluate(QStringLiteral(
            "(function(size, name) {"
            "  return Math.trunc((size + 4096) / 1048576) > 10 && name.toLowerCase() === 'x';"
            "})"));
        m_count = m_engine.evaluate(
            QStringLiteral("(function(rows) {"
                           "  let matches = 0;"
                           "  for (let i = 0; i < rows.length; ++i) {"
                           "    const row = rows[i];"
                           "    if (Math.trunc((row.size + 4096) / 1048576) > 10 &&"
                           "        row.name.toLowerCase() === 'x')"
                           "      ++matches;"
                           "  }"
                           "  return matches;"
                           "})"));
        require(m_matches.isCallable() && m_count.isCallable(), "the script has an error");

        m_array = m_engine.newArray(static_cast<uint>(rows.size()));
        quint32 index = 0;
        for (const Row &row : rows) {
            QJSValue object = m_engine.newObject();
            object.setProperty(gSizeColumn, static_cast<double>(row.size));
            object.setProperty(gNameColumn, own(row.name));
            m_array.setProperty(index++, object);
        }
    }

    int countByCalls() const
    {
        const auto matches = [this](const Row &row) {
            return m_matches.call({QJSValue(static_cast<double>(row.size)), QJSValue(row.name)})
                .toBool();
        };
        return static_cast<int>(std::count_if(m_rows.begin(), m_rows.end(), matches));
    }

    int countInside() const { return m_count.call({m_array}).toInt(); }

private:
    const std::vector<Row> &m_rows;
    QJSEngine m_engine;
    mutable QJSValue m_matches;
    mutable QJSValue m_count;
    QJSValue m_array;
};

void registerComputation(const Rows &rows, const Script &script)
{
    registerCounts("compute", rows.count(),
                   {{"struct", [&rows] { return countByStruct(rows); }},
                    {"library", [&rows] { return countMatches(rows.sets, rows.filter); }},
                    {"variant_map", [&rows] { return countByVariantMap(rows); }},
                    {"sqlite", [&rows] { return rows.table.count(); }},
                    {"js_call", [&script] { return script.countByCalls(); }},
                    {"js_loop", [&script] { return script.countInside(); }}});
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // the script engine wants one
    const Rows inCache(1000);
    const Rows inMemory(100000);
    const Script scriptInCache(inCache.structs);
    const Script scriptInMemory(inMemory.structs);
    registerComputation(inCache, scriptInCache);
    registerComputation(inMemory, scriptInMemory);
    return runBenchmarks(argc, argv);
}
