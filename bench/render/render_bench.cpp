// Rays a second of a whole render at one sample a pixel, with constant textures, next to a bare loop that
// shoots the very same rays, in the same order, through Embree alone.

#include "host/integrator/default_scene.h"
#include "host/integrator/render.h"
#include "host/scene/scene_life.h"

#include <benchmark/benchmark.h>
#include <embree3/rtcore.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

using namespace ombrix;

constexpr int kWidth = 320, kHeight = 180;

constexpr const char* kStudio = R"({"ombrix_scene": 1, "plugins": {
    "look": {"type": "ColorValue", "params": {"value": [0.7, 0.3, 0.1]}}}})";

constexpr const char* kObjects = R"({"ombrix_scene": 1, "plugins": {
    "ball": {"type": "Mesh", "params": {"shape": "sphere"}}, "ring": {"type": "Mesh", "params": {"shape": "torus"}},
    "floor": {"type": "Mesh", "params": {"shape": "plane"}},
    "red": {"type": "Surface", "params": {"diffuse": [0.7, 0.1, 0.1]}},
    "grey": {"type": "Surface", "params": {"diffuse": 0.4}},
    "a": {"type": "Node", "params": {"geometry": "ball", "material": "red"}},
    "b": {"type": "Node", "params": {"geometry": "ring", "material": "red", "transform": {"translate": [2, 0, 0]}}},
    "c": {"type": "Node", "params": {"geometry": "ball", "transform": {"translate": [-2, 0, -1]}}},
    "ground": {"type": "Node", "params": {"geometry": "floor", "material": "grey",
        "transform": {"translate": [0, -1, 0], "scale": [6, 1, 6]}}},
    "lamp": {"type": "PointLight", "params": {"position": [3, 5, 4], "intensity": 20, "radius": 0.5}},
    "sky": {"type": "DomeLight", "params": {"intensity": 0.3}},
    "camera": {"type": "Camera", "params": {"position": [0, 2, 7], "target": [0, 0, 0]}}}})";

// A scene within its frame.
struct Prepared {
    explicit Prepared(const char* text)
    {
        Diagnostics diagnostics("bench");
        scene = Scene::parse(text, ".", registry, diagnostics);
        if (scene) addDefaultObjects(*scene, diagnostics);
        if (!scene || diagnostics.failed()) {
            diagnostics.print();
            std::exit(1);
        }
        renderer = std::make_unique<HostRenderer>(scene->settings(), 1, &logger);
        renderer->addInterface(&tracer, 0);
        renderLife = std::make_unique<RenderLife>(*scene, *renderer);
        frameLife = std::make_unique<FrameLife>(*renderLife, 1.0);
        world = std::make_unique<World>(scene->instances(), renderer->getFrameData(), kWidth, kHeight);
    }
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;

    RenderStatistics render()
    {
        Film film(kWidth, kHeight, {Layer::Beauty});
        RenderOptions options;
        options.samples = 1;
        return renderWorld(*world, tracer, options, film);
    }

    PluginRegistry registry;
    std::unique_ptr<Scene> scene;
    RecordingLogger logger{false};
    std::unique_ptr<HostRenderer> renderer;
    PathTracer tracer{1};
    std::unique_ptr<RenderLife> renderLife;
    std::unique_ptr<FrameLife> frameLife;
    std::unique_ptr<World> world;
};

// The same scene built with Embree's own calls.
class BareScene {
public:
    explicit BareScene(const World& world) : device(rtcNewDevice(nullptr)), top(newScene())
    {
        for (const WorldNode& node : world.nodes()) {
            const RTCScene mesh = newScene();
            meshes.push_back(mesh);
            const RTCGeometry triangles = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
            fill(triangles, RTC_BUFFER_TYPE_VERTEX, RTC_FORMAT_FLOAT3, node.mesh->positions);
            fill(triangles, RTC_BUFFER_TYPE_INDEX, RTC_FORMAT_UINT3, node.mesh->triangles);
            attach(mesh, triangles);
            rtcCommitScene(mesh);

            const RTCGeometry instance = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_INSTANCE);
            rtcSetGeometryInstancedScene(instance, mesh);
            rtcSetGeometryTransform(instance, 0, RTC_FORMAT_FLOAT3X4_COLUMN_MAJOR, &node.samples.front());
            attach(top, instance);
        }
        rtcCommitScene(top);
    }
    BareScene(const BareScene&) = delete;
    BareScene& operator=(const BareScene&) = delete;
    ~BareScene()
    {
        rtcReleaseScene(top);
        for (const RTCScene mesh : meshes)
            rtcReleaseScene(mesh);
        rtcReleaseDevice(device);
    }

    // Shoots all rays; how many hit.
    std::size_t shoot(const std::vector<ShotRay>& rays) const
    {
        std::size_t hits = 0;
        for (const ShotRay& shot : rays) {
            RTCIntersectContext context;
            rtcInitIntersectContext(&context);
            RTCRayHit query;
            const Ray& r = shot.ray;
            query.ray = {r.origin.x,
                         r.origin.y,
                         r.origin.z,
                         r.near,
                         r.direction.x,
                         r.direction.y,
                         r.direction.z,
                         r.time,
                         r.far,
                         ~0u,
                         0,
                         0};
            if (shot.occlusion) {
                rtcOccluded1(top, &context, &query.ray);
                hits += query.ray.tfar < 0.0f;
            } else {
                query.hit.geomID = query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
                rtcIntersect1(top, &context, &query);
                hits += query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
            }
        }
        return hits;
    }

private:
    RTCScene newScene() const
    {
        const RTCScene scene = rtcNewScene(device);
        rtcSetSceneFlags(scene, RTC_SCENE_FLAG_ROBUST);
        rtcSetSceneBuildQuality(scene, RTC_BUILD_QUALITY_HIGH);
        return scene;
    }
    template <class Element>
    static void fill(RTCGeometry geometry, RTCBufferType type, RTCFormat format,
                     const std::vector<Element>& from)
    {
        void* buffer = rtcSetNewGeometryBuffer(geometry, type, 0, format, sizeof(Element), from.size());
        std::memcpy(buffer, from.data(), from.size() * sizeof(Element));
    }
    static void attach(RTCScene scene, RTCGeometry geometry)
    {
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene, geometry);
        rtcReleaseGeometry(geometry);
    }

    RTCDevice device;
    RTCScene top;
    std::vector<RTCScene> meshes;
};

void renderOneSample(benchmark::State& state, const char* text)
{
    Prepared prepared(text);
    std::uint64_t rays = 0;
    for (auto unused : state) {
        (void)unused;
        rays += prepared.render().rays.total();
    }
    state.counters["rays"] = benchmark::Counter(static_cast<double>(rays), benchmark::Counter::kIsRate);
}

void shootTheSameRays(benchmark::State& state, const char* text)
{
    Prepared prepared(text);
    std::vector<ShotRay> rays;
    prepared.tracer.recordRays(0, &rays);
    const std::uint64_t counted = prepared.render().rays.total();
    prepared.tracer.recordRays(0, nullptr);
    if (rays.size() != counted) {
        state.SkipWithError("the recorded rays are not those that were counted");
        return;
    }
    const BareScene bare(*prepared.world);
    std::size_t worldHits = 0;
    for (const ShotRay& shot : rays)
        worldHits += shot.occlusion ? prepared.world->rays().occluded(shot.ray)
                                    : prepared.world->rays().intersect(shot.ray).instance != kNoHit;
    if (bare.shoot(rays) != worldHits) {
        state.SkipWithError("the bare scene is hit by other rays than the rendered one");
        return;
    }
    std::uint64_t shot = 0;
    for (auto unused : state) {
        (void)unused;
        benchmark::DoNotOptimize(bare.shoot(rays));
        shot += rays.size();
    }
    state.counters["rays"] = benchmark::Counter(static_cast<double>(shot), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(renderOneSample, objects, kObjects)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shootTheSameRays, objects, kObjects)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(renderOneSample, studio, kStudio)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shootTheSameRays, studio, kStudio)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
