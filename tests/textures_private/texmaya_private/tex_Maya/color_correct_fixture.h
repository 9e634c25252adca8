// A colour correction with an input for each of its parameters.
#pragma once

#include "tex_maya_test.h"

#include <map>
#include <memory>
#include <string>

namespace support {

inline constexpr const char* kColors[] = {"in_color",  "col_gain",      "col_offset",
                                          "col_gamma", "col_clamp_min", "col_clamp_max"};
inline constexpr const char* kFloats[] = {
    "in_alpha",    "unpremultiply_input", "premultiply_result", "hue_shift",    "sat_gain",
    "val_gain",    "col_clamp",           "alpha_gain",         "alpha_offset", "alpha_gamma",
    "alpha_clamp", "alpha_clamp_min",     "alpha_clamp_max"};

struct ColorCorrectTest : testing::Test {
    ColorCorrectTest()
    {
        for (const char* name : kColors)
            colors.emplace(name, new TestColor(name, &log));
        for (const char* name : kFloats)
            floats.emplace(name, new TestFloat(name, &log));
    }
    TestColor& color(const char* name) { return *colors.at(name); }
    TestFloat& number(const char* name) { return *floats.at(name); }
    void give(const char* name, const OUtils::AColor& value)
    {
        color(name).value = value;
        node.connect(name, color(name));
    }
    void give(const char* name, float value)
    {
        number(name).value = value;
        node.connect(name, number(name));
    }
    void connectAll()
    {
        for (auto& [name, input] : colors)
            node.connect(name.c_str(), *input);
        for (auto& [name, input] : floats)
            node.connect(name.c_str(), *input);
    }

    CallLog log;
    std::map<std::string, std::unique_ptr<TestColor>> colors;
    std::map<std::string, std::unique_ptr<TestFloat>> floats;
    TestNode node{descriptor("TexColorCorrect")};
};

} // namespace support
