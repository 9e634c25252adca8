// The program against what the documentation promises of its files and commands. The cases stand in the JSON
// files beside this one; each is one run of the program, however much it asks. An answer may hold more keys
// than a case names.

#include "support/program.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <sstream>

using nlohmann::json;
using support::ProgramRun;

namespace {

const std::filesystem::path kProgram = NEZAIVA_PROGRAM;

std::vector<json> casesOf(const std::string& file)
{
    return json::parse(bytesOf(std::filesystem::path(CONTRACT_CASES) / file), nullptr, true, true);
}

std::string nameOf(const testing::TestParamInfo<json>& info)
{
    return info.param["name"];
}

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Numbers agree as floats, integers that no float holds as themselves; near allows a relative difference.
bool sameNumber(const json& got, const json& want, double near)
{
    if (got.is_number_integer() && want.is_number_integer()) return got == want;
    const double g = got, w = want;
    return static_cast<float>(g) == static_cast<float>(w) || std::abs(g - w) <= near * std::abs(w);
}

// What an answer has that differs from what is wanted; "" when nothing does.
std::string difference(const std::string& place, const json& got, const json& want, double near)
{
    const auto differs = [&] { return place + " is " + got.dump() + ", not " + want.dump(); };
    if (want.is_number()) return got.is_number() && sameNumber(got, want, near) ? "" : differs();
    if (want.is_object() && got.is_object()) {
        for (const auto& [key, member] : want.items()) {
            if (!got.contains(key)) return place + " has no \"" + key + "\": " + got.dump();
            const std::string inside = difference(place + "." + key, got[key], member, near);
            if (!inside.empty()) return inside;
        }
        return "";
    }
    if (want.is_array() && got.is_array() && got.size() == want.size()) {
        for (std::size_t i = 0; i < want.size(); ++i) {
            const std::string inside =
                difference(place + "[" + std::to_string(i) + "]", got[i], want[i], near);
            if (!inside.empty()) return inside;
        }
        return "";
    }
    return got == want ? "" : differs();
}

class ContractTest : public testing::TestWithParam<json> {
protected:
    ProgramRun run(const std::vector<std::string>& words, const std::string& input = {})
    {
        std::vector<std::string> arguments = {"/usr/bin/env"};
        for (const auto& [name, value] : environment.items())
            arguments.push_back(name + "=" + filledIn(value));
        arguments.push_back(kProgram.string());
        for (const std::string& word : words)
            arguments.push_back(filledIn(word));
        return support::runProgram(arguments, input, folder.path());
    }
    // A text as it is, anything else as JSON.
    void write(const std::string& file, const json& contents)
    {
        writeBytes(folder / file, contents.is_string() ? contents.get<std::string>() : contents.dump());
    }
    void writeFiles(const json& one)
    {
        const json files = one.value("files", json::object());
        for (const auto& [file, contents] : files.items())
            write(file, contents);
    }
    void writeScene(const json& one)
    {
        writeFiles(one);
        json scene = {{"ombrix_scene", 1}};
        for (const char* key : {"settings", "plugins"})
            if (one.contains(key)) scene[key] = one[key];
        write("look.json", one.value("scene", scene));
    }

    TemporaryFolder folder;
    json environment = json::object();

private:
    static std::string filledIn(std::string text)
    {
        const std::string mark = "@PROGRAM_FOLDER@";
        if (const std::size_t place = text.find(mark); place != std::string::npos)
            text.replace(place, mark.size(), kProgram.parent_path().string());
        return text;
    }
};

class Answers : public ContractTest {
protected:
    static void expectAnswer(const json& got, const json& want)
    {
        if (want.contains("error")) {
            EXPECT_FALSE(got.contains("values")) << got;
            EXPECT_TRUE(holds(got.value("error", ""), want["error"])) << got;
            return;
        }
        ASSERT_TRUE(got.contains("values")) << got;
        if (want.contains("values")) {
            EXPECT_EQ(difference("", got["values"], want["values"], want.value("near", 0.0)), "");
            return;
        }
        const std::vector<std::string> names = got["values"][0];
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end())) << got;
        for (const std::string name : want["holds"])
            EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
        for (const std::string name : want["lacks"])
            EXPECT_EQ(std::find(names.begin(), names.end(), name), names.end()) << name;
    }
};

TEST_P(Answers, AreAsPromised)
{
    const json& one = GetParam();
    writeScene(one);
    json frames = one.value("frames", json::array());
    if (one.contains("answers")) frames.push_back({{"answers", one["answers"]}});
    json probe = {{"ombrix_probe", 1}};
    for (const json& frame : frames) {
        json asked = frame;
        asked.erase("answers");
        asked["requests"] = json::array();
        for (const json& answer : frame["answers"])
            asked["requests"].push_back(answer["ask"]);
        if (frame.contains("frame"))
            probe["frames"].push_back(asked);
        else
            probe["requests"] = asked["requests"];
    }
    write("probe.json", probe);

    const ProgramRun result = run({"probe", "look.json", "probe.json"});
    EXPECT_EQ(result.exitCode, one.value("exit", 0)) << result.errors;
    const json answered = json::parse(result.output)["frames"];
    ASSERT_EQ(answered.size(), frames.size());
    for (std::size_t f = 0; f < frames.size(); ++f) {
        const json scenesFrame = one.value("settings", json::object()).value("frame", json(1));
        EXPECT_EQ(answered[f]["frame"], frames[f].value("frame", scenesFrame));
        EXPECT_TRUE(answered[f]["log"].is_array());
        const json& wanted = frames[f]["answers"];
        ASSERT_EQ(answered[f]["results"].size(), wanted.size());
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            SCOPED_TRACE("frame " + std::to_string(f) + ": " + wanted[i]["ask"].dump());
            expectAnswer(answered[f]["results"][i], wanted[i]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfValues, Answers, testing::ValuesIn(casesOf("values.json")), nameOf);
INSTANTIATE_TEST_SUITE_P(OfContexts, Answers, testing::ValuesIn(casesOf("contexts.json")), nameOf);
INSTANTIATE_TEST_SUITE_P(OfFrames, Answers, testing::ValuesIn(casesOf("frames.json")), nameOf);

class Errors : public ContractTest {};

TEST_P(Errors, AreToldOneALine)
{
    const json& one = GetParam();
    writeScene(one);
    write("probe.json", one.value("probe", json{{"ombrix_probe", 1}, {"requests", json::array()}}));
    const ProgramRun result = run({"probe", "look.json", "probe.json"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "");
    if (one.contains("exactly")) {
        EXPECT_EQ(result.errors, one["exactly"].get<std::string>());
        return;
    }
    const json& wanted = one["errors"];
    const std::vector<std::string> lines = linesOf(result.errors);
    ASSERT_EQ(lines.size(), wanted.size()) << result.errors;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_TRUE(lines[i].starts_with("error: ")) << lines[i];
        for (const std::string part : wanted[i])
            EXPECT_TRUE(holds(lines[i], part)) << lines[i] << "\nhas no " << part;
    }
}

INSTANTIATE_TEST_SUITE_P(OfFiles, Errors, testing::ValuesIn(casesOf("errors.json")), nameOf);

class Calls : public ContractTest {
protected:
    static void expectParts(const std::string& text, const json& parts)
    {
        if (parts.empty()) {
            EXPECT_EQ(text, "");
        }
        for (const std::string part : parts)
            EXPECT_TRUE(holds(text, part)) << text << "\nhas no " << part;
    }
};

TEST_P(Calls, EndAsPromised)
{
    const json& one = GetParam();
    writeFiles(one);
    environment = one.value("environment", json::object());
    for (const json& call : one["calls"]) {
        SCOPED_TRACE(call.dump());
        const ProgramRun result = run(call);
        EXPECT_EQ(result.exitCode, one["exit"]);
        if (one.contains("exactly"))
            EXPECT_EQ(result.output, one["exactly"].get<std::string>());
        else
            expectParts(result.output, one["output"]);
        for (const std::string part : one.value("lacks", json::array()))
            EXPECT_FALSE(holds(result.output, part)) << part;
        expectParts(result.errors, one["errors"]);
    }
}

INSTANTIATE_TEST_SUITE_P(OfTheProgram, Calls, testing::ValuesIn(casesOf("calls.json")), nameOf);

// What a table of cases cannot say.
class Program : public ContractTest {};

TEST_F(Program, ListsAndDescribesItsPlugins)
{
    const json kinds = json::parse(run({"list", "--json"}).output);
    EXPECT_TRUE(
        std::any_of(kinds.begin(), kinds.end(), [](const json& k) { return !k.contains("builtin"); }));
    for (const json& kind : kinds) {
        const std::string name = kind["name"];
        EXPECT_TRUE(kind["id"].is_number_integer()) << name;
        EXPECT_TRUE(kind["description"].is_string()) << name;
        for (const char* key : {"declared", "instance"}) {
            const std::vector<std::string> interfaces = kind[key];
            EXPECT_TRUE(std::is_sorted(interfaces.begin(), interfaces.end())) << name;
            EXPECT_EQ(std::adjacent_find(interfaces.begin(), interfaces.end()), interfaces.end()) << name;
        }
    }
    const json noise = json::parse(run({"describe", "TexNoiseMaya", "--json"}).output);
    EXPECT_EQ(noise["id"], 2011050401);
    for (const json& parameter : noise["parameters"])
        for (const char* key : {"name", "declaration", "default", "count", "description", "metadata"})
            EXPECT_TRUE(parameter.contains(key)) << parameter;
}

TEST_F(Program, TakesCommentsAndStandardInputAndWritesIntoAFileAlone)
{
    write("look.json", "// a scene\n{\"ombrix_scene\": 1, /* one */ \"plugins\": {\"f\": "
                       "{\"type\": \"FloatValue\", \"params\": {\"value\": 2}}}}");
    const std::string probe =
        R"({"ombrix_probe": 1, "requests": [{"plugin": "f", "op": "float", "contexts": [{}, {}]}]})";
    const ProgramRun shown = run({"probe", "look.json", "-"}, probe);
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_EQ(json::parse(shown.output)["frames"][0]["results"][0]["values"], (json{2, 2}));
    const ProgramRun kept = run({"probe", "look.json", "-", "-o", "answer.json"}, probe);
    EXPECT_EQ(kept.output, "");
    EXPECT_EQ(bytesOf(folder / "answer.json"), shown.output);
}

TEST_F(Program, RefusesDeepNesting)
{
    write("look.json", "{\"ombrix_scene\": 1, \"plugins\": " + std::string(50000, '['));
    const ProgramRun result = run({"probe", "look.json"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(linesOf(result.errors).size(), 1u);
}

// The width and height of a PNG file stand big-endian at its bytes 16 to 23.
TEST_F(Program, RendersPicturesAndLeavesNothingElse)
{
    writeScene({{"plugins",
                 {{"g", {{"type", "Mesh"}, {"params", {{"shape", "sphere"}}}}},
                  {"m", {{"type", "Surface"}, {"params", {{"diffuse", {0.8, 0.2, 0.1}}}}}},
                  {"n", {{"type", "Node"}, {"params", {{"geometry", "g"}, {"material", "m"}}}}}}}});
    const auto render = [&](const std::string& file) {
        return run({"render", "look.json", "-o", file, "--size", "64x36", "--samples", "2"});
    };
    const ProgramRun png = render("a.png"), exr = render("a.exr");
    EXPECT_EQ(png.exitCode, 0) << png.errors;
    EXPECT_EQ(exr.exitCode, 0) << exr.errors;
    EXPECT_EQ(png.output + exr.output, "");
    EXPECT_EQ(bytesOf(folder / "a.png").substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(bytesOf(folder / "a.png").substr(16, 8), std::string("\0\0\0\x40\0\0\0\x24", 8));
    EXPECT_EQ(bytesOf(folder / "a.exr").substr(0, 4), "\x76\x2f\x31\x01");
    EXPECT_EQ(render("no/such/a.exr").exitCode, 1);
    EXPECT_EQ(folder.names(), (std::set<std::string>{"look.json", "a.png", "a.exr"}));
}

} // namespace
