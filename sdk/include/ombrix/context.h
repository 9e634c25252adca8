// The shading context: the point that is being shaded, as an evaluation sees it.
//
// A context belongs to one render thread. Evaluations receive it by const reference; the few that move
// the point while they evaluate an input take a copy of what they change and put it back.
#pragma once

#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

#include <cstdint>

namespace OUtils {

// Bits of OmbrixContext::shadeFlags.
enum ShadeFlags : std::uint32_t {
    noUVWCache = 0x80,            // do not use the per-thread UVW memo
    noTexCache = 0x400000,        // do not use the per-thread colour memo
    rawTextureLookup = 0x8000000, // skip the colour post-processing of CommonTexture
};

// The host's record of a render thread.
struct ThreadRecord {
    std::int32_t threadIndex = 0; // any value; a thread outside the per-thread tables runs without memo
};

class HitPrimitive;

class OmbrixContext {
public:
    virtual ~OmbrixContext() = default;

    // Non-zero when textures should be filtered.
    virtual int filteringEnabled() const = 0;

    ThreadRecord* threadRecord = nullptr; // never null while evaluating
    std::uint32_t shadeFlags = 0;
    // Changes whenever the shaded point changes; never 0 while evaluating.
    std::int32_t sampleStamp = 1;

    PluginBase* surfaceObject = nullptr; // the object being shaded, asked for EXT_MAPPED_SURFACE; or null
    PluginBase* hitInstance = nullptr;   // the instance that was hit; or null
    HitPrimitive* hitPrimitive = nullptr;

    Vector shadePoint;     // world space, relative to the scene origin
    Vector referencePoint; // the unmoved point that surface transforms are given at
    Vector positionDiffU;  // differentials of the position along the two screen axes
    Vector positionDiffV;
    float filterWidths[4] = {0.0f, 0.0f, 0.0f, 0.0f};

    Vector normal{0.0f, 0.0f, 1.0f}; // shading normal, unit length
    Vector geometricNormal{0.0f, 0.0f, 1.0f};
    Vector viewDirection{0.0f, 0.0f, -1.0f}; // from the eye to the point, unit length
    std::int32_t faceIndex = 0;              // the hit triangle within its mesh
    float barycentric[3] = {1.0f, 0.0f, 0.0f};

    double rayTime = 0.0; // place within the shutter interval, 0 at its start, 1 at its end
    std::int32_t rayDepth = 0;
    std::uint32_t rayFlags = 0; // 0x1: a camera ray; 0x8: set while a matte shades what it hides
    std::int32_t rayId = 1;
    std::int32_t diffuseDepth = 0;
    float streakPosition = 0.0f;      // place along a streak particle, 0 at its head
    void* contextVolumeRef = nullptr; // tested, cleared and restored only
};

} // namespace OUtils
