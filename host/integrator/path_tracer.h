// The path tracer: what the eye sees through a place of the picture. At each point all lights are asked
// directly, and one ray is scattered further; points that such a ray meets are lit directly alone.
#pragma once

#include "host/context/host_context.h"
#include "host/integrator/sampler.h"
#include "host/integrator/world.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace ombrix {

// Bits of OmbrixContext::rayFlags.
inline constexpr std::uint32_t kCameraRay = 0x1;
inline constexpr std::uint32_t kScatteredRay = 0x10;
inline constexpr std::uint32_t kShadowRay = 0x20;

// What the eye meets first.
struct FirstHit {
    bool hit = false;
    Vector normal;      // shading normal, world space
    Vector uvw;         // of the lowest map channel; zero without one
    Color albedo;       // the diffuse input of the surface
    float depth = 0.0f; // distance along the direction that the camera looks in
};

struct PixelSample {
    Color color; // premultiplied by alpha
    float alpha = 0.0f;
    FirstHit first;
};

struct RayCounts {
    std::uint64_t camera = 0, scattered = 0, shadow = 0;
    std::uint64_t notFinite = 0; // samples that were dropped for it
    std::uint64_t total() const { return camera + scattered + shadow; }
};

// A ray as it was shot, for measuring the ray kernels alone with the very same rays.
struct ShotRay {
    Ray ray;
    bool occlusion = false;
};

// One object serves a whole render, so that sample stamps never repeat on a thread. Add it to the
// renderer before the scene's frameBegin: materials find it there.
class PathTracer : public SurfaceLightingInterface {
public:
    // threadCount: 1 or above. firstThread: the thread index that contexts of thread 0 have; the others
    // follow.
    explicit PathTracer(int threadCount, int firstThread = 0);
    ~PathTracer() override;

    OUtils::PluginBase* getPlugin() override { return nullptr; }

    // The frame's world, which must live as long as samples of it are taken; null when it ends.
    void setWorld(const World* world);
    // Whether FirstHit::uvw is wanted.
    void wantUvw(bool wanted) { uvwWanted = wanted; }
    // Takes down every ray of a thread until it is called with null. Not while rendering.
    void recordRays(int thread, std::vector<ShotRay>* rays);

    // One sample of a pixel; x and y count from the upper left corner. It depends on these numbers alone.
    // thread: 0 to threadCount - 1, used by one caller at a time. Allocates nothing, takes no lock.
    PixelSample trace(int thread, int x, int y, std::uint32_t sample);

    // Lights the point for the material that calls it. Outside of trace and shadePoint, and on a thread
    // that is none of the tracer's, the point stays unlit.
    void shadeSurface(const OUtils::OmbrixContext& context, const SurfaceSample& surface,
                      OUtils::ShadeResult* result) override;

    // Lights a point that no ray of the tracer has met, for the material that calls it: as the mean of
    // kPointSamples samples, the same ones at every point. The context's thread is not looked at; what the
    // rays meet is shaded as that of thread 0. One call at a time, and not while tracing.
    void shadePoint(const OUtils::OmbrixContext& context, const SurfaceSample& surface,
                    OUtils::ShadeResult* result);
    static constexpr int kPointSamples = 1024;

    // All rays since construction. Not while rendering.
    RayCounts rayCounts() const;

private:
    struct ThreadState;
    struct PathRay;
    struct PathColor;

    // Moves path along.
    PathColor follow(ThreadState& state, PathRay& path);
    void fillContext(ThreadState& state, HostContext& context, const WorldNode& node, const RayHit& hit,
                     const PathRay& path);
    void shade(const WorldNode& node, const HostContext& context, OUtils::ShadeResult* result);
    void noteFirstHit(FirstHit& first, const HostContext& context, const PathRay& path);
    PathColor background(const PathRay& path) const;
    Color meanArrivingLight(ThreadState& state, const OUtils::OmbrixContext& context);
    Color arrivingLight(ThreadState& state, const OUtils::OmbrixContext& context);
    Color directLight(ThreadState& state, const OUtils::OmbrixContext& context, const Vector& normal,
                      const Vector& side);
    Color scatteredLight(ThreadState& state, const OUtils::OmbrixContext& context, const Vector& normal,
                         const Vector& side);
    Color freeWay(ThreadState& state, const OUtils::OmbrixContext& from, const Ray& ray);
    RayHit intersect(ThreadState& state, const Ray& ray) const;
    bool occluded(ThreadState& state, const Ray& ray) const;

    int threadCount, firstThread;
    std::unique_ptr<ThreadState[]> threads;
    const World* world = nullptr;
    bool uvwWanted = false;
};

} // namespace ombrix
