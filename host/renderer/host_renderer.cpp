#include "host/renderer/host_renderer.h"

#include <mutex>
#include <string>
#include <unordered_map>

namespace ombrix {
namespace {

// What plugins use when the scene names no unit.
constexpr int kDefaultColorSpace = 1;
constexpr float kDefaultTimeUnit = 1.0f;

class SceneUnits : public OUtils::UnitSettings {
public:
    SceneUnits(OUtils::PluginBase* renderer, const SceneSettings& settings)
        : holder(renderer), colorSpace(settings.colorSpace.value_or(kDefaultColorSpace)),
          timeUnit(settings.particleTimeUnit.value_or(kDefaultTimeUnit))
    {
    }
    OUtils::PluginBase* getPlugin() override { return holder; }
    int getColorSpace() override { return colorSpace; }
    float getTimeUnit() override { return timeUnit; }

private:
    OUtils::PluginBase* holder;
    int colorSpace;
    float timeUnit;
};

class NameIds : public OUtils::MapChannelNames {
public:
    int getNameId(const char* name) override
    {
        if (!name || !*name) return 0;
        const std::lock_guard lock(mutex);
        return ids.try_emplace(name, static_cast<int>(ids.size()) + 1).first->second;
    }

private:
    std::mutex mutex;
    std::unordered_map<std::string, int> ids;
};

} // namespace

struct HostRenderer::State {
    SceneSettings settings;
    int threadCount;
    RecordingLogger* logger;
    SceneUnits units;
    NameIds names;
    OUtils::FrameData frame;
    OUtils::SequenceData sequence;
};

HostRenderer::HostRenderer(const SceneSettings& settings, int threadCount, RecordingLogger* logger)
    : state(new State{settings, threadCount, logger, SceneUnits(this, settings), {}, {}, {}})
{
    state->sequence.bakeSize = settings.bakeSize;
    if (settings.colorSpace || settings.particleTimeUnit) addInterface(&state->units, 0);
    setFrame(settings.frame);
}

HostRenderer::~HostRenderer() = default;

int HostRenderer::getThreadCount()
{
    return state->threadCount;
}

OUtils::RendererLogger* HostRenderer::getLogger()
{
    return state->logger;
}

OUtils::ProgressDisplay* HostRenderer::getProgress()
{
    return state->logger;
}

OUtils::MapChannelNames* HostRenderer::getMapChannelNames()
{
    return &state->names;
}

const OUtils::FrameData& HostRenderer::getFrameData()
{
    return state->frame;
}

const OUtils::SequenceData& HostRenderer::getSequenceData()
{
    return state->sequence;
}

void HostRenderer::setFrame(double frame)
{
    const SceneSettings& from = state->settings;
    const MotionBlurSettings& blur = from.motionBlur;
    OUtils::FrameData& data = state->frame;
    data.time = frame;
    data.framesPerSecond = from.fps;
    data.motionBlur = blur.on;
    data.shutterLength = blur.shutterLength;
    data.shutterCenter = blur.shutterCenter;
    data.geometrySamples = blur.geometrySamples;
    data.sceneOrigin = from.sceneOrigin;
    const double middle = blur.on ? frame + static_cast<double>(blur.shutterCenter) : frame;
    const double half = blur.on ? static_cast<double>(blur.shutterLength) * 0.5 : 0.0;
    data.intervalStart = middle - half;
    data.intervalEnd = middle + half;
}

const SceneSettings& HostRenderer::settings() const
{
    return state->settings;
}

} // namespace ombrix
