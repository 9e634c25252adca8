// A look into shared libraries without running them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace ombrix {

// Whether a file is a 64-bit ELF file whose dynamic symbols define this name. False for anything else, and
// for files that cannot be read.
bool exportsSymbol(const std::filesystem::path& file, std::string_view name);

// Why a file is no whole 64-bit ELF shared library: it cannot be read, is something else, or was cut short.
// "" when nothing of that is the case. The system's loader ends the program over some libraries that are cut
// short, so ask before it opens one.
std::string findLibraryProblem(const std::filesystem::path& file);

} // namespace ombrix
