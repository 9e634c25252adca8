// What the noise benchmarks share: coordinates drawn beforehand, and a check that comes first.
#pragma once

#include "numeric/simd_dispatch.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace bench {

constexpr std::size_t kPoints = 1024; // a power of two, so that walking round them costs next to nothing

struct Point {
    double x, y, z, w;
};

inline const std::vector<Point>& drawnPoints()
{
    static const std::vector<Point> drawn = [] {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> spread(-20.0, 20.0);
        std::vector<Point> made(kPoints);
        for (auto& point : made)
            point = {spread(random), spread(random), spread(random), spread(random)};
        return made;
    }();
    return drawn;
}

// Measures sample(point), after checking it at all points against its plain twin. Items are samples.
template <typename Sample, typename Twin>
void measure(benchmark::State& state, nezaiva::InstructionSet set, Sample sample, Twin twin)
{
    if (!nezaiva::setInstructionSet(set)) {
        state.SkipWithError("the processor lacks this instruction set");
        return;
    }
    const auto& drawn = drawnPoints();
    for (const auto& point : drawn)
        if (!(std::fabs(static_cast<double>(sample(point)) - static_cast<double>(twin(point))) <= 2e-6)) {
            state.SkipWithError("differs from the plain twin");
            return;
        }
    const Point* const points = drawn.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sample(points[i]));
        i = (i + 1) % kPoints;
    }
    state.SetItemsProcessed(state.iterations());
}

// Registers `plain`, `baseline` and `avx2` of one noise beside each other.
template <typename Sample, typename Twin>
void compare(const std::string& name, Sample sample, Twin twin)
{
    using nezaiva::InstructionSet;
    benchmark::RegisterBenchmark((name + "/plain").c_str(), [=](benchmark::State& state) {
        measure(state, InstructionSet::Baseline, twin, sample);
    });
    benchmark::RegisterBenchmark((name + "/baseline").c_str(), [=](benchmark::State& state) {
        measure(state, InstructionSet::Baseline, sample, twin);
    });
    if (nezaiva::bestInstructionSet() == InstructionSet::Avx2)
        benchmark::RegisterBenchmark((name + "/avx2").c_str(), [=](benchmark::State& state) {
            measure(state, InstructionSet::Avx2, sample, twin);
        });
}

} // namespace bench
