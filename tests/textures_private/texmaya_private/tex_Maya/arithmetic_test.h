// What the tests of the arithmetic nodes share.
#pragma once

#include "tex_maya_test.h"

#include "host/params/host_parameters.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace support {

inline constexpr float kInfinity = std::numeric_limits<float>::infinity();

// A list of plugins on its way into setParameter.
class WrittenPlugins : public WrittenParameter {
public:
    WrittenPlugins(const char* parameter, std::vector<OUtils::PluginBase*> entries)
        : WrittenParameter(parameter, static_cast<OUtils::PluginBase*>(nullptr)), plugins(std::move(entries))
    {
    }
    int getCount(double /*time*/) override { return static_cast<int>(plugins.size()); }
    OUtils::PluginBase* getPlugin(int index, double) override
    {
        return plugins[static_cast<std::size_t>(index)];
    }

private:
    std::vector<OUtils::PluginBase*> plugins;
};

inline void connectList(TestNode& node, const char* parameter, std::vector<OUtils::PluginBase*> entries)
{
    WrittenPlugins written(parameter, std::move(entries));
    EXPECT_EQ(node.life()->setParameter(&written), 1) << parameter;
    node.life()->frameEnd(&node.renderer);
    node.life()->frameBegin(&node.renderer);
}

// The colour at a point that no memo knows.
inline OUtils::AColor freshColor(TestNode& node)
{
    ++node.context.sampleStamp;
    return node.color();
}

// The object that answers an output parameter.
template <class Interface>
Interface* outputOf(TestNode& node, const char* name)
{
    return dynamic_cast<Interface*>(ombrix::boundOutput(*node.life()->paramList, name));
}

// The line that a test input writes for itself.
inline std::string sourceLine(const char* label)
{
    return std::string(label) + " theName theTag MaterialDescriptor\n";
}

inline void expectZeroGradient(TestNode& node)
{
    OUtils::AColor gradient = kUnwrittenColor;
    EXPECT_EQ(node.texture()->evalColorGradient(&gradient, node.context), &gradient);
    EXPECT_SAME_COLOR(gradient, {0.0f, 0.0f, 0.0f, 0.0f});
}

} // namespace support
