// The parameter declarations of every plugin, as the host receives them.

#include "loaded_library.h"
#include "plugin_table.h"

#include "host/params/host_parameters.h"

#include <cstdio>
#include <map>

namespace {

using namespace conformance;
using namespace OUtils;
using ombrix::ParameterDeclaration;

// Keeps the declarations that a registration hands over.
struct DeclarationHost final : AcceptingHost {
    int addParameters(PluginDesc* desc, OmbrixParameterListDesc* parameters) override
    {
        received[desc->getName()] = parameters;
        return 1;
    }
    std::map<std::string, OmbrixParameterListDesc*> received;
};

std::string numbers(std::initializer_list<float> values)
{
    std::string text;
    for (float value : values) {
        char number[32];
        std::snprintf(number, sizeof number, " %.9g", static_cast<double>(value));
        text += number;
    }
    return text;
}

// The type and the value, so that 1 and 1.0 differ.
std::string textOf(const ombrix::Value& value)
{
    struct Writer {
        std::string operator()(std::monostate) const { return "none"; }
        std::string operator()(bool flag) const { return flag ? "true" : "false"; }
        std::string operator()(int number) const { return "int " + std::to_string(number); }
        std::string operator()(float number) const { return "float" + numbers({number}); }
        std::string operator()(const Color& c) const { return "color" + numbers({c.r, c.g, c.b}); }
        std::string operator()(const AColor& c) const { return "acolor" + numbers({c.r, c.g, c.b, c.a}); }
        std::string operator()(const Vector& v) const { return "vector" + numbers({v.x, v.y, v.z}); }
        std::string operator()(const TraceTransform& t) const
        {
            std::string text = "transform";
            for (const Vector& column : t.matrix.columns)
                text += numbers({column.x, column.y, column.z});
            return text + numbers({static_cast<float>(t.offset.x), static_cast<float>(t.offset.y),
                                   static_cast<float>(t.offset.z)});
        }
        std::string operator()(const std::string& s) const { return "\"" + s + "\""; }
        std::string operator()(const ombrix::PluginReference& reference) const
        {
            return reference.plugin ? "plugin" : "none";
        }
    };
    return std::visit(Writer{}, value);
}

std::string textOf(const std::optional<std::string>& text)
{
    return text ? "\"" + *text + "\"" : "null";
}

std::string textOf(const char* text)
{
    return textOf(text ? std::optional<std::string>(text) : std::nullopt);
}

std::string textOf(const DeclarationRow& row)
{
    return std::string(ombrix::declarationName(row.kind)) + " " + row.name + ", " + textOf(row.defaultValue) +
           ", requires " + std::to_string(row.requiredInterface) + ", flag " +
           std::to_string(row.transformFlag) + ", count " + std::to_string(row.count) + ", " +
           textOf(row.description) + ", " + textOf(row.metadata);
}

std::string textOf(const ParameterDeclaration& declared)
{
    return std::string(ombrix::declarationName(declared.kind)) + " " + declared.name + ", " +
           textOf(declared.defaultValue) + ", requires " + std::to_string(declared.requiredInterface) +
           ", flag " + std::to_string(declared.transformFlag) + ", count " + std::to_string(declared.count) +
           ", " + textOf(declared.description) + ", " + textOf(declared.metadata);
}

TEST(Declarations, AreThoseOfTheTableInItsOrder)
{
    LoadedLibrary library;
    DeclarationHost host;
    for (PluginDesc* desc : support::descriptorsOf(library.desc()))
        desc->registerPlugin(&host);

    for (const PluginRow& row : pluginTable()) {
        OmbrixParameterListDesc* parameters = host.received[row.name];
        ASSERT_NE(parameters, nullptr) << row.name;
        const auto& declared = parameters->declarations().all;
        const DeclarationRows expected = row.declarations();
        EXPECT_EQ(declared.size(), expected.size()) << row.name;
        for (std::size_t i = 0; i < std::min(declared.size(), expected.size()); ++i)
            EXPECT_EQ(textOf(declared[i]), textOf(expected[i])) << row.name << ", parameter " << i;
    }
}

} // namespace
