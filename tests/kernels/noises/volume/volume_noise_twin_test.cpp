// The volume noise kernels against their plain twin over random inputs, and the two instruction sets
// against each other, bit for bit.

#include "numeric/simd_dispatch.h"
#include "support/instruction_sets.h"
#include "support/plain_volume_noise.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace nezaiva;

// What the order of the operations may change in a sum of octaves.
constexpr double kTwinTolerance = 2e-6;
// The bubble's rim falls with a slope of 11, and that is what it makes of the error of a distance.
constexpr double kBubbleTolerance = 11.0 * 1e-6;

struct Sample {
    VolumePoint point;
    float time;
};

class Inputs {
public:
    explicit Inputs(unsigned seed) : generator(seed) {}

    float between(float low, float high)
    {
        return std::uniform_real_distribution<float>(low, high)(generator);
    }
    int count(int low, int high) { return std::uniform_int_distribution<int>(low, high)(generator); }
    bool coin() { return count(0, 1) == 1; }

    Sample sample(float reach, float timeReach)
    {
        const VolumePoint p{between(-reach, reach), between(-reach, reach), between(-reach, reach)};
        return {p, coin() ? between(-timeReach, timeReach) : 0.0f};
    }
    // Thresholds keep the results below the cap, which would hide differences.
    VolumeFractal fractal(int deepest)
    {
        VolumeFractal made;
        made.amplitude = between(0.5f, 1.0f);
        made.frequencyRatio = between(1.0f, 3.0f);
        made.ratio = between(0.3f, 0.9f);
        made.threshold = between(-3.0f, -2.0f);
        made.depthMax = count(1, deepest);
        made.inflection = coin();
        return made;
    }
    PerlinVolume perlin()
    {
        PerlinVolume noise;
        noise.fractal = fractal(8);
        noise.wispy = coin();
        noise.timeNoise = coin();
        noise.spaceTime = coin();
        noise.timePeriod = coin() ? 100 : count(-50, 70000);
        return noise;
    }
    BillowVolume billow()
    {
        BillowVolume noise;
        noise.fractal = fractal(5);
        noise.density = between(0.3f, 1.5f);
        noise.spottyness = between(-0.5f, 1.0f);
        noise.randomness = between(0.0f, 1.2f);
        noise.sizeRand = between(-0.5f, 0.5f);
        noise.falloff = count(0, 4);
        return noise;
    }
    CosineVolume cosine()
    {
        CosineVolume noise;
        noise.fractal = fractal(5);
        noise.numWaves = count(1, 40);
        return noise;
    }

private:
    std::mt19937 generator;
};

class VolumeTwin : public EveryInstructionSet {};

INSTANTIATE_TEST_SUITE_P(Sets, VolumeTwin, kInstructionSets, instructionSetName);

TEST_P(VolumeTwin, PerlinAndSpaceTimeAgree)
{
    Inputs inputs(1);
    for (int i = 0; i < 60000; ++i) {
        const PerlinVolume noise = inputs.perlin();
        const auto [p, t] = inputs.sample(i % 2 == 0 ? 3.0f : 3000.0f, 60.0f);
        ASSERT_NEAR(evalPerlin3d(noise, p, t), plain::perlin3d(noise, p, t), kTwinTolerance) << i;
        ASSERT_NEAR(evalPerlin2d(noise, p.x, p.y, t), plain::perlin2d(noise, p.x, p.y, t), kTwinTolerance)
            << i;
    }
}

// Without time the first octave's warp is read at a tenth of (x + 0.02, y + 0.3, z + 0.01): close to and
// on the borders of the cells, where the cell is easily taken for its neighbour.
TEST_P(VolumeTwin, WispyAgreesAtTheBordersOfCells)
{
    Inputs inputs(8);
    const auto border = [&](float shift) {
        float x = static_cast<float>(inputs.count(-80, 80)) * (10.0f / 32.0f) - shift;
        for (int steps = inputs.count(-3, 3); steps != 0; steps += steps < 0 ? 1 : -1)
            x = std::nextafter(x, static_cast<float>(steps) * INFINITY);
        return x;
    };
    for (int i = 0; i < 30000; ++i) {
        PerlinVolume noise = inputs.perlin();
        noise.wispy = true;
        const VolumePoint p{border(0.02f), border(0.3f), border(0.01f)};
        ASSERT_NEAR(evalPerlin3d(noise, p, 0.0f), plain::perlin3d(noise, p, 0.0f), kTwinTolerance) << i;
        ASSERT_NEAR(evalPerlin2d(noise, p.x, p.y, 0.0f), plain::perlin2d(noise, p.x, p.y, 0.0f),
                    kTwinTolerance)
            << i;
    }
}

// Coordinates of a cell's size up to those whose cells have no fraction.
TEST_P(VolumeTwin, WispyAgreesForCoordinatesOfAnySize)
{
    Inputs inputs(9);
    for (int i = 0; i < 30000; ++i) {
        PerlinVolume noise = inputs.perlin();
        noise.wispy = true;
        const auto [p, t] = inputs.sample(std::ldexp(1.0f, inputs.count(-10, 40)), 5.0f);
        ASSERT_NEAR(evalPerlin3d(noise, p, t), plain::perlin3d(noise, p, t), kTwinTolerance) << i;
        ASSERT_NEAR(evalPerlin2d(noise, p.x, p.y, t), plain::perlin2d(noise, p.x, p.y, t), kTwinTolerance)
            << i;
    }
}

TEST_P(VolumeTwin, BillowAgrees)
{
    Inputs inputs(2);
    for (int i = 0; i < 30000; ++i) {
        const BillowVolume noise = inputs.billow();
        const double tolerance = noise.falloff == kBillowBubble ? kBubbleTolerance : kTwinTolerance;
        const auto [p, t] = inputs.sample(i % 2 == 0 ? 3.0f : 3000.0f, 50.0f);
        ASSERT_NEAR(evalBillow3d(noise, p, t), plain::billow3d(noise, p, t), tolerance) << i;
        ASSERT_NEAR(evalBillow2d(noise, p.x, p.y, t), plain::billow2d(noise, p.x, p.y, t), tolerance) << i;
    }
}

TEST_P(VolumeTwin, CosineAgreesForCoordinatesOfAnySize)
{
    Inputs inputs(3);
    for (const float reach : {3.0f, 3000.0f, 1e8f, 1e12f}) {
        for (int i = 0; i < 4000; ++i) {
            const CosineVolume noise = inputs.cosine();
            const auto [p, t] = inputs.sample(reach, 60.0f);
            ASSERT_NEAR(evalCosine3d(noise, p, t), plain::cosine3d(noise, p, t), kTwinTolerance) << i;
            ASSERT_NEAR(evalCosine2d(noise, p.x, p.y, t), plain::cosine2d(noise, p.x, p.y, t), kTwinTolerance)
                << i;
        }
    }
}

// Up to three waves in all, up to sixteen in three octaves, and up to eight in eight octaves have forms
// of their own, and angles up to 6400 and to 2^17 reductions of their own; the counts and the sizes here
// pass all these limits.
template <class Check>
void atEveryCountOfWaves(unsigned seed, const Check& check)
{
    Inputs inputs(seed);
    for (int waves = 1; waves <= 9; ++waves) {
        for (int depth = 1; depth <= 9; ++depth) {
            for (const float reach : {3.0f, 300.0f, 30000.0f}) {
                for (const bool inflection : {false, true}) {
                    CosineVolume noise = inputs.cosine();
                    noise.fractal.inflection = inflection;
                    noise.fractal.depthMax = depth;
                    noise.fractal.frequencyRatio = inputs.between(0.7f, 2.2f);
                    noise.fractal.ratio = inputs.between(0.3f, 0.8f);
                    noise.numWaves = waves;
                    check(noise, inputs.sample(reach, 30.0f));
                }
            }
        }
    }
}

TEST_P(VolumeTwin, CosineAgreesAtEveryCountOfWavesAndOctaves)
{
    for (unsigned seed = 11; seed < 15; ++seed) {
        atEveryCountOfWaves(seed, [](const CosineVolume& noise, const Sample& sample) {
            const auto& [p, t] = sample;
            EXPECT_NEAR(evalCosine3d(noise, p, t), plain::cosine3d(noise, p, t), kTwinTolerance)
                << noise.numWaves << " waves, " << noise.fractal.depthMax << " octaves";
            EXPECT_NEAR(evalCosine2d(noise, p.x, p.y, t), plain::cosine2d(noise, p.x, p.y, t), kTwinTolerance)
                << noise.numWaves << " waves, " << noise.fractal.depthMax << " octaves";
        });
    }
}

TEST(VolumeNoiseSets, GiveTheSameBitsAtEveryCountOfWavesAndOctaves)
{
    if (bestInstructionSet() != InstructionSet::Avx2) GTEST_SKIP() << "the processor lacks AVX2";
    atEveryCountOfWaves(15, [](const CosineVolume& noise, const Sample& sample) {
        const auto& [p, t] = sample;
        setInstructionSet(InstructionSet::Baseline);
        const float baseline3d = evalCosine3d(noise, p, t);
        const float baseline2d = evalCosine2d(noise, p.x, p.y, t);
        setInstructionSet(bestInstructionSet());
        EXPECT_PRED2(tolerance::sameBits, evalCosine3d(noise, p, t), baseline3d);
        EXPECT_PRED2(tolerance::sameBits, evalCosine2d(noise, p.x, p.y, t), baseline2d);
    });
}

TEST_P(VolumeTwin, LevelsAndWavesBehindTheTablesAgree)
{
    Inputs inputs(4);
    for (int i = 0; i < 300; ++i) {
        PerlinVolume perlin = inputs.perlin();
        CosineVolume cosine = inputs.cosine();
        perlin.fractal.depthMax = cosine.fractal.depthMax = inputs.count(15, 40);
        perlin.fractal.frequencyRatio = cosine.fractal.frequencyRatio = inputs.between(1.0f, 1.2f);
        cosine.numWaves = inputs.count(1, 100);
        const auto [p, t] = inputs.sample(3.0f, 5.0f);
        ASSERT_NEAR(evalPerlin3d(perlin, p, t), plain::perlin3d(perlin, p, t), kTwinTolerance) << i;
        ASSERT_NEAR(evalPerlin2d(perlin, p.x, p.y, t), plain::perlin2d(perlin, p.x, p.y, t), kTwinTolerance)
            << i;
        ASSERT_NEAR(evalCosine3d(cosine, p, t), plain::cosine3d(cosine, p, t), kTwinTolerance) << i;
        ASSERT_NEAR(evalCosine2d(cosine, p.x, p.y, t), plain::cosine2d(cosine, p.x, p.y, t), kTwinTolerance)
            << i;
    }
}

TEST_P(VolumeTwin, OneLevelAgrees)
{
    Inputs inputs(5);
    for (int i = 0; i < 20000; ++i) {
        const PerlinVolume noise = inputs.perlin();
        const auto [p, t] = inputs.sample(30.0f, 5.0f);
        const int level = inputs.count(0, 70000);
        ASSERT_NEAR(perlinLevel3d(noise, p, t, level), plain::perlinLevel3d(noise, p, t, level),
                    kTwinTolerance);
        ASSERT_NEAR(perlinLevel2d(noise, p.x, p.y, t, level), plain::perlinLevel2d(noise, p.x, p.y, t, level),
                    kTwinTolerance);
    }
}

TEST_P(VolumeTwin, PlacementAgrees)
{
    Inputs inputs(6);
    for (int i = 0; i < 20000; ++i) {
        VolumePlacement placement;
        placement.implode = inputs.coin() ? inputs.between(-2.0f, 2.0f) : 0.0f;
        placement.hasImplodeCenter = inputs.coin();
        placement.hasScale = inputs.coin();
        placement.hasOrigin = inputs.coin();
        placement.implodeCenter = inputs.sample(1.0f, 0.0f).point;
        placement.scale = inputs.sample(2.0f, 0.0f).point;
        placement.origin = inputs.sample(5.0f, 0.0f).point;
        placement.frequencyFactor = inputs.between(0.1f, 8.0f);
        const VolumePoint p = inputs.sample(4.0f, 0.0f).point;
        for (const bool three : {true, false}) {
            const VolumePoint got =
                three ? placeVolumePoint3d(placement, p) : placeVolumePoint2d(placement, p);
            const VolumePoint expected = plain::place(placement, p, three);
            EXPECT_FLOAT_EQ(got.x, expected.x);
            EXPECT_FLOAT_EQ(got.y, expected.y);
            EXPECT_FLOAT_EQ(got.z, expected.z);
        }
    }
}

// The results of one run of random inputs, finite and not.
std::vector<float> manyResults(int samples)
{
    Inputs inputs(7);
    std::vector<float> results;
    results.reserve(static_cast<std::size_t>(samples) * 6);
    for (int i = 0; i < samples; ++i) {
        const PerlinVolume perlin = inputs.perlin();
        const BillowVolume billow = inputs.billow();
        const CosineVolume cosine = inputs.cosine();
        const float reach = i % 4 == 0 ? 1e9f : i % 4 == 1 ? 1e4f : 3.0f;
        auto [p, t] = inputs.sample(reach, i % 8 == 0 ? 1e6f : 5.0f);
        if (i % 64 == 5) p.x = INFINITY;
        if (i % 64 == 9) p.y = NAN;
        if (i % 64 == 13) t = -INFINITY;
        results.push_back(evalPerlin3d(perlin, p, t));
        results.push_back(evalPerlin2d(perlin, p.x, p.y, t));
        results.push_back(evalBillow3d(billow, p, t));
        results.push_back(evalBillow2d(billow, p.x, p.y, t));
        results.push_back(evalCosine3d(cosine, p, t));
        results.push_back(evalCosine2d(cosine, p.x, p.y, t));
    }
    return results;
}

TEST(VolumeNoiseSets, GiveTheSameBitsOverAMillionPoints)
{
    constexpr int kSamples = 175000; // six results each
    expectSameBitsWithEverySet([] { return manyResults(kSamples); });
}

} // namespace
