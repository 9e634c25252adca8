// TexSimplexNoise: the simplex noise texture, a value in all four channels over U and V.
//
// scale defaults to 0, which maps every point to (0, 0): the texture is a constant until scale is set.

#include "kernels/noises/simplex_noise.h"
#include "plugin_frame/fallbacks.h"
#include "plugin_frame/mapped_texture.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = 0;

// The declared defaults are also what unset inputs read as.
constexpr SimplexTextureValues kDefaults{};
constexpr float kLowerBound = 0.0f;
constexpr float kUpperBound = 3.5f;

class TexSimplexNoiseParams : public MappedTextureParams {
public:
    TexSimplexNoiseParams() : MappedTextureParams(kBaseFlags)
    {
        addParamTextureFloat("amplitude", kDefaults.octaves.amplitude, -1, nullptr, nullptr);
        addParamTextureFloat("distortion_ratio", kDefaults.octaves.distortionRatio, -1, nullptr, nullptr);
        addParamTextureFloat("distortion_u", kDefaults.octaves.distortionU, -1, nullptr, nullptr);
        addParamTextureFloat("distortion_v", kDefaults.octaves.distortionV, -1, nullptr, nullptr);
        addParamTextureFloat("frequency", kDefaults.octaves.frequency, -1, nullptr, nullptr);
        addParamTextureFloat("frequency_ratio", kDefaults.octaves.frequencyRatio, -1, nullptr, nullptr);
        addParamFloat("gamma", kDefaults.gamma, -1, nullptr, nullptr);
        addParamInt("noise_type", kDefaults.noiseType, -1, nullptr, nullptr);
        addParamInt("octaves", kDefaults.octaves.octaves, -1, nullptr, nullptr);
        addParamTextureFloat("ratio", kDefaults.octaves.ratio, -1, nullptr, nullptr);
        addParamTextureFloat("scale", kDefaults.scale, -1, nullptr, nullptr);
        addParamTextureFloat("threshold", kDefaults.threshold, -1, nullptr, nullptr);
    }
};

class TexSimplexNoise final : public MappedTexture {
public:
    explicit TexSimplexNoise(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags)
    {
        paramList->setParamCache("amplitude", &amplitude);
        paramList->setParamCache("distortion_ratio", &distortion_ratio);
        paramList->setParamCache("distortion_u", &distortion_u);
        paramList->setParamCache("distortion_v", &distortion_v);
        paramList->setParamCache("frequency", &frequency);
        paramList->setParamCache("frequency_ratio", &frequency_ratio);
        paramList->setParamCache("gamma", &gamma);
        paramList->setParamCache("noise_type", &noise_type);
        paramList->setParamCache("octaves", &octaves);
        paramList->setParamCache("ratio", &ratio);
        paramList->setParamCache("scale", &scale);
        paramList->setParamCache("threshold", &threshold);
    }

    AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& sample) override
    {
        SimplexTextureValues values;
        values.octaves.amplitude = floatOr(amplitude, kDefaults.octaves.amplitude, context);
        values.octaves.distortionRatio =
            floatOr(distortion_ratio, kDefaults.octaves.distortionRatio, context);
        values.octaves.distortionU = floatOr(distortion_u, kDefaults.octaves.distortionU, context);
        values.octaves.distortionV = floatOr(distortion_v, kDefaults.octaves.distortionV, context);
        values.octaves.frequency = floatOr(frequency, kDefaults.octaves.frequency, context);
        values.octaves.frequencyRatio = floatOr(frequency_ratio, kDefaults.octaves.frequencyRatio, context);
        values.octaves.ratio = floatOr(ratio, kDefaults.octaves.ratio, context);
        values.scale = floatOr(scale, kDefaults.scale, context);
        values.threshold = floatOr(threshold, kDefaults.threshold, context);
        values.octaves.octaves = octaves;
        values.gamma = gamma;
        values.noiseType = noise_type;
        const float value = simplexTexture(sample.uvw.x, sample.uvw.y, values);
        *result = {value, value, value, value};
        return result;
    }

    void getTextureBounds(AColor* lower, AColor* upper) override
    {
        *lower = {kLowerBound, kLowerBound, kLowerBound, kLowerBound};
        *upper = {kUpperBound, kUpperBound, kUpperBound, kUpperBound};
    }

    AColor* evalGradientWidth(AColor* result, const OmbrixContext& /*context*/, const UVWSample& /*sample*/,
                              const Vector4& /*width*/) override
    {
        *result = AColor{};
        return result;
    }

private:
    TextureFloatInterface* amplitude = nullptr;
    TextureFloatInterface* distortion_ratio = nullptr;
    TextureFloatInterface* distortion_u = nullptr;
    TextureFloatInterface* distortion_v = nullptr;
    TextureFloatInterface* frequency = nullptr;
    TextureFloatInterface* frequency_ratio = nullptr;
    float gamma = 0.0f;
    int noise_type = 0;
    int octaves = 0;
    TextureFloatInterface* ratio = nullptr;
    TextureFloatInterface* scale = nullptr;
    TextureFloatInterface* threshold = nullptr;
};

class TexSimplexNoiseDesc : public DescOf<TexSimplexNoise, TexSimplexNoiseParams> {
public:
    TexSimplexNoiseDesc()
        : DescOf({2015092818,
                  "TexSimplexNoise",
                  "Implements the Maya simplex noise procedural texture [gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexSimplexNoiseDesc texSimplexNoiseDesc;

} // namespace

} // namespace nezaiva
