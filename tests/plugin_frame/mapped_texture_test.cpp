// Where a mapped texture takes its coordinates from, how it looks up, and its gradient.

#include "plugin_frame/probe_textures.h"

#include <cmath>

namespace {

using namespace support;
using OUtils::AColor;
using OUtils::LogLevel;

constexpr std::uint32_t kWithWrap = 8;
constexpr AColor kGrey{0.5f, 0.5f, 0.5f, 1.0f};

const std::string kWarning = "[CommonMappedTexture] No uvw generator specified. Plugin name 'cloth'.\n";

TEST(MappedTexture, WithoutGeneratorAndSurfaceIsGrey)
{
    LivingMapped living(0);
    EXPECT_SAME_COLOR(living.color(), kGrey);
    EXPECT_EQ(living.texture.calls, 0);
    TestSurface unmapped;
    unmapped.mapped = false;
    living.context.surfaceObject = &unmapped;
    EXPECT_SAME_COLOR(living.color(), kGrey);
}

TEST(MappedTexture, WithoutCoordinatesShowsNoUVWColor)
{
    TestColor colour({1.0f, 0.0f, 0.0f, 0.125f});
    LivingMapped living(0);
    living.connect("nouvw_color", colour);
    EXPECT_SAME_COLOR(living.color(), {1.0f, 0.0f, 0.0f, 0.125f});
    living.set("compatibility_with", 1);
    EXPECT_SAME_COLOR(living.color(), {1.0f, 0.0f, 0.0f, 0.3f});
}

TEST(MappedTexture, WarnsEveryFrameWithoutAGenerator)
{
    LivingMapped living(0);
    living.renderer.logger.messages.clear();
    living.texture.setPluginName("cloth");
    living.nextFrame();
    living.nextFrame();
    ASSERT_EQ(living.renderer.logger.messages.size(), 2u);
    for (const auto& [level, text] : living.renderer.logger.messages) {
        EXPECT_EQ(level, LogLevel::Warning);
        EXPECT_EQ(text, kWarning);
    }
}

TEST(MappedTexture, CountsAPluginThatGeneratesNothingAsNoGenerator)
{
    TestGenerator generator;
    TestSurface surface;
    LivingMapped living(0);
    living.texture.setPluginName("cloth");
    living.context.surfaceObject = &surface;
    generator.sample.uvw = {0.25f, 0.5f, 0.75f, 0.0f};
    surface.transform = offsetBy(0.125f, 0.375f, 0.0f);
    living.connect("uvwgen", generator);
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 1.0f});

    living.renderer.logger.messages.clear();
    living.nextFrame();
    EXPECT_TRUE(living.renderer.logger.messages.empty());
    generator.generates = false;
    living.nextFrame();
    EXPECT_EQ(living.texture.uvwgen, nullptr);
    ASSERT_EQ(living.renderer.logger.messages.size(), 1u);
    EXPECT_EQ(living.renderer.logger.messages[0].second, kWarning);
    EXPECT_SAME_COLOR(living.color(), {0.125f, 0.375f, 0.0f, 1.0f});
}

TEST(MappedTexture, DoesWithoutALog)
{
    LivingMapped living(0);
    living.renderer.hasLog = false;
    living.nextFrame();
    EXPECT_SAME_COLOR(living.color(), kGrey);
}

TEST(MappedTexture, TakesTheGeneratorsFlag)
{
    TestGenerator generator;
    LivingMapped living(0);
    living.connect("uvwgen", generator);
    for (const auto& [valid, expected] : {std::pair(0, kGrey), {-1, AColor{0.0f, 0.0f, 0.0f, 1.0f}}}) {
        generator.valid = valid;
        EXPECT_SAME_COLOR(living.color(), expected);
    }
}

TEST(MappedTexture, WithoutWrapKeepsTheValidRangeAlone)
{
    constexpr float kLimit = 1.000001f;
    const float outside = std::nextafter(kLimit, 2.0f);
    TestGenerator generator;
    LivingMapped living(kWithWrap);
    living.connect("uvwgen", generator).set("wrap", false);
    for (float OUtils::Vector4::*axis : {&OUtils::Vector4::x, &OUtils::Vector4::y, &OUtils::Vector4::z}) {
        generator.sample.uvw = {0.5f, 0.5f, 0.5f, 0.0f};
        for (const auto& [coordinate, valid] : {std::pair(1.5f, false),
                                                {-1.5f, false},
                                                {1.0f, true},
                                                {kLimit, true},
                                                {-kLimit, true},
                                                {outside, false},
                                                {-outside, false},
                                                {kNaN, true}}) {
            generator.sample.uvw.*axis = coordinate;
            OUtils::UVWSample sample;
            EXPECT_EQ(living.texture.buildSample(living.context, true, sample), valid) << coordinate;
        }
    }
}

TEST(MappedTexture, WithWrapKeepsAllCoordinates)
{
    TestGenerator generator;
    generator.sample.uvw = {1.5f, -40.0f, 1e30f, 0.0f};
    LivingMapped declared(kWithWrap), undeclared(0);
    declared.connect("uvwgen", generator);
    undeclared.connect("uvwgen", generator);
    EXPECT_SAME_COLOR(declared.color(), {1.5f, -40.0f, 1e30f, 1.0f});
    EXPECT_SAME_COLOR(undeclared.color(), {1.5f, -40.0f, 1e30f, 1.0f});
}

TEST(MappedTexture, MapsThePointByTheSurface)
{
    TestSurface surface;
    surface.transform.matrix = {{{2.0f, 0.25f, 0.0f}, {0.5f, 4.0f, 0.0f}, {0.0f, 1.0f, 8.0f}}};
    surface.transform.offset = {0.125f, 0.25f, 0.5f};
    LivingMapped living(0);
    living.context.surfaceObject = &surface;
    living.context.shadePoint = {1.5f, 2.25f, 3.125f};
    living.context.referencePoint = {1.0f, 2.0f, 3.0f};
    living.context.positionDiffU = {1.0f, 0.0f, 2.0f};
    living.context.positionDiffV = {0.0f, 0.5f, 0.0f};
    OUtils::UVWSample sample;
    ASSERT_TRUE(living.texture.buildSample(living.context, true, sample));
    // d = (0.5, 0.25, 0.125).
    EXPECT_SAME_UVW(sample.uvw, 1.25f, 1.5f, 1.5f);
    EXPECT_SAME_UVW(sample.du, 2.0f, 2.25f, 16.0f);
    EXPECT_SAME_UVW(sample.dv, 0.25f, 2.0f, 0.0f);
    EXPECT_EQ(surface.channels, std::vector<int>{-1});

    OUtils::UVWSample alone;
    ASSERT_TRUE(living.texture.buildSample(living.context, false, alone));
    EXPECT_SAME_UVW(alone.uvw, 1.25f, 1.5f, 1.5f);
    EXPECT_SAME_UVW(alone.du, 0.0f, 0.0f, 0.0f);
}

TEST(MappedTexture, DoesNotLimitTheSurfacesCoordinates)
{
    TestSurface surface;
    surface.transform = offsetBy(5.0f, -7.0f, 9.0f);
    LivingMapped living(kWithWrap);
    living.set("wrap", false);
    living.context.surfaceObject = &surface;
    EXPECT_SAME_COLOR(living.color(), {5.0f, -7.0f, 9.0f, 1.0f});
}

// How often the surface is asked by two look-ups at one point.
std::size_t questionsAtOnePoint(LivingMapped& living, TestSurface& surface)
{
    ++living.context.sampleStamp;
    surface.channels.clear();
    OUtils::UVWSample sample;
    living.texture.buildSample(living.context, true, sample);
    living.texture.buildSample(living.context, true, sample);
    return surface.channels.size();
}

TEST(MappedTexture, RemembersTheSurfacesTransformForThePoint)
{
    TestSurface surface;
    surface.transform = offsetBy(0.25f, 0.5f, 0.75f);
    LivingMapped living(0, 2);
    living.context.surfaceObject = &surface;
    EXPECT_EQ(questionsAtOnePoint(living, surface), 1u);
    living.context.shadeFlags = OUtils::noUVWCache;
    EXPECT_EQ(questionsAtOnePoint(living, surface), 2u);
    living.context.shadeFlags = OUtils::noTexCache;
    EXPECT_EQ(questionsAtOnePoint(living, surface), 1u);
    for (const auto& [thread, questions] : {std::pair(-1, 2u), {1, 1u}, {2, 2u}}) {
        living.context.threadRecord->threadIndex = thread;
        EXPECT_EQ(questionsAtOnePoint(living, surface), questions) << thread;
    }
    // The remembered transform serves a moved point.
    living.context.threadRecord->threadIndex = 0;
    questionsAtOnePoint(living, surface);
    living.context.shadePoint = {1.0f, 0.0f, 0.0f};
    OUtils::UVWSample sample;
    ASSERT_TRUE(living.texture.buildSample(living.context, true, sample));
    EXPECT_SAME_UVW(sample.uvw, 1.25f, 0.5f, 0.75f);
    EXPECT_EQ(surface.channels.size(), 1u);
    living.nextFrame();
    living.texture.buildSample(living.context, true, sample);
    EXPECT_EQ(surface.channels.size(), 2u);
}

TEST(MappedTexture, RemembersThatTheSurfaceRefused)
{
    TestSurface surface;
    surface.known = false;
    LivingMapped living(0);
    living.context.surfaceObject = &surface;
    EXPECT_EQ(questionsAtOnePoint(living, surface), 1u);
    surface.known = true;
    OUtils::UVWSample sample;
    EXPECT_FALSE(living.texture.buildSample(living.context, true, sample));
    ++living.context.sampleStamp;
    EXPECT_TRUE(living.texture.buildSample(living.context, true, sample));
}

TEST(MappedTexture, DoesNotRememberThatThereIsNoSurface)
{
    TestSurface surface;
    LivingMapped living(0);
    OUtils::UVWSample sample;
    EXPECT_FALSE(living.texture.buildSample(living.context, true, sample));
    living.context.surfaceObject = &surface;
    EXPECT_TRUE(living.texture.buildSample(living.context, true, sample));
}

TEST(MappedTexture, AsksAGeneratorEveryTime)
{
    TestGenerator generator;
    LivingMapped living(0);
    living.connect("uvwgen", generator);
    OUtils::UVWSample sample;
    living.texture.buildSample(living.context, true, sample);
    living.texture.buildSample(living.context, true, sample);
    EXPECT_EQ(generator.calls, 2);
}

TEST(MappedTexture, LooksUpByWidthOnlyWhenFiltering)
{
    TestGenerator generator;
    generator.sample.uvw = {0.25f, 0.5f, 0.75f, 0.0f};
    generator.sample.du = {0.5f, -0.25f, -1.0f, 0.0f};
    generator.sample.dv = {0.25f, 0.5f, -2.0f, 0.0f};
    LivingMapped living(0);
    living.connect("uvwgen", generator);
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 1.0f});
    EXPECT_EQ(living.texture.widthCalls, 0);
    living.context.filtering = -1;
    EXPECT_SAME_COLOR(living.color(), {0.25f, 0.5f, 0.75f, 1.0f});
    EXPECT_EQ(living.texture.widthCalls, 1);
    EXPECT_EQ(living.texture.calls, 2);
    // From 0 to the larger, from the smaller to the larger, from the smaller to 0.
    EXPECT_SAME_UVW(living.texture.lastWidth, 0.5f, 0.75f, 2.0f);
    EXPECT_EQ(living.texture.lastWidth.w, 2.0f);
}

TEST(MappedTexture, BoundsAreThoseOfTheTexture)
{
    LivingMapped living(0);
    const ColorBounds bounds = living.bounds();
    EXPECT_SAME_COLOR(bounds.lower, {0.125f, 0.25f, 0.375f, 0.5f});
    EXPECT_SAME_COLOR(bounds.upper, {0.625f, 0.75f, 0.875f, 1.0f});
}

TEST(MappedTexture, GradientOfASurfaceStaysInItsCoordinates)
{
    TestSurface surface;
    surface.transform.matrix.columns[0] = {5.0f, 0.0f, 0.0f};
    LivingMapped living(0);
    EXPECT_SAME_COLOR(living.colorGradient(), {0.0f, 0.0f, 0.0f, 0.0f});
    living.context.surfaceObject = &surface;
    EXPECT_SAME_COLOR(living.colorGradient(), {1.0f, 2.0f, 3.0f, 4.0f});
}

TEST(MappedTexture, GradientOfAGeneratorGoesBackToThePoint)
{
    // U runs along y, V against x: the inverse takes (1, 2, 3) to (-2, 1, 3).
    TestGenerator generator;
    generator.transform.matrix = {{{0.0f, -4.0f, 0.0f}, {2.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.5f}}};
    generator.sample.du = {0.5f, 0.0f, 0.0f, 0.0f};
    LivingMapped living(0);
    living.connect("uvwgen", generator);
    EXPECT_SAME_COLOR(living.colorGradient(), {-2.0f, 1.0f, 3.0f, 0.0f});
    EXPECT_SAME_UVW(living.texture.lastWidth, 0.5f, 0.0f, 0.0f);
    generator.transformValid = 0;
    EXPECT_SAME_COLOR(living.colorGradient(), {1.0f, 2.0f, 3.0f, 4.0f});
    generator.valid = 0;
    EXPECT_SAME_COLOR(living.colorGradient(), {0.0f, 0.0f, 0.0f, 0.0f});
}

TEST(MappedTexture, KeepsTheRendererForTheRender)
{
    MappedProbeParams params(0);
    LocalDesc desc(&params);
    RecordingRenderer renderer;
    MappedProbe texture(&desc, 0);
    for (int life = 0; life < 2; ++life) {
        EXPECT_EQ(texture.renderer, nullptr);
        texture.renderBegin(&renderer);
        EXPECT_EQ(texture.renderer, &renderer);
        ASSERT_NE(texture.sharedNoise, nullptr); // whatever the flags say
        EXPECT_EQ(texture.sharedNoise->references, 1);
        texture.frameBegin(&renderer);
        texture.frameEnd(&renderer);
        texture.renderEnd(&renderer);
        EXPECT_EQ(texture.sharedNoise, nullptr);
    }
    EXPECT_EQ(texture.renderer, nullptr);
}

TEST(MappedTexture, OffersTextureAndGpuTexture)
{
    LivingMapped living(0);
    OUtils::PluginInterface* gpu = living.texture.getInterface(OUtils::EXT_RTTEX);
    ASSERT_NE(gpu, nullptr);
    EXPECT_EQ(gpu->getPlugin(), static_cast<OUtils::PluginBase*>(&living.texture));
    EXPECT_NE(living.texture.getInterface(OUtils::EXT_TEXTURE), nullptr);
    EXPECT_EQ(living.texture.getInterface(OUtils::EXT_UVWGEN), nullptr);
    EXPECT_EQ(sourceOf(static_cast<OUtils::RTTexInterface*>(gpu), "MaterialDescriptor").answer, 0);
}

} // namespace
