// The placement on plain values, by hand.

#include "kernels/placement/place2d.h"

#include "support/plain_place2d.h"
#include "support/tolerances.h"

#include <cmath>
#include <limits>

namespace {

using namespace nezaiva;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

NoiseParams placeNoiseParams()
{
    NoiseParams params;
    params.octaves = 6;
    params.persistence = 0.606f;
    params.lacunarity = 1.5f;
    return params;
}

PlaceTransform place(float u, float v, const PlaceSample& sample, const PlaceFlags& flags = {})
{
    PlaceTransform input;
    input.map.offset = {u, v, 0.375f};
    return placed(input, sample, placeMatrices(sample), flags, placeNoiseParams());
}

// What a placement gives for a point.
struct Expected {
    float u, v;
    bool valid;
};
void expectPlace(const PlaceTransform& result, const Expected& expected, double tolerated = 1e-6)
{
    EXPECT_NEAR(result.map.offset.x, expected.u, tolerated);
    EXPECT_NEAR(result.map.offset.y, expected.v, tolerated);
    EXPECT_EQ(result.map.offset.z, 0.375f);
    EXPECT_EQ(result.valid, expected.valid);
}

PlaceFlags unwrapped()
{
    PlaceFlags flags;
    flags.wrap[0] = flags.wrap[1] = false;
    return flags;
}

TEST(Place2d, DefaultsMapAPointToItself)
{
    for (const auto& [u, v] : {std::pair(0.25f, 0.75f), {-3.5f, 2.25f}, {0.0f, 1.0f}}) {
        const PlaceTransform result = place(u, v, {});
        EXPECT_SAME_BITS(result.map.offset.x, u);
        EXPECT_SAME_BITS(result.map.offset.y, v);
        EXPECT_TRUE(result.valid);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(result.map.matrix.columns[i].x, i == 0 ? 1.0f : 0.0f);
            EXPECT_EQ(result.map.matrix.columns[i].y, i == 1 ? 1.0f : 0.0f);
            EXPECT_EQ(result.map.matrix.columns[i].z, i == 2 ? 1.0f : 0.0f);
        }
    }
}

TEST(Place2d, InvalidInputComesBackAsItIs)
{
    PlaceTransform input;
    input.map.offset = {0.25f, 0.5f, 0.75f};
    input.valid = false;
    PlaceSample sample;
    sample.repeat_u = 4.0f;
    const PlaceTransform result = placed(input, sample, placeMatrices(sample), {}, placeNoiseParams());
    EXPECT_FALSE(result.valid);
    EXPECT_SAME_BITS(result.map.offset.x, 0.25f);
    EXPECT_EQ(result.map.matrix.columns[0].x, 1.0f);
}

TEST(Place2d, NearlyNoCoverageGivesTheInput)
{
    for (float PlaceSample::*coverage : {&PlaceSample::coverage_u, &PlaceSample::coverage_v})
        for (const auto& [value, rejected] :
             {std::pair(1e-8f, true), {-1e-8f, true}, {0.0f, true}, {9.9e-8f, true}}) {
            PlaceSample sample;
            sample.repeat_u = 4.0f;
            sample.*coverage = value;
            const PlaceTransform result = place(0.5f, 0.25f, sample);
            EXPECT_EQ(!result.valid && result.map.matrix.columns[0].x == 1.0f, rejected) << value;
            EXPECT_SAME_BITS(result.map.offset.x, 0.5f);
        }
    PlaceSample smallest;
    smallest.coverage_u = 1e-7f; // the test is strict
    EXPECT_NE(place(0.5f, 0.25f, smallest).map.matrix.columns[0].x, 1.0f);
}

TEST(Place2d, HalfCoverageLeavesTheRestOfTheTileEmpty)
{
    PlaceSample sample;
    sample.coverage_u = 0.5f;
    expectPlace(place(0.3f, 0.25f, sample), {0.6f, 0.25f, true});
    expectPlace(place(0.6f, 0.25f, sample), {1.2f, 0.25f, false});
    expectPlace(place(-0.75f, 0.25f, sample), {0.5f, 0.25f, true});
    expectPlace(place(0.5f, 0.25f, sample), {1.0f, 0.25f, true});
    sample.repeat_u = 3.0f; // behind the test
    expectPlace(place(0.3f, 0.25f, sample), {1.8f, 0.25f, true});
}

TEST(Place2d, UnwrappedHalfCoverageIsEmptyOutsideItsImage)
{
    PlaceSample sample;
    sample.coverage_u = 0.5f;
    expectPlace(place(-0.75f, 0.25f, sample, unwrapped()), {-1.5f, 0.25f, false});
    expectPlace(place(0.25f, 0.25f, sample, unwrapped()), {0.5f, 0.25f, true});
}

TEST(Place2d, WideCoverageDeliversPointsOffTheImageToo)
{
    PlaceSample sample;
    sample.coverage_u = 2.0f;
    expectPlace(place(3.0f, 0.25f, sample, unwrapped()), {1.5f, 0.25f, false});
    expectPlace(place(3.0f, 0.25f, sample), {1.5f, 0.25f, true});
    expectPlace(place(2.0f, 0.25f, sample, unwrapped()), {1.0f, 0.25f, true});
    expectPlace(place(-0.5f, 0.25f, sample, unwrapped()), {-0.25f, 0.25f, false});
    sample.repeat_u = 4.0f; // the image ends at the repeat
    expectPlace(place(2.0f, 0.25f, sample, unwrapped()), {4.0f, 0.25f, true});
    expectPlace(place(2.5f, 0.25f, sample, unwrapped()), {5.0f, 0.25f, false});
}

TEST(Place2d, ClampedUnwrappedPointsOutsideComeBackAsTheyAre)
{
    PlaceFlags flags = unwrapped();
    flags.clamp[0] = true;
    PlaceSample sample;
    sample.offset_u = 0.25f;
    sample.rotate_uv = 1.0f;
    for (const float u : {1.5f, -0.5f}) {
        const PlaceTransform result = place(u, 0.25f, sample, flags);
        EXPECT_SAME_BITS(result.map.offset.x, u);
        EXPECT_EQ(result.map.matrix.columns[0].x, 1.0f);
        EXPECT_FALSE(result.valid);
    }
    flags.clamp[0] = false;
    flags.clamp[1] = true;
    EXPECT_SAME_BITS(place(0.5f, 1.5f, sample, flags).map.offset.x, 0.5f);
}

TEST(Place2d, TheEarlyRejectLooksBeforeTheFramesTranslation)
{
    PlaceFlags flags = unwrapped();
    flags.clamp[0] = true;
    PlaceSample sample;
    sample.translate_frame_u = 0.75f;
    EXPECT_SAME_BITS(place(1.5f, 0.25f, sample, flags).map.offset.x, 1.5f); // 0.75 would be inside
    expectPlace(place(0.5f, 0.25f, sample, flags), {1e-6f, 0.25f, true});   // -0.25 is clamped
    sample = {};
    sample.rotate_frame = 3.14159265f; // the rotation comes before it: u = -0.25
    EXPECT_SAME_BITS(place(1.25f, 0.25f, sample, flags).map.offset.x, 1.25f);
}

TEST(Place2d, ClampedWrappedPointsEndAtTheEdge)
{
    PlaceFlags flags;
    flags.clamp[0] = true;
    PlaceSample sample;
    EXPECT_FLOAT_EQ(place(1.5f, 0.25f, sample, flags).map.offset.x, 1.0f - 1e-6f);
    EXPECT_NEAR(place(-1.5f, 0.25f, sample, flags).map.offset.x, 1e-6, 1e-7); // the turn about 0.5 rounds
    EXPECT_TRUE(place(1.5f, 0.25f, sample, flags).valid);
    sample.repeat_u = 3.0f;
    EXPECT_FLOAT_EQ(place(1.5f, 0.25f, sample, flags).map.offset.x, 3.0f - 1e-6f);
    sample.coverage_u = 0.5f;
    EXPECT_FLOAT_EQ(place(1.5f, 0.25f, sample, flags).map.offset.x, 0.999999f * 3.0f);
    EXPECT_TRUE(place(1.5f, 0.25f, sample, flags).valid);
}

TEST(Place2d, MirroredPointsStayInTheirTile)
{
    PlaceFlags flags;
    flags.mirror[0] = true;
    expectPlace(place(1.25f, 0.25f, {}, flags), {1.75f, 0.25f, true});
    expectPlace(place(-0.25f, 1.25f, {}, flags), {-0.75f, 1.25f, true});
    expectPlace(place(0.25f, 0.25f, {}, flags), {0.25f, 0.25f, true});
    expectPlace(place(2.25f, 0.25f, {}, flags), {2.25f, 0.25f, true});
    expectPlace(place(1.0f, 0.25f, {}, flags), {1.0f, 0.25f, true}); // not above 1
    flags.mirror[1] = true;
    expectPlace(place(0.25f, 3.125f, {}, flags), {0.25f, 3.875f, true});
    // Kept as is: an even number below 0 counts as odd, since its remainder is 0 plus 2.
    expectPlace(place(-2.0f, 0.25f, {}, flags), {-1.0f, 0.25f, true});
}

TEST(Place2d, StaggerMovesOddRowsBeforeTheMirrorLooks)
{
    PlaceFlags flags;
    flags.stagger = true;
    expectPlace(place(0.25f, 1.5f, {}, flags), {0.75f, 1.5f, true});
    expectPlace(place(0.25f, 0.5f, {}, flags), {0.25f, 0.5f, true});
    expectPlace(place(0.25f, -0.5f, {}, flags), {0.75f, -0.5f, true});
    flags.mirror[0] = true;
    expectPlace(place(0.75f, 1.5f, {}, flags), {1.75f, 1.5f, true}); // 1.25 lies in an odd tile
    expectPlace(place(0.75f, 0.5f, {}, flags), {0.75f, 0.5f, true});
}

TEST(Place2d, OffsetMovesIntoTheMirroredTile)
{
    PlaceFlags flags;
    flags.mirror[0] = true;
    PlaceSample sample;
    sample.offset_u = 1.0f;
    expectPlace(place(0.25f, 0.25f, sample, flags), {1.75f, 0.25f, true});
}

TEST(Place2d, NegativeRepeatAndCoverageReflect)
{
    PlaceSample sample;
    sample.repeat_u = -1.0f;
    expectPlace(place(0.25f, 0.25f, sample), {0.75f, 0.25f, true});
    sample = {};
    sample.coverage_v = -2.0f;
    expectPlace(place(0.25f, 0.5f, sample), {0.25f, 0.75f, true});
    sample.repeat_v = -1.0f; // both together reflect once
    expectPlace(place(0.25f, 0.5f, sample), {0.25f, 0.75f, true});
}

TEST(Place2d, ACoverageThatIsNoNumberLeavesThePoint)
{
    PlaceSample sample;
    sample.coverage_u = kNaN;
    sample.offset_u = 0.5f;
    expectPlace(place(5.25f, 0.25f, sample, unwrapped()), {5.75f, 0.25f, true});
    EXPECT_EQ(place(5.25f, 0.25f, sample).map.matrix.columns[0].x, 0.0f); // the guarded quotient
}

TEST(Place2d, RotatesAboutTheCentre)
{
    constexpr float kQuarter = 1.57079633f;
    PlaceSample sample;
    sample.rotate_frame = kQuarter; // (a, b) to (-b, a)
    expectPlace(place(0.75f, 0.375f, sample), {0.625f, 0.75f, true});
    sample.repeat_u = 2.0f; // behind the frame
    expectPlace(place(0.75f, 0.375f, sample), {1.25f, 0.75f, true});
    sample.rotate_frame = 0.0f;
    sample.rotate_uv = kQuarter; // behind the repeat: (1.5, 0.375) to (0.5 + 0.125, 0.5 + 1)
    expectPlace(place(0.75f, 0.375f, sample), {0.625f, 1.5f, true});
}

TEST(Place2d, NegativeNoiseIsNone)
{
    PlaceSample sample;
    sample.noise_u = -0.5f;
    sample.noise_v = 1e-8f; // not above the limit
    expectPlace(place(0.3f, 0.7f, sample), {0.3f, 0.7f, true});
    sample.noise_u = 0.5f;
    const float moved = place(0.3f, 0.7f, sample).map.offset.x - 0.3f;
    EXPECT_GT(std::fabs(moved), 1e-3f);
    EXPECT_NEAR(moved, 1.5 * plain::placeNoise(0.3, 0.7, 0.0), 1e-5);
}

TEST(Place2d, BothNoisesReadTheUnmovedPointAtDepthsOfTheirOwn)
{
    PlaceSample sample;
    sample.noise_u = 0.25f;
    sample.noise_v = 0.5f;
    const Vector result = place(0.3f, 0.7f, sample).map.offset;
    EXPECT_NEAR(result.x, 0.3 + 0.75 * plain::placeNoise(0.3, 0.7, 0.0), 1e-5);
    EXPECT_NEAR(result.y, 0.7 + 1.5 * plain::placeNoise(0.3, 0.7, 1.0), 1e-5);
    EXPECT_GT(std::fabs(plain::placeNoise(0.3, 0.7, 0.0) - plain::placeNoise(0.3, 0.7, 1.0)), 1e-3);
}

TEST(Place2d, ComposesTheColumnsOfTheInput)
{
    PlaceTransform input;
    input.map.matrix = {{{1.0f, 2.0f, 3.0f}, {0.5f, 0.25f, 0.125f}, {4.0f, 8.0f, 16.0f}}};
    PlaceSample sample;
    sample.repeat_u = 4.0f;
    sample.coverage_v = 2.0f;
    PlaceFlags flags;
    flags.mirror[0] = flags.mirror[1] = true; // does not show in the derivatives
    input.map.offset = {0.375f, 3.0f, 0.0f};
    const PlaceTransform result = placed(input, sample, placeMatrices(sample), flags, placeNoiseParams());
    const Vector expected[] = {{4.0f, 1.0f, 3.0f}, {2.0f, 0.125f, 0.125f}, {16.0f, 4.0f, 16.0f}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(result.map.matrix.columns[i].x, expected[i].x);
        EXPECT_EQ(result.map.matrix.columns[i].y, expected[i].y);
        EXPECT_EQ(result.map.matrix.columns[i].z, expected[i].z);
    }
    EXPECT_NEAR(result.map.offset.x, 1.5f, 1e-6); // 1.5 lies in an odd tile, and in its middle
    EXPECT_NEAR(result.map.offset.y, 1.5f, 1e-6);
}

TEST(Place2d, QuotientsAreNeverInfinite)
{
    EXPECT_EQ(guardedQuotient(1.0f, 4.0f), 0.25f);
    EXPECT_EQ(guardedQuotient(-1.0f, 4.0f), -0.25f);
    EXPECT_EQ(guardedQuotient(1.0f, 0.0f), 0.0f);
    EXPECT_EQ(guardedQuotient(0.0f, 0.0f), 0.0f);
    EXPECT_EQ(guardedQuotient(1.0f, 1e-18f), 0.0f);
    EXPECT_GT(guardedQuotient(1.0f, 1.1e-18f), 0.0f);
    EXPECT_EQ(guardedQuotient(kNaN, 1.0f), 0.0f);
    EXPECT_EQ(guardedQuotient(1.0f, kNaN), 0.0f);
    EXPECT_EQ(guardedQuotient(1.0f, kInfinity), 0.0f);
}

bool isNumber(const OUtils::Vector& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y);
}

TEST(Place2d, AnyNumberHasAnAnswer)
{
    const float numbers[] = {0.0f, -1.0f, 1e30f, -1e30f, kInfinity, -kInfinity, kNaN};
    PlaceFlags flags;
    flags.mirror[0] = flags.mirror[1] = flags.stagger = true;
    for (const float a : numbers)
        for (const float b : numbers)
            for (float PlaceSample::*field : kPlaceFields) {
                PlaceSample sample;
                sample.noise_u = 0.5f;
                sample.*field = b;
                const PlaceTransform result = place(a, b, sample, flags);
                EXPECT_EQ(result.map.offset.z, 0.375f);
                // Without coverage the point comes back. Else a coordinate that is no number spoils both,
                // since the rotations mix them, and small ones stay numbers.
                if (sample.coverage_u == 0.0f || sample.coverage_v == 0.0f) {
                    EXPECT_SAME_BITS(result.map.offset.x, a);
                    EXPECT_SAME_BITS(result.map.offset.y, b);
                    EXPECT_FALSE(result.valid);
                } else if (!std::isfinite(a) || !std::isfinite(b)) {
                    EXPECT_FALSE(isNumber(result.map.offset)) << a << ", " << b;
                } else if (std::fabs(a) <= 1.0f && std::fabs(b) <= 1.0f) {
                    EXPECT_TRUE(isNumber(result.map.offset)) << a << ", " << b;
                }
            }
}

} // namespace
