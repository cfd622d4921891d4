#include "Disagreement.h"

#include "Database.h"
#include "Filter.h"

#include <Vokit/TypedProperties>

#include <cmath>

using vogen::PropertySet;
using vogen::StringProperty;

namespace {

// Both NULL, or both true, or both false.
bool sameTruth(const QVariant &a, const QVariant &b)
{
    return a.isValid() == b.isValid() && a.toBool() == b.toBool();
}

// TypeTool compares doubles by their difference cut to a whole number; SQLite compares them
// exactly.
QString closeDoublesReason(const Condition &condition, const PropertySet &recording)
{
    const QVariant value = recording[condition.column].variantValue();
    const QList<QVariant> constants = condition.expression->collectPlaceholders();
    for (const QVariant &constant : constants) {
        if (value.type() != QVariant::Double || constant.type() != QVariant::Double)
            continue;
        const double difference = std::abs(value.toDouble() - constant.toDouble());
        if (difference > 0 && difference < 1) {
            return QStringLiteral("%1 is %2 and the limit is %3: numbers with a fraction that "
                                  "differ by less than 1 are the same in memory, and not in SQLite")
                .arg(condition.column, value.toString(), constant.toString());
        }
    }
    return {};
}

QString reasonFor(const Condition &condition, const PropertySet &recording,
                  const QVariant &inSqlite)
{
    if (condition.column.isEmpty())
        return QStringLiteral("a loaded filter is not traced any further");
    if (condition.rule) {
        const QString text = recording[condition.column].variantValue().toString();
        const bool byRule = condition.rule->inSqlite(text) == inSqlite.toBool();
        return byRule ? condition.rule->reason : unexplained();
    }
    const QString reason = closeDoublesReason(condition, recording);
    return reason.isEmpty() ? unexplained() : reason;
}

} // namespace

QString unexplained()
{
    return QStringLiteral("no known rule explains it");
}

Disagreement explainDisagreement(const Filter &filter, Database &database, qlonglong id,
                                 bool inMemory)
{
    const PropertySet recording = database.recording(id);
    Disagreement disagreement;
    disagreement.path = StringProperty::getValue(recording[QStringLiteral("path")], QString());
    disagreement.inMemory = inMemory;
    disagreement.inSqlite = !inMemory;
    for (const Condition &condition : filter.conditions()) {
        const QVariant here = condition.expression->evaluate(recording, nullptr);
        const QVariant there = database.evaluate(condition.expression, id);
        if (sameTruth(here, there))
            continue;
        disagreement.conditions.push_back(
            {condition.expression->toString(vogen::Expression::PrintReadable), here, there,
             reasonFor(condition, recording, there)});
    }
    return disagreement;
}
