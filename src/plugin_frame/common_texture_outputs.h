// The output parameters of CommonTexture: each reads the texture that it lives in.
#pragma once

#include "plugin_frame/source_text.h"

#include <ombrix/plugin_kind.h>

namespace nezaiva {

using namespace OUtils;

// One minus the alpha, as an opaque grey.
class CommonTransparencyTex : public Offers<PluginBase, TextureInterface, GpuTexture> {
public:
    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    AColor* evalColorGradient(AColor* result, const OmbrixContext& context) override;
    int writeSource(SourceText& text) override;

    TextureInterface* parent = nullptr;
};

class CommonAlphaTex : public Offers<PluginBase, TextureFloatInterface, GpuTexture> {
public:
    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    int writeSource(SourceText& text) override;

    TextureInterface* parent = nullptr;
};

class CommonIntensTex : public Offers<PluginBase, TextureFloatInterface, GpuTexture> {
public:
    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    AColor* evalFloatGradient(AColor* result, const OmbrixContext& context) override;
    int writeSource(SourceText& text) override;

    TextureInterface* parent = nullptr;
};

} // namespace nezaiva
