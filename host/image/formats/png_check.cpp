#include "host/image/formats/png_check.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ombrix {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kChunkFrame = 12; // length, type and check sum, four bytes each

// The check sum of ISO 3309 that PNG uses: reflected polynomial 0xEDB88320, inverted at both ends.
constexpr std::array<std::uint32_t, 256> kCrcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t n = 0; n < 256; ++n) {
        std::uint32_t c = n;
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 1u) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[n] = c;
    }
    return table;
}();

std::uint32_t crcOf(std::span<const std::uint8_t> bytes)
{
    std::uint32_t c = 0xFFFFFFFFu;
    for (const std::uint8_t byte : bytes)
        c = kCrcTable[(c ^ byte) & 0xFFu] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

} // namespace

std::string findPngDamage(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() < kSignature.size() || !std::equal(kSignature.begin(), kSignature.end(), bytes.begin()))
        return "";
    std::span<const std::uint8_t> rest = bytes.subspan(kSignature.size());
    for (;;) {
        if (rest.size() < kChunkFrame) return "the file is cut short";
        const std::uint32_t length = bigEndian(rest);
        if (length > rest.size() - kChunkFrame) return "the file is cut short";
        const std::span<const std::uint8_t> typeAndData = rest.subspan(4, 4 + std::size_t{length});
        if (crcOf(typeAndData) != bigEndian(rest.subspan(8 + std::size_t{length})))
            return "the file is damaged (a check sum does not match)";
        if (std::memcmp(typeAndData.data(), "IEND", 4) == 0) return "";
        rest = rest.subspan(kChunkFrame + length);
    }
}

} // namespace ombrix
