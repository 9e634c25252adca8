#include "host/scene/kind_words.h"

#include "host/scene/json_values.h"

#include <fmt/format.h>

namespace ombrix {

std::string explainUnknownKind(const PluginRegistry& registry, std::string_view type)
{
    std::vector<std::string> names;
    bool libraryLoaded = false;
    for (const RegisteredPlugin* known : registry.all()) {
        names.emplace_back(known->desc->getName());
        libraryLoaded = libraryLoaded || !known->builtin;
    }
    const std::string suggestion = suggestName(type, names);
    return fmt::format("no plugin kind is named \"{}\"{} `nezaiva list` shows them all{}", type,
                       suggestion.empty() ? ";" : suggestion,
                       libraryLoaded ? "" : "; no plug-in library is loaded, `--library FILE` names one");
}

} // namespace ombrix
