#include "kernels/noises/volume/volume_trig.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace nezaiva {

namespace {

// The binary digits of 1 / (2 pi) behind the point, most significant first.
constexpr std::uint64_t kTurnsPerRadianDigits[] = {0x28be60db9391054au, 0x7f09d5f47d4d3770u,
                                                   0x36d8a5664f10e410u};

// mantissa * 2^exponent / (2 pi) without its whole turns: digits that a whole number of turns would
// consume are never looked at (Payne and Hanek 1983). The exponent lies in 0..104.
double turnsOfLargeAngle(std::uint32_t mantissa, int exponent)
{
    const int word = exponent / 64;
    const int shift = exponent % 64;
    std::uint64_t digits = kTurnsPerRadianDigits[word] << shift;
    if (shift != 0) digits |= kTurnsPerRadianDigits[word + 1] >> (64 - shift);
    const auto turns = static_cast<std::int64_t>(digits * mantissa);
    return static_cast<double>(turns) * 0x1p-64;
}

double sineOfQuarterTurns(double turns)
{
    const double x = turns * turns;
    double sum = kSineOfTurns[7];
    for (int i = 6; i >= 0; --i)
        sum = sum * x + kSineOfTurns[i];
    return sum * turns;
}

} // namespace

double exactTurns(float angle)
{
    const float magnitude = std::fabs(angle);
    if (magnitude <= kLargestPlainAngle) {
        const double turns = static_cast<double>(angle) * kTurnsPerRadian;
        return turns - ((turns + kRoundToWhole) - kRoundToWhole);
    }
    if (!(magnitude <= std::numeric_limits<float>::max())) return std::numeric_limits<double>::quiet_NaN();
    const auto bits = std::bit_cast<std::uint32_t>(magnitude);
    const double turns =
        turnsOfLargeAngle((bits & 0x7fffffu) | 0x800000u, static_cast<int>(bits >> 23) - 127 - 23);
    return angle < 0.0f ? -turns : turns;
}

SineCosine sineCosine(float angle)
{
    const double turns = exactTurns(angle);
    const double magnitude = std::fabs(turns);
    const double folded = magnitude > 0.25 ? std::copysign(0.5, turns) - turns : turns;
    return {static_cast<float>(sineOfQuarterTurns(folded)),
            static_cast<float>(sineOfQuarterTurns(0.25 - magnitude))};
}

} // namespace nezaiva
