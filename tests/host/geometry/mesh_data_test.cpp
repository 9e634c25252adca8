#include "host/geometry/mesh_data.h"
#include "host/geometry/mesh_surface.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace ombrix;

MeshData triangle()
{
    MeshData mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.triangles = {{0, 1, 2}};
    return mesh;
}

// Two squares that share an edge along y and lean against one another by the given angle.
MeshData hinge(float degrees)
{
    const float a = radians(degrees);
    MeshData mesh;
    mesh.positions = {{0, 0, 0},
                      {0, 1, 0},
                      {-1, 0, 0},
                      {-1, 1, 0},
                      {std::cos(a), 0, -std::sin(a)},
                      {std::cos(a), 1, -std::sin(a)}};
    mesh.triangles = {{2, 0, 1}, {2, 1, 3}, {0, 4, 5}, {0, 5, 1}};
    return mesh;
}

TEST(MeshData, NamesWhatIsWrongWithIt)
{
    MeshData mesh;
    EXPECT_EQ(findMeshProblem(mesh), "it has no positions");
    mesh = triangle();
    EXPECT_EQ(findMeshProblem(mesh), "");
    mesh.triangles.clear();
    EXPECT_EQ(findMeshProblem(mesh), "it has no faces");
    mesh.triangles = {{0, 1, 2}, {0, 1, 3}};
    EXPECT_EQ(findMeshProblem(mesh),
              "triangle 1 refers to position 3, but there are 3 (indices count from 0)");
    mesh.triangles = {{-1, 1, 2}};
    EXPECT_NE(findMeshProblem(mesh), "");
    mesh = triangle();
    mesh.positions[2].y = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(findMeshProblem(mesh), "position 2 is not a finite number");
}

TEST(MeshData, AChannelHasToFitTheTriangles)
{
    MeshData mesh = triangle();
    addChannel(mesh, {1, "map1", {{0, 0, 0}}, {{0, 0, 1}}});
    EXPECT_NE(findMeshProblem(mesh), "");
    mesh.channels[0].corners = {};
    EXPECT_EQ(findMeshProblem(mesh), "map channel 1 has faces for 0 of 1 triangles");
    mesh.channels[0].corners = {{0, kNoValue, 0}};
    EXPECT_EQ(findMeshProblem(mesh), "");
}

TEST(MeshData, ChannelsAreFoundByNumberByNameAndAsTheLowest)
{
    MeshData mesh = triangle();
    addChannel(mesh, {7, "seven", {}, {}});
    addChannel(mesh, {3, "three", {}, {}});
    addChannel(mesh, {5, "five", {}, {}});
    addChannel(mesh, {5, "again", {}, {}});
    ASSERT_EQ(mesh.channels.size(), 3u);
    EXPECT_EQ(mesh.channel(-1)->number, 3);
    EXPECT_EQ(mesh.channel(5)->name, "again");
    EXPECT_EQ(mesh.channelNamed("seven")->number, 7);
    EXPECT_EQ(mesh.channel(4), nullptr);
    EXPECT_EQ(MeshData{}.channel(-1), nullptr);
}

TEST(MeshData, SmoothNormalsStopAtSharpEdges)
{
    MeshData soft = hinge(30), sharp = hinge(50);
    computeSmoothNormals(soft, 40);
    computeSmoothNormals(sharp, 40);
    // On the shared edge: the mean of (0, 0, 1) and the other side's (sin, 0, cos), which is half way.
    const Vector shared = soft.normals[static_cast<std::size_t>(soft.normalCorners[2][0])];
    EXPECT_NEAR(shared.x, std::sin(radians(15)), 0.01f);
    const Vector hard = sharp.normals[static_cast<std::size_t>(sharp.normalCorners[0][1])];
    EXPECT_NEAR(hard.x, 0.0f, 1e-6f);
    EXPECT_NEAR(hard.z, 1.0f, 1e-6f);
}

TEST(MeshData, DegenerateFacesDoNotSpoilNormals)
{
    MeshData mesh = triangle();
    mesh.triangles.push_back({0, 0, 1});
    computeSmoothNormals(mesh, 40);
    for (const std::int32_t corner : mesh.normalCorners[0])
        EXPECT_NEAR(mesh.normals[static_cast<std::size_t>(corner)].z, 1.0f, 1e-6f);
}

// A hundred thousand triangles in one point are done in an instant, not in hours.
TEST(MeshData, ManyTrianglesInOnePointTakeNoTime)
{
    MeshData mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.triangles.assign(100000, Corners{0, 0, 0});
    mesh.triangles.push_back({0, 1, 2});
    computeSmoothNormals(mesh, 40.0f);
    EXPECT_EQ(mesh.normals.back().z, 1.0f);
    EXPECT_EQ(mesh.normals.size(), 300003u);
}

TEST(MeshSurface, TheChannelsMapFollowsFiniteDifferences)
{
    MeshData mesh;
    mesh.positions = {{0.1f, 0.2f, 0.3f}, {1.4f, 0.1f, -0.2f}, {0.3f, 1.7f, 0.4f}};
    mesh.triangles = {{0, 1, 2}};
    const MapChannel channel{
        1, "map1", {{0.1f, 0.7f, 0.2f}, {0.9f, 0.3f, -0.4f}, {0.2f, 0.1f, 1.3f}}, {{0, 1, 2}}};
    Transform turned;
    turned.matrix = {{{0.0f, 2.0f, 0.0f}, {-1.5f, 0.0f, 0.2f}, {0.3f, 0.0f, 1.0f}}};
    turned.offset = {4.0f, -3.0f, 2.0f};
    const WorldTriangle world = worldTriangle(mesh, turned, 0);

    const float here[3] = {0.5f, 0.2f, 0.3f};
    const Transform map = channelTransform(channel, 0, here, world);
    const float step = 0.01f;
    const float places[2][3] = {{0.5f - step, 0.2f + step, 0.3f}, {0.5f - step, 0.2f, 0.3f + step}};
    for (int i = 0; i < 2; ++i) {
        const Vector moved = (i == 0 ? world.edge1 : world.edge2) * step;
        const Vector expected = channelValue(channel, 0, places[i]);
        const Vector got = map.matrix * moved + map.offset;
        EXPECT_NEAR(got.x, expected.x, 1e-6f);
        EXPECT_NEAR(got.y, expected.y, 1e-6f);
        EXPECT_NEAR(got.z, expected.z, 1e-6f);
    }
    // Off the surface nothing changes.
    const Vector away = map.matrix * cross(world.edge1, world.edge2);
    EXPECT_NEAR(largestComponent(away), 0.0f, 1e-5f);
}

TEST(MeshSurface, ATriangleWithoutAreaHasAConstantMap)
{
    MeshData mesh;
    mesh.positions = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}};
    mesh.triangles = {{0, 1, 2}};
    const MapChannel channel{1, "", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}};
    const float middle[3] = {0.25f, 0.25f, 0.5f};
    const Transform map = channelTransform(channel, 0, middle, worldTriangle(mesh, Transform{}, 0));
    EXPECT_EQ(largestComponent(map.matrix.columns[0]), 0.0f);
    EXPECT_SAME_BITS(map.offset.x, 0.25f);
    EXPECT_SAME_BITS(map.offset.y, 0.5f);
}

TEST(MeshSurface, CornersWithoutValueWeighAsMissing)
{
    const MapChannel channel{1, "", {{2, 2, 2}}, {{0, kNoValue, 0}}};
    const float place[3] = {0.5f, 0.25f, 0.25f};
    EXPECT_SAME_BITS(missingWeight(channel, 0, place), 0.25f);
    EXPECT_SAME_BITS(channelValue(channel, 0, place).x, 1.5f);
}

TEST(MeshSurface, TransformsAreInterpolatedBetweenSamples)
{
    Transform a, b, c;
    b.offset = {2, 0, 0};
    c.offset = {2, 4, 0};
    const Transform samples[] = {a, b, c};
    EXPECT_SAME_BITS(transformAt(samples, 0.25f).offset.x, 1.0f);
    EXPECT_SAME_BITS(transformAt(samples, 0.75f).offset.y, 2.0f);
    EXPECT_SAME_BITS(transformAt(samples, 1.0f).offset.y, 4.0f);
    EXPECT_SAME_BITS(transformAt(samples, 7.0f).offset.y, 4.0f);
    EXPECT_SAME_BITS(transformAt(samples, -1.0f).offset.x, 0.0f);
    EXPECT_SAME_BITS(transformAt(samples, std::numeric_limits<float>::quiet_NaN()).offset.x, 0.0f);
}

} // namespace
