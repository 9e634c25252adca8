// The lattice noises with AVX2: the coordinates are placed together, and in four dimensions two rows of
// the spline share a register. The arithmetic of the splines is that of lattice_noise.cpp, operation for
// operation.
//
// Compiled for another instruction set, so it includes nothing that emits a shared inline function.

#include "kernels/noises/lattice_noise_kernels.h"
#include "kernels/noises/lattice_place.h"

#include <immintrin.h>

namespace nezaiva {

namespace {

constexpr int kRow = kLatticeRowStride;
constexpr int kPlane = kLatticeSide * kLatticeRowStride;

bool allBelow(__m256d d, double limit)
{
    const __m256d magnitude = _mm256_andnot_pd(_mm256_set1_pd(-0.0), d);
    return _mm256_movemask_pd(_mm256_cmp_pd(magnitude, _mm256_set1_pd(limit), _CMP_LT_OQ)) == 0xF;
}

// behindUnits for four coordinates.
__m128 behindUnits(__m256d d, __m256d sum)
{
    const __m256i bits = _mm256_and_si256(_mm256_castpd_si256(sum), _mm256_set1_epi64x(kBitsOfUnits));
    const __m256d units = _mm256_sub_pd(_mm256_castsi256_pd(bits), _mm256_set1_pd(kRoundToGrid));
    return _mm256_cvtpd_ps(_mm256_sub_pd(d, units));
}

template <int Lane>
__m128 lane(__m128 v)
{
    return _mm_shuffle_ps(v, v, Lane * 0x55);
}

// The wrapped cells of four coordinates on the lattice and the fractions of the unit period, with the
// whole units that floor gives: the steps of time do not go on smoothly across them. The cell is found
// beside the fraction, from the same double. The two can only disagree where the fraction is rounded
// up to the next cell: it is then 1 in the cell before, and the spline has the same bits at either side.
__m128i flooredCells(__m256d d)
{
    const __m256d scaled = _mm256_floor_pd(_mm256_mul_pd(d, _mm256_set1_pd(kLatticeCells)));
    constexpr int kHighBits = 27; // all but the five that count 32 cells
    return _mm_srli_epi32(_mm_slli_epi32(_mm256_cvttpd_epi32(scaled), kHighBits), kHighBits);
}

__m128 unitFractions(__m256d d)
{
    return _mm256_cvtpd_ps(_mm256_sub_pd(d, _mm256_floor_pd(d)));
}

// The weights of three neighbours in the uniform quadratic B-spline; a lane for each axis.
struct Weights {
    __m128 before, at, after;
};

Weights weightsOf(__m128 t)
{
    const __m128 half = _mm_set1_ps(0.5f);
    const __m128 square = _mm_mul_ps(t, t);
    const __m128 after = _mm_mul_ps(half, square);
    return {_mm_add_ps(_mm_sub_ps(half, t), after), _mm_sub_ps(_mm_add_ps(half, t), square), after};
}

// The weights from the distances behind whole units and the cells.
Weights weightsAt(__m128 distances, __m128i cells)
{
    const __m128 f = _mm_mul_ps(distances, _mm_set1_ps(kLatticeCells));
    return weightsOf(_mm_sub_ps(f, _mm_cvtepi32_ps(cells)));
}

template <int Lane>
Weights weightsOfLane(const Weights& w)
{
    return {lane<Lane>(w.before), lane<Lane>(w.at), lane<Lane>(w.after)};
}

struct WideWeights {
    __m256 before, at, after;
};

template <int Lane>
WideWeights wideWeights(const Weights& w)
{
    return {_mm256_broadcastss_ps(lane<Lane>(w.before)), _mm256_broadcastss_ps(lane<Lane>(w.at)),
            _mm256_broadcastss_ps(lane<Lane>(w.after))};
}

Weights lowerHalf(const WideWeights& w)
{
    return {_mm256_castps256_ps128(w.before), _mm256_castps256_ps128(w.at), _mm256_castps256_ps128(w.after)};
}

__m128 spline(__m128 a, __m128 b, __m128 c, const Weights& w)
{
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(a, w.before), _mm_mul_ps(b, w.at)), _mm_mul_ps(c, w.after));
}

__m256 spline(__m256 a, __m256 b, __m256 c, const WideWeights& w)
{
    return _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(a, w.before), _mm256_mul_ps(b, w.at)),
                         _mm256_mul_ps(c, w.after));
}

// The spline through the first three lanes, its weights in the first three lanes.
float splineAcross(__m128 row, __m128 weights)
{
    const __m128 terms = _mm_mul_ps(row, weights);
    const __m128 firstTwo = _mm_add_ss(terms, _mm_movehdup_ps(terms));
    return _mm_cvtss_f32(_mm_add_ss(firstTwo, _mm_movehl_ps(terms, terms)));
}

// The nine rows around a point: two rows of y side by side, the third alone, for three x.
struct Rows {
    __m256 pair[3];
    __m128 third[3];
};

Rows loadRows(const float* corner)
{
    Rows rows;
    for (int x = 0; x < 3; ++x) {
        const float* first = corner + x * kPlane;
        rows.pair[x] = _mm256_loadu2_m128(first + kRow, first);
        rows.third[x] = _mm_loadu_ps(first + 2 * kRow);
    }
    return rows;
}

// The spline along y through the splines along x, and across the lanes.
float splineInSpace(__m128 first, __m128 second, __m128 third, const Weights& w)
{
    const __m128 column = spline(first, second, third, weightsOfLane<1>(w));
    const __m128 firstTwo = _mm_unpackhi_ps(w.before, w.at);
    return splineAcross(column, _mm_shuffle_ps(firstTwo, w.after, _MM_SHUFFLE(2, 2, 1, 0)));
}

const float* cornerOf(const NoiseTables& tables, __m128i cells)
{
    const std::uint64_t x = static_cast<std::uint32_t>(_mm_cvtsi128_si32(cells));
    const std::uint64_t y = static_cast<std::uint32_t>(_mm_extract_epi32(cells, 1));
    const std::uint64_t z = static_cast<std::uint32_t>(_mm_extract_epi32(cells, 2));
    return &tables.space[0][0][0] + (x * kPlane + y * kRow + z);
}

// frac through truncation, for 0..2^18.
__m256 fraction(__m256 a)
{
    return _mm256_sub_ps(a, _mm256_round_ps(a, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
}

struct TimeSteps {
    __m256 m0, m1, m2;
    WideWeights weights;
};

TimeSteps timeSteps(const NoiseTables& tables, std::int32_t cell, const Weights& w)
{
    const auto step = [&](std::int32_t offset) {
        return _mm256_set1_ps((randomValue(tables, cell + offset) + 1.0f) * 21568.16f);
    };
    return {step(0), step(1), step(2), wideWeights<3>(w)};
}

__m256 animated(const TimeSteps& time, __m256 row)
{
    const __m256 c = _mm256_add_ps(row, _mm256_set1_ps(2.0f));
    return spline(fraction(_mm256_mul_ps(time.m0, c)), fraction(_mm256_mul_ps(time.m1, c)),
                  fraction(_mm256_mul_ps(time.m2, c)), time.weights);
}

Rows animated(const TimeSteps& time, const Rows& still)
{
    Rows rows;
    for (int i = 0; i < 3; ++i)
        rows.pair[i] = animated(time, still.pair[i]);
    const __m256 firstTwo = animated(time, _mm256_set_m128(still.third[1], still.third[0]));
    rows.third[0] = _mm256_castps256_ps128(firstTwo);
    rows.third[1] = _mm256_extractf128_ps(firstTwo, 1);
    rows.third[2] = _mm256_castps256_ps128(animated(time, _mm256_castps128_ps256(still.third[2])));
    return rows;
}

} // namespace

float latticeNoise2Avx2(const NoiseTables& tables, double x, double y)
{
    const __m128d xy = _mm_cvtps_pd(_mm_cvtpd_ps(_mm_setr_pd(x, y)));
    if (!areOnGrid(xy)) [[unlikely]]
        return latticeNoise2Anywhere(tables, x, y);
    const __m128d sum = onGrid(xy);
    const __m128i cells = cellsOf(sum, sum);
    const Weights w = weightsAt(behindUnits(xy, sum), cells);
    const float* corner = &tables.plane[_mm_cvtsi128_si32(cells)][_mm_extract_epi32(cells, 1)];
    const __m128 row = spline(_mm_loadu_ps(corner), _mm_loadu_ps(corner + kRow),
                              _mm_loadu_ps(corner + 2 * kRow), weightsOfLane<0>(w));
    const __m128 firstTwo = _mm_unpacklo_ps(w.before, w.at);
    return splineAcross(row, _mm_shuffle_ps(firstTwo, w.after, _MM_SHUFFLE(1, 1, 3, 2)));
}

float latticeNoise3Avx2(const NoiseTables& tables, double x, double y, double z)
{
    const __m256d d = _mm256_setr_pd(x, y, z, 0.0);
    if (!allBelow(d, kLargestOnGrid)) [[unlikely]]
        return latticeNoise3Anywhere(tables, x, y, z);
    const __m256d sum = _mm256_add_pd(d, _mm256_set1_pd(kRoundToGrid));
    const __m128i cells = cellsOf(_mm256_castpd256_pd128(sum), _mm256_extractf128_pd(sum, 1));
    const Weights w = weightsAt(behindUnits(d, sum), cells);
    // Each cell once more from its own coordinate: that is sooner there than a lane of the four.
    const float* corner = &tables.space[cellOf(x)][cellOf(y)][cellOf(z)];
    // Without work beyond the spline, loads within the multiplications beat wider registers.
    const Weights alongX = weightsOfLane<0>(w);
    const auto columns = [&](const float* first) {
        return spline(_mm_loadu_ps(first), _mm_loadu_ps(first + kPlane), _mm_loadu_ps(first + 2 * kPlane),
                      alongX);
    };
    return splineInSpace(columns(corner), columns(corner + kRow), columns(corner + 2 * kRow), w);
}

float latticeNoise4Avx2(const NoiseTables& tables, double x, double y, double z, double w,
                        std::int32_t period)
{
    const __m256d d = _mm256_setr_pd(x, y, z, w);
    if (!allBelow(d, kLargestOnGrid)) return latticeNoise4Baseline(tables, x, y, z, w, period);
    constexpr float kCells = kLatticeCells;
    const auto steps = static_cast<float>(period < 60000 ? period : 60000);
    const __m128i cells = flooredCells(d);
    const __m128 f = _mm_mul_ps(unitFractions(d), _mm_setr_ps(kCells, kCells, kCells, steps));
    // Periods reach down to -2^31, and so does the scaled time: the conversion is always in range.
    const std::int32_t timeCell = _mm_cvttss_si32(lane<3>(f));
    const __m128 whole = _mm_cvtepi32_ps(_mm_insert_epi32(cells, timeCell, 3));
    const Weights weights = weightsOf(_mm_sub_ps(f, whole));
    const TimeSteps time = timeSteps(tables, timeCell, weights);
    const Rows rows = animated(time, loadRows(cornerOf(tables, cells)));
    const WideWeights alongX = wideWeights<0>(weights);
    const __m256 pair = spline(rows.pair[0], rows.pair[1], rows.pair[2], alongX);
    const __m128 third = spline(rows.third[0], rows.third[1], rows.third[2], lowerHalf(alongX));
    return splineInSpace(_mm256_castps256_ps128(pair), _mm256_extractf128_ps(pair, 1), third, weights) *
               2.0f -
           1.0f;
}

} // namespace nezaiva
