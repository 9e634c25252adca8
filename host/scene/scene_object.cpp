#include "host/scene/scene_object.h"

#include "host/params/host_parameters.h"
#include "host/scene/contents_check.h"
#include "host/scene/json_values.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

std::vector<std::string> outputNames(const RegisteredPlugin& kind)
{
    std::vector<std::string> names;
    if (!kind.parameters) return names;
    for (const ParameterDeclaration& declaration : kind.parameters->declarations().all)
        if (isOutput(declaration.kind)) names.push_back(declaration.name);
    return names;
}

} // namespace

SceneObject resolveOutput(const PluginInstance& instance, std::string_view output, std::string& problem)
{
    const std::vector<std::string> outputs = outputNames(*instance.kind);
    if (outputs.empty()) {
        problem = fmt::format("{} \"{}\" has no outputs; write \"{}\"", instance.kind->desc->getName(),
                              instance.name, instance.name);
        return {};
    }
    if (std::find(outputs.begin(), outputs.end(), output) == outputs.end()) {
        problem = fmt::format("{} \"{}\" has no output \"{}\"{}", instance.kind->desc->getName(),
                              instance.name, output, suggestOrList(output, outputs, "its outputs are"));
        return {};
    }
    OUtils::OmbrixParameterList* list = instance.life->paramList;
    OUtils::PluginInterface* bound = list ? boundOutput(*list, output) : nullptr;
    if (!bound) {
        problem = fmt::format("{} \"{}\" answers nothing at its output \"{}\"",
                              instance.kind->desc->getName(), instance.name, output);
        return {};
    }
    return {&instance, bound};
}

const PluginInstance* shadowedOwner(const InstanceMap& instances, std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return nullptr;
    const auto owner = instances.find(name.substr(0, dot));
    if (owner == instances.end()) return nullptr;
    const std::vector<std::string> outputs = outputNames(*owner->second.kind);
    const bool shadows = std::find(outputs.begin(), outputs.end(), name.substr(dot + 1)) != outputs.end();
    return shadows ? &owner->second : nullptr;
}

ContentsCheckInterface* contentsCheckOf(const PluginInstance& instance)
{
    if (!instance.kind->builtin) return nullptr;
    return OUtils::find<ContentsCheckInterface>(instance.plugin);
}

OUtils::PluginInterface* SceneObject::getInterface(OUtils::InterfaceId id) const
{
    if (!instance) return nullptr;
    if (!output) return instance->plugin->getInterface(id);
    if (output->getInterfaceID() == id) return output;
    OUtils::PluginBase* holder = output->getPlugin();
    return holder ? holder->getInterface(id) : nullptr;
}

SceneObject resolveReference(const InstanceMap& instances, std::string_view reference, std::string& problem)
{
    if (const auto found = instances.find(reference); found != instances.end())
        return {&found->second, nullptr};
    const std::size_t dot = reference.rfind('.');
    if (dot != std::string_view::npos) {
        const auto found = instances.find(reference.substr(0, dot));
        if (found != instances.end()) return resolveOutput(found->second, reference.substr(dot + 1), problem);
    }
    std::vector<std::string> names;
    for (const auto& [name, instance] : instances)
        names.push_back(name);
    const std::string_view wanted = dot == std::string_view::npos ? reference : reference.substr(0, dot);
    std::string suggestion = adviceForNumberWord(reference);
    if (suggestion.empty()) suggestion = suggestName(reference, names);
    if (suggestion.empty()) suggestion = suggestName(wanted, names);
    problem = fmt::format("no plugin is named \"{}\"{}", reference, suggestion);
    return {};
}

} // namespace ombrix
