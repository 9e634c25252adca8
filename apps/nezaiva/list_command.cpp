// nezaiva list and nezaiva describe: what the plug-in libraries and the host offer.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/scene_loading.h"
#include "apps/nezaiva/standard_output.h"
#include "host/errors/errors.h"
#include "host/report/plugin_report.h"
#include "host/scene/kind_words.h"

#include <memory>

using namespace ombrix;

namespace {

void list(const CommandLine& commandLine, bool json)
{
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    writeToStandardOutput(json ? formatJson(pluginListJson(registry))
                               : pluginListText(registry, outputColumns()));
}

const RegisteredPlugin& findKind(const PluginRegistry& registry, const std::string& type)
{
    if (const RegisteredPlugin* kind = registry.find(type)) return *kind;
    throw WrongInput{explainUnknownKind(registry, type)};
}

void describe(const CommandLine& commandLine, const std::string& type, bool json)
{
    PluginRegistry registry;
    loadLibraries(commandLine, registry);
    const RegisteredPlugin& kind = findKind(registry, type);
    writeToStandardOutput(json ? formatJson(pluginJson(kind, registry))
                               : pluginText(kind, registry, outputColumns()));
}

} // namespace

void addListCommand(CLI::App& app, CommandLine& commandLine)
{
    CLI::App* command = app.add_subcommand("list", "List the plug-in kinds with their interfaces");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Answer in JSON, an array of objects");
    command->callback([&commandLine, json] { list(commandLine, *json); });
}

void addDescribeCommand(CLI::App& app, CommandLine& commandLine)
{
    CLI::App* command = app.add_subcommand("describe", "Describe a plug-in kind and its parameters");
    const auto json = std::make_shared<bool>(false);
    const auto type = std::make_shared<std::string>();
    command->add_option("type", *type, "The name of a plug-in kind")->required()->type_name("TYPE");
    command->add_flag("--json", *json, "Answer in JSON, one object");
    command->callback([&commandLine, type, json] { describe(commandLine, *type, *json); });
}
