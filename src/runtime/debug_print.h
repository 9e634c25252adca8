// The library's diagnostics channel: lines for the system's debugger.
#pragma once

#include <cstddef>

namespace nezaiva {

// A line's place, its zero included; longer lines are cut.
inline constexpr std::size_t kDebugLineSize = 4096;

// Formats as printf does and hands the line to the debugger channel. Thread-safe; takes no lock and
// allocates nothing, so it may run while memory is short.
__attribute__((format(printf, 1, 2))) void debugPrint(const char* format, ...);

// Converts zero-terminated UTF-8 into zero-terminated UTF-16 and returns the number of units before the
// zero. What does not fit is left out; a surrogate pair is not split. Each byte that belongs to no valid
// sequence becomes U+FFFD.
std::size_t utf8ToUtf16(const char* text, char16_t* units, std::size_t capacity);

} // namespace nezaiva
