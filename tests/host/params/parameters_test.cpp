#include "sample_plugin.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace sample;

class Parameters : public ::testing::Test {
protected:
    OmbrixPluginParameter& get(const char* name)
    {
        OmbrixPluginParameter* found = instance.getParameter(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    Desc desc;
    Instance instance{desc}, other{desc};
};

TEST_F(Parameters, DeclarationsStandInTheirOrderWithTheirTexts)
{
    const auto& all = desc.params.declarations().all;
    ASSERT_EQ(all.size(), 21u);
    EXPECT_EQ(desc.params.flagIndex, 0);
    EXPECT_EQ(desc.params.colorIndex, 7);
    EXPECT_EQ(desc.params.numbersIndex, 18);
    EXPECT_EQ(all[0].name, "flag");
    EXPECT_EQ(all[0].description, "A flag");
    EXPECT_EQ(all[0].metadata, "gpuSupport=(full)");
    EXPECT_EQ(all[1].description, std::nullopt);
    EXPECT_EQ(all[1].metadata, std::nullopt);
    EXPECT_EQ(all[5].requiredInterface, EXT_UVWGEN);
    EXPECT_EQ(all[6].transformFlag, 1);
    EXPECT_EQ(all[18].count, 0);
    EXPECT_STREQ(ombrix::declarationName(all[16].kind), "addOutputParamTexture");
}

TEST_F(Parameters, GetParamFindsEveryDeclaredInputWithItsDefault)
{
    EXPECT_EQ(get("flag").getType(), ParameterType::Bool);
    EXPECT_EQ(get("flag").getInt(-1, 1), 1);
    EXPECT_EQ(get("number").getType(), ParameterType::Int);
    EXPECT_EQ(get("number").getInt(-1, 1), 7);
    EXPECT_EQ(get("amount").getType(), ParameterType::Float);
    EXPECT_EQ(get("amount").getFloat(-1, 1), 0.25f);
    EXPECT_EQ(get("tint").getType(), ParameterType::Color);
    EXPECT_EQ(get("tint").getColor(-1, 1).g, 0.2f);
    EXPECT_EQ(get("tint").getColor(-1, 1).a, 1.0f);
    EXPECT_EQ(get("text").getType(), ParameterType::String);
    EXPECT_STREQ(get("text").getString(-1, 1), "unset");
    EXPECT_EQ(get("object").getType(), ParameterType::Plugin);
    EXPECT_EQ(get("object").getPlugin(-1, 1), nullptr);
    EXPECT_EQ(get("place").getType(), ParameterType::Transform);
    EXPECT_EQ(get("place").getTransform(-1, 1).offset.x, 5.0);
    EXPECT_EQ(get("place").getCount(1), -1);
    EXPECT_STREQ(get("place").getName(), "place");
    EXPECT_EQ(instance.getParameter("nothing"), nullptr);
    EXPECT_EQ(instance.getParameter("out_alpha"), nullptr);
    EXPECT_EQ(instance.getParameter(nullptr), nullptr);
}

TEST_F(Parameters, AnUnsetTextureInputHasTheTypeOfItsDefault)
{
    EXPECT_EQ(get("color").getType(), ParameterType::AColor);
    EXPECT_EQ(get("color").getColor(-1, 1).a, 0.8f);
    EXPECT_EQ(get("plain_color").getType(), ParameterType::Color);
    EXPECT_EQ(get("plain_color").getColor(-1, 1).a, 1.0f);
    EXPECT_EQ(get("height").getType(), ParameterType::Float);
    EXPECT_EQ(get("height").getFloat(-1, 1), 1.0f);
    EXPECT_EQ(get("index").getType(), ParameterType::Int);
    EXPECT_EQ(get("frame").getType(), ParameterType::Transform);
    EXPECT_EQ(get("direction").getType(), ParameterType::Vector);
    EXPECT_EQ(get("direction").getVector(-1, 1).y, 2.0f);
    for (const char* name : {"no_default", "free_height", "free_index"}) {
        EXPECT_EQ(get(name).getType(), ParameterType::Plugin) << name;
        EXPECT_EQ(get(name).getPlugin(-1, 1), nullptr) << name;
    }
}

TEST_F(Parameters, ATextureInputHasTheTypeOfWhatIsWritten)
{
    set(instance, "color", Color{1, 2, 3});
    EXPECT_EQ(get("color").getType(), ParameterType::Color);
    EXPECT_EQ(get("color").getColor(-1, 1).b, 3.0f);
    set(instance, "color", AColor{1, 2, 3, 4});
    EXPECT_EQ(get("color").getType(), ParameterType::AColor);
    set(instance, "color", reference(&other));
    EXPECT_EQ(get("color").getType(), ParameterType::Plugin);
    EXPECT_EQ(get("color").getPlugin(-1, 1), static_cast<PluginBase*>(&other));
    set(instance, "color", reference(nullptr)); // cleared, not unset
    EXPECT_EQ(get("color").getType(), ParameterType::Plugin);
    EXPECT_EQ(get("color").getPlugin(-1, 1), nullptr);
    ombrix::unsetParameter(*instance.paramList, "color");
    EXPECT_EQ(get("color").getType(), ParameterType::AColor);
    set(instance, "free_height", 0.5f);
    EXPECT_EQ(get("free_height").getType(), ParameterType::Float);
}

TEST_F(Parameters, AnOutputIsGivenAsItsHolder)
{
    PluginInterface* output = ombrix::boundOutput(*other.paramList, "out_alpha");
    set(instance, "height", reference(&other, output));
    EXPECT_EQ(get("height").getPlugin(-1, 1), static_cast<PluginBase*>(&other.alpha));
    PluginInterface* color = ombrix::boundOutput(*other.paramList, "color");
    set(instance, "color", reference(&other, color));
    EXPECT_EQ(get("color").getPlugin(-1, 1), static_cast<PluginBase*>(&other));
}

TEST_F(Parameters, AnotherIndexOrTypeReadsAsNothing)
{
    EXPECT_EQ(get("number").getInt(0, 1), 0);
    EXPECT_EQ(get("number").getFloat(-1, 1), 0.0f);
    EXPECT_EQ(get("amount").getInt(-1, 1), 0);
    EXPECT_EQ(get("amount").getDouble(-1, 1), 0.0);
    EXPECT_STREQ(get("number").getString(-1, 1), "");
    EXPECT_STREQ(get("text").getString(0, 1), "");
    EXPECT_EQ(get("color").getPlugin(-1, 1), nullptr);
    EXPECT_EQ(get("number").getTransform(-1, 1).matrix.columns[0].x, 0.0f);
    EXPECT_EQ(get("number").getColor(-1, 1).a, 0.0f);
}

TEST_F(Parameters, ListsCountTheirElements)
{
    EXPECT_EQ(get("floats").getCount(1), 0);
    set(instance, "floats", list({1.0f, 2, 3.0f}));
    EXPECT_EQ(get("floats").getType(), ParameterType::Float);
    ASSERT_EQ(get("floats").getCount(1), 3);
    EXPECT_EQ(get("floats").getFloat(1, 1), 2.0f);
    EXPECT_EQ(get("floats").getFloat(3, 1), 0.0f);
    EXPECT_EQ(get("floats").getFloat(-1, 1), 0.0f);
    set(instance, "floats", list({}));
    EXPECT_EQ(get("floats").getCount(1), 0);
}

TEST_F(Parameters, AnAnimatedListCountsItsElementsAtTheTimeAsked)
{
    set(instance, "floats", ombrix::ParameterValue{{0, 5, 6}, {{1.0f}, {2.0f, 3.0f, 4.0f}, {}}});
    frame(instance, 6); // the frame's own time counts for nothing
    OmbrixPluginParameter& floats = get("floats");
    EXPECT_EQ(floats.getCount(-7), 1);
    EXPECT_EQ(floats.getCount(4.75), 1);
    EXPECT_EQ(floats.getFloat(0, 4.75), 1.0f);
    EXPECT_EQ(floats.getFloat(1, 4.75), 0.0f);
    EXPECT_EQ(floats.getCount(5), 3);
    EXPECT_EQ(floats.getFloat(2, 5.5), 4.0f);
    EXPECT_EQ(floats.getCount(6), 0);
    EXPECT_EQ(floats.getCount(99), 0);
    EXPECT_EQ(floats.getType(), ParameterType::Float);
}

TEST_F(Parameters, ReadingsAreAtTheirTime)
{
    set(instance, "amount", ombrix::ParameterValue{{0, 10}, {{0.0f}, {20.0f}}});
    EXPECT_EQ(get("amount").getFloat(-1, 5), 10.0f);
    EXPECT_EQ(get("amount").getFloat(-1, 10), 20.0f);
    set(instance, "text", ombrix::ParameterValue{{0, 10}, {{std::string("a")}, {std::string("b")}}});
    const char* early = get("text").getString(-1, 9);
    EXPECT_STREQ(get("text").getString(-1, 10), "b");
    EXPECT_STREQ(early, "a"); // both stay readable
}

TEST_F(Parameters, SetParameterRefusesOtherNamesAndKinds)
{
    ombrix::ParameterDeclaration unknown;
    unknown.name = "nothing";
    ombrix::HostParameter stranger(unknown, single(1));
    EXPECT_EQ(instance.setParameter(&stranger), 0);
    EXPECT_EQ(instance.setParameter(nullptr), 0);
    ASSERT_EQ(set(instance, "number", 3), 1);
    EXPECT_EQ(set(instance, "number", std::string("4")), 0);
    EXPECT_EQ(set(instance, "number", list({1, 2})), 0);
    EXPECT_EQ(get("number").getInt(-1, 1), 3); // a refused value changes nothing
}

TEST_F(Parameters, AWriteByANameThatStandsTwiceMeansTheInput)
{
    ASSERT_EQ(set(instance, "color", Color{9, 9, 9}), 1);
    EXPECT_EQ(get("color").getColor(-1, 1).r, 9.0f);
}

TEST_F(Parameters, AParameterCanBeCopiedFromOneInstanceToAnother)
{
    set(other, "amount", 4.5f);
    EXPECT_EQ(instance.setParameter(other.getParameter("amount")), 1);
    EXPECT_EQ(get("amount").getFloat(-1, 1), 4.5f);
    EXPECT_EQ(instance.setParameter(instance.getParameter("amount")), 1);
    EXPECT_EQ(get("amount").getFloat(-1, 1), 4.5f);
    ombrix::unsetParameter(*other.paramList, "amount");
    EXPECT_EQ(instance.setParameter(other.getParameter("amount")), 1);
    EXPECT_EQ(get("amount").getFloat(-1, 1), 0.25f);
}

// A parameter that another maker wrote: it knows the virtual readings alone.
class Foreign : public OmbrixPluginParameter {
public:
    Foreign(const char* what, ParameterType kind, int elements = -1) : name(what), type(kind), count(elements)
    {
    }
    const char* getName() override { return name; }
    ParameterType getType() override { return type; }
    int getCount(double time) override { return grows ? static_cast<int>(time) : count; }
    int getInt(int index, double /*time*/) override { return 10 + index; }
    float getFloat(int index, double time) override
    {
        return static_cast<float>(time) + 0.5f * static_cast<float>(index + 1);
    }
    double getDouble(int /*index*/, double /*time*/) override { return 2.5; }
    Vector getVector(int /*index*/, double /*time*/) override { return {1, 2, 3}; }
    AColor getColor(int /*index*/, double /*time*/) override { return {1, 2, 3, 4}; }
    TraceTransform getTransform(int /*index*/, double /*time*/) override
    {
        TraceTransform moved;
        moved.offset = {7, 8, 9};
        return moved;
    }
    const char* getString(int /*index*/, double /*time*/) override { return nullptr; }
    PluginBase* getPlugin(int /*index*/, double /*time*/) override { return plugin; }

    const char* name;
    ParameterType type;
    int count;
    bool grows = false; // a list of as many elements as the time has whole frames
    PluginBase* plugin = nullptr;
};

TEST_F(Parameters, AForeignParameterIsTakenThroughItsReadings)
{
    Foreign number("number", ParameterType::Int), flag("flag", ParameterType::Bool),
        amount("amount", ParameterType::Double), tint("tint", ParameterType::AColor),
        color("color", ParameterType::Color), place("place", ParameterType::Transform),
        direction("direction", ParameterType::Vector), text("text", ParameterType::String),
        object("object", ParameterType::Plugin), height("height", ParameterType::Float);
    object.plugin = &other;
    frame(instance, 3);
    for (Foreign* each :
         {&number, &flag, &amount, &tint, &color, &place, &direction, &text, &object, &height})
        EXPECT_EQ(instance.setParameter(each), 1) << each->name;
    EXPECT_EQ(get("number").getInt(-1, 1), 9);
    EXPECT_EQ(get("flag").getInt(-1, 1), 1);
    EXPECT_EQ(get("amount").getFloat(-1, 1), 2.5f);
    EXPECT_EQ(get("tint").getColor(-1, 1).b, 3.0f);
    EXPECT_EQ(get("color").getType(), ParameterType::Color);
    EXPECT_EQ(get("place").getTransform(-1, 1).offset.z, 9.0);
    EXPECT_EQ(get("direction").getVector(-1, 1).z, 3.0f);
    EXPECT_STREQ(get("text").getString(-1, 1), "");
    EXPECT_EQ(get("object").getPlugin(-1, 1), static_cast<PluginBase*>(&other));
    EXPECT_EQ(get("height").getFloat(-1, 99), 3.0f); // read at the last frame's time
}

TEST_F(Parameters, AForeignListIsTakenElementByElement)
{
    Foreign numbers("numbers", ParameterType::Int, 3), single("numbers", ParameterType::Int),
        list("number", ParameterType::Int, 1), matrix("place", ParameterType::Matrix);
    ASSERT_EQ(instance.setParameter(&numbers), 1);
    frame(instance);
    ASSERT_EQ(instance.numbers.count(), 3);
    EXPECT_EQ(instance.numbers[0], 10);
    EXPECT_EQ(instance.numbers[2], 12);
    numbers.grows = true;
    frame(instance, 5.5);
    ASSERT_EQ(instance.setParameter(&numbers), 1);
    EXPECT_EQ(get("numbers").getCount(1), 5); // as long as it was at the last frame's time
    EXPECT_EQ(instance.setParameter(&single), 0);
    EXPECT_EQ(instance.setParameter(&list), 0);
    EXPECT_EQ(instance.setParameter(&matrix), 0);
}

class Collect final : public EnumParamsCallback {
public:
    int processParam(OmbrixPluginParameter* parameter) override
    {
        names.emplace_back(parameter->getName());
        return static_cast<int>(names.size()) < limit ? 1 : 0;
    }
    std::vector<std::string> names;
    int limit = 1000;
};

TEST_F(Parameters, EnumerationGivesTheInputsInOrder)
{
    Collect all;
    EXPECT_EQ(instance.paramList->enumParams(all), 19);
    ASSERT_EQ(all.names.size(), 19u); // 21 without the two outputs
    EXPECT_EQ(all.names.front(), "flag");
    EXPECT_EQ(all.names[7], "color");
    EXPECT_EQ(all.names[16], "numbers");
    EXPECT_EQ(all.names.back(), "objects");
}

TEST_F(Parameters, EnumerationStopsWhenTheCallbackGivesZero)
{
    Collect few;
    few.limit = 2;
    EXPECT_EQ(instance.paramList->enumParams(few), 2);
    EXPECT_EQ(few.names.size(), 2u);
}

TEST_F(Parameters, ALibraryWithoutAHostRegistersNothing)
{
    EXPECT_EQ(desc.params.registerParameters(nullptr, &desc), 0);
}

} // namespace
