#pragma once

#include <limits>
#include <type_traits>

/// Arithmetic that stored results depend on: integers wrap and doubles convert as on x86-64, in
/// words for which C++ defines the outcome.
namespace vo {

template <typename Integer>
constexpr Integer wrappingAdd(Integer a, Integer b)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    return static_cast<Integer>(static_cast<Unsigned>(a) + static_cast<Unsigned>(b));
}

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

/// The divisor is not 0. The smallest value divided by -1 wraps to itself, and leaves nothing.
template <typename Integer>
constexpr Integer wrappingDivide(Integer a, Integer b)
{
    if constexpr (std::is_signed_v<Integer>) {
        if (b == -1)
            return wrappingSubtract<Integer>(0, a);
    }
    return static_cast<Integer>(a / b);
}

template <typename Integer>
constexpr Integer wrappingModulo(Integer a, Integer b)
{
    return wrappingSubtract(a, wrappingMultiply(wrappingDivide(a, b), b));
}

/// Toward zero; a NaN and whatever 64 bits can't hold give the smallest value.
constexpr long long truncated(double value)
{
    constexpr double bound = 9223372036854775808.0; // 2 to the 63
    return value >= -bound && value < bound ? static_cast<long long>(value)
                                            : std::numeric_limits<long long>::min();
}

/// The same for 64 bits without a sign: a negative number wraps, and 2 to the 64 or more gives 0.
constexpr unsigned long long truncatedUnsigned(double value)
{
    constexpr double bound = 9223372036854775808.0; // 2 to the 63
    constexpr unsigned long long highest = 1ULL << 63;
    return value >= bound ? static_cast<unsigned long long>(truncated(value - bound)) ^ highest
                          : static_cast<unsigned long long>(truncated(value));
}

} // namespace vo
