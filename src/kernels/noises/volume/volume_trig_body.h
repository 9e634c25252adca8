// Cosines of eight angles, written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h,
// one of which is included before.
#pragma once

#include "kernels/noises/volume/volume_trig.h"

namespace nezaiva {
namespace {

// The cosine from the quarter of a turn less the turns of an angle: the minimax polynomial of
// sin(2 pi u) on -0.25..0.25, relative error 6e-9.
inline Eight cosineOfQuarters(Eight u)
{
    const Eight x = u * u;
    Eight sum = broadcast(39.7109195f);
    sum = sum * x + broadcast(-76.5749924f);
    sum = sum * x + broadcast(81.6022313f);
    sum = sum * x + broadcast(-41.3416775f);
    sum = sum * x + broadcast(6.28318527f);
    return sum * u;
}

inline Eight magnitudes(Eight a)
{
    const Four kept = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    return bitAnd(a, combine(kept, kept));
}

inline Eight tooLarge(Eight angles)
{
    return less(broadcast(kLargestPlainAngle), magnitudes(angles));
}

// Up to this size half turns are taken off angles in single precision: there are fewer than 2^16 of
// them, and the first two of the three parts of pi have 8 bits, so that their products are exact.
constexpr float kLargestShortAngle = 131072.0f;    // 2^17
constexpr float kPiMiddle = 0.000965118408203125f; // 253 / 2^18
constexpr float kPiLow = 2.53518159e-06f;

// The cosine of eight angles of any size less a phase, which is a part of a turn, within 2e-7. NaN for
// what is not finite.
[[gnu::noinline]] inline Eight anyCosine(Eight angles, double phase)
{
    Eight u = quarterLessTurns(angles, phase);
    if (anyLane(tooLarge(angles))) {
        float each[8];
        float quarters[8];
        store(each, angles);
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
        u = load(quarters);
    }
    return cosineOfQuarters(u);
}
inline Four anyCosine(Four angles, double phase)
{
    return lowHalf(anyCosine(combine(angles, angles), phase));
}

inline Eight beyondShort(Eight angles)
{
    return less(broadcast(kLargestShortAngle), magnitudes(angles));
}

// The cosine of angles up to kLargestShortAngle, within 2e-7: the minimax polynomial of a quarter turn
// to either side, error 3e-10, and the sign of the half turn. NaN for a NaN.
inline Eight shortCosine(Eight angles)
{
    const Eight magic = broadcast(kRoundFloatToWhole);
    const Eight counted = angles * broadcast(kHalfTurnsPerRadian) + magic;
    const Eight halfTurns = counted - magic;
    const Eight rest = ((angles - halfTurns * broadcast(kPiHigh)) - halfTurns * broadcast(kPiMiddle)) -
                       halfTurns * broadcast(kPiLow);
    const Eight x = rest * rest;
    const Eight xx = x * x;
    const Eight first = broadcast(1.0f) + x * broadcast(-0.499999993f);
    const Eight second = broadcast(0.0416666355f) + x * broadcast(-0.0013888351f);
    const Eight third = broadcast(2.47596194e-05f) + x * broadcast(-2.60417616e-07f);
    return bitXor(first + xx * (second + xx * third), lowestBitAsSign(counted));
}

inline float sumOfFour(Four a)
{
    const Four two = _mm_add_ps(a, _mm_movehl_ps(a, a));
    return _mm_cvtss_f32(_mm_add_ss(two, spread<1>(two)));
}
inline float sumOfLanes(Eight a)
{
    return sumOfFour(_mm_add_ps(lowHalf(a), highHalf(a)));
}

inline float rootOf(float value)
{
    return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(value)));
}

} // namespace
} // namespace nezaiva
