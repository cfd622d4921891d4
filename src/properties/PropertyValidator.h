#pragma once

#include <Vokit/vokit_export.h>

namespace vogen {

class BaseProperty;
class PropertySet;

/// Judges a property's value. Shared by the properties that hold it.
class VOKIT_EXPORT PropertyValidator
{
public:
    /**
     * Writes the verdict into @p property (setValid, setErrorText) and returns it.
     *
     * @param set the set in which the property stands, for checks that need its neighbours
     */
    virtual bool validate(PropertySet &set, BaseProperty &property) = 0;

    virtual ~PropertyValidator();

protected:
    PropertyValidator() = default;
    PropertyValidator(const PropertyValidator &) = default;
    PropertyValidator &operator=(const PropertyValidator &) = default;
};

} // namespace vogen
