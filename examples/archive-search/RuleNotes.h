#pragma once

#include <Vokit/Expression>

#include <QString>
#include <QStringList>

#include <functional>

/// A rule by which memory and SQLite may differ on a condition about a text.
struct TextRule
{
    QString reason; ///< for a difference; notesOnCalls() tells the rule itself
    /// What SQLite makes of a text by its side of the rule: tells whether a difference is the
    /// rule's.
    std::function<bool(const QString &text)> inSqlite;
};

TextRule likeRule(const QString &pattern);
TextRule regexpRule(const QString &pattern);

/// The rules for the functions that a filter calls, whoever has built it.
QStringList notesOnCalls(const vogen::ExpressionHandle &filter);
