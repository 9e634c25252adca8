#include "host/integrator/shading_point.h"

#include "host/geometry/mesh_surface.h"

namespace ombrix {

namespace {

constexpr float kLongestDifferential = 1e3f; // in lengths of that of a surface met head on

// The shading normal, and the geometric one for a mesh without normals.
Vector shadingNormal(const WorldNode& node, const Matrix& normalMatrix, std::size_t triangle,
                     const float* barycentric, const Vector& geometric)
{
    const MeshData& mesh = *node.mesh;
    if (mesh.normalCorners.empty()) return geometric;
    const Corners& corners = mesh.normalCorners[triangle];
    const Vector local = mesh.normals[static_cast<std::size_t>(corners[0])] * barycentric[0] +
                         mesh.normals[static_cast<std::size_t>(corners[1])] * barycentric[1] +
                         mesh.normals[static_cast<std::size_t>(corners[2])] * barycentric[2];
    Vector normal = normalizedOr(normalMatrix * local, geometric);
    if (node.mirrored) normal = negated(normal);
    // A normal of the other side says nothing about this one.
    return dot(normal, geometric) > 0.0f ? normal : geometric;
}

void fillWidths(HostContext& context)
{
    const float u = length(context.positionDiffU), v = length(context.positionDiffV);
    context.filterWidths[0] = u;
    context.filterWidths[1] = v;
    context.filterWidths[2] = context.filterWidths[3] = std::max(u, v);
}

} // namespace

void fillShadingPoint(HostContext& context, const WorldNode& node, const RayHit& hit, const Vector& direction,
                      float time)
{
    const bool still = node.samples.size() == 1;
    Transform between;
    if (!still) between = transformAt(node.samples, time);
    const Transform& transform = still ? node.samples[0] : between;

    const WorldTriangle world = worldTriangle(*node.mesh, transform, hit.triangle);
    context.shadePoint = world.origin + world.edge1 * hit.u + world.edge2 * hit.v;
    context.referencePoint = context.shadePoint;
    context.faceIndex = static_cast<std::int32_t>(hit.triangle);
    context.barycentric[0] = 1.0f - hit.u - hit.v;
    context.barycentric[1] = hit.u;
    context.barycentric[2] = hit.v;

    const Vector across = cross(world.edge1, world.edge2);
    context.geometricNormal = normalizedOr(node.mirrored ? negated(across) : across, negated(direction));
    context.normal = shadingNormal(node, still ? node.normalMatrix : cofactors(transform.matrix),
                                   hit.triangle, context.barycentric, context.geometricNormal);
    context.viewDirection = direction;
    context.rayTime = static_cast<double>(time);
    context.surfaceObject = node.node;
    context.hitInstance = node.node;
}

void fillCameraFootprint(HostContext& context, const Vector& eye, const Vector& direction, const Vector& dx,
                         const Vector& dy)
{
    // Where the neighbouring rays meet the plane of the hit.
    const Vector& n = context.geometricNormal;
    const Vector way = context.shadePoint - eye;
    const float height = dot(n, way), distance = length(way);
    const auto onPlane = [&](const Vector& change) {
        const Vector neighbour = direction + change;
        const Vector straight = change * distance;
        const float slope = dot(n, neighbour);
        const Vector met = neighbour * (height / slope) - way;
        const float longest = kLongestDifferential * kLongestDifferential * dot(straight, straight);
        return height * slope > 0.0f && dot(met, met) <= longest ? met : straight;
    };
    context.positionDiffU = onPlane(dx);
    context.positionDiffV = onPlane(dy);
    fillWidths(context);
}

void fillRoundFootprint(HostContext& context, float width)
{
    Vector tangent, bitangent;
    orthonormalFrame(context.geometricNormal, &tangent, &bitangent);
    context.positionDiffU = tangent * width;
    context.positionDiffV = bitangent * width;
    context.filterWidths[0] = context.filterWidths[1] = context.filterWidths[2] = context.filterWidths[3] =
        width;
}

} // namespace ombrix
