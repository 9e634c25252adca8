// Transforms from their parts, as people give them.
#pragma once

#include <ombrix/types.h>

namespace ombrix {

// Scales along the axes, then turns about x, then y, then z (degrees, counter-clockwise seen from the
// axis' tip), then moves. Whole quarter turns are exact. Computed in double, the columns narrowed last.
OUtils::TraceTransform composeTransform(const OUtils::VectorD& translate, const OUtils::VectorD& rotate,
                                        const OUtils::VectorD& scale);

} // namespace ombrix
