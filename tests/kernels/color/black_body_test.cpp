#include "kernels/color/black_body.h"

#include "kernels/color/color_matching.h"
#include "support/plain_black_body.h"
#include "support/tolerances.h"

#include <algorithm>
#include <limits>

namespace {

using namespace nezaiva;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

plain::Vec widened(const Color& c)
{
    return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b)};
}

double distance(const Color& actual, const plain::Vec& expected)
{
    const plain::Vec c = widened(actual);
    return std::max(
        {std::fabs(c[0] - expected[0]), std::fabs(c[1] - expected[1]), std::fabs(c[2] - expected[2])});
}

// From the coldest to the hottest in equal ratios.
float temperatureAt(int step, int steps, double hottest)
{
    return static_cast<float>(1000.0 * std::pow(hottest / 1000.0, static_cast<double>(step) / steps));
}

TEST(ColorMatching, TablesHoldTheObserver)
{
    for (std::size_t row = 0; row < kMatchingRows; ++row) {
        EXPECT_SAME_BITS(kMatchingX[row], static_cast<float>(plain::kObserver[row][0])) << row;
        EXPECT_SAME_BITS(kMatchingY[row], static_cast<float>(plain::kObserver[row][1])) << row;
        EXPECT_SAME_BITS(kMatchingZ[row], static_cast<float>(plain::kObserver[row][2])) << row;
    }
    // The places where the tables begin, and green's peak.
    EXPECT_EQ(kMatchingX[6], 0.0f);
    EXPECT_EQ(kMatchingX[7], 0.01f);
    EXPECT_EQ(kMatchingY[9], 0.0f);
    EXPECT_EQ(kMatchingY[10], 0.01f);
    EXPECT_EQ(kMatchingZ[5], 0.0f);
    EXPECT_EQ(kMatchingZ[6], 0.01f);
    EXPECT_EQ(kMatchingY[39], 1.0f);
    EXPECT_EQ(kMatchingX[71], 0.0f);
}

TEST(BlackBody, AgreesWithThePlainTwinInEverySpace)
{
    for (int space = 0; space < 3; ++space)
        for (int step = 0; step <= 4000; ++step) {
            const float temperature = temperatureAt(step, 4000, step % 2 ? 1e12 : 30'000.0);
            const auto expected =
                plain::blackBodyOf(static_cast<double>(temperature), static_cast<std::size_t>(space));
            EXPECT_LT(distance(blackBodyColor(temperature, space), expected), tolerance::kSum)
                << temperature << " in space " << space;
            EXPECT_LT(distance(blackBodyColorBySum(temperature, space), expected), tolerance::kSum)
                << temperature << " in space " << space;
        }
}

TEST(BlackBody, LooksUpWhatItWouldSum)
{
    for (int space = 0; space < 3; ++space)
        for (int step = 0; step <= 20'000; ++step) {
            const float temperature = temperatureAt(step, 20'000, 1e12);
            const plain::Vec summed = widened(blackBodyColorBySum(temperature, space));
            EXPECT_LT(distance(blackBodyColor(temperature, space), summed), 5e-6)
                << temperature << " in space " << space;
        }
}

TEST(BlackBody, DaylightIsWhiteInTheSpacesThatAreScaledSo)
{
    for (int space : {1, 2})
        EXPECT_LT(distance(blackBodyColor(6500.0f, space), {1.0, 1.0, 1.0}), tolerance::kSum) << space;
    EXPECT_GT(distance(blackBodyColor(6500.0f, 0), {1.0, 1.0, 1.0}), 0.01);
}

TEST(BlackBody, OtherSpacesCountAsTheSecond)
{
    for (int space : {-1, 3, 1000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        for (float temperature : {1000.0f, 4321.0f, 1e13f}) {
            const Color expected = blackBodyColor(temperature, 1),
                        actual = blackBodyColor(temperature, space);
            EXPECT_SAME_BITS(actual.r, expected.r);
            EXPECT_SAME_BITS(actual.g, expected.g);
            EXPECT_SAME_BITS(actual.b, expected.b);
        }
}

TEST(BlackBody, MeansAreOne)
{
    for (int space = 0; space < 3; ++space)
        for (float temperature : {1000.0f, 2000.0f, 6500.0f, 50'000.0f, 1e14f}) {
            const Color c = blackBodyColor(temperature, space);
            EXPECT_NEAR((c.r + c.g + c.b) / 3.0f, 1.0f, 1e-6f);
        }
}

TEST(BlackBody, TurnsFromRedToBlue)
{
    // The share of red falls and that of blue rises, from where blue comes into the gamut.
    Color colder = blackBodyColor(2000.0f, 1);
    for (int step = 1; step <= 200; ++step) {
        const Color c = blackBodyColor(2.0f * temperatureAt(step, 200, 1e6), 1);
        EXPECT_LT(c.r, colder.r) << step;
        EXPECT_GT(c.b, colder.b) << step;
        colder = c;
    }
}

TEST(TemperatureColor, LargestChannelIsOneAndNoneIsNegative)
{
    for (int space = 0; space < 3; ++space)
        for (int step = 0; step <= 1000; ++step) {
            const float temperature = temperatureAt(step, 1000, 1e9);
            const Color c = temperatureColor(temperature, space);
            EXPECT_EQ(std::max({c.r, c.g, c.b}), 1.0f) << temperature;
            EXPECT_GE(std::min({c.r, c.g, c.b}), 0.0f) << temperature;
            const auto expected =
                plain::temperatureColorOf(static_cast<double>(temperature), static_cast<std::size_t>(space));
            EXPECT_LT(distance(c, expected), tolerance::kSum) << temperature;
        }
    EXPECT_EQ(temperatureColor(1000.0f, 1).b, 0.0f) << "outside the gamut";
}

TEST(TemperatureColor, NothingIsColderThanAThousandKelvin)
{
    const Color coldest = temperatureColor(1000.0f, 1);
    for (float temperature : {999.99f, 0.0f, -5000.0f, -kInfinity}) {
        const Color c = temperatureColor(temperature, 1);
        EXPECT_SAME_BITS(c.r, coldest.r);
        EXPECT_SAME_BITS(c.g, coldest.g);
        EXPECT_SAME_BITS(c.b, coldest.b);
    }
}

TEST(TemperatureColor, HasNoColorWhereTheSumHasNone)
{
    // Beyond 1e21 kelvin the exponential is 1 for every wavelength: infinite light, and none of it times 0.
    for (float temperature : {kNaN, kInfinity, 1e22f, std::numeric_limits<float>::max()}) {
        const Color c = temperatureColor(temperature, 1);
        EXPECT_TRUE(std::isnan(c.r) && std::isnan(c.g) && std::isnan(c.b)) << temperature;
    }
    EXPECT_FALSE(std::isnan(temperatureColor(1e18f, 1).r));
}

} // namespace
