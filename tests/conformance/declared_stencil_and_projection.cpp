#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows texStencilDeclarations()
{
    return behind(
        commonDeclarations(),
        {
            {Declaration::Texture, "image", AColor{1.0f, 1.0f, 1.0f, 1.0f},
             "The texture that is used as a stencil", nullptr},
            {Declaration::TextureFloat, "mask", 0.0f, "Represents the Stencil's transparency", nullptr},
            {Declaration::Bool, "key_masking", false,
             "If true, selects the areas in the texture similar to or equal to the Color Key and masks them "
             "out",
             nullptr},
            {Declaration::Bool, "positive_key", false,
             "If true, inverts the Chroma Key mask(only the colors specified in the Color Key and HSV Range "
             "are displayed)",
             nullptr},
            {Declaration::Texture, "color_key", AColor{1.0f, 1.0f, 1.0f, 1.0f},
             "The color to be masked in the texture", nullptr},
            {Declaration::TextureFloat, "hue_range", 0.0f,
             "The range of hues centered on the Color Key color which are also masked", nullptr},
            {Declaration::TextureFloat, "sat_range", 0.0f,
             "The range of saturations centered on the Color Key color which are also masked", nullptr},
            {Declaration::TextureFloat, "val_range", 0.0f,
             "The range of values centered on the Color Key color which are also masked", nullptr},
            {Declaration::Texture, "default_color", AColor{0.0f, 0.0f, 0.0f, 1.0f},
             "Represents the texture that is underneath", nullptr},
            {Declaration::Float, "edge_blend", 0.0f, "Controls the sharpness of the texture edges.", nullptr},
            {Declaration::Plugin, "uvwgen", kNone, "UVWGen from which the uvw coordinates will be taken",
             nullptr, EXT_UVWGEN},
        });
}

DeclarationRows mayaProjectionTexDeclarations()
{
    return behind(mappedDeclarations(true),
                  {
                      {Declaration::Texture, "base_texture", kNone, nullptr, "gpuSupport=(full)"},
                      {Declaration::Texture, "nouvw_transparency", kNone, nullptr, "gpuSupport=(full)"},
                      {Declaration::Texture, "transparency_mult", kNone, nullptr, "gpuSupport=(full)"},
                      {Declaration::Texture, "transparency_offset", kNone, nullptr, "gpuSupport=(full)"},
                  });
}

} // namespace conformance
