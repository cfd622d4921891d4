#include "Database.h"

#include "Failure.h"
#include "FileName.h"
#include "Recording.h"

#include <QSqlError>
#include <QSqlRecord>
#include <QStringList>

using vogen::Expression;
using vogen::ExpressionHandle;

namespace {

// Absolute, since SQLite reads ":memory:" and "file:x" differently.
QString sqliteName(const QString &file)
{
    return file.isEmpty() ? QStringLiteral(":memory:") : absoluteName(file);
}

constexpr Expression::PrintStyle gBindable = Expression::PrintSql | Expression::PrintPlaceholders;

QString bindable(const ExpressionHandle &expression)
{
    return expression->toString(gBindable);
}

QString whereClause(const ExpressionHandle &filter)
{
    return filter->isEmpty() ? QString() : QLatin1String(" WHERE ") + bindable(filter);
}

} // namespace

Database::Database(const QString &file)
    : m_label(file.isEmpty() ? QStringLiteral("in memory")
                             : QLatin1Char('\'') + file + QLatin1Char('\''))
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE")))
{
    m_database.setDatabaseName(sqliteName(file));
    m_database.setConnectOptions(QStringLiteral("QSQLITE_ENABLE_REGEXP"));
    if (!m_database.open())
        fail(m_database.lastError());
    if (!m_database.transaction())
        fail(m_database.lastError());
    makeTable();
}

Database::~Database()
{
    m_insert = QSqlQuery();
    m_database.close();
}

void Database::insert(qlonglong id, const vogen::PropertySet &recording)
{
    int place = 0;
    m_insert.bindValue(place, id);
    for (const Column &column : recordingColumns())
        m_insert.bindValue(++place, toSqlValue(recording[column.name].variantValue()));
    execute(m_insert);
}

void Database::commit()
{
    m_insert.finish();
    if (!m_database.commit())
        fail(m_database.lastError());
}

void Database::select(const ExpressionHandle &filter, const ExpressionHandle &order,
                      const std::function<void(qlonglong)> &found)
{
    QString statement = QLatin1String("SELECT id FROM recordings") + whereClause(filter);
    if (!order->isEmpty()) {
        statement += QLatin1String(" ORDER BY ") +
                     order->toString(gBindable | Expression::PrintOrderBy) + QLatin1String(", id");
    }
    QSqlQuery query = run(statement, filter->collectPlaceholders() + order->collectPlaceholders());
    while (query.next())
        found(query.value(0).toLongLong());
    if (query.lastError().isValid())
        fail(query.lastError());
}

void Database::group(const ExpressionHandle &filter, const ExpressionHandle &columns,
                     const ExpressionHandle &key,
                     const std::function<void(const QList<QVariant> &)> &found)
{
    const QString statement = QLatin1String("SELECT ") + bindable(columns) +
                              QLatin1String(" FROM recordings") + whereClause(filter) +
                              QLatin1String(" GROUP BY ") + bindable(key);
    QSqlQuery query =
        run(statement, columns->collectPlaceholders() + filter->collectPlaceholders() +
                           key->collectPlaceholders());
    while (query.next()) {
        QList<QVariant> values;
        for (int i = 0; i < query.record().count(); ++i)
            values.append(query.value(i));
        found(values);
    }
    if (query.lastError().isValid())
        fail(query.lastError());
}

QVariant Database::evaluate(const ExpressionHandle &expression, qlonglong id)
{
    const QString statement =
        QStringLiteral("SELECT %1 FROM recordings WHERE id = ?").arg(bindable(expression));
    QSqlQuery query = run(statement, expression->collectPlaceholders() << id);
    return query.next() && !query.isNull(0) ? query.value(0) : QVariant();
}

vogen::PropertySet Database::recording(qlonglong id)
{
    const QStringList names = columnNames();
    const QString statement =
        QStringLiteral("SELECT %1 FROM recordings WHERE id = ?").arg(names.join(QLatin1Char(',')));
    QSqlQuery query = run(statement, {id});
    std::vector<QVariant> values;
    if (query.next()) {
        for (int i = 0; i < names.size(); ++i)
            values.push_back(query.value(i));
    }
    return recordingFromSql(values);
}

void Database::makeTable()
{
    QString columns = QStringLiteral("id INTEGER PRIMARY KEY");
    QString places = QStringLiteral("?");
    for (const Column &column : recordingColumns()) {
        columns +=
            QStringLiteral(", %1 %2 NOT NULL").arg(column.name, QLatin1String(column.sqlType));
        places += QLatin1String(", ?");
    }
    run(QStringLiteral("DROP TABLE IF EXISTS recordings"));
    run(QStringLiteral("CREATE TABLE recordings (%1)").arg(columns));
    m_insert = QSqlQuery(m_database);
    prepare(m_insert, QStringLiteral("INSERT INTO recordings VALUES (%1)").arg(places));
}

void Database::prepare(QSqlQuery &query, const QString &statement) const
{
    query.setForwardOnly(true);
    if (!query.prepare(statement))
        fail(query.lastError());
}

void Database::execute(QSqlQuery &query) const
{
    if (!query.exec())
        fail(query.lastError());
}

QSqlQuery Database::run(const QString &statement, const QList<QVariant> &values) const
{
    QSqlQuery query(m_database);
    prepare(query, statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    execute(query);
    return query;
}

void Database::fail(const QSqlError &error) const
{
    // What Qt itself refuses, such as values without a place, has no text of SQLite's.
    const QString reason =
        error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    throw Failure(QStringLiteral("cannot use database %1: %2").arg(m_label, reason));
}
