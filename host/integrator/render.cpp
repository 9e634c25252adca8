#include "host/integrator/render.h"

#include "host/parallel/parallel_for.h"

#include <atomic>
#include <chrono>

namespace ombrix {

namespace {

constexpr int kFirstPasses = 4; // growth of the passes' ends: 1, 4, 16, 64
constexpr int kLongestPass = 64;

// How many samples each pixel has after the pass that begins with this many.
int passEnd(int begin, int samples)
{
    const int grown = begin == 0 ? 1 : begin + std::min(begin * (kFirstPasses - 1), kLongestPass);
    return std::min(grown, samples);
}

RayCounts difference(const RayCounts& after, const RayCounts& before)
{
    return {after.camera - before.camera, after.scattered - before.scattered, after.shadow - before.shadow,
            after.notFinite - before.notFinite};
}

// Ends the world of a tracer whichever way a render ends.
struct WorldGuard {
    PathTracer& tracer;
    WorldGuard(PathTracer& of, const World& world) : tracer(of) { tracer.setWorld(&world); }
    WorldGuard(const WorldGuard&) = delete;
    WorldGuard& operator=(const WorldGuard&) = delete;
    ~WorldGuard() { tracer.setWorld(nullptr); }
};

void renderTile(PathTracer& tracer, Film& film, int tile, int thread, int begin, int end)
{
    const Film::Rectangle area = film.tile(tile);
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x)
            for (int sample = begin; sample < end; ++sample)
                film.add(x, y, tracer.trace(thread, x, y, static_cast<std::uint32_t>(sample)));
    film.setSampleCount(tile, end);
}

} // namespace

RenderStatistics renderWorld(const World& world, PathTracer& tracer, const RenderOptions& options, Film& film)
{
    const auto start = std::chrono::steady_clock::now();
    const RayCounts before = tracer.rayCounts();
    const WorldGuard guard(tracer, world);
    tracer.wantUvw(film.has(Layer::Uv));

    std::atomic<bool> ended{false};
    for (int begin = 0; begin < options.samples && !ended;) {
        const int end = passEnd(begin, options.samples);
        parallelFor(film.tileCount(), options.threads, [&](int tile, int thread) {
            if (ended || (options.stopped && options.stopped())) {
                ended = true;
                return;
            }
            renderTile(tracer, film, tile, thread, begin, end);
            const Film::Rectangle area = film.tile(tile);
            if (options.advanced)
                options.advanced(static_cast<std::int64_t>(area.right - area.left) *
                                 (area.bottom - area.top) * (end - begin));
        });
        begin = end;
    }

    RenderStatistics statistics;
    statistics.rays = difference(tracer.rayCounts(), before);
    statistics.complete = !ended;
    statistics.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return statistics;
}

std::int64_t renderSteps(const Film& film, const RenderOptions& options)
{
    return static_cast<std::int64_t>(film.width()) * film.height() * options.samples;
}

} // namespace ombrix
