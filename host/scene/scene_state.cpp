#include "host/scene/scene_state.h"

#include "host/metadata/metadata.h"
#include "host/params/host_parameters.h"
#include "host/scene/contents_check.h"
#include "host/scene/key_table.h"
#include "host/scene/kind_words.h"
#include "host/scene/settings_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>

namespace ombrix {

namespace {

constexpr int kSceneVersion = 1;

// Whether a name can be written as a reference.
bool checkName(const JsonPlace& place, const std::string& name)
{
    if (name.empty())
        place.error("a plugin needs a name; \"\" is none");
    else if (isNumberWord(name))
        place.error(
            fmt::format("a plugin cannot be named \"{}\": on an input it stands for the number", name));
    else if (name.find('\0') != std::string::npos)
        place.error("a name cannot hold the character of code 0");
    else
        return true;
    return false;
}

// Read into the kind's name.
constexpr KeyReader<std::string> kPluginKeys[] = {
    {"type", [](const JsonPlace& place, std::string& type) { store(readText(place), type); },
     "a plugin needs a \"type\", the name of a plugin kind"},
    {"params", nullptr}, // when all plugins are made
};

const RegisteredPlugin* findKind(const JsonPlace& place, const PluginRegistry& registry)
{
    std::string type;
    if (!readKeys(place, "a plugin", kPluginKeys, type)) return nullptr;
    const RegisteredPlugin* kind = registry.find(type);
    if (!kind) place.at("type").error(explainUnknownKind(registry, type));
    return kind;
}

void reportUnknownParameter(const JsonPlace& place, const RegisteredPlugin& kind, const std::string& name)
{
    std::vector<std::string> names;
    if (kind.parameters) {
        const auto& declarations = kind.parameters->declarations();
        if (declarations.findOutput(name)) {
            place.error(fmt::format("\"{}\" is an output of {}; outputs are referred to, not set", name,
                                    kind.desc->getName()));
            return;
        }
        for (const ParameterDeclaration& declaration : declarations.all)
            if (!isOutput(declaration.kind)) names.push_back(declaration.name);
    }
    std::string help = suggestOrList(name, names, "its parameters are");
    if (help.empty() && names.empty()) help = "; it has none";
    if (help.empty()) help = fmt::format("; `nezaiva describe {}` shows them", kind.desc->getName());
    place.error(fmt::format("{} has no parameter \"{}\"{}", kind.desc->getName(), name, help));
}

bool isRequired(const ParameterDeclaration& declaration)
{
    if (!declaration.metadata) return false;
    for (const auto& [key, value] : parseMetadata(*declaration.metadata).other)
        if (key == "required" && value == "yes") return true;
    return false;
}

// An absent value unsets. False when the plugin refuses the value.
bool writeParameter(const PluginInstance& instance, const ParameterDeclaration& declaration,
                    std::optional<ParameterValue> value)
{
    if (!value) return unsetParameter(*instance.life->paramList, declaration.name);
    const bool none = declaration.count < 0 && !value->samples.empty() && !value->samples.front().empty() &&
                      std::holds_alternative<std::monostate>(value->samples.front().front());
    if (none) {
        // A null where a built-in kind allows it: no kind of value, so it is left in the list directly.
        auto* held = dynamic_cast<HostParameter*>(instance.life->getParameter(declaration.name.c_str()));
        if (held) held->write(std::move(value));
        return held != nullptr;
    }
    HostParameter parameter(declaration, std::move(value));
    return instance.life->setParameter(&parameter) != 0;
}

// What stands in a parameter; absent when it is unset.
std::optional<ParameterValue> writtenValue(const PluginInstance& instance,
                                           const ParameterDeclaration& declaration)
{
    const auto* held =
        dynamic_cast<const HostParameter*>(instance.life->getParameter(declaration.name.c_str()));
    return held ? held->value() : std::nullopt;
}

} // namespace

Scene::State::~State()
{
    for (auto instance = created.rbegin(); instance != created.rend(); ++instance)
        (*instance)->kind->desc->deletePlugin((*instance)->plugin);
}

bool Scene::State::read(const JsonPlace& file)
{
    if (!file->is_object()) {
        file.error(
            fmt::format("a scene file holds an object, {{\"ombrix_scene\": 1, \"plugins\": {{...}}}}, not {}",
                        describeJson(*file)));
        return false;
    }
    static constexpr KeyReader<State> kSceneKeys[] = {
        {"ombrix_scene", [](const JsonPlace& place, State&) { readVersion(place, kSceneVersion); },
         "a scene file needs \"ombrix_scene\": 1 at its top level"},
        {"settings", [](const JsonPlace& place, State& read) { read.settings = readSettings(place); }},
        {"plugins", [](const JsonPlace& place, State& read) { read.readPlugins(place); }},
    };
    return readKeys(file, "a scene file", kSceneKeys, *this);
}

bool Scene::State::readPlugins(const JsonPlace& plugins)
{
    if (!plugins->is_object()) {
        plugins.expected("an object of plugin names to plugins");
        return false;
    }
    bool good = true;
    for (const auto& [name, member] : plugins->items()) {
        if (create(plugins.at(name), name)) continue;
        brokenNames.insert(name);
        good = false;
    }
    std::vector<PendingWrite> writes;
    for (const PluginInstance* instance : created) {
        const JsonPlace place = plugins.at(instance->name);
        if (const PluginInstance* owner = shadowedOwner(instances, instance->name)) {
            place.error(
                fmt::format("the name \"{}\" also stands for an output of the {} \"{}\"; rename one of them",
                            instance->name, owner->kind->desc->getName(), owner->name));
            good = false;
        }
        if (place.has("params"))
            good = check(place.at("params"), *instance, NullMeans::Clear, writes) && good;
        good = checkRequired(place, *instance) && good;
    }
    return good && commit(std::move(writes), "/plugins", true, plugins.reports());
}

const PluginInstance* Scene::State::create(const JsonPlace& place, const std::string& name)
{
    if (!checkName(place, name)) return nullptr;
    const RegisteredPlugin* kind = findKind(place, registry);
    if (!kind) return nullptr;

    const auto [entry, isNew] = instances.try_emplace(name);
    if (!isNew) {
        place.error(fmt::format("a plugin is named \"{}\" already", name));
        return nullptr;
    }
    PluginInstance& instance = entry->second;
    created.reserve(created.size() + 1);
    instance.name = name;
    instance.kind = kind;
    try {
        instance.plugin = kind->desc->newPlugin(&registry);
        if (!instance.plugin) throw std::bad_alloc();
    } catch (...) {
        instances.erase(entry);
        throw;
    }
    created.push_back(&instance);
    instance.life = OUtils::find<OUtils::OmbrixPluginInterface>(instance.plugin);
    if (!instance.life) {
        place.error(
            fmt::format("{} offers no EXT_OMBRIX_PLUGIN, so a scene cannot hold it", kind->desc->getName()));
        remove(&instance);
        return nullptr;
    }
    // Every instance is a Plugin: the contract's base of all plugin instances.
    static_cast<OUtils::Plugin*>(instance.plugin)->setPluginName(name.c_str());
    references.addNode(&instance);
    return &instance;
}

bool Scene::State::check(const JsonPlace& params, const PluginInstance& instance, NullMeans nullMeans,
                         std::vector<PendingWrite>& writes) const
{
    if (!params->is_object()) {
        params.expected("an object of parameter names to values");
        return false;
    }
    bool good = true;
    for (const auto& [name, value] : params->items()) {
        const JsonPlace place = params.at(name);
        const OUtils::OmbrixParameterListDesc* parameters = instance.kind->parameters;
        const ParameterDeclaration* declaration =
            parameters ? parameters->declarations().findInput(name) : nullptr;
        if (!declaration) {
            reportUnknownParameter(place, *instance.kind, name);
            good = false;
            continue;
        }
        auto read = readParameter(place, *instance.kind, *declaration, scope(), nullMeans);
        if (read)
            writes.push_back({&instance, declaration, std::move(*read)});
        else
            good = false;
    }
    return good;
}

bool Scene::State::checkRequired(const JsonPlace& place, const PluginInstance& instance) const
{
    if (!instance.kind->builtin || !instance.kind->parameters) return true;
    bool good = true;
    for (const ParameterDeclaration& declaration : instance.kind->parameters->declarations().all) {
        if (!isRequired(declaration)) continue;
        if (place.has("params") && place.at("params")->contains(declaration.name)) continue;
        place.error(
            fmt::format("{} needs the parameter \"{}\"", instance.kind->desc->getName(), declaration.name));
        good = false;
    }
    return good;
}

bool Scene::State::checkSet(const JsonPlace& changes, std::vector<PendingWrite>& writes) const
{
    if (!changes->is_object()) {
        changes.expected("an object of plugin names to objects of parameters");
        return false;
    }
    bool good = true;
    for (const auto& [name, params] : changes->items()) {
        const JsonPlace place = changes.at(name);
        const auto found = instances.find(name);
        if (found == instances.end()) {
            std::vector<std::string> names;
            for (const auto& [known, instance] : instances)
                names.push_back(known);
            place.error(fmt::format("no plugin is named \"{}\"{}", name,
                                    suggestOrList(name, names, "the plugins are")));
            good = false;
            continue;
        }
        good = check(place, found->second, NullMeans::Unset, writes) && good;
    }
    return good;
}

bool Scene::State::commit(std::vector<PendingWrite> writes, std::string_view path, bool pathHoldsParams,
                          Diagnostics& diagnostics)
{
    ReferenceGraph changed = references;
    for (const PendingWrite& write : writes) {
        std::vector<ReferenceGraph::Edge> edges;
        for (const SceneObject& object : write.read.references)
            edges.push_back({object.instance, evaluatesReferences(*write.declaration)});
        changed.setEdges(write.instance, write.declaration->name, std::move(edges));
    }
    const std::vector<ReferenceGraph::Fault> faults = changed.faults();
    for (const ReferenceGraph::Fault& fault : faults) {
        std::string place = std::string(path) + pointerStep(fault.instance->name);
        if (!fault.parameter.empty())
            place += (pathHoldsParams ? "/params" : "") + pointerStep(fault.parameter);
        diagnostics.error(place, fault.text);
    }
    if (!faults.empty()) return false;

    bool good = true;
    std::vector<std::optional<ParameterValue>> before;
    for (PendingWrite& write : writes) {
        before.push_back(writtenValue(*write.instance, *write.declaration));
        if (writeParameter(*write.instance, *write.declaration, std::move(write.read.value))) continue;
        diagnostics.error(std::string(path) + pointerStep(write.instance->name),
                          fmt::format("{} does not take the value of \"{}\"",
                                      write.instance->kind->desc->getName(), write.declaration->name));
        good = false;
    }
    if (good && !checkContents(writes, path, pathHoldsParams, diagnostics)) {
        for (std::size_t i = writes.size(); i-- > 0;)
            writeParameter(*writes[i].instance, *writes[i].declaration, std::move(before[i]));
        return false;
    }
    references = std::move(changed);
    reorder();
    return good;
}

bool Scene::State::checkContents(const std::vector<PendingWrite>& writes, std::string_view path,
                                 bool pathHoldsParams, Diagnostics& diagnostics) const
{
    const bool anyWritten = std::any_of(writes.begin(), writes.end(), [](const PendingWrite& write) {
        return contentsCheckOf(*write.instance) != nullptr;
    });
    if (!anyWritten) return true;
    bool good = true;
    // All of them: what was written into one plugin may not fit another that refers to it.
    for (const PluginInstance* instance : created) {
        ContentsCheckInterface* check = contentsCheckOf(*instance);
        const std::optional<ContentsProblem> problem = check ? check->findProblem() : std::nullopt;
        if (!problem) continue;
        good = false;
        const auto step = [&](std::string_view parameter) {
            return pointerStep(instance->name) + (pathHoldsParams ? "/params" : "") + pointerStep(parameter);
        };
        std::string place = step(problem->parameter), text = problem->text;
        const auto isPlace = [&](const PendingWrite& write) {
            return write.instance == instance && write.declaration->name == problem->parameter;
        };
        if (std::none_of(writes.begin(), writes.end(), isPlace)) {
            // The value stands elsewhere, or is left out: the nearest place that there is in this file.
            const bool own = std::any_of(writes.begin(), writes.end(), [&](const PendingWrite& write) {
                return write.instance == instance;
            });
            place = own ? pointerStep(instance->name) + (pathHoldsParams ? "/params" : "") : "";
            text = fmt::format("\"{}\" of \"{}\": {}", problem->parameter, instance->name, text);
        }
        diagnostics.error(std::string(path) + place, text);
    }
    return good;
}

void Scene::State::remove(const PluginInstance* instance)
{
    references.removeNode(instance);
    std::erase(created, instance);
    std::erase_if(ordered, [=](const PluginInstance& known) { return known.plugin == instance->plugin; });
    instance->kind->desc->deletePlugin(instance->plugin);
    instances.erase(instances.find(instance->name));
}

void Scene::State::reorder()
{
    ordered.clear();
    for (const PluginInstance* instance : references.order())
        ordered.push_back(*instance);
}

} // namespace ombrix
