#include "plugin_frame/common_texture_outputs.h"

#include "plugin_frame/gpu_text.h"

namespace nezaiva {

namespace {
constexpr int kAlphaAsColorOperator = -974;
constexpr int kColorMatrixOperator = -999;
} // namespace

PluginInterface* CommonTransparencyTex::getInterface(InterfaceId id)
{
    if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
    if (id == EXT_TEXTURE) return static_cast<TextureInterface*>(this);
    return PluginBase::getInterface(id);
}

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

int CommonTransparencyTex::getSource(const char* name, const char* tag, const char* descriptor,
                                     ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    RTTexInterface::getRTTexSource(parent, name, tag, descriptor, source, data);
    source.append("subtex\n");
    source.printf("bitmap %i\n", kAlphaAsColorOperator);
    source.append("subtex\n");
    source.printf("%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n", 1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0,
                  0.0, 0.0);
    source.printf("bitmap %i\n", kColorMatrixOperator);
    return 1;
}

PluginInterface* CommonAlphaTex::getInterface(InterfaceId id)
{
    if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
    if (id == EXT_TEXTURE_FLOAT) return static_cast<TextureFloatInterface*>(this);
    return PluginBase::getInterface(id);
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

int CommonAlphaTex::getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                              OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    if (parent)
        RTTexInterface::getRTTexSource(parent, name, tag, descriptor, source, data);
    else
        source.append("color 0.0 0.0 0.0 1.0\n");
    source.append("subtex\n");
    source.printf("bitmap %i\n", kAlphaAsColorOperator);
    return 1;
}

PluginInterface* CommonIntensTex::getInterface(InterfaceId id)
{
    if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
    if (id == EXT_TEXTURE_FLOAT) return static_cast<TextureFloatInterface*>(this);
    return PluginBase::getInterface(id);
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

int CommonIntensTex::getSource(const char* name, const char* tag, const char* descriptor,
                               ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor)) return 0;
    if (!parent) return 1;
    RTTexInterface::getRTTexSource(parent, name, tag, descriptor, source, data);
    source.append("intens2AColor\n");
    return 1;
}

} // namespace nezaiva
