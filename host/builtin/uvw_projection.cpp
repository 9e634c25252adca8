#include "host/builtin/uvw_projection.h"

#include "host/builtin/parameter_values.h"
#include "host/geometry/mesh_surface.h"
#include "host/integrator/scene_interfaces.h"

#include <ombrix/world_interfaces.h>

namespace ombrix {

namespace {

using namespace OUtils;

enum Space : int {
    kWorldSpace = 0,
    kObjectSpace = 1,
};

// Without wrapping, the image ends this far outside the unit square.
constexpr float kImageMargin = 1e-6f;

// Computed in double and narrowed. Empty for a matrix that flattens space or is not finite.
std::optional<Matrix> inverse(const Matrix& m)
{
    const auto wide = [](const Vector& v) {
        return VectorD{static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
    };
    const auto across = [](const VectorD& a, const VectorD& b) {
        return VectorD{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    };
    const VectorD a = wide(m.columns[0]), b = wide(m.columns[1]), c = wide(m.columns[2]);
    const VectorD rows[3] = {across(b, c), across(c, a), across(a, b)};
    const double volume = a.x * rows[0].x + a.y * rows[0].y + a.z * rows[0].z;
    const auto column = [&](double VectorD::*component) {
        return Vector{static_cast<float>(rows[0].*component / volume),
                      static_cast<float>(rows[1].*component / volume),
                      static_cast<float>(rows[2].*component / volume)};
    };
    const Matrix result{{column(&VectorD::x), column(&VectorD::y), column(&VectorD::z)}};
    for (const Vector& each : result.columns)
        if (!isFinite(each)) return std::nullopt;
    return result;
}

Matrix product(const Matrix& a, const Matrix& b)
{
    return {{a * b.columns[0], a * b.columns[1], a * b.columns[2]}};
}

Vector narrowed(const VectorD& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

bool isOnImage(float coordinate)
{
    return coordinate >= -kImageMargin && coordinate <= 1.0f + kImageMargin;
}

Vector4 padded(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

} // namespace

UVWProjectionParams::UVWProjectionParams()
{
    addParamTransform(
        "transform", 1, Transform{}, -1,
        "The projector's place in its space. The projector is a cube from -1 to 1 on every axis, seen "
        "from +z with +y up; scale, turn and move it onto the object. Animated values move it within the "
        "shutter",
        nullptr);
    addParamInt("space", kWorldSpace, -1,
                "Where the projector stands: in the world, so that objects move through the image, or on the "
                "shaded object, so that the image moves along. Where no object is shaded the point counts as "
                "it is, relative to the scene origin",
                "enum=(0:world; 1:object)");
    addParamBool("wrap", true, -1,
                 "Whether the coordinates go on beyond the image, so that it can repeat. If false, points "
                 "outside 0 to 1 have no valid coordinates",
                 nullptr);
}

UVWProjection::UVWProjection(OmbrixPluginDesc* desc) : OmbrixUVWGen(desc)
{
    paramList->setParamCache("transform", &transform);
    paramList->setParamCache("space", &space);
    paramList->setParamCache("wrap", &wrap);
}

void UVWProjection::frameBegin(OmbrixRenderer* renderer)
{
    OmbrixUVWGen::frameBegin(renderer);
    readTransforms(renderer ? renderer->getFrameData() : FrameData{});
    stillInverse.reset();
    if (placements.size() == 1) stillInverse = inverse(placements[0].matrix);
    bool usable = true;
    for (const Transform& placement : placements)
        usable = usable && isFinite(placement.offset) && inverse(placement.matrix);
    if (!usable) warn(renderer, "its transform flattens it or is not finite; there it projects nothing");
}

void UVWProjection::readTransforms(const FrameData& frame)
{
    placements.clear();
    // In the world, relative to the scene origin as all points are.
    const auto add = [&](const TraceTransform& now) {
        const VectorD origin = space == kObjectSpace ? VectorD{} : frame.sceneOrigin;
        placements.push_back({now.matrix, narrowed({now.offset.x - origin.x, now.offset.y - origin.y,
                                                    now.offset.z - origin.z})});
    };
    if (!frame.motionBlur || frame.geometrySamples < 2 || !isAnimated(*paramList, "transform")) {
        add(transform);
        return;
    }
    OmbrixPluginParameter* parameter = paramList->getParam("transform");
    for (int i = 0; i < frame.geometrySamples; ++i) {
        const double t = static_cast<double>(i) / (frame.geometrySamples - 1);
        add(parameter->getTransform(-1, frame.intervalStart + (frame.intervalEnd - frame.intervalStart) * t));
    }
}

std::optional<UVWProjection::Projector> UVWProjection::projectorIn(const OmbrixContext& context) const
{
    const bool still = placements.size() == 1;
    const Transform placement = transformAt(placements, static_cast<float>(context.rayTime));
    const std::optional<Matrix> inwards = still ? stillInverse : inverse(placement.matrix);
    if (!inwards) return std::nullopt;
    if (space != kObjectSpace) return Projector{*inwards, placement.offset, {}};

    TraceTransform object;
    if (auto* instance = findInterface<WorldMatrixInterface>(context.hitInstance, EXT_WORLD_MATRIX))
        instance->getWorldTransform(context, &object);
    const std::optional<Matrix> ontoObject = inverse(object.matrix);
    if (!ontoObject) return std::nullopt;
    return Projector{product(*inwards, *ontoObject), narrowed(object.offset),
                     negated(*inwards * placement.offset)};
}

bool UVWProjection::mapAt(const OmbrixContext& context, const Vector& point, Transform* map) const
{
    map->matrix = {{{}, {}, {}}};
    map->offset = {};
    const std::optional<Projector> projector = projectorIn(context);
    if (!projector) return false;
    const Matrix& linear = projector->linear;
    const Vector local = linear * (point - projector->pivot) + projector->shift;
    if (!isFinite(local)) return false;
    const std::optional<ProjectedPoint> projected = project({local, cofactors(linear) * context.normal});
    if (!projected) return false;

    map->offset = {projected->u, projected->v, 0.0f};
    for (int i = 0; i < 3; ++i)
        map->matrix.columns[i] = {dot(projected->gradientU, linear.columns[i]),
                                  dot(projected->gradientV, linear.columns[i]), 0.0f};
    if (!isFinite(map->offset)) return false;
    return wrap || (isOnImage(projected->u) && isOnImage(projected->v));
}

int UVWProjection::evalUVW(const OmbrixContext& context, UVWSample* result)
{
    Transform map;
    const bool valid = mapAt(context, context.shadePoint, &map);
    result->uvw = padded(map.offset);
    return valid ? 1 : 0;
}

int UVWProjection::evalUVWDerivs(const OmbrixContext& context, UVWSample* result)
{
    Transform map;
    const bool valid = mapAt(context, context.shadePoint, &map);
    result->uvw = padded(map.offset);
    result->du = padded(map.matrix * context.positionDiffU);
    result->dv = padded(map.matrix * context.positionDiffV);
    return valid ? 1 : 0;
}

int UVWProjection::evalUVWTransform(const OmbrixContext& context, Transform* result)
{
    return mapAt(context, context.referencePoint, result) ? 1 : 0;
}

void UVWProjection::warn(OmbrixRenderer* renderer, const char* text)
{
    const char* name = getPluginName();
    if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
        logger->warning("projection \"%s\": %s", name ? name : "", text);
}

} // namespace ombrix
