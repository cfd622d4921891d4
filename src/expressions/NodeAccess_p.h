#pragma once

#include "expressions/Truth_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/Expression>

namespace vogen {

/// The short cuts of a node, for the nodes that have it as an operand.
class NodeAccess
{
public:
    static ValueView valueInPlace(const Expression &node, const PropertySet &properties)
    {
        return node.valueInPlace(properties);
    }

    static Truth truth(const Expression &node, const PropertySet &properties, bool *isConstant)
    {
        return node.truth(properties, isConstant);
    }
};

} // namespace vogen
