// The projections of Maya's projection node as UVW generators. w is 0 everywhere.

#include "host/builtin/frame_values.h"
#include "host/builtin/uvw_projection.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

constexpr float kDefaultAngleU = 180.0f; // half a turn
constexpr float kDefaultAngleV = 90.0f;

constexpr const char* kAngleUDescription =
    "How much of a turn around the projector's y the image spans, in degrees: 360 is all around. Its middle "
    "is at the projector's +z, and it runs towards +x";
constexpr const char* kAngleVDescription = "How much of the way from the projector's -y to +y the image "
                                           "spans, in degrees: 180 is from pole to pole. "
                                           "Its middle is the equator";
constexpr const char* kAngleMetadata = "minValue=(0), maxValue=(360), units=(degrees)";
constexpr const char* kHalfTurnMetadata = "minValue=(0), maxValue=(180), units=(degrees)";
constexpr const char* kNoAngleWarning = "an angle has to be above 0; it projects nothing";

class UVWPlanar final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030131,
        "UVWPlanar",
        "Projects along the projector's z: -1 to 1 on x and y shows the whole image, at any depth "
        "[gpuSupport=(none)]",
        {EXT_UVWGEN}};

private:
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        return projectPlanar(point.position);
    }
};

class UVWSpherical final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030132,
        "UVWSpherical",
        "Projects from the inside of a ball: u is the longitude around the projector's y, v the "
        "latitude [gpuSupport=(none)]",
        {EXT_UVWGEN}};

    template <class Table>
    static void parameters(Table& p)
    {
        UVWProjection::parameters(p);
        p("u_angle", &UVWSpherical::u_angle, kDefaultAngleU, kAngleUDescription, kAngleMetadata);
        p("v_angle", &UVWSpherical::v_angle, kDefaultAngleV, kAngleVDescription, kHalfTurnMetadata);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        UVWProjection::frameBegin(renderer);
        if (!isUsable()) warn(renderer, kProjection, *this, kNoAngleWarning);
    }

private:
    bool isUsable() const { return u_angle > 0.0f && v_angle > 0.0f; }
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        if (!isUsable()) return std::nullopt;
        return projectSpherical(point.position, radians(u_angle), radians(v_angle));
    }

    float u_angle = 0.0f, v_angle = 0.0f;
};

class UVWCylindrical final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030133,
        "UVWCylindrical",
        "Projects from the inside of a tube: u is the angle around the projector's y, and -1 "
        "to 1 on y is v from 0 to 1 [gpuSupport=(none)]",
        {EXT_UVWGEN}};

    template <class Table>
    static void parameters(Table& p)
    {
        UVWProjection::parameters(p);
        p("u_angle", &UVWCylindrical::u_angle, kDefaultAngleU, kAngleUDescription, kAngleMetadata);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        UVWProjection::frameBegin(renderer);
        if (!isUsable()) warn(renderer, kProjection, *this, kNoAngleWarning);
    }

private:
    bool isUsable() const { return u_angle > 0.0f; }
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        if (!isUsable()) return std::nullopt;
        return projectCylindrical(point.position, radians(u_angle));
    }

    float u_angle = 0.0f;
};

class UVWBall final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030134,
        "UVWBall",
        "Wraps the image around a ball from the front: its middle is at the projector's +z, and the "
        "circle that fits into it is gathered in one point at -z [gpuSupport=(none)]",
        {EXT_UVWGEN}};

private:
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        return projectBall(point.position);
    }
};

class UVWCubic final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030135,
        "UVWCubic",
        "Projects from the six sides of the projector's cube, the right way round from outside: a "
        "point takes the side that it lies towards [gpuSupport=(none)]",
        {EXT_UVWGEN}};

private:
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        return projectCubic(point.position);
    }
};

class UVWTriPlanar final : public UVWProjection {
public:
    using UVWProjection::UVWProjection;

    static constexpr Identity kIdentity{
        2019030136,
        "UVWTriPlanar",
        "Projects along the projector's three axes: a point takes the axis that its normal "
        "follows most [gpuSupport=(none)]",
        {EXT_UVWGEN}};

private:
    std::optional<ProjectedPoint> project(const LocalPoint& point) const override
    {
        return projectTriPlanar(point.position, point.normal);
    }
};

BuiltinDesc<UVWPlanar> uvwPlanarDesc;
BuiltinDesc<UVWSpherical> uvwSphericalDesc;
BuiltinDesc<UVWCylindrical> uvwCylindricalDesc;
BuiltinDesc<UVWBall> uvwBallDesc;
BuiltinDesc<UVWCubic> uvwCubicDesc;
BuiltinDesc<UVWTriPlanar> uvwTriPlanarDesc;

} // namespace

} // namespace ombrix
