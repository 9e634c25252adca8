// What lanes_test.cpp runs of the lanes of each instruction set: every operation on one set of operands, a
// row of results each, in the order of the names and twins of that file.
#pragma once

#include "numeric/lanes.h"

namespace nezaiva {

constexpr int kMostRows = 40;

// Results as bits; of four lanes the first four columns count.
using FloatRows = float[kMostRows][8];
using IntRows = std::int32_t[kMostRows][8];
using DoubleRows = double[kMostRows][4];

struct LanesUnderTest {
    void (*floats4)(const float* a, const float* b, FloatRows& rows);
    void (*floats8)(const float* a, const float* b, FloatRows& rows);
    void (*toInts4)(const float* a, const float* b, IntRows& rows);
    void (*toInts8)(const float* a, const float* b, IntRows& rows);
    void (*ints4)(const std::int32_t* a, const std::int32_t* b, IntRows& rows);
    void (*ints8)(const std::int32_t* a, const std::int32_t* b, IntRows& rows);
    void (*doubles2)(const double* a, const double* b, DoubleRows& rows);
    void (*doubles4)(const double* a, const double* b, DoubleRows& rows);
    void (*doublesToInts)(const double* a, IntRows& rows);
    void (*order)(const float* a, const float* b, FloatRows& rows); // two times four, then eight
    void (*sums)(const float* floats, const double* doubles, float (&two)[2], double (&alsoTwo)[2]);
};
extern const LanesUnderTest lanesUnderTestBase, lanesUnderTestAvx2;

namespace {

// The comparisons and the arithmetic that floats and doubles have in common.
template <class Lanes, class Rows>
int realRows(Lanes a, Lanes b, Rows& rows)
{
    using Number = typename Lanes::Scalar;
    int row = 0;
    const auto put = [&](Lanes value) { value.store(rows[row++]); };
    const Lanes one = Number(1);
    put(a + b);
    put(a - b);
    put(a * b);
    put(a / b);
    put(-a);
    put(min(a, b));
    put(max(a, b));
    put(abs(a));
    put(sqrt(a));
    put(floor(a));
    put(fraction(a));
    put(finiteOrZero(a));
    put(one & (a < b));
    put(one & (a <= b));
    put(one & (a > b));
    put(one & (a >= b));
    put(one & (a == b));
    put(one & (a != b));
    put(select(a < b, a, b));
    put(one & !((a < b) & (b == b)));
    put(one & ((a < b) | (a != a)));
    put(one & ((a <= b) ^ (b <= a)));
    const MaskOf<Lanes> less = a < b;
    put(anyLane(less) ? one : Lanes(Number(0)));
    put(allLanes(less) ? one : Lanes(Number(0)));
    put(Number(laneBits(less)));
    return row;
}

template <class Lanes>
void floatRows(const float* a, const float* b, FloatRows& rows)
{
    const Lanes x = Lanes::load(a);
    const int row = realRows(x, Lanes::load(b), rows);
    floatOfBits(bitsOf(x)).store(rows[row]);
    toFloat(bitsOf(x)).store(rows[row + 1]);
    placeOf(x).fraction.store(rows[row + 2]);
    truncated(x).store(rows[row + 3]);
    select(x < 1.0f, 2.0f, 3.0f).store(rows[row + 4]);
    keepBits(x, 0x7f0f0f0f).store(rows[row + 5]);
    setBits(x, bitsOf(Lanes::load(b))).store(rows[row + 6]);
    flipBits(x, bitsOf(Lanes::load(b))).store(rows[row + 7]);
    blended<0b1010>(x, Lanes::load(b)).store(rows[row + 8]);
    Lanes::loadInAll(b + 1).store(rows[row + 9]);
}

template <class Lanes>
void toIntRows(const float* a, const float* b, IntRows& rows)
{
    const Lanes x = Lanes::load(a);
    toInt(x).store(rows[0]);
    cellIndex(x).store(rows[1]);
    placeOf(x).cell.store(rows[2]);
    // Indices below 8.
    const auto at = bitsOf(x) & 7;
    std::int32_t bits[8];
    __builtin_memcpy(bits, b, sizeof bits);
    gather(bits, at).store(rows[3]);
    bitsOf(gather(b, at)).store(rows[4]);
}

template <class Lanes>
void intRows(const std::int32_t* a, const std::int32_t* b, IntRows& rows)
{
    const Lanes x = Lanes::load(a);
    const Lanes y = Lanes::load(b);
    int row = 0;
    const auto put = [&](Lanes value) { value.store(rows[row++]); };
    put(x + y);
    put(x - y);
    put(x * y);
    put(-x);
    put(x & y);
    put(x | y);
    put(x ^ y);
    put(~x);
    put(x << 5);
    put(x >> 5);
    put(shiftedRightUnsigned(x, 5));
    put(min(x, y));
    put(max(x, y));
    put(Lanes(1) & (x < y));
    put(Lanes(1) & (x <= y));
    put(Lanes(1) & (x > y));
    put(Lanes(1) & (x >= y));
    put(Lanes(1) & (x == y));
    put(Lanes(1) & (x != y));
    put(select(x < y, x, y));
    put(Lanes(3) & maskOf(-(x & 1)));
    put(smallProduct(x & 0x7fff, y & 0x7fff));
    put(shuffled<3, 1, 1, 0>(x));
}

template <class Lanes>
void doubleRows(const double* a, const double* b, DoubleRows& rows)
{
    const Lanes x = Lanes::load(a);
    const int row = realRows(x, Lanes::load(b), rows);
    narrowed(x).store(rows[row]);
    keepBits(x, ~std::int64_t{0xFFFF}).store(rows[row + 1]);
    blended<0b01>(x, Lanes::load(b)).store(rows[row + 2]);
    blended<0b10>(x, Lanes::load(b)).store(rows[row + 3]);
}

inline void doubleToIntRows(const double* a, IntRows& rows)
{
    const Double4 x = Double4::load(a);
    toInt(x).store(rows[0]);
    cellIndex(x).store(rows[1]);
    placeOf(x).cell.store(rows[2]);
    bitsOf(toFloat(x)).store(rows[3]);
    bitsOf(toFloat(toDouble(toFloat(x)))).store(rows[4]);
    toInt(toDouble(toInt(x))).store(rows[5]);
    bitsOf(toFloat(placeOf(x).fraction)).store(rows[6]);
    lowWords(x).store(rows[7]);
    lowWords(highHalf(x)).store(rows[8]);
    bitsOf(toFloat(highHalf(x))).store(rows[9]);
}

inline void orderRows(const float* a, const float* b, FloatRows& rows)
{
    double doubles[4];
    const Float4 x = Float4::load(a);
    const Float4 y = Float4::load(b);
    spread<2>(x).store(rows[0]);
    shuffled<3, 1, 2, 0>(x, y).store(rows[1]);
    Float4(lane<0>(x), lane<1>(x), lane<2>(x), lane<3>(x)).store(rows[2]);
    toFloat(Int4(lane<3>(toInt(x)), lane<2>(toInt(x)), lane<1>(toInt(x)), lane<0>(toInt(x)))).store(rows[3]);
    toFloat(spread<1>(toInt(x))).store(rows[4]);
    const Double4 wide = toDouble(x);
    toFloat(Double4(spread<1>(lowHalf(wide)), spread<0>(highHalf(wide)))).store(rows[5]);
    toFloat(spread<2>(wide)).store(rows[6]);
    const double second = lane<1>(lowHalf(wide));
    toFloat(Double4(Double2(lane<0>(highHalf(wide)), second), lowHalf(wide))).store(rows[7]);

    const Float8 both(x, y);
    spread<2>(both).store(rows[8]);
    shuffled<3, 1, 2, 0>(both, Float8(highHalf(both), lowHalf(both))).store(rows[9]);
    loadTwice(a).store(rows[10]);
    spreadTwice<3>(x).store(rows[11]);
    interleaved(x, y).store(rows[12]);
    interleaved(both, Float8(y, x)).store(rows[13]);
    blended<0b11000110>(both, Float8(y, x)).store(rows[14]);
    constexpr std::int32_t kNumbers[8] = {7, 0, 3, 3, 5, 1, 2, 6};
    picked(pickable(both), kNumbers).store(rows[15]);
    constexpr std::int32_t kOfFour[8] = {3, 0, 1, 1, 2, 2, 0, 3};
    pickedOfFour(pickable(Float8(x, x)), kOfFour).store(rows[16]);
    const Int4 whole = toInt(x);
    const float lowTwo = lowTwoLanes(whole) == (std::uint64_t{1} << 32) ? 1.0f : 0.0f;
    Float4(static_cast<float>(smallLane<3>(whole)), static_cast<float>(smallLane<1>(whole)), lowTwo, 0.0f)
        .store(rows[17]);
    blended<0b1000>(Double4(Double2(0.0, 1.0), Double2(2.0, 3.0)), Double4(7.0)).store(doubles);
    toFloat(Double4::load(doubles)).store(rows[18]);
}

inline void laneSums(const float* floats, const double* doubles, float (&two)[2], double (&alsoTwo)[2])
{
    two[0] = sumOfLanes(Float4::load(floats));
    two[1] = sumOfLanes(Float8::load(floats));
    alsoTwo[0] = sumOfLanes(Double2::load(doubles));
    alsoTwo[1] = sumOfLanes(Double4::load(doubles));
}

constexpr LanesUnderTest kLanesUnderTest{
    floatRows<Float4>, floatRows<Float8>,   toIntRows<Float4>,   toIntRows<Float8>, intRows<Int4>,
    intRows<Int8>,     doubleRows<Double2>, doubleRows<Double4>, doubleToIntRows,   orderRows,
    laneSums,
};

} // namespace
} // namespace nezaiva
