#include "kernels/noises/perlin_noise.h"
#include "kernels/noises/perlin_tables.h"

#include "support/instruction_sets.h"
#include "support/noise_points.h"
#include "support/plain_noise.h"

#include <cstring>
#include <limits>
#include <memory>
#include <set>
#include <thread>

using namespace OUtils;

namespace {

constexpr int kMillion = 1000000;

const plain::GradientTables& plainTables()
{
    static const auto tables = [] {
        plain::GradientTables made;
        made.gradients = plain::gradientRows();
        for (std::size_t i = 0; i < 256; ++i)
            made.permutation[i] = perlinTables.permutation[i];
        return made;
    }();
    return tables;
}

double plainNoise(float x, float y, float z)
{
    return plain::gradientNoise(plainTables(), x, y, z);
}

} // namespace

TEST(PerlinTables, PermutationHoldsEveryValueOnce)
{
    const std::uint8_t* permutation = perlinTables.permutation;
    const std::set<int> values(permutation, permutation + 256);
    EXPECT_EQ(values.size(), 256u);
    EXPECT_EQ(perlinTables.permutation[0], 160);
    EXPECT_EQ(perlinTables.permutation[1], 255);
    EXPECT_EQ(perlinTables.permutation[255], 128);
    // FNV-1a over the values, from a calculation in another language.
    std::uint64_t hash = 0xcbf29ce484222325u;
    for (int i = 0; i < 256; ++i) {
        hash = (hash ^ permutation[i]) * 0x100000001b3u;
        EXPECT_EQ(permutation[i + 256], permutation[i]);
    }
    EXPECT_EQ(hash, 0x5da82f6a46a6685fu);
}

TEST(PerlinTables, GradientsAreDistinctUnitVectorsOfTheRule)
{
    const auto rows = plain::gradientRows();
    std::set<std::array<float, 3>> distinct;
    for (std::size_t i = 0; i < 256; ++i) {
        const double* row = perlinTables.gradients[i];
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(row[axis], static_cast<double>(rows[i][axis])) << i;
        EXPECT_EQ(row[3], 0.0);
        EXPECT_NEAR(row[0] * row[0] + row[1] * row[1] + row[2] * row[2], 1.0, 2e-6);
        distinct.insert(rows[i]);
    }
    EXPECT_EQ(distinct.size(), 256u);
    EXPECT_EQ(std::memcmp(perlinTables.gradients[256], perlinTables.gradients[0], 4 * sizeof(double)), 0);
}

TEST(PerlinNoise, FillsItsTablesOnce)
{
    const auto noise = std::make_unique<PerlinNoise>();
    EXPECT_TRUE(noise->gradients().empty());
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&noise] { noise->fillTables(); });
    for (auto& thread : threads)
        thread.join();
    noise->fillTables();
    ASSERT_EQ(noise->gradients().size(), 256u);
    ASSERT_EQ(noise->permutation().size(), 256u);
    EXPECT_EQ(noise->gradients()[0].x, -0.215150f);
    EXPECT_EQ(noise->gradients()[255].z, 0.289663f);
    EXPECT_EQ(noise->permutation()[254], 136);
}

TEST(NoiseParams, BeginsWithItsDefaults)
{
    const NoiseParams params;
    EXPECT_EQ(params.amplitudeDivisor, 1.0f);
    EXPECT_EQ(params.persistence, 1.0f);
    EXPECT_EQ(params.lacunarity, 2.0f);
    EXPECT_EQ(params.frequency, 1.0f);
    EXPECT_EQ(params.octaves, 3);
    EXPECT_EQ(params.kind, 1);
    EXPECT_EQ(params.absoluteOctaves, 0);
    EXPECT_EQ(params.callerValue0, 1.0f);
    EXPECT_EQ(params.callerValue1, 1.0f);
    EXPECT_EQ(params.callerValue2, 1.0f);
    EXPECT_EQ(sizeof(NoiseParams), 40u);
}

TEST(GradientNoise, IsZeroAtWholePoints)
{
    withEveryInstructionSet([] {
        for (int x = -3; x <= 3; ++x)
            for (int y = -3; y <= 3; ++y)
                for (int z = -300; z <= 300; z += 25)
                    EXPECT_EQ(
                        gradientNoise3(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)),
                        0.0);
    });
}

TEST(GradientNoise, AlongAnAxisTheFirstGradientLeads)
{
    // At (f, 0, 0) only the two corners along x count. p[0] = 160, p[160] = 163 (the table's rows 10
    // of sixteen), so that their gradients are rows 163 and 164.
    const unsigned row = perlinTables.permutation[perlinTables.permutation[0]];
    const double g0 = perlinTables.gradients[row][0];
    const double g1 = perlinTables.gradients[(row + 1) % 256][0];
    const double f = 0.25;
    const double s = f * f * f * (f * (6.0 * f - 15.0) + 10.0);
    withEveryInstructionSet([&] {
        EXPECT_NEAR(gradientNoise3(0.25f, 0.0f, 0.0f), g0 * f * (1.0 - s) + g1 * (f - 1.0) * s, 1e-15);
    });
}

TEST(GradientNoise, TinyNegativeCoordinateStaysInCellZero)
{
    // In cell 0 the fraction is the coordinate itself and the fade is about -1e-29, so the value is
    // exactly the first gradient's part; from cell -1 it would carry the roundings of a fade near 1.
    withEveryInstructionSet([] {
        const unsigned row = perlinTables.permutation[perlinTables.permutation[0]];
        for (int i = 1; i < 100; ++i) {
            const float x = -1e-11f * static_cast<float>(i);
            EXPECT_EQ(gradientNoise3(x, 0.0f, 0.0f), perlinTables.gradients[row][0] * static_cast<double>(x))
                << x;
        }
    });
}

TEST(GradientNoise, CellsWrapAfter256)
{
    withEveryInstructionSet([] {
        for (const float f : {0.25f, 0.75f, 13.5f, -7.125f}) {
            EXPECT_EQ(gradientNoise3(f + 256.0f, 0.5f, 0.375f), gradientNoise3(f, 0.5f, 0.375f));
            EXPECT_EQ(gradientNoise3(0.5f, f - 256.0f, 0.375f), gradientNoise3(0.5f, f, 0.375f));
            EXPECT_EQ(gradientNoise3(0.5f, 0.375f, f + 512.0f), gradientNoise3(0.5f, 0.375f, f));
            EXPECT_NE(gradientNoise3(f + 128.0f, 0.5f, 0.375f), gradientNoise3(f, 0.5f, 0.375f));
        }
    });
}

TEST(GradientNoise, StaysWithinRoundingOfThePlainFormula)
{
    withEveryInstructionSet([] {
        NoisePoints points(40, false);
        double worst = 0.0;
        double largest = 0.0;
        for (int i = 0; i < kMillion; ++i) {
            const float x = points.nextFloat();
            const float y = points.nextFloat();
            const float z = points.nextFloat();
            const double noise = gradientNoise3(x, y, z);
            const double error = std::fabs(noise - plainNoise(x, y, z));
            if (!(error <= worst)) worst = error;
            largest = std::max(largest, std::fabs(noise));
        }
        EXPECT_LE(worst, 1e-14); // double precision throughout, in another order
        EXPECT_GT(largest, 0.6);
        EXPECT_LT(largest, 1.2);
    });
}

TEST(GradientNoise, EveryInstructionSetGivesTheSameBits)
{
    std::vector<double> first;
    withEveryInstructionSet([&] {
        std::size_t at = 0;
        int different = 0;
        const auto compare = [&](double noise) {
            if (at == first.size()) first.push_back(noise);
            different += !sameNoise(noise, first[at++]);
        };
        NoisePoints points(42);
        for (int i = 0; i < kMillion; ++i) {
            const float x = points.nextFloat();
            const float y = points.nextFloat();
            compare(gradientNoise3(x, y, points.nextFloat()));
        }
        const auto edges = edgeCoordinates<float>();
        for (const float x : edges)
            for (const float y : edges)
                for (const float z : edges)
                    compare(gradientNoise3(x, y, z));
        // Around the coordinates that stay in cell 0, float by float, and around the largest fast one.
        for (const float centre : {-1e-9f, 4194304.0f, -4194304.0f, -1.0f, -8388608.0f}) {
            float x = centre;
            for (int i = 0; i < 40; ++i)
                x = std::nextafter(x, -1e30f);
            for (int i = 0; i < 80; ++i, x = std::nextafter(x, 1e30f))
                compare(gradientNoise3(x, 0.25f, x));
        }
        EXPECT_EQ(different, 0);
    });
}

TEST(GradientNoise, WhatIsNotFiniteCountsAsZero)
{
    withEveryInstructionSet([] {
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        for (const float d : {kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN()}) {
            EXPECT_EQ(gradientNoise3(d, 0.25f, 0.5f), gradientNoise3(0.0f, 0.25f, 0.5f));
            EXPECT_EQ(gradientNoise3(0.25f, d, d), gradientNoise3(0.25f, 0.0f, 0.0f));
            EXPECT_EQ(gradientNoise2(d, 0.25f), gradientNoise2(0.0f, 0.25f));
        }
    });
}

TEST(GradientNoise, PlaneFormIsTheSpaceFormWithoutDistancesAlongZ)
{
    // At z = 0 the near corners' z distance is 0 and the far ones have no weight.
    NoisePoints points(41, false);
    for (int i = 0; i < 1000; ++i) {
        const float x = points.nextFloat();
        const float y = points.nextFloat();
        EXPECT_NEAR(gradientNoise2(x, y), plainNoise(x, y, 0.0f), 1e-15);
    }
}

TEST(PerlinNoise, FrequencyMultipliesTheFloatOfThePoint)
{
    const PerlinNoise noise;
    NoiseParams params;
    params.frequency = 1.7f;
    withEveryInstructionSet([&] {
        EXPECT_EQ(noise.noise(params, 0.1, -2.3, 11.9), plainNoise(0.1f * 1.7f, -2.3f * 1.7f, 11.9f * 1.7f));
        EXPECT_EQ(noise.noise(params, 0.1, 0.2, 0.3),
                  noise.noise(params, static_cast<double>(0.1f), static_cast<double>(0.2f), 0.3));
    });
}

TEST(PerlinFractalSum, DividesTheOctavesByTheirWeights)
{
    NoiseParams params;
    params.persistence = 0.5f;
    params.amplitudeDivisor = 1.25f;
    params.lacunarity = 3.0f;
    params.frequency = 0.5f;
    const double x = 17.0 * 0.3;
    const double y = 17.0 * 0.7;
    const auto octave = [&](double f) {
        return plainNoise(static_cast<float>(x * f) * 0.5f, static_cast<float>(y * f) * 0.5f,
                          static_cast<float>(f) * 0.5f);
    };
    // Amplitudes 1, 0.4, 0.16; frequencies 1, 3, 9.
    const double expected = (octave(1.0) + 0.4 * octave(3.0) + 0.16 * octave(9.0)) / 1.56;
    EXPECT_NEAR(static_cast<double>(perlinFractalSum(params, x, y, 1.0)), expected, 1e-7);

    params.absoluteOctaves = 1;
    const double folded =
        (std::fabs(octave(1.0)) + 0.4 * std::fabs(octave(3.0)) + 0.16 * std::fabs(octave(9.0))) / 1.56;
    EXPECT_NEAR(static_cast<double>(perlinFractalSum(params, x, y, 1.0)), folded, 1e-7);
}

TEST(PerlinFractalSum, KindTwoTakesTheAbsoluteValueOfTheSum)
{
    NoiseParams params;
    double x = 0.3;
    while (perlinFractalSum(params, x, 0.4, 0.0) > -0.01f)
        x += 0.1;
    const float negative = perlinFractalSum(params, x, 0.4, 0.0);
    params.kind = 3;
    EXPECT_EQ(perlinFractalSum(params, x, 0.4, 0.0), negative);
    params.kind = 2;
    EXPECT_EQ(perlinFractalSum(params, x, 0.4, 0.0), -negative);
}

TEST(PerlinFractalSum, OtherKindsLeaveTheOctavesOut)
{
    NoiseParams params;
    for (const int kind : {0, 4, -1}) {
        params.kind = kind;
        EXPECT_EQ(perlinFractalSum(params, 0.3, 0.4, 0.0), 0.0f);
    }
}

TEST(PerlinFractalSum, WithoutOctavesIsNotANumber)
{
    NoiseParams params;
    params.octaves = 0;
    EXPECT_TRUE(std::isnan(perlinFractalSum(params, 0.3, 0.4, 0.0)));
    params.octaves = -2;
    EXPECT_TRUE(std::isnan(perlinFractalSum(params, 0.3, 0.4, 0.0)));
}
