// One input for any parameter: a plugin that offers every interface by which plugins read one another.
#pragma once

#include "support/host_doubles.h"

#include <ombrix/ombrix.h>
#include <ombrix/world_interfaces.h>

#include <cmath>

namespace conformance {

// All its values come from one level and follow the shading point, so that an answer kept from another
// point or another level shows.
class EveryInput final : public OUtils::OmbrixPlugin,
                         public OUtils::TextureInterface,
                         public OUtils::TextureFloatInterface,
                         public OUtils::TextureIntInterface,
                         public OUtils::TextureTransformInterface,
                         public OUtils::TextureVectorInterface,
                         public OUtils::UVWGenInterface,
                         public OUtils::WorldMatrixInterface,
                         public OUtils::RTTexInterface {
public:
    explicit EveryInput(float inputLevel) : OmbrixPlugin(nullptr), level(inputLevel) {}

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::InterfaceId getInterfaceID() override { return 0; }
    const char* getInterfaceName() override { return nullptr; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        using namespace OUtils;
        switch (id) {
        case EXT_TEXTURE:
            return static_cast<TextureInterface*>(this);
        case EXT_TEXTURE_FLOAT:
            return static_cast<TextureFloatInterface*>(this);
        case EXT_TEXTURE_INT:
            return static_cast<TextureIntInterface*>(this);
        case EXT_TEXTURE_TRANSFORM:
            return static_cast<TextureTransformInterface*>(this);
        case EXT_TEXTURE_VECTOR:
            return static_cast<TextureVectorInterface*>(this);
        case EXT_UVWGEN:
            return static_cast<UVWGenInterface*>(this);
        case EXT_WORLD_MATRIX:
            return static_cast<WorldMatrixInterface*>(this);
        case EXT_RTTEX:
            return static_cast<RTTexInterface*>(this);
        default:
            return OmbrixPlugin::getInterface(id);
        }
    }

    OUtils::AColor* evalColor(OUtils::AColor* result, const OUtils::OmbrixContext& context) override
    {
        const float v = valueAt(context);
        *result = {v, 0.5f * v, 1.0f - v, v};
        return result;
    }
    void evalColorBounds(OUtils::AColor* lower, OUtils::AColor* upper) override
    {
        *lower = {level - 1.0f, level - 1.0f, level - 1.0f, level - 1.0f};
        *upper = {level + 1.0f, level + 1.0f, level + 1.0f, level + 1.0f};
    }
    OUtils::AColor* evalColorGradient(OUtils::AColor* result, const OUtils::OmbrixContext& context) override
    {
        return evalColor(result, context);
    }
    float evalFloat(const OUtils::OmbrixContext& context) override { return valueAt(context); }
    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = level - 1.0f;
        *upper = level + 1.0f;
    }
    OUtils::AColor* evalFloatGradient(OUtils::AColor* result, const OUtils::OmbrixContext& context) override
    {
        return evalColor(result, context);
    }
    int evalInt(const OUtils::OmbrixContext& context) override
    {
        const float v = valueAt(context);
        return std::fabs(v) < 1000.0f ? static_cast<int>(v) : 0;
    }
    void evalTransform(OUtils::Transform* result, const OUtils::OmbrixContext& context) override
    {
        const float v = valueAt(context);
        *result = {{{{v, 0.0f, 0.25f}, {0.0f, v, 0.0f}, {0.5f, 0.0f, v}}}, {v, 0.5f, -v}};
    }
    void evalVector(OUtils::Vector* result, const OUtils::OmbrixContext& context) override
    {
        const float v = valueAt(context);
        *result = {v, 0.5f * v, 1.0f - v};
    }
    void evalVectorBounds(OUtils::Vector* lower, OUtils::Vector* upper) override
    {
        *lower = {level - 1.0f, level - 1.0f, level - 1.0f};
        *upper = {level + 1.0f, level + 1.0f, level + 1.0f};
    }
    int evalUVW(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override
    {
        const float v = valueAt(context);
        result->uvw = {v, 1.0f - v, 0.5f * v, 0.0f};
        return 1;
    }
    int evalUVWDerivs(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override
    {
        const float v = valueAt(context);
        result->du = {0.01f * v, 0.0f, 0.0f, 0.0f};
        result->dv = {0.0f, 0.01f * v, 0.0f, 0.0f};
        return evalUVW(context, result);
    }
    int evalUVWTransform(const OUtils::OmbrixContext& context, OUtils::Transform* result) override
    {
        evalTransform(result, context);
        return 1;
    }
    void getWorldTransform(const OUtils::OmbrixContext& context, OUtils::TraceTransform* result) override
    {
        OUtils::Transform transform;
        evalTransform(&transform, context);
        *result = {transform.matrix,
                   {static_cast<double>(transform.offset.x), static_cast<double>(transform.offset.y),
                    static_cast<double>(transform.offset.z)}};
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& /*data*/) override
    {
        source.printf("input %s %s %s\n", name, tag, descriptor);
        return 1;
    }

    float level;

private:
    float valueAt(const OUtils::OmbrixContext& context) const
    {
        return level + 0.125f * context.shadePoint.x;
    }
};

// A surface that is none: it answers to nothing.
class ForeignSurface final : public OUtils::PluginBase {};

} // namespace conformance
