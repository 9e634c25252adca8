// TexNoiseMaya: Maya's noise node. Blends two colours by one of the volume noises.
//
// This file is the choice of the noise and the blend; the arithmetic of the noises is in volume_noise.h.

#include "kernels/color/channels.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/mapped_texture.h"
#include "textures_private/texmaya_private/noises/maya_volume_texture.h"

#include <algorithm>

namespace nezaiva {

namespace {

constexpr std::uint32_t kBaseFlags = kDeclaresWrap | kFetchesNoise;
constexpr std::uint32_t kParamsFlags = kDeclaresWrap;
constexpr int kTimePeriod = 100;
// A smaller multiplier switches a colour's texture off.
constexpr float kSmallestMultiplier = 1e-12f;

enum NoiseType : int {
    kPerlinNoise = 0,
    kBillowNoise = 1,
    kWaveNoise = 2,
    kWispyNoise = 3,
    kSpaceTimeNoise = 4, // not among the labels: scene exports alone use it
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
    const ColorInput& texture;
    float multiplier;

    Color at(const OmbrixContext& context) const
    {
        if (!texture || multiplier < kSmallestMultiplier) return plain;
        AColor textured;
        {
            const ScaledFilterWidths scaled(context, multiplier);
            texture.evalColor(&textured, context);
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
        const ColorRange range = texture.bounds();
        lower = mixed(range.lower);
        upper = mixed(range.upper);
    }

private:
    Color mixed(const AColor& bound) const
    {
        const float rest = 1.0f - multiplier;
        return {bound.r * multiplier + plain.r * rest, bound.g * multiplier + plain.g * rest,
                bound.b * multiplier + plain.b * rest};
    }
};

// 0 for an unset input.
float meanOfBounds(const FloatInput& input)
{
    const FloatRange range = input.boundsOr({0.0f, 0.0f});
    return (range.lower + range.upper) * 0.5f;
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
    explicit TexNoiseMaya(OmbrixPluginDesc* desc) : MappedTexture(desc, kBaseFlags)
    {
        inputs.hasUnsetCenter = true;
    }

    static constexpr Identity kIdentity{
        2011050401,
        "TexNoiseMaya",
        "Ombrix implementation of the Maya procedural noise texture [gpuSupport=(partial)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        constexpr VolumeFractal kFractal;
        constexpr BillowVolume kBillow;
        // Straight into what the noises read.
        const auto shared = [](auto member) { return within(&TexNoiseMaya::inputs, member); };
        const auto billow = [](auto member) { return within(&TexNoiseMaya::billowNoise, member); };

        MappedTexture::parameters(p, kParamsFlags);
        p("color1", &TexNoiseMaya::color1, Color{0.0f, 0.0f, 0.0f}, "First color", "gpuSupport=(full)");
        p("color2", &TexNoiseMaya::color2, Color{1.0f, 1.0f, 1.0f}, "Second color", "gpuSupport=(full)");
        p("color1_tex", &TexNoiseMaya::color1_tex, noDefault, "Texture for the first color",
          "gpuSupport=(full)");
        p("color2_tex", &TexNoiseMaya::color2_tex, noDefault, "Texture for the second color",
          "gpuSupport=(full)");
        p("color1_tex_mult", &TexNoiseMaya::color1_tex_mult, 1.0f, "Texture multiplier for the first color",
          "gpuSupport=(none)");
        p("color2_tex_mult", &TexNoiseMaya::color2_tex_mult, 1.0f, "Texture multiplier for the second color",
          "gpuSupport=(none)");
        p("dimensions", &TexNoiseMaya::dimensions, 3, "Two or Three dimensional noise", "gpuSupport=(full)");
        p("amplitude", shared(&VolumeTextureInputs::amplitude), kFractal.amplitude,
          "Amplitude is a scaling factor applied to all the values in the texture, centered around the "
          "texture's average value.  This means that when you increase Amplitude, the light areas get "
          "lighter and the dark areas get darker. If the Noise is being used as a bump map, then increasing "
          "Amplitude will make the bumps higher and the valleys deeper. If you set Amplitude to a value "
          "greater than 1.0, then those parts of the texture that scale out of range will be clipped. On a "
          "bump map, this will show up as plateau regions.",
          "gpuSupport=(full)");
        p("ratio", shared(&VolumeTextureInputs::ratio), kFractal.ratio,
          "Controls the frequency of the fractal noise.  Increase this value to increase the fineness of "
          "detail in the fractal.",
          "gpuSupport=(full)");
        p("threshold", shared(&VolumeTextureInputs::threshold), kFractal.threshold,
          "Threshold is a number that is added to the whole fractal, making it uniformly brighter.  If some "
          "parts of the fractal are pushed up out of range (greater than 1.0), then they will be clipped to "
          "1.0.  If the Noise is being used as a bump map, this will show up as plateau regions. ",
          "gpuSupport=(full)");
        p("depth_max", shared(&VolumeTextureInputs::depthMax), 3,
          "Controls how much calculation is done by the Noise texture", "gpuSupport=(full)");
        p("frequency", shared(&VolumeTextureInputs::frequency), 8.0f,
          "Determines the fundamental frequency for the noise. As this value increases the noise becomes "
          "more detailed. It has the inverse effect of the scale parameter.",
          "gpuSupport=(full)");
        p("frequency_ratio", shared(&VolumeTextureInputs::frequencyRatio), kFractal.frequencyRatio,
          "Determines the relative spacial scale of the noise frequencies. If this ratio is not a whole "
          "integer then the fractal will not repeat  at the integer uv boundaries.",
          "gpuSupport=(full)");
        p("inflection", shared(&VolumeTextureInputs::inflection), false,
          "If true applies a kink in the noise function. This is useful for creating puffy or bumpy effects. "
          "It is equivalent to abs(noise) * 2 - 1",
          "gpuSupport=(full)");
        p("time", &TexNoiseMaya::time, 0.0f,
          "Animate the Noise texture. Control the rate and amount of change of the texture.",
          "gpuSupport=(full)");
        p("noise_type", &TexNoiseMaya::noise_type, 1,
          " 0 - Perlin Noise; 1 - Billow; 2 - Wave; 3 - Wispy. Determines which noise to use during the "
          "fractal iteration.",
          "enum=(0:Perlin Noise; 1:Billow; 2:Wave; 3:Wispy), gpuSupport=(full)");
        p("density", billow(&MayaBillowTexture::density), kBillow.density,
          "Controls how many cells there are imbedded in the medium used by the Billow noise type. At 1.0, "
          "the medium is completely packed with cells. Reduce this value to make the cells more sparse. If "
          "the texture is being used as a bump map, then low values for Density will make it look like a "
          "smooth surface with occasional bumps on it.",
          "gpuSupport=(full)");
        p("spottyness", billow(&MayaBillowTexture::spottyness), kBillow.spottyness,
          "Controls the randomization of the density\tof the individual cells used by the Billow noise type. "
          "When Spottyness is close to 0, all the cells will be the same density.  As you increase "
          "Spottyness, some cells will be denser or thinner than others, in a random fashion.",
          "gpuSupport=(full)");
        p("size_rand", billow(&MayaBillowTexture::sizeRand), kBillow.sizeRand,
          "Controls the randomization of the size of the individual blobs used by the Billow noise type. "
          "When it is close to 0, all the cells will be the same size.  As you increase size_rand, some "
          "cells will be smaller than others,\tin a random fashion.",
          "gpuSupport=(full)");
        p("randomness", billow(&MayaBillowTexture::randomness), kBillow.randomness,
          "Controls how the cells for the Billow noise type are arranged relative to one another. Set "
          "randomness to 1.0 to get a realistic random distribution of cells, as would be found in nature. "
          "If you set Randomness to 0, all the spots are laid out in a completely regular pattern.  This can "
          "provide interesting effects when used as a bump map;  you can make things like insect eyes, or "
          "machine-tooled raspy surfaces.",
          "gpuSupport=(full)");
        p("falloff", billow(&MayaBillowTexture::falloff), 2,
          "0 - Linear; 1 - Smooth; 2 - Fast; 3 - Bubble Controls the way intensity falls off for individual "
          "blobs for the Billow noise type. Linear is a uniform falloff from the center to a value of zero "
          "at the edges of the blobs. Smooth is more natural looking, using a gaussian falloff. Fast focuses "
          "the intensity more towards the center of the blobs. Bubble uses a reverse falloff, fading to zero "
          "at the blob center.",
          "gpuSupport=(full)");
        p("num_waves", within(&TexNoiseMaya::cosineNoise, &MayaCosineTexture::numWaves), 5,
          "Determines how many waves to generate for the Wave noise type. The larger this number the more "
          "random looking and slower the texture.",
          "gpuSupport=(full)");
        p("implode", shared(&VolumeTextureInputs::implode), 0.0f,
          "Implode warps the noise function in a concentric fashion about a point defined by the "
          "implode_center. At a value of zero there is no effect, while at a value of 1.0 it is a spherical "
          "projection of the noise function, creating a starburst effect. Negative values can be used to "
          "skew the noise outward instead of inward.",
          "gpuSupport=(full)");
        p("implode_center", shared(&VolumeTextureInputs::implodeCenter), AColor{0.5f, 0.5f, 0.5f, 1.0f},
          "Implode center in UVW coordinates.", "gpuSupport=(full)");
        p("scale", shared(&VolumeTextureInputs::scale), kWhite, "Scale for the noise UVW coordinates.",
          "gpuSupport=(full)");
        p("origin", shared(&VolumeTextureInputs::origin), AColor{0.0f, 0.0f, 0.0f, 1.0f},
          "Translation for the noise UVW coordinates.", "gpuSupport=(full)");
    }

    // Every interface of this plugin reports the id and the name of EXT_TEXTURE.
    InterfaceId getInterfaceID() override { return EXT_TEXTURE; }
    const char* getInterfaceName() override { return "EXT_TEXTURE"; }

    void frameBegin(OmbrixRenderer* frameRenderer) override
    {
        MappedTexture::frameBegin(frameRenderer);
        prepareVolumeNoise();
        activeNoise = chooseNoise();
    }

    AColor* evalTexture(AColor* result, const OmbrixContext& context, const UVWSample& sample) override
    {
        if (!activeNoise || (dimensions != 2 && dimensions != 3))
            return nouvw_color.evalColor(result, context);
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

    int writeSource(SourceText& text) override;

private:
    bool hasGpuForm() const;
    BlendColor firstColor() const { return {color1, color1_tex, color1_tex_mult}; }
    BlendColor secondColor() const { return {color2, color2_tex, color2_tex_mult}; }
    MayaVolumeTexture* chooseNoise();

    Color3f color1, color2;
    ColorInput color1_tex, color2_tex;
    float color1_tex_mult = 0.0f, color2_tex_mult = 0.0f;
    int dimensions = 0, noise_type = 0;
    float time = 0.0f;
    VolumeTextureInputs inputs;

    MayaPerlinTexture perlinNoise{inputs};
    MayaSpaceTimeTexture spaceTimeNoise{inputs};
    MayaBillowTexture billowNoise{inputs};
    MayaCosineTexture cosineNoise{inputs};
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
        return &billowNoise;
    case kWaveNoise:
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

int TexNoiseMaya::writeSource(SourceText& text)
{
    if (!hasGpuForm()) return MappedTexture::writeSource(text);

    text.line("maya_noise\n");
    const auto writeBlock = [&](PluginInterface* texture, const char* constantLine) {
        if (!text.input(texture, "color", text.tag)) text.line(constantLine);
        text.endSlot();
    };
    const auto writeColorBlock = [&](PluginInterface* texture, const Color3f& color) {
        if (!text.input(texture, "color", text.tag)) text.color(withAlpha(color, 1.0f));
        text.endSlot();
    };
    writeColorBlock(color1_tex, color1);
    writeColorBlock(color2_tex, color2);
    writeBlock(inputs.threshold, "color 0 0 0 0\n");
    writeBlock(inputs.implodeCenter, "color 0 0 0 0\n");
    writeBlock(inputs.implode, "color 0 0 0 0\n");
    writeBlock(inputs.origin, "color 0 0 0 0\n");
    writeBlock(inputs.scale, "color 1 1 1 1\n");
    text.input(uvwgen, "", text.tag);
    text.op(GpuOperator::MayaNoise);
    text.endSlot();

    // The values as the scene has them decide these two lines, the clamped ones go into the packed word.
    const bool lattice = noise_type == kPerlinNoise || noise_type == kWispyNoise;
    if (lattice && dimensions == 2) text.line("maya_noise_2d\n");
    if (lattice && dimensions == 3) text.line("maya_noise_3d\n");
    switch (noise_type) {
    case kPerlinNoise:
        text.line("maya_perlin\n");
        break;
    case kWispyNoise:
        text.line("maya_wispy\n");
        break;
    case kBillowNoise:
        text.line("maya_billow\n");
        break;
    case kWaveNoise:
        text.line("maya_wave\n");
        break;
    default:
        break;
    }
    const int packed = std::clamp(noise_type, 0, 7) | std::clamp(dimensions, 0, 3) << 3 |
                       std::clamp(billowNoise.falloff, 0, 3) << 5 | std::clamp(inputs.inflection, 0, 1) << 7;
    // A carrier of parameters, not a transform: the GPU sees no value of these at a point.
    text.operands({static_cast<float>(packed), meanOfBounds(inputs.amplitude), meanOfBounds(inputs.ratio),
                   meanOfBounds(inputs.frequency), meanOfBounds(inputs.frequencyRatio),
                   meanOfBounds(billowNoise.density), meanOfBounds(billowNoise.spottyness),
                   meanOfBounds(billowNoise.sizeRand), meanOfBounds(billowNoise.randomness),
                   static_cast<float>(cosineNoise.numWaves), static_cast<float>(inputs.depthMax), time});
    return writeColorAdjustments(text);
}

using TexNoiseMayaParams = KindParams<TexNoiseMaya>;
using TexNoiseMayaDesc = KindDesc<TexNoiseMaya, TexNoiseMayaParams>;
TexNoiseMayaDesc texNoiseMayaDesc;

} // namespace

} // namespace nezaiva
