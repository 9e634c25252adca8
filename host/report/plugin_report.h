// What the program tells of plugin kinds, as JSON and as text.
#pragma once

#include "host/plugins/registry.h"
#include "host/report/json_output.h"

#include <functional>
#include <string>
#include <vector>

namespace ombrix {

// "EXT_TEXTURE" and so on; hexadecimal for an id without a name.
std::string interfaceName(OUtils::InterfaceId id);
// The names of those interfaces that has answers for, sorted; EXT_OMBRIX_PLUGIN, which every plugin has, is
// left out.
std::vector<std::string> interfaceNames(const std::function<bool(OUtils::InterfaceId)>& has);
// What the descriptor declares.
std::vector<std::string> declaredInterfaces(const RegisteredPlugin& kind);
// What an instance offers; one is made and deleted for this.
std::vector<std::string> instanceInterfaces(const RegisteredPlugin& kind, PluginRegistry& registry);

// The answers of `list --json` and `describe --json`.
OutputJson pluginListJson(PluginRegistry& registry);
OutputJson pluginJson(const RegisteredPlugin& kind, PluginRegistry& registry);

// The same for people, wrapped to lines of at most this many columns.
std::string pluginListText(PluginRegistry& registry, std::size_t columns);
std::string pluginText(const RegisteredPlugin& kind, PluginRegistry& registry, std::size_t columns);

} // namespace ombrix
