#include "kernels/placement/sector_jitter.h"

#include <bit>
#include <cmath>

namespace nezaiva {

namespace {

constexpr std::uint64_t kMultiplier = 0x5DEECE66D;
constexpr std::uint64_t kMask = 0xFFFFFFFFFFFF;
constexpr std::uint64_t kIncrement = 11;
constexpr double kToUnit = 9.313225746154785e-10; // 2 to the -30

// Wrapping arithmetic is unsigned; only the shifts see the sign.
std::int64_t shiftRight(std::uint64_t value, int bits)
{
    return static_cast<std::int64_t>(value) >> bits;
}

std::uint64_t step(std::uint64_t state)
{
    const double sine = std::sin(static_cast<double>(shiftRight(state + kIncrement, 16)));
    const std::uint64_t highBits = std::bit_cast<std::uint64_t>(sine) >> 32;
    return (highBits + state + kIncrement) & kMask;
}

float toUnit(std::uint64_t state)
{
    return static_cast<float>(static_cast<double>(shiftRight(state, 18)) * kToUnit);
}

} // namespace

SectorJitter sectorJitter(std::int32_t tileU, std::int32_t tileV)
{
    double x = tileU * 0.9205048680305481 - tileV * (-0.3907311260700226);
    x -= std::trunc(x);
    if (x < 0.0) x += 1.0;
    const auto seed = static_cast<std::int32_t>(std::floor(std::sin(x * 713.1415522098541) * 16777215.0));
    std::uint64_t state = (static_cast<std::uint64_t>(seed) & 0xFFFFFF) * kMultiplier;
    state = step(state) * kMultiplier;
    state = step(state);
    const float first = toUnit(state);
    state = step(state * kMultiplier);
    return {first, toUnit(state)};
}

} // namespace nezaiva
