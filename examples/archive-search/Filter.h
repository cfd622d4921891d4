#pragma once

#include "RuleNotes.h"

#include <Vokit/Expression>
#include <Vokit/PropertySet>

#include <QString>

#include <array>
#include <optional>
#include <vector>

struct Options;

/// What one option asks of one column.
struct Condition
{
    QString column; ///< empty for a loaded filter, which may ask several
    vogen::ExpressionHandle expression;
    std::optional<TextRule> rule = {};
};

/**
 * The options as an expression over the columns of a recording.
 *
 * The conditions are joined by AND, or by OR with --any. Without conditions the expression is the
 * empty one, and every recording matches.
 */
class Filter
{
public:
    /// @throws Failure for a filter file that can't be used
    explicit Filter(const Options &options);

    bool isEmpty() const { return m_expression->isEmpty(); }
    /// NULL is no match, as in a WHERE.
    bool matches(const vogen::PropertySet &recording) const;

    const vogen::ExpressionHandle &expression() const { return m_expression; }
    /// The parts, for tracing a result to the condition that made it.
    const std::vector<Condition> &conditions() const { return m_conditions; }
    /// The rules by which memory and SQLite differ on them, a line each.
    QStringList notes() const;

private:
    std::vector<Condition> m_conditions;
    vogen::ExpressionHandle m_expression;
};

/// A way to print a filter, under the name it has in reports.
struct NamedStyle
{
    const char *key;
    const char *heading;
    vogen::Expression::PrintStyle style;
};

extern const std::array<NamedStyle, 4> gStyles;
