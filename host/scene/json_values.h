// Reads plain values out of JSON, with the place in the file for every complaint.
#pragma once

#include "host/scene/diagnostics.h"

#include <ombrix/types.h>

#include <nlohmann/json.hpp>

#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ombrix {

// "/" and the name, escaped as a JSON pointer asks.
std::string pointerStep(std::string_view name);
// `; did you mean "nearest"?`, or "" when no candidate is near.
std::string suggestName(std::string_view wanted, const std::vector<std::string>& candidates);
// The same, or "; WHAT THEY ARE "a", "b"" where none is near and there are few.
std::string suggestOrList(std::string_view wanted, const std::vector<std::string>& candidates,
                          std::string_view whatTheyAre);
// `; write "nan" for that number` for what people write for a number that JSON lacks ("NaN", "-Infinity"),
// or "".
std::string adviceForNumberWord(std::string_view text);
// What a value is, for complaints: `the text "half"`, "a list of 2 elements", "true", "null".
std::string describeJson(const nlohmann::json& value);
// Whether a text stands for a number that JSON lacks: "nan", "inf" or "-inf".
bool isNumberWord(std::string_view text);

// A value and where it stands. A member's place refers to that of its holder, which must outlive it.
class JsonPlace {
public:
    JsonPlace(const nlohmann::json& whole, std::string_view pointer, Diagnostics& reports)
        : value(&whole), root(pointer), diagnostics(&reports)
    {
    }

    const nlohmann::json& operator*() const { return *value; }
    const nlohmann::json* operator->() const { return value; }

    // The member must exist.
    JsonPlace at(std::string_view memberName) const&;
    JsonPlace at(std::size_t memberIndex) const&;
    JsonPlace at(std::string_view memberName) const&& = delete;
    JsonPlace at(std::size_t memberIndex) const&& = delete;
    bool has(std::string_view memberName) const { return value->is_object() && value->contains(memberName); }

    std::string path() const;
    void error(std::string_view text) const { diagnostics->error(path(), text); }
    void warning(std::string_view text) const { diagnostics->warning(path(), text); }
    // "takes WANTED, not WHAT STANDS THERE".
    void expected(std::string_view wanted) const;
    Diagnostics& reports() const { return *diagnostics; }

private:
    JsonPlace(const nlohmann::json& member, const JsonPlace& holder, std::string_view memberName,
              std::size_t memberIndex)
        : value(&member), parent(&holder), name(memberName), index(memberIndex),
          diagnostics(holder.diagnostics)
    {
    }

    const nlohmann::json* value;
    const JsonPlace* parent = nullptr;
    std::string_view root; // of the outermost place
    std::string_view name; // within an object
    std::size_t index = 0; // within a list
    Diagnostics* diagnostics;
};

// Every reader below reports a value of another kind or beyond its range, and gives nothing then.

// The version of a file's format; any other number is reported.
void readVersion(const JsonPlace& place, int version);
bool checkList(const JsonPlace& place, std::string_view what);

std::optional<bool> readBool(const JsonPlace& place);
std::optional<int> readInt(const JsonPlace& place);
std::optional<int> readIntBetween(const JsonPlace& place, int lowest, int highest);
// A number, "nan", "inf" or "-inf".
std::optional<double> readDouble(const JsonPlace& place);
std::optional<float> readFloat(const JsonPlace& place);
std::optional<double> readFiniteDouble(const JsonPlace& place);
std::optional<float> readFiniteFloat(const JsonPlace& place);
// Text without a zero character.
std::optional<std::string> readText(const JsonPlace& place);
// A list of exactly count numbers. form shows how to write them: "[x, y, z]".
std::optional<std::vector<float>> readFloats(const JsonPlace& place, std::size_t count,
                                             std::string_view form);
std::optional<OUtils::Vector> readVector(const JsonPlace& place);
std::optional<OUtils::VectorD> readVectorD(const JsonPlace& place);
// Three or four numbers, or one for a grey.
std::optional<std::variant<OUtils::Color, OUtils::AColor>> readColor(const JsonPlace& place);
// A colour with alpha, 1 where none is given.
std::optional<OUtils::AColor> readAColor(const JsonPlace& place);
std::optional<OUtils::Matrix> readColumns(const JsonPlace& place);
// {"columns", "offset"}, or {"translate", "rotate", "scale"}: scaled, then turned about x, y and z in this
// order, then moved. What is left out does nothing; at least one key stands.
std::optional<OUtils::TraceTransform> readTransform(const JsonPlace& place);

} // namespace ombrix
