// TexColorLogic: 1 where a comparison of two colours holds, else 0. In spite of its name it is a float
// texture.

#include "kernels/color/compare.h"
#include "plugin_frame/kind_desc.h"
#include "textures_private/texmaya_private/tex_Maya/logic_source.h"

namespace nezaiva {

namespace {

// Kept as is: neither white nor black.
constexpr AColor kDefaultInput{1.0f, 0.0f, 0.5f, 1.0f};

class TexColorLogic final : public Offers<OmbrixTextureFloat, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2015101517, "TexColorLogic", "Compare colors [gpuSupport=(full)]", {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color_a", &TexColorLogic::color_a, kDefaultInput);
        p("color_b", &TexColorLogic::color_b, kDefaultInput);
        p("operation", &TexColorLogic::operation, kEqual);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const AColor a = color_a(context);
        const AColor b = color_b(context);
        return compareColors(a, b, operation) ? 1.0f : 0.0f;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = 0.0f;
        *upper = 1.0f;
    }

    int writeSource(SourceText& text) override { return writeLogicSource(text, color_a, color_b, operation); }

private:
    ColorInput color_a, color_b;
    int operation = 0;
};

using TexColorLogicParams = KindParams<TexColorLogic>;
using TexColorLogicDesc = KindDesc<TexColorLogic, TexColorLogicParams>;
TexColorLogicDesc texColorLogicDesc;

} // namespace

} // namespace nezaiva
