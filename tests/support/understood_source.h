// Holds every GPU text that a test collects to the vocabulary: a consumer has to understand it.
#pragma once

#include "host/gpu/source_reader.h"

#include <gtest/gtest.h>

#include <string>

namespace support {

// What a consumer says against a text, a line each; empty for one that it understands. The textures of the
// tests write lines of their own, which end with the descriptor, and no bitmap is ever taken.
inline std::string notUnderstood(const std::string& text)
{
    ombrix::SourceReaderOptions options;
    options.isForeign = [](std::string_view line) { return line.ends_with(" MaterialDescriptor"); };
    options.mayLackBitmaps = true;
    std::string told;
    for (const ombrix::SourceProblem& problem : ombrix::readSource(text, options).problems)
        if (problem.weight == ombrix::SourceProblem::Weight::Error)
            told += ombrix::problemText(problem) + "\n";
    return told;
}

inline void expectUnderstood(const std::string& text)
{
    const std::string told = notUnderstood(text);
    EXPECT_EQ(told, "") << "of the GPU text\n" << text.substr(0, 4000);
}

} // namespace support
