// What the metadata of a parameter and the tag of a description say.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrix {

struct EnumLabel {
    int value = 0;
    std::string label;
};

// The parameter of the same plugin has this value, given as text.
struct EnableCondition {
    std::string parameter; // without the leading "::"
    std::string value;
};

// The items of a metadata text. What the text does not name is absent or empty.
struct ParsedMetadata {
    std::vector<EnumLabel> enumeration; // in the text's order
    std::optional<std::string> displayName;
    std::optional<std::string> startRollout; // the name of the group that this parameter opens
    bool endsRollout = false;                // this parameter closes its group
    // The alternatives, each the conditions that hold together: the parameter is active when any
    // alternative holds, and always when there is none.
    std::vector<std::vector<EnableCondition>> enable;
    std::optional<double> minValue, maxValue; // limits of the user interface alone
    std::optional<std::string> quantityType;
    std::optional<std::string> units;
    std::optional<std::string> gpuSupport;
    // Items of other keys, and items of known keys whose value cannot be read, as they stand.
    std::vector<std::pair<std::string, std::string>> other;

    // The label of an enumerated value, or null.
    const std::string* labelOf(int value) const;
    // The value of a label, which is compared without regard to case and surrounding blanks; nullopt when
    // no label matches.
    std::optional<int> valueOf(std::string_view label) const;
};

// Reads key=(value) items joined by commas or semicolons. A value runs to the parenthesis that closes it,
// or to the end of the text. Text that is no item is passed over. Never fails.
ParsedMetadata parseMetadata(std::string_view text);

// What the "[gpuSupport=(...)]" tag at the end of a plugin's description says; nullopt without a tag. A
// tag that is cut gives the value that begins so ("full", "partial", "none" or "bake").
std::optional<std::string> gpuSupportOfDescription(std::string_view description);

} // namespace ombrix
