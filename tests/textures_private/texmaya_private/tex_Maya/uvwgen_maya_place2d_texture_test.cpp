// The placement node: its inputs, its memo, its samples in time and its GPU text. The chain itself has
// tests of its own.

#include "tex_maya_test.h"

#include "plugin_frame/noise_interface.h"
#include "support/mapped_inputs.h"

#include <cmath>

namespace {

using namespace support;
using namespace OUtils;

class PlaceNode : public TestNode {
public:
    PlaceNode() : TestNode(descriptor("UVWGenMayaPlace2dTexture")) { context.surfaceObject = &surface; }
    PlaceNode& set(const char* parameter, ombrix::Value value)
    {
        write(*life(), parameter, std::move(value));
        nextFrame();
        return *this;
    }
    void nextFrame()
    {
        life()->frameEnd(&renderer);
        life()->frameBegin(&renderer);
    }
    UVWGenInterface* generator() const { return interfaceOf<UVWGenInterface>(base(), EXT_UVWGEN); }

    struct Place {
        int valid;
        Vector4 uvw;
    };
    // At a point of its own, so that no memo answers.
    Place at(float u, float v)
    {
        surface.transform.offset = {u, v, 0.375f};
        ++context.sampleStamp;
        UVWSample sample;
        const int valid = generator()->evalUVW(context, &sample);
        return {valid, sample.uvw};
    }

    TestSurface surface;
};

TEST(UVWGenMayaPlace2dTexture, WithoutASurfaceIsTheIdentity)
{
    PlaceNode node;
    node.context.surfaceObject = nullptr;
    node.context.shadePoint = {0.25f, 0.5f, 0.75f};
    node.set("repeat_u", 2.0f);
    UVWSample sample;
    EXPECT_EQ(node.generator()->evalUVW(node.context, &sample), 1);
    // The point is mapped by the columns, relative to the reference point.
    EXPECT_SAME_UVW(sample.uvw, 0.5f, 0.5f, 0.75f);
    node.surface.mapped = false;
    node.context.surfaceObject = &node.surface;
    ++node.context.sampleStamp;
    EXPECT_EQ(node.generator()->evalUVW(node.context, &sample), 1);
    EXPECT_SAME_UVW(sample.uvw, 0.5f, 0.5f, 0.75f);
}

TEST(UVWGenMayaPlace2dTexture, MapsPointAndDerivatives)
{
    PlaceNode node;
    node.surface.transform.matrix = {{{2.0f, 0.0f, 0.5f}, {0.0f, 4.0f, 0.0f}, {1.0f, 0.0f, 1.0f}}};
    node.surface.transform.offset = {0.25f, 0.5f, 0.75f};
    node.set("repeat_u", 3.0f);
    node.context.shadePoint = {1.25f, 2.5f, 3.125f};
    node.context.referencePoint = {1.0f, 2.0f, 3.0f};
    node.context.positionDiffU = {1.0f, 0.0f, 0.0f};
    node.context.positionDiffV = {0.0f, 0.5f, 1.0f};
    UVWSample sample;
    EXPECT_EQ(node.generator()->evalUVWDerivs(node.context, &sample), 1);
    EXPECT_SAME_UVW(sample.uvw, 3.0f * (0.25f + 0.5f + 0.125f), 2.5f, 1.0f);
    EXPECT_SAME_UVW(sample.du, 6.0f, 0.0f, 0.5f);
    EXPECT_SAME_UVW(sample.dv, 3.0f, 2.0f, 1.0f);
    Transform transform;
    EXPECT_EQ(node.generator()->evalUVWTransform(node.context, &transform), 1);
    EXPECT_SAME_UVW(transform.offset, 0.75f, 0.5f, 0.75f);
    EXPECT_SAME_UVW(transform.matrix.columns[2], 3.0f, 0.0f, 1.0f);
}

TEST(UVWGenMayaPlace2dTexture, AsksForItsChannel)
{
    struct ChannelInput final : OmbrixTextureInt {
        ChannelInput() : OmbrixTextureInt(nullptr) {}
        int evalInt(const OmbrixContext&) override { return 9; }
    } channel;
    PlaceNode node;
    node.at(0.25f, 0.5f);
    node.set("uvw_channel", 5).at(0.25f, 0.5f);
    writeReference(*node.life(), "uvw_channel_tex", &channel);
    node.nextFrame();
    node.at(0.25f, 0.5f);
    EXPECT_EQ(node.surface.channels, (std::vector<int>{1, 5, 9}));
    EXPECT_TRUE(node.surface.names.empty());
}

TEST(UVWGenMayaPlace2dTexture, ASurfaceThatRefusesMakesItInvalid)
{
    PlaceNode node;
    node.surface.known = false;
    node.set("offset_u", 0.5f);
    EXPECT_EQ(node.at(0.25f, 0.5f).valid, 0);
}

TEST(UVWGenMayaPlace2dTexture, AsksByNameFirstAndByNumberForAnUnknownOne)
{
    PlaceNode node;
    const int id = node.renderer.channelNames.getNameId("map2");
    node.surface.namedTransform = offsetBy(0.75f, 0.25f, 0.0f);
    node.set("uv_set_name", std::string("map2"));
    EXPECT_SAME_UVW(node.at(0.125f, 0.5f).uvw, 0.125f, 0.5f, 0.375f);
    EXPECT_EQ(node.surface.names, std::vector<int>{id});
    EXPECT_EQ(node.surface.channels, std::vector<int>{1});
    node.surface.knownName = id;
    EXPECT_SAME_UVW(node.at(0.125f, 0.5f).uvw, 0.75f, 0.25f, 0.0f);
    EXPECT_EQ(node.surface.channels.size(), 1u);
}

TEST(UVWGenMayaPlace2dTexture, TakesAnotherGeneratorsTransformAndFlag)
{
    TestGenerator inner;
    inner.transform = offsetBy(0.25f, 0.5f, 0.75f);
    PlaceNode node;
    node.connect("uvwgen", inner);
    node.set("offset_u", 0.125f);
    PlaceNode::Place place = node.at(9.0f, 9.0f);
    EXPECT_EQ(place.valid, 1);
    EXPECT_SAME_UVW(place.uvw, 0.375f, 0.5f, 0.75f);
    EXPECT_TRUE(node.surface.channels.empty());
    inner.transformValid = 0;
    place = node.at(9.0f, 9.0f);
    EXPECT_EQ(place.valid, 0);
    EXPECT_SAME_UVW(place.uvw, 0.25f, 0.5f, 0.75f);
    inner.generates = false;
    node.nextFrame();
    EXPECT_SAME_UVW(node.at(9.0f, 8.0f).uvw, 9.125f, 8.0f, 0.375f);
}

TEST(UVWGenMayaPlace2dTexture, SwitchesReachTheirAxes)
{
    PlaceNode node;
    node.set("mirror_u", true);
    EXPECT_SAME_UVW(node.at(1.25f, 1.25f).uvw, 1.75f, 1.25f, 0.375f);
    node.set("mirror_u", false).set("mirror_v", true);
    EXPECT_SAME_UVW(node.at(1.25f, 1.25f).uvw, 1.25f, 1.75f, 0.375f);
    node.set("mirror_v", false).set("stagger", true);
    EXPECT_SAME_UVW(node.at(1.25f, 1.25f).uvw, 1.75f, 1.25f, 0.375f);
    node.set("stagger", false).set("wrap_u", false);
    EXPECT_EQ(node.at(1.25f, 1.25f).valid, 0);
    EXPECT_EQ(node.at(0.25f, 1.25f).valid, 1);
    node.set("wrap_u", true).set("wrap_v", false);
    EXPECT_EQ(node.at(1.25f, 0.25f).valid, 1);
    EXPECT_EQ(node.at(0.25f, 1.25f).valid, 0);
    node.set("wrap_v", true).set("clamp_u", true);
    EXPECT_SAME_UVW(node.at(1.25f, 1.25f).uvw, 1.0f - 1e-6f, 1.25f, 0.375f);
    node.set("clamp_u", false).set("clamp_v", true);
    EXPECT_SAME_UVW(node.at(1.25f, 1.25f).uvw, 1.25f, 1.0f - 1e-6f, 0.375f);
}

TEST(UVWGenMayaPlace2dTexture, EveryTextureReplacesItsNumber)
{
    for (const char* name :
         {"coverage_u", "coverage_v", "translate_frame_u", "translate_frame_v", "rotate_frame", "repeat_u",
          "repeat_v", "offset_u", "offset_v", "rotate_uv", "noise_u", "noise_v"}) {
        TestFloat texture(0.75f);
        PlaceNode plain, textured;
        plain.set(name, 0.75f);
        textured.connect((std::string(name) + "_tex").c_str(), texture);
        const PlaceNode::Place expected = plain.at(0.3f, 0.7f), unplaced = textured.at(0.3f, 0.7f);
        EXPECT_EQ(unplaced.valid, expected.valid) << name;
        EXPECT_SAME_UVW(unplaced.uvw, expected.uvw.x, expected.uvw.y, 0.375f);
        EXPECT_GT(std::fabs(expected.uvw.x - 0.3f) + std::fabs(expected.uvw.y - 0.7f), 1e-3f) << name;
    }
}

// The points that the surface is asked for by two look-ups at one point.
std::size_t questionsAtOnePoint(PlaceNode& node)
{
    ++node.context.sampleStamp;
    node.surface.channels.clear();
    UVWSample sample;
    Transform transform;
    node.generator()->evalUVW(node.context, &sample);
    node.generator()->evalUVWDerivs(node.context, &sample);
    node.generator()->evalUVWTransform(node.context, &transform);
    return node.surface.channels.size();
}

TEST(UVWGenMayaPlace2dTexture, RunsTheChainOnceForAPoint)
{
    PlaceNode node;
    EXPECT_EQ(questionsAtOnePoint(node), 1u);
    node.context.shadeFlags = noUVWCache;
    EXPECT_EQ(questionsAtOnePoint(node), 3u);
    node.context.shadeFlags = noTexCache;
    EXPECT_EQ(questionsAtOnePoint(node), 1u);
    for (const auto& [thread, questions] : {std::pair(-1, 3u), {0, 1u}, {1, 3u}}) {
        node.context.threadRecord->threadIndex = thread;
        EXPECT_EQ(questionsAtOnePoint(node), questions) << thread;
    }
}

TEST(UVWGenMayaPlace2dTexture, BringsItsMemoWithTheFrameWhenTheRenderDidNot)
{
    PlaceNode node;
    node.life()->renderEnd(&node.renderer);
    EXPECT_EQ(questionsAtOnePoint(node), 3u); // the render's end took it
    node.nextFrame();
    EXPECT_EQ(questionsAtOnePoint(node), 1u);
}

TEST(UVWGenMayaPlace2dTexture, AnswersShiftedPointsFromTheMemo)
{
    PlaceNode node;
    node.set("repeat_u", 2.0f).at(0.25f, 0.5f);
    node.surface.transform.offset.x = 77.0f;
    node.context.shadePoint = {0.125f, 0.0f, 0.0f};
    UVWSample sample;
    node.generator()->evalUVW(node.context, &sample);
    EXPECT_SAME_UVW(sample.uvw, 0.75f, 0.5f, 0.375f);
    // A look-up that may not use the memo leaves it alone.
    node.context.shadeFlags = noUVWCache;
    node.generator()->evalUVW(node.context, &sample);
    EXPECT_SAME_UVW(sample.uvw, 154.25f, 0.5f, 0.375f);
    node.context.shadeFlags = 0;
    node.generator()->evalUVW(node.context, &sample);
    EXPECT_SAME_UVW(sample.uvw, 0.75f, 0.5f, 0.375f);
    node.nextFrame();
    node.generator()->evalUVW(node.context, &sample);
    EXPECT_SAME_UVW(sample.uvw, 154.25f, 0.5f, 0.375f);
}

TEST(UVWGenMayaPlace2dTexture, RemembersThatAPointIsOffTheImage)
{
    PlaceNode node;
    node.set("wrap_u", false);
    EXPECT_EQ(node.at(1.5f, 0.5f).valid, 0);
    node.surface.transform.offset.x = 0.5f;
    UVWSample sample;
    EXPECT_EQ(node.generator()->evalUVW(node.context, &sample), 0);
    EXPECT_EQ(sample.uvw.x, 1.5f);
}

TEST(UVWGenMayaPlace2dTexture, PassesAGivenSurfacesOwnCoordinatesOn)
{
    PlaceNode node;
    node.set("uvw_channel", 4).set("repeat_u", 8.0f);
    UVWSample sample;
    EXPECT_EQ(node.generator()->evalUVWForChannel(nullptr, node.context, &sample), 0);
    EXPECT_EQ(node.generator()->evalUVWForChannel(&node.surface, node.context, &sample), 7);
    EXPECT_EQ(node.surface.sampledChannels, std::vector<int>{4});
    EXPECT_SAME_UVW(sample.uvw, 1.0f, 2.0f, 3.0f);
}

TEST(UVWGenMayaPlace2dTexture, SharesTheNoiseOfTheRender)
{
    PlaceNode node;
    auto* noise = find<nezaiva::NoiseInterface>(&node.renderer);
    ASSERT_NE(noise, nullptr);
    EXPECT_EQ(noise->references, 1);
    nezaiva::acquireSharedNoise(node.renderer);
    node.life()->renderEnd(&node.renderer);
    EXPECT_EQ(noise->references, 1);
    node.life()->renderBegin(&node.renderer);
    EXPECT_EQ(noise->references, 2);
    nezaiva::releaseSharedNoise(noise, node.renderer);
}

TEST(UVWGenMayaPlace2dTexture, OffersGeneratorAndGpuTexture)
{
    PlaceNode node;
    EXPECT_NE(node.generator(), nullptr);
    EXPECT_NE(node.rtTexture(), nullptr);
    EXPECT_EQ(node.texture(), nullptr);
}

} // namespace
