// The hit's instance and the hit primitive in a probe's context.

#include "host/probe/probe_file.h"
#include "host/scene/key_table.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <span>

namespace ombrix {

namespace {

constexpr KeyReader<MapChannelSpec> kMapChannelKeys[] = {
    {"index", into<&MapChannelSpec::index, readInt>},
    {"value", into<&MapChannelSpec::value, readVector>},
    {"missing", into<&MapChannelSpec::missing, readFloat>},
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
    {"type", into<&TypedAttributeSpec::type, readInt>},
    {"value", readRecord},
    {"unknown", into<&TypedAttributeSpec::unknown, readBool>},
};

constexpr KeyReader<ColorSetSpec> kColorSetKeys[] = {
    {"value", into<&ColorSetSpec::value, readAColor>},
    {"missing", into<&ColorSetSpec::missing, readFloat>},
};

constexpr KeyReader<HairSpec> kHairKeys[] = {
    {"color", into<&HairSpec::color, readAColor>},
    {"incandescence", into<&HairSpec::incandescence, readAColor>},
    {"transparency", into<&HairSpec::transparency, readAColor>},
    {"distance", into<&HairSpec::distance, readFloat>},
    {"random", into<&HairSpec::random, readFloat>},
    {"length", into<&HairSpec::length, readFloat>},
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

void readStrands(const JsonPlace& place, PrimitiveSpec& primitive)
{
    if (!checkList(place, "strands, each a list of points")) return;
    for (std::size_t i = 0; i < place->size(); ++i)
        readPoints(place.at(i), primitive.strands.emplace_back());
}

void readColors(const JsonPlace& place, PrimitiveSpec& primitive)
{
    if (!checkList(place, "colors")) return;
    for (std::size_t i = 0; i < place->size(); ++i)
        store(readAColor(place.at(i)), primitive.colors.emplace_back());
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

constexpr int kSegmentKinds[] = {0x920, 0x1020}, kTableKinds[] = {0x1330, 0x1331};
constexpr int kIndexedKinds[] = {0x1330, 0x1331, 0x1922, 0x1A22};
constexpr int kHairKinds[] = {0x920, 0x1020, 0x1330, 0x1331, 0x1922, 0x1A22};

// A key with the kinds that it says something of.
struct PrimitiveKey : KeyReader<PrimitiveSpec> {
    std::span<const int> kinds;
};

using Primitive = PrimitiveSpec;
constexpr PrimitiveKey kPrimitiveKeys[] = {
    {{"kind", readKind, "a primitive needs its \"kind\", a number"}, kHairKinds},
    {{"points", [](const JsonPlace& place, Primitive& p) { readPoints(place, p.points); }}, kSegmentKinds},
    {{"end_points", [](const JsonPlace& place, Primitive& p) { readPoints(place, p.endPoints); }},
     kSegmentKinds},
    {{"segment", into<&Primitive::segment, readInt>}, kSegmentKinds},
    {{"first_segment", into<&Primitive::firstSegment, readInt>}, kSegmentKinds},
    {{"fraction", into<&Primitive::fraction, readFloat>}, kSegmentKinds},
    {{"owner_strand",
      [](const JsonPlace& place, Primitive& p) {
          if (!place->is_null()) p.ownerStrand = readInt(place);
      }},
     kSegmentKinds},
    {{"strands", readStrands}, kTableKinds},
    {{"colors", readColors}, kTableKinds},
    {{"strand_index", into<&Primitive::strandIndex, readInt>}, kIndexedKinds},
    {{"segment_index", into<&Primitive::segmentIndex, readInt>}, kTableKinds},
    {{"segment_fraction", into<&Primitive::segmentFraction, readFloat>}, kTableKinds},
};

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
    for (const PrimitiveKey& entry : kPrimitiveKeys)
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
    if (place.has("kind") && place.at("kind")->is_number()) warnOfKind(place, primitive.kind);
    if (!place.has("end_points"))
        primitive.endPoints = primitive.points;
    else if (primitive.endPoints.size() != primitive.points.size())
        place.at("end_points")
            .error(fmt::format("takes as many points as \"points\", {}, not {}", primitive.points.size(),
                               primitive.endPoints.size()));
}

} // namespace ombrix
