#include "host/context/host_context.h"
#include "host/log/log.h"
#include "host/renderer/host_renderer.h"
#include "host/scene/scene_life.h"
#include "support/plain_projection.h"

#include <ombrix/mapping_interfaces.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <memory>
#include <random>

using namespace ombrix;
using OUtils::Transform;
using OUtils::UVWGenInterface;
using OUtils::UVWSample;
using OUtils::Vector;

namespace {

constexpr const char* kTypes[] = {"UVWPlanar", "UVWSpherical", "UVWCylindrical",
                                  "UVWBall",   "UVWCubic",     "UVWTriPlanar"};

// A scene in its first frame with the generator "g".
class ProjectionsTest : public testing::Test {
protected:
    void begin(const std::string& type, const std::string& parameters = "", const std::string& plugins = "",
               const std::string& settings = "")
    {
        frameLife.reset();
        renderLife.reset();
        Diagnostics diagnostics("test");
        scene = Scene::parse(R"({"ombrix_scene": 1, "settings": {)" + settings +
                                 R"(}, "plugins": {"g": {"type": ")" + type + R"(", "params": {)" +
                                 parameters + "}}" + plugins + "}}",
                             ".", registry, diagnostics);
        ASSERT_TRUE(scene) << (diagnostics.lines().empty() ? "" : diagnostics.lines()[0]);
        logger = std::make_unique<RecordingLogger>(false);
        renderer = std::make_unique<HostRenderer>(scene->settings(), 1, logger.get());
        live(scene->settings().frame);
    }
    // Begins a whole life, after the one before has ended.
    void live(double frame)
    {
        frameLife.reset();
        renderLife.reset();
        renderLife = std::make_unique<RenderLife>(*scene, *renderer);
        frameLife = std::make_unique<FrameLife>(*renderLife, frame);
    }
    UVWGenInterface& generator() const
    {
        return *static_cast<UVWGenInterface*>(scene->find("g")->plugin->getInterface(OUtils::EXT_UVWGEN));
    }
    void at(const Vector& point) { context.shadePoint = context.referencePoint = point; }

    void expectUV(const Vector& point, double u, double v, int valid = 1)
    {
        at(point);
        UVWSample sample;
        EXPECT_EQ(generator().evalUVW(context, &sample), valid);
        EXPECT_NEAR(sample.uvw.x, u, 2e-6);
        EXPECT_NEAR(sample.uvw.y, v, 2e-6);
        EXPECT_EQ(sample.uvw.z, 0.0f);
    }
    void expectNone(const Vector& point)
    {
        at(point);
        UVWSample sample;
        Transform map;
        EXPECT_EQ(generator().evalUVW(context, &sample), 0);
        EXPECT_EQ(generator().evalUVWDerivs(context, &sample), 0);
        EXPECT_EQ(generator().evalUVWTransform(context, &map), 0);
    }
    std::vector<std::string> logged()
    {
        std::vector<std::string> texts;
        for (const LogLine& line : logger->takeLines())
            texts.push_back(line.text);
        return texts;
    }

    PluginRegistry registry;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<RecordingLogger> logger;
    std::unique_ptr<HostRenderer> renderer;
    std::unique_ptr<RenderLife> renderLife;
    std::unique_ptr<FrameLife> frameLife;
    HostContext context;
};

} // namespace

TEST_F(ProjectionsTest, LeftAlonePutsTheMiddleOfTheImageInFront)
{
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        context.normal = {0.0f, 0.0f, 1.0f};
        begin(type);
        expectUV({0.0f, 0.0f, 1.0f}, 0.5, 0.5);
        EXPECT_TRUE(logged().empty());
    }
}

TEST_F(ProjectionsTest, EachIsTheProjectionOfItsName)
{
    const Vector point{0.5f, 0.25f, 0.75f};
    const support::PlainPoint plain{0.5, 0.25, 0.75};
    const auto expect = [&](const char* type, const std::string& parameters, const support::PlainUV& uv) {
        SCOPED_TRACE(type);
        begin(type, parameters);
        expectUV(point, uv[0], uv[1]);
    };
    context.normal = {0.0f, 1.0f, 0.0f};
    expect("UVWPlanar", "", support::plainPlanar(plain));
    expect("UVWSpherical", "", support::plainSpherical(plain, 180, 90));
    expect("UVWSpherical", R"("u_angle": 300, "v_angle": 100)", support::plainSpherical(plain, 300, 100));
    expect("UVWCylindrical", "", support::plainCylindrical(plain, 180));
    expect("UVWCylindrical", R"("u_angle": 300)", support::plainCylindrical(plain, 300));
    expect("UVWBall", "", support::plainBall(plain));
    expect("UVWCubic", "", support::plainCubic(plain));
    expect("UVWTriPlanar", "", support::plainTriPlanar(plain, {0, 1, 0}));
}

TEST_F(ProjectionsTest, TheTransformPlacesTheProjector)
{
    // Twice as large, a quarter turn about z, then moved: the projector's x is the world's y.
    begin("UVWPlanar",
          R"("transform": {"translate": [10, 20, 30], "rotate": [0, 0, 90], "scale": [2, 2, 2]})");
    expectUV({10, 20, 0}, 0.5, 0.5);
    expectUV({10, 22, 0}, 1.0, 0.5);
    expectUV({8, 20, 0}, 0.5, 1.0);
}

TEST_F(ProjectionsTest, InTheWorldTheSceneOriginCounts)
{
    begin("UVWPlanar", R"("transform": {"translate": [1000001, 0, 0]})", "",
          R"("scene_origin": [1000000, 0, 0])");
    expectUV({1.25f, 0, 0}, 0.625, 0.5);
}

TEST_F(ProjectionsTest, OnTheObjectTheImageMovesAlong)
{
    const std::string node =
        R"(, "n": {"type": "Node", "params": {"transform": {"translate": [5, 0, 0], "scale": [2, 2, 2]}}})";
    begin("UVWPlanar", R"("space": "object", "transform": {"translate": [0.5, 0, 0]})", node);
    context.hitInstance = scene->find("n")->plugin;
    // The world's 7 is the object's 1 and half a unit right of the projector.
    expectUV({7, 0, 0}, 0.75, 0.5);
    context.hitInstance = nullptr;
    expectUV({1, 0, 0}, 0.75, 0.5);
    begin("UVWPlanar", R"("space": "world", "transform": {"translate": [0.5, 0, 0]})", node);
    context.hitInstance = scene->find("n")->plugin;
    expectUV({1, 0, 0}, 0.75, 0.5);
}

TEST_F(ProjectionsTest, OnTheObjectTheObjectTurnsThePointFirst)
{
    // The world's y is the object's x, which the projector sees at half its size.
    begin("UVWPlanar", R"("space": "object", "transform": {"scale": [2, 1, 1]})",
          R"(, "n": {"type": "Node", "params": {"transform": {"rotate": [0, 0, 90]}}})");
    context.hitInstance = scene->find("n")->plugin;
    expectUV({0, 1, 0}, 0.75, 0.5);
    context.positionDiffU = {0.0f, 0.1f, 0.0f};
    context.positionDiffV = {0.1f, 0.0f, 0.0f};
    UVWSample sample;
    generator().evalUVWDerivs(context, &sample);
    EXPECT_NEAR(sample.du.x, 0.025, 1e-7);
    EXPECT_NEAR(sample.du.y, 0.0, 1e-7);
    EXPECT_NEAR(sample.dv.x, 0.0, 1e-7);
    EXPECT_NEAR(sample.dv.y, -0.05, 1e-7);
}

TEST_F(ProjectionsTest, OnTheObjectTheSceneOriginIsTheObjectsAffair)
{
    begin("UVWPlanar", R"("space": 1)",
          R"(, "n": {"type": "Node", "params": {"transform": {"translate": [1000005, 0, 0]}}})",
          R"("scene_origin": [1000000, 0, 0])");
    context.hitInstance = scene->find("n")->plugin;
    expectUV({5.5f, 0, 0}, 0.75, 0.5);
}

TEST_F(ProjectionsTest, AnotherSpaceThanTheTwoIsTheWorld)
{
    begin("UVWPlanar", R"("space": 7)",
          R"(, "n": {"type": "Node", "params": {"transform": {"translate": [5, 0, 0]}}})");
    context.hitInstance = scene->find("n")->plugin;
    expectUV({0.5f, 0, 0}, 0.75, 0.5);
}

TEST_F(ProjectionsTest, TheNormalTurnsAndStretchesWithTheProjector)
{
    // In the world the normal leans towards x; flattened along y, the surface faces the projector's y.
    begin("UVWTriPlanar", R"("transform": {"scale": [1, 0.1, 1]})");
    context.normal = {0.8f, 0.6f, 0.0f};
    expectUV({0.5f, 0.05f, 0.25f}, 0.375, 0.75);
    begin("UVWTriPlanar", R"("transform": {"scale": [1, 10, 1]})");
    expectUV({0.5f, 5.0f, 0.25f}, 0.75, 0.375);
}

TEST_F(ProjectionsTest, WithoutWrapTheImageEnds)
{
    begin("UVWPlanar", R"("wrap": false)");
    expectUV({1, 1, 0}, 1, 1);
    expectUV({-1, -1, 0}, 0, 0);
    expectUV({1.001f, 0, 0}, 1.0005, 0.5, 0);
    expectUV({0, -1.001f, 0}, 0.5, -0.0005, 0);
    begin("UVWPlanar");
    expectUV({3, -5, 0}, 2, -2);
}

TEST_F(ProjectionsTest, APointThatIsNoNumberHasNoCoordinates)
{
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        begin(type);
        expectNone({kNaN, kNaN, kNaN});
        expectNone({kInfinity, kInfinity, kInfinity});
    }
}

TEST_F(ProjectionsTest, AProjectorThatIsFlatProjectsNothingAndSaysSo)
{
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        begin(type, R"("transform": {"scale": [1, 0, 1]})");
        expectNone({0, 0, 1});
        EXPECT_EQ(logged(),
                  (std::vector<std::string>{"projection \"g\": its transform flattens it or is not finite; "
                                            "there it projects nothing"}));
    }
}

TEST_F(ProjectionsTest, AnAngleOfNothingProjectsNothingAndSaysSo)
{
    const std::vector<std::string> warning{
        "projection \"g\": an angle has to be above 0; it projects nothing"};
    for (const char* angle : {"0", "-10", "\"nan\""}) {
        begin("UVWSpherical", std::string("\"u_angle\": ") + angle);
        expectNone({0, 0, 1});
        EXPECT_EQ(logged(), warning);
        begin("UVWSpherical", std::string("\"v_angle\": ") + angle);
        expectNone({0, 0, 1});
        begin("UVWCylindrical", std::string("\"u_angle\": ") + angle);
        expectNone({0, 0, 1});
        EXPECT_EQ(logged(), warning);
    }
}

TEST_F(ProjectionsTest, DerivativesAreTheDifferencesOfNeighbours)
{
    std::mt19937 random(9);
    std::uniform_real_distribution<float> coordinate(0.3f, 1.0f), step(-1e-2f, 1e-2f);
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        context.normal = {0.1f, 0.2f, 0.9f};
        begin(type,
              R"("transform": {"rotate": [10, 20, 30], "scale": [2, 3, 4], "translate": [-3, -2, -5]})");
        for (int i = 0; i < 200; ++i) {
            const Vector point{coordinate(random), coordinate(random), coordinate(random)};
            const Vector steps[2] = {{step(random), step(random), step(random)},
                                     {step(random), step(random), step(random)}};
            at(point);
            context.positionDiffU = steps[0];
            context.positionDiffV = steps[1];
            UVWSample sample;
            ASSERT_EQ(generator().evalUVWDerivs(context, &sample), 1);
            for (int axis = 0; axis < 2; ++axis) {
                UVWSample before, after;
                at(point - steps[axis]);
                generator().evalUVW(context, &before);
                at(point + steps[axis]);
                generator().evalUVW(context, &after);
                const OUtils::Vector4& got = axis == 0 ? sample.du : sample.dv;
                ASSERT_NEAR(got.x, (after.uvw.x - before.uvw.x) / 2, 1e-6);
                ASSERT_NEAR(got.y, (after.uvw.y - before.uvw.y) / 2, 1e-6);
                ASSERT_EQ(got.z, 0.0f);
            }
        }
    }
}

TEST_F(ProjectionsTest, TheTransformIsTheMapAroundTheReferencePoint)
{
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        context.normal = {0.1f, 0.2f, 0.9f};
        begin(type, R"("transform": {"rotate": [10, 20, 30], "scale": [2, 3, 4]})");
        at({1.5f, 1.0f, 2.5f});
        UVWSample there;
        generator().evalUVWDerivs(context, &there);
        context.positionDiffU = {1e-3f, -2e-3f, 1.5e-3f};
        context.shadePoint = context.referencePoint + context.positionDiffU;
        Transform map;
        UVWSample moved;
        EXPECT_EQ(generator().evalUVWTransform(context, &map), 1);
        EXPECT_EQ(generator().evalUVW(context, &moved), 1);
        EXPECT_FLOAT_EQ(map.offset.x, there.uvw.x);
        EXPECT_FLOAT_EQ(map.offset.y, there.uvw.y);
        const Vector predicted = map.matrix * context.positionDiffU + map.offset;
        EXPECT_NEAR(predicted.x, moved.uvw.x, 2e-6);
        EXPECT_NEAR(predicted.y, moved.uvw.y, 2e-6);
        EXPECT_EQ(predicted.z, 0.0f);
    }
}

TEST_F(ProjectionsTest, AnAnimatedProjectorMovesWithinTheShutter)
{
    const std::string moving =
        R"("transform": {"times": [0, 2], "values": [{"translate": [0, 0, 0]}, {"translate": [2, 0, 0]}]})";
    begin("UVWPlanar", moving, "",
          R"("motion_blur": {"on": true, "shutter_length": 1, "geometry_samples": 3})");
    // Around frame 1 the shutter is open from 0.5 to 1.5.
    context.rayTime = 0.0;
    expectUV({0.5f, 0, 0}, 0.5, 0.5);
    context.rayTime = 1.0;
    expectUV({1.5f, 0, 0}, 0.5, 0.5);
    context.rayTime = 0.5;
    expectUV({1.0f, 0, 0}, 0.5, 0.5);
    begin("UVWPlanar", moving);
    expectUV({1.0f, 0, 0}, 0.5, 0.5);
}

TEST_F(ProjectionsTest, LivesTwice)
{
    for (const char* type : kTypes) {
        SCOPED_TRACE(type);
        context.normal = {0.0f, 0.0f, 1.0f};
        begin(type, R"("transform": {"translate": [1, 0, 0]})");
        for (int life = 0; life < 2; ++life) {
            expectUV({1.0f, 0.0f, 1.0f}, 0.5, 0.5);
            live(2.0);
        }
    }
}
