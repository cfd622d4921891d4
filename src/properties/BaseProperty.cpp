#include <Vokit/BaseProperty>

#include "properties/ValueView_p.h"

namespace vogen {

PropertyValidator::~PropertyValidator() = default;

BaseProperty::BaseProperty() = default;

BaseProperty::BaseProperty(const QString &name, const QString &description,
                           const boost::shared_ptr<PropertyValidator> &validator)
    : m_description(description)
    , m_isValid(true)
    , m_validator(validator)
    , m_name(name)
{}

BaseProperty::~BaseProperty() = default;

bool BaseProperty::validate(PropertySet &set)
{
    return !m_validator || m_validator->validate(set, *this);
}

ValueView BaseProperty::valueInPlace() const
{
    return {};
}

} // namespace vogen
