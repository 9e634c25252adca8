// The noise objects: what they read at a context, in which order, and what they hand to the noises.

#include "textures_private/texmaya_private/noises/maya_volume_texture.h"

#include "support/plain_volume_noise.h"
#include "support/test_textures.h"
#include "support/tolerances.h"

namespace {

using namespace nezaiva;
using namespace support;

// All inputs of a noise, each with a value of its own and a common log.
struct VolumeInputs {
    VolumeInputs()
    {
        frequency.value = 6.0f;
        amplitude.value = 0.75f;
        frequencyRatio.value = 1.75f;
        ratio.value = 0.625f;
        threshold.value = 0.0625f;
        implode.value = 0.5f;
        center.value = {0.5f, 0.25f, 0.75f, 1.0f};
        scale.value = {0.5f, 2.0f, 0.0f, 1.0f};
        origin.value = {0.125f, 0.25f, 0.5f, 1.0f};
        bound.frequency.texture = &frequency;
        bound.amplitude.texture = &amplitude;
        bound.frequencyRatio.texture = &frequencyRatio;
        bound.ratio.texture = &ratio;
        bound.threshold.texture = &threshold;
        bound.implode.texture = &implode;
        bound.implodeCenter.texture = &center;
        bound.scale.texture = &scale;
        bound.origin.texture = &origin;
        bound.depthMax = 2;
    }
    VolumePlacement placement(float factor) const
    {
        VolumePlacement made;
        made.implode = 0.5f;
        made.hasImplodeCenter = made.hasScale = made.hasOrigin = true;
        made.implodeCenter = {0.5f, 0.25f, 0.75f};
        made.frequencyFactor = factor;
        made.scale = {0.5f, 2.0f, 0.0f};
        made.origin = {0.125f, 0.25f, 0.5f};
        return made;
    }
    static VolumeFractal fractal() { return {0.75f, 1.75f, 0.625f, 0.0625f, 2, false}; }

    VolumeTextureInputs bound;
    CallLog log;
    TestFloat frequency{"frequency", &log}, amplitude{"amplitude", &log};
    TestFloat frequencyRatio{"frequencyRatio", &log}, ratio{"ratio", &log};
    TestFloat threshold{"threshold", &log}, implode{"implode", &log};
    TestColor center{"center", &log}, scale{"scale", &log}, origin{"origin", &log};
};

CallLog reads(std::initializer_list<const char*> behind)
{
    CallLog expected{"implode.evalFloat", "center.evalColor", "frequency.evalFloat",
                     "scale.evalColor",   "origin.evalColor", "frequencyRatio.evalFloat",
                     "ratio.evalFloat"};
    for (const char* name : behind)
        expected.push_back(std::string(name) + ".evalFloat");
    return expected;
}

constexpr float kX = 0.3f, kY = 0.7f, kZ = 0.2f, kTime = 1.5f;
constexpr VolumePoint kPoint{kX, kY, kZ};

TEST(MayaPerlinTexture, ReadsItsInputsInOrder)
{
    TestContext context;
    VolumeInputs inputs;
    MayaPerlinTexture noise(inputs.bound);

    PerlinVolume settings;
    settings.fractal = VolumeInputs::fractal();
    const VolumePlacement placement = inputs.placement(6.0f * 0.0625f);
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, kTime),
                     plain::perlin3d(settings, plain::place(placement, kPoint, true), kTime));
    EXPECT_EQ(inputs.log, reads({"amplitude", "threshold"}));
    inputs.log.clear();
    const VolumePoint flat = plain::place(placement, kPoint, false);
    EXPECT_SAME_BITS(noise.eval2d(context, kX, kY, kTime), plain::perlin2d(settings, flat.x, flat.y, kTime));
    EXPECT_EQ(inputs.log, reads({"amplitude", "threshold"}));
}

TEST(MayaPerlinTexture, PassesItsOwnSettingsOn)
{
    TestContext context;
    for (const bool wispy : {false, true})
        for (const bool timeNoise : {false, true})
            for (const bool inflection : {false, true}) {
                VolumeInputs inputs;
                MayaPerlinTexture noise(inputs.bound);

                noise.wispy = wispy;
                noise.timeNoise = timeNoise;
                noise.timePeriod = 50;
                inputs.bound.inflection = inflection;
                PerlinVolume settings{VolumeInputs::fractal(), wispy, timeNoise, false, 50};
                settings.fractal.inflection = inflection;
                const VolumePlacement placement = inputs.placement(6.0f * 0.0625f);
                EXPECT_NEAR(noise.eval3d(context, kX, kY, kZ, kTime),
                            plain::perlin3d(settings, plain::place(placement, kPoint, true), kTime),
                            tolerance::kSum);
            }
}

TEST(MayaPerlinTexture, WithoutOctavesGivesItsBias)
{
    TestContext context;
    VolumeTextureInputs unset;
    MayaPerlinTexture noise(unset);
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, 0.0f), 0.5f);
    EXPECT_SAME_BITS(noise.eval2d(context, kX, kY, 0.0f), 0.5f);
    unset.inflection = 1;
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, 0.0f), 0.0f);
}

TEST(MayaPerlinTexture, UnsetInputsReadAsTheNoisesDefaults)
{
    TestContext context;
    VolumeTextureInputs unset;
    MayaPerlinTexture noise(unset);
    unset.depthMax = 3;
    PerlinVolume settings;
    settings.fractal.depthMax = 3;
    settings.fractal.frequencyRatio = 2.0f;
    settings.fractal.ratio = 0.707f;
    VolumePlacement placement;
    placement.frequencyFactor = 0.5f;
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, kTime),
                     plain::perlin3d(settings, plain::place(placement, kPoint, true), kTime));
}

TEST(MayaPerlinTexture, GivesSingleOctaves)
{
    VolumeTextureInputs unset;
    MayaPerlinTexture noise(unset);
    noise.timePeriod = 100;
    PerlinVolume settings;
    EXPECT_NEAR(noise.noise3d(kX, kY, kZ, kTime, 2), plain::perlinLevel3d(settings, kPoint, kTime, 2),
                tolerance::kSum);
    EXPECT_NEAR(noise.noise2d(kX, kY, kTime, 2), plain::perlinLevel2d(settings, kX, kY, kTime, 2),
                tolerance::kSum);
    noise.timeNoise = settings.timeNoise = true;
    EXPECT_NEAR(noise.noise3d(kX, kY, kZ, kTime, 2), plain::perlinLevel3d(settings, kPoint, kTime, 2),
                tolerance::kSum);
}

TEST(MayaSpaceTimeTexture, TakesTimeAsADimension)
{
    TestContext context;
    VolumeInputs inputs;
    MayaSpaceTimeTexture noise(inputs.bound);
    noise.timePeriod = 100;

    PerlinVolume settings;
    settings.fractal = VolumeInputs::fractal();
    settings.spaceTime = true;
    settings.timePeriod = 100;
    const VolumePlacement placement = inputs.placement(6.0f * 0.0625f);
    EXPECT_NEAR(noise.eval3d(context, kX, kY, kZ, kTime),
                plain::perlin3d(settings, plain::place(placement, kPoint, true), kTime), tolerance::kSum);
    EXPECT_EQ(inputs.log, reads({"amplitude", "threshold"}));
    const VolumePoint flat = plain::place(placement, kPoint, false);
    EXPECT_NEAR(noise.eval2d(context, kX, kY, kTime), plain::perlin2d(settings, flat.x, flat.y, kTime),
                tolerance::kSum);
    EXPECT_SAME_BITS(noise.noise3d(kX, kY, kZ, kTime, 0),
                     plain::latticeNoise4(kX, kY, kZ, kTime * 0.1f, 100));
    EXPECT_SAME_BITS(noise.noise2d(kX, kY, kTime, 0), plain::latticeNoise3(kX, kY, kTime * 0.1f));
}

TEST(MayaBillowTexture, ReadsItsInputsInOrder)
{
    TestContext context;
    VolumeInputs inputs;
    MayaBillowTexture noise(inputs.bound);

    TestFloat density("density", &inputs.log), spottyness("spottyness", &inputs.log);
    TestFloat randomness("randomness", &inputs.log), sizeRand("sizeRand", &inputs.log);
    density.value = 0.875f;
    spottyness.value = 0.25f;
    randomness.value = 0.75f;
    sizeRand.value = 0.125f;
    noise.density.texture = &density;
    noise.spottyness.texture = &spottyness;
    noise.randomness.texture = &randomness;
    noise.sizeRand.texture = &sizeRand;
    const VolumePlacement placement = inputs.placement(6.0f / 20.0f);
    const VolumePoint solid = plain::place(placement, kPoint, true);
    const VolumePoint flat = plain::place(placement, kPoint, false);
    for (const int falloff : {0, 1, 2, 3, 4}) {
        noise.falloff = falloff;
        BillowVolume settings{VolumeInputs::fractal(), 0.875f, 0.25f, 0.75f, 0.125f, falloff};
        inputs.log.clear();
        EXPECT_NEAR(noise.eval3d(context, kX, kY, kZ, kTime), plain::billow3d(settings, solid, kTime),
                    tolerance::kSum);
        const CallLog expected =
            reads({"density", "spottyness", "randomness", "sizeRand", "threshold", "amplitude"});
        EXPECT_EQ(inputs.log, expected);
        inputs.log.clear();
        EXPECT_NEAR(noise.eval2d(context, kX, kY, kTime), plain::billow2d(settings, flat.x, flat.y, kTime),
                    tolerance::kSum);
        EXPECT_EQ(inputs.log, expected);
    }
}

TEST(MayaBillowTexture, UnsetInputsReadAsTheNoisesDefaults)
{
    TestContext context;
    VolumeTextureInputs unset;
    MayaBillowTexture noise(unset);
    unset.depthMax = 2;
    noise.falloff = 2;
    BillowVolume settings{{1.0f, 2.0f, 0.707f, 0.0f, 2, false}, 1.0f, 0.1f, 1.0f, 0.0f, 2};
    VolumePlacement placement;
    placement.frequencyFactor = 0.4f;
    EXPECT_NEAR(noise.eval3d(context, kX, kY, kZ, kTime),
                plain::billow3d(settings, plain::place(placement, kPoint, true), kTime), tolerance::kSum);
}

TEST(MayaBillowTexture, FullRandomnessTwiceLeavesNoBlob)
{
    TestContext context;
    TestFloat randomness(2.0f);
    VolumeTextureInputs unset;
    MayaBillowTexture noise(unset);
    noise.randomness.texture = &randomness;
    unset.depthMax = 3;
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, 0.0f), 0.0f);
    unset.depthMax = 0;
    EXPECT_TRUE(std::isnan(noise.eval3d(context, kX, kY, kZ, 0.0f)));
}

TEST(MayaCosineTexture, ReadsItsInputsInAnOrderForEachForm)
{
    TestContext context;
    VolumeInputs inputs;
    MayaCosineTexture noise(inputs.bound);

    noise.numWaves = 4;
    const CosineVolume settings{VolumeInputs::fractal(), 4};
    const VolumePlacement placement = inputs.placement(6.0f);
    EXPECT_NEAR(noise.eval3d(context, kX, kY, kZ, kTime),
                plain::cosine3d(settings, plain::place(placement, {kX, kY, kZ}, true), kTime),
                tolerance::kSum);
    EXPECT_EQ(inputs.log, reads({"threshold", "amplitude"}));
    inputs.log.clear();
    const VolumePoint flat = plain::place(placement, kPoint, false);
    EXPECT_NEAR(noise.eval2d(context, kX, kY, kTime), plain::cosine2d(settings, flat.x, flat.y, kTime),
                tolerance::kSum);
    EXPECT_EQ(inputs.log, reads({"amplitude", "threshold"}));
}

TEST(MayaCosineTexture, WithoutOctavesIsNoNumber)
{
    TestContext context;
    VolumeTextureInputs unset;
    MayaCosineTexture noise(unset);
    noise.numWaves = 5;
    EXPECT_TRUE(std::isnan(noise.eval3d(context, kX, kY, kZ, 0.0f)));
}

TEST(MayaVolumeTexture, AsksForTheCentreOnlyWhereItWarps)
{
    TestContext context;
    VolumeInputs inputs;
    MayaPerlinTexture noise(inputs.bound);

    for (const auto& [implode, asked] :
         {std::pair(0.0f, false), {1e-6f, false}, {-1e-6f, false}, {2e-6f, true}, {-0.5f, true}}) {
        inputs.implode.value = implode;
        inputs.log.clear();
        noise.eval3d(context, kX, kY, kZ, 0.0f);
        EXPECT_EQ(inputs.log[1] == "center.evalColor", asked) << implode;
    }
}

TEST(MayaVolumeTexture, IsNeverAboveOneAndMayLieBelowZero)
{
    TestContext context;
    TestFloat threshold(5.0f);
    VolumeTextureInputs unset;
    MayaPerlinTexture noise(unset);
    unset.threshold.texture = &threshold;
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, 0.0f), 1.0f);
    threshold.value = -5.0f;
    EXPECT_SAME_BITS(noise.eval3d(context, kX, kY, kZ, 0.0f), -4.5f);
}

} // namespace
