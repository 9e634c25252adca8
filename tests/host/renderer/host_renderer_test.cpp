#include "host/renderer/host_renderer.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace ombrix;
using namespace OUtils;

TEST(HostRenderer, TellsWhatTheSettingsSay)
{
    SceneSettings settings;
    settings.frame = 12.5;
    settings.fps = 30;
    settings.bakeSize = 64;
    settings.sceneOrigin = {1, 2, 3};
    settings.motionBlur.geometrySamples = 5;
    RecordingLogger logger(false);
    HostRenderer renderer(settings, 7, &logger);
    EXPECT_EQ(renderer.getThreadCount(), 7);
    EXPECT_EQ(renderer.getLogger(), static_cast<RendererLogger*>(&logger));
    EXPECT_EQ(renderer.getProgress(), static_cast<ProgressDisplay*>(&logger));
    EXPECT_EQ(renderer.getSequenceData().bakeSize, 64);
    EXPECT_EQ(renderer.getFrameData().time, 12.5);
    EXPECT_EQ(renderer.getFrameData().framesPerSecond, 30.0);
    EXPECT_EQ(renderer.getFrameData().sceneOrigin.z, 3.0);
    EXPECT_EQ(renderer.getFrameData().geometrySamples, 5);
    EXPECT_EQ(renderer.settings().bakeSize, 64);
}

TEST(HostRenderer, WithoutALogThereIsNoProgressEither)
{
    HostRenderer renderer({}, 1, nullptr);
    EXPECT_EQ(renderer.getLogger(), nullptr);
    EXPECT_EQ(renderer.getProgress(), nullptr);
}

TEST(HostRenderer, TheShutterStandsAroundTheFrame)
{
    SceneSettings settings;
    settings.motionBlur = {true, 0.5f, 0.25f, 2};
    HostRenderer renderer(settings, 1, nullptr);
    renderer.setFrame(10);
    EXPECT_TRUE(renderer.getFrameData().motionBlur);
    EXPECT_EQ(renderer.getFrameData().intervalStart, 10.0); // 10 + 0.25 - 0.25
    EXPECT_EQ(renderer.getFrameData().intervalEnd, 10.5);
    renderer.setFrame(11);
    EXPECT_EQ(renderer.getFrameData().time, 11.0);
    EXPECT_EQ(renderer.getFrameData().intervalEnd, 11.5);
}

TEST(HostRenderer, WithoutMotionBlurTheShutterIsThePointOfTheFrame)
{
    SceneSettings settings;
    settings.motionBlur = {false, 0.5f, 0.25f, 2};
    HostRenderer renderer(settings, 1, nullptr);
    renderer.setFrame(10);
    EXPECT_EQ(renderer.getFrameData().intervalStart, 10.0);
    EXPECT_EQ(renderer.getFrameData().intervalEnd, 10.0);
    EXPECT_EQ(renderer.getFrameData().shutterLength, 0.5f);
}

UnitSettings* unitsOf(HostRenderer& renderer, InterfaceId id)
{
    return static_cast<UnitSettings*>(renderer.getInterface(id));
}

TEST(HostRenderer, UnitsAreThereOnlyWhenTheSceneNamesOne)
{
    HostRenderer bare({}, 1, nullptr);
    EXPECT_EQ(bare.getInterface(kColorSpaceSettingsId), nullptr);

    SceneSettings settings;
    settings.colorSpace = 2;
    HostRenderer withSpace(settings, 1, nullptr);
    ASSERT_NE(unitsOf(withSpace, 2007041201), nullptr);
    EXPECT_EQ(unitsOf(withSpace, 2007041201)->getColorSpace(), 2);
    EXPECT_EQ(unitsOf(withSpace, 2007041201)->getTimeUnit(), 1.0f);
    EXPECT_EQ(unitsOf(withSpace, 2007041201)->getPlugin(), &withSpace);

    SceneSettings other;
    other.particleTimeUnit = 24.0f;
    HostRenderer withUnit(other, 1, nullptr);
    ASSERT_NE(unitsOf(withUnit, 0x77A104B1), nullptr);
    EXPECT_EQ(unitsOf(withUnit, 0x77A104B1)->getTimeUnit(), 24.0f);
    EXPECT_EQ(unitsOf(withUnit, 0x77A104B1)->getColorSpace(), 1);
}

class Shared : public PluginInterface {
public:
    InterfaceId getInterfaceID() override { return 0x12345; }
    PluginBase* getPlugin() override { return nullptr; }
};

TEST(HostRenderer, PluginsShareInterfacesThroughIt)
{
    HostRenderer renderer({}, 1, nullptr);
    Shared shared;
    EXPECT_EQ(renderer.addInterface(&shared, 0), 1);
    EXPECT_EQ(renderer.getInterface(0x12345), &shared);
    EXPECT_EQ(renderer.removeInterface(&shared), 1);
    EXPECT_EQ(renderer.removeInterface(&shared), 0);
    EXPECT_EQ(renderer.getInterface(0x12345), nullptr);
}

TEST(HostRenderer, EqualChannelNamesHaveEqualIds)
{
    HostRenderer renderer({}, 1, nullptr);
    MapChannelNames& names = *renderer.getMapChannelNames();
    const int first = names.getNameId("map1"), second = names.getNameId("map2");
    EXPECT_NE(first, 0);
    EXPECT_NE(second, 0);
    EXPECT_NE(first, second);
    EXPECT_EQ(names.getNameId(std::string("map1").c_str()), first);
    EXPECT_EQ(names.getNameId(""), 0);
    EXPECT_EQ(names.getNameId(nullptr), 0);
}

TEST(HostRenderer, ChannelNamesMayBeAskedFromManyThreads)
{
    HostRenderer renderer({}, 4, nullptr);
    std::vector<std::vector<int>> ids(4, std::vector<int>(200));
    std::vector<std::thread> threads;
    for (std::vector<int>& own : ids)
        threads.emplace_back([&] {
            for (std::size_t i = 0; i < own.size(); ++i)
                own[i] = renderer.getMapChannelNames()->getNameId(("set" + std::to_string(i)).c_str());
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::vector<int>& own : ids)
        EXPECT_EQ(own, ids[0]);
}

} // namespace
