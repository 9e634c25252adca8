// The value textures, ContextColor, the conversions and UVWChannel, as scenes and probes see them.

#include "support/scene_texts.h"

#include <nlohmann/json.hpp>

using namespace ombrix;
using nlohmann::json;

namespace {

class ValueTexturesTest : public support::SceneTest {
protected:
    json value(const std::string& type, const std::string& params, const std::string& op,
               const std::string& context = "{}", const std::string& others = "")
    {
        return ask(R"("t": {"type": ")" + type + R"(", "params": {)" + params + "}}" + others,
                   R"("plugin": "t", "op": ")" + op + R"(", "contexts": [)" + context + "]")[0];
    }
    static json j(const char* text) { return json::parse(text); }
};

TEST_F(ValueTexturesTest, ColorValueIsWhiteUntilItIsSet)
{
    EXPECT_EQ(value("ColorValue", "", "color"), j("[1, 1, 1, 1]"));
    EXPECT_EQ(value("ColorValue", R"("value": [0.25, 0.5, 0.75])", "color"), j("[0.25, 0.5, 0.75, 1]"));
    EXPECT_EQ(value("ColorValue", R"("value": [1, 2, 3, 4])", "color"), j("[1, 2, 3, 4]"));
    EXPECT_EQ(value("ColorValue", R"("value": ["nan", "inf", "-inf", 1])", "color"),
              j(R"(["nan", "inf", "-inf", 1])"));
}

TEST_F(ValueTexturesTest, BoundsAreTheValueUntilTheyAreSet)
{
    EXPECT_EQ(value("ColorValue", "", "color_bounds"), j("[[1, 1, 1, 1], [1, 1, 1, 1]]"));
    EXPECT_EQ(value("ColorValue", R"("value": [1, 2, 3, 4])", "color_bounds"),
              j("[[1, 2, 3, 4], [1, 2, 3, 4]]"));
    EXPECT_EQ(value("ColorValue", R"("value": 0.5, "upper": [9, 8, 7, 6])", "color_bounds"),
              j("[[0.5, 0.5, 0.5, 1], [9, 8, 7, 6]]"));
    EXPECT_EQ(value("FloatValue", R"("value": 3, "lower": -1)", "float_bounds"), j("[-1, 3]"));
    EXPECT_EQ(value("FloatValue", "", "float_bounds"), j("[1, 1]"));
}

TEST_F(ValueTexturesTest, GradientHasFourNumbers)
{
    EXPECT_EQ(value("ColorValue", "", "color_gradient"), j("[0, 0, 0, 0]"));
    EXPECT_EQ(value("ColorValue", R"("gradient": [1, 2, 3, 4])", "color_gradient"), j("[1, 2, 3, 4]"));
    EXPECT_EQ(value("FloatValue", R"("gradient": [5, 6, 7, 8])", "float_gradient"), j("[5, 6, 7, 8]"));
}

TEST_F(ValueTexturesTest, OtherKindsGiveTheirValue)
{
    EXPECT_EQ(value("FloatValue", "", "float"), 1);
    EXPECT_EQ(value("IntValue", "", "int"), 0);
    EXPECT_EQ(value("IntValue", R"("value": -7)", "int"), -7);
    EXPECT_EQ(value("VectorValue", R"("value": [1, -2, 3.5])", "vector"), j("[1, -2, 3.5]"));
    EXPECT_EQ(value("TransformValue", "", "transform"),
              j(R"({"columns": [[1, 0, 0], [0, 1, 0], [0, 0, 1]], "offset": [0, 0, 0]})"));
    EXPECT_EQ(value("TransformValue", R"("value": {"rotate": [0, 90, 0]})", "transform")["columns"],
              j("[[0, 0, -1], [0, 1, 0], [1, 0, 0]]"));
}

TEST_F(ValueTexturesTest, ValueMayComeFromAnotherTexture)
{
    EXPECT_EQ(value("FloatValue", R"("value": "o")", "float", R"({"values": {"o": 9}})",
                    R"(, "o": {"type": "FloatValue"})"),
              9);
    EXPECT_EQ(value("ColorValue", R"("value": "o")", "color_bounds", "{}",
                    R"(, "o": {"type": "ColorValue", "params": {"lower": 0.5, "upper": 2}})"),
              j("[[0.5, 0.5, 0.5, 1], [2, 2, 2, 1]]"));
}

TEST_F(ValueTexturesTest, ContextSaysWhatTheyGive)
{
    EXPECT_EQ(value("ColorValue", "", "color", R"({"values": {"t": [1, 2, 3]}})"), j("[1, 2, 3, 1]"));
    EXPECT_EQ(value("FloatValue", "", "float", R"({"values": {"t": "inf"}})"), "inf");
    EXPECT_EQ(value("IntValue", "", "int", R"({"values": {"t": 5}})"), 5);
    EXPECT_EQ(value("VectorValue", "", "vector", R"({"values": {"t": [1, 2, 3]}})"), j("[1, 2, 3]"));
    EXPECT_EQ(
        value("TransformValue", "", "transform", R"({"values": {"t": {"translate": [1, 2, 3]}}})")["offset"],
        j("[1, 2, 3]"));
}

TEST_F(ValueTexturesTest, UVWValueGivesCoordinatesDerivativesAndTransform)
{
    const std::string params = R"("uvw": [0.1, 0.2, 0.3], "du": [1, 0, 0], "dv": [0, 1, 0],
                                  "columns": [[2, 0, 0], [0, 3, 0], [0, 0, 4]])";
    EXPECT_EQ(value("UVWValue", params, "uvw"), j(R"({"valid": 1, "uvw": [0.1, 0.2, 0.3]})"));
    EXPECT_EQ(value("UVWValue", params, "uvw_derivs"),
              j(R"({"valid": 1, "uvw": [0.1, 0.2, 0.3], "du": [1, 0, 0], "dv": [0, 1, 0]})"));
    EXPECT_EQ(value("UVWValue", params, "uvw_transform"),
              j(R"({"valid": 1, "columns": [[2, 0, 0], [0, 3, 0], [0, 0, 4]], "offset": [0.1, 0.2, 0.3]})"));
    EXPECT_EQ(value("UVWValue", R"("valid": false, "uvw": [1, 2, 3])", "uvw"),
              j(R"({"valid": 0, "uvw": [1, 2, 3]})"));
    EXPECT_EQ(value("UVWValue", "", "uvw_transform")["columns"], j("[[1, 0, 0], [0, 1, 0], [0, 0, 1]]"));
}

TEST_F(ValueTexturesTest, UVWValueKeepsWhatTheContextDoesNotSay)
{
    const std::string params = R"("uvw": [1, 2, 3], "du": [4, 5, 6])";
    EXPECT_EQ(value("UVWValue", params, "uvw_derivs", R"({"values": {"t": {"uvw": [7, 8, 9]}}})"),
              j(R"({"valid": 1, "uvw": [7, 8, 9], "du": [4, 5, 6], "dv": [0, 0, 0]})"));
    EXPECT_EQ(value("UVWValue", params, "uvw", R"({"values": {"t": {"valid": false}}})"),
              j(R"({"valid": 0, "uvw": [1, 2, 3]})"));
}

class ValueSourceTest : public ValueTexturesTest {
protected:
    json source(const std::string& type, const std::string& params, const std::string& more = "")
    {
        return ask(R"("t": {"type": ")" + type + R"(", "params": {)" + params + "}}",
                   R"("plugin": "t", "op": "source")" + more)[0];
    }
};

TEST_F(ValueSourceTest, UnsetItWritesTheConstant)
{
    EXPECT_EQ(source("ColorValue", R"("value": [0.25, 0.5, 0.75, 1], "lower": 0)")["text"],
              "color 0.250000 0.500000 0.750000 1.000000\n");
    EXPECT_EQ(source("FloatValue", R"("value": 0.5)")["text"], "color 0.500000 0.500000 0.500000 0.500000\n");
    EXPECT_EQ(source("UVWValue", "")["text"], "");
    for (const char* type : {"ColorValue", "FloatValue", "UVWValue"})
        EXPECT_EQ(source(type, "")["returned"], 1) << type;
}

TEST_F(ValueSourceTest, TextGetsNameAndTag)
{
    EXPECT_EQ(source("UVWValue", R"("source": "{name}-{tag}-{name}{x}\n")",
                     R"(, "name": "{tag}", "tag": "b")")["text"],
              "{tag}-b-{tag}{x}\n");
    EXPECT_EQ(source("ColorValue", R"("source": "")")["text"], "") << "an empty text is a text";
}

TEST_F(ValueSourceTest, AnimatedTextIsThatOfTheFrame)
{
    const auto scene = parse(support::sceneText(
        R"("t": {"type": "ColorValue", "params": {"source": {"times": [0, 5], "values": ["early", "late"]}}})"));
    const json answer = probe(*scene, R"({"ombrix_probe": 1, "frames": [
        {"frame": 4, "requests": [{"plugin": "t", "op": "source"}]},
        {"frame": 5, "requests": [{"plugin": "t", "op": "source"}]}]})");
    EXPECT_EQ(answer["frames"][0]["results"][0]["values"][0]["text"], "early");
    EXPECT_EQ(answer["frames"][1]["results"][0]["values"][0]["text"], "late");
}

TEST_F(ValueSourceTest, OtherDescriptorsGetNothing)
{
    for (const char* descriptor : {"", "HairDescriptor", "materialdescriptor"}) {
        const json answer = source("FloatValue", "", std::string(R"(, "descriptor": ")") + descriptor + "\"");
        EXPECT_EQ(answer["returned"], 0) << descriptor;
        EXPECT_EQ(answer["text"], "") << descriptor;
    }
}

TEST_F(ValueSourceTest, NullOffersNoSourceUntilItIsUnset)
{
    for (const char* type : {"ColorValue", "FloatValue", "UVWValue"}) {
        const auto scene = parse(support::sceneText(R"("t": {"type": ")" + std::string(type) +
                                                    R"(", "params": {"source": null}})"));
        ASSERT_TRUE(scene);
        EXPECT_EQ(scene->find("t")->plugin->getInterface(OUtils::EXT_RTTEX), nullptr);
        Diagnostics diagnostics("p");
        scene->set(json::parse(R"({"t": {"source": null}})"), "", diagnostics);
        EXPECT_NE(scene->find("t")->plugin->getInterface(OUtils::EXT_RTTEX), nullptr);
    }
}

TEST_F(ValueTexturesTest, ContextColorShowsItsField)
{
    const std::string context = R"({"shade_point": [1, 2, 3], "reference_point": [4, 5, 6],
        "position_diff_u": [7, 8, 9], "position_diff_v": [10, 11, 12], "filter_widths": [13, 14, 15, 16]})";
    EXPECT_EQ(value("ContextColor", "", "color", context), j("[1, 2, 3, 1]"));
    EXPECT_EQ(value("ContextColor", R"("field": "shade_point")", "color", context), j("[1, 2, 3, 1]"));
    EXPECT_EQ(value("ContextColor", R"("field": "reference_point")", "color", context), j("[4, 5, 6, 1]"));
    EXPECT_EQ(value("ContextColor", R"("field": "position_diff_u")", "color", context), j("[7, 8, 9, 1]"));
    EXPECT_EQ(value("ContextColor", R"("field": "position_diff_v")", "color", context), j("[10, 11, 12, 1]"));
    EXPECT_EQ(value("ContextColor", R"("field": "filter_widths")", "color", context), j("[13, 14, 15, 16]"));
    EXPECT_EQ(value("ContextColor", "", "color_bounds"),
              j("[[-1e18, -1e18, -1e18, -1e18], [1e18, 1e18, 1e18, 1e18]]"));
}

TEST_F(ValueTexturesTest, ColorToFloatTakesAChannel)
{
    const auto channel = [&](const char* name) {
        return value("ColorToFloat",
                     std::string(R"("input": [0.25, 0.5, 1, 0.125], "channel": ")") + name + "\"", "float")
            .get<float>();
    };
    EXPECT_EQ(channel("red"), 0.25f);
    EXPECT_EQ(channel("green"), 0.5f);
    EXPECT_EQ(channel("blue"), 1.0f);
    EXPECT_EQ(channel("alpha"), 0.125f);
    EXPECT_FLOAT_EQ(channel("intensity"), 1.75f / 3.0f);
    EXPECT_FLOAT_EQ(channel("luminance"), 0.48f); // 0.075 + 0.295 + 0.11
    EXPECT_EQ(value("ColorToFloat", "", "float"), 0);
    EXPECT_EQ(
        value("ColorToFloat", R"("input": "c", "channel": "green")", "float_bounds", "{}",
              R"(, "c": {"type": "ColorValue", "params": {"lower": [0, 1, 2, 3], "upper": [4, 5, 6, 7]}})"),
        j("[1, 5]"));
}

TEST_F(ValueTexturesTest, FloatsToColorPutsChannelsTogether)
{
    EXPECT_EQ(value("FloatsToColor", "", "color"), j("[0, 0, 0, 1]"));
    EXPECT_EQ(value("FloatsToColor", R"("red": 1, "green": 2, "blue": 3, "alpha": 4)", "color"),
              j("[1, 2, 3, 4]"));
    EXPECT_EQ(value("FloatsToColor", R"("red": "f", "alpha": 0.5)", "color_bounds", "{}",
                    R"(, "f": {"type": "FloatValue", "params": {"lower": -1, "upper": 2}})"),
              j("[[-1, 0, 0, 0.5], [2, 0, 0, 0.5]]"));
}

TEST_F(ValueTexturesTest, UVWChannelIsTheSurfacesOwnMapping)
{
    const std::string surface = R"({"surface": {"channels": {"1": {"uvw": [1, 1, 1]},
        "2": {"columns": [[2, 0, 0], [0, 3, 0], [0, 0, 4]], "offset": [0.5, 0.25, 0]}}},
        "shade_point": [1, 1, 1], "reference_point": [0, 0, 0], "position_diff_u": [1, 0, 0],
        "position_diff_v": [0, 1, 1]})";
    EXPECT_EQ(value("UVWChannel", "", "uvw", surface), j(R"({"valid": 1, "uvw": [2, 2, 2]})"));
    EXPECT_EQ(value("UVWChannel", R"("channel": 2)", "uvw_derivs", surface),
              j(R"({"valid": 1, "uvw": [2.5, 3.25, 4], "du": [2, 0, 0], "dv": [0, 3, 4]})"));
    EXPECT_EQ(value("UVWChannel", R"("channel": 2)", "uvw_transform", surface),
              j(R"({"valid": 1, "columns": [[2, 0, 0], [0, 3, 0], [0, 0, 4]], "offset": [0.5, 0.25, 0]})"));
    EXPECT_EQ(value("UVWChannel", R"("channel": -1)", "uvw", surface)["uvw"], j("[2, 2, 2]")) << "the lowest";
    EXPECT_EQ(value("UVWChannel", R"("channel": 3)", "uvw", surface)["valid"], 0);
    EXPECT_EQ(value("UVWChannel", "", "uvw", "{}")["valid"], 0);
    EXPECT_EQ(value("UVWChannel", "", "uvw", R"({"surface": {}})")["valid"], 0);
}

} // namespace
