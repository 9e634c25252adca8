// Draws GPU source text as a tree: operators above what they take, constants short.
#pragma once

#include "host/gpu/source_reader.h"

#include <functional>
#include <string>

namespace ombrix {

struct SourceTreeOptions {
    // Tells more about a bitmap of the OCLData, as "\"clouds\" 64 x 64"; empty where there is no more.
    std::function<std::string(int index)> describeBitmap;
};

// One line a slot, with the line of the source in front; operators show their number in brackets. A slot
// that is repeated elsewhere is named #1, #2 and so on. Where several slots are left at the end, each
// begins a tree, in the order of the text. Takes time and room in proportion to the source: from a depth of
// 40 on, lines go no further to the right and tell their depth instead.
std::string drawSourceTree(const SourceReading& reading, const SourceTreeOptions& options = {});

} // namespace ombrix
