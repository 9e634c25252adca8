// What the tests of the stencil texture share.
#pragma once

#include "support/mapped_inputs.h"
#include "tex_maya_test.h"

namespace support {

// A stencil over (u, v) = (0.5, 0.5), with an image and a background that are plain to tell apart.
struct StencilTest : testing::Test {
    StencilTest()
    {
        image.value = {0.2f, 0.4f, 0.6f, 0.8f};
        background.value = {0.9f, 0.7f, 0.5f, 0.3f};
        generator.sample.uvw = {0.5f, 0.5f, 0.0f, 0.0f};
        node.connect("uvwgen", generator).connect("image", image).connect("default_color", background);
    }
    // At a point of its own.
    OUtils::AColor color()
    {
        ++node.context.sampleStamp;
        return node.color();
    }
    OUtils::AColor gradient()
    {
        OUtils::AColor result = kUnwrittenColor;
        EXPECT_EQ(node.texture()->evalColorGradient(&result, node.context), &result);
        return result;
    }
    void at(float u, float v) { generator.sample.uvw = {u, v, 0.0f, 0.0f}; }

    CallLog log;
    TestColor image{"image", &log}, background{"background", &log}, key{"key", &log};
    TestFloat mask{"mask", &log}, hue{"hue", &log}, saturation{"sat", &log}, value{"val", &log};
    TestGenerator generator;
    TestNode node{descriptor("TexStencil")};
};

} // namespace support
