// What the library is expected to hold: one expected file a plugin kind, beside the kind's test. README.md
// tells the format.
#pragma once

#include "host/params/value.h"

#include <ombrix/interface_ids.h>

#include <filesystem>
#include <string>
#include <vector>

namespace conformance {

struct ExpectedKind {
    std::filesystem::path file; // below tests/
    std::string name;
    OUtils::PluginId id = 0;
    std::string description;
    // Both without EXT_OMBRIX_PLUGIN, which every descriptor declares and every instance offers.
    std::vector<OUtils::InterfaceId> declared;
    std::vector<OUtils::InterfaceId> offered;
    // The interface whose id and name all interfaces of an instance report; 0: each reports its own.
    OUtils::InterfaceId allReportAs = 0;
    std::vector<ombrix::ParameterDeclaration> parameters; // in their order, the inherited ones first
};

// The folder tests/ of this checkout.
std::filesystem::path testsFolder();

// The kind that a file tells, given by its path below tests/. Throws std::runtime_error that names the
// file, the entry and what to write instead.
ExpectedKind readExpectedKind(const std::filesystem::path& file);

// The kinds of all expected files below tests/textures_private, in the order of their paths; read once.
// Throws like readExpectedKind.
const std::vector<ExpectedKind>& expectedKinds();

// A declaration as a line of an expected file, with as many digits as tell every float from its neighbours.
std::string lineOf(const ombrix::ParameterDeclaration& declaration);

} // namespace conformance
