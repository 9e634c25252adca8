// Plugin kinds as JSON.

#include "host/metadata/metadata.h"
#include "host/params/host_parameters.h"
#include "host/report/plugin_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>

namespace ombrix {

namespace {

OutputJson textOrNull(const char* text)
{
    return text ? OutputJson(text) : OutputJson(nullptr);
}

OutputJson textOrNull(const std::optional<std::string>& text)
{
    return text ? OutputJson(*text) : OutputJson(nullptr);
}

struct DefaultJson {
    OutputJson operator()(std::monostate) const { return nullptr; }
    OutputJson operator()(const PluginReference&) const { return nullptr; }
    OutputJson operator()(bool value) const { return value; }
    OutputJson operator()(int value) const { return value; }
    OutputJson operator()(const std::string& value) const { return value; }
    template <class T>
    OutputJson operator()(const T& value) const
    {
        return toJson(value);
    }
};

OutputJson enableJson(const std::vector<std::vector<EnableCondition>>& alternatives)
{
    OutputJson result = OutputJson::array();
    for (const auto& alternative : alternatives) {
        OutputJson conditions = OutputJson::array();
        for (const EnableCondition& condition : alternative) {
            OutputJson entry;
            entry["parameter"] = condition.parameter;
            entry["value"] = condition.value;
            conditions.push_back(std::move(entry));
        }
        result.push_back(std::move(conditions));
    }
    return result;
}

// What the metadata says; keys that it does not say are absent.
OutputJson uiJson(const ParsedMetadata& metadata)
{
    OutputJson ui = OutputJson::object();
    if (metadata.displayName) ui["display_name"] = *metadata.displayName;
    if (!metadata.enumeration.empty()) {
        OutputJson labels = OutputJson::array();
        for (const EnumLabel& entry : metadata.enumeration) {
            OutputJson label;
            label["value"] = entry.value;
            label["label"] = entry.label;
            labels.push_back(std::move(label));
        }
        ui["labels"] = std::move(labels);
    }
    if (metadata.startRollout) ui["rollout"] = *metadata.startRollout;
    if (metadata.endsRollout) ui["ends_rollout"] = true;
    if (!metadata.enable.empty()) ui["enable"] = enableJson(metadata.enable);
    if (metadata.minValue) ui["min"] = toJson(*metadata.minValue);
    if (metadata.maxValue) ui["max"] = toJson(*metadata.maxValue);
    if (metadata.quantityType) ui["quantity"] = *metadata.quantityType;
    if (metadata.units) ui["units"] = *metadata.units;
    if (metadata.gpuSupport) ui["gpu_support"] = *metadata.gpuSupport;
    for (const auto& [key, value] : metadata.other)
        ui["other"][key] = value;
    return ui;
}

OutputJson parameterJson(const ParameterDeclaration& declaration)
{
    OutputJson parameter;
    parameter["name"] = declaration.name;
    parameter["declaration"] = declarationName(declaration.kind);
    if (declaration.kind == Declaration::Plugin)
        parameter["interface"] = fmt::format("0x{:08X}", declaration.requiredInterface);
    if (isOutput(declaration.kind)) parameter["output"] = true;
    parameter["default"] = std::visit(DefaultJson{}, declaration.defaultValue);
    parameter["count"] = declaration.count;
    parameter["description"] = textOrNull(declaration.description);
    parameter["metadata"] = textOrNull(declaration.metadata);
    if (declaration.metadata) parameter["ui"] = uiJson(parseMetadata(*declaration.metadata));
    return parameter;
}

OutputJson identityJson(const RegisteredPlugin& kind, PluginRegistry& registry)
{
    OutputJson plugin;
    plugin["name"] = textOrNull(kind.desc->getName());
    plugin["id"] = kind.desc->getPluginID();
    plugin["description"] = textOrNull(kind.desc->getDescription());
    plugin["declared"] = declaredInterfaces(kind);
    plugin["instance"] = instanceInterfaces(kind, registry);
    if (kind.builtin) plugin["builtin"] = true;
    return plugin;
}

} // namespace

std::string interfaceName(OUtils::InterfaceId id)
{
    for (const OUtils::InterfaceName& known : OUtils::kInterfaceNames)
        if (known.id == id) return known.name;
    return fmt::format("0x{:08X}", id);
}

std::vector<std::string> interfaceNames(const std::function<bool(OUtils::InterfaceId)>& has)
{
    std::vector<std::string> names;
    for (const OUtils::InterfaceName& known : OUtils::kInterfaceNames)
        if (known.id != OUtils::EXT_OMBRIX_PLUGIN && has(known.id)) names.emplace_back(known.name);
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> declaredInterfaces(const RegisteredPlugin& kind)
{
    return interfaceNames([&](OUtils::InterfaceId id) { return kind.desc->supportsInterface(id) != 0; });
}

std::vector<std::string> instanceInterfaces(const RegisteredPlugin& kind, PluginRegistry& registry)
{
    const auto deleter = [&](OUtils::PluginBase* plugin) { kind.desc->deletePlugin(plugin); };
    const std::unique_ptr<OUtils::PluginBase, decltype(deleter)> plugin(kind.desc->newPlugin(&registry),
                                                                        deleter);
    if (!plugin) throw std::bad_alloc();
    return interfaceNames([&](OUtils::InterfaceId id) { return plugin->getInterface(id) != nullptr; });
}

OutputJson pluginListJson(PluginRegistry& registry)
{
    OutputJson list = OutputJson::array();
    for (const RegisteredPlugin* kind : registry.all())
        list.push_back(identityJson(*kind, registry));
    return list;
}

OutputJson pluginJson(const RegisteredPlugin& kind, PluginRegistry& registry)
{
    OutputJson plugin = identityJson(kind, registry);
    plugin["parameters"] = OutputJson::array();
    if (!kind.parameters) return plugin;
    for (const ParameterDeclaration& declaration : kind.parameters->declarations().all)
        plugin["parameters"].push_back(parameterJson(declaration));
    return plugin;
}

} // namespace ombrix
