#include "host/geometry/mesh_surface.h"
#include "host/geometry/shapes.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace {

using namespace ombrix;

const Vector& position(const MeshData& mesh, std::size_t triangle, std::size_t corner)
{
    return mesh.positions[static_cast<std::size_t>(mesh.triangles[triangle][corner])];
}

// Each edge of a closed surface belongs to two triangles, once in each direction.
bool isClosed(const MeshData& mesh)
{
    std::map<std::pair<int, int>, int> edges;
    for (const Corners& t : mesh.triangles)
        for (std::size_t c = 0; c < 3; ++c)
            ++edges[{t[c], t[(c + 1) % 3]}];
    for (const auto& [edge, count] : edges)
        if (count != 1 || !edges.contains({edge.second, edge.first})) return false;
    return true;
}

double volume(const MeshData& mesh)
{
    double sum = 0;
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t)
        sum +=
            static_cast<double>(dot(position(mesh, t, 0), cross(position(mesh, t, 1), position(mesh, t, 2))));
    return sum / 6;
}

class Shapes : public testing::TestWithParam<Shape> {};

TEST_P(Shapes, HaveNoProblem)
{
    EXPECT_EQ(findMeshProblem(makeShape(GetParam())), "");
}

TEST_P(Shapes, AreClosedAndTurnedOutwards)
{
    const MeshData mesh = makeShape(GetParam());
    EXPECT_TRUE(isClosed(mesh));
    EXPECT_GT(volume(mesh), 0.5);
}

TEST_P(Shapes, HaveUnitNormalsOnTheSideOfTheirFaces)
{
    const MeshData mesh = makeShape(GetParam());
    ASSERT_EQ(mesh.normalCorners.size(), mesh.triangles.size());
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        const Vector face =
            cross(position(mesh, t, 1) - position(mesh, t, 0), position(mesh, t, 2) - position(mesh, t, 0));
        ASSERT_GT(length(face), 0.0f) << "triangle " << t;
        for (const std::int32_t corner : mesh.normalCorners[t]) {
            const Vector normal = mesh.normals[static_cast<std::size_t>(corner)];
            ASSERT_NEAR(length(normal), 1.0f, 1e-5f);
            ASSERT_GT(dot(normal, face), 0.0f) << "triangle " << t;
        }
    }
}

TEST_P(Shapes, HaveCoordinatesWithinTheUnitSquare)
{
    const MeshData mesh = makeShape(GetParam());
    const MapChannel* uvs = mesh.channelNamed("map1");
    ASSERT_NE(uvs, nullptr);
    EXPECT_EQ(uvs->number, 1);
    for (const Vector& uv : uvs->values) {
        ASSERT_TRUE(uv.x >= 0.0f && uv.x <= 1.0f && uv.y >= -1e-6f && uv.y <= 1.00001f)
            << uv.x << ' ' << uv.y;
    }
}

// Seen from outside, u runs to the right where v runs up: no shape shows its texture mirrored.
TEST_P(Shapes, DoNotMirrorTheirTextures)
{
    const MeshData mesh = makeShape(GetParam());
    const MapChannel& uvs = mesh.channels.front();
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        Vector uv[3];
        for (std::size_t c = 0; c < 3; ++c)
            uv[c] = uvs.values[static_cast<std::size_t>(uvs.corners[t][c])];
        ASSERT_GE(cross(uv[1] - uv[0], uv[2] - uv[0]).z, 0.0f) << "triangle " << t;
    }
}

INSTANTIATE_TEST_SUITE_P(Closed, Shapes,
                         testing::Values(Shape::Sphere, Shape::Cube, Shape::Torus, Shape::ShaderBall));

TEST(Shape, SphereIsTheUnitBall)
{
    const MeshData mesh = makeShape(Shape::Sphere);
    for (const Vector& p : mesh.positions)
        ASSERT_NEAR(length(p), 1.0f, 1e-6f);
    EXPECT_NEAR(volume(mesh), 4.18879, 0.01);
    // u = 0.5, v = 0.5 is the front, towards +z.
    const MapChannel& uvs = mesh.channels.front();
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t)
        for (std::size_t c = 0; c < 3; ++c) {
            const Vector uv = uvs.values[static_cast<std::size_t>(uvs.corners[t][c])];
            const bool front = std::fabs(uv.x - 0.5f) < 1e-4f && std::fabs(uv.y - 0.5f) < 1e-4f;
            ASSERT_TRUE(!front || std::fabs(position(mesh, t, c).z - 1.0f) < 1e-5f);
        }
}

TEST(Shape, TorusHasTheVolumeOfItsRadii)
{
    // 2 pi^2 R r^2 with R = 0.75 and r = 0.25
    EXPECT_NEAR(volume(makeShape(Shape::Torus)), 0.92528, 0.01);
}

TEST(Shape, CubeHasHardEdges)
{
    const MeshData mesh = makeShape(Shape::Cube);
    EXPECT_NEAR(volume(mesh), 8.0, 1e-6);
    for (const Vector& n : mesh.normals)
        EXPECT_NEAR(largestComponent(n), 1.0f, 1e-6f);
}

TEST(Shape, PlaneFacesUp)
{
    const MeshData mesh = makeShape(Shape::Plane);
    EXPECT_EQ(findMeshProblem(mesh), "");
    for (const Vector& n : mesh.normals)
        EXPECT_NEAR(n.y, 1.0f, 1e-6f);
    EXPECT_EQ(mesh.bounds.lower.x, -1.0f);
    EXPECT_EQ(mesh.bounds.upper.z, 1.0f);
}

TEST(Shape, TheShaderBallIsMadeOfItsParts)
{
    const MeshData ball = makeShape(Shape::ShaderBall);
    const MeshData shell = makeShape(Shape::ShaderBallShell), base = makeShape(Shape::ShaderBallBase);
    EXPECT_EQ(ball.triangles.size(), shell.triangles.size() + base.triangles.size());
    EXPECT_NEAR(volume(ball), volume(shell) + volume(base), 1e-3);
    EXPECT_NEAR(ball.bounds.lower.y, -1.35f, 1e-5f);
    EXPECT_NEAR(ball.bounds.upper.y, 1.0f, 1e-5f);
}

TEST(Shape, BackdropFacesItsInside)
{
    const MeshData mesh = makeShape(Shape::Backdrop);
    EXPECT_EQ(findMeshProblem(mesh), "");
    for (const Vector& n : mesh.normals)
        ASSERT_TRUE(n.y > 0.0f || n.z > 0.0f);
}

TEST(Shape, ANumberThatIsNoneGivesNothing)
{
    EXPECT_TRUE(makeShape(Shape::None).positions.empty());
    EXPECT_TRUE(makeShape(static_cast<Shape>(99)).positions.empty());
    EXPECT_TRUE(makeShape(static_cast<Shape>(-1)).positions.empty());
}

} // namespace
