// The built library, opened as a host does.
#pragma once

#include "support/test_node.h"
#include "support/text_sink.h"

#include <ombrix/plugin.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fstream>
#include <stdexcept>
#include <string>

namespace conformance {

// Whether the library's file is mapped into this process.
inline bool isMapped()
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(NEZAIVA_MODULE) != std::string::npos) return true;
    return false;
}

// Throws std::runtime_error when the library cannot be opened.
class LoadedLibrary {
public:
    LoadedLibrary() : handle(dlopen(NEZAIVA_MODULE, RTLD_NOW | RTLD_LOCAL))
    {
        if (!handle) throw std::runtime_error(dlerror());
        const auto entry =
            reinterpret_cast<OUtils::GetLibDescFunction>(dlsym(handle, OUtils::kGetLibDescName));
        if (!entry) throw std::runtime_error(dlerror());
        library = entry();
    }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    ~LoadedLibrary() { dlclose(handle); }

    OUtils::PluginLibDesc& desc() { return *library; }

private:
    void* handle;
    OUtils::PluginLibDesc* library = nullptr;
};

// A host that takes everything and keeps nothing.
class AcceptingHost : public OUtils::OmbrixPluginHost {
public:
    int addPlugin(OUtils::PluginDesc*) override { return 1; }
    int removePlugin(OUtils::PluginDesc*) override { return 1; }
    int addParameters(OUtils::PluginDesc*, OUtils::OmbrixParameterListDesc*) override { return 1; }
};

// Asks every evaluation that an instance offers, where no surface is.
inline void evaluateEverything(OUtils::PluginBase* plugin, const OUtils::OmbrixContext& context)
{
    using namespace OUtils;
    using support::interfaceOf;
    AColor color, other;
    float lower = 0.0f, upper = 0.0f;
    if (auto* texture = interfaceOf<TextureInterface>(plugin, EXT_TEXTURE)) {
        EXPECT_EQ(texture->evalColor(&color, context), &color);
        EXPECT_EQ(texture->evalColorGradient(&color, context), &color);
        texture->evalColorBounds(&color, &other);
    }
    if (auto* texture = interfaceOf<TextureFloatInterface>(plugin, EXT_TEXTURE_FLOAT)) {
        texture->evalFloat(context);
        EXPECT_EQ(texture->evalFloatGradient(&color, context), &color);
        texture->evalFloatBounds(&lower, &upper);
    }
    if (auto* texture = interfaceOf<TextureIntInterface>(plugin, EXT_TEXTURE_INT)) texture->evalInt(context);
    Transform transform;
    if (auto* texture = interfaceOf<TextureTransformInterface>(plugin, EXT_TEXTURE_TRANSFORM))
        texture->evalTransform(&transform, context);
    UVWSample sample;
    if (auto* generator = interfaceOf<UVWGenInterface>(plugin, EXT_UVWGEN)) {
        generator->evalUVW(context, &sample);
        generator->evalUVWDerivs(context, &sample);
        generator->evalUVWTransform(context, &transform);
        EXPECT_EQ(generator->evalUVWForChannel(nullptr, context, &sample), 0);
    }
}

// A whole life of one instance: two frames with evaluations and GPU text.
inline void liveOnce(OUtils::PluginDesc* desc)
{
    using namespace OUtils;
    support::TestRenderer renderer;
    support::TestContext context;
    PluginBase* plugin = desc->newPlugin(nullptr);
    ASSERT_NE(plugin, nullptr) << desc->getName();
    static_cast<Plugin*>(plugin)->setPluginName("an instance");
    auto* life = support::interfaceOf<OmbrixPluginInterface>(plugin, EXT_OMBRIX_PLUGIN);
    life->renderBegin(&renderer);
    for (int frame = 0; frame < 2; ++frame) {
        life->frameBegin(&renderer);
        evaluateEverything(plugin, context);
        if (auto* gpu = support::interfaceOf<RTTexInterface>(plugin, EXT_RTTEX)) {
            EXPECT_EQ(support::sourceOf(gpu, "NoSuchDescriptor").answer, 0) << desc->getName();
            support::sourceOf(gpu);
        }
        life->frameEnd(&renderer);
    }
    life->renderEnd(&renderer);
    desc->deletePlugin(plugin);
}

// Everything that a host does with a library between opening and closing it.
inline void useLibrary(OUtils::PluginLibDesc& library)
{
    AcceptingHost host;
    const auto descriptors = support::descriptorsOf(library);
    for (OUtils::PluginDesc* desc : descriptors)
        desc->registerPlugin(&host);
    for (OUtils::PluginDesc* desc : descriptors)
        liveOnce(desc);
    for (OUtils::PluginDesc* desc : descriptors)
        desc->unregisterPlugin(&host);
}

} // namespace conformance
