// The evaluators of TexPlusMinusAverage: each works on one of its lists, and answers one of its outputs.
#pragma once

#include "plugin_frame/depth_memo.h"
#include "plugin_frame/source_text.h"
#include "plugin_frame/thread_memo.h"

#include <ombrix/inputs.h>
#include <ombrix/plugin_kind.h>

namespace nezaiva {

using FloatCacheEntry = MemoEntry<float, 128>;
static_assert(sizeof(FloatCacheEntry) == 128);

// Over floats. The list and the operation are the owner's fields. An entry of the list that is null adds
// nothing. The owner calls renderBegin, renderEnd and frameBegin, the last when its own fields are up to
// date.
class TexPlusMinusAverage1d : public Offers<PluginBase, TextureFloatInterface, GpuTexture> {
public:
    TexPlusMinusAverage1d(const PluginListInput<TextureFloatInterface>& ownersList,
                          const int& ownersOperation)
        : inputs(&ownersList), operation(&ownersOperation)
    {
    }

    void renderBegin(OmbrixRenderer* renderer) { memo.build(renderer->getThreadCount()); }
    void renderEnd() { memo.clear(); }
    void frameBegin() { memo.reset(); }

    float evalFloat(const OmbrixContext& context) override;
    void evalFloatBounds(float* lower, float* upper) override;
    int writeSource(SourceText& text) override;

private:
    const PluginListInput<TextureFloatInterface>* inputs;
    const int* operation;
    ThreadMemo<FloatCacheEntry> memo;
};

// Over all four channels of colours; otherwise the same.
class TexPlusMinusAverage3d : public Offers<PluginBase, TextureInterface, GpuTexture> {
public:
    TexPlusMinusAverage3d(const PluginListInput<TextureInterface>& ownersList, const int& ownersOperation)
        : inputs(&ownersList), operation(&ownersOperation)
    {
    }

    void renderBegin(OmbrixRenderer* renderer) { memo.build(renderer->getThreadCount()); }
    void renderEnd() { memo.clear(); }
    void frameBegin() { memo.reset(); }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override;
    void evalColorBounds(AColor* lower, AColor* upper) override;
    int writeSource(SourceText& text) override;

private:
    const PluginListInput<TextureInterface>* inputs;
    const int* operation;
    DepthMemo memo;
};

} // namespace nezaiva
