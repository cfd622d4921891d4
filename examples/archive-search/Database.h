#pragma once

#include <Vokit/Expression>
#include <Vokit/PropertySet>

#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>

/**
 * The recordings as a table of SQLite, and printed filters run on it.
 *
 * All functions throw Failure where SQLite reports an error. Nothing is in the file before
 * commit(); without it the file keeps the table it had. One object at a time.
 */
class Database
{
public:
    /// @param file empty for a database in memory. The table is made anew.
    explicit Database(const QString &file);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    void insert(qlonglong id, const vogen::PropertySet &recording);
    void commit();

    /**
     * Calls @p found with the id of each row for which the filter holds; the empty one holds for
     * all.
     *
     * @param order a term of ORDER BY, where ids decide between equal rows; if empty, the order is
     *        SQLite's choice
     */
    void select(const vogen::ExpressionHandle &filter, const vogen::ExpressionHandle &order,
                const std::function<void(qlonglong)> &found);

    /// Calls @p found with the values of @p columns, a list, for each group of those rows.
    void group(const vogen::ExpressionHandle &filter, const vogen::ExpressionHandle &columns,
               const vogen::ExpressionHandle &key,
               const std::function<void(const QList<QVariant> &)> &found);

    /// What SQLite makes of the expression for one row; an invalid QVariant is NULL.
    QVariant evaluate(const vogen::ExpressionHandle &expression, qlonglong id);

    /// The row, as a recording again.
    vogen::PropertySet recording(qlonglong id);

private:
    void makeTable();
    void prepare(QSqlQuery &query, const QString &statement) const;
    void execute(QSqlQuery &query) const;
    QSqlQuery run(const QString &statement, const QList<QVariant> &values = {}) const;
    [[noreturn]] void fail(const QSqlError &error) const;

    QString m_label; ///< what messages call the database
    QSqlDatabase m_database;
    QSqlQuery m_insert;
};
