#include "host/rt/ray_scene.h"

#include "host/geometry/shapes.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace ombrix;

Ray ray(Vector origin, Vector direction, float time = 0.0f)
{
    Ray result;
    result.origin = origin;
    result.direction = direction;
    result.time = time;
    return result;
}

Transform moved(float x, float y, float z)
{
    Transform result;
    result.offset = {x, y, z};
    return result;
}

TEST(RayScene, AnEmptySceneIsNeverHit)
{
    RayScene scene;
    scene.commit();
    EXPECT_EQ(scene.intersect(ray({0, 0, 0}, {0, 0, -1})).instance, kNoHit);
    EXPECT_FALSE(scene.occluded(ray({0, 0, 0}, {0, 0, -1})));
}

TEST(RayScene, FindsTheNearestInstance)
{
    const MeshData cube = makeShape(Shape::Cube);
    RayScene scene;
    const Transform far = moved(0, 0, -10), near = moved(0, 0, -5);
    EXPECT_EQ(scene.addInstance(cube, {&far, 1}), 0u);
    EXPECT_EQ(scene.addInstance(cube, {&near, 1}), 1u);
    scene.commit();
    const RayHit hit = scene.intersect(ray({0.1f, 0.2f, 0}, {0, 0, -1}));
    EXPECT_EQ(hit.instance, 1u);
    EXPECT_NEAR(hit.distance, 4.0f, 1e-5f);
}

TEST(RayScene, WeightsAreThoseOfTheSecondAndThirdCorner)
{
    MeshData mesh;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.triangles = {{0, 1, 2}};
    RayScene scene;
    const Transform place;
    scene.addInstance(mesh, {&place, 1});
    scene.commit();
    const RayHit hit = scene.intersect(ray({0.2f, 0.3f, 1}, {0, 0, -1}));
    ASSERT_EQ(hit.instance, 0u);
    EXPECT_EQ(hit.triangle, 0u);
    EXPECT_NEAR(hit.u, 0.2f, 1e-6f);
    EXPECT_NEAR(hit.v, 0.3f, 1e-6f);
}

TEST(RayScene, OcclusionEndsAtTheRaysEnd)
{
    const MeshData cube = makeShape(Shape::Cube);
    RayScene scene;
    const Transform place = moved(0, 0, -5);
    scene.addInstance(cube, {&place, 1});
    scene.commit();
    Ray shot = ray({0, 0, 0}, {0, 0, -1});
    EXPECT_TRUE(scene.occluded(shot));
    shot.far = 3.9f;
    EXPECT_FALSE(scene.occluded(shot));
    EXPECT_EQ(scene.intersect(shot).instance, kNoHit);
}

TEST(RayScene, InstancesMoveWithTheTime)
{
    const MeshData cube = makeShape(Shape::Cube);
    RayScene scene;
    const Transform samples[] = {moved(0, 0, -5), moved(10, 0, -5), moved(10, 20, -5)};
    scene.addInstance(cube, samples);
    scene.commit();
    EXPECT_EQ(scene.intersect(ray({0, 0, 0}, {0, 0, -1}, 0.0f)).instance, 0u);
    EXPECT_EQ(scene.intersect(ray({0, 0, 0}, {0, 0, -1}, 0.5f)).instance, kNoHit);
    EXPECT_EQ(scene.intersect(ray({5, 0, 0}, {0, 0, -1}, 0.25f)).instance, 0u);
    EXPECT_EQ(scene.intersect(ray({10, 10, 0}, {0, 0, -1}, 0.75f)).instance, 0u);
    EXPECT_EQ(scene.intersect(ray({10, 20, 0}, {0, 0, -1}, 1.0f)).instance, 0u);
}

// A closed surface is crossed an even number of times, also along its edges.
TEST(RayScene, AClosedSurfaceHasNoCracks)
{
    const MeshData ball = makeShape(Shape::Sphere);
    RayScene scene;
    const Transform place;
    scene.addInstance(ball, {&place, 1});
    scene.commit();
    std::mt19937 random(1);
    std::uniform_real_distribution<float> number(0.01f, 0.99f);
    for (int i = 0; i < 100000; ++i) {
        // From the middle towards points of edges, where a ray could slip through.
        const Corners& t = ball.triangles[random() % ball.triangles.size()];
        const Vector& a = ball.positions[static_cast<std::size_t>(t[0])];
        const Vector& b = ball.positions[static_cast<std::size_t>(t[1])];
        const Vector to = mix(a, b, number(random));
        ASSERT_EQ(scene.intersect(ray({0, 0, 0}, to)).instance, 0u);
    }
}

TEST(RayScene, DegenerateTrianglesAreHarmless)
{
    MeshData mesh;
    mesh.positions = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 1, 1}};
    mesh.triangles = {{0, 1, 2}, {0, 0, 3}, {3, 3, 3}};
    RayScene scene;
    const Transform place;
    scene.addInstance(mesh, {&place, 1});
    scene.commit();
    scene.intersect(ray({0, 0, 5}, {0, 0, -1}));
    EXPECT_FALSE(scene.occluded(ray({3, 0, 5}, {0, 0, -1})));
}

} // namespace
