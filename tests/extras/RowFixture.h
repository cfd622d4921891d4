#pragma once

#include "VolReading.h"

#include <Vokit/Vokit.h>

#include <VokitExtras/VolRow>

namespace test {

/// An application's class: values of each type, and names that collide.
class Visit : public vo::LogEntryOf<Visit, 0x56697374, vo::LogCatAccess>
{
public:
    Visit()
        : m_time(0x74696D65, "time", QDateTime()) // a name of every row
        , m_user(0x75736572, "user", QString())   // likewise
        , m_upper(0x54494D45, "Time", QString())  // that of the entry's own value
        , m_door(0x646F6F72, "door", QString())
        , m_again(0x64723220, "door", QString()) // the same again
        , m_count(0x636E7420, "count", 0)
        , m_due(0x64756544, "due", QDateTime()) // its identifier is "dueD"
    {
        for (vo::LogValue *value : std::initializer_list<vo::LogValue *>{
                 &m_time, &m_user, &m_upper, &m_door, &m_again, &m_count, &m_due})
            append(value);
    }
    static vo::LogEntry *create() { return new Visit; }
    QString description() const override
    {
        return QStringLiteral("%1 visits").arg(m_count.value());
    }

    static constexpr const char *sAction = "Visited";
    static constexpr const char *sDescriptionText = "";

private:
    static const vo::LogEntryRegistrar sRegistrar;
    vo::TLogValue<QDateTime> m_time;
    vo::TLogValue<QString> m_user;
    vo::TLogValue<QString> m_upper;
    vo::TLogValue<QString> m_door;
    vo::TLogValue<QString> m_again;
    vo::TLogValue<int> m_count;
    vo::TLogValue<QDateTime> m_due;
};
inline const vo::LogEntryRegistrar Visit::sRegistrar = Visit::registrar();

inline vo::VolEntry volEntry(const QByteArray &element)
{
    const std::vector<vo::VolEntry> entries = readVol("<Entries>" + element).entries();
    return entries.empty() ? vo::VolEntry() : entries.front();
}

/// "text:ann", "int:7", "date:2026-11-21T15:04:05"
inline QString told(const QVariant &value)
{
    switch (value.type()) {
    case QVariant::String:
        return QStringLiteral("text:") + value.toString();
    case QVariant::Int:
        return QStringLiteral("int:") + value.toString();
    case QVariant::DateTime:
        return QStringLiteral("date:") + value.toDateTime().toString(Qt::ISODate);
    default:
        return QLatin1String(value.typeName());
    }
}

/// "NULL" for what isn't in the set.
inline QString column(const vo::VolRow &row, const QString &name)
{
    const auto found = row.set().find(name);
    return found == row.set().end() ? QStringLiteral("NULL") : told((*found)->variantValue());
}

inline QStringList columns(const vo::VolRow &row)
{
    QStringList list;
    for (const QString &name : row.set().allPropertyNames())
        list.append(name + QLatin1Char('=') + column(row, name));
    return list;
}

inline QStringList values(const vo::VolRow &row)
{
    QStringList list;
    for (const vo::VolRow::Value &value : row.values())
        list.append(value.name + QLatin1Char('=') + told(value.value));
    return list;
}

} // namespace test
