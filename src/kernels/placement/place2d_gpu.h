// What the GPU is told of a placement.
#pragma once

#include "kernels/placement/place2d.h"

#include <cstdint>

namespace nezaiva {

// The parameter block, little-endian, as the GPU reads it.
struct UVParams {
    float coverage_u, coverage_v;
    float noise_u, noise_v;
    float offset_u, offset_v;
    float repeat_u, repeat_v;
    float rotate_frame, rotate_uv;
    float translate_frame_u, translate_frame_v;
    std::uint32_t flags; // from bit 0: wrap_u, wrap_v, mirror_u, mirror_v, clamp_u, clamp_v
    std::int32_t stagger;
    std::uint8_t reserved[24];
};
static_assert(sizeof(UVParams) == 80);

UVParams uvParams(const PlaceSample& sample, const PlaceFlags& flags);

// Rotation by rotate_uv about the centre, after the offset, after the repeat, after the frame's
// translation, after its rotation about the centre. Kept as is: coverage is not in it.
Transform gpuPlacement(const PlaceSample& sample);

} // namespace nezaiva
