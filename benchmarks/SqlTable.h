#pragma once

#include <Vokit/Vokit.h>

#include <QString>
#include <QVariant>

struct sqlite3;
struct sqlite3_stmt;

/// SQLite with the rows in memory, and the library's own text of the filter as the condition.
class SqlTable
{
public:
    /// @param columns names and types, as CREATE TABLE wants them
    explicit SqlTable(const QString &columns);
    ~SqlTable();
    Q_DISABLE_COPY(SqlTable)

    /// A value for each column, before prepare().
    void insert(const QVariantList &row);
    void prepare(const vogen::Expression &filter);
    /// The number of rows that match; -1 where SQLite fails.
    int count() const;

private:
    void check(int status);
    void execute(const QString &sql);
    sqlite3_stmt *statement(const QString &sql);
    void bind(sqlite3_stmt *target, const QVariantList &values);
    void bind(sqlite3_stmt *target, int index, const QVariant &value);

    sqlite3 *m_database = nullptr;
    sqlite3_stmt *m_insertion = nullptr;
    sqlite3_stmt *m_count = nullptr;
};
