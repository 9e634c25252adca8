// The debugger channel. It runs on the path of failed allocations, so it takes no memory and no lock.
#include "host/console/console.h"
#include "host/memory/allocator.h"

#include <unistd.h>

namespace ombrix {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constinit DebugOutputHook outputHook = nullptr;
constinit void* hookUser = nullptr;

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The next code point of zero-terminated UTF-16, and moves past it.
char32_t nextUtf16(const char16_t*& text)
{
    const char16_t unit = *text++;
    if (isHighSurrogate(unit) && isLowSurrogate(*text))
        return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) +
               (static_cast<char32_t>(*text++) - 0xDC00);
    return isHighSurrogate(unit) || isLowSurrogate(unit) ? kReplacement : unit;
}

// Writes one to four bytes and returns their number.
int putUtf8(char32_t point, char* out)
{
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
    if (point < 0x80) {
        out[0] = static_cast<char>(point);
        return 1;
    }
    if (point < 0x800) {
        out[0] = static_cast<char>(0xC0 | (point >> 6));
        out[1] = tail(0);
        return 2;
    }
    if (point < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (point >> 12));
        out[1] = tail(6);
        out[2] = tail(0);
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (point >> 18));
    out[1] = tail(12);
    out[2] = tail(6);
    out[3] = tail(0);
    return 4;
}

// The next code point of UTF-8, and moves past it; a byte that fits nowhere counts alone.
char32_t nextUtf8(std::string_view& text)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byteAt(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC0 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t point = length == 1 ? first : first & (0xFFu >> (length + 1));
    bool valid = length > 0 && length <= text.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        valid = (byteAt(i) & 0xC0) == 0x80;
        point = point << 6 | (byteAt(i) & 0x3Fu);
    }
    valid = valid && point <= 0x10FFFF;
    text.remove_prefix(valid ? length : 1);
    return valid ? point : kReplacement;
}

void writeToStandardError(const char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(STDERR_FILENO, bytes, size);
        if (written <= 0) return;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

} // namespace

void setDebugOutputHook(DebugOutputHook hook, void* user)
{
    outputHook = hook;
    hookUser = user;
}

void debugOutput(std::string_view text)
{
    constexpr std::size_t kCapacity = 1024;
    char16_t units[kCapacity];
    std::size_t count = 0;
    text = text.substr(0, kCapacity - 1);
    while (!text.empty() && count + 2 < kCapacity) {
        const char32_t point = nextUtf8(text);
        if (point < 0x10000) {
            units[count++] = static_cast<char16_t>(point);
        } else {
            units[count++] = static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
            units[count++] = static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        }
    }
    units[count] = 0;
    oDebugOutput(units);
}

} // namespace ombrix

extern "C" void oDebugOutput(const char16_t* text)
{
    using namespace ombrix;
    if (!text) return;
    if (outputHook) {
        outputHook(text, hookUser);
        return;
    }
    if (verbosity() != Verbosity::Verbose) return;
    char bytes[512];
    std::size_t size = 0;
    while (*text) {
        size += static_cast<std::size_t>(putUtf8(nextUtf16(text), bytes + size));
        if (size + 4 > sizeof bytes) {
            writeToStandardError(bytes, size);
            size = 0;
        }
    }
    writeToStandardError(bytes, size);
}
