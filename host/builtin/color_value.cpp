// ColorValue and FloatValue: constants for scenes, tests and debugging. The bounds and the gradient can
// be given apart from the value, to try out what reads them.

#include "host/builtin/context_override.h"
#include "host/builtin/value_source.h"
#include "host/plugins/registry.h"

#include <ombrix/plugin.h>

namespace ombrix {

namespace {

using OUtils::AColor;
using OUtils::OmbrixContext;
using OUtils::TextureFloatInterface;
using OUtils::TextureInterface;

constexpr AColor kWhite{1.0f, 1.0f, 1.0f, 1.0f};
constexpr AColor kNoGradient{0.0f, 0.0f, 0.0f, 0.0f};

void declareGradient(OUtils::OmbrixParameterListDesc& parameters)
{
    parameters.addParamTexture("gradient", kNoGradient, -1, "The gradient over the position, four numbers",
                               nullptr);
}

class ColorValueParams : public OUtils::OmbrixParameterListDesc {
public:
    ColorValueParams()
    {
        addParamTexture("value", kWhite, -1, "The color at every point", nullptr);
        addParamTexture("lower", -1, "The lower bound; unset, that of the value", nullptr);
        addParamTexture("upper", -1, "The upper bound; unset, that of the value", nullptr);
        declareGradient(*this);
        declareSource(*this);
    }
};

class ColorValue : public OUtils::OmbrixTexture, public OUtils::RTTexInterface {
public:
    explicit ColorValue(OUtils::OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("value", &value);
        paramList->setParamCache("lower", &lower);
        paramList->setParamCache("upper", &upper);
        paramList->setParamCache("gradient", &gradient);
    }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX && sourceKindOf(*paramList) != SourceKind::None)
            return static_cast<OUtils::RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }
    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        if (renderer) time = renderer->getFrameData().time;
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<AColor>(context, this))
            *result = *given;
        else if (value)
            value->evalColor(result, context);
        else
            *result = kWhite;
        return result;
    }
    void evalColorBounds(AColor* lowest, AColor* highest) override
    {
        *lowest = *highest = kWhite;
        AColor unused;
        if (value) value->evalColorBounds(lowest, highest);
        if (lower) lower->evalColorBounds(lowest, &unused);
        if (upper) upper->evalColorBounds(&unused, highest);
    }
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = kNoGradient;
        if (gradient) gradient->evalColor(result, context);
        return result;
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& /*data*/) override
    {
        AColor constant = kWhite, unused;
        if (value) value->evalColorBounds(&constant, &unused);
        return writeValueSource(*paramList, time, name, tag, descriptor, constantColorText(constant), source);
    }

private:
    TextureInterface* value = nullptr;
    TextureInterface* lower = nullptr;
    TextureInterface* upper = nullptr;
    TextureInterface* gradient = nullptr;
    double time = 0.0; // of the frame
};

class FloatValueParams : public OUtils::OmbrixParameterListDesc {
public:
    FloatValueParams()
    {
        addParamTextureFloat("value", 1.0f, -1, "The number at every point", nullptr);
        addParamTextureFloat("lower", -1, "The lower bound; unset, that of the value", nullptr);
        addParamTextureFloat("upper", -1, "The upper bound; unset, that of the value", nullptr);
        declareGradient(*this);
        declareSource(*this);
    }
};

class FloatValue : public OUtils::OmbrixTextureFloat, public OUtils::RTTexInterface {
public:
    explicit FloatValue(OUtils::OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("value", &value);
        paramList->setParamCache("lower", &lower);
        paramList->setParamCache("upper", &upper);
        paramList->setParamCache("gradient", &gradient);
    }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX && sourceKindOf(*paramList) != SourceKind::None)
            return static_cast<OUtils::RTTexInterface*>(this);
        return OmbrixTextureFloat::getInterface(id);
    }
    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        OmbrixTextureFloat::frameBegin(renderer);
        if (renderer) time = renderer->getFrameData().time;
    }

    float evalFloat(const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<float>(context, this)) return *given;
        return value ? value->evalFloat(context) : 1.0f;
    }
    void evalFloatBounds(float* lowest, float* highest) override
    {
        *lowest = *highest = 1.0f;
        float unused = 0.0f;
        if (value) value->evalFloatBounds(lowest, highest);
        if (lower) lower->evalFloatBounds(lowest, &unused);
        if (upper) upper->evalFloatBounds(&unused, highest);
    }
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = kNoGradient;
        if (gradient) gradient->evalColor(result, context);
        return result;
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& /*data*/) override
    {
        float constant = 1.0f, unused = 0.0f;
        if (value) value->evalFloatBounds(&constant, &unused);
        return writeValueSource(*paramList, time, name, tag, descriptor,
                                constantColorText({constant, constant, constant, constant}), source);
    }

private:
    TextureFloatInterface* value = nullptr;
    TextureFloatInterface* lower = nullptr;
    TextureFloatInterface* upper = nullptr;
    TextureInterface* gradient = nullptr;
    double time = 0.0; // of the frame
};

BuiltinDesc<ColorValue, ColorValueParams>
    colorValueDesc({2019030101,
                    "ColorValue",
                    "Gives one color at every point; for constants, tests and debugging [gpuSupport=(full)]",
                    {OUtils::EXT_TEXTURE}});
BuiltinDesc<FloatValue, FloatValueParams>
    floatValueDesc({2019030102,
                    "FloatValue",
                    "Gives one number at every point; for constants, tests and debugging [gpuSupport=(full)]",
                    {OUtils::EXT_TEXTURE_FLOAT}});

} // namespace

} // namespace ombrix
