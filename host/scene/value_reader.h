// Reads the value of a declared parameter out of a scene file or a probe.
#pragma once

#include "host/params/value.h"
#include "host/scene/json_values.h"
#include "host/scene/scene_object.h"

#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace ombrix {

// What a value can refer to.
struct ValueScope {
    const InstanceMap& instances;
    // Plugins that stand in the file but could not be made; a reference to one is no further error.
    const std::set<std::string, std::less<>>& brokenNames;
    const std::filesystem::path& folder; // of the scene file, for relative paths
};

// What null means: in a scene file it clears a reference, in a probe's "set" it unsets the parameter.
enum class NullMeans { Clear, Unset };

// A value that was read. An absent one unsets the parameter.
struct ReadParameter {
    std::optional<ParameterValue> value;
    std::vector<SceneObject> references; // all that the value refers to
};

// Reads the value of one parameter of a kind. Nothing when it is not well-formed; the place then has its
// error. A number outside an enumeration is read, with a warning.
std::optional<ReadParameter> readParameter(const JsonPlace& place, const RegisteredPlugin& kind,
                                           const ParameterDeclaration& declaration, const ValueScope& scope,
                                           NullMeans nullMeans);

} // namespace ombrix
