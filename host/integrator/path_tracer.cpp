#include "host/integrator/path_tracer.h"

#include "host/integrator/light_sampling.h"
#include "host/integrator/path_state.h"
#include "host/integrator/shading_point.h"

#include <ombrix/mapping_interfaces.h>

namespace ombrix {

using OUtils::OmbrixContext;
using OUtils::ShadeRequest;
using OUtils::ShadeResult;

namespace {

constexpr float kScatterSpread = 0.1f; // footprint of a scattered ray by its length, in radians

bool isFinite(const Color& c)
{
    return std::isfinite(c.r) && std::isfinite(c.g) && std::isfinite(c.b);
}

// A place within the pixel's filter, a tent of radius 1: 0 is the pixel's middle.
float tent(float u)
{
    return std::copysign(1.0f - std::sqrt(2.0f * std::min(u, 1.0f - u)), u - 0.5f);
}

} // namespace

PathTracer::PathTracer(int count, int first)
    : threadCount(count), firstThread(first), threads(new ThreadState[static_cast<std::size_t>(count)])
{
    for (int i = 0; i < threadCount; ++i) {
        for (HostContext& context : threads[static_cast<std::size_t>(i)].contexts) {
            context.thread.threadIndex = firstThread + i;
            context.filtering = true;
        }
    }
}

PathTracer::~PathTracer() = default;

void PathTracer::setWorld(const World* newWorld)
{
    world = newWorld;
}

void PathTracer::recordRays(int thread, std::vector<ShotRay>* rays)
{
    threads[static_cast<std::size_t>(thread)].record = rays;
}

RayCounts PathTracer::rayCounts() const
{
    RayCounts sum;
    for (int i = 0; i < threadCount; ++i) {
        const RayCounts& counts = threads[static_cast<std::size_t>(i)].counts;
        sum.camera += counts.camera;
        sum.scattered += counts.scattered;
        sum.shadow += counts.shadow;
        sum.notFinite += counts.notFinite;
    }
    return sum;
}

RayHit PathTracer::intersect(ThreadState& state, const Ray& ray) const
{
    if (state.record) state.record->push_back({ray, false});
    return world->rays().intersect(ray);
}

bool PathTracer::occluded(ThreadState& state, const Ray& ray) const
{
    if (state.record) state.record->push_back({ray, true});
    return world->rays().occluded(ray);
}

PixelSample PathTracer::trace(int thread, int x, int y, std::uint32_t sample)
{
    ThreadState& state = threads[static_cast<std::size_t>(thread)];
    state.sampler.start(Sampler::pixelSeed(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)),
                        sample);
    state.inPath = true;
    const Pair place = state.sampler.nextPair();
    const float time = world->hasMotion() ? state.sampler.next() : 0.0f;
    const CameraRay camera = world->camera().ray(static_cast<float>(x) + 0.5f + tent(place.u),
                                                 static_cast<float>(y) + 0.5f + tent(place.v), time);
    PathRay path;
    path.ray.origin = path.eye = camera.origin;
    path.ray.direction = camera.direction;
    path.ray.time = time;
    path.directionDx = camera.directionDx;
    path.directionDy = camera.directionDy;

    PixelSample result;
    state.first = &result.first;
    const PathColor seen = follow(state, path);
    state.first = nullptr;
    state.inPath = false;
    result.color = seen.color;
    result.alpha = seen.alpha;
    if (!isFinite(result.color) || !std::isfinite(result.alpha)) {
        ++state.counts.notFinite;
        result.color = {};
        if (!std::isfinite(result.alpha)) result.alpha = 0.0f;
    }
    return result;
}

// Goes through surfaces until nothing more comes through, gathering what they send along.
PathTracer::PathColor PathTracer::follow(ThreadState& state, PathRay& path)
{
    HostContext& context = state.contexts[path.context];
    PathColor sum;
    Color throughput{1.0f, 1.0f, 1.0f}, alphaThroughput{1.0f, 1.0f, 1.0f};
    for (int layer = 0; layer < kMaxLayers; ++layer) {
        ++(path.depth == 0 ? state.counts.camera : state.counts.scattered);
        const RayHit hit = intersect(state, path.ray);
        if (hit.instance == kNoHit) {
            const PathColor behind = background(path);
            sum.color = sum.color + throughput * behind.color;
            sum.alpha += mean(alphaThroughput) * behind.alpha;
            break;
        }
        const WorldNode& node = world->nodes()[hit.instance];
        fillContext(state, context, node, hit, path);
        if (state.first && path.depth == 0) noteFirstHit(*state.first, context, path);
        ShadeResult shaded;
        shade(node, context, &shaded);
        if (path.depth == 0) state.first = nullptr;

        sum.color = sum.color + throughput * colorOf(shaded.color);
        sum.alpha += mean(alphaThroughput * colorOf(shaded.alpha));
        if (!node.transmits) break;
        throughput = throughput * colorOf(shaded.transparency);
        alphaThroughput = alphaThroughput * colorOf(shaded.alphaTransparency);
        if (!(largest(throughput) > kLeastThroughput) && !(largest(alphaThroughput) > kLeastThroughput))
            break;
        path.travelled += hit.distance;
        const bool below = dot(context.geometricNormal, path.ray.direction) < 0.0f;
        path.ray.origin =
            context.shadePoint + context.geometricNormal * (below ? -node.rayOffset : node.rayOffset);
    }
    return sum;
}

void PathTracer::fillContext(ThreadState& state, HostContext& context, const WorldNode& node,
                             const RayHit& hit, const PathRay& path)
{
    context.shadeFlags = 0;
    context.sampleStamp = state.nextStamp();
    context.rayId = context.sampleStamp;
    context.rayFlags = path.flags;
    context.rayDepth = path.depth;
    context.diffuseDepth = path.depth;
    state.offsets[path.context] = node.rayOffset;
    fillShadingPoint(context, node, hit, path.ray.direction, path.ray.time);
    if (path.flags == kCameraRay)
        fillCameraFootprint(context, path.eye, path.ray.direction, path.directionDx, path.directionDy);
    else
        fillRoundFootprint(context, (path.travelled + hit.distance) * kScatterSpread);
}

void PathTracer::noteFirstHit(FirstHit& first, const HostContext& context, const PathRay& path)
{
    first.hit = true;
    first.normal = context.normal;
    first.depth = dot(context.shadePoint - path.eye, world->camera().forward(path.ray.time));
    if (!uvwWanted) return;
    auto* surface = OUtils::find<OUtils::MappedSurface>(context.surfaceObject);
    OUtils::UVWSample sample;
    if (surface && surface->getLocalUVW(context, -1, &sample))
        first.uvw = {sample.uvw.x, sample.uvw.y, sample.uvw.z};
}

// What a ray that meets nothing sees. A scattered ray shares the domes with the direct light.
PathTracer::PathColor PathTracer::background(const PathRay& path) const
{
    PathColor result;
    for (const LightDescription& light : world->lights()) {
        if (light.kind != LightDescription::Kind::Dome) continue;
        if (path.depth > 0) {
            const float direct = domeDensity(light, path.ray.direction, path.density);
            const float share = path.density / (path.density + direct);
            result.color = result.color + domeRadiance(light, path.ray.direction) * share;
        } else if (light.visible) {
            result.color = result.color + domeBackground(light, path.ray.direction);
            result.alpha = 1.0f;
        }
    }
    return result;
}

void PathTracer::shade(const WorldNode& node, const HostContext& context, ShadeResult* result)
{
    if (!node.material) {
        shadeSurface(context, SurfaceSample{}, result);
        return;
    }
    ShadeRequest request;
    node.material->shade(request, context);
    *result = request.result;
}

} // namespace ombrix
