// MayaGamma: raises each channel to the power of one over its gamma, which is a texture of its own.

#include "kernels/color/gamma_power.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

namespace nezaiva {

namespace {

// Also what unset inputs read as.
constexpr AColor kDefaultInput{0.0f, 0.0f, 0.0f, 1.0f};
constexpr AColor kDefaultGamma{1.0f, 1.0f, 1.0f, 1.0f};

class GammaParams : public OmbrixParameterListDesc {
public:
    GammaParams()
    {
        addParamTexture("input", kDefaultInput, -1, "The input color", nullptr);
        addParamTexture("gamma", kDefaultGamma, -1, "Gamma values", nullptr);
        addOutputParamTexture("color", "The resulting color", nullptr);
    }
};

class Gamma final : public OmbrixTexture, public RTTexInterface {
public:
    explicit Gamma(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("input", &input);
        paramList->setParamCache("gamma", &gamma);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const AColor x = colorOr(input, kDefaultInput, context);
        const AColor g = colorOr(gamma, kDefaultGamma, context);
        *result = withAlpha(eachChannel(gammaPower, x, g), 1.0f);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange x = rangeOr(input, {kDefaultInput, kDefaultInput});
        const ColorRange g = rangeOr(gamma, {kDefaultGamma, kDefaultGamma});
        *lower = withAlpha(leastOfPairs(gammaPower, x, g), 1.0f);
        *upper = withAlpha(greatestOfPairs(gammaPower, x, g), 1.0f);
    }

    // Kept as is: the GPU takes one gamma for all channels, the middle of the texture's bounds.
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        OperatorSource text(name, tag, descriptor, source, data);
        text.input(input);
        if (gamma) {
            const float middle = middleIntensity(rangeOr(gamma, ColorRange{}));
            source.printf("gamma %f\n", static_cast<double>(1.0f / middle));
        }
        return 1;
    }

private:
    TextureInterface* input = nullptr;
    TextureInterface* gamma = nullptr;
};

class GammaDesc : public DescOf<Gamma, GammaParams> {
public:
    GammaDesc()
        : DescOf({2006072903,
                  "MayaGamma",
                  "Applies gamma to the input texture. Gamma is textured unlike TexMaxGamma. Doable with "
                  "TexAColorOp::power. [gpuSupport=(f",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
GammaDesc gammaDesc;

} // namespace

} // namespace nezaiva
