#include "plugin_table.h"

namespace conformance {

using ombrix::Declaration;
using namespace OUtils;

DeclarationRows mayaMultiplyDivideDeclarations()
{
    return {
        {Declaration::Texture, "color1", AColor{1.0f, 1.0f, 1.0f, 1.0f}, "First color", nullptr},
        {Declaration::Texture, "color2", AColor{1.0f, 1.0f, 1.0f, 1.0f}, "Second color", nullptr},
        {Declaration::Int, "operation", 1, "Operation (1 - multiply, 2 - divide, 3 - power)",
         "enum=(1:Multiply; 2:Divide; 3:Power)"},
        {Declaration::OutputTexture, "color", kNone, "The resulting color", nullptr},
    };
}

DeclarationRows mayaGammaDeclarations()
{
    return {
        {Declaration::Texture, "input", AColor{0.0f, 0.0f, 0.0f, 1.0f}, "The input color", nullptr},
        {Declaration::Texture, "gamma", AColor{1.0f, 1.0f, 1.0f, 1.0f}, "Gamma values", nullptr},
        {Declaration::OutputTexture, "color", kNone, "The resulting color", nullptr},
    };
}

DeclarationRows texSetRangeDeclarations()
{
    return {
        {Declaration::Texture, "value", kNone, nullptr, nullptr},
        {Declaration::Texture, "oldMin", kNone, nullptr, nullptr},
        {Declaration::Texture, "oldMax", kNone, nullptr, nullptr},
        {Declaration::Texture, "newMin", kNone, nullptr, nullptr},
        {Declaration::Texture, "newMax", kNone, nullptr, nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

DeclarationRows texVectorProductDeclarations()
{
    return {
        {Declaration::Int, "operation", 1,
         "Operation (0 - No operation, 1 - Dot Product, 2 - Cross Product, 3 - Vector Matrix Product, 4 - "
         "Point Matrix Product)",
         "enum=(0:No operation; 1:Dot Product; 2:Cross Product; 3:Vector Matrix Product; 4:Point Matrix "
         "Product)"},
        {Declaration::Texture, "input1", kNone, nullptr, nullptr},
        {Declaration::Texture, "input2", kNone, nullptr, nullptr},
        {Declaration::TextureTransform, "transform", TraceTransform{}, nullptr, nullptr},
        {Declaration::Bool, "normalize", false,
         "When this is true the output vector will be normalized (in case of dot product, the input vectors "
         "are normalized before the operation)",
         nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

DeclarationRows texDistanceBetweenDeclarations()
{
    return {
        {Declaration::Texture, "point1", kNone, nullptr, nullptr},
        {Declaration::Texture, "point2", kNone, nullptr, nullptr},
        {Declaration::TextureTransform, "transform1", TraceTransform{}, nullptr, nullptr},
        {Declaration::TextureTransform, "transform2", TraceTransform{}, nullptr, nullptr},
        {Declaration::OutputTextureFloat, "distance", kNone, nullptr, nullptr},
    };
}

DeclarationRows texPlusMinusAverageDeclarations()
{
    return {
        {Declaration::Int, "operation", 1, "0 - No operation; 1 - Sum; 2 - Subtract from first; 3 - Average",
         "enum=(0:No operation; 1:Sum; 2:Subtract from first; 3:Average)"},
        {Declaration::Plugin, "input1D", kNone, nullptr, nullptr, EXT_TEXTURE_FLOAT, 0, 0},
        {Declaration::Plugin, "input2D", kNone, nullptr, nullptr, EXT_TEXTURE, 0, 0},
        {Declaration::Plugin, "input3D", kNone, nullptr, nullptr, EXT_TEXTURE, 0, 0},
        {Declaration::OutputTextureFloat, "output1D", kNone, nullptr, nullptr},
        {Declaration::OutputTexture, "output2D", kNone, nullptr, nullptr},
        {Declaration::OutputTexture, "output3D", kNone, nullptr, nullptr},
    };
}

DeclarationRows texCondition2Declarations()
{
    return {
        {Declaration::Int, "operation", 0,
         "0 : Equal; 1 : Not equal; 2 : Greater than; 3 : Greater or equal; 4 : Less than; 5 : Less or equal",
         "enum=(0:Equal; 1:Not equal; 2:Greater than; 3:Greater or equal; 4:Less than; 5:Less or equal)"},
        {Declaration::TextureFloat, "first_term", 0.0f, nullptr, nullptr},
        {Declaration::TextureFloat, "second_term", 0.0f, nullptr, nullptr},
        {Declaration::Texture, "color_if_true", AColor{0.0f, 0.0f, 0.0f, 1.0f}, nullptr, nullptr},
        {Declaration::Texture, "color_if_false", AColor{1.0f, 1.0f, 1.0f, 1.0f}, nullptr, nullptr},
    };
}

DeclarationRows texUVWGenToTextureDeclarations()
{
    return {
        {Declaration::Plugin, "input", kNone, nullptr, nullptr, EXT_UVWGEN},
    };
}

DeclarationRows texMayaContrastDeclarations()
{
    return {
        {Declaration::Texture, "value", AColor{0.0f, 0.0f, 0.0f, 1.0f}, nullptr, nullptr},
        {Declaration::Texture, "contrast", AColor{2.0f, 2.0f, 2.0f, 1.0f}, nullptr, nullptr},
        {Declaration::Texture, "bias", AColor{0.5f, 0.5f, 0.5f, 1.0f}, nullptr, nullptr},
    };
}

DeclarationRows texTemperatureToColorDeclarations()
{
    return {
        {Declaration::Texture, "input", AColor{0.0f, 0.0f, 0.0f, 1.0f}, nullptr, nullptr},
        {Declaration::Float, "temperature", 1.0f, nullptr, nullptr},
        {Declaration::OutputTexture, "color", kNone, nullptr, nullptr},
    };
}

} // namespace conformance
