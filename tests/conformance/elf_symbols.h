// The dynamic symbols of a 64-bit ELF file of this machine.
#pragma once

#include <string>
#include <vector>

namespace conformance {

struct DynamicSymbols {
    std::vector<std::string> defined; // that others can find
    std::vector<std::string> imported;
    bool hasUniqueSymbol = false; // one of these keeps a library mapped for ever
};

// Throws std::runtime_error for a file that is not such an ELF file.
DynamicSymbols readDynamicSymbols(const std::string& file);

} // namespace conformance
