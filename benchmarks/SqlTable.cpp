#include "SqlTable.h"

#include "Report.h"

#include <QStringList>

#include <sqlite3.h>

using namespace vogen;

SqlTable::SqlTable(const QString &columns)
{
    check(sqlite3_open(":memory:", &m_database));
    execute("CREATE TABLE recordings (" + columns + ")");
    execute("BEGIN");
}

SqlTable::~SqlTable()
{
    sqlite3_finalize(m_insertion);
    sqlite3_finalize(m_count);
    sqlite3_close(m_database);
}

void SqlTable::insert(const QVariantList &row)
{
    if (!m_insertion) {
        const QString marks = QStringLiteral(",?").repeated(row.size()).mid(1);
        m_insertion = statement("INSERT INTO recordings VALUES (" + marks + ")");
    }
    bind(m_insertion, row);
    require(sqlite3_step(m_insertion) == SQLITE_DONE, sqlite3_errmsg(m_database));
    sqlite3_reset(m_insertion);
}

void SqlTable::prepare(const Expression &filter)
{
    const auto placeholders = Expression::PrintSql | Expression::PrintPlaceholders;
    execute("COMMIT");
    m_count = statement("SELECT count(*) FROM recordings WHERE " + filter.toString(placeholders));
    bind(m_count, filter.collectPlaceholders());
}

int SqlTable::count() const
{
    const bool hasRow = sqlite3_step(m_count) == SQLITE_ROW;
    const int matches = hasRow ? sqlite3_column_int(m_count, 0) : -1;
    sqlite3_reset(m_count);
    return matches;
}

void SqlTable::check(int status)
{
    require(status == SQLITE_OK, sqlite3_errmsg(m_database));
}

void SqlTable::execute(const QString &sql)
{
    check(sqlite3_exec(m_database, sql.toUtf8().constData(), nullptr, nullptr, nullptr));
}

sqlite3_stmt *SqlTable::statement(const QString &sql)
{
    sqlite3_stmt *prepared = nullptr;
    check(sqlite3_prepare_v2(m_database, sql.toUtf8().constData(), -1, &prepared, nullptr));
    return prepared;
}

void SqlTable::bind(sqlite3_stmt *target, const QVariantList &values)
{
    int index = 0;
    for (const QVariant &value : values)
        bind(target, ++index, value);
}

void SqlTable::bind(sqlite3_stmt *target, int index, const QVariant &value)
{
    if (value.type() == QVariant::String) {
        const QByteArray text = value.toString().toUtf8();
        check(sqlite3_bind_text(target, index, text.constData(), text.size(), SQLITE_TRANSIENT));
    } else if (value.type() == QVariant::Double) {
        check(sqlite3_bind_double(target, index, value.toDouble()));
    } else {
        check(sqlite3_bind_int64(target, index, value.toLongLong()));
    }
}
