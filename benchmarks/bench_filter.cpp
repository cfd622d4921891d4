#include "Recordings.h"
#include "Report.h"
#include "SqlTable.h"

#include <algorithm>
#include <random>

using namespace vogen;

namespace {

// ---- evaluate: the same rows, filtered in four ways; each gives the number of matches

/// The rows as each contestant wants them, built ahead.
struct Rows
{
    explicit Rows(int count)
        : structs(recordings(count))
        , filter(buildFilter(RecordingProperties(), Wanted()))
        , table("camera TEXT, type TEXT, start INTEGER, duration INTEGER, size INTEGER,"
                " score REAL, archived INTEGER, note TEXT")
    {
        for (const Recording &row : structs)
            maps.push_back(toVariantMap(row));
        for (const Recording &row : structs)
            sets.push_back(toPropertySet(row));
        for (const Recording &row : structs)
            table.insert({row.camera, row.type, row.start, row.duration, row.size, row.score,
                          row.archived, row.note});
        table.prepare(*filter.constData());
    }

    int count() const { return static_cast<int>(structs.size()); }

    std::vector<Recording> structs;
    std::vector<QMap<QString, QVariant>> maps;
    std::vector<PropertySet> sets;
    const ExpressionHandle filter;
    SqlTable table;
};

int countByVariantMap(const Rows &rows)
{
    const Columns columns;
    const Wanted wanted;
    const QVariant cameras[] = {wanted.cameras[0], wanted.cameras[1], wanted.cameras[2]};
    const QVariant duration = wanted.duration;
    const QVariant size = wanted.size;
    const QVariant type = wanted.type;
    const auto matches = [&](const QMap<QString, QVariant> &row) {
        const QVariant &camera = *row.constFind(columns.camera);
        return ((camera == cameras[0] || camera == cameras[1] || camera == cameras[2]) &&
                *row.constFind(columns.duration) >= duration &&
                *row.constFind(columns.size) > size) ||
               (*row.constFind(columns.type) == type && !row.constFind(columns.archived)->toBool());
    };
    return static_cast<int>(std::count_if(rows.maps.begin(), rows.maps.end(), matches));
}

int countByStruct(const Rows &rows)
{
    const Wanted wanted;
    const auto matches = [&](const Recording &row) {
        return ((row.camera == wanted.cameras[0] || row.camera == wanted.cameras[1] ||
                 row.camera == wanted.cameras[2]) &&
                row.duration >= wanted.duration && row.size > wanted.size) ||
               (row.type == wanted.type && !row.archived);
    };
    return static_cast<int>(std::count_if(rows.structs.begin(), rows.structs.end(), matches));
}

void registerEvaluation(const Rows &rows)
{
    registerCounts("evaluate", rows.count(),
                   {{"struct", [&rows] { return countByStruct(rows); }},
                    {"library", [&rows] { return countMatches(rows.sets, rows.filter); }},
                    {"variant_map", [&rows] { return countByVariantMap(rows); }},
                    {"sqlite", [&rows] { return rows.table.count(); }}});
}

// ---- lookup: every property of a set read once, by a reference that owns the key's own string

struct Lookup
{
    explicit Lookup(int count)
    {
        const char *const subjects[] = {
            "camera", "type",     "start",  "duration", "size", "score",  "archived", "note",
            "site",   "operator", "stream", "codec",    "zone", "export", "storage",  "trigger"};
        const char *const aspects[] = {"",      "_id",    "_name",  "_state",
                                       "_from", "_until", "_count", "_comment"};
        for (int i = 0; i < count; ++i) {
            const QString name = QLatin1String(subjects[i % 16]) + QLatin1String(aspects[i / 16]);
            const boost::shared_ptr<BaseProperty> property(
                i % 2 == 0 ? static_cast<BaseProperty *>(new IntProperty(name, QString(), i))
                           : new StringProperty(name, QString(), QString::number(i)));
            set.add(property);
            map.insert(name, property->variantValue());
        }
        for (auto it = map.constBegin(); it != map.constEnd(); ++it)
            keys.push_back(it.key());
        std::shuffle(keys.begin(), keys.end(), std::mt19937(42));
        for (const QString &key : keys)
            references.emplace_back(set.find(key).key(), QString());
    }

    int count() const { return static_cast<int>(keys.size()); }

    PropertySet set;
    QMap<QString, QVariant> map;
    std::vector<QString> keys;
    std::vector<ValueExpression> references;
};

QVariant byReference(const Lookup &lookup, size_t index)
{
    return lookup.references[index].evaluate(lookup.set, nullptr);
}

QVariant byMap(const Lookup &lookup, size_t index)
{
    return *lookup.map.constFind(lookup.keys[index]);
}

template <QVariant (*Read)(const Lookup &, size_t)>
void measureLookup(const char *name, const Lookup &lookup)
{
    const QByteArray title =
        QByteArray("lookup/") + name + '/' + QByteArray::number(lookup.count());
    benchmark::RegisterBenchmark(title.constData(), [&lookup](benchmark::State &state) {
        for (auto _ : state) {
            for (size_t i = 0; i < lookup.keys.size(); ++i) {
                QVariant value = Read(lookup, i);
                benchmark::DoNotOptimize(value);
            }
        }
        reportTimePerItem(state, lookup.count());
    });
}

void registerLookup(const Lookup &lookup)
{
    for (size_t i = 0; i < lookup.keys.size(); ++i) {
        const QVariant value = byReference(lookup, i);
        require(value.isValid() && value == byMap(lookup, i),
                "lookup: contestants read different values");
    }
    measureLookup<byReference>("library", lookup);
    measureLookup<byMap>("map", lookup);
}

} // namespace

int main(int argc, char **argv)
{
    const Rows inCache(1000);
    const Rows inMemory(100000);
    registerEvaluation(inCache);
    registerEvaluation(inMemory);

    const Lookup lookups[] = {Lookup(8), Lookup(32), Lookup(128)};
    for (const Lookup &lookup : lookups)
        registerLookup(lookup);

    return runBenchmarks(argc, argv);
}
