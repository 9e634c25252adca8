// The kinds of values by the kinds of declarations. Lists and samples in time are put together from
// single values.

#include "host/scene/value_reader.h"

#include "host/metadata/metadata.h"
#include "host/scene/key_table.h"
#include "host/scene/reference_fit.h"

#include <fmt/format.h>

#include <system_error>

namespace ombrix {

namespace {

std::string metadataItem(const ParsedMetadata& metadata, std::string_view key)
{
    for (const auto& [itemKey, value] : metadata.other)
        if (itemKey == key) return value;
    return {};
}

struct AnimatedSizes {
    std::size_t times = 0, values = 0;
};

constexpr const char* kBothNeeded = "an animated value needs both \"times\" and \"values\"";
constexpr KeyReader<AnimatedSizes> kAnimatedKeys[] = {
    {"times",
     [](const JsonPlace& place, AnimatedSizes& sizes) {
         if (checkList(place, "\"times\"")) sizes.times = place->size();
     },
     kBothNeeded},
    {"values",
     [](const JsonPlace& place, AnimatedSizes& sizes) {
         if (checkList(place, "\"values\"")) sizes.values = place->size();
     },
     kBothNeeded},
};

class ValueReader {
public:
    ValueReader(const RegisteredPlugin& kind, const ParameterDeclaration& declared, const ValueScope& known)
        : declaration(declared), scope(known), builtin(kind.builtin)
    {
        if (declaration.metadata) metadata = parseMetadata(*declaration.metadata);
    }

    std::optional<ReadParameter> read(const JsonPlace& place, NullMeans nullMeans)
    {
        ReadParameter result;
        if (place->is_null() && nullMeans == NullMeans::Unset) {
            if (!isRequired()) return result;
            place.error(fmt::format("\"{}\" cannot be unset; write a value", declaration.name));
            return {};
        }
        const bool animated = place->is_object() && (place.has("times") || place.has("values"));
        std::optional<ParameterValue> value = animated ? readAnimated(place) : readStill(place);
        if (!value) return {};
        result.value = std::move(value);
        result.references = std::move(references);
        return result;
    }

private:
    bool isRequired() const { return builtin && metadataItem(metadata, "required") == "yes"; }
    bool isList() const { return declaration.count >= 0; }
    bool takesReferences() const
    {
        return declaration.kind == Declaration::Plugin || isTextureInput(declaration.kind);
    }

    std::optional<ParameterValue> readStill(const JsonPlace& place)
    {
        auto sample = readSample(place);
        if (!sample) return {};
        return ParameterValue{{}, {std::move(*sample)}};
    }

    std::optional<ParameterValue> readAnimated(const JsonPlace& place)
    {
        if (declaration.kind == Declaration::Plugin) {
            place.error("a reference cannot change over time; write one reference");
            return {};
        }
        AnimatedSizes sizes;
        if (!readKeys(place, "an animated value", kAnimatedKeys, sizes)) return {};
        if (sizes.times != sizes.values || sizes.times == 0) {
            place.error(fmt::format("an animated value needs as many \"times\" as \"values\", one at least; "
                                    "here are {} and {}",
                                    sizes.times, sizes.values));
            return {};
        }
        const JsonPlace times = place.at("times"), values = place.at("values");
        ParameterValue result;
        animatedValue = true;
        bool good = readTimes(times, result.times);
        for (std::size_t i = 0; i < values->size(); ++i) {
            auto sample = readSample(values.at(i));
            good = good && sample;
            if (good) result.samples.push_back(std::move(*sample));
        }
        if (!good) return {};
        return result;
    }

    static bool readTimes(const JsonPlace& place, std::vector<double>& times)
    {
        for (std::size_t i = 0; i < place->size(); ++i) {
            const JsonPlace element = place.at(i);
            const std::optional<double> time = readFiniteDouble(element);
            if (!time) return false;
            if (!times.empty() && *time <= times.back()) {
                element.error(
                    fmt::format("the time {} does not lie after {}; times rise", *time, times.back()));
                return false;
            }
            times.push_back(*time);
        }
        return true;
    }

    // The values at one time: one, or those of a list.
    std::optional<std::vector<Value>> readSample(const JsonPlace& place)
    {
        std::vector<Value> sample;
        if (!isList()) {
            auto value = readSingle(place);
            if (!value) return {};
            sample.push_back(std::move(*value));
            return sample;
        }
        if (place->is_null() && takesReferences()) return sample;
        if (!place->is_array()) {
            place.expected("a list");
            return {};
        }
        if (builtin) {
            const std::string size = metadataItem(metadata, "size");
            if (!size.empty() && size != std::to_string(place->size())) {
                place.error(fmt::format("takes a list of {} elements, not of {}", size, place->size()));
                return {};
            }
        }
        const std::string nesting = builtin ? metadataItem(metadata, "nested") : std::string();
        bool good = true;
        for (std::size_t i = 0; i < place->size(); ++i) {
            const JsonPlace element = place.at(i);
            if (!nesting.empty() && element->is_array()) {
                good = readElements(element, sample) && good;
                if (nesting == "ended") sample.emplace_back(-1);
            } else {
                good = readElement(element, sample) && good;
            }
        }
        if (!good) return {};
        return sample;
    }

    bool readElement(const JsonPlace& place, std::vector<Value>& sample)
    {
        auto value = readSingle(place);
        if (!value) return false;
        sample.push_back(std::move(*value));
        return true;
    }

    bool readElements(const JsonPlace& place, std::vector<Value>& sample)
    {
        bool good = true;
        for (std::size_t i = 0; i < place->size(); ++i)
            good = readElement(place.at(i), sample) && good;
        return good;
    }

    std::optional<Value> readSingle(const JsonPlace& place)
    {
        if (takesReferences()) {
            if (place->is_null()) return animatedValue ? referenceInTime(place) : Value(PluginReference{});
            if (isReferenceText(place)) return animatedValue ? referenceInTime(place) : readReference(place);
        }
        if (place->is_null()) return readNull(place);
        switch (declaration.kind) {
        case Declaration::Bool:
            return asValue(readBool(place));
        case Declaration::Int:
        case Declaration::TextureInt:
            return readInteger(place);
        case Declaration::Float:
        case Declaration::TextureFloat:
            return asValue(readFloat(place));
        case Declaration::Color:
        case Declaration::Texture:
            return readColorValue(place);
        case Declaration::String:
            return readString(place);
        case Declaration::Transform:
        case Declaration::TextureTransform:
            return asValue(readTransform(place));
        case Declaration::TextureVector:
            return asValue(readVector(place));
        case Declaration::Plugin:
            place.expected("the name of a plugin, \"name\" or \"name.output\"");
            return {};
        case Declaration::OutputTexture:
        case Declaration::OutputTextureFloat:
            break;
        }
        return {};
    }

    template <class T>
    static std::optional<Value> asValue(const std::optional<T>& read)
    {
        if (!read) return {};
        return Value(*read);
    }

    std::optional<Value> readNull(const JsonPlace& place)
    {
        if (builtin && metadataItem(metadata, "null") == "allowed") return Value(std::monostate{});
        place.error("takes no null; write a value, or leave the parameter out for its default");
        return {};
    }

    std::optional<Value> readColorValue(const JsonPlace& place) const
    {
        if (builtin && metadata.quantityType == "coordinate" && place->is_array() && place->size() == 2) {
            const auto uv = readFloats(place, 2, "[u, v]");
            if (!uv) return {};
            return Value(OUtils::Color{(*uv)[0], (*uv)[1], 0.0f});
        }
        const auto color = readColor(place);
        if (!color) return {};
        return std::visit([](const auto& c) { return Value(c); }, *color);
    }

    std::optional<Value> readInteger(const JsonPlace& place)
    {
        if (place->is_string() && !metadata.enumeration.empty()) return readLabel(place);
        const std::optional<int> number = readInt(place);
        if (!number) return {};
        if (!metadata.enumeration.empty() && !metadata.labelOf(*number))
            place.warning(fmt::format("{} is none of the values of \"{}\" ({}); it is passed on as it is",
                                      *number, declaration.name, labelList()));
        return Value(*number);
    }

    std::optional<Value> readLabel(const JsonPlace& place) const
    {
        const std::string& label = place->get_ref<const std::string&>();
        if (const std::optional<int> number = metadata.valueOf(label)) return Value(*number);
        std::vector<std::string> labels;
        for (const EnumLabel& entry : metadata.enumeration)
            labels.push_back(entry.label);
        std::string help = suggestName(label, labels);
        if (help.empty()) help = fmt::format("; the values are {}", labelList());
        place.error(fmt::format("\"{}\" has no value \"{}\"{}", declaration.name, label, help));
        return {};
    }

    std::string labelList() const
    {
        std::string list;
        for (const EnumLabel& entry : metadata.enumeration)
            list += fmt::format("{}{} {}", list.empty() ? "" : ", ", entry.value, entry.label);
        return list;
    }

    std::optional<Value> readString(const JsonPlace& place) const
    {
        std::optional<std::string> text = readText(place);
        if (!text) return {};
        if (text->empty() && isRequired()) {
            place.error("takes a file's name, not an empty text");
            return {};
        }
        if (!builtin || metadata.quantityType != "file" || text->empty()) return Value(std::move(*text));
        return readPath(place, *text);
    }

    // The path of a file that exists.
    std::optional<Value> readPath(const JsonPlace& place, const std::string& text) const
    {
        const std::filesystem::path given(text);
        std::error_code ignored;
        std::vector<std::filesystem::path> places = {scope.folder / given};
        if (given.is_relative()) places.push_back(given);
        for (const std::filesystem::path& path : places) {
            if (std::filesystem::is_directory(path, ignored)) {
                place.error(fmt::format("{} is a folder; write a file's name", path.string()));
                return {};
            }
            if (std::filesystem::exists(path, ignored)) return Value(path.string());
        }
        if (given.is_absolute() || scope.folder.empty())
            place.error(fmt::format("there is no file {}", text));
        else
            place.error(fmt::format("there is no file {} in the scene's folder ({}) or the working folder",
                                    text, scope.folder.string()));
        return {};
    }

    // Texts that stand for numbers or labels are no references.
    bool isReferenceText(const JsonPlace& place) const
    {
        if (!place->is_string()) return false;
        const std::string& text = place->get_ref<const std::string&>();
        if (isTextureInput(declaration.kind) && isNumberWord(text)) return false;
        const bool label = declaration.kind == Declaration::TextureInt && metadata.valueOf(text).has_value();
        return !label || scope.instances.contains(text);
    }

    static std::optional<Value> referenceInTime(const JsonPlace& place)
    {
        place.error("a reference cannot change over time; write plain values, or one reference");
        return {};
    }

    std::optional<Value> readReference(const JsonPlace& place)
    {
        const std::optional<std::string> text = readText(place);
        if (!text) return {};
        std::string problem;
        const SceneObject object = resolveReference(scope.instances, *text, problem);
        if (!object.instance) {
            const bool broken = scope.brokenNames.contains(*text) ||
                                scope.brokenNames.contains(text->substr(0, text->rfind('.')));
            if (broken) return {}; // it has an error of its own
            const bool helpless = problem.starts_with("no plugin") && problem.ends_with('"');
            if (helpless && isTextureInput(declaration.kind))
                problem += fmt::format("; \"{}\" takes a plugin's name, or a plain value", declaration.name);
            place.error(problem);
            return {};
        }
        const PluginReference reference{object.instance->plugin, object.output};
        if (isTextureInput(declaration.kind) &&
            !interfaceOf(reference, textureInterfaceOf(declaration.kind))) {
            place.error(explainMisfit(object, *text, declaration));
            return {};
        }
        references.push_back(object);
        return Value(reference);
    }

    const ParameterDeclaration& declaration;
    const ValueScope& scope;
    ParsedMetadata metadata;
    std::vector<SceneObject> references;
    bool builtin = false;
    bool animatedValue = false;
};

} // namespace

std::optional<ReadParameter> readParameter(const JsonPlace& place, const RegisteredPlugin& kind,
                                           const ParameterDeclaration& declaration, const ValueScope& scope,
                                           NullMeans nullMeans)
{
    return ValueReader(kind, declaration, scope).read(place, nullMeans);
}

} // namespace ombrix
