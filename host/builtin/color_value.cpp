// ColorValue and FloatValue: constants for scenes, tests and debugging. The bounds and the gradient can
// be given apart from the value, to try out what reads them.

#include "host/builtin/context_override.h"
#include "host/builtin/value_source.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

constexpr AColor kWhite{1.0f, 1.0f, 1.0f, 1.0f};
constexpr AColor kNoGradient{0.0f, 0.0f, 0.0f, 0.0f};

constexpr const char* kLowerDescription = "The lower bound; unset, that of the value";
constexpr const char* kUpperDescription = "The upper bound; unset, that of the value";
constexpr const char* kGradientDescription = "The gradient over the position, four numbers";

class ColorValue final : public ValueTexture<OmbrixTexture> {
public:
    using ValueTexture::ValueTexture;

    static constexpr Identity kIdentity{
        2019030101,
        "ColorValue",
        "Gives one color at every point; for constants, tests and debugging [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &ColorValue::value, kWhite, "The color at every point");
        p("lower", &ColorValue::lower, noDefault, kLowerDescription);
        p("upper", &ColorValue::upper, noDefault, kUpperDescription);
        p("gradient", &ColorValue::gradient, kNoGradient, kGradientDescription);
        ValueTexture::parameters(p);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<AColor>(context, this)) {
            *result = *given;
            return result;
        }
        return value.evalColor(result, context);
    }
    void evalColorBounds(AColor* lowest, AColor* highest) override
    {
        *lowest = *highest = value.unset;
        AColor unused;
        if (value) value->evalColorBounds(lowest, highest);
        if (lower) lower->evalColorBounds(lowest, &unused);
        if (upper) upper->evalColorBounds(&unused, highest);
    }
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = gradient(context);
        return result;
    }

private:
    std::string unsetSource() override
    {
        AColor constant = value.unset, unused;
        if (value) value->evalColorBounds(&constant, &unused);
        return constantColorText(constant);
    }

    ColorInput value, lower, upper, gradient;
};

class FloatValue final : public ValueTexture<OmbrixTextureFloat> {
public:
    using ValueTexture::ValueTexture;

    static constexpr Identity kIdentity{
        2019030102,
        "FloatValue",
        "Gives one number at every point; for constants, tests and debugging [gpuSupport=(full)]",
        {EXT_TEXTURE_FLOAT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &FloatValue::value, 1.0f, "The number at every point");
        p("lower", &FloatValue::lower, noDefault, kLowerDescription);
        p("upper", &FloatValue::upper, noDefault, kUpperDescription);
        p("gradient", &FloatValue::gradient, kNoGradient, kGradientDescription);
        ValueTexture::parameters(p);
    }

    float evalFloat(const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<float>(context, this)) return *given;
        return value(context);
    }
    void evalFloatBounds(float* lowest, float* highest) override
    {
        *lowest = *highest = value.unset;
        float unused = 0.0f;
        if (value) value->evalFloatBounds(lowest, highest);
        if (lower) lower->evalFloatBounds(lowest, &unused);
        if (upper) upper->evalFloatBounds(&unused, highest);
    }
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override
    {
        *result = gradient(context);
        return result;
    }

private:
    std::string unsetSource() override
    {
        float constant = value.unset, unused = 0.0f;
        if (value) value->evalFloatBounds(&constant, &unused);
        return constantColorText({constant, constant, constant, constant});
    }

    FloatInput value, lower, upper;
    ColorInput gradient;
};

BuiltinDesc<ColorValue> colorValueDesc;
BuiltinDesc<FloatValue> floatValueDesc;

} // namespace

} // namespace ombrix
