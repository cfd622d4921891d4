#pragma once

#include <Vokit/Expression>
#include <Vokit/PropertySet>

#include <QString>

/**
 * What matches are ordered by: a column, or its negation, which prints as "column DESC".
 *
 * Values that TypeTool takes for the same leave rows in the order of their ids, here as in SQLite.
 */
class SortKey
{
public:
    /// @param text the name of a column, with "-" in front for the reverse order
    /// @throws Failure for what is no column
    explicit SortKey(const QString &text);

    /// As it was asked for.
    const QString &text() const { return m_text; }
    const vogen::ExpressionHandle &expression() const { return m_expression; }
    /// The term of an ORDER BY.
    QString sql() const;

    QVariant valueOf(const vogen::PropertySet &recording) const;
    static bool isLess(const QVariant &a, const QVariant &b);

    /// How SQLite may order differently by rule, in one line; empty if it can't.
    QString rule() const;
    /// Whether that rule can be why memory puts @p first ahead, and SQLite @p second.
    bool explains(const vogen::PropertySet &first, const vogen::PropertySet &second) const;

private:
    enum class Kind { Exact, Text, Double, DateDescending };

    Kind kind() const;

    QString m_text;
    bool m_descending;
    QString m_column;
    vogen::ExpressionHandle m_expression;
};
