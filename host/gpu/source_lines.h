// One line of GPU source text: its first word and its numbers.
#pragma once

#include "host/gpu/source_vocabulary.h"

#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

struct SourceLineText {
    const SourceLineForm* form = nullptr; // null for a line that the vocabulary lacks
    std::string fault;                    // empty for a line that is as it should be
    bool hasOddNumber = false;            // one that is not finite
};

// Appends the numbers that the form asks for to the others; with a fault the missing ones are 0.
SourceLineText parseSourceLine(std::string_view line, std::vector<double>& numbers);

// A piece of a text as a message may show it: short, in quotes, on one line.
std::string quotedSource(std::string_view text);

} // namespace ombrix
