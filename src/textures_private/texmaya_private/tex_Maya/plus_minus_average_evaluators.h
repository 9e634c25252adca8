// The evaluators of TexPlusMinusAverage: each works on one of its lists, and answers one of its outputs.
#pragma once

#include "plugin_frame/depth_memo.h"
#include "plugin_frame/thread_memo.h"

#include <ombrix/gpu_source.h>
#include <ombrix/parameters.h>
#include <ombrix/renderer.h>
#include <ombrix/texture_interfaces.h>

namespace nezaiva {

// A list of plugins by the one interface that an evaluator reads. An entry that is null, or that lacks the
// interface, stays in the list as a null and adds nothing.
template <class Interface>
class ResolvedInputs {
public:
    // To be called when a frame begins. Without memory the list is empty.
    void resolve(const OmbrixPluginList& plugins, InterfaceId id)
    {
        inputs.alloc(plugins.count());
        for (int i = 0; i < inputs.count(); ++i)
            inputs[i] = plugins[i] ? static_cast<Interface*>(plugins[i]->getInterface(id)) : nullptr;
    }

    int count() const { return inputs.count(); }
    Interface* operator[](int i) const { return inputs[i]; }

private:
    PtrArray<Interface*> inputs;
};

struct alignas(128) FloatCacheEntry {
    std::int32_t sampleStamp = 0;
    float value = 0.0f;
    std::uint32_t word = 0;
};
static_assert(sizeof(FloatCacheEntry) == 128);

// Over floats. The pointers are the owner's fields. The owner calls renderBegin, renderEnd and frameBegin,
// the last when its own fields are up to date.
class TexPlusMinusAverage1d : public PluginBase, public TextureFloatInterface, public RTTexInterface {
public:
    TexPlusMinusAverage1d(const OmbrixPluginList* ownersList, const int* ownersOperation)
        : list(ownersList), operation(ownersOperation)
    {
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;

    void renderBegin(OmbrixRenderer* renderer) { memo.build(renderer->getThreadCount()); }
    void renderEnd() { memo.clear(); }
    void frameBegin();

    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

private:
    const OmbrixPluginList* list;
    const int* operation;
    ResolvedInputs<TextureFloatInterface> inputs;
    ThreadMemo<FloatCacheEntry> memo;
};

// Over all four channels of colours; otherwise the same.
class TexPlusMinusAverage3d : public PluginBase, public TextureInterface, public RTTexInterface {
public:
    TexPlusMinusAverage3d(const OmbrixPluginList* ownersList, const int* ownersOperation)
        : list(ownersList), operation(ownersOperation)
    {
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override;

    void renderBegin(OmbrixRenderer* renderer) { memo.build(renderer->getThreadCount()); }
    void renderEnd() { memo.clear(); }
    void frameBegin();

    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

private:
    const OmbrixPluginList* list;
    const int* operation;
    ResolvedInputs<TextureInterface> inputs;
    DepthMemo memo;
};

} // namespace nezaiva
