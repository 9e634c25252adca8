// What every plugin kind must do, whatever it computes, walked once over the whole library.

#include "kind_life.h"
#include "loaded_library.h"

#include "host/metadata/metadata.h"

#include <algorithm>
#include <climits>
#include <limits>

namespace {

using namespace conformance;
using namespace OUtils;
using support::TextKind;

using Limits = std::numeric_limits<float>;
constexpr float kBrokenNumbers[] = {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(),
                                    Limits::max(),       -Limits::max(),     Limits::denorm_min()};
constexpr float kLevel = 0.5f, kOtherLevel = 0.8125f;
constexpr float kSpread = 0.0625f, kOtherSpread = 0.0f; // so that differences and comparisons differ too

struct EveryKind : testing::Test {
    template <class Check>
    void forEach(Check check)
    {
        for (PluginDesc* desc : support::descriptorsOf(library.desc())) {
            SCOPED_TRACE(desc->getName());
            check(desc);
        }
    }
    // What a new instance shows in a whole render; level 0 leaves everything unset.
    std::string renderOf(PluginDesc* desc, float level, float spread = kSpread)
    {
        KindLife life(desc);
        if (level != 0.0f) life.connectAll(level, spread);
        return life.render(points);
    }

    support::TestSurface surface;
    std::vector<ShadedPoint> points = ordinaryPoints(&surface);
    LoadedLibrary library;
};

TEST_F(EveryKind, LivesTwice)
{
    forEach([&](PluginDesc* desc) {
        const std::string unset = renderOf(desc, 0.0f);
        EXPECT_EQ(renderOf(desc, 0.0f), unset);
        const std::string connected = renderOf(desc, kLevel);
        EXPECT_EQ(renderOf(desc, kLevel), connected);
        EXPECT_NE(connected, unset) << "no input reaches what the instance shows";
    });
}

// The stamps start anew with each frame, so a memo that outlives one would answer with old values.
TEST_F(EveryKind, ForgetsBetweenFramesAndRenders)
{
    forEach([&](PluginDesc* desc) {
        const std::string first = renderOf(desc, kLevel), second = renderOf(desc, kOtherLevel, kOtherSpread);
        EXPECT_NE(first, second) << "the levels do not reach what the instance shows";
        KindLife life(desc);
        life.connectAll(kLevel);
        EXPECT_EQ(life.render(points), first);
        life.connectAll(kOtherLevel, kOtherSpread);
        EXPECT_EQ(life.render(points), second);
        life.connectAll(kLevel);
        life.begin();
        std::string frames = life.frame(points) + "next frame\n";
        life.connectAll(kOtherLevel, kOtherSpread);
        frames += life.frame(points);
        life.end();
        const auto half = [](const std::string& render, bool later) {
            const std::size_t cut = render.find("next frame\n");
            return later ? render.substr(cut) : render.substr(0, cut);
        };
        EXPECT_EQ(half(frames, false), half(first, false));
        EXPECT_EQ(half(frames, true), half(second, true));
    });
}

TEST_F(EveryKind, RefusesOtherDescriptors)
{
    int asked = 0;
    forEach([&](PluginDesc* desc) {
        KindLife life(desc);
        life.connectAll(kLevel);
        life.begin();
        life.life()->frameBegin(&life.renderer);
        for (const char* other :
             {"Material", "", "materialdescriptor", "MaterialDescriptor2", static_cast<const char*>(nullptr)})
            for (RTTexInterface* texture : life.gpuTextures()) {
                const support::WrittenSource written = support::sourceOf(texture, other);
                EXPECT_EQ(written.text, "") << (other ? other : "null");
                // What the outputs answer is told by their own tests.
                if (texture->getPlugin() != life.base()) continue;
                EXPECT_EQ(written.answer, 0) << (other ? other : "null");
                ++asked;
            }
        life.life()->frameEnd(&life.renderer);
        life.end();
    });
    EXPECT_GT(asked, 0);
}

TEST_F(EveryKind, ThreadsOutsideTheTablesGetTheSameAnswers)
{
    forEach([&](PluginDesc* desc) {
        const std::string expected = renderOf(desc, kLevel);
        for (int thread : {-1, 1, 1000, INT_MAX, INT_MIN}) {
            std::vector<ShadedPoint> outside = points;
            for (ShadedPoint& point : outside)
                point.threadIndex = thread;
            KindLife life(desc);
            life.connectAll(kLevel);
            EXPECT_EQ(life.render(outside), expected) << thread;
        }
    });
}

TEST_F(EveryKind, ASurfaceThatOffersNothingCountsAsNone)
{
    ForeignSurface foreign;
    forEach([&](PluginDesc* desc) {
        for (float level : {0.0f, kLevel}) {
            std::string shown[2];
            for (PluginBase* object :
                 {static_cast<PluginBase*>(nullptr), static_cast<PluginBase*>(&foreign)}) {
                KindLife life(desc);
                if (level != 0.0f) life.connectAll(level);
                shown[object ? 1 : 0] = life.render(ordinaryPoints(object));
            }
            EXPECT_EQ(shown[1], shown[0]);
        }
    });
}

TEST_F(EveryKind, AnswersAtPointsThatAreNoNumbers)
{
    const std::vector<ShadedPoint> broken = brokenPoints(&surface);
    forEach([&](PluginDesc* desc) {
        for (float level : {0.0f, kLevel}) {
            std::string shown[2];
            for (std::string& text : shown) {
                KindLife life(desc);
                if (level != 0.0f) life.connectAll(level);
                text = life.render(broken);
            }
            EXPECT_EQ(shown[1], shown[0]);
        }
    });
}

// One parameter after the other, and all at once, hold what is no number, or no size for one.
TEST_F(EveryKind, AnswersToInputsThatAreNoNumbers)
{
    forEach([&](PluginDesc* desc) {
        KindLife reused(desc);
        const std::size_t count = reused.declarations().size();
        for (float number : kBrokenNumbers)
            for (std::size_t broken = 0; broken <= count; ++broken) {
                const auto breakInputs = [&](KindLife& life) {
                    life.connectAll(kLevel);
                    int set = 0;
                    for (std::size_t i = 0; i < count; ++i)
                        if (i == broken || broken == count) set += life.setLevel(i, number) ? 1 : 0;
                    return set;
                };
                KindLife life(desc);
                if (breakInputs(life) == 0) continue;
                const std::string shown = life.render(points, TextKind::Broken);
                KindLife again(desc);
                breakInputs(again);
                EXPECT_EQ(again.render(points, TextKind::Broken), shown)
                    << (broken < count ? life.declarations()[broken].name : "all") << " = " << number;
            }
    });
}

// Every value of an enumeration, and one below and one above.
TEST_F(EveryKind, AnswersToEveryValueOfItsEnumerations)
{
    int enumerations = 0;
    forEach([&](PluginDesc* desc) {
        const std::vector<ombrix::ParameterDeclaration> declared = declarationsOf(desc);
        for (std::size_t i = 0; i < declared.size(); ++i) {
            if (declared[i].kind != ombrix::Declaration::Int || !declared[i].metadata) continue;
            std::vector<int> values;
            for (const auto& label : ombrix::parseMetadata(*declared[i].metadata).enumeration)
                values.push_back(label.value);
            if (values.empty()) continue;
            ++enumerations;
            const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
            const int below = *least - 1, above = *greatest + 1;
            values.insert(values.end(), {below, above});
            for (int value : values)
                for (float level : {0.0f, kLevel}) {
                    std::string shown[2];
                    for (std::string& text : shown) {
                        KindLife life(desc);
                        if (level != 0.0f) life.connectAll(level);
                        life.write(i, value);
                        text = life.render(points);
                    }
                    EXPECT_EQ(shown[1], shown[0]) << declared[i].name << " = " << value;
                }
        }
    });
    EXPECT_GT(enumerations, 0);
}

} // namespace
