// The mapping of the shaded point, as the host's own kinds read and write it.
#pragma once

#include <ombrix/mapping_interfaces.h>

namespace ombrix {

// The shaded surface's mapping channels, or null: no surface, or one without them.
inline OUtils::MappedSurface* mappedSurfaceOf(const OUtils::OmbrixContext& context)
{
    return OUtils::find<OUtils::MappedSurface>(context.surfaceObject);
}

// As a member of a UVWSample.
inline OUtils::Vector4 padded(const OUtils::Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

} // namespace ombrix
