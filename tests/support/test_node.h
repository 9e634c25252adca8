// A plugin instance as a host drives it: made by its descriptor, given values through its parameters,
// brought to a frame, asked through its interfaces.
#pragma once

#include "support/host_doubles.h"
#include "support/test_textures.h"

#include <ombrix/plugin.h>

#include <gtest/gtest.h>

#include <limits>

namespace support {

// A value that was not written by the operation under test.
inline constexpr float kUnwritten = 77.0f;
inline constexpr OUtils::AColor kUnwrittenColor{kUnwritten, kUnwritten, kUnwritten, kUnwritten};
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

class TestNode {
public:
    explicit TestNode(OUtils::PluginDesc* descriptor)
        : desc(descriptor), plugin(descriptor->newPlugin(nullptr)),
          host(interfaceOf<OUtils::OmbrixPluginInterface>(plugin, OUtils::EXT_OMBRIX_PLUGIN))
    {
        host->renderBegin(&renderer);
        host->frameBegin(&renderer);
    }
    TestNode(const TestNode&) = delete;
    TestNode& operator=(const TestNode&) = delete;
    ~TestNode()
    {
        host->frameEnd(&renderer);
        host->renderEnd(&renderer);
        desc->deletePlugin(plugin);
    }

    // Writes a parameter and begins the next frame.
    template <class Value>
    TestNode& set(const char* parameter, Value value)
    {
        WrittenParameter written(parameter, value);
        EXPECT_EQ(host->setParameter(&written), 1) << parameter;
        host->frameEnd(&renderer);
        host->frameBegin(&renderer);
        return *this;
    }
    TestNode& connect(const char* parameter, OUtils::PluginBase& input) { return set(parameter, &input); }

    OUtils::PluginBase* base() const { return plugin; }
    OUtils::OmbrixPluginInterface* life() const { return host; }
    OUtils::TextureInterface* texture() const
    {
        return interfaceOf<OUtils::TextureInterface>(plugin, OUtils::EXT_TEXTURE);
    }
    OUtils::TextureFloatInterface* floatTexture() const
    {
        return interfaceOf<OUtils::TextureFloatInterface>(plugin, OUtils::EXT_TEXTURE_FLOAT);
    }
    OUtils::RTTexInterface* rtTexture() const
    {
        return interfaceOf<OUtils::RTTexInterface>(plugin, OUtils::EXT_RTTEX);
    }

    OUtils::AColor color()
    {
        OUtils::AColor result = kUnwrittenColor;
        EXPECT_EQ(texture()->evalColor(&result, context), &result);
        return result;
    }
    float value() { return floatTexture()->evalFloat(context); }

    TestContext context;
    TestRenderer renderer;

private:
    OUtils::PluginDesc* desc;
    OUtils::PluginBase* plugin;
    OUtils::OmbrixPluginInterface* host;
};

struct ColorBounds {
    OUtils::AColor lower = kUnwrittenColor, upper = kUnwrittenColor;
};
inline ColorBounds colorBounds(TestNode& node)
{
    ColorBounds bounds;
    node.texture()->evalColorBounds(&bounds.lower, &bounds.upper);
    return bounds;
}

struct FloatBounds {
    float lower = kUnwritten, upper = kUnwritten;
};
inline FloatBounds floatBounds(TestNode& node)
{
    FloatBounds bounds;
    node.floatTexture()->evalFloatBounds(&bounds.lower, &bounds.upper);
    return bounds;
}

} // namespace support
