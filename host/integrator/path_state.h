// What the path tracer keeps for each thread and each path; for its own files alone.
#pragma once

#include "host/integrator/path_tracer.h"

#include <cstdint>
#include <vector>

namespace ombrix {

inline constexpr int kMaxLayers = 64;            // surfaces that a ray passes through
inline constexpr float kLeastThroughput = 1e-4f; // below it a ray through transparent surfaces ends
inline constexpr int kContexts = 3;              // of the camera's hit, the scattered ray's and a shadow's
inline constexpr int kShadowContext = 2;

inline Color colorOf(const AColor& c)
{
    return {c.r, c.g, c.b};
}

struct alignas(128) PathTracer::ThreadState {
    HostContext contexts[kContexts];
    float offsets[kContexts] = {}; // of new rays from the contexts' points
    Sampler sampler;
    std::int32_t stamp = 0;
    bool inPath = false;       // while trace or shadePoint runs
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

} // namespace ombrix
