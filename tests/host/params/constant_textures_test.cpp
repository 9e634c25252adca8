#include "host/params/constant_textures.h"

#include "host/context/host_context.h"
#include "host/gpu/host_gpu.h"
#include "support/understood_source.h"

#include <ombrix/ombrix.h>

#include <gtest/gtest.h>

namespace {

using namespace ombrix;
using namespace OUtils;

struct Source {
    int returned;
    std::string text;
};

Source sourceOf(ConstantTexture& texture, const char* descriptor = "MaterialDescriptor")
{
    HostShaderSource source;
    HostOCLData data(nullptr, true);
    const int returned =
        RTTexInterface::getRTTexSource(texture.texture(), "n", "t", descriptor, source, data);
    support::expectUnderstood(source.text);
    return {returned, source.text};
}

TEST(ConstantTextures, AColorIsItsOwnBounds)
{
    const auto texture = makeConstantTexture(Declaration::Texture);
    texture->set(AColor{1, 2, 3, 4});
    auto* color = find<TextureInterface>(texture.get());
    ASSERT_EQ(color, texture->texture());
    EXPECT_EQ(color->getPlugin(), texture.get());
    AColor value, lower, upper, gradient{9, 9, 9, 9};
    EXPECT_EQ(color->evalColor(&value, HostContext()), &value);
    EXPECT_EQ(value.a, 4.0f);
    color->evalColorBounds(&lower, &upper);
    EXPECT_EQ(lower.g, 2.0f);
    EXPECT_EQ(upper.b, 3.0f);
    EXPECT_EQ(lower.a, 4.0f);
    EXPECT_EQ(color->evalColorGradient(&gradient, HostContext())->a, 0.0f);
    EXPECT_EQ(texture->getInterface(EXT_TEXTURE_FLOAT), nullptr);
}

TEST(ConstantTextures, AColorOfThreeNumbersHasAlphaOne)
{
    const auto texture = makeConstantTexture(Declaration::Texture);
    texture->set(Color{1, 2, 3});
    AColor value;
    static_cast<TextureInterface*>(texture->texture())->evalColor(&value, HostContext());
    EXPECT_EQ(value.a, 1.0f);
}

TEST(ConstantTextures, FloatsIntsTransformsAndVectorsGiveTheirValue)
{
    const auto number = makeConstantTexture(Declaration::TextureFloat);
    number->set(0.5f);
    auto* asFloat = find<TextureFloatInterface>(number.get());
    float lower = 0, upper = 0;
    asFloat->evalFloatBounds(&lower, &upper);
    EXPECT_EQ(asFloat->evalFloat(HostContext()), 0.5f);
    EXPECT_EQ(lower, 0.5f);
    EXPECT_EQ(upper, 0.5f);

    const auto vector = makeConstantTexture(Declaration::TextureVector);
    vector->set(Vector{1, 2, 3});
    auto* asVector = find<TextureVectorInterface>(vector.get());
    Vector low, high;
    asVector->evalVectorBounds(&low, &high);
    EXPECT_EQ(low.y, 2.0f);
    EXPECT_EQ(high.z, 3.0f);

    const auto index = makeConstantTexture(Declaration::TextureInt);
    index->set(6);
    EXPECT_EQ(find<TextureIntInterface>(index.get())->evalInt(HostContext()), 6);

    const auto place = makeConstantTexture(Declaration::TextureTransform);
    TraceTransform moved;
    moved.offset = {0.5, 1, 2};
    place->set(moved);
    Transform result;
    find<TextureTransformInterface>(place.get())->evalTransform(&result, HostContext());
    EXPECT_EQ(result.offset.x, 0.5f);
    EXPECT_EQ(makeConstantTexture(Declaration::Float), nullptr);
}

TEST(ConstantTextures, ColorsAndFloatsWriteAColorLine)
{
    const auto color = makeConstantTexture(Declaration::Texture);
    color->set(AColor{1, 0.5f, 0.25f, 2});
    EXPECT_EQ(sourceOf(*color).returned, 1);
    EXPECT_EQ(sourceOf(*color).text, "color 1.000000 0.500000 0.250000 2.000000\n");
    const auto number = makeConstantTexture(Declaration::TextureFloat);
    number->set(0.5f);
    EXPECT_EQ(sourceOf(*number).text, "color 0.500000 0.500000 0.500000 0.500000\n");
}

TEST(ConstantTextures, AnotherDescriptorIsRefused)
{
    const auto color = makeConstantTexture(Declaration::Texture);
    color->set(AColor{});
    for (const char* descriptor : {"materialDescriptor", "", "MaterialDescriptor "}) {
        EXPECT_EQ(sourceOf(*color, descriptor).returned, 0);
        EXPECT_EQ(sourceOf(*color, descriptor).text, "");
    }
}

TEST(ConstantTextures, TheOtherKindsHaveNoGpuText)
{
    for (Declaration kind :
         {Declaration::TextureInt, Declaration::TextureTransform, Declaration::TextureVector}) {
        const auto texture = makeConstantTexture(kind);
        EXPECT_EQ(texture->getInterface(EXT_RTTEX), nullptr);
        EXPECT_EQ(sourceOf(*texture).returned, 0);
    }
}

} // namespace
