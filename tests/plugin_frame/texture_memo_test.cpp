// When CommonTexture and OmbrixCachedTexture remember, and what they take from the renderer and give back.

#include "plugin_frame/probe_textures.h"
#include "support/heap_hooks.h"

namespace {

using namespace support;
using OUtils::AColor;

int callsAfterTwoLookups(LivingRaw& living)
{
    ++living.context.sampleStamp;
    living.texture.calls = 0;
    AColor result;
    living.texture.evalColor(&result, living.context);
    living.texture.evalColor(&result, living.context);
    return living.texture.calls;
}

TEST(TextureMemo, AnswersTheSamePointOnce)
{
    LivingRaw living(0);
    AColor first, second;
    living.texture.evalColor(&first, living.context);
    living.texture.raw.r = 99.0f;
    living.texture.evalColor(&second, living.context);
    EXPECT_SAME_COLOR(first, {0.25f, 0.5f, 0.75f, 0.125f});
    EXPECT_SAME_COLOR(second, {0.25f, 0.5f, 0.75f, 0.125f});
    EXPECT_EQ(living.texture.calls, 1);
    ++living.context.sampleStamp;
    living.texture.evalColor(&second, living.context);
    EXPECT_SAME_BITS(second.r, 99.0f);
    EXPECT_EQ(living.texture.calls, 2);
}

TEST(TextureMemo, HoldsTheFinishedColor)
{
    LivingRaw living(0);
    living.set("color_mult", AColor{2.0f, 2.0f, 2.0f, 1.0f});
    AColor result;
    living.texture.evalColor(&result, living.context);
    // Kept as is: a memo answers raw look-ups at its point too.
    living.context.shadeFlags = OUtils::rawTextureLookup;
    living.texture.evalColor(&result, living.context);
    EXPECT_SAME_COLOR(result, {0.5f, 1.0f, 1.5f, 0.125f});
}

TEST(TextureMemo, IsBarredByItsFlagAlone)
{
    LivingRaw living(0);
    EXPECT_EQ(callsAfterTwoLookups(living), 1);
    living.context.shadeFlags = OUtils::noTexCache;
    EXPECT_EQ(callsAfterTwoLookups(living), 2);
    living.context.shadeFlags = OUtils::noUVWCache;
    EXPECT_EQ(callsAfterTwoLookups(living), 1);
}

TEST(TextureMemo, ServesTheThreadsOfTheRendererAlone)
{
    LivingRaw living(0, 3);
    for (const auto& [thread, calls] : {std::pair(-1, 2), {0, 1}, {2, 1}, {3, 2}, {1 << 30, 2}}) {
        living.context.threadRecord->threadIndex = thread;
        EXPECT_EQ(callsAfterTwoLookups(living), calls) << thread;
    }
}

TEST(TextureMemo, KeepsThreadsApart)
{
    LivingRaw living(0, 2);
    AColor result;
    living.texture.evalColor(&result, living.context);
    living.texture.raw.r = 2.0f;
    living.context.threadRecord->threadIndex = 1;
    living.texture.evalColor(&result, living.context);
    EXPECT_SAME_BITS(result.r, 2.0f);
    living.context.threadRecord->threadIndex = 0;
    living.texture.evalColor(&result, living.context);
    EXPECT_SAME_BITS(result.r, 0.25f);
}

TEST(TextureMemo, DoesNotKeepWhatHasNoValue)
{
    LivingRaw living(0);
    living.texture.valid = false;
    EXPECT_EQ(callsAfterTwoLookups(living), 2);
    living.texture.valid = true;
    living.texture.raw.a = -1e+18f;
    EXPECT_EQ(callsAfterTwoLookups(living), 2);
    living.set("compatibility_with", 1); // goes on to the end
    EXPECT_EQ(callsAfterTwoLookups(living), 1);
    living.context.shadeFlags = OUtils::rawTextureLookup;
    EXPECT_EQ(callsAfterTwoLookups(living), 2);
}

TEST(TextureMemo, IsForgottenBetweenFrames)
{
    LivingRaw living(0);
    AColor result;
    living.texture.evalColor(&result, living.context);
    living.nextFrame();
    living.texture.evalColor(&result, living.context);
    EXPECT_EQ(living.texture.calls, 2);
}

TEST(TextureMemo, IsMissingAfterAFailedAllocationUntilTheNextFrame)
{
    LivingRaw living(0, 4);
    {
        const ExhaustedHeap heap(4 * 128);
        living.texture.renderEnd(&living.renderer);
        living.texture.renderBegin(&living.renderer);
        living.texture.frameBegin(&living.renderer);
        EXPECT_GE(ExhaustedHeap::refusals, 2);
        EXPECT_EQ(callsAfterTwoLookups(living), 2);
    }
    living.nextFrame();
    EXPECT_EQ(callsAfterTwoLookups(living), 1);
}

TEST(TextureMemo, ComesWithTheFrameWhenTheRenderDidNotBringIt)
{
    OUtils::KindParams<RawTexture> params;
    LocalDesc desc(&params);
    RecordingRenderer renderer;
    TestContext context;
    RawTexture texture(&desc, 0);
    AColor result;
    texture.evalColor(&result, context);
    texture.evalColor(&result, context);
    EXPECT_EQ(texture.calls, 2);
    texture.frameBegin(&renderer);
    texture.evalColor(&result, context);
    texture.evalColor(&result, context);
    EXPECT_EQ(texture.calls, 3);
    texture.renderEnd(&renderer);
    texture.evalColor(&result, context);
    EXPECT_EQ(texture.calls, 4);
}

class CachedTexture final : public nezaiva::OmbrixCachedTexture {
public:
    CachedTexture() : OmbrixCachedTexture(nullptr) {}
    AColor* evalColorUncached(AColor* result, const OUtils::OmbrixContext&) override
    {
        *result = {static_cast<float>(++calls), -1.0f, -1e+18f, -1e+18f};
        return result;
    }
    void evalColorBounds(AColor*, AColor*) override {}
    int calls = 0;
};

TEST(OmbrixCachedTexture, RemembersThePointAndChangesNothing)
{
    RecordingRenderer renderer(2);
    TestContext context;
    CachedTexture texture;
    texture.renderBegin(&renderer);
    texture.frameBegin(&renderer);
    AColor result = kUnwrittenColor;
    EXPECT_EQ(texture.evalColor(&result, context), &result);
    EXPECT_EQ(texture.evalColor(&result, context), &result);
    EXPECT_SAME_COLOR(result, {1.0f, -1.0f, -1e+18f, -1e+18f});
    context.shadeFlags = OUtils::noTexCache;
    EXPECT_SAME_BITS(texture.evalColor(&result, context)->r, 2.0f);
    context.shadeFlags = 0;
    EXPECT_SAME_BITS(texture.evalColor(&result, context)->r, 1.0f);
    context.threadRecord->threadIndex = 2;
    EXPECT_SAME_BITS(texture.evalColor(&result, context)->r, 3.0f);
    context.threadRecord->threadIndex = 0;
    texture.frameEnd(&renderer);
    texture.frameBegin(&renderer);
    EXPECT_SAME_BITS(texture.evalColor(&result, context)->r, 4.0f);
    texture.renderEnd(&renderer);
    EXPECT_SAME_BITS(texture.evalColor(&result, context)->r, 5.0f);
}

TEST(SharedNoise, IsFetchedByTheFlagAlone)
{
    for (const std::uint32_t flags : {0u, 1u, 8u}) {
        LivingRaw living(flags);
        EXPECT_EQ(living.texture.sharedNoise, nullptr);
        EXPECT_EQ(living.renderer.getInterface(OUtils::EXT_COMMON_TEXTURE_NOISE), nullptr);
    }
    LivingRaw living(4);
    ASSERT_NE(living.texture.sharedNoise, nullptr);
    EXPECT_EQ(living.renderer.getInterface(OUtils::EXT_COMMON_TEXTURE_NOISE), living.texture.sharedNoise);
}

TEST(SharedNoise, LivesAsLongAsTheLastTexture)
{
    OUtils::KindParams<RawTexture> params;
    LocalDesc desc(&params);
    RecordingRenderer renderer;
    RawTexture first(&desc, 4), second(&desc, 12);
    first.renderBegin(&renderer);
    nezaiva::NoiseInterface* noise = first.sharedNoise;
    EXPECT_EQ(noise->references, 1);
    second.renderBegin(&renderer);
    EXPECT_EQ(second.sharedNoise, noise);
    EXPECT_EQ(noise->references, 2);
    first.renderEnd(&renderer);
    EXPECT_EQ(first.sharedNoise, nullptr);
    EXPECT_EQ(noise->references, 1);
    EXPECT_EQ(renderer.getInterface(OUtils::EXT_COMMON_TEXTURE_NOISE), noise);
    second.renderEnd(&renderer);
    EXPECT_EQ(renderer.getInterface(OUtils::EXT_COMMON_TEXTURE_NOISE), nullptr);
    // A second life starts afresh.
    second.renderBegin(&renderer);
    EXPECT_EQ(second.sharedNoise->references, 1);
    second.renderEnd(&renderer);
    EXPECT_EQ(renderer.getInterface(OUtils::EXT_COMMON_TEXTURE_NOISE), nullptr);
}

TEST(TextureMemo, NothingIsLeftBehindByARender)
{
    MappedProbeParams params(0);
    LocalDesc desc(&params);
    RecordingRenderer renderer(8);
    renderer.hasLog = false; // a log keeps its messages
    MappedProbe texture(&desc, 0);
    const auto before = ombrix::allocationCounters().liveBlocks;
    for (int life = 0; life < 2; ++life) {
        texture.renderBegin(&renderer);
        texture.frameBegin(&renderer);
        EXPECT_GT(ombrix::allocationCounters().liveBlocks, before);
        texture.frameEnd(&renderer);
        texture.renderEnd(&renderer);
        EXPECT_EQ(ombrix::allocationCounters().liveBlocks, before);
    }
}

} // namespace
