// What a plugin throws ends a command with its message, after the life of all plugins was ended.

#include "support/program.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

using support::ProgramRun;

namespace {

const std::string kWholeLife =
    "warning: renderBegin\nwarning: frameBegin\nwarning: frameEnd\nwarning: renderEnd\n";

class FailingWork : public testing::Test {
protected:
    // Runs a command on a scene with the failing texture "t", and a picture of it.
    ProgramRun run(std::vector<std::string> arguments)
    {
        writeBytes(folder / "scene.json", R"({"ombrix_scene": 1,
            "settings": {"width": 8, "height": 8, "samples": 1}, "plugins": {
            "t": {"type": "FailingTexture"},
            "look": {"type": "Surface", "params": {"emission": "t"}},
            "mesh": {"type": "Mesh", "params": {"shape": "sphere"}},
            "ball": {"type": "Node", "params": {"geometry": "mesh", "material": "look"}}}})");
        arguments.insert(arguments.begin(), NEZAIVA_PROGRAM);
        arguments.insert(arguments.end(), {"--library", FAILING_LIBRARY});
        return support::runProgram(arguments, {}, folder.path());
    }

    TemporaryFolder folder;
};

TEST_F(FailingWork, BakeEndsThePluginsLives)
{
    const ProgramRun bake = run({"bake", "scene.json", "t", "-o", "t.exr", "--size", "4"});
    EXPECT_EQ(bake.errors, kWholeLife + "error: no color today\n");
    EXPECT_EQ(bake.exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "t.exr"));
}

TEST_F(FailingWork, SourceEndsThePluginsLives)
{
    const ProgramRun source = run({"source", "scene.json", "t"});
    EXPECT_EQ(source.errors, kWholeLife + "error: no source today\n");
    EXPECT_EQ(source.output, "");
    EXPECT_EQ(source.exitCode, 1);
}

TEST_F(FailingWork, RenderEndsThePluginsLives)
{
    const ProgramRun render = run({"render", "scene.json", "-o", "t.exr"});
    EXPECT_EQ(render.errors, kWholeLife + "error: no color today\n");
    EXPECT_EQ(render.exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "t.exr"));
}

} // namespace
