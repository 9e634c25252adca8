// The keys of a probe's context.

#include "host/probe/probe_context.h"
#include "host/probe/probe_file.h"
#include "host/scene/key_table.h"

#include <ombrix/context.h>

#include <fmt/format.h>

#include <charconv>
#include <limits>

namespace ombrix {

namespace {

struct FlagName {
    const char* name;
    std::uint32_t bit;
};

constexpr FlagName kFlags[] = {
    {"noUVWCache", OUtils::noUVWCache},
    {"noTexCache", OUtils::noTexCache},
    {"rawTextureLookup", OUtils::rawTextureLookup},
};

std::optional<std::uint32_t> readBits(const JsonPlace& place)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    if (!place->is_number_unsigned() || place->get<std::uint64_t>() > kMost) {
        place.expected("an integer from 0 to 4294967295");
        return {};
    }
    return place->get<std::uint32_t>();
}

void readFlag(const JsonPlace& place, std::uint32_t& flags)
{
    if (place->is_string()) {
        const std::string& name = place->get_ref<const std::string&>();
        std::vector<std::string> names;
        for (const FlagName& flag : kFlags) {
            names.emplace_back(flag.name);
            if (name != flag.name) continue;
            flags |= flag.bit;
            return;
        }
        place.error(
            fmt::format("no flag is named \"{}\"{}", name, suggestOrList(name, names, "the flags are")));
        return;
    }
    if (const auto bits = readBits(place)) flags |= *bits;
}

void readFlags(const JsonPlace& place, std::uint32_t& flags)
{
    if (!place->is_array()) {
        readFlag(place, flags);
        return;
    }
    for (std::size_t i = 0; i < place->size(); ++i)
        readFlag(place.at(i), flags);
}

template <std::size_t count>
void readNumbers(const JsonPlace& place, const char* form, float (&numbers)[count])
{
    if (const auto read = readFloats(place, count, form)) std::copy(read->begin(), read->end(), numbers);
}

// true, false, or the number that the answers have.
std::optional<bool> readValidity(const JsonPlace& place)
{
    const bool isAnswer = place->is_number_integer() && (*place == 0 || *place == 1);
    return isAnswer ? *place == 1 : readBool(place);
}

constexpr KeyReader<UVWPart> kUVWKeys[] = {
    {"valid", into<&UVWPart::valid, readValidity>},
    {"uvw", into<&UVWPart::uvw, readVector>},
    {"du", into<&UVWPart::du, readVector>},
    {"dv", into<&UVWPart::dv, readVector>},
    {"columns", into<&UVWPart::columns, readColumns>},
};

template <class T>
std::optional<ContextValue> asContextValue(const std::optional<T>& read)
{
    if (!read) return {};
    return ContextValue(*read);
}

struct ValueKind {
    const char* type;
    std::optional<ContextValue> (*read)(const JsonPlace& place);
};

constexpr ValueKind kValueKinds[] = {
    {"ColorValue", [](const JsonPlace& place) { return asContextValue(readAColor(place)); }},
    {"FloatValue", [](const JsonPlace& place) { return asContextValue(readFloat(place)); }},
    {"IntValue", [](const JsonPlace& place) { return asContextValue(readInt(place)); }},
    {"TransformValue", [](const JsonPlace& place) { return asContextValue(readTransform(place)); }},
    {"VectorValue", [](const JsonPlace& place) { return asContextValue(readVector(place)); }},
    {"UVWValue",
     [](const JsonPlace& place) {
         UVWPart part;
         readKeys(place, "a UVWValue", kUVWKeys, part);
         return std::optional<ContextValue>(part);
     }},
};

// The first thing that makes a request impossible is told.
void cannotRun(const JsonPlace& place, RequestProblem& problem, std::string text)
{
    if (problem.text.empty()) problem = {place.path(), std::move(text)};
}

void readValue(const JsonPlace& place, const std::string& name, const Scene& scene, ContextSpec& context,
               RequestProblem& problem)
{
    const PluginInstance* instance = scene.find(name);
    if (!instance) {
        std::vector<std::string> names;
        for (const PluginInstance& known : scene.instances())
            names.push_back(known.name);
        cannotRun(
            place, problem,
            fmt::format("no plugin is named \"{}\"{}", name, suggestOrList(name, names, "the plugins are")));
        return;
    }
    const std::string type = instance->kind->desc->getName();
    for (const ValueKind& kind : kValueKinds) {
        if (type != kind.type) continue;
        if (auto value = kind.read(place)) context.values.emplace_back(instance, std::move(*value));
        return;
    }
    cannotRun(place, problem,
              fmt::format("\"{}\" is a {}; only a value texture takes a value from the context", name, type));
}

// An object that null leaves out.
template <auto member, auto read>
void intoShared(const JsonPlace& place, ContextSpec& context)
{
    if (place->is_null()) return;
    using Pointer = std::remove_reference_t<decltype(context.*member)>;
    auto spec = std::make_shared<std::remove_const_t<typename Pointer::element_type>>();
    read(place, *spec);
    context.*member = std::move(spec);
}

using Context = ContextSpec;
constexpr KeyReader<Context> kContextKeys[] = {
    {"values", nullptr}, // needs the scene: see readContext
    {"stamp", into<&Context::stamp, readInt>},
    {"thread", into<&Context::thread, readInt>},
    {"flags", [](const JsonPlace& place, Context& context) { readFlags(place, context.flags); }},
    {"filtering", into<&Context::filtering, readBool>},
    {"shade_point", into<&Context::shadePoint, readVector>},
    {"reference_point", into<&Context::referencePoint, readVector>},
    {"position_diff_u", into<&Context::positionDiffU, readVector>},
    {"position_diff_v", into<&Context::positionDiffV, readVector>},
    {"filter_widths", [](const JsonPlace& place,
                         Context& context) { readNumbers(place, "[a, b, c, d]", context.filterWidths); }},
    {"ray_time", into<&Context::rayTime, readDouble>},
    {"ray_depth", into<&Context::rayDepth, readInt>},
    {"ray_flags", into<&Context::rayFlags, readBits>},
    {"ray_id", into<&Context::rayId, readInt>},
    {"surface", intoShared<&Context::surface, readSurface>},
    {"face_index", into<&Context::faceIndex, readInt>},
    {"barycentric",
     [](const JsonPlace& place, Context& context) { readNumbers(place, "[a, b, c]", context.barycentric); }},
    {"instance", intoShared<&Context::instance, readInstance>},
    {"primitive", intoShared<&Context::primitive, readPrimitive>},
    {"normal", into<&Context::normal, readVector>},
    {"view", into<&Context::view, readVector>},
    {"diffuse_depth", into<&Context::diffuseDepth, readInt>},
    {"streak_position", into<&Context::streakPosition, readFloat>},
    {"volume_ref", into<&Context::volumeRef, readBool>},
};

struct SurfaceMap {
    std::optional<OUtils::Matrix> columns;
    std::optional<OUtils::Vector> uvw, offset;
};

constexpr KeyReader<SurfaceMap> kSurfaceMapKeys[] = {
    {"uvw", into<&SurfaceMap::uvw, readVector>},
    {"columns", into<&SurfaceMap::columns, readColumns>},
    {"offset", into<&SurfaceMap::offset, readVector>},
};

OUtils::Transform transformOf(const JsonPlace& place, const SurfaceMap& map)
{
    if (map.uvw && (map.columns || map.offset))
        place.error("\"uvw\" means the identity with that offset; write \"uvw\" alone, or \"columns\" and "
                    "\"offset\"");
    OUtils::Transform result;
    if (map.columns) result.matrix = *map.columns;
    if (map.uvw) result.offset = *map.uvw;
    if (map.offset) result.offset = *map.offset;
    return result;
}

std::optional<int> channelOf(const std::string& text)
{
    int channel = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), channel);
    if (error != std::errc() || end != text.data() + text.size()) return {};
    return channel;
}

struct SurfaceKeys : SurfaceMap {
    SurfaceSpec spec;
};

void readChannels(const JsonPlace& place, SurfaceKeys& keys)
{
    keys.spec.hasChannels = true;
    if (!place->is_object()) {
        place.expected("an object of channel numbers to mappings");
        return;
    }
    for (const auto& [name, member] : place->items()) {
        const JsonPlace channelPlace = place.at(name);
        const std::optional<int> channel = channelOf(name);
        if (!channel) {
            channelPlace.error(fmt::format("a channel is an integer as text, not \"{}\"", name));
            continue;
        }
        SurfaceMap map;
        readKeys(channelPlace, "a channel", kSurfaceMapKeys, map);
        keys.spec.channels[*channel] = transformOf(channelPlace, map);
    }
}

constexpr KeyReader<SurfaceKeys> kSurfaceKeys[] = {
    {"uvw", into<&SurfaceMap::uvw, readVector>},
    {"columns", into<&SurfaceMap::columns, readColumns>},
    {"offset", into<&SurfaceMap::offset, readVector>},
    {"channels", readChannels},
    {"uv_sets",
     [](const JsonPlace& place, SurfaceKeys& keys) {
         readNamed(place, "\"uv_sets\"", keys.spec.uvSets,
                   [](const JsonPlace& member, int& channel) { store(readInt(member), channel); });
     }},
};

// A plugin that asked the hit for what the host cannot offer would take its absence for the answer.
void checkHit(const JsonPlace& place, const ContextSpec& context, RequestProblem& problem)
{
    if (context.instance) {
        const JsonPlace instance = place.at("instance");
        for (const MissingInterface& missing : missingInterfaces(*context.instance))
            cannotRun(instance.at(missing.key), problem,
                      fmt::format("this host's instances do not offer \"{}\" (0x{:08X}); leave it out",
                                  missing.key, missing.id));
    }
    if (context.primitive)
        cannotRun(place.at("primitive"), problem,
                  "this host has no hit primitives that plugins could read; leave it out, or write null");
}

} // namespace

void readSurface(const JsonPlace& place, SurfaceSpec& surface)
{
    SurfaceKeys keys;
    readKeys(place, "a surface", kSurfaceKeys, keys);
    if (keys.uvw || keys.columns || keys.offset) {
        keys.spec.everyChannel = transformOf(place, keys);
        if (keys.spec.hasChannels) place.error("write one map for every channel, or \"channels\", not both");
    }
    surface = std::move(keys.spec);
}

void readContext(const JsonPlace& place, const Scene& scene, ContextSpec& context, RequestProblem& problem)
{
    readKeys(place, "a context", kContextKeys, context);
    checkHit(place, context, problem);
    if (!place.has("values")) return;
    const JsonPlace values = place.at("values");
    if (!values->is_object()) {
        values.expected("an object of plugin names to values");
        return;
    }
    for (const auto& [name, member] : values->items())
        readValue(values.at(name), name, scene, context, problem);
}

} // namespace ombrix
