// The volume noises written down plainly: one operation after the other, every direction and every
// angle computed anew, sines from the maths library. The oracle of the tests and the peer of the
// benchmarks; it shares the records and the random table with the kernels, and no arithmetic.
#pragma once

#include "kernels/noises/volume/volume_placement.h"
#include "support/plain_volume_lattice.h"

#include <cmath>
#include <cstdint>

namespace plain {

using nezaiva::BillowVolume;
using nezaiva::CosineVolume;
using nezaiva::PerlinVolume;
using nezaiva::VolumePlacement;
using nezaiva::VolumePoint;

// Warp and scale.

inline float orTiny(float component)
{
    return component == 0.0f ? 1e-6f : component;
}

inline VolumePoint place(const VolumePlacement& placement, VolumePoint p, bool three)
{
    if (std::fabs(placement.implode) > 1e-6f && placement.hasImplodeCenter) {
        const VolumePoint c = placement.implodeCenter;
        const VolumePoint d{p.x - c.x, p.y - c.y, three ? p.z - c.z : 0.0f};
        const float r = std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
        const float k = std::pow(r, -placement.implode);
        p = {d.x * k + c.x, d.y * k + c.y, three ? d.z * k + c.z : p.z};
    }
    const float f = placement.frequencyFactor;
    VolumePoint q{p.x * f, p.y * f, p.z * f};
    if (placement.hasScale) {
        q = {q.x / orTiny(placement.scale.x), q.y / orTiny(placement.scale.y),
             q.z / orTiny(placement.scale.z)};
    }
    if (placement.hasOrigin) {
        q = {q.x + placement.origin.x, q.y + placement.origin.y, q.z + placement.origin.z};
    }
    return three ? q : VolumePoint{q.x, q.y, p.z};
}

inline float lacunarity(const nezaiva::VolumeFractal& fractal)
{
    return fractal.frequencyRatio <= 0.0f ? 1.0f : fractal.frequencyRatio;
}

inline float capped(float r)
{
    return r > 1.0f ? 1.0f : r;
}

// A direction from the table at n and behind; n is left where the search ended.

inline VolumePoint direction3(int& n)
{
    for (;; n += 3) {
        const float a = randomValue(n), b = randomValue(n + 1), c = randomValue(n + 2);
        const float length = std::sqrt(a * a + b * b + c * c);
        if (length > 0.0f) return {a / length, b / length, c / length};
    }
}

inline VolumePoint direction2(int& n)
{
    for (;; n += 2) {
        const float a = randomValue(n), b = randomValue(n + 1);
        const float length = std::sqrt(a * a + b * b);
        if (length > 0.0f) return {a / length, b / length, 0.0f};
    }
}

inline VolumePoint levelDirection3(int level)
{
    int n = static_cast<std::int16_t>(level) * 10;
    return direction3(n);
}

inline VolumePoint levelDirection2(int level)
{
    int n = static_cast<std::int16_t>(level) * 10;
    return direction2(n);
}

// Perlin and space-time.

inline float perlinLevel3d(const PerlinVolume& noise, VolumePoint p, float t, int level)
{
    if (noise.spaceTime) return latticeNoise4(p.x, p.y, p.z, t * 0.1f, noise.timePeriod);
    if (noise.timeNoise) return latticeNoise4(p.x, p.y, p.z, t, noise.timePeriod);
    const VolumePoint dir = levelDirection3(level);
    const float s = 0.0625f * t + static_cast<float>(level) * 0.5f;
    return latticeNoise3(p.x + dir.x * s, p.y + dir.y * s, p.z + s * dir.z);
}

inline float perlinLevel2d(const PerlinVolume& noise, float x, float y, float t, int level)
{
    if (noise.spaceTime) return latticeNoise3(x, y, t * 0.1f);
    const VolumePoint dir = levelDirection2(level);
    const float s = t * 0.0625f + static_cast<float>(level) * 0.5f;
    return latticeNoise2(x + dir.x * s, y + dir.y * s);
}

inline float perlinEnd(const PerlinVolume& noise, float sum)
{
    const float threshold = noise.fractal.threshold;
    return capped(noise.fractal.inflection ? sum + threshold : sum * 0.5f + 0.5f + threshold);
}

inline float perlin3d(const PerlinVolume& noise, VolumePoint p, float t)
{
    const float L = lacunarity(noise.fractal);
    float amp = noise.fractal.amplitude, sum = 0.0f;
    float sx = 0.0f, sy = 0.0f, sz = 0.0f;
    float x = p.x, y = p.y, z = p.z;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        sx += 0.02f;
        sy += 0.3f;
        sz += 0.01f;
        VolumePoint q{x + sx, y + sy, z + sz};
        float v;
        if (!noise.wispy) {
            v = plain::perlinLevel3d(noise, q, t, level);
        } else {
            const VolumePoint dir = levelDirection3(level);
            const float s = t * 0.01875f + static_cast<float>(level) * 0.5f;
            const float w =
                latticeNoise3(q.x * 0.1f + s * dir.x, q.y * 0.1f + s * dir.y, q.z * 0.1f + s * dir.z) *
                0.3125f;
            x += dir.x * w * 0.5f;
            y += dir.y * w * 0.5f;
            z += dir.z * w * 0.5f;
            q = {q.x + dir.x * w, q.y + dir.y * w, q.z + dir.z * w};
            v = noise.timeNoise ? latticeNoise4(q.x, q.y, q.z, t, noise.timePeriod)
                                : latticeNoise3(q.x, q.y, q.z);
        }
        if (noise.fractal.inflection) v = std::fabs(v);
        sum += v * amp;
        amp *= noise.fractal.ratio;
        x *= L;
        y *= L;
        z *= L;
        t *= std::sqrt(L);
    }
    return perlinEnd(noise, sum);
}

inline float perlin2d(const PerlinVolume& noise, float x, float y, float t)
{
    const float L = lacunarity(noise.fractal);
    float amp = noise.fractal.amplitude, sum = 0.0f;
    float sx = 0.0f, sy = 0.0f;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        sx += 0.02f;
        sy += 0.3f;
        float qx = x + sx, qy = y + sy;
        float v;
        if (!noise.wispy) {
            v = plain::perlinLevel2d(noise, qx, qy, t, level);
        } else {
            const VolumePoint dir = levelDirection2(level);
            const float s = t * 0.01875f + static_cast<float>(level) * 0.5f;
            const float w = latticeNoise2(qx * 0.1f + s * dir.x, qy * 0.1f + s * dir.y) * 0.3125f;
            x += dir.x * w * 0.5f;
            y += dir.y * w * 0.5f;
            qx += dir.x * w;
            qy += dir.y * w;
            v = noise.timeNoise ? latticeNoise3(qx, qy, t) : latticeNoise2(qx, qy);
        }
        if (noise.fractal.inflection) v = std::fabs(v);
        sum += v * amp;
        amp *= noise.fractal.ratio;
        x *= L;
        y *= L;
        t *= std::sqrt(L);
    }
    return perlinEnd(noise, sum);
}

// Billow.

inline Cell billowCell(float value)
{
    const float fraction = value - std::floor(value);
    const float c = std::isfinite(value) ? fraction * 20.0f : 0.0f;
    const int index = static_cast<int>(c);
    return {index, c - static_cast<float>(index) - 0.5f};
}

inline int wrapped20(int index)
{
    if (index < 0) return index + 20;
    return index >= 20 ? index - 20 : index;
}

struct BillowTerms {
    float dens, half, inv, spot, size;
    int falloff;
};

inline BillowTerms billowTerms(const BillowVolume& noise)
{
    float dens = noise.density;
    if (2.0f - noise.randomness < dens) dens = 2.0f - noise.randomness;
    return {dens, noise.randomness * 0.5f, 2.0f / dens, noise.spottyness, noise.sizeRand, noise.falloff};
}

inline float billowAngle(int index, float turn)
{
    return randomValue(index) * 6.2831855f + turn;
}

// Adds one blob to the cell sum. D is the squared distance times inv; v keeps its value from blob to
// blob when the fall-off is none of the four.
inline void addBlob(const BillowTerms& terms, float D, int sizeIndex, int spotIndex, float& v, float& cellSum)
{
    if (terms.size > 0.0f) {
        D = D / ((randomValue(sizeIndex) + 1.0f) * (terms.size * 0.5f) + (1.0f - terms.size));
    }
    if (!(D < 1.0f)) return;
    switch (terms.falloff) {
    case 0:
        v = 1.0f - std::sqrt(D);
        break;
    case 1:
        v = D * (2.0f * std::sqrt(D) - 3.0f) + 1.0f;
        break;
    case 2:
        v = 1.0f - D;
        break;
    case 3: {
        const float E = D * 1.1f;
        v = E <= 1.0f ? E : 1.0f - (E - 1.0f) * 10.0f;
        break;
    }
    default:
        break;
    }
    if (terms.spot > 0.0f) v *= (randomValue(spotIndex) + 1.0f) * terms.spot + (1.0f - terms.spot);
    cellSum += v;
}

inline float billow3d(const BillowVolume& noise, VolumePoint p, float t)
{
    const float L = lacunarity(noise.fractal);
    const BillowTerms terms = billowTerms(noise);
    float fx = 1.0f, fy = 1.0f, fz = 1.0f, sx = 0.0f, sy = 0.0f, sz = 0.0f;
    float amp = 1.0f, total = 0.0f, norm = 0.0f;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        sx += 0.021f;
        sy += 0.33f;
        sz += 0.011f;
        const Cell cx = billowCell(p.x * fx + sx), cy = billowCell(p.y * fy + sy),
                   cz = billowCell(p.z * fz + sz);
        float cellSum = 0.0f, v = 0.0f;
        if (!(terms.dens < 0.0001f)) {
            for (int k = -1; k <= 1; ++k) {
                for (int j = -1; j <= 1; ++j) {
                    for (int i = -1; i <= 1; ++i) {
                        const int b = wrapped20(cz.index + k) * 400 + wrapped20(cy.index + j) * 20 +
                                      wrapped20(cx.index + i);
                        const float dx = (cx.fraction - static_cast<float>(i)) -
                                         std::sin(billowAngle(b, 2.0f * t)) * terms.half;
                        const float dy = (cy.fraction - static_cast<float>(j)) -
                                         std::cos(billowAngle(b + 1, 1.5f * t)) * terms.half;
                        const float dz = (cz.fraction - static_cast<float>(k)) -
                                         std::cos(billowAngle(b + 2, t)) * terms.half;
                        addBlob(terms, (dx * dx + dy * dy + dz * dz) * terms.inv, b + 3, b + 4, v, cellSum);
                    }
                }
            }
        }
        if (noise.fractal.inflection) cellSum = std::fabs(cellSum);
        total += cellSum * amp;
        norm += amp;
        amp *= noise.fractal.ratio;
        fx *= L;
        fy *= L;
        fz *= L;
        t *= std::sqrt(L);
    }
    return capped(noise.fractal.threshold + total * noise.fractal.amplitude / norm);
}

inline float billow2d(const BillowVolume& noise, float x, float y, float t)
{
    const float L = lacunarity(noise.fractal);
    const BillowTerms terms = billowTerms(noise);
    float fx = 1.0f, fy = 1.0f, sx = 0.0f, sy = 0.0f;
    float amp = 1.0f, total = 0.0f, norm = 0.0f;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        sx += 0.021f;
        sy += 0.33f;
        const Cell cx = billowCell(x * fx + sx), cy = billowCell(y * fy + sy);
        float cellSum = 0.0f, v = 0.0f;
        if (!(terms.dens < 0.0001f)) {
            for (int j = -1; j <= 1; ++j) {
                for (int i = -1; i <= 1; ++i) {
                    const int b = wrapped20(cy.index + j) * 20 + wrapped20(cx.index + i);
                    const float dx = (cx.fraction - static_cast<float>(i)) -
                                     std::sin(billowAngle(b, 2.0f * t)) * terms.half;
                    const float dy = (cy.fraction - static_cast<float>(j)) -
                                     std::cos(billowAngle(b + 1, 1.5f * t)) * terms.half;
                    addBlob(terms, (dx * dx + dy * dy) * terms.inv, b + 2, b + 3, v, cellSum);
                }
            }
        }
        if (noise.fractal.inflection) cellSum = std::fabs(cellSum);
        total += cellSum * amp;
        norm += amp;
        amp *= noise.fractal.ratio;
        fx *= L;
        fy *= L;
        t *= L;
    }
    return capped(noise.fractal.threshold + total * noise.fractal.amplitude / norm);
}

// Cosine.

constexpr float kPi = 3.1415927f;
constexpr float kTwoPi = 6.2831855f;

inline float cosine3d(const CosineVolume& noise, VolumePoint p, float t)
{
    const float L = lacunarity(noise.fractal);
    const int waves = static_cast<std::int16_t>(noise.numWaves);
    const float X0 = p.x - 0.021f, Y0 = p.y - 0.33f, Z0 = p.z - 0.011f;
    float fx = 1.0f, fy = 1.0f, fz = 1.0f, sx = 0.0f, sy = 0.0f, sz = 0.0f;
    float amp = 1.0f, sum = 0.0f, norm = 0.0f;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        sx += 0.021f;
        sy += 0.33f;
        sz += 0.011f;
        int n = static_cast<std::int16_t>(level) * 50;
        float value = 0.0f;
        for (int wave = 0; wave < waves; ++wave) {
            const VolumePoint dir = direction3(n);
            const float ph = randomValue(n + 3);
            n += 4;
            value += std::cos(ph * kPi + t * kPi + dir.x * (X0 * fx + sx) * kTwoPi +
                              dir.y * (Y0 * fy + sy) * kTwoPi + dir.z * ((Z0 * fz + sz) * kTwoPi));
        }
        value /= static_cast<float>(waves);
        if (noise.fractal.inflection) value = std::fabs(value);
        sum += value * amp;
        norm += amp;
        amp *= noise.fractal.ratio;
        fx *= L;
        fy *= L;
        fz *= L;
        t *= std::sqrt(L);
    }
    const float threshold = noise.fractal.threshold, amplitude = noise.fractal.amplitude;
    return capped(noise.fractal.inflection ? threshold + sum * 2.3f * amplitude / norm
                                           : threshold + 0.5f + sum * amplitude / norm);
}

inline float cosine2d(const CosineVolume& noise, float x, float y, float t)
{
    const float L = lacunarity(noise.fractal);
    const int waves = static_cast<std::int16_t>(noise.numWaves);
    float amp = noise.fractal.amplitude, sum = 0.0f;
    for (int level = 0; level < noise.fractal.depthMax; ++level) {
        int n = static_cast<std::int16_t>(level) * 50;
        float value = 0.0f;
        for (int wave = 0; wave < waves; ++wave) {
            const VolumePoint dir = direction2(n);
            const float ph = randomValue(n + 2);
            n += 3;
            value += std::cos(ph * kPi + t * kPi + dir.x * x * kTwoPi + dir.y * y * kTwoPi);
        }
        value /= static_cast<float>(waves);
        if (noise.fractal.inflection) value = std::fabs(value);
        sum += value * amp;
        amp *= noise.fractal.ratio;
        x *= L;
        y *= L;
        t *= std::sqrt(L);
    }
    const float threshold = noise.fractal.threshold;
    return capped(noise.fractal.inflection ? sum + threshold : sum * 0.5f + 0.5f + threshold);
}

} // namespace plain
