#include "apps/nezaiva/frame_files.h"

#include <gtest/gtest.h>

namespace {

TEST(FrameFiles, RangesMayBeNegative)
{
    EXPECT_EQ(parseFrameRange("1-24")->last, 24);
    EXPECT_EQ(parseFrameRange("-5--1")->first, -5);
    EXPECT_EQ(parseFrameRange("-5--1")->last, -1);
    EXPECT_EQ(parseFrameRange("7-7")->first, 7);
    for (const char* text :
         {"", "5", "5-", "-5", "9-3", "1-2-3", "a-b", "1-2x", " 1-2", "1..2", "99999999999-3"})
        EXPECT_FALSE(parseFrameRange(text)) << text;
}

TEST(FrameFiles, SizesAreTwoPositiveNumbers)
{
    EXPECT_EQ(parsePictureSize("640x360")->height, 360);
    EXPECT_EQ(parsePictureSize("1X1")->width, 1);
    EXPECT_EQ(parsePictureSize("65536x1")->width, 65536);
    for (const char* text :
         {"", "640", "640x", "x360", "0x5", "5x0", "-4x4", "640*360", "640x360x2", "1e3x5", "65537x4"})
        EXPECT_FALSE(parsePictureSize(text)) << text;
}

TEST(FrameFiles, TheFramesNumberTakesItsPlace)
{
    EXPECT_EQ(fileOfFrame("a/look.%04d.png", 7), "a/look.0007.png");
    EXPECT_EQ(fileOfFrame("look_###.exr", 7), "look_007.exr");
    EXPECT_EQ(fileOfFrame("look_%d.exr", 12345), "look_12345.exr");
    EXPECT_EQ(fileOfFrame("look.png", 7), "look.0007.png");
    EXPECT_EQ(fileOfFrame("look.png", -7), "look.-007.png");
    EXPECT_EQ(fileOfFrame("shot#1/100%/look.png", 3), "shot#1/100%/look.0003.png");
    EXPECT_EQ(fileOfFrame("50%_%02d.png", 3), "50%_03.png");
    EXPECT_TRUE(hasFramePattern("a.####.exr"));
    EXPECT_FALSE(hasFramePattern("a#/b.exr"));
}

TEST(FrameFiles, NamesStandBeforeTheExtension)
{
    EXPECT_EQ(withNameBeforeExtension("a/look.png", "normal"), "a/look.normal.png");
    EXPECT_EQ(withNameBeforeExtension("look", "uv"), "look.uv");
}

} // namespace
