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
    expectFails({"describe", "ColorValu"}, 2,
                "no plugin kind is named \"ColorValu\"; did you mean \"ColorValue\"?");
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
        EXPECT_EQ(run({"describe", name}).exitCode, 0) << name;
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

TEST_F(ProgramTest, ReaderThatGoesAwayShowsAsAFailureNotAsASignal)
{
    const ProgramRun result = support::runProgram(
        {"/bin/sh", "-c", std::string("{ '") + kProgram + "' list --json; echo $? > code; } | true"}, {},
        folder.path());
    EXPECT_EQ(bytesOf(folder / "code"), "1\n") << result.errors;
}

// Every example cut at many places: whatever remains, the program answers and does not crash.
TEST_F(ProgramTest, CutExamplesNeverCrash)
{
    int scenes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kExamples)) {
        if (entry.path().extension() != ".json") continue;
        ++scenes;
        const std::string whole = bytesOf(entry.path());
        const std::size_t steps = 40;
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
