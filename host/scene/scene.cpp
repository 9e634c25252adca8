#include "host/scene/scene.h"

#include "host/scene/json_text.h"
#include "host/scene/scene_state.h"

namespace ombrix {

Scene::Scene(std::unique_ptr<State> held) : state(std::move(held)) {}
Scene::~Scene() = default;

std::unique_ptr<Scene> Scene::load(const std::filesystem::path& file, PluginRegistry& registry,
                                   Diagnostics& diagnostics)
{
    return parse(readTextFile(file), file.parent_path(), registry, diagnostics);
}

std::unique_ptr<Scene> Scene::parse(std::string_view text, const std::filesystem::path& folder,
                                    PluginRegistry& registry, Diagnostics& diagnostics)
{
    const std::optional<nlohmann::json> document = parseJsonText(text, diagnostics);
    if (!document) return nullptr;
    auto state = std::make_unique<State>(registry, folder);
    if (!state->read(JsonPlace(*document, "", diagnostics)) || diagnostics.failed()) return nullptr;
    return std::unique_ptr<Scene>(new Scene(std::move(state)));
}

const SceneSettings& Scene::settings() const
{
    return state->settings;
}

SceneSettings& Scene::settings()
{
    return state->settings;
}

const std::vector<PluginInstance>& Scene::instances() const
{
    return state->ordered;
}

const PluginInstance* Scene::find(std::string_view name) const
{
    const auto found = state->instances.find(name);
    return found == state->instances.end() ? nullptr : &found->second;
}

SceneObject Scene::resolve(std::string_view reference, std::string& problem) const
{
    return resolveReference(state->instances, reference, problem);
}

const PluginInstance* Scene::add(const std::string& name, const std::string& type,
                                 const nlohmann::json& params, Diagnostics& diagnostics)
{
    const nlohmann::json plugins = {{name, {{"type", type}, {"params", params}}}};
    const JsonPlace all(plugins, "/plugins", diagnostics);
    const JsonPlace place = all.at(name);
    const PluginInstance* added = state->create(place, name);
    if (!added) return nullptr;
    std::vector<State::PendingWrite> writes;
    const bool good = state->check(place.at("params"), *added, NullMeans::Clear, writes) &&
                      state->checkRequired(place, *added) &&
                      state->commit(std::move(writes), "/plugins", true, diagnostics);
    if (good) return added;
    state->remove(added);
    return nullptr;
}

bool Scene::check(const nlohmann::json& changes, std::string_view path, Diagnostics& diagnostics) const
{
    std::vector<State::PendingWrite> writes;
    return state->checkSet(JsonPlace(changes, path, diagnostics), writes);
}

bool Scene::set(const nlohmann::json& changes, std::string_view path, Diagnostics& diagnostics)
{
    std::vector<State::PendingWrite> writes;
    if (!state->checkSet(JsonPlace(changes, path, diagnostics), writes)) return false;
    return state->commit(std::move(writes), path, false, diagnostics);
}

} // namespace ombrix
