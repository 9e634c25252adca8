// Four floats and four integers in SSE registers, for lanes.h, which documents them. What processors
// with AVX2 do in one instruction and the base in several is told apart here, operation by operation;
// both give the same bits.
#pragma once

#include <cstdint>

#ifdef __AVX2__
#include <immintrin.h>
#else
#include <emmintrin.h>
#endif

namespace nezaiva {
namespace {

constexpr float kLargestFloat = 3.40282347e+38f;
constexpr float kWholeFromFloat = 8388608.0f; // 2^23: a float of this size or more has no fraction

// In each lane all bits or none.
struct Mask4 {
    using Scalar = bool;
    static constexpr int kLanes = 4;
    __m128 v;

    Mask4() = default;
    Mask4(__m128 bits) : v(bits) {}
    Mask4(__m128i bits) : v(_mm_castsi128_ps(bits)) {}
    explicit Mask4(bool all) : v(_mm_castsi128_ps(_mm_set1_epi32(all ? -1 : 0))) {}
    __m128i asBits() const { return _mm_castps_si128(v); }

    friend Mask4 operator&(Mask4 a, Mask4 b) { return _mm_and_ps(a.v, b.v); }
    friend Mask4 operator|(Mask4 a, Mask4 b) { return _mm_or_ps(a.v, b.v); }
    friend Mask4 operator^(Mask4 a, Mask4 b) { return _mm_xor_ps(a.v, b.v); }
    friend Mask4 operator!(Mask4 a) { return _mm_xor_ps(a.v, Mask4(true).v); }

    friend int laneBits(Mask4 a) { return _mm_movemask_ps(a.v); }
    friend bool anyLane(Mask4 a) { return laneBits(a) != 0; }
    friend bool allLanes(Mask4 a) { return laneBits(a) == 0xF; }
};

struct Int4 {
    using Scalar = std::int32_t;
    static constexpr int kLanes = 4;
    __m128i v;

    Int4() = default;
    Int4(__m128i lanes) : v(lanes) {}
    Int4(std::int32_t all) : v(_mm_set1_epi32(all)) {}
    Int4(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) : v(_mm_setr_epi32(a, b, c, d)) {}

    static Int4 load(const std::int32_t* four)
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(four));
    }
    void store(std::int32_t* four) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(four), v); }

    friend Int4 operator+(Int4 a, Int4 b) { return _mm_add_epi32(a.v, b.v); }
    friend Int4 operator-(Int4 a, Int4 b) { return _mm_sub_epi32(a.v, b.v); }
    friend Int4 operator-(Int4 a) { return _mm_sub_epi32(_mm_setzero_si128(), a.v); }
    friend Int4 operator&(Int4 a, Int4 b) { return _mm_and_si128(a.v, b.v); }
    friend Int4 operator|(Int4 a, Int4 b) { return _mm_or_si128(a.v, b.v); }
    friend Int4 operator^(Int4 a, Int4 b) { return _mm_xor_si128(a.v, b.v); }
    friend Int4 operator~(Int4 a) { return _mm_xor_si128(a.v, _mm_set1_epi32(-1)); }
    friend Int4 operator<<(Int4 a, int bits) { return _mm_slli_epi32(a.v, bits); }
    friend Int4 operator>>(Int4 a, int bits) { return _mm_srai_epi32(a.v, bits); }
    friend Int4 shiftedRightUnsigned(Int4 a, int bits) { return _mm_srli_epi32(a.v, bits); }

    friend Mask4 operator<(Int4 a, Int4 b) { return _mm_cmplt_epi32(a.v, b.v); }
    friend Mask4 operator>(Int4 a, Int4 b) { return _mm_cmpgt_epi32(a.v, b.v); }
    friend Mask4 operator==(Int4 a, Int4 b) { return _mm_cmpeq_epi32(a.v, b.v); }
    friend Mask4 operator<=(Int4 a, Int4 b) { return !(a > b); }
    friend Mask4 operator>=(Int4 a, Int4 b) { return !(a < b); }
    friend Mask4 operator!=(Int4 a, Int4 b) { return !(a == b); }

    friend Int4 operator&(Int4 a, Mask4 kept) { return _mm_and_si128(a.v, kept.asBits()); }
    friend Int4 min(Int4 a, Int4 b) { return select(a < b, a, b); }
    friend Int4 max(Int4 a, Int4 b) { return select(a > b, a, b); }

    friend Int4 operator*(Int4 a, Int4 b)
    {
#ifdef __AVX2__
        return _mm_mullo_epi32(a.v, b.v);
#else
        const __m128i even = _mm_mul_epu32(a.v, b.v);
        const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a.v, 32), _mm_srli_epi64(b.v, 32));
        return _mm_unpacklo_epi32(_mm_shuffle_epi32(even, 0x08), _mm_shuffle_epi32(odd, 0x08));
#endif
    }
    friend Int4 select(Mask4 first, Int4 a, Int4 b)
    {
#ifdef __AVX2__
        return _mm_blendv_epi8(b.v, a.v, first.asBits());
#else
        return _mm_or_si128(_mm_and_si128(first.asBits(), a.v), _mm_andnot_si128(first.asBits(), b.v));
#endif
    }
};

struct Float4 {
    using Scalar = float;
    static constexpr int kLanes = 4;
    __m128 v;

    Float4() = default;
    Float4(__m128 lanes) : v(lanes) {}
    Float4(float all) : v(_mm_set1_ps(all)) {}
    Float4(float a, float b, float c, float d) : v(_mm_setr_ps(a, b, c, d)) {}

    static Float4 load(const float* four) { return _mm_loadu_ps(four); }
    static Float4 loadInAll(const float* one) { return _mm_load1_ps(one); }
    void store(float* four) const { _mm_storeu_ps(four, v); }

    friend Float4 operator+(Float4 a, Float4 b) { return _mm_add_ps(a.v, b.v); }
    friend Float4 operator-(Float4 a, Float4 b) { return _mm_sub_ps(a.v, b.v); }
    friend Float4 operator*(Float4 a, Float4 b) { return _mm_mul_ps(a.v, b.v); }
    friend Float4 operator/(Float4 a, Float4 b) { return _mm_div_ps(a.v, b.v); }
    friend Float4 operator-(Float4 a) { return _mm_xor_ps(a.v, _mm_set1_ps(-0.0f)); }

    friend Mask4 operator<(Float4 a, Float4 b) { return _mm_cmplt_ps(a.v, b.v); }
    friend Mask4 operator<=(Float4 a, Float4 b) { return _mm_cmple_ps(a.v, b.v); }
    friend Mask4 operator>(Float4 a, Float4 b) { return _mm_cmpgt_ps(a.v, b.v); }
    friend Mask4 operator>=(Float4 a, Float4 b) { return _mm_cmpge_ps(a.v, b.v); }
    friend Mask4 operator==(Float4 a, Float4 b) { return _mm_cmpeq_ps(a.v, b.v); }
    friend Mask4 operator!=(Float4 a, Float4 b) { return _mm_cmpneq_ps(a.v, b.v); }

    friend Float4 operator&(Float4 a, Mask4 kept) { return _mm_and_ps(a.v, kept.v); }
    friend Float4 min(Float4 a, Float4 b) { return _mm_min_ps(a.v, b.v); }
    friend Float4 max(Float4 a, Float4 b) { return _mm_max_ps(a.v, b.v); }
    friend Float4 abs(Float4 a) { return _mm_andnot_ps(_mm_set1_ps(-0.0f), a.v); }
    friend Float4 sqrt(Float4 a) { return _mm_sqrt_ps(a.v); }

    friend Int4 bitsOf(Float4 a) { return _mm_castps_si128(a.v); }
    friend Float4 keepBits(Float4 a, Int4 bits) { return _mm_and_ps(a.v, _mm_castsi128_ps(bits.v)); }
    friend Float4 setBits(Float4 a, Int4 bits) { return _mm_or_ps(a.v, _mm_castsi128_ps(bits.v)); }
    friend Float4 flipBits(Float4 a, Int4 bits) { return _mm_xor_ps(a.v, _mm_castsi128_ps(bits.v)); }
    friend Int4 toInt(Float4 a) { return _mm_cvttps_epi32(a.v); }

    friend Float4 finiteOrZero(Float4 a) { return a & (abs(a) <= Float4(kLargestFloat)); }
    friend Int4 cellIndex(Float4 a)
    {
        // Beyond either end the processor gives the lowest integer; its complement is the highest.
        const Mask4 above = a >= Float4(2147483648.0f);
        const Float4 finite = finiteOrZero(a);
        return _mm_xor_si128(toInt(finite).v, (above & (abs(a) <= Float4(kLargestFloat))).asBits());
    }

    friend Float4 select(Mask4 first, Float4 a, Float4 b)
    {
#ifdef __AVX2__
        return _mm_blendv_ps(b.v, a.v, first.v);
#else
        return _mm_or_ps(_mm_and_ps(first.v, a.v), _mm_andnot_ps(first.v, b.v));
#endif
    }
    friend Float4 floor(Float4 a)
    {
#ifdef __AVX2__
        return _mm_floor_ps(a.v);
#else
        const Float4 truncated = _mm_cvtepi32_ps(toInt(a).v);
        const Float4 below = truncated - (Float4(1.0f) & (truncated > a));
        // The sign of what rounds to 0 stays.
        const Float4 whole = _mm_or_ps(below.v, _mm_and_ps(_mm_set1_ps(-0.0f), a.v));
        return select(abs(a) < Float4(kWholeFromFloat), whole, a);
#endif
    }
    friend Float4 truncated(Float4 a)
    {
#ifdef __AVX2__
        return _mm_round_ps(a.v, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
#else
        return _mm_cvtepi32_ps(toInt(a).v);
#endif
    }
    friend Float4 fraction(Float4 a)
    {
#ifdef __AVX2__
        return max(a - floor(a), 0.0f); // the maximum of a NaN and 0 is its second operand
#else
        const Float4 bounded = a & (abs(a) < Float4(kWholeFromFloat));
        const Float4 truncated = _mm_cvtepi32_ps(toInt(bounded).v);
        const Float4 below = Float4(1.0f) & (truncated > bounded);
        return max(bounded - (truncated - below), 0.0f);
#endif
    }
};

inline Float4 toFloat(Int4 a)
{
    return _mm_cvtepi32_ps(a.v);
}
inline Float4 floatOfBits(Int4 a)
{
    return _mm_castsi128_ps(a.v);
}

inline Mask4 maskOf(Int4 a)
{
    return a.v;
}
inline Float4 select(Mask4 first, float a, float b)
{
    return select(first, Float4(a), Float4(b));
}

template <int Lane>
float lane(Float4 a)
{
    if constexpr (Lane == 0) return _mm_cvtss_f32(a.v);
    return _mm_cvtss_f32(_mm_shuffle_ps(a.v, a.v, Lane * 0x55));
}
template <int Lane>
std::int32_t lane(Int4 a)
{
    if constexpr (Lane == 0) return _mm_cvtsi128_si32(a.v);
    return _mm_cvtsi128_si32(_mm_shuffle_epi32(a.v, Lane * 0x55));
}

template <int Lane>
Float4 spread(Float4 a)
{
    return _mm_shuffle_ps(a.v, a.v, Lane * 0x55);
}
template <int Lane>
Int4 spread(Int4 a)
{
    return _mm_shuffle_epi32(a.v, Lane * 0x55);
}
template <int A, int B, int C, int D>
Float4 shuffled(Float4 first, Float4 second)
{
    return _mm_shuffle_ps(first.v, second.v, _MM_SHUFFLE(D, C, B, A));
}

template <int A, int B, int C, int D>
Int4 shuffled(Int4 a)
{
    return _mm_shuffle_epi32(a.v, _MM_SHUFFLE(D, C, B, A));
}
inline Float4 interleaved(Float4 first, Float4 second)
{
    return _mm_unpacklo_ps(first.v, second.v);
}
template <int Bits>
Float4 blended(Float4 a, Float4 b)
{
#ifdef __AVX2__
    return _mm_blend_ps(a.v, b.v, Bits);
#else
    const Int4 second(-(Bits & 1), -(Bits >> 1 & 1), -(Bits >> 2 & 1), -(Bits >> 3 & 1));
    return select(maskOf(second), b, a);
#endif
}

inline Int4 smallProduct(Int4 a, Int4 b)
{
    return _mm_madd_epi16(a.v, b.v);
}
template <int Lane>
std::uint64_t smallLane(Int4 a)
{
    return static_cast<std::uint64_t>(_mm_extract_epi16(a.v, 2 * Lane));
}
inline std::uint64_t lowTwoLanes(Int4 a)
{
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(a.v));
}

inline float sumOfLanes(Float4 a)
{
    const __m128 two = _mm_add_ps(a.v, _mm_movehl_ps(a.v, a.v));
    return _mm_cvtss_f32(_mm_add_ss(two, _mm_shuffle_ps(two, two, 1)));
}

// Scalar loads: they are no slower than the instruction for it, which few processors are quick at.
inline Float4 gather(const float* table, Int4 at)
{
    const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(at.v));
    const auto high = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(at.v, at.v)));
    const auto entry = [table](std::uint64_t index) { return table[static_cast<std::int32_t>(index)]; };
    return _mm_setr_ps(entry(low), entry(low >> 32), entry(high), entry(high >> 32));
}
inline Int4 gather(const std::int32_t* table, Int4 at)
{
    const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(at.v));
    const auto high = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(at.v, at.v)));
    const auto entry = [table](std::uint64_t index) { return table[static_cast<std::int32_t>(index)]; };
    return _mm_setr_epi32(entry(low), entry(low >> 32), entry(high), entry(high >> 32));
}

} // namespace
} // namespace nezaiva
