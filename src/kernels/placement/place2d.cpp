#include "kernels/placement/place2d.h"

#include <algorithm>
#include <cmath>

namespace nezaiva {

namespace {

constexpr float kSmallestCoverage = 1e-7f;
constexpr float kSmallestNoise = 1e-8f;
constexpr float kLargestQuotient = 1e18f;
constexpr float kClampMargin = 1e-6f;
constexpr float kClampedCoverageEnd = 0.999999f;
constexpr float kNoiseFrequency = 17.0f;
constexpr float kNoiseGain = 3.0f;

struct Point2 {
    float u, v;
};

Point2 rotatedAboutCentre(Point2 p, float sine, float cosine)
{
    const float a = p.u - 0.5f;
    const float b = p.v - 0.5f;
    return {(cosine * a + 0.5f) - sine * b, (a * sine + 0.5f) + cosine * b};
}

Matrix rotation(float sine, float cosine)
{
    return {{{cosine, sine, 0.0f}, {-sine, cosine, 0.0f}, {0.0f, 0.0f, 1.0f}}};
}

// The U noise is read at depth 0 and the V noise at depth 1, so that the two displacements differ.
// Kept as is: a negative magnitude disables its axis instead of inverting it.
Point2 displaced(Point2 p, const PlaceSample& sample, const NoiseParams& noise)
{
    const auto sumAt = [&](double depth) {
        return perlinFractalSum(noise, static_cast<double>(kNoiseFrequency * p.u),
                                static_cast<double>(kNoiseFrequency * p.v), depth);
    };
    const float noiseU = sample.noise_u > kSmallestNoise ? sumAt(0.0) : 0.0f;
    const float noiseV = sample.noise_v > kSmallestNoise ? sumAt(1.0) : 0.0f;
    return {sample.noise_u * kNoiseGain * noiseU + p.u, sample.noise_v * kNoiseGain * noiseV + p.v};
}

bool outsideUnit(float x)
{
    return x < 0.0f || x > 1.0f;
}

// The coordinate of one axis on the image. Clears valid off the image and goes on.
float coveredAndRepeated(float x, float coverage, float repeat, bool wrap, bool clamp, bool& valid)
{
    const bool negative = repeat < 0.0f || coverage < 0.0f;
    if (negative) {
        coverage = std::fabs(coverage);
        repeat = std::fabs(repeat);
    }
    if (coverage >= 1.0f) {
        x = x * repeat;
        if (coverage != 1.0f) x = x / coverage; // by 1 it changes nothing and takes its time
        if (clamp) x = std::min(std::max(x, kClampMargin), repeat - kClampMargin);
        if (!wrap && (x < 0.0f || x > repeat)) valid = false;
    } else if (coverage < 1.0f) {
        if (wrap && !clamp) x = x - std::floor(x);
        x = x / coverage;
        if (clamp) x = std::min(std::max(x, kClampMargin), kClampedCoverageEnd);
        if (outsideUnit(x)) valid = false;
        x = x * repeat;
    }
    return negative ? 1.0f - x : x;
}

bool inOddTile(float x)
{
    float m = std::fmod(x, 2.0f);
    if (x < 0.0f) m += 2.0f;
    return m > 1.0f;
}

// The point reflected inside its own tile, which keeps its number.
float mirroredInTile(float x)
{
    const float tile = std::floor(x);
    return (1.0f + tile + tile) - x;
}

} // namespace

float guardedQuotient(float a, float b)
{
    return std::fabs(a) < std::fabs(b) * kLargestQuotient ? a / b : 0.0f;
}

PlaceMatrices placeMatrices(const PlaceSample& sample)
{
    PlaceMatrices matrices;
    matrices.sinFrame = std::sin(sample.rotate_frame);
    matrices.cosFrame = std::cos(sample.rotate_frame);
    matrices.sinUV = std::sin(sample.rotate_uv);
    matrices.cosUV = std::cos(sample.rotate_uv);
    const float scaleU = guardedQuotient(sample.repeat_u, sample.coverage_u);
    const float scaleV = guardedQuotient(sample.repeat_v, sample.coverage_v);
    const Matrix frame = rotation(matrices.sinFrame, matrices.cosFrame);
    const Matrix uv = rotation(matrices.sinUV, matrices.cosUV);
    for (int i = 0; i < 3; ++i) {
        const Vector& column = frame.columns[i];
        matrices.linear.columns[i] = uv * Vector{scaleU * column.x, scaleV * column.y, column.z};
    }
    return matrices;
}

PlaceTransform placed(const PlaceTransform& input, const PlaceSample& sample, const PlaceMatrices& matrices,
                      const PlaceFlags& flags, const NoiseParams& noise)
{
    if (!input.valid) return {input.map, false};
    if (std::fabs(sample.coverage_u) < kSmallestCoverage || std::fabs(sample.coverage_v) < kSmallestCoverage)
        return {input.map, false};

    Point2 p{input.map.offset.x, input.map.offset.y};
    p = displaced(p, sample, noise);
    p = rotatedAboutCentre(p, matrices.sinFrame, matrices.cosFrame);

    // The coordinates before the frame's translation decide.
    if (flags.clamp[0] && !flags.wrap[0] && outsideUnit(p.u)) return {input.map, false};
    if (flags.clamp[1] && !flags.wrap[1] && outsideUnit(p.v)) return {input.map, false};

    bool valid = true;
    float x = p.u - sample.translate_frame_u;
    float y = p.v - sample.translate_frame_v;
    x = coveredAndRepeated(x, sample.coverage_u, sample.repeat_u, flags.wrap[0], flags.clamp[0], valid);
    y = coveredAndRepeated(y, sample.coverage_v, sample.repeat_v, flags.wrap[1], flags.clamp[1], valid);
    x += sample.offset_u;
    y += sample.offset_v;

    // Stagger moves U before the mirror in U looks at it.
    if ((flags.stagger || flags.mirror[1]) && inOddTile(y)) {
        if (flags.stagger) x += 0.5f;
        if (flags.mirror[1]) y = mirroredInTile(y);
    }
    if (flags.mirror[0] && inOddTile(x)) x = mirroredInTile(x);
    p = rotatedAboutCentre({x, y}, matrices.sinUV, matrices.cosUV);

    // Kept as is: the linear part holds neither noise, nor wrap, nor mirror.
    PlaceTransform result;
    for (int i = 0; i < 3; ++i)
        result.map.matrix.columns[i] = matrices.linear * input.map.matrix.columns[i];
    result.map.offset = {p.u, p.v, input.map.offset.z};
    result.valid = valid;
    return result;
}

} // namespace nezaiva
