#pragma once

#include <limits>
#include <type_traits>

/// Arithmetic that stored results depend on: integers wrap and doubles convert as on x86-64, in
/// words for which C++ defines the outcome.
namespace vo {

template <typename Integer>
constexpr Integer wrappingSubtract(Integer a, Integer b)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    return static_cast<Integer>(static_cast<Unsigned>(a) - static_cast<Unsigned>(b));
}

template <typename Integer>
constexpr Integer wrappingMultiply(Integer a, Integer b)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    return static_cast<Integer>(static_cast<Unsigned>(a) * static_cast<Unsigned>(b));
}

/// Toward zero; a NaN and whatever 64 bits can't hold give the smallest value.
constexpr long long truncated(double value)
{
    constexpr double bound = 9223372036854775808.0; // 2 to the 63
    return value >= -bound && value < bound ? static_cast<long long>(value)
                                            : std::numeric_limits<long long>::min();
}

} // namespace vo
