#pragma once

#include <Vokit/vokit_export.h>

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>
#include <QVariant>

namespace vogen {

class ValueView;

/**
 * What two values of any types mean to each other.
 *
 * Filters run over QVariant values with no schema at hand, so this is the one place that decides.
 * The rules are the system's own and no database's; stored filters depend on each of them:
 *
 *     numbers            meet in a common type. An int or long long property and an unsigned long
 *                        long property have none: they are compared as text, and 10 sorts before 9
 *     doubles            that differ by less than 1 compare as the same
 *     dates              meet each other, and numbers, as microseconds (see dateMicroSeconds)
 *     lists              go item by item; a list that ends first is the smaller one
 *     all else           is compared as text, case-sensitive, by UTF-16 code unit. A bool is text
 *                        here ("true"), and a date against a text is the date's own text
 *
 * Make one object for one operation, call it, then ask for its success.
 *
 * @code
 * TypeTool tool(false, true);        // a property on the left, a constant on the right
 * const bool same = tool.equals(a, b);
 * return tool.returnOK(QVariant(same)); // an invalid QVariant, which is NULL, if they can't meet
 * @endcode
 *
 * Reports by ok and throws nothing, throwOK() apart. An object belongs to one thread; the static
 * operations are pure.
 */
class VOKIT_EXPORT TypeTool
{
public:
    /**
     * @param leftIsConstant the left value is a written constant, which may take the right one's
     * type when it fits; a value read from a property keeps its own
     * @param rightIsConstant the same of the right value
     */
    TypeTool(bool leftIsConstant, bool rightIsConstant)
        : leftConstant(leftIsConstant)
        , rightConstant(rightIsConstant)
        , ok(true)
    {}

    /// Whether the last operation could be carried out; true before the first.
    bool wasOK() const { return ok; }
    /// The value itself after a success, else INVALID.
    const QVariant &returnOK(const QVariant &value) const { return ok ? value : INVALID; }
    /// True after a success. @throws vo::IllegalArgumentException otherwise
    bool throwOK() const;

    /**
     * Below 0, 0 or above 0, as @p a is less than, the same as or greater than @p b.
     *
     * The size of the number is the difference cut to an int, where there is one. A difference of
     * 64-bit numbers wraps first, so the sign may be wrong for values more than 2^63 apart.
     *
     * @return 0 with ok false when the two can't be compared, as an invalid value with anything
     */
    int compare(const QVariant &a, const QVariant &b);

    /**
     * Whether compare() gives 0.
     *
     * Where compare() fails, two values count as equal when both can be brought into one type,
     * whatever they hold: two maps are always equal.
     */
    bool equals(const QVariant &a, const QVariant &b);

    /// Whether some item equals @p value; ok is that of the last item looked at.
    bool contains(const QList<QVariant> &list, const QVariant &value);

    /// The type in which two numbers are compared and computed; QVariant::Invalid for none.
    QVariant::Type coerceNumericTypes(const QVariant &a, const QVariant &b) const;

    /// A type into which both values go, the left one's first; QVariant::Invalid for none.
    QVariant::Type coerceOtherTypes(const QVariant &a, const QVariant &b) const;

    /**
     * Arithmetic. Two numbers are computed in their common type, where integers wrap silently; an
     * unsigned difference that would fall to 0 or below becomes a long long, or a double for 64
     * bits. Division by 0 fails, 0.0 included, and so does a remainder of doubles.
     *
     * Past numbers, do_add moves a date by a number or by another date's count, whichever side it
     * stands on, and joins any two texts; do_subtract moves a date back. So the "difference" of two
     * dates is a date, and an Int + ULongLong property are joined digits. All else fails.
     *
     * @return an invalid QVariant with ok false after a failure
     */
    QVariant do_add(const QVariant &a, const QVariant &b);
    QVariant do_subtract(const QVariant &a, const QVariant &b);
    QVariant do_multiply(const QVariant &a, const QVariant &b);
    QVariant do_divide(const QVariant &a, const QVariant &b);
    QVariant do_modulo(const QVariant &a, const QVariant &b);

    /// Bits of two integers. Anything else gives an invalid QVariant and leaves ok true, so that a
    /// chain of them goes on.
    QVariant do_bitand(const QVariant &a, const QVariant &b);
    QVariant do_bitor(const QVariant &a, const QVariant &b);
    QVariant do_bitxor(const QVariant &a, const QVariant &b);

    /// Item by item; the smallest or greatest int when one list is the other's beginning.
    int compareList(QList<QVariant> &a, QList<QVariant> &b);

    /**
     * A text that sorts the other way round: in-memory sorting uses it for a descending term.
     *
     * Each code unit is complemented and FFFF is put behind. A text that holds FFFF itself gets no
     * second one, and loses each unit whose code is the index at which one was met.
     */
    static QString invertString(const QString &string);

    static bool isNumeric(QVariant::Type type); ///< Int, UInt, LongLong, ULongLong, Double
    static bool isDate(QVariant::Type type);    ///< Date, Time, DateTime
    static bool isList(QVariant::Type type);    ///< List, StringList

    /**
     * The one number behind a value, in microseconds: dates count from 1970-01-01 00:00 UTC, a
     * QTime from midnight. A plain number is read by its type:
     *
     *     Int, UInt             milliseconds
     *     LongLong, ULongLong   microseconds
     *     Double                days
     *
     * Text is read as Qt::TextDate. Whatever can't become text, an invalid QVariant too, gives 0.
     */
    static long long dateMicroSeconds(const QVariant &value);
    static double dateSeconds(const QVariant &value);

    /**
     * A value moved by a span, in whole seconds.
     *
     * The type is kept where it can hold the result: a Date moved by whole days, a Time that stays
     * within the day. Otherwise it widens to a DateTime in UTC. A number gives what
     * dateMicroSeconds made of it, as an Int of milliseconds if it comes out even.
     */
    static QVariant dateAdd(const QVariant &value, long long microSeconds);

    /// A date as a number or a number as a date, by dateMicroSeconds; invalid for any other pair.
    /// A long long is asked for in vain: it comes as an unsigned one.
    static QVariant castDate(const QVariant &value, QVariant::Type type);

    static const QDate EPOCH;      ///< 1970-01-01
    static const QTime MIDNIGHT;   ///< 00:00
    static const QVariant INVALID; ///< NULL

    /// For the library's own nodes: compare() of values that can be compared where they lie.
    /// False, with nothing done, where it takes a QVariant.
    bool compareInPlace(ValueView a, ValueView b, int *order) const;
    /// The same, when all that matters is whether the order is 0.
    bool matchInPlace(ValueView a, ValueView b, int *order) const;
    /// do_add() and its kin of two numbers, where they lie. False, with nothing done, for any other
    /// two values.
    enum class Arithmetic : int { Add, Subtract, Multiply, Divide, Modulo, BitAnd, BitOr, BitXor };
    bool computeInPlace(Arithmetic operation, ValueView a, ValueView b, QVariant *result);

private:
    QVariant::Type coerceNumericTypes(ValueView a, ValueView b) const;
    template <typename Operation>
    bool compute(ValueView a, ValueView b, Operation operation, QVariant *result);
    bool computeNumbers(Arithmetic operation, const QVariant &a, const QVariant &b,
                        QVariant *result);
    QVariant fail();

    bool leftConstant;
    bool rightConstant;
    bool ok;
};

} // namespace vogen
