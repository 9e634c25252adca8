#include "host/bake/unit_square_surface.h"

namespace ombrix {

using namespace OUtils;

namespace {

constexpr int kOnlyChannel = 1;

Vector4 padded(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

} // namespace

PluginInterface* UnitSquareSurface::getInterface(InterfaceId id)
{
    if (id == EXT_MAPPED_SURFACE) return static_cast<MappedSurface*>(this);
    return PluginBase::getInterface(id);
}

int UnitSquareSurface::getLocalUVWTransform(const OmbrixContext& context, int /*channel*/, Transform* result)
{
    *result = Transform{};
    result->offset = context.referencePoint;
    return 1;
}

int UnitSquareSurface::getLocalUVW(const OmbrixContext& context, int /*channel*/, UVWSample* result)
{
    result->uvw = padded(context.referencePoint);
    result->du = padded(context.positionDiffU);
    result->dv = padded(context.positionDiffV);
    return 1;
}

int UnitSquareSurface::getLocalUVWTransformByName(const OmbrixContext& context, int /*nameId*/,
                                                  Transform* result)
{
    return getLocalUVWTransform(context, kOnlyChannel, result);
}

int UnitSquareSurface::getMapChannelValue(const OmbrixContext& context, int /*nameId*/, Vector* result)
{
    *result = context.referencePoint;
    return kOnlyChannel;
}

void UnitSquareSurface::getMapChannelByIndex(const OmbrixContext& context, int /*index*/, Vector* result)
{
    *result = context.referencePoint;
}

float UnitSquareSurface::getMapChannelMissing(const OmbrixContext& /*context*/, int /*index*/)
{
    return 0.0f;
}

} // namespace ombrix
