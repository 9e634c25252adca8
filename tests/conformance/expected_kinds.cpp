#include "expected_kinds.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace conformance {
namespace {

using namespace OUtils;
using nlohmann::json;
using ombrix::Declaration;
using ombrix::ParameterDeclaration;

constexpr const char* kIdentityText = "identity";

// Reads the entries of one file, and says what is wrong with them.
class Reader {
public:
    explicit Reader(const std::filesystem::path& expectedFile) : file(expectedFile)
    {
        std::ifstream stream(testsFolder() / file);
        if (!stream) fail("cannot be opened");
        try {
            root = json::parse(stream);
        } catch (const json::exception& error) {
            fail(error.what());
        }
    }

    [[noreturn]] void fail(const std::string& message) const
    {
        throw std::runtime_error("tests/" + file.string() + ": " + message);
    }

    void allowKeys(const json& object, std::initializer_list<const char*> keys) const
    {
        for (const auto& [key, value] : object.items())
            if (std::none_of(keys.begin(), keys.end(), [&k = key](const char* known) { return k == known; }))
                fail("unknown key \"" + key + "\"; README.md in tests/conformance lists the keys");
    }

    template <class T>
    T get(const json& object, const char* key) const
    {
        if (!object.contains(key)) fail("has no \"" + std::string(key) + "\" in " + object.dump());
        try {
            return object.at(key).get<T>();
        } catch (const json::exception& error) {
            fail("\"" + std::string(key) + "\": " + error.what());
        }
    }

    InterfaceId interfaceNamed(const std::string& name) const
    {
        for (const InterfaceName& known : kInterfaceNames)
            if (name == known.name) return known.id;
        fail("unknown interface \"" + name + "\"; write one of the EXT names of interface_ids.h");
    }

    std::vector<InterfaceId> interfaces(const char* key) const
    {
        std::vector<InterfaceId> ids;
        for (const std::string& name : get<std::vector<std::string>>(root, key))
            ids.push_back(interfaceNamed(name));
        return ids;
    }

    std::vector<float> numbers(const json& value) const
    {
        if (!value.is_array()) fail("default " + value.dump() + "; write a list of numbers");
        std::vector<float> all;
        for (const json& number : value) {
            if (!number.is_number()) fail("default " + value.dump() + "; write a list of numbers");
            all.push_back(number.get<float>());
        }
        return all;
    }

    // A default of the declaration's own type: 1 and 1.0 are an int and a float.
    ombrix::Value defaultOf(Declaration kind, const json& value) const
    {
        const auto need = [&](bool fits, const char* instead) {
            if (!fits) {
                fail("default " + value.dump() + " of " + ombrix::declarationName(kind) + "; write " +
                     instead);
            }
        };
        switch (kind) {
        case Declaration::Bool:
            need(value.is_boolean(), "true or false");
            return value.get<bool>();
        case Declaration::Int:
        case Declaration::TextureInt:
            need(value.is_number_integer(), "a whole number");
            return value.get<int>();
        case Declaration::Float:
        case Declaration::TextureFloat:
            need(value.is_number_float(), "a number with its point");
            return value.get<float>();
        case Declaration::String:
            need(value.is_string(), "a text");
            return value.get<std::string>();
        case Declaration::Transform:
        case Declaration::TextureTransform:
            need(value == kIdentityText, "\"identity\"");
            return TraceTransform{};
        case Declaration::TextureVector: {
            const std::vector<float> v = numbers(value);
            need(v.size() == 3, "three numbers");
            return Vector{v[0], v[1], v[2]};
        }
        case Declaration::Color:
        case Declaration::Texture: {
            const std::vector<float> c = numbers(value);
            if (c.size() == 3) return Color{c[0], c[1], c[2]};
            need(c.size() == 4 && kind == Declaration::Texture, "three numbers, or four for a texture");
            return AColor{c[0], c[1], c[2], c[3]};
        }
        case Declaration::Plugin:
        case Declaration::OutputTexture:
        case Declaration::OutputTextureFloat:
            need(false, "none");
        }
        return {};
    }

    ParameterDeclaration declaration(const json& entry) const
    {
        if (!entry.is_object()) fail("parameter " + entry.dump() + "; write an object");
        ParameterDeclaration declared;
        const char* operation = nullptr;
        for (int kind = 0; kind <= static_cast<int>(Declaration::OutputTextureFloat); ++kind) {
            const char* name = ombrix::declarationName(static_cast<Declaration>(kind));
            if (!entry.contains(name)) continue;
            if (operation) fail("two operations in " + entry.dump());
            operation = name;
            declared.kind = static_cast<Declaration>(kind);
        }
        if (!operation) fail("no operation, such as addParamFloat, in " + entry.dump());
        allowKeys(entry, {operation, "requires", "default", "flag", "count", "description", "metadata"});
        declared.name = get<std::string>(entry, operation);
        if (entry.contains("requires"))
            declared.requiredInterface = interfaceNamed(get<std::string>(entry, "requires"));
        if (entry.contains("default")) declared.defaultValue = defaultOf(declared.kind, entry["default"]);
        if (entry.contains("flag")) declared.transformFlag = get<int>(entry, "flag");
        if (entry.contains("count")) declared.count = get<int>(entry, "count");
        if (entry.contains("description")) declared.description = get<std::string>(entry, "description");
        if (entry.contains("metadata")) declared.metadata = get<std::string>(entry, "metadata");
        return declared;
    }

    // The inherited declarations, less those that this kind goes without, and the file's own behind them.
    std::vector<ParameterDeclaration> parameters() const
    {
        std::vector<ParameterDeclaration> all;
        if (root.contains("inherits")) all = Reader(get<std::string>(root, "inherits")).parameters();
        if (root.contains("without")) {
            for (const std::string& name : get<std::vector<std::string>>(root, "without"))
                if (std::erase_if(all, [&](const auto& declared) { return declared.name == name; }) == 0)
                    fail("\"without\" names \"" + name + "\", which is not inherited");
        }
        for (const json& entry : get<json>(root, "parameters"))
            all.push_back(declaration(entry));
        return all;
    }

    ExpectedKind kind() const
    {
        allowKeys(root, {"name", "id", "description", "declares", "offers", "allReportAs", "inherits",
                         "without", "parameters"});
        ExpectedKind expected;
        expected.file = file;
        expected.name = get<std::string>(root, "name");
        expected.id = get<PluginId>(root, "id");
        expected.description = get<std::string>(root, "description");
        expected.declared = interfaces("declares");
        expected.offered = interfaces("offers");
        if (root.contains("allReportAs"))
            expected.allReportAs = interfaceNamed(get<std::string>(root, "allReportAs"));
        expected.parameters = parameters();
        return expected;
    }

private:
    std::filesystem::path file;
    json root;
};

} // namespace

std::filesystem::path testsFolder()
{
    return std::filesystem::path(NEZAIVA_SOURCE_ROOT) / "tests";
}

ExpectedKind readExpectedKind(const std::filesystem::path& file)
{
    return Reader(file).kind();
}

const std::vector<ExpectedKind>& expectedKinds()
{
    static const std::vector<ExpectedKind> all = [] {
        std::vector<std::filesystem::path> files;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(testsFolder() / "textures_private"))
            if (entry.path().extension() == ".json")
                files.push_back(entry.path().lexically_relative(testsFolder()));
        std::sort(files.begin(), files.end());
        std::vector<ExpectedKind> kinds;
        for (const std::filesystem::path& file : files)
            kinds.push_back(readExpectedKind(file));
        return kinds;
    }();
    return all;
}

} // namespace conformance
