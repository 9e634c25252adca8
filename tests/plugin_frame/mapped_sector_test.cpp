// Crop, placement with tiles and jitter, and UV noise of mapped textures.

#include "kernels/noises/perlin_tables.h"
#include "plugin_frame/probe_textures.h"
#include "support/plain_noise.h"

#include <cmath>
#include <thread>

namespace {

using namespace support;
using OUtils::UVWSample;

// A mapped texture at the coordinates of a generator.
class PlacedTexture : public LivingMapped {
public:
    explicit PlacedTexture(int placementType = 0, int threads = 1) : LivingMapped(0, threads)
    {
        writeReference(texture, "uvwgen", &generator);
        set("placement_type", placementType);
    }
    bool at(float u, float v)
    {
        generator.sample.uvw = {u, v, 0.375f, 0.0f};
        sample = {};
        return texture.buildSample(context, true, sample);
    }
    TestGenerator generator;
    UVWSample sample;
};

class CroppedTexture : public PlacedTexture {
public:
    CroppedTexture() : PlacedTexture(1) {}
};

// Half the texture's size, without tiles and jitter.
class HalfPlaced : public PlacedTexture {
public:
    explicit HalfPlaced(int threads = 1) : PlacedTexture(2, threads) { set("w", 0.5f).set("h", 0.5f); }
};

TEST(MappedTextureCrop, MapsTheUnitSquareIntoTheSector)
{
    CroppedTexture cropped;
    cropped.set("w", 0.5f).set("h", 0.5f);
    ASSERT_TRUE(cropped.at(0.0f, 0.0f));
    EXPECT_SAME_UVW(cropped.sample.uvw, 0.0f, 0.5f, 0.375f);
    ASSERT_TRUE(cropped.at(1.0f, 1.0f));
    EXPECT_SAME_UVW(cropped.sample.uvw, 0.5f, 1.0f, 0.375f);
    // (U + u / w) w and (V + ((1 - v) - h) / h) h.
    cropped.set("u", 0.25f).set("v", 0.125f);
    ASSERT_TRUE(cropped.at(0.5f, 0.25f));
    EXPECT_SAME_UVW(cropped.sample.uvw, 0.5f, 0.5f, 0.375f);
    ASSERT_TRUE(cropped.at(-3.0f, 7.0f));
    EXPECT_SAME_UVW(cropped.sample.uvw, -1.25f, 3.875f, 0.375f);
}

TEST(MappedTextureCrop, ScalesTheDerivatives)
{
    CroppedTexture cropped;
    cropped.set("w", 0.5f).set("h", 0.25f);
    cropped.generator.sample.du = {1.0f, 2.0f, 3.0f, 4.0f};
    cropped.generator.sample.dv = {5.0f, 6.0f, 7.0f, 8.0f};
    ASSERT_TRUE(cropped.at(0.0f, 0.0f));
    EXPECT_SAME_UVW(cropped.sample.du, 0.5f, 0.5f, 3.0f);
    EXPECT_SAME_UVW(cropped.sample.dv, 2.5f, 1.5f, 7.0f);
}

TEST(MappedTextureCrop, AnEmptySectorGivesNoNumber)
{
    CroppedTexture cropped;
    cropped.set("w", 0.0f).set("h", 0.0f);
    ASSERT_TRUE(cropped.at(0.5f, 0.5f));
    EXPECT_TRUE(std::isnan(cropped.sample.uvw.x)); // (U + 0 / 0) 0
    EXPECT_TRUE(std::isnan(cropped.sample.uvw.y)); // (V + 1 / 0) 0
}

TEST(MappedTexturePlacement, UnknownTypesShowTheWholeTexture)
{
    for (const int type : {-1, 0, 3}) {
        PlacedTexture whole(type);
        whole.set("w", 0.5f).set("h", 0.5f).set("jitter", 1.0f).set("tile_u", true);
        ASSERT_TRUE(whole.at(1.75f, -0.75f));
        EXPECT_SAME_UVW(whole.sample.uvw, 1.75f, -0.75f, 0.375f);
    }
}

TEST(MappedTexturePlacement, ShowsTheTextureInItsSectorAlone)
{
    HalfPlaced placed;
    ASSERT_TRUE(placed.at(0.25f, 0.75f));
    EXPECT_SAME_UVW(placed.sample.uvw, 0.5f, 0.5f, 0.375f);
    EXPECT_FALSE(placed.at(0.75f, 0.75f));
    EXPECT_SAME_COLOR(placed.color(), {0.5f, 0.5f, 0.5f, 1.0f});
    // The edges belong to the sector.
    for (const auto& [u, v, valid] : {std::tuple(0.0f, 0.5f, true),
                                      {0.5f, 1.0f, true},
                                      {std::nextafter(0.0f, -1.0f), 0.75f, false},
                                      {std::nextafter(0.5f, 1.0f), 0.75f, false},
                                      {0.25f, std::nextafter(0.5f, 0.0f), false},
                                      {0.25f, std::nextafter(1.0f, 2.0f), false},
                                      {kNaN, kNaN, true}})
        EXPECT_EQ(placed.at(u, v), valid) << u << ' ' << v;
}

TEST(MappedTexturePlacement, MovesTheSectorDownwardsByV)
{
    HalfPlaced placed;
    placed.set("u", 0.25f).set("v", 0.125f);
    placed.generator.sample.du = {1.0f, 2.0f, 3.0f, 0.0f};
    ASSERT_TRUE(placed.at(0.5f, 0.5f));
    // (0.5 - 0.25) / 0.5 and (0.5 - (0.5 - 0.125)) / 0.5.
    EXPECT_SAME_UVW(placed.sample.uvw, 0.5f, 0.25f, 0.375f);
    EXPECT_SAME_UVW(placed.sample.du, 2.0f, 4.0f, 3.0f);
    EXPECT_TRUE(placed.at(0.75f, 0.875f));
    EXPECT_FALSE(placed.at(0.5f, 0.9375f));
    EXPECT_FALSE(placed.at(0.125f, 0.5f));
}

TEST(MappedTexturePlacement, TilesEachAxisByItself)
{
    HalfPlaced placed;
    EXPECT_FALSE(placed.at(3.25f, 0.75f));
    placed.set("tile_u", true);
    ASSERT_TRUE(placed.at(3.25f, 0.75f));
    EXPECT_SAME_UVW(placed.sample.uvw, 0.5f, 0.5f, 0.375f);
    EXPECT_FALSE(placed.at(3.25f, -4.25f));
    placed.set("tile_u", false).set("tile_v", true);
    ASSERT_TRUE(placed.at(0.25f, -4.25f));
    EXPECT_SAME_UVW(placed.sample.uvw, 0.5f, 0.5f, 0.375f);
    EXPECT_FALSE(placed.at(3.25f, -4.25f));
}

TEST(MappedTexturePlacement, HasAnAnswerForCoordinatesBeyondAllTiles)
{
    HalfPlaced placed;
    placed.set("tile_u", true).set("tile_v", true).set("jitter", 1.0f);
    for (const float far : {1e30f, -1e30f, INFINITY, -INFINITY})
        EXPECT_FALSE(placed.at(far, far)) << far;
}

TEST(MappedTextureJitter, MovesTheSectorByItsTile)
{
    // Tile (3, -2): u = 0.316867232 * 0.5 * 0.5, v = 0.968865633 * 0.5 * 0.5.
    constexpr double kU = 0.316867232 * 0.25, kV = 0.968865633 * 0.25;
    HalfPlaced placed;
    placed.set("jitter", 0.5f).set("tile_u", true).set("tile_v", true).set("u", 0.5f);
    ASSERT_TRUE(placed.at(3.25f, -1.5f));
    EXPECT_SAME_UVW(placed.sample.uvw, (0.25 - kU) / 0.5, (0.5 - (0.5 - kV)) / 0.5, 0.375f);
}

TEST(MappedTextureJitter, StaysForLaterSamplesUntilTheParameterIsWritten)
{
    HalfPlaced placed;
    placed.set("jitter", 1.0f).set("tile_u", true).set("tile_v", true).set("u", 0.5f);
    placed.at(3.25f, -1.5f);
    // A jitter of exactly nothing does not write, so the last one still holds.
    placed.set("h", 1.0f).set("placement_type", 1);
    ASSERT_TRUE(placed.at(0.0f, 0.0f));
    EXPECT_SAME_UVW(placed.sample.uvw, 0.5f, 0.0f, 0.375f); // the new frame brought u = 0.5 back
    placed.set("placement_type", 2).set("h", 0.5f);
    placed.at(3.25f, -1.5f);
    write(placed.texture, "jitter", 0.0f);
    ASSERT_TRUE(placed.at(3.25f, -1.5f)); // not a new frame yet
    constexpr double kU = 0.316867232 * 0.5;
    EXPECT_SAME_UVW(placed.sample.uvw, (0.25 - kU) / 0.5, placed.sample.uvw.y, 0.375f);
    placed.nextFrame();
    EXPECT_FALSE(placed.at(3.25f, -1.5f)); // left of u = 0.5
}

TEST(MappedTextureJitter, KeepsAFieldWhereItsNumberIsNothing)
{
    // With w = 1 the first number is 0 and leaves u alone, while v is moved.
    PlacedTexture placed(2);
    placed.set("u", -0.25f).set("h", 0.5f).set("jitter", 1.0f).set("tile_v", true);
    ASSERT_TRUE(placed.at(0.5f, 0.5f));
    EXPECT_SAME_BITS(placed.sample.uvw.x, 0.75f);
    EXPECT_FLOAT_EQ(placed.sample.uvw.y, static_cast<float>((0.5 - (0.5 - 0.292133301 * 0.5)) / 0.5));
}

TEST(MappedTextureJitter, ThreadsMayShareTheSector)
{
    HalfPlaced placed(2);
    placed.set("jitter", 1.0f).set("tile_u", true).set("tile_v", true);
    placed.generator.sample.uvw = {0.25f, 0.75f, 0.0f, 0.0f};
    const auto sampleMuch = [&placed](int thread) {
        TestContext context;
        context.threadRecord->threadIndex = thread;
        UVWSample sample;
        for (int i = 0; i < 2000; ++i)
            placed.texture.buildSample(context, false, sample);
    };
    std::thread other(sampleMuch, 1);
    sampleMuch(0);
    other.join();
    EXPECT_TRUE(placed.at(0.25f, 0.75f));
}

const plain::GradientTables& gradientTables()
{
    static const auto tables = [] {
        plain::GradientTables made;
        made.gradients = plain::gradientRows();
        for (std::size_t i = 0; i < 256; ++i)
            made.permutation[i] = OUtils::perlinTables.permutation[i];
        return made;
    }();
    return tables;
}

struct PlainUVNoise {
    double size = 1.0, amount = 1.0, levels = 1.0, time = 0.0;

    double displacement(double coordinate) const
    {
        double sum = 0.0, f = 1.0, n = levels;
        const auto noise = [&] {
            return plain::gradientNoise(gradientTables(), 0.0f, static_cast<float>(coordinate * f / size),
                                        static_cast<float>(time * f / size));
        };
        for (; n >= 1.0; n -= 1.0, f *= 2.0)
            sum += noise() * amount / f;
        if (n > 0.0) sum += n * noise() / f;
        return std::fabs(sum / 25.0);
    }
    void apply(double& u, double& v) const
    {
        u = u + displacement(v);
        v = v + displacement(u);
        if (u > 1.0) u -= std::floor(u);
        if (v > 1.0) v -= std::floor(v);
    }
};

void expectNoise(PlacedTexture& placed, const PlainUVNoise& noise)
{
    for (const auto& [u, v] : {std::pair(0.3, 0.7), {0.9999, 0.2}, {2.35, 5.65}, {-1.4, -0.3}, {7.1, 0.99}}) {
        double plainU = u, plainV = v;
        noise.apply(plainU, plainV);
        ASSERT_TRUE(placed.at(static_cast<float>(u), static_cast<float>(v)));
        EXPECT_NEAR_UVW(placed.sample.uvw, plainU, plainV, 0.375f);
    }
}

TEST(MappedTextureUVNoise, MovesUByVAndThenVByTheMovedU)
{
    PlacedTexture placed;
    placed.generator.sample.du = {1.0f, 2.0f, 3.0f, 0.0f};
    placed.set("uv_noise_on", true);
    expectNoise(placed, {});
    EXPECT_SAME_UVW(placed.sample.du, 1.0f, 2.0f, 3.0f);
    placed.set("uv_noise_size", 0.25f).set("uv_noise_amount", 20.0f);
    expectNoise(placed, {0.25, 20.0, 1.0, 0.0});
}

TEST(MappedTextureUVNoise, FractionalLevelLeavesOutTheAmount)
{
    for (const float levels : {0.0f, 0.5f, 1.0f, 1.5f, 3.25f, -1.0f}) {
        PlacedTexture placed;
        placed.set("uv_noise_on", true).set("uv_noise_levels", levels).set("uv_noise_amount", 8.0f);
        placed.set("uv_noise_size", 0.3f);
        expectNoise(placed, {static_cast<double>(0.3f), 8.0, static_cast<double>(levels), 0.0});
    }
}

TEST(MappedTextureUVNoise, PhaseCountsOnlyWhenAnimated)
{
    PlacedTexture placed;
    placed.set("uv_noise_on", true).set("un_noise_phase", 0.625f).set("uv_noise_amount", 9.0f);
    expectNoise(placed, {1.0, 9.0, 1.0, 0.0});
    placed.set("uv_noise_animate", true);
    expectNoise(placed, {1.0, 9.0, 1.0, 0.625});
    placed.set("uv_noise_on", false);
    ASSERT_TRUE(placed.at(2.5f, 0.75f));
    EXPECT_SAME_UVW(placed.sample.uvw, 2.5f, 0.75f, 0.375f);
}

TEST(MappedTextureUVNoise, WrapsOnlyWhatLiesAboveOne)
{
    PlacedTexture placed; // whole numbers are not moved: the noise is 0 there
    placed.set("uv_noise_on", true);
    for (const auto& [from, to] : {std::pair(1.0f, 1.0f), {3.0f, 0.0f}, {0.0f, 0.0f}, {-2.0f, -2.0f}}) {
        ASSERT_TRUE(placed.at(from, from));
        EXPECT_SAME_UVW(placed.sample.uvw, to, to, 0.375f);
    }
}

TEST(MappedTextureUVNoise, ASizeOfZeroMakesAnInfiniteFrequency)
{
    PlacedTexture placed;
    placed.set("uv_noise_on", true).set("uv_noise_size", 0.0f);
    EXPECT_SAME_BITS(placed.texture.noiseParams.frequency, INFINITY);
    EXPECT_TRUE(placed.at(0.3f, 0.7f));
    placed.set("uv_noise_size", -0.0f);
    EXPECT_SAME_BITS(placed.texture.noiseParams.frequency, -INFINITY);
    EXPECT_TRUE(placed.at(kNaN, INFINITY));
}

TEST(MappedTextureUVNoise, EndsForAnyNumberOfLevels)
{
    PlacedTexture placed;
    placed.set("uv_noise_on", true);
    for (const float levels : {64.5f, 1e9f, INFINITY, kNaN}) {
        placed.set("uv_noise_levels", levels);
        EXPECT_TRUE(placed.at(0.3f, 0.7f));
    }
    placed.set("uv_noise_levels", 20.0f).set("uv_noise_amount", 5.0f);
    expectNoise(placed, {1.0, 5.0, 20.0, 0.0});
}

} // namespace
