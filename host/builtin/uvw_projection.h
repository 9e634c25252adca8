// What the projecting generators share: a projector in the world or on the object, and the coordinates,
// derivatives and maps that follow from how an image is laid on a point.
#pragma once

#include "host/builtin/projection.h"

#include <ombrix/plugin.h>

#include <optional>
#include <vector>

namespace ombrix {

class UVWProjectionParams : public OUtils::OmbrixParameterListDesc {
public:
    UVWProjectionParams();
};

class UVWProjection : public OUtils::OmbrixUVWGen {
public:
    // desc's parameterDesc is a UVWProjectionParams.
    explicit UVWProjection(OUtils::OmbrixPluginDesc* desc);

    void frameBegin(OUtils::OmbrixRenderer* renderer) override;
    int evalUVW(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWDerivs(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWTransform(const OUtils::OmbrixContext& context, OUtils::Transform* result) override;

protected:
    // A point and its normal, of any length and side, in the projector's space.
    struct LocalPoint {
        Vector position, normal;
    };
    // Empty where the projection has no coordinates.
    virtual std::optional<ProjectedPoint> project(const LocalPoint& point) const = 0;

    void warn(OUtils::OmbrixRenderer* renderer, const char* text);

private:
    // From the world into the projector's space: linear (p - pivot) + shift.
    struct Projector {
        Matrix linear;
        Vector pivot, shift;
    };

    void readTransforms(const OUtils::FrameData& frame);
    std::optional<Projector> projectorIn(const OUtils::OmbrixContext& context) const;
    // The map from displacements around a point to coordinates. False when they are not valid.
    bool mapAt(const OUtils::OmbrixContext& context, const Vector& point, Transform* map) const;

    OUtils::TraceTransform transform;
    int space = 0;
    int wrap = 1;

    // Of the frame.
    std::vector<Transform> placements{Transform{}}; // evenly spread over the shutter interval
    std::optional<Matrix> stillInverse;             // of the only placement, where there is one
};

} // namespace ombrix
