#pragma once

#include <Vokit/TypedProperties>

#include <QObject>

namespace vogen {

/**
 * Accepts the values from a smallest to a greatest one, both included.
 *
 * A value outside marks the property as not valid and gives it the text "Value out of range.",
 * translated in the context "QObject"; a value inside clears both. A NaN is outside, and so is
 * every value when the bounds are the wrong way round. Judging a property of another class throws
 * vo::UnexpectedTypeException; IllegalProperty is judged as 0, and marked.
 *
 * @code
 * boost::shared_ptr<PropertyValidator> oneToNine(new DefaultIntValidator(1, 9));
 * set.add(boost::shared_ptr<BaseProperty>(new IntProperty("channel", "Channel", 1, oneToNine)));
 * @endcode
 */
template <class Property>
class VOKIT_EXPORT RangeValidator : public QObject, public PropertyValidator
{
public:
    using Bound = typename Property::Value;

    RangeValidator(Bound min, Bound max);
    ~RangeValidator() override;

    bool validate(PropertySet &set, BaseProperty &property) override;

private:
    Bound m_min;
    Bound m_max;
};

// Compiled once, in the library.
extern template class VOKIT_EXPORT RangeValidator<IntProperty>;
extern template class VOKIT_EXPORT RangeValidator<UIntProperty>;
extern template class VOKIT_EXPORT RangeValidator<U64Property>;
extern template class VOKIT_EXPORT RangeValidator<FloatProperty>;
extern template class VOKIT_EXPORT RangeValidator<DoubleProperty>;

class VOKIT_EXPORT DefaultIntValidator : public RangeValidator<IntProperty>
{
public:
    using RangeValidator::RangeValidator;
};

class VOKIT_EXPORT DefaultUIntValidator : public RangeValidator<UIntProperty>
{
public:
    using RangeValidator::RangeValidator;
};

class VOKIT_EXPORT DefaultU64Validator : public RangeValidator<U64Property>
{
public:
    using RangeValidator::RangeValidator;
};

class VOKIT_EXPORT DefaultFloatValidator : public RangeValidator<FloatProperty>
{
public:
    using RangeValidator::RangeValidator;
};

class VOKIT_EXPORT DefaultDoubleValidator : public RangeValidator<DoubleProperty>
{
public:
    using RangeValidator::RangeValidator;
};

} // namespace vogen
