#include "host/scene/json_text.h"

#include <gtest/gtest.h>

using namespace ombrix;

namespace {

struct Parsed {
    std::optional<nlohmann::json> value;
    std::vector<std::string> lines;
};

Parsed parsed(std::string_view text)
{
    Diagnostics diagnostics("f");
    Parsed result;
    result.value = parseJsonText(text, diagnostics);
    result.lines = diagnostics.lines();
    return result;
}

TEST(JsonText, TakesBothKindsOfComments)
{
    const Parsed result = parsed("// first\n{\"a\": /* two */ [1, 2.5, \"x\", null, true]}");
    ASSERT_TRUE(result.value);
    EXPECT_EQ(*result.value, (nlohmann::json{{"a", {1, 2.5, "x", nullptr, true}}}));
    EXPECT_TRUE(result.lines.empty());
}

// Cuts within words, numbers, escapes, characters of several bytes and comments.
TEST(JsonText, RefusesATextThatIsCutAnywhere)
{
    constexpr std::string_view kWhole =
        "/* a */ {\"scene\": {\"w\\u00e4rm\\n\": [-1.5e+3, true, null, \"\u00e4\"],\n"
        " // b\n \"list\": [{}, {\"a\": [[]]}]}}";
    ASSERT_TRUE(parsed(kWhole).value);
    for (std::size_t length = 0; length < kWhole.size(); ++length) {
        const Parsed result = parsed(kWhole.substr(0, length));
        EXPECT_FALSE(result.value) << "cut at " << length;
        ASSERT_FALSE(result.lines.empty()) << "cut at " << length;
        EXPECT_EQ(result.lines[0].substr(0, 10), "error: f: ");
    }
}

TEST(JsonText, TellsLineAndColumnOfAFault)
{
    const Parsed result = parsed("{\"a\": 1,\n \"b\": }");
    EXPECT_FALSE(result.value);
    ASSERT_EQ(result.lines.size(), 1u);
    EXPECT_EQ(result.lines[0].substr(0, 29), "error: f: line 2, column 7: u");
    EXPECT_NE(result.lines[0].find("unexpected '}'"), std::string::npos);
}

TEST(JsonText, ReportsANameThatStandsTwiceWithItsPlace)
{
    const Parsed result = parsed(R"({"p": {"a/b": 1, "c": [{"x": 1, "x": 2}], "a/b": 3}})");
    EXPECT_EQ(result.lines,
              (std::vector<std::string>{"error: f: /p/c/0/x: \"x\" stands here twice; keep one of them",
                                        "error: f: /p/a~1b: \"a/b\" stands here twice; keep one of them"}));
}

TEST(JsonText, RefusesBytesThatAreNoUtf8)
{
    for (const char* bad :
         {"\xff", "\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xc3", "\x80"}) {
        const Parsed result = parsed(std::string("{\n\"a\": \"") + bad + "\"}");
        EXPECT_FALSE(result.value);
        ASSERT_EQ(result.lines.size(), 1u);
        EXPECT_EQ(result.lines[0].substr(0, 39), "error: f: line 2, column 7: the byte 0x")
            << result.lines[0];
    }
    EXPECT_FALSE(parsed("// \xff\n1").value) << "in a comment too";
    EXPECT_TRUE(parsed("\"\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\"").value);
}

TEST(JsonText, RefusesDeepNestingWithoutACrash)
{
    for (const char* bracket : {"[", "{\"a\":"}) {
        std::string text;
        for (int i = 0; i < 50000; ++i)
            text += bracket;
        const Parsed result = parsed(text);
        EXPECT_FALSE(result.value);
        ASSERT_EQ(result.lines.size(), 1u);
        EXPECT_NE(result.lines[0].find("nested deeper than 100 levels"), std::string::npos);
    }
}

TEST(JsonText, TakesTheDeepestNestingThatIsAllowed)
{
    const std::string text = std::string(kDeepestNesting, '[') + std::string(kDeepestNesting, ']');
    EXPECT_TRUE(parsed(text).value);
    EXPECT_FALSE(parsed("[" + text + "]").value);
}

TEST(JsonText, EmptyTextSaysSo)
{
    for (const char* text : {"", " \n\t\r\n"})
        EXPECT_EQ(parsed(text).lines,
                  std::vector<std::string>{"error: f: the file is empty; it has to hold a JSON object"});
}

TEST(JsonText, WordsOfOtherLanguagesGetTheirForm)
{
    const std::pair<const char*, const char*> cases[] = {
        {"{\"a\": NaN}", "JSON has no NaN; write \"nan\", with the quotes"},
        {"{\"a\": nan}", "JSON has no nan; write \"nan\", with the quotes"},
        {"[1, Infinity]", "JSON has no Infinity; write \"inf\", with the quotes"},
        {"[-Infinity]", "JSON has no -Infinity; write \"-inf\", with the quotes"},
        {"[-inf]", "JSON has no -inf; write \"-inf\", with the quotes"},
        {"[True]", "JSON has no True; write true"},
        {"[FALSE, 1]", "JSON has no FALSE; write false"},
        {"{\"a\": None}", "JSON has no None; write null"},
    };
    for (const auto& [text, complaint] : cases) {
        const Parsed result = parsed(text);
        ASSERT_EQ(result.lines.size(), 1u) << text;
        EXPECT_TRUE(result.lines[0].ends_with(complaint)) << result.lines[0];
        EXPECT_TRUE(result.lines[0].starts_with("error: f: line 1, column ")) << result.lines[0];
    }
    EXPECT_EQ(parsed("[true true]").lines[0].find("JSON has no"), std::string::npos) << "true is JSON";
}

TEST(JsonText, FaultsThatAreOftenMadeGetAHint)
{
    for (const char* text : {"[1, ]", "{\"a\": 1, }", "{\"a\": }"})
        EXPECT_NE(parsed(text).lines[0].find("a value is missing, or there is a comma too many"),
                  std::string::npos)
            << text;
    EXPECT_NE(parsed("[1e999]").lines[0].find("write \"inf\" or \"-inf\", with the quotes"),
              std::string::npos);
}

TEST(JsonText, ANumberBeyondAllRangesIsToldByItsLastDigit)
{
    const std::pair<const char*, const char*> cases[] = {
        {"1e999", "line 1, column 5"},
        {"[1e999]", "line 1, column 6"},
        {"// 1e999\n{\"1e999\": -1e999 , \"b\": 2}", "line 2, column 16"},
    };
    for (const auto& [text, place] : cases)
        EXPECT_TRUE(
            parsed(text).lines[0].starts_with(std::string("error: f: ") + place + ": number overflow"))
            << parsed(text).lines[0];
}

TEST(JsonText, KeepsTheLastOfRepeatedNamesAndAllOtherValues)
{
    EXPECT_EQ(*parsed(R"({"a": {"x": 1}, "b": [[], {}, [2]], "a": {"y": 3}})").value,
              nlohmann::json::parse(R"({"a": {"y": 3}, "b": [[], {}, [2]]})"));
    EXPECT_EQ(parsed(R"([[1, {"x": 1}], [], {"x": [0, 5, {"y": 1, "y": 2}]}])").lines,
              std::vector<std::string>{"error: f: /2/x/2/y: \"y\" stands here twice; keep one of them"});
}

TEST(JsonText, RefusesWhatIsEmptyOrHasMoreThanOneValue)
{
    for (const char* text :
         {"", "  ", "{} {}", "{", "[1,]", "{'a': 1}", "1e999", "\"\\ud800\"", "nul", "/* open"}) {
        const Parsed result = parsed(text);
        EXPECT_FALSE(result.value) << text;
        EXPECT_EQ(result.lines.size(), 1u) << text;
    }
}

} // namespace
