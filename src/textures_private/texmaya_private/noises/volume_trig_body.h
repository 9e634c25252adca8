// Cosines of eight angles, written once on the lanes of volume_lanes_base.h or volume_lanes_avx2.h,
// one of which is included before.
#pragma once

#include "volume_trig.h"

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

inline float sumOfLanes(Eight a)
{
    const Four four = _mm_add_ps(lowHalf(a), highHalf(a));
    const Four two = _mm_add_ps(four, _mm_movehl_ps(four, four));
    return _mm_cvtss_f32(_mm_add_ss(two, spread<1>(two)));
}

inline float rootOf(float value)
{
    return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(value)));
}

} // namespace
} // namespace nezaiva
