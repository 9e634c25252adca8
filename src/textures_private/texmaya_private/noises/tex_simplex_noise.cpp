// TexSimplexNoise: the simplex noise texture, a value in all four channels over U and V.
//
// scale defaults to 0, which maps every point to (0, 0): the texture is a constant until scale is set.

#include "kernels/noises/simplex_noise.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/mapped_texture.h"

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = 0;

constexpr SimplexTextureValues kDefaults{};
constexpr float kLowerBound = 0.0f;
constexpr float kUpperBound = 3.5f;

class TexSimplexNoise final : public MappedTexture {
public:
    explicit TexSimplexNoise(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags) {}

    static constexpr Identity kIdentity{
        2015092818,
        "TexSimplexNoise",
        "Implements the Maya simplex noise procedural texture [gpuSupport=(none)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        MappedTexture::parameters(p, kBaseFlags);
        p("amplitude", &TexSimplexNoise::amplitude, kDefaults.octaves.amplitude);
        p("distortion_ratio", &TexSimplexNoise::distortion_ratio, kDefaults.octaves.distortionRatio);
        p("distortion_u", &TexSimplexNoise::distortion_u, kDefaults.octaves.distortionU);
        p("distortion_v", &TexSimplexNoise::distortion_v, kDefaults.octaves.distortionV);
        p("frequency", &TexSimplexNoise::frequency, kDefaults.octaves.frequency);
        p("frequency_ratio", &TexSimplexNoise::frequency_ratio, kDefaults.octaves.frequencyRatio);
        p("gamma", &TexSimplexNoise::gamma, kDefaults.gamma);
        p("noise_type", &TexSimplexNoise::noise_type, kDefaults.noiseType);
        p("octaves", &TexSimplexNoise::octaves, kDefaults.octaves.octaves);
        p("ratio", &TexSimplexNoise::ratio, kDefaults.octaves.ratio);
        p("scale", &TexSimplexNoise::scale, kDefaults.scale);
        p("threshold", &TexSimplexNoise::threshold, kDefaults.threshold);
    }

    AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& sample) override
    {
        SimplexTextureValues values;
        values.octaves.amplitude = amplitude(context);
        values.octaves.distortionRatio = distortion_ratio(context);
        values.octaves.distortionU = distortion_u(context);
        values.octaves.distortionV = distortion_v(context);
        values.octaves.frequency = frequency(context);
        values.octaves.frequencyRatio = frequency_ratio(context);
        values.octaves.ratio = ratio(context);
        values.scale = scale(context);
        values.threshold = threshold(context);
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

private:
    FloatInput amplitude, distortion_ratio, distortion_u, distortion_v, frequency, frequency_ratio, ratio,
        scale, threshold;
    float gamma = 0.0f;
    int noise_type = 0, octaves = 0;
};

using TexSimplexNoiseParams = KindParams<TexSimplexNoise>;
using TexSimplexNoiseDesc = KindDesc<TexSimplexNoise, TexSimplexNoiseParams>;
TexSimplexNoiseDesc texSimplexNoiseDesc;

} // namespace

} // namespace nezaiva
