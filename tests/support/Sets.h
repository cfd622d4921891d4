#pragma once

#include <Vokit/TypedProperties>

#include <initializer_list>

/// Helpers that fold away the set-up of properties.
namespace test {

inline boost::shared_ptr<vogen::BaseProperty> shared(vogen::BaseProperty *property)
{
    return boost::shared_ptr<vogen::BaseProperty>(property);
}

/// A set of the given properties, which it takes over.
inline vogen::PropertySet setOf(std::initializer_list<vogen::BaseProperty *> properties)
{
    vogen::PropertySet set;
    for (vogen::BaseProperty *property : properties)
        set.add(shared(property));
    return set;
}

inline QString dumped(const vogen::BaseProperty &property)
{
    QString text;
    QTextStream stream(&text);
    property.dump(stream);
    stream.flush();
    return text;
}

inline QString dumped(const vogen::PropertySet &set)
{
    QString text;
    QTextStream stream(&text);
    set.dump(stream);
    stream.flush();
    return text;
}

} // namespace test
