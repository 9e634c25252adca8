// The renderer as plugins see it.
#pragma once

#include "host/log/log.h"

#include <ombrix/renderer.h>

#include <memory>
#include <optional>

namespace ombrix {

struct MotionBlurSettings {
    bool on = false;
    float shutterLength = 0.5f;
    float shutterCenter = 0.0f;
    int geometrySamples = 2;
};

// The settings of a scene file.
struct SceneSettings {
    double frame = 1.0;
    double fps = 24.0;
    int threads = 0; // 0: all processors
    int width = 640, height = 360, samples = 16;
    MotionBlurSettings motionBlur;
    int bakeSize = 512;
    std::optional<int> colorSpace;
    std::optional<float> particleTimeUnit;
    OUtils::VectorD sceneOrigin;
    bool gpuBlockStore = true;
};

class HostRenderer : public OUtils::OmbrixRenderer {
public:
    // threadCount is settings.threads already resolved, 1 or above. The logger must outlive the renderer;
    // null means no log and no progress.
    HostRenderer(const SceneSettings& settings, int threadCount, RecordingLogger* logger);
    ~HostRenderer() override;

    int getThreadCount() override;
    OUtils::RendererLogger* getLogger() override;
    OUtils::ProgressDisplay* getProgress() override;
    OUtils::MapChannelNames* getMapChannelNames() override;
    const OUtils::FrameData& getFrameData() override;
    const OUtils::SequenceData& getSequenceData() override;

    // Moves to a frame: fills the frame data from the settings. Call outside rendering.
    void setFrame(double frame);
    const SceneSettings& settings() const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ombrix
