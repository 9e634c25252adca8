// What a probe's context becomes.

#include "host/probe/probe_context.h"
#include "support/scene_texts.h"
#include "support/witness_node.h"

#include <ombrix/mapping_interfaces.h>

using namespace ombrix;
using OUtils::MappedSurface;
using OUtils::OmbrixContext;

namespace {

class ProbeContextTest : public support::SceneTest {
protected:
    ProbeContextTest() : scene(parse(support::sceneText(""))), renderer(scene->settings(), 1, nullptr) {}

    const HostContext& context(const std::string& text)
    {
        spec = ContextSpec();
        RequestProblem problem;
        Diagnostics diagnostics("c");
        const nlohmann::json json = nlohmann::json::parse(text);
        readContext(JsonPlace(json, "", diagnostics), *scene, spec, problem);
        lines = diagnostics.lines();
        made = std::make_unique<ProbeContext>(spec, 5, names());
        return made->context();
    }
    OUtils::MapChannelNames& names() { return *renderer.getMapChannelNames(); }
    static MappedSurface* mappingOf(OUtils::PluginBase* object)
    {
        return OUtils::find<MappedSurface>(object);
    }
    bool refused(const std::string& text)
    {
        context(text);
        return !lines.empty();
    }

    std::unique_ptr<Scene> scene;
    HostRenderer renderer;
    ContextSpec spec;
    std::unique_ptr<ProbeContext> made;
};

TEST_F(ProbeContextTest, EmptyContextHasTheDefaults)
{
    const HostContext& c = context("{}");
    EXPECT_EQ(c.sampleStamp, 5);
    EXPECT_EQ(c.threadRecord->threadIndex, 0);
    EXPECT_EQ(c.shadeFlags, 0u);
    EXPECT_EQ(c.filteringEnabled(), 0);
    EXPECT_EQ(c.shadePoint.x, 0.0f);
    EXPECT_EQ(c.filterWidths[3], 0.0f);
    EXPECT_EQ(c.rayTime, 0.0);
    EXPECT_EQ(c.rayDepth, 0);
    EXPECT_EQ(c.rayFlags, 0u);
    EXPECT_EQ(c.rayId, 1);
    EXPECT_EQ(c.surfaceObject, nullptr);
    EXPECT_EQ(c.hitInstance, nullptr);
    EXPECT_EQ(c.faceIndex, 0);
    EXPECT_EQ(c.barycentric[0], 1.0f);
    EXPECT_EQ(c.barycentric[1], 0.0f);
    EXPECT_EQ(c.normal.z, 1.0f);
    EXPECT_EQ(c.viewDirection.z, -1.0f);
    EXPECT_EQ(c.diffuseDepth, 0);
    EXPECT_EQ(c.streakPosition, 0.0f);
    EXPECT_EQ(c.contextVolumeRef, nullptr);
}

TEST_F(ProbeContextTest, EveryKeyReachesTheContext)
{
    const HostContext& c =
        context(R"({"thread": -3, "flags": ["noUVWCache", "noTexCache", 1], "filtering": true,
        "shade_point": [1, 2, 3], "reference_point": [4, 5, 6], "position_diff_u": [7, 0, 0],
        "position_diff_v": [0, 8, 0], "filter_widths": [1, 2, 3, 4], "ray_time": 0.25, "ray_depth": 2,
        "ray_flags": 4294967295, "ray_id": 9, "surface": {}, "face_index": 11, "barycentric": [0.5, 0.25, 0.25],
        "instance": {}, "normal": [1, 0, 0], "view": [0, 1, 0], "diffuse_depth": 3, "streak_position": 0.5,
        "volume_ref": true})");
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ(c.threadRecord->threadIndex, -3);
    EXPECT_EQ(c.shadeFlags, 0x80u | 0x400000u | 1u);
    EXPECT_EQ(c.filteringEnabled(), 1);
    EXPECT_EQ(c.shadePoint.z, 3.0f);
    EXPECT_EQ(c.referencePoint.x, 4.0f);
    EXPECT_EQ(c.positionDiffU.x, 7.0f);
    EXPECT_EQ(c.positionDiffV.y, 8.0f);
    EXPECT_EQ(c.filterWidths[3], 4.0f);
    EXPECT_EQ(c.rayTime, 0.25);
    EXPECT_EQ(c.rayDepth, 2);
    EXPECT_EQ(c.rayFlags, 0xFFFFFFFFu);
    EXPECT_EQ(c.rayId, 9);
    EXPECT_NE(c.surfaceObject, nullptr);
    EXPECT_EQ(mappingOf(c.surfaceObject), nullptr);
    EXPECT_NE(c.hitInstance, nullptr);
    EXPECT_EQ(mappingOf(c.hitInstance), nullptr);
    EXPECT_EQ(c.faceIndex, 11);
    EXPECT_EQ(c.barycentric[2], 0.25f);
    EXPECT_EQ(c.normal.x, 1.0f);
    EXPECT_EQ(c.geometricNormal.x, 1.0f);
    EXPECT_EQ(c.viewDirection.y, 1.0f);
    EXPECT_EQ(c.diffuseDepth, 3);
    EXPECT_EQ(c.streakPosition, 0.5f);
    EXPECT_NE(c.contextVolumeRef, nullptr);
}

TEST_F(ProbeContextTest, ReferencePointFollowsTheShadePoint)
{
    EXPECT_EQ(context(R"({"shade_point": [1, 2, 3]})").referencePoint.y, 2.0f);
}

TEST_F(ProbeContextTest, FlagsAreNamesOrNumbers)
{
    EXPECT_EQ(context(R"({"flags": "rawTextureLookup"})").shadeFlags, 0x8000000u);
    EXPECT_EQ(context(R"({"flags": 2147483648})").shadeFlags, 0x80000000u);
    EXPECT_TRUE(refused(R"({"flags": ["noTexCach"]})"));
    EXPECT_EQ(lines[0], "error: c: /flags/0: no flag is named \"noTexCach\"; did you mean \"noTexCache\"?");
    EXPECT_TRUE(refused(R"({"flags": [-1]})"));
    EXPECT_TRUE(refused(R"({"flags": [4294967296]})"));
}

TEST_F(ProbeContextTest, SurfaceOfOneMappingHasEveryChannel)
{
    const HostContext& c = context(R"({"surface": {"uvw": [0.1, 0.2, 0.3]}})");
    MappedSurface* surface = mappingOf(c.surfaceObject);
    ASSERT_TRUE(surface);
    for (const int channel : {-1, 0, 1, 77}) {
        OUtils::Transform t;
        EXPECT_NE(surface->getLocalUVWTransform(c, channel, &t), 0) << channel;
        EXPECT_EQ(t.offset.z, 0.3f);
        EXPECT_EQ(t.matrix.columns[1].y, 1.0f);
    }
}

TEST_F(ProbeContextTest, SurfaceRefusesChannelsThatItLacksAndLeavesTheResult)
{
    const HostContext& c =
        context(R"({"surface": {"channels": {"3": {"uvw": [3, 0, 0]}, "2": {"uvw": [2, 0, 0]}}}})");
    MappedSurface* surface = mappingOf(c.surfaceObject);
    OUtils::Transform t;
    t.offset.x = 99.0f;
    EXPECT_EQ(surface->getLocalUVWTransform(c, 1, &t), 0);
    EXPECT_EQ(t.offset.x, 99.0f);
    EXPECT_NE(surface->getLocalUVWTransform(c, -1, &t), 0);
    EXPECT_EQ(t.offset.x, 2.0f) << "the lowest";
    OUtils::Vector v{9, 9, 9};
    surface->getMapChannelByIndex(c, 1, &v);
    EXPECT_EQ(v.x, 0.0f);
    EXPECT_EQ(surface->getMapChannelMissing(c, 1), 1.0f);
    EXPECT_EQ(surface->getMapChannelMissing(c, 3), 0.0f);
}

TEST_F(ProbeContextTest, UvSetsNameChannels)
{
    const HostContext& c =
        context(R"({"surface": {"channels": {"4": {"uvw": [4, 0, 0]}}, "uv_sets": {"map1": 4, "gone": 5}}})");
    MappedSurface* surface = mappingOf(c.surfaceObject);
    OUtils::Transform t;
    EXPECT_GT(surface->getLocalUVWTransformByName(c, names().getNameId("map1"), &t), 0);
    EXPECT_EQ(t.offset.x, 4.0f);
    EXPECT_EQ(surface->getLocalUVWTransformByName(c, names().getNameId("gone"), &t), 0);
    EXPECT_EQ(surface->getLocalUVWTransformByName(c, names().getNameId("other"), &t), -1);
    OUtils::Vector v;
    EXPECT_EQ(surface->getMapChannelValue(c, names().getNameId("map1"), &v), 4);
    EXPECT_EQ(v.x, 4.0f);
    EXPECT_EQ(surface->getMapChannelValue(c, names().getNameId("other"), &v), -1);
}

TEST_F(ProbeContextTest, InstanceHoldsMapChannels)
{
    const HostContext& c = context(R"({"instance": {"map_channels": {"tint": {"index": 3, "value": [1, 2, 3],
        "missing": 0.25}, "": {"index": 1, "value": [4, 5, 6]}}}})");
    MappedSurface* channels = mappingOf(c.hitInstance);
    ASSERT_TRUE(channels);
    OUtils::Vector v;
    EXPECT_EQ(channels->getMapChannelValue(c, names().getNameId("tint"), &v), 3);
    EXPECT_EQ(v.y, 2.0f);
    EXPECT_EQ(channels->getMapChannelMissing(c, 3), 0.25f);
    EXPECT_EQ(channels->getMapChannelMissing(c, 1), 0.0f);
    EXPECT_EQ(channels->getMapChannelValue(c, names().getNameId("nothing"), &v), -1);
    channels->getMapChannelByIndex(c, 8, &v);
    EXPECT_EQ(v.y, 0.0f);
    EXPECT_EQ(channels->getMapChannelMissing(c, 8), 1.0f);
}

TEST_F(ProbeContextTest, EveryPartOfAnInstanceIsRead)
{
    context(R"({"instance": {"named_channels": {"a": [1, 2, 3]},
        "typed_attributes": {"b": {"type": 2, "value": [1, 2]}, "c": {"unknown": true}, "d": {"value": 7}},
        "text_attributes": {"e": "x"}, "legacy_text_attributes": {"f": "y"},
        "color_sets": {"g": {"value": [1, 2, 3, 4], "missing": 0.5}},
        "hair": {"color": [1, 0, 0], "incandescence": 0.5, "transparency": 0, "distance": 0.25, "random": 0.75,
                 "length": 2}}})");
    EXPECT_TRUE(lines.empty());
    const InstanceSpec& instance = *spec.instance;
    EXPECT_EQ(instance.namedChannels->at("a").b, 3.0f);
    EXPECT_EQ(instance.typedAttributes->at("b").type, 2);
    EXPECT_EQ(instance.typedAttributes->at("b").value[1], 2.0f);
    EXPECT_TRUE(instance.typedAttributes->at("c").unknown);
    EXPECT_EQ(instance.typedAttributes->at("d").value[0], 7.0f);
    EXPECT_EQ(instance.textAttributes->at("e"), "x");
    EXPECT_EQ(instance.legacyTextAttributes->at("f"), "y");
    EXPECT_EQ(instance.colorSets->at("g").missing, 0.5f);
    EXPECT_EQ(instance.hair->length, 2.0f);
    EXPECT_FALSE(instance.mapChannels);
}

TEST_F(ProbeContextTest, EveryPartOfAPrimitiveIsRead)
{
    context(
        R"({"primitive": {"kind": 2336, "points": [[1, 2, 3], [4, 5, 6]], "segment": 3, "first_segment": 2,
        "fraction": 0.5, "owner_strand": 7, "strands": [[[0, 0, 0]], []], "colors": [[1, 0, 0]], "strand_index": 1,
        "segment_index": 4, "segment_fraction": 0.25}})");
    EXPECT_EQ(lines.size(), 5u) << "warnings of the keys of other kinds, which are read all the same";
    for (const std::string& line : lines)
        EXPECT_TRUE(line.starts_with("warning: c: /primitive/s") ||
                    line.starts_with("warning: c: /primitive/colors"));
    const PrimitiveSpec& primitive = *spec.primitive;
    EXPECT_EQ(primitive.kind, 0x920);
    EXPECT_EQ(primitive.points.at(1).y, 5.0f);
    EXPECT_EQ(primitive.endPoints.size(), 2u) << "the points where they do not move";
    EXPECT_EQ(primitive.segment, 3);
    EXPECT_EQ(primitive.firstSegment, 2);
    EXPECT_EQ(primitive.fraction, 0.5f);
    EXPECT_EQ(primitive.ownerStrand, 7);
    EXPECT_EQ(primitive.strands.size(), 2u);
    EXPECT_EQ(primitive.colors.at(0).r, 1.0f);
    EXPECT_EQ(primitive.strandIndex, 1);
    EXPECT_EQ(primitive.segmentIndex, 4);
    EXPECT_EQ(primitive.segmentFraction, 0.25f);
    context(R"({"primitive": null, "instance": null, "surface": null})");
    EXPECT_TRUE(lines.empty());
    EXPECT_FALSE(spec.primitive || spec.instance || spec.surface);
}

TEST_F(ProbeContextTest, MapsThatContradictSayWhatToWrite)
{
    EXPECT_TRUE(refused(R"({"surface": {"uvw": [0, 0, 0], "columns": [[1,0,0],[0,1,0],[0,0,1]]}})"));
    EXPECT_EQ(lines,
              std::vector<std::string>{
                  "error: c: /surface: \"uvw\" means the identity with that offset; write \"uvw\" alone, or "
                  "\"columns\" and \"offset\""});
    EXPECT_FALSE(refused(R"({"surface": {"offset": [0, 0, 0], "columns": [[1,0,0],[0,1,0],[0,0,1]]}})"));
    EXPECT_FALSE(refused(R"({"surface": {"uvw": [0, 0, 0], "uv_sets": {"map1": 1}}})"));
}

TEST_F(ProbeContextTest, UnknownKindsOfPrimitivesAndKeysOfOthersAreWarnedOf)
{
    context(R"({"primitive": {"kind": 7, "fraction": 0.5}})");
    EXPECT_EQ(spec.primitive->kind, 7) << "it may be one that is no hair";
    EXPECT_EQ(lines,
              std::vector<std::string>{"warning: c: /primitive/kind: 7 is no kind of hair; those are 2336, "
                                       "4128, 4912, 4913, 6434, 6690, decimal"});
    context(R"({"primitive": {"kind": 6434, "strand_index": 3, "colors": []}})");
    EXPECT_EQ(lines,
              std::vector<std::string>{"warning: c: /primitive/colors: a primitive of kind 6434 has no "
                                       "\"colors\"; kinds 4912, 4913 do"});
    context(R"({"primitive": {"kind": 4912, "strand_index": 3, "colors": [], "segment_fraction": 0.5}})");
    EXPECT_TRUE(lines.empty());
    context(R"({"primitive": {"kind": "0x920"}})");
    EXPECT_EQ(lines, std::vector<std::string>{
                         "error: c: /primitive/kind: takes an integer, not the text \"0x920\"; write 2336"});
}

TEST_F(ProbeContextTest, UnknownNamesAreToldWithWhatThereIs)
{
    context(R"({"flags": ["zzz"]})");
    EXPECT_EQ(lines[0], "error: c: /flags/0: no flag is named \"zzz\"; the flags are \"noUVWCache\", "
                        "\"noTexCache\", \"rawTextureLookup\"");
    context(R"({"surface": {"zzz": 1}})");
    EXPECT_EQ(lines[0],
              "error: c: /surface/zzz: a surface has no key \"zzz\"; the keys are \"uvw\", \"columns\", "
              "\"offset\", \"channels\", \"uv_sets\"");
}

TEST_F(ProbeContextTest, WrongShapesAreRefused)
{
    for (const char* text :
         {R"(3)",
          R"({"thread": 0.5})",
          R"({"stamp": 2147483648})",
          R"({"filtering": 1})",
          R"({"shade_point": [1, 2]})",
          R"({"filter_widths": [1, 2, 3]})",
          R"({"ray_flags": -1})",
          R"({"surface": 1})",
          R"({"surface": {"uv": [0, 0]}})",
          R"({"surface": {"uvw": [0, 0, 0], "offset": [0, 0, 0]}})",
          R"({"surface": {"uvw": [0, 0, 0], "columns": [[1,0,0],[0,1,0],[0,0,1]]}})",
          R"({"surface": {"uvw": [0, 0, 0], "channels": {"1": {}}}})",
          R"({"surface": {"offset": [0, 0, 0], "channels": {}}})",
          R"({"surface": {"channels": {"1": {"uvw": [0, 0, 0], "columns": [[1,0,0],[0,1,0],[0,0,1]]}}}})",
          R"({"surface": {"channels": {"one": {}}}})",
          R"({"surface": {"channels": []}})",
          R"({"surface": {"channels": {"1": {"columns": []}}}})",
          R"({"surface": {"uv_sets": {"a": "b"}}})",
          R"({"instance": {"hairs": {}}})",
          R"({"instance": {"hair": {"lenght": 1}}})",
          R"({"instance": {"map_channels": []}})",
          R"({"instance": {"map_channels": {"a": {"value": 1}}}})",
          R"({"instance": {"text_attributes": {"a": 1}}})",
          R"({"instance": {"typed_attributes": {"a": {"value": [1, 2, 3, 4, 5]}}}})",
          R"({"primitive": {}})",
          R"({"primitive": {"kind": 2336, "points": [[0, 0, 0]], "end_points": []}})",
          R"({"primitive": {"kind": 1, "points": [1]}})",
          R"({"values": []})",
          R"({"volume_ref": null})"})
        EXPECT_TRUE(refused(text)) << text;
}

} // namespace
