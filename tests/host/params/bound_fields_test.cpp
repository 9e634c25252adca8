#include "host/context/host_context.h"
#include "sample_plugin.h"

#include <gtest/gtest.h>

#include "host/memory/allocator.h"

namespace {

using namespace sample;

class BoundFields : public ::testing::Test {
protected:
    Desc desc;
    Instance instance{desc}, other{desc};
    ombrix::HostContext context;
};

TEST_F(BoundFields, UnsetFieldsHoldTheDeclaredDefaults)
{
    frame(instance);
    EXPECT_EQ(instance.flag, 1);
    EXPECT_EQ(instance.number, 7);
    EXPECT_EQ(instance.amount, 0.25f);
    EXPECT_EQ(instance.tint.b, 0.3f);
    EXPECT_STREQ(instance.text.ptr(), "unset");
    EXPECT_EQ(instance.object, nullptr);
    EXPECT_EQ(instance.place.matrix.columns[1].y, 3.0f);
    EXPECT_EQ(instance.place.offset.z, 7.0);
    EXPECT_EQ(instance.numbers.count(), 0);
    EXPECT_EQ(instance.floats.count(), 0);
    EXPECT_EQ(instance.objects.count(), 0);
}

TEST_F(BoundFields, ADefaultOnATextureInputIsNotTurnedIntoATexture)
{
    frame(instance);
    EXPECT_EQ(instance.color, nullptr);
    EXPECT_EQ(instance.height, nullptr); // declared with 1.0
    EXPECT_EQ(instance.index, nullptr);
    EXPECT_EQ(instance.frame, nullptr);
    EXPECT_EQ(instance.direction, nullptr);
    EXPECT_EQ(instance.noDefault, nullptr);
}

TEST_F(BoundFields, FieldsChangeInFrameBeginAlone)
{
    ASSERT_EQ(set(instance, "number", 12), 1);
    EXPECT_EQ(instance.number, 0);
    frame(instance);
    EXPECT_EQ(instance.number, 12);
}

TEST_F(BoundFields, EveryFrameWritesEveryFieldAnew)
{
    set(instance, "color", reference(&other));
    set(instance, "numbers", list({1, 2}));
    set(instance, "text", std::string("scene"));
    frame(instance);
    ASSERT_EQ(instance.color, static_cast<TextureInterface*>(&other));

    instance.number = 99;
    instance.amount = -1.0f;
    instance.color = nullptr;
    instance.text = "plugin";
    instance.tint = {9, 9, 9};
    instance.place.offset.x = 77;
    instance.numbers = PtrArray<int>(5);
    instance.object = &other;
    frame(instance, 2);
    EXPECT_EQ(instance.number, 7);
    EXPECT_EQ(instance.amount, 0.25f);
    EXPECT_EQ(instance.color, static_cast<TextureInterface*>(&other));
    EXPECT_STREQ(instance.text.ptr(), "scene");
    EXPECT_EQ(instance.tint.r, 0.1f);
    EXPECT_EQ(instance.place.offset.x, 5.0);
    ASSERT_EQ(instance.numbers.count(), 2);
    EXPECT_EQ(instance.numbers[1], 2);
    EXPECT_EQ(instance.object, nullptr);
}

TEST_F(BoundFields, AListThatThePluginChangedInPlaceIsWrittenAnew)
{
    set(instance, "floats", list({1.0f, 2.0f}));
    frame(instance);
    PtrArray<float> kept = instance.floats;
    frame(instance, 2);
    EXPECT_EQ(kept.ptr(), instance.floats.ptr()); // equal lists keep their storage
    instance.floats[0] = 50.0f;
    frame(instance, 3);
    EXPECT_EQ(instance.floats[0], 1.0f);
    EXPECT_EQ(kept[0], 50.0f); // and an earlier one is not written behind its holder's back
}

TEST_F(BoundFields, AnimatedValuesAreThoseOfTheFramesTime)
{
    set(instance, "amount", ombrix::ParameterValue{{0, 10}, {{0.0f}, {5.0f}}});
    set(instance, "number", ombrix::ParameterValue{{0, 10}, {{1}, {2}}});
    set(instance, "floats", ombrix::ParameterValue{{0, 10}, {{1.0f}, {2.0f, 3.0f}}});
    set(instance, "color", ombrix::ParameterValue{{0, 10}, {{Color{0, 0, 0}}, {Color{1, 2, 3}}}});
    frame(instance, 4);
    EXPECT_EQ(instance.amount, 2.0f);
    EXPECT_EQ(instance.number, 1);
    EXPECT_EQ(instance.floats.count(), 1);
    ASSERT_NE(instance.color, nullptr);
    TextureInterface* const constant = instance.color;
    AColor color;
    EXPECT_EQ(constant->evalColor(&color, context)->b, 1.2f); // 3 times 0.4
    frame(instance, 10);
    EXPECT_EQ(instance.amount, 5.0f);
    EXPECT_EQ(instance.number, 2);
    EXPECT_EQ(instance.floats.count(), 2);
    EXPECT_EQ(instance.color, constant); // the same object from frame to frame
    EXPECT_EQ(constant->evalColor(&color, context)->b, 3.0f);
}

TEST_F(BoundFields, WithoutARendererTheTimeIsThatOfTheLastFrame)
{
    set(instance, "amount", ombrix::ParameterValue{{0, 10}, {{0.0f}, {10.0f}}});
    instance.frameBegin(nullptr);
    EXPECT_EQ(instance.amount, 1.0f); // a new FrameData's time
    frame(instance, 6);
    instance.amount = -5;
    instance.frameBegin(nullptr);
    EXPECT_EQ(instance.amount, 6.0f);
}

TEST_F(BoundFields, PlainValuesOnTextureInputsAreTextures)
{
    TraceTransform moved;
    moved.offset = {1, 2, 3};
    ASSERT_EQ(set(instance, "color", AColor{1, 2, 3, 4}), 1);
    ASSERT_EQ(set(instance, "height", 2.5f), 1);
    ASSERT_EQ(set(instance, "index", 8), 1);
    ASSERT_EQ(set(instance, "frame", moved), 1);
    ASSERT_EQ(set(instance, "direction", Vector{4, 5, 6}), 1);
    frame(instance);
    AColor color;
    EXPECT_EQ(instance.color->evalColor(&color, context)->a, 4.0f);
    EXPECT_EQ(instance.height->evalFloat(context), 2.5f);
    EXPECT_EQ(instance.index->evalInt(context), 8);
    Transform transform;
    instance.frame->evalTransform(&transform, context);
    EXPECT_EQ(transform.offset.y, 2.0f);
    Vector vector;
    instance.direction->evalVector(&vector, context);
    EXPECT_EQ(vector.z, 6.0f);
}

TEST_F(BoundFields, AClearedOrUnsetReferenceIsNullAgain)
{
    set(instance, "color", reference(&other));
    frame(instance);
    ASSERT_NE(instance.color, nullptr);
    ASSERT_EQ(set(instance, "color", reference(nullptr)), 1);
    frame(instance);
    EXPECT_EQ(instance.color, nullptr);
    set(instance, "color", Color{1, 1, 1});
    frame(instance);
    ASSERT_NE(instance.color, nullptr);
    EXPECT_TRUE(ombrix::unsetParameter(*instance.paramList, "color"));
    frame(instance);
    EXPECT_EQ(instance.color, nullptr);
    EXPECT_FALSE(ombrix::unsetParameter(*instance.paramList, "nothing"));
}

TEST_F(BoundFields, APluginParameterTakesAnyPlugin)
{
    ASSERT_EQ(set(instance, "object", reference(&other)), 1); // wants a UVW generator, decides itself
    frame(instance);
    EXPECT_EQ(instance.object, static_cast<PluginBase*>(&other));
}

TEST_F(BoundFields, ATypedInputRefusesAPluginWithoutTheInterface)
{
    EXPECT_EQ(set(instance, "height", reference(&other)), 0); // a colour texture
    frame(instance);
    EXPECT_EQ(instance.height, nullptr);
}

TEST_F(BoundFields, PluginListsMayHoldNull)
{
    ASSERT_EQ(set(instance, "objects", list({reference(&other), ombrix::Value{}, reference(&instance)})), 1);
    frame(instance);
    ASSERT_EQ(instance.objects.count(), 3);
    EXPECT_EQ(instance.objects[0], static_cast<PluginBase*>(&other));
    EXPECT_EQ(instance.objects[1], nullptr);
    EXPECT_EQ(instance.objects[2], static_cast<PluginBase*>(&instance));
}

TEST_F(BoundFields, ANameThatStandsTwiceBindsTheInputByNameAndTheOutputAsOutput)
{
    EXPECT_EQ(ombrix::boundOutput(*other.paramList, "color"), static_cast<TextureInterface*>(&other));
    ASSERT_EQ(set(instance, "color", reference(&other)), 1);
    frame(instance);
    EXPECT_EQ(instance.color, static_cast<TextureInterface*>(&other));
}

TEST_F(BoundFields, OutputsAnswerTypedInputsAndPluginInputs)
{
    PluginInterface* output = ombrix::boundOutput(*other.paramList, "out_alpha");
    ASSERT_EQ(output, static_cast<TextureFloatInterface*>(&other.alpha));
    ASSERT_EQ(set(instance, "height", reference(&other, output)), 1);
    EXPECT_EQ(set(instance, "color", reference(&other, output)), 0); // a float is no colour
    ASSERT_EQ(set(instance, "object", reference(&other, output)), 1);
    frame(instance);
    ASSERT_NE(instance.height, nullptr);
    EXPECT_EQ(instance.height->evalFloat(context), 0.75f);
    EXPECT_EQ(instance.object, static_cast<PluginBase*>(&other.alpha));
}

TEST_F(BoundFields, AnOutputThatItsHolderDoesNotFindIsGivenAnotherHolder)
{
    PluginInterface* output = ombrix::boundOutput(*other.paramList, "out_alpha");
    for (PluginBase* holder : {static_cast<PluginBase*>(nullptr), static_cast<PluginBase*>(&other)}) {
        other.alpha.holder = holder;
        set(instance, "object", reference(&other, output));
        frame(instance);
        ASSERT_NE(instance.object, nullptr);
        EXPECT_EQ(instance.object->getInterface(EXT_TEXTURE_FLOAT), output);
        EXPECT_EQ(instance.object->getInterface(EXT_TEXTURE), nullptr);
        PluginBase* const first = instance.object;
        frame(instance);
        EXPECT_EQ(instance.object, first);
    }
}

TEST_F(BoundFields, ALaterOutputTakesThePlaceOfAnEarlierOne)
{
    AlphaOutput replacement;
    instance.paramList->setOutputParamCache("out_alpha", &replacement);
    EXPECT_EQ(ombrix::boundOutput(*instance.paramList, "out_alpha"),
              static_cast<TextureFloatInterface*>(&replacement));
    EXPECT_EQ(ombrix::boundOutput(*instance.paramList, "nothing"), nullptr);
}

void appendUtf16(const char16_t* text, void* user)
{
    for (; *text; ++text)
        *static_cast<std::string*>(user) += static_cast<char>(*text);
}

TEST_F(BoundFields, BindingFaultsAreReportedAndIgnored)
{
    std::string said;
    ombrix::setDebugOutputHook(appendUtf16, &said);
    int field = 5;
    float number = 5.0f;
    TextureInterface* color = nullptr;
    instance.paramList->setParamCache("nothing", &field);
    EXPECT_NE(said.find("nothing"), std::string::npos);
    said.clear();
    instance.paramList->setParamCache("number", &number);
    EXPECT_NE(said.find("number"), std::string::npos);
    said.clear();
    instance.paramList->setParamCacheByIndex(1000, &field, 0);
    instance.paramList->setParamCacheByIndex(-1, &field, 0);
    EXPECT_NE(said.find("1000"), std::string::npos);
    said.clear();
    instance.paramList->setParamCache("out_alpha", &color);
    instance.paramList->setOutputParamCache("amount", &instance.alpha);
    EXPECT_NE(said.find("amount"), std::string::npos);
    ombrix::setDebugOutputHook(nullptr, nullptr);
    frame(instance);
    EXPECT_EQ(field, 5);
    EXPECT_EQ(number, 5.0f);
}

TEST_F(BoundFields, APluginWithoutParametersHasNoList)
{
    class Bare : public OmbrixPlugin {
    public:
        Bare() : OmbrixPlugin(nullptr) {}
    } bare;
    bare.frameBegin(nullptr);
    EXPECT_EQ(bare.setParameter(nullptr), 0);
    EXPECT_EQ(bare.getParameter("x"), nullptr);
}

} // namespace
