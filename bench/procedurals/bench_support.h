// What the benchmarks of the procedural textures share: the points of a picture and as many random ones,
// and a check that comes first.
#pragma once

#include "numeric/simd_dispatch.h"

#include <ombrix/types.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace bench {

constexpr std::size_t kSide = 1024;
constexpr std::size_t kPoints = kSide * kSide; // a power of two, so that walking round them costs nothing
constexpr std::size_t kCheckedEvery = 61;

using Points = std::vector<OUtils::Vector>;

// A picture of ten units a side, row by row.
inline const Points& picturePoints()
{
    static const Points points = [] {
        Points made;
        made.reserve(kPoints);
        const auto place = [](std::size_t pixel) {
            return (static_cast<float>(pixel) + 0.5f) * 10.0f / kSide;
        };
        for (std::size_t row = 0; row < kSide; ++row)
            for (std::size_t column = 0; column < kSide; ++column)
                made.push_back({place(column), place(row), 0.3f});
        return made;
    }();
    return points;
}

inline const Points& randomPoints()
{
    static const Points points = [] {
        Points made;
        made.reserve(kPoints);
        std::mt19937 random(11);
        std::uniform_real_distribution<float> spread(-20.0f, 20.0f);
        for (std::size_t i = 0; i < kPoints; ++i)
            made.push_back({spread(random), spread(random), spread(random)});
        return made;
    }();
    return points;
}

// Within what the last place of a sine makes of a colour, at the points' size.
inline bool isNear(float a, float b)
{
    return std::fabs(a - b) <= 1e-5f;
}

inline bool isNear(const OUtils::AColor& a, const OUtils::AColor& b)
{
    return isNear(a.r, b.r) && isNear(a.g, b.g) && isNear(a.b, b.b) && isNear(a.a, b.a);
}

// Measures sample(point), a colour or a number, after checking it against its twin.
template <typename Sample, typename Twin>
void measure(benchmark::State& state, nezaiva::InstructionSet set, const Points& points, Sample sample,
             Twin twin)
{
    if (!nezaiva::setInstructionSet(set)) {
        state.SkipWithError("the processor lacks this instruction set");
        return;
    }
    for (std::size_t i = 0; i < kPoints; i += kCheckedEvery)
        if (!isNear(sample(points[i]), twin(points[i]))) {
            state.SkipWithError("differs from the plain twin");
            return;
        }
    const OUtils::Vector* const all = points.data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sample(all[i]));
        i = (i + 1) % kPoints;
    }
    state.SetItemsProcessed(state.iterations());
}

// Registers plain, base and avx2 of one function beside each other, over a picture and random points.
template <typename Sample, typename Twin>
void compare(const std::string& name, Sample sample, Twin twin)
{
    using nezaiva::InstructionSet;
    const auto add = [](const std::string& row, InstructionSet set, const Points& points, auto first,
                        auto second) {
        benchmark::RegisterBenchmark(row.c_str(), [=, &points](benchmark::State& state) {
            measure(state, set, points, first, second);
        });
    };
    for (const bool random : {false, true}) {
        const Points& points = random ? randomPoints() : picturePoints();
        const std::string row = name + (random ? "/random/" : "/picture/");
        add(row + "plain", InstructionSet::Baseline, points, twin, sample);
        add(row + "base", InstructionSet::Baseline, points, sample, twin);
        if (nezaiva::bestInstructionSet() == InstructionSet::Avx2)
            add(row + "avx2", InstructionSet::Avx2, points, sample, twin);
    }
}

// The rows of a texture.
void registerCloth();
void registerLeather();

} // namespace bench
