#pragma once

#include <Vokit/ConstExpression>
#include <Vokit/ExpressionHandle>
#include <Vokit/ValueExpression>

#include <QDataStream>
#include <QStringList>

#include <functional>

/// A small language for trees: what they print, bind and give.
namespace test {

using Style = vogen::Expression::PrintStyle;

constexpr Style Readable = vogen::Expression::PrintReadable;
constexpr Style Code = vogen::Expression::PrintCode;
constexpr Style Sql = vogen::Expression::PrintSql;
constexpr Style Placeholders = vogen::Expression::PrintSql | vogen::Expression::PrintPlaceholders;
constexpr Style Nested = vogen::Expression::PrintNested;

inline vogen::ExpressionHandle ref(const char *name, const char *alias = "")
{
    return vogen::ValueExpression(QString::fromLatin1(name), QString::fromLatin1(alias));
}

inline vogen::ExpressionHandle literal(const QVariant &value)
{
    return vogen::ConstExpression(value, false);
}

inline vogen::ExpressionHandle bound(const QVariant &value)
{
    return vogen::ConstExpression(value, true);
}

inline vogen::ExpressionHandle null()
{
    return literal(QVariant());
}

inline QString print(const vogen::ExpressionHandle &e, Style style)
{
    return e->toString(style);
}

/// The value as "type:text"; "NULL" for an invalid one, lists as "[item,item]".
inline QString shown(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("NULL");
    if (value.type() == QVariant::List) {
        QStringList items;
        for (const QVariant &item : value.toList())
            items.append(shown(item));
        return QLatin1Char('[') + items.join(QLatin1Char(',')) + QLatin1Char(']');
    }
    return QLatin1String(value.typeName()) + QLatin1Char(':') + value.toString();
}

/// The text with placeholders and what is bound to them: "a = ? <- int:5". Only together are they
/// right.
inline QString bindable(const vogen::ExpressionHandle &e)
{
    QStringList values;
    for (const QVariant &value : e->collectPlaceholders())
        values.append(shown(value));
    return e->toString(Placeholders) + QLatin1String(" <- ") + values.join(QLatin1String(", "));
}

/// The value and whether it is constant: "bool:true const".
inline QString evaluated(const vogen::ExpressionHandle &e,
                         const vogen::PropertySet &set = vogen::PropertySet())
{
    bool isConstant = false;
    const QString text = shown(e->evaluate(set, &isConstant));
    return isConstant ? text + QLatin1String(" const") : text;
}

inline QByteArray written(const vogen::ExpressionHandle &e)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    vogen::Expression::writeExpression(stream, e);
    return bytes;
}

inline vogen::ExpressionHandle readBack(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    return vogen::Expression::readExpression(stream);
}

/// A node as a client may write one: notes that it was evaluated and gives what it is told.
class Probe : public vogen::Expression
{
public:
    using Action = std::function<void()>;

    explicit Probe(const QVariant &result, bool constant = true, QStringList *log = nullptr,
                   Action action = Action())
        : m_result(result)
        , m_constant(constant)
        , m_log(log)
        , m_action(action)
    {}

    QVariant evaluate(const vogen::PropertySet & /*properties*/, bool *isConstant) const override
    {
        if (m_log)
            m_log->append(m_result.toString());
        if (m_action)
            m_action();
        if (isConstant)
            *isConstant = m_constant;
        return m_result;
    }
    Expression *clone() const override { return new Probe(*this); }
    bool equals(const Expression *other) const override { return other == this; }
    void print(QTextStream &stream, PrintStyle style) const override
    {
        stream << (style & PrintNested ? "nested" : "probe");
    }
    bool isEmpty() const override { return false; }
    void write(QDataStream & /*stream*/) const override {}
    void read(QDataStream & /*stream*/) override {}

private:
    QVariant m_result;
    bool m_constant;
    QStringList *m_log;
    Action m_action;
};

} // namespace test
