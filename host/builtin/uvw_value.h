// UVWValue: the same coordinates at every point.
#pragma once

#include "host/context/host_context.h"

#include <ombrix/plugin.h>

namespace ombrix {

class UVWValue : public OUtils::OmbrixUVWGen, public OUtils::RTTexInterface {
public:
    explicit UVWValue(OUtils::OmbrixPluginDesc* desc);

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override;
    void frameBegin(OUtils::OmbrixRenderer* renderer) override;

    int evalUVW(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWDerivs(const OUtils::OmbrixContext& context, OUtils::UVWSample* result) override;
    int evalUVWTransform(const OUtils::OmbrixContext& context, OUtils::Transform* result) override;
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& data) override;

    // What it gives in a context that says nothing else.
    UVWOverride ownValue(const OUtils::OmbrixContext& context) const;

private:
    UVWOverride valueIn(const OUtils::OmbrixContext& context) const;

    int valid = 1;
    OUtils::TextureVectorInterface* uvw = nullptr;
    OUtils::TextureVectorInterface* du = nullptr;
    OUtils::TextureVectorInterface* dv = nullptr;
    OUtils::Matrix columns; // of the frame
    double time = 0.0;      // of the frame
};

} // namespace ombrix
