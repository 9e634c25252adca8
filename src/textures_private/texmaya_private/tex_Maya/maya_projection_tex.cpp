// MayaProjectionTex: Maya's projection node. The projection itself is the mapping of MappedTexture; this
// texture passes its base on where that has coordinates, and tells where it has none.
//
// Its second output is the transparency outside the projected image.

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/mapped_texture.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = kDeclaresWrap;
constexpr AColor kOpaqueWhite{1.0f, 1.0f, 1.0f, 1.0f};
constexpr ColorRange kZeroToOne{{0.0f, 0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f, 1.0f}};
constexpr ColorRange kAlwaysZero{};
constexpr int kAlphaAsColorOperator = -974;
constexpr int kColorMatrixOperator = -999;
constexpr const char* kNoBaseWarning = "MayaProjectionTex %s is missing its base texture parameter !";
constexpr const char* kGpuSupported = "gpuSupport=(full)";

class MayaProjectionTexParams : public MappedTextureParams {
public:
    MayaProjectionTexParams() : MappedTextureParams(kBaseFlags)
    {
        addParamTexture("base_texture", -1, nullptr, kGpuSupported);
        addParamTexture("nouvw_transparency", -1, nullptr, kGpuSupported);
        addParamTexture("transparency_mult", -1, nullptr, kGpuSupported);
        addParamTexture("transparency_offset", -1, nullptr, kGpuSupported);
    }
};

class MayaProjectionTex;

// The output that tells where the projection lands outside its image.
class MayaProjectionOutTransparencyTex : public PluginBase, public TextureInterface, public RTTexInterface {
public:
    explicit MayaProjectionOutTransparencyTex(MayaProjectionTex& projection) : owner(projection) {}

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        if (id == EXT_TEXTURE) return static_cast<TextureInterface*>(this);
        return PluginBase::getInterface(id);
    }
    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

private:
    MayaProjectionTex& owner;
};

class MayaProjectionTex final : public MappedTexture {
public:
    explicit MayaProjectionTex(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags)
    {
        paramList->setParamCache("base_texture", &base_texture);
        paramList->setParamCache("nouvw_transparency", &nouvw_transparency);
        paramList->setParamCache("transparency_mult", &transparency_mult);
        paramList->setParamCache("transparency_offset", &transparency_offset);
        paramList->setOutputParamCache("out_transparency", static_cast<TextureInterface*>(&outTransparency));
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
        if (base_texture)
            base_texture->evalColor(result, context);
        else
            *result = noUVWColor(context);
        return result;
    }

    void getTextureBounds(AColor* lower, AColor* upper) override
    {
        if (TextureInterface* shown = base_texture ? base_texture : nouvw_color)
            shown->evalColorBounds(lower, upper);
        else
            *lower = *upper = kNoUVWColor;
    }

    AColor* evalGradientWidth(AColor* result, const OmbrixContext& /*context*/, const UVWSample& /*sample*/,
                              const Vector4& /*width*/) override
    {
        *result = AColor{};
        return result;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

    AColor transparency(const OmbrixContext& context);

private:
    static bool isConstant(const ColorRange& range)
    {
        return range.lower.r == range.upper.r && range.lower.g == range.upper.g &&
               range.lower.b == range.upper.b && range.lower.a == range.upper.a;
    }

    Color typicalTransparency() const;

    MayaProjectionOutTransparencyTex outTransparency{*this};
    TextureInterface* base_texture = nullptr;
    TextureInterface* nouvw_transparency = nullptr;
    TextureInterface* transparency_mult = nullptr;
    TextureInterface* transparency_offset = nullptr;
};

// From the raw colour: the owner's memo and post-processing have no part in it.
AColor MayaProjectionTex::transparency(const OmbrixContext& context)
{
    bool valid = true;
    AColor color;
    evalRawColor(&color, context, &valid);
    if (!valid) return colorOr(nouvw_transparency, kOpaqueWhite, context);
    const float through = 1.0f - color.a;
    AColor result{through, through, through, 1.0f};
    if (transparency_mult) {
        const AColor factor = colorOr(transparency_mult, AColor{}, context);
        result = {result.r * factor.r, result.g * factor.g, result.b * factor.b, 1.0f};
    }
    if (transparency_offset) {
        const AColor offset = colorOr(transparency_offset, AColor{}, context);
        result = {result.r + offset.r, result.g + offset.g, result.b + offset.b, 1.0f};
    }
    return result;
}

// The constant that stands for the transparency on the GPU, which has no form of it for a point.
Color MayaProjectionTex::typicalTransparency() const
{
    const ColorRange n = rangeOr(nouvw_transparency, kZeroToOne);
    const ColorRange m = rangeOr(transparency_mult, kZeroToOne);
    const ColorRange o = rangeOr(transparency_offset, kAlwaysZero);
    const auto typical = [](float nl, float nh, float ml, float mh, float ol, float oh) {
        return ((nl + nh) * (ml + mh) * 0.5f + ol + oh) * 0.5f;
    };
    return eachChannel(typical, n.lower, n.upper, m.lower, m.upper, o.lower, o.upper);
}

int MayaProjectionTex::getSource(const char* /*name*/, const char* tag, const char* descriptor,
                                 ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    const bool constant = isConstant(rangeOr(base_texture, kZeroToOne));
    const int answer = RTTexInterface::getRTTexSource(base_texture, "", tag, descriptor, source, data);
    if (constant) return answer;
    const Color t = typicalTransparency();
    const float mean = (t.r + t.g + t.b) * 0.33333334f;
    source.printf("color %f %f %f %f\n", static_cast<double>(t.r), static_cast<double>(t.g),
                  static_cast<double>(t.b), static_cast<double>(mean));
    if (wrap) source.append("tex_projection_wrap\n");
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

int MayaProjectionOutTransparencyTex::getSource(const char* /*name*/, const char* /*tag*/,
                                                const char* descriptor, ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    PluginInterface* projection = owner.getInterface(EXT_RTTEX);
    if (!projection) return 1;
    RTTexInterface::getRTTexSource(projection, "color", "", descriptor, source, data);
    source.append("subtex\n");
    source.printf("bitmap %i\n", kAlphaAsColorOperator);
    source.append("subtex\n");
    source.printf("bitmap %i\n", kColorMatrixOperator);
    return 1;
}

class MayaProjectionTexDesc : public DescOf<MayaProjectionTex, MayaProjectionTexParams> {
public:
    MayaProjectionTexDesc()
        : DescOf({2008052101,
                  "MayaProjectionTex",
                  "<PLEASE ADD A DESCRIPTION> [gpuSupport=(partial)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
MayaProjectionTexDesc mayaProjectionTexDesc;

} // namespace

} // namespace nezaiva
