#include "kernels/noises/perlin_noise.h"

#include "kernels/noises/perlin_body.h"
#include "numeric/cell_index.h"
#include "numeric/simd_dispatch.h"

#include <cmath>
#include <cstddef>

namespace nezaiva {

constinit const PerlinKernels perlinBase = kPerlinKernels;

} // namespace nezaiva

namespace OUtils {

namespace {

constexpr unsigned kWrap = kPerlinTableSize - 1;

// A coordinate's place on one axis: the wrapped cell, the distances to its two ends and their weights.
struct Place {
    unsigned cell;
    double near, far;
    double rest, fade;
};

Place placeOf(float coordinate)
{
    const auto value = static_cast<double>(nezaiva::finiteOrZero(coordinate));
    // Kept as is: a negative value within 1e-9 of 0 stays in cell 0.
    const std::int32_t cell = nezaiva::cellIndex(value < 0.0 ? value - 1.0 + 1e-9 : value);
    const double near = value - static_cast<double>(cell);
    const double far = value - (static_cast<double>(cell) + 1.0);
    const double fade = near * near * near * ((6.0 * near - 15.0) * near + 10.0);
    return {static_cast<unsigned>(cell) & kWrap, near, far, 1.0 - fade, fade};
}

double mix(double a, double b, const Place& place)
{
    return a * place.rest + b * place.fade;
}

const double* gradientRow(unsigned cellX, unsigned cellY, unsigned permuted)
{
    return perlinTables.gradients[(cellX + perlinTables.permutation[cellY + permuted]) & kWrap];
}

double noiseAt(nezaiva::Float4 point)
{
    return nezaiva::chosen(nezaiva::perlinBase, nezaiva::perlinAvx2).noise3(point.v);
}

// The float values of the coordinates times the frequency, which is a product of floats.
nezaiva::Float4 scaledPoint(const NoiseParams& params, double x, double y, double z)
{
    using nezaiva::Double2;
    return toFloat(nezaiva::Double4(Double2(x, y), Double2(z, 0.0))) * params.frequency;
}

bool kindCounts(std::int32_t kind)
{
    return kind >= 1 && kind <= 3;
}

} // namespace

double gradientNoise3(float x, float y, float z)
{
    return noiseAt({x, y, z, 0.0f});
}

double gradientNoise2(float x, float y)
{
    const Place px = placeOf(x);
    const Place py = placeOf(y);
    const unsigned permuted = perlinTables.permutation[0];
    const auto corner = [](const double* row, double dx, double dy) { return row[0] * dx + row[1] * dy; };
    constexpr std::ptrdiff_t kNextX = 4; // the row of the corner one cell further along x
    const auto rowOfCorners = [&](unsigned cellY, double dy) {
        const double* row = gradientRow(px.cell, cellY, permuted);
        return mix(corner(row, px.near, dy), corner(row + kNextX, px.far, dy), px);
    };
    return mix(rowOfCorners(py.cell, py.near), rowOfCorners(py.cell + 1, py.far), py);
}

float perlinFractalSum(const NoiseParams& params, double x, double y, double z)
{
    double frequency = 1.0;
    double amplitude = 1.0;
    double sum = 0.0;
    double norm = 0.0;
    for (std::int32_t octave = 0; octave < params.octaves; ++octave) {
        double value = noiseAt(scaledPoint(params, x * frequency, y * frequency, z * frequency));
        if (params.absoluteOctaves != 0) value = std::fabs(value);
        if (kindCounts(params.kind)) sum += value * amplitude;
        norm += amplitude;
        frequency *= static_cast<double>(params.lacunarity);
        amplitude = amplitude / static_cast<double>(params.amplitudeDivisor) *
                    static_cast<double>(params.persistence);
    }
    sum /= norm;
    if (params.kind == 2 || params.absoluteOctaves != 0) sum = std::fabs(sum);
    return static_cast<float>(sum);
}

void PerlinNoise::fillTables()
{
    const std::lock_guard<std::mutex> lock(m_fillLock);
    if (!m_permutation.empty()) return;
    m_gradients.reserve(kPerlinTableSize);
    m_permutation.reserve(kPerlinTableSize);
    for (int i = 0; i < kPerlinTableSize; ++i) {
        const double* row = perlinTables.gradients[i];
        m_gradients.push_back(
            {static_cast<float>(row[0]), static_cast<float>(row[1]), static_cast<float>(row[2])});
        m_permutation.push_back(perlinTables.permutation[i]);
    }
}

double PerlinNoise::noise(const NoiseParams& params, double x, double y, double z) const
{
    return noiseAt(scaledPoint(params, x, y, z));
}

} // namespace OUtils
