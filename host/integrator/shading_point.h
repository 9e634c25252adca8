// Filling the shading context for a hit.
#pragma once

#include "host/context/host_context.h"
#include "host/integrator/world.h"

namespace ombrix {

// Writes what the hit says: the point, its normals (out of the surface, whichever side was hit), the
// objects, the triangle and its weights, the view direction and the time.
void fillShadingPoint(HostContext& context, const WorldNode& node, const RayHit& hit, const Vector& direction,
                      float time);

// Writes the position differentials and the filter widths for a camera ray whose direction changes by dx
// and dy from pixel to pixel. Call after fillShadingPoint. The filter widths are the lengths of both
// differentials and, twice, the larger one.
void fillCameraFootprint(HostContext& context, const Vector& eye, const Vector& direction, const Vector& dx,
                         const Vector& dy);
// The same for a ray whose footprint has this width on a surface it meets head on.
void fillRoundFootprint(HostContext& context, float width);

} // namespace ombrix
