// The billow fractals, on lanes.
//
// Of the 27 cells around a point the eight that it is nearest to, two along each axis, are eight lanes.
// Twelve more lie far along one axis. The last seven lie far along two or three; they count for blobs
// of great randomness only.
#pragma once

#include "kernels/noises/volume/volume_billow_blobs.h"
#include "kernels/noises/volume/volume_kernels.h"

namespace nezaiva {
namespace {

// The blobs that lie far along two or three axes.
template <int Falloff, Motion Kind>
[[gnu::noinline]] Float8 cornerHeights3d(const float* space, const Blobs& blobs, const Places& places,
                                         int octave)
{
    const auto& [x, y, z] = around(places, octave);
    const int corner = y.far + x.far;
    const TwoGroups<FarQuads<OneQuad<true>>, Corners<true>> group{
        {{space + z.far + y.lower + x.far}, {space + z.far + y.far + x.lower}},
        {{space + z.own + corner, space + z.beside + corner, space + z.far + corner}}};
    const Float4 farX = Float4::load(places.farX[octave]);
    const Float4 farY = Float4::load(places.farY[octave]);
    const Float4 farZ = Float4::load(places.farZ[octave]);
    const Float4 cornersZ =
        Float4(places.ownZ[octave][0], places.besideZ[octave][0], places.farZ[octave][0], kNowhere);
    return heights<Falloff, Kind, true>(blobs, group, places.turns[octave], Float8(farX, spread<0>(farX)),
                                        Float8(farY, spread<3>(farY)), Float8(farZ, cornersZ));
}

template <int Falloff, Motion Kind>
[[gnu::always_inline]] inline float cellSum3d(const float* space, const Blobs& blobs, const Places& places,
                                              int octave)
{
    const auto& [x, y, z] = around(places, octave);
    const Turns& turns = places.turns[octave];
    const float* const own = space + z.own;
    const float* const beside = space + z.beside;
    const Float8 seenZ(Float4::load(places.ownZ[octave]), Float4::load(places.besideZ[octave]));
    const Float8 nearX = loadTwice(places.nearX[octave]);
    const Float8 nearY = loadTwice(places.nearY[octave]);

    const int near = y.lower + x.lower;
    const TwoQuads nearQuads{own + near, beside + near};
    Float8 sum = heights<Falloff, Kind, true>(blobs, nearQuads, turns, nearX, nearY, seenZ);
    if (!blobs.far) return sumOfLanes(sum);

    const int alongX = y.lower + x.far;
    const int alongY = y.far + x.lower;
    const FarQuads<TwoQuads> farQuads{{own + alongX, beside + alongX}, {own + alongY, beside + alongY}};
    sum = sum + heights<Falloff, Kind, true>(blobs, farQuads, turns, loadTwice(places.farX[octave]),
                                             loadTwice(places.farY[octave]), seenZ);
    const OneQuad<true> alongZ{space + z.far + near};
    const Float4 last = heights<Falloff, Kind, true>(blobs, alongZ, turns, lowHalf(nearX), lowHalf(nearY),
                                                     Float4::load(places.farZ[octave]));
    if (blobs.corners) sum = sum + cornerHeights3d<Falloff, Kind>(space, blobs, places, octave);
    return sumOfLanes((lowHalf(sum) + highHalf(sum)) + last);
}

template <int Falloff, Motion Kind>
[[gnu::always_inline]] inline float cellSum2d(const float* plane, const Blobs& blobs, const Places& places,
                                              int octave)
{
    const auto& [x, y, z] = around(places, octave);
    const Turns& turns = places.turns[octave];
    const TwoGroups<OneQuad<false>, FarQuads<OneQuad<false>>> group{
        {plane + y.lower + x.lower}, {{plane + y.lower + x.far}, {plane + y.far + x.lower}}};
    const Float8 seenX(Float4::load(places.nearX[octave]), Float4::load(places.farX[octave]));
    const Float8 seenY(Float4::load(places.nearY[octave]), Float4::load(places.farY[octave]));
    const Float8 sum = heights<Falloff, Kind, false>(blobs, group, turns, seenX, seenY, seenX);
    if (!blobs.corners) return sumOfLanes(sum);

    const float* const far = plane + y.far + x.far;
    const Float4 cornerX = Float4(places.farX[octave][0], kNowhere, kNowhere, kNowhere);
    const Float4 cornerY = Float4(places.farY[octave][3]);
    const Float4 corner = heights<Falloff, Kind, false>(blobs, Corners<false>{{far, far, far}}, turns,
                                                        cornerX, cornerY, cornerX);
    return sumOfLanes((lowHalf(sum) + highHalf(sum)) + corner);
}

template <int Falloff, Motion Kind, bool ThreeD>
[[gnu::noinline]] void sumCells(const VolumeTables& tables, const Blobs& blobs, int octaves, Places& places)
{
    for (int octave = 0; octave < octaves; ++octave) {
        if constexpr (ThreeD)
            places.sums[octave] =
                cellSum3d<Falloff, Kind>(tables.billow3d[0][0].fields[0], blobs, places, octave);
        else
            places.sums[octave] =
                cellSum2d<Falloff, Kind>(tables.billow2d[0][0].fields[0], blobs, places, octave);
    }
}

template <int Falloff, bool ThreeD>
void sumMovingCells(const VolumeTables& tables, const Blobs& blobs, Motion kind, int octaves, Places& places)
{
    switch (kind) {
    case Motion::None:
        return sumCells<Falloff, Motion::None, ThreeD>(tables, blobs, octaves, places);
    case Motion::Slow:
        return sumCells<Falloff, Motion::Slow, ThreeD>(tables, blobs, octaves, places);
    case Motion::Coarse:
        return sumCells<Falloff, Motion::Coarse, ThreeD>(tables, blobs, octaves, places);
    default:
        return sumCells<Falloff, Motion::Late, ThreeD>(tables, blobs, octaves, places);
    }
}

template <bool ThreeD>
void sumAnyCells(const VolumeTables& tables, const Blobs& blobs, int falloff, Motion kind, int octaves,
                 Places& places)
{
    constexpr int kNone = -1;
    switch (falloff) {
    case kBillowLinear:
        return sumMovingCells<kBillowLinear, ThreeD>(tables, blobs, kind, octaves, places);
    case kBillowSmooth:
        return sumMovingCells<kBillowSmooth, ThreeD>(tables, blobs, kind, octaves, places);
    case kBillowFast:
        return sumMovingCells<kBillowFast, ThreeD>(tables, blobs, kind, octaves, places);
    case kBillowBubble:
        return sumMovingCells<kBillowBubble, ThreeD>(tables, blobs, kind, octaves, places);
    default:
        return sumMovingCells<kNone, ThreeD>(tables, blobs, kind, octaves, places);
    }
}

// The octaves. Kept as is: in two dimensions time grows by the frequency ratio, in three by its root.
template <bool ThreeD>
float billow(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z, float time)
{
    const VolumeFractal& fractal = noise.fractal;
    const Blobs blobs = blobsOf(noise);
    const Float4 point = Float4(x, y, z, 0.0f);
    const float growth = fractal.frequencyRatio <= 0.0f ? 1.0f : fractal.frequencyRatio;
    Course course{Float8(point, point), Float4(0.0f), 1.0f, growth, time, ThreeD ? rootOf(growth) : growth};
    float amplitude = 1.0f;
    float total = 0.0f;
    float norm = 0.0f;
    Places places;
    for (int left = fractal.depthMax; left > 0; left -= kOctaves) {
        const int octaves = left < kOctaves ? left : kOctaves;
        if (blobs.dense) {
            placeOctaves(course, octaves, places);
            const Motion kind = turnOctaves(course, octaves, blobs.half, places);
            sumAnyCells<ThreeD>(tables, blobs, noise.falloff, kind, octaves, places);
        }
        for (int octave = 0; octave < octaves; ++octave) {
            float sum = blobs.dense ? places.sums[octave] : 0.0f;
            if (fractal.inflection && sum < 0.0f) sum = -sum;
            total += sum * amplitude;
            norm += amplitude;
            amplitude *= fractal.ratio;
        }
    }
    // Kept as is: no bias, whatever the inflection; without an octave this is 0 / 0.
    const float r = fractal.threshold + total * fractal.amplitude / norm;
    return r > 1.0f ? 1.0f : r;
}

inline float billow3d(const VolumeTables& tables, const BillowVolume& noise, const VolumePoint& point,
                      float time)
{
    return billow<true>(tables, noise, point.x, point.y, point.z, time);
}

inline float billow2d(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float time)
{
    return billow<false>(tables, noise, x, y, 0.0f, time);
}

constexpr VolumeKernels<BillowVolume> kBillowVolume{billow3d, billow2d};

} // namespace
} // namespace nezaiva
