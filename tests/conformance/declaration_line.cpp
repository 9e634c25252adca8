#include "expected_kinds.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace conformance {
namespace {

using namespace OUtils;
using ombrix::ParameterDeclaration;

std::string quoted(const std::string& text)
{
    return nlohmann::json(text).dump();
}

// The shortest digits that read back as the same bits; a lone number keeps its point.
std::string digitsOf(float number)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string pointedDigitsOf(float number)
{
    const std::string digits = digitsOf(number);
    return std::isfinite(number) && digits.find_first_of(".e") == digits.npos ? digits + ".0" : digits;
}

std::string listOf(std::initializer_list<float> numbers)
{
    std::string text = "[";
    for (float number : numbers)
        text += (text.size() > 1 ? ", " : "") + digitsOf(number);
    return text + "]";
}

std::string textOf(const TraceTransform& t)
{
    const TraceTransform identity;
    bool same = t.offset.x == 0.0 && t.offset.y == 0.0 && t.offset.z == 0.0;
    std::string columns;
    for (int i = 0; i < 3; ++i) {
        const Vector &c = t.matrix.columns[i], &e = identity.matrix.columns[i];
        same = same && c.x == e.x && c.y == e.y && c.z == e.z;
        columns += listOf({c.x, c.y, c.z}) + ", ";
    }
    if (same) return "\"identity\"";
    return "[" + columns +
           listOf({static_cast<float>(t.offset.x), static_cast<float>(t.offset.y),
                   static_cast<float>(t.offset.z)}) +
           "]";
}

struct ValueText {
    std::string operator()(std::monostate) const { return ""; }
    std::string operator()(bool flag) const { return flag ? "true" : "false"; }
    std::string operator()(int number) const { return std::to_string(number); }
    std::string operator()(float number) const { return pointedDigitsOf(number); }
    std::string operator()(const Color& c) const { return listOf({c.r, c.g, c.b}); }
    std::string operator()(const AColor& c) const { return listOf({c.r, c.g, c.b, c.a}); }
    std::string operator()(const Vector& v) const { return listOf({v.x, v.y, v.z}); }
    std::string operator()(const TraceTransform& t) const { return textOf(t); }
    std::string operator()(const std::string& text) const { return quoted(text); }
    std::string operator()(const ombrix::PluginReference& reference) const
    {
        return reference.plugin ? "a plugin" : "";
    }
};

std::string interfaceText(InterfaceId id)
{
    for (const InterfaceName& known : kInterfaceNames)
        if (id == known.id) return quoted(known.name);
    return std::to_string(id);
}

} // namespace

std::string lineOf(const ParameterDeclaration& declaration)
{
    std::string line =
        "{" + quoted(ombrix::declarationName(declaration.kind)) + ": " + quoted(declaration.name);
    const auto add = [&](const char* key, const std::string& value) {
        line += ", " + quoted(key) + ": " + value;
    };
    if (declaration.requiredInterface) add("requires", interfaceText(declaration.requiredInterface));
    const std::string value = std::visit(ValueText{}, declaration.defaultValue);
    if (!value.empty()) add("default", value);
    if (declaration.transformFlag) add("flag", std::to_string(declaration.transformFlag));
    if (declaration.count != -1) add("count", std::to_string(declaration.count));
    if (declaration.description) add("description", quoted(*declaration.description));
    if (declaration.metadata) add("metadata", quoted(*declaration.metadata));
    return line + "}";
}

} // namespace conformance
