// The hit's instance of a probe's context. Each part that the probe describes becomes an interface, where
// the contract between host and library has it.

#include "host/probe/probe_context.h"

#include <vector>

namespace ombrix {

namespace {

using OUtils::OmbrixContext;
using OUtils::Transform;
using OUtils::Vector;

class ProbeInstance : public OUtils::PluginBase {
public:
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        for (const auto& part : parts)
            if (part->getInterfaceID() == id) return part.get();
        return PluginBase::getInterface(id);
    }

    std::vector<std::unique_ptr<OUtils::PluginInterface>> parts;
};

// The instance's map channels: values without a map of positions.
class InstanceChannels : public OUtils::MappedSurface {
public:
    InstanceChannels(const std::map<std::string, MapChannelSpec>& given, OUtils::MapChannelNames& names,
                     OUtils::PluginBase& holds)
        : holder(holds)
    {
        for (const auto& [name, channel] : given) {
            byName[names.getNameId(name.c_str())] = &channel;
            byIndex[channel.index] = &channel;
        }
    }

    OUtils::PluginBase* getPlugin() override { return &holder; }
    int getLocalUVWTransform(const OmbrixContext& /*context*/, int index, Transform* result) override
    {
        const MapChannelSpec* channel = find(index);
        if (!channel) return 0;
        *result = Transform();
        result->offset = channel->value;
        return 1;
    }
    int getLocalUVW(const OmbrixContext& /*context*/, int index, OUtils::UVWSample* result) override
    {
        const MapChannelSpec* channel = find(index);
        if (!channel) return 0;
        *result = OUtils::UVWSample();
        result->uvw = {channel->value.x, channel->value.y, channel->value.z, 0.0f};
        return 1;
    }
    int getLocalUVWTransformByName(const OmbrixContext& context, int nameId, Transform* result) override
    {
        const auto found = byName.find(nameId);
        return found == byName.end() ? -1 : getLocalUVWTransform(context, found->second->index, result);
    }
    int getMapChannelValue(const OmbrixContext& /*context*/, int nameId, Vector* result) override
    {
        const auto found = byName.find(nameId);
        if (found == byName.end()) return -1;
        *result = found->second->value;
        return found->second->index;
    }
    void getMapChannelByIndex(const OmbrixContext& /*context*/, int index, Vector* result) override
    {
        const MapChannelSpec* channel = find(index);
        *result = channel ? channel->value : Vector();
    }
    float getMapChannelMissing(const OmbrixContext& /*context*/, int index) override
    {
        const MapChannelSpec* channel = find(index);
        return channel ? channel->missing : 1.0f;
    }

private:
    // Channel -1 is the lowest one; null for an unknown channel.
    const MapChannelSpec* find(int index) const
    {
        const auto found = index == -1 ? byIndex.begin() : byIndex.find(index);
        return found == byIndex.end() ? nullptr : found->second;
    }

    OUtils::PluginBase& holder;
    std::map<int, const MapChannelSpec*> byName, byIndex;
};

using MadePart = std::unique_ptr<OUtils::PluginInterface>;

MadePart makeChannels(const InstanceSpec& spec, OUtils::MapChannelNames& names, OUtils::PluginBase& holder)
{
    return std::make_unique<InstanceChannels>(*spec.mapChannels, names, holder);
}

// A key of an instance, and the interface that it describes.
struct Part {
    const char* key;
    OUtils::InterfaceId interface;
    bool (*isGiven)(const InstanceSpec& spec);
    // Null: the contract between host and library does not have the interface.
    MadePart (*make)(const InstanceSpec& spec, OUtils::MapChannelNames& names, OUtils::PluginBase& holder);
};

constexpr Part kParts[] = {
    {"named_channels", 0x783A8BA4, [](const InstanceSpec& s) { return s.namedChannels.has_value(); },
     nullptr},
    {"map_channels", OUtils::EXT_MAPPED_SURFACE,
     [](const InstanceSpec& s) { return s.mapChannels.has_value(); }, makeChannels},
    {"typed_attributes", 0x785931E9, [](const InstanceSpec& s) { return s.typedAttributes.has_value(); },
     nullptr},
    {"text_attributes", 0x77EE6229, [](const InstanceSpec& s) { return s.textAttributes.has_value(); },
     nullptr},
    {"legacy_text_attributes", 0xFFFF0002,
     [](const InstanceSpec& s) { return s.legacyTextAttributes.has_value(); }, nullptr},
    {"color_sets", 0x77CECD65, [](const InstanceSpec& s) { return s.colorSets.has_value(); }, nullptr},
    {"hair", 0x780CC575, [](const InstanceSpec& s) { return s.hair.has_value(); }, nullptr},
};

} // namespace

std::unique_ptr<OUtils::PluginBase> makeProbeInstance(const InstanceSpec& spec,
                                                      OUtils::MapChannelNames& names)
{
    auto instance = std::make_unique<ProbeInstance>();
    for (const Part& part : kParts)
        if (part.isGiven(spec) && part.make) instance->parts.push_back(part.make(spec, names, *instance));
    return instance;
}

std::vector<MissingInterface> missingInterfaces(const InstanceSpec& spec)
{
    std::vector<MissingInterface> missing;
    for (const Part& part : kParts)
        if (part.isGiven(spec) && !part.make) missing.push_back({part.key, part.interface});
    return missing;
}

} // namespace ombrix
