// How the host's own geometry kinds are found. The ids are the host's own and no part of the contract
// with plug-in libraries.
#pragma once

#include "host/geometry/mesh_data.h"

#include <ombrix/plugin_base.h>

namespace ombrix {

// A plugin that is a triangle mesh. Valid between frameBegin and frameEnd.
class MeshGeometryInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4201;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // Null when there is nothing to show.
    virtual const MeshData* getMesh() = 0;
};

// A plugin that gives a mesh a further mapping channel.
class MapChannelSourceInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4202;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // The channel at a time for a mesh whose triangles are known. Returns what is wrong, or an empty text.
    virtual std::string makeChannel(const MeshData& mesh, double time, MapChannel* result) = 0;
    // The times at which it changes.
    virtual std::vector<double> getSampleTimes() = 0;
};

} // namespace ombrix
