// The built program, end to end.

#include "support/program.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

using nlohmann::json;
using support::ProgramRun;

namespace {

constexpr const char* kProgram = NEZAIVA_PROGRAM;
constexpr const char* kExamples = NEZAIVA_EXAMPLES;

class ProgramTest : public testing::Test {
protected:
    // Runs in the folder of the test.
    ProgramRun run(std::vector<std::string> arguments, const std::string& input = {})
    {
        arguments.insert(arguments.begin(), kProgram);
        return support::runProgram(arguments, input, folder.path());
    }
    static std::size_t lineCount(const std::string& text)
    {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
    void expectFails(const std::vector<std::string>& arguments, int code, const std::string& line)
    {
        const ProgramRun result = run(arguments);
        EXPECT_EQ(result.exitCode, code) << line;
        EXPECT_EQ(result.errors, "error: " + line + "\n");
        EXPECT_EQ(result.output, "");
    }
    void writeScene(const std::string& plugins)
    {
        writeBytes(folder / "look.json", R"({"ombrix_scene": 1, "plugins": {)" + plugins + "}}");
    }

    TemporaryFolder folder;
};

TEST_F(ProgramTest, HelpIsDataAndExitsWithZero)
{
    for (const char* command : {"", "list", "describe", "probe", "source", "bake", "render"}) {
        std::vector<std::string> arguments = {"--help"};
        if (*command) arguments.insert(arguments.begin(), command);
        const ProgramRun result = run(arguments);
        EXPECT_EQ(result.exitCode, 0) << command;
        EXPECT_EQ(result.errors, "") << command;
        for (const char* option : {"--help", "--quiet", "--verbose", "--library"})
            EXPECT_NE(result.output.find(option), std::string::npos) << command << " " << option;
    }
    EXPECT_EQ(run({"--version"}).output.substr(0, 8), "nezaiva ");
}

TEST_F(ProgramTest, WrongCallsExitWithTwoAndSayWhatToWrite)
{
    expectFails({"rendr"}, 2, "there is no command \"rendr\"; did you mean \"render\"?");
    expectFails({"list", "--jsn"}, 2, "there is no option \"--jsn\"; did you mean \"--json\"?");
    expectFails({"list", "--no-such-option"}, 2,
                "there is no option \"--no-such-option\"; `nezaiva list --help` shows what there is");
    expectFails({"list", "more"}, 2,
                "unexpected argument \"more\"; `nezaiva list --help` shows what there is");
    expectFails({}, 2, "a command is missing; `nezaiva --help` shows what there is");
    expectFails({"probe"}, 2, "scene is required; `nezaiva probe --help` shows what there is");
    expectFails(
        {"describe", "ColorValu"}, 2,
        "no plugin kind is named \"ColorValu\"; did you mean \"ColorValue\"? `nezaiva list` shows them all");
    expectFails({"describe", "Zzz"}, 2, "no plugin kind is named \"Zzz\"; `nezaiva list` shows them all");
    expectFails({"probe", "-", "-"}, 2, "only one of the scene and the probe can come from standard input");
}

TEST_F(ProgramTest, FilesThatCannotBeReadExitWithOne)
{
    expectFails({"probe", "gone.json"}, 1, "cannot read gone.json: No such file or directory");
    expectFails({"probe", "."}, 1, "cannot read .: it is a folder");
    expectFails({"--library", "gone.so", "list"}, 1, "cannot load plug-in library gone.so: no such file");
    expectFails({"list", "--library", "gone.so"}, 1, "cannot load plug-in library gone.so: no such file");
    writeScene("");
    expectFails({"probe", "look.json", "gone.json"}, 1, "cannot read gone.json: No such file or directory");
}

TEST_F(ProgramTest, LibraryWithoutTheEntryIsNamed)
{
    writeBytes(folder / "text.so", "no library");
    const ProgramRun result = run({"--library", "text.so", "list"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.errors.find("text.so"), std::string::npos);
    EXPECT_EQ(lineCount(result.errors), 1u);
}

TEST_F(ProgramTest, ListLoadsTheLibraryBesideTheProgram)
{
    const ProgramRun result = run({"list", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    bool fromLibrary = false, builtIn = false;
    for (const json& plugin : json::parse(result.output)) {
        fromLibrary = fromLibrary || plugin["name"] == "TexColorConstant";
        builtIn = builtIn || (plugin["name"] == "ColorValue" && plugin["builtin"] == true);
    }
    EXPECT_TRUE(fromLibrary);
    EXPECT_TRUE(builtIn);
}

TEST_F(ProgramTest, DescribeAnswersForEveryPluginOfTheList)
{
    for (const json& plugin : json::parse(run({"list", "--json"}).output)) {
        const std::string name = plugin["name"];
        const ProgramRun described = run({"describe", name, "--json"});
        ASSERT_EQ(described.exitCode, 0) << name;
        const json answer = json::parse(described.output);
        for (const char* key : {"name", "id", "description"})
            EXPECT_EQ(answer[key], plugin[key]) << name;
        for (const json& parameter : answer["parameters"])
            for (const char* key : {"name", "declaration", "default", "count", "description", "metadata"})
                EXPECT_TRUE(parameter.contains(key)) << name << " " << key;
    }
    for (const char* name : {"TexNoiseMaya", "Mesh"}) { // one of the library, one built in
        const ProgramRun described = run({"describe", name});
        EXPECT_EQ(described.exitCode, 0) << name;
        EXPECT_NE(described.output.find(name), std::string::npos);
    }
}

TEST_F(ProgramTest, ProbeReadsFilesAndStandardInput)
{
    writeScene(R"("f": {"type": "FloatValue", "params": {"value": 2}})");
    const std::string probe = R"({"ombrix_probe": 1, "requests": [{"plugin": "f", "op": "float"}]})";
    writeBytes(folder / "p.json", probe);
    const ProgramRun byFile = run({"probe", "look.json", "p.json"});
    EXPECT_EQ(byFile.exitCode, 0) << byFile.errors;
    EXPECT_EQ(json::parse(byFile.output)["frames"][0]["results"], json::parse(R"([{"values": [2]}])"));
    EXPECT_EQ(run({"probe", "look.json", "-"}, probe).output, byFile.output);
    EXPECT_EQ(run({"probe", "-", "p.json"}, bytesOf(folder / "look.json")).output, byFile.output);
    EXPECT_EQ(byFile.errors, "");
}

TEST_F(ProgramTest, ProbeWithoutARequestLivesThroughOneFrame)
{
    writeScene("");
    const ProgramRun result = run({"probe", "look.json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(json::parse(result.output)["frames"].size(), 1u);
}

TEST_F(ProgramTest, ProbeWritesItsAnswerIntoAFileAlone)
{
    writeScene("");
    const ProgramRun result = run({"probe", "look.json", "-o", "out.json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(json::parse(bytesOf(folder / "out.json"))["frames"].size(), 1u);
    EXPECT_EQ(folder.names(), (std::set<std::string>{"look.json", "out.json"}));
    EXPECT_EQ(run({"probe", "look.json", "-o", "no/such/out.json"}).exitCode, 1);
}

TEST_F(ProgramTest, ErrorsOfAFileStandInLinesOfTheirOwn)
{
    writeScene(
        R"("a": {"type": "ColorValue", "params": {"valu": 1}}, "b": {"type": "FloatValue", "params": {"vale": 1}})");
    const ProgramRun result = run({"probe", "look.json"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "error: look.json: /plugins/a/params/valu: ColorValue has no parameter "
                             "\"valu\"; did you mean \"value\"?\n"
                             "error: look.json: /plugins/b/params/vale: FloatValue has no parameter "
                             "\"vale\"; did you mean \"value\"?\n");
}

TEST_F(ProgramTest, RequestThatCannotRunExitsWithTwoAfterTheAnswer)
{
    writeScene(R"("f": {"type": "FloatValue"})");
    const ProgramRun result = run(
        {"probe", "look.json", "-"},
        R"({"ombrix_probe": 1, "requests": [{"plugin": "g", "op": "float"}, {"plugin": "f", "op": "float"}]})");
    EXPECT_EQ(result.exitCode, 2);
    const json answer = json::parse(result.output);
    EXPECT_TRUE(answer["frames"][0]["results"][0].contains("error"));
    EXPECT_EQ(answer["frames"][0]["results"][1]["values"][0], 1);
    EXPECT_EQ(lineCount(result.errors), 1u);
}

TEST_F(ProgramTest, QuietKeepsWarningsBack)
{
    writeScene(R"("c": {"type": "ContextColor", "params": {"field": 9}})");
    EXPECT_EQ(lineCount(run({"probe", "look.json"}).errors), 1u);
    EXPECT_EQ(run({"probe", "look.json", "--quiet"}).errors, "");
    EXPECT_EQ(run({"-q", "probe", "look.json"}).errors, "");
}

TEST_F(ProgramTest, SourcePrintsTheText)
{
    writeScene(
        R"("c": {"type": "ColorValue", "params": {"source": "{name}/{tag}\n"}}, "i": {"type": "IntValue"})");
    const ProgramRun result = run({"source", "look.json", "c", "--name", "n", "--tag", "t"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "n/t\n");
    expectFails({"source", "look.json", "d"}, 2, "no plugin is named \"d\"");
    expectFails({"source", "look.json", "i"}, 2, "IntValue \"i\" has no GPU source: it offers no EXT_RTTEX");
    expectFails({"source", "look.json", "c", "--descriptor", "x"}, 1,
                "ColorValue \"c\" gives no source for \"x\"");
    EXPECT_EQ(run({"source", "look.json", "c", "--bitmaps", "baked"}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_directory(folder / "baked"));
}

TEST_F(ProgramTest, FullDiskShowsAsAFailure)
{
    const ProgramRun result = support::runProgram(
        {"/bin/sh", "-c", std::string("'") + kProgram + "' list > /dev/full"}, {}, folder.path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "error: cannot write to standard output: No space left on device\n");
}

// As the signal SIGPIPE, 13, ends other programs.
TEST_F(ProgramTest, ReaderThatGoesAwayEndsTheProgramWithoutAWord)
{
    for (const char* call : {"list --json", "describe TexNoiseMaya --json", "--help"}) {
        const ProgramRun result = support::runProgram(
            {"/bin/sh", "-c",
             std::string("{ sleep 0.2; '") + kProgram + "' " + call + "; echo $? > code; } | true"},
            {}, folder.path());
        EXPECT_EQ(bytesOf(folder / "code"), "141\n") << call;
        EXPECT_EQ(result.errors, "") << call;
    }
}

TEST_F(ProgramTest, ClosedStandardErrorLosesTheMessageAndKeepsTheExitCode)
{
    writeScene(R"("a": {"type": "Zzz"})");
    for (const char* call : {"rendr", "probe look.json", "bake look.json x -o a.png --frame nan"})
        for (const char* closed : {"2>&-", "2>/dev/full"}) {
            const ProgramRun result = support::runProgram(
                {"/bin/sh", "-c", std::string("'") + kProgram + "' " + call + " " + closed}, {},
                folder.path());
            EXPECT_EQ(result.exitCode, 2) << call << " " << closed;
        }
}

TEST_F(ProgramTest, FramesAndThreadsOutsideOfWhatThereIsAreRefused)
{
    writeScene(R"("c": {"type": "ColorValue"})");
    for (const std::string frame : {"nan", "1e999", "1x"})
        for (const std::vector<std::string>& call :
             {std::vector<std::string>{"bake", "look.json", "c", "-o", "a.png"},
              std::vector<std::string>{"source", "look.json", "c"},
              std::vector<std::string>{"render", "look.json", "-o", "a.png"}}) {
            std::vector<std::string> words = call;
            words.push_back("--frame=" + frame);
            const ProgramRun result = run(words);
            EXPECT_EQ(result.exitCode, 2) << frame;
            EXPECT_EQ(lineCount(result.errors), 1u) << result.errors;
            EXPECT_TRUE(result.errors.starts_with("error: --frame: ")) << result.errors;
        }
    for (const char* command : {"bake", "render"}) {
        std::vector<std::string> words = {command, "look.json", "-o", "a.png", "--threads", "4097"};
        if (std::string(command) == "bake") words.push_back("c");
        const ProgramRun result = run(words);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_NE(result.errors.find("4096"), std::string::npos) << result.errors;
    }
    expectFails({"render", "look.json", "-o", "a.png", "--frames", "1-2000000000"}, 2,
                "--frames: 1-2000000000 are 2000000000 frames; one call renders 100000 at most");
    EXPECT_EQ(folder.names(), std::set<std::string>{"look.json"});
}

TEST_F(ProgramTest, FrameBeyondAnIntegerNamesAFile)
{
    writeScene(R"("c": {"type": "ColorValue"})");
    const ProgramRun result =
        run({"render", "look.json", "-o", "a.%d.png", "--frame", "1e300", "--size", "2x2", "--samples", "1"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_TRUE(folder.names().contains("a.2147483647.png"));
}

TEST_F(ProgramTest, MeshThatMakesNoSenseIsAnErrorOfTheSceneForEveryCommand)
{
    writeScene(
        R"("c": {"type": "ColorValue"}, "m": {"type": "Mesh", "params": {"positions": [[0,0,0],[1,0,0],[0,1,0]],
                  "faces": [[0,1,7]]}})");
    const std::string line =
        "look.json: /plugins/m/params/faces: triangle 0 refers to position 7, but there are 3 "
        "(indices count from 0)";
    expectFails({"probe", "look.json"}, 2, line);
    expectFails({"source", "look.json", "c"}, 2, line);
    expectFails({"bake", "look.json", "c", "-o", "a.png"}, 2, line);
    expectFails({"render", "look.json", "-o", "a.png"}, 2, line);
}

TEST_F(ProgramTest, MeshFileAtFaultIsNamedWithItsLine)
{
    writeBytes(folder / "a.obj", "v 0 0 0\nv 1 0 0\nv 0 x 0\nf 1 2 3\n");
    writeScene(R"("m": {"type": "Mesh", "params": {"file": "a.obj"}})");
    expectFails({"probe", "look.json"}, 2,
                "look.json: /plugins/m/params/file: a.obj:3: \"x\" is no finite number");
    writeBytes(folder / "a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\n");
    expectFails({"probe", "look.json"}, 2,
                "look.json: /plugins/m/params/file: cannot read mesh \"a.obj\": it has no faces");
}

TEST_F(ProgramTest, MeshWithoutAFormLivesInAProbeAndIsRefusedForAPicture)
{
    writeScene(R"("m": {"type": "Mesh"})");
    EXPECT_EQ(run({"probe", "look.json"}).exitCode, 0);
    expectFails(
        {"render", "look.json", "-o", "a.png"}, 2,
        "look.json: /plugins/m: there is nothing to show; give it a file, a shape, or positions and faces");
}

TEST_F(ProgramTest, EmptyFilesSaySo)
{
    writeBytes(folder / "look.json", "\n");
    expectFails({"probe", "look.json"}, 2, "look.json: the file is empty; it has to hold a JSON object");
    writeScene("");
    expectFails({"probe", "look.json", "/dev/null"}, 2,
                "/dev/null: the file is empty; it has to hold a JSON object");
}

TEST_F(ProgramTest, BrokenLibraryInASearchedFolderIsAnError)
{
    std::filesystem::create_directory(folder / "plugins");
    const std::string whole = bytesOf(std::filesystem::path(kProgram).parent_path() / "libnezaiva.so");
    writeBytes(folder / "plugins" / "libcut.so", whole.substr(0, whole.size() / 2));
    const ProgramRun result = support::runProgram(
        {"/usr/bin/env", "OMBRIX_PLUGIN_PATH=plugins", kProgram, "list"}, {}, folder.path());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "error: cannot load plug-in library plugins/libcut.so: it is cut short\n");
    EXPECT_EQ(result.output, "");
    const ProgramRun own = support::runProgram(
        {"/usr/bin/env", "OMBRIX_PLUGIN_PATH=" + std::filesystem::path(kProgram).parent_path().string(),
         kProgram, "describe", "TexNoiseMaya"},
        {}, folder.path());
    EXPECT_EQ(own.exitCode, 0) << "the host's runtime stands beside the library: " << own.errors;
}

// Every example cut at a few places: whatever remains, the program answers and does not crash. The reader
// of the text has a test with every cut.
TEST_F(ProgramTest, CutExamplesNeverCrash)
{
    int scenes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kExamples)) {
        if (entry.path().extension() != ".json") continue;
        ++scenes;
        const std::string whole = bytesOf(entry.path());
        const std::size_t steps = 3;
        for (std::size_t i = 0; i < steps; ++i) {
            // Odd strides, so that cuts fall within words, numbers and escapes.
            const std::size_t length = whole.size() * i / steps + i % 7;
            writeBytes(folder / "cut.json", whole.substr(0, std::min(length, whole.size() - 2)));
            const ProgramRun result = run({"probe", "cut.json"});
            EXPECT_EQ(result.exitCode, 2) << entry.path() << " cut at " << length;
            EXPECT_EQ(result.errors.substr(0, 7), "error: ");
            EXPECT_EQ(result.output, "");
        }
    }
    EXPECT_GT(scenes, 0);
}

TEST_F(ProgramTest, ExamplesLoad)
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kExamples)) {
        if (entry.path().extension() != ".json") continue;
        const ProgramRun result = run({"probe", entry.path().string(), "-o", "out.json"});
        EXPECT_EQ(result.exitCode, 0) << entry.path() << "\n" << result.errors;
    }
}

} // namespace
