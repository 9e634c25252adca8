#include "host/geometry/shapes.h"

namespace ombrix {

namespace {

constexpr int kSegments = 128;
constexpr float kCrease = 40.0f;

// A grid of cells over the unit square of coordinates. place gives the position of (u, v).
template <class Place>
void addPatch(MeshData& mesh, MapChannel& uvs, int columns, int rows, Place place)
{
    const auto firstPosition = static_cast<std::int32_t>(mesh.positions.size());
    const auto firstUv = static_cast<std::int32_t>(uvs.values.size());
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const float u = static_cast<float>(column) / static_cast<float>(columns);
            const float v = static_cast<float>(row) / static_cast<float>(rows);
            mesh.positions.push_back(place(u, v));
            uvs.values.push_back({u, v, 0.0f});
        }
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const int a = row * (columns + 1) + column, b = a + 1, d = a + columns + 1, c = d + 1;
            for (const Corners& corners : {Corners{a, b, c}, Corners{a, c, d}}) {
                Corners positions, coordinates;
                for (std::size_t i = 0; i < 3; ++i) {
                    positions[i] = firstPosition + corners[i];
                    coordinates[i] = firstUv + corners[i];
                }
                mesh.triangles.push_back(positions);
                uvs.corners.push_back(coordinates);
            }
        }
    }
}

MeshData finished(MeshData mesh, MapChannel uvs, float crease)
{
    uvs.name = "map1";
    addChannel(mesh, std::move(uvs));
    computeSmoothNormals(mesh, crease);
    computeBounds(mesh);
    return mesh;
}

MeshData makeSphere()
{
    std::vector<LathePoint> outline;
    const int rings = kSegments / 2;
    for (int i = 0; i <= rings; ++i) {
        const float v = static_cast<float>(i) / static_cast<float>(rings);
        const bool pole = i == 0 || i == rings;
        outline.push_back({pole ? 0.0f : std::sin(kPi * v), -std::cos(kPi * v), v});
    }
    MeshData sphere = turnOnLathe(outline, kSegments, false, 180.0f);
    // On the unit sphere a position is its own normal.
    sphere.normals = sphere.positions;
    for (Vector& normal : sphere.normals)
        normal = normalizedOr(normal, normal);
    sphere.normalCorners = sphere.triangles;
    return sphere;
}

MeshData makeTorus()
{
    std::vector<LathePoint> outline;
    const int sides = kSegments / 2;
    for (int i = 0; i < sides; ++i) {
        // From the inside of the ring over its underside: upwards on the outside.
        const float v = static_cast<float>(i) / static_cast<float>(sides);
        const float angle = kPi + 2.0f * kPi * v;
        outline.push_back({0.75f + 0.25f * std::cos(angle), 0.25f * std::sin(angle), v});
    }
    return turnOnLathe(outline, kSegments, true, 180.0f);
}

MeshData makePlane()
{
    MeshData mesh;
    MapChannel uvs;
    addPatch(mesh, uvs, 1, 1, [](float u, float v) {
        return Vector{2.0f * u - 1.0f, 0.0f, 1.0f - 2.0f * v};
    });
    return finished(std::move(mesh), std::move(uvs), 0.0f);
}

MeshData makeCube()
{
    // The corners by bits: 1 for x, 2 for y, 4 for z. Each side from its lower left corner around.
    static constexpr int kSides[6][4] = {{4, 5, 7, 6}, {1, 0, 2, 3}, {5, 1, 3, 7},
                                         {0, 4, 6, 2}, {6, 7, 3, 2}, {0, 1, 5, 4}};
    MeshData mesh;
    MapChannel uvs;
    for (int i = 0; i < 8; ++i)
        mesh.positions.push_back({i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : -1.0f});
    uvs.values = {{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 0.0f}, {0.0f, 1.0f, 0.0f}};
    for (const auto& side : kSides) {
        for (const Corners& corners : {Corners{0, 1, 2}, Corners{0, 2, 3}}) {
            mesh.triangles.push_back({side[corners[0]], side[corners[1]], side[corners[2]]});
            uvs.corners.push_back(corners);
        }
    }
    return finished(std::move(mesh), std::move(uvs), kCrease);
}

// A floor, a quarter of a cylinder and a wall in one piece.
MeshData makeBackdrop()
{
    constexpr float kHalfWidth = 16.0f, kFront = 12.0f, kBack = -6.0f, kBend = 3.0f, kHeight = 14.0f;
    const float floorLength = kFront - (kBack + kBend), bendLength = 0.5f * kPi * kBend;
    const float total = floorLength + bendLength + (kHeight - kBend);
    MeshData mesh;
    MapChannel uvs;
    addPatch(mesh, uvs, 1, 240, [&](float u, float v) {
        const float x = (2.0f * u - 1.0f) * kHalfWidth;
        const float along = v * total;
        if (along <= floorLength) return Vector{x, 0.0f, kFront - along};
        if (along >= floorLength + bendLength)
            return Vector{x, kBend + along - floorLength - bendLength, kBack};
        const float angle = (along - floorLength) / kBend;
        return Vector{x, kBend - kBend * std::cos(angle), kBack + kBend - kBend * std::sin(angle)};
    });
    return finished(std::move(mesh), std::move(uvs), 180.0f);
}

void append(std::vector<LathePoint>& outline, const std::vector<LathePoint>& more)
{
    const bool joins = !outline.empty();
    outline.insert(outline.end(), more.begin() + (joins ? 1 : 0), more.end());
}

// One mesh after another, with indices moved up.
void append(MeshData& mesh, const MeshData& more)
{
    const auto moved = [](Corners corners, std::size_t by) {
        for (std::int32_t& index : corners)
            index += static_cast<std::int32_t>(by);
        return corners;
    };
    for (const Corners& corners : more.triangles)
        mesh.triangles.push_back(moved(corners, mesh.positions.size()));
    for (const Corners& corners : more.normalCorners)
        mesh.normalCorners.push_back(moved(corners, mesh.normals.size()));
    MapChannel& uvs = mesh.channels.front();
    for (const Corners& corners : more.channels.front().corners)
        uvs.corners.push_back(moved(corners, uvs.values.size()));
    mesh.positions.insert(mesh.positions.end(), more.positions.begin(), more.positions.end());
    mesh.normals.insert(mesh.normals.end(), more.normals.begin(), more.normals.end());
    uvs.values.insert(uvs.values.end(), more.channels.front().values.begin(),
                      more.channels.front().values.end());
    computeBounds(mesh);
}

MeshData makeShaderBall()
{
    std::vector<LathePoint> outline;
    for (const auto& piece : {shaderBallBaseOutline(), shaderBallLowerShellOutline(),
                              shaderBallGrooveOutline(), shaderBallUpperShellOutline()})
        append(outline, piece);
    // The coordinates of the whole follow the outline's length.
    float total = 0.0f;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (i > 0)
            total += std::hypot(outline[i].radius - outline[i - 1].radius,
                                outline[i].height - outline[i - 1].height);
        outline[i].v = total;
    }
    for (LathePoint& point : outline)
        point.v /= total;
    return turnOnLathe(outline, kSegments, false, kCrease);
}

MeshData makeParts(const std::vector<LathePoint>& lower, const std::vector<LathePoint>& upper)
{
    MeshData mesh = turnOnLathe(lower, kSegments, false, kCrease);
    append(mesh, turnOnLathe(upper, kSegments, false, kCrease));
    return mesh;
}

} // namespace

const char* shapeMetadata()
{
    return "enum=(0:none;1:sphere;2:plane;3:cube;4:torus;5:shaderball;6:shaderball_shell;7:shaderball_base;"
           "8:backdrop)";
}

MeshData makeShape(Shape shape)
{
    switch (shape) {
    case Shape::Sphere:
        return makeSphere();
    case Shape::Plane:
        return makePlane();
    case Shape::Cube:
        return makeCube();
    case Shape::Torus:
        return makeTorus();
    case Shape::ShaderBall:
        return makeShaderBall();
    case Shape::ShaderBallShell:
        return makeParts(shaderBallLowerShellOutline(), shaderBallUpperShellOutline());
    case Shape::ShaderBallBase:
        return makeParts(shaderBallBaseOutline(), shaderBallGrooveOutline());
    case Shape::Backdrop:
        return makeBackdrop();
    default:
        return {};
    }
}

} // namespace ombrix
