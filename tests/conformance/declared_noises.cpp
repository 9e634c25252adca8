#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows texSimplexNoiseDeclarations()
{
    const DeclarationRows own = {
        {Declaration::TextureFloat, "amplitude", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "distortion_ratio", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "distortion_u", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "distortion_v", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "frequency", 2.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "frequency_ratio", 1.0f, nullptr, nullptr},
        {Declaration::Float, "gamma", 1.0f, nullptr, nullptr},
        {Declaration::Int, "noise_type", 0, nullptr, nullptr},
        {Declaration::Int, "octaves", 3, nullptr, nullptr},
        {Declaration::TextureFloat, "ratio", 0.707f, nullptr, nullptr},
        {Declaration::TextureFloat, "scale", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "threshold", 0.0f, nullptr, nullptr},
    };
    return behind(mappedDeclarations(false), own);
}

DeclarationRows texNoiseMayaDeclarations()
{
    const DeclarationRows own = {
        {Declaration::Color, "color1", Color{0.0f, 0.0f, 0.0f}, "First color", "gpuSupport=(full)"},
        {Declaration::Color, "color2", Color{1.0f, 1.0f, 1.0f}, "Second color", "gpuSupport=(full)"},
        {Declaration::Texture, "color1_tex", kNone, "Texture for the first color", "gpuSupport=(full)"},
        {Declaration::Texture, "color2_tex", kNone, "Texture for the second color", "gpuSupport=(full)"},
        {Declaration::Float, "color1_tex_mult", 1.0f, "Texture multiplier for the first color",
         "gpuSupport=(none)"},
        {Declaration::Float, "color2_tex_mult", 1.0f, "Texture multiplier for the second color",
         "gpuSupport=(none)"},
        {Declaration::Int, "dimensions", 3, "Two or Three dimensional noise", "gpuSupport=(full)"},
        {Declaration::TextureFloat, "amplitude", 1.0f,
         "Amplitude is a scaling factor applied to all the values in the texture, centered around the "
         "texture's average value.  This means that when you increase Amplitude, the light areas get lighter "
         "and the dark areas get darker. If the Noise is being used as a bump map, then increasing Amplitude "
         "will make the bumps higher and the valleys deeper. If you set Amplitude to a value greater than "
         "1.0, then those parts of the texture that scale out of range will be clipped. On a bump map, this "
         "will show up as plateau regions.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "ratio", 0.707f,
         "Controls the frequency of the fractal noise.  Increase this value to increase the fineness of "
         "detail in the fractal.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "threshold", 0.0f,
         "Threshold is a number that is added to the whole fractal, making it uniformly brighter.  If some "
         "parts of the fractal are pushed up out of range (greater than 1.0), then they will be clipped to "
         "1.0.  If the Noise is being used as a bump map, this will show up as plateau regions. ",
         "gpuSupport=(full)"},
        {Declaration::Int, "depth_max", 3, "Controls how much calculation is done by the Noise texture",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "frequency", 8.0f,
         "Determines the fundamental frequency for the noise. As this value increases the noise becomes more "
         "detailed. It has the inverse effect of the scale parameter.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "frequency_ratio", 2.0f,
         "Determines the relative spacial scale of the noise frequencies. If this ratio is not a whole "
         "integer then the fractal will not repeat  at the integer uv boundaries.",
         "gpuSupport=(full)"},
        {Declaration::Bool, "inflection", false,
         "If true applies a kink in the noise function. This is useful for creating puffy or bumpy effects. "
         "It is equivalent to abs(noise) * 2 - 1",
         "gpuSupport=(full)"},
        {Declaration::Float, "time", 0.0f,
         "Animate the Noise texture. Control the rate and amount of change of the texture.",
         "gpuSupport=(full)"},
        {Declaration::Int, "noise_type", 1,
         " 0 - Perlin Noise; 1 - Billow; 2 - Wave; 3 - Wispy. Determines which noise to use during the "
         "fractal iteration.",
         "enum=(0:Perlin Noise; 1:Billow; 2:Wave; 3:Wispy), gpuSupport=(full)"},
        {Declaration::TextureFloat, "density", 1.0f,
         "Controls how many cells there are imbedded in the medium used by the Billow noise type. At 1.0, "
         "the medium is completely packed with cells. Reduce this value to make the cells more sparse. If "
         "the texture is being used as a bump map, then low values for Density will make it look like a "
         "smooth surface with occasional bumps on it.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "spottyness", 0.1f,
         "Controls the randomization of the density\tof the individual cells used by the Billow noise type. "
         "When Spottyness is close to 0, all the cells will be the same density.  As you increase "
         "Spottyness, some cells will be denser or thinner than others, in a random fashion.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "size_rand", 0.0f,
         "Controls the randomization of the size of the individual blobs used by the Billow noise type. When "
         "it is close to 0, all the cells will be the same size.  As you increase size_rand, some cells will "
         "be smaller than others,\tin a random fashion.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "randomness", 1.0f,
         "Controls how the cells for the Billow noise type are arranged relative to one another. Set "
         "randomness to 1.0 to get a realistic random distribution of cells, as would be found in nature. If "
         "you set Randomness to 0, all the spots are laid out in a completely regular pattern.  This can "
         "provide interesting effects when used as a bump map;  you can make things like insect eyes, or "
         "machine-tooled raspy surfaces.",
         "gpuSupport=(full)"},
        {Declaration::Int, "falloff", 2,
         "0 - Linear; 1 - Smooth; 2 - Fast; 3 - Bubble Controls the way intensity falls off for individual "
         "blobs for the Billow noise type. Linear is a uniform falloff from the center to a value of zero at "
         "the edges of the blobs. Smooth is more natural looking, using a gaussian falloff. Fast focuses the "
         "intensity more towards the center of the blobs. Bubble uses a reverse falloff, fading to zero at "
         "the blob center.",
         "gpuSupport=(full)"},
        {Declaration::Int, "num_waves", 5,
         "Determines how many waves to generate for the Wave noise type. The larger this number the more "
         "random looking and slower the texture.",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "implode", 0.0f,
         "Implode warps the noise function in a concentric fashion about a point defined by the "
         "implode_center. At a value of zero there is no effect, while at a value of 1.0 it is a spherical "
         "projection of the noise function, creating a starburst effect. Negative values can be used to skew "
         "the noise outward instead of inward.",
         "gpuSupport=(full)"},
        {Declaration::Texture, "implode_center", AColor{0.5f, 0.5f, 0.5f, 1.0f},
         "Implode center in UVW coordinates.", "gpuSupport=(full)"},
        {Declaration::Texture, "scale", AColor{1.0f, 1.0f, 1.0f, 1.0f},
         "Scale for the noise UVW coordinates.", "gpuSupport=(full)"},
        {Declaration::Texture, "origin", AColor{0.0f, 0.0f, 0.0f, 1.0f},
         "Translation for the noise UVW coordinates.", "gpuSupport=(full)"},
    };
    return behind(mappedDeclarations(true), own);
}

} // namespace conformance
