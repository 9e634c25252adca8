#include "host/gpu/source_lines.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace ombrix {
namespace {

constexpr std::size_t kLongestQuote = 60;

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

void skipBlanks(std::string_view& rest)
{
    while (!rest.empty() && isBlank(rest.front()))
        rest.remove_prefix(1);
}

// The first word, which the line loses.
std::string_view takeWord(std::string_view& rest)
{
    std::size_t length = 0;
    while (length < rest.size() && !isBlank(rest[length]))
        ++length;
    const std::string_view word = rest.substr(0, length);
    rest.remove_prefix(length);
    return word;
}

bool beginsNumber(std::string_view line)
{
    if (!line.empty() && line.front() == '-') line.remove_prefix(1);
    return !line.empty() && ((line.front() >= '0' && line.front() <= '9') || line.front() == '.');
}

// What is left has to begin with a number of this form, after which a blank, a comma or the end stands.
bool takeNumber(std::string_view& rest, SourceNumbers form, double& value)
{
    const char* end = rest.data() + rest.size();
    std::from_chars_result read{};
    if (form == SourceNumbers::Whole) {
        std::int32_t whole = 0;
        read = std::from_chars(rest.data(), end, whole);
        value = whole;
    } else {
        read = std::from_chars(rest.data(), end, value);
        // Numbers that are too small for a double are as good as 0; too large ones are no floats.
        if (read.ec == std::errc::result_out_of_range) return false;
    }
    if (read.ec != std::errc{}) return false;
    if (read.ptr != end && !isBlank(*read.ptr) && *read.ptr != ',') return false;
    rest.remove_prefix(static_cast<std::size_t>(read.ptr - rest.data()));
    return true;
}

std::string countOf(const SourceLineForm& form)
{
    if (form.numbers == SourceNumbers::Whole) return "one whole number";
    return form.count == 1 ? "one number" : std::to_string(form.count) + " numbers";
}

std::string nameOf(const SourceLineForm& form)
{
    return form.keyword.empty() ? "a line without a word" : std::string(form.keyword);
}

// Fills the numbers of the form; false where they are not what it asks for.
bool takeNumbers(std::string_view rest, const SourceLineForm& form, double* values)
{
    const bool byCommas = form.count == kOperandCount;
    for (int i = 0; i < form.count; ++i) {
        skipBlanks(rest);
        if (i > 0 && byCommas) {
            if (rest.empty() || rest.front() != ',') return false;
            rest.remove_prefix(1);
            skipBlanks(rest);
        }
        if (!takeNumber(rest, form.numbers, values[i])) return false;
    }
    skipBlanks(rest);
    return rest.empty();
}

} // namespace

SourceLineText parseSourceLine(std::string_view line, std::vector<double>& numbers)
{
    SourceLineText result;
    std::string_view rest = line;
    if (beginsNumber(line))
        result.form = &bareTransformForm();
    else
        result.form = findSourceLine(takeWord(rest));
    if (!result.form) {
        result.fault = "no such line: " + quotedSource(line);
        return result;
    }
    const std::size_t first = numbers.size();
    numbers.resize(first + static_cast<std::size_t>(result.form->count));
    double* values = numbers.data() + first;
    if (!takeNumbers(rest, *result.form, values)) {
        result.fault = result.form->count == 0 ? nameOf(*result.form) + " stands alone on its line"
                                               : nameOf(*result.form) + " takes " + countOf(*result.form);
        result.fault += ", not " + quotedSource(line);
    }
    for (int i = 0; i < result.form->count; ++i)
        result.hasOddNumber = result.hasOddNumber || !std::isfinite(values[i]);
    return result;
}

std::string quotedSource(std::string_view text)
{
    std::string shown = "\"";
    for (const char c : text.substr(0, kLongestQuote))
        shown += static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7F ? '?' : c;
    return shown + (text.size() > kLongestQuote ? "...\"" : "\"");
}

} // namespace ombrix
