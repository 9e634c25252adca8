// CharString: the host's string. It owns its text, which comes from the host's allocator.
#pragma once

#include <ombrix/memory.h>

#include <cstring>
#include <utility>

namespace OUtils {

class CharString {
public:
    CharString() = default;
    CharString(const char* initialText) { assign(initialText); }
    CharString(const CharString& other) { assign(other.text); }
    CharString(CharString&& other) noexcept : text(std::exchange(other.text, nullptr)) {}
    ~CharString() { ofree(text); }

    CharString& operator=(const CharString& other)
    {
        if (this != &other) assign(other.text);
        return *this;
    }
    CharString& operator=(CharString&& other) noexcept
    {
        std::swap(text, other.text);
        return *this;
    }
    CharString& operator=(const char* newText)
    {
        assign(newText);
        return *this;
    }

    // Zero-terminated UTF-8; null when no text was ever given, or null was.
    const char* ptr() const { return text; }
    // The text, "" for none.
    const char* str() const { return text ? text : ""; }
    std::size_t length() const { return text ? std::strlen(text) : 0; }
    bool empty() const { return length() == 0; }

private:
    // Keeps no text when memory is short.
    void assign(const char* newText)
    {
        char* copy = nullptr;
        if (newText) {
            const std::size_t size = std::strlen(newText) + 1;
            copy = static_cast<char*>(omalloc(size));
            if (copy) std::memcpy(copy, newText, size);
        }
        ofree(text);
        text = copy;
    }

    char* text = nullptr;
};

} // namespace OUtils
