#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows texColorConstantDeclarations()
{
    return {
        {Declaration::Texture, "color", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha", 1.0f, nullptr, nullptr},
    };
}

DeclarationRows texFloatConstantDeclarations()
{
    return {
        {Declaration::TextureFloat, "in_float", 1.0f, nullptr, nullptr},
    };
}

DeclarationRows texColorConditionDeclarations()
{
    return {
        {Declaration::Texture, "color_a", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_a", 1.0f, nullptr, nullptr},
        {Declaration::Texture, "color_b", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
        {Declaration::TextureFloat, "alpha_b", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "condition", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texFloatConditionDeclarations()
{
    return {
        {Declaration::TextureFloat, "float_a", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "float_b", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "condition", 0.0f, nullptr, nullptr},
    };
}

DeclarationRows texColorLogicDeclarations()
{
    return {
        {Declaration::Texture, "color_a", AColor{1.0f, 0.0f, 0.5f, 1.0f}, nullptr, nullptr},
        {Declaration::Texture, "color_b", AColor{1.0f, 0.0f, 0.5f, 1.0f}, nullptr, nullptr},
        {Declaration::Int, "operation", 0, nullptr, nullptr},
    };
}

DeclarationRows texFloatLogicDeclarations()
{
    return {
        {Declaration::TextureFloat, "float_a", 1.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "float_b", 1.0f, nullptr, nullptr},
        {Declaration::Int, "operation", 0, nullptr, nullptr},
    };
}

} // namespace conformance
