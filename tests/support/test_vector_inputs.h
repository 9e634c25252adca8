// Vector and transform inputs for the tests of nodes, as the colour and float inputs of test_textures.h.
#pragma once

#include "support/test_textures.h"

namespace support {

class TestVector : public OUtils::OmbrixPlugin, public OUtils::TextureVectorInterface, public TestSource {
public:
    explicit TestVector(const OUtils::Vector& vector = {}) : OmbrixPlugin(nullptr), value(vector) {}

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return hasSource ? static_cast<OUtils::RTTexInterface*>(this) : nullptr;
        if (id == OUtils::EXT_TEXTURE_VECTOR) return static_cast<OUtils::TextureVectorInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    void evalVector(OUtils::Vector* result, const OUtils::OmbrixContext& /*context*/) override
    {
        *result = value;
    }
    void evalVectorBounds(OUtils::Vector* lower, OUtils::Vector* upper) override
    {
        *lower = lowerBound;
        *upper = upperBound;
    }

    OUtils::Vector value, lowerBound, upperBound;
};

class TestTransform : public OUtils::OmbrixPlugin, public OUtils::TextureTransformInterface {
public:
    TestTransform() : OmbrixPlugin(nullptr) {}

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_TEXTURE_TRANSFORM) return static_cast<OUtils::TextureTransformInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    void evalTransform(OUtils::Transform* result, const OUtils::OmbrixContext& /*context*/) override
    {
        *result = value;
    }

    OUtils::Transform value;
};

} // namespace support
