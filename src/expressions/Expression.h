#pragma once

#include <Vokit/vokit_export.h>

#include <QList>
#include <QMap>
#include <QSharedData>
#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

class QDataStream;
class QTextStream;

namespace vogen {

class ExpressionHandle;
class NodeAccess;
class PropertySet;
class ValueView;
enum class Truth : int;

/**
 * A node of an expression tree: a filter or a computed column, described once and then evaluated
 * in memory, printed or stored.
 *
 * Trees are held by ExpressionHandle and mostly written with the operators of
 * ExpressionOperators.h:
 *
 * @code
 * const ExpressionHandle filter = camera == 7 && !(type == "alarm");
 * filter->evaluate(clip, nullptr);                  // a QVariant; an invalid one is NULL
 * filter->toString(Expression::PrintSql);           // camera = 7 AND  NOT type = 'alarm'
 * filter->toString(Expression::PrintSql | Expression::PrintPlaceholders);
 *                                                   // camera = ? AND  NOT type = ?
 * filter->collectPlaceholders();                    // 7, "alarm"
 * @endcode
 *
 * A node that a handle shares is never changed, so any number of threads may copy, evaluate and
 * print the same tree at once. Nothing here throws.
 *
 * A class of the client's own derives from this one or from Operator and implements what is pure.
 */
class VOKIT_EXPORT Expression : public QSharedData
{
public:
    /// How to print: a set of flags, combined with |. Flags that a node doesn't know it passes on.
    enum PrintStyle : int {
        PrintReadable = 0,     ///< words for operators, texts in double quotes
        PrintCode = 1,         ///< " == ", " && ", " || ", " ! ", "%"; casts as "(type)"
        PrintSql = 2,          ///< texts in single quotes, dates as microseconds, aliases
        PrintPlaceholders = 4, ///< "?" for each bindable constant
        PrintOrderBy = 8,      ///< as a term of ORDER BY
        PrintDistinct = 16,    ///< set by function calls on their arguments
        PrintNested = 2048     ///< set by operators on their operands: may need brackets
    };

    friend constexpr PrintStyle operator|(PrintStyle a, PrintStyle b) noexcept
    {
        return static_cast<PrintStyle>(static_cast<int>(a) | static_cast<int>(b));
    }

    virtual ~Expression();

    /**
     * The value for the given properties; an invalid QVariant is NULL.
     *
     * @param isConstant may be null; else told whether the value came from constants alone. It
     *        says nothing about NULL. Comparisons use it to bring mixed numbers into one type.
     */
    virtual QVariant evaluate(const PropertySet &properties, bool *isConstant) const = 0;

    /// A new node with a reference count of 0, for a handle to own. It shares its operands.
    virtual Expression *clone() const = 0;

    /// Whether the other node means the same; compare handles by ExpressionHandle::equals().
    virtual bool equals(const Expression *other) const = 0;

    virtual void print(QTextStream &stream, PrintStyle style) const = 0;

    /// Appends the bindable values, in the order of a left-to-right walk of the tree.
    virtual void collectPlaceholders(QList<QVariant> &values) const;

    virtual bool isEmpty() const = 0;

    /// Writes the record of this node, without the envelope of writeExpression().
    virtual void write(QDataStream &stream) const = 0;
    /// Takes all fields from a record, whatever they were.
    virtual void read(QDataStream &stream) = 0;

    QString toString(PrintStyle style = PrintSql) const;
    operator QString() const; ///< as toString(PrintSql)

    QList<QVariant> collectPlaceholders() const;

    /// True for two null pointers, false for one; else asks @p a.
    static bool equals(const Expression *a, const Expression *b);

    /// The prototypes by which trees are read, under typeid(node).name(). Written at load only.
    static QMap<QString, ExpressionHandle> &expressionClassMap();

    /// Makes a class known to readExpression(). False for one that is known: the first one stays.
    static bool registerExpressionClass(ExpressionHandle prototype);

    /**
     * Writes a tree: for each node its class's key and its record.
     *
     * Byte order and version are those of the stream, and the reader's must agree.
     */
    static void writeExpression(QDataStream &stream, ExpressionHandle e);

    /**
     * Reads a tree that writeExpression() wrote.
     *
     * @return the empty expression for a key that isn't known; the stream then stands right behind
     *         the key, so whatever encloses the node reads on from there. A stream that ends too
     *         early gives zeroes and nulls, and empty expressions for the operands that a count
     *         still promises, up to 1,024 in one list. A value that Qt can't find the memory for
     *         is NULL. The status and the position of the stream tell whether it held the whole
     *         tree and nothing else.
     *
     * Nothing bounds the depth of a tree but the caller's stack: one that a stranger wrote may
     * nest deeper than that holds. Evaluating, printing and deleting take the stack in the same
     * way. With the classes of this library, n bytes nest at most n / 31 levels deep.
     */
    static ExpressionHandle readExpression(QDataStream &stream);

protected:
    Expression();
    /// A copy is a new node, with a count of its own.
    Expression(const Expression &other) = default;
    Expression &operator=(const Expression &other);

    // Short cuts past QVariant, for nodes of this library that stand in each other. A client's
    // class leaves them alone: these defaults take it through evaluate().

    // Where the value lies, if it can be read without running anything; else a null view.
    virtual ValueView valueInPlace(const PropertySet &properties) const;
    // What evaluate() gives, as a condition.
    virtual Truth truth(const PropertySet &properties, bool *isConstant) const;

private:
    friend class NodeAccess;
};

} // namespace vogen

/// A handle that is about to change a shared node gets a copy of the node's own class.
template <>
inline vogen::Expression *QSharedDataPointer<vogen::Expression>::clone()
{
    return d->clone();
}

namespace vogen {

/**
 * How trees are held and passed: by value, sharing the node, copying it on write.
 *
 * The last handle deletes the node. A handle is never null: one made from nothing shares the empty
 * ExpressionList, which stands for the absence of an expression.
 *
 * operator== on handles builds a Comparator; use equals() to compare them.
 */
class VOKIT_EXPORT ExpressionHandle
{
public:
    ExpressionHandle();
    /// Holds a clone: so a node that an operator returned by value becomes part of a tree.
    ExpressionHandle(const Expression &e);
    // Copied even where it could be moved, since a handle left behind would be null.
    ExpressionHandle(const ExpressionHandle &) = default;
    ExpressionHandle &operator=(const ExpressionHandle &) = default;
    ~ExpressionHandle() = default;

    bool equals(ExpressionHandle other) const;

    const Expression *constData() const { return d.constData(); }
    const Expression *operator->() const { return d.constData(); }
    const Expression &operator*() const { return *d.constData(); }

    /// For writing: makes the node this handle's own first.
    Expression *operator->() { return d.data(); }
    Expression &operator*() { return *d.data(); }

private:
    QSharedDataPointer<Expression> d;
};

} // namespace vogen

Q_DECLARE_TYPEINFO(vogen::ExpressionHandle, Q_MOVABLE_TYPE);
