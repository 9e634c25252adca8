// The mapping of the shaded point, where there is one.
#pragma once

#include <ombrix/mapping_interfaces.h>

namespace nezaiva {

using namespace OUtils;

// The shaded surface's mapping channels, or null: no surface, or one without them.
inline MappedSurface* mappedSurface(const OmbrixContext& context)
{
    return find<MappedSurface>(context.surfaceObject);
}

// A mapped point or vector; the fourth component is padding.
inline Vector4 asVector4(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

} // namespace nezaiva
