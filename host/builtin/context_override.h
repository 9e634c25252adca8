// Looks up what a probe's context says that a value texture gives.
#pragma once

#include "host/context/host_context.h"

#include <variant>

namespace ombrix {

// The value of kind T that the context holds for the plugin, or null. A context of another maker holds
// none.
template <class T>
const T* contextOverride(const OUtils::OmbrixContext& context, const OUtils::PluginBase* plugin)
{
    const auto* own = dynamic_cast<const HostContext*>(&context);
    const OverrideValue* value = own ? own->overrideOf(plugin) : nullptr;
    return value ? std::get_if<T>(value) : nullptr;
}

} // namespace ombrix
