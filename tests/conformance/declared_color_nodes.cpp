#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows texColorCorrectDeclarations()
{
    return {
        {Declaration::Texture, "in_color", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "in_alpha", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "unpremultiply_input", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "premultiply_result", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "hue_shift", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "sat_gain", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "val_gain", 0.0f, nullptr, nullptr},
        {Declaration::Texture, "col_gain", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::Texture, "col_offset", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::Texture, "col_gamma", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "col_clamp", 0.0f, nullptr, nullptr},
        {Declaration::Texture, "col_clamp_min", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::Texture, "col_clamp_max", Color{0.0f, 0.0f, 0.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_gain", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_offset", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_gamma", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_clamp", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_clamp_min", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_clamp_max", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texFloatCorrectDeclarations()
{
    return {
        {Declaration::TextureFloat, "in_float", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "gain", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "offset", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "gamma", 0.0f, nullptr, nullptr},
        {Declaration::Int, "clamp", 0, nullptr, nullptr},
        {Declaration::Float, "clamp_min", 0.0f, nullptr, nullptr},
        {Declaration::Float, "clamp_max", 1.0f, nullptr, nullptr},
    };
}

DeclarationRows texColorMaskDeclarations()
{
    return {
        {Declaration::Texture, "in_color", Color{1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "in_alpha", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "preserve_color", 0.0f, nullptr, nullptr},
        {Declaration::Texture, "mask", Color{1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "mask_alpha", 1.0f, nullptr, nullptr},
        {Declaration::Float, "mask_alpha_is_luminance", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texFloatMaskDeclarations()
{
    return {
        {Declaration::TextureFloat, "in_float", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "mask", 1.0f, nullptr, nullptr},
    };
}

DeclarationRows texCompositeDeclarations()
{
    return {
        {Declaration::Texture, "color_a", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_a", 1.0f, nullptr, nullptr},
        {Declaration::Texture, "color_b", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_b", 1.0f, nullptr, nullptr},
        {Declaration::Int, "operation", 0, nullptr, nullptr},
        {Declaration::TextureFloat, "factor", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texFloatCompositeDeclarations()
{
    return {
        {Declaration::TextureFloat, "float_a", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "float_b", 1.0f, nullptr, nullptr},
        {Declaration::Int, "operation", 0, nullptr, nullptr},
        {Declaration::TextureFloat, "factor", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texRGBToHSVDeclarations()
{
    return {
        {Declaration::Texture, "inRgb", kNone, nullptr, nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

DeclarationRows texHSVToRGBDeclarations()
{
    return {
        {Declaration::Texture, "inHsv", kNone, nullptr, nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

DeclarationRows texLuminanceDeclarations()
{
    return {
        {Declaration::Texture, "input", kNone, nullptr, nullptr},
        {Declaration::OutputTextureFloat, "luminance", kNone, nullptr, nullptr},
    };
}

DeclarationRows texColorAndAlphaDeclarations()
{
    return {
        {Declaration::Texture, "color_input", kNone, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_input", 1.0f, nullptr, nullptr},
    };
}

DeclarationRows texMayaConversionDeclarations()
{
    return {
        {Declaration::TextureFloat, "input", 0.0f, nullptr, nullptr},
        {Declaration::Float, "conversion_factor", 1.0f, nullptr, nullptr},
        {Declaration::OutputTextureFloat, "output", kNone, nullptr, nullptr},
    };
}

DeclarationRows floatToTexDeclarations()
{
    return {
        {Declaration::TextureFloat, "input", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows transformToTexDeclarations()
{
    return {
        {Declaration::TextureTransform, "input", TraceTransform{}, nullptr, nullptr},
    };
}

DeclarationRows texVectorToColorDeclarations()
{
    return {
        {Declaration::TextureVector, "input", Vector{}, nullptr, nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

} // namespace conformance
