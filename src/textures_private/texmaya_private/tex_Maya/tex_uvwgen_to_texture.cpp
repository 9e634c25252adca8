// TexUVWGenToTexture: shows the coordinates of a UVW generator as a colour; black where there are none.

#include "kernels/color/ranges.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

constexpr AColor kNoCoordinates{0.0f, 0.0f, 0.0f, 1.0f};

class TexUVWGenToTexture final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2009021202,
        "TexUVWGenToTexture",
        "Converts UVW coordinates provided from a UVWGen plugin to color. Same as TexUVW. "
        "[gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("input", &TexUVWGenToTexture::input, noDefault);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        input.resolve();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        UVWSample sample;
        if (input && input->evalUVW(context, &sample))
            *result = {sample.uvw.x, sample.uvw.y, sample.uvw.z, 1.0f};
        else
            *result = kNoCoordinates;
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = kUnboundedBelow;
        *upper = kUnboundedAbove;
    }

    // Whatever the plugin is, its GPU form will do.
    int writeSource(SourceText& text) override
    {
        auto* gpuForm = find<RTTexInterface>(input.plugin);
        if (!gpuForm) return 0;
        text.op(GpuOperator::Coordinates);
        return text.passOn(gpuForm);
    }

private:
    UVWGenInput input;
};

using TexUVWGenToTextureParams = KindParams<TexUVWGenToTexture>;
using TexUVWGenToTextureDesc = KindDesc<TexUVWGenToTexture, TexUVWGenToTextureParams>;
TexUVWGenToTextureDesc texUVWGenToTextureDesc;

} // namespace

} // namespace nezaiva
