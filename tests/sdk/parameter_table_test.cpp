// The parameter table of a plugin kind: what it declares, what it binds and what unset inputs read as.

#include <ombrix/plugin_kind.h>

#include "host/params/host_parameters.h"
#include "support/test_node.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

namespace {

using namespace OUtils;
using support::kUnwritten;
using support::TestContext;

struct Numbers {
    FloatInput amount;
    float plain = kUnwritten;
};

// A field that reads its parameter when it is asked.
struct LateNumber {
    int value() const { return list ? list->getParam(name)->getInt(-1, 0.0) : -1; }

    OmbrixParameterList* list = nullptr;
    const char* name = nullptr;
};

} // namespace

template <>
struct OUtils::ParameterField<LateNumber> {
    static int declare(OmbrixParameterListDesc& desc, const char* name, int value, const char* text,
                       const char* metadata)
    {
        return desc.addParamInt(name, value, -1, text, metadata);
    }
    static void attach(LateNumber& field, OmbrixParameterList& list, const char* name)
    {
        field = {&list, name};
    }
};

namespace {

class Sample : public Offers<OmbrixTextureFloat, TextureIntInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        99000001, "Sample", "A sample [gpuSupport=(none)]", {EXT_TEXTURE_FLOAT, EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        {
            auto&& byIndex = p.byIndex();
            byIndex("flag", &Sample::flag, true, "A flag", "gpuSupport=(full)");
            byIndex("spare", unbound<float>, 2.5f, "A spare", "minValue=(0)");
            byIndex("late_by_index", &Sample::lateByIndex, 8);
            byIndex("number", &Sample::number, 7);
        }
        p("level", &Sample::level, 0.25f);
        p("tint", &Sample::tint, Color{0.1f, 0.2f, 0.3f});
        p("text", &Sample::text, "unset");
        p("place", &Sample::place, TransformDefault{1, {}});
        p("integers", &Sample::integers, emptyList);
        p("floats", &Sample::floats, emptyList);
        p("color", &Sample::color, AColor{0.1f, 0.2f, 0.3f, 0.4f}, "A color");
        p("rgb", &Sample::rgb, Color{0.5f, 0.6f, 0.7f});
        p("bare", &Sample::bare, noDefault);
        p("gain", &Sample::gain, 0.0f, unsetReads(1.0f), "A gain", "minValue=(0)");
        p("index", &Sample::index, 3);
        p("turn", &Sample::turn, Transform{});
        p("shift", &Sample::shift, Vector{1.0f, 2.0f, 3.0f});
        p("generator", &Sample::generator, noDefault);
        p("textures", &Sample::textures, emptyList);
        p("amount", within(&Sample::numbers, &Numbers::amount), 0.5f);
        p("plain", within(&Sample::numbers, &Numbers::plain), 1.5f);
        p("late", &Sample::late, 9, "A late one");
        p("last", unbound<PtrArray<int>>, emptyList);
        p.output(
            "result", [](Sample& sample) -> Sample& { return sample; }, "The result", "x=(1)");
    }

    float evalFloat(const OmbrixContext&) override { return 0.0f; }
    void evalFloatBounds(float*, float*) override {}
    int evalInt(const OmbrixContext&) override { return 42; }

    int flag = -1, number = -1;
    float level = kUnwritten;
    Color3f tint;
    CharString text;
    TraceTransform place;
    PtrArray<int> integers;
    PtrArray<float> floats;
    ColorInput color, rgb, bare;
    FloatInput gain;
    IntInput index;
    TransformInput turn;
    VectorInput shift;
    UVWGenInput generator;
    PluginListInput<TextureInterface> textures;
    Numbers numbers;
    LateNumber late, lateByIndex;
};

PluginKindDesc<Sample> sampleDesc;

TEST(ParameterTable, DeclaresInItsOrderByTheTypes)
{
    const std::pair<const char*, const char*> expected[] = {
        {"flag", "addParamBool"},
        {"spare", "addParamFloat"},
        {"late_by_index", "addParamInt"},
        {"number", "addParamInt"},
        {"level", "addParamFloat"},
        {"tint", "addParamColor"},
        {"text", "addParamString"},
        {"place", "addParamTransform"},
        {"integers", "addParamInt"},
        {"floats", "addParamFloat"},
        {"color", "addParamTexture"},
        {"rgb", "addParamTexture"},
        {"bare", "addParamTexture"},
        {"gain", "addParamTextureFloat"},
        {"index", "addParamTextureInt"},
        {"turn", "addParamTextureTransform"},
        {"shift", "addParamTextureVector"},
        {"generator", "addParamPlugin"},
        {"textures", "addParamPlugin"},
        {"amount", "addParamTextureFloat"},
        {"plain", "addParamFloat"},
        {"late", "addParamInt"},
        {"last", "addParamInt"},
        {"result", "addOutputParamTextureFloat"},
    };
    const auto& all = sampleDesc.parameterDesc->declarations().all;
    ASSERT_EQ(all.size(), std::size(expected));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].name, expected[i].first);
        EXPECT_STREQ(ombrix::declarationName(all[i].kind), expected[i].second) << all[i].name;
        const bool list = all[i].name == "integers" || all[i].name == "floats" || all[i].name == "textures" ||
                          all[i].name == "last";
        EXPECT_EQ(all[i].count, list ? 0 : -1) << all[i].name;
    }
    EXPECT_EQ(all[0].description, "A flag");
    EXPECT_EQ(all[0].metadata, "gpuSupport=(full)");
    EXPECT_EQ(all[1].description, "A spare");
    EXPECT_EQ(all[1].metadata, "minValue=(0)");
    EXPECT_EQ(std::get<float>(all[1].defaultValue), 2.5f);
    EXPECT_EQ(all[3].description, std::nullopt);
    EXPECT_EQ(all[10].metadata, std::nullopt);
    EXPECT_EQ(all[7].transformFlag, 1);
    EXPECT_EQ(all[17].requiredInterface, EXT_UVWGEN);
    EXPECT_EQ(all[18].requiredInterface, EXT_TEXTURE);
    EXPECT_EQ(all[21].description, "A late one");
    EXPECT_EQ(all[23].description, "The result");
}

class BoundSample : public testing::Test {
protected:
    BoundSample() : plugin(static_cast<Sample*>(sampleDesc.newPlugin(nullptr)))
    {
        plugin->renderBegin(&renderer);
        plugin->frameBegin(&renderer);
    }
    ~BoundSample() override { sampleDesc.deletePlugin(plugin); }

    support::TestRenderer renderer;
    TestContext context;
    Sample* plugin;
};

TEST_F(BoundSample, FieldsHoldTheDeclaredDefaults)
{
    EXPECT_EQ(plugin->flag, 1);
    EXPECT_EQ(plugin->number, 7);
    EXPECT_SAME_BITS(plugin->level, 0.25f);
    EXPECT_SAME_BITS(plugin->tint.b, 0.3f);
    EXPECT_STREQ(plugin->text.str(), "unset");
    EXPECT_SAME_BITS(plugin->numbers.plain, 1.5f);
    EXPECT_EQ(plugin->integers.count(), 0);
}

TEST_F(BoundSample, UnsetInputsReadAsTheTableSays)
{
    EXPECT_FALSE(plugin->color);
    EXPECT_SAME_COLOR(plugin->color(context), {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_SAME_COLOR(plugin->rgb(context), {0.5f, 0.6f, 0.7f, 1.0f});
    EXPECT_SAME_COLOR(plugin->bare(context), {0.0f, 0.0f, 0.0f, 0.0f});
    EXPECT_SAME_BITS(plugin->gain(context), 1.0f); // not the declared 0
    EXPECT_EQ(plugin->index(context), 3);
    EXPECT_SAME_BITS(plugin->shift(context).y, 2.0f);
    EXPECT_SAME_BITS(plugin->numbers.amount(context), 0.5f);
}

TEST_F(BoundSample, WrittenValuesReachTheFields)
{
    support::TestFloat half(0.5f);
    support::TestColor red({1.0f, 0.0f, 0.0f, 1.0f});
    support::WrittenParameter flag("flag", 0), amount("amount", static_cast<PluginBase*>(&half)),
        bare("bare", static_cast<PluginBase*>(&red));
    for (support::WrittenParameter* written : {&flag, &amount, &bare})
        EXPECT_EQ(plugin->setParameter(written), 1);
    plugin->frameBegin(&renderer);
    EXPECT_EQ(plugin->flag, 0);
    EXPECT_SAME_BITS(plugin->numbers.amount(context), 0.5f);
    EXPECT_SAME_BITS(plugin->bare(context).r, 1.0f);
}

TEST_F(BoundSample, AttachedFieldsReadTheirParameterAtAnyTime)
{
    EXPECT_EQ(plugin->late.value(), 9);
    EXPECT_EQ(plugin->lateByIndex.value(), 8);
    support::WrittenParameter late("late", 10);
    EXPECT_EQ(plugin->setParameter(&late), 1);
    EXPECT_EQ(plugin->late.value(), 10); // without another frame
}

TEST_F(BoundSample, OutputsAreTheObjectsOfTheInstance)
{
    PluginInterface* output = ombrix::boundOutput(*plugin->paramList, "result");
    EXPECT_EQ(output, static_cast<TextureFloatInterface*>(plugin));
}

TEST_F(BoundSample, OffersItsInterfacesAndThoseOfItsBase)
{
    EXPECT_EQ(find<TextureIntInterface>(plugin), static_cast<TextureIntInterface*>(plugin));
    EXPECT_EQ(find<TextureFloatInterface>(plugin), static_cast<TextureFloatInterface*>(plugin));
    EXPECT_EQ(find<OmbrixPluginInterface>(plugin), static_cast<OmbrixPluginInterface*>(plugin));
    EXPECT_EQ(find<TextureInterface>(plugin), nullptr); // declared, yet not answered
    EXPECT_EQ(find<TextureInterface>(nullptr), nullptr);
    EXPECT_EQ(plugin->getPlugin(), plugin);
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_TEXTURE), 1);
    EXPECT_EQ(sampleDesc.supportsInterface(EXT_TEXTURE_INT), 0);
}

TEST(ParameterTable, AnInstanceWithoutAListHasNothingBound)
{
    Sample alone(nullptr);
    bindParameters(alone);
    EXPECT_EQ(alone.flag, -1);
    EXPECT_SAME_BITS(alone.gain.unset, 0.0f);
    EXPECT_EQ(alone.late.value(), -1);
}

} // namespace
