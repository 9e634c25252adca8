#include "host/integrator/camera.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace ombrix;

CameraPose pose(Vector position, Vector target)
{
    CameraPose result;
    result.position = position;
    result.target = target;
    return result;
}

TEST(Camera, TheHorizontalAngleIsTheFieldOfView)
{
    CameraPose given = pose({0, 0, 5}, {0, 0, 0});
    given.fov = 60.0f;
    const Camera camera({given}, 200, 50);
    const Vector left = camera.ray(0, 25, 0).direction, right = camera.ray(200, 25, 0).direction;
    EXPECT_NEAR(std::acos(dot(left, right)), radians(60.0f), 1e-4f);
    EXPECT_LT(left.x, 0.0f);
    EXPECT_GT(right.x, 0.0f);
    EXPECT_GT(camera.ray(100, 0, 0).direction.y, 0.0f);
    EXPECT_NEAR(camera.ray(100, 25, 0).direction.z, -1.0f, 1e-6f);
}

TEST(Camera, DirectionChangesArePixelSteps)
{
    const Camera camera({pose({1, 2, 5}, {0, 0, 0})}, 64, 36);
    const CameraRay here = camera.ray(20, 10, 0), right = camera.ray(21, 10, 0),
                    below = camera.ray(20, 11, 0);
    EXPECT_LT(length(normalizedOr(here.direction + here.directionDx, {}) - right.direction), 1e-6f);
    EXPECT_LT(length(normalizedOr(here.direction + here.directionDy, {}) - below.direction), 1e-6f);
}

TEST(Camera, LookingAlongItsUpDirectionStillWorks)
{
    const Camera camera({pose({0, 5, 0}, {0, 0, 0})}, 10, 10);
    EXPECT_TRUE(isFinite(camera.ray(2, 3, 0).direction));
    EXPECT_NEAR(camera.ray(5, 5, 0).direction.y, -1.0f, 1e-6f);
    const Camera nowhere({pose({1, 1, 1}, {1, 1, 1})}, 10, 10);
    EXPECT_TRUE(isFinite(nowhere.ray(2, 3, 0).direction));
}

TEST(Camera, MovesBetweenItsPoses)
{
    const Camera camera({pose({0, 0, 5}, {0, 0, 0}), pose({2, 0, 5}, {2, 0, 0})}, 10, 10);
    EXPECT_NEAR(camera.ray(5, 5, 0.5f).origin.x, 1.0f, 1e-6f);
    EXPECT_NEAR(camera.ray(5, 5, 1.0f).origin.x, 2.0f, 1e-6f);
}

std::vector<Vector> boxCorners(Vector lower, Vector upper)
{
    const Box box{lower, upper};
    std::vector<Vector> points;
    for (int i = 0; i < 8; ++i)
        points.push_back(corner(box, i));
    return points;
}

// Where a point falls in the picture, 0 to 1 across and down.
std::pair<float, float> placeInPicture(const CameraPose& p, const Vector& point, int width, int height)
{
    const Vector forward = normalizedOr(*p.target - *p.position, {});
    const Vector right = normalizedOr(cross(forward, p.up), {}), up = cross(right, forward);
    const Vector way = point - *p.position;
    const float tangent = std::tan(radians(p.fov) * 0.5f), depth = dot(way, forward);
    const float x = dot(way, right) / (depth * tangent);
    const float y = dot(way, up) / (depth * tangent) * static_cast<float>(width) / static_cast<float>(height);
    return {0.5f + 0.5f * x, 0.5f - 0.5f * y};
}

TEST(Camera, FramesAllThatIsVisibleFromTheFrontAndAbove)
{
    for (const auto& [width, height] : {std::pair{640, 360}, {100, 400}, {300, 300}}) {
        const auto points = boxCorners({-3, 10, -1}, {9, 11, 5});
        const CameraPose framed = completePose({}, points, width, height);
        EXPECT_GT(framed.position->y, framed.target->y);
        EXPECT_GT(framed.position->z, 5.0f);
        EXPECT_NEAR(framed.position->x, 3.0f, 1e-4f);
        float widest = 0.0f;
        for (const Vector& point : points) {
            const auto [x, y] = placeInPicture(framed, point, width, height);
            EXPECT_GT(std::min(x, y), 0.0f);
            EXPECT_LT(std::max(x, y), 1.0f);
            widest = std::max({widest, std::fabs(x - 0.5f), std::fabs(y - 0.5f)});
        }
        // As near as it can be, but for a margin.
        EXPECT_GT(widest, 0.44f);
    }
}

TEST(Camera, CompletesWhatIsLeftUnset)
{
    const auto points = boxCorners({1, 1, 1}, {3, 3, 3});
    CameraPose given;
    given.position = Vector{0, 0, 50};
    const CameraPose looking = completePose(given, points, 10, 10);
    EXPECT_EQ(looking.target->x, 2.0f);
    EXPECT_EQ(looking.position->z, 50.0f);
    const CameraPose empty = completePose({}, {}, 10, 10);
    EXPECT_TRUE(isFinite(*empty.position));
    EXPECT_GT(length(*empty.position - *empty.target), 1.0f);
}

TEST(Camera, FieldsOfViewAreKeptWithinWhatCanBeSeen)
{
    EXPECT_EQ(clampedFov(400.0f), 179.999f);
    EXPECT_EQ(clampedFov(-3.0f), 0.001f);
    EXPECT_EQ(clampedFov(std::numeric_limits<float>::quiet_NaN()), 0.001f);
    for (const float kept : {0.005f, 40.0f, 179.5f})
        EXPECT_EQ(clampedFov(kept), kept);
}

} // namespace
