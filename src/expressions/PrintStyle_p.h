#pragma once

#include <Vokit/Expression>

namespace vogen {

constexpr Expression::PrintStyle without(Expression::PrintStyle style, Expression::PrintStyle flag)
{
    return static_cast<Expression::PrintStyle>(style & ~static_cast<int>(flag));
}

} // namespace vogen
