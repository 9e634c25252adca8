#include "host/probe/probe_run.h"

#include "host/integrator/point_lighting.h"
#include "host/probe/probe_operations.h"
#include "host/scene/scene_life.h"

namespace ombrix {

namespace {

const char* levelName(OUtils::LogLevel level)
{
    switch (level) {
    case OUtils::LogLevel::Info:
        return "info";
    case OUtils::LogLevel::Warning:
        return "warning";
    case OUtils::LogLevel::Error:
        break;
    }
    return "error";
}

OutputJson logJson(const std::vector<LogLine>& lines)
{
    OutputJson log = OutputJson::array();
    for (const LogLine& line : lines) {
        OutputJson entry;
        entry["level"] = levelName(line.level);
        entry["text"] = line.text;
        log.push_back(std::move(entry));
    }
    return log;
}

template <class T>
void append(std::vector<T>& all, std::vector<T> more)
{
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

class ProbeRun {
public:
    ProbeRun(Scene& probed, const ProbeFile& file, Diagnostics& reports)
        : scene(probed), probe(file), diagnostics(reports), stamps(file),
          renderer(probed.settings(), threadsOf(probed.settings()), &logger)
    {
    }

    ProbeAnswer run()
    {
        ProbeAnswer answer;
        RenderLife render(scene, renderer);
        std::vector<LogLine> outerLog = logger.takeLines();
        std::vector<std::string> outerProgress = logger.takeProgress();
        OutputJson frames = OutputJson::array();
        for (const FrameSpec& frame : probe.frames) {
            if (!write(frame)) {
                answer.allAnswered = false;
                break;
            }
            frames.push_back(runFrame(render, frame, answer.allAnswered));
        }
        render.end();
        append(outerLog, logger.takeLines());
        append(outerProgress, logger.takeProgress());
        answer.json["frames"] = std::move(frames);
        answer.json["log"] = logJson(outerLog);
        answer.json["progress"] = outerProgress;
        return answer;
    }

private:
    // A probe's points come one after the other.
    static int threadsOf(const SceneSettings& settings)
    {
        return settings.threads > 0 ? settings.threads : 1;
    }

    // Reading the probe has given the warnings already; only new errors are told.
    bool write(const FrameSpec& frame)
    {
        Diagnostics told = diagnostics;
        if (!frame.set || scene.set(*frame.set, frame.setPath, told)) return true;
        diagnostics = std::move(told);
        return false;
    }

    OutputJson runFrame(RenderLife& render, const FrameSpec& spec, bool& allAnswered)
    {
        HostOCLData gpuData(&renderer, scene.settings().gpuBlockStore);
        const ProbeFrame frame{scene, *renderer.getMapChannelNames(), gpuData, stamps};
        OutputJson results = OutputJson::array();
        const PointLighting lighting(scene, renderer);
        FrameLife life(render, spec.frame);
        for (const RequestSpec& request : spec.requests) {
            OutputJson result = answerRequest(request, frame);
            if (result.contains("error")) {
                if (request.problem.text.empty())
                    diagnostics.error(request.path, result["error"].get_ref<const std::string&>());
                else
                    diagnostics.error(request.problem.path, request.problem.text);
                allAnswered = false;
            }
            results.push_back(std::move(result));
        }
        life.end();
        OutputJson answer;
        answer["frame"] = toJson(spec.frame);
        answer["results"] = std::move(results);
        answer["log"] = logJson(logger.takeLines());
        answer["progress"] = logger.takeProgress();
        return answer;
    }

    Scene& scene;
    const ProbeFile& probe;
    Diagnostics& diagnostics;
    RecordingLogger logger;
    StampSource stamps;
    HostRenderer renderer;
};

} // namespace

ProbeAnswer runProbe(Scene& scene, const ProbeFile& probe, Diagnostics& diagnostics)
{
    return ProbeRun(scene, probe, diagnostics).run();
}

} // namespace ombrix
