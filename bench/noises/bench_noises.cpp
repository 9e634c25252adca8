// Nanoseconds a sample of the noise kernels, next to their plain twins in the same run. The column
// "Time" is for one sample; the ratio of plain to avx2 is the gain.

#include "bench_support.h"

#include "kernels/noises/lattice_noise.h"
#include "kernels/noises/perlin_noise.h"
#include "kernels/noises/perlin_tables.h"
#include "kernels/noises/simplex_noise.h"
#include "support/plain_noise.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

using bench::compare;
using bench::Point;

constexpr int kPeriod = 100;

float narrow(double value)
{
    return static_cast<float>(value);
}

void registerLattice()
{
    const float* table = plain::currentTable().data();
    using nezaiva::currentNoiseTables;
    compare(
        "latticeNoise2", [](const Point& p) { return nezaiva::latticeNoise2(currentNoiseTables, p.x, p.y); },
        [table](const Point& p) { return plain::lattice2(table, p.x, p.y); });
    compare(
        "latticeNoise3",
        [](const Point& p) { return nezaiva::latticeNoise3(currentNoiseTables, p.x, p.y, p.z); },
        [table](const Point& p) { return plain::lattice3(table, p.x, p.y, p.z); });
    compare(
        "latticeNoise4",
        [](const Point& p) {
            return nezaiva::latticeNoise4(currentNoiseTables, p.x, p.y, p.z, p.w, kPeriod);
        },
        [table](const Point& p) { return plain::lattice4(table, p.x, p.y, p.z, p.w, kPeriod); });
}

void registerSimplex()
{
    compare(
        "simplexNoise", [](const Point& p) { return nezaiva::simplexNoise(narrow(p.x), narrow(p.y)); },
        [](const Point& p) { return plain::simplex(narrow(p.x), narrow(p.y)); });
    compare(
        "simplexCellular",
        [](const Point& p) { return nezaiva::simplexCellular(narrow(p.x), narrow(p.y), 1.0f, 2.0f); },
        [](const Point& p) { return plain::cellular(narrow(p.x), narrow(p.y), 1.0f, 2.0f); });
    // The texture's default octaves.
    compare(
        "simplexFractal",
        [](const Point& p) { return nezaiva::simplexFractal(narrow(p.x), narrow(p.y), {}); },
        [](const Point& p) {
            return plain::fractal(narrow(p.x), narrow(p.y), {1.0f, 0.707f, 3, 2.0f, 1.0f, 0.0f, 0.0f, 0.0f});
        });
    compare(
        "simplexRidged", [](const Point& p) { return nezaiva::simplexRidged(narrow(p.x), narrow(p.y), {}); },
        [](const Point& p) {
            return plain::ridged(narrow(p.x), narrow(p.y), {1.0f, 0.707f, 3, 2.0f, 1.0f, 0.0f, 0.0f, 0.0f});
        });
}

const plain::GradientTables& plainGradients()
{
    static const auto tables = [] {
        plain::GradientTables made;
        made.gradients = plain::gradientRows();
        for (std::size_t i = 0; i < 256; ++i)
            made.permutation[i] = OUtils::perlinTables.permutation[i];
        return made;
    }();
    return tables;
}

void registerGradient()
{
    static const OUtils::PerlinNoise noise;
    static const OUtils::NoiseParams params;
    const plain::GradientTables& tables = plainGradients();
    compare(
        "PerlinNoise::noise", [](const Point& p) { return noise.noise(params, p.x, p.y, p.z); },
        [&tables](const Point& p) {
            return plain::gradientNoise(tables, narrow(p.x), narrow(p.y), narrow(p.z));
        });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    registerLattice();
    registerSimplex();
    registerGradient();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
