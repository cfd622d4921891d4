#pragma once

#include "expressions/Truth_p.h"
#include "properties/ValueView_p.h"

#include <Vokit/Expression>

namespace vogen {

/**
 * The value of an operand: read where it lies in a constant or a property, or else evaluated.
 *
 * A value read in place must be kept() before anything runs that could change the property, which
 * any evaluate() of a client's node may do.
 */
class OperandValue
{
public:
    explicit OperandValue(const Expression &node)
        : m_node(node)
    {}

    /// Reads the value; runs nothing. False when it has to be evaluated.
    bool readInPlace(const PropertySet &properties)
    {
        m_view = m_node.valueInPlace(properties, &m_isConstant);
        return !m_view.isNull();
    }

    void evaluate(const PropertySet &properties)
    {
        m_isConstant = false;
        m_value = m_node.evaluate(properties, &m_isConstant);
        m_view = ValueView(m_value);
    }

    /// Makes the value this object's own.
    void keep()
    {
        m_value = QVariant(m_view.variant(m_value));
        m_view = ValueView(m_value);
    }

    const ValueView &view() const { return m_view; }
    bool isConstant() const { return m_isConstant; }

    static Truth truth(const Expression &node, const PropertySet &properties, bool *isConstant)
    {
        return node.truth(properties, isConstant);
    }

private:
    const Expression &m_node;
    QVariant m_value;
    ValueView m_view;
    bool m_isConstant = false;
};

} // namespace vogen
