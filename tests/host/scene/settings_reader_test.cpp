// The settings of a scene file.

#include "host/renderer/setting_limits.h"
#include "support/scene_texts.h"

using namespace ombrix;

namespace {

class SettingsTest : public support::SceneTest {};

TEST_F(SettingsTest, ReadsEverySetting)
{
    const auto scene =
        parse(R"({"ombrix_scene": 1, "settings": {"frame": 2.5, "fps": 30, "threads": 3, "width": 10,
        "height": 20, "samples": 4, "bake_size": 8, "color_space": 2, "particle_time_unit": 0.5,
        "scene_origin": [1, 2, 1e10], "gpu_block_store": false,
        "motion_blur": {"on": true, "shutter_length": 1, "shutter_center": 0.25, "geometry_samples": 5}}})");
    ASSERT_TRUE(scene);
    const SceneSettings& s = scene->settings();
    EXPECT_EQ(s.frame, 2.5);
    EXPECT_EQ(s.fps, 30.0);
    EXPECT_EQ(s.threads, 3);
    EXPECT_EQ(s.width, 10);
    EXPECT_EQ(s.height, 20);
    EXPECT_EQ(s.samples, 4);
    EXPECT_EQ(s.bakeSize, 8);
    EXPECT_EQ(s.colorSpace, 2);
    EXPECT_EQ(s.particleTimeUnit, 0.5f);
    EXPECT_EQ(s.sceneOrigin.z, 1e10);
    EXPECT_FALSE(s.gpuBlockStore);
    EXPECT_TRUE(s.motionBlur.on);
    EXPECT_EQ(s.motionBlur.shutterLength, 1.0f);
    EXPECT_EQ(s.motionBlur.shutterCenter, 0.25f);
    EXPECT_EQ(s.motionBlur.geometrySamples, 5);
}

TEST_F(SettingsTest, SettingsHaveTheirDefaults)
{
    const auto scene = parse(R"({"ombrix_scene": 1})");
    const SceneSettings& s = scene->settings();
    EXPECT_EQ(s.frame, 1.0);
    EXPECT_EQ(s.fps, 24.0);
    EXPECT_EQ(s.threads, 0);
    EXPECT_EQ(s.width, 640);
    EXPECT_EQ(s.height, 360);
    EXPECT_EQ(s.samples, 16);
    EXPECT_EQ(s.bakeSize, 512);
    EXPECT_FALSE(s.colorSpace || s.particleTimeUnit || s.motionBlur.on);
    EXPECT_TRUE(s.gpuBlockStore);
    EXPECT_EQ(s.motionBlur.shutterLength, 0.5f);
    EXPECT_EQ(s.motionBlur.geometrySamples, 2);
}

TEST_F(SettingsTest, SettingsBeyondTheirRangeAreRefused)
{
    for (const char* setting :
         {"\"fps\": 0", "\"width\": 0", "\"height\": -1", "\"samples\": 0", "\"threads\": -1",
          "\"bake_size\": 0", "\"frame\": \"nan\"", "\"scene_origin\": [\"inf\", 0, 0]",
          "\"motion_blur\": {\"shutter_length\": -1}", "\"motion_blur\": true",
          "\"motion_blur\": {\"geometry_samples\": 0}", "\"color_space\": 1.5"})
        EXPECT_FALSE(parse(std::string(R"({"ombrix_scene": 1, "settings": {)") + setting + "}}")) << setting;
}

TEST_F(SettingsTest, WordsForNumbersAreToldWhereOnlyFiniteOnesWillDo)
{
    for (const char* word : {"nan", "Infinity"}) {
        parse(std::string(R"({"ombrix_scene": 1, "settings": {"frame": ")") + word + "\"}}");
        EXPECT_EQ(lines,
                  std::vector<std::string>{std::string("error: look.json: /settings/frame: takes a finite "
                                                       "number, not the text \"") +
                                           word + "\""});
    }
}

TEST_F(SettingsTest, SettingsHaveOneLimitWithTheCommandLine)
{
    const auto scene =
        parse(R"({"ombrix_scene": 1, "settings": {"threads": 4096, "width": 65536, "height": 65536,
        "samples": 1048576, "bake_size": 16384}})");
    ASSERT_TRUE(scene);
    EXPECT_EQ(scene->settings().threads, kMostThreads);
    EXPECT_EQ(scene->settings().width, kLargestPictureSide);
    EXPECT_EQ(scene->settings().samples, kMostSamples);
    EXPECT_EQ(scene->settings().bakeSize, kLargestBakeSize);
    for (const char* beyond : {"\"threads\": 4097", "\"width\": 65537", "\"samples\": 1048577",
                               "\"bake_size\": 16385", "\"height\": 1e300"})
        EXPECT_FALSE(parse(std::string(R"({"ombrix_scene": 1, "settings": {)") + beyond + "}}")) << beyond;
}

} // namespace
