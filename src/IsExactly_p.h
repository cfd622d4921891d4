#pragma once

#include <typeinfo>

namespace vogen {

/**
 * Whether an object is of the class @p Class itself, and of none that a client derived from it.
 *
 * By address, which takes one memory access less than type_info::operator== does: that counts at
 * each node of an evaluation. Each class has its type_info in the library alone, by a virtual
 * function that is defined there.
 */
template <class Class, class Object>
bool isExactly(const Object &object)
{
    return &typeid(object) == &typeid(Class);
}

} // namespace vogen
