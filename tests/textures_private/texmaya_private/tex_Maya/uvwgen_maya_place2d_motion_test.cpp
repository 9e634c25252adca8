// The placement node's samples in time and its GPU text.

#include "tex_maya_test.h"

#include "host/gpu/host_gpu.h"
#include "support/mapped_inputs.h"

#include <cstring>

namespace {

using namespace support;
using namespace OUtils;

// The interval of the frame runs from 0 to 4.
class MovingPlace : public TestNode {
public:
    MovingPlace() : TestNode(descriptor("UVWGenMayaPlace2dTexture"))
    {
        renderer.frame.motionBlur = true;
        renderer.frame.intervalStart = 0.0;
        renderer.frame.intervalEnd = 4.0;
        renderer.frame.geometrySamples = 2;
        context.surfaceObject = &surface;
        surface.transform = offsetBy(0.25f, 0.5f, 0.0f);
    }
    void nextFrame()
    {
        life()->frameEnd(&renderer);
        life()->frameBegin(&renderer);
    }
    // u at a time within the shutter.
    float u(double rayTime)
    {
        context.rayTime = rayTime;
        ++context.sampleStamp;
        UVWSample sample;
        interfaceOf<UVWGenInterface>(base(), EXT_UVWGEN)->evalUVW(context, &sample);
        return sample.uvw.x;
    }
    // offset_u goes from 0 at time 0 to 1 at time 2 and stays: a kink in the middle.
    void moveOffset(int samples)
    {
        writeAnimated(*life(), "offset_u", 0.0, 0.0f, 2.0, 1.0f);
        set("nsamples", samples);
    }

    TestSurface surface;
};

TEST(PlaceInMotion, OneSampleHoldsTheFramesValue)
{
    MovingPlace place;
    place.renderer.frame.time = 1.0;
    place.moveOffset(1);
    for (const double time : {0.0, 0.5, 1.0})
        EXPECT_SAME_BITS(place.u(time), 0.75f);
}

TEST(PlaceInMotion, WithoutMotionBlurThereIsOneSample)
{
    MovingPlace place;
    place.renderer.frame.motionBlur = false;
    place.renderer.frame.time = 2.0;
    place.moveOffset(3);
    for (const double time : {0.0, 0.5, 1.0})
        EXPECT_SAME_BITS(place.u(time), 1.25f);
}

TEST(PlaceInMotion, SamplesAreSpreadOverTheInterval)
{
    MovingPlace place;
    place.moveOffset(2); // 0 and 1
    EXPECT_SAME_BITS(place.u(0.0), 0.25f);
    EXPECT_SAME_BITS(place.u(0.5), 0.75f);
    EXPECT_SAME_BITS(place.u(1.0), 1.25f);
    place.moveOffset(3); // 0, 1, 1
    EXPECT_SAME_BITS(place.u(0.0), 0.25f);
    EXPECT_SAME_BITS(place.u(0.25), 0.75f);
    EXPECT_SAME_BITS(place.u(0.5), 1.25f);
    EXPECT_SAME_BITS(place.u(0.75), 1.25f);
    EXPECT_SAME_BITS(place.u(1.0), 1.25f);
}

TEST(PlaceInMotion, TimesOutsideTheShutterAreExtrapolated)
{
    MovingPlace place;
    place.moveOffset(2);
    EXPECT_SAME_BITS(place.u(-0.5), -0.25f);
    EXPECT_SAME_BITS(place.u(1.5), 1.75f);
}

TEST(PlaceInMotion, NoSamplesMeansTheGlobalNumber)
{
    MovingPlace place;
    place.renderer.frame.geometrySamples = 3;
    place.moveOffset(0);
    EXPECT_SAME_BITS(place.u(0.5), 1.25f); // two samples would give 0.75
    place.renderer.frame.geometrySamples = 0;
    place.renderer.frame.time = 1.0;
    place.nextFrame();
    EXPECT_SAME_BITS(place.u(1.0), 0.75f); // one sample: the frame's value
    place.moveOffset(-4);
    EXPECT_SAME_BITS(place.u(1.0), 0.75f);
}

TEST(PlaceInMotion, AnAnimatedNumberWinsOverItsTexture)
{
    TestFloat texture(8.0f);
    MovingPlace place;
    place.connect("offset_u_tex", texture);
    place.moveOffset(1);
    EXPECT_SAME_BITS(place.u(0.0), 8.25f);
    place.moveOffset(2);
    EXPECT_SAME_BITS(place.u(0.0), 0.25f);
    EXPECT_SAME_BITS(place.u(1.0), 1.25f);
    // For that frame alone: where the number rests, the texture has its say again.
    place.renderer.frame.intervalStart = 10.0;
    place.renderer.frame.intervalEnd = 11.0;
    place.nextFrame();
    EXPECT_SAME_BITS(place.u(0.5), 8.25f);
}

TEST(PlaceInMotion, ATextureReplacesRestingNumbers)
{
    TestFloat texture(8.0f);
    MovingPlace place;
    place.connect("offset_v_tex", texture);
    place.moveOffset(2);
    EXPECT_SAME_BITS(place.u(0.5), 0.75f);
    UVWSample sample;
    interfaceOf<UVWGenInterface>(place.base(), EXT_UVWGEN)->evalUVW(place.context, &sample);
    EXPECT_SAME_BITS(sample.uvw.y, 8.5f);
}

TEST(PlaceInMotion, MatricesFollowTheTime)
{
    MovingPlace place;
    writeAnimated(*place.life(), "repeat_u", 0.0, 1.0f, 4.0, 3.0f);
    place.set("nsamples", 2);
    EXPECT_SAME_BITS(place.u(0.5), 0.5f);
    Transform transform;
    interfaceOf<UVWGenInterface>(place.base(), EXT_UVWGEN)->evalUVWTransform(place.context, &transform);
    EXPECT_SAME_BITS(transform.matrix.columns[0].x, 2.0f);
}

const std::string kIdentity = "uvw_transform 1.000000,0.000000,0.000000,0.000000,1.000000,0.000000,0.000000,"
                              "0.000000,1.000000,0.000000,0.000000,0.000000\n";

TEST(PlaceSource, WritesTransformChannelAndName)
{
    MovingPlace place;
    WrittenSource written = sourceOf(place.rtTexture());
    EXPECT_EQ(written.answer, 1);
    EXPECT_EQ(written.text, kIdentity + "map_channel 1\nuvwGenMayaPlace2dTexture\n");
    place.set("uvw_channel", 7).set("repeat_u", 2.0f).set("offset_v", 0.25f);
    place.set("translate_frame_u", 0.5f).set("coverage_u", 4.0f);
    written = sourceOf(place.rtTexture());
    EXPECT_EQ(written.text, "uvw_transform 2.000000,0.000000,0.000000,0.000000,1.000000,0.000000,0.000000,"
                            "0.000000,1.000000,-1.000000,0.250000,0.000000\n"
                            "map_channel 7\nuvwGenMayaPlace2dTexture\n");
}

TEST(PlaceSource, WritesANamedChannelByItsId)
{
    MovingPlace place;
    place.renderer.channelNames.getNameId("map1");
    place.renderer.channelNames.getNameId("map2");
    write(*place.life(), "uv_set_name", ombrix::Value(std::string("map2")));
    place.nextFrame();
    EXPECT_EQ(sourceOf(place.rtTexture()).text, kIdentity + "map_channel_id 2\nuvwGenMayaPlace2dTexture\n");
}

TEST(PlaceSource, EmbedsItsGenerator)
{
    TestGenerator inner;
    MovingPlace place;
    place.connect("uvwgen", inner);
    EXPECT_EQ(sourceOf(place.rtTexture()).text,
              kIdentity +
                  "map_channel 1\ngenerator '' theTag MaterialDescriptor\nuvwGenMayaPlace2dTexture\n");
}

float floatAt(const ombrix::GpuBlock& block, std::size_t offset)
{
    float number;
    std::memcpy(&number, block.bytes.data() + offset, sizeof number);
    return number;
}

TEST(PlaceSource, UploadsItsNumbersOnceAFrame)
{
    MovingPlace place;
    place.set("coverage_u", 0.5f).set("translate_frame_v", 0.125f).set("stagger", 1).set("clamp_v", 1);
    ombrix::HostOCLData data(&place.renderer, true);
    TextSink sink;
    place.rtTexture()->getSource("", "", "MaterialDescriptor", sink, data);
    ASSERT_EQ(data.blocks().size(), 1u);
    const ombrix::GpuBlock& block = data.blocks()[0];
    EXPECT_EQ(block.owner, place.base());
    ASSERT_EQ(block.bytes.size(), 80u);
    EXPECT_EQ(floatAt(block, 0), 0.5f);
    EXPECT_EQ(floatAt(block, 44), 0.125f);
    EXPECT_EQ(block.bytes[48], 1 | 2 | 32);
    EXPECT_EQ(block.bytes[52], 1);
    const std::string line = "uvParamsPtr_id " + std::to_string(block.id) + "\n";
    EXPECT_EQ(sink.text.substr(sink.text.size() - line.size()), line);

    // A second consumer gets the same block.
    const std::string first = sink.text;
    sink.text.clear();
    place.rtTexture()->getSource("", "", "MaterialDescriptor", sink, data);
    EXPECT_EQ(sink.text, first);
    EXPECT_EQ(data.blocks().size(), 1u);

    // The frame's end gives it back.
    place.nextFrame();
    EXPECT_TRUE(data.blocks().empty());
    place.rtTexture()->getSource("", "", "MaterialDescriptor", sink, data);
    EXPECT_EQ(data.blocks().size(), 1u);
    place.nextFrame();
}

TEST(PlaceSource, WritesNothingOfABlockWithoutAStore)
{
    MovingPlace place;
    ombrix::HostOCLData data(&place.renderer, false);
    TextSink sink;
    place.rtTexture()->getSource("", "", "MaterialDescriptor", sink, data);
    EXPECT_EQ(sink.text, kIdentity + "map_channel 1\nuvwGenMayaPlace2dTexture\n");
    place.nextFrame();
}

} // namespace
