// The surface of a probe's context.

#include "host/probe/probe_context.h"

namespace ombrix {

namespace {

using OUtils::OmbrixContext;
using OUtils::Transform;
using OUtils::Vector;

OUtils::Vector4 padded(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

class ProbeSurface : public OUtils::PluginBase, public OUtils::MappedSurface {
public:
    ProbeSurface(const SurfaceSpec& given, OUtils::MapChannelNames& names) : spec(given)
    {
        for (const auto& [name, channel] : spec.uvSets)
            sets[names.getNameId(name.c_str())] = channel;
    }

    using MappedSurface::releaseInterface;
    using PluginBase::releaseInterface;
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_MAPPED_SURFACE && spec.isMapped()) return static_cast<MappedSurface*>(this);
        return PluginBase::getInterface(id);
    }

    int getLocalUVWTransform(const OmbrixContext& /*context*/, int channel, Transform* result) override
    {
        const Transform* map = mapOf(channel);
        if (map) *result = *map;
        return map ? 1 : 0;
    }
    int getLocalUVW(const OmbrixContext& context, int channel, OUtils::UVWSample* result) override
    {
        const Transform* map = mapOf(channel);
        if (!map) return 0;
        result->uvw = padded(pointOf(*map, context));
        result->du = padded(map->matrix * context.positionDiffU);
        result->dv = padded(map->matrix * context.positionDiffV);
        return 1;
    }
    int getLocalUVWTransformByName(const OmbrixContext& context, int nameId, Transform* result) override
    {
        const auto set = sets.find(nameId);
        return set == sets.end() ? -1 : getLocalUVWTransform(context, set->second, result);
    }
    int getMapChannelValue(const OmbrixContext& context, int nameId, Vector* result) override
    {
        const auto set = sets.find(nameId);
        if (set == sets.end()) return -1;
        getMapChannelByIndex(context, set->second, result);
        return set->second;
    }
    void getMapChannelByIndex(const OmbrixContext& context, int index, Vector* result) override
    {
        const Transform* map = mapOf(index);
        *result = map ? pointOf(*map, context) : Vector();
    }
    float getMapChannelMissing(const OmbrixContext& /*context*/, int index) override
    {
        return mapOf(index) ? 0.0f : 1.0f;
    }

private:
    static Vector pointOf(const Transform& map, const OmbrixContext& context)
    {
        return map.matrix * (context.shadePoint - context.referencePoint) + map.offset;
    }
    // Channel -1 is the lowest one; null for a channel that the surface lacks.
    const Transform* mapOf(int channel) const
    {
        const bool lowest = channel == -1 && !spec.channels.empty();
        const auto own = lowest ? spec.channels.begin() : spec.channels.find(channel);
        if (own != spec.channels.end()) return &own->second;
        return spec.everyChannel ? &*spec.everyChannel : nullptr;
    }

    const SurfaceSpec& spec;
    std::map<int, int> sets; // channels by name id
};

} // namespace

std::unique_ptr<OUtils::PluginBase> makeProbeSurface(const SurfaceSpec& spec, OUtils::MapChannelNames& names)
{
    return std::make_unique<ProbeSurface>(spec, names);
}

} // namespace ombrix
