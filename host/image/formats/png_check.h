// Finds damage in PNG files before the PNG library does: that library would talk on standard error.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace ombrix {

// Walks the chunks of a PNG file's bytes: their lengths, check sums and the closing chunk. Returns what
// is wrong in a few words, "" when all holds or the bytes are no PNG at all.
std::string findPngDamage(std::span<const std::uint8_t> bytes);

} // namespace ombrix
