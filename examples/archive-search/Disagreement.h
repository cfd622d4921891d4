#pragma once

#include <QString>
#include <QVariant>

#include <vector>

class Database;
class Filter;

/// A condition for which memory and SQLite have different values.
struct ConditionDifference
{
    QString condition;
    QVariant inMemory; ///< an invalid QVariant is NULL, here and below
    QVariant inSqlite;
    QString reason;
};

/// A row that matches on one side only.
struct Disagreement
{
    QString path;
    bool inMemory = false;
    bool inSqlite = false;
    std::vector<ConditionDifference> conditions; ///< empty if each of them agrees by itself
};

/// What is said where no rule is known: never a guess.
QString unexplained();

/// Traces a row's disagreement to the conditions of the filter.
Disagreement explainDisagreement(const Filter &filter, Database &database, qlonglong id,
                                 bool inMemory);
