// The placement against the plain chain in double precision over random parameters, and what the GPU is
// told of it.

#include "kernels/placement/place2d_gpu.h"
#include "support/plain_place2d.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <random>

namespace {

using namespace nezaiva;

PlaceTransform place(float u, float v, const PlaceSample& sample, const PlaceFlags& flags)
{
    NoiseParams noise;
    noise.octaves = 6;
    noise.persistence = 0.606f;
    noise.lacunarity = 1.5f;
    PlaceTransform input;
    input.map.offset = {u, v, 0.375f};
    return placed(input, sample, placeMatrices(sample), flags, noise);
}

struct RandomPlace {
    explicit RandomPlace(std::mt19937& random)
    {
        const auto number = [&random](float from, float to) {
            return std::uniform_real_distribution<float>(from, to)(random);
        };
        const auto flag = [&random] { return (random() & 1) != 0; };
        for (float PlaceSample::*field : kPlaceFields)
            sample.*field = number(-2.0f, 2.0f);
        if (flag()) sample.coverage_u = sample.coverage_v = 1.0f;
        if (flag()) sample.noise_u = sample.noise_v = 0.0f;
        for (int axis = 0; axis < 2; ++axis) {
            flags.wrap[axis] = flag();
            flags.clamp[axis] = flag() && flag();
            flags.mirror[axis] = flag();
        }
        flags.stagger = flag();
        u = number(-3.0f, 3.0f);
        v = number(-3.0f, 3.0f);
    }
    plain::Place2d twin() const
    {
        const auto d = [](float value) { return static_cast<double>(value); };
        const PlaceSample& s = sample;
        const plain::PlaceNumbers numbers{d(s.coverage_u),        d(s.coverage_v),   d(s.translate_frame_u),
                                          d(s.translate_frame_v), d(s.rotate_frame), d(s.repeat_u),
                                          d(s.repeat_v),          d(s.offset_u),     d(s.offset_v),
                                          d(s.rotate_uv),         d(s.noise_u),      d(s.noise_v)};
        linear = plain::placeLinear(numbers);
        return {d(u),
                d(v),
                numbers,
                {flags.wrap[0], flags.wrap[1], flags.clamp[0], flags.clamp[1], flags.mirror[0],
                 flags.mirror[1], flags.stagger}};
    }
    // The sums of the chain are stretched by the repeats over the coverages.
    double tolerated() const
    {
        const double stretch = std::fabs(static_cast<double>(sample.repeat_u / sample.coverage_u)) +
                               std::fabs(static_cast<double>(sample.repeat_v / sample.coverage_v));
        return tolerance::kSum * (4.0 + stretch);
    }
    PlaceSample sample;
    PlaceFlags flags;
    float u = 0.0f, v = 0.0f;
    mutable plain::Matrix3 linear;
};

TEST(Place2d, FollowsThePlainChainOverRandomParameters)
{
    std::mt19937 random(20);
    int compared = 0, valid = 0, rejected = 0;
    for (int run = 0; run < 20000; ++run) {
        const RandomPlace drawn(random);
        const plain::Place2d twin = drawn.twin();
        if (twin.margin < 2e-3 || std::fabs(drawn.sample.coverage_u) < 0.05f ||
            std::fabs(drawn.sample.coverage_v) < 0.05f)
            continue;
        const PlaceTransform result = place(drawn.u, drawn.v, drawn.sample, drawn.flags);
        ++compared;
        valid += twin.valid;
        rejected += twin.rejected;
        ASSERT_EQ(result.valid, twin.valid) << run;
        if (twin.rejected) {
            ASSERT_EQ(result.map.offset.x, drawn.u) << run;
            ASSERT_EQ(result.map.offset.y, drawn.v) << run;
            continue;
        }
        ASSERT_NEAR(result.map.offset.x, twin.u, drawn.tolerated()) << run;
        ASSERT_NEAR(result.map.offset.y, twin.v, drawn.tolerated()) << run;
        for (std::size_t column = 0; column < 3; ++column) {
            const Vector& c = result.map.matrix.columns[column];
            ASSERT_NEAR(c.x, drawn.linear[0][column], drawn.tolerated()) << run;
            ASSERT_NEAR(c.y, drawn.linear[1][column], drawn.tolerated()) << run;
            ASSERT_NEAR(c.z, drawn.linear[2][column], tolerance::kSum) << run;
        }
    }
    // The draws reach all three ends.
    EXPECT_GT(compared, 15000);
    EXPECT_GT(valid, 1000);
    EXPECT_GT(compared - valid, 1000);
    EXPECT_GT(rejected, 300);
}

TEST(Place2dGpu, BlockHoldsTheNumbersInItsOwnOrder)
{
    const PlaceSample sample{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 7.0f, 8.0f, 9.0f, 10.0f, 11.0f, 12.0f};
    const UVParams block = uvParams(sample, {{true, false}, {true, false}, {false, true}, true});
    unsigned char bytes[80];
    std::memcpy(bytes, &block, sizeof bytes);
    const auto wordAt = [&bytes](int offset) {
        return static_cast<std::uint32_t>(bytes[offset] | bytes[offset + 1] << 8 | bytes[offset + 2] << 16) |
               static_cast<std::uint32_t>(bytes[offset + 3]) << 24;
    };
    // coverage, noise, offset, repeat, rotate_frame, rotate_uv, translate_frame.
    const float expected[] = {1.0f, 2.0f, 11.0f, 12.0f, 8.0f, 9.0f, 6.0f, 7.0f, 5.0f, 10.0f, 3.0f, 4.0f};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(std::bit_cast<float>(wordAt(4 * i)), expected[i]) << i;
    EXPECT_EQ(wordAt(48), 1u | 8u | 16u); // wrap_u, mirror_v, clamp_u
    EXPECT_EQ(wordAt(52), 1u);
    for (int i = 56; i < 80; ++i)
        EXPECT_EQ(bytes[i], 0) << i;
    EXPECT_EQ(uvParams({}, {{false, true}, {false, true}, {true, false}, false}).flags, 2u | 4u | 32u);
}

TEST(Place2dGpu, TransformAppliesTheFrameFirst)
{
    PlaceSample sample;
    sample.rotate_frame = 1.57079633f;
    sample.translate_frame_u = 0.25f;
    sample.translate_frame_v = 0.125f;
    sample.repeat_u = 2.0f;
    sample.repeat_v = 4.0f;
    sample.offset_u = 0.5f;
    sample.offset_v = 0.25f;
    sample.coverage_u = 8.0f; // not in it
    // (1, 0): rotated to (1, 1), translated to (0.75, 0.875), repeated to (1.5, 3.5), moved to (2, 3.75).
    const Transform place = gpuPlacement(sample);
    const Vector mapped = place.matrix * Vector{1.0f, 0.0f, 0.0f} + place.offset;
    EXPECT_NEAR(mapped.x, 2.0f, 1e-6);
    EXPECT_NEAR(mapped.y, 3.75f, 1e-6);
    sample.rotate_uv = 1.57079633f; // about the centre: (1.5, 3.25) to (-3.25, 1.5)
    const Transform turned = gpuPlacement(sample);
    const Vector end = turned.matrix * Vector{1.0f, 0.0f, 0.0f} + turned.offset;
    EXPECT_NEAR(end.x, 0.5f - 3.25f, 1e-5);
    EXPECT_NEAR(end.y, 2.0f, 1e-5);
}

} // namespace
