// UVWChannel: a mapping channel of the shaded surface, as it is.

#include "host/plugins/registry.h"

#include <ombrix/plugin.h>

namespace ombrix {

namespace {

using OUtils::MappedSurface;
using OUtils::OmbrixContext;
using OUtils::UVWSample;

constexpr int kFirstChannel = 1;

class UVWChannelParams : public OUtils::OmbrixParameterListDesc {
public:
    UVWChannelParams()
    {
        addParamInt("channel", kFirstChannel, -1, "The surface's mapping channel; -1 is its lowest", nullptr);
    }
};

MappedSurface* surfaceOf(const OmbrixContext& context)
{
    if (!context.surfaceObject) return nullptr;
    return static_cast<MappedSurface*>(context.surfaceObject->getInterface(OUtils::EXT_MAPPED_SURFACE));
}

class UVWChannel : public OUtils::OmbrixUVWGen {
public:
    explicit UVWChannel(OUtils::OmbrixPluginDesc* desc) : OmbrixUVWGen(desc)
    {
        paramList->setParamCache("channel", &channel);
    }

    int evalUVW(const OmbrixContext& context, UVWSample* result) override
    {
        UVWSample sample;
        const int valid = evalUVWForChannel(surfaceOf(context), context, &sample);
        if (valid) result->uvw = sample.uvw;
        return valid;
    }
    int evalUVWDerivs(const OmbrixContext& context, UVWSample* result) override
    {
        return evalUVWForChannel(surfaceOf(context), context, result);
    }
    int evalUVWTransform(const OmbrixContext& context, OUtils::Transform* result) override
    {
        MappedSurface* surface = surfaceOf(context);
        return surface ? surface->getLocalUVWTransform(context, channel, result) : 0;
    }
    int evalUVWForChannel(MappedSurface* surface, const OmbrixContext& context, UVWSample* result) override
    {
        return surface ? surface->getLocalUVW(context, channel, result) : 0;
    }

private:
    int channel = kFirstChannel;
};

BuiltinDesc<UVWChannel, UVWChannelParams>
    uvwChannelDesc({2019030110,
                    "UVWChannel",
                    "Gives a mapping channel of the surface as UVW coordinates [gpuSupport=(none)]",
                    {OUtils::EXT_UVWGEN}});

} // namespace

} // namespace ombrix
