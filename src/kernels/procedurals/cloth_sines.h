// The sines of two angles side by side, for the sources of the cloth alone.
#pragma once

#include "kernels/noises/volume/volume_trig.h"
#include "numeric/lanes.h"

namespace nezaiva {
namespace {

struct TwoSines {
    float first, second;
};

// sineCosine's polynomial in fewer steps that wait for one another.
inline Double2 sinesOfQuarterTurns(Double2 turns)
{
    const auto& c = kSineOfTurns;
    const Double2 x = turns * turns;
    const Double2 x2 = x * x;
    const Double2 low = (c[0] + c[1] * x) + (c[2] + c[3] * x) * x2;
    const Double2 high = (c[4] + c[5] * x) + (c[6] + c[7] * x) * x2;
    return (low + high * (x2 * x2)) * turns;
}

// Of angles in radians, within one unit in the last place. NaN for what is not finite.
inline TwoSines sinesOf(float first, float second)
{
    const Double2 angles(static_cast<double>(first), static_cast<double>(second));
    if (!allLanes(abs(angles) <= static_cast<double>(kLargestPlainAngle))) [[unlikely]]
        return {sineCosine(first).sine, sineCosine(second).sine};
    const Double2 turns = angles * kTurnsPerRadian;
    const Double2 rest = turns - ((turns + kRoundToWhole) - kRoundToWhole);
    const Double2 half = select(rest < 0.0, Double2(-0.5), Double2(0.5));
    const Double2 sines = sinesOfQuarterTurns(select(abs(rest) > 0.25, half - rest, rest));
    return {static_cast<float>(lane<0>(sines)), static_cast<float>(lane<1>(sines))};
}

inline float sineOf(float angle)
{
    return sinesOf(angle, 0.0f).first;
}

} // namespace
} // namespace nezaiva
