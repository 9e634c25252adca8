#include "host/geometry/mesh_surface.h"

namespace ombrix {

namespace {

Vector cornerValue(const MapChannel& channel, std::int32_t index)
{
    return index == kNoValue ? Vector{} : channel.values[static_cast<std::size_t>(index)];
}

} // namespace

Vector channelValue(const MapChannel& channel, std::size_t triangle, const float* barycentric)
{
    Vector result;
    for (std::size_t c = 0; c < 3; ++c)
        result = result + cornerValue(channel, channel.corners[triangle][c]) * barycentric[c];
    return result;
}

float missingWeight(const MapChannel& channel, std::size_t triangle, const float* barycentric)
{
    float weight = 0.0f;
    for (std::size_t c = 0; c < 3; ++c)
        if (channel.corners[triangle][c] == kNoValue) weight += barycentric[c];
    return weight;
}

Transform channelTransform(const MapChannel& channel, std::size_t triangle, const float* barycentric,
                           const WorldTriangle& world)
{
    Transform result;
    result.offset = channelValue(channel, triangle, barycentric);

    // A displacement d on the plane is edge1 (dual1 . d) + edge2 (dual2 . d), with the duals of the edges.
    const Vector normal = cross(world.edge1, world.edge2);
    const float squared = dot(normal, normal);
    Vector dual1, dual2;
    if (squared > 0.0f) {
        dual1 = cross(world.edge2, normal);
        dual2 = cross(normal, world.edge1);
        const float scale = 1.0f / squared;
        dual1 = std::isfinite(scale) ? dual1 * scale : Vector{};
        dual2 = std::isfinite(scale) ? dual2 * scale : Vector{};
    }
    const Corners& corners = channel.corners[triangle];
    const Vector first = cornerValue(channel, corners[0]);
    const Vector along1 = cornerValue(channel, corners[1]) - first;
    const Vector along2 = cornerValue(channel, corners[2]) - first;
    result.matrix.columns[0] = along1 * dual1.x + along2 * dual2.x;
    result.matrix.columns[1] = along1 * dual1.y + along2 * dual2.y;
    result.matrix.columns[2] = along1 * dual1.z + along2 * dual2.z;
    return result;
}

} // namespace ombrix
