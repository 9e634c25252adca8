#include "host/probe/probe_context.h"

#include "host/builtin/uvw_value.h"

#include <algorithm>

namespace ombrix {

namespace {

UVWOverride completed(const UVWPart& part, UVWOverride value)
{
    if (part.valid) value.valid = *part.valid;
    if (part.uvw) value.uvw = *part.uvw;
    if (part.du) value.du = *part.du;
    if (part.dv) value.dv = *part.dv;
    if (part.columns) value.columns = *part.columns;
    return value;
}

OverrideValue overrideFor(const PluginInstance& instance, const ContextValue& value,
                          const HostContext& context)
{
    if (const auto* part = std::get_if<UVWPart>(&value)) {
        const auto* generator = dynamic_cast<const UVWValue*>(instance.plugin);
        return completed(*part, generator ? generator->ownValue(context) : UVWOverride());
    }
    OverrideValue result;
    std::visit(
        [&](const auto& plain) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(plain)>, UVWPart>) result = plain;
        },
        value);
    return result;
}

} // namespace

ProbeContext::ProbeContext(const ContextSpec& spec, std::int32_t stamp, OUtils::MapChannelNames& names)
{
    live.thread.threadIndex = spec.thread;
    live.filtering = spec.filtering;
    live.shadeFlags = spec.flags;
    live.sampleStamp = stamp;
    live.shadePoint = spec.shadePoint;
    live.referencePoint = spec.referencePoint.value_or(spec.shadePoint);
    live.positionDiffU = spec.positionDiffU;
    live.positionDiffV = spec.positionDiffV;
    std::copy(std::begin(spec.filterWidths), std::end(spec.filterWidths), live.filterWidths);
    live.normal = live.geometricNormal = spec.normal;
    live.viewDirection = spec.view;
    live.faceIndex = spec.faceIndex;
    std::copy(std::begin(spec.barycentric), std::end(spec.barycentric), live.barycentric);
    live.rayTime = spec.rayTime;
    live.rayDepth = spec.rayDepth;
    live.rayFlags = spec.rayFlags;
    live.rayId = spec.rayId;
    live.diffuseDepth = spec.diffuseDepth;
    live.streakPosition = spec.streakPosition;
    live.contextVolumeRef = spec.volumeRef ? &live : nullptr;
    if (spec.surface) surface = makeProbeSurface(*spec.surface, names);
    if (spec.instance) instance = makeProbeInstance(*spec.instance, names);
    live.surfaceObject = surface.get();
    live.hitInstance = instance.get();
    for (const auto& [plugin, value] : spec.values)
        live.overrides.emplace_back(plugin->plugin, overrideFor(*plugin, value, live));
}

ProbeContext::~ProbeContext() = default;

} // namespace ombrix
