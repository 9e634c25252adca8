#include "host/integrator/path_tracer.h"

#include "host/integrator/light_sampling.h"
#include "host/integrator/shading_point.h"

#include <ombrix/mapping_interfaces.h>

namespace ombrix {

using OUtils::OmbrixContext;
using OUtils::ShadeRequest;
using OUtils::ShadeResult;

namespace {

constexpr int kMaxLayers = 64;            // surfaces that a ray passes through
constexpr float kLeastThroughput = 1e-4f; // below it a ray through transparent surfaces ends
constexpr float kScatterSpread = 0.1f;    // footprint of a scattered ray by its length, in radians
constexpr int kContexts = 3;              // of the camera's hit, the scattered ray's and a shadow's
constexpr int kShadowContext = 2;

Color colorOf(const AColor& c)
{
    return {c.r, c.g, c.b};
}
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

struct alignas(128) PathTracer::ThreadState {
    HostContext contexts[kContexts];
    float offsets[kContexts] = {}; // of new rays from the contexts' points
    Sampler sampler;
    std::int32_t stamp = 0;
    bool inPath = false;       // between the beginning and the end of trace
    bool shadowOnly = false;   // a shadow's surfaces tell what they let through, and no more
    FirstHit* first = nullptr; // while the camera's first hit is shaded
    std::vector<ShotRay>* record = nullptr;
    RayCounts counts;

    std::int32_t nextStamp()
    {
        if (++stamp == 0) ++stamp;
        return stamp;
    }
};

struct PathTracer::PathRay {
    Ray ray;
    int depth = 0;   // scatterings before it
    int context = 0; // whose place its hits take
    std::uint32_t flags = kCameraRay;
    Vector eye;                      // where the ray began, before it passed through surfaces
    Vector directionDx, directionDy; // of a camera ray
    float travelled = 0.0f;          // from eye to the ray's origin
    float density = 0.0f;            // of a scattered ray, over solid angle
};

struct PathTracer::PathColor {
    Color color;
    float alpha = 0.0f;
};

PathTracer::PathTracer(int count)
    : threadCount(count), threads(new ThreadState[static_cast<std::size_t>(count)])
{
    for (int i = 0; i < threadCount; ++i) {
        for (HostContext& context : threads[static_cast<std::size_t>(i)].contexts) {
            context.thread.threadIndex = i;
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
    auto* surface = findInterface<OUtils::MappedSurface>(context.surfaceObject, OUtils::EXT_MAPPED_SURFACE);
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

void PathTracer::shadeSurface(const OmbrixContext& context, const SurfaceSample& surface, ShadeResult* result)
{
    const Color& o = surface.opacity;
    const float coverage = mean(o);
    result->transparency = {1.0f - o.r, 1.0f - o.g, 1.0f - o.b, 1.0f - coverage};
    result->alpha = {o.r, o.g, o.b, coverage};
    result->alphaTransparency = result->transparency;

    Color light = surface.emission;
    const std::int32_t index = context.threadRecord->threadIndex;
    ThreadState* state =
        index >= 0 && index < threadCount ? &threads[static_cast<std::size_t>(index)] : nullptr;
    if (state && state->inPath && !state->shadowOnly) {
        if (state->first && context.rayDepth == 0) state->first->albedo = surface.diffuse;
        if (coverage > 0.0f && largest(surface.diffuse) > 0.0f) {
            // Both sides are lit alike: the normals turn towards the eye.
            const bool inside = dot(context.geometricNormal, context.viewDirection) > 0.0f;
            const Vector normal = inside ? negated(context.normal) : context.normal;
            const Vector side = inside ? negated(context.geometricNormal) : context.geometricNormal;
            Color arriving = directLight(*state, context, normal, side);
            if (context.rayDepth == 0) arriving = arriving + scatteredLight(*state, context, normal, side);
            light = light + surface.diffuse * arriving;
        }
    }
    result->color = {light.r * o.r, light.g * o.g, light.b * o.b, coverage};
}

Color PathTracer::directLight(ThreadState& state, const OmbrixContext& context, const Vector& normal,
                              const Vector& side)
{
    const float offset = state.offsets[context.rayDepth > 0 ? 1 : 0];
    Color sum;
    for (const LightDescription& light : world->lights()) {
        const Pair random = state.sampler.nextPair();
        LightSample sample = sampleLight(light, context.shadePoint, normal, random);
        if (!(largest(sample.reflected) > 0.0f) || !(dot(sample.direction, side) > 0.0f)) continue;
        if (sample.density > 0.0f && context.rayDepth == 0) {
            const float scattered = std::max(0.0f, dot(sample.direction, normal)) / kPi;
            sample.reflected = sample.reflected * (sample.density / (sample.density + scattered));
        }
        Ray ray;
        ray.origin = context.shadePoint + side * offset;
        ray.direction = sample.direction;
        ray.far = sample.distance;
        ray.time = static_cast<float>(context.rayTime);
        sum = sum + sample.reflected * freeWay(state, context, ray);
    }
    return sum;
}

Color PathTracer::scatteredLight(ThreadState& state, const OmbrixContext& context, const Vector& normal,
                                 const Vector& side)
{
    const Vector direction = cosineDirection(normal, state.sampler.nextPair());
    if (!(dot(direction, side) > 0.0f)) return {};
    PathRay path;
    path.depth = 1;
    path.context = 1;
    path.flags = kScatteredRay;
    path.ray.origin = path.eye = context.shadePoint + side * state.offsets[0];
    path.ray.direction = direction;
    path.ray.time = static_cast<float>(context.rayTime);
    path.density = std::max(dot(direction, normal), 0.0f) / kPi;
    if (!(path.density > 0.0f)) return {};
    return follow(state, path).color;
}

// The share of the light that comes through, by channel.
Color PathTracer::freeWay(ThreadState& state, const OmbrixContext& from, const Ray& ray)
{
    ++state.counts.shadow;
    if (!world->anyTransmits()) return occluded(state, ray) ? Color{} : Color{1.0f, 1.0f, 1.0f};

    Color through{1.0f, 1.0f, 1.0f};
    PathRay path;
    path.depth = from.rayDepth + 1;
    path.context = kShadowContext;
    path.flags = kShadowRay;
    path.eye = ray.origin;
    path.ray = ray;
    HostContext& context = state.contexts[kShadowContext];
    for (int layer = 0; layer < kMaxLayers; ++layer) {
        const RayHit hit = intersect(state, path.ray);
        if (hit.instance == kNoHit) return through;
        const WorldNode& node = world->nodes()[hit.instance];
        if (!node.transmits) return {};
        fillContext(state, context, node, hit, path);
        state.shadowOnly = true;
        ShadeResult shaded;
        shade(node, context, &shaded);
        state.shadowOnly = false;
        through = through * colorOf(shaded.transparency);
        if (!(largest(through) > kLeastThroughput)) return {};
        path.travelled += hit.distance;
        path.ray.far -= hit.distance;
        const bool below = dot(context.geometricNormal, path.ray.direction) < 0.0f;
        path.ray.origin =
            context.shadePoint + context.geometricNormal * (below ? -node.rayOffset : node.rayOffset);
        ++state.counts.shadow;
    }
    return {};
}

} // namespace ombrix
