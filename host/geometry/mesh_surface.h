// Reading a mesh at a hit: corners, mapping channels and their affine maps.
#pragma once

#include "host/geometry/mesh_data.h"

#include <span>

namespace ombrix {

// The place of a triangle's corners in the world.
struct WorldTriangle {
    Vector origin;       // the first corner
    Vector edge1, edge2; // to the second and the third
};

inline WorldTriangle worldTriangle(const MeshData& mesh, const Transform& transform, std::size_t triangle)
{
    const Corners& corners = mesh.triangles[triangle];
    const Vector& a = mesh.positions[static_cast<std::size_t>(corners[0])];
    const Vector& b = mesh.positions[static_cast<std::size_t>(corners[1])];
    const Vector& c = mesh.positions[static_cast<std::size_t>(corners[2])];
    return {transformPoint(transform, a), transform.matrix * (b - a), transform.matrix * (c - a)};
}

// The transform at a place within the shutter interval, of samples evenly spread over it. A place
// outside 0 to 1 takes the nearest end. There is at least one sample.
inline Transform transformAt(std::span<const Transform> samples, float time)
{
    if (samples.size() == 1) return samples[0];
    const float scaled = time > 0.0f ? std::min(time, 1.0f) * static_cast<float>(samples.size() - 1) : 0.0f;
    const std::size_t before = std::min(static_cast<std::size_t>(scaled), samples.size() - 2);
    return mix(samples[before], samples[before + 1], scaled - static_cast<float>(before));
}

// The channel's value at a hit; corners without one count as (0, 0, 0).
Vector channelValue(const MapChannel& channel, std::size_t triangle, const float* barycentric);
// The weight of the hit's corners that hold no value.
float missingWeight(const MapChannel& channel, std::size_t triangle, const float* barycentric);

// The affine map from a displacement out of the hit point to the channel's value: exact on the
// triangle's plane, constant along its normal. A triangle without area gives linear part zero.
Transform channelTransform(const MapChannel& channel, std::size_t triangle, const float* barycentric,
                           const WorldTriangle& world);

} // namespace ombrix
