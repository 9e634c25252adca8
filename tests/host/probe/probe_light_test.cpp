// What a probe's "shade" gives of a surface: the scene's lights light the point, its objects shadow it.
// Expected values are worked out by hand: a point light sends power * cosine / distance^2.

#include "support/scene_texts.h"
#include "support/tolerances.h"
#include "support/witness_node.h"

using nlohmann::json;

namespace {

constexpr double kSampled = 0.02; // of 1024 samples of an edge that halves the sky

class ProbeLightTest : public support::SceneTest {
protected:
    // What the surface "s" of a scene sends to the eye at a context, beside other plugins.
    json shade(const std::string& surface, const std::string& plugins, const std::string& context = "")
    {
        const json values = ask(R"("s": {"type": "Surface", "params": {)" + surface + "}}" +
                                    (plugins.empty() ? "" : ", ") + plugins,
                                R"("plugin": "s", "op": "shade", "contexts": [{)" + context + "}]");
        EXPECT_TRUE(values.is_array()) << values;
        return values.is_array() ? values[0]["color"] : json::array({0, 0, 0, 0});
    }
    static void expectColor(const json& color, double r, double g, double b, double tolerance = 1e-6)
    {
        const double expected[] = {r, g, b};
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(color[i].get<double>(), expected[i], tolerance) << color;
    }
};

const std::string kTinted = R"("diffuse": [1, 0.5, 0.25])";
const std::string kWhite = R"("diffuse": 1)";
const std::string kLamp =
    R"("lamp": {"type": "PointLight", "params": {"position": [0, 0, 2], "intensity": 2, "color": [1, 1, 0.5]}})";

// A black object that lets nothing through, unless its look says otherwise.
std::string object(const std::string& shape, const std::string& transform,
                   const std::string& look = R"("diffuse": 0)", const std::string& node = "")
{
    return R"("mesh": {"type": "Mesh", "params": {"shape": ")" + shape +
           R"("}}, "look": {"type": "Surface", "params": {)" + look +
           R"(}}, "node": {"type": "Node", "params": {"geometry": "mesh", "material": "look", "transform": )" +
           transform + node + "}}";
}

// A square of side 2 over the origin, at z = 1.
const std::string kScreen = R"({"translate": [0, 0, 1], "rotate": [90, 0, 0]})";

TEST_F(ProbeLightTest, APointLightFallsWithTheSquareOfItsDistanceAndTheCosine)
{
    expectColor(shade(kTinted, kLamp), 0.5, 0.25, 0.0625);
    // 2.5 away, the cosine is 0.8: 2 * 0.8 / 6.25.
    expectColor(shade(kTinted, kLamp, R"("shade_point": [0, 1.5, 0])"), 0.256, 0.128, 0.032);
    EXPECT_EQ(shade(kTinted, kLamp)[3], 1);
}

TEST_F(ProbeLightTest, LightAddsToWhatTheSurfaceGivesOff)
{
    expectColor(shade(R"("diffuse": 0.5, "emission": [1, 0, 0.25], "opacity": 0.5)", kLamp), 0.625, 0.125,
                0.1875);
}

TEST_F(ProbeLightTest, LightsAdd)
{
    expectColor(shade(kWhite, kLamp + R"(, "sun": {"type": "DistantLight",
                    "params": {"direction": [0, 3, -4], "color": [0, 1, 0]}})"),
                0.5, 0.5 + 0.8, 0.25);
}

TEST_F(ProbeLightTest, TheSideTowardsTheEyeIsLit)
{
    expectColor(shade(kWhite, kLamp, R"("view": [0, 0, 1])"), 0, 0, 0);
    expectColor(shade(kWhite, kLamp, R"("view": [0, 0, 1], "shade_point": [0, 0, 3])"), 2, 2, 1);
    expectColor(shade(kWhite, kLamp, R"("normal": [0, 0.6, 0.8])"), 0.4, 0.4, 0.2);
}

TEST_F(ProbeLightTest, AnEvenDomeLightsAsItsColor)
{
    const std::string dome = R"("sky": {"type": "DomeLight", "params": {"color": [1, 0.5, 0]}})";
    expectColor(shade(kTinted, dome), 1, 0.25, 0, 1e-5);
    expectColor(shade(kTinted, dome, R"("normal": [1, 0, 0], "view": [-1, 0, 0])"), 1, 0.25, 0, 1e-5);
    expectColor(shade(kTinted, dome, R"("ray_depth": 2)"), 1, 0.25, 0, 1e-5);
}

TEST_F(ProbeLightTest, WithoutALightThereIsNone)
{
    expectColor(shade(kWhite, object("sphere", R"({"translate": [0, 0, 0]})")), 0, 0, 0);
    EXPECT_EQ(
        shade(R"("diffuse": "inf", "emission": 0.25)", object("sphere", R"({"translate": [0, 0, 0]})"))[0],
        0.25);
}

TEST_F(ProbeLightTest, WhatStandsInBetweenShadows)
{
    expectColor(shade(kWhite, kLamp + ", " + object("plane", kScreen)), 0, 0, 0);
    // Past its edge: at x = 2.5 the way to the lamp crosses z = 1 at x = 1.25.
    const double distance = 2.5 * 2.5 + 4.0, lit = 2.0 * 2.0 / (distance * std::sqrt(distance));
    expectColor(shade(kWhite, kLamp + ", " + object("plane", kScreen), R"("shade_point": [2.5, 0, 0])"), lit,
                lit, lit / 2);
    // Behind the lamp, and invisible.
    const std::string behind = R"({"translate": [0, 0, 3], "rotate": [90, 0, 0]})";
    expectColor(shade(kWhite, kLamp + ", " + object("plane", behind)), 0.5, 0.5, 0.25);
    expectColor(
        shade(kWhite, kLamp + ", " + object("plane", kScreen, R"("diffuse": 0)", R"(, "visible": false)")),
        0.5, 0.5, 0.25);
}

TEST_F(ProbeLightTest, WhatLetsLightThroughTintsTheShadow)
{
    expectColor(
        shade(kWhite, kLamp + ", " + object("plane", kScreen, R"("diffuse": 0, "opacity": [1, 0.25, 0.5])")),
        0, 0.375, 0.125);
}

TEST_F(ProbeLightTest, AWallBesideThePointTakesHalfTheSky)
{
    // A cube from x = -200 to 0 and from -100 to 100 along y and z.
    const std::string wall = object("cube", R"({"translate": [-100, 0, 0], "scale": [100, 100, 100]})");
    expectColor(shade(kWhite, R"("sky": {"type": "DomeLight"}, )" + wall, R"("shade_point": [0.01, 0, 0])"),
                0.5, 0.5, 0.5, kSampled);
}

TEST_F(ProbeLightTest, APointOfAnObjectIsNotShadowedByIt)
{
    const std::string ground = object("plane", R"({"rotate": [90, 0, 0], "scale": [50, 50, 50]})");
    expectColor(shade(kTinted, kLamp + ", " + ground), 0.5, 0.25, 0.0625);
    expectColor(shade(kTinted, kLamp + ", " + ground, R"("shade_point": [0, 1.5, 0])"), 0.256, 0.128, 0.032);
}

TEST_F(ProbeLightTest, WhatObjectsGiveOffLightsThePoint)
{
    // Within a shining cube light comes from everywhere.
    expectColor(
        shade(kTinted, object("cube", R"({"scale": [9, 9, 9]})", R"("diffuse": 0, "emission": [0.5, 1, 2])")),
        0.5, 0.5, 0.5, 1e-3);
}

TEST_F(ProbeLightTest, HitsOfItsRaysAreNoneOfTheProbesThreads)
{
    // The witness shows the thread in green and the stamp in red.
    const std::string shining =
        object("cube", R"({"scale": [9, 9, 9]})", R"("diffuse": 0, "emission": "w")") +
        R"(, "w": {"type": "Witness"})";
    for (const char* thread : {"0", "-1", "99"})
        EXPECT_NEAR(shade(kWhite, shining, std::string(R"("thread": )") + thread)[1].get<double>(), -1, 1e-3)
            << thread;
}

TEST_F(ProbeLightTest, EachFrameHasItsOwnLight)
{
    const auto scene =
        parse(support::sceneText(R"("s": {"type": "Surface", "params": {"diffuse": 1}}, )" + kLamp));
    const std::string request = R"("requests": [{"plugin": "s", "op": "shade"}])";
    const json answer = probe(*scene, R"({"ombrix_probe": 1, "frames": [{)" + request +
                                          R"(}, {"set": {"lamp": {"intensity": 6}}, )" + request + "}]}");
    EXPECT_EQ(answer["frames"][0]["results"][0]["values"][0]["color"][0], 0.5);
    EXPECT_EQ(answer["frames"][1]["results"][0]["values"][0]["color"][0], 1.5);
}

} // namespace
