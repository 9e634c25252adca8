// What the tests of mapped textures and of generators need beside test_node.h: a surface, a generator, a
// renderer with a log, values of every kind, and a descriptor for a class of the test's own.
#pragma once

#include "host/params/host_parameters.h"
#include "support/test_node.h"

#include <string>
#include <utility>
#include <vector>

namespace support {

// A surface that has every channel, or none, and tells what it was asked for.
class TestSurface : public OUtils::PluginBase, public OUtils::MappedSurface {
public:
    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_MAPPED_SURFACE && mapped) return static_cast<OUtils::MappedSurface*>(this);
        return PluginBase::getInterface(id);
    }
    int getLocalUVWTransform(const OUtils::OmbrixContext&, int channel, OUtils::Transform* result) override
    {
        channels.push_back(channel);
        if (!known) return 0;
        *result = transform;
        return 1;
    }
    int getLocalUVW(const OUtils::OmbrixContext&, int channel, OUtils::UVWSample* result) override
    {
        sampledChannels.push_back(channel);
        result->uvw = {1.0f, 2.0f, 3.0f, 0.0f};
        return 7;
    }
    int getLocalUVWTransformByName(const OUtils::OmbrixContext&, int nameId,
                                   OUtils::Transform* result) override
    {
        names.push_back(nameId);
        if (nameId != knownName) return -1;
        *result = namedTransform;
        return 1;
    }
    int getMapChannelValue(const OUtils::OmbrixContext&, int, OUtils::Vector*) override { return -1; }
    void getMapChannelByIndex(const OUtils::OmbrixContext&, int, OUtils::Vector*) override {}
    float getMapChannelMissing(const OUtils::OmbrixContext&, int) override { return 1.0f; }

    bool mapped = true; // whether it offers EXT_MAPPED_SURFACE
    bool known = true;  // whether it has the channels
    int knownName = -1;
    OUtils::Transform transform, namedTransform;
    std::vector<int> channels, sampledChannels, names;
};

class TestGenerator : public OUtils::OmbrixUVWGen, public OUtils::RTTexInterface {
public:
    TestGenerator() : OmbrixUVWGen(nullptr) {}

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_UVWGEN && !generates) return nullptr;
        if (id == OUtils::EXT_RTTEX) return static_cast<OUtils::RTTexInterface*>(this);
        return OmbrixUVWGen::getInterface(id);
    }
    int evalUVW(const OUtils::OmbrixContext&, OUtils::UVWSample* result) override
    {
        result->uvw = sample.uvw;
        return valid;
    }
    int evalUVWDerivs(const OUtils::OmbrixContext&, OUtils::UVWSample* result) override
    {
        ++calls;
        *result = sample;
        return valid;
    }
    int evalUVWTransform(const OUtils::OmbrixContext&, OUtils::Transform* result) override
    {
        ++transformCalls;
        *result = transform;
        return transformValid;
    }
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData&) override
    {
        source.printf("generator '%s' %s %s\n", name, tag, descriptor);
        return 1;
    }

    bool generates = true; // whether it offers EXT_UVWGEN
    int valid = 1, transformValid = 1;
    OUtils::UVWSample sample;
    OUtils::Transform transform;
    int calls = 0, transformCalls = 0;
};

// Keeps what is logged, a level and a text each.
class RecordingRenderer : public TestRenderer {
public:
    explicit RecordingRenderer(int threadCount = 1) : threads(threadCount) {}
    int getThreadCount() override { return threads; }
    OUtils::RendererLogger* getLogger() override { return hasLog ? &logger : nullptr; }

    struct Logger : OUtils::RendererLogger {
        void log(OUtils::LogLevel level, const char* text) override { messages.emplace_back(level, text); }
        std::vector<std::pair<OUtils::LogLevel, std::string>> messages;
    } logger;
    bool hasLog = true;
    int threads;
};

// Writes a value of any kind, as the scene reader does. References are PluginReference.
inline void write(OUtils::OmbrixPluginInterface& plugin, const char* parameter, ombrix::ParameterValue value)
{
    ombrix::ParameterDeclaration declaration;
    declaration.name = parameter;
    ombrix::HostParameter written(declaration, std::move(value));
    EXPECT_EQ(plugin.setParameter(&written), 1) << parameter;
}
inline void write(OUtils::OmbrixPluginInterface& plugin, const char* parameter, ombrix::Value value)
{
    write(plugin, parameter, ombrix::ParameterValue{{}, {{std::move(value)}}});
}
inline void writeReference(OUtils::OmbrixPluginInterface& plugin, const char* parameter,
                           OUtils::PluginBase* referred)
{
    write(plugin, parameter, ombrix::Value(ombrix::PluginReference{referred, nullptr}));
}
// Linear between two times.
inline void writeAnimated(OUtils::OmbrixPluginInterface& plugin, const char* parameter, double from,
                          float atFrom, double to, float atTo)
{
    write(plugin, parameter, ombrix::ParameterValue{{from, to}, {{atFrom}, {atTo}}});
}

// A descriptor for a plugin class of the test, which the test constructs itself.
class LocalDesc : public OUtils::OmbrixPluginDesc {
public:
    explicit LocalDesc(OUtils::OmbrixParameterListDesc* parameters) { parameterDesc = parameters; }
    OUtils::PluginId getPluginID() override { return 1; }
    OUtils::PluginBase* newPlugin(OUtils::OmbrixPluginHost*) override { return nullptr; }
    void deletePlugin(OUtils::PluginBase*) override {}
    int supportsInterface(OUtils::InterfaceId) override { return 0; }
    const char* getName() override { return "Local"; }
    const char* getDescription() override { return ""; }
};

// A transform that is the identity with an offset.
inline OUtils::Transform offsetBy(float u, float v, float w)
{
    OUtils::Transform result;
    result.offset = {u, v, w};
    return result;
}

} // namespace support
