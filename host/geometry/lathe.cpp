#include "host/geometry/shapes.h"

namespace ombrix {

namespace {

// The grid of a turned outline: rings of positions, which close on themselves, and rings of coordinates,
// which have one column more.
struct Grid {
    const std::vector<LathePoint>& outline;
    int segments;
    std::vector<std::int32_t> firstPosition; // of each ring

    bool isPole(std::size_t ring) const { return outline[ring].radius == 0.0f; }
    std::int32_t position(std::size_t ring, int segment) const
    {
        return firstPosition[ring] + (isPole(ring) ? 0 : segment % segments);
    }
};

void addRings(MeshData& mesh, MapChannel& uvs, Grid& grid, bool closedOutline)
{
    const std::size_t rings = grid.outline.size();
    for (std::size_t ring = 0; ring < rings; ++ring) {
        const LathePoint& point = grid.outline[ring];
        grid.firstPosition.push_back(static_cast<std::int32_t>(mesh.positions.size()));
        const int count = grid.isPole(ring) ? 1 : grid.segments;
        for (int s = 0; s < count; ++s) {
            // The seam is at -z, and the angle grows to the right as seen from outside.
            const float angle = 2.0f * kPi * static_cast<float>(s) / static_cast<float>(grid.segments);
            mesh.positions.push_back(
                {-point.radius * std::sin(angle), point.height, -point.radius * std::cos(angle)});
        }
    }
    const std::size_t uvRings = closedOutline ? rings + 1 : rings;
    for (std::size_t ring = 0; ring < uvRings; ++ring) {
        const float v = ring < rings ? grid.outline[ring].v : 1.0f;
        for (int s = 0; s <= grid.segments; ++s)
            uvs.values.push_back({static_cast<float>(s) / static_cast<float>(grid.segments), v, 0.0f});
    }
}

void addTriangle(MeshData& mesh, MapChannel& uvs, const Corners& positions, const Corners& coordinates)
{
    if (positions[0] == positions[1] || positions[1] == positions[2] || positions[2] == positions[0]) return;
    mesh.triangles.push_back(positions);
    uvs.corners.push_back(coordinates);
}

} // namespace

MeshData turnOnLathe(const std::vector<LathePoint>& outline, int segments, bool closedOutline,
                     float creaseAngle)
{
    MeshData mesh;
    MapChannel uvs;
    uvs.name = "map1";
    Grid grid{outline, segments, {}};
    addRings(mesh, uvs, grid, closedOutline);

    const std::size_t rings = outline.size();
    const auto columns = static_cast<std::int32_t>(segments + 1);
    for (std::size_t ring = 0; ring + (closedOutline ? 0 : 1) < rings; ++ring) {
        const std::size_t above = (ring + 1) % rings;
        const auto row = static_cast<std::int32_t>(ring) * columns;
        for (int s = 0; s < segments; ++s) {
            const std::int32_t a = grid.position(ring, s), b = grid.position(ring, s + 1);
            const std::int32_t c = grid.position(above, s + 1), d = grid.position(above, s);
            const std::int32_t uvA = row + s, uvB = uvA + 1, uvC = uvB + columns, uvD = uvA + columns;
            addTriangle(mesh, uvs, {a, b, c}, {uvA, uvB, uvC});
            addTriangle(mesh, uvs, {a, c, d}, {uvA, uvC, uvD});
        }
    }
    addChannel(mesh, std::move(uvs));
    computeSmoothNormals(mesh, creaseAngle);
    computeBounds(mesh);
    return mesh;
}

} // namespace ombrix
