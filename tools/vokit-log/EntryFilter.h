#pragma once

#include <VokitExtras/VolRow>

#include <Vokit/Expression>

#include <QStringList>
#include <QStringMatcher>

#include <vector>

class QCommandLineParser;

/// Those that choose entries, and the one that saves the choice.
void addFilterOptions(QCommandLineParser &parser);

/// The filters of the command line: an expression over the columns of a row, and the texts that
/// some column has to contain. An entry has to match them all.
class EntryFilter
{
public:
    /**
     * Writes the file that --save-filter names. It comes last: what else the command line has is
     * right.
     *
     * @throws UsageFailure for values that mean nothing, and for what makes no filter to save
     * @throws Failure for a filter file that can't be used, or not be written
     */
    explicit EntryFilter(const QCommandLineParser &parser);

    /// Those of a row's set that the filter looks at, for VolRow::setColumns().
    const QStringList &columns() const { return m_columns; }

    /// NULL is no match.
    bool matches(const vo::VolRow &row);

    /// If dates were asked for, and some entry had none that could be read.
    void warnOfUnreadTimes() const;

private:
    vogen::ExpressionHandle m_expression;
    std::vector<QStringMatcher> m_texts;
    bool m_asksForTime;
    QStringList m_columns;
    qint64 m_unreadTimes = 0;
};
