#pragma once

#include "properties/ValueView_p.h"

namespace vogen {

/// The value of a number of any numeric type, as @p Number; by static_cast.
template <typename Number>
Number numberAs(ValueView value)
{
    switch (value.type()) {
    case QMetaType::Int:
        return static_cast<Number>(value.as<int>());
    case QMetaType::UInt:
        return static_cast<Number>(value.as<uint>());
    case QMetaType::LongLong:
        return static_cast<Number>(value.as<qlonglong>());
    case QMetaType::ULongLong:
        return static_cast<Number>(value.as<qulonglong>());
    default:
        return static_cast<Number>(value.as<double>());
    }
}

} // namespace vogen
