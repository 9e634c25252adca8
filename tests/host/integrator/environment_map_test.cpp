#include "host/integrator/environment_map.h"
#include "host/integrator/light_sampling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace ombrix;

EnvironmentMap uneven(int width, int height)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> number(0.0f, 1.0f);
    std::vector<float> pixels;
    for (int i = 0; i < width * height; ++i) {
        const float bright = i % 37 == 5 ? 30.0f : number(random);
        pixels.insert(pixels.end(), {bright, bright * 0.5f, number(random), 1.0f});
    }
    return {width, height, pixels.data()};
}

Vector evenDirection(double u, double v)
{
    const double y = 1.0 - 2.0 * v, r = std::sqrt(1.0 - y * y), a = 2.0 * M_PI * u;
    return {static_cast<float>(r * std::cos(a)), static_cast<float>(y), static_cast<float>(r * std::sin(a))};
}

TEST(EnvironmentMap, DirectionsFollowTheDocumentedAxes)
{
    // Four columns and three rows; every pixel its own number.
    std::vector<float> pixels;
    for (int i = 0; i < 12; ++i)
        pixels.insert(pixels.end(), {static_cast<float>(i), 0.0f, 0.0f, 1.0f});
    const EnvironmentMap map(4, 3, pixels.data());
    EXPECT_EQ(map.radiance({0.1f, 0.0f, -1.0f}).r, 6.0f); // just right of the middle
    EXPECT_EQ(map.radiance({-0.1f, 0.0f, -1.0f}).r, 5.0f);
    EXPECT_EQ(map.radiance({0.1f, 0.0f, 1.0f}).r, 7.0f); // behind, from the right
    EXPECT_EQ(map.radiance({0.01f, 1.0f, -0.01f}).r, 2.0f);
    EXPECT_EQ(map.radiance({0.01f, -1.0f, -0.01f}).r, 10.0f);
}

TEST(EnvironmentMap, TheDensityIntegratesToOne)
{
    const EnvironmentMap map = uneven(16, 8);
    double sum = 0;
    const int n = 600;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            sum += static_cast<double>(map.density(evenDirection((i + 0.5) / n, (j + 0.5) / n)));
    EXPECT_NEAR(sum * 4.0 * M_PI / (n * n), 1.0, 5e-3);
}

TEST(EnvironmentMap, SamplesHaveTheDensityThatTheyTell)
{
    const EnvironmentMap map = uneven(16, 8);
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(0.0f, 1.0f);
    // The mean of 1 / density is the solid angle of the sphere, as no pixel is black.
    double sum = 0;
    int different = 0;
    const int count = 400000;
    for (int i = 0; i < count; ++i) {
        const auto sample = map.sample({number(random), number(random)});
        ASSERT_NEAR(length(sample.direction), 1.0f, 1e-4f);
        sum += 1.0 / static_cast<double>(sample.density);
        // On a pixel's edge rounding can pick its neighbour; elsewhere both agree.
        const float told = map.density(sample.direction);
        if (std::fabs(told - sample.density) > 1e-4f * sample.density) ++different;
    }
    EXPECT_LT(different, count / 1000);
    EXPECT_NEAR(sum / count, 4.0 * M_PI, 0.4);
}

TEST(EnvironmentMap, BadNumbersCountAsBlack)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    const float pixels[] = {nan, -1.0f, inf, 1.0f, nan, nan, nan, 1.0f};
    const EnvironmentMap map(2, 1, pixels);
    EXPECT_EQ(map.sample({0.3f, 0.3f}).density, 0.0f);
    EXPECT_EQ(map.radiance({1.0f, 0.0f, 0.0f}).b, 0.0f);
}

// Irradiance of a lit plane, by light sampling against an even sum over the hemisphere.
class LightSampling : public testing::Test {
protected:
    Color reflected(const LightDescription& light, const Vector& point, const Vector& normal)
    {
        std::mt19937 random(11);
        std::uniform_real_distribution<float> number(0.0f, 1.0f);
        Color sum;
        for (int i = 0; i < kCount; ++i) {
            const LightSample sample = sampleLight(light, point, normal, {number(random), number(random)});
            sum = sum + sample.reflected * (1.0f / kCount);
        }
        return sum;
    }
    static constexpr int kCount = 200000;
};

TEST_F(LightSampling, ADomeImageAgreesWithBruteForce)
{
    const EnvironmentMap map = uneven(16, 8);
    LightDescription light;
    light.map = &map;
    light.turn = 0.7f;
    light.power = {1.0f, 2.0f, 3.0f};
    const Vector normal = normalizedOr({0.3f, 0.8f, -0.5f}, {});
    double expected[3] = {};
    const int n = 900;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const Vector direction = evenDirection((i + 0.5) / n, (j + 0.5) / n);
            const double cosine = std::max(0.0, static_cast<double>(dot(direction, normal)));
            const Color radiance = domeRadiance(light, direction);
            const double weight = cosine / M_PI * 4.0 * M_PI / (n * n);
            expected[0] += static_cast<double>(radiance.r) * weight;
            expected[1] += static_cast<double>(radiance.g) * weight;
            expected[2] += static_cast<double>(radiance.b) * weight;
        }
    }
    const Color got = reflected(light, {}, normal);
    EXPECT_NEAR(static_cast<double>(got.r), expected[0], 0.02 * expected[0]);
    EXPECT_NEAR(static_cast<double>(got.g), expected[1], 0.02 * expected[1]);
    EXPECT_NEAR(static_cast<double>(got.b), expected[2], 0.02 * expected[2]);
}

TEST_F(LightSampling, PointLightFallsWithTheSquareOfTheDistance)
{
    LightDescription light;
    light.kind = LightDescription::Kind::Point;
    light.position = {0.0f, 3.0f, 0.0f};
    light.power = {2.0f, 2.0f, 2.0f};
    EXPECT_NEAR(reflected(light, {0, 2, 0}, {0, 1, 0}).r, 2.0f, 0.01f);
    EXPECT_NEAR(reflected(light, {0, 0, 0}, {0, 1, 0}).r, 2.0f / 9.0f, 1e-3f);
    EXPECT_EQ(reflected(light, {0, 0, 0}, {0, -1, 0}).r, 0.0f);
}

// A ball lights a point outside as if its whole power sat in its middle, as long as all of it lies above
// the surface.
TEST_F(LightSampling, ABallOfLightKeepsThePower)
{
    LightDescription light;
    light.kind = LightDescription::Kind::Point;
    light.position = {1.0f, 4.0f, 0.5f};
    const Vector normal{0.0f, 1.0f, 0.0f};
    const float point = reflected(light, {}, normal).r;
    light.radius = 1.5f;
    EXPECT_NEAR(reflected(light, {}, normal).r, point, 0.005f * point);
    // Within the ball the radiance, power / radius^2, comes from everywhere.
    EXPECT_NEAR(reflected(light, {1.0f, 4.0f, 0.0f}, normal).r, 1.0f / (1.5f * 1.5f), 1e-3f);
}

TEST_F(LightSampling, ADistantLightTravelsAlongItsDirection)
{
    LightDescription light;
    light.kind = LightDescription::Kind::Distant;
    light.direction = normalizedOr({1.0f, -1.0f, 0.0f}, {});
    EXPECT_NEAR(reflected(light, {5, 6, 7}, {0, 1, 0}).r, std::sqrt(0.5f), 1e-3f);
    EXPECT_EQ(reflected(light, {5, 6, 7}, {1, 0, 0}).r, 0.0f);
    // A cone of half angle a around the normal reaches (1 + cos a) / 2 of the power on the average.
    light.direction = {0.0f, -1.0f, 0.0f};
    light.halfAngle = radians(30.0f);
    EXPECT_NEAR(reflected(light, {}, {0, 1, 0}).r, 0.5f * (1.0f + std::cos(radians(30.0f))), 2e-3f);
}

} // namespace
