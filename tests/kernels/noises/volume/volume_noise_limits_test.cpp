// The billow and the wave noise where their kernels change course: times of every kind, blobs that
// reach far, frequencies that leave the numbers. Against the plain twin, and the two instruction sets
// against each other.

#include "numeric/simd_dispatch.h"
#include "support/instruction_sets.h"
#include "support/plain_volume_noise.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace nezaiva;

constexpr double kTwinTolerance = 2e-6; // what the order of the operations may change
constexpr double kBubbleSlope = 11.0;   // of the bubble's rim
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// Around each limit of how the offsets are found, and where a float of time has whole turns only.
constexpr float kTimes[] = {0.0f,    1e-38f,  1e-6f,   0.3f, 1.1f,    1.49f,  1.51f, -3.3f, 47.0f,
                            -900.0f, 1023.0f, 1025.0f, 4e4f, -3.3e7f, 3.5e7f, 1e12f, 3e37f};

class Draws {
public:
    explicit Draws(unsigned seed) : generator(seed) {}

    float between(float low, float high)
    {
        return std::uniform_real_distribution<float>(low, high)(generator);
    }
    VolumePoint point(float reach)
    {
        return {between(-reach, reach), between(-reach, reach), between(-reach, reach)};
    }
    // The threshold keeps the results below the cap, which would hide differences.
    BillowVolume billow(int depth, int falloff)
    {
        BillowVolume noise;
        noise.fractal.frequencyRatio = between(0.6f, 1.6f);
        noise.fractal.threshold = -3.0f;
        noise.fractal.depthMax = depth;
        noise.density = between(0.5f, 1.5f);
        noise.spottyness = between(-0.2f, 0.5f);
        noise.randomness = between(-0.5f, 1.0f);
        noise.sizeRand = between(-0.3f, 0.3f);
        noise.falloff = falloff;
        return noise;
    }
    CosineVolume cosine(int depth, int waves)
    {
        CosineVolume noise;
        noise.fractal.ratio = between(0.3f, 0.9f);
        noise.fractal.threshold = -3.0f;
        noise.fractal.depthMax = depth;
        noise.numWaves = waves;
        return noise;
    }

private:
    std::mt19937 generator;
};

double toleranceOf(const BillowVolume& noise)
{
    return noise.falloff == kBillowBubble ? kBubbleSlope * kTwinTolerance : kTwinTolerance;
}

// A NaN where the twin has one, and else a number near the twin's.
void expectLike(float result, float expected, double tolerance)
{
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(result)) << result;
    } else {
        EXPECT_NEAR(result, expected, tolerance);
    }
}

class VolumeLimits : public EveryInstructionSet {};

INSTANTIATE_TEST_SUITE_P(Sets, VolumeLimits, kInstructionSets, instructionSetName);

TEST_P(VolumeLimits, BillowAgreesAtEveryTimeWithEveryFalloff)
{
    Draws draws(31);
    for (const float time : kTimes) {
        for (int falloff = 0; falloff < 5; ++falloff) {
            for (int depth = 1; depth <= 9; ++depth) {
                for (int i = 0; i < 12; ++i) {
                    SCOPED_TRACE(testing::Message()
                                 << "time " << time << ", fall-off " << falloff << ", depth " << depth);
                    const BillowVolume noise = draws.billow(depth, falloff);
                    const VolumePoint p = draws.point(3.0f);
                    const double tolerance = toleranceOf(noise);
                    expectLike(evalBillow3d(noise, p, time), plain::billow3d(noise, p, time), tolerance);
                    expectLike(evalBillow2d(noise, p.x, p.y, time), plain::billow2d(noise, p.x, p.y, time),
                               tolerance);
                }
            }
        }
    }
}

// Randomness above 1 moves blobs into cells that are not next to their own.
TEST_P(VolumeLimits, BillowAgreesWhereBlobsReachFar)
{
    Draws draws(32);
    for (int i = 0; i < 20000; ++i) {
        BillowVolume noise = draws.billow(1 + i % 3, kBillowFast);
        noise.randomness = draws.between(1.1f, 1.9f);
        noise.density = 2.0f;
        noise.sizeRand = 0.0f;
        noise.spottyness = 0.0f;
        noise.fractal.frequencyRatio = 1.0f;
        const VolumePoint p = draws.point(3.0f);
        const float time = i % 2 == 0 ? 0.0f : draws.between(-1.0f, 1.0f);
        // Small blobs are steep.
        const double tolerance = kTwinTolerance * 2.0 / (2.0 - static_cast<double>(noise.randomness));
        ASSERT_NEAR(evalBillow3d(noise, p, time), plain::billow3d(noise, p, time), tolerance) << i;
        ASSERT_NEAR(evalBillow2d(noise, p.x, p.y, time), plain::billow2d(noise, p.x, p.y, time), tolerance)
            << i;
    }
}

// Sizes above 1 divide distances by negative numbers, after which every cell counts.
TEST_P(VolumeLimits, BillowAgreesWhereSizesAreNegative)
{
    Draws draws(33);
    for (int i = 0; i < 20000; ++i) {
        BillowVolume noise = draws.billow(1 + i % 3, kBillowFast);
        noise.sizeRand = draws.between(1.05f, 2.0f);
        noise.fractal.amplitude = -1.0f; // what is very high stays below the cap
        const VolumePoint p = draws.point(3.0f);
        const float space = plain::billow3d(noise, p, 0.4f);
        const float plane = plain::billow2d(noise, p.x, p.y, 0.4f);
        ASSERT_NEAR(evalBillow3d(noise, p, 0.4f), space, 1e-5 * (1.0 + std::fabs(static_cast<double>(space))))
            << i;
        ASSERT_NEAR(evalBillow2d(noise, p.x, p.y, 0.4f), plane,
                    1e-5 * (1.0 + std::fabs(static_cast<double>(plane))))
            << i;
    }
}

TEST_P(VolumeLimits, BillowAgreesAcrossTheBordersOfItsPeriod)
{
    Draws draws(34);
    constexpr float kShifts[] = {0.021f, 0.33f, 0.011f};
    for (int i = 0; i < 20000; ++i) {
        const BillowVolume noise = draws.billow(1, kBillowSmooth);
        float p[3];
        for (int axis = 0; axis < 3; ++axis) {
            const float off = draws.between(-0.1f, 0.1f) * (i % 5 == axis ? 1e-8f : 1.0f);
            p[axis] = std::floor(draws.between(-2.0f, 2.0f)) + off - kShifts[axis];
        }
        const VolumePoint point{p[0], p[1], p[2]};
        ASSERT_NEAR(evalBillow3d(noise, point, 0.2f), plain::billow3d(noise, point, 0.2f), kTwinTolerance)
            << i;
        ASSERT_NEAR(evalBillow2d(noise, p[0], p[1], 0.2f), plain::billow2d(noise, p[0], p[1], 0.2f),
                    kTwinTolerance)
            << i;
    }
}

// What an octave that is not there would have, were it computed, may be no number.
TEST_P(VolumeLimits, CosineAgreesWhereFrequenciesOverflow)
{
    Draws draws(35);
    for (const float ratio : {1e-30f, 1e3f, 1e8f, 1e15f, 1e30f, 3e38f, kInfinity}) {
        for (int depth = 1; depth <= 4; ++depth) {
            for (int waves = 1; waves <= 8; ++waves) {
                for (const float time : {0.0f, 0.7f, 1e20f}) {
                    SCOPED_TRACE(testing::Message() << "ratio " << ratio << ", depth " << depth << ", waves "
                                                    << waves << ", time " << time);
                    CosineVolume noise = draws.cosine(depth, waves);
                    noise.fractal.frequencyRatio = ratio;
                    for (const VolumePoint& p : {draws.point(2.0f), VolumePoint{0.021f, 0.33f, 0.011f},
                                                 VolumePoint{0.0f, 0.0f, 0.0f}}) {
                        expectLike(evalCosine3d(noise, p, time), plain::cosine3d(noise, p, time),
                                   kTwinTolerance);
                        expectLike(evalCosine2d(noise, p.x, p.y, time),
                                   plain::cosine2d(noise, p.x, p.y, time), kTwinTolerance);
                    }
                }
            }
        }
    }
}

// About 6400 radians, where the reduction of the angles changes: three octaves of 2 pi times 4 p.
TEST_P(VolumeLimits, CosineAgreesOnBothSidesOfItsReductions)
{
    Draws draws(36);
    for (int i = 0; i < 20000; ++i) {
        const CosineVolume noise = draws.cosine(1 + i % 3, 1 + i % 8);
        const VolumePoint p = draws.point(i % 2 == 0 ? 400.0f : 8000.0f);
        const float time = draws.between(-4000.0f, 4000.0f);
        ASSERT_NEAR(evalCosine3d(noise, p, time), plain::cosine3d(noise, p, time), kTwinTolerance) << i;
        ASSERT_NEAR(evalCosine2d(noise, p.x, p.y, time), plain::cosine2d(noise, p.x, p.y, time),
                    kTwinTolerance)
            << i;
    }
}

// Every fall-off at every time, and every count of few waves, at points of every kind.
std::vector<float> resultsAtLimits()
{
    Draws draws(37);
    std::vector<float> results;
    const auto pointOf = [&](int i) {
        VolumePoint p = draws.point(i % 4 == 0 ? 1e9f : i % 4 == 1 ? 1e4f : 3.0f);
        if (i % 16 == 5) p.x = i % 32 == 5 ? kInfinity : kNan;
        if (i % 16 == 9) p.y = i % 32 == 9 ? -kInfinity : -1e-9f;
        return p;
    };
    for (const float time : kTimes) {
        for (int i = 0; i < 2000; ++i) {
            BillowVolume billow = draws.billow(i % 7, i % 6);
            if (i % 3 == 0) billow.randomness = draws.between(1.0f, 1.9f);
            if (i % 5 == 0) billow.sizeRand = draws.between(0.5f, 1.5f);
            CosineVolume cosine = draws.cosine(1 + i % 4, 1 + i % 9);
            cosine.fractal.frequencyRatio = i % 11 == 0 ? 1e30f : draws.between(-0.2f, 3.0f);
            cosine.fractal.inflection = billow.fractal.inflection = i % 13 == 0;
            const VolumePoint p = pointOf(i);
            const float t = i % 50 == 7 ? kInfinity : i % 50 == 8 ? kNan : time;
            results.push_back(evalBillow3d(billow, p, t));
            results.push_back(evalBillow2d(billow, p.x, p.y, t));
            results.push_back(evalCosine3d(cosine, p, t));
            results.push_back(evalCosine2d(cosine, p.x, p.y, t));
        }
    }
    return results;
}

TEST(VolumeLimitsSets, GiveTheSameBits)
{
    expectSameBitsWithEverySet(resultsAtLimits);
}

} // namespace
