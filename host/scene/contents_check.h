// How a built-in kind tells a scene that values which are well-formed each by itself make no sense.
#pragma once

#include "host/scene/scene.h"

#include <optional>
#include <string>

namespace ombrix {

struct ContentsProblem {
    std::string parameter; // that it shows in
    std::string text;      // what is wrong and what to write instead
};

// Asked when the scene has written all parameters of all plugins, before any frame and after each "set" of
// a probe. What is wrong then is an error of the file. The id is the host's own and no part of the contract
// with plug-in libraries.
class ContentsCheckInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4208;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // The first thing that is wrong with the written values at any time. Throws WorkError when a file that
    // they name cannot be read.
    virtual std::optional<ContentsProblem> findProblem() = 0;
    // What a picture needs of the plugin and the scene leaves out; "" for nothing. Such a plugin lives, but
    // is not shown.
    virtual std::string findLack() { return {}; }
};

// Null for kinds of libraries, and for those that have nothing to check.
ContentsCheckInterface* contentsCheckOf(const PluginInstance& instance);

} // namespace ombrix
