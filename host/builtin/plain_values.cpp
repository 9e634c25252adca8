// IntValue, TransformValue and VectorValue: constants of the kinds that have no GPU text.

#include "host/builtin/context_override.h"
#include "host/plugins/registry.h"

#include <ombrix/plugin.h>

namespace ombrix {

namespace {

using OUtils::OmbrixContext;
using OUtils::Transform;
using OUtils::Vector;

class IntValueParams : public OUtils::OmbrixParameterListDesc {
public:
    IntValueParams() { addParamTextureInt("value", 0, -1, "The integer at every point", nullptr); }
};

class IntValue : public OUtils::OmbrixTextureInt {
public:
    explicit IntValue(OUtils::OmbrixPluginDesc* desc) : OmbrixTextureInt(desc)
    {
        paramList->setParamCache("value", &value);
    }
    int evalInt(const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<int>(context, this)) return *given;
        return value ? value->evalInt(context) : 0;
    }

private:
    OUtils::TextureIntInterface* value = nullptr;
};

class TransformValueParams : public OUtils::OmbrixParameterListDesc {
public:
    TransformValueParams()
    {
        addParamTextureTransform("value", Transform(), -1, "The transform at every point", nullptr);
    }
};

Transform narrowed(const OUtils::TraceTransform& wide)
{
    return {wide.matrix,
            {static_cast<float>(wide.offset.x), static_cast<float>(wide.offset.y),
             static_cast<float>(wide.offset.z)}};
}

class TransformValue : public OUtils::OmbrixPlugin, public OUtils::TextureTransformInterface {
public:
    explicit TransformValue(OUtils::OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("value", &value);
    }
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_TEXTURE_TRANSFORM) return static_cast<OUtils::TextureTransformInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    void evalTransform(Transform* result, const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<OUtils::TraceTransform>(context, this))
            *result = narrowed(*given);
        else if (value)
            value->evalTransform(result, context);
        else
            *result = Transform();
    }

private:
    OUtils::TextureTransformInterface* value = nullptr;
};

class VectorValueParams : public OUtils::OmbrixParameterListDesc {
public:
    VectorValueParams()
    {
        addParamTextureVector("value", Vector(), -1, "The vector at every point", nullptr);
        addParamTextureVector("lower", Vector(), -1, "The lower bound; unset, that of the value", nullptr);
        addParamTextureVector("upper", Vector(), -1, "The upper bound; unset, that of the value", nullptr);
    }
};

class VectorValue : public OUtils::OmbrixPlugin, public OUtils::TextureVectorInterface {
public:
    explicit VectorValue(OUtils::OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("value", &value);
        paramList->setParamCache("lower", &lower);
        paramList->setParamCache("upper", &upper);
    }
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_TEXTURE_VECTOR) return static_cast<OUtils::TextureVectorInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    void evalVector(Vector* result, const OmbrixContext& context) override
    {
        if (const auto* given = contextOverride<Vector>(context, this))
            *result = *given;
        else if (value)
            value->evalVector(result, context);
        else
            *result = Vector();
    }
    void evalVectorBounds(Vector* lowest, Vector* highest) override
    {
        *lowest = *highest = Vector();
        Vector unused;
        if (value) value->evalVectorBounds(lowest, highest);
        if (lower) lower->evalVectorBounds(lowest, &unused);
        if (upper) upper->evalVectorBounds(&unused, highest);
    }

private:
    OUtils::TextureVectorInterface* value = nullptr;
    OUtils::TextureVectorInterface* lower = nullptr;
    OUtils::TextureVectorInterface* upper = nullptr;
};

BuiltinDesc<IntValue, IntValueParams> intValueDesc({2019030103,
                                                    "IntValue",
                                                    "Gives one integer at every point [gpuSupport=(none)]",
                                                    {OUtils::EXT_TEXTURE_INT}});
BuiltinDesc<TransformValue, TransformValueParams>
    transformValueDesc({2019030104,
                        "TransformValue",
                        "Gives one transform at every point [gpuSupport=(none)]",
                        {OUtils::EXT_TEXTURE_TRANSFORM}});
BuiltinDesc<VectorValue, VectorValueParams>
    vectorValueDesc({2019030105,
                     "VectorValue",
                     "Gives one vector at every point [gpuSupport=(none)]",
                     {OUtils::EXT_TEXTURE_VECTOR}});

} // namespace

} // namespace ombrix
