// TexFloatLogic: 1 where a comparison of two floats holds, else 0.

#include "kernels/color/compare.h"
#include "plugin_frame/kind_desc.h"
#include "textures_private/texmaya_private/tex_Maya/logic_source.h"

namespace nezaiva {

namespace {

class TexFloatLogic final : public Offers<OmbrixTextureFloat, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2017022713, "TexFloatLogic", "Compare numbers [gpuSupport=(full)]", {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("float_a", &TexFloatLogic::float_a, 1.0f);
        p("float_b", &TexFloatLogic::float_b, 1.0f);
        p("operation", &TexFloatLogic::operation, kEqual);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const float a = float_a(context);
        const float b = float_b(context);
        return compareFloats(a, b, operation) ? 1.0f : 0.0f;
    }

    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = 0.0f;
        *upper = 1.0f;
    }

    int writeSource(SourceText& text) override { return writeLogicSource(text, float_a, float_b, operation); }

private:
    FloatInput float_a, float_b;
    int operation = 0;
};

using TexFloatLogicParams = KindParams<TexFloatLogic>;
using TexFloatLogicDesc = KindDesc<TexFloatLogic, TexFloatLogicParams>;
TexFloatLogicDesc texFloatLogicDesc;

} // namespace

} // namespace nezaiva
