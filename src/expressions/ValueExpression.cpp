#include <Vokit/ValueExpression>

#include "IsExactly_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/TypeTool>

#include <QDataStream>
#include <QTextStream>

namespace vogen {

namespace {
constexpr qint32 gRecordVersion = 2;
}

ValueExpression::ValueExpression(const QString &propertyName, const QString &secondName)
    : name(propertyName)
    , alias(secondName)
{}

ValueExpression::ValueExpression(const BaseProperty &property, const QString &secondName)
    : name(property.name())
    , alias(secondName)
{}

ValueExpression::~ValueExpression() = default;

QVariant ValueExpression::evaluate(const PropertySet &properties, bool *isConstant) const
{
    if (isConstant)
        *isConstant = false;
    const auto found = find(properties);
    return found != properties.end() ? found.value()->variantValue() : QVariant();
}

Expression *ValueExpression::clone() const
{
    return new ValueExpression(*this);
}

bool ValueExpression::equals(const Expression *other) const
{
    const auto *reference = dynamic_cast<const ValueExpression *>(other);
    return reference && name == reference->name && alias == reference->alias;
}

void ValueExpression::print(QTextStream &stream, PrintStyle style) const
{
    const QLatin1Char blank(' ');
    stream << (name.contains(blank) ? QString(name).replace(blank, QLatin1Char('_')) : name);
    if ((style & PrintSql) && !alias.isEmpty())
        stream << " AS " << alias;
}

bool ValueExpression::isEmpty() const
{
    return name.isEmpty();
}

void ValueExpression::write(QDataStream &stream) const
{
    stream << gRecordVersion << name << alias;
}

void ValueExpression::read(QDataStream &stream)
{
    qint32 version = 0;
    stream >> version >> name >> alias;
}

ValueView ValueExpression::valueInPlace(const PropertySet &properties) const
{
    if (!isExactly<ValueExpression>(*this))
        return {}; // a client's class may evaluate in its own way
    const auto found = find(properties);
    return found != properties.end() ? ValueView::ofProperty(*found.value())
                                     : ValueView(TypeTool::INVALID);
}

PropertySet::const_iterator ValueExpression::find(const PropertySet &properties) const
{
    // An empty alias can only mean a property with an empty name. That one would come first, so a
    // look at the first entry saves a search.
    const auto first = properties.begin();
    const bool mayHoldAlias =
        !alias.isEmpty() || (first != properties.end() && first.key().isEmpty());
    if (mayHoldAlias) {
        const auto found = properties.find(alias);
        if (found != properties.end())
            return found;
    }
    return properties.find(name);
}

} // namespace vogen
