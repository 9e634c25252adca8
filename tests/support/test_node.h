// A plugin instance as a host drives it: made by its descriptor, given values through its parameters,
// brought to a frame, asked through its interfaces.
#pragma once

#include "support/test_textures.h"

#include <ombrix/plugin.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

namespace support {

// A value that was not written by the operation under test.
inline constexpr float kUnwritten = 77.0f;
inline constexpr OUtils::AColor kUnwrittenColor{kUnwritten, kUnwritten, kUnwritten, kUnwritten};
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// A value on its way into setParameter: a number, or a reference to a plugin.
class WrittenParameter : public OUtils::OmbrixPluginParameter {
public:
    WrittenParameter(const char* parameter, int number)
        : name(parameter), type(OUtils::ParameterType::Int), intValue(number)
    {
    }
    WrittenParameter(const char* parameter, float number)
        : name(parameter), type(OUtils::ParameterType::Float), floatValue(number)
    {
    }
    WrittenParameter(const char* parameter, OUtils::PluginBase* plugin)
        : name(parameter), type(OUtils::ParameterType::Plugin), reference(plugin)
    {
    }

    const char* getName() override { return name; }
    OUtils::ParameterType getType() override { return type; }
    int getCount() override { return -1; }
    int getInt(int, double) override { return intValue; }
    float getFloat(int, double) override { return floatValue; }
    double getDouble(int, double) override { return static_cast<double>(floatValue); }
    OUtils::Vector getVector(int, double) override { return {}; }
    OUtils::AColor getColor(int, double) override { return {}; }
    OUtils::TraceTransform getTransform(int, double) override { return {}; }
    const char* getString(int, double) override { return ""; }
    OUtils::PluginBase* getPlugin(int, double) override { return reference; }

private:
    const char* name;
    OUtils::ParameterType type;
    int intValue = 0;
    float floatValue = 0.0f;
    OUtils::PluginBase* reference = nullptr;
};

// Every descriptor of a library.
inline std::vector<OUtils::PluginDesc*> descriptorsOf(OUtils::PluginLibDesc& library)
{
    struct Collector final : OUtils::EnumPluginsCallback {
        int processPlugin(OUtils::PluginDesc* desc) override
        {
            found.push_back(desc);
            return 1;
        }
        std::vector<OUtils::PluginDesc*> found;
    } collector;
    library.enumPlugins(&collector);
    return collector.found;
}

// Null when the library has no plugin of this name.
inline OUtils::PluginDesc* findDescriptor(OUtils::PluginLibDesc& library, const char* pluginName)
{
    for (OUtils::PluginDesc* desc : descriptorsOf(library))
        if (std::strcmp(desc->getName(), pluginName) == 0) return desc;
    return nullptr;
}

// The interface of a plugin by its id, in the class that has the id.
template <class Interface>
Interface* interfaceOf(OUtils::PluginBase* plugin, OUtils::InterfaceId id)
{
    return static_cast<Interface*>(plugin->getInterface(id));
}

// A renderer of one thread without a log.
class TestRenderer : public OUtils::OmbrixRenderer {
public:
    int getThreadCount() override { return 1; }
    OUtils::RendererLogger* getLogger() override { return nullptr; }
    OUtils::ProgressDisplay* getProgress() override { return nullptr; }
    OUtils::MapChannelNames* getMapChannelNames() override { return nullptr; }
    const OUtils::FrameData& getFrameData() override { return frame; }
    const OUtils::SequenceData& getSequenceData() override { return sequence; }

    OUtils::FrameData frame;
    OUtils::SequenceData sequence;
};

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

// All four channels hold the same bits.
#define EXPECT_SAME_COLOR(actual, ...)                                                                       \
    do {                                                                                                     \
        const OUtils::AColor actualColor = (actual);                                                         \
        const OUtils::AColor expectedColor = __VA_ARGS__;                                                    \
        EXPECT_SAME_BITS(actualColor.r, expectedColor.r);                                                    \
        EXPECT_SAME_BITS(actualColor.g, expectedColor.g);                                                    \
        EXPECT_SAME_BITS(actualColor.b, expectedColor.b);                                                    \
        EXPECT_SAME_BITS(actualColor.a, expectedColor.a);                                                    \
    } while (false)
