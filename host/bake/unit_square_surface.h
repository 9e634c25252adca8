// The surface under a bake: the unit square of the plane z = 0, whose position is its mapping.
#pragma once

#include <ombrix/mapping_interfaces.h>

namespace ombrix {

// Every channel, by number or by name, gives the context's reference point as UVW; the map from positions
// to UVW is the identity. It holds no state of a point, so all threads share one.
class UnitSquareSurface : public OUtils::PluginBase, public OUtils::MappedSurface {
public:
    using OUtils::PluginBase::releaseInterface;
    using OUtils::PluginInterface::releaseInterface;

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override;

    int getLocalUVWTransform(const OUtils::OmbrixContext& context, int channel,
                             OUtils::Transform* result) override;
    int getLocalUVW(const OUtils::OmbrixContext& context, int channel, OUtils::UVWSample* result) override;
    int getLocalUVWTransformByName(const OUtils::OmbrixContext& context, int nameId,
                                   OUtils::Transform* result) override;
    int getMapChannelValue(const OUtils::OmbrixContext& context, int nameId, OUtils::Vector* result) override;
    void getMapChannelByIndex(const OUtils::OmbrixContext& context, int index,
                              OUtils::Vector* result) override;
    float getMapChannelMissing(const OUtils::OmbrixContext& context, int index) override;
};

} // namespace ombrix
