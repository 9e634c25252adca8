// Eight floats, eight integers and four doubles in AVX2 registers, for lanes.h, which documents them. The
// counterpart of lanes_base.h: the same names, the same operations, the same bits.
#pragma once

#include "numeric/lanes_two.h"

namespace nezaiva {
namespace {

constexpr bool kEightAreTwoRegisters = false;

struct Mask8 {
    using Scalar = bool;
    static constexpr int kLanes = 8;
    __m256 v;

    Mask8() = default;
    Mask8(__m256 bits) : v(bits) {}
    Mask8(__m256i bits) : v(_mm256_castsi256_ps(bits)) {}
    Mask8(Mask4 low, Mask4 high) : v(_mm256_set_m128(high.v, low.v)) {}
    explicit Mask8(bool all) : v(_mm256_castsi256_ps(_mm256_set1_epi32(all ? -1 : 0))) {}
    __m256i asBits() const { return _mm256_castps_si256(v); }

    friend Mask4 lowHalf(Mask8 a) { return _mm256_castps256_ps128(a.v); }
    friend Mask4 highHalf(Mask8 a) { return _mm256_extractf128_ps(a.v, 1); }

    friend Mask8 operator&(Mask8 a, Mask8 b) { return _mm256_and_ps(a.v, b.v); }
    friend Mask8 operator|(Mask8 a, Mask8 b) { return _mm256_or_ps(a.v, b.v); }
    friend Mask8 operator^(Mask8 a, Mask8 b) { return _mm256_xor_ps(a.v, b.v); }
    friend Mask8 operator!(Mask8 a) { return _mm256_xor_ps(a.v, Mask8(true).v); }

    friend int laneBits(Mask8 a) { return _mm256_movemask_ps(a.v); }
    friend bool anyLane(Mask8 a) { return laneBits(a) != 0; }
    friend bool allLanes(Mask8 a) { return laneBits(a) == 0xFF; }
};

struct Int8 {
    using Scalar = std::int32_t;
    static constexpr int kLanes = 8;
    __m256i v;

    Int8() = default;
    Int8(__m256i lanes) : v(lanes) {}
    Int8(std::int32_t all) : v(_mm256_set1_epi32(all)) {}
    Int8(Int4 low, Int4 high) : v(_mm256_set_m128i(high.v, low.v)) {}

    static Int8 load(const std::int32_t* eight)
    {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(eight));
    }
    void store(std::int32_t* eight) const { _mm256_storeu_si256(reinterpret_cast<__m256i*>(eight), v); }

    friend Int4 lowHalf(Int8 a) { return _mm256_castsi256_si128(a.v); }
    friend Int4 highHalf(Int8 a) { return _mm256_extracti128_si256(a.v, 1); }

    friend Int8 operator+(Int8 a, Int8 b) { return _mm256_add_epi32(a.v, b.v); }
    friend Int8 operator-(Int8 a, Int8 b) { return _mm256_sub_epi32(a.v, b.v); }
    friend Int8 operator*(Int8 a, Int8 b) { return _mm256_mullo_epi32(a.v, b.v); }
    friend Int8 operator-(Int8 a) { return _mm256_sub_epi32(_mm256_setzero_si256(), a.v); }
    friend Int8 operator&(Int8 a, Int8 b) { return _mm256_and_si256(a.v, b.v); }
    friend Int8 operator|(Int8 a, Int8 b) { return _mm256_or_si256(a.v, b.v); }
    friend Int8 operator^(Int8 a, Int8 b) { return _mm256_xor_si256(a.v, b.v); }
    friend Int8 operator~(Int8 a) { return _mm256_xor_si256(a.v, _mm256_set1_epi32(-1)); }
    friend Int8 operator<<(Int8 a, int bits) { return _mm256_slli_epi32(a.v, bits); }
    friend Int8 operator>>(Int8 a, int bits) { return _mm256_srai_epi32(a.v, bits); }
    friend Int8 shiftedRightUnsigned(Int8 a, int bits) { return _mm256_srli_epi32(a.v, bits); }

    friend Mask8 operator<(Int8 a, Int8 b) { return _mm256_cmpgt_epi32(b.v, a.v); }
    friend Mask8 operator>(Int8 a, Int8 b) { return _mm256_cmpgt_epi32(a.v, b.v); }
    friend Mask8 operator==(Int8 a, Int8 b) { return _mm256_cmpeq_epi32(a.v, b.v); }
    friend Mask8 operator<=(Int8 a, Int8 b) { return !(a > b); }
    friend Mask8 operator>=(Int8 a, Int8 b) { return !(a < b); }
    friend Mask8 operator!=(Int8 a, Int8 b) { return !(a == b); }

    friend Int8 operator&(Int8 a, Mask8 kept) { return _mm256_and_si256(a.v, kept.asBits()); }
    friend Int8 select(Mask8 first, Int8 a, Int8 b) { return _mm256_blendv_epi8(b.v, a.v, first.asBits()); }
    friend Int8 min(Int8 a, Int8 b) { return _mm256_min_epi32(a.v, b.v); }
    friend Int8 max(Int8 a, Int8 b) { return _mm256_max_epi32(a.v, b.v); }
};

struct Float8 {
    using Scalar = float;
    static constexpr int kLanes = 8;
    __m256 v;

    Float8() = default;
    Float8(__m256 lanes) : v(lanes) {}
    Float8(float all) : v(_mm256_set1_ps(all)) {}
    Float8(Float4 low, Float4 high) : v(_mm256_set_m128(high.v, low.v)) {}

    static Float8 load(const float* eight) { return _mm256_loadu_ps(eight); }
    static Float8 loadInAll(const float* one) { return _mm256_broadcast_ss(one); }
    void store(float* eight) const { _mm256_storeu_ps(eight, v); }

    friend Float4 lowHalf(Float8 a) { return _mm256_castps256_ps128(a.v); }
    friend Float4 highHalf(Float8 a) { return _mm256_extractf128_ps(a.v, 1); }

    friend Float8 operator+(Float8 a, Float8 b) { return _mm256_add_ps(a.v, b.v); }
    friend Float8 operator-(Float8 a, Float8 b) { return _mm256_sub_ps(a.v, b.v); }
    friend Float8 operator*(Float8 a, Float8 b) { return _mm256_mul_ps(a.v, b.v); }
    friend Float8 operator/(Float8 a, Float8 b) { return _mm256_div_ps(a.v, b.v); }
    friend Float8 operator-(Float8 a) { return _mm256_xor_ps(a.v, _mm256_set1_ps(-0.0f)); }

    friend Mask8 operator<(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_LT_OQ); }
    friend Mask8 operator<=(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_LE_OQ); }
    friend Mask8 operator>(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_GT_OQ); }
    friend Mask8 operator>=(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_GE_OQ); }
    friend Mask8 operator==(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ); }
    friend Mask8 operator!=(Float8 a, Float8 b) { return _mm256_cmp_ps(a.v, b.v, _CMP_NEQ_UQ); }

    friend Float8 operator&(Float8 a, Mask8 kept) { return _mm256_and_ps(a.v, kept.v); }
    friend Float8 select(Mask8 first, Float8 a, Float8 b) { return _mm256_blendv_ps(b.v, a.v, first.v); }
    friend Float8 min(Float8 a, Float8 b) { return _mm256_min_ps(a.v, b.v); }
    friend Float8 max(Float8 a, Float8 b) { return _mm256_max_ps(a.v, b.v); }
    friend Float8 abs(Float8 a) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a.v); }
    friend Float8 sqrt(Float8 a) { return _mm256_sqrt_ps(a.v); }
    friend Float8 floor(Float8 a) { return _mm256_floor_ps(a.v); }
    friend Float8 truncated(Float8 a) { return _mm256_round_ps(a.v, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC); }
    // The maximum of a NaN and 0 is its second operand.
    friend Float8 fraction(Float8 a) { return max(a - floor(a), 0.0f); }
    friend Float8 finiteOrZero(Float8 a) { return a & (abs(a) <= Float8(kLargestFloat)); }

    friend Float8 keepBits(Float8 a, Int8 bits) { return _mm256_and_ps(a.v, _mm256_castsi256_ps(bits.v)); }
    friend Float8 setBits(Float8 a, Int8 bits) { return _mm256_or_ps(a.v, _mm256_castsi256_ps(bits.v)); }
    friend Float8 flipBits(Float8 a, Int8 bits) { return _mm256_xor_ps(a.v, _mm256_castsi256_ps(bits.v)); }
    friend Int8 bitsOf(Float8 a) { return _mm256_castps_si256(a.v); }
    friend Int8 toInt(Float8 a) { return _mm256_cvttps_epi32(a.v); }
    friend Int8 cellIndex(Float8 a) // as for four lanes
    {
        const Mask8 isFinite = abs(a) <= Float8(kLargestFloat);
        const Mask8 above = isFinite & (a >= Float8(2147483648.0f));
        return _mm256_xor_si256(toInt(a & isFinite).v, above.asBits());
    }
};

struct DoubleMask4 {
    using Scalar = bool;
    static constexpr int kLanes = 4;
    __m256d v;

    DoubleMask4() = default;
    DoubleMask4(__m256d bits) : v(bits) {}
    DoubleMask4(DoubleMask2 low, DoubleMask2 high) : v(_mm256_set_m128d(high.v, low.v)) {}
    explicit DoubleMask4(bool all) : v(_mm256_castsi256_pd(_mm256_set1_epi32(all ? -1 : 0))) {}

    friend DoubleMask4 operator&(DoubleMask4 a, DoubleMask4 b) { return _mm256_and_pd(a.v, b.v); }
    friend DoubleMask4 operator|(DoubleMask4 a, DoubleMask4 b) { return _mm256_or_pd(a.v, b.v); }
    friend DoubleMask4 operator^(DoubleMask4 a, DoubleMask4 b) { return _mm256_xor_pd(a.v, b.v); }
    friend DoubleMask4 operator!(DoubleMask4 a) { return _mm256_xor_pd(a.v, DoubleMask4(true).v); }

    friend int laneBits(DoubleMask4 a) { return _mm256_movemask_pd(a.v); }
    friend bool anyLane(DoubleMask4 a) { return laneBits(a) != 0; }
    friend bool allLanes(DoubleMask4 a) { return laneBits(a) == 0xF; }
};

struct Double4 {
    using Scalar = double;
    static constexpr int kLanes = 4;
    __m256d v;

    Double4() = default;
    Double4(__m256d lanes) : v(lanes) {}
    Double4(double all) : v(_mm256_set1_pd(all)) {}
    Double4(Double2 low, Double2 high) : v(_mm256_set_m128d(high.v, low.v)) {}

    static Double4 load(const double* four) { return _mm256_loadu_pd(four); }
    void store(double* four) const { _mm256_storeu_pd(four, v); }

    friend Double2 lowHalf(Double4 a) { return _mm256_castpd256_pd128(a.v); }
    friend Double2 highHalf(Double4 a) { return _mm256_extractf128_pd(a.v, 1); }

    friend Double4 operator+(Double4 a, Double4 b) { return _mm256_add_pd(a.v, b.v); }
    friend Double4 operator-(Double4 a, Double4 b) { return _mm256_sub_pd(a.v, b.v); }
    friend Double4 operator*(Double4 a, Double4 b) { return _mm256_mul_pd(a.v, b.v); }
    friend Double4 operator/(Double4 a, Double4 b) { return _mm256_div_pd(a.v, b.v); }
    friend Double4 operator-(Double4 a) { return _mm256_xor_pd(a.v, _mm256_set1_pd(-0.0)); }

    friend DoubleMask4 operator<(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ); }
    friend DoubleMask4 operator<=(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_LE_OQ); }
    friend DoubleMask4 operator>(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_GT_OQ); }
    friend DoubleMask4 operator>=(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_GE_OQ); }
    friend DoubleMask4 operator==(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ); }
    friend DoubleMask4 operator!=(Double4 a, Double4 b) { return _mm256_cmp_pd(a.v, b.v, _CMP_NEQ_UQ); }

    friend Double4 operator&(Double4 a, DoubleMask4 kept) { return _mm256_and_pd(a.v, kept.v); }
    friend Double4 select(DoubleMask4 first, Double4 a, Double4 b)
    {
        return _mm256_blendv_pd(b.v, a.v, first.v);
    }
    friend Double4 min(Double4 a, Double4 b) { return _mm256_min_pd(a.v, b.v); }
    friend Double4 max(Double4 a, Double4 b) { return _mm256_max_pd(a.v, b.v); }
    friend Double4 abs(Double4 a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a.v); }
    friend Double4 sqrt(Double4 a) { return _mm256_sqrt_pd(a.v); }
    friend Double4 floor(Double4 a) { return _mm256_floor_pd(a.v); }
    friend Double4 fraction(Double4 a)
    {
        const Double4 finite = finiteOrZero(a);
        return finite - floor(finite);
    }
    friend Double4 narrowed(Double4 a) { return _mm256_cvtps_pd(_mm256_cvtpd_ps(a.v)); }
    friend Double4 keepBits(Double4 a, std::int64_t bits)
    {
        return _mm256_and_pd(a.v, _mm256_castsi256_pd(_mm256_set1_epi64x(bits)));
    }
    friend Double4 finiteOrZero(Double4 a) { return a & (abs(a) <= Double4(kLargestDouble)); }
};

inline Float8 toFloat(Int8 a)
{
    return _mm256_cvtepi32_ps(a.v);
}
inline Float8 floatOfBits(Int8 a)
{
    return _mm256_castsi256_ps(a.v);
}
inline Float4 toFloat(Double4 a)
{
    return _mm256_cvtpd_ps(a.v);
}
inline Double4 toDouble(Float4 a)
{
    return _mm256_cvtps_pd(a.v);
}
inline Double4 toDouble(Int4 a)
{
    return _mm256_cvtepi32_pd(a.v);
}
inline Int4 toInt(Double4 a)
{
    return _mm256_cvttpd_epi32(a.v);
}

inline Mask8 maskOf(Int8 a)
{
    return a.v;
}
inline Int8 smallProduct(Int8 a, Int8 b)
{
    return _mm256_madd_epi16(a.v, b.v);
}
inline Float8 select(Mask8 first, float a, float b)
{
    return select(first, Float8(a), Float8(b));
}
inline Float8 loadTwice(const float* four)
{
    return _mm256_broadcast_ps(reinterpret_cast<const __m128*>(four));
}

template <int Lane>
Float8 spread(Float8 a)
{
    return _mm256_permute_ps(a.v, Lane * 0x55);
}
template <int Lane>
Double4 spread(Double4 a)
{
    return _mm256_permute4x64_pd(a.v, Lane * 0x55);
}
template <int Lane>
Float8 spreadTwice(Float4 a)
{
    return _mm256_broadcastss_ps(spread<Lane>(a).v);
}
template <int A, int B, int C, int D>
Int8 shuffled(Int8 a)
{
    return _mm256_shuffle_epi32(a.v, _MM_SHUFFLE(D, C, B, A));
}
inline Float8 interleaved(Float8 first, Float8 second)
{
    return _mm256_unpacklo_ps(first.v, second.v);
}
template <int Bits>
Float8 blended(Float8 a, Float8 b)
{
    return _mm256_blend_ps(a.v, b.v, Bits);
}
template <int Bits>
Double4 blended(Double4 a, Double4 b)
{
    return _mm256_blend_pd(a.v, b.v, Bits);
}
template <int A, int B, int C, int D>
Float8 shuffled(Float8 first, Float8 second)
{
    return _mm256_shuffle_ps(first.v, second.v, _MM_SHUFFLE(D, C, B, A));
}

inline Float8 gather(const float* table, Int8 at)
{
    return _mm256_i32gather_ps(table, at.v, sizeof(float));
}
inline Int8 gather(const std::int32_t* table, Int8 at)
{
    return _mm256_i32gather_epi32(table, at.v, sizeof(std::int32_t));
}

template <class Lanes>
using Pickable = Lanes;
inline Float8 pickable(Float8 a)
{
    return a;
}
inline Float8 picked(Float8 from, const std::int32_t* lanes)
{
    return _mm256_permutevar8x32_ps(from.v, Int8::load(lanes).v);
}
inline Float8 pickedOfFour(Float8 from, const std::int32_t* lanes)
{
    return _mm256_permutevar_ps(from.v, Int8::load(lanes).v);
}

} // namespace
} // namespace nezaiva
