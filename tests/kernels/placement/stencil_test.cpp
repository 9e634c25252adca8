#include "kernels/placement/stencil.h"

#include "support/plain_stencil.h"
#include "support/test_node.h"
#include "support/tolerances.h"

#include <random>

namespace {

using namespace support;

// edge_blend 0.2: half 0.1, plateau 0.01, slope 0.09, radius 0.1.
TEST(StencilEdge, WithoutBlendIsOneEverywhere)
{
    for (float blend : {0.0f, -1.0f, 1e-6f}) {
        EXPECT_SAME_BITS(nezaiva::stencilEdge(0.0f, 0.0f, blend), 1.0f);
        EXPECT_SAME_BITS(nezaiva::stencilEdge(-3.0f, kNaN, blend), 1.0f);
    }
}

TEST(StencilEdge, IsOneInTheMiddle)
{
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.5f, 0.5f, 0.2f), 1.0f);
}

TEST(StencilEdge, FallsAlongAnEdge)
{
    EXPECT_NEAR(nezaiva::stencilEdge(0.05f, 0.5f, 0.2f), 0.05 / 0.09, 1e-6);
    EXPECT_NEAR(nezaiva::stencilEdge(0.5f, 0.97f, 0.2f), 0.03 / 0.09, 1e-6);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.095f, 0.5f, 0.2f), 1.0f);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.0f, 0.5f, 0.2f), 0.0f);
}

TEST(StencilEdge, RoundsTheCorners)
{
    // D = 2 x 0.09 x 0.09, d = 0.1272792 lies beyond the radius.
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.01f, 0.01f, 0.2f), 0.0f);
    // d = 0.05 sqrt 2, so (0.1 - 0.0707106781) / 0.09.
    EXPECT_NEAR(nezaiva::stencilEdge(0.05f, 0.05f, 0.2f), 0.325436910, 1e-6);
    EXPECT_NEAR(nezaiva::stencilEdge(0.95f, 0.05f, 0.2f), 0.325436910, 2e-6);
    // On the plateau around the corner's centre.
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.095f, 0.095f, 0.2f), 1.0f);
}

TEST(StencilEdge, OfNegativeCoordinatesLeavesTheSignOn)
{
    EXPECT_NEAR(nezaiva::stencilEdge(-0.25f, 0.5f, 0.2f), -0.25 / 0.09, 1e-5);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(-0.25f, 0.01f, 0.2f), 0.0f);
}

TEST(StencilEdge, OfWhatIsNoNumberIsZeroOrNone)
{
    EXPECT_SAME_BITS(nezaiva::stencilEdge(kNaN, 0.01f, 0.2f), 0.0f);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(kNaN, 0.5f, 0.2f), kNaN);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(std::numeric_limits<float>::infinity(), kNaN, 0.2f), 0.0f);
    EXPECT_SAME_BITS(nezaiva::stencilEdge(0.5f, 0.5f, kNaN), 0.0f);
}

TEST(StencilEdge, AgreesWithItsTwin)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> coordinate(-1.0f, 3.0f), blend(0.05f, 1.0f);
    for (int i = 0; i < 200000; ++i) {
        const float u = coordinate(random), v = coordinate(random), width = blend(random);
        const double expected =
            plainStencilEdge(static_cast<double>(u), static_cast<double>(v), static_cast<double>(width));
        ASSERT_NEAR(nezaiva::stencilEdge(u, v, width), expected, 2e-5) << u << ", " << v << ", " << width;
    }
}

TEST(StencilKey, AsksForHueSaturationAndValueEachForItself)
{
    using OUtils::Color;
    const auto outside = [](const Color& image, const Color& key, float h, float s, float v) {
        return nezaiva::isOutsideKey(image, key, {h, s, v});
    };
    // Red and green: hues 0 and 120 degrees, a third of the circle.
    EXPECT_TRUE(outside({1, 0, 0}, {0, 1, 0}, 0.33f, 1, 1));
    EXPECT_FALSE(outside({1, 0, 0}, {0, 1, 0}, 0.34f, 0, 0));
    // Saturations 1 and 0.5.
    EXPECT_TRUE(outside({1, 0, 0}, {1, 0.5f, 0.5f}, 1, 0.49f, 1));
    EXPECT_FALSE(outside({1, 0, 0}, {1, 0.5f, 0.5f}, 0, 0.5f, 0));
    // Values 1 and 0.25.
    EXPECT_TRUE(outside({1, 1, 1}, {0.25f, 0.25f, 0.25f}, 1, 1, 0.74f));
    EXPECT_FALSE(outside({1, 1, 1}, {0.25f, 0.25f, 0.25f}, 0, 0, 0.75f));
}

TEST(StencilKey, ComparesHuesAsNumbersNotAroundTheCircle)
{
    // 354 and 6 degrees differ by 348 / 360.
    EXPECT_TRUE(nezaiva::isOutsideKey({1, 0, 0.1f}, {1, 0.1f, 0}, {0.9f, 1, 1}));
    EXPECT_FALSE(nezaiva::isOutsideKey({1, 0, 0.1f}, {1, 0.1f, 0}, {0.97f, 1, 1}));
}

TEST(StencilKey, HoldsWhatIsNoNumberForInside)
{
    EXPECT_FALSE(nezaiva::isOutsideKey({1, 0, 0}, {0, 1, 0}, {kNaN, kNaN, kNaN}));
    EXPECT_FALSE(nezaiva::isOutsideKey({kNaN, kNaN, kNaN}, {1, 1, 1}, {0, 0, 0}));
}

} // namespace
