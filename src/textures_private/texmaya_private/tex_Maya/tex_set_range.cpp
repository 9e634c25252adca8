// TexSetRange: moves each channel of a colour from an old range to a new one.

#include "kernels/color/set_range.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"
#include "textures_private/texmaya_private/tex_Maya/operator_source.h"

namespace nezaiva {

namespace {

constexpr Color kUnsetInput{0.0f, 0.0f, 0.0f};
constexpr ColorRange kUnsetRange{};
constexpr const char* kUnsetSlot = "color 0 0 0 0\n";
constexpr int kSetRangeOperator = -955; // consumes five slots

class TexSetRangeParams : public OmbrixParameterListDesc {
public:
    TexSetRangeParams()
    {
        addParamTexture("value", -1, nullptr, nullptr);
        addParamTexture("oldMin", -1, nullptr, nullptr);
        addParamTexture("oldMax", -1, nullptr, nullptr);
        addParamTexture("newMin", -1, nullptr, nullptr);
        addParamTexture("newMax", -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

class TexSetRange final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexSetRange(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("value", &value);
        paramList->setParamCache("oldMin", &oldMin);
        paramList->setParamCache("oldMax", &oldMax);
        paramList->setParamCache("newMin", &newMin);
        paramList->setParamCache("newMax", &newMax);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const Color v = rgbOr(value, kUnsetInput, context);
        const Color fromMin = rgbOr(oldMin, kUnsetInput, context);
        const Color fromMax = rgbOr(oldMax, kUnsetInput, context);
        const Color toMin = rgbOr(newMin, kUnsetInput, context);
        const Color toMax = rgbOr(newMax, kUnsetInput, context);
        *result = withAlpha(eachChannel(setRange, v, fromMin, fromMax, toMin, toMax), 1.0f);
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        const ColorRange v = rangeOr(value, kUnsetRange);
        const ColorRange fromMin = rangeOr(oldMin, kUnsetRange);
        const ColorRange fromMax = rangeOr(oldMax, kUnsetRange);
        const ColorRange toMin = rangeOr(newMin, kUnsetRange);
        const ColorRange toMax = rangeOr(newMax, kUnsetRange);
        for (float AColor::*channel : {&AColor::r, &AColor::g, &AColor::b})
            setRangeBounds({v.lower.*channel, v.upper.*channel},
                           {fromMin.lower.*channel, fromMin.upper.*channel},
                           {fromMax.lower.*channel, fromMax.upper.*channel},
                           {toMin.lower.*channel, toMin.upper.*channel},
                           {toMax.lower.*channel, toMax.upper.*channel}, lower->*channel, upper->*channel);
        lower->a = upper->a = 1.0f;
    }

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        if (!isMaterialDescriptor(descriptor)) return 0;
        OperatorSource text(name, tag, descriptor, source, data);
        for (TextureInterface* input : {value, oldMin, oldMax, newMin, newMax})
            text.inputSlotOr(input, kUnsetSlot);
        text.builtin(kSetRangeOperator);
        return 1;
    }

private:
    TextureInterface* value = nullptr;
    TextureInterface* oldMin = nullptr;
    TextureInterface* oldMax = nullptr;
    TextureInterface* newMin = nullptr;
    TextureInterface* newMax = nullptr;
};

class TexSetRangeDesc : public DescOf<TexSetRange, TexSetRangeParams> {
public:
    TexSetRangeDesc()
        : DescOf({2008082701,
                  "TexSetRange",
                  "Remaps the input texture from some old range to a new range of values. The ranges can be "
                  "textured. [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexSetRangeDesc texSetRangeDesc;

} // namespace

} // namespace nezaiva
