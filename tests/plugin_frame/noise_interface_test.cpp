// The shared noise object, as users take and release it.

#include "plugin_frame/noise_interface.h"

#include "support/host_doubles.h"

#include <gtest/gtest.h>

namespace {

using namespace nezaiva;
using support::TestRenderer;

TEST(NoiseInterface, IsFoundByItsId)
{
    TestRenderer renderer;
    NoiseInterface* noise = acquireSharedNoise(renderer);
    EXPECT_EQ(renderer.getInterface(0x77A213C9), noise);
    EXPECT_EQ(noise->getInterfaceID(), EXT_COMMON_TEXTURE_NOISE);
    EXPECT_STREQ(noise->getInterfaceName(), "EXT_COMMON_TEXTURE_NOISE");
    EXPECT_EQ(noise->getPlugin(), nullptr);
    releaseSharedNoise(noise, renderer);
}

TEST(NoiseInterface, HasItsTablesFromTheStart)
{
    TestRenderer renderer;
    NoiseInterface* noise = acquireSharedNoise(renderer);
    EXPECT_EQ(noise->gradients().size(), 256u);
    EXPECT_EQ(noise->permutation().size(), 256u);
    releaseSharedNoise(noise, renderer);
}

TEST(NoiseInterface, GoesWithItsLastReference)
{
    TestRenderer renderer;
    NoiseInterface* noise = acquireSharedNoise(renderer);
    EXPECT_EQ(noise->references, 1);
    EXPECT_EQ(acquireSharedNoise(renderer), noise);
    EXPECT_EQ(noise->references, 2);
    releaseSharedNoise(noise, renderer);
    EXPECT_EQ(noise->references, 1);
    EXPECT_EQ(renderer.getInterface(EXT_COMMON_TEXTURE_NOISE), noise);
    releaseSharedNoise(noise, renderer);
    EXPECT_EQ(renderer.getInterface(EXT_COMMON_TEXTURE_NOISE), nullptr);
    releaseSharedNoise(nullptr, renderer);
}

TEST(NoiseInterface, IsNotOwnedByTheRenderer)
{
    NoiseInterface* noise = nullptr;
    {
        TestRenderer renderer;
        noise = acquireSharedNoise(renderer);
    }
    EXPECT_EQ(noise->references, 1);
    delete noise;
}

TEST(NoiseInterface, EachRendererHasItsOwn)
{
    TestRenderer first, second;
    NoiseInterface* a = acquireSharedNoise(first);
    NoiseInterface* b = acquireSharedNoise(second);
    EXPECT_NE(a, b);
    releaseSharedNoise(a, first);
    EXPECT_EQ(b->references, 1);
    releaseSharedNoise(b, second);
}

} // namespace
