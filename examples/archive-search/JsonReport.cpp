#include "JsonReport.h"

#include "AuditTrail.h"
#include "Query.h"
#include "Search.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using vogen::Expression;
using vogen::ExpressionHandle;
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

QJsonObject orderObject(const SortKey &key, const OrderResult &order)
{
    const OrderComparison &comparison = order.comparison;
    QJsonObject object{
        {QStringLiteral("by"), key.text()},
        {QStringLiteral("rows"), comparison.rows},
        {QStringLiteral("differences"), comparison.differences},
        {QStringLiteral("memoryMilliseconds"), milliseconds(order.memoryNanoseconds)},
        {QStringLiteral("sqliteMilliseconds"), milliseconds(order.sqliteNanoseconds)},
    };
    if (comparison.differences > 0) {
        object.insert(QStringLiteral("first"),
                      QJsonObject{{QStringLiteral("place"), comparison.place},
                                  {QStringLiteral("memory"), comparison.inMemory},
                                  {QStringLiteral("sqlite"), comparison.inSqlite},
                                  {QStringLiteral("reason"), comparison.reason}});
    }
    return object;
}

// The values of one group on one side, or what the columns mean there.
template <typename Value>
QJsonObject columnsObject(Value valueOf)
{
    QJsonObject object;
    int index = 0;
    for (const GroupColumn &column : groupColumns())
        object.insert(QLatin1String(column.name), valueOf(column, index++));
    return object;
}

QJsonValue groupSide(const QList<QVariant> &values)
{
    if (values.isEmpty())
        return QJsonValue();
    return columnsObject([&](const GroupColumn & /*column*/, int index) {
        return QJsonValue::fromVariant(values.at(index));
    });
}

QJsonObject groupsObject(const Groups &groups)
{
    QJsonArray array;
    const QMap<QString, Group> &byExtension = groups.byExtension();
    for (auto group = byExtension.begin(); group != byExtension.end(); ++group) {
        array.append(QJsonObject{{QStringLiteral("extension"), group.key()},
                                 {QStringLiteral("memory"), groupSide(group->inMemory)},
                                 {QStringLiteral("sqlite"), groupSide(group->inSqlite)}});
    }
    const QJsonObject meaning{
        {QStringLiteral("memory"), columnsObject([](const GroupColumn &column, int /*index*/) {
             return QLatin1String(column.inMemory);
         })},
        {QStringLiteral("sqlite"), columnsObject([](const GroupColumn &column, int /*index*/) {
             return QLatin1String(column.inSqlite);
         })}};
    return {{QStringLiteral("meaning"), meaning},
            {QStringLiteral("agree"), groups.agree()},
            {QStringLiteral("byExtension"), array}};
}

QJsonObject codeObject(const ExpressionHandle &expression, Expression::PrintStyle extra)
{
    return {{QStringLiteral("code"), expression->toString(Expression::PrintCode)},
            {QStringLiteral("sql"), expression->toString(Expression::PrintSql | extra)}};
}

QJsonObject codeObjects(const Query &query)
{
    QJsonObject object;
    if (!query.filter.isEmpty()) {
        object.insert(QStringLiteral("filter"),
                      codeObject(query.filter.expression(), Expression::PrintReadable));
    }
    if (query.sortKey) {
        object.insert(QStringLiteral("sortKey"),
                      codeObject(query.sortKey->expression(), Expression::PrintOrderBy));
    }
    if (query.grouped) {
        object.insert(QStringLiteral("columns"),
                      codeObject(groupSelection(), Expression::PrintReadable));
    }
    return object;
}

QJsonObject auditObject(const AuditReport &audit)
{
    QJsonObject object{{QStringLiteral("file"), audit.file},
                       {QStringLiteral("user"), audit.user},
                       {QStringLiteral("suspended"), audit.suspended}};
    if (audit.entries)
        object.insert(QStringLiteral("entries"), QJsonArray::fromStringList(*audit.entries));
    return object;
}

QJsonObject exportObject(const MatchList &matches)
{
    return {{QStringLiteral("file"), matches.file},
            {QStringLiteral("rows"), static_cast<qlonglong>(matches.ids.size())},
            {QStringLiteral("oldest"), static_cast<qlonglong>(matches.oldest)},
            {QStringLiteral("newest"), static_cast<qlonglong>(matches.newest)}};
}

} // namespace

QByteArray jsonReport(const Query &query, const SearchResult &result, const AuditReport &audit)
{
    QJsonObject sqlite = sideObject(result.sqlite);
    sqlite.insert(QStringLiteral("loadMilliseconds"), milliseconds(result.loadNanoseconds));
    QJsonObject report{
        {QStringLiteral("filter"), filterObject(query.filter)},
        {QStringLiteral("bindValues"), bindValues(query.filter)},
        {QStringLiteral("rows"), result.rows},
        {QStringLiteral("skipped"), result.skipped.count},
        {QStringLiteral("notUtf8"), result.notUtf8},
        {QStringLiteral("memory"), sideObject(result.memory)},
        {QStringLiteral("sqlite"), sqlite},
        {QStringLiteral("matches"), matches(result.firstMatches)},
        {QStringLiteral("disagreementCount"), result.disagreementCount},
        {QStringLiteral("disagreements"), disagreements(result.disagreements)},
        {QStringLiteral("notes"), QJsonArray::fromStringList(query.notes())},
        {QStringLiteral("log"), auditObject(audit)},
    };
    if (result.order)
        report.insert(QStringLiteral("order"), orderObject(*query.sortKey, *result.order));
    if (query.grouped)
        report.insert(QStringLiteral("groups"), groupsObject(result.groups));
    if (query.withCode)
        report.insert(QStringLiteral("code"), codeObjects(query));
    if (result.exported)
        report.insert(QStringLiteral("export"), exportObject(*result.exported));
    return QJsonDocument(report).toJson();
}

QByteArray jsonReport(const AuditReport &audit)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("log"), auditObject(audit)}}).toJson();
}
