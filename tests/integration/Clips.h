#pragma once

#include "support/Trees.h"

#include <Vokit/TypeTool>
#include <Vokit/TypedProperties>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

/// The same clips in both worlds: as property sets, and as the rows of a table in SQLite.
namespace test {

/// An invalid value is a property that isn't there, and NULL in the table.
struct Clip
{
    QVariant camera;
    QVariant type;
    QVariant start;
    QVariant duration;
    QVariant score;
    QVariant archived;
    QVariant size;
};

inline const QList<Clip> &clips()
{
    const auto at = [](int month, int day) {
        return QDateTime(QDate(2026, month, day), QTime(12, 0), Qt::UTC);
    };
    const QVariant none;
    static const QList<Clip> list{
        {"yard", "alarm", at(3, 5), 10, 0.25, false, 9ULL},   // 0
        {"gate", "motion", at(3, 6), 30, 0.75, true, 70ULL},  // 1
        {"O'Hara's", "alarm", at(4, 1), 60, 2.5, true, 8ULL}, // 2
        {"yard", none, at(4, 2), none, 1.0, none, none},      // 3
        {none, "motion", none, 90, none, false, none},        // 4
        {"Yard", "", at(1, 1), -5, -1.5, false, 100ULL},      // 5
    };
    return list;
}

/// The properties of one clip, those that are there. None has a "note", which is a column.
inline vogen::PropertySet propertiesOf(const Clip &clip)
{
    using namespace vogen;
    PropertySet set;
    const auto add = [&set](const QVariant &value, BaseProperty *property) {
        const boost::shared_ptr<BaseProperty> owned(property);
        if (value.isValid() && owned->setVariantValue(value))
            set.add(owned);
    };
    add(clip.camera, new StringProperty("camera name"));
    add(clip.type, new StringProperty("type"));
    add(clip.start, new DateTimeProperty("start"));
    add(clip.duration, new IntProperty("duration"));
    add(clip.score, new DoubleProperty("score"));
    add(clip.archived, new BoolProperty("archived"));
    add(clip.size, new U64Property("size"));
    return set;
}

/// An SQLite in memory that holds the clips, each under its index as id.
class ClipTable
{
public:
    /// Opens and fills it. Returns the error's text.
    QString open(const QString &options = QString())
    {
        m_database = QSqlDatabase::addDatabase("QSQLITE", "clips" + options);
        m_database.setDatabaseName(":memory:");
        m_database.setConnectOptions(options);
        if (!m_database.open())
            return m_database.lastError().text();
        QSqlQuery query(m_database);
        if (!query.exec("CREATE TABLE clips (id INTEGER PRIMARY KEY, camera_name TEXT, type TEXT,"
                        " start INTEGER, duration INTEGER, score REAL, archived INTEGER,"
                        " size INTEGER, note TEXT)") ||
            !query.prepare("INSERT INTO clips VALUES (?,?,?,?,?,?,?,?,NULL)"))
            return query.lastError().text();
        for (int id = 0; id < clips().size(); ++id) {
            const Clip &clip = clips().at(id);
            query.addBindValue(id);
            for (const QVariant &value : {clip.camera, clip.type, clip.start, clip.duration,
                                          clip.score, clip.archived, clip.size})
                query.addBindValue(stored(value));
            if (!query.exec())
                return query.lastError().text();
        }
        return QString();
    }

    /// Runs the expression's text between two other texts, with its values bound where the style
    /// has placeholders. Adds the records, and returns the error's text.
    QString select(const QString &before, const vogen::ExpressionHandle &e, Style style,
                   const QString &after, QList<QVariantList> *records) const
    {
        QSqlQuery query(m_database);
        if (!query.prepare(before + e->toString(style) + after))
            return messageOf(query);
        if (style & vogen::Expression::PrintPlaceholders) {
            for (const QVariant &value : e->collectPlaceholders())
                query.addBindValue(value);
        }
        if (!query.exec())
            return messageOf(query);
        while (query.next()) {
            QVariantList record;
            for (int i = 0; i < query.record().count(); ++i)
                record.append(query.isNull(i) ? QVariant() : query.value(i));
            records->append(record);
        }
        return query.lastError().isValid() ? messageOf(query) : QString();
    }

private:
    static QVariant stored(const QVariant &value)
    {
        if (value.type() == QVariant::DateTime)
            return QVariant(qlonglong(vogen::TypeTool::dateMicroSeconds(value)));
        if (value.type() == QVariant::ULongLong)
            return QVariant(value.toLongLong());
        return value;
    }

    // SQLite's own words, or those of the driver if it did not come to SQLite.
    static QString messageOf(const QSqlQuery &query)
    {
        const QString text = query.lastError().databaseText();
        return text.isEmpty() ? query.lastError().driverText() : text;
    }

    QSqlDatabase m_database;
};

} // namespace test
