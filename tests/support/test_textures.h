// Inputs for the tests of nodes: textures that give what a test says, tell what was asked of them, and
// write a recognisable GPU text.
#pragma once

#include <ombrix/plugin.h>

#include <string>
#include <vector>

namespace support {

// What was asked, in order: "label.operation".
using CallLog = std::vector<std::string>;

class TestContext : public OUtils::OmbrixContext {
public:
    TestContext() { threadRecord = &thread; }
    TestContext(const TestContext&) = delete;
    TestContext& operator=(const TestContext&) = delete;
    int filteringEnabled() const override { return filtering; }

    int filtering = 0;

private:
    OUtils::ThreadRecord thread;
};

// What the two kinds of inputs share. hasSource false hides the GPU form.
class TestSource : public OUtils::RTTexInterface {
public:
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& /*data*/) override
    {
        source.printf("%s %s %s %s\n", label.c_str(), name, tag, descriptor);
        return 1;
    }

    std::string label;
    bool hasSource = true;
    CallLog* log = nullptr;

protected:
    void tell(const char* operation)
    {
        if (log) log->push_back(label + "." + operation);
    }
};

class TestColor : public OUtils::OmbrixTexture, public TestSource {
public:
    explicit TestColor(const OUtils::AColor& color = {}) : OmbrixTexture(nullptr), value(color) {}
    TestColor(const std::string& name, CallLog* calls) : OmbrixTexture(nullptr)
    {
        label = name;
        log = calls;
    }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return hasSource ? static_cast<OUtils::RTTexInterface*>(this) : nullptr;
        return OmbrixTexture::getInterface(id);
    }
    OUtils::AColor* evalColor(OUtils::AColor* result, const OUtils::OmbrixContext& /*context*/) override
    {
        tell("evalColor");
        *result = value;
        return result;
    }
    void evalColorBounds(OUtils::AColor* lower, OUtils::AColor* upper) override
    {
        tell("evalColorBounds");
        *lower = lowerBound;
        *upper = upperBound;
    }
    OUtils::AColor* evalColorGradient(OUtils::AColor* result, const OUtils::OmbrixContext&) override
    {
        tell("evalColorGradient");
        *result = gradient;
        return result;
    }

    OUtils::AColor value, lowerBound, upperBound;
    OUtils::AColor gradient{3.0f, 4.0f, 5.0f, 6.0f};
};

class TestFloat : public OUtils::OmbrixTextureFloat, public TestSource {
public:
    explicit TestFloat(float number = 0.0f) : OmbrixTextureFloat(nullptr), value(number) {}
    TestFloat(const std::string& name, CallLog* calls) : OmbrixTextureFloat(nullptr)
    {
        label = name;
        log = calls;
    }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return hasSource ? static_cast<OUtils::RTTexInterface*>(this) : nullptr;
        return OmbrixTextureFloat::getInterface(id);
    }
    float evalFloat(const OUtils::OmbrixContext& /*context*/) override
    {
        tell("evalFloat");
        return value;
    }
    void evalFloatBounds(float* lower, float* upper) override
    {
        tell("evalFloatBounds");
        *lower = lowerBound;
        *upper = upperBound;
    }
    OUtils::AColor* evalFloatGradient(OUtils::AColor* result, const OUtils::OmbrixContext&) override
    {
        tell("evalFloatGradient");
        *result = gradient;
        return result;
    }

    float value = 0.0f, lowerBound = 0.0f, upperBound = 0.0f;
    OUtils::AColor gradient{3.0f, 4.0f, 5.0f, 6.0f};
};

} // namespace support
