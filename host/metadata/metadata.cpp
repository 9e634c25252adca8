#include "host/metadata/metadata.h"

#include <algorithm>
#include <charconv>

namespace ombrix {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEndRollout = "<EndRollout>";
constexpr std::string_view kTagStart = "[gpuSupport=(";
constexpr std::string_view kSupportValues[] = {"full", "partial", "none", "bake"};

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The place of the parenthesis that closes the value which starts at position, or the text's length.
std::size_t endOfValue(std::string_view text, std::size_t position)
{
    for (int depth = 1; position < text.size(); ++position) {
        if (text[position] == '(') ++depth;
        if (text[position] == ')' && --depth == 0) break;
    }
    return position;
}

// Calls visit with each part between separators that lie outside parentheses.
template <class Visit>
void forEachPart(std::string_view text, char separator, const Visit& visit)
{
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || (text[i] == separator && depth == 0)) {
            visit(trimmed(text.substr(start, i - start)));
            start = i + 1;
        } else if (text[i] == '(') {
            ++depth;
        } else if (text[i] == ')' && depth > 0) {
            --depth;
        }
    }
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text)
{
    text = trimmed(text);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

bool readEnum(std::string_view value, std::vector<EnumLabel>& labels)
{
    bool readable = true;
    std::vector<EnumLabel> found;
    forEachPart(value, ';', [&](std::string_view pair) {
        if (pair.empty()) return; // after a trailing separator
        const std::size_t colon = pair.find(':');
        const auto number = wholeNumber<int>(pair.substr(0, std::min(colon, pair.size())));
        if (colon == std::string_view::npos || !number) {
            readable = false;
            return;
        }
        found.push_back({*number, std::string(trimmed(pair.substr(colon + 1)))});
    });
    if (readable) labels = std::move(found);
    return readable;
}

bool readEnable(std::string_view value, std::vector<std::vector<EnableCondition>>& alternatives)
{
    bool readable = true;
    std::vector<std::vector<EnableCondition>> found;
    forEachPart(value, ';', [&](std::string_view alternative) {
        if (alternative.empty()) return;
        std::vector<EnableCondition> conditions;
        forEachPart(alternative, ',', [&](std::string_view condition) {
            const std::size_t equals = condition.find('=');
            if (!condition.starts_with("::") || equals == std::string_view::npos) {
                readable = false;
                return;
            }
            conditions.push_back({std::string(trimmed(condition.substr(2, equals - 2))),
                                  std::string(trimmed(condition.substr(equals + 1)))});
        });
        found.push_back(std::move(conditions));
    });
    if (readable) alternatives = std::move(found);
    return readable;
}

bool readNumber(std::string_view value, std::optional<double>& number)
{
    const auto read = wholeNumber<double>(value);
    if (read) number = read;
    return read.has_value();
}

// False when the key is unknown or its value cannot be read.
bool readItem(std::string_view key, std::string_view value, ParsedMetadata& parsed)
{
    if (key == "enum") return readEnum(value, parsed.enumeration);
    if (key == "enable") return readEnable(value, parsed.enable);
    if (key == "minValue") return readNumber(value, parsed.minValue);
    if (key == "maxValue") return readNumber(value, parsed.maxValue);
    if (key == "startRollout") {
        if (value == kEndRollout)
            parsed.endsRollout = true;
        else
            parsed.startRollout = value;
        return true;
    }
    if (key == "displayName") return parsed.displayName = value, true;
    if (key == "quantityType") return parsed.quantityType = value, true;
    if (key == "units") return parsed.units = value, true;
    if (key == "gpuSupport") return parsed.gpuSupport = value, true;
    return false;
}

bool sameIgnoringCase(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

} // namespace

const std::string* ParsedMetadata::labelOf(int value) const
{
    for (const EnumLabel& entry : enumeration)
        if (entry.value == value) return &entry.label;
    return nullptr;
}

std::optional<int> ParsedMetadata::valueOf(std::string_view label) const
{
    for (const EnumLabel& entry : enumeration)
        if (sameIgnoringCase(trimmed(entry.label), trimmed(label))) return entry.value;
    return std::nullopt;
}

ParsedMetadata parseMetadata(std::string_view text)
{
    ParsedMetadata parsed;
    std::size_t position = 0;
    while (true) {
        const std::size_t opening = text.find("=(", position);
        if (opening == std::string_view::npos) return parsed;
        std::string_view key = text.substr(position, opening - position);
        if (const std::size_t joint = key.find_last_of(",; \t"); joint != std::string_view::npos)
            key.remove_prefix(joint + 1);
        const std::size_t end = endOfValue(text, opening + 2);
        const std::string_view value = trimmed(text.substr(opening + 2, end - opening - 2));
        if (!readItem(key, value, parsed)) parsed.other.emplace_back(key, value);
        if (end == text.size()) return parsed;
        position = end + 1;
    }
}

std::optional<std::string> gpuSupportOfDescription(std::string_view description)
{
    const std::size_t tag = description.rfind(kTagStart);
    if (tag == std::string_view::npos) return std::nullopt;
    const std::string_view rest = description.substr(tag + kTagStart.size());
    const std::string_view value = trimmed(rest.substr(0, rest.find(')')));
    if (rest.find(')') == std::string_view::npos && !value.empty())
        for (std::string_view known : kSupportValues)
            if (known.starts_with(value)) return std::string(known);
    if (value.empty()) return std::nullopt;
    return std::string(value);
}

} // namespace ombrix
