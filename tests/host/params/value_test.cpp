#include "host/params/value.h"

#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace ombrix;
using OUtils::AColor;
using OUtils::Color;
using OUtils::TraceTransform;
using OUtils::Vector;

ParameterValue animated(std::vector<double> times, std::vector<Value> values)
{
    ParameterValue result{std::move(times), {}};
    for (Value& value : values)
        result.samples.push_back({std::move(value)});
    return result;
}

template <class T>
T at(const ParameterValue& value, double time)
{
    return std::get<T>(sampleAt(value, time).at(0));
}

TEST(SampleAt, FloatsAreLinearBetweenTimesAndConstantOutside)
{
    const ParameterValue value = animated({1, 3, 4}, {2.0f, 6.0f, 10.0f});
    EXPECT_EQ(at<float>(value, 0), 2.0f);
    EXPECT_EQ(at<float>(value, 1), 2.0f);
    EXPECT_EQ(at<float>(value, 1.5), 3.0f); // a quarter of the way from 2 to 6
    EXPECT_EQ(at<float>(value, 3), 6.0f);
    EXPECT_EQ(at<float>(value, 3.5), 8.0f);
    EXPECT_EQ(at<float>(value, 4), 10.0f);
    EXPECT_EQ(at<float>(value, 99), 10.0f);
}

TEST(SampleAt, ColorsVectorsAndTransformsInterpolateEachComponent)
{
    const auto color = at<Color>(animated({0, 4}, {Color{0, 4, 8}, Color{4, 0, 8}}), 1);
    EXPECT_EQ(color.r, 1.0f);
    EXPECT_EQ(color.g, 3.0f);
    EXPECT_EQ(color.b, 8.0f);
    const auto withAlpha = at<AColor>(animated({0, 4}, {AColor{0, 4, 8, 0}, AColor{4, 0, 8, 1}}), 3);
    EXPECT_EQ(withAlpha.r, 3.0f);
    EXPECT_EQ(withAlpha.g, 1.0f);
    EXPECT_EQ(withAlpha.b, 8.0f);
    EXPECT_EQ(withAlpha.a, 0.75f);
    const auto vector = at<Vector>(animated({0, 2}, {Vector{1, 2, 3}, Vector{3, 2, 1}}), 1);
    EXPECT_EQ(vector.x, 2.0f);
    EXPECT_EQ(vector.y, 2.0f);
    EXPECT_EQ(vector.z, 2.0f);

    TraceTransform first, second;
    first.offset = {1e9, 0, 0};
    second.offset = {1e9 + 0.5, 2, 0};
    second.matrix.columns[1] = {4, 5, 6};
    const auto moved = at<TraceTransform>(animated({0, 2}, {first, second}), 1);
    EXPECT_EQ(moved.offset.x, 1e9 + 0.25); // only double precision holds it
    EXPECT_EQ(moved.offset.y, 1.0);
    EXPECT_EQ(moved.matrix.columns[0].x, 1.0f);
    EXPECT_EQ(moved.matrix.columns[1].x, 2.0f);
    EXPECT_EQ(moved.matrix.columns[1].y, 3.0f); // from 1 to 5
    EXPECT_EQ(moved.matrix.columns[1].z, 3.0f);
}

TEST(SampleAt, IntsBoolsAndTextsHoldTheEarlierTime)
{
    EXPECT_EQ(at<int>(animated({0, 1}, {3, 9}), 0.999), 3);
    EXPECT_EQ(at<int>(animated({0, 1}, {3, 9}), 1.0), 9);
    EXPECT_EQ(at<bool>(animated({0, 1}, {true, false}), 0.5), true);
    EXPECT_EQ(at<bool>(animated({0, 1}, {true, false}), 2.0), false);
    EXPECT_EQ(at<std::string>(animated({0, 1}, {std::string("a"), std::string("b")}), 0.5), "a");
}

TEST(SampleAt, EndsAndEqualValuesAreExact)
{
    const float third = 1.0f / 3.0f;
    const ParameterValue value = animated({0.1, 0.7}, {third, 1e30f});
    EXPECT_SAME_BITS(at<float>(value, 0.1), third);
    EXPECT_SAME_BITS(at<float>(value, 0.7), 1e30f);
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(at<float>(animated({0, 1}, {infinity, infinity}), 0.5), infinity);
    EXPECT_TRUE(std::isnan(at<float>(animated({0, 1}, {std::nanf(""), 1.0f}), 0.5)));
    EXPECT_EQ(at<float>(animated({0, 1}, {std::nanf(""), 1.0f}), 1.0), 1.0f);
}

TEST(SampleAt, AnInfinityReachesUpToTheOtherTime)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const ParameterValue fading = animated({0, 2}, {infinity, 1.0f});
    EXPECT_EQ(at<float>(fading, 1.0), infinity);
    EXPECT_EQ(at<float>(fading, 2.0), 1.0f);
    const ParameterValue growing = animated({0, 2}, {1.0f, -infinity});
    EXPECT_EQ(at<float>(growing, 0.0), 1.0f);
    EXPECT_EQ(at<float>(growing, 0.5), -infinity);
    EXPECT_TRUE(std::isnan(at<float>(animated({0, 2}, {infinity, -infinity}), 1.0)));
}

TEST(SampleAt, ListsOfEqualLengthInterpolateTheOthersHold)
{
    const ParameterValue equal{{0, 2}, {{1.0f, 2.0f}, {3.0f, 6.0f}}};
    const std::vector<Value> middle = sampleAt(equal, 1);
    ASSERT_EQ(middle.size(), 2u);
    EXPECT_EQ(std::get<float>(middle[0]), 2.0f);
    EXPECT_EQ(std::get<float>(middle[1]), 4.0f);

    const ParameterValue unequal{{0, 2}, {{1.0f, 2.0f}, {3.0f}}};
    EXPECT_EQ(sampleAt(unequal, 1.9).size(), 2u);
    EXPECT_EQ(std::get<float>(sampleAt(unequal, 1.9)[0]), 1.0f);
    EXPECT_EQ(sampleAt(unequal, 2.0).size(), 1u);
    EXPECT_EQ(std::get<float>(sampleAt(unequal, 2.0)[0]), 3.0f);
}

TEST(SampleAt, WhatIsNotAnimatedIgnoresTheTime)
{
    const ParameterValue value{{}, {{5.0f}}};
    EXPECT_EQ(at<float>(value, -1e9), 5.0f);
    EXPECT_EQ(at<float>(value, 1e9), 5.0f);
    EXPECT_TRUE(sampleAt(ParameterValue{}, 1).empty());
}

TEST(ElementAt, AgreesWithTheWholeSample)
{
    const ParameterValue value{{0, 2, 3}, {{1.0f, 2.0f}, {3.0f, 6.0f}, {8.0f}}};
    for (double time : {-1.0, 0.0, 0.3, 1.7, 2.0, 2.5, 3.0, 4.0}) {
        const std::vector<Value> all = sampleAt(value, time);
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_SAME_BITS(std::get<float>(elementAt(value, i, time)), std::get<float>(all[i]));
        EXPECT_TRUE(std::holds_alternative<std::monostate>(elementAt(value, all.size(), time)));
    }
}

ParameterDeclaration declaration(Declaration kind, int count = -1)
{
    ParameterDeclaration result;
    result.kind = kind;
    result.name = "x";
    result.count = count;
    return result;
}

bool fits(Declaration kind, Value value)
{
    ParameterValue given{{}, {{std::move(value)}}};
    return adaptToDeclaration(declaration(kind), given);
}

TEST(AdaptToDeclaration, TakesWhatTheKindCanHold)
{
    EXPECT_TRUE(fits(Declaration::Bool, true));
    EXPECT_TRUE(fits(Declaration::Bool, 1));
    EXPECT_FALSE(fits(Declaration::Bool, 1.0f));
    EXPECT_TRUE(fits(Declaration::Int, 4));
    EXPECT_FALSE(fits(Declaration::Int, 4.5f));
    EXPECT_TRUE(fits(Declaration::Float, 4));
    EXPECT_FALSE(fits(Declaration::Float, std::string("4")));
    EXPECT_TRUE(fits(Declaration::Color, AColor{}));
    EXPECT_FALSE(fits(Declaration::Color, Vector{}));
    EXPECT_TRUE(fits(Declaration::String, std::string()));
    EXPECT_TRUE(fits(Declaration::Plugin, PluginReference{}));
    EXPECT_FALSE(fits(Declaration::Plugin, 1.0f));
    EXPECT_TRUE(fits(Declaration::Transform, TraceTransform{}));
    EXPECT_TRUE(fits(Declaration::Texture, Color{}));
    EXPECT_FALSE(fits(Declaration::Texture, 1.0f));
    EXPECT_TRUE(fits(Declaration::TextureFloat, 1));
    EXPECT_FALSE(fits(Declaration::TextureFloat, Color{}));
    EXPECT_TRUE(fits(Declaration::TextureInt, 1));
    EXPECT_TRUE(fits(Declaration::TextureTransform, TraceTransform{}));
    EXPECT_TRUE(fits(Declaration::TextureVector, Vector{}));
    EXPECT_FALSE(fits(Declaration::OutputTexture, Color{}));
}

TEST(AdaptToDeclaration, ConvertsToTheKindThatIsKept)
{
    ParameterValue value{{}, {{true}}};
    ASSERT_TRUE(adaptToDeclaration(declaration(Declaration::TextureFloat), value));
    EXPECT_EQ(std::get<float>(value.samples[0][0]), 1.0f);
    value = {{}, {{AColor{1, 2, 3, 4}}}};
    ASSERT_TRUE(adaptToDeclaration(declaration(Declaration::Color), value));
    EXPECT_EQ(std::get<Color>(value.samples[0][0]).b, 3.0f);
}

TEST(AdaptToDeclaration, ColorsOfThreeAndFourNumbersInterpolateWithAlphaOne)
{
    ParameterValue value{{0, 2}, {{Color{0, 0, 0}}, {AColor{2, 2, 2, 0}}}};
    ASSERT_TRUE(adaptToDeclaration(declaration(Declaration::Texture), value));
    const auto middle = std::get<AColor>(sampleAt(value, 1)[0]);
    EXPECT_EQ(middle.r, 1.0f);
    EXPECT_EQ(middle.a, 0.5f);
}

TEST(AdaptToDeclaration, RefusesMalformedValues)
{
    const auto refused = [](const ParameterDeclaration& to, ParameterValue value) {
        return !adaptToDeclaration(to, value);
    };
    EXPECT_TRUE(refused(declaration(Declaration::Float), {}));
    EXPECT_TRUE(refused(declaration(Declaration::Float), {{}, {{1.0f, 2.0f}}}));
    EXPECT_TRUE(refused(declaration(Declaration::Float), {{}, {{1.0f}, {2.0f}}}));
    EXPECT_TRUE(refused(declaration(Declaration::Float), {{1, 1}, {{1.0f}, {2.0f}}}));
    EXPECT_TRUE(refused(declaration(Declaration::Float), {{2, 1}, {{1.0f}, {2.0f}}}));
    EXPECT_TRUE(
        refused(declaration(Declaration::Plugin), {{1, 2}, {{PluginReference{}}, {PluginReference{}}}}));
    EXPECT_FALSE(refused(declaration(Declaration::Float, 0), {{}, {{}}}));
    EXPECT_FALSE(refused(declaration(Declaration::Float, 0), {{}, {{1.0f, 2.0f, 3.0f}}}));
}

TEST(AdaptToDeclaration, NullsOfAPluginListAreClearedReferences)
{
    ParameterValue value{{}, {{Value{}, Value{}}}};
    ASSERT_TRUE(adaptToDeclaration(declaration(Declaration::Plugin, 0), value));
    EXPECT_EQ(std::get<PluginReference>(value.samples[0][1]).plugin, nullptr);
}

} // namespace
