#include "host/gpu/host_gpu.h"
#include "host/renderer/host_renderer.h"

#include <gtest/gtest.h>

namespace {

using namespace ombrix;
using namespace OUtils;

PtrArray<int> pixelsOf(std::initializer_list<unsigned> words)
{
    PtrArray<int> pixels(static_cast<int>(words.size()));
    int i = 0;
    for (unsigned word : words)
        pixels[i++] = static_cast<int>(word);
    return pixels;
}

TEST(OclData, BitmapsAreCopiesInTheirOrder)
{
    HostOCLData data(nullptr, true);
    PtrArray<int> pixels = pixelsOf({0xFF102030u, 2, 3, 4, 5, 6});
    EXPECT_EQ(data.addBitmapFile(pixels, nullptr, 0, 3, 2, 1.0f, "cloth", 1), 0);
    pixels[0] = 0;
    EXPECT_EQ(data.addBitmapFile(pixels, nullptr, 0, 2, 1, 1.0f, nullptr, 1), 1);
    ASSERT_EQ(data.bitmaps().size(), 2u);
    EXPECT_EQ(data.bitmaps()[0].width, 3);
    EXPECT_EQ(data.bitmaps()[0].height, 2);
    EXPECT_EQ(data.bitmaps()[0].name, "cloth");
    EXPECT_EQ(data.bitmaps()[0].hash, std::nullopt);
    EXPECT_EQ(data.bitmaps()[0].pixels, (std::vector<std::uint32_t>{0xFF102030u, 2, 3, 4, 5, 6}));
    EXPECT_EQ(data.bitmaps()[1].pixels.size(), 2u);
    EXPECT_EQ(data.bitmaps()[1].name, "");
}

TEST(OclData, TooFewPixelsAreRefused)
{
    HostOCLData data(nullptr, true);
    const PtrArray<int> pixels = pixelsOf({1, 2, 3});
    EXPECT_LT(data.addBitmapFile(pixels, nullptr, 0, 2, 2, 1.0f, "x", 1), 0);
    EXPECT_LT(data.addBitmapFile(pixels, nullptr, 0, 0, 3, 1.0f, "x", 1), 0);
    EXPECT_LT(data.addBitmapFile(pixels, nullptr, 0, -1, -1, 1.0f, "x", 1), 0);
    EXPECT_TRUE(data.bitmaps().empty());
}

TEST(OclData, AScaleMultipliesTheColorsAndNotTheAlpha)
{
    HostOCLData data(nullptr, true);
    data.addBitmapFile(pixelsOf({0x80204060u, 0x10FF8001u}), nullptr, 0, 2, 1, 2.0f, "x", 1);
    EXPECT_EQ(data.bitmaps()[0].pixels, (std::vector<std::uint32_t>{0x804080C0u, 0x10FFFF02u}));
}

TEST(OclData, ABitmapIsFoundByItsHash)
{
    HostOCLData data(nullptr, true);
    data.addBitmapFile(pixelsOf({1}), nullptr, 0, 1, 1, 1.0f, "a", 1);
    data.addBitmapFile(pixelsOf({2}), nullptr, 0, 1, 1, 1.0f, "b", 1);
    EXPECT_EQ(data.getBitmapIndexFromHash(0), -1); // without a hash nothing is found, not even by 0
    data.setBitmapHash(1, 0xDEADBEEFu);
    EXPECT_EQ(data.getBitmapIndexFromHash(0xDEADBEEFu), 1);
    data.setBitmapHash(0, 0);
    EXPECT_EQ(data.getBitmapIndexFromHash(0), 0);
    data.setBitmapHash(-1, 7);
    data.setBitmapHash(2, 7);
    EXPECT_EQ(data.getBitmapIndexFromHash(7), -1);
}

TEST(OclData, BlocksBelongToTheirOwners)
{
    HostOCLData data(nullptr, true);
    ParameterBlockStore* store = data.getBlockStore();
    ASSERT_NE(store, nullptr);
    PluginBase first, second;
    const char text[] = "abcd";
    EXPECT_EQ(store->finishUpload(&first), -1);
    store->upload(&first, text, 4);
    const int firstId = store->finishUpload(&first);
    store->upload(&second, text, 2);
    const int secondId = store->finishUpload(&second);
    EXPECT_GE(firstId, 0);
    EXPECT_NE(firstId, secondId);
    store->upload(&first, text + 1, 3);
    EXPECT_EQ(store->finishUpload(&first), firstId);
    ASSERT_EQ(data.blocks().size(), 2u);
    EXPECT_EQ(data.blocks()[0].owner, &first);
    EXPECT_EQ(data.blocks()[0].bytes, (std::vector<std::uint8_t>{'b', 'c', 'd'}));
    store->freeBlock(firstId);
    store->freeBlock(99);
    store->freeBlock(-1);
    ASSERT_EQ(data.blocks().size(), 1u);
    EXPECT_EQ(data.blocks()[0].owner, &second);
    EXPECT_EQ(store->finishUpload(&first), -1);
}

TEST(OclData, ABackEndMayHaveNoBlockStore)
{
    HostRenderer renderer({}, 1, nullptr);
    HostOCLData data(&renderer, false);
    EXPECT_EQ(data.getBlockStore(), nullptr);
    EXPECT_EQ(data.getRenderer(), &renderer);
}

class Answering : public PluginBase, public RTTexInterface {
public:
    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        return id == EXT_RTTEX && answers ? static_cast<RTTexInterface*>(this) : PluginBase::getInterface(id);
    }
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& /*data*/) override
    {
        source.printf("%s|%s|%s", name, tag, descriptor);
        return 5;
    }
    bool answers = true;
};

TEST(GetRttexSource, PassesTheThreeTextsOnAndReturnsTheAnswer)
{
    Answering plugin;
    HostShaderSource source;
    HostOCLData data(nullptr, true);
    EXPECT_EQ(RTTexInterface::getRTTexSource(&plugin, "n", "t", "d", source, data), 5);
    EXPECT_EQ(source.text, "n|t|d");
}

TEST(GetRttexSource, NullAndPluginsWithoutGpuTextWriteNothing)
{
    Answering silent;
    silent.answers = false;
    HostShaderSource source;
    HostOCLData data(nullptr, true);
    EXPECT_EQ(RTTexInterface::getRTTexSource(nullptr, "n", "t", "d", source, data), 0);
    EXPECT_EQ(RTTexInterface::getRTTexSource(&silent, "n", "t", "d", source, data), 0);
    EXPECT_EQ(source.text, "");
}

} // namespace
