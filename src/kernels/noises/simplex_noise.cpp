#include "kernels/noises/simplex_noise.h"

#include "kernels/noises/simplex_body.h"
#include "numeric/simd_dispatch.h"

#include <cmath>
#include <cstdint>

namespace nezaiva {

constinit const SimplexKernels simplexBase = kSimplexKernels;

namespace {

const SimplexKernels& kernels()
{
    return chosen(simplexBase, simplexAvx2);
}

constexpr float kSmallestScale = 0.0001f;
constexpr int kLanes = 4;

// The points of an octave do not depend on the noise of the one before, so that four octaves are
// evaluated together, one in each lane. The points come in through the last lane and push the others
// down: gathered in memory, the registers would have to wait for the stores.
class OctaveBlock {
public:
    void add(float x, float y)
    {
        m_x = pushed(m_x, x);
        m_y = pushed(m_y, y);
    }
    // The noise of the points, that of the last one in the last lane.
    void evaluate(float (&noise)[kLanes]) const { Float4(kernels().noiseOfFour(m_x.v, m_y.v)).store(noise); }

private:
    static Float4 pushed(Float4 lanes, float last)
    {
        const Float4 replaced = _mm_move_ss(lanes.v, _mm_set_ss(last));
        return shuffled<1, 2, 3, 0>(replaced, replaced);
    }

    Float4 m_x = 0.0f;
    Float4 m_y = 0.0f;
};

// powf without the call where every argument gives 1, which the usual parameters often hit.
float power(float base, float exponent)
{
    return base == 1.0f || exponent == 0.0f ? 1.0f : std::pow(base, exponent);
}

float clampToUnit(float value)
{
    return value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
}

// power with one exponent, kept from base to base: the usual frequency ratio of 1 never changes it.
class KeptPower {
public:
    explicit KeptPower(float exponent) : m_exponent(exponent) {}
    float of(float base)
    {
        if (base != m_base) {
            m_base = base;
            m_power = power(base, m_exponent);
        }
        return m_power;
    }

private:
    float m_exponent;
    float m_base = 1.0f;
    float m_power = 1.0f;
};

// The distortion of the octaves, one after the other.
class Distortion {
public:
    explicit Distortion(const SimplexOctaves& octaves)
        : m_u(octaves.distortionU), m_v(octaves.distortionV), m_ratio(octaves.distortionRatio)
    {
    }
    void next()
    {
        m_u *= m_ratio;
        m_v *= m_ratio;
    }
    float u() const { return m_u; }
    float v() const { return m_v; }

private:
    float m_u, m_v, m_ratio;
};

int blockLength(std::int64_t remaining)
{
    return static_cast<int>(remaining < kLanes ? remaining : kLanes);
}

} // namespace

float simplexNoise(float x, float y)
{
    return kernels().noise(x, y);
}

float simplexFractal(float x, float y, const SimplexOctaves& octaves)
{
    const std::int64_t terms = static_cast<std::int64_t>(octaves.octaves) + 1;
    Distortion distortion(octaves);
    float frequency = octaves.frequency;
    float amplitude = octaves.amplitude;
    float base = octaves.frequency;
    float sum = 0.0f;
    for (std::int64_t first = 0; first < terms; first += kLanes) {
        const int length = blockLength(terms - first);
        OctaveBlock block;
        for (int lane = 0; lane < length; ++lane) {
            distortion.next();
            block.add(x + distortion.u(), y + distortion.v());
            // Kept as is: the axes swap from octave to octave.
            const float swapped = y * frequency - 0.02f;
            y = 0.3f + x * frequency;
            x = swapped;
            frequency *= octaves.frequencyRatio;
        }
        float noises[kLanes];
        block.evaluate(noises);
        const float* const noise = noises + (kLanes - length);
        for (int lane = 0; lane < length; ++lane) {
            const float weight = power(base, -amplitude * static_cast<float>(first + lane));
            sum += noise[lane] * amplitude * weight;
            amplitude *= octaves.ratio;
            base *= octaves.frequencyRatio;
        }
    }
    return 0.5f + sum * 0.5f;
}

float simplexRidged(float x, float y, const SimplexOctaves& octaves)
{
    const std::int64_t terms = octaves.octaves > 1 ? octaves.octaves : 1;
    Distortion distortion(octaves);
    KeptPower falloff(-octaves.ratio);
    float frequency = octaves.frequency;
    float base = octaves.frequency;
    float signal = 0.0f;
    float sum = 0.0f;
    for (std::int64_t first = 0; first < terms; first += kLanes) {
        const int length = blockLength(terms - first);
        OctaveBlock block;
        for (int lane = 0; lane < length; ++lane) {
            if (first + lane == 0) { // the first term: no distortion, no scaling, no gain
                block.add(x, y);
                continue;
            }
            x *= frequency;
            y *= frequency;
            distortion.next();
            block.add(x + distortion.u(), y + distortion.v());
            frequency *= octaves.frequencyRatio;
        }
        float noises[kLanes];
        block.evaluate(noises);
        const float* const noise = noises + (kLanes - length);
        for (int lane = 0; lane < length; ++lane) {
            const float q = 1.0f - std::fabs(noise[lane]);
            if (first + lane == 0) {
                signal = q * q;
                sum = signal;
                continue;
            }
            signal = clampToUnit(signal * octaves.frequencyRatio) * (q * q);
            sum += falloff.of(base) * octaves.amplitude * signal;
            base *= octaves.frequencyRatio;
        }
    }
    return 0.5f + sum * 0.5f;
}

float simplexCellular(float x, float y, float amplitude, float frequency)
{
    return kernels().nearestFeature(x, y, frequency) * amplitude;
}

float simplexTexture(float u, float v, const SimplexTextureValues& values)
{
    const SimplexOctaves& octaves = values.octaves;
    const float scale = values.scale <= kSmallestScale ? 0.0f : values.scale;
    float x = u * scale;
    float y = v * scale;
    float r = 0.0f;
    switch (values.noiseType) {
    case kSimplexFractalNoise:
        r = simplexFractal(x, y, octaves);
        r = r > 0.0f ? r : 0.0f;
        break;
    case kSimplexCellularNoise:
        if (octaves.distortionRatio > 0.0f) {
            x += octaves.distortionU * octaves.distortionRatio;
            y += (octaves.distortionV + 0.2f) * octaves.distortionRatio;
        }
        r = simplexCellular(x, y, octaves.amplitude, octaves.frequency);
        break;
    case kSimplexRidgedNoise:
        r = simplexRidged(x, y, octaves);
        break;
    default:
        break;
    }
    r += values.threshold;
    // Kept as is: a gamma of 1 or more does nothing.
    if (values.gamma > 0.0f && values.gamma < 1.0f) r = std::pow(r, 1.0f / values.gamma);
    return r > 0.0f ? r : 0.0f;
}

} // namespace nezaiva
