// The volume noises: their edge cases, worked out by hand, and what they do with values that are not
// finite. The comparison with the plain twin is in volume_noise_twin_test.cpp.

#include "kernels/noises/lattice_noise.h"
#include "kernels/noises/random_tables.h"
#include "kernels/noises/volume/volume_noise.h"
#include "kernels/noises/volume/volume_tables.h"
#include "numeric/simd_dispatch.h"
#include "support/instruction_sets.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace nezaiva;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr VolumePoint kSomewhere{0.31f, 0.72f, 0.18f};

template <class Noise>
Noise withOctaves(int depthMax)
{
    Noise noise;
    noise.fractal.depthMax = depthMax;
    return noise;
}

// Each test runs with every instruction set that the processor has.
class VolumeNoise : public EveryInstructionSet {};

INSTANTIATE_TEST_SUITE_P(Sets, VolumeNoise, kInstructionSets, instructionSetName);

TEST_P(VolumeNoise, PerlinWithoutOctavesIsItsBias)
{
    for (const int depthMax : {0, -1, std::numeric_limits<int>::min()}) {
        auto noise = withOctaves<PerlinVolume>(depthMax);
        EXPECT_SAME_BITS(evalPerlin3d(noise, kSomewhere, 0.0f), 0.5f);
        EXPECT_SAME_BITS(evalPerlin2d(noise, 0.3f, 0.7f, 0.0f), 0.5f);
        noise.wispy = true;
        EXPECT_SAME_BITS(evalPerlin3d(noise, kSomewhere, 0.0f), 0.5f);
        EXPECT_SAME_BITS(evalPerlin2d(noise, 0.3f, 0.7f, 0.0f), 0.5f);
        noise.fractal.inflection = true;
        EXPECT_SAME_BITS(evalPerlin3d(noise, kSomewhere, 0.0f), 0.0f);
        EXPECT_SAME_BITS(evalPerlin2d(noise, 0.3f, 0.7f, 0.0f), 0.0f);
    }
}

TEST_P(VolumeNoise, CosineWithoutOctavesIsNotANumberInSpaceAndTheBiasInThePlane)
{
    auto noise = withOctaves<CosineVolume>(0);
    noise.numWaves = 5;
    EXPECT_TRUE(std::isnan(evalCosine3d(noise, kSomewhere, 0.0f)));
    EXPECT_SAME_BITS(evalCosine2d(noise, 0.3f, 0.7f, 0.0f), 0.5f);
    noise.fractal.inflection = true;
    EXPECT_TRUE(std::isnan(evalCosine3d(noise, kSomewhere, 0.0f)));
    EXPECT_SAME_BITS(evalCosine2d(noise, 0.3f, 0.7f, 0.0f), 0.0f);
}

TEST_P(VolumeNoise, BillowWithoutOctavesIsNotANumber)
{
    EXPECT_TRUE(std::isnan(evalBillow3d(withOctaves<BillowVolume>(0), kSomewhere, 0.0f)));
    EXPECT_TRUE(std::isnan(evalBillow2d(withOctaves<BillowVolume>(-3), 0.3f, 0.7f, 0.0f)));
}

TEST_P(VolumeNoise, BillowOfRandomnessTwoHasNoDensity)
{
    auto noise = withOctaves<BillowVolume>(3);
    noise.randomness = 2.0f;
    noise.fractal.threshold = 0.25f;
    for (noise.falloff = 0; noise.falloff < 5; ++noise.falloff) {
        EXPECT_SAME_BITS(evalBillow3d(noise, kSomewhere, 0.4f), 0.25f);
        EXPECT_SAME_BITS(evalBillow2d(noise, 0.3f, 0.7f, 0.4f), 0.25f);
    }
}

TEST_P(VolumeNoise, BillowBelowTheSmallestDensityIsEmpty)
{
    auto noise = withOctaves<BillowVolume>(1);
    noise.density = 0.00009f;
    noise.randomness = 0.0f;
    noise.fractal.threshold = 0.125f;
    // On a blob's centre: the shift alone is 0.021, and the cells are 0.05 wide.
    const VolumePoint centre{0.025f - 0.021f, 0.325f - 0.33f, 0.025f - 0.011f};
    EXPECT_SAME_BITS(evalBillow3d(noise, centre, 0.0f), 0.125f);
    noise.density = 0.001f;
    EXPECT_GT(evalBillow3d(noise, centre, 0.0f), 0.125f);
}

// Without randomness the blobs are the centres of the cells. The point lies offset cells off a centre
// along x, and density d makes D = offset^2 * 2 / d; the neighbours are too far away to count.
float singleBlob(int falloff, double offset, float density = 0.4f)
{
    BillowVolume noise = withOctaves<BillowVolume>(1);
    noise.falloff = falloff;
    noise.randomness = 0.0f;
    noise.spottyness = 0.0f;
    noise.density = density;
    const auto x = static_cast<float>((3.5 + offset) / 20.0 - 0.021);
    const auto y = static_cast<float>(7.5 / 20.0 - 0.33);
    const auto z = static_cast<float>(5.5 / 20.0 - 0.011);
    const float space = evalBillow3d(noise, {x, y, z}, 0.0f);
    const float plane = evalBillow2d(noise, x, y, 0.0f);
    EXPECT_NEAR(space, plane, 1e-4);
    return space;
}

// The height of a blob from the squared distance, in double precision.
double heightByHand(int falloff, double d)
{
    switch (falloff) {
    case kBillowLinear:
        return 1.0 - std::sqrt(d);
    case kBillowSmooth:
        return 1.0 - 3.0 * d + 2.0 * d * std::sqrt(d);
    case kBillowFast:
        return 1.0 - d;
    case kBillowBubble:
        return d * 1.1 <= 1.0 ? d * 1.1 : 1.0 - (d * 1.1 - 1.0) * 10.0;
    default:
        return 0.0;
    }
}

TEST_P(VolumeNoise, EveryFalloffFollowsItsCurve)
{
    for (int falloff = kBillowLinear; falloff <= kBillowBubble; ++falloff) {
        for (const double d : {0.04, 0.25, 0.5, 0.8, 0.9, 0.92, 0.97}) {
            const double offset = std::sqrt(d * 0.2); // D = offset^2 * 2 / 0.4
            // A cell is 1/20, so the rounding of the coordinate counts twenty times; the bubble is steep.
            EXPECT_NEAR(singleBlob(falloff, offset), heightByHand(falloff, d), 1e-4) << falloff << ' ' << d;
        }
    }
}

TEST_P(VolumeNoise, BubbleFallsFromItsRimToZero)
{
    const auto bubble = [](double d) { return singleBlob(kBillowBubble, std::sqrt(d * 0.2)); };
    const double rim = 1.0 / 1.1;
    EXPECT_NEAR(bubble(rim * 1.0001), 1.0 - 0.001, 1e-4); // D' just above 1: just below 1
    EXPECT_LT(bubble(rim * 1.0001), 1.0f);
    EXPECT_GT(bubble(0.9999), 0.0f);       // still above 1 - (1.1 - 1) * 10 = 0
    EXPECT_SAME_BITS(bubble(1.001), 0.0f); // outside
}

TEST_P(VolumeNoise, AnyOtherFalloffLeavesTheBlobsAtZero)
{
    for (const int falloff : {-1, 4, 99}) {
        auto noise = withOctaves<BillowVolume>(3);
        noise.falloff = falloff;
        noise.spottyness = 0.7f;
        noise.fractal.threshold = 0.25f;
        EXPECT_SAME_BITS(evalBillow3d(noise, kSomewhere, 0.4f), 0.25f);
        EXPECT_SAME_BITS(evalBillow2d(noise, 0.3f, 0.7f, 0.4f), 0.25f);
    }
}

TEST_P(VolumeNoise, BillowHasNoBiasWhateverTheInflection)
{
    auto noise = withOctaves<BillowVolume>(3);
    noise.falloff = kBillowFast;
    const float still = evalBillow3d(noise, kSomewhere, 0.0f);
    noise.fractal.inflection = true; // all heights are positive already
    EXPECT_SAME_BITS(evalBillow3d(noise, kSomewhere, 0.0f), still);
    noise.spottyness = 3.0f; // now some are negative: (r + 1) * 3 - 2
    noise.fractal.depthMax = 1;
    bool negativeSeen = false;
    for (int i = 0; i < 200; ++i) {
        const VolumePoint p{static_cast<float>(i) * 0.013f, 0.2f, 0.3f};
        noise.fractal.inflection = false;
        const float plain = evalBillow3d(noise, p, 0.0f);
        noise.fractal.inflection = true;
        const float folded = evalBillow3d(noise, p, 0.0f);
        negativeSeen = negativeSeen || plain < 0.0f;
        if (plain < 1.0f) {
            EXPECT_SAME_BITS(folded, std::fabs(plain) > 1.0f ? 1.0f : std::fabs(plain));
        }
    }
    EXPECT_TRUE(negativeSeen);
}

TEST_P(VolumeNoise, TimeOfBillowGrowsByTheRatioInThePlaneAndByItsRootInSpace)
{
    // Amplitudes of almost nothing but the second octave: its time is 0.3 * 4 in the plane.
    BillowVolume two = withOctaves<BillowVolume>(2);
    two.falloff = kBillowFast;
    two.fractal.frequencyRatio = 4.0f;
    two.fractal.ratio = 1e8f;
    BillowVolume one = two;
    one.fractal.depthMax = 1;
    // The second octave sits at x * 4 + 0.042, the first at x + 0.021.
    const float x = 0.2f, y = 0.15f, z = 0.35f;
    const float plane = evalBillow2d(one, x * 4.0f + 0.021f, y * 4.0f + 0.33f, 1.2f);
    EXPECT_NEAR(evalBillow2d(two, x, y, 0.3f), plane, 1e-4);
    const float space = evalBillow3d(one, {x * 4.0f + 0.021f, y * 4.0f + 0.33f, z * 4.0f + 0.011f}, 0.6f);
    EXPECT_NEAR(evalBillow3d(two, {x, y, z}, 0.3f), space, 1e-4);
    EXPECT_GT(std::fabs(plane - evalBillow2d(one, x * 4.0f + 0.021f, y * 4.0f + 0.33f, 0.6f)), 1e-3f);
}

TEST_P(VolumeNoise, ResultsAreNeverAboveOneAndCanBeNegative)
{
    auto perlin = withOctaves<PerlinVolume>(3);
    auto billow = withOctaves<BillowVolume>(3);
    auto cosine = withOctaves<CosineVolume>(3);
    cosine.numWaves = 5;
    for (const float threshold : {5.0f, -5.0f}) {
        perlin.fractal.threshold = billow.fractal.threshold = cosine.fractal.threshold = threshold;
        for (const float r :
             {evalPerlin3d(perlin, kSomewhere, 0.1f), evalPerlin2d(perlin, 0.2f, 0.3f, 0.1f),
              evalBillow3d(billow, kSomewhere, 0.1f), evalBillow2d(billow, 0.2f, 0.3f, 0.1f),
              evalCosine3d(cosine, kSomewhere, 0.1f), evalCosine2d(cosine, 0.2f, 0.3f, 0.1f)}) {
            if (threshold > 0.0f) {
                EXPECT_SAME_BITS(r, 1.0f);
            } else {
                EXPECT_LT(r, -2.0f);
            }
        }
    }
}

TEST_P(VolumeNoise, NumberOfWavesIsReadAsSixteenSignedBits)
{
    auto noise = withOctaves<CosineVolume>(2);
    noise.numWaves = 3;
    const float three = evalCosine3d(noise, kSomewhere, 0.2f);
    const float threeInPlane = evalCosine2d(noise, 0.2f, 0.3f, 0.2f);
    noise.numWaves = 65536 + 3;
    EXPECT_SAME_BITS(evalCosine3d(noise, kSomewhere, 0.2f), three);
    EXPECT_SAME_BITS(evalCosine2d(noise, 0.2f, 0.3f, 0.2f), threeInPlane);
    noise.numWaves = 65535; // -1: no wave, and 0 / -1
    EXPECT_SAME_BITS(evalCosine3d(noise, kSomewhere, 0.2f), 0.5f);
    EXPECT_SAME_BITS(evalCosine2d(noise, 0.2f, 0.3f, 0.2f), 0.5f);
    noise.numWaves = 0; // 0 / 0
    EXPECT_TRUE(std::isnan(evalCosine3d(noise, kSomewhere, 0.2f)));
    EXPECT_TRUE(std::isnan(evalCosine2d(noise, 0.2f, 0.3f, 0.2f)));
}

TEST_P(VolumeNoise, FrequencyRatioOfZeroOrLessCountsAsOne)
{
    for (const float ratio : {0.0f, -2.0f}) {
        auto noise = withOctaves<PerlinVolume>(3);
        noise.fractal.frequencyRatio = ratio;
        const float patched = evalPerlin3d(noise, kSomewhere, 0.3f);
        noise.fractal.frequencyRatio = 1.0f;
        EXPECT_SAME_BITS(patched, evalPerlin3d(noise, kSomewhere, 0.3f));
    }
}

TEST_P(VolumeNoise, OneOctaveOfPerlinIsOneLevel)
{
    for (const bool spaceTime : {false, true}) {
        for (const bool timeNoise : {false, true}) {
            auto noise = withOctaves<PerlinVolume>(1);
            noise.spaceTime = spaceTime;
            noise.timeNoise = timeNoise;
            const VolumePoint p = kSomewhere;
            const float level = perlinLevel3d(noise, {p.x + 0.02f, p.y + 0.3f, p.z + 0.01f}, 0.7f, 0);
            EXPECT_NEAR(evalPerlin3d(noise, p, 0.7f), level * 0.5f + 0.5f, 1e-6);
            const float plane = perlinLevel2d(noise, p.x + 0.02f, p.y + 0.3f, 0.7f, 0);
            EXPECT_NEAR(evalPerlin2d(noise, p.x, p.y, 0.7f), plane * 0.5f + 0.5f, 1e-6);
        }
    }
}

TEST_P(VolumeNoise, TimeNoiseKnowsThePlaneInItsWispyFormOnly)
{
    auto noise = withOctaves<PerlinVolume>(2);
    const float without = evalPerlin2d(noise, 0.3f, 0.7f, 0.4f);
    noise.wispy = true;
    const float wispyWithout = evalPerlin2d(noise, 0.3f, 0.7f, 0.4f);
    noise.timeNoise = true;
    EXPECT_GT(std::fabs(evalPerlin2d(noise, 0.3f, 0.7f, 0.4f) - wispyWithout), 1e-4f);
    noise.wispy = false;
    EXPECT_SAME_BITS(evalPerlin2d(noise, 0.3f, 0.7f, 0.4f), without);
}

TEST_P(VolumeNoise, CoordinatesThatAreNotFiniteAreCellZero)
{
    auto perlin = withOctaves<PerlinVolume>(1);
    // Cell 0 with the fraction 0 on all axes, as at the origin of the lattice itself.
    const auto expected = static_cast<double>(latticeNoise3(0.0, 0.0, 0.0)) * 0.5 + 0.5;
    for (const float bad : {kNan, kInfinity, -kInfinity})
        EXPECT_NEAR(evalPerlin3d(perlin, {bad, bad, bad}, 0.0f), expected, 1e-6);
}

// The end of every noise, which a number that is none may pass.
bool atMostOne(float value, bool isNumber)
{
    return value <= 1.0f || (!isNumber && std::isnan(value));
}

TEST_P(VolumeNoise, NoValueLeadsOutOfTheTables)
{
    const std::vector<float> odd = {kNan,  kInfinity, -kInfinity, 3e38f,  -3e38f, 2e9f,
                                    -2e9f, 1e-44f,    -1e-44f,    -1e-9f, -0.0f,  8388609.0f};
    for (const float a : odd) {
        for (const float b : odd) {
            const bool finite = std::isfinite(a) && std::isfinite(b);
            // Angles beyond these numbers overflow, and their cosine is not a number.
            const bool finitePhases = std::fabs(a) < 1e10f && std::fabs(b) < 1e10f;
            for (int depth : {1, 2, 5, 20}) {
                auto perlin = withOctaves<PerlinVolume>(depth);
                auto billow = withOctaves<BillowVolume>(depth);
                auto cosine = withOctaves<CosineVolume>(depth);
                cosine.numWaves = 5;
                perlin.fractal.frequencyRatio = billow.fractal.frequencyRatio = b;
                for (const int period : {100, -2147483647 - 1, 2147483647}) {
                    perlin.timePeriod = period;
                    for (int form = 0; form < 8; ++form) {
                        perlin.wispy = (form & 1) != 0;
                        perlin.timeNoise = (form & 2) != 0;
                        perlin.spaceTime = (form & 4) != 0;
                        const float space = evalPerlin3d(perlin, {a, b, 0.3f}, b);
                        const float plane = evalPerlin2d(perlin, a, b, a);
                        EXPECT_PRED2(atMostOne, space, finite) << a << ", " << b;
                        EXPECT_PRED2(atMostOne, plane, finite) << a << ", " << b;
                    }
                }
                for (billow.falloff = 0; billow.falloff < 5; ++billow.falloff) {
                    EXPECT_PRED2(atMostOne, evalBillow3d(billow, {a, b, 0.3f}, b), finite) << a << ", " << b;
                    EXPECT_PRED2(atMostOne, evalBillow2d(billow, a, b, a), finite) << a << ", " << b;
                }
                EXPECT_PRED2(atMostOne, evalCosine3d(cosine, {a, b, 0.3f}, b), finitePhases)
                    << a << ", " << b;
                EXPECT_PRED2(atMostOne, evalCosine2d(cosine, a, b, a), finitePhases) << a << ", " << b;
            }
        }
    }
}

} // namespace
