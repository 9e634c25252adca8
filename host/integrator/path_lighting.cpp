// What lights a point: the direct light of all lights, and one ray scattered further.
#include "host/integrator/light_sampling.h"
#include "host/integrator/path_state.h"

namespace ombrix {

using OUtils::OmbrixContext;
using OUtils::ShadeResult;

namespace {

// Whether any light that arrives is sent on.
bool scatters(const SurfaceSample& surface)
{
    return mean(surface.opacity) > 0.0f && largest(surface.diffuse) > 0.0f;
}

// What the surface lets through, and light as far as it covers.
void fillResult(const SurfaceSample& surface, const Color& light, ShadeResult* result)
{
    const Color& o = surface.opacity;
    const float coverage = mean(o);
    result->transparency = {1.0f - o.r, 1.0f - o.g, 1.0f - o.b, 1.0f - coverage};
    result->alpha = {o.r, o.g, o.b, coverage};
    result->alphaTransparency = result->transparency;
    result->color = {light.r * o.r, light.g * o.g, light.b * o.b, coverage};
}

// The place within the shutter interval, as rays take it.
float timeOf(const OmbrixContext& context)
{
    const auto time = static_cast<float>(context.rayTime);
    return time > 0.0f ? (time < 1.0f ? time : 1.0f) : 0.0f;
}

} // namespace

void PathTracer::shadeSurface(const OmbrixContext& context, const SurfaceSample& surface, ShadeResult* result)
{
    Color light = surface.emission;
    const std::int64_t index = std::int64_t{context.threadRecord->threadIndex} - firstThread;
    ThreadState* state =
        index >= 0 && index < threadCount ? &threads[static_cast<std::size_t>(index)] : nullptr;
    if (state && state->inPath && !state->shadowOnly) {
        if (state->first && context.rayDepth == 0) state->first->albedo = surface.diffuse;
        if (scatters(surface)) light = light + surface.diffuse * arrivingLight(*state, context);
    }
    fillResult(surface, light, result);
}

void PathTracer::shadePoint(const OmbrixContext& context, const SurfaceSample& surface, ShadeResult* result)
{
    Color light = surface.emission;
    if (scatters(surface)) {
        const Color arriving = meanArrivingLight(threads[0], context);
        if (largest(arriving) > 0.0f) light = light + surface.diffuse * arriving;
    }
    fillResult(surface, light, result);
}

Color PathTracer::meanArrivingLight(ThreadState& state, const OmbrixContext& context)
{
    state.offsets[0] = state.offsets[1] = world->rayOffsetAt(context.shadePoint);
    double sum[3] = {};
    state.inPath = true;
    for (std::uint32_t sample = 0; sample < kPointSamples; ++sample) {
        state.sampler.start(0, sample);
        const Color arriving = arrivingLight(state, context);
        sum[0] += static_cast<double>(arriving.r);
        sum[1] += static_cast<double>(arriving.g);
        sum[2] += static_cast<double>(arriving.b);
    }
    state.inPath = false;
    return {static_cast<float>(sum[0] / kPointSamples), static_cast<float>(sum[1] / kPointSamples),
            static_cast<float>(sum[2] / kPointSamples)};
}

// One sample of the light that a white surface at the point would send on.
Color PathTracer::arrivingLight(ThreadState& state, const OmbrixContext& context)
{
    // Both sides are lit alike: the normals turn towards the eye.
    const bool inside = dot(context.geometricNormal, context.viewDirection) > 0.0f;
    const Vector normal = inside ? negated(context.normal) : context.normal;
    const Vector side = inside ? negated(context.geometricNormal) : context.geometricNormal;
    Color arriving = directLight(state, context, normal, side);
    if (context.rayDepth == 0) arriving = arriving + scatteredLight(state, context, normal, side);
    return arriving;
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
        ray.time = timeOf(context);
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
    path.ray.time = timeOf(context);
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
