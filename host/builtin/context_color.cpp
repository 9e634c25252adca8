// ContextColor: shows what the shading context holds, for debugging.

#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

enum ContextField : int {
    kFilterWidths = 0,
    kShadePoint = 1,
    kReferencePoint = 2,
    kPositionDiffU = 3,
    kPositionDiffV = 4,
};

constexpr float kBound = 1e18f;

AColor colorOf(const Vector& v)
{
    return {v.x, v.y, v.z, 1.0f};
}

class ContextColor final : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    static constexpr Identity kIdentity{
        2019030107,
        "ContextColor",
        "Shows what the shading context holds as a color, for debugging [gpuSupport=(none)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("field", &ContextColor::field, kShadePoint, "What to show; three numbers have alpha 1",
          "enum=(0:filter_widths; 1:shade_point; 2:reference_point; 3:position_diff_u; "
          "4:position_diff_v)");
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        switch (field) {
        case kFilterWidths: {
            const float* widths = context.filterWidths;
            *result = {widths[0], widths[1], widths[2], widths[3]};
            break;
        }
        case kReferencePoint:
            *result = colorOf(context.referencePoint);
            break;
        case kPositionDiffU:
            *result = colorOf(context.positionDiffU);
            break;
        case kPositionDiffV:
            *result = colorOf(context.positionDiffV);
            break;
        default:
            *result = colorOf(context.shadePoint);
            break;
        }
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = {-kBound, -kBound, -kBound, -kBound};
        *upper = {kBound, kBound, kBound, kBound};
    }

private:
    int field = 0;
};

BuiltinDesc<ContextColor> contextColorDesc;

} // namespace

} // namespace ombrix
