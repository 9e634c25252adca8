// What the GPU text of expression nodes costs: parsing a colour correction's expressions, writing one
// node's source, that of 10,000 colour corrections each of which is the next one's input, and the sources of
// a scene of 10,000 that stand alone, whose goal is less than 2 seconds on one thread. The texts are read
// before anything is timed; the scene's time stands at the end.

#include "host/gpu/host_gpu.h"
#include "host/gpu/source_reader.h"
#include "plugin_frame/lib_desc.h"
#include "support/host_doubles.h"
#include "support/test_textures.h"
#include "textures/expr/lisp_parser.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace OUtils;

constexpr int kSceneNodes = 10000;
constexpr double kGoalSeconds = 2.0;

// What the node hands to the evaluator, as far as the parser is concerned.
constexpr const char* kExpressions[] = {
    "(if shouldUnpremultiply (manip in a / / / 1 x x x x) in)",
    "(rgb2hsv unpr)",
    "(manip hsv0 hueShift + 0 0 0)",
    "(manip hsv1 satGain  0 * 0 0)",
    "(manip hsv2 valGain  0 0 * 0)",
    "(hsv2rgb hsv3)",
    "(* rgb0 colGain)",
    "(+ rgb1 colOffset)",
    "(if shouldClamp (clamp rgb2 clampMin clampMax) rgb2)",
    "(if shouldPremultiply (manip clamped a * * * 1 x x x x) clamped)",
};

// The inputs of every node. Their bounds lie apart, so that no condition is known and the text is as long
// as it gets.
struct Inputs {
    Inputs()
    {
        color.label = "color";
        number.label = "number";
        color.upperBound = {1.0f, 1.0f, 1.0f, 1.0f};
        number.upperBound = 1.0f;
    }
    support::TestColor color;
    support::TestFloat number;
};

class Scene {
public:
    Scene(int count, Inputs* connected)
    {
        for (int i = 0; i < count; ++i) {
            PluginBase* plugin = desc->newPlugin(nullptr);
            plugins.push_back(plugin);
            auto* life = support::interfaceOf<OmbrixPluginInterface>(plugin, EXT_OMBRIX_PLUGIN);
            if (connected) connect(*life, *connected);
            life->frameBegin(&renderer);
            sources.push_back(support::interfaceOf<RTTexInterface>(plugin, EXT_RTTEX));
        }
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene()
    {
        for (PluginBase* plugin : plugins)
            desc->deletePlugin(plugin);
    }

    // Every node's source is a text of its own, as a host asks for it. Returns the bytes.
    std::size_t writeAll() const
    {
        std::size_t bytes = 0;
        for (RTTexInterface* source : sources)
            bytes += textOf(source).size();
        return bytes;
    }
    std::string lastText() const { return textOf(sources.back()); }
    // Makes each node the input colour of the next.
    void chainUp()
    {
        for (std::size_t i = 1; i < plugins.size(); ++i) {
            auto* life = support::interfaceOf<OmbrixPluginInterface>(plugins[i], EXT_OMBRIX_PLUGIN);
            set(*life, "in_color", plugins[i - 1]);
            life->frameBegin(&renderer);
        }
    }

private:
    static void connect(OmbrixPluginInterface& life, Inputs& inputs)
    {
        for (const char* name : {"in_color", "col_gain", "col_offset", "col_clamp_min", "col_clamp_max"})
            set(life, name, &inputs.color);
        for (const char* name : {"in_alpha", "unpremultiply_input", "premultiply_result", "hue_shift",
                                 "sat_gain", "val_gain", "col_clamp"})
            set(life, name, &inputs.number);
    }
    static void set(OmbrixPluginInterface& life, const char* name, PluginBase* input)
    {
        support::WrittenParameter written(name, input);
        life.setParameter(&written);
    }
    static std::string textOf(RTTexInterface* source)
    {
        ombrix::HostShaderSource text;
        ombrix::HostOCLData data(nullptr, false);
        source->getSource("", "", "MaterialDescriptor", text, data);
        return std::move(text.text);
    }

    PluginDesc* desc = support::findDescriptor(*getLibDesc(), "TexColorCorrect");
    support::TestRenderer renderer;
    std::vector<PluginBase*> plugins;
    std::vector<RTTexInterface*> sources;
};

void checkText(const Scene& scene, std::size_t slots)
{
    ombrix::SourceReaderOptions options;
    options.isForeign = [](std::string_view line) { return line.ends_with(" MaterialDescriptor"); };
    const ombrix::SourceReading reading = ombrix::readSource(scene.lastText(), options);
    for (const ombrix::SourceProblem& problem : reading.problems)
        if (problem.weight == ombrix::SourceProblem::Weight::Error)
            std::fprintf(stderr, "%s\n", ombrix::problemText(problem).c_str());
    if (reading.understood() && reading.slots.size() == slots) return;
    std::fprintf(stderr, "a source of %zu slots is wrong; there should be %zu\n", reading.slots.size(),
                 slots);
    std::exit(1);
}

void parseExpressions(benchmark::State& state)
{
    for (auto _ : state)
        for (const char* text : kExpressions) {
            nezaiva::expr::LispParser parser(text);
            benchmark::DoNotOptimize(parser.getRoot());
        }
}

class ShortestReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && run.run_name.function_name == "scene/connected")
                seconds = std::min(seconds, run.cpu_accumulated_time / static_cast<double>(run.iterations));
    }
    double seconds = std::numeric_limits<double>::infinity();
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    Inputs inputs;
    const Scene unset(1, nullptr), connected(1, &inputs), scene(kSceneNodes, &inputs);
    Scene chain(kSceneNodes, nullptr);
    chain.chainUp();
    // Unset: (+ (* (hsv2rgb (manip (manip (manip (rgb2hsv in) hueShift) satGain) valGain)) colGain)
    // colOffset), and the variable "clamped", which stands once after folding: 6 symbols and 7 operators.
    checkText(unset, 13);
    // unpr is (if c (manip in a) in), 6 slots; rgb2 adds 12. "clamped" holds rgb2 twice, and shouldClamp,
    // clampMin, clampMax, clamp and if: 41 slots. It stands first, then shouldPremultiply, a repetition, a,
    // manip, a repetition, if and the end.
    checkText(connected, 48);
    // The first slot of each holds the source of the one before it.
    checkText(chain, kSceneNodes * (13 - 1) + 1);

    benchmark::RegisterBenchmark("parse", parseExpressions);
    const auto write = [](const Scene& written) {
        return [&written](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(written.writeAll());
        };
    };
    benchmark::RegisterBenchmark("node/unset", write(unset));
    benchmark::RegisterBenchmark("node/connected", write(connected));
    benchmark::RegisterBenchmark("chain/unset", [&chain](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(chain.lastText().size());
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("scene/connected", write(scene))->Unit(benchmark::kMillisecond);

    ShortestReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (reporter.seconds < std::numeric_limits<double>::infinity())
        std::printf("%d colour corrections: %.3f s (goal %.0f s)%s\n", kSceneNodes, reporter.seconds,
                    kGoalSeconds, reporter.seconds < kGoalSeconds ? "" : " MISSED");
    benchmark::Shutdown();
    return 0;
}
