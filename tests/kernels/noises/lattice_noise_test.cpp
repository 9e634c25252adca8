#include "kernels/noises/lattice_noise.h"

#include "support/instruction_sets.h"
#include "support/noise_points.h"
#include "support/plain_noise.h"
#include "support/tolerances.h"

#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using namespace nezaiva;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr int kMillion = 1000000;
constexpr float kTwin = 2e-6f; // the kernels weigh the neighbours, the plain formula nests differences
constexpr float kUnit = 1.0f + kTwin;

// Tables whose grid holds value(x, y, z), and 0 behind it.
template <typename Value>
std::unique_ptr<NoiseTables> gridOf(Value value)
{
    auto tables = std::make_unique<NoiseTables>();
    for (int i = 0; i < 32768; ++i)
        tables->random[i] = value(i & 31, i >> 5 & 31, i >> 10);
    layOutLattice(*tables);
    return tables;
}

} // namespace

TEST(LatticeNoise, SplineReproducesARampBetweenCells)
{
    // A quadratic B-spline through a ramp gives cell + fraction - 1/2. All numbers are dyadic, so exact.
    withEveryInstructionSet([] {
        const auto alongX = gridOf([](int x, int, int) { return static_cast<float>(x) / 32.0f; });
        const auto alongY = gridOf([](int, int y, int) { return static_cast<float>(y) / 32.0f; });
        const auto alongZ = gridOf([](int, int, int z) { return static_cast<float>(z) / 32.0f; });
        constexpr double d = 10.25 / 32.0;
        constexpr float kExpected = 9.75f / 32.0f;
        EXPECT_SAME_BITS(latticeNoise2(*alongX, d, 0.1), kExpected);
        EXPECT_SAME_BITS(latticeNoise3(*alongX, d, 0.5, 0.25), kExpected);
        EXPECT_SAME_BITS(latticeNoise2(*alongY, 0.5, d), kExpected);
        EXPECT_SAME_BITS(latticeNoise3(*alongY, 0.5, d, 0.25), kExpected);
        EXPECT_SAME_BITS(latticeNoise3(*alongZ, 0.5, 0.25, d), kExpected);
    });
}

TEST(LatticeNoise, FourthDimensionHashesTheCellsValue)
{
    // With a table of zeros m is 21568.16 (as a float 21568.16015625) and c is 2, so that each of the
    // three steps is the fraction 0.3203125; the spline doubles it, and the end takes 1 off.
    withEveryInstructionSet([] {
        const auto zeros = gridOf([](int, int, int) { return 0.0f; });
        EXPECT_SAME_BITS(latticeNoise4(*zeros, 0.3125, 0.6015625, 0.90625, 0.75, 4),
                         2.0f * 0.3203125f - 1.0f);
    });
}

TEST(LatticeNoise, RepeatsAfterOneUnitOnEveryAxis)
{
    withEveryInstructionSet([] {
        constexpr double x = 0.3125;
        constexpr double y = 0.71875 + 1.0 / 128;
        constexpr double z = 0.03125;
        EXPECT_SAME_BITS(latticeNoise2(x + 1, y), latticeNoise2(x, y));
        EXPECT_SAME_BITS(latticeNoise2(x, y - 5), latticeNoise2(x, y));
        EXPECT_SAME_BITS(latticeNoise3(x + 1, y, z), latticeNoise3(x, y, z));
        EXPECT_SAME_BITS(latticeNoise3(x, y + 1, z), latticeNoise3(x, y, z));
        EXPECT_SAME_BITS(latticeNoise3(x, y, z + 1), latticeNoise3(x, y, z));
        EXPECT_SAME_BITS(latticeNoise3(x - 3, y - 2, z - 1), latticeNoise3(x, y, z));
        EXPECT_SAME_BITS(latticeNoise4(x + 1, y - 1, z + 2, 1.375, 100), latticeNoise4(x, y, z, 0.375, 100));
        EXPECT_NE(latticeNoise3(x + 0.5, y, z), latticeNoise3(x, y, z));
    });
}

TEST(LatticeNoise, OnlyLargePositiveCoordinatesCountAsZero)
{
    withEveryInstructionSet([] {
        EXPECT_SAME_BITS(latticeNoise3(2e9 + 0.25, 0.5, 0.5), latticeNoise3(0.0, 0.5, 0.5));
        EXPECT_SAME_BITS(latticeNoise3(0.5, 1e9 + 0.25, 0.5), latticeNoise3(0.5, 0.0, 0.5));
        EXPECT_SAME_BITS(latticeNoise3(-2e9 - 0.75, 0.5, 0.5), latticeNoise3(0.25, 0.5, 0.5));
        EXPECT_SAME_BITS(latticeNoise3(1e9 - 0.75, 0.5, 0.5), latticeNoise3(0.25, 0.5, 0.5));
        EXPECT_SAME_BITS(latticeNoise4(0.5, 0.5, 0.5, 1e9 + 0.25, 100),
                         latticeNoise4(0.5, 0.5, 0.5, 0.0, 100));
        EXPECT_NE(latticeNoise3(0.25, 0.5, 0.5), latticeNoise3(0.0, 0.5, 0.5));
        EXPECT_NE(latticeNoise4(0.5, 0.5, 0.5, 0.25, 100), latticeNoise4(0.5, 0.5, 0.5, 0.0, 100));
    });
}

TEST(LatticeNoise, TwoDimensionsNarrowTheirCoordinates)
{
    withEveryInstructionSet([] {
        const double fine = 0.3 + 1e-12;
        EXPECT_SAME_BITS(latticeNoise2(fine, 0.5), latticeNoise2(static_cast<double>(0.3f), 0.5));
        // 1e7 + 0.25 has no quarter as a float.
        EXPECT_SAME_BITS(latticeNoise2(1e7 + 0.25, 0.5), latticeNoise2(0.0, 0.5));
        EXPECT_SAME_BITS(latticeNoise3(1e7 + 0.25, 0.5, 0.0), latticeNoise3(0.25, 0.5, 0.0));
    });
}

TEST(LatticeNoise, PeriodZeroStandsStill)
{
    withEveryInstructionSet([] {
        const float still = latticeNoise4(0.1, 0.2, 0.3, 0.0, 0);
        for (const double w : {0.25, 0.999, -7.3, 1e12})
            EXPECT_SAME_BITS(latticeNoise4(0.1, 0.2, 0.3, w, 0), still);
        // At w = 0 every period is in its first step with the fraction 0.
        EXPECT_SAME_BITS(latticeNoise4(0.1, 0.2, 0.3, 0.0, 100), still);
    });
}

TEST(LatticeNoise, PeriodIsAtMostSixtyThousand)
{
    withEveryInstructionSet([] {
        for (const double w : {0.1, 0.77, 0.99999999999}) {
            const float longest = latticeNoise4(0.1, 0.2, 0.3, w, 60000);
            EXPECT_SAME_BITS(latticeNoise4(0.1, 0.2, 0.3, w, 100000), longest);
            EXPECT_SAME_BITS(latticeNoise4(0.1, 0.2, 0.3, w, INT32_MAX), longest);
            EXPECT_NEAR(plain::lattice4(plain::currentTable().data(), 0.1, 0.2, 0.3, w, 60000), longest,
                        kTwin);
        }
        EXPECT_NE(latticeNoise4(0.1, 0.2, 0.3, 0.1, 59999), latticeNoise4(0.1, 0.2, 0.3, 0.1, 60000));
    });
}

TEST(LatticeNoise, TimeRunsThroughStepsOfThePeriod)
{
    // Along w the noise moves in every step, and comes round at 1.
    withEveryInstructionSet([] {
        for (int step = 0; step < 8; ++step)
            EXPECT_NE(latticeNoise4(0.1, 0.2, 0.3, step / 8.0, 8),
                      latticeNoise4(0.1, 0.2, 0.3, (step + 1) / 8.0, 8))
                << step;
        EXPECT_SAME_BITS(latticeNoise4(0.1, 0.2, 0.3, 1.0, 8), latticeNoise4(0.1, 0.2, 0.3, 0.0, 8));
    });
}

TEST(LatticeNoise, WhatIsNotFiniteCountsAsZero)
{
    withEveryInstructionSet([] {
        for (const double d : {kNan, kInfinity, -kInfinity}) {
            EXPECT_SAME_BITS(latticeNoise2(d, 0.3), latticeNoise2(0.0, 0.3));
            EXPECT_SAME_BITS(latticeNoise2(0.3, d), latticeNoise2(0.3, 0.0));
            EXPECT_SAME_BITS(latticeNoise3(d, 0.3, d), latticeNoise3(0.0, 0.3, 0.0));
            EXPECT_SAME_BITS(latticeNoise4(0.1, d, 0.3, d, 100), latticeNoise4(0.1, 0.0, 0.3, 0.0, 100));
        }
    });
}

TEST(LatticeNoise, UnusedLanesNeverReachTheResult)
{
    auto poisoned = std::make_unique<NoiseTables>(currentNoiseTables);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (int x = 0; x < kLatticeSide; ++x) {
        for (int i = kLatticeSide; i < kLatticeRowStride; ++i)
            poisoned->plane[x][i] = nan;
        for (int y = 0; y < kLatticeSide; ++y)
            for (int i = kLatticeSide; i < kLatticeRowStride; ++i)
                poisoned->space[x][y][i] = nan;
    }
    withEveryInstructionSet([&] {
        for (int cell = 0; cell < 32; ++cell) {
            const double d = (cell + 0.3) / 32;
            EXPECT_SAME_BITS(latticeNoise2(*poisoned, d, d), latticeNoise2(currentNoiseTables, d, d));
            EXPECT_SAME_BITS(latticeNoise3(*poisoned, d, d, d), latticeNoise3(currentNoiseTables, d, d, d));
            EXPECT_SAME_BITS(latticeNoise4(*poisoned, d, d, d, d, 32),
                             latticeNoise4(currentNoiseTables, d, d, d, d, 32));
        }
    });
}

TEST(LatticeNoise, NeverReadsOutsideItsTables)
{
    // The tables lie between two pages that must not be touched, first against one, then the other.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t room = (sizeof(NoiseTables) + page - 1) / page * page;
    void* mapped = mmap(nullptr, room + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(mapped, MAP_FAILED);
    auto* inside = static_cast<unsigned char*>(mapped) + page;
    ASSERT_EQ(mprotect(inside, room, PROT_READ | PROT_WRITE), 0);
    const auto edges = edgeCoordinates<double>();
    for (const std::size_t shift : {std::size_t{0}, room - sizeof(NoiseTables)}) {
        std::memcpy(inside + shift, &currentNoiseTables, sizeof(NoiseTables));
        const auto& tables = *reinterpret_cast<const NoiseTables*>(inside + shift);
        withEveryInstructionSet([&] {
            for (const double a : edges)
                for (const double b : edges)
                    for (const int period : {INT32_MIN, -65536, -1, 0, 100, 60000, INT32_MAX}) {
                        EXPECT_LE(std::fabs(latticeNoise2(tables, a, b)), kUnit);
                        EXPECT_LE(std::fabs(latticeNoise3(tables, a, b, a)), kUnit);
                        // A negative period makes fractions below 0, where the spline extrapolates.
                        EXPECT_TRUE(std::isfinite(latticeNoise4(tables, a, b, a, b, period)));
                    }
        });
    }
    munmap(mapped, room + 2 * page);
}

TEST(LatticeNoise, StaysWithinItsToleranceOfThePlainFormula)
{
    const float* current = plain::currentTable().data();
    const float* old = plain::oldTable().data();
    withEveryInstructionSet([&] {
        NoisePoints points(20);
        float worst = 0.0f;
        float largest = 0.0f;
        for (int i = 0; i < kMillion; ++i) {
            const double x = points.next();
            const double y = points.next();
            const double z = points.next();
            const double w = points.next();
            const bool useOld = i % 2 == 0;
            const NoiseTables& tables = useOld ? oldNoiseTables : currentNoiseTables;
            const float* table = useOld ? old : current;
            const float three = latticeNoise3(tables, x, y, z);
            const float errors[] = {
                latticeNoise2(tables, x, y) - plain::lattice2(table, x, y),
                three - plain::lattice3(table, x, y, z),
                latticeNoise4(tables, x, y, z, w, 100) - plain::lattice4(table, x, y, z, w, 100),
                latticeNoise4(tables, x, y, z, w, i % 70000) - plain::lattice4(table, x, y, z, w, i % 70000)};
            for (const float error : errors)
                if (!(std::fabs(error) <= worst)) worst = std::fabs(error);
            largest = std::max(largest, std::fabs(three));
        }
        EXPECT_LE(worst, kTwin);
        EXPECT_LE(largest, kUnit);
        EXPECT_GT(largest, 0.5f);
    });
}

TEST(LatticeNoise, EveryInstructionSetGivesTheSameBits)
{
    std::vector<float> first;
    withEveryInstructionSet([&] {
        NoisePoints points(21);
        std::size_t at = 0;
        int different = 0;
        const auto compare = [&](float noise) {
            if (at == first.size()) first.push_back(noise);
            different += !sameNoise(noise, first[at++]);
        };
        for (int i = 0; i < kMillion; ++i) {
            const double x = points.next();
            const double y = points.next();
            const double z = points.next();
            const double w = points.next();
            compare(latticeNoise2(x, y));
            compare(latticeNoise3(x, y, z));
            compare(latticeNoise4(x, y, z, w, i % 7 == 0 ? i % 1000 - 300 : 100));
        }
        EXPECT_EQ(different, 0);
    });
}

TEST(LatticeNoise, FractionThatRoundsUpGivesTheSameBitsEverywhere)
{
    // Just below a cell's end the float fraction is that of the next cell, or 1, and below 2^-23 the cell
    // may be the next one.
    const float* table = plain::currentTable().data();
    std::vector<float> first;
    withEveryInstructionSet([&] {
        std::size_t at = 0;
        for (int cell = -64; cell <= 64; ++cell)
            for (const double below : {0.0, 1.3e-7, 1.1e-7, 5e-8, 1e-8, 1e-9, 1e-12, 1e-16, 1e-18, 1e-30}) {
                const double d = cell / 32.0 - below;
                const float noise =
                    latticeNoise3(d, -d, 0.3) + latticeNoise2(d, 0.4) + latticeNoise4(d, 0.2, d, d, 32);
                if (at == first.size()) first.push_back(noise);
                EXPECT_SAME_BITS(noise, first[at++]);
                EXPECT_NEAR(latticeNoise3(d, -d, 0.3), plain::lattice3(table, d, -d, 0.3), kTwin);
                EXPECT_NEAR(latticeNoise3(0.7, d, d), plain::lattice3(table, 0.7, d, d), kTwin);
                EXPECT_NEAR(latticeNoise2(d, -d), plain::lattice2(table, d, -d), kTwin);
            }
    });
}

TEST(LatticeNoise, CoordinatesOnEitherSideOfTwoToThe26thAgree)
{
    const float* table = plain::currentTable().data();
    withEveryInstructionSet([table] {
        for (const double sign : {1.0, -1.0})
            for (int step = -200; step <= 200; ++step) {
                const double d = sign * (67108864.0 + step * 0.0137);
                EXPECT_NEAR(latticeNoise3(d, 0.3, 0.6), plain::lattice3(table, d, 0.3, 0.6), kTwin);
                EXPECT_NEAR(latticeNoise3(0.3, d, 0.6), plain::lattice3(table, 0.3, d, 0.6), kTwin);
                EXPECT_NEAR(latticeNoise3(0.3, 0.6, d), plain::lattice3(table, 0.3, 0.6, d), kTwin);
                EXPECT_NEAR(latticeNoise2(d, 0.3), plain::lattice2(table, d, 0.3), kTwin);
                EXPECT_NEAR(latticeNoise2(0.3, d), plain::lattice2(table, 0.3, d), kTwin);
            }
    });
}
