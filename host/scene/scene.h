// A scene: the plugin instances that a scene file asks for.
#pragma once

#include "host/plugins/registry.h"
#include "host/renderer/host_renderer.h"
#include "host/scene/diagnostics.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

struct PluginInstance {
    std::string name;
    const RegisteredPlugin* kind = nullptr;
    OUtils::PluginBase* plugin = nullptr;          // owned by the scene
    OUtils::OmbrixPluginInterface* life = nullptr; // its EXT_OMBRIX_PLUGIN
};

// A plugin of a scene, or the object that answers one of its output parameters.
struct SceneObject {
    const PluginInstance* instance = nullptr;  // null when a reference stands for nothing
    OUtils::PluginInterface* output = nullptr; // null: the plugin itself

    // The interface of the plugin or of its output; null when it is not offered.
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) const;
};

class Scene {
public:
    // Reads a scene file. Null when diagnostics holds errors. Throws WorkError when the file cannot be
    // read. The registry must outlive the scene. Relative paths of files in the scene (meshes, images)
    // are resolved against the scene file's folder, then the working folder.
    static std::unique_ptr<Scene> load(const std::filesystem::path& file, PluginRegistry& registry,
                                       Diagnostics& diagnostics);
    // The same from text, for a scene without a file; folder resolves relative paths.
    static std::unique_ptr<Scene> parse(std::string_view text, const std::filesystem::path& folder,
                                        PluginRegistry& registry, Diagnostics& diagnostics);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    const SceneSettings& settings() const;
    SceneSettings& settings(); // for the command line's overrides, before renderBegin
    // In dependency order: a plugin's inputs stand before it.
    const std::vector<PluginInstance>& instances() const;
    // Null when there is none. The pointer stays valid as long as the scene.
    const PluginInstance* find(std::string_view name) const;
    // Resolves "name" or "name.output". On failure the instance is null and problem says why.
    SceneObject resolve(std::string_view reference, std::string& problem) const;
    // Adds an instance that the host itself wants (a default light, camera or node). The name may not
    // clash. Parameters are JSON as in a scene file.
    const PluginInstance* add(const std::string& name, const std::string& type, const nlohmann::json& params,
                              Diagnostics& diagnostics);
    // Writes parameters as the "set" of a probe does: an object of plugin names to objects of
    // parameters; null unsets. path is the JSON pointer of the object, for errors. Writes nothing when
    // it reports an error.
    bool set(const nlohmann::json& changes, std::string_view path, Diagnostics& diagnostics);

    // Reports what set would, but for cycles, and writes nothing.
    bool check(const nlohmann::json& changes, std::string_view path, Diagnostics& diagnostics) const;

private:
    struct State;
    explicit Scene(std::unique_ptr<State> state);
    std::unique_ptr<State> state;
};

} // namespace ombrix
