// What a scene can write into a parameter of each declaration, and what it is refused for.

#include "host/params/host_parameters.h"
#include "support/scene_texts.h"
#include "support/temporary_folder.h"
#include "support/tolerances.h"
#include "support/witness_node.h"

using namespace ombrix;
using OUtils::ParameterType;

namespace {

class ValuesTest : public support::SceneTest {
protected:
    // The parameter of a Witness "w" that is set to a JSON text; null when it is refused.
    OUtils::OmbrixPluginParameter* parameter(const std::string& name, const std::string& json,
                                             const std::string& others = "")
    {
        scene = parse(support::sceneText(R"("w": {"type": "Witness", "params": {")" + name + "\": " + json +
                                         "}}" + others));
        return scene ? scene->find("w")->life->getParameter(name.c_str()) : nullptr;
    }
    void expectRefusedValue(const std::string& name, const std::string& json, const std::string& complaint,
                            const std::string& innerPath = "")
    {
        EXPECT_EQ(parameter(name, json), nullptr) << json;
        ASSERT_FALSE(lines.empty()) << json;
        EXPECT_EQ(lines[0], "error: look.json: /plugins/w/params/" + name + innerPath + ": " + complaint);
    }

    std::unique_ptr<Scene> scene;
};

TEST_F(ValuesTest, BoolTakesTrueAndFalseAlone)
{
    EXPECT_EQ(parameter("flag", "true")->getInt(-1, 0), 1);
    EXPECT_EQ(parameter("flag", "false")->getInt(-1, 0), 0);
    expectRefusedValue("flag", "1", "takes true or false, not the number 1");
    expectRefusedValue("flag", "\"true\"", "takes true or false, not the text \"true\"");
    expectRefusedValue("flag", "null",
                       "takes no null; write a value, or leave the parameter out for its default");
}

TEST_F(ValuesTest, IntTakesIntegersOfThirtyTwoBits)
{
    EXPECT_EQ(parameter("count", "-2147483648")->getInt(-1, 0), std::numeric_limits<int>::min());
    EXPECT_EQ(parameter("count", "2147483647")->getInt(-1, 0), std::numeric_limits<int>::max());
    EXPECT_EQ(parameter("count", "3.0")->getInt(-1, 0), 3);
    for (const char* outside : {"2147483648", "-2147483649", "18446744073709551615", "1e30"}) {
        EXPECT_EQ(parameter("count", outside), nullptr) << outside;
        EXPECT_NE(lines.at(0).find("takes an integer from -2147483648 to 2147483647"), std::string::npos);
    }
    expectRefusedValue("count", "1.5", "takes an integer, not the number 1.5");
    expectRefusedValue("count", "true", "takes an integer, not true");
    expectRefusedValue("count", "\"3\"", "takes an integer, not the text \"3\"");
    expectRefusedValue("count", "\"nan\"", "takes an integer, not the text \"nan\"");
    expectRefusedValue("count", "[1]", "takes an integer, not a list of 1 element");
}

TEST_F(ValuesTest, EnumerationTakesItsLabelAsText)
{
    EXPECT_EQ(parameter("mode", "\"Billow\"")->getInt(-1, 0), 1);
    EXPECT_TRUE(lines.empty());
    expectRefusedValue("mode", "\"Bilow\"", "\"mode\" has no value \"Bilow\"; did you mean \"Billow\"?");
    expectRefusedValue("mode", "\"xyzzy\"",
                       "\"mode\" has no value \"xyzzy\"; the values are 0 Plain, 1 Billow, 2 Wave");
}

TEST_F(ValuesTest, NumberOutsideAnEnumerationPassesWithAWarning)
{
    EXPECT_EQ(parameter("mode", "7")->getInt(-1, 0), 7);
    EXPECT_EQ(lines,
              std::vector<std::string>{"warning: look.json: /plugins/w/params/mode: 7 is none of the values "
                                       "of \"mode\" (0 Plain, 1 Billow, 2 Wave); it is passed on as it is"});
}

TEST_F(ValuesTest, FloatTakesNumbersAndTheWordsForOthers)
{
    EXPECT_SAME_BITS(parameter("amount", "0.1")->getFloat(-1, 0), 0.1f);
    EXPECT_SAME_BITS(parameter("amount", "16777217")->getFloat(-1, 0), 16777216.0f);
    EXPECT_SAME_BITS(parameter("amount", "1e-40")->getFloat(-1, 0), 1e-40f);
    EXPECT_SAME_BITS(parameter("amount", "3.4028235e38")->getFloat(-1, 0), std::numeric_limits<float>::max());
    EXPECT_SAME_BITS(parameter("amount", "-0.0")->getFloat(-1, 0), -0.0f);
    EXPECT_TRUE(std::isnan(parameter("amount", "\"nan\"")->getFloat(-1, 0)));
    EXPECT_SAME_BITS(parameter("amount", "\"inf\"")->getFloat(-1, 0), std::numeric_limits<float>::infinity());
    EXPECT_SAME_BITS(parameter("amount", "\"-inf\"")->getFloat(-1, 0),
                     -std::numeric_limits<float>::infinity());
    expectRefusedValue(
        "amount", "1e39",
        "1e+39 is beyond the largest float, 3.4028235e38; write \"inf\" or \"-inf\" for an infinity");
    expectRefusedValue("amount", "\"half\"",
                       "takes a number (or \"nan\", \"inf\", \"-inf\"), not the text \"half\"");
}

TEST_F(ValuesTest, OtherWordsForNumbersGetTheirForm)
{
    const auto refused = [&](const char* text, const char* word) {
        expectRefusedValue("amount", std::string("\"") + text + "\"",
                           std::string("takes a number (or \"nan\", \"inf\", \"-inf\"), not the text \"") +
                               text + "\"; write \"" + word + "\" for that number");
    };
    refused("NaN", "nan");
    refused("Infinity", "inf");
    refused("+inf", "inf");
    refused("-INF", "-inf");
    // On a texture input a text could be a reference.
    expectRefusedValue("weight", "\"NaN\"", "no plugin is named \"NaN\"; write \"nan\" for that number");
    expectRefusedValue("input", "[0, \"Inf\", 0]",
                       "takes a number (or \"nan\", \"inf\", \"-inf\"), not the text \"Inf\"; write "
                       "\"inf\" for that number",
                       "/1");
}

TEST_F(ValuesTest, ColorTakesThreeOrFourNumbersOrAGrey)
{
    const auto color = [&](const char* name, const char* json) {
        return parameter(name, json)->getColor(-1, 0);
    };
    EXPECT_EQ(color("tint", "[0.25, 0.5, 1]").b, 1.0f);
    EXPECT_EQ(color("tint", "0.75").g, 0.75f);
    EXPECT_EQ(color("input", "[1, 2, 3, 4]").a, 4.0f);
    EXPECT_EQ(color("input", "[1, 2, 3]").a, 1.0f);
    EXPECT_EQ(color("input", "0.5").r, 0.5f);
    EXPECT_EQ(color("input", "0.5").a, 1.0f);
    EXPECT_TRUE(std::isnan(color("input", "\"nan\"").r)) << "not a reference";
    EXPECT_TRUE(std::isinf(color("input", "[\"-inf\", 0, 0]").r));
    expectRefusedValue("tint", "[1, 2]",
                       "takes a color, [r, g, b] or [r, g, b, a], or one number for a grey, not a "
                       "list of 2 elements");
    expectRefusedValue("tint", "[1, true, 2]", "takes a number (or \"nan\", \"inf\", \"-inf\"), not true",
                       "/1");
}

TEST_F(ValuesTest, WrappedPlainValuesHaveThePlainTypeCodes)
{
    EXPECT_EQ(parameter("input", "[1, 2, 3]")->getType(), ParameterType::Color);
    EXPECT_EQ(parameter("input", "[1, 2, 3, 4]")->getType(), ParameterType::AColor);
    EXPECT_EQ(parameter("input", "0.5")->getType(), ParameterType::Color);
    EXPECT_EQ(parameter("weight", "0.5")->getType(), ParameterType::Float);
    EXPECT_EQ(parameter("weight", "2")->getType(), ParameterType::Float);
    EXPECT_EQ(parameter("choice", "1")->getType(), ParameterType::Int);
}

TEST_F(ValuesTest, TextIsUtf8WithoutAZeroCharacter)
{
    EXPECT_STREQ(parameter("text", "\"\\u00e9\"")->getString(-1, 0), "\xc3\xa9");
    expectRefusedValue("text", "\"a\\u0000b\"", "a text cannot hold the character of code 0; leave it out");
    expectRefusedValue("text", "3", "takes a text, not the number 3");
}

TEST_F(ValuesTest, TransformTakesColumnsAndOffset)
{
    const OUtils::TraceTransform t =
        parameter("matrix", R"({"columns": [[1,2,3],[4,5,6],[7,8,9]], "offset": [1e9, 0.125, -1]})")
            ->getTransform(-1, 0);
    EXPECT_EQ(t.matrix.columns[1].z, 6.0f);
    EXPECT_EQ(t.offset.x, 1e9);
    EXPECT_EQ(t.offset.y, 0.125);
    expectRefusedValue("matrix", R"({"columns": [[1,2,3],[4,5,6]]})",
                       "takes three columns, [[x, y, z], [x, y, z], [x, y, z]], not a list of 2 elements",
                       "/columns");
    expectRefusedValue("matrix", R"({"columns": [[1,0,0],[0,1,0],[0,0,1]], "ofset": [1,2,3]})",
                       "a transform has no key \"ofset\"; did you mean \"offset\"?", "/ofset");
    EXPECT_EQ(parameter("matrix", "{}"), nullptr);
    EXPECT_TRUE(lines.at(0).ends_with("not an empty object"));
    EXPECT_EQ(parameter("matrix", R"({"columns": [[1,0,0],[0,1,0],[0,0,1]], "scale": [1,2,3]})"), nullptr);
}

TEST_F(ValuesTest, TransformPartsScaleThenTurnAboutXThenYThenZ)
{
    // By hand: x goes to 2x, stays under the turn about x, becomes -2z about y, and stays about z. y goes to
    // 3y, then 3z about x, 3x about y, 3y about z. z goes to 4z, -4y about x, -4y, 4x about z.
    const OUtils::TraceTransform t =
        parameter("matrix", R"({"translate": [1, 2, 3], "rotate": [90, 90, 90], "scale": [2, 3, 4]})")
            ->getTransform(-1, 0);
    const float expected[3][3] = {{0, 0, -2}, {0, 3, 0}, {4, 0, 0}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(t.matrix.columns[i].x, expected[i][0]) << i;
        EXPECT_EQ(t.matrix.columns[i].y, expected[i][1]) << i;
        EXPECT_EQ(t.matrix.columns[i].z, expected[i][2]) << i;
    }
    EXPECT_EQ(t.offset.z, 3.0);
    // A turn of 30 degrees about x alone: y goes to (0, cos, sin).
    const OUtils::TraceTransform turned =
        parameter("matrix", R"({"rotate": [30, 0, 0]})")->getTransform(-1, 0);
    EXPECT_NEAR(turned.matrix.columns[1].y, 0.866025404, 1e-7);
    EXPECT_NEAR(turned.matrix.columns[1].z, 0.5, 1e-7);
}

TEST_F(ValuesTest, ListTakesAnyNumberOfValues)
{
    OUtils::OmbrixPluginParameter* ints = parameter("ints", "[3, -1, 4]");
    ASSERT_EQ(ints->getCount(0), 3);
    EXPECT_EQ(ints->getInt(2, 0), 4);
    EXPECT_EQ(parameter("floats", "[]")->getCount(0), 0);
    expectRefusedValue("ints", "3", "takes a list, not the number 3");
    expectRefusedValue("ints", "[1, \"x\"]", "takes an integer, not the text \"x\"", "/1");
    expectRefusedValue("vectors", "[[1, 2, 3]]", "takes a list of 3 elements, not of 1");
}

TEST_F(ValuesTest, AnimatedFloatIsLinearAndConstantOutside)
{
    OUtils::OmbrixPluginParameter* amount = parameter("amount", R"({"times": [0, 10], "values": [0, 1]})");
    EXPECT_EQ(amount->getFloat(-1, -5), 0.0f);
    EXPECT_EQ(amount->getFloat(-1, 2.5), 0.25f);
    EXPECT_EQ(amount->getFloat(-1, 99), 1.0f);
}

TEST_F(ValuesTest, AnimatedLabelsTextsAndListsAreStepped)
{
    EXPECT_EQ(parameter("mode", R"({"times": [0, 10], "values": ["Plain", "Wave"]})")->getInt(-1, 9.9), 0);
    EXPECT_EQ(parameter("mode", R"({"times": [0, 10], "values": ["Plain", "Wave"]})")->getInt(-1, 10), 2);
    EXPECT_STREQ(parameter("text", R"({"times": [0, 10], "values": ["a", "b"]})")->getString(-1, 10.5), "b");
    EXPECT_EQ(parameter("ints", R"({"times": [0, 10], "values": [[1, 2], [3, 4]]})")->getInt(1, 10), 4);
    EXPECT_EQ(parameter("weight", R"({"times": [0, 10], "values": [0, 2]})")->getFloat(-1, 5), 1.0f);
}

TEST_F(ValuesTest, AnimatedListsMayDifferInLength)
{
    OUtils::OmbrixPluginParameter* floats =
        parameter("floats", R"({"times": [0, 1, 2], "values": [[1, 2], [3], [5]]})");
    EXPECT_EQ(floats->getCount(0.75), 2);
    EXPECT_EQ(floats->getFloat(1, 0.75), 2.0f); // holds: the lengths differ
    EXPECT_EQ(floats->getCount(1.5), 1);
    EXPECT_EQ(floats->getFloat(0, 1.5), 4.0f); // half the way from 3 to 5
}

TEST_F(ValuesTest, AnimatedValueNeedsRisingTimesAndAsManyValues)
{
    expectRefusedValue(
        "amount", R"({"times": [0, 1], "values": [1]})",
        "an animated value needs as many \"times\" as \"values\", one at least; here are 2 and 1");
    expectRefusedValue(
        "amount", R"({"times": [], "values": []})",
        "an animated value needs as many \"times\" as \"values\", one at least; here are 0 and 0");
    expectRefusedValue("amount", R"({"times": [1, 1], "values": [1, 2]})",
                       "the time 1 does not lie after 1; times rise", "/times/1");
    expectRefusedValue("amount", R"({"times": [0]})",
                       "an animated value needs both \"times\" and \"values\"");
    expectRefusedValue("amount", R"({"times": [0], "values": [1], "loop": true})",
                       "an animated value has no key \"loop\"; the keys are \"times\", \"values\"", "/loop");
    expectRefusedValue("amount", R"({"times": ["inf"], "values": [1]})",
                       "takes a finite number, not the text \"inf\"", "/times/0");
    expectRefusedValue("amount", R"({"times": [0, 1], "values": [1, "x"]})",
                       "takes a number (or \"nan\", \"inf\", \"-inf\"), not the text \"x\"", "/values/1");
}

TEST_F(ValuesTest, ReferencesAreNotAnimated)
{
    expectRefusedValue("object", R"({"times": [0], "values": ["w"]})",
                       "a reference cannot change over time; write one reference");
    expectRefusedValue("weight", R"({"times": [0], "values": ["w"]})",
                       "a reference cannot change over time; write plain values, or one reference",
                       "/values/0");
}

TEST_F(ValuesTest, NullClearsReferences)
{
    OUtils::OmbrixPluginParameter* weight = parameter("weight", "null");
    EXPECT_EQ(weight->getType(), ParameterType::Plugin);
    EXPECT_EQ(weight->getPlugin(-1, 0), nullptr);
    EXPECT_EQ(parameter("object", "null")->getPlugin(-1, 0), nullptr);
    EXPECT_EQ(parameter("objects", "null")->getCount(0), 0);
}

TEST_F(ValuesTest, PluginListMayHoldNull)
{
    OUtils::OmbrixPluginParameter* objects =
        parameter("objects", R"(["n", null, "n"])", R"(, "n": {"type": "Node"})");
    ASSERT_EQ(objects->getCount(0), 3);
    EXPECT_EQ(objects->getPlugin(0, 0), scene->find("n")->plugin);
    EXPECT_EQ(objects->getPlugin(1, 0), nullptr);
    EXPECT_EQ(objects->getPlugin(2, 0), scene->find("n")->plugin);
}

TEST_F(ValuesTest, LabelOnATextureInputGivesWayToAPluginOfThatName)
{
    EXPECT_EQ(parameter("choice", "\"on\"")->getInt(-1, 0), 1);
    OUtils::OmbrixPluginParameter* choice = parameter("choice", "\"on\"", R"(, "on": {"type": "IntValue"})");
    EXPECT_EQ(choice->getPlugin(-1, 0), scene->find("on")->plugin);
}

TEST_F(ValuesTest, PluginParameterTakesNoPlainValue)
{
    expectRefusedValue("object", "3",
                       "takes the name of a plugin, \"name\" or \"name.output\", not the number 3");
    expectRefusedValue("object", "true", "takes the name of a plugin, \"name\" or \"name.output\", not true");
}

TEST_F(ValuesTest, FileIsLookedForInTheScenesFolderThenInTheWorkingFolder)
{
    const TemporaryFolder scenes;
    writeBytes(scenes / "here.obj", "x");
    folder = scenes.path();
    EXPECT_EQ(parameter("file", "\"here.obj\"")->getString(-1, 0), (scenes / "here.obj").string());
    EXPECT_EQ(parameter("file", "\"" + (scenes / "here.obj").string() + "\"")->getString(-1, 0),
              (scenes / "here.obj").string());
    EXPECT_STREQ(parameter("file", "\"\"")->getString(-1, 0), "");
    const TemporaryFolder working;
    writeBytes(working / "there.obj", "x");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(working.path());
    const OUtils::OmbrixPluginParameter* found = parameter("file", "\"there.obj\"");
    std::filesystem::current_path(before);
    EXPECT_NE(found, nullptr);
    expectRefusedValue("file", "\"gone.obj\"",
                       "there is no file gone.obj in the scene's folder (" + folder.string() +
                           ") or the working folder");
    expectRefusedValue("file", "\".\"", (folder / ".").string() + " is a folder; write a file's name");
    EXPECT_STREQ(parameter("text", "\"gone.obj\"")->getString(-1, 0), "gone.obj") << "no file's name";
}

TEST_F(ValuesTest, RequiredFileMustBeGiven)
{
    expectRefused(R"("n": {"type": "Needy"})", "/plugins/n: Needy needs the parameter \"file\"");
    expectRefused(R"("n": {"type": "Needy", "params": {}})",
                  "/plugins/n: Needy needs the parameter \"file\"");
    expectRefused(R"("n": {"type": "Needy", "params": {"file": ""}})",
                  "/plugins/n/params/file: takes a file's name, not an empty text");
}

TEST_F(ValuesTest, RequiredFileCannotBeUnset)
{
    const TemporaryFolder files;
    writeBytes(files / "there.obj", "");
    folder = files.path();
    const auto needy =
        parse(support::sceneText(R"("n": {"type": "Needy", "params": {"file": "there.obj"}})"));
    ASSERT_TRUE(needy);
    Diagnostics diagnostics("p");
    EXPECT_FALSE(needy->set(nlohmann::json::parse(R"({"n": {"file": null}})"), "/set", diagnostics));
    EXPECT_EQ(diagnostics.lines(),
              std::vector<std::string>{"error: p: /set/n/file: \"file\" cannot be unset; write a value"});
}

} // namespace
