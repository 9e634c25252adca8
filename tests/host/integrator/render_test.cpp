// The render as a whole: threads, passes, interruption, motion, and what textures see of it.

#include "host/integrator/shading_point.h"
#include "host/plugins/builtin_desc.h"
#include "rendered_scene.h"

#include <ombrix/world_interfaces.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <set>

namespace {

using namespace ombrix;

// A material that takes down the contexts it is asked with.
struct SeenContext {
    std::int32_t stamp, depth, rayId;
    std::uint32_t flags;
    int thread;
    bool filtering, surface, point;
};
std::vector<SeenContext> seenContexts;

class Recorder : public OUtils::OmbrixMaterial {
public:
    using OmbrixMaterial::OmbrixMaterial;

    static constexpr OUtils::Identity kIdentity{3399990001, "TestRecorder", "", {OUtils::EXT_MATERIAL}};

    template <class Table>
    static void parameters(Table& /*p*/)
    {
    }

    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        OmbrixMaterial::frameBegin(renderer);
        lighting = OUtils::find<SurfaceLightingInterface>(renderer);
    }
    void shade(OUtils::ShadeRequest& request, const OUtils::OmbrixContext& context) override
    {
        const bool mapped = context.surfaceObject && context.surfaceObject == context.hitInstance &&
                            context.surfaceObject->getInterface(OUtils::EXT_MAPPED_SURFACE);
        const bool point = !std::memcmp(&context.shadePoint, &context.referencePoint, sizeof(Vector));
        seenContexts.push_back({context.sampleStamp, context.rayDepth, context.rayId, context.rayFlags,
                                context.threadRecord->threadIndex, context.filteringEnabled() != 0, mapped,
                                point});
        lighting->shadeSurface(context, SurfaceSample{}, &request.result);
    }
    OUtils::BSDFSampler* getBSDF(const OUtils::OmbrixContext& /*context*/) override { return nullptr; }
    void releaseBSDF(OUtils::BSDFSampler* /*sampler*/, const OUtils::OmbrixContext& /*context*/) override {}

private:
    SurfaceLightingInterface* lighting = nullptr;
};
BuiltinDesc<Recorder> recorderDesc;

std::string twoBalls()
{
    return ball(R"("diffuse": [0.8, 0.5, 0.2], "opacity": 0.8)") +
           R"(, "floor": {"type": "Mesh", "params": {"shape": "plane"}},
              "ground": {"type": "Node", "params": {"geometry": "floor",
                "transform": {"translate": [0, -1, 0], "scale": [4, 1, 4]}}},
              "second": {"type": "Node", "params": {"geometry": "mesh", "transform": {"translate": [1.5, -0.4, 0.3],
                "scale": [0.6, 0.6, 0.6]}}},
              "lamp": {"type": "PointLight", "params": {"position": [3, 4, 2], "radius": 0.5, "intensity": 20}},
              "sky": {"type": "DomeLight", "params": {"intensity": 0.3}})";
}

TEST(Render, HasTheSameBitsAtEveryThreadCount)
{
    const std::vector<float> one = RenderedScene(twoBalls(), "", 1).image(50, 37, 5).pixels;
    for (const int threads : {2, 7}) {
        const std::vector<float> other = RenderedScene(twoBalls(), "", threads).image(50, 37, 5).pixels;
        ASSERT_EQ(one.size(), other.size());
        EXPECT_EQ(std::memcmp(one.data(), other.data(), one.size() * sizeof(float)), 0)
            << threads << " threads";
    }
}

TEST(Render, RenderingAgainGivesTheSameBits)
{
    RenderedScene scene(twoBalls());
    const std::vector<float> first = scene.image(20, 20, 3).pixels, second = scene.image(20, 20, 3).pixels;
    EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(float)), 0);
}

TEST(Render, TexturesSeeContextsThatNeverRepeat)
{
    seenContexts.clear();
    std::string scene = ball("");
    scene.replace(scene.find("\"Surface\""), 9, "\"TestRecorder\"");
    RenderedScene rendered(scene, "", 1);
    rendered.image(16, 16, 2);
    rendered.image(16, 16, 2);
    ASSERT_GT(seenContexts.size(), 100u);
    std::set<std::int32_t> stamps;
    for (const SeenContext& seen : seenContexts) {
        EXPECT_TRUE(stamps.insert(seen.stamp).second);
        EXPECT_NE(seen.stamp, 0);
        EXPECT_NE(seen.rayId, 0);
        EXPECT_EQ(seen.thread, 0);
        EXPECT_TRUE(seen.filtering && seen.surface && seen.point);
        EXPECT_EQ(seen.flags, seen.depth == 0 ? kCameraRay : kScatteredRay);
    }
}

TEST(Render, TheSurfacesMapFollowsTheHitPoint)
{
    RenderedScene scene(
        ball("", R"("transform": {"translate": [1, 2, 3], "rotate": [20, 40, 60], "scale": [1, 2, 3]})"));
    const auto world = scene.world(100, 100);
    HostContext here, there;
    const auto fillAt = [&](HostContext& context, float x, float y) {
        const CameraRay camera = world->camera().ray(x, y, 0.0f);
        Ray ray;
        ray.origin = camera.origin;
        ray.direction = camera.direction;
        const RayHit hit = world->rays().intersect(ray);
        ASSERT_EQ(hit.instance, 0u);
        fillShadingPoint(context, world->nodes()[0], hit, ray.direction, 0.0f);
        fillCameraFootprint(context, camera.origin, camera.direction, camera.directionDx, camera.directionDy);
    };
    int compared = 0;
    for (int i = 0; i < 40; ++i) {
        const float x = 40.0f + static_cast<float>(i % 8) * 2.3f,
                    y = 42.0f + static_cast<float>(i / 8) * 3.1f;
        fillAt(here, x, y);
        fillAt(there, x + 0.05f, y);
        if (here.faceIndex != there.faceIndex) continue;
        ++compared;
        auto* surface = OUtils::find<OUtils::MappedSurface>(here.surfaceObject);
        Transform map;
        OUtils::UVWSample expected, before;
        ASSERT_NE(surface->getLocalUVWTransform(here, -1, &map), 0);
        ASSERT_NE(surface->getLocalUVW(there, 1, &expected), 0);
        ASSERT_NE(surface->getLocalUVW(here, 1, &before), 0);
        const Vector got = transformPoint(map, there.shadePoint - here.referencePoint);
        EXPECT_NEAR(got.x, expected.uvw.x, 2e-6f);
        EXPECT_NEAR(got.y, expected.uvw.y, 2e-6f);
        // The differentials reach a whole pixel, twenty times as far.
        EXPECT_NEAR(before.du.x, (expected.uvw.x - before.uvw.x) * 20.0f,
                    0.02f * std::fabs(before.du.x) + 2e-4f);
        EXPECT_NEAR(length(there.shadePoint - here.shadePoint) * 20.0f, length(here.positionDiffU),
                    0.02f * length(here.positionDiffU));
    }
    EXPECT_GT(compared, 10);
}

TEST(Render, PointsAreRelativeToTheSceneOrigin)
{
    const std::string far = R"("transform": {"translate": [1000000, 0, 0]})";
    RenderedScene scene(ball("", far), R"("scene_origin": [1000000, 0, 0])");
    const auto world = scene.world(20, 20);
    EXPECT_EQ(world->nodes()[0].samples[0].offset.x, 0.0f);
    const Image image = scene.image(20, 20, 2);
    EXPECT_NEAR(image.pixel(10, 10)[0], 0.5f, 1e-5f);
}

TEST(Render, MovingNodesAreSpreadOverTheShutter)
{
    const std::string moving = R"("transform": {"times": [0, 1], "values": [{"translate": [0, 0, 0]},
                                                                            {"translate": [8, 0, 0]}]})";
    const std::string camera =
        R"(, "camera": {"type": "Camera", "params": {"position": [4, 0, 30], "target": [4, 0, 0]}})";
    const std::string blur = R"("frame": 0.5, "motion_blur": {"on": true, "shutter_length": 1})";
    RenderedScene scene(ball("", moving) + camera, blur);
    // The ball crosses each place of its way for a quarter of the time: 2 of 8 units.
    const Image image = scene.image(60, 60, 256, Layer::Alpha);
    EXPECT_NEAR(image.pixel(30, 30)[0], 0.25f, 0.03f);
    RenderedScene still(ball("", moving) + camera, R"("frame": 0.5)");
    EXPECT_NEAR(still.image(60, 60, 4, Layer::Alpha).pixel(30, 30)[0], 1.0f, 1e-6f);
    // Where a node stands is told at the time that is asked for.
    auto* matrix = OUtils::find<OUtils::WorldMatrixInterface>(scene.scene->find("node")->plugin);
    HostContext context;
    context.rayTime = 0.25;
    TraceTransform place;
    matrix->getWorldTransform(context, &place);
    EXPECT_NEAR(place.offset.x, 2.0, 1e-6);
}

TEST(Render, AMovingCameraBlursWhatStandsStill)
{
    RenderedScene scene(ball("") + R"(, "camera": {"type": "Camera", "params": {
        "position": {"times": [0, 1], "values": [[-4, 0, 30], [4, 0, 30]]},
        "target": {"times": [0, 1], "values": [[-4, 0, 0], [4, 0, 0]]}}})",
                        R"("frame": 0.5, "motion_blur": {"on": true, "shutter_length": 1})");
    EXPECT_NEAR(scene.image(60, 60, 256, Layer::Alpha).pixel(30, 30)[0], 0.25f, 0.03f);
}

TEST(Render, AStoppedRenderKeepsWhatIsDone)
{
    RenderedScene scene(ball(""));
    const auto world = scene.world(64, 64);
    Film film(64, 64, {Layer::Beauty});
    RenderOptions options;
    options.threads = 2;
    options.samples = 64;
    std::atomic<std::int64_t> steps{0};
    options.advanced = [&](std::int64_t added) { steps += added; };
    options.stopped = [&] { return steps > 64 * 64 * 2; };
    const RenderStatistics statistics = renderWorld(*world, *scene.tracer, options, film);
    EXPECT_FALSE(statistics.complete);
    std::int64_t held = 0;
    for (int tile = 0; tile < film.tileCount(); ++tile) {
        EXPECT_GE(film.sampleCount(tile), 1);
        held += static_cast<std::int64_t>(film.sampleCount(tile)) * kTileSize * kTileSize;
    }
    EXPECT_EQ(held, steps);
    EXPECT_NEAR(film.image(Layer::Beauty).pixel(32, 32)[0], 0.5f, 1e-5f);
}

TEST(Render, AdvancesByAllItsSteps)
{
    RenderedScene scene(ball(""));
    const auto world = scene.world(33, 17);
    Film film(33, 17, {Layer::Beauty});
    RenderOptions options;
    options.samples = 21;
    std::int64_t steps = 0;
    options.advanced = [&](std::int64_t added) { steps += added; };
    const RenderStatistics statistics = renderWorld(*world, *scene.tracer, options, film);
    EXPECT_TRUE(statistics.complete);
    EXPECT_EQ(steps, renderSteps(film, options));
    EXPECT_EQ(steps, 33 * 17 * 21);
    EXPECT_GE(statistics.rays.camera, static_cast<std::uint64_t>(steps));
}

TEST(Render, OnePixelIsAPicture)
{
    RenderedScene scene(ball(""));
    const float alpha = scene.image(1, 1, 64, Layer::Alpha).pixel(0, 0)[0];
    EXPECT_TRUE(alpha > 0.1f && alpha < 0.9f) << alpha;
}

} // namespace
