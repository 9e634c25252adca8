// The output parameters of CommonTexture: each reads the texture that it lives in.
#pragma once

#include "kernels/color/brightness.h"

#include <ombrix/gpu_source.h>
#include <ombrix/texture_interfaces.h>

namespace nezaiva {

using namespace OUtils;

// One minus the alpha, as an opaque grey.
class CommonTransparencyTex : public PluginBase, public TextureInterface, public RTTexInterface {
public:
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;
    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

    TextureInterface* parent = nullptr;
};

class CommonAlphaTex : public PluginBase, public TextureFloatInterface, public RTTexInterface {
public:
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;
    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

    TextureInterface* parent = nullptr;
};

class CommonIntensTex : public PluginBase, public TextureFloatInterface, public RTTexInterface {
public:
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;
    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

    TextureInterface* parent = nullptr;
};

} // namespace nezaiva
