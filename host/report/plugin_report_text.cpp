// Plugin kinds as text for people.

#include "host/metadata/metadata.h"
#include "host/params/host_parameters.h"
#include "host/report/plugin_report.h"
#include "host/report/text_layout.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr std::size_t kIndent = 4;
constexpr std::size_t kTextColumn = 17;

std::string joined(const std::vector<std::string>& names)
{
    return names.empty() ? std::string("none") : fmt::format("{}", fmt::join(names, ", "));
}

std::string textOf(const char* text)
{
    return text ? text : "";
}

// The interfaces, in one line where declaration and instance agree.
std::string interfaceLines(const RegisteredPlugin& kind, PluginRegistry& registry, std::size_t columns)
{
    const std::vector<std::string> declared = declaredInterfaces(kind);
    const std::vector<std::string> offered = instanceInterfaces(kind, registry);
    if (declared == offered) return labelled("interfaces", joined(declared), kIndent, kTextColumn, columns);
    return labelled("declared", joined(declared), kIndent, kTextColumn, columns) +
           labelled("instance", joined(offered), kIndent, kTextColumn, columns);
}

std::string defaultText(const ParameterDeclaration& declaration)
{
    const OutputJson parameter = std::visit(
        [](const auto& value) -> OutputJson {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, std::monostate> || std::is_same_v<T, PluginReference>)
                return nullptr;
            else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, int> ||
                               std::is_same_v<T, std::string>)
                return value;
            else
                return toJson(value);
        },
        declaration.defaultValue);
    if (parameter.is_null()) return "none";
    std::string text = formatJson(parameter, 1000);
    text.pop_back(); // the newline
    return text;
}

std::string enableText(const std::vector<std::vector<EnableCondition>>& alternatives)
{
    std::string text;
    for (const auto& alternative : alternatives) {
        if (!text.empty()) text += " or ";
        bool first = true;
        for (const EnableCondition& condition : alternative) {
            text += fmt::format("{}{} is {}", first ? "" : " and ", condition.parameter, condition.value);
            first = false;
        }
    }
    return text;
}

std::string limitsText(const ParsedMetadata& metadata)
{
    const auto number = [](double value) {
        std::string text = formatJson(toJson(value));
        text.pop_back();
        return text;
    };
    if (metadata.minValue && metadata.maxValue)
        return fmt::format("{} to {}", number(*metadata.minValue), number(*metadata.maxValue));
    if (metadata.minValue) return fmt::format("{} or more", number(*metadata.minValue));
    return fmt::format("{} or less", number(*metadata.maxValue));
}

// What the metadata says, a labelled line each.
std::string metadataLines(const ParsedMetadata& metadata, std::size_t columns)
{
    std::string lines;
    const auto add = [&](const char* label, const std::string& text) {
        lines += labelled(label, text, kIndent, kTextColumn, columns);
    };
    if (metadata.displayName) add("shown as", *metadata.displayName);
    std::string labels;
    for (const EnumLabel& entry : metadata.enumeration)
        labels += fmt::format("{}{} {}", labels.empty() ? "" : ", ", entry.value, entry.label);
    if (!labels.empty()) add("values", labels);
    if (metadata.minValue || metadata.maxValue) add("range", limitsText(metadata));
    if (metadata.quantityType) add("quantity", *metadata.quantityType);
    if (metadata.units) add("units", *metadata.units);
    if (!metadata.enable.empty()) add("active when", enableText(metadata.enable));
    if (metadata.startRollout) add("opens group", *metadata.startRollout);
    if (metadata.endsRollout) add("closes group", "");
    if (metadata.gpuSupport) add("GPU support", *metadata.gpuSupport);
    return lines;
}

std::string declarationText(const ParameterDeclaration& declaration)
{
    std::string text = declarationName(declaration.kind);
    if (declaration.kind == Declaration::Plugin)
        text += fmt::format(" of {}", interfaceName(declaration.requiredInterface));
    if (isOutput(declaration.kind)) return text;
    if (declaration.count >= 0) text += ", list";
    return text + fmt::format(", default {}", defaultText(declaration));
}

std::string parameterText(const ParameterDeclaration& declaration, std::size_t nameColumns,
                          std::size_t columns)
{
    std::string text = labelled(declaration.name, declarationText(declaration), 2, nameColumns, columns);
    if (declaration.description) text += wrapped(*declaration.description, kIndent, columns);
    if (!declaration.metadata) return text;
    text += metadataLines(parseMetadata(*declaration.metadata), columns);
    return text + labelled("metadata", *declaration.metadata, kIndent, kTextColumn, columns);
}

// Where the text beside the parameters' names begins.
std::size_t nameColumnsOf(const std::deque<ParameterDeclaration>& declarations)
{
    constexpr std::size_t kMost = 32;
    std::size_t longest = 0;
    for (const ParameterDeclaration& declaration : declarations)
        longest = std::max(longest, columnsOf(declaration.name));
    return std::min(longest + 4, kMost);
}

} // namespace

std::string pluginListText(PluginRegistry& registry, std::size_t columns)
{
    std::string text;
    std::string origin;
    for (const RegisteredPlugin* kind : registry.all()) {
        const std::string from = kind->builtin ? "built into the host" : kind->library;
        if (text.empty() || from != origin) text += fmt::format("{}{}\n\n", text.empty() ? "" : "\n", from);
        origin = from;
        text += fmt::format("  {}  {}\n", kind->desc->getName(), kind->desc->getPluginID());
        text += wrapped(textOf(kind->desc->getDescription()), kIndent, columns);
        text += interfaceLines(*kind, registry, columns);
    }
    return text;
}

std::string pluginText(const RegisteredPlugin& kind, PluginRegistry& registry, std::size_t columns)
{
    std::string text = fmt::format("{}  {}\n", kind.desc->getName(), kind.desc->getPluginID());
    text += wrapped(textOf(kind.desc->getDescription()), kIndent, columns);
    text += interfaceLines(kind, registry, columns);
    text += labelled("from", kind.builtin ? "the host itself" : kind.library, kIndent, kTextColumn, columns);
    if (!kind.parameters || kind.parameters->declarations().all.empty()) return text + "\nno parameters\n";
    text += "\nparameters\n";
    const auto& declarations = kind.parameters->declarations().all;
    const std::size_t nameColumns = nameColumnsOf(declarations);
    for (const ParameterDeclaration& declaration : declarations)
        text += "\n" + parameterText(declaration, nameColumns, columns);
    return text;
}

} // namespace ombrix
