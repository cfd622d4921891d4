#pragma once

#include "Clips.h"

/// What each construct prints, and what it is worth in memory and in SQLite.
namespace test {

/// Where an expression stands, and what is asked of it.
enum class Place {
    Clip,  ///< its value for clip 0
    Clips, ///< its values for all clips; SQLite sees an aggregate there
    Order, ///< the order of those clips that have all properties, with the expression as the term
    ClipWithRegExp, ///< as Clip, over a connection with the driver's own REGEXP
};

/**
 * One expression. Values are written as SQL writes them: NULL, 5, 2.5, 'text', x'00', (1, 'a'). A
 * bool is 0 or 1 and a date is its microseconds, as a client stores them. "error: " is what SQLite
 * begins to say of a text that it doesn't run.
 */
struct DialectRow
{
    QString key; ///< of the difference, as docs/sql-dialect.md names it; empty where all agree
    vogen::ExpressionHandle e;
    QString text; ///< in PrintSql; "#" stands for the digits of the clock
    QString memory;
    QString literals; ///< in SQLite, from that text
    QString bound;    ///< in SQLite, from the text with placeholders
    Place place;
};

class DialectRows : public QList<DialectRow>
{
public:
    void same(const vogen::ExpressionHandle &e, const QString &text, const QString &value,
              Place place = Place::Clip)
    {
        append({QString(), e, text, value, value, value, place});
    }

    void differs(const char *key, const vogen::ExpressionHandle &e, const QString &text,
                 const QString &memory, const QString &literals, const QString &bound,
                 Place place = Place::Clip)
    {
        append({key, e, text, memory, literals, bound, place});
    }

    /// From both texts SQLite makes the same.
    void differs(const char *key, const vogen::ExpressionHandle &e, const QString &text,
                 const QString &memory, const QString &sqlite, Place place = Place::Clip)
    {
        differs(key, e, text, memory, sqlite, sqlite, place);
    }
};

void addValueRows(DialectRows &rows);
void addOperatorRows(DialectRows &rows);
void addFunctionRows(DialectRows &rows);
void addAdviceRows(DialectRows &rows);

} // namespace test
