#include "host/gpu/host_gpu.h"

#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <locale.h>

namespace ombrix {
namespace {

// Puts the calling thread into the C locale while it lives; other threads keep theirs.
class CLocaleScope {
public:
    CLocaleScope() : before(uselocale(cLocale())) {}
    ~CLocaleScope() { uselocale(before); }
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
    static locale_t cLocale()
    {
        static const locale_t made = newlocale(LC_ALL_MASK, "C", nullptr);
        return made;
    }
    locale_t before;
};

} // namespace

void HostShaderSource::append(const char* appended)
{
    if (appended) text += appended;
}

void HostShaderSource::printf(const char* format, ...)
{
    const CLocaleScope scope;
    va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    char line[512];
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (length >= static_cast<int>(sizeof line)) {
        const std::size_t end = text.size();
        text.resize(end + static_cast<std::size_t>(length));
        // The zero goes to the place where a string keeps one anyway.
        std::vsnprintf(text.data() + end, static_cast<std::size_t>(length) + 1, format, again);
    } else if (length > 0) {
        text.append(line, static_cast<std::size_t>(length));
    }
    va_end(again);
}

} // namespace ombrix
