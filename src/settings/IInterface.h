#pragma once

#include <Vokit/vokit_export.h>

namespace vo {

/**
 * The root of the interfaces: an object can be asked for one of them by name.
 *
 * An object answers to the names that its class knows. This one knows "vo::IInterface" alone, and a
 * class that derives from it answers to no further name unless it overrides getInterface():
 *
 * @code
 * void *Gate::getInterface(const char *name)
 * {
 *     if (std::strcmp(name, "app::IGate") == 0)
 *         return static_cast<IGate *>(this);
 *     return IInterface::getInterface(name);
 * }
 * @endcode
 *
 * with `using IInterface::getInterface;` beside it, so that the const overload stays in sight.
 */
class VOKIT_EXPORT IInterface
{
public:
    virtual ~IInterface();

    /**
     * The object as the interface called @p name, or null if it is none.
     *
     * The pointer lives as long as the object, and may only be cast to the interface asked for.
     *
     * @param name must not be null
     */
    virtual void *getInterface(const char *name);
    /// Asks the other overload, so that one override serves both.
    virtual const void *getInterface(const char *name) const;
};

} // namespace vo
