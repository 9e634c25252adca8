#include "host/builtin/uvw_projection.h"

#include "host/builtin/frame_values.h"
#include "host/builtin/mapping.h"
#include "host/geometry/mesh_surface.h"

#include <ombrix/world_interfaces.h>

namespace ombrix {

namespace {

using namespace OUtils;

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

bool isOnImage(float coordinate)
{
    return coordinate >= -kImageMargin && coordinate <= 1.0f + kImageMargin;
}

} // namespace

void UVWProjection::frameBegin(OmbrixRenderer* renderer)
{
    OmbrixUVWGen::frameBegin(renderer);
    readTransforms(frameOf(renderer));
    stillInverse.reset();
    if (placements.size() == 1) stillInverse = inverse(placements[0].matrix);
    bool usable = true;
    for (const Transform& placement : placements)
        usable = usable && isFinite(placement.offset) && inverse(placement.matrix);
    if (!usable)
        warn(renderer, kProjection, *this,
             "its transform flattens it or is not finite; there it projects nothing");
}

void UVWProjection::readTransforms(const FrameData& frame)
{
    placements.clear();
    // In the world, relative to the scene origin as all points are.
    const VectorD origin = space == kObjectSpace ? VectorD{} : frame.sceneOrigin;
    for (const double time : shutterTimes(frame, transform.isAnimated()))
        placements.push_back(relativeTo(origin, transform.at(time)));
}

std::optional<UVWProjection::Projector> UVWProjection::projectorIn(const OmbrixContext& context) const
{
    const bool still = placements.size() == 1;
    const Transform placement = transformAt(placements, static_cast<float>(context.rayTime));
    const std::optional<Matrix> inwards = still ? stillInverse : inverse(placement.matrix);
    if (!inwards) return std::nullopt;
    if (space != kObjectSpace) return Projector{*inwards, placement.offset, {}};

    TraceTransform object;
    if (auto* instance = find<WorldMatrixInterface>(context.hitInstance))
        instance->getWorldTransform(context, &object);
    const std::optional<Matrix> ontoObject = inverse(object.matrix);
    if (!ontoObject) return std::nullopt;
    return Projector{product(*inwards, *ontoObject), relativeTo(VectorD{}, object.offset),
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

} // namespace ombrix
