// `nezaiva source` with its options, end to end.

#include "host/image/image.h"
#include "support/program.h"
#include "support/temporary_folder.h"
#include "support/understood_source.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

using nlohmann::json;
using support::ProgramRun;

namespace {

class SourceCommand : public testing::Test {
protected:
    ProgramRun run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), NEZAIVA_PROGRAM);
        return support::runProgram(arguments, {}, folder.path());
    }
    // The tree of the plugin "t".
    ProgramRun treeOf(const std::string& plugins, const std::vector<std::string>& more = {})
    {
        writeBytes(folder / "look.json",
                   R"({"ombrix_scene": 1, "settings": {"bake_size": 4}, "plugins": {)" + plugins + "}}");
        std::vector<std::string> arguments = {"source", "look.json", "t", "--tree"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    TemporaryFolder folder;
};

TEST_F(SourceCommand, TreeDrawsANode)
{
    const ProgramRun tree = treeOf(R"("t": {"type": "TexColorCondition", "params": {"condition": "l",
                                            "color_a": [1, 0.5, 0, 1], "color_b": "c"}},
                                      "l": {"type": "TexColorLogic", "params": {"operation": 2,
                                            "color_a": [0.25, 0.25, 0.25, 0.25], "color_b": "c"}},
                                      "c": {"type": "ColorValue", "params": {"value": [0, 0, 1]}})");
    EXPECT_EQ(tree.output, "16  condition [-948]\n"
                           " 5  +- condition: compare < [-947]\n"
                           " 1  |  +- color 0.25\n"
                           " 3  |  `- color (0, 0, 1, 1)\n"
                           " 8  +- color b: color (0, 0, 1, 1)\n"
                           "10  +- alpha b: color 1\n"
                           "12  +- color a: color (1, 0.5, 0, 1)\n"
                           "14  `- alpha a: color 1\n");
    EXPECT_EQ(tree.errors, "");
    EXPECT_EQ(tree.exitCode, 0);
}

TEST_F(SourceCommand, TreeTellsABitmapsNameAndSize)
{
    writeBytes(folder / "three.ppm", "P3 3 2 255 0 0 0 1 1 1 2 2 2 3 3 3 4 4 4 5 5 5\n");
    const ProgramRun tree = treeOf(R"("t": {"type": "Bitmap", "params": {"file": "three.ppm", "uvwgen": "g"}},
                  "g": {"type": "UVWGenMayaPlace2dTexture", "params": {"offset_u": 0.5}})");
    EXPECT_EQ(tree.exitCode, 0) << tree.errors;
    EXPECT_EQ(tree.output, "5  bitmap 0 \"t\" 3 x 2\n"
                           "        uvw: columns (1, 0, 0) (0, 1, 0) (0, 0, 1) offset (0.5, 0, 0), channel "
                           "1, place2d, block 0\n");
}

TEST_F(SourceCommand, EmptyInputsAreToldOnceAndOneByOneWhenVerbose)
{
    const std::string scene = R"("t": {"type": "TexColorLogic"})";
    const ProgramRun tree = treeOf(scene);
    EXPECT_EQ(tree.exitCode, 0);
    EXPECT_EQ(tree.output, "3  compare == [-947]\n1  +- (empty)\n2  `- (empty)\n");
    EXPECT_EQ(tree.errors, "warning: 2 of the operators' inputs are empty: unset, or without a GPU form\n");
    const ProgramRun verbose = treeOf(scene, {"--verbose"});
    EXPECT_NE(verbose.errors.find("line 2: the slot is empty, and bitmap -947 (compare) on line 3 takes it"),
              std::string::npos)
        << verbose.errors;
}

TEST_F(SourceCommand, TextThatIsNotUnderstoodExitsWithOneAndStillDraws)
{
    const ProgramRun tree = treeOf(
        R"("t": {"type": "ColorValue", "params": {"source": "color 0,5 1 1 1\nsubtex\nbitmap 3\nsubtex\nbitmap -945\n"}})");
    EXPECT_EQ(tree.exitCode, 1);
    EXPECT_EQ(tree.errors, "error: line 1: color takes 4 numbers, not \"color 0,5 1 1 1\"\n"
                           "error: line 3: bitmap 3 does not exist; the data holds 0 bitmaps\n"
                           "error: line 5: bitmap -945 (lerp) takes 3 slots and only 2 are there\n"
                           "error: a consumer would not understand this source\n");
    EXPECT_EQ(tree.output, "5  lerp [-945]\n"
                           "1  +- not understood: \"color 0,5 1 1 1\"\n"
                           "3  `- bitmap 3\n");
}

TEST_F(SourceCommand, TellsTwentyErrorsAndCountsTheRest)
{
    std::string lines;
    for (int i = 0; i < 25; ++i)
        lines += "what\\n";
    const ProgramRun tree =
        treeOf(R"("t": {"type": "ColorValue", "params": {"source": ")" + lines + R"("}})");
    EXPECT_EQ(tree.exitCode, 1);
    EXPECT_EQ(std::count(tree.errors.begin(), tree.errors.end(), '\n'), 22);
    EXPECT_NE(tree.errors.find("error: and 5 more\n"), std::string::npos);
}

// The bytes of pixels, red to alpha, as a picture that PNG stores unchanged and back.
ombrix::Image pictureOf(int width, int height, const std::vector<int>& bytes)
{
    ombrix::Image image;
    image.width = width;
    image.height = height;
    image.alpha = ombrix::AlphaKind::Straight;
    image.isData = true;
    for (const int byte : bytes)
        image.pixels.push_back(static_cast<float>(byte) / 255.0f);
    return image;
}
std::vector<int> bytesOfPicture(const std::filesystem::path& file)
{
    std::vector<int> bytes;
    for (const float value :
         ombrix::readImage(file, ombrix::ColorSpace::Linear, ombrix::AlphaKind::Straight).pixels)
        bytes.push_back(static_cast<int>(std::lround(value * 255.0f)));
    return bytes;
}

TEST_F(SourceCommand, BitmapsHoldTheBytesThatTheGpuGets)
{
    const std::vector<int> bytes = {0,   1,   128, 255, 254, 255, 0, 0, // colours under alpha 0 stay
                                    255, 128, 1,   0,   128, 254, 0, 1};
    ombrix::writeImage(folder / "four.png", pictureOf(2, 2, bytes), {});
    ASSERT_EQ(bytesOfPicture(folder / "four.png"), bytes);
    writeBytes(folder / "look.json", R"({"ombrix_scene": 1, "plugins": {"t": {"type": "Bitmap",
                                         "params": {"file": "four.png", "color_space": "linear"}}}})");
    const ProgramRun source = run({"source", "look.json", "t", "--bitmaps", "made/here"});
    EXPECT_EQ(source.exitCode, 0) << source.errors;
    EXPECT_EQ(source.output, "bitmap 0\n");
    EXPECT_EQ(bytesOfPicture(folder / "made/here/000_t.png"), bytes);

    writeBytes(folder / "probe.json", R"({"ombrix_probe": 1, "requests":
                                         [{"plugin": "t", "op": "source", "pixels": true}]})");
    const json answer = json::parse(run({"probe", "look.json", "probe.json"}).output);
    EXPECT_EQ(answer["frames"][0]["results"][0]["values"][0]["bitmaps"][0]["pixels"],
              (json{0xFF000180u, 0x00FEFF00u, 0x00FF8001u, 0x0180FE00u}));
}

// With nothing connected, every kind that has a GPU form writes a source that is understood, or none.
TEST_F(SourceCommand, SourcesOfAllKindsAreUnderstood)
{
    json scene = {{"ombrix_scene", 1}, {"settings", {{"bake_size", 4}}}, {"plugins", json::object()}};
    json probe = {{"ombrix_probe", 1}, {"requests", json::array()}};
    for (const json& plugin : json::parse(run({"list", "--json"}).output)) {
        const json& interfaces = plugin["instance"];
        if (std::find(interfaces.begin(), interfaces.end(), "EXT_RTTEX") == interfaces.end()) continue;
        const std::string name = plugin["name"];
        if (name == "Bitmap") continue; // it needs a file
        scene["plugins"][name] = {{"type", name}};
        probe["requests"].push_back({{"plugin", name}, {"op", "source"}});
    }
    writeBytes(folder / "look.json", scene.dump());
    writeBytes(folder / "probe.json", probe.dump());
    const ProgramRun answered = run({"probe", "look.json", "probe.json", "--quiet"});
    ASSERT_EQ(answered.exitCode, 0) << answered.errors;
    const json results = json::parse(answered.output)["frames"][0]["results"];
    ASSERT_EQ(results.size(), probe["requests"].size());
    ASSERT_GE(results.size(), 25u);
    for (std::size_t i = 0; i < results.size(); ++i) {
        SCOPED_TRACE(probe["requests"][i]["plugin"].get<std::string>());
        support::expectUnderstood(results[i]["values"][0]["text"].get<std::string>());
    }
}

} // namespace
