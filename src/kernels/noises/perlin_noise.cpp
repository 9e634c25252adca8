// Gradient noise for every x86-64 processor.
//
// A corner's value is the sum of three products, and the interpolation is linear. So each product is
// weighted as it is made, with weights that do not wait for the gradients, and the three components
// are added at the very end.

#include "kernels/noises/perlin_noise.h"

#include "kernels/noises/perlin_noise_kernels.h"
#include "kernels/noises/perlin_tables.h"
#include "numeric/cell_index.h"
#include "numeric/simd_dispatch.h"

#include <cmath>
#include <cstddef>

#include <emmintrin.h>

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

constexpr std::ptrdiff_t kNextX = 4; // the row of the corner one cell further along x

// The four corners of one y: the near and the far end along x, times their weights.
struct Corners {
    __m128d near, far;   // the distances along x and y
    __m128d nearZ, farZ; // the distances along z, near and far
};

Corners cornersOf(const Place& px, const __m128d distancesZ, double distanceY, double weightY)
{
    const __m128d near = _mm_set1_pd(px.rest * weightY);
    const __m128d far = _mm_set1_pd(px.fade * weightY);
    return {_mm_mul_pd(_mm_setr_pd(px.near, distanceY), near),
            _mm_mul_pd(_mm_setr_pd(px.far, distanceY), far), _mm_mul_pd(distancesZ, near),
            _mm_mul_pd(distancesZ, far)};
}

// The part of x and y in the corners at one y and z.
__m128d pairOf(const double* row, const Corners& corners)
{
    return _mm_add_pd(_mm_mul_pd(_mm_load_pd(row), corners.near),
                      _mm_mul_pd(_mm_load_pd(row + kNextX), corners.far));
}

// The part of z in the corners at one y: a lane for each z.
__m128d pairInZ(const double* front, const double* back, const Corners& corners)
{
    const auto gradients = [&](std::ptrdiff_t offset) {
        return _mm_loadh_pd(_mm_load_sd(front + offset + 2), back + offset + 2);
    };
    return _mm_add_pd(_mm_mul_pd(gradients(0), corners.nearZ), _mm_mul_pd(gradients(kNextX), corners.farZ));
}

double noiseAt(__m128 point)
{
    return nezaiva::hasAvx2() ? gradientNoise3Avx2(point) : gradientNoise3Baseline(point);
}

// The float values of the coordinates times the frequency, which is a product of floats.
__m128 scaledPoint(const NoiseParams& params, double x, double y, double z)
{
    const __m128 point = _mm_movelh_ps(_mm_cvtpd_ps(_mm_setr_pd(x, y)), _mm_cvtpd_ps(_mm_set_sd(z)));
    return _mm_mul_ps(point, _mm_set1_ps(params.frequency));
}

bool kindCounts(std::int32_t kind)
{
    return kind >= 1 && kind <= 3;
}

} // namespace

double gradientNoise3Baseline(__m128 point)
{
    alignas(16) float coordinates[4];
    _mm_store_ps(coordinates, point);
    const Place px = placeOf(coordinates[0]);
    const Place py = placeOf(coordinates[1]);
    const Place pz = placeOf(coordinates[2]);
    const unsigned front = perlinTables.permutation[pz.cell];
    const unsigned back = perlinTables.permutation[pz.cell + 1];
    const double* const front0 = gradientRow(px.cell, py.cell, front);
    const double* const front1 = gradientRow(px.cell, py.cell + 1, front);
    const double* const back0 = gradientRow(px.cell, py.cell, back);
    const double* const back1 = gradientRow(px.cell, py.cell + 1, back);

    const __m128d distancesZ = _mm_setr_pd(pz.near, pz.far);
    const Corners low = cornersOf(px, distancesZ, py.near, py.rest);
    const Corners high = cornersOf(px, distancesZ, py.far, py.fade);
    const __m128d frontSide = _mm_add_pd(pairOf(front0, low), pairOf(front1, high));
    const __m128d backSide = _mm_add_pd(pairOf(back0, low), pairOf(back1, high));
    const __m128d xy =
        _mm_add_pd(_mm_mul_pd(frontSide, _mm_set1_pd(pz.rest)), _mm_mul_pd(backSide, _mm_set1_pd(pz.fade)));
    const __m128d sides = _mm_add_pd(pairInZ(front0, back0, low), pairInZ(front1, back1, high));
    const double z = mix(_mm_cvtsd_f64(sides), _mm_cvtsd_f64(_mm_unpackhi_pd(sides, sides)), pz);
    return _mm_cvtsd_f64(xy) + _mm_cvtsd_f64(_mm_unpackhi_pd(xy, xy)) + z;
}

double gradientNoise3(float x, float y, float z)
{
    return noiseAt(_mm_setr_ps(x, y, z, 0.0f));
}

double gradientNoise2(float x, float y)
{
    const Place px = placeOf(x);
    const Place py = placeOf(y);
    const unsigned permuted = perlinTables.permutation[0];
    const auto corner = [](const double* row, double dx, double dy) { return row[0] * dx + row[1] * dy; };
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
