// What the plug-in frame costs: one evaluation through the interface of a plugin beside a bare virtual
// call, and a tree of condition textures beside the same tree of plain objects. Both goals are a ratio of
// 1.5 at most. Results are checked before anything is timed; the ratios stand at the end of the run.

#include "frame_plain_twin.h"

#include "plugin_frame/lib_desc.h"
#include "support/host_doubles.h"
#include "support/test_textures.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>

namespace {

using namespace OUtils;
using bench::PlainColor;
using bench::PlainFloat;
using bench::SampleTable;

constexpr int kTreeDepth = 8;
constexpr std::size_t kSamples = 4096; // contexts that are walked round
constexpr double kGoal = 1.5;

SampleTable drawnTable()
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> spread(0.0f, 2.0f);
    SampleTable table;
    table.values.resize(kSamples);
    for (float& value : table.values)
        value = spread(random);
    return table;
}

// The contexts' stamps differ, and with them what the leaves read.
std::vector<support::TestContext>& contexts()
{
    static std::vector<support::TestContext> drawn(kSamples);
    for (std::size_t i = 0; i < kSamples; ++i)
        drawn[i].sampleStamp = static_cast<std::int32_t>(i + 1);
    return drawn;
}

// Leaves of the plugin tree, as cheap as those of the plain tree.
class SampleInput : public OmbrixTextureFloat {
public:
    SampleInput(const SampleTable& given, std::uint32_t place)
        : OmbrixTextureFloat(nullptr), table(given), offset(place)
    {
    }
    float evalFloat(const OmbrixContext& context) override { return table.at(context, offset); }
    void evalFloatBounds(float*, float*) override {}

private:
    const SampleTable& table;
    std::uint32_t offset;
};

class ConstantInput : public OmbrixTexture {
public:
    explicit ConstantInput(const AColor& given) : OmbrixTexture(nullptr), color(given) {}
    AColor* evalColor(AColor* result, const OmbrixContext&) override
    {
        *result = color;
        return result;
    }
    void evalColorBounds(AColor*, AColor*) override {}

private:
    AColor color;
};

// Plugin instances, made as a host makes them.
class Plugins {
public:
    Plugins() = default;
    Plugins(const Plugins&) = delete;
    Plugins& operator=(const Plugins&) = delete;
    ~Plugins()
    {
        for (auto& [desc, plugin] : made)
            desc->deletePlugin(plugin);
    }

    PluginBase* make(const char* name)
    {
        PluginDesc* desc = support::findDescriptor(*getLibDesc(), name);
        made.emplace_back(desc, desc->newPlugin(nullptr));
        return made.back().second;
    }
    template <class Value>
    static void set(PluginBase* plugin, const char* parameter, Value value)
    {
        support::WrittenParameter written(parameter, value);
        life(plugin)->setParameter(&written);
    }
    void beginFrame()
    {
        for (auto& [desc, plugin] : made)
            life(plugin)->frameBegin(&renderer);
    }

private:
    static OmbrixPluginInterface* life(PluginBase* plugin)
    {
        return support::interfaceOf<OmbrixPluginInterface>(plugin, EXT_OMBRIX_PLUGIN);
    }

    support::TestRenderer renderer;
    std::vector<std::pair<PluginDesc*, PluginBase*>> made;
};

TextureInterface* textureOf(PluginBase* plugin)
{
    return support::interfaceOf<TextureInterface>(plugin, EXT_TEXTURE);
}

// Both trees over the same table: conditions compare a drawn float with one, leaves are constant
// colours, every colour has an alpha of its own.
class Trees {
public:
    explicit Trees(const SampleTable& drawn) : table(drawn)
    {
        one = plainInput(bench::plainNumber(1.0f));
        pluginOne = plugins.make("TexFloatConstant");
        const Node root = subtree(kTreeDepth);
        plain = root.plain;
        plugins.beginFrame();
        plugin = textureOf(root.plugin);
    }

    PlainColor* plain = nullptr;
    TextureInterface* plugin = nullptr;

private:
    struct Node {
        PlainColor* plain;
        PluginBase* plugin;
    };

    PlainFloat* plainInput(std::unique_ptr<PlainFloat> made)
    {
        plainFloats.push_back(std::move(made));
        return plainFloats.back().get();
    }
    PlainColor* plainTexture(std::unique_ptr<PlainColor> made)
    {
        plainColors.push_back(std::move(made));
        return plainColors.back().get();
    }
    Node leaf()
    {
        const float shade = static_cast<float>(++leaves) / 1024.0f;
        const AColor color{shade, shade * 0.5f, 1.0f - shade, 0.0f};
        colors.push_back(std::make_unique<ConstantInput>(color));
        PluginBase* constant = plugins.make("TexColorConstant");
        Plugins::set<PluginBase*>(constant, "color", colors.back().get());
        Plugins::set<PluginBase*>(constant, "alpha", pluginOne);
        PlainColor* base = plainTexture(bench::plainConstant(color));
        return {plainTexture(bench::plainWithAlpha(*base, *one)), constant};
    }

    Node subtree(int depth)
    {
        if (depth == 0) return leaf();
        const Node a = subtree(depth - 1);
        const Node b = subtree(depth - 1);
        const std::uint32_t offset = 977 * ++conditions;

        samples.push_back(std::make_unique<SampleInput>(table, offset));
        PluginBase* test = plugins.make("TexFloatLogic");
        Plugins::set<PluginBase*>(test, "float_a", samples.back().get());
        Plugins::set<PluginBase*>(test, "float_b", pluginOne);
        Plugins::set(test, "operation", 2);
        PluginBase* condition = plugins.make("TexColorCondition");
        Plugins::set(condition, "color_a", a.plugin);
        Plugins::set(condition, "alpha_a", pluginOne);
        Plugins::set(condition, "color_b", b.plugin);
        Plugins::set(condition, "alpha_b", pluginOne);
        Plugins::set(condition, "condition", test);

        PlainFloat* sample = plainInput(bench::plainSample(table, offset));
        PlainFloat* plainTest = plainInput(bench::plainLess(*sample, *one));
        return {plainTexture(bench::plainCondition(*a.plain, *one, *b.plain, *one, *plainTest)), condition};
    }

    const SampleTable& table;
    Plugins plugins;
    std::vector<std::unique_ptr<PlainFloat>> plainFloats;
    std::vector<std::unique_ptr<PlainColor>> plainColors;
    std::vector<std::unique_ptr<SampleInput>> samples;
    std::vector<std::unique_ptr<ConstantInput>> colors;
    PlainFloat* one = nullptr;
    PluginBase* pluginOne = nullptr;
    int leaves = 0;
    std::uint32_t conditions = 0;
};

bool sameEverywhere(TextureInterface* plugin, PlainColor* plain)
{
    for (const auto& context : contexts()) {
        AColor fromPlugin, fromPlain;
        plugin->evalColor(&fromPlugin, context);
        plain->eval(&fromPlain, context);
        if (std::memcmp(&fromPlugin, &fromPlain, sizeof(AColor)) != 0) return false;
    }
    return true;
}

template <class Evaluate>
void walkContexts(benchmark::State& state, const Evaluate& evaluate)
{
    const auto& drawn = contexts();
    std::size_t i = 0;
    AColor result;
    for (auto _ : state) {
        evaluate(&result, drawn[i]);
        benchmark::DoNotOptimize(result);
        i = (i + 1) % kSamples;
    }
}

void compare(const std::string& name, TextureInterface* plugin, PlainColor* plain)
{
    if (!sameEverywhere(plugin, plain)) {
        std::fprintf(stderr, "%s: the plugin and its plain twin differ\n", name.c_str());
        std::exit(1);
    }
    benchmark::RegisterBenchmark((name + "/plain").c_str(), [plain](benchmark::State& state) {
        walkContexts(state, [plain](AColor* result, const OmbrixContext& c) { plain->eval(result, c); });
    });
    benchmark::RegisterBenchmark((name + "/plugin").c_str(), [plugin](benchmark::State& state) {
        walkContexts(state,
                     [plugin](AColor* result, const OmbrixContext& c) { plugin->evalColor(result, c); });
    });
}

// Remembers the shortest time of each benchmark and shows the ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration) continue;
            const double time = run.GetAdjustedCPUTime();
            double& shortest = times.try_emplace(run.run_name.function_name, time).first->second;
            if (time < shortest) shortest = time;
        }
    }
    void showRatios() const
    {
        for (const char* name : {"evalColor", "conditionTree"}) {
            const auto plain = times.find(std::string(name) + "/plain");
            const auto plugin = times.find(std::string(name) + "/plugin");
            if (plain == times.end() || plugin == times.end()) continue;
            const double ratio = plugin->second / plain->second;
            std::printf("%s: %.2f ns through the plugin, %.2f ns plain, ratio %.2f (goal %.1f)%s\n", name,
                        plugin->second, plain->second, ratio, kGoal, ratio <= kGoal ? "" : " MISSED");
        }
    }

private:
    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    Plugins plugins;
    TextureInterface* constant = textureOf(plugins.make("TexColorConstant"));
    plugins.beginFrame();
    const auto white = bench::plainConstant({1.0f, 1.0f, 1.0f, 1.0f});
    compare("evalColor", constant, white.get());

    const SampleTable table = drawnTable();
    const Trees trees(table);
    compare("conditionTree", trees.plugin, trees.plain);

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.showRatios();
    benchmark::Shutdown();
    return 0;
}
