// Text files that appear whole or not at all.
#pragma once

#include <filesystem>
#include <string_view>

namespace ombrix {

// Writes a file beside its place under a temporary name and renames it; what is no regular file, such as a
// pipe, is written directly. A failure leaves nothing behind and an older file as it was. Throws WorkError.
void writeTextFile(const std::filesystem::path& file, std::string_view text);

} // namespace ombrix
