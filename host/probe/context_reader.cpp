// The keys of a probe's context.

#include "host/probe/key_table.h"
#include "host/probe/probe_context.h"
#include "host/probe/probe_file.h"

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

constexpr KeyReader<UVWPart> kUVWKeys[] = {
    {"valid",
     [](const JsonPlace& place, UVWPart& part) {
         const bool number = place->is_number_integer() && (*place == 0 || *place == 1);
         if (number)
             part.valid = *place == 1;
         else
             part.valid = readBool(place);
     }},
    {"uvw", [](const JsonPlace& place, UVWPart& part) { part.uvw = readVector(place); }},
    {"du", [](const JsonPlace& place, UVWPart& part) { part.du = readVector(place); }},
    {"dv", [](const JsonPlace& place, UVWPart& part) { part.dv = readVector(place); }},
    {"columns", [](const JsonPlace& place, UVWPart& part) { part.columns = readColumns(place); }},
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

constexpr KeyReader<ContextSpec> kContextKeys[] = {
    {"values", [](const JsonPlace&, ContextSpec&) {}}, // needs the scene: see readContext
    {"stamp", [](const JsonPlace& p, ContextSpec& c) { c.stamp = readInt(p); }},
    {"thread", [](const JsonPlace& p, ContextSpec& c) { store(readInt(p), c.thread); }},
    {"flags", [](const JsonPlace& p, ContextSpec& c) { readFlags(p, c.flags); }},
    {"filtering", [](const JsonPlace& p, ContextSpec& c) { store(readBool(p), c.filtering); }},
    {"shade_point", [](const JsonPlace& p, ContextSpec& c) { store(readVector(p), c.shadePoint); }},
    {"reference_point", [](const JsonPlace& p, ContextSpec& c) { c.referencePoint = readVector(p); }},
    {"position_diff_u", [](const JsonPlace& p, ContextSpec& c) { store(readVector(p), c.positionDiffU); }},
    {"position_diff_v", [](const JsonPlace& p, ContextSpec& c) { store(readVector(p), c.positionDiffV); }},
    {"filter_widths",
     [](const JsonPlace& p, ContextSpec& c) { readNumbers(p, "[a, b, c, d]", c.filterWidths); }},
    {"ray_time", [](const JsonPlace& p, ContextSpec& c) { store(readDouble(p), c.rayTime); }},
    {"ray_depth", [](const JsonPlace& p, ContextSpec& c) { store(readInt(p), c.rayDepth); }},
    {"ray_flags", [](const JsonPlace& p, ContextSpec& c) { store(readBits(p), c.rayFlags); }},
    {"ray_id", [](const JsonPlace& p, ContextSpec& c) { store(readInt(p), c.rayId); }},
    {"surface",
     [](const JsonPlace& p, ContextSpec& c) {
         if (p->is_null()) return;
         auto surface = std::make_shared<SurfaceSpec>();
         readSurface(p, *surface);
         c.surface = std::move(surface);
     }},
    {"face_index", [](const JsonPlace& p, ContextSpec& c) { store(readInt(p), c.faceIndex); }},
    {"barycentric", [](const JsonPlace& p, ContextSpec& c) { readNumbers(p, "[a, b, c]", c.barycentric); }},
    {"instance",
     [](const JsonPlace& p, ContextSpec& c) {
         if (p->is_null()) return;
         auto instance = std::make_shared<InstanceSpec>();
         readInstance(p, *instance);
         c.instance = std::move(instance);
     }},
    {"primitive",
     [](const JsonPlace& p, ContextSpec& c) {
         if (p->is_null()) return;
         auto primitive = std::make_shared<PrimitiveSpec>();
         readPrimitive(p, *primitive);
         c.primitive = std::move(primitive);
     }},
    {"normal", [](const JsonPlace& p, ContextSpec& c) { store(readVector(p), c.normal); }},
    {"view", [](const JsonPlace& p, ContextSpec& c) { store(readVector(p), c.view); }},
    {"diffuse_depth", [](const JsonPlace& p, ContextSpec& c) { store(readInt(p), c.diffuseDepth); }},
    {"streak_position", [](const JsonPlace& p, ContextSpec& c) { store(readFloat(p), c.streakPosition); }},
    {"volume_ref", [](const JsonPlace& p, ContextSpec& c) { store(readBool(p), c.volumeRef); }},
};

struct SurfaceMap {
    std::optional<OUtils::Matrix> columns;
    std::optional<OUtils::Vector> uvw, offset;
};

constexpr KeyReader<SurfaceMap> kSurfaceMapKeys[] = {
    {"uvw", [](const JsonPlace& p, SurfaceMap& m) { m.uvw = readVector(p); }},
    {"columns", [](const JsonPlace& p, SurfaceMap& m) { m.columns = readColumns(p); }},
    {"offset", [](const JsonPlace& p, SurfaceMap& m) { m.offset = readVector(p); }},
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

struct SurfaceKeys {
    SurfaceMap map;
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
    {"uvw", [](const JsonPlace& p, SurfaceKeys& s) { s.map.uvw = readVector(p); }},
    {"columns", [](const JsonPlace& p, SurfaceKeys& s) { s.map.columns = readColumns(p); }},
    {"offset", [](const JsonPlace& p, SurfaceKeys& s) { s.map.offset = readVector(p); }},
    {"channels", readChannels},
    {"uv_sets",
     [](const JsonPlace& p, SurfaceKeys& s) {
         readNamed(p, "\"uv_sets\"", s.spec.uvSets,
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
    if (keys.map.uvw || keys.map.columns || keys.map.offset) {
        keys.spec.everyChannel = transformOf(place, keys.map);
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
