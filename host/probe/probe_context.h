// The live shading context of a probe, with the surface and the instance that it points at.
#pragma once

#include "host/context/host_context.h"
#include "host/probe/probe_file.h"

#include <ombrix/mapping_interfaces.h>
#include <ombrix/renderer.h>

#include <memory>

namespace ombrix {

// Must outlive the evaluations that it is given to. Not movable: it is pointed at.
class ProbeContext {
public:
    // The values of UVWValues are filled up with what the plugins give at this frame.
    ProbeContext(const ContextSpec& spec, std::int32_t stamp, OUtils::MapChannelNames& names);
    ~ProbeContext();
    ProbeContext(const ProbeContext&) = delete;
    ProbeContext& operator=(const ProbeContext&) = delete;

    const HostContext& context() const { return live; }

private:
    HostContext live;
    std::unique_ptr<OUtils::PluginBase> surface, instance;
};

// The object being shaded as a probe describes it: a surface with mapping channels.
std::unique_ptr<OUtils::PluginBase> makeProbeSurface(const SurfaceSpec& spec, OUtils::MapChannelNames& names);
// The hit's instance: a holder of the interfaces that the probe describes.
std::unique_ptr<OUtils::PluginBase> makeProbeInstance(const InstanceSpec& spec,
                                                      OUtils::MapChannelNames& names);

// A key of an instance whose interface the host cannot offer, since the contract between host and library
// does not have it.
struct MissingInterface {
    const char* key;
    OUtils::InterfaceId id;
};
// Those of the keys that the probe gives.
std::vector<MissingInterface> missingInterfaces(const InstanceSpec& spec);

} // namespace ombrix
