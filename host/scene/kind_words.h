// Words for the name of a plugin kind that there is not.
#pragma once

#include "host/plugins/registry.h"

#include <string>
#include <string_view>

namespace ombrix {

// Says that no kind has the name, which one may have been meant, and how to see them all.
std::string explainUnknownKind(const PluginRegistry& registry, std::string_view type);

} // namespace ombrix
