// The simplex noise and its cellular companion on lanes; simplex_noise.h has the formulas. The corners of a
// point's cell are four lanes, in the order (0, 0), (1, 0), (1, 1), (0, 1), or four points are.
#pragma once

#include "numeric/lanes.h"

namespace nezaiva {

// Registers stand in for Float4, which each source has for itself.
struct SimplexKernels {
    float (*noise)(float x, float y);
    __m128 (*noiseOfFour)(__m128 x, __m128 y);
    float (*nearestFeature)(float x, float y, float frequency); // its squared distance
};
extern const SimplexKernels simplexBase, simplexAvx2;

namespace {

constexpr float kSimplexScale = 0.70710677f;  // 1 / sqrt(2)
constexpr float kSimplexSkew = 0.36602542f;   // (sqrt(3) - 1) / 2
constexpr float kSimplexUnskew = 0.21132487f; // (3 - sqrt(3)) / 6
constexpr float kBesideCorner = 0.7886751f;   // 1 - unskew: what a step along one axis adds to its coordinate
constexpr float kFarCorner = 0.57735026f;     // 1 - 2 unskew: and a step along both
constexpr float kSimplexStrength = 99.20434f;

constexpr float kHashPeriod = 71.0f;
constexpr float kHashPeriodInverse = 0.014084507f;
constexpr float kHashX = 26.0f;
constexpr float kHashY = 161.0f;
constexpr float kFirstRandom = 0.0010513747f;
constexpr float kSecondRandom = 0.0015553312f;

// Of the cellular noise: its lengths are those of the noise times sqrt(2), and so are its corners.
constexpr float kFeatureStretch = 1.4142135f;
constexpr float kFeatureJitter = 0.14942925f;
constexpr float kBesideFeature = 1.115355f;
constexpr float kBackFeature = -0.2988585f;
constexpr float kFarFeature = 0.81649655f;

// a - floor(a). Not fraction(): a hash that is infinite makes the noise NaN.
inline Float4 rest(Float4 a)
{
    return a - floor(a);
}

// The square of the hash of cells along one axis, k being that of the axis.
inline Float4 squaredHash(Float4 cells, Float4 k)
{
    const Float4 m = (cells - floor(kHashPeriodInverse * cells) * kHashPeriod) + k;
    return m * m;
}

// What corners of the hash h and at (dx, dy) from the point add to the noise.
inline Float4 contribution(Float4 h, Float4 dx, Float4 dy)
{
    const Float4 gx = rest(h * kFirstRandom) - 0.49999f;
    const Float4 gy = rest(h * kSecondRandom) - 0.49999f;
    const Float4 w = max(0.5f - (dx * dx + dy * dy), 0.0f);
    const Float4 ww = w * w;
    return (ww * ww) * (dx * gx + dy * gy) / sqrt(gx * gx + gy * gy);
}

// The cell of one point: the hashes of its corners, and in all lanes the first corner less the point.
struct SimplexCell {
    Float4 hashes, dx, dy;
};

inline SimplexCell cellOf(float scaledX, float scaledY)
{
    const Float4 point(scaledX, scaledY, scaledX, scaledY);
    const Float4 skew = (point + shuffled<1, 0, 3, 2>(point, point)) * kSimplexSkew;
    const Float4 cell = floor(point + skew);
    const Float4 squares =
        squaredHash(cell + Float4(0.0f, 0.0f, 1.0f, 1.0f), Float4(kHashX, kHashY, kHashX, kHashY));
    const Float4 unskew = (cell + shuffled<1, 0, 3, 2>(cell, cell)) * kSimplexUnskew;
    const Float4 d = (cell - unskew) - point;
    return {squares * shuffled<1, 2, 3, 0>(squares, squares), spread<0>(d), spread<1>(d)};
}

inline float simplexOne(float x, float y)
{
    const SimplexCell cell = cellOf(x * kSimplexScale, y * kSimplexScale);
    const Float4 terms =
        contribution(cell.hashes, cell.dx + Float4(0.0f, kBesideCorner, kFarCorner, -kSimplexUnskew),
                     cell.dy + Float4(0.0f, -kSimplexUnskew, kFarCorner, kBesideCorner));
    // Of the two corners beside the first one counts, (1, 0) or (0, 1).
    const Float4 crossed = shuffled<1, 0, 3, 2>(terms, terms);
    const bool alongX = lane<0>(cell.dy) > lane<0>(cell.dx);
    const float middle = alongX ? lane<0>(crossed) : lane<2>(crossed);
    return (lane<0>(terms) + middle + lane<2>(terms)) * kSimplexStrength;
}

inline Float4 simplexFour(Float4 x, Float4 y)
{
    const Float4 px = x * kSimplexScale;
    const Float4 py = y * kSimplexScale;
    const Float4 skew = (px + py) * kSimplexSkew;
    const Float4 ix = floor(px + skew);
    const Float4 iy = floor(skew + py);
    const Float4 a = squaredHash(ix, kHashX);
    const Float4 b = squaredHash(iy, kHashY);
    const Float4 c = squaredHash(ix + 1.0f, kHashX);
    const Float4 d = squaredHash(iy + 1.0f, kHashY);
    const Float4 unskew = (ix + iy) * kSimplexUnskew;
    const Float4 dx = (ix - unskew) - px;
    const Float4 dy = (iy - unskew) - py;

    const Mask4 alongX = dy > dx;
    const Float4 first = contribution(a * b, dx, dy);
    const Float4 middle =
        contribution(select(alongX, b * c, a * d), dx + select(alongX, kBesideCorner, -kSimplexUnskew),
                     dy + select(alongX, -kSimplexUnskew, kBesideCorner));
    const Float4 last = contribution(c * d, dx + kFarCorner, dy + kFarCorner);
    return (first + middle + last) * kSimplexStrength;
}

inline __m128 simplexFourInRegisters(__m128 x, __m128 y)
{
    return simplexFour(x, y).v;
}

// How far a feature lies off its corner along one axis, for a random number r in 0..1.
inline Float4 jitterOf(Float4 r)
{
    const Float4 a = 2.0f * r - 1.0f;
    const Float4 sign = (Float4(1.0f) & (a > 0.0f)) - (Float4(1.0f) & (a < 0.0f));
    return (a * a * a - sign) * kFeatureJitter;
}

inline float nearestFeatureOf(float x, float y, float frequency)
{
    const SimplexCell cell = cellOf(x * frequency * kSimplexScale, y * frequency * kSimplexScale);
    const Float4 dx = cell.dx * kFeatureStretch + jitterOf(rest(cell.hashes * kFirstRandom));
    const Float4 dy = cell.dy * kFeatureStretch + jitterOf(rest(cell.hashes * kSecondRandom));
    const Float4 fx = dx + Float4(0.0f, kBesideFeature, kFarFeature, kBackFeature);
    const Float4 fy = dy + Float4(0.0f, kBackFeature, kFarFeature, kBesideFeature);
    const Float4 squared = fx * fx + fy * fy;
    // The least of them in the first lane. The order decides where one is NaN.
    const Float4 ofFirstTwo = min(spread<1>(squared), squared);
    return lane<0>(min(spread<2>(squared), min(spread<3>(squared), ofFirstTwo)));
}

constexpr SimplexKernels kSimplexKernels{simplexOne, simplexFourInRegisters, nearestFeatureOf};

} // namespace
} // namespace nezaiva
