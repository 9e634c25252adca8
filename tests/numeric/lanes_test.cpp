// Every operation of the lanes beside a twin for plain numbers, with both instruction sets: on all pairs of
// special numbers and on random bits.

#include "numeric/cell_index.h"
#include "numeric/lanes_body.h"
#include "numeric/simd_dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

namespace nezaiva {
namespace {

constexpr int kRandomOperands = 100000;

std::vector<const LanesUnderTest*> sets()
{
    if (bestInstructionSet() == InstructionSet::Avx2) return {&lanesUnderTestBase, &lanesUnderTestAvx2};
    return {&lanesUnderTestBase};
}

template <class Number>
std::vector<Number> specialNumbers()
{
    using Limits = std::numeric_limits<Number>;
    std::vector<Number> numbers = {0, Limits::min(), Limits::max(), Limits::infinity(), Limits::denorm_min()};
    for (const double size :
         {1e-30, 0.3, 0.5, 0.99999997, 1.0, 1.5, 2.5, 31.75, 8388607.5, 8388608.0, 8388609.0, 2147483520.0,
          2147483647.0, 2147483648.0, 4503599627370495.5, 4503599627370496.0, 1e18, 1e30})
        numbers.push_back(static_cast<Number>(size));
    const std::size_t positive = numbers.size();
    for (std::size_t i = 0; i < positive; ++i)
        numbers.push_back(-numbers[i]);
    numbers.push_back(Limits::quiet_NaN());
    return numbers;
}

// Pairs of operands: all of the special numbers, then random bits.
template <class Number>
struct Operands {
    std::vector<Number> a, b;

    Operands()
    {
        for (const Number first : specialNumbers<Number>())
            for (const Number second : specialNumbers<Number>())
                add(first, second);
        using Bits = std::conditional_t<sizeof(Number) == 8, std::uint64_t, std::uint32_t>;
        std::mt19937_64 random(3);
        for (int i = 0; i < kRandomOperands; ++i)
            add(std::bit_cast<Number>(static_cast<Bits>(random())),
                std::bit_cast<Number>(static_cast<Bits>(random())));
        while (a.size() % 8 != 0)
            add(Number(1), Number(1));
    }
    void add(Number first, Number second)
    {
        a.push_back(first);
        b.push_back(second);
    }
};

template <class Number>
bool sameBits(Number got, Number expected)
{
    if constexpr (std::is_floating_point_v<Number>) {
        if (std::isnan(expected)) return std::isnan(got);
        return got == expected && std::signbit(got) == std::signbit(expected);
    }
    return got == expected;
}

template <class Number>
Number plainFraction(Number a)
{
    if (!std::isfinite(a)) return 0;
    const Number rest = a - std::floor(a);
    return rest == 0 ? Number(0) : rest;
}

template <class Number>
Number truth(bool holds)
{
    return holds ? 1 : 0;
}

// The rows of realRows that each lane has for itself.
template <class Number>
std::vector<Number> plainReals(Number a, Number b)
{
    const auto one = truth<Number>;
    return {a + b,
            a - b,
            a * b,
            a / b,
            -a,
            a < b ? a : b,
            a > b ? a : b,
            std::fabs(a),
            std::sqrt(a),
            std::floor(a),
            plainFraction(a),
            finiteOrZero(a),
            one(a < b),
            one(a <= b),
            one(a > b),
            one(a >= b),
            one(a == b),
            one(a != b),
            a < b ? a : b,
            one(!(a < b && !std::isnan(b))),
            one(a < b || std::isnan(a)),
            one((a <= b) != (b <= a))};
}

// The rows of realRows that all lanes share: anyLane, allLanes and laneBits of a < b.
template <class Number>
std::vector<Number> plainAnswers(const Number* a, const Number* b, int lanes)
{
    int bits = 0;
    for (int lane = 0; lane < lanes; ++lane)
        bits |= (a[lane] < b[lane] ? 1 : 0) << lane;
    return {truth<Number>(bits != 0), truth<Number>(bits == (1 << lanes) - 1), static_cast<Number>(bits)};
}

// plainReals and plainAnswers against a run.
template <class Number, class Rows>
void checkReals(void (*run)(const Number*, const Number*, Rows&), int lanes)
{
    const Operands<Number> operands;
    for (std::size_t first = 0; first < operands.a.size(); first += static_cast<std::size_t>(lanes)) {
        const Number* const a = operands.a.data() + first;
        const Number* const b = operands.b.data() + first;
        Rows rows;
        run(a, b, rows);
        for (int lane = 0; lane < lanes; ++lane) {
            std::vector<Number> expected = plainReals(a[lane], b[lane]);
            for (const Number answer : plainAnswers(a, b, lanes))
                expected.push_back(answer);
            for (std::size_t row = 0; row < expected.size(); ++row)
                ASSERT_TRUE(sameBits(rows[row][lane], expected[row]))
                    << "row " << row << " of " << a[lane] << ", " << b[lane] << ": " << rows[row][lane]
                    << " instead of " << expected[row];
        }
    }
}

std::int32_t plainToInt(double a)
{
    return a > -2147483649.0 && a < 2147483648.0 ? static_cast<std::int32_t>(a) : INT32_MIN;
}

template <class Number>
Number plainFloor(Number a)
{
    return std::floor(finiteOrZero(a));
}

std::vector<std::int32_t> plainInts(std::int32_t a, std::int32_t b)
{
    const auto x = static_cast<std::uint32_t>(a);
    const auto y = static_cast<std::uint32_t>(b);
    const auto wrapped = [](std::uint32_t value) { return static_cast<std::int32_t>(value); };
    return {wrapped(x + y),  wrapped(x - y),
            wrapped(x * y),  wrapped(0u - x),
            a & b,           a | b,
            a ^ b,           ~a,
            wrapped(x << 5), a >> 5,
            wrapped(x >> 5), std::min(a, b),
            std::max(a, b),  a<b, a <= b, a> b,
            a >= b,          a == b,
            a != b,          std::min(a, b),
            (a & 1) * 3,     (a & 0x7fff) * (b & 0x7fff)};
}

} // namespace

TEST(Lanes, FloatsActLikePlainOnes)
{
    for (const LanesUnderTest* set : sets()) {
        checkReals<float>(set->floats4, 4);
        checkReals<float>(set->floats8, 8);
    }
}

TEST(Lanes, DoublesActLikePlainOnes)
{
    for (const LanesUnderTest* set : sets()) {
        checkReals<double>(set->doubles2, 2);
        checkReals<double>(set->doubles4, 4);
    }
}

TEST(Lanes, IntegersActLikePlainOnes)
{
    std::vector<std::int32_t> numbers = {0, 1, -1, 7, INT32_MIN, INT32_MAX, INT32_MIN + 1, 65536};
    std::mt19937 random(4);
    while (numbers.size() < 256)
        numbers.push_back(static_cast<std::int32_t>(random()));
    for (const LanesUnderTest* set : sets())
        for (std::size_t i = 0; i + 8 <= numbers.size(); ++i)
            for (std::size_t j = 0; j + 8 <= numbers.size(); j += 3)
                for (const int lanes : {4, 8}) {
                    IntRows rows;
                    (lanes == 4 ? set->ints4 : set->ints8)(&numbers[i], &numbers[j], rows);
                    for (std::size_t lane = 0; lane < static_cast<std::size_t>(lanes); ++lane) {
                        const auto expected = plainInts(numbers[i + lane], numbers[j + lane]);
                        for (std::size_t row = 0; row < expected.size(); ++row)
                            ASSERT_EQ(rows[row][lane], expected[row])
                                << "row " << row << " of " << numbers[i + lane] << ", " << numbers[j + lane];
                        constexpr std::size_t kShuffled[] = {3, 1, 1, 0};
                        ASSERT_EQ(rows[expected.size()][lane],
                                  numbers[i + lane / 4 * 4 + kShuffled[lane % 4]]);
                    }
                }
}

TEST(Lanes, FloatsBecomeCellsByTheRuleForOneNumber)
{
    const Operands<float> operands;
    for (const LanesUnderTest* set : sets())
        for (std::size_t first = 0; first < operands.a.size(); first += 8)
            for (const int lanes : {4, 8}) {
                const float* const a = &operands.a[first];
                const float* const b = &operands.b[first];
                IntRows rows;
                (lanes == 4 ? set->toInts4 : set->toInts8)(a, b, rows);
                for (int lane = 0; lane < lanes; ++lane) {
                    const float value = a[lane];
                    EXPECT_EQ(rows[0][lane], plainToInt(static_cast<double>(value))) << value;
                    EXPECT_EQ(rows[1][lane], cellIndex(value)) << value;
                    EXPECT_EQ(rows[2][lane], cellIndex(plainFloor(value))) << value;
                    const auto entry =
                        std::bit_cast<std::int32_t>(b[std::bit_cast<std::uint32_t>(value) & 7]);
                    EXPECT_EQ(rows[3][lane], entry);
                    EXPECT_EQ(rows[4][lane], entry);
                }
                FloatRows floats;
                (lanes == 4 ? set->floats4 : set->floats8)(a, b, floats);
                for (int lane = 0; lane < lanes; ++lane) {
                    constexpr int kBehindReals = 25;
                    const auto bits = std::bit_cast<std::int32_t>(a[lane]);
                    EXPECT_EQ(std::bit_cast<std::int32_t>(floats[kBehindReals][lane]), bits);
                    EXPECT_EQ(floats[kBehindReals + 1][lane], static_cast<float>(bits));
                    EXPECT_EQ(floats[kBehindReals + 2][lane], plainFraction(a[lane])) << a[lane];
                    if (a[lane] >= 0.0f && a[lane] < 2147483648.0f) {
                        EXPECT_EQ(floats[kBehindReals + 3][lane], std::floor(a[lane])) << a[lane];
                    }
                    EXPECT_EQ(floats[kBehindReals + 4][lane], a[lane] < 1.0f ? 2.0f : 3.0f) << a[lane];
                    const auto otherBits = std::bit_cast<std::int32_t>(b[lane]);
                    const auto resultBits = [&](int row) {
                        return std::bit_cast<std::int32_t>(floats[kBehindReals + row][lane]);
                    };
                    EXPECT_EQ(resultBits(5), bits & 0x7f0f0f0f);
                    EXPECT_EQ(resultBits(6), bits | otherBits);
                    EXPECT_EQ(resultBits(7), bits ^ otherBits);
                    EXPECT_EQ(resultBits(8), lane == 1 || lane == 3 ? otherBits : bits);
                    EXPECT_EQ(resultBits(9), std::bit_cast<std::int32_t>(b[1]));
                }
            }
}

TEST(Lanes, DoublesBecomeCellsByTheRuleForOneNumber)
{
    const Operands<double> operands;
    for (const LanesUnderTest* set : sets())
        for (std::size_t first = 0; first < operands.a.size(); first += 4) {
            IntRows rows;
            set->doublesToInts(&operands.a[first], rows);
            for (std::size_t lane = 0; lane < 4; ++lane) {
                const double a = operands.a[first + lane];
                EXPECT_EQ(rows[0][lane], plainToInt(a)) << a;
                EXPECT_EQ(rows[1][lane], cellIndex(a)) << a;
                EXPECT_EQ(rows[2][lane], cellIndex(plainFloor(a))) << a;
                const auto narrow = static_cast<float>(a);
                EXPECT_TRUE(sameBits(std::bit_cast<float>(rows[3][lane]), narrow)) << a;
                EXPECT_TRUE(sameBits(std::bit_cast<float>(rows[4][lane]), narrow)) << a;
                EXPECT_EQ(rows[5][lane], plainToInt(a)) << a;
                EXPECT_EQ(std::bit_cast<float>(rows[6][lane]), static_cast<float>(plainFraction(a))) << a;
                const auto lowWord = [](double d) {
                    return static_cast<std::int32_t>(std::bit_cast<std::int64_t>(d));
                };
                const double ofHighHalf = operands.a[first + 2 + lane % 2];
                EXPECT_EQ(rows[7][lane], lowWord(a));
                EXPECT_EQ(rows[8][lane], lowWord(ofHighHalf));
                const float expected = lane < 2 ? static_cast<float>(ofHighHalf) : 0.0f;
                EXPECT_TRUE(sameBits(std::bit_cast<float>(rows[9][lane]), expected)) << ofHighHalf;
            }
        }
}

TEST(Lanes, DoublesAreNarrowedAndMasked)
{
    const Operands<double> operands;
    constexpr int kBehindReals = 25;
    for (const LanesUnderTest* set : sets())
        for (std::size_t first = 0; first < operands.a.size(); first += 4)
            for (const std::size_t lanes : {2u, 4u}) {
                DoubleRows rows;
                (lanes == 2 ? set->doubles2 : set->doubles4)(&operands.a[first], &operands.b[first], rows);
                for (std::size_t lane = 0; lane < lanes; ++lane) {
                    const double a = operands.a[first + lane];
                    const volatile float narrow = static_cast<float>(a);
                    EXPECT_TRUE(sameBits(rows[kBehindReals][lane], static_cast<double>(narrow))) << a;
                    const std::int64_t bits = std::bit_cast<std::int64_t>(a) & ~std::int64_t{0xFFFF};
                    EXPECT_EQ(std::bit_cast<std::int64_t>(rows[kBehindReals + 1][lane]), bits) << a;
                    const double b = operands.b[first + lane];
                    EXPECT_TRUE(sameBits(rows[kBehindReals + 2][lane], lane == 0 ? b : a));
                    EXPECT_TRUE(sameBits(rows[kBehindReals + 3][lane], lane == 1 ? b : a));
                }
            }
}

TEST(Lanes, KeepAndChangeTheirOrder)
{
    const float a[] = {0, 1, 2, 3};
    const float b[] = {4, 5, 6, 7};
    constexpr bool kFour = false;
    constexpr bool kEight = true;
    struct Row {
        bool eight;
        float lanes[8];
    };
    constexpr Row kExpected[] = {
        {kFour, {2, 2, 2, 2}},
        {kFour, {3, 1, 6, 4}},
        {kFour, {0, 1, 2, 3}},
        {kFour, {3, 2, 1, 0}},
        {kFour, {1, 1, 1, 1}},
        {kFour, {1, 1, 2, 2}},
        {kFour, {2, 2, 2, 2}},
        {kFour, {2, 1, 0, 1}},
        {kEight, {2, 2, 2, 2, 6, 6, 6, 6}},
        {kEight, {3, 1, 6, 4, 7, 5, 2, 0}},
        {kEight, {0, 1, 2, 3, 0, 1, 2, 3}},
        {kEight, {3, 3, 3, 3, 3, 3, 3, 3}},
        {kFour, {0, 4, 1, 5}},
        {kEight, {0, 4, 1, 5, 4, 0, 5, 1}},
        {kEight, {0, 5, 6, 3, 4, 5, 2, 3}},
        {kEight, {7, 0, 3, 3, 5, 1, 2, 6}},
        {kEight, {3, 0, 1, 1, 2, 2, 0, 3}},
        {kFour, {3, 1, 1, 0}},
        {kFour, {0, 1, 2, 7}},
    };
    for (const LanesUnderTest* set : sets()) {
        FloatRows rows;
        set->order(a, b, rows);
        for (std::size_t row = 0; row < std::size(kExpected); ++row)
            for (int lane = 0; lane < (kExpected[row].eight ? 8 : 4); ++lane)
                EXPECT_EQ(rows[row][lane], kExpected[row].lanes[lane]) << row << ", " << lane;
    }
}

TEST(Lanes, AreSummedInTheirFixedOrder)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> number(-100.0f, 100.0f);
    for (const LanesUnderTest* set : sets())
        for (int i = 0; i < 1000; ++i) {
            float f[8];
            double d[4];
            for (float& each : f)
                each = number(random);
            for (int lane = 0; lane < 4; ++lane)
                d[lane] = static_cast<double>(f[lane]) * 1.1;
            float sums[2];
            double doubleSums[2];
            set->sums(f, d, sums, doubleSums);
            EXPECT_EQ(sums[0], (f[0] + f[2]) + (f[1] + f[3]));
            EXPECT_EQ(sums[1], ((f[0] + f[4]) + (f[2] + f[6])) + ((f[1] + f[5]) + (f[3] + f[7])));
            EXPECT_EQ(doubleSums[0], d[0] + d[1]);
            EXPECT_EQ(doubleSums[1], (d[0] + d[2]) + (d[1] + d[3]));
        }
}

} // namespace nezaiva
