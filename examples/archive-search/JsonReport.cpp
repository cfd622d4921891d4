#include "JsonReport.h"

#include "Filter.h"
#include "Search.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using vogen::PropertySet;

namespace {

double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) / 1e6;
}

QJsonObject filterObject(const Filter &filter)
{
    QJsonObject object;
    for (const NamedStyle &named : gStyles)
        object.insert(QLatin1String(named.key), filter.expression()->toString(named.style));
    return object;
}

QJsonArray bindValues(const Filter &filter)
{
    QJsonArray array;
    const QList<QVariant> values = filter.expression()->collectPlaceholders();
    for (const QVariant &value : values) {
        array.append(QJsonObject{{QStringLiteral("type"), QLatin1String(value.typeName())},
                                 {QStringLiteral("value"), QJsonValue::fromVariant(value)}});
    }
    return array;
}

QJsonArray matches(const std::vector<PropertySet> &recordings)
{
    QJsonArray array;
    for (const PropertySet &recording : recordings)
        array.append(QJsonObject::fromVariantMap(recording.variantValues()));
    return array;
}

QJsonObject differenceObject(const ConditionDifference &difference)
{
    const auto truth = [](const QVariant &value) {
        return value.isValid() ? QJsonValue(value.toBool()) : QJsonValue();
    };
    return {{QStringLiteral("condition"), difference.condition},
            {QStringLiteral("memory"), truth(difference.inMemory)},
            {QStringLiteral("sqlite"), truth(difference.inSqlite)},
            {QStringLiteral("reason"), difference.reason}};
}

QJsonArray disagreements(const std::vector<Disagreement> &rows)
{
    QJsonArray array;
    for (const Disagreement &row : rows) {
        QJsonArray conditions;
        for (const ConditionDifference &difference : row.conditions)
            conditions.append(differenceObject(difference));
        QJsonObject object{{QStringLiteral("path"), row.path},
                           {QStringLiteral("memory"), row.inMemory},
                           {QStringLiteral("sqlite"), row.inSqlite},
                           {QStringLiteral("conditions"), conditions}};
        if (conditions.isEmpty())
            object.insert(QStringLiteral("reason"), unexplained());
        array.append(object);
    }
    return array;
}

QJsonObject sideObject(const SideResult &side)
{
    return {{QStringLiteral("matches"), side.matches},
            {QStringLiteral("milliseconds"), milliseconds(side.nanoseconds)}};
}

} // namespace

QByteArray jsonReport(const Filter &filter, const SearchResult &result)
{
    QJsonObject sqlite = sideObject(result.sqlite);
    sqlite.insert(QStringLiteral("loadMilliseconds"), milliseconds(result.loadNanoseconds));
    const QJsonObject report{
        {QStringLiteral("filter"), filterObject(filter)},
        {QStringLiteral("bindValues"), bindValues(filter)},
        {QStringLiteral("rows"), result.rows},
        {QStringLiteral("skipped"), result.skipped.count},
        {QStringLiteral("notUtf8"), result.notUtf8},
        {QStringLiteral("memory"), sideObject(result.memory)},
        {QStringLiteral("sqlite"), sqlite},
        {QStringLiteral("matches"), matches(result.firstMatches)},
        {QStringLiteral("disagreementCount"), result.disagreementCount},
        {QStringLiteral("disagreements"), disagreements(result.disagreements)},
    };
    return QJsonDocument(report).toJson();
}
