#include "host/image/mip_pyramid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace ombrix;
using OUtils::AColor;

namespace {

// Grey texels of the given values, row 0 at the top; alpha is half the value.
MipPyramid pyramidOf(int width, int height, const std::vector<float>& values)
{
    Image image;
    image.width = width;
    image.height = height;
    for (const float value : values)
        image.pixels.insert(image.pixels.end(), {value, value, value, value * 0.5f});
    return MipPyramid(image);
}

// 4 by 2 texels:   1  2  3  4    (v above 0.5)
//                  5  6  7  8    (v below 0.5)
const MipPyramid& sample()
{
    static const MipPyramid pyramid = pyramidOf(4, 2, {1, 2, 3, 4, 5, 6, 7, 8});
    return pyramid;
}

float nearestAt(float u, float v, Wrap wrap)
{
    return sample().nearest(u, v, wrap).r;
}
float bilinearAt(float u, float v, Wrap wrap)
{
    return sample().bilinear(u, v, wrap).r;
}

} // namespace

TEST(MipPyramid, NearestTakesTheTexelThatHoldsThePoint)
{
    EXPECT_EQ(nearestAt(0.125f, 0.75f, Wrap::Repeat), 1.0f);
    EXPECT_EQ(nearestAt(0.24f, 0.51f, Wrap::Repeat), 1.0f);
    EXPECT_EQ(nearestAt(0.26f, 0.49f, Wrap::Repeat), 6.0f);
    EXPECT_EQ(nearestAt(0.9f, 0.1f, Wrap::Repeat), 8.0f);
}

TEST(MipPyramid, NearestWrapsInEveryWay)
{
    // u = 1.3 repeats to 0.3, mirrors to 0.7, clamps to 1.
    EXPECT_EQ(nearestAt(1.3f, 0.75f, Wrap::Repeat), 2.0f);
    EXPECT_EQ(nearestAt(1.3f, 0.75f, Wrap::Mirror), 3.0f);
    EXPECT_EQ(nearestAt(1.3f, 0.75f, Wrap::Clamp), 4.0f);
    EXPECT_EQ(nearestAt(1.3f, 0.75f, Wrap::Black), 0.0f);
    // u = -0.3 repeats to 0.7, mirrors to 0.3, clamps to 0.
    EXPECT_EQ(nearestAt(-0.3f, 0.25f, Wrap::Repeat), 7.0f);
    EXPECT_EQ(nearestAt(-0.3f, 0.25f, Wrap::Mirror), 6.0f);
    EXPECT_EQ(nearestAt(-0.3f, 0.25f, Wrap::Clamp), 5.0f);
    EXPECT_EQ(nearestAt(-0.3f, 0.25f, Wrap::Black), 0.0f);
    // v = 1.2 repeats to 0.2, the lower row; v = -1.2 mirrors to 1.2 and so to 0.8, the upper row.
    EXPECT_EQ(nearestAt(0.1f, 1.2f, Wrap::Repeat), 5.0f);
    EXPECT_EQ(nearestAt(0.1f, -1.2f, Wrap::Mirror), 1.0f);
}

TEST(MipPyramid, TheEdgesBelongToThePicture)
{
    EXPECT_EQ(nearestAt(1.0f, 1.0f, Wrap::Black), 4.0f);
    EXPECT_EQ(nearestAt(0.0f, 0.0f, Wrap::Black), 5.0f);
    EXPECT_EQ(nearestAt(1.0f, 0.0f, Wrap::Clamp), 8.0f);
    EXPECT_EQ(nearestAt(1.0f, 0.25f, Wrap::Repeat), 5.0f); // as u = 0
}

TEST(MipPyramid, BilinearGivesTheTexelAtItsCentreAndBlendsBetween)
{
    EXPECT_FLOAT_EQ(bilinearAt(0.375f, 0.75f, Wrap::Repeat), 2.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.5f, 0.75f, Wrap::Repeat), 2.5f);
    EXPECT_FLOAT_EQ(bilinearAt(0.4375f, 0.75f, Wrap::Repeat), 2.25f);
    // Half-way between the rows: (2 + 6) / 2; and a quarter of a texel to the right: 4.25.
    EXPECT_FLOAT_EQ(bilinearAt(0.375f, 0.5f, Wrap::Repeat), 4.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.4375f, 0.5f, Wrap::Repeat), 4.25f);
    EXPECT_FLOAT_EQ(sample().bilinear(0.4375f, 0.5f, Wrap::Repeat).a, 2.125f);
}

TEST(MipPyramid, BilinearBlendsAcrossTheEdgesAsTheWrapSays)
{
    // At u = 0, upper row: the left neighbour is texel 4 (repeat), texel 1 (mirror, clamp), nothing (black).
    EXPECT_FLOAT_EQ(bilinearAt(0.0f, 0.75f, Wrap::Repeat), 2.5f);
    EXPECT_FLOAT_EQ(bilinearAt(0.0f, 0.75f, Wrap::Mirror), 1.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.0f, 0.75f, Wrap::Clamp), 1.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.0f, 0.75f, Wrap::Black), 0.5f);
    // At v = 1 in the centre of the first column: above is texel 5 (repeat), texel 1, nothing.
    EXPECT_FLOAT_EQ(bilinearAt(0.125f, 1.0f, Wrap::Repeat), 3.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.125f, 1.0f, Wrap::Mirror), 1.0f);
    EXPECT_FLOAT_EQ(bilinearAt(0.125f, 1.0f, Wrap::Black), 0.5f);
    EXPECT_EQ(bilinearAt(1.3f, 0.75f, Wrap::Black), 0.0f);
    EXPECT_EQ(bilinearAt(1e30f, 0.75f, Wrap::Black), 0.0f);
    // u = 1.375 mirrors to 0.625, the centre of texel 3; u = 2.375 to 0.375, that of texel 2.
    EXPECT_FLOAT_EQ(bilinearAt(1.375f, 0.75f, Wrap::Mirror), 3.0f);
    EXPECT_FLOAT_EQ(bilinearAt(2.375f, 0.75f, Wrap::Mirror), 2.0f);
}

TEST(MipPyramid, LevelsHoldMeans)
{
    ASSERT_EQ(sample().levelCount(), 3);              // 4 by 2, 2 by 1, 1 by 1
    EXPECT_FLOAT_EQ(sample().texel(1, 0, 0).r, 3.5f); // (1 + 2 + 5 + 6) / 4
    EXPECT_FLOAT_EQ(sample().texel(1, 1, 0).r, 5.5f);
    EXPECT_FLOAT_EQ(sample().texel(2, 0, 0).r, 4.5f);
    EXPECT_FLOAT_EQ(sample().texel(2, 0, 0).a, 2.25f);
}

TEST(MipPyramid, OddSizesLoseNothing)
{
    // 5 texels become 2: the third is shared half and half. (1 + 2 + 3 / 2) / 2.5 = 1.8 and 4.2.
    const MipPyramid five = pyramidOf(5, 1, {1, 2, 3, 4, 5});
    ASSERT_EQ(five.levelCount(), 3);
    EXPECT_FLOAT_EQ(five.texel(1, 0, 0).r, 1.8f);
    EXPECT_FLOAT_EQ(five.texel(1, 1, 0).r, 4.2f);
    EXPECT_FLOAT_EQ(five.texel(2, 0, 0).r, 3.0f);
    const MipPyramid tall = pyramidOf(1, 3, {1, 2, 6});
    EXPECT_FLOAT_EQ(tall.texel(1, 0, 0).r, 3.0f);
}

TEST(MipPyramid, TrilinearChoosesLevelsByTheFootprint)
{
    const auto at = [](float footprint) {
        return sample().trilinear(0.375f, 0.75f, footprint, Wrap::Clamp).r;
    };
    EXPECT_FLOAT_EQ(at(0.0f), 2.0f);
    EXPECT_FLOAT_EQ(at(1.0f), 2.0f);
    EXPECT_FLOAT_EQ(at(std::numeric_limits<float>::quiet_NaN()), 2.0f);
    // Level 1 at u = 0.375: a quarter of the way from 3.5 to 5.5.
    EXPECT_FLOAT_EQ(at(2.0f), 4.0f);
    EXPECT_FLOAT_EQ(at(std::sqrt(2.0f)), 3.0f);
    EXPECT_FLOAT_EQ(at(4.0f), 4.5f);
    EXPECT_FLOAT_EQ(at(1e30f), 4.5f);
    EXPECT_FLOAT_EQ(at(std::numeric_limits<float>::infinity()), 4.5f);
}

TEST(MipPyramid, OnePixelIsEverywhere)
{
    const MipPyramid one = pyramidOf(1, 1, {3});
    for (const Wrap wrap : {Wrap::Repeat, Wrap::Mirror, Wrap::Clamp})
        for (const float u : {-7.3f, 0.0f, 0.5f, 1.0f, 12345.6f}) {
            EXPECT_EQ(one.nearest(u, u, wrap).r, 3.0f);
            EXPECT_FLOAT_EQ(one.trilinear(u, u, 8.0f, wrap).r, 3.0f);
        }
}

TEST(MipPyramid, FarCoordinatesReadNothingOutside)
{
    for (const Wrap wrap : {Wrap::Repeat, Wrap::Mirror, Wrap::Clamp, Wrap::Black})
        for (const float u : {-1e38f, -1e9f, -1e-30f, 16777217.0f, 3e38f}) {
            const float nearest = sample().nearest(u, u, wrap).r, blended = sample().bilinear(u, u, wrap).r;
            EXPECT_TRUE(nearest >= 0.0f && nearest <= 8.0f) << u;
            EXPECT_TRUE(blended >= 0.0f && blended <= 8.0f) << u;
        }
}

TEST(MipPyramid, BoundsAreThoseOfEachChannel)
{
    AColor lower, upper;
    sample().bounds(&lower, &upper);
    EXPECT_EQ(lower.g, 1.0f);
    EXPECT_EQ(lower.a, 0.5f);
    EXPECT_EQ(upper.g, 8.0f);
    EXPECT_EQ(upper.a, 4.0f);
}
