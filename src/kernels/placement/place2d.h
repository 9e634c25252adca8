// Maya's 2D placement on plain values: from mapping coordinates to coordinates on the placed image.
//
// The chain is fixed: UV noise, frame rotation, frame translation, coverage and repeat, offset, stagger
// and mirror, UV rotation. All arithmetic is single precision but for the fractal sum of the noise. All
// functions are pure, allocate nothing and run on any thread.
#pragma once

#include "kernels/noises/perlin_noise.h"

#include <ombrix/types.h>

namespace nezaiva {

using namespace OUtils;

// The twelve numbers that a scene can animate or texture, in the order of their declaration. Angles are
// in radians.
struct PlaceSample {
    float coverage_u = 1.0f;
    float coverage_v = 1.0f;
    float translate_frame_u = 0.0f;
    float translate_frame_v = 0.0f;
    float rotate_frame = 0.0f;
    float repeat_u = 1.0f;
    float repeat_v = 1.0f;
    float offset_u = 0.0f;
    float offset_v = 0.0f;
    float rotate_uv = 0.0f;
    float noise_u = 0.0f;
    float noise_v = 0.0f;
};

// The same, for loops over them.
inline constexpr int kPlaceFieldCount = 12;
inline constexpr float PlaceSample::*kPlaceFields[kPlaceFieldCount] = {
    &PlaceSample::coverage_u,        &PlaceSample::coverage_v,   &PlaceSample::translate_frame_u,
    &PlaceSample::translate_frame_v, &PlaceSample::rotate_frame, &PlaceSample::repeat_u,
    &PlaceSample::repeat_v,          &PlaceSample::offset_u,     &PlaceSample::offset_v,
    &PlaceSample::rotate_uv,         &PlaceSample::noise_u,      &PlaceSample::noise_v};

// One flag an axis, index 0 for U and 1 for V.
struct PlaceFlags {
    bool wrap[2] = {true, true};
    bool clamp[2] = {false, false};
    bool mirror[2] = {false, false};
    bool stagger = false;
};

// What follows from the numbers alone.
struct PlaceMatrices {
    float sinFrame = 0.0f, cosFrame = 1.0f;
    float sinUV = 0.0f, cosUV = 1.0f;
    // Rotation by rotate_uv, times the scale of repeat over coverage, times rotation by rotate_frame.
    Matrix linear;
};
PlaceMatrices placeMatrices(const PlaceSample& sample);

// a / b where |a| < |b| 1e18, else 0: never infinite.
float guardedQuotient(float a, float b);

// A mapping and whether its point lies on the placed image.
struct PlaceTransform {
    Transform map;
    bool valid = true;
};

// Places a mapping. An input that is not valid, a coverage of nearly 0 on an axis and a point that a
// clamped, unwrapped axis rejects give the input back with valid false; a point off the image is placed
// all the same, with valid false.
PlaceTransform placed(const PlaceTransform& input, const PlaceSample& sample, const PlaceMatrices& matrices,
                      const PlaceFlags& flags, const NoiseParams& noise);

} // namespace nezaiva
