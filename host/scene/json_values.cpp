#include "host/scene/json_values.h"

#include "host/scene/key_table.h"
#include "host/scene/transform_parts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

namespace ombrix {

using nlohmann::json;

std::string pointerStep(std::string_view name)
{
    std::string step = "/";
    for (const char c : name) {
        if (c == '~')
            step += "~0";
        else if (c == '/')
            step += "~1";
        else
            step += c;
    }
    return step;
}

std::string suggestName(std::string_view wanted, const std::vector<std::string>& candidates)
{
    const std::string nearest = nearestName(wanted, candidates);
    return nearest.empty() ? std::string() : fmt::format("; did you mean \"{}\"?", nearest);
}

std::string suggestOrList(std::string_view wanted, const std::vector<std::string>& candidates,
                          std::string_view whatTheyAre)
{
    constexpr std::size_t kShownNames = 24;
    if (candidates.empty()) return {};
    std::string help = suggestName(wanted, candidates);
    if (help.empty() && candidates.size() <= kShownNames)
        help = fmt::format("; {} \"{}\"", whatTheyAre, fmt::join(candidates, "\", \""));
    return help;
}

std::string adviceForNumberWord(std::string_view text)
{
    std::string plain(text);
    for (char& c : plain)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const bool negative = plain.starts_with('-');
    if (negative || plain.starts_with('+')) plain.erase(0, 1);
    const char* word = nullptr;
    if (plain == "nan")
        word = "nan";
    else if (plain == "inf" || plain == "infinity")
        word = negative ? "-inf" : "inf";
    return word ? fmt::format("; write \"{}\" for that number", word) : std::string();
}

std::string describeJson(const json& value)
{
    constexpr std::size_t kShownText = 60;
    switch (value.type()) {
    case json::value_t::null:
        return "null";
    case json::value_t::boolean:
        return value.get<bool>() ? "true" : "false";
    case json::value_t::string: {
        const std::string& text = value.get_ref<const std::string&>();
        return text.size() <= kShownText ? fmt::format("the text \"{}\"", text) : "a text";
    }
    case json::value_t::array:
        return fmt::format("a list of {} element{}", value.size(), value.size() == 1 ? "" : "s");
    case json::value_t::object:
        return value.empty() ? "an empty object" : "an object";
    default:
        return fmt::format("the number {}", value.dump());
    }
}

bool isNumberWord(std::string_view text)
{
    return text == "nan" || text == "inf" || text == "-inf";
}

JsonPlace JsonPlace::at(std::string_view memberName) const&
{
    const auto member = value->find(memberName);
    return JsonPlace(*member, *this, member.key(), 0);
}

JsonPlace JsonPlace::at(std::size_t memberIndex) const&
{
    return JsonPlace((*value)[memberIndex], *this, {}, memberIndex);
}

std::string JsonPlace::path() const
{
    if (!parent) return std::string(root);
    const bool inList = parent->value->is_array();
    return parent->path() + (inList ? pointerStep(std::to_string(index)) : pointerStep(name));
}

void JsonPlace::expected(std::string_view wanted) const
{
    error(fmt::format("takes {}, not {}", wanted, describeJson(*value)));
}

void readVersion(const JsonPlace& place, int version)
{
    if (place->is_number() && place->get<double>() == version) return;
    place.error(fmt::format("takes the format's version, {}, not {}", version, describeJson(*place)));
}

bool checkList(const JsonPlace& place, std::string_view what)
{
    if (!place->is_array()) place.expected(fmt::format("{}, a list", what));
    return place->is_array();
}

std::optional<bool> readBool(const JsonPlace& place)
{
    if (!place->is_boolean()) {
        place.expected("true or false");
        return {};
    }
    return place->get<bool>();
}

std::optional<int> readIntBetween(const JsonPlace& place, int lowest, int highest)
{
    // 3.0 is an integer to JSON; 3.5 is none.
    const bool whole = place->is_number_integer() ||
                       (place->is_number_float() && std::trunc(place->get<double>()) == place->get<double>());
    if (!whole) {
        place.expected("an integer");
        return {};
    }
    const bool tooLarge = place->is_number_unsigned() && place->get<std::uint64_t>() > 0x7FFFFFFFu;
    const double number = place->get<double>(); // exact within the range of an int
    if (tooLarge || number < lowest || number > highest) {
        place.error(fmt::format("takes an integer from {} to {}, not {}", lowest, highest, place->dump()));
        return {};
    }
    return static_cast<int>(number);
}

std::optional<int> readInt(const JsonPlace& place)
{
    return readIntBetween(place, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

std::optional<double> readDouble(const JsonPlace& place)
{
    if (place->is_number()) return place->get<double>();
    if (place->is_string()) {
        const std::string& word = place->get_ref<const std::string&>();
        if (word == "nan") return std::numeric_limits<double>::quiet_NaN();
        if (word == "inf") return std::numeric_limits<double>::infinity();
        if (word == "-inf") return -std::numeric_limits<double>::infinity();
    }
    const std::string advice =
        place->is_string() ? adviceForNumberWord(place->get_ref<const std::string&>()) : std::string();
    place.error(fmt::format("takes a number (or \"nan\", \"inf\", \"-inf\"), not {}{}", describeJson(*place),
                            advice));
    return {};
}

std::optional<float> readFloat(const JsonPlace& place)
{
    const std::optional<double> number = readDouble(place);
    if (!number) return {};
    const auto narrowed = static_cast<float>(*number);
    if (std::isinf(narrowed) && !std::isinf(*number)) {
        place.error(fmt::format("{} is beyond the largest float, 3.4028235e38; write \"inf\" or \"-inf\" for "
                                "an infinity",
                                place->dump()));
        return {};
    }
    return narrowed;
}

namespace {

// Whether a value is a text that stands, or is meant to stand, for a number that JSON lacks.
bool isNumberText(const json& value)
{
    return value.is_string() && !adviceForNumberWord(value.get_ref<const std::string&>()).empty();
}

} // namespace

std::optional<double> readFiniteDouble(const JsonPlace& place)
{
    if (!place->is_number()) {
        place.expected(isNumberText(*place) ? "a finite number" : "a number");
        return {};
    }
    return place->get<double>();
}

std::optional<float> readFiniteFloat(const JsonPlace& place)
{
    if (!place->is_number()) {
        place.expected(isNumberText(*place) ? "a finite number" : "a number");
        return {};
    }
    return readFloat(place);
}

std::optional<std::string> readText(const JsonPlace& place)
{
    if (!place->is_string()) {
        place.expected("a text");
        return {};
    }
    std::string text = place->get<std::string>();
    if (text.find('\0') != std::string::npos) {
        place.error("a text cannot hold the character of code 0; leave it out");
        return {};
    }
    return text;
}

namespace {

std::optional<std::vector<float>> readElements(const JsonPlace& place)
{
    std::vector<float> numbers;
    bool good = true;
    for (std::size_t i = 0; i < place->size(); ++i) {
        const std::optional<float> number = readFloat(place.at(i));
        good = good && number.has_value();
        numbers.push_back(number.value_or(0.0f));
    }
    if (!good) return {};
    return numbers;
}

} // namespace

std::optional<std::vector<float>> readFloats(const JsonPlace& place, std::size_t count, std::string_view form)
{
    if (!place->is_array() || place->size() != count) {
        place.expected(fmt::format("{} numbers, {}", count, form));
        return {};
    }
    return readElements(place);
}

std::optional<OUtils::Vector> readVector(const JsonPlace& place)
{
    const auto numbers = readFloats(place, 3, "[x, y, z]");
    if (!numbers) return {};
    return OUtils::Vector{(*numbers)[0], (*numbers)[1], (*numbers)[2]};
}

std::optional<OUtils::VectorD> readVectorD(const JsonPlace& place)
{
    if (!place->is_array() || place->size() != 3) {
        place.expected("3 numbers, [x, y, z]");
        return {};
    }
    const std::optional<double> x = readDouble(place.at(0)), y = readDouble(place.at(1)),
                                z = readDouble(place.at(2));
    if (!x || !y || !z) return {};
    return OUtils::VectorD{*x, *y, *z};
}

std::optional<std::variant<OUtils::Color, OUtils::AColor>> readColor(const JsonPlace& place)
{
    if (place->is_number() || (place->is_string() && isNumberWord(place->get_ref<const std::string&>()))) {
        const std::optional<float> grey = readFloat(place);
        if (!grey) return {};
        return OUtils::Color{*grey, *grey, *grey};
    }
    if (!place->is_array() || (place->size() != 3 && place->size() != 4)) {
        place.expected("a color, [r, g, b] or [r, g, b, a], or one number for a grey");
        return {};
    }
    const auto numbers = readElements(place);
    if (!numbers) return {};
    const std::vector<float>& n = *numbers;
    if (n.size() == 3) return OUtils::Color{n[0], n[1], n[2]};
    return OUtils::AColor{n[0], n[1], n[2], n[3]};
}

std::optional<OUtils::AColor> readAColor(const JsonPlace& place)
{
    const auto color = readColor(place);
    if (!color) return {};
    if (const auto* withAlpha = std::get_if<OUtils::AColor>(&*color)) return *withAlpha;
    const auto& opaque = std::get<OUtils::Color>(*color);
    return OUtils::AColor{opaque.r, opaque.g, opaque.b, 1.0f};
}

std::optional<OUtils::Matrix> readColumns(const JsonPlace& place)
{
    if (!place->is_array() || place->size() != 3) {
        place.expected("three columns, [[x, y, z], [x, y, z], [x, y, z]]");
        return {};
    }
    OUtils::Matrix matrix;
    bool good = true;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::optional<OUtils::Vector> column = readVector(place.at(i));
        good = good && column.has_value();
        if (column) matrix.columns[i] = *column;
    }
    if (!good) return {};
    return matrix;
}

namespace {

constexpr const char* kTransformForms =
    "a transform, {\"columns\": [[..], [..], [..]], \"offset\": [x, y, z]} or "
    "{\"translate\": [x, y, z], \"rotate\": [x, y, z in degrees], \"scale\": [x, y, z]}";

struct TransformKeys {
    std::optional<OUtils::Matrix> columns;
    std::optional<OUtils::VectorD> offset, translate, rotate, scale;
};

constexpr KeyReader<TransformKeys> kTransformKeys[] = {
    {"columns", into<&TransformKeys::columns, readColumns>},
    {"offset", into<&TransformKeys::offset, readVectorD>},
    {"translate", into<&TransformKeys::translate, readVectorD>},
    {"rotate", into<&TransformKeys::rotate, readVectorD>},
    {"scale", into<&TransformKeys::scale, readVectorD>},
};

} // namespace

std::optional<OUtils::TraceTransform> readTransform(const JsonPlace& place)
{
    if (!place->is_object() || place->empty()) {
        place.expected(kTransformForms);
        return {};
    }
    TransformKeys keys;
    if (!readKeys(place, "a transform", kTransformKeys, keys)) return {};
    const bool byColumns = keys.columns || keys.offset;
    if (byColumns && (keys.translate || keys.rotate || keys.scale)) {
        place.error("a transform has \"columns\" and \"offset\", or \"translate\", \"rotate\" and \"scale\", "
                    "not some of both");
        return {};
    }
    if (byColumns)
        return OUtils::TraceTransform{keys.columns.value_or(OUtils::Matrix{}),
                                      keys.offset.value_or(OUtils::VectorD{})};
    return composeTransform(keys.translate.value_or(OUtils::VectorD{}),
                            keys.rotate.value_or(OUtils::VectorD{}),
                            keys.scale.value_or(OUtils::VectorD{1.0, 1.0, 1.0}));
}

} // namespace ombrix
