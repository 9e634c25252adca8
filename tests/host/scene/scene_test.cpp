// The frame of a scene file, references between plugins, and their order.

#include "host/errors/errors.h"
#include "host/scene/scene_life.h"
#include "support/scene_texts.h"
#include "support/witness_node.h"

#include <algorithm>

using namespace ombrix;

namespace {

using support::sceneText;
using support::witnessCalls;

class SceneFileTest : public support::SceneTest {
protected:
    void expectFileRefused(const std::string& text, const std::string& line)
    {
        EXPECT_EQ(parse(text), nullptr) << text;
        EXPECT_EQ(lines, std::vector<std::string>{"error: look.json: " + line});
    }
    static std::vector<std::string> namesOf(const Scene& scene)
    {
        std::vector<std::string> names;
        for (const PluginInstance& instance : scene.instances())
            names.push_back(instance.name);
        return names;
    }
};

TEST_F(SceneFileTest, NeedsItsVersion)
{
    expectFileRefused("{}", "a scene file needs \"ombrix_scene\": 1 at its top level");
    expectFileRefused(R"({"ombrix_scene": 2})",
                      "/ombrix_scene: takes the format's version, 1, not the number 2");
    expectFileRefused(R"({"ombrix_scene": "1"})",
                      "/ombrix_scene: takes the format's version, 1, not the text \"1\"");
    expectFileRefused(
        "[1]", "a scene file holds an object, {\"ombrix_scene\": 1, \"plugins\": {...}}, not a list of 1 "
               "element");
    EXPECT_TRUE(parse(R"({"ombrix_scene": 1})"));
}

TEST_F(SceneFileTest, KnowsItsKeysAtEveryLevel)
{
    expectFileRefused(R"({"ombrix_scene": 1, "plugin": {}})",
                      "/plugin: a scene file has no key \"plugin\"; did you mean \"plugins\"?");
    expectRefused(R"("a": {"type": "FloatValue", "parms": {}})",
                  "/plugins/a/parms: a plugin has no key \"parms\"; did you mean \"params\"?");
    expectRefused(
        R"("a": {"type": "FloatValue", "params": []})",
        "/plugins/a/params: takes an object of parameter names to values, not a list of 0 elements");
    expectRefused(R"("a": 3)", "/plugins/a: takes a plugin, an object, not the number 3");
    expectFileRefused(R"({"ombrix_scene": 1, "settings": {"motion_blur": {"of": 1}}})",
                      "/settings/motion_blur/of: \"motion_blur\" has no key \"of\"; did you mean \"on\"?");
}

TEST_F(SceneFileTest, NeedsAKnownType)
{
    expectRefused(R"("a": {})", "/plugins/a: a plugin needs a \"type\", the name of a plugin kind");
    const std::string list =
        " `nezaiva list` shows them all; no plug-in library is loaded, `--library FILE` names one";
    expectRefused(R"("a": {"type": "ColourValue"})",
                  "/plugins/a/type: no plugin kind is named \"ColourValue\"; did you mean \"ColorValue\"?" +
                      list);
    expectRefused(R"("a": {"type": "Zzz"})", "/plugins/a/type: no plugin kind is named \"Zzz\";" + list);
    expectRefused(R"("a": {"type": 1})", "/plugins/a/type: takes a text, not the number 1");
}

TEST_F(SceneFileTest, RefusesNamesThatStandForNumbers)
{
    for (const std::string name : {"nan", "inf", "-inf"})
        expectRefused("\"" + name + R"(": {"type": "FloatValue"})",
                      "/plugins/" + name + ": a plugin cannot be named \"" + name +
                          "\": on an input it stands for the number");
    expectRefused(R"("": {"type": "FloatValue"})", "/plugins/: a plugin needs a name; \"\" is none");
}

TEST_F(SceneFileTest, UnknownParameterGetsTheNearestName)
{
    expectRefused(R"("a": {"type": "Witness", "params": {"amont": 1}})",
                  "/plugins/a/params/amont: Witness has no parameter \"amont\"; did you mean \"amount\"?");
    expectRefused(
        R"("a": {"type": "Witness", "params": {"out_amount": 1}})",
        "/plugins/a/params/out_amount: \"out_amount\" is an output of Witness; outputs are referred to, not "
        "set");
}

TEST_F(SceneFileTest, GathersErrors)
{
    EXPECT_FALSE(parse(R"({"ombrix_scene": 1, "settings": {"frame": true}, "plugins": {
        "a": {"type": "FloatValue", "params": {"vale": 1, "value": []}}, "b": {"type": "Nothing"},
        "c": {"type": "FloatsToColor", "params": {"red": "b", "green": "b.out"}}}})"));
    EXPECT_EQ(
        lines,
        (std::vector<std::string>{
            "error: look.json: /settings/frame: takes a number, not true",
            "error: look.json: /plugins/b/type: no plugin kind is named \"Nothing\"; `nezaiva list` shows "
            "them "
            "all; no plug-in library is loaded, `--library FILE` names one",
            "error: look.json: /plugins/a/params/vale: FloatValue has no parameter \"vale\"; did you mean "
            "\"value\"?",
            "error: look.json: /plugins/a/params/value: takes a number (or \"nan\", \"inf\", \"-inf\"), "
            "not a list of 0 elements"}))
        << "a reference to a plugin in error is no further error";
}

TEST_F(SceneFileTest, ReferenceMayPointForwardAndToAnOutput)
{
    const auto scene = parse(sceneText(R"("a": {"type": "FloatsToColor", "params": {"red": "w.out_amount"}},
                                          "w": {"type": "Witness"})"));
    ASSERT_TRUE(scene);
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"w", "a"}));
}

TEST_F(SceneFileTest, NamesMayHoldPoints)
{
    const auto scene = parse(sceneText(R"("w": {"type": "Witness"}, "w.mine": {"type": "FloatValue"},
                           "v.1": {"type": "Witness"}, "f": {"type": "FloatValue"}, "f.out_amount": {"type": "FloatValue"},
                           "a": {"type": "FloatsToColor", "params": {"red": "w.mine", "green": "v.1.out_amount"}})"));
    ASSERT_TRUE(scene);
    OUtils::OmbrixPluginParameter* red = scene->find("a")->life->getParameter("red");
    EXPECT_EQ(red->getPlugin(-1, 0), scene->find("w.mine")->plugin);
    EXPECT_NE(scene->find("a")->life->getParameter("green")->getPlugin(-1, 0), nullptr);
}

TEST_F(SceneFileTest, NameThatAnOutputHasAlreadyIsRefused)
{
    expectRefused(R"("w": {"type": "Witness"}, "w.out_amount": {"type": "FloatValue"})",
                  "/plugins/w.out_amount: the name \"w.out_amount\" also stands for an output of the Witness "
                  "\"w\"; rename one of them");
}

TEST_F(SceneFileTest, WhatIsUnknownIsToldWithWhatThereIs)
{
    expectRefused(
        R"("w": {"type": "Witness"}, "x": {"type": "FloatsToColor", "params": {"red": "w.zzz"}})",
        "/plugins/x/params/red: Witness \"w\" has no output \"zzz\"; its outputs are \"out_amount\", "
        "\"out_silent\"");
    expectRefused(
        R"("x": {"type": "FloatsToColor", "params": {"zzz": 1}})",
        "/plugins/x/params/zzz: FloatsToColor has no parameter \"zzz\"; its parameters are \"red\", "
        "\"green\", \"blue\", \"alpha\"");
    expectRefused(R"("a": {"type": "FloatValue", "zzz": {}})",
                  "/plugins/a/zzz: a plugin has no key \"zzz\"; the keys are \"type\", \"params\"");
}

TEST_F(SceneFileTest, WrongReferencesSayWhatToWrite)
{
    const std::string w = R"("w": {"type": "Witness"}, "x": {"type": "FloatsToColor", "params": {"red": )";
    expectRefused(w + R"("ww"}})", "/plugins/x/params/red: no plugin is named \"ww\"; did you mean \"w\"?");
    expectRefused(w + R"("zzz"}})",
                  "/plugins/x/params/red: no plugin is named \"zzz\"; \"red\" takes a plugin's name, or "
                  "a plain value");
    expectRefused(
        w + R"("w.out_amont"}})",
        "/plugins/x/params/red: Witness \"w\" has no output \"out_amont\"; did you mean \"out_amount\"?");
    expectRefused(w + R"("x.r"}})", "/plugins/x/params/red: FloatsToColor \"x\" has no outputs; write \"x\"");
    expectRefused(w + R"("w.out_silent"}})",
                  "/plugins/x/params/red: Witness \"w\" answers nothing at its output \"out_silent\"");
    expectRefused(w + R"("w"}})",
                  "/plugins/x/params/red: \"w\" is a color texture, and \"red\" takes a float texture; its "
                  "output \"w.out_amount\" is one");
}

TEST_F(SceneFileTest, WrongKindOfTextureNamesTheWay)
{
    const auto refused = [&](const std::string& from, const std::string& to, const std::string& input,
                             const std::string& complaint) {
        expectRefused(R"("f": {"type": ")" + from + R"("}, "t": {"type": ")" + to + R"(", "params": {")" +
                          input + R"(": "f"}})",
                      "/plugins/t/params/" + input + ": \"f\" is " + complaint);
    };
    refused("ColorValue", "FloatsToColor", "red",
            "a color texture, and \"red\" takes a float texture; put a ColorToFloat between them");
    refused("FloatValue", "ColorToFloat", "input",
            "a float texture, and \"input\" takes a color texture; put a FloatsToColor between them");
    refused("VectorValue", "ColorToFloat", "input",
            "a vector texture, and \"input\" takes a color texture; put a TexVectorToColor between them");
    refused("UVWValue", "ColorToFloat", "input",
            "a UVW generator, and \"input\" takes a color texture; put a TexUVWGenToTexture between them");
    refused("IntValue", "FloatsToColor", "red", "an int texture, and \"red\" takes a float texture");
    refused("Holder", "FloatsToColor", "red", "a Holder, and \"red\" takes a float texture");
}

TEST_F(SceneFileTest, PluginParameterTakesAPluginOfAnyKind)
{
    EXPECT_TRUE(parse(
        sceneText(R"("f": {"type": "FloatValue"}, "w": {"type": "Witness", "params": {"object": "f"}})")));
}

TEST_F(SceneFileTest, CyclesOfInputsAreShown)
{
    expectRefused(R"("a": {"type": "FloatsToColor", "params": {"green": "b"}},
                     "b": {"type": "ColorToFloat", "params": {"input": "a"}})",
                  "/plugins/a/params/green: the inputs run in a cycle: a -> b -> a");
    expectRefused(R"("s": {"type": "ColorValue", "params": {"value": "s"}})",
                  "/plugins/s/params/value: the inputs run in a cycle: s -> s");
    expectRefused(R"("s": {"type": "Witness", "params": {"layers": [null, "t"]}},
                     "t": {"type": "Witness", "params": {"input": "s"}})",
                  "/plugins/s/params/layers: the inputs run in a cycle: s -> t -> s");
}

TEST_F(SceneFileTest, EachCycleIsShownOnce)
{
    EXPECT_FALSE(parse(sceneText(R"("a": {"type": "ColorValue", "params": {"value": "b"}},
        "b": {"type": "ColorValue", "params": {"value": "c", "lower": "a"}},
        "c": {"type": "ColorValue", "params": {"value": "a"}},
        "y": {"type": "ColorValue", "params": {"value": "z"}}, "z": {"type": "ColorValue", "params": {"value": "y"}},
        "on": {"type": "ColorValue", "params": {"value": "y"}})")));
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                  "error: look.json: /plugins/a/params/value: the inputs run in a cycle: a -> b -> a",
                  "error: look.json: /plugins/y/params/value: the inputs run in a cycle: y -> z -> y"}));
}

TEST_F(SceneFileTest, CycleThroughAnObjectLoadsAndKeepsInputsFirst)
{
    // A look that asks for the place of the very object that wears it.
    const auto scene = parse(sceneText(R"("a_node": {"type": "Holder", "params": {"look": "mix"}},
        "mix": {"type": "ColorValue", "params": {"value": "w"}},
        "w": {"type": "Witness", "params": {"object": "a_node"}}, "z": {"type": "Witness", "params": {"object": "z"}})"));
    ASSERT_TRUE(scene);
    const std::vector<std::string> order = namesOf(*scene);
    const auto at = [&](const char* name) {
        return std::find(order.begin(), order.end(), name) - order.begin();
    };
    EXPECT_LT(at("w"), at("mix"));
    EXPECT_LT(at("mix"), at("a_node"));
    EXPECT_EQ(order.size(), 4u);
}

TEST_F(SceneFileTest, LongChainsNeedNoStack)
{
    std::string chain, tooLong;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = "\"p" + std::to_string(i) + "\": ",
                          next = "\"p" + std::to_string(i + 1) + "\"";
        chain += name + R"({"type": "Witness", "params": {"object": )" + next + "}}, ";
        tooLong += name + R"({"type": "ColorValue", "params": {"value": )" + next + "}}, ";
    }
    EXPECT_TRUE(parse(sceneText(chain + R"("p20000": {"type": "ColorValue"})")));
    EXPECT_FALSE(parse(sceneText(tooLong + R"("p20000": {"type": "ColorValue"})")));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("more than 1000 inputs stand behind one another"), std::string::npos);
}

TEST_F(SceneFileTest, LivesInDependencyOrderAndDeletesBackwards)
{
    witnessCalls.clear();
    RecordingLogger logger(false);
    {
        const auto scene = parse(sceneText(R"("a": {"type": "Witness", "params": {"input": "b"}},
                                              "b": {"type": "Witness", "params": {"object": "c"}},
                                              "c": {"type": "Witness"})"));
        ASSERT_TRUE(scene);
        HostRenderer renderer(scene->settings(), 1, &logger);
        RenderLife render(*scene, renderer);
        const FrameLife frame(render, 4.0);
        EXPECT_EQ(renderer.getFrameData().time, 4.0);
    }
    std::vector<std::string> expected;
    for (const char* call : {"renderBegin", "frameBegin", "frameEnd", "renderEnd"})
        for (const char* name : {"c", "b", "a"})
            expected.push_back(std::string(name) + "." + call);
    for (const char* name : {"c", "b", "a"}) // made in the order of their names
        expected.push_back(std::string(name) + ".deleted");
    EXPECT_EQ(witnessCalls, expected);
}

TEST_F(SceneFileTest, RefusedSceneLeavesNothingBehind)
{
    witnessCalls.clear();
    EXPECT_FALSE(
        parse(sceneText(R"("a": {"type": "Witness"}, "b": {"type": "Witness", "params": {"amount": "x"}})")));
    EXPECT_EQ(witnessCalls, (std::vector<std::string>{"b.deleted", "a.deleted"}));
}

TEST_F(SceneFileTest, SetWritesUnsetsAndReorders)
{
    const auto scene =
        parse(sceneText(R"("a": {"type": "Witness", "params": {"amount": 3}}, "b": {"type": "Witness"})"));
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"a", "b"}));
    Diagnostics diagnostics("p");
    EXPECT_TRUE(
        scene->set(nlohmann::json::parse(R"({"a": {"amount": 5, "input": "b"}})"), "/set", diagnostics));
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(scene->find("a")->life->getParameter("amount")->getFloat(-1, 0), 5.0f);
    EXPECT_TRUE(
        scene->set(nlohmann::json::parse(R"({"a": {"amount": null, "input": null}})"), "/set", diagnostics));
    EXPECT_EQ(scene->find("a")->life->getParameter("amount")->getFloat(-1, 0), 0.1f);
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"a", "b"}));
}

TEST_F(SceneFileTest, SetWithAnErrorWritesNothing)
{
    const auto scene =
        parse(sceneText(R"("a": {"type": "Witness"}, "b": {"type": "Witness", "params": {"input": "a"}})"));
    for (const char* changes : {R"({"a": {"amount": 5, "mode": "Bilow"}})",
                                R"({"a": {"amount": 5}, "c": {}})", R"({"a": {"amount": 5, "input": "b"}})",
                                R"({"a": {"amount": 5, "nix": null}})", "3", R"({"a": 3})"}) {
        Diagnostics diagnostics("p");
        EXPECT_FALSE(scene->set(nlohmann::json::parse(changes), "/frames/0/set", diagnostics)) << changes;
        EXPECT_TRUE(diagnostics.failed());
        EXPECT_EQ(diagnostics.lines().at(0).substr(0, 23), "error: p: /frames/0/set");
        EXPECT_EQ(scene->find("a")->life->getParameter("amount")->getFloat(-1, 0), 0.1f) << changes;
    }
    Diagnostics cycle("p");
    scene->set(nlohmann::json::parse(R"({"a": {"input": "b"}})"), "/set", cycle);
    EXPECT_EQ(cycle.lines(),
              std::vector<std::string>{"error: p: /set/a/input: the inputs run in a cycle: a -> b -> a"});
}

TEST_F(SceneFileTest, AddMakesAPluginOrLeavesTheSceneAsItWas)
{
    const auto scene = parse(sceneText(R"("a": {"type": "Witness"})"));
    Diagnostics diagnostics("p");
    const PluginInstance* added = scene->add("b", "Witness", {{"amount", 2}, {"input", "a"}}, diagnostics);
    ASSERT_TRUE(added);
    EXPECT_EQ(scene->find("b"), added);
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(scene->add("b", "Witness", nlohmann::json::object(), diagnostics)) << "the name is taken";
    EXPECT_EQ(scene->find("b"), added);
    EXPECT_FALSE(scene->add("c", "Witness", {{"amount", "x"}}, diagnostics));
    EXPECT_FALSE(scene->add("d", "Witness", {{"input", "d"}}, diagnostics));
    EXPECT_EQ(scene->find("c"), nullptr);
    EXPECT_EQ(namesOf(*scene), (std::vector<std::string>{"a", "b"}));
}

TEST_F(SceneFileTest, MissingFileIsNoErrorOfItsContents)
{
    Diagnostics diagnostics("x");
    EXPECT_THROW(Scene::load("/no/such/scene.json", registry, diagnostics), WorkError);
    EXPECT_THROW(Scene::load("/", registry, diagnostics), WorkError);
    EXPECT_FALSE(diagnostics.failed());
}

} // namespace
