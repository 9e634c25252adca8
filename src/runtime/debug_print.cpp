#include "runtime/debug_print.h"

#include <ombrix/memory.h>

#include <cstdarg>
#include <cstdio>

namespace nezaiva {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// The code point at the bytes, and in length how many bytes it takes. No byte behind the terminating
// zero is read: a zero is no continuation byte.
char32_t decodeUtf8(const unsigned char* bytes, int* length)
{
    const unsigned char lead = bytes[0];
    *length = 1;
    if (lead < 0x80) return lead;

    const int continuations = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) return kReplacement;
    char32_t code = lead & (0x3Fu >> continuations);
    for (int i = 1; i <= continuations; ++i) {
        if ((bytes[i] & 0xC0) != 0x80) return kReplacement;
        code = (code << 6) | (bytes[i] & 0x3Fu);
    }

    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallest[continuations] || code > 0x10FFFF || surrogate) return kReplacement;
    *length = continuations + 1;
    return code;
}

} // namespace

std::size_t utf8ToUtf16(const char* text, char16_t* units, std::size_t capacity)
{
    if (capacity == 0) return 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    std::size_t count = 0;
    while (*bytes) {
        int length = 0;
        const char32_t code = decodeUtf8(bytes, &length);
        bytes += length;
        const std::size_t needed = code < 0x10000 ? 1 : 2;
        if (count + needed >= capacity) break;
        if (needed == 1) {
            units[count++] = static_cast<char16_t>(code);
        } else {
            units[count++] = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            units[count++] = static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    units[count] = 0;
    return count;
}

void debugPrint(const char* format, ...)
{
    char line[kDebugLineSize] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    line[sizeof line - 1] = 0;

    // No sequence of UTF-8 has more units in UTF-16 than bytes.
    char16_t units[kDebugLineSize];
    utf8ToUtf16(line, units, kDebugLineSize);
    oDebugOutput(units);
}

} // namespace nezaiva
