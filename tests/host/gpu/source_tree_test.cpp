// The drawing of GPU source text, byte for byte.

#include "host/gpu/source_tree.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ombrix;

std::string treeOf(const std::string& text)
{
    SourceTreeOptions options;
    options.describeBitmap = [](int index) {
        return index == 0 ? std::string("\"clouds\" 64 x 32") : std::string();
    };
    return drawSourceTree(readSource(text), options);
}

std::string withOperands(const std::string& first)
{
    return "uvw_transform " + first + ", 0,0,0, 0,0,0, 0,0,0\n";
}

TEST(SourceTree, ConstantsAreShort)
{
    EXPECT_EQ(treeOf(""), "1  (empty)\n");
    EXPECT_EQ(treeOf("color 0.500000 0.500000 0.500000 0.500000\n"), "1  color 0.5\n");
    EXPECT_EQ(treeOf("color 0.100000 -2.000000 1e6 1.000000\n"), "1  color (0.1, -2, 1e+06, 1)\n");
    EXPECT_EQ(treeOf("gamma 0.454545\n"), "1  gamma 0.454545\n");
}

TEST(SourceTree, OperatorsStandAboveTheirInputs)
{
    EXPECT_EQ(
        treeOf("color 1 1 1 1\nsubtex\ncolor 0 0 0 0\nsubtex\ncolor 2 2 2 2\nsubtex\nbitmap -980\nsubtex\n"
               "color 3 3 3 3\nsubtex\nbitmap -945\n"),
        "11  lerp [-945]\n"
        " 1  +- a: color 1\n"
        " 7  +- b: multiply [-980]\n"
        " 3  |  +- color 0\n"
        " 5  |  `- color 2\n"
        " 9  `- factor: color 3\n");
}

// (+ (* a a) a) with a hoisted.
TEST(SourceTree, RepeatedSlotsHaveNames)
{
    EXPECT_EQ(treeOf("bitmap 0\nsubtex\nbitmap -952\n" + withOperands("0,0,0") + "subtex\nbitmap -952\n" +
                     withOperands("1,0,0") + "subtex\nbitmap -980\nsubtex\nbitmap -952\n" +
                     withOperands("1,0,0") + "subtex\nbitmap -979\n" + withOperands("1,0,0") +
                     "subtex\nbitmap -934\n" + withOperands("1,0,0")),
              "17  last of 2 [-934]\n"
              " 1  +- #1 = bitmap 0 \"clouds\" 64 x 32\n"
              "14  `- result: add [-979]\n"
              " 9     +- multiply [-980]\n"
              " 3     |  +- #1\n"
              " 6     |  `- #1\n"
              "11     `- #1\n");
}

TEST(SourceTree, OperandsAreInWords)
{
    const std::string two = "color 1 1 1 1\nsubtex\ncolor 0 0 0 0\nsubtex\n";
    const auto headline = [&](const std::string& slot) {
        const std::string tree = treeOf(two + slot);
        return tree.substr(3, tree.find('\n') - 3);
    };
    EXPECT_EQ(headline("bitmap -947\n" + withOperands("4,0,0")), "compare <= [-947]");
    EXPECT_EQ(headline("bitmap -947\n" + withOperands("9,0,0")), "compare operation 9 [-947]");
    EXPECT_EQ(headline("bitmap -956\n" + withOperands("2,0,0")), "arithmetic: divide [-956]");
    EXPECT_EQ(headline("bitmap -979\n" + withOperands("0,0,0")), "subtract [-979]");
    EXPECT_EQ(headline("bitmap -943\n" + withOperands("1,0,0")), "max [-943]");
    EXPECT_EQ(headline("bitmap -983\n" + withOperands("0,2,0")), "sum, divided by 2 [-983]");
    EXPECT_EQ(headline("bitmap -983\n" + withOperands("0,1,0")), "sum [-983]");
    EXPECT_EQ(headline("bitmap -935\nuvw_transform 5,5,5, 1,1,1, 1,1,0, 0,0,0\n"),
              "manip (/ / / 1) (x x x x) [-935]");
    EXPECT_EQ(headline("bitmap -935\nuvw_transform 2,3,4, 6,0,0, 0,0,0, 0,0,0\n"), "manip (+ - * g) [-935]");
    EXPECT_EQ(treeOf("bitmap -953\n" + withOperands("7,2,0")), "1  user attribute 7, integer [-953]\n");
}

TEST(SourceTree, NotesFollowInTheirOrder)
{
    EXPECT_EQ(treeOf("uvw_transform 2,0,0,0,1,0,0,0,1,0.25,0,0\nmap_channel 1\nuvwGenMayaPlace2dTexture\n"
                     "uvParamsPtr_id 4\nbitmap 1\ncolor 0.5 0.5 0.5 1\ncompatibility_with 1\ninvert_alpha\n"
                     "alpha_from_intensity 2\n"),
              "5  bitmap 1, color (0.5, 0.5, 0.5, 1), compatibility 1, invert alpha, alpha from intensity 2\n"
              "        uvw: columns (2, 0, 0) (0, 1, 0) (0, 0, 1) offset (0.25, 0, 0), channel 1, place2d, "
              "block 4\n");
    EXPECT_EQ(treeOf("uvw_transform 1,0,0,0,1,0,0,0,1,0,0,0\nmap_channel_id 3\nuvwGenMayaPlace2dTexture\n"),
              "1  coordinates\n        uvw: named channel 3, place2d\n");
}

TEST(SourceTree, SettingsOfMayaNoiseAreTakenApart)
{
    std::string text = "maya_noise\n";
    for (int i = 0; i < 7; ++i)
        text += "color 0 0 0 0\nsubtex\n";
    // 0 | 3 << 3 | 2 << 5 | 1 << 7
    text += "bitmap -968\nsubtex\nmaya_noise_3d\nmaya_perlin\nuvw_transform 216,1,2,3,4,5,6,7,8,9,10,11\n";
    EXPECT_EQ(treeOf(text),
              "18  maya noise settings, 3d, perlin\n"
              "    |    type 0, dimensions 3, falloff 2, inflection 1, waves 9, depth 10, time 11\n"
              "    |    amplitude 1, ratio 2, frequency 3, frequency ratio 4, density 5, spottyness 6, size "
              "rand 7, "
              "randomness 8\n"
              "16  `- maya noise [-968]\n"
              " 1     +- color 1: color 0\n"
              " 4     +- color 2: color 0\n"
              " 6     +- threshold: color 0\n"
              " 8     +- implode center: color 0\n"
              "10     +- implode: color 0\n"
              "12     +- origin: color 0\n"
              "14     `- scale: color 0\n");
}

TEST(SourceTree, BrokenTextIsDrawnAsFarAsItGoes)
{
    EXPECT_EQ(treeOf("bitmap -901\nsubtex\nfrobnicate\nsubtex\nbitmap -1\nsubtex\ncolor 1 1 1 "
                     "1\nsubtex\nbitmap -979\n"),
              "1  bitmap -901 (not understood)\n"
              "3  not understood: \"frobnicate\"\n"
              "9  add [-979]\n"
              "5  +- bitmap -1 (not stored)\n"
              "7  `- color 1\n");
}

TEST(SourceTree, DeepTreesStayNarrow)
{
    std::string text = "color 1 1 1 1\n";
    for (int i = 0; i < 100000; ++i)
        text += "subtex\nbitmap -944\n";
    const std::string tree = treeOf(text);
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), 100001);
    std::size_t widest = 0;
    for (std::size_t start = 0; start < tree.size(); start = tree.find('\n', start) + 1)
        widest = std::max(widest, tree.find('\n', start) - start);
    EXPECT_LT(widest, 170u);
    EXPECT_NE(tree.find("`- (depth 100000) color 1\n"), std::string::npos);
    EXPECT_NE(tree.find("`- abs [-944]\n"), std::string::npos);
}

} // namespace
