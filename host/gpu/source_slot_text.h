// What one slot of GPU source text says, in words for people.
#pragma once

#include "host/gpu/source_tree.h"

#include <string>
#include <vector>

namespace ombrix {

struct SlotWords {
    std::string headline;             // what the slot is, and the notes on it; empty for a bare repetition
    std::vector<std::string> details; // each a line below it
};

SlotWords wordsOf(const SourceReading& reading, const SourceSlot& slot, const SourceTreeOptions& options);

} // namespace ombrix
