#include "host/builtin/projection.h"

#include "support/plain_projection.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace ombrix;
using namespace support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr double kHalf = 0.5;

void expectUV(const ProjectedPoint& point, double u, double v)
{
    EXPECT_NEAR(point.u, u, 1e-6);
    EXPECT_NEAR(point.v, v, 1e-6);
}

PlainPoint plain(const Vector& v)
{
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

struct Kind {
    const char* name;
    std::function<ProjectedPoint(const Vector&)> projection;
    PlainProjection twin;
};

// Normals away from ties, so that a twin cannot take another axis.
const Vector kNormals[] = {{-0.9f, 0.3f, 0.1f}, {0.2f, 0.7f, -0.4f}, {0.1f, 0.2f, -0.5f}};

std::vector<Kind> kinds()
{
    std::vector<Kind> all = {
        {"planar", projectPlanar, plainPlanar},
        {"ball", projectBall, plainBall},
        {"cubic", projectCubic, plainCubic},
    };
    for (double angle : {30.0, 180.0, 360.0}) {
        const auto u = static_cast<float>(angle), v = static_cast<float>(angle / 2);
        all.push_back({"spherical",
                       [u, v](const Vector& p) { return projectSpherical(p, radians(u), radians(v)); },
                       [angle](const PlainPoint& p) { return plainSpherical(p, angle, angle / 2); }});
        all.push_back({"cylindrical", [u](const Vector& p) { return projectCylindrical(p, radians(u)); },
                       [angle](const PlainPoint& p) { return plainCylindrical(p, angle); }});
    }
    for (const Vector& normal : kNormals)
        all.push_back({"triplanar", [normal](const Vector& p) { return projectTriPlanar(p, normal); },
                       [normal](const PlainPoint& p) { return plainTriPlanar(p, plain(normal)); }});
    return all;
}

// A point at least a tenth away from every axis, every diagonal plane and the back of the circle.
Vector awayFromSeams(std::mt19937& random)
{
    std::uniform_real_distribution<float> coordinate(-2.0f, 2.0f);
    for (;;) {
        const Vector p{coordinate(random), coordinate(random), coordinate(random)};
        const float x = std::fabs(p.x), y = std::fabs(p.y), z = std::fabs(p.z);
        if (std::min({x, y, z}) > 0.1f &&
            std::min({std::fabs(x - y), std::fabs(y - z), std::fabs(x - z)}) > 0.1f)
            return p;
    }
}

} // namespace

TEST(Projection, PlanarShowsTheSquareAtAnyDepth)
{
    for (float z : {-100.0f, 0.0f, 1.0f}) {
        expectUV(projectPlanar({-1, -1, z}), 0, 0);
        expectUV(projectPlanar({1, 1, z}), 1, 1);
        expectUV(projectPlanar({0.5f, -0.5f, z}), 0.75, 0.25);
        expectUV(projectPlanar({3, 0, z}), 2, 0.5);
    }
}

TEST(Projection, SphericalSpansItsAnglesAroundTheFront)
{
    const auto at = [](const Vector& p) { return projectSpherical(p, kPi, kPi / 2); };
    expectUV(at({0, 0, 2}), 0.5, 0.5);
    expectUV(at({3, 0, 0}), 1, 0.5);
    expectUV(at({-3, 0, 0}), 0, 0.5);
    expectUV(at({0, 1, 1}), 0.5, 1);
    expectUV(at({0, -1, 1}), 0.5, 0);
    expectUV(at({0, 5, 0}), 0.5, 1.5);
    expectUV(projectSpherical({0, 5, 0}, kPi, kPi), 0.5, 1);
    // The back, from both sides.
    expectUV(projectSpherical({1e-6f, 0, -1}, 2 * kPi, kPi), 1, 0.5);
    expectUV(projectSpherical({-1e-6f, 0, -1}, 2 * kPi, kPi), 0, 0.5);
}

TEST(Projection, CylindricalRunsAlongItsAxis)
{
    const auto at = [](const Vector& p) { return projectCylindrical(p, kPi); };
    expectUV(at({0, 0, 9}), 0.5, 0.5);
    expectUV(at({9, 1, 0}), 1, 1);
    expectUV(at({-9, -1, 0}), 0, 0);
    expectUV(at({1, 3, 1}), 0.75, 2);
}

TEST(Projection, BallGathersACircleAtTheBack)
{
    expectUV(projectBall({0, 0, 4}), 0.5, 0.5);
    expectUV(projectBall({4, 0, 0}), 0.75, 0.5);
    expectUV(projectBall({0, -4, 0}), 0.5, 0.25);
    expectUV(projectBall({1, 1, 0}), 0.5 + 0.25 * std::sqrt(kHalf), 0.5 + 0.25 * std::sqrt(kHalf));
    expectUV(projectBall({-1e-6f, 0, -1}), 0, 0.5);
    expectUV(projectBall({0, 1e-6f, -1}), 0.5, 1);
    expectUV(projectBall({0, 0, -1}), 1, 0.5);
}

TEST(Projection, CubicShowsEverySideTheRightWayRound)
{
    // The upper right quarter of each side as it is seen from outside.
    expectUV(projectCubic({0.5f, 0.5f, 1}), 0.75, 0.75);
    expectUV(projectCubic({-0.5f, 0.5f, -1}), 0.75, 0.75);
    expectUV(projectCubic({1, 0.5f, -0.5f}), 0.75, 0.75);
    expectUV(projectCubic({-1, 0.5f, 0.5f}), 0.75, 0.75);
    expectUV(projectCubic({0.5f, 1, -0.5f}), 0.75, 0.75);
    expectUV(projectCubic({0.5f, -1, 0.5f}), 0.75, 0.75);
}

TEST(Projection, CubicPrefersXThenYOnAnEdge)
{
    expectUV(projectCubic({1, 1, 0.5f}), 0.25, 1);
    expectUV(projectCubic({0.5f, 1, 1}), 0.75, 0);
    expectUV(projectCubic({1, 1, 1}), 0, 1);
}

TEST(Projection, TriPlanarFollowsTheNormalAndIsMirroredBehind)
{
    const Vector p{0.5f, 0.25f, -0.75f};
    expectUV(projectTriPlanar(p, {1, 0, 0}), 0.875, 0.625);
    expectUV(projectTriPlanar(p, {-1, 0, 0}), 0.875, 0.625);
    expectUV(projectTriPlanar(p, {0, 1, 0}), 0.75, 0.875);
    expectUV(projectTriPlanar(p, {0, 0, 1}), 0.75, 0.625);
    expectUV(projectTriPlanar(p, {0, 0, 0}), 0.875, 0.625);
    expectUV(projectTriPlanar(p, {kNaN, kNaN, kNaN}), 0.75, 0.625);
}

TEST(Projection, AgreesWithItsTwin)
{
    std::mt19937 random(3);
    for (const Kind& kind : kinds())
        for (int i = 0; i < 20000; ++i) {
            const Vector p = awayFromSeams(random);
            const ProjectedPoint got = kind.projection(p);
            const PlainUV expected = kind.twin(plain(p));
            ASSERT_NEAR(got.u, expected[0], 4e-6) << kind.name << " " << p.x << " " << p.y << " " << p.z;
            ASSERT_NEAR(got.v, expected[1], 4e-6) << kind.name << " " << p.x << " " << p.y << " " << p.z;
        }
}

TEST(Projection, GradientsAreTheSlopesOfItsTwin)
{
    std::mt19937 random(5);
    const PlainPoint axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (const Kind& kind : kinds())
        for (int i = 0; i < 2000; ++i) {
            const Vector p = awayFromSeams(random);
            const ProjectedPoint got = kind.projection(p);
            const PlainPoint u = plain(got.gradientU), v = plain(got.gradientV);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const PlainUV slope = plainSlope(kind.twin, plain(p), axes[axis]);
                // The largest slope here is 12 / (2 pi 0.14).
                ASSERT_NEAR(u[axis], slope[0], 5e-5) << kind.name << " along " << axis;
                ASSERT_NEAR(v[axis], slope[1], 5e-5) << kind.name << " along " << axis;
            }
        }
}

TEST(Projection, GradientsDoNotShowTheSeamAtTheBack)
{
    const ProjectedPoint left = projectSpherical({-1e-4f, 0, -1}, 2 * kPi, kPi);
    const ProjectedPoint right = projectSpherical({1e-4f, 0, -1}, 2 * kPi, kPi);
    EXPECT_NEAR(left.gradientU.x, -kHalf / static_cast<double>(kPi), 1e-5);
    EXPECT_NEAR(right.gradientU.x, left.gradientU.x, 1e-5);
}

TEST(Projection, BallIsSmoothInFront)
{
    const ProjectedPoint middle = projectBall({0, 0, 2}), beside = projectBall({1e-4f, -1e-4f, 2});
    EXPECT_NEAR(middle.gradientU.x, 0.25 / static_cast<double>(kPi), 1e-7);
    EXPECT_NEAR(beside.gradientU.x, middle.gradientU.x, 1e-6);
    EXPECT_NEAR(beside.gradientU.y, 0.0, 1e-6);
    EXPECT_NEAR(beside.gradientV.y, middle.gradientV.y, 1e-6);
}

TEST(Projection, IsFiniteWhereAnAngleHasNoDirection)
{
    const Vector nowhere[] = {{0, 0, 0},
                              {0, 1, 0},
                              {0, -1, 0},
                              {0, 0, -1},
                              {1e-30f, 1e-30f, -1e-30f},
                              {1e-17f, 1, 0},
                              {0, 1e-17f, -1},
                              {1e18f, 1e18f, -1e18f}};
    for (const Kind& kind : kinds())
        for (const Vector& p : nowhere) {
            const ProjectedPoint got = kind.projection(p);
            EXPECT_TRUE(std::isfinite(got.u) && std::isfinite(got.v)) << kind.name;
            EXPECT_TRUE(isFinite(got.gradientU) && isFinite(got.gradientV)) << kind.name;
        }
}
