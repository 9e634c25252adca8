// A sink for GPU text that a test reads afterwards, and an OCLData that holds nothing.
#pragma once

#include "support/understood_source.h"

#include <ombrix/gpu_source.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace support {

// Whether a test means its text to be one that a consumer understands.
enum class TextKind { Understood, Broken };

// At its end, a text that is not understood fails the test, unless it is broken on purpose.
class TextSink : public OUtils::ShaderSource {
public:
    explicit TextSink(TextKind textKind = TextKind::Understood) : kind(textKind) {}
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;
    ~TextSink() override
    {
        if (kind == TextKind::Understood) expectUnderstood(text);
    }

    void append(const char* added) override { text += added; }
    __attribute__((format(printf, 2, 3))) void printf(const char* format, ...) override
    {
        char line[1024];
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(line, sizeof line, format, arguments);
        va_end(arguments);
        text += line;
    }

    std::string text;

private:
    TextKind kind;
};

class NoData : public OUtils::OCLData {
public:
    int getBitmapIndexFromHash(std::uint32_t) override { return -1; }
    int addBitmapFile(const OUtils::PtrArray<int>&, const OUtils::PtrArray<int>*, int, int, int, float,
                      const char*, int) override
    {
        return -1;
    }
    void setBitmapHash(int, std::uint32_t) override {}
    OUtils::OmbrixRenderer* getRenderer() override { return nullptr; }
    OUtils::ParameterBlockStore* getBlockStore() override { return nullptr; }
};

// The answer and the text of one getSource call.
struct WrittenSource {
    int answer = -1;
    std::string text;
};

inline WrittenSource sourceOf(OUtils::RTTexInterface* texture, const char* descriptor = "MaterialDescriptor",
                              TextKind kind = TextKind::Understood)
{
    TextSink sink(kind);
    NoData data;
    WrittenSource written;
    written.answer = texture->getSource("theName", "theTag", descriptor, sink, data);
    written.text = sink.text;
    return written;
}

} // namespace support
