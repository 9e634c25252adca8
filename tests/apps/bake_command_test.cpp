#include "host/image/image.h"
#include "support/program.h"
#include "support/running_program.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

using namespace ombrix;
using support::ProgramRun;
using support::RunningProgram;

namespace {

const std::string kScene = R"({
  "ombrix_scene": 1,
  "settings": {"bake_size": 8},
  "plugins": {
    "place": {"type": "ContextColor", "params": {"field": "shade_point"}},
    "half": {"type": "FloatValue", "params": {"value": {"times": [1, 3], "values": [0.5, 0.125]}}},
    "glass": {"type": "ColorValue", "params": {"value": [0.25, 0.5, 1, 0.5]}},
    "channel": {"type": "UVWChannel"},
    "noise": {"type": "TexNoiseMaya", "params": {"noise_type": "Perlin Noise", "depth_max": 100, "uvwgen": "channel"}}
  }
})";

class BakeCommand : public testing::Test {
protected:
    BakeCommand() { writeBytes(folder / "scene.json", kScene); }

    std::vector<std::string> words(const std::string& texture, const std::string& file,
                                   const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> all{NEZAIVA_PROGRAM, "bake", (folder / "scene.json").string(),
                                     texture,         "-o",   (folder / file).string()};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
    ProgramRun bake(const std::string& texture, const std::string& file,
                    const std::vector<std::string>& more = {}) const
    {
        return support::runProgram(words(texture, file, more));
    }
    void expectFailure(const ProgramRun& result, int exitCode, const std::string& part) const
    {
        EXPECT_EQ(result.exitCode, exitCode) << result.errors;
        EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
        EXPECT_EQ(result.errors.find("baking"), std::string::npos) << "the work had begun";
        EXPECT_EQ(folder.names(), std::set<std::string>{"scene.json"});
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(BakeCommand, WritesTheTextureOverTheUnitSquare)
{
    const ProgramRun result = bake("place", "a.exr", {"--size", "4"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.substr(0, 22), "baking place: done in ");
    const Image image = readImage(folder / "a.exr", ColorSpace::Auto);
    ASSERT_EQ(image.width, 4);
    ASSERT_EQ(image.height, 4);
    EXPECT_EQ(image.pixel(0, 0)[0], 0.125f);
    EXPECT_EQ(image.pixel(0, 0)[1], 0.875f); // the top row has the largest v
    EXPECT_EQ(image.pixel(3, 3)[0], 0.875f);
    EXPECT_EQ(image.pixel(3, 3)[1], 0.125f);
}

TEST_F(BakeCommand, TakesSizeAndFrameOfTheSceneOrTheCall)
{
    EXPECT_EQ(bake("half", "a.exr").exitCode, 0);
    const Image scenes = readImage(folder / "a.exr", ColorSpace::Auto);
    EXPECT_EQ(scenes.width, 8);
    EXPECT_EQ(scenes.pixel(2, 2)[0], 0.5f);
    EXPECT_EQ(bake("half", "a.exr", {"--frame", "3", "--size", "2"}).exitCode, 0);
    const Image calls = readImage(folder / "a.exr", ColorSpace::Auto);
    EXPECT_EQ(calls.width, 2);
    EXPECT_EQ(calls.pixel(1, 1)[0], 0.125f);
}

TEST_F(BakeCommand, KeepsAlphaUnlessItIsToldNotTo)
{
    EXPECT_EQ(bake("glass", "a.exr", {"--size", "1"}).exitCode, 0);
    const Image with = readImage(folder / "a.exr", ColorSpace::Auto, AlphaKind::Straight);
    EXPECT_EQ(std::vector<float>(with.pixels), (std::vector<float>{0.25f, 0.5f, 1.0f, 0.5f}));
    EXPECT_EQ(bake("glass", "a.exr", {"--size", "1", "--no-alpha"}).exitCode, 0);
    const Image without = readImage(folder / "a.exr", ColorSpace::Auto, AlphaKind::Straight);
    EXPECT_EQ(std::vector<float>(without.pixels), (std::vector<float>{0.25f, 0.5f, 1.0f, 1.0f}));
}

TEST_F(BakeCommand, GivesTheSameFileAtEveryNumberOfThreads)
{
    EXPECT_EQ(bake("noise", "one.exr", {"--size", "100", "--threads", "1"}).exitCode, 0);
    EXPECT_EQ(bake("noise", "many.exr", {"--size", "100", "--threads", "5"}).exitCode, 0);
    EXPECT_EQ(bytesOf(folder / "one.exr"), bytesOf(folder / "many.exr"));
}

TEST_F(BakeCommand, QuietSaysNothing)
{
    const ProgramRun result = bake("place", "a.png", {"--quiet"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(BakeCommand, RefusesWhatIsNoTexture)
{
    expectFailure(bake("noize", "a.png"), 2, "did you mean \"noise\"?");
    expectFailure(bake("noise.out_alph", "a.png"), 2, "did you mean \"out_alpha\"?");
    expectFailure(bake("channel", "a.png"), 2, "UVWChannel");
    expectFailure(bake("place", "a.png", {"--size", "0"}), 2, "--size");
}

TEST_F(BakeCommand, FailsBeforeTheWorkWhenTheFileCannotBeWritten)
{
    expectFailure(bake("noise", "nowhere/a.png"), 1, "nowhere");
    expectFailure(bake("noise", "a.look"), 1, ".look");
    expectFailure(bake("noise", "a"), 1, "extension");
}

TEST_F(BakeCommand, AnInterruptionWritesWhatIsDone)
{
    RunningProgram program(words("noise", "a.png", {"--size", "4096", "--threads", "1"}));
    ASSERT_TRUE(program.waitForErrors(" 1%"));
    program.send(SIGINT);
    const ProgramRun result = program.wait();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.errors.find("baking noise: stopped at "), std::string::npos) << result.errors;
    EXPECT_NE(result.errors.find("warning: interrupted; "), std::string::npos) << result.errors;
    const Image image = readImage(folder / "a.png", ColorSpace::Linear);
    EXPECT_EQ(image.width, 4096);
    EXPECT_EQ(image.pixel(0, 0)[3], 1.0f);
    EXPECT_EQ(image.pixel(4095, 4095)[3], 0.0f);
}
