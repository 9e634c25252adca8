// The host's shading context.
#pragma once

#include "host/params/value.h"

#include <ombrix/context.h>

#include <utility>
#include <vector>

namespace ombrix {

// A UVWValue's value in one context.
struct UVWOverride {
    bool valid = true;
    OUtils::Vector uvw, du, dv;
    OUtils::Matrix columns;
};

using OverrideValue =
    std::variant<float, int, OUtils::AColor, OUtils::Vector, OUtils::TraceTransform, UVWOverride>;

class HostContext : public OUtils::OmbrixContext {
public:
    int filteringEnabled() const override { return filtering ? 1 : 0; }

    // What a value texture gives in this context, or null for its own value. Contexts of a render hold
    // none, so the search costs one comparison.
    const OverrideValue* overrideOf(const OUtils::PluginBase* plugin) const
    {
        for (const auto& [owner, value] : overrides)
            if (owner == plugin) return &value;
        return nullptr;
    }

    bool filtering = false;
    OUtils::ThreadRecord thread; // threadRecord points here unless it is moved elsewhere
    std::vector<std::pair<const OUtils::PluginBase*, OverrideValue>> overrides;

    HostContext() { threadRecord = &thread; }
    HostContext(const HostContext& other)
        : OmbrixContext(other), filtering(other.filtering), thread(other.thread), overrides(other.overrides)
    {
        threadRecord = &thread;
    }
    HostContext& operator=(const HostContext&) = delete;
};

} // namespace ombrix
