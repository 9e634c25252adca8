// Two doubles in an SSE register, for lanes.h, which documents them.
#pragma once

#include "numeric/lanes_four.h"

namespace nezaiva {
namespace {

constexpr double kLargestDouble = 1.7976931348623157e+308;
constexpr double kWholeFromDouble = 4503599627370496.0; // 2^52

struct DoubleMask2 {
    using Scalar = bool;
    static constexpr int kLanes = 2;
    __m128d v;

    DoubleMask2() = default;
    DoubleMask2(__m128d bits) : v(bits) {}
    explicit DoubleMask2(bool all) : v(_mm_castsi128_pd(_mm_set1_epi32(all ? -1 : 0))) {}

    friend DoubleMask2 operator&(DoubleMask2 a, DoubleMask2 b) { return _mm_and_pd(a.v, b.v); }
    friend DoubleMask2 operator|(DoubleMask2 a, DoubleMask2 b) { return _mm_or_pd(a.v, b.v); }
    friend DoubleMask2 operator^(DoubleMask2 a, DoubleMask2 b) { return _mm_xor_pd(a.v, b.v); }
    friend DoubleMask2 operator!(DoubleMask2 a) { return _mm_xor_pd(a.v, DoubleMask2(true).v); }

    friend int laneBits(DoubleMask2 a) { return _mm_movemask_pd(a.v); }
    friend bool anyLane(DoubleMask2 a) { return laneBits(a) != 0; }
    friend bool allLanes(DoubleMask2 a) { return laneBits(a) == 3; }
};

struct Double2 {
    using Scalar = double;
    static constexpr int kLanes = 2;
    __m128d v;

    Double2() = default;
    Double2(__m128d lanes) : v(lanes) {}
    Double2(double all) : v(_mm_set1_pd(all)) {}
    Double2(double a, double b) : v(_mm_setr_pd(a, b)) {}

    static Double2 load(const double* two) { return _mm_loadu_pd(two); }
    void store(double* two) const { _mm_storeu_pd(two, v); }

    friend Double2 operator+(Double2 a, Double2 b) { return _mm_add_pd(a.v, b.v); }
    friend Double2 operator-(Double2 a, Double2 b) { return _mm_sub_pd(a.v, b.v); }
    friend Double2 operator*(Double2 a, Double2 b) { return _mm_mul_pd(a.v, b.v); }
    friend Double2 operator/(Double2 a, Double2 b) { return _mm_div_pd(a.v, b.v); }
    friend Double2 operator-(Double2 a) { return _mm_xor_pd(a.v, _mm_set1_pd(-0.0)); }

    friend DoubleMask2 operator<(Double2 a, Double2 b) { return _mm_cmplt_pd(a.v, b.v); }
    friend DoubleMask2 operator<=(Double2 a, Double2 b) { return _mm_cmple_pd(a.v, b.v); }
    friend DoubleMask2 operator>(Double2 a, Double2 b) { return _mm_cmpgt_pd(a.v, b.v); }
    friend DoubleMask2 operator>=(Double2 a, Double2 b) { return _mm_cmpge_pd(a.v, b.v); }
    friend DoubleMask2 operator==(Double2 a, Double2 b) { return _mm_cmpeq_pd(a.v, b.v); }
    friend DoubleMask2 operator!=(Double2 a, Double2 b) { return _mm_cmpneq_pd(a.v, b.v); }

    friend Double2 operator&(Double2 a, DoubleMask2 kept) { return _mm_and_pd(a.v, kept.v); }
    friend Double2 select(DoubleMask2 first, Double2 a, Double2 b)
    {
        return _mm_or_pd(_mm_and_pd(first.v, a.v), _mm_andnot_pd(first.v, b.v));
    }
    friend Double2 min(Double2 a, Double2 b) { return _mm_min_pd(a.v, b.v); }
    friend Double2 max(Double2 a, Double2 b) { return _mm_max_pd(a.v, b.v); }
    friend Double2 abs(Double2 a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a.v); }
    friend Double2 sqrt(Double2 a) { return _mm_sqrt_pd(a.v); }

    friend Double2 fraction(Double2 a)
    {
        const Double2 finite = finiteOrZero(a);
        return finite - floor(finite);
    }
    friend Double2 narrowed(Double2 a) { return _mm_cvtps_pd(_mm_cvtpd_ps(a.v)); }
    friend Double2 keepBits(Double2 a, std::int64_t bits)
    {
        return _mm_and_pd(a.v, _mm_castsi128_pd(_mm_set1_epi64x(bits)));
    }
    friend Double2 finiteOrZero(Double2 a) { return a & (abs(a) <= Double2(kLargestDouble)); }

    friend Double2 floor(Double2 a)
    {
#ifdef __AVX2__
        return _mm_floor_pd(a.v);
#else
        // Added to a number below it, 2^52 leaves no fraction.
        const __m128d sign = _mm_and_pd(_mm_set1_pd(-0.0), a.v);
        const Double2 magic = _mm_or_pd(_mm_set1_pd(kWholeFromDouble), sign);
        const Double2 rounded = (a + magic) - magic;
        const Double2 below = rounded - (Double2(1.0) & (rounded > a));
        return select(abs(a) < Double2(kWholeFromDouble), _mm_or_pd(below.v, sign), a);
#endif
    }
};

template <int Lane>
double lane(Double2 a)
{
    if constexpr (Lane == 0) return _mm_cvtsd_f64(a.v);
    return _mm_cvtsd_f64(_mm_unpackhi_pd(a.v, a.v));
}
template <int Lane>
Double2 spread(Double2 a)
{
    return _mm_shuffle_pd(a.v, a.v, Lane * 3);
}

template <int Bits>
Double2 blended(Double2 a, Double2 b)
{
    if constexpr ((Bits & 3) == 0) return a;
    if constexpr ((Bits & 3) == 1) return _mm_shuffle_pd(b.v, a.v, 2);
    if constexpr ((Bits & 3) == 2) return _mm_shuffle_pd(a.v, b.v, 2);
    return b;
}

inline double sumOfLanes(Double2 a)
{
    return lane<0>(a) + lane<1>(a);
}

} // namespace
} // namespace nezaiva
