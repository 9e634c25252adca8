// Files that appear whole or not at all. Every file that the host writes goes through here.
#pragma once

#include <filesystem>
#include <string_view>

namespace ombrix {

// Writes the bytes into a new file beside the final place and gives it that name once all of them are
// stored. An older file's permissions stay; a link stays and what it points to is replaced. What is no
// regular file, such as a pipe or a device, is written directly. A failure leaves nothing behind and an
// older file as it was. Throws WorkError, which names the file and the system's reason.
void writeOutputFile(const std::filesystem::path& file, std::string_view bytes);

// Fails as writeOutputFile would, as far as that can be told before there are bytes: a folder that is
// missing or takes no new file, a file that may not be written. Leaves nothing behind.
void checkOutputFile(const std::filesystem::path& file);

} // namespace ombrix
