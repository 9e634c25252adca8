// The volume noises beside their plain twin, a sample a call, three octaves unless the name says
// otherwise. "coherent" walks the pixels of an image, a part of a unit of UV, which each noise places
// by its frequency factor without a frequency; "random" jumps. Every kernel is checked against the twin
// before it is timed.

#include "numeric/simd_dispatch.h"
#include "support/plain_volume_noise.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace nezaiva;

constexpr int kPoints = 16384;
constexpr int kImageWidth = 128;
constexpr float kBenchTolerance = 1e-5f;

std::vector<VolumePoint> coherentPoints(float frequencyFactor)
{
    VolumePlacement placement;
    placement.frequencyFactor = frequencyFactor;
    std::vector<VolumePoint> points;
    for (int i = 0; i < kPoints; ++i) {
        const auto column = static_cast<float>(i % kImageWidth);
        const auto row = static_cast<float>(i / kImageWidth);
        points.push_back(placeVolumePoint3d(
            placement, {0.22f + column * 0.004f, 0.74f + row * 0.004f, 0.46f + (column + row) * 0.001f}));
    }
    return points;
}

std::vector<VolumePoint> randomPoints()
{
    std::mt19937 generator(20);
    std::uniform_real_distribution<float> coordinate(-8.0f, 8.0f);
    std::vector<VolumePoint> points;
    for (int i = 0; i < kPoints; ++i)
        points.push_back({coordinate(generator), coordinate(generator), coordinate(generator)});
    return points;
}

template <class Evaluate>
void timeSamples(benchmark::State& state, const std::vector<VolumePoint>& points, const Evaluate& evaluate)
{
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(evaluate(points[i]));
        i = (i + 1) % kPoints;
    }
}

template <class Kernel, class Plain>
void checkKernel(benchmark::State& state, const std::vector<VolumePoint>& points, const Kernel& kernel,
                 const Plain& plainTwin)
{
    for (int i = 0; i < kPoints; i += 16) {
        const VolumePoint& p = points[static_cast<std::size_t>(i)];
        if (!(std::fabs(kernel(p) - plainTwin(p)) <= kBenchTolerance))
            state.SkipWithError("differs from its twin");
    }
}

template <class Kernel, class Plain>
void addBenchmarks(const std::string& name, float frequencyFactor, const Kernel& kernel,
                   const Plain& plainTwin)
{
    for (const bool coherent : {true, false}) {
        const std::string full = name + (coherent ? "/coherent" : "/random");
        const std::vector<VolumePoint> points = coherent ? coherentPoints(frequencyFactor) : randomPoints();
        benchmark::RegisterBenchmark((full + "/plain").c_str(),
                                     [=](benchmark::State& state) { timeSamples(state, points, plainTwin); });
        for (const InstructionSet set : {InstructionSet::Baseline, InstructionSet::Avx2}) {
            const char* suffix = set == InstructionSet::Avx2 ? "/avx2" : "/baseline";
            benchmark::RegisterBenchmark((full + suffix).c_str(), [=](benchmark::State& state) {
                if (!setInstructionSet(set))
                    return state.SkipWithError("the processor lacks the instruction set");
                checkKernel(state, points, kernel, plainTwin);
                timeSamples(state, points, kernel);
                setInstructionSet(bestInstructionSet());
            });
        }
    }
}

VolumeFractal threeOctaves()
{
    VolumeFractal fractal;
    fractal.depthMax = 3;
    return fractal;
}

void addPerlin(const std::string& name, const PerlinVolume& noise, float time)
{
    addBenchmarks(
        name + "_3d", kPerlinUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalPerlin3d(noise, p, time); },
        [=](const VolumePoint& p) { return plain::perlin3d(noise, p, time); });
    addBenchmarks(
        name + "_2d", kPerlinUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalPerlin2d(noise, p.x, p.y, time); },
        [=](const VolumePoint& p) { return plain::perlin2d(noise, p.x, p.y, time); });
}

void addBillow(const std::string& name, const BillowVolume& noise, float time)
{
    addBenchmarks(
        name + "_3d", kBillowUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalBillow3d(noise, p, time); },
        [=](const VolumePoint& p) { return plain::billow3d(noise, p, time); });
    addBenchmarks(
        name + "_2d", kBillowUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalBillow2d(noise, p.x, p.y, time); },
        [=](const VolumePoint& p) { return plain::billow2d(noise, p.x, p.y, time); });
}

void addCosine(const std::string& name, const CosineVolume& noise, float time)
{
    addBenchmarks(
        name + "_3d", kCosineUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalCosine3d(noise, p, time); },
        [=](const VolumePoint& p) { return plain::cosine3d(noise, p, time); });
    addBenchmarks(
        name + "_2d", kCosineUnsetFrequencyFactor,
        [=](const VolumePoint& p) { return evalCosine2d(noise, p.x, p.y, time); },
        [=](const VolumePoint& p) { return plain::cosine2d(noise, p.x, p.y, time); });
}

const bool kRegistered = [] {
    PerlinVolume perlin;
    perlin.fractal = threeOctaves();
    addPerlin("volume_perlin", perlin, 0.7f);
    PerlinVolume deep = perlin;
    deep.fractal.depthMax = 8;
    addPerlin("volume_perlin_8_octaves", deep, 0.7f);
    PerlinVolume wispy = perlin;
    wispy.wispy = true;
    addPerlin("volume_wispy", wispy, 0.7f);
    PerlinVolume spaceTime = perlin;
    spaceTime.spaceTime = true;
    addPerlin("volume_space_time", spaceTime, 0.7f);

    BillowVolume billow;
    billow.fractal = threeOctaves();
    billow.falloff = kBillowFast;
    addBillow("volume_billow_still", billow, 0.0f);
    addBillow("volume_billow_moving", billow, 0.7f);
    addBillow("volume_billow_frame_24", billow, 24.0f);

    CosineVolume cosine;
    cosine.fractal = threeOctaves();
    cosine.numWaves = 5;
    addCosine("volume_wave_5", cosine, 0.7f);
    return true;
}();

} // namespace
