#include <Vokit/DefaultValidators>

namespace vogen {

template <class Property>
RangeValidator<Property>::RangeValidator(Bound min, Bound max)
    : m_min(min)
    , m_max(max)
{}

template <class Property>
RangeValidator<Property>::~RangeValidator() = default;

template <class Property>
bool RangeValidator<Property>::validate(PropertySet & /*set*/, BaseProperty &property)
{
    const Bound value = Property::getValue(property, Bound());
    const bool inside = value >= m_min && value <= m_max; // in this form a NaN is outside
    property.setValid(inside);
    property.setErrorText(inside ? QString() : tr("Value out of range."));
    return inside;
}

template class RangeValidator<IntProperty>;
template class RangeValidator<UIntProperty>;
template class RangeValidator<U64Property>;
template class RangeValidator<FloatProperty>;
template class RangeValidator<DoubleProperty>;

} // namespace vogen
