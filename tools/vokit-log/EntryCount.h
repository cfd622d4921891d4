#pragma once

#include "GapWarnings.h"

#include <QHash>

#include <vector>

/// Counts entries by one of their columns.
class EntryCount : public GapWarnings
{
public:
    /// What entries can be counted by. Its name is the word for --by.
    struct Column
    {
        const char *name;
        const char *heading;
        const char *without; ///< stands for the entries that have none
        QString (*valueOf)(const vo::VolRow &);
        bool isSortedByName;
    };
    static const std::vector<Column> &columns();

    struct Line
    {
        QString name;
        qint64 count;
    };

    explicit EntryCount(const Column &column)
        : m_column(column)
    {}

    void entry(const vo::VolFile &file, const vo::VolRow &row) override;

    const Column &column() const { return m_column; }
    /// The largest counts first, and days by date; behind them what stands for no name of its own.
    std::vector<Line> lines() const;
    qint64 total() const { return m_total; }

private:
    const Column &m_column;
    QHash<QString, qint64> m_counts;
    qint64 m_without = 0;
    qint64 m_others = 0; ///< of names beyond the most that are kept
    qint64 m_total = 0;
};
