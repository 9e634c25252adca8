// What the utility nodes cost. The colour of a temperature, which is a sum over 71 wavelengths, beside that
// sum written down plainly; the goal is a fourth of its time. The result is checked before anything is
// timed, and the ratio stands at the end of the run.

#include "support/plain_black_body.h"
#include "support/test_node.h"

#include "kernels/color/black_body.h"
#include "plugin_frame/lib_desc.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace OUtils;

constexpr std::size_t kSamples = 4096; // a power of two
constexpr double kLargestDifference = 1e-5;
constexpr double kGoal = 4.0;
constexpr int kSpace = nezaiva::kColorSpace1;

const std::vector<float>& drawnTemperatures()
{
    static const std::vector<float> drawn = [] {
        std::mt19937 random(13);
        std::uniform_real_distribution<float> spread(500.0f, 15'000.0f);
        std::vector<float> made(kSamples);
        for (float& temperature : made)
            temperature = spread(random);
        return made;
    }();
    return drawn;
}

Color plainColor(float temperature)
{
    const auto c = plain::temperatureColorOf(static_cast<double>(temperature), kSpace);
    return {static_cast<float>(c[0]), static_cast<float>(c[1]), static_cast<float>(c[2])};
}

Color summedColor(float temperature)
{
    return nezaiva::blackBodyColorBySum(std::max(nezaiva::kLowestTemperature, temperature), kSpace);
}

Color nodesColor(float temperature)
{
    return nezaiva::temperatureColor(temperature, kSpace);
}

bool agreesWithPlain()
{
    double largest = 0.0;
    for (const float temperature : drawnTemperatures()) {
        const Color a = plainColor(temperature), b = nodesColor(temperature);
        for (const float difference : {a.r - b.r, a.g - b.g, a.b - b.b})
            largest = std::max(largest, static_cast<double>(std::fabs(difference)));
    }
    std::printf("largest difference from the plain sum: %g (%g allowed)\n", largest, kLargestDifference);
    return largest <= kLargestDifference;
}

template <class Sample>
void walk(benchmark::State& state, Sample sample)
{
    const float* const temperatures = drawnTemperatures().data();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sample(temperatures[i]));
        i = (i + 1) % kSamples;
    }
    state.SetItemsProcessed(state.iterations());
}

// The whole node, over an input that gives a scale of the temperature.
void walkNode(benchmark::State& state)
{
    support::TestColor input;
    support::TestNode node(support::findDescriptor(*getLibDesc(), "TexTemperatureToColor"));
    node.connect("input", input).set("temperature", 1.0f);
    TextureInterface* const texture = node.texture();
    walk(state, [&](float temperature) {
        input.value = {temperature, temperature, temperature, 1.0f};
        AColor result;
        return *texture->evalColor(&result, node.context);
    });
}

// Keeps the time of each benchmark for the ratio.
class TimeKeeper : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            times[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (!agreesWithPlain()) return 1;
    benchmark::RegisterBenchmark("temperature/plain",
                                 [](benchmark::State& state) { walk(state, plainColor); });
    benchmark::RegisterBenchmark("temperature/sum",
                                 [](benchmark::State& state) { walk(state, summedColor); });
    benchmark::RegisterBenchmark("temperature/kernel",
                                 [](benchmark::State& state) { walk(state, nodesColor); });
    benchmark::RegisterBenchmark("temperature/node", walkNode);
    TimeKeeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);
    if (keeper.times.count("temperature/plain") && keeper.times.count("temperature/kernel"))
        std::printf("temperature: %.1f times the speed of the plain sum (goal: %.0f)\n",
                    keeper.times["temperature/plain"] / keeper.times["temperature/kernel"], kGoal);
    return 0;
}
