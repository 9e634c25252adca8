// The vocabulary of kernels that are written once and compiled for two instruction sets: a few numbers side
// by side, in lanes, with one operation for all of them. Without AVX2, eight lanes are a pair of SSE
// registers. Every operation gives the same bits with both sets, but for the bits of a NaN.
//
//   Float4  Int4  Mask4        four floats, 32-bit integers, answers to a comparison
//   Float8  Int8  Mask8        eight of them
//   Double2  DoubleMask2       two doubles
//   Double4  DoubleMask4       four doubles
//   MaskOf<L>  IntOf<L>        the mask of lanes L; the integers of floats or doubles L
//   L::kLanes  L::Scalar       how many, of what
//
// Making and taking apart. A plain number where lanes are wanted stands in every lane.
//
//   Float4(a, b, c, d)         also Int4, and Double2(a, b)
//   Float8(low, high)          also Int8, Mask8, Double4, DoubleMask4
//   lowHalf(a)  highHalf(a)    of these
//   L::load(p)  a.store(p)     kLanes numbers from p on, in order; p needs no alignment
//   L::loadInAll(p)            floats that all are the one at p: less work than L(*p) is
//   loadTwice(p)               Float8, both halves the four floats at p
//   lane<I>(a)                 the number in a lane of Float4, Int4 or Double2
//   smallLane<I>(a)            a lane of Int4 that is in 0..65535, as 64 bits; sooner than lane
//   lowTwoLanes(a)             lanes 0 and 1 of Int4 as one number of 64 bits, lane 0 the lower
//   gather(table, indices)     table[index] of floats or integers; the indices are not checked
//
// Arithmetic, every operation rounded.
//
//   a + b  -  *  /  -a         of integers too, which wrap; they have no /
//   smallProduct(a, b)         of integers in 0..32767: sooner than a * b
//   min(a, b)  max(a, b)       a < b ? a : b  and  a > b ? a : b, so b where either is NaN
//   abs  sqrt  floor           of floats and doubles; floor keeps -0, NaN and the infinities
//   truncated(a)               of floats in 0..2^31, and of no others, a without its fraction; for the base
//                              sooner than floor
//   narrowed(a)                doubles rounded to float. Casts of plain numbers would not do: g++ 12 makes
//                              Double2(x, y) of Double2(double(float(x)), double(float(y)))
//   sumOfLanes(a)              of four floats (0 + 2) + (1 + 3); of two doubles 0 + 1; of twice as many, that
//                              of lowHalf + highHalf
//   &  |  ^  ~  <<  >>         of integers; >> keeps the sign, shiftedRightUnsigned(a, bits) brings in zeros
//   bitsOf(a)  floatOfBits(i)  the bits of floats as integers, and back
//   keepBits(a, bits)          floats or doubles with those bits alone that integers of their size have
//   setBits(a, bits)           floats with the bits of integers set
//   flipBits(a, bits)          and changed
//   lowWords(a)                the lower 32 bits of doubles; those of Double2 twice
//
// Comparisons give masks. None with a NaN holds but !=, which does.
//
//   <  <=  >  >=  ==  !=       and, of masks, &  |  ^  !
//   select(mask, a, b)         a in the lanes where the mask holds, b in the others
//   a & mask                   a where it holds, 0 elsewhere
//   blended<Bits>(a, b)        b in the lanes whose bits are set in Bits, else a; of floats and doubles
//   maskOf(a)                  from integers: -1 where it is to hold, else 0
//   anyLane  allLanes          whether a mask holds anywhere, everywhere
//   laneBits(mask)             lane i in bit i
//
// Conversions and cells. A coordinate that is not finite lies in cell 0 with the fraction 0.
//
//   toFloat(a)                 of Int4, Int8, Double4; of Double2, with 0 in the upper lanes
//   toDouble(a)                of Float4, Int4
//   toInt(a)                   truncates; what lies beyond 32 bits, or is NaN, gives the lowest integer
//   cellIndex(a)               truncates; what lies beyond 32 bits gives the nearest end, what is not finite
//                              gives 0: the rule of numeric/cell_index.h
//   finiteOrZero(a)            0 for what is not finite
//   fraction(a)                a - floor(a), 0 for what is not finite; in 0..1, for that of a tiny negative
//                              number is rounded to 1
//   placeOf(a)                 {cell, fraction}: cellIndex(floor(a)) and fraction(a); not of Double2
//
// Order. What is done with four lanes is done in either half of eight floats.
//
//   spread<I>(a)               lane I in all lanes
//   spreadTwice<I>(a)          lane I of Float4 in all lanes of a Float8
//   shuffled<A, B, C, D>(a, b) lanes A and B of a, then C and D of b; of floats
//   shuffled<A, B, C, D>(a)    lanes A, B, C and D; of integers
//   interleaved(a, b)          lane 0 of a, then of b, and lane 1 of a and of b; of floats
//   Pickable<L> p = pickable(a)   a Float8 made ready to be picked from; for the base, a Float4 too
//   picked(p, numbers)         the lanes of p that eight numbers in memory name
//   pickedOfFour(p, numbers)   the same, for numbers in 0..3 and equal halves of a Float8; sooner
//
// Where the sets are best served by different forms, a kernel asks kEightAreTwoRegisters, which holds for the
// base.
//
// Lanes are kept in variables and small structs. g++ leaves an array of them in memory, even where a loop
// over it is unrolled, which costs more than the lanes gain.
//
// A kernel `foo` for both instruction sets is four files:
//
//   foo.h         What callers see: the formula, ranges, units.
//                     float foo(float x, float y);
//   foo_body.h    Includes this header. The table of the kernel's functions, declared once for each set, and
//                 the arithmetic, on lanes alone, in an unnamed namespace.
//                     struct FooKernels {
//                         float (*foo)(float x, float y);
//                     };
//                     extern const FooKernels fooBase, fooAvx2;
//                     namespace {
//                     inline float fooOnLanes(float x, float y) { ... }
//                     constexpr FooKernels kFooOnLanes{fooOnLanes};
//                     } // namespace
//   foo.cpp       Includes foo.h, foo_body.h and numeric/simd_dispatch.h.
//                     constinit const FooKernels fooBase = kFooOnLanes;
//                     float foo(float x, float y) { return chosen(fooBase, fooAvx2).foo(x, y); }
//   foo_avx2.cpp  Includes foo_body.h alone; src/kernels/CMakeLists.txt knows the flags by the file's name.
//                     constinit const FooKernels fooAvx2 = kFooOnLanes;
//
// The object of foo_avx2.cpp may share no function with another object: of a shared inline function the
// linker keeps one body, which may be the one for AVX2, on a processor without it. So whatever foo_body.h
// includes has its functions in unnamed namespaces, or static, or only declares them: not <cmath>, not
// <algorithm>, not numeric/vector_math.h. avx2_objects_test examines these objects. The kernel's own test
// holds it to a plain twin under setInstructionSet, for both sets.
#pragma once

#ifdef __AVX2__
#include "numeric/lanes_avx2.h"
#else
#include "numeric/lanes_base.h"
#endif

namespace nezaiva {
namespace {

template <class Lanes>
using MaskOf = decltype(Lanes() < Lanes());
template <class Floats>
using IntOf = decltype(toInt(Floats()));

inline Int4 lowWords(Double2 a)
{
    return _mm_shuffle_epi32(_mm_castpd_si128(a.v), _MM_SHUFFLE(2, 0, 2, 0));
}
inline Float4 toFloat(Double2 a)
{
    return _mm_cvtpd_ps(a.v);
}
inline Int4 lowWords(Double4 a)
{
    return bitsOf(
        shuffled<0, 2, 0, 2>(Float4(_mm_castpd_ps(lowHalf(a).v)), Float4(_mm_castpd_ps(highHalf(a).v))));
}

inline Int4 cellIndex(Double4 a)
{
    return toInt(min(max(finiteOrZero(a), -2147483648.0), 2147483647.0));
}

inline float sumOfLanes(Float8 a)
{
    return sumOfLanes(lowHalf(a) + highHalf(a));
}
inline double sumOfLanes(Double4 a)
{
    return sumOfLanes(lowHalf(a) + highHalf(a));
}

template <class Lanes>
struct CellPlace {
    IntOf<Lanes> cell;
    Lanes fraction;
};

template <class Lanes>
CellPlace<Lanes> placeOf(Lanes a)
{
    const Lanes finite = finiteOrZero(a);
    const Lanes whole = floor(finite);
    return {cellIndex(whole), finite - whole};
}

} // namespace
} // namespace nezaiva
