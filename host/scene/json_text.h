// Reads the JSON text of scene and probe files.
#pragma once

#include "host/scene/diagnostics.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ombrix {

// The deepest nesting of objects and lists that a file may have; no format here needs a tenth of it.
inline constexpr int kDeepestNesting = 100;

// Reads UTF-8 JSON with // and /* */ comments. Faults of the text (with line and column), bytes that are
// no UTF-8, a name that stands twice in one object, too deep nesting and an empty text are errors. Nothing
// when it could not be read; a repeated name alone is reported and the value still returned.
std::optional<nlohmann::json> parseJsonText(std::string_view text, Diagnostics& diagnostics);

// The whole of a file, or of standard input for "-". Throws WorkError when it cannot be read.
std::string readTextFile(const std::filesystem::path& file);

} // namespace ombrix
