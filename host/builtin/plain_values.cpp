// IntValue, TransformValue and VectorValue: constants of the kinds that have no GPU text.

#include "host/builtin/context_override.h"
#include "host/builtin/frame_values.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

class IntValue final : public OmbrixTextureInt {
public:
    using OmbrixTextureInt::OmbrixTextureInt;

    static constexpr Identity kIdentity{
        2019030103, "IntValue", "Gives one integer at every point [gpuSupport=(none)]", {EXT_TEXTURE_INT}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &IntValue::value, 0, "The integer at every point");
    }

    int evalInt(const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<int>(context, this)) return *given;
        return value(context);
    }

private:
    IntInput value;
};

class TransformValue final : public Offers<OmbrixPlugin, TextureTransformInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{2019030104,
                                        "TransformValue",
                                        "Gives one transform at every point [gpuSupport=(none)]",
                                        {EXT_TEXTURE_TRANSFORM}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &TransformValue::value, Transform{}, "The transform at every point");
    }

    void evalTransform(Transform* result, const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<TraceTransform>(context, this))
            *result = relativeTo(VectorD{}, *given);
        else
            *result = value(context);
    }

private:
    TransformInput value;
};

class VectorValue final : public Offers<OmbrixPlugin, TextureVectorInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{2019030105,
                                        "VectorValue",
                                        "Gives one vector at every point [gpuSupport=(none)]",
                                        {EXT_TEXTURE_VECTOR}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("value", &VectorValue::value, Vector{}, "The vector at every point");
        p("lower", &VectorValue::lower, Vector{}, "The lower bound; unset, that of the value");
        p("upper", &VectorValue::upper, Vector{}, "The upper bound; unset, that of the value");
    }

    void evalVector(Vector* result, const OmbrixContext& context) override
    {
        const auto* given = contextOverride<Vector>(context, this);
        *result = given ? *given : value(context);
    }
    void evalVectorBounds(Vector* lowest, Vector* highest) override
    {
        *lowest = *highest = value.unset;
        Vector unused;
        if (value) value->evalVectorBounds(lowest, highest);
        if (lower) lower->evalVectorBounds(lowest, &unused);
        if (upper) upper->evalVectorBounds(&unused, highest);
    }

private:
    VectorInput value, lower, upper;
};

BuiltinDesc<IntValue> intValueDesc;
BuiltinDesc<TransformValue> transformValueDesc;
BuiltinDesc<VectorValue> vectorValueDesc;

} // namespace

} // namespace ombrix
