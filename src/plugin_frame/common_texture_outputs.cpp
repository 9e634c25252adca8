#include "plugin_frame/common_texture_outputs.h"

#include "kernels/color/brightness.h"

namespace nezaiva {

AColor* CommonTransparencyTex::evalColor(AColor* result, const OmbrixContext& context)
{
    AColor color;
    parent->evalColor(&color, context);
    const float transparency = 1.0f - color.a;
    *result = {transparency, transparency, transparency, 1.0f};
    return result;
}

// Kept as is: the parent's colour bounds, not those of its transparency.
void CommonTransparencyTex::evalColorBounds(AColor* lower, AColor* upper)
{
    parent->evalColorBounds(lower, upper);
}

AColor* CommonTransparencyTex::evalColorGradient(AColor* result, const OmbrixContext& context)
{
    parent->evalColorGradient(result, context);
    *result = {-result->r, -result->g, -result->b, -result->a};
    return result;
}

int CommonTransparencyTex::writeSource(SourceText& text)
{
    text.slot(parent);
    text.op(GpuOperator::AlphaAsColor);
    text.endSlot();
    // Kept as is: the operands of the matrix stand without the word that names them.
    text.bareOperands({1.0f});
    text.op(GpuOperator::ColorMatrix);
    return 1;
}

float CommonAlphaTex::evalFloat(const OmbrixContext& context)
{
    AColor color;
    return parent->evalColor(&color, context)->a;
}

void CommonAlphaTex::evalFloatBounds(float* lower, float* upper)
{
    AColor colorLower{0.0f, 0.0f, 0.0f, 0.0f};
    AColor colorUpper{1.0f, 1.0f, 1.0f, 1.0f};
    parent->evalColorBounds(&colorLower, &colorUpper);
    *lower = colorLower.a;
    *upper = colorUpper.a;
}

int CommonAlphaTex::writeSource(SourceText& text)
{
    if (parent)
        text.slot(parent);
    else
        text.line("color 0.0 0.0 0.0 1.0\nsubtex\n");
    text.op(GpuOperator::AlphaAsColor);
    return 1;
}

float CommonIntensTex::evalFloat(const OmbrixContext& context)
{
    AColor color;
    return intensity(*parent->evalColor(&color, context));
}

void CommonIntensTex::evalFloatBounds(float* lower, float* upper)
{
    AColor colorLower{0.0f, 0.0f, 0.0f, 0.0f};
    AColor colorUpper{1.0f, 1.0f, 1.0f, 1.0f};
    parent->evalColorBounds(&colorLower, &colorUpper);
    *lower = intensity(colorLower);
    *upper = intensity(colorUpper);
}

AColor* CommonIntensTex::evalFloatGradient(AColor* result, const OmbrixContext& context)
{
    return parent->evalColorGradient(result, context);
}

int CommonIntensTex::writeSource(SourceText& text)
{
    if (!parent) return 1;
    text.input(parent);
    text.line("intens2AColor\n");
    return 1;
}

} // namespace nezaiva
