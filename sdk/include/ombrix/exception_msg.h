// ExceptionMsg: the one exception type that a plug-in library throws; the host catches it.
#pragma once

#include <ombrix/api.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace OUtils {

class OMBRIX_API ExceptionMsg {
public:
    static constexpr int kCapacity = 1024;

    // A printf-style format. A text that does not fit is cut; the buffer always ends in a zero.
    __attribute__((format(printf, 2, 3))) explicit ExceptionMsg(const char* format, ...)
    {
        std::memset(text, 0, sizeof text);
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
    }
    ExceptionMsg(const ExceptionMsg& other) { std::memcpy(text, other.text, sizeof text); }
    ExceptionMsg& operator=(const ExceptionMsg& other)
    {
        if (this != &other) std::memcpy(text, other.text, sizeof text);
        return *this;
    }
    virtual ~ExceptionMsg() = default;

    const char* what() const { return text; }

private:
    char text[kCapacity];
};

} // namespace OUtils
