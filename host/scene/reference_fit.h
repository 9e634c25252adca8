// Words for a reference that does not fit the texture input it stands on.
#pragma once

#include "host/params/value.h"
#include "host/scene/scene_object.h"

#include <string>

namespace ombrix {

// Says what the object is, what the input takes, and what to write instead: an output of the plugin that
// fits, or the node that converts. reference is the object as the scene names it.
std::string explainMisfit(const SceneObject& object, const std::string& reference,
                          const ParameterDeclaration& input);

} // namespace ombrix
