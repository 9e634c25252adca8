// Warp, frequency, scale and origin of the volume noises; the tables' directions; the sines.

#include "kernels/noises/random_tables.h"
#include "kernels/noises/volume/volume_placement.h"
#include "kernels/noises/volume/volume_tables.h"
#include "kernels/noises/volume/volume_trig.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace nezaiva;

void expectPoint(const VolumePoint& p, float x, float y, float z)
{
    EXPECT_FLOAT_EQ(p.x, x);
    EXPECT_FLOAT_EQ(p.y, y);
    EXPECT_FLOAT_EQ(p.z, z);
}

TEST(VolumePlacement, FrequencyFactorsDifferFromTheirUnsetForms)
{
    EXPECT_SAME_BITS(perlinFrequencyFactor(8.0f), 0.5f);
    EXPECT_SAME_BITS(billowFrequencyFactor(8.0f), 0.4f);
    EXPECT_SAME_BITS(cosineFrequencyFactor(8.0f), 8.0f);
    EXPECT_SAME_BITS(kPerlinUnsetFrequencyFactor, 0.5f);
    EXPECT_SAME_BITS(kBillowUnsetFrequencyFactor, 0.4f);
    EXPECT_SAME_BITS(kCosineUnsetFrequencyFactor, 8.0f);
}

TEST(VolumePlacement, ScaleDividesBehindTheFrequencyAndTheOriginComesLast)
{
    VolumePlacement placement;
    placement.frequencyFactor = 2.0f;
    placement.hasScale = true;
    placement.scale = {4.0f, 0.5f, 8.0f};
    placement.hasOrigin = true;
    placement.origin = {10.0f, 20.0f, 30.0f};
    expectPoint(placeVolumePoint3d(placement, {1.0f, 2.0f, 3.0f}), 10.5f, 28.0f, 30.75f);
    expectPoint(placeVolumePoint2d(placement, {1.0f, 2.0f, 3.0f}), 10.5f, 28.0f, 3.0f);
}

TEST(VolumePlacement, ScaleOfZeroCountsAsAMillionth)
{
    VolumePlacement placement;
    placement.frequencyFactor = 1.0f;
    placement.hasScale = true;
    placement.scale = {0.0f, -0.0f, 1.0f};
    expectPoint(placeVolumePoint3d(placement, {1.0f, 2.0f, 3.0f}), 1e6f, 2e6f, 3.0f);
}

TEST(VolumePlacement, ImplodeScalesTheDistanceToItsCentre)
{
    VolumePlacement placement;
    placement.frequencyFactor = 1.0f;
    placement.hasImplodeCenter = true;
    placement.implodeCenter = {1.0f, 1.0f, 1.0f};
    placement.implode = 1.0f;
    // d = (2, 3, 6), r = 7, k = 1/7.
    expectPoint(placeVolumePoint3d(placement, {3.0f, 4.0f, 7.0f}), 1.0f + 2.0f / 7.0f, 1.0f + 3.0f / 7.0f,
                1.0f + 6.0f / 7.0f);
    // In the plane d = (3, 4), r = 5.
    expectPoint(placeVolumePoint2d(placement, {4.0f, 5.0f, 9.0f}), 1.6f, 1.8f, 9.0f);
    placement.implode = -1.0f;
    expectPoint(placeVolumePoint3d(placement, {3.0f, 4.0f, 7.0f}), 15.0f, 22.0f, 43.0f);
}

TEST(VolumePlacement, ImplodeNeedsACentreAndMoreThanAMillionth)
{
    VolumePlacement placement;
    placement.frequencyFactor = 1.0f;
    placement.implode = 1.0f;
    expectPoint(placeVolumePoint3d(placement, {3.0f, 4.0f, 7.0f}), 3.0f, 4.0f, 7.0f);
    placement.hasImplodeCenter = true;
    placement.implode = 1e-6f;
    expectPoint(placeVolumePoint3d(placement, {3.0f, 4.0f, 7.0f}), 3.0f, 4.0f, 7.0f);
    EXPECT_FALSE(usesImplodeCenter(1e-6f));
    EXPECT_TRUE(usesImplodeCenter(-2e-6f));
    EXPECT_FALSE(usesImplodeCenter(std::numeric_limits<float>::quiet_NaN()));
}

TEST(VolumeTables, DirectionOfALevelReadsTheTableFromTenTimesItsNumber)
{
    const NoiseTables& noise = activeNoiseTables();
    for (const int level : {0, 1, 7, 40, 65536 + 3, 40000}) {
        const int n = (level >= 65536 ? level - 65536 : level >= 32768 ? level - 65536 : level) * 10;
        const double a = static_cast<double>(randomValue(noise, n));
        const double b = static_cast<double>(randomValue(noise, n + 1));
        const double c = static_cast<double>(randomValue(noise, n + 2));
        float direction[4];
        volumeDirection3d(noise, level, direction);
        EXPECT_NEAR(direction[0], a / std::sqrt(a * a + b * b + c * c), 1e-6) << level;
        EXPECT_NEAR(direction[2], c / std::sqrt(a * a + b * b + c * c), 1e-6) << level;
        volumeDirection2d(noise, level, direction);
        EXPECT_NEAR(direction[1], b / std::sqrt(a * a + b * b), 1e-6) << level;
        EXPECT_SAME_BITS(direction[2], 0.0f);
    }
}

TEST(VolumeTables, DirectionSearchStepsOverVectorsWithoutLength)
{
    static NoiseTables noise{};
    noise.random[23] = 0.5f;  // third of the triple 21..23, second of the pair 22, 23
    noise.random[27] = 0.25f; // phases: n + 3 and n + 2 behind the search
    noise.random[24] = -0.25f;
    float direction[4];
    volumeDirection3d(noise, 2, direction); // begins at 20: (0, 0, 0); then 23: (0.5, -0.25, 0)
    EXPECT_FLOAT_EQ(direction[0], 0.5f / std::sqrt(0.3125f));
    EXPECT_FLOAT_EQ(direction[1], -0.25f / std::sqrt(0.3125f));
    volumeDirection2d(noise, 2, direction); // 20: (0, 0); 22: (0, 0.5)
    EXPECT_SAME_BITS(direction[0], 0.0f);
    EXPECT_SAME_BITS(direction[1], 1.0f);
    int index = 21;
    const Wave wave = nextWave3d(noise, index); // 21: (0, 0, 0.5), phase at 24
    EXPECT_SAME_BITS(wave.z, 1.0f);
    EXPECT_FLOAT_EQ(wave.phase, -0.25f * 3.1415927f);
    EXPECT_EQ(index, 25);
    index = 18;
    nextWave3d(noise, index); // 18: 0; 21, phase at 24, next at 25
    EXPECT_EQ(index, 25);
    index = 20;
    EXPECT_FLOAT_EQ(nextWave2d(noise, index).phase, -0.25f * 3.1415927f); // 22, phase at 24
    EXPECT_EQ(index, 25);
}

TEST(VolumeTables, DirectionSearchEndsInATableOfZeros)
{
    static const NoiseTables zeros{};
    float direction[4];
    volumeDirection3d(zeros, 0, direction);
    EXPECT_SAME_BITS(direction[0], 0.0f);
}

TEST(VolumeTrig, SineAndCosineAgreeWithTheMathsLibrary)
{
    const auto expectNear = [](float angle) {
        const SineCosine turned = sineCosine(angle);
        EXPECT_NEAR(turned.sine, std::sin(static_cast<double>(angle)), 8e-8) << angle;
        EXPECT_NEAR(turned.cosine, std::cos(static_cast<double>(angle)), 8e-8) << angle;
    };
    for (int i = -4000; i <= 4000; ++i)
        expectNear(static_cast<float>(i) * 0.0173f);
    for (float angle = 1e-30f; angle < 1e38f; angle *= 1.37f) {
        expectNear(angle);
        expectNear(-angle);
    }
    EXPECT_TRUE(std::isnan(sineCosine(std::numeric_limits<float>::infinity()).sine));
    EXPECT_TRUE(std::isnan(sineCosine(std::numeric_limits<float>::quiet_NaN()).cosine));
}

} // namespace
