// What a reference in a scene stands for.
#pragma once

#include "host/scene/scene.h"

#include <map>
#include <string>
#include <string_view>

namespace ombrix {

// The instances of a scene by their names.
using InstanceMap = std::map<std::string, PluginInstance, std::less<>>;

// Resolves "name" or "name.output". A plugin whose whole name is the text comes first; else the text is
// split at its last dot. No scene has names for which both would do, see shadowedOwner. On failure the
// instance is null and problem says why, with the nearest name.
SceneObject resolveReference(const InstanceMap& instances, std::string_view reference, std::string& problem);
// The output of a plugin. On failure the instance is null and problem says why, with the outputs there are.
SceneObject resolveOutput(const PluginInstance& instance, std::string_view output, std::string& problem);
// The plugin that has an output which a plugin of this name would hide: "a" for "a.b" where "a" has an
// output "b". Null for all other names.
const PluginInstance* shadowedOwner(const InstanceMap& instances, std::string_view name);

} // namespace ombrix
