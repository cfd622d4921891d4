#pragma once

#include <Vokit/Operator>

#include <QCache>
#include <QMap>
#include <QRegExp>

namespace vogen {

class ExpressionList;
class ValueExpression;

/**
 * A call of a function by name, and the registry of functions.
 *
 * Each name has a function that computes it in memory and one that prints it as SQL. A function
 * without the second can't be left to the database: in SQL text its value stands in place of the
 * call, or a "?", so that currentDate() always means the client's clock.
 *
 * The built-in functions have the names of SQL, and rules of their own in memory, which stored
 * filters depend on: min keeps the value that compares greatest and max the smallest, nullif gives
 * its first value when both are equal, a "%" in like stands for points. There are no rows here, so
 * an aggregate sees its own arguments only: count of one property is 1.
 *
 * To add a function, write this in a .cpp of yours, and nothing anywhere else:
 * @code
 * namespace {
 * QVariant halve(const QList<QVariant> &values) { return values.value(0).toDouble() / 2; }
 * // printDefault leaves the call to the database; a null printer would compute it here instead.
 * const bool gHalveRegistered =
 *     FunctionExpression::registerFunction("halve", &halve, &FunctionExpression::printDefault, 1,
 * 1); } // namespace
 * @endcode
 *
 * Register while the library or the program loads. A name that nobody registered calls nothing and
 * is NULL, and asking for it takes the name: a later registerFunction() is refused. So ask
 * isRegistered() before using a name from outside, as a tree from a stream may hold one.
 *
 * Bindable constants among the arguments print as "?" and are not collected: keep them literal in a
 * text that is to be bound. Evaluating like and regexp belongs to one thread at a time.
 */
class VOKIT_EXPORT FunctionExpression : public Operator
{
public:
    /// Computes the call from the values of its arguments, which may be fewer than it asked for.
    using Function = QVariant (*)(const QList<QVariant> &values);
    /// Prints the call in SQL.
    using PrintFunction = void (*)(QTextStream &stream, Expression::PrintStyle style,
                                   const QString &name, const QList<ExpressionHandle> &arguments);

    struct FunctionEntry
    {
        Function function = nullptr;
        int minArgs = 0; ///< for the record: no call is refused for its number of arguments
        int maxArgs = 0; ///< -1 for no bound
        PrintFunction printFunction = nullptr;
    };

    /// @param distinctValues drop an argument value that equals one before it, by TypeTool::equals
    FunctionExpression(const QString &functionName, const ExpressionList &arguments,
                       bool distinctValues);
    ~FunctionExpression() override;

    using Operator::collectPlaceholders;
    using Operator::equals;

    QVariant evaluate(const PropertySet &properties, bool *isConstant) const override;
    Expression *clone() const override;
    bool equals(const Expression *other) const override;
    void print(QTextStream &stream, PrintStyle style) const override;
    /// The value of a call that can't be left to the database; the arguments' values never.
    void collectPlaceholders(QList<QVariant> &values) const override;
    /// Whether the name is empty.
    bool isEmpty() const override;
    void write(QDataStream &stream) const override;
    void read(QDataStream &stream) override;

    static QMap<QString, FunctionEntry> &functionMap();
    /// Whether a function of that name can be called. Changes nothing.
    static bool isRegistered(const QString &functionName);
    /// False, and a line in the log, for a name that is taken.
    static bool registerFunction(const char *functionName, Function function,
                                 PrintFunction printFunction, int minArgs, int maxArgs);
    /// Gives a function another SQL text. False, and a line in the log, for an unknown name.
    static bool registerSqlPrintFunction(const char *functionName, PrintFunction printFunction);

    /// "name(a,b)", with "DISTINCT " ahead of the arguments under PrintDistinct; the arguments get
    /// that flag too.
    static void printDefault(QTextStream &stream, Expression::PrintStyle style,
                             const QString &functionName, const QList<ExpressionHandle> &arguments);
    /// "(a NAME b)", or "(a NAME b ESCAPE c)".
    static void printLike(QTextStream &stream, Expression::PrintStyle style,
                          const QString &functionName, const QList<ExpressionHandle> &arguments);

    // The built-in functions. A missing argument reads as NULL.
    static QVariant currentDate(const QList<QVariant> &values);     ///< local
    static QVariant currentTime(const QList<QVariant> &values);     ///< local
    static QVariant currentDateTime(const QList<QVariant> &values); ///< local
    /// Negates what is below 0 by TypeTool: -0.5 is not, as it compares the same as 0.
    static QVariant abs(const QList<QVariant> &values);
    static QVariant min(const QList<QVariant> &values);   ///< the value that compares greatest
    static QVariant max(const QList<QVariant> &values);   ///< the value that compares smallest
    static QVariant count(const QList<QVariant> &values); ///< NULLs included
    /// Each value's text with "," ahead of it, unless the text so far ends in one.
    static QVariant group_concat(const QList<QVariant> &values);
    static QVariant coalesce(const QList<QVariant> &values); ///< the first that isn't isNull()
    static QVariant ifnull(const QList<QVariant> &values);   ///< as coalesce
    static QVariant
    nullif(const QList<QVariant> &values); ///< the first if both are equal, else NULL
    static QVariant
    hex(const QList<QVariant> &values); ///< lower case, as an unsigned 64-bit number
    static QVariant round(const QList<QVariant> &values);  ///< floor(x + 0.5), a Double
    static QVariant random(const QList<QVariant> &values); ///< rand(), which nothing seeds here
    static QVariant length(const QList<QVariant> &values); ///< in UTF-16 code units
    static QVariant lower(const QList<QVariant> &values);
    static QVariant upper(const QList<QVariant> &values);
    static QVariant quote(const QList<QVariant> &values); ///< the text as it is
    static QVariant trim(const QList<QVariant> &values);
    /**
     * Whether the whole of the first text matches the second, a pattern; the third is its escape.
     *
     * The pattern becomes a QRegExp by six replacements, in this order: with an escape "\" to "\\"
     * and the escape to "\"; then "." to "\.", "%" to "\%", "_" to "." and "%" to ".*". The last
     * meets what the fourth has marked, so "%" ends as "\.*" and matches points. Characters that
     * QRegExp knows beside these keep their meaning.
     */
    static QVariant like(const QList<QVariant> &values);
    /// Whether the whole of the first text matches the second: a QRegExp or the text of one.
    static QVariant regexp(const QList<QVariant> &values);

protected:
    QString name;
    bool distinct;

private:
    const FunctionEntry &entry() const;
    QVariant folded() const;
    bool evaluateTexts(const PropertySet &properties, bool *isConstant, QVariant *result) const;
    static bool callWithTexts(Function function, const QString *const *texts, int count,
                              QVariant *result);
    static bool matchesLike(const QString &subject, const QString &pattern, const QString &escape);
    static bool matchesRegExp(const QString &subject, const QString &pattern);

    static QCache<QString, QRegExp> gLikeCache;
    static QCache<QString, QRegExp> gRegExpCache;
};

// Calls of the built-in functions. A handle on a list gives the list's operands as arguments.

VOKIT_EXPORT FunctionExpression currentDate();
VOKIT_EXPORT FunctionExpression currentTime();
VOKIT_EXPORT FunctionExpression currentDateTime();
VOKIT_EXPORT FunctionExpression random();
VOKIT_EXPORT FunctionExpression abs(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression hex(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression round(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression length(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression lower(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression upper(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression quote(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression trim(ExpressionHandle e);
VOKIT_EXPORT FunctionExpression coalesce(const ExpressionList &list);
VOKIT_EXPORT FunctionExpression ifnull(ExpressionHandle first, ExpressionHandle second);
VOKIT_EXPORT FunctionExpression nullif(ExpressionHandle first, ExpressionHandle second);
VOKIT_EXPORT FunctionExpression min(const ValueExpression &property);
VOKIT_EXPORT FunctionExpression max(const ValueExpression &property);
VOKIT_EXPORT FunctionExpression count(const ValueExpression &property, bool distinct);
VOKIT_EXPORT FunctionExpression group_concat(const ValueExpression &property, bool distinct);
/// Pattern and escape are literal in every text; an empty escape prints too.
VOKIT_EXPORT FunctionExpression like(ExpressionHandle subject, const QString &pattern,
                                     const QString &escape);
VOKIT_EXPORT FunctionExpression regexp(ExpressionHandle subject, const QString &pattern);
VOKIT_EXPORT FunctionExpression regexp(ExpressionHandle subject, const QRegExp &pattern);

} // namespace vogen
