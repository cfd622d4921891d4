#include <Vokit/PropertySet>

#include <Vokit/IllegalProperty>

namespace vogen {

namespace {
constexpr char gRule[] = "=======================================";
}

const int PropertySet::MetaType = qRegisterMetaType<PropertySet>("vogen::PropertySet");

PropertySet::PropertySet() = default;
PropertySet::PropertySet(const PropertySet &other) = default;
PropertySet &PropertySet::operator=(const PropertySet &other) = default;
PropertySet::~PropertySet() = default;

void PropertySet::clear()
{
    m_properties = Map();
}

void PropertySet::add(boost::shared_ptr<BaseProperty> property)
{
    m_properties.insert(property->name(), property);
}

void PropertySet::remove(const QString &name)
{
    m_properties.remove(name);
}

QStringList PropertySet::allPropertyNames() const
{
    return m_properties.keys();
}

int PropertySet::count() const
{
    return m_properties.count();
}

bool PropertySet::contains(const QString &name) const
{
    return m_properties.contains(name);
}

void PropertySet::validate()
{
    for (const auto &property : m_properties)
        property->validate(*this);
}

BaseProperty &PropertySet::operator[](const QString &name)
{
    const auto found = m_properties.find(name);
    return found != m_properties.end() ? **found : IllegalProperty::ms_illegalProperty;
}

const BaseProperty &PropertySet::operator[](const QString &name) const
{
    const auto found = m_properties.constFind(name);
    return found != m_properties.constEnd() ? **found : IllegalProperty::ms_illegalProperty;
}

bool PropertySet::operator==(const PropertySet &other) const
{
    if (allPropertyNames() != other.allPropertyNames())
        return false;
    for (const auto &property : m_properties) {
        const QVariant mine = property->variantValue();
        // By the property's own name, which may have changed since it was filed.
        const QVariant theirs = other[property->name()].variantValue();
        if (!mine.isValid() || !theirs.isValid() || mine != theirs)
            return false;
    }
    return true;
}

bool PropertySet::operator!=(const PropertySet &other) const
{
    return !(*this == other);
}

QTextStream &PropertySet::dump(QTextStream &stream) const
{
    stream << gRule << '\n';
    for (const auto &property : m_properties)
        property->dump(stream) << '\n';
    return stream << gRule;
}

PropertySet::iterator PropertySet::begin()
{
    return m_properties.begin();
}

PropertySet::iterator PropertySet::end()
{
    return m_properties.end();
}

QMap<QString, QVariant> PropertySet::variantValues() const
{
    QMap<QString, QVariant> values;
    for (auto it = begin(); it != end(); ++it)
        values.insert(it.key(), it.value()->variantValue());
    return values;
}

bool PropertySet::setVariantValues(const QMap<QString, QVariant> &values)
{
    bool allTaken = true;
    for (auto it = values.begin(); it != values.end(); ++it) {
        // The inserting look-up: an unknown name leaves an entry, which callers find by contains().
        const auto &property = m_properties[it.key()];
        allTaken &= property && property->setVariantValue(it.value());
    }
    return allTaken;
}

} // namespace vogen
