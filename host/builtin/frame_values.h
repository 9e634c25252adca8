// What the host's own kinds ask of a frame: its times, places relative to its origin, and a word to its log.
#pragma once

#include "host/geometry/vector_math.h"

#include <ombrix/plugin.h>

#include <vector>

namespace ombrix {

// What a frame without a renderer shows is a new FrameData.
inline OUtils::FrameData frameOf(OUtils::OmbrixRenderer* renderer)
{
    return renderer ? renderer->getFrameData() : OUtils::FrameData{};
}

// The times at which a frame shows something that may move: spread evenly over the shutter interval from its
// start to its end, or the frame's alone where it does not move or nothing blurs.
inline std::vector<double> shutterTimes(const OUtils::FrameData& frame, bool moving)
{
    if (!moving || !frame.motionBlur || frame.geometrySamples < 2) return {frame.time};
    std::vector<double> times;
    for (int i = 0; i < frame.geometrySamples; ++i) {
        const double t = static_cast<double>(i) / (frame.geometrySamples - 1);
        times.push_back(frame.intervalStart + (frame.intervalEnd - frame.intervalStart) * t);
    }
    return times;
}

// Places of the world relative to a scene origin, rounded once, after the subtraction.
inline Vector relativeTo(const VectorD& origin, const VectorD& point)
{
    return {static_cast<float>(point.x - origin.x), static_cast<float>(point.y - origin.y),
            static_cast<float>(point.z - origin.z)};
}
inline Vector relativeTo(const VectorD& origin, const Vector& point)
{
    return relativeTo(origin, VectorD{static_cast<double>(point.x), static_cast<double>(point.y),
                                      static_cast<double>(point.z)});
}
inline Transform relativeTo(const VectorD& origin, const TraceTransform& transform)
{
    return {transform.matrix, relativeTo(origin, transform.offset)};
}

// The scene's name of a plugin; "" while it has none.
inline const char* nameOf(const OUtils::Plugin& plugin)
{
    return plugin.getPluginName() ? plugin.getPluginName() : "";
}

// Says: kind "name": text. Without a renderer, or without a logger of one, nothing.
inline void warn(OUtils::OmbrixRenderer* renderer, const char* kind, const OUtils::Plugin& plugin,
                 const char* text)
{
    if (OUtils::RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
        logger->warning("%s \"%s\": %s", kind, nameOf(plugin), text);
}

} // namespace ombrix
