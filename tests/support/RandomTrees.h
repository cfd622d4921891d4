#pragma once

#include "Sets.h"
#include "Trees.h"

#include <Vokit/Vokit.h>

#include <limits>
#include <random>

namespace test {

/// A client's node that stands in front of another one: whatever holds it must ask evaluate().
class Opaque : public vogen::Expression
{
public:
    explicit Opaque(vogen::ExpressionHandle node)
        : m_node(node)
    {}

    QVariant evaluate(const vogen::PropertySet &properties, bool *isConstant) const override
    {
        return m_node->evaluate(properties, isConstant);
    }
    Expression *clone() const override { return new Opaque(*this); }
    bool equals(const Expression *other) const override { return m_node->equals(other); }
    void print(QTextStream &stream, PrintStyle style) const override
    {
        m_node->print(stream, style);
    }
    void collectPlaceholders(QList<QVariant> &values) const override
    {
        m_node->collectPlaceholders(values);
    }
    bool isEmpty() const override { return m_node->isEmpty(); }
    void write(QDataStream &stream) const override { m_node->write(stream); }
    void read(QDataStream &stream) override { m_node->read(stream); }

private:
    vogen::ExpressionHandle m_node;
};

/// Trees of any shape and value, the same for the same seed on every machine.
class RandomTrees
{
public:
    /// What a test can't have in its trees, or wants in them.
    enum Option {
        Everything = 0,
        WithoutPatterns = 1,       ///< like and regexp, which belong to one thread
        WithoutSwitches = 2,       ///< SwitchCase, which can't be read back
        WithoutClock = 4,          ///< currentDate and its kin, whose value stands in SQL
        WithoutBoundArguments = 8, ///< bindable constants in a call, which nobody collects
        Wrapped = 16               ///< each node in an Opaque one; otherwise the same trees
    };

    explicit RandomTrees(quint32 seed, int options = Everything)
        : m_random(seed)
        , m_options(options)
    {}

    vogen::ExpressionHandle tree(int depth = 4) { return node(depth, true); }

    /// Some of the properties that the trees refer to.
    vogen::PropertySet set()
    {
        vogen::PropertySet properties;
        for (int i = 0; i < 6; ++i) {
            if (chance(4))
                continue;
            auto *property = this->property(propertyName(i));
            property->setVariantValue(value()); // what it can't hold leaves it as it is
            properties.add(shared(property));
        }
        return properties;
    }

    QVariant value()
    {
        static const QDateTime noon(QDate(2026, 3, 5), QTime(12, 0), Qt::UTC);
        static const QVariantList values{
            QVariant(),
            true,
            false,
            0,
            1,
            -1,
            7,
            std::numeric_limits<int>::min(),
            std::numeric_limits<int>::max(),
            0U,
            std::numeric_limits<uint>::max(),
            3LL,
            std::numeric_limits<qlonglong>::min(),
            std::numeric_limits<qlonglong>::max(),
            4ULL,
            std::numeric_limits<qulonglong>::max(),
            0.0,
            -0.5,
            2.5,
            1e300,
            -1e300,
            0.5F,
            QString(),
            QString(""),
            "a",
            "10",
            "9",
            "O'Hara",
            "a.c_%",
            QString::fromUtf8("\xc3\xa9\xe2\x82\xac"),
            QStringList{"a", "b"},
            noon,
            noon.toLocalTime(),
            noon.date(),
            noon.time(),
            QDateTime(),
            QVariant(QVariantList{1, "a"}),
            QByteArray("a"),
        };
        return values.at(below(values.size()));
    }

private:
    int below(int bound) { return static_cast<int>(m_random() % static_cast<quint32>(bound)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    bool has(Option option) const { return m_options & option; }

    vogen::BaseProperty *property(const QString &name)
    {
        using namespace vogen;
        switch (below(12)) {
        case 0:
            return new IntProperty(name);
        case 1:
            return new UIntProperty(name);
        case 2:
            return new S64Property(name);
        case 3:
            return new U64Property(name);
        case 4:
            return new DoubleProperty(name);
        case 5:
            return new BoolProperty(name);
        case 6:
            return new StringProperty(name);
        case 7:
            return new StringListProperty(name);
        case 8:
            return new DateTimeProperty(name);
        case 9:
            return new DateProperty(name);
        case 10:
            return new TimeProperty(name);
        default:
            return new VariantProperty(name);
        }
    }

    static QString propertyName(int index)
    {
        return index < 5 ? QString(QChar('a' + index)) : QStringLiteral("f g");
    }

    vogen::ExpressionHandle constant(bool mayBind)
    {
        return vogen::ConstExpression(value(), mayBind && chance(2));
    }

    vogen::ExpressionHandle leaf(bool mayBind)
    {
        if (chance(2))
            return constant(mayBind);
        return vogen::ValueExpression(propertyName(below(6)), chance(3) ? "g" : "");
    }

    template <class Chain>
    vogen::ExpressionHandle chain(Chain list, int depth, bool mayBind)
    {
        const int count = below(4);
        for (int i = 0; i < count; ++i)
            list.append(node(depth, mayBind));
        return list;
    }

    vogen::ExpressionHandle node(int depth, bool mayBind)
    {
        const vogen::ExpressionHandle made = bareNode(depth, mayBind);
        return has(Wrapped) ? Opaque(made) : made;
    }

    vogen::ExpressionHandle bareNode(int depth, bool mayBind)
    {
        using namespace vogen;
        if (depth == 0 || chance(6))
            return leaf(mayBind);
        const int inner = depth - 1;
        const auto any = [&] { return node(inner, mayBind); };
        switch (below(10)) {
        case 0:
            return chain(ExpressionList(), inner, mayBind);
        case 1:
        case 2:
            return Comparator(any(), static_cast<Comparator::CompOp>(below(7)), any());
        case 3:
            return chain(ElementOf(any()), inner, mayBind);
        case 4:
            return chain(BooleanOperator(static_cast<BooleanOperator::BoolOp>(below(2))), inner,
                         mayBind);
        case 5:
            return NotOperator(any());
        case 6:
            return chain(NumericOperator(static_cast<NumericOperator::NumOp>(below(9))), inner,
                         mayBind);
        case 7:
            return UnaryOperator(static_cast<UnaryOperator::UnaryOp>(below(2)), any());
        case 8:
            return chance(2) ? cast(any()) : choice(inner, mayBind);
        default:
            return call(inner, mayBind);
        }
    }

    vogen::ExpressionHandle cast(const vogen::ExpressionHandle &operand)
    {
        static const QVariant::Type types[] = {
            QVariant::Bool,      QVariant::Int,    QVariant::UInt, QVariant::LongLong,
            QVariant::ULongLong, QVariant::Double, QVariant::Date, QVariant::Time,
            QVariant::DateTime,  QVariant::String};
        return vogen::CastExpression(types[below(10)], operand);
    }

    vogen::ExpressionHandle choice(int depth, bool mayBind)
    {
        if (has(WithoutSwitches))
            return leaf(mayBind);
        // An empty selector or default result would not be printed, but collected.
        vogen::SwitchCase choice(vogen::ValueExpression(propertyName(below(6)), ""));
        for (int count = below(3); count >= 0; --count)
            choice.switchCase(node(depth, mayBind), node(depth, mayBind));
        if (chance(2))
            choice.defaultCase(vogen::ConstExpression(below(100), mayBind && chance(2)));
        return choice;
    }

    vogen::ExpressionHandle call(int depth, bool mayBind)
    {
        using vogen::FunctionExpression;
        const QStringList names = FunctionExpression::functionMap().keys();
        QString name = names.at(below(names.size()));
        const bool pattern = name == "like" || name == "regexp";
        const bool clock = name.startsWith("current");
        if (name == "random" || (pattern && has(WithoutPatterns)) ||
            (clock && (has(WithoutClock) || !mayBind)))
            name = "coalesce";
        const auto &entry = FunctionExpression::functionMap()[name];
        vogen::ExpressionList arguments;
        const int count = entry.maxArgs < 0 ? entry.minArgs + below(3) : entry.maxArgs;
        for (int i = 0; i < count; ++i) {
            arguments.append(pattern && i > 0
                                 ? vogen::ConstExpression("a.c", false)
                                 : node(depth, mayBind && !has(WithoutBoundArguments)));
        }
        return FunctionExpression(name, arguments, chance(4));
    }

    std::mt19937 m_random;
    int m_options;
};

} // namespace test
