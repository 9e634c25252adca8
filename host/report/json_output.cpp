#include "host/report/json_output.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace ombrix {

namespace {

// Whole numbers up to here are written as integers, which every float and double reads back exactly.
constexpr double kLargestWhole = 9007199254740992.0; // 2^53

OutputJson wordOf(double number)
{
    if (std::isnan(number)) return "nan";
    return number > 0.0 ? "inf" : "-inf";
}

bool isPlainInteger(double number)
{
    const bool negativeZero = number == 0.0 && std::signbit(number);
    return std::trunc(number) == number && std::fabs(number) <= kLargestWhole && !negativeZero;
}

std::string dumped(const OutputJson& value)
{
    return value.dump(-1, ' ', false, OutputJson::error_handler_t::replace);
}

// The value on one line, with a blank after each comma and colon; "" when it is longer than room.
bool appendOnOneLine(const OutputJson& value, std::size_t room, std::string& line)
{
    if (!value.is_structured()) {
        line += dumped(value);
        return line.size() <= room;
    }
    line += value.is_array() ? '[' : '{';
    bool first = true;
    for (const auto& [key, member] : value.items()) {
        if (!first) line += ", ";
        first = false;
        if (value.is_object()) line += dumped(key) + ": ";
        if (!appendOnOneLine(member, room, line)) return false;
    }
    line += value.is_array() ? ']' : '}';
    return line.size() <= room;
}

void append(const OutputJson& value, std::size_t indent, std::size_t used, std::size_t columns,
            std::string& text)
{
    std::string line;
    const std::size_t room = columns > used ? columns - used : 0;
    if (!value.is_structured() || value.empty() || appendOnOneLine(value, room, line)) {
        if (line.empty()) appendOnOneLine(value, room, line);
        text += line;
        return;
    }
    const std::size_t inner = indent + 2;
    text += value.is_array() ? "[" : "{";
    bool first = true;
    for (const auto& [key, member] : value.items()) {
        text += first ? "\n" : ",\n";
        first = false;
        text.append(inner, ' ');
        const std::string label = value.is_object() ? dumped(key) + ": " : std::string();
        text += label;
        append(member, inner, inner + label.size() + 1, columns, text);
    }
    text += '\n';
    text.append(indent, ' ');
    text += value.is_array() ? ']' : '}';
}

} // namespace

OutputJson toJson(float number)
{
    if (!std::isfinite(number)) return wordOf(static_cast<double>(number));
    if (isPlainInteger(static_cast<double>(number))) return static_cast<std::int64_t>(number);
    // The double nearest to the shortest decimal of the float prints as that decimal.
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, number);
    double shown = 0.0;
    std::from_chars(digits, written.ptr, shown);
    return shown;
}

OutputJson toJson(double number)
{
    if (!std::isfinite(number)) return wordOf(number);
    if (isPlainInteger(number)) return static_cast<std::int64_t>(number);
    return number;
}

OutputJson toJson(const OUtils::Vector& v)
{
    return OutputJson::array({toJson(v.x), toJson(v.y), toJson(v.z)});
}

OutputJson toJson(const OUtils::VectorD& v)
{
    return OutputJson::array({toJson(v.x), toJson(v.y), toJson(v.z)});
}

OutputJson toJson(const OUtils::Color& c)
{
    return OutputJson::array({toJson(c.r), toJson(c.g), toJson(c.b)});
}

OutputJson toJson(const OUtils::AColor& c)
{
    return OutputJson::array({toJson(c.r), toJson(c.g), toJson(c.b), toJson(c.a)});
}

OutputJson toJson(const OUtils::Matrix& m)
{
    return OutputJson::array({toJson(m.columns[0]), toJson(m.columns[1]), toJson(m.columns[2])});
}

OutputJson toJson(const OUtils::Transform& t)
{
    OutputJson result;
    result["columns"] = toJson(t.matrix);
    result["offset"] = toJson(t.offset);
    return result;
}

OutputJson toJson(const OUtils::TraceTransform& t)
{
    OutputJson result;
    result["columns"] = toJson(t.matrix);
    result["offset"] = toJson(t.offset);
    return result;
}

std::string formatJson(const OutputJson& value, int columns)
{
    std::string text;
    append(value, 0, 0, static_cast<std::size_t>(columns), text);
    text += '\n';
    return text;
}

} // namespace ombrix
