// The life of a probe, its requests and its answer.

#include "host/errors/errors.h"
#include "support/scene_texts.h"
#include "support/witness_node.h"

#include <set>

using namespace ombrix;
using nlohmann::json;

namespace {

using support::sceneText;
using support::witnessCalls;

class ProbeTest : public support::SceneTest {
protected:
    json probeOf(const std::string& plugins, const std::string& text)
    {
        scene = parse(sceneText(plugins));
        EXPECT_TRUE(scene);
        return probe(*scene, text);
    }
    static json j(const char* text) { return json::parse(text); }

    std::unique_ptr<Scene> scene;
};

TEST_F(ProbeTest, RunsTheWholeLifeAroundItsFrames)
{
    witnessCalls.clear();
    const json answer =
        probeOf(R"("w": {"type": "Witness"})",
                R"({"ombrix_probe": 1, "frames": [{"frame": 3, "requests": []}, {"frame": 4.5}]})");
    scene.reset();
    EXPECT_EQ(witnessCalls,
              (std::vector<std::string>{"w.renderBegin", "w.frameBegin", "w.frameEnd", "w.frameBegin",
                                        "w.frameEnd", "w.renderEnd", "w.deleted"}));
    EXPECT_EQ(answer["frames"][0]["frame"], 3);
    EXPECT_EQ(answer["frames"][1]["frame"], 4.5);
    EXPECT_EQ(answer["frames"][1]["results"], json::array());
}

TEST_F(ProbeTest, KeepsTheLogOfEachFrameApartFromThatOfTheRender)
{
    const json answer =
        probeOf(R"("w": {"type": "Witness", "params": {"text": {"times": [0, 1, 2],
                                   "values": ["", "100% \"sure\"\n", ""]}}})",
                R"({"ombrix_probe": 1, "frames": [{"frame": 0}, {"frame": 1}, {"frame": 2}]})");
    EXPECT_EQ(answer["frames"][0]["log"], json::array());
    EXPECT_EQ(answer["frames"][1]["log"], j(R"([{"level": "error", "text": "100% \"sure\"\n"}])"));
    EXPECT_EQ(answer["frames"][2]["log"], json::array());
    EXPECT_EQ(answer["log"],
              j(R"([{"level": "warning", "text": "w begins"}, {"level": "info", "text": "all done"}])"));
    EXPECT_EQ(answer["progress"], j(R"(["preparing"])"));
    EXPECT_EQ(answer["frames"][0]["progress"], json::array());
}

TEST_F(ProbeTest, TopLevelRequestsAreOneFrameAtTheScenesFrame)
{
    scene = parse(
        R"({"ombrix_scene": 1, "settings": {"frame": 7}, "plugins": {"f": {"type": "FloatValue", "params":
                      {"value": {"times": [0, 10], "values": [0, 10]}}}}})");
    const json answer = probe(*scene, R"({"ombrix_probe": 1, "requests": [{"plugin": "f", "op": "float"}]})");
    EXPECT_EQ(answer["frames"][0]["frame"], 7);
    EXPECT_EQ(answer["frames"][0]["results"], j(R"([{"values": [7]}])"));
}

TEST_F(ProbeTest, SetStaysForLaterFramesAndNullUnsets)
{
    const json answer =
        probeOf(R"("f": {"type": "FloatValue", "params": {"value": 2}}, "g": {"type": "FloatValue"},
                                   "x": {"type": "FloatsToColor", "params": {"red": 0.5}})",
                R"({"ombrix_probe": 1, "frames": [
        {"requests": [{"plugin": "x", "op": "color"}]},
        {"set": {"x": {"red": "f"}, "f": {"value": 3}}, "requests": [{"plugin": "x", "op": "color"}]},
        {"requests": [{"plugin": "x", "op": "color"}]},
        {"set": {"f": {"value": null}}, "requests": [{"plugin": "x", "op": "color"}]},
        {"set": {"x": {"red": null}}, "requests": [{"plugin": "x", "op": "color"}]}]})");
    const float expected[] = {0.5f, 3.0f, 3.0f, 1.0f, 0.0f};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(answer["frames"][i]["results"][0]["values"][0][0], expected[i]) << i;
}

TEST_F(ProbeTest, SetIsWrittenAfterARequestThatCouldNotRun)
{
    const json answer = probeOf(R"("f": {"type": "FloatValue"})", R"({"ombrix_probe": 1, "frames": [
        {"requests": [{"plugin": "g", "op": "float"}]},
        {"set": {"f": {"value": 3}}, "requests": [{"plugin": "f", "op": "float"}]}]})");
    EXPECT_EQ(answer["frames"][1]["results"], j(R"([{"values": [3]}])"));
}

TEST_F(ProbeTest, WarningOfASetIsGivenOnce)
{
    probeOf(R"("c": {"type": "ContextColor"})",
            R"({"ombrix_probe": 1, "frames": [{"set": {"c": {"field": 9}}}, {}]})");
    ASSERT_EQ(lines.size(), 1u) << "by the reading, not again by the run";
    EXPECT_TRUE(lines[0].starts_with("warning: probe.json: /frames/0/set/c/field: 9 is none of the values"));
    EXPECT_TRUE(allAnswered);
}

TEST_F(ProbeTest, WrongSetIsAnErrorOfTheFile)
{
    EXPECT_EQ(probeOf(R"("f": {"type": "FloatValue"})",
                      R"({"ombrix_probe": 1, "frames": [{}, {"set": {"f": {"vale": 1}}}]})"),
              "file errors");
    EXPECT_EQ(lines,
              std::vector<std::string>{"error: probe.json: /frames/1/set/f/vale: FloatValue has no parameter "
                                       "\"vale\"; did you mean \"value\"?"});
}

TEST_F(ProbeTest, SetThatClosesACycleEndsTheRun)
{
    witnessCalls.clear();
    const json answer = probeOf(R"("w": {"type": "Witness"})",
                                R"({"ombrix_probe": 1, "frames": [{}, {"set": {"w": {"input": "w"}}}, {}]})");
    EXPECT_FALSE(allAnswered);
    EXPECT_EQ(answer["frames"].size(), 1u);
    EXPECT_EQ(lines, std::vector<std::string>{
                         "error: probe.json: /frames/1/set/w/input: the inputs run in a cycle: w -> w"});
    EXPECT_EQ(witnessCalls.back(), "w.renderEnd");
}

TEST_F(ProbeTest, WhatAPluginThrowsEndsTheLifeOfAll)
{
    witnessCalls.clear();
    EXPECT_THROW(probeOf(R"("w": {"type": "Witness", "params": {"text": "throw at a point"}})",
                         R"({"ombrix_probe": 1, "frames": [
                             {"requests": [{"plugin": "w", "op": "color"}]}, {"requests": []}]})"),
                 OUtils::ExceptionMsg);
    EXPECT_EQ(witnessCalls,
              (std::vector<std::string>{"w.renderBegin", "w.frameBegin", "w.frameEnd", "w.renderEnd"}));
}

TEST_F(ProbeTest, RequestThatCannotRunIsAnsweredAndTheOthersToo)
{
    const json answer = probeOf(R"("c": {"type": "ColorValue"}, "w": {"type": "Witness"})",
                                R"({"ombrix_probe": 1, "requests": [
        {"plugin": "cc", "op": "color"}, {"plugin": "c", "op": "float"}, {"plugin": "c", "op": "colour"},
        {"plugin": "w", "output": "out_amont", "op": "float"}, {"plugin": "c", "op": "fluid_float"},
        {"plugin": "c", "op": "color", "contexts": [{"values": {"cx": 1}}]},
        {"plugin": "c", "op": "color", "contexts": [{}, {"values": {"w": 1}}]}, {"plugin": "c", "op": "color"}]})");
    const json& results = answer["frames"][0]["results"];
    ASSERT_EQ(results.size(), 8u);
    EXPECT_EQ(results[0], j(R"({"error": "no plugin is named \"cc\"; did you mean \"c\"?"})"));
    EXPECT_EQ(results[1], j(R"({"error": "ColorValue \"c\" offers no EXT_TEXTURE_FLOAT"})"));
    EXPECT_EQ(results[2], j(R"({"error": "no operation is named \"colour\"; did you mean \"color\"?"})"));
    EXPECT_EQ(results[3],
              j(R"({"error": "Witness \"w\" has no output \"out_amont\"; did you mean \"out_amount\"?"})"));
    EXPECT_EQ(results[4], j(R"({"error": "ColorValue \"c\" offers no EXT_MAYA_FLUID_TEXTURE"})"));
    EXPECT_EQ(
        results[5],
        j(R"({"error": "/requests/5/contexts/0/values/cx: no plugin is named \"cx\"; did you mean \"c\"?"})"));
    EXPECT_EQ(
        results[6],
        j(R"({"error": "/requests/6/contexts/1/values/w: \"w\" is a Witness; only a value texture takes a value from the context"})"));
    EXPECT_EQ(results[7], j(R"({"values": [[1, 1, 1, 1]]})"));
    EXPECT_FALSE(allAnswered);
    EXPECT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[0], "error: probe.json: /requests/0: no plugin is named \"cc\"; did you mean \"c\"?");
    EXPECT_EQ(lines[5], "error: probe.json: /requests/5/contexts/0/values/cx: no plugin is named \"cx\"; did "
                        "you mean \"c\"?");
}

TEST_F(ProbeTest, OutputWrittenIntoTheNameGetsTheKeyForIt)
{
    EXPECT_EQ(
        ask(R"("w": {"type": "Witness"})", R"("plugin": "w.out_amount", "op": "float")"),
        j(R"({"error": "no plugin is named \"w.out_amount\"; for an output write \"plugin\": \"w\", \"output\": \"out_amount\""})"));
    EXPECT_EQ(
        ask(R"("w": {"type": "Witness"})", R"("plugin": "w", "output": "zzz", "op": "float")"),
        j(R"({"error": "Witness \"w\" has no output \"zzz\"; its outputs are \"out_amount\", \"out_silent\""})"));
}

TEST_F(ProbeTest, OutputIsNeverAnotherPluginOfThatName)
{
    EXPECT_EQ(ask(R"("f": {"type": "FloatValue"}, "f.x": {"type": "FloatValue"})",
                  R"("plugin": "f", "output": "x", "op": "float")"),
              j(R"({"error": "FloatValue \"f\" has no outputs; write \"f\""})"));
}

TEST_F(ProbeTest, KeysThatAnOperationDoesNotLookAtAreWarnedOf)
{
    const auto warnedOf = [&](const std::string& request, const std::vector<std::string>& keys) {
        const json answer = probeOf(R"("f": {"type": "FloatValue"})",
                                    R"({"ombrix_probe": 1, "requests": [{"plugin": "f", )" + request + "}]}");
        EXPECT_TRUE(answer["frames"][0]["results"][0].contains("values")) << request;
        std::vector<std::string> expected;
        for (const std::string& key : keys)
            expected.push_back("warning: probe.json: /requests/0/" + key);
        ASSERT_EQ(lines.size(), keys.size()) << request;
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_TRUE(lines[i].starts_with(expected[i] + ": \"")) << lines[i];
    };
    warnedOf(R"("op": "float_bounds", "contexts": [{}])", {"contexts"});
    EXPECT_EQ(lines.at(0), "warning: probe.json: /requests/0/contexts: \"float_bounds\" does not look at "
                           "\"contexts\"; leave it out");
    warnedOf(R"("op": "float", "contexts": [{}], "pixels": true, "time": 3, "name": "n")",
             {"name", "pixels", "time"});
    warnedOf(R"("op": "source", "name": "n", "tag": "t", "descriptor": "MaterialDescriptor", "pixels": true)",
             {});
    warnedOf(R"("op": "source", "contexts": [])", {"contexts"});
    warnedOf(R"("op": "interfaces", "time": 1)", {"time"});
}

TEST_F(ProbeTest, SetThatMakesAMeshSenselessEndsTheRunAndNamesThePlace)
{
    const json answer = probeOf(
        R"("m": {"type": "Mesh", "params": {"positions": [[0,0,0],[1,0,0],[0,1,0]], "faces": [[0,1,2]]}})",
        R"({"ombrix_probe": 1, "frames": [{}, {"set": {"m": {"faces": [[0, 1, 7]]}}}, {}]})");
    EXPECT_FALSE(allAnswered);
    EXPECT_EQ(answer["frames"].size(), 1u);
    EXPECT_EQ(lines,
              std::vector<std::string>{
                  "error: probe.json: /frames/1/set/m/faces: triangle 0 refers to position 7, but there "
                  "are 3 (indices count from 0)"});
}

TEST_F(ProbeTest, OneValueForEachContextAndExactlyOneWithout)
{
    EXPECT_EQ(
        ask(R"("f": {"type": "FloatValue"})", R"("plugin": "f", "op": "float", "contexts": [{}, {}, {}])"),
        j("[1, 1, 1]"));
    EXPECT_EQ(ask(R"("f": {"type": "FloatValue"})", R"("plugin": "f", "op": "float", "contexts": [])"),
              json::array());
    EXPECT_EQ(
        ask(R"("f": {"type": "FloatValue"})", R"("plugin": "f", "op": "float_bounds", "contexts": [{}, {}])"),
        j("[[1, 1]]"));
}

TEST_F(ProbeTest, UnwrittenBoundsShowAsSeventySeven)
{
    EXPECT_EQ(
        ask(R"("w": {"type": "Witness", "params": {"amount": 5}})", R"("plugin": "w", "op": "color_bounds")"),
        j("[[[77, 5, 77, 77], [77, 77, 77, 77]]]"));
    EXPECT_EQ(ask(R"("w": {"type": "Witness", "params": {"amount": 5}})",
                  R"("plugin": "w", "output": "out_amount", "op": "float_bounds")"),
              j("[[5, 77]]"));
}

TEST_F(ProbeTest, OutputsAnswerForThemselves)
{
    EXPECT_EQ(ask(R"("w": {"type": "Witness", "params": {"amount": 5}})",
                  R"("plugin": "w", "output": "out_amount", "op": "float")"),
              j("[5]"));
    EXPECT_EQ(ask(R"("w": {"type": "Witness"})", R"("plugin": "w", "output": "out_amount", "op": "color")"),
              j(R"({"error": "Witness \"w.out_amount\" offers no EXT_TEXTURE"})"));
}

TEST_F(ProbeTest, InterfacesAreSortedNames)
{
    EXPECT_EQ(ask(R"("c": {"type": "ColorValue"})", R"("plugin": "c", "op": "interfaces")"),
              j(R"([["EXT_RTTEX", "EXT_TEXTURE"]])"));
}

TEST_F(ProbeTest, MadeUpStampsDifferOverTheWholeRun)
{
    // Witness gives the stamp as its red.
    const json answer = probeOf(R"("w": {"type": "Witness"})", R"({"ombrix_probe": 1, "frames": [
        {"requests": [{"plugin": "w", "op": "color", "contexts": [{}, {"stamp": 1001}, {}]},
                      {"plugin": "w", "op": "color", "contexts": [{}, {"stamp": -5}]}]},
        {"requests": [{"plugin": "w", "op": "color", "contexts": [{}, {"stamp": 1002}, {"stamp": 1002}]}]}]})");
    std::vector<float> stamps;
    for (const json& frame : answer["frames"])
        for (const json& result : frame["results"])
            for (const json& color : result["values"])
                stamps.push_back(color[0]);
    ASSERT_EQ(stamps.size(), 8u);
    EXPECT_EQ(stamps[1], 1001);
    EXPECT_EQ(stamps[4], -5);
    EXPECT_EQ(stamps[6], 1002);
    EXPECT_EQ(stamps[7], 1002);
    const std::set<float> made = {stamps[0], stamps[2], stamps[3], stamps[5]};
    EXPECT_EQ(made.size(), 4u);
    EXPECT_GE(*made.begin(), 1000);
    EXPECT_LE(*made.rbegin(), 900000);
    EXPECT_FALSE(made.contains(1001) || made.contains(1002)) << "given ones are not made up again";
}

TEST_F(ProbeTest, StampsEndWithAnError)
{
    ProbeFile file;
    StampSource stamps(file);
    for (int i = 1000; i <= 900000; ++i)
        ASSERT_EQ(stamps.next(), i);
    EXPECT_THROW(stamps.next(), WorkError);
}

TEST_F(ProbeTest, SourceRequestsOfAFrameShareBitmapsAndANewFrameHasNone)
{
    // Witness adds a bitmap of its name each time, with a hash when it is asked as "hashed".
    const json answer = probeOf(R"("w": {"type": "Witness"})", R"({"ombrix_probe": 1, "frames": [
        {"requests": [{"plugin": "w", "op": "source", "tag": "t"},
                      {"plugin": "w", "op": "source", "name": "hashed", "descriptor": "", "pixels": true}]},
        {"requests": [{"plugin": "w", "op": "source"}]}]})");
    const json& results = answer["frames"][0]["results"];
    EXPECT_EQ(results[0]["values"][0], j(R"({"returned": 1, "text": "bitmap 0 [] [t] [MaterialDescriptor]",
        "bitmaps": [{"index": 0, "width": 2, "height": 1, "name": "w", "hash": null}]})"));
    EXPECT_EQ(results[1]["values"][0], j(R"({"returned": 1, "text": "bitmap 1 [hashed] [] []", "bitmaps": [
        {"index": 0, "width": 2, "height": 1, "name": "w", "hash": null, "pixels": [4294967295, 1]},
        {"index": 1, "width": 2, "height": 1, "name": "w", "hash": 4000000000, "pixels": [4294967295, 1]}]})"));
    EXPECT_EQ(answer["frames"][1]["results"][0]["values"][0]["bitmaps"].size(), 1u);
}

TEST_F(ProbeTest, ShadeBeginsWithZeroRecords)
{
    const json answer = ask(R"("s": {"type": "Surface", "params": {"emission": [0.5, 0.25, 0.125]}})",
                            R"("plugin": "s", "op": "shade")")[0];
    EXPECT_EQ(answer["color"][0], 0.5);
    EXPECT_EQ(answer["other"], j(R"({"color": [0,0,0,0], "transparency": [0,0,0,0], "alpha": [0,0,0,0],
                                     "alpha_transparency": [0,0,0,0]})"));
    for (const char* key : {"transparency", "alpha", "alpha_transparency"})
        EXPECT_EQ(answer[key].size(), 4u) << key;
}

TEST_F(ProbeTest, WhatAHitCannotOfferIsTold)
{
    const json answer = probeOf(R"("c": {"type": "ColorValue"})", R"({"ombrix_probe": 1, "requests": [
        {"plugin": "c", "op": "color", "contexts": [{}, {"instance": {"hair": {"length": 2}, "map_channels": {}}}]},
        {"plugin": "c", "op": "color", "contexts": [{"primitive": {"kind": 2336}}]},
        {"plugin": "c", "op": "color", "contexts": [{"instance": {"map_channels": {}}, "primitive": null}]}]})");
    const std::string hair =
                          "/requests/0/contexts/1/instance/hair: this host's instances do not offer \"hair\" "
                          "(0x780CC575); leave it out",
                      primitive = "/requests/1/contexts/0/primitive: this host has no hit primitives that "
                                  "plugins could read; leave it out, or write null";
    const json& results = answer["frames"][0]["results"];
    EXPECT_EQ(results[0], json({{"error", hair}}));
    EXPECT_EQ(results[1], json({{"error", primitive}}));
    EXPECT_EQ(results[2], j(R"({"values": [[1, 1, 1, 1]]})"));
    EXPECT_EQ(lines,
              (std::vector<std::string>{"error: probe.json: " + hair, "error: probe.json: " + primitive}));
    EXPECT_FALSE(allAnswered);
}

TEST_F(ProbeTest, EachPartOfAnInstanceWithoutAnInterfaceIsTold)
{
    for (const char* key : {"named_channels", "typed_attributes", "text_attributes", "legacy_text_attributes",
                            "color_sets", "hair"}) {
        const json answer = ask(R"("c": {"type": "ColorValue"})",
                                R"("plugin": "c", "op": "color", "contexts": [{"instance": {")" +
                                    std::string(key) + R"(": {}}}])");
        ASSERT_TRUE(answer.is_object()) << key;
        EXPECT_NE(answer["error"].get<std::string>().find(key), std::string::npos) << answer;
    }
}

TEST_F(ProbeTest, WhatAPluginThrowsPassesAndLeavesNothing)
{
    witnessCalls.clear();
    scene = parse(sceneText(R"("w": {"type": "Witness", "params": {"text": "throw"}})"));
    EXPECT_THROW(probe(*scene, R"({"ombrix_probe": 1, "requests": []})"), OUtils::ExceptionMsg);
    scene.reset();
    EXPECT_EQ(witnessCalls.back(), "w.deleted");
}

TEST_F(ProbeTest, BrokenFilesAreRefused)
{
    const auto refused = [&](const std::string& text, const std::string& line) {
        EXPECT_EQ(probeOf(R"("c": {"type": "ColorValue"})", text), "file errors") << text;
        EXPECT_EQ(lines, std::vector<std::string>{"error: probe.json: " + line}) << text;
    };
    refused("[]",
            "a probe holds an object, {\"ombrix_probe\": 1, \"frames\": [...]}, not a list of 0 elements");
    refused(R"({"frames": []})", "a probe needs \"ombrix_probe\": 1 at its top level");
    refused(R"({"ombrix_probe": 2, "frames": []})",
            "/ombrix_probe: takes the format's version, 1, not the number 2");
    refused(R"({"ombrix_probe": 1})", "a probe needs \"frames\", or \"requests\" for the scene's frame");
    refused(R"({"ombrix_probe": 1, "frames": [], "requests": []})",
            "write \"frames\" or \"requests\", not both; \"requests\" is short for one frame");
    refused(R"({"ombrix_probe": 1, "frames": {}})", "/frames: takes \"frames\", a list, not an empty object");
    refused(R"({"ombrix_probe": 1, "frames": [{"frme": 1}]})",
            "/frames/0/frme: a frame has no key \"frme\"; did you mean \"frame\"?");
    refused(R"({"ombrix_probe": 1, "requests": [{"op": "color"}]})",
            "/requests/0: a request needs \"plugin\", the name of a plugin");
    refused(R"({"ombrix_probe": 1, "requests": [{"plugin": "c"}]})",
            "/requests/0: a request needs \"op\", the operation to ask for");
    refused(R"({"ombrix_probe": 1, "requests": [{"plugin": "c", "op": "color", "context": []}]})",
            "/requests/0/context: a request has no key \"context\"; did you mean \"contexts\"?");
    refused(R"({"ombrix_probe": 1, "requests": [{"plugin": "c", "op": "color", "contexts": [{"stmp": 1}]}]})",
            "/requests/0/contexts/0/stmp: a context has no key \"stmp\"; did you mean \"stamp\"?");
    refused(
        R"({"ombrix_probe": 1, "requests": [{"plugin": "c", "op": "color", "contexts": [{"values": {"c": "x"}}]}]})",
        "/requests/0/contexts/0/values/c: takes a color, [r, g, b] or [r, g, b, a], or one number for a "
        "grey, not "
        "the text \"x\"");
}

} // namespace
