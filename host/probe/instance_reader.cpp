// The hit's instance and the hit primitive in a probe's context.

#include "host/probe/key_table.h"
#include "host/probe/probe_file.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

namespace ombrix {

namespace {

constexpr KeyReader<MapChannelSpec> kMapChannelKeys[] = {
    {"index", [](const JsonPlace& p, MapChannelSpec& m) { store(readInt(p), m.index); }},
    {"value", [](const JsonPlace& p, MapChannelSpec& m) { store(readVector(p), m.value); }},
    {"missing", [](const JsonPlace& p, MapChannelSpec& m) { store(readFloat(p), m.missing); }},
};

// The record holds four floats; what is not given is zero.
void readRecord(const JsonPlace& place, TypedAttributeSpec& attribute)
{
    if (!place->is_array()) {
        store(readFloat(place), attribute.value[0]);
        return;
    }
    if (place->empty() || place->size() > 4) {
        place.expected("a number, or a list of one to four numbers");
        return;
    }
    for (std::size_t i = 0; i < place->size(); ++i)
        store(readFloat(place.at(i)), attribute.value[i]);
}

constexpr KeyReader<TypedAttributeSpec> kTypedAttributeKeys[] = {
    {"type", [](const JsonPlace& p, TypedAttributeSpec& a) { store(readInt(p), a.type); }},
    {"value", readRecord},
    {"unknown", [](const JsonPlace& p, TypedAttributeSpec& a) { store(readBool(p), a.unknown); }},
};

constexpr KeyReader<ColorSetSpec> kColorSetKeys[] = {
    {"value", [](const JsonPlace& p, ColorSetSpec& s) { store(readAColor(p), s.value); }},
    {"missing", [](const JsonPlace& p, ColorSetSpec& s) { store(readFloat(p), s.missing); }},
};

constexpr KeyReader<HairSpec> kHairKeys[] = {
    {"color", [](const JsonPlace& p, HairSpec& h) { store(readAColor(p), h.color); }},
    {"incandescence", [](const JsonPlace& p, HairSpec& h) { store(readAColor(p), h.incandescence); }},
    {"transparency", [](const JsonPlace& p, HairSpec& h) { store(readAColor(p), h.transparency); }},
    {"distance", [](const JsonPlace& p, HairSpec& h) { store(readFloat(p), h.distance); }},
    {"random", [](const JsonPlace& p, HairSpec& h) { store(readFloat(p), h.random); }},
    {"length", [](const JsonPlace& p, HairSpec& h) { store(readFloat(p), h.length); }},
};

void readTexts(const JsonPlace& place, const char* what, std::map<std::string, std::string>& texts)
{
    readNamed(place, what, texts, [](const JsonPlace& p, std::string& text) { store(readText(p), text); });
}

constexpr KeyReader<InstanceSpec> kInstanceKeys[] = {
    {"named_channels",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readNamed(place, "\"named_channels\"", instance.namedChannels.emplace(),
                   [](const JsonPlace& p, OUtils::AColor& color) { store(readAColor(p), color); });
     }},
    {"map_channels",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readNamed(
             place, "\"map_channels\"", instance.mapChannels.emplace(),
             [](const JsonPlace& p, MapChannelSpec& c) { readKeys(p, "a map channel", kMapChannelKeys, c); });
     }},
    {"typed_attributes",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readNamed(place, "\"typed_attributes\"", instance.typedAttributes.emplace(),
                   [](const JsonPlace& p, TypedAttributeSpec& a) {
                       readKeys(p, "a typed attribute", kTypedAttributeKeys, a);
                   });
     }},
    {"text_attributes",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readTexts(place, "\"text_attributes\"", instance.textAttributes.emplace());
     }},
    {"legacy_text_attributes",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readTexts(place, "\"legacy_text_attributes\"", instance.legacyTextAttributes.emplace());
     }},
    {"color_sets",
     [](const JsonPlace& place, InstanceSpec& instance) {
         readNamed(place, "\"color_sets\"", instance.colorSets.emplace(),
                   [](const JsonPlace& p, ColorSetSpec& s) { readKeys(p, "a color set", kColorSetKeys, s); });
     }},
    {"hair", [](const JsonPlace& place,
                InstanceSpec& instance) { readKeys(place, "\"hair\"", kHairKeys, instance.hair.emplace()); }},
};

void readPoints(const JsonPlace& place, std::vector<OUtils::Vector>& points)
{
    if (!checkList(place, "points, [[x, y, z], ..]")) return;
    for (std::size_t i = 0; i < place->size(); ++i)
        store(readVector(place.at(i)), points.emplace_back());
}

// A primitive's kind. People know the kinds by their hexadecimal numbers, which JSON does not have.
void readKind(const JsonPlace& place, PrimitiveSpec& primitive)
{
    if (place->is_string()) {
        const std::string& text = place->get_ref<const std::string&>();
        int kind = 0;
        const char* end = text.data() + text.size();
        if (text.starts_with("0x") && std::from_chars(text.data() + 2, end, kind, 16).ptr == end) {
            place.error(fmt::format("takes an integer, not the text \"{}\"; write {}", text, kind));
            return;
        }
    }
    store(readInt(place), primitive.kind);
}

constexpr KeyReader<PrimitiveSpec> kPrimitiveKeys[] = {
    {"kind", readKind},
    {"points", [](const JsonPlace& p, PrimitiveSpec& h) { readPoints(p, h.points); }},
    {"end_points", [](const JsonPlace& p, PrimitiveSpec& h) { readPoints(p, h.endPoints); }},
    {"segment", [](const JsonPlace& p, PrimitiveSpec& h) { store(readInt(p), h.segment); }},
    {"first_segment", [](const JsonPlace& p, PrimitiveSpec& h) { store(readInt(p), h.firstSegment); }},
    {"fraction", [](const JsonPlace& p, PrimitiveSpec& h) { store(readFloat(p), h.fraction); }},
    {"owner_strand",
     [](const JsonPlace& p, PrimitiveSpec& h) {
         if (!p->is_null()) h.ownerStrand = readInt(p);
     }},
    {"strands",
     [](const JsonPlace& p, PrimitiveSpec& h) {
         if (!checkList(p, "strands, each a list of points")) return;
         for (std::size_t i = 0; i < p->size(); ++i)
             readPoints(p.at(i), h.strands.emplace_back());
     }},
    {"colors",
     [](const JsonPlace& p, PrimitiveSpec& h) {
         if (!checkList(p, "colors")) return;
         for (std::size_t i = 0; i < p->size(); ++i)
             store(readAColor(p.at(i)), h.colors.emplace_back());
     }},
    {"strand_index", [](const JsonPlace& p, PrimitiveSpec& h) { store(readInt(p), h.strandIndex); }},
    {"segment_index", [](const JsonPlace& p, PrimitiveSpec& h) { store(readInt(p), h.segmentIndex); }},
    {"segment_fraction",
     [](const JsonPlace& p, PrimitiveSpec& h) { store(readFloat(p), h.segmentFraction); }},
};

constexpr int kHairKinds[] = {0x920, 0x1020, 0x1330, 0x1331, 0x1922, 0x1A22};

// The kinds that a key says something of.
struct KindsOfKey {
    const char* key;
    std::vector<int> kinds;
};

const std::vector<KindsOfKey>& kindsOfKeys()
{
    const std::vector<int> segments = {0x920, 0x1020}, tables = {0x1330, 0x1331};
    static const std::vector<KindsOfKey> all = {
        {"points", segments},
        {"end_points", segments},
        {"segment", segments},
        {"first_segment", segments},
        {"fraction", segments},
        {"owner_strand", segments},
        {"strands", tables},
        {"colors", tables},
        {"segment_index", tables},
        {"segment_fraction", tables},
        {"strand_index", {0x1330, 0x1331, 0x1922, 0x1A22}},
    };
    return all;
}

template <class Kinds>
bool holds(const Kinds& kinds, int kind)
{
    return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

// What a primitive's kind makes of its keys: another kind than those of hair is possible, and so are keys
// of other kinds, but both are more often slips.
void warnOfKind(const JsonPlace& place, int kind)
{
    if (!holds(kHairKinds, kind)) {
        place.at("kind").warning(
            fmt::format("{} is no kind of hair; those are {}, decimal", kind, fmt::join(kHairKinds, ", ")));
        return;
    }
    for (const KindsOfKey& entry : kindsOfKeys())
        if (place.has(entry.key) && !holds(entry.kinds, kind))
            place.at(entry.key).warning(fmt::format("a primitive of kind {} has no \"{}\"; kinds {} do", kind,
                                                    entry.key, fmt::join(entry.kinds, ", ")));
}

} // namespace

void readInstance(const JsonPlace& place, InstanceSpec& instance)
{
    readKeys(place, "an instance", kInstanceKeys, instance);
}

void readPrimitive(const JsonPlace& place, PrimitiveSpec& primitive)
{
    readKeys(place, "a primitive", kPrimitiveKeys, primitive);
    if (!place->is_object()) return;
    if (!place.has("kind"))
        place.error("a primitive needs its \"kind\", a number");
    else if (place.at("kind")->is_number())
        warnOfKind(place, primitive.kind);
    if (!place.has("end_points"))
        primitive.endPoints = primitive.points;
    else if (primitive.endPoints.size() != primitive.points.size())
        place.at("end_points")
            .error(fmt::format("takes as many points as \"points\", {}, not {}", primitive.points.size(),
                               primitive.endPoints.size()));
}

} // namespace ombrix
