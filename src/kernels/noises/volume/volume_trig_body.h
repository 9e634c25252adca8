// Cosines of eight angles, on lanes.
#pragma once

#include "kernels/noises/volume/volume_trig.h"
#include "numeric/lanes.h"

namespace nezaiva {
namespace {

// 0.25 - |u| for the turns u of each angle less the phase, a part of a turn, and less whole turns; for
// |angle| <= kLargestPlainAngle.
inline Float4 quarterLessTurns(Float4 angles, double phase = 0.0)
{
    const Double4 turns = toDouble(angles) * kTurnsPerRadian - phase;
    const Double4 rest = turns - ((turns + kRoundToWhole) - kRoundToWhole);
    return toFloat(0.25 - abs(rest));
}
inline Float8 quarterLessTurns(Float8 angles, double phase = 0.0)
{
    return {quarterLessTurns(lowHalf(angles), phase), quarterLessTurns(highHalf(angles), phase)};
}

// The cosine from the quarter of a turn less the turns of an angle: the minimax polynomial of
// sin(2 pi u) on -0.25..0.25, relative error 6e-9.
inline Float8 cosineOfQuarters(Float8 u)
{
    const Float8 x = u * u;
    Float8 sum = 39.7109195f;
    sum = sum * x + -76.5749924f;
    sum = sum * x + 81.6022313f;
    sum = sum * x + -41.3416775f;
    sum = sum * x + 6.28318527f;
    return sum * u;
}

// Up to this size half turns are taken off angles in single precision: there are fewer than 2^16 of
// them, and the first two of the three parts of pi have 8 bits, so that their products are exact.
constexpr float kLargestShortAngle = 131072.0f;    // 2^17
constexpr float kPiMiddle = 0.000965118408203125f; // 253 / 2^18
constexpr float kPiLow = 2.53518159e-06f;

// The cosine of eight angles of any size less a phase, which is a part of a turn, within 2e-7. NaN for
// what is not finite.
[[gnu::noinline]] inline Float8 anyCosine(Float8 angles, double phase)
{
    Float8 u = quarterLessTurns(angles, phase);
    if (anyLane(abs(angles) > kLargestPlainAngle)) {
        float each[8];
        float quarters[8];
        angles.store(each);
        for (int lane = 0; lane < 8; ++lane) {
            // Late turns of time leave few different sums with the angles that they are added to.
            if (lane > 0 && each[lane] == each[lane - 1]) {
                quarters[lane] = quarters[lane - 1];
                continue;
            }
            const double turns = exactTurns(each[lane]) - phase;
            const double magnitude = turns < 0.0 ? -turns : turns;
            quarters[lane] = static_cast<float>(0.25 - (magnitude > 0.5 ? 1.0 - magnitude : magnitude));
        }
        u = Float8::load(quarters);
    }
    return cosineOfQuarters(u);
}
inline Float4 anyCosine(Float4 angles, double phase)
{
    return lowHalf(anyCosine(Float8(angles, angles), phase));
}

inline Mask8 beyondShort(Float8 angles)
{
    return abs(angles) > kLargestShortAngle;
}

// The sign of a cosine changes with every half turn; `counted` has their number in its lowest bits.
inline Float8 signedBy(Float8 counted, Float8 cosine)
{
    return flipBits(cosine, bitsOf(counted) << 31);
}

// The cosine of angles up to kLargestShortAngle, within 2e-7: the minimax polynomial of a quarter turn
// to either side, error 3e-10, and the sign of the half turn. NaN for a NaN.
inline Float8 shortCosine(Float8 angles)
{
    const Float8 counted = angles * kHalfTurnsPerRadian + kRoundFloatToWhole;
    const Float8 halfTurns = counted - kRoundFloatToWhole;
    const Float8 rest = ((angles - halfTurns * kPiHigh) - halfTurns * kPiMiddle) - halfTurns * kPiLow;
    const Float8 x = rest * rest;
    const Float8 xx = x * x;
    const Float8 first = 1.0f + x * -0.499999993f;
    const Float8 second = 0.0416666355f + x * -0.0013888351f;
    const Float8 third = 2.47596194e-05f + x * -2.60417616e-07f;
    return signedBy(counted, first + xx * (second + xx * third));
}

inline float rootOf(float value)
{
    return __builtin_sqrtf(value);
}

} // namespace
} // namespace nezaiva
