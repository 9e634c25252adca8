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
// split at its last dot. On failure the instance is null and problem says why, with the nearest name.
SceneObject resolveReference(const InstanceMap& instances, std::string_view reference, std::string& problem);

} // namespace ombrix
