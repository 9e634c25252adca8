#include "host/bake/bake.h"

#include "host/bake/unit_square_surface.h"
#include "host/console/console.h"
#include "host/context/host_context.h"
#include "host/progress/interrupt_guard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <functional>
#include <set>
#include <vector>

using namespace ombrix;
using namespace OUtils;

namespace {

// Gives what a function makes of a context.
class ProbeTexture : public PluginBase, public TextureInterface {
public:
    explicit ProbeTexture(std::function<AColor(const OmbrixContext&)> color) : colorOf(std::move(color)) {}
    using PluginBase::releaseInterface;
    using PluginInterface::releaseInterface;
    PluginBase* getPlugin() override { return this; }
    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = colorOf(context);
        return result;
    }
    void evalColorBounds(AColor*, AColor*) override {}

private:
    std::function<AColor(const OmbrixContext&)> colorOf;
};

class Bake : public testing::Test {
protected:
    void SetUp() override { setVerbosity(Verbosity::Quiet); }
    void TearDown() override { setVerbosity(Verbosity::Normal); }

    static BakeResult bake(std::function<AColor(const OmbrixContext&)> color, int size, int threads = 1)
    {
        ProbeTexture texture(std::move(color));
        ProgressBar progress("baking", size * size);
        return bakeTexture({static_cast<TextureInterface*>(&texture), EXT_TEXTURE}, size, threads, progress);
    }
};

AColor placeOf(const OmbrixContext& context)
{
    auto* surface = find<MappedSurface>(context.surfaceObject);
    Transform map;
    surface->getLocalUVWTransform(context, -1, &map);
    return {context.shadePoint.x, context.shadePoint.y, map.offset.x, map.offset.y};
}

} // namespace

TEST_F(Bake, TexelCentresRunRightAndUp)
{
    const BakeResult result = bake(placeOf, 4);
    EXPECT_EQ(result.doneTexels, 16);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            const float u = 0.125f + 0.25f * static_cast<float>(x),
                        v = 0.875f - 0.25f * static_cast<float>(y);
            const float* pixel = result.image.pixel(x, y);
            EXPECT_EQ(pixel[0], u);
            EXPECT_EQ(pixel[1], v);
            EXPECT_EQ(pixel[2], u);
            EXPECT_EQ(pixel[3], v);
        }
}

TEST_F(Bake, AContextIsThatOfAFlatUnfilteredSquare)
{
    std::atomic<int> wrong{0};
    bake(
        [&](const OmbrixContext& c) {
            auto* surface = find<MappedSurface>(c.surfaceObject);
            UVWSample sample;
            const bool mapped = surface->getLocalUVW(c, 3, &sample) != 0;
            const bool right = mapped && sample.uvw.x == c.shadePoint.x && sample.du.x == 0.2f &&
                               sample.du.y == 0.0f && sample.dv.x == 0.0f && sample.dv.y == 0.2f &&
                               c.positionDiffU.x == 0.2f && c.positionDiffV.y == 0.2f &&
                               !c.filteringEnabled() && c.normal.z == 1.0f &&
                               c.referencePoint.x == c.shadePoint.x && c.shadePoint.z == 0.0f;
            wrong += right ? 0 : 1;
            return AColor{};
        },
        5);
    EXPECT_EQ(wrong, 0);
}

TEST_F(Bake, StampsDifferAndAreNeverZero)
{
    const int size = 70; // more than one tile, and none of them whole at the edges
    const BakeResult result = bake(
        [](const OmbrixContext& c) {
            return AColor{static_cast<float>(c.sampleStamp), 0, 0, 0};
        },
        size, 3);
    std::set<float> stamps;
    for (int i = 0; i < size * size; ++i)
        stamps.insert(result.image.pixels[static_cast<std::size_t>(i) * 4]);
    EXPECT_EQ(stamps.size(), static_cast<std::size_t>(size) * size);
    EXPECT_EQ(stamps.count(0.0f), 0u);
}

TEST_F(Bake, ThreadIndicesStayBelowTheNumberOfThreads)
{
    std::atomic<int> within{0};
    bake(
        [&](const OmbrixContext& c) {
            within += c.threadRecord->threadIndex >= 0 && c.threadRecord->threadIndex < 3;
            return AColor{};
        },
        200, 3);
    EXPECT_EQ(within, 200 * 200);
}

TEST_F(Bake, TheSameBitsAtEveryNumberOfThreads)
{
    const auto pattern = [](const OmbrixContext& c) {
        const float s = std::sin(c.shadePoint.x * 91.7f) * std::cos(c.shadePoint.y * 47.3f);
        return AColor{s, s * static_cast<float>(c.sampleStamp), s / 3.0f, 1.0f};
    };
    const BakeResult one = bake(pattern, 100, 1);
    for (const int threads : {2, 4, 7})
        EXPECT_EQ(bake(pattern, 100, threads).image.pixels, one.image.pixels) << threads;
}

TEST_F(Bake, OneTexelIsTheMiddle)
{
    const BakeResult result = bake(placeOf, 1);
    EXPECT_EQ(result.image.pixel(0, 0)[0], 0.5f);
    EXPECT_EQ(result.image.pixel(0, 0)[1], 0.5f);
}

TEST_F(Bake, AnInterruptionKeepsWhatIsDone)
{
    const InterruptGuard guard;
    const BakeResult result = bake(
        [](const OmbrixContext& c) {
            if (c.sampleStamp == 1) std::raise(SIGINT);
            return AColor{1, 1, 1, 1};
        },
        64);
    EXPECT_GE(result.doneTexels, 32 * 32); // the tile that it came in
    EXPECT_LT(result.doneTexels, 64 * 64);
    EXPECT_EQ(result.image.pixel(0, 0)[0], 1.0f);
    EXPECT_EQ(static_cast<int>(result.image.pixels.size()), 64 * 64 * 4);
}

namespace {

// A plugin that offers the texture interfaces that it is told to.
class ManyTextures : public PluginBase {
public:
    std::vector<PluginInterface*> offered;
    PluginInterface* getInterface(InterfaceId id) override
    {
        for (PluginInterface* each : offered)
            if (each->getInterfaceID() == id) return each;
        return nullptr;
    }
};

class FloatTexture : public TextureFloatInterface {
public:
    PluginBase* getPlugin() override { return nullptr; }
    float evalFloat(const OmbrixContext& context) override { return context.shadePoint.x * 2.0f; }
    void evalFloatBounds(float*, float*) override {}
};
class IntTexture : public TextureIntInterface {
public:
    PluginBase* getPlugin() override { return nullptr; }
    int evalInt(const OmbrixContext& context) override { return context.shadePoint.y > 0.5f ? 70000 : -3; }
};
class VectorTexture : public TextureVectorInterface {
public:
    PluginBase* getPlugin() override { return nullptr; }
    void evalVector(Vector* result, const OmbrixContext& context) override
    {
        *result = {context.shadePoint.x, -1.0f, 5.0f};
    }
    void evalVectorBounds(Vector*, Vector*) override {}
};

} // namespace

TEST_F(Bake, TheKindsOfTexturesHaveTheirChannels)
{
    FloatTexture floats;
    IntTexture ints;
    VectorTexture vectors;
    ManyTextures plugin;
    PluginInstance instance;
    instance.plugin = &plugin;
    const SceneObject object{&instance, nullptr};
    EXPECT_FALSE(findBakeSource(object));

    const auto bakeIt = [&] {
        ProgressBar progress("baking", 4);
        return bakeTexture(*findBakeSource(object), 2, 1, progress).image;
    };
    plugin.offered = {&vectors};
    Image image = bakeIt();
    EXPECT_EQ(image.pixels, (std::vector<float>{0.25f, -1, 5, 0.75f, -1, 5, 0.25f, -1, 5, 0.75f, -1, 5}));
    EXPECT_TRUE(image.isData);
    plugin.offered = {&vectors, &ints};
    image = bakeIt();
    EXPECT_EQ(image.pixels, (std::vector<float>{70000, 70000, -3, -3}));
    EXPECT_TRUE(image.isData);
    plugin.offered = {&ints, &floats};
    image = bakeIt();
    EXPECT_EQ(image.pixels, (std::vector<float>{0.5f, 1.5f, 0.5f, 1.5f}));
    EXPECT_FALSE(image.isData);
}
