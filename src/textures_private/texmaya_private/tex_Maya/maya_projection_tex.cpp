// MayaProjectionTex: Maya's projection node. The projection itself is the mapping of MappedTexture; this
// texture passes its base on where that has coordinates, and tells where it has none.
//
// Its second output is the transparency outside the projected image.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/mapped_texture.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = kDeclaresWrap;
constexpr ColorRange kZeroToOne{kZero, kWhite};
constexpr ColorRange kAlwaysZero{};
constexpr const char* kNoBaseWarning = "MayaProjectionTex %s is missing its base texture parameter !";
constexpr const char* kGpuSupported = "gpuSupport=(full)";

class MayaProjectionTex;

// The output that tells where the projection lands outside its image.
class MayaProjectionOutTransparencyTex : public Offers<PluginBase, TextureInterface, GpuTexture> {
public:
    explicit MayaProjectionOutTransparencyTex(MayaProjectionTex& projection) : owner(projection) {}

    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override;
    int writeSource(SourceText& text) override;

private:
    MayaProjectionTex& owner;
};

class MayaProjectionTex final : public MappedTexture {
public:
    explicit MayaProjectionTex(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags) {}

    static constexpr Identity kIdentity{
        2008052101, "MayaProjectionTex", "<PLEASE ADD A DESCRIPTION> [gpuSupport=(partial)]", {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        MappedTexture::parameters(p, kBaseFlags);
        p("base_texture", &MayaProjectionTex::base_texture, noDefault, nullptr, kGpuSupported);
        p("nouvw_transparency", &MayaProjectionTex::nouvw_transparency, noDefault, unsetReads(kWhite),
          nullptr, kGpuSupported);
        p("transparency_mult", &MayaProjectionTex::transparency_mult, noDefault, nullptr, kGpuSupported);
        p("transparency_offset", &MayaProjectionTex::transparency_offset, noDefault, nullptr, kGpuSupported);
        p.answeredBy("out_transparency", &MayaProjectionTex::outTransparency);
    }

    void frameBegin(OmbrixRenderer* frameRenderer) override
    {
        MappedTexture::frameBegin(frameRenderer);
        RendererLogger* logger = frameRenderer->getLogger();
        if (!base_texture && logger) logger->warning(kNoBaseWarning, getPluginName() ? getPluginName() : "");
        // Kept as is: the scene's mode has no effect.
        alpha_from_intensity = kAlphaFromBitmap;
    }

    // The base finds its coordinates itself; those of the projection are not handed on.
    AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& /*sample*/) override
    {
        return (base_texture ? base_texture : nouvw_color).evalColor(result, context);
    }

    void getTextureBounds(AColor* lower, AColor* upper) override
    {
        const ColorInput& shown = base_texture ? base_texture : nouvw_color;
        if (shown)
            shown->evalColorBounds(lower, upper);
        else
            *lower = *upper = nouvw_color.unset;
    }

    int writeSource(SourceText& text) override;

    AColor transparency(const OmbrixContext& context);

private:
    static bool isConstant(const ColorRange& range)
    {
        return range.lower.r == range.upper.r && range.lower.g == range.upper.g &&
               range.lower.b == range.upper.b && range.lower.a == range.upper.a;
    }

    Color typicalTransparency() const;

    MayaProjectionOutTransparencyTex outTransparency{*this};
    ColorInput base_texture, nouvw_transparency, transparency_mult, transparency_offset;
};

// From the raw colour: the owner's memo and post-processing have no part in it.
AColor MayaProjectionTex::transparency(const OmbrixContext& context)
{
    bool valid = true;
    AColor color;
    evalRawColor(&color, context, &valid);
    if (!valid) return nouvw_transparency(context);
    const float through = 1.0f - color.a;
    AColor result{through, through, through, 1.0f};
    if (transparency_mult) {
        const AColor factor = transparency_mult(context);
        result = {result.r * factor.r, result.g * factor.g, result.b * factor.b, 1.0f};
    }
    if (transparency_offset) {
        const AColor offset = transparency_offset(context);
        result = {result.r + offset.r, result.g + offset.g, result.b + offset.b, 1.0f};
    }
    return result;
}

// The constant that stands for the transparency on the GPU, which has no form of it for a point.
Color MayaProjectionTex::typicalTransparency() const
{
    const ColorRange n = nouvw_transparency.boundsOr(kZeroToOne);
    const ColorRange m = transparency_mult.boundsOr(kZeroToOne);
    const ColorRange o = transparency_offset.boundsOr(kAlwaysZero);
    const auto typical = [](float nl, float nh, float ml, float mh, float ol, float oh) {
        return ((nl + nh) * (ml + mh) * 0.5f + ol + oh) * 0.5f;
    };
    return eachChannel(typical, n.lower, n.upper, m.lower, m.upper, o.lower, o.upper);
}

int MayaProjectionTex::writeSource(SourceText& text)
{
    const bool constant = isConstant(base_texture.boundsOr(kZeroToOne));
    const int answer = text.input(base_texture, "", text.tag);
    if (constant) return answer;
    const Color t = typicalTransparency();
    text.color(withAlpha(t, intensity(t)));
    if (wrap) text.line("tex_projection_wrap\n");
    // Kept as is: refused when the base is, with the lines above written.
    return answer;
}

AColor* MayaProjectionOutTransparencyTex::evalColor(AColor* result, const OmbrixContext& context)
{
    *result = owner.transparency(context);
    return result;
}

// Kept as is: the owner's colour bounds, not those of the transparency.
void MayaProjectionOutTransparencyTex::evalColorBounds(AColor* lower, AColor* upper)
{
    owner.evalColorBounds(lower, upper);
}

// Transparency falls where alpha rises.
AColor* MayaProjectionOutTransparencyTex::evalColorGradient(AColor* result, const OmbrixContext& context)
{
    owner.evalColorGradient(result, context);
    *result = {-result->r, -result->g, -result->b, -result->a};
    return result;
}

int MayaProjectionOutTransparencyTex::writeSource(SourceText& text)
{
    text.input(static_cast<TextureInterface*>(&owner), "color", "");
    text.endSlot();
    text.op(GpuOperator::AlphaAsColor);
    text.endSlot();
    text.op(GpuOperator::ColorMatrix);
    return 1;
}

using MayaProjectionTexParams = KindParams<MayaProjectionTex>;
using MayaProjectionTexDesc = KindDesc<MayaProjectionTex, MayaProjectionTexParams>;
MayaProjectionTexDesc mayaProjectionTexDesc;

} // namespace

} // namespace nezaiva
