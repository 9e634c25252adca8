// What the projecting generators share: a projector in the world or on the object, and the coordinates,
// derivatives and maps that follow from how an image is laid on a point.
#pragma once

#include "host/builtin/parameter_values.h"
#include "host/builtin/projection.h"

#include <ombrix/plugin.h>

#include <optional>
#include <vector>

namespace ombrix {

// What its warnings call it.
inline constexpr const char* kProjection = "projection";

class UVWProjection : public OUtils::OmbrixUVWGen {
public:
    using OmbrixUVWGen::OmbrixUVWGen;

    // What the table of each projection begins with.
    template <class Table>
    static void parameters(Table& p)
    {
        p("transform", &UVWProjection::transform, OUtils::TransformDefault{1, {}},
          "The projector's place in its space. The projector is a cube from -1 to 1 on every axis, seen "
          "from +z with +y up; scale, turn and move it onto the object. Animated values move it within the "
          "shutter");
        p("space", &UVWProjection::space, kWorldSpace,
          "Where the projector stands: in the world, so that objects move through the image, or on the "
          "shaded object, so that the image moves along. Where no object is shaded the point counts as "
          "it is, relative to the scene origin",
          "enum=(0:world; 1:object)");
        p("wrap", &UVWProjection::wrap, true,
          "Whether the coordinates go on beyond the image, so that it can repeat. If false, points "
          "outside 0 to 1 have no valid coordinates");
    }

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

private:
    enum Space : int {
        kWorldSpace = 0,
        kObjectSpace = 1,
    };

    // From the world into the projector's space: linear (p - pivot) + shift.
    struct Projector {
        Matrix linear;
        Vector pivot, shift;
    };

    void readTransforms(const OUtils::FrameData& frame);
    std::optional<Projector> projectorIn(const OUtils::OmbrixContext& context) const;
    // The map from displacements around a point to coordinates. False when they are not valid.
    bool mapAt(const OUtils::OmbrixContext& context, const Vector& point, Transform* map) const;

    TimedTransform transform;
    int space = 0, wrap = 0;

    // Of the frame.
    std::vector<Transform> placements{Transform{}}; // evenly spread over the shutter interval
    std::optional<Matrix> stillInverse;             // of the only placement, where there is one
};

} // namespace ombrix
