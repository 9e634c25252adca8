// Rendering a world into a film, on any number of threads with the same bits.
#pragma once

#include "host/integrator/film.h"

#include <functional>

namespace ombrix {

struct RenderOptions {
    int threads = 1; // 1 or above; a thread's index lies below it
    int samples = 16;
    // Asked before each tile; true ends the render. The film then tells each tile's samples. May be empty.
    std::function<bool()> stopped;
    // Told after each tile the samples of pixels that it added. Called from all threads. May be empty.
    std::function<void(std::int64_t)> advanced;
};

struct RenderStatistics {
    RayCounts rays; // of this call
    double seconds = 0.0;
    bool complete = true; // every pixel has all its samples
};

// The samples come in passes over the whole picture, so that a render that is stopped shows all of it.
// The tracer's world is set for the call. What a plugin throws comes out of here.
RenderStatistics renderWorld(const World& world, PathTracer& tracer, const RenderOptions& options,
                             Film& film);

// The steps that renderWorld advances by in all.
std::int64_t renderSteps(const Film& film, const RenderOptions& options);

} // namespace ombrix
