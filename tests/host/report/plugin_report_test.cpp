#include "host/report/plugin_report.h"
#include "host/report/text_layout.h"
#include "support/witness_node.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace ombrix;
using nlohmann::json;

namespace {

json parameterOf(const json& plugin, const std::string& name)
{
    for (const json& parameter : plugin["parameters"])
        if (parameter["name"] == name) return parameter;
    return nullptr;
}

class PluginReportTest : public testing::Test {
protected:
    json witness() { return json::parse(formatJson(pluginJson(*registry.find("Witness"), registry))); }

    PluginRegistry registry;
};

TEST_F(PluginReportTest, ListTellsWhoEachPluginIs)
{
    const json list = json::parse(formatJson(pluginListJson(registry)));
    json found;
    for (const json& plugin : list)
        if (plugin["name"] == "ColorValue") found = plugin;
    EXPECT_EQ(found["declared"], json::parse(R"(["EXT_TEXTURE"])"));
    EXPECT_EQ(found["instance"], json::parse(R"(["EXT_RTTEX", "EXT_TEXTURE"])"))
        << "also what is not declared";
    EXPECT_EQ(found["builtin"], true);
    EXPECT_TRUE(found["id"].is_number_unsigned());
    EXPECT_EQ(list.size(), registry.all().size());
}

TEST_F(PluginReportTest, ListLeavesNoInstanceBehind)
{
    support::witnessCalls.clear();
    pluginListJson(registry);
    EXPECT_EQ(support::witnessCalls, std::vector<std::string>{"?.deleted"});
}

TEST_F(PluginReportTest, DescribeKeepsTheOrderOfDeclaration)
{
    const json plugin = witness();
    EXPECT_EQ(plugin["parameters"][0]["name"], "flag");
    EXPECT_EQ(plugin["parameters"].back()["name"], "out_silent");
    EXPECT_EQ(plugin["parameters"].size(), 19u);
}

TEST_F(PluginReportTest, DescribeGivesTheDefaultsByTheirKind)
{
    const json plugin = witness();
    const auto defaultOf = [&](const char* name) { return parameterOf(plugin, name)["default"]; };
    EXPECT_EQ(defaultOf("flag"), false);
    EXPECT_EQ(defaultOf("count"), 3);
    EXPECT_EQ(static_cast<float>(defaultOf("amount").get<double>()), 0.1f);
    EXPECT_EQ(defaultOf("tint"), json::parse("[0.5, 0.25, 1]"));
    EXPECT_EQ(defaultOf("text"), "");
    EXPECT_EQ(defaultOf("matrix"),
              json::parse(R"({"columns": [[1,0,0],[0,1,0],[0,0,1]], "offset": [0,0,0]})"));
    EXPECT_EQ(defaultOf("ints"), 0) << "that of one element";
    EXPECT_TRUE(defaultOf("input").is_null());
    EXPECT_EQ(defaultOf("weight"), 1);
    EXPECT_EQ(defaultOf("vectors"), json::parse("[0, 0, 0]"));
    EXPECT_TRUE(defaultOf("object").is_null());
    EXPECT_TRUE(defaultOf("out_amount").is_null());
}

TEST_F(PluginReportTest, DescribeTellsDeclarationCountInterfaceAndOutput)
{
    const json plugin = witness();
    const json objects = parameterOf(plugin, "objects");
    EXPECT_EQ(objects["declaration"], "addParamPlugin");
    EXPECT_EQ(objects["count"], 0);
    EXPECT_EQ(objects["interface"], "0x781C532C");
    EXPECT_FALSE(parameterOf(plugin, "amount").contains("interface"));
    EXPECT_EQ(parameterOf(plugin, "amount")["count"], -1);
    EXPECT_FALSE(parameterOf(plugin, "amount").contains("output"));
    EXPECT_EQ(parameterOf(plugin, "out_amount")["output"], true);
    EXPECT_EQ(parameterOf(plugin, "out_amount")["declaration"], "addOutputParamTextureFloat");
}

TEST_F(PluginReportTest, DescribeGivesMetadataAsItStandsAndParsed)
{
    const json plugin = witness();
    const json mode = parameterOf(plugin, "mode");
    EXPECT_EQ(mode["metadata"], "enum=(0:Plain; 1:Billow; 2:Wave), startRollout=(Looks)");
    EXPECT_EQ(mode["description"], "What to do");
    EXPECT_EQ(mode["ui"]["labels"][2], json::parse(R"({"value": 2, "label": "Wave"})"));
    EXPECT_EQ(mode["ui"]["rollout"], "Looks");
    const json layers = parameterOf(plugin, "layers");
    EXPECT_EQ(layers["ui"], json::parse(R"({"display_name": "Layers", "ends_rollout": true, "enable":
        [[{"parameter": "mode", "value": "1"}, {"parameter": "flag", "value": "1"}],
         [{"parameter": "mode", "value": "2"}]]})"));
    EXPECT_EQ(parameterOf(plugin, "count")["ui"], json::parse(R"({"min": 0, "max": 9})"));
    EXPECT_EQ(parameterOf(plugin, "amount")["ui"],
              json::parse(R"({"quantity": "angle", "units": "radians"})"));
    EXPECT_TRUE(parameterOf(plugin, "flag")["metadata"].is_null());
    EXPECT_TRUE(parameterOf(plugin, "flag")["description"].is_null());
}

TEST_F(PluginReportTest, TextNamesEverythingWithinItsWidth)
{
    const std::string text = pluginText(*registry.find("Witness"), registry, 60);
    for (const char* part : {"Witness  90001", "addParamPlugin of EXT_WORLD_MATRIX, list,",
                             "0 Plain, 1 Billow, 2 Wave", "opens group", "Looks", "closes group", "0 to 9",
                             "mode is 1 and flag is 1 or mode is 2", "shown as", "radians", "out_silent"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        EXPECT_LE(line.size(), 60u) << line;
    EXPECT_NE(pluginListText(registry, 80).find("  ColorValue  2019030101\n"), std::string::npos);
}

TEST(TextLayout, WrapsAtBlanksAndKeepsLongWords)
{
    EXPECT_EQ(wrapped("one two three", 2, 9), "  one two\n  three\n");
    EXPECT_EQ(wrapped("extraordinary x", 0, 5), "extraordinary\nx\n");
    EXPECT_EQ(wrapped("a\n\nb", 1, 10), " a\n \n b\n");
    EXPECT_EQ(wrapped("", 0, 10), "\n");
    EXPECT_EQ(wrapped("\xc3\xa9\xc3\xa9 \xc3\xa9", 0, 4), "\xc3\xa9\xc3\xa9 \xc3\xa9\n")
        << "characters, not bytes";
}

TEST(TextLayout, LabelStandsBesideItsText)
{
    EXPECT_EQ(labelled("ab", "one two three", 1, 6, 14), " ab   one two\n      three\n");
    EXPECT_EQ(labelled("too long", "one", 1, 4, 20), " too long\n    one\n");
}

} // namespace
