// Collects what plugins say on the debugger channel. Allocates nothing while it listens, so that it can
// listen to a failing allocation.
#pragma once

#include "host/memory/allocator.h"

#include <cstddef>
#include <string>
#include <vector>

namespace support {

class DebugLines {
public:
    DebugLines() { ombrix::setDebugOutputHook(take, this); }
    DebugLines(const DebugLines&) = delete;
    DebugLines& operator=(const DebugLines&) = delete;
    ~DebugLines() { ombrix::setDebugOutputHook(nullptr, nullptr); }

    // One string a call.
    std::vector<std::u16string> lines() const
    {
        std::vector<std::u16string> split;
        const char16_t* text = heard;
        for (std::size_t i = 0; i < count; ++i) {
            split.emplace_back(text);
            text += split.back().size() + 1;
        }
        return split;
    }

private:
    static constexpr std::size_t kCapacity = 16384;

    static void take(const char16_t* text, void* user)
    {
        auto* self = static_cast<DebugLines*>(user);
        ++self->count;
        while (self->used + 1 < kCapacity && *text)
            self->heard[self->used++] = *text++;
        self->heard[self->used++] = 0;
    }

    char16_t heard[kCapacity] = {};
    std::size_t used = 0;
    std::size_t count = 0;
};

} // namespace support
