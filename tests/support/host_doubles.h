// What a test or a benchmark needs of a host to drive a plugin: values to write, a renderer, and the way
// to descriptors and interfaces.
#pragma once

#include <ombrix/plugin.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace support {

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
    int getCount(double) override { return -1; }
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

// Ids from 1 up, in the order of the first question.
class TestChannelNames : public OUtils::MapChannelNames {
public:
    int getNameId(const char* name) override
    {
        if (!name || !*name) return 0;
        const auto known = std::find(names.begin(), names.end(), name);
        const auto place = static_cast<int>(known - names.begin());
        if (known == names.end()) names.emplace_back(name);
        return place + 1;
    }

private:
    std::vector<std::string> names;
};

// A renderer of one thread without a log.
class TestRenderer : public OUtils::OmbrixRenderer {
public:
    int getThreadCount() override { return 1; }
    OUtils::RendererLogger* getLogger() override { return nullptr; }
    OUtils::ProgressDisplay* getProgress() override { return nullptr; }
    OUtils::MapChannelNames* getMapChannelNames() override { return &channelNames; }
    const OUtils::FrameData& getFrameData() override { return frame; }
    const OUtils::SequenceData& getSequenceData() override { return sequence; }

    OUtils::FrameData frame;
    OUtils::SequenceData sequence;
    TestChannelNames channelNames;
};

} // namespace support
