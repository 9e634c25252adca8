// Where UVW coordinates come from: the shaded surface, and generators that change them.
#pragma once

#include <ombrix/context.h>
#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

namespace OUtils {

// The shaded surface's mapping channels, offered by OmbrixContext::surfaceObject and by an instance.
// Channel -1 is the lowest one that the surface has. Name ids come from MapChannelNames.
class MappedSurface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_MAPPED_SURFACE;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_MAPPED_SURFACE"; }

    // The affine map from the position relative to the context's referencePoint to UVW. Returns
    // non-zero when the surface has the channel, else 0 with the result untouched.
    virtual int getLocalUVWTransform(const OmbrixContext& context, int channel, Transform* result) = 0;
    // The point's coordinates. Returns as above.
    virtual int getLocalUVW(const OmbrixContext& context, int channel, UVWSample* result) = 0;
    // The map of the channel with this name id. Returns 1, or -1 when the surface does not know the name.
    virtual int getLocalUVWTransformByName(const OmbrixContext& context, int nameId, Transform* result) = 0;
    // The value of the channel with this name id at the hit; the channel's index, or -1.
    virtual int getMapChannelValue(const OmbrixContext& context, int nameId, Vector* result) = 0;
    // The value of a channel by index at the hit; (0, 0, 0) for an unknown one.
    virtual void getMapChannelByIndex(const OmbrixContext& context, int index, Vector* result) = 0;
    // The weight, 0 to 1, of the hit's corners that hold no value of the channel; 1 for an unknown one.
    virtual float getMapChannelMissing(const OmbrixContext& context, int index) = 0;
};

// A surface that can tell the point of its reference pose.
class ReferencedSurface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_REFERENCED_SURFACE;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_REFERENCED_SURFACE"; }

    // Returns non-zero when the surface has a reference pose, else 0 with the result untouched.
    virtual int getReferencePoint(const OmbrixContext& context, Vector* result) = 0;
};

// A UVW generator. The first three return non-zero when the coordinates are valid; what they write is
// delivered in either case.
class UVWGenInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_UVWGEN;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_UVWGEN"; }

    // Writes result->uvw alone.
    virtual int evalUVW(const OmbrixContext& context, UVWSample* result) = 0;
    // Writes result->uvw, du and dv.
    virtual int evalUVWDerivs(const OmbrixContext& context, UVWSample* result) = 0;
    // The affine map from the position relative to the context's referencePoint to UVW.
    virtual int evalUVWTransform(const OmbrixContext& context, Transform* result) = 0;
    // The coordinates of this generator's channel as a given surface has them; 0 without a surface.
    virtual int evalUVWForChannel(MappedSurface* /*surface*/, const OmbrixContext& /*context*/,
                                  UVWSample* /*result*/)
    {
        return 0;
    }
};

} // namespace OUtils
