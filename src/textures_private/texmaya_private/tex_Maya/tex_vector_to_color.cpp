// TexVectorToColor: a vector's components as red, green and blue of an opaque colour.

#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

AColor opaque(const Vector& v)
{
    return {v.x, v.y, v.z, 1.0f};
}

class TexVectorToColor final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{2008082703,
                                        "TexVectorToColor",
                                        "Converts a vector texture to color texture [gpuSupport=(full)]",
                                        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TexVectorToColor::input, Vector{});
        p.output("color", itself);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = opaque(input(context));
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const VectorRange in = input.bounds();
        *lower = opaque(in.lower);
        *upper = opaque(in.upper);
    }

    int writeSource(SourceText& text) override { return text.passOn(input); }

private:
    VectorInput input;
};

using TexVectorToColorParams = KindParams<TexVectorToColor>;
using TexVectorToColorDesc = KindDesc<TexVectorToColor, TexVectorToColorParams>;
TexVectorToColorDesc texVectorToColorDesc;

} // namespace

} // namespace nezaiva
