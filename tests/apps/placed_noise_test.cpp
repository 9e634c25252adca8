// A placed noise through the built program: what a scene file, a probe and the library make of one another.

#include "support/program.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using nlohmann::json;

namespace {

// Perlin without octaves is a half plus the threshold: here 1, so that the second color shows alone.
constexpr const char* kScene = R"({
  "ombrix_scene": 1,
  "settings": {"frame": 1, "motion_blur": {"on": true, "shutter_length": 0.5, "geometry_samples": 2}},
  "plugins": {
    "place": {"type": "UVWGenMayaPlace2dTexture", "params": {
      "uv_set_name": "map2", "repeat_v": 2, "wrap_u": false, "nsamples": 0,
      "offset_u": {"times": [0.75, 1.25], "values": [0, 0.5]}}},
    "widths": {"type": "ContextColor", "params": {"field": "filter_widths"}},
    "noise": {"type": "TexNoiseMaya", "params": {
      "uvwgen": "place", "noise_type": "Perlin Noise", "depth_max": 0, "threshold": 0.5,
      "color2": [0, 0, 0], "color2_tex": "widths", "color2_tex_mult": 0.5,
      "nouvw_color": [0.25, 0.5, 0.75], "alpha_mult": 0.25}},
    "lost": {"type": "TexSimplexNoise", "params": {"nouvw_color": [1, 0, 0], "compatibility_with": 1}}}})";

constexpr const char* kProbe = R"({"ombrix_probe": 1, "frames": [{"frame": 1, "requests": [
  {"plugin": "place", "op": "uvw", "contexts": [
    {"surface": {"channels": {"1": {"offset": [0.25, 0.25, 0]}, "2": {"offset": [0.5, 0.5, 0]}},
                 "uv_sets": {"map2": 2}}},
    {"ray_time": 0.5, "surface": {"uvw": [0.25, 0.25, 0]}},
    {"ray_time": 1, "surface": {"uvw": [0.25, 0.25, 0]}},
    {"surface": {"uvw": [1.5, 0.25, 0]}}]},
  {"plugin": "noise", "op": "color", "contexts": [
    {"filtering": true, "filter_widths": [0.5, 1, 2, 1], "surface": {"uvw": [0.25, 0.25, 0]}},
    {"filter_widths": [0.5, 1, 2, 1], "surface": {"uvw": [0.25, 0.25, 0]}},
    {"surface": {"uvw": [1.5, 0.25, 0]}}]},
  {"plugin": "noise", "output": "out_alpha", "op": "float", "contexts": [{"surface": {"uvw": [0.25, 0.25, 0]}}]},
  {"plugin": "noise", "output": "out_transparency", "op": "color",
   "contexts": [{"surface": {"uvw": [0.25, 0.25, 0]}}]},
  {"plugin": "lost", "op": "color", "contexts": [{}]}]}]})";

json answerOf(const char* scene, const char* probe)
{
    const TemporaryFolder folder;
    writeBytes(folder / "look.json", scene);
    writeBytes(folder / "probe.json", probe);
    const support::ProgramRun run =
        support::runProgram({NEZAIVA_PROGRAM, "probe", "look.json", "probe.json"}, {}, folder.path());
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    return run.exitCode == 0 ? json::parse(run.output) : json();
}

void expectPlace(const json& value, int valid, float u, float v)
{
    EXPECT_EQ(value["valid"], valid);
    EXPECT_FLOAT_EQ(value["uvw"][0].get<float>(), u);
    EXPECT_FLOAT_EQ(value["uvw"][1].get<float>(), v);
}

void expectColor(const json& value, float r, float g, float b, float a)
{
    const float expected[] = {r, g, b, a};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_FLOAT_EQ(value[i].get<float>(), expected[i]) << i;
}

TEST(PlacedNoise, GoesFromTheSceneToTheAnswer)
{
    const json answer = answerOf(kScene, kProbe);
    ASSERT_TRUE(answer.contains("frames"));
    const json& frame = answer["frames"][0];
    const json& results = frame["results"];
    // By name; then by number at the middle and the end of the shutter, 0.25 and 0.5 further; then off.
    expectPlace(results[0]["values"][0], 1, 0.5f, 1.0f);
    expectPlace(results[0]["values"][1], 1, 0.5f, 0.5f);
    expectPlace(results[0]["values"][2], 1, 0.75f, 0.5f);
    expectPlace(results[0]["values"][3], 0, 1.5f, 0.5f);
    // The widths are halved for the texture, and its color is halved again.
    expectColor(results[1]["values"][0], 0.125f, 0.25f, 0.5f, 0.25f);
    expectColor(results[1]["values"][1], 0.125f, 0.25f, 0.5f, 0.25f);
    expectColor(results[1]["values"][2], 0.25f, 0.5f, 0.75f, 1.0f);
    EXPECT_FLOAT_EQ(results[2]["values"][0].get<float>(), 0.25f);
    expectColor(results[3]["values"][0], 0.75f, 0.75f, 0.75f, 1.0f);
    expectColor(results[4]["values"][0], 1.0f, 0.0f, 0.0f, 0.3f);
    ASSERT_EQ(frame["log"].size(), 1u);
    EXPECT_EQ(frame["log"][0]["level"], "warning");
    EXPECT_EQ(frame["log"][0]["text"],
              "[CommonMappedTexture] No uvw generator specified. Plugin name 'lost'.\n");
}

// The jitter of a tile is written into the sector and stays there until the next frame.
TEST(PlacedNoise, KeepsAJitteredSectorForTheFrame)
{
    const json answer = answerOf(
        R"({"ombrix_scene": 1, "plugins": {
            "at": {"type": "UVWValue", "params": {}},
            "noise": {"type": "TexNoiseMaya", "params": {"uvwgen": "at", "placement_type": "Place", "w": 0.5,
              "h": 0.5, "jitter": 1, "tile_u": true, "tile_v": true, "depth_max": 0, "noise_type": 0,
              "threshold": 0.5}}}})",
        R"({"ombrix_probe": 1, "requests": [{"plugin": "noise", "op": "color", "contexts": [
            {"values": {"at": {"uvw": [3.0625, -1.5, 0]}}}, {"values": {"at": {"uvw": [3.25, -1.5, 0]}}}]}]})");
    // Tile (3, -2): the sector starts at u = 0.316867232 / 2 and ends half a tile further.
    const json& values = answer["frames"][0]["results"][0]["values"];
    expectColor(values[0], 0.5f, 0.5f, 0.5f, 1.0f);
    expectColor(values[1], 1.0f, 1.0f, 1.0f, 1.0f);
}

} // namespace
