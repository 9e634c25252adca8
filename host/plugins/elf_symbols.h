// A look into shared libraries without running them.
#pragma once

#include <filesystem>
#include <string_view>

namespace ombrix {

// Whether a file is a 64-bit ELF file whose dynamic symbols define this name. False for anything else, and
// for files that cannot be read.
bool exportsSymbol(const std::filesystem::path& file, std::string_view name);

} // namespace ombrix
