// UVWChannel: a mapping channel of the shaded surface, as it is.

#include "host/builtin/mapping.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

class UVWChannel final : public OmbrixUVWGen {
public:
    using OmbrixUVWGen::OmbrixUVWGen;

    static constexpr Identity kIdentity{
        2019030110,
        "UVWChannel",
        "Gives a mapping channel of the surface as UVW coordinates [gpuSupport=(none)]",
        {EXT_UVWGEN}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("channel", &UVWChannel::channel, 1, "The surface's mapping channel; -1 is its lowest");
    }

    int evalUVW(const OmbrixContext& context, UVWSample* result) override
    {
        UVWSample sample;
        const int valid = evalUVWDerivs(context, &sample);
        if (valid) result->uvw = sample.uvw;
        return valid;
    }
    int evalUVWDerivs(const OmbrixContext& context, UVWSample* result) override
    {
        return evalUVWForChannel(mappedSurfaceOf(context), context, result);
    }
    int evalUVWTransform(const OmbrixContext& context, Transform* result) override
    {
        MappedSurface* surface = mappedSurfaceOf(context);
        return surface ? surface->getLocalUVWTransform(context, channel, result) : 0;
    }
    int evalUVWForChannel(MappedSurface* surface, const OmbrixContext& context, UVWSample* result) override
    {
        return surface ? surface->getLocalUVW(context, channel, result) : 0;
    }

private:
    int channel = 0;
};

BuiltinDesc<UVWChannel> uvwChannelDesc;

} // namespace

} // namespace ombrix
