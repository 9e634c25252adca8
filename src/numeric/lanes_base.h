// Eight floats, eight integers and four doubles for every x86-64 processor, each a pair of SSE
// registers; for lanes.h, which documents them. The counterpart of lanes_avx2.h.
#pragma once

#include "numeric/lanes_two.h"

#include <type_traits>

namespace nezaiva {
namespace {

constexpr bool kEightAreTwoRegisters = true;

// Two registers as one. What lanes can do, a pair does with either half.
template <class Lanes>
struct Pair {
    using Scalar = typename Lanes::Scalar;
    static constexpr int kLanes = 2 * Lanes::kLanes;
    Lanes low, high;

    Pair() = default;
    Pair(Lanes lowHalf, Lanes highHalf) : low(lowHalf), high(highHalf) {}
    explicit(std::is_same_v<Scalar, bool>) Pair(Scalar all) : low(all), high(all) {}

    static Pair load(const Scalar* first) { return {Lanes::load(first), Lanes::load(first + Lanes::kLanes)}; }
    static Pair loadInAll(const Scalar* one) { return {Lanes::loadInAll(one), Lanes::loadInAll(one)}; }
    void store(Scalar* first) const
    {
        low.store(first);
        high.store(first + Lanes::kLanes);
    }

    friend Lanes lowHalf(Pair a) { return a.low; }
    friend Lanes highHalf(Pair a) { return a.high; }

    friend Pair operator+(Pair a, Pair b) { return {a.low + b.low, a.high + b.high}; }
    friend Pair operator-(Pair a, Pair b) { return {a.low - b.low, a.high - b.high}; }
    friend Pair operator*(Pair a, Pair b) { return {a.low * b.low, a.high * b.high}; }
    friend Pair operator/(Pair a, Pair b) { return {a.low / b.low, a.high / b.high}; }
    friend Pair operator-(Pair a) { return {-a.low, -a.high}; }
    friend Pair operator&(Pair a, Pair b) { return {a.low & b.low, a.high & b.high}; }
    friend Pair operator|(Pair a, Pair b) { return {a.low | b.low, a.high | b.high}; }
    friend Pair operator^(Pair a, Pair b) { return {a.low ^ b.low, a.high ^ b.high}; }
    friend Pair operator~(Pair a) { return {~a.low, ~a.high}; }
    friend Pair operator!(Pair a) { return {!a.low, !a.high}; }
    friend Pair operator<<(Pair a, int bits) { return {a.low << bits, a.high << bits}; }
    friend Pair operator>>(Pair a, int bits) { return {a.low >> bits, a.high >> bits}; }
    friend Pair shiftedRightUnsigned(Pair a, int bits)
    {
        return {shiftedRightUnsigned(a.low, bits), shiftedRightUnsigned(a.high, bits)};
    }

    friend auto operator<(Pair a, Pair b) { return pairOf(a.low < b.low, a.high < b.high); }
    friend auto operator<=(Pair a, Pair b) { return pairOf(a.low <= b.low, a.high <= b.high); }
    friend auto operator>(Pair a, Pair b) { return pairOf(a.low > b.low, a.high > b.high); }
    friend auto operator>=(Pair a, Pair b) { return pairOf(a.low >= b.low, a.high >= b.high); }
    friend auto operator==(Pair a, Pair b) { return pairOf(a.low == b.low, a.high == b.high); }
    friend auto operator!=(Pair a, Pair b) { return pairOf(a.low != b.low, a.high != b.high); }

    template <class Mask>
    friend Pair operator&(Pair a, Pair<Mask> kept)
    {
        return {a.low & kept.low, a.high & kept.high};
    }
    template <class Mask>
    friend Pair select(Pair<Mask> first, Pair a, Pair b)
    {
        return {select(first.low, a.low, b.low), select(first.high, a.high, b.high)};
    }
    friend Pair min(Pair a, Pair b) { return {min(a.low, b.low), min(a.high, b.high)}; }
    friend Pair max(Pair a, Pair b) { return {max(a.low, b.low), max(a.high, b.high)}; }
    friend Pair abs(Pair a) { return {abs(a.low), abs(a.high)}; }
    friend Pair sqrt(Pair a) { return {sqrt(a.low), sqrt(a.high)}; }
    friend Pair floor(Pair a) { return {floor(a.low), floor(a.high)}; }
    friend Pair truncated(Pair a) { return {truncated(a.low), truncated(a.high)}; }
    friend Pair fraction(Pair a) { return {fraction(a.low), fraction(a.high)}; }
    friend Pair narrowed(Pair a) { return {narrowed(a.low), narrowed(a.high)}; }
    template <class Integers>
    friend Pair keepBits(Pair a, Pair<Integers> bits)
    {
        return {keepBits(a.low, bits.low), keepBits(a.high, bits.high)};
    }
    template <class Integers>
    friend Pair setBits(Pair a, Pair<Integers> bits)
    {
        return {setBits(a.low, bits.low), setBits(a.high, bits.high)};
    }
    template <class Integers>
    friend Pair flipBits(Pair a, Pair<Integers> bits)
    {
        return {flipBits(a.low, bits.low), flipBits(a.high, bits.high)};
    }
    friend Pair keepBits(Pair a, std::int64_t bits)
    {
        return {keepBits(a.low, bits), keepBits(a.high, bits)};
    }
    friend Pair finiteOrZero(Pair a) { return {finiteOrZero(a.low), finiteOrZero(a.high)}; }

    friend int laneBits(Pair a) { return laneBits(a.low) | laneBits(a.high) << Lanes::kLanes; }
    friend bool anyLane(Pair a) { return anyLane(a.low | a.high); }
    friend bool allLanes(Pair a) { return allLanes(a.low & a.high); }

private:
    template <class Other>
    static Pair<Other> pairOf(Other lower, Other higher)
    {
        return {lower, higher};
    }
};

using Float8 = Pair<Float4>;
using Int8 = Pair<Int4>;
using Mask8 = Pair<Mask4>;
using Double4 = Pair<Double2>;
using DoubleMask4 = Pair<DoubleMask2>;

inline Int8 toInt(Float8 a)
{
    return {toInt(a.low), toInt(a.high)};
}
inline Int8 cellIndex(Float8 a)
{
    return {cellIndex(a.low), cellIndex(a.high)};
}
inline Int8 bitsOf(Float8 a)
{
    return {bitsOf(a.low), bitsOf(a.high)};
}
inline Float8 toFloat(Int8 a)
{
    return {toFloat(a.low), toFloat(a.high)};
}
inline Float8 floatOfBits(Int8 a)
{
    return {floatOfBits(a.low), floatOfBits(a.high)};
}
inline Float4 toFloat(Double4 a)
{
    return _mm_movelh_ps(_mm_cvtpd_ps(a.low.v), _mm_cvtpd_ps(a.high.v));
}
inline Double4 toDouble(Float4 a)
{
    return {_mm_cvtps_pd(a.v), _mm_cvtps_pd(_mm_movehl_ps(a.v, a.v))};
}
inline Double4 toDouble(Int4 a)
{
    return {_mm_cvtepi32_pd(a.v), _mm_cvtepi32_pd(_mm_unpackhi_epi64(a.v, a.v))};
}
inline Int4 toInt(Double4 a)
{
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(a.low.v), _mm_cvttpd_epi32(a.high.v));
}

inline Mask8 maskOf(Int8 a)
{
    return {maskOf(a.low), maskOf(a.high)};
}
inline Int8 smallProduct(Int8 a, Int8 b)
{
    return {smallProduct(a.low, b.low), smallProduct(a.high, b.high)};
}
inline Float8 select(Mask8 first, float a, float b)
{
    return select(first, Float8(a), Float8(b));
}
inline Float8 loadTwice(const float* four)
{
    return {Float4::load(four), Float4::load(four)};
}

template <int Lane>
Float8 spread(Float8 a)
{
    return {spread<Lane>(a.low), spread<Lane>(a.high)};
}
template <int Lane>
Double4 spread(Double4 a)
{
    const Double2 two = spread<Lane % 2>(Lane < 2 ? a.low : a.high);
    return {two, two};
}
template <int Lane>
Float8 spreadTwice(Float4 a)
{
    return {spread<Lane>(a), spread<Lane>(a)};
}
template <int A, int B, int C, int D>
Int8 shuffled(Int8 a)
{
    return {shuffled<A, B, C, D>(a.low), shuffled<A, B, C, D>(a.high)};
}
inline Float8 interleaved(Float8 first, Float8 second)
{
    return {interleaved(first.low, second.low), interleaved(first.high, second.high)};
}
template <int Bits>
Float8 blended(Float8 a, Float8 b)
{
    constexpr int kUpper = Bits / 16;
    return {blended<Bits % 16>(a.low, b.low), blended<kUpper>(a.high, b.high)};
}
template <int Bits>
Double4 blended(Double4 a, Double4 b)
{
    constexpr int kUpper = Bits / 4;
    return {blended<Bits % 4>(a.low, b.low), blended<kUpper>(a.high, b.high)};
}
template <int A, int B, int C, int D>
Float8 shuffled(Float8 first, Float8 second)
{
    return {shuffled<A, B, C, D>(first.low, second.low), shuffled<A, B, C, D>(first.high, second.high)};
}

inline Float8 gather(const float* table, Int8 at)
{
    return {gather(table, at.low), gather(table, at.high)};
}
inline Int8 gather(const std::int32_t* table, Int8 at)
{
    return {gather(table, at.low), gather(table, at.high)};
}

template <class Lanes>
struct Pickable {
    alignas(16) float numbers[Lanes::kLanes];
};
template <class Lanes>
Pickable<Lanes> pickable(Lanes a)
{
    Pickable<Lanes> from;
    a.store(from.numbers);
    return from;
}
template <class Lanes>
Float8 picked(const Pickable<Lanes>& from, const std::int32_t* lanes)
{
    const float* const f = from.numbers;
    return {Float4(f[lanes[0]], f[lanes[1]], f[lanes[2]], f[lanes[3]]),
            Float4(f[lanes[4]], f[lanes[5]], f[lanes[6]], f[lanes[7]])};
}
template <class Lanes>
Float8 pickedOfFour(const Pickable<Lanes>& from, const std::int32_t* lanes)
{
    return picked(from, lanes);
}

} // namespace
} // namespace nezaiva
