// What a scene holds, and how it is filled.
#pragma once

#include "host/scene/json_values.h"
#include "host/scene/reference_graph.h"
#include "host/scene/scene.h"
#include "host/scene/value_reader.h"

#include <set>

namespace ombrix {

struct Scene::State {
    State(PluginRegistry& known, std::filesystem::path sceneFolder)
        : registry(known), folder(std::move(sceneFolder))
    {
    }
    ~State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    // A write that is checked and waits to be done.
    struct PendingWrite {
        const PluginInstance* instance;
        const ParameterDeclaration* declaration;
        ReadParameter read;
    };

    // Reads a whole scene file. False when it has errors.
    bool read(const JsonPlace& file);
    // Makes the instance of one member of "plugins"; null when it is in error.
    const PluginInstance* create(const JsonPlace& place, const std::string& name);
    // Checks an object of parameter names to values against an instance; good ones are appended.
    bool check(const JsonPlace& params, const PluginInstance& instance, NullMeans nullMeans,
               std::vector<PendingWrite>& writes) const;
    // Checks the parameters that a file has to give.
    bool checkRequired(const JsonPlace& place, const PluginInstance& instance) const;
    // Checks a probe's "set".
    bool checkSet(const JsonPlace& changes, std::vector<PendingWrite>& writes) const;
    // Writes what was checked, unless it would close a cycle or makes a plugin of the host senseless; then
    // what stood before stands again and the fault is reported. path is that of the object that holds the
    // plugins, each with its parameters under "params" or without a step between.
    bool commit(std::vector<PendingWrite> writes, std::string_view path, bool pathHoldsParams,
                Diagnostics& diagnostics);
    void remove(const PluginInstance* instance);

    PluginRegistry& registry;
    SceneSettings settings;
    std::filesystem::path folder;
    InstanceMap instances;
    std::set<std::string, std::less<>> brokenNames; // stand in the file, but could not be made
    ReferenceGraph references;
    std::vector<const PluginInstance*> created; // in the order of creation
    std::vector<PluginInstance> ordered;        // dependencies first

private:
    bool readPlugins(const JsonPlace& plugins);
    void reorder();
    // Reports what the host's kinds find wrong with their written values.
    bool checkContents(const std::vector<PendingWrite>& writes, std::string_view path, bool pathHoldsParams,
                       Diagnostics& diagnostics) const;
    ValueScope scope() const { return {instances, brokenNames, folder}; }
};

} // namespace ombrix
