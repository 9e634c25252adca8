// TexDistanceBetween: the distance of two points that are given as colours, each under a transform of its
// own. It has no GPU form.

#include "kernels/color/ranges.h"
#include "numeric/vector_math.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

class TexDistanceBetween final : public OmbrixTextureFloat {
public:
    using OmbrixTextureFloat::OmbrixTextureFloat;

    // Kept as is: declared as a colour texture, while an instance is a float texture.
    static constexpr Identity kIdentity{
        2008082801,
        "TexDistanceBetween",
        "Outputs the distance between points specified by two input textures [gpuSupport=(none)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("point1", &TexDistanceBetween::point1, noDefault);
        p("point2", &TexDistanceBetween::point2, noDefault);
        p("transform1", &TexDistanceBetween::transform1, Transform{});
        p("transform2", &TexDistanceBetween::transform2, Transform{});
        p.output("distance", itself);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const Vector a = placedPoint(point1, transform1, context);
        const Vector b = placedPoint(point2, transform2, context);
        return lengthOf(a - b);
    }

    // Kept as is: a distance is never negative, and the lower bound is.
    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = -kUnbounded;
        *upper = kUnbounded;
    }

private:
    static Vector placedPoint(const ColorInput& point, const TransformInput& transform,
                              const OmbrixContext& context)
    {
        const Color at = point.rgb(context);
        return transformedPoint(transform(context), {at.r, at.g, at.b});
    }

    ColorInput point1, point2;
    TransformInput transform1, transform2;
};

using TexDistanceBetweenParams = KindParams<TexDistanceBetween>;
using TexDistanceBetweenDesc = KindDesc<TexDistanceBetween, TexDistanceBetweenParams>;
TexDistanceBetweenDesc texDistanceBetweenDesc;

} // namespace

} // namespace nezaiva
