// TexNoiseMaya: Maya's noise node. Blends two colours by one of the volume noises.
//
// This file is the choice of the noise and the blend; the arithmetic of the noises is in volume_noise.h.

#include "plugin_frame/gpu_text.h"
#include "plugin_frame/mapped_texture.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/noises/maya_volume_texture.h"
#include "textures_private/texmaya_private/noises/tex_noise_maya_params.h"

#include <algorithm>

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = kDeclaresWrap | kFetchesNoise;
constexpr int kTimePeriod = 100;
constexpr int kMayaNoiseOperator = -968;
// A smaller multiplier switches a colour's texture off.
constexpr float kSmallestMultiplier = 1e-12f;

enum NoiseType : int {
    kPerlinNoise = 0,
    kBillowNoise = 1,
    kWaveNoise = 2,
    kWispyNoise = 3,
    kSpaceTimeNoise = 4, // not among the labels: scene exports alone use it
};

// The centre of the warp while none is connected.
class DefaultImplodeCenter final : public TextureInterface {
public:
    PluginBase* getPlugin() override { return nullptr; }
    AColor* evalColor(AColor* result, const OmbrixContext& /*context*/) override
    {
        *result = kDefaultImplodeCenter;
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { *lower = *upper = kDefaultImplodeCenter; }
};

// Scales the filter widths of a context while it lives. The context belongs to the evaluating thread.
class ScaledFilterWidths {
public:
    ScaledFilterWidths(const OmbrixContext& shadingContext, float factor)
        : context(const_cast<OmbrixContext&>(shadingContext))
    {
        for (int i = 0; i < 4; ++i) {
            saved[i] = context.filterWidths[i];
            context.filterWidths[i] *= factor;
        }
    }
    ~ScaledFilterWidths()
    {
        for (int i = 0; i < 4; ++i)
            context.filterWidths[i] = saved[i];
    }
    ScaledFilterWidths(const ScaledFilterWidths&) = delete;
    ScaledFilterWidths& operator=(const ScaledFilterWidths&) = delete;

private:
    OmbrixContext& context;
    float saved[4];
};

// One of the two colours: a plain one, and a texture that may cover it.
struct BlendColor {
    Color3f plain;
    TextureInterface* texture = nullptr;
    float multiplier = 0.0f;

    Color at(const OmbrixContext& context) const
    {
        if (!texture || multiplier < kSmallestMultiplier) return plain;
        AColor textured;
        {
            const ScaledFilterWidths scaled(context, multiplier);
            texture->evalColor(&textured, context);
        }
        float alpha = textured.a;
        if (alpha < 0.0f) alpha = 0.0f;
        if (alpha > 1.0f) alpha = 1.0f;
        const float rest = 1.0f - multiplier * alpha;
        return {textured.r * multiplier + plain.r * rest, textured.g * multiplier + plain.g * rest,
                textured.b * multiplier + plain.b * rest};
    }

    void bounds(Color& lower, Color& upper) const
    {
        lower = upper = plain;
        if (!texture) return;
        AColor textureLower{0.0f, 0.0f, 0.0f, 0.0f};
        AColor textureUpper{1.0f, 1.0f, 1.0f, 1.0f};
        texture->evalColorBounds(&textureLower, &textureUpper);
        lower = mixed(textureLower);
        upper = mixed(textureUpper);
    }

private:
    Color mixed(const AColor& bound) const
    {
        const float rest = 1.0f - multiplier;
        return {bound.r * multiplier + plain.r * rest, bound.g * multiplier + plain.g * rest,
                bound.b * multiplier + plain.b * rest};
    }
};

// 0 for an unset input. An input that leaves its bounds unwritten counts as anything from 0 to 1.
double meanOfBounds(TextureFloatInterface* input)
{
    if (!input) return 0.0;
    float lower = 0.0f, upper = 1.0f;
    input->evalFloatBounds(&lower, &upper);
    return static_cast<double>((lower + upper) * 0.5f);
}

float smaller(float a, float b)
{
    return b < a ? b : a;
}
float larger(float a, float b)
{
    return a < b ? b : a;
}

class TexNoiseMaya final : public MappedTexture {
public:
    explicit TexNoiseMaya(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags) { bindParameters(); }

    // Every interface of this plugin reports the id and the name of EXT_TEXTURE.
    InterfaceId getInterfaceID() override { return EXT_TEXTURE; }
    const char* getInterfaceName() override { return "EXT_TEXTURE"; }

    void frameBegin(OmbrixRenderer* frameRenderer) override
    {
        MappedTexture::frameBegin(frameRenderer);
        prepareVolumeNoise();
        activeNoise = chooseNoise();
        if (!activeNoise) return;
        activeNoise->amplitude = amplitude;
        activeNoise->threshold = threshold;
        activeNoise->depthMax = depth_max;
        activeNoise->frequencyRatio = frequency_ratio;
        activeNoise->frequency = frequency;
        activeNoise->ratio = ratio;
        activeNoise->inflection = inflection != 0;
        activeNoise->implode = implode;
        activeNoise->implodeCenter = implode_center ? implode_center : &defaultImplodeCenter;
        activeNoise->scale = scale;
        activeNoise->origin = origin;
    }

    AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& sample) override
    {
        if (!activeNoise || (dimensions != 2 && dimensions != 3)) {
            *result = noUVWColor(context);
            return result;
        }
        const Vector4& uvw = sample.uvw;
        const float n = dimensions == 2 ? activeNoise->eval2d(context, uvw.x, uvw.y, time)
                                        : activeNoise->eval3d(context, uvw.x, uvw.y, uvw.z, time);
        const Color first = firstColor().at(context);
        const Color second = secondColor().at(context);
        const float rest = 1.0f - n;
        *result = {second.r * n + first.r * rest, second.g * n + first.g * rest,
                   second.b * n + first.b * rest, 1.0f};
        return result;
    }

    // No noise knows a footprint, so none is computed.
    AColor* evalTextureFiltered(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                const Vector4& /*du*/, const Vector4& /*dv*/) override
    {
        return evalTexture(result, context, sample);
    }

    void getTextureBounds(AColor* lower, AColor* upper) override
    {
        Color lower1, upper1, lower2, upper2;
        firstColor().bounds(lower1, upper1);
        secondColor().bounds(lower2, upper2);
        *lower = {smaller(lower1.r, lower2.r), smaller(lower1.g, lower2.g), smaller(lower1.b, lower2.b),
                  1.0f};
        *upper = {larger(upper1.r, upper2.r), larger(upper1.g, upper2.g), larger(upper1.b, upper2.b), 1.0f};
    }

    AColor* evalGradientWidth(AColor* result, const OmbrixContext& /*context*/, const UVWSample& /*sample*/,
                              const Vector4& /*width*/) override
    {
        *result = AColor{};
        return result;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

private:
    bool hasGpuForm() const;
    BlendColor firstColor() const { return {color1, color1_tex, color1_tex_mult}; }
    BlendColor secondColor() const { return {color2, color2_tex, color2_tex_mult}; }
    MayaVolumeTexture* chooseNoise();
    void bindParameters();

    Color3f color1, color2;
    TextureInterface* color1_tex = nullptr;
    TextureInterface* color2_tex = nullptr;
    float color1_tex_mult = 0.0f, color2_tex_mult = 0.0f;
    int dimensions = 0;
    TextureFloatInterface* amplitude = nullptr;
    TextureFloatInterface* ratio = nullptr;
    TextureFloatInterface* threshold = nullptr;
    int depth_max = 0;
    TextureFloatInterface* frequency = nullptr;
    TextureFloatInterface* frequency_ratio = nullptr;
    int inflection = 0;
    float time = 0.0f;
    int noise_type = 0;
    TextureFloatInterface* density = nullptr;
    TextureFloatInterface* spottyness = nullptr;
    TextureFloatInterface* size_rand = nullptr;
    TextureFloatInterface* randomness = nullptr;
    int falloff = 0;
    int num_waves = 0;
    TextureFloatInterface* implode = nullptr;
    TextureInterface* implode_center = nullptr;
    TextureInterface* scale = nullptr;
    TextureInterface* origin = nullptr;

    DefaultImplodeCenter defaultImplodeCenter;
    MayaPerlinTexture perlinNoise;
    MayaSpaceTimeTexture spaceTimeNoise;
    MayaBillowTexture billowNoise;
    MayaCosineTexture cosineNoise;
    MayaVolumeTexture* activeNoise = nullptr; // chosen at frame begin; null for an unknown noise_type
};

MayaVolumeTexture* TexNoiseMaya::chooseNoise()
{
    switch (noise_type) {
    case kPerlinNoise:
    case kWispyNoise:
        perlinNoise.wispy = noise_type == kWispyNoise;
        perlinNoise.timeNoise = false;
        perlinNoise.timePeriod = kTimePeriod;
        return &perlinNoise;
    case kBillowNoise:
        billowNoise.density = density;
        billowNoise.spottyness = spottyness;
        billowNoise.randomness = randomness;
        billowNoise.sizeRand = size_rand;
        billowNoise.falloff = falloff;
        return &billowNoise;
    case kWaveNoise:
        cosineNoise.numWaves = num_waves;
        return &cosineNoise;
    case kSpaceTimeNoise:
        spaceTimeNoise.wispy = false;
        spaceTimeNoise.timeNoise = false;
        spaceTimeNoise.timePeriod = kTimePeriod;
        return &spaceTimeNoise;
    default:
        return nullptr;
    }
}

// With three dimensions the GPU knows the lattice noises alone; it never knows the space-time noise.
bool TexNoiseMaya::hasGpuForm() const
{
    if (dimensions == 3) return noise_type == kPerlinNoise || noise_type == kWispyNoise;
    return noise_type != kSpaceTimeNoise;
}

int TexNoiseMaya::getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                            OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    if (!hasGpuForm()) return MappedTexture::getSource(name, tag, descriptor, source, data);

    source.append("maya_noise\n");
    const auto writeBlock = [&](PluginInterface* texture, const char* constantLine) {
        if (!texture || !RTTexInterface::getRTTexSource(texture, "color", tag, descriptor, source, data))
            source.append(constantLine);
        source.append("subtex\n");
    };
    const auto writeColorBlock = [&](PluginInterface* texture, const Color3f& color) {
        if (!texture || !RTTexInterface::getRTTexSource(texture, "color", tag, descriptor, source, data))
            source.printf("color %f %f %f %f\n", static_cast<double>(color.r), static_cast<double>(color.g),
                          static_cast<double>(color.b), 1.0);
        source.append("subtex\n");
    };
    writeColorBlock(color1_tex, color1);
    writeColorBlock(color2_tex, color2);
    writeBlock(threshold, "color 0 0 0 0\n");
    writeBlock(implode_center, "color 0 0 0 0\n");
    writeBlock(implode, "color 0 0 0 0\n");
    writeBlock(origin, "color 0 0 0 0\n");
    writeBlock(scale, "color 1 1 1 1\n");
    RTTexInterface::getRTTexSource(uvwgenInterface, "", tag, descriptor, source, data);
    source.printf("bitmap %i\n", kMayaNoiseOperator);
    source.append("subtex\n");

    // The values as the scene has them decide these two lines, the clamped ones go into the packed word.
    const bool lattice = noise_type == kPerlinNoise || noise_type == kWispyNoise;
    if (lattice && dimensions == 2) source.append("maya_noise_2d\n");
    if (lattice && dimensions == 3) source.append("maya_noise_3d\n");
    switch (noise_type) {
    case kPerlinNoise:
        source.append("maya_perlin\n");
        break;
    case kWispyNoise:
        source.append("maya_wispy\n");
        break;
    case kBillowNoise:
        source.append("maya_billow\n");
        break;
    case kWaveNoise:
        source.append("maya_wave\n");
        break;
    default:
        break;
    }
    const int packed = std::clamp(noise_type, 0, 7) | std::clamp(dimensions, 0, 3) << 3 |
                       std::clamp(falloff, 0, 3) << 5 | std::clamp(inflection, 0, 1) << 7;
    // A carrier of parameters, not a transform: the GPU sees no value of these at a point.
    source.printf("uvw_transform %f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n",
                  static_cast<double>(static_cast<float>(packed)), meanOfBounds(amplitude),
                  meanOfBounds(ratio), meanOfBounds(frequency), meanOfBounds(frequency_ratio),
                  meanOfBounds(density), meanOfBounds(spottyness), meanOfBounds(size_rand),
                  meanOfBounds(randomness), static_cast<double>(num_waves), static_cast<double>(depth_max),
                  static_cast<double>(time));
    return writeColorAdjustments(descriptor, source, data);
}

void TexNoiseMaya::bindParameters()
{
    paramList->setParamCache("color1", &color1);
    paramList->setParamCache("color2", &color2);
    paramList->setParamCache("color1_tex", &color1_tex);
    paramList->setParamCache("color2_tex", &color2_tex);
    paramList->setParamCache("color1_tex_mult", &color1_tex_mult);
    paramList->setParamCache("color2_tex_mult", &color2_tex_mult);
    paramList->setParamCache("dimensions", &dimensions);
    paramList->setParamCache("amplitude", &amplitude);
    paramList->setParamCache("ratio", &ratio);
    paramList->setParamCache("threshold", &threshold);
    paramList->setParamCache("depth_max", &depth_max);
    paramList->setParamCache("frequency", &frequency);
    paramList->setParamCache("frequency_ratio", &frequency_ratio);
    paramList->setParamCache("inflection", &inflection);
    paramList->setParamCache("time", &time);
    paramList->setParamCache("noise_type", &noise_type);
    paramList->setParamCache("density", &density);
    paramList->setParamCache("spottyness", &spottyness);
    paramList->setParamCache("size_rand", &size_rand);
    paramList->setParamCache("randomness", &randomness);
    paramList->setParamCache("falloff", &falloff);
    paramList->setParamCache("num_waves", &num_waves);
    paramList->setParamCache("implode", &implode);
    paramList->setParamCache("implode_center", &implode_center);
    paramList->setParamCache("scale", &scale);
    paramList->setParamCache("origin", &origin);
}

class TexNoiseMayaDesc : public DescOf<TexNoiseMaya, TexNoiseMayaParams> {
public:
    TexNoiseMayaDesc()
        : DescOf({2011050401,
                  "TexNoiseMaya",
                  "Ombrix implementation of the Maya procedural noise texture [gpuSupport=(partial)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexNoiseMayaDesc texNoiseMayaDesc;

} // namespace

} // namespace nezaiva
