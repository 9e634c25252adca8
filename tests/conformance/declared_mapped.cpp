#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows behind(DeclarationRows inherited, const DeclarationRows& own)
{
    inherited.insert(inherited.end(), own.begin(), own.end());
    return inherited;
}

DeclarationRows commonDeclarations()
{
    return {
        {Declaration::Int, "compatibility_with", 0,
         "This is used to differentiate between textures exported from different applications. The value "
         "means : 0 - 3ds Max (this is also the default), 1 - Maya, ...",
         "enum=(0:Max;1:Maya); startRollout=(Common), gpuSupport=(full)"},
        {Declaration::Int, "alpha_from_intensity", 0,
         "If 2 - the alpha is forced to 1.0f; 1 - the resulting alpha is the color intensity (if "
         "compatibility_with is 0) or the color luminance (if compatibility_with is 1); 0 - the alpha is "
         "taken from the bitmap alpha",
         "enum=(0:Bitmap alpha;1:Color intensity/luminance;2:Force opaque), gpuSupport=(full)"},
        {Declaration::Bool, "invert", false,
         "If true, the resulting texture color will be inverted (complementary)", "gpuSupport=(full)"},
        {Declaration::Bool, "invert_alpha", true,
         "If true and invert is on, the resulting texture alpha will be inverted too. If false, just the "
         "color will be inverted",
         "enable=(::invert=1), gpuSupport=(none)"},
        {Declaration::Texture, "color_mult", AColor{1.0f, 1.0f, 1.0f, 1.0f},
         "A multiplier for the texture color", "gpuSupport=(full)"},
        {Declaration::Texture, "color_offset", AColor{0.0f, 0.0f, 0.0f, 0.0f},
         "An additional offset for the texture color", "gpuSupport=(full)"},
        {Declaration::TextureFloat, "alpha_mult", 1.0f, "A multiplier for the texture alpha",
         "gpuSupport=(full)"},
        {Declaration::TextureFloat, "alpha_offset", 0.0f, "An additional offset for the texture alpha",
         "gpuSupport=(full)"},
        {Declaration::Texture, "nouvw_color", AColor{0.5f, 0.5f, 0.5f, 1.0f},
         "The color when there are no valid uvw coordinates",
         "displayName=(No UVs Color), gpuSupport=(partial)"},
        {Declaration::OutputTexture, "color", kNone, "The resulting color", "gpuSupport=(none)"},
        {Declaration::OutputTexture, "out_transparency", kNone, "The resulting transparency",
         "gpuSupport=(none)"},
        {Declaration::OutputTextureFloat, "out_alpha", kNone, "The resulting alpha", "gpuSupport=(none)"},
        {Declaration::OutputTextureFloat, "out_intensity", kNone, "The resulting intensity",
         "startRollout=(<EndRollout>), gpuSupport=(none)"},
    };
}

DeclarationRows mappedDeclarations(bool withWrap)
{
    DeclarationRows all = commonDeclarations();
    all.push_back({Declaration::Plugin, "uvwgen", kNone, "The uvw generator for the texture",
                   "startRollout=(Mapped), gpuSupport=(full)", EXT_UVWGEN});
    if (withWrap)
        all.push_back({Declaration::Bool, "wrap", true,
                       "If true UVWs outside [-1;1] will wrap back to the valid range.",
                       "gpuSupport=(partial)"});
    const DeclarationRows rest = {
        {Declaration::Int, "placement_type", 0,
         "The way the valid portion of the texture is applied: 0 - the whole texture is valid, 1 - crop, 2 "
         "-place",
         "enum=(0:Whole texture is valid;1:Crop;2:Place), gpuSupport=(partial)"},
        {Declaration::Float, "u", 0.0f, "U coordinate of the valid texture sector",
         "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Float, "v", 0.0f, "V coordinate of the valid texture sector",
         "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Float, "w", 1.0f, "Width of the valid texture sector",
         "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Float, "h", 1.0f, "Height of the valid texture sector",
         "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Float, "jitter", 0.0f, "Amount of random placement variation",
         "enable=(::placement_type=2), gpuSupport=(none)"},
        {Declaration::Bool, "tile_u", false, "If true there is horizontal tiling",
         "enable=(::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Bool, "tile_v", false, "If true there is vertical tiling",
         "enable=(::placement_type=2), gpuSupport=(partial)"},
        {Declaration::Bool, "uv_noise_on", false, "If true the noise is enabled.",
         "displayName=(UV noise on), gpuSupport=(none)"},
        {Declaration::Bool, "uv_noise_animate", false,
         "If true the noise is animated. Use \"UV noise phase\" to animate the noise.",
         "enable=(::uv_noise_on=1), displayName=(Animate UV noise), gpuSupport=(none)"},
        {Declaration::Float, "uv_noise_amount", 1.0f, "UV noise amount",
         "enable=(::uv_noise_on=1), displayName=(UV noise amount), gpuSupport=(none)"},
        {Declaration::Float, "uv_noise_levels", 1.0f, "UV noise iterations",
         "enable=(::uv_noise_on=1), displayName=(UV noise levels), gpuSupport=(none)"},
        {Declaration::Float, "uv_noise_size", 1.0f, "UV noise size",
         "enable=(::uv_noise_on=1), displayName=(UV noise size), gpuSupport=(none)"},
        {Declaration::Float, "un_noise_phase", 0.0f, "UV noise phase",
         "enable=(::uv_noise_on=1, ::uv_noise_animate=1), displayName=(UV noise phase); "
         "startRollout=(<EndRollout>), gpuSupport=(none)"},
    };
    return behind(all, rest);
}

} // namespace conformance
