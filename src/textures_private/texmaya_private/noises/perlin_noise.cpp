// Gradient noise for every x86-64 processor: the corners of a cell in pairs, in the order of the
// formula.

#include "perlin_noise.h"

#include "cell_index.h"
#include "perlin_noise_avx2.h"
#include "perlin_tables.h"
#include "simd_dispatch.h"

#include <cmath>
#include <cstddef>

#include <emmintrin.h>

namespace OUtils {

namespace {

constexpr unsigned kWrap = kPerlinTableSize - 1;

// A coordinate's place on one axis: the wrapped cell, the distances to its two ends and the fade.
struct Place {
    unsigned cell;
    double near, far, fade;
};

Place placeOf(float coordinate)
{
    const auto value = static_cast<double>(nezaiva::finiteOrZero(coordinate));
    // Kept as is: a negative value within 1e-9 of 0 stays in cell 0.
    const std::int32_t cell = nezaiva::cellIndex(value < 0.0 ? value - 1.0 + 1e-9 : value);
    const double near = value - static_cast<double>(cell);
    const double far = value - (static_cast<double>(cell) + 1.0);
    const double fade = near * near * near * ((6.0 * near - 15.0) * near + 10.0);
    return {static_cast<unsigned>(cell) & kWrap, near, far, fade};
}

double mix(double a, double b, double s)
{
    return a + s * (b - a);
}

__m128d mix(__m128d a, __m128d b, __m128d s)
{
    return _mm_add_pd(a, _mm_mul_pd(s, _mm_sub_pd(b, a)));
}

// The values of two corners: their gradients times (dx, dy, dz).
__m128d cornerPair(const double* rowA, const double* rowB, __m128d dx, __m128d dy, __m128d dz)
{
    const __m128d a = _mm_load_pd(rowA);
    const __m128d b = _mm_load_pd(rowB);
    const __m128d z = _mm_loadh_pd(_mm_load_sd(rowA + 2), rowB + 2);
    const __m128d xy =
        _mm_add_pd(_mm_mul_pd(_mm_unpacklo_pd(a, b), dx), _mm_mul_pd(_mm_unpackhi_pd(a, b), dy));
    return _mm_add_pd(xy, _mm_mul_pd(z, dz));
}

const double* gradientRow(unsigned cellX, unsigned cellY, unsigned permuted)
{
    const unsigned second = perlinTables.permutation[(cellY + permuted) & kWrap];
    return perlinTables.gradients[(cellX + second) & kWrap];
}

double baselineNoise3(float x, float y, float z)
{
    const Place px = placeOf(x);
    const Place py = placeOf(y);
    const Place pz = placeOf(z);
    constexpr std::ptrdiff_t kNextX = 4; // the row of the corner one cell further along x
    const unsigned front = perlinTables.permutation[pz.cell];
    const unsigned back = perlinTables.permutation[(pz.cell + 1) & kWrap];

    const __m128d nearX = _mm_set1_pd(px.near);
    const __m128d farX = _mm_set1_pd(px.far);
    const __m128d fadeX = _mm_set1_pd(px.fade);
    const __m128d dz = _mm_setr_pd(pz.near, pz.far);
    const auto alongX = [&](unsigned cellY, double distanceY) {
        const double* a = gradientRow(px.cell, cellY, front);
        const double* b = gradientRow(px.cell, cellY, back);
        const __m128d dy = _mm_set1_pd(distanceY);
        return mix(cornerPair(a, b, nearX, dy, dz), cornerPair(a + kNextX, b + kNextX, farX, dy, dz), fadeX);
    };
    const __m128d alongY = mix(alongX(py.cell, py.near), alongX(py.cell + 1, py.far), _mm_set1_pd(py.fade));
    return mix(_mm_cvtsd_f64(alongY), _mm_cvtsd_f64(_mm_unpackhi_pd(alongY, alongY)), pz.fade);
}

bool kindCounts(std::int32_t kind)
{
    return kind >= 1 && kind <= 3;
}

} // namespace

double gradientNoise3(float x, float y, float z)
{
    return nezaiva::hasAvx2() ? gradientNoise3Avx2(x, y, z) : baselineNoise3(x, y, z);
}

double gradientNoise2(float x, float y)
{
    const Place px = placeOf(x);
    const Place py = placeOf(y);
    const unsigned permuted = perlinTables.permutation[0];
    const auto corner = [](const double* row, double dx, double dy) { return row[0] * dx + row[1] * dy; };
    const auto alongX = [&](unsigned cellY, double dy) {
        const double* row = gradientRow(px.cell, cellY, permuted);
        return mix(corner(row, px.near, dy), corner(row + 4, px.far, dy), px.fade);
    };
    return mix(alongX(py.cell, py.near), alongX(py.cell + 1, py.far), py.fade);
}

float perlinFractalSum(const NoiseParams& params, double x, double y, double z)
{
    double frequency = 1.0;
    double amplitude = 1.0;
    double sum = 0.0;
    double norm = 0.0;
    const auto scaled = [&](double coordinate) {
        return static_cast<float>(coordinate * frequency) * params.frequency;
    };
    for (std::int32_t octave = 0; octave < params.octaves; ++octave) {
        double value = gradientNoise3(scaled(x), scaled(y), scaled(z));
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
    return gradientNoise3(static_cast<float>(x) * params.frequency, static_cast<float>(y) * params.frequency,
                          static_cast<float>(z) * params.frequency);
}

} // namespace OUtils
