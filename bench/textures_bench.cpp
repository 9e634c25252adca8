// Nanoseconds a look-up of mapped textures and of the placement through their interfaces, next to the
// arithmetic that they cannot do without, in the same run. Every look-up is at a point of its own unless
// the name says otherwise, so no memo answers.
//
// usage: bench_textures [Google Benchmark's options]; the ratios and their goals stand at the end.

#include "kernels/noises/simplex_noise.h"
#include "kernels/noises/volume/volume_placement.h"
#include "kernels/placement/place2d.h"
#include "plugin_frame/lib_desc.h"
#include "plugin_frame/noise_interface.h"
#include "support/mapped_inputs.h"

#include <benchmark/benchmark.h>

#ifdef NEZAIVA_LIBNOISE
#include <libnoise/noise.h>
#endif

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace {

using namespace OUtils;
using namespace nezaiva;

// Few enough to stay in the nearest cache, where a renderer has just written its context.
constexpr std::size_t kPoints = 64;

// The mapping of a point is the identity, so that coordinates are positions.
class PositionSurface final : public support::TestSurface {
public:
    int getLocalUVWTransform(const OmbrixContext& context, int, Transform* result) override
    {
        *result = Transform{};
        result->offset = context.referencePoint;
        return 1;
    }
};

// The coordinates are the position, with the least work that a generator can have.
class PositionGenerator final : public support::TestGenerator {
public:
    int evalUVW(const OmbrixContext& context, UVWSample* result) override
    {
        const Vector& p = context.shadePoint;
        result->uvw = {p.x, p.y, p.z, 0.0f};
        return 1;
    }
    int evalUVWDerivs(const OmbrixContext& context, UVWSample* result) override
    {
        const Vector& du = context.positionDiffU;
        const Vector& dv = context.positionDiffV;
        result->du = {du.x, du.y, du.z, 0.0f};
        result->dv = {dv.x, dv.y, dv.z, 0.0f};
        return evalUVW(context, result);
    }
};

// How the points of a measurement lie.
enum class Spread {
    Random, // anywhere: every look-up meets other cells
    Tile,   // a tile of 8 x 8 pixels of a picture, as a renderer walks them
};

struct Points {
    explicit Points(Spread spread)
    {
        constexpr std::size_t kTileWidth = 8;
        constexpr float kPixel = 0.01f; // a noise of about a cell a pixel at its third octave
        std::mt19937 random(1);
        std::uniform_real_distribution<float> coordinate(0.0f, 4.0f);
        for (std::size_t i = 0; i < kPoints; ++i) {
            contexts.push_back(std::make_unique<support::TestContext>());
            OmbrixContext& context = *contexts.back();
            context.surfaceObject = &surface;
            if (spread == Spread::Random) {
                context.shadePoint = {coordinate(random), coordinate(random), coordinate(random)};
            } else {
                const auto column = static_cast<float>(i % kTileWidth);
                const auto row = static_cast<float>(i / kTileWidth);
                context.shadePoint = {1.3f + kPixel * column, 0.7f + kPixel * row,
                                      2.1f + 0.3f * kPixel * row};
            }
            context.referencePoint = context.shadePoint;
            context.positionDiffU = {0.001f, 0.0f, 0.0f};
            context.positionDiffV = {0.0f, 0.001f, 0.0f};
            context.sampleStamp = static_cast<std::int32_t>(i) + 1;
        }
    }
    PositionSurface surface;
    std::vector<std::unique_ptr<support::TestContext>> contexts;
};
const Points& points(Spread spread = Spread::Random)
{
    static const Points random(Spread::Random), tile(Spread::Tile);
    return spread == Spread::Random ? random : tile;
}

// A plugin that lives as long as the program measures.
class Node : public support::TestNode {
public:
    explicit Node(const char* name) : TestNode(support::findDescriptor(*getLibDesc(), name)) {}
    Node& put(const char* parameter, ombrix::Value value)
    {
        support::write(*life(), parameter, std::move(value));
        life()->frameEnd(&renderer);
        life()->frameBegin(&renderer);
        return *this;
    }
    UVWGenInterface* generator() const { return support::interfaceOf<UVWGenInterface>(base(), EXT_UVWGEN); }
};

// Times of the benchmarks by name, the shortest of the repetitions, and the ratios to show.
struct Ratio {
    std::string name, part, whole;
    double goal;
    bool wantsLess; // part over whole is at most the goal; else at least
};
std::vector<Ratio> ratios;

class RatioReporter final : public benchmark::ConsoleReporter {
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
        for (const Ratio& ratio : ratios) {
            const auto part = times.find(ratio.part), whole = times.find(ratio.whole);
            if (part == times.end() || whole == times.end()) continue;
            const double value = part->second / whole->second;
            const bool met = ratio.wantsLess ? value <= ratio.goal : value >= ratio.goal;
            std::printf("%s: %.1f ns over %.1f ns, ratio %.2f (goal at %s %.1f)%s\n", ratio.name.c_str(),
                        part->second, whole->second, value, ratio.wantsLess ? "most" : "least", ratio.goal,
                        met ? "" : " MISSED");
        }
    }

private:
    std::map<std::string, double> times;
};

// Evaluates at one point after the other.
template <class Evaluate>
void measure(const std::string& name, Evaluate evaluate, Spread spread = Spread::Random)
{
    benchmark::RegisterBenchmark(name.c_str(), [evaluate, spread](benchmark::State& state) {
        const auto& contexts = points(spread).contexts;
        std::size_t i = 0;
        for (auto _ : state) {
            evaluate(*contexts[i]);
            i = (i + 1) % kPoints;
        }
    });
}

[[noreturn]] void fail(const std::string& name)
{
    std::fprintf(stderr, "%s: the texture and its kernel differ\n", name.c_str());
    std::exit(1);
}

// The plugin's number at a point, and the kernel's.
using KernelAt = float (*)(const Vector4& uvw);

// A texture against its kernel behind the same placement: black to white, so red is the noise.
void compareTexture(const std::string& name, Node& texture, Node& place, KernelAt kernel)
{
    TextureInterface* color = texture.texture();
    UVWGenInterface* generator = place.generator();
    for (const auto& context : points().contexts) {
        UVWSample sample;
        AColor result;
        generator->evalUVWDerivs(*context, &sample);
        if (std::fabs(color->evalColor(&result, *context)->r - kernel(sample.uvw)) > 1e-6f) fail(name);
    }
    measure(name + "/texture", [color](const OmbrixContext& context) {
        AColor result;
        benchmark::DoNotOptimize(color->evalColor(&result, context));
        benchmark::DoNotOptimize(result);
    });
    measure(name + "/kernel and place", [generator, kernel](const OmbrixContext& context) {
        UVWSample sample;
        generator->evalUVWDerivs(context, &sample);
        benchmark::DoNotOptimize(kernel(sample.uvw));
    });
    ratios.push_back({name, name + "/texture", name + "/kernel and place", 1.4, true});
}

// What the noise node's defaults hand to the noises.
constexpr VolumeFractal kDefaults{1.0f, 2.0f, 0.707f, 0.0f, 3, false};

VolumePoint placedBy(const Vector4& uvw, float factor)
{
    VolumePlacement placement;
    placement.frequencyFactor = factor;
    return placeVolumePoint3d(placement, {uvw.x, uvw.y, uvw.z});
}

float perlinAt(const Vector4& uvw)
{
    return evalPerlin3d({kDefaults, false, false, false, 100}, placedBy(uvw, 0.5f), 0.0f);
}
float wispyAt(const Vector4& uvw)
{
    return evalPerlin3d({kDefaults, true, false, false, 100}, placedBy(uvw, 0.5f), 0.0f);
}
float billowAt(const Vector4& uvw)
{
    return evalBillow3d({kDefaults, 1.0f, 0.1f, 1.0f, 0.0f, 2}, placedBy(uvw, 0.4f), 0.0f);
}
float cosineAt(const Vector4& uvw)
{
    return evalCosine3d({kDefaults, 5}, placedBy(uvw, 8.0f), 0.0f);
}
float simplexAt(const Vector4& uvw)
{
    SimplexTextureValues values;
    values.scale = 4.0f;
    return simplexTexture(uvw.x, uvw.y, values);
}

void comparePlace(Node& place)
{
    UVWGenInterface* generator = place.generator();
    static const PlaceSample sample{.repeat_u = 3.0f, .repeat_v = 2.0f, .offset_u = 0.25f};
    static const PlaceMatrices matrices = placeMatrices(sample);
    static const NoiseParams noise;
    const auto bare = [](const OmbrixContext& context, UVWSample& result) {
        PlaceTransform input;
        input.map.offset = context.referencePoint;
        const PlaceTransform map = placed(input, sample, matrices, {}, noise);
        const Vector d = context.shadePoint - context.referencePoint;
        const Vector uvw = map.map.matrix * d + map.map.offset;
        const Vector du = map.map.matrix * context.positionDiffU;
        const Vector dv = map.map.matrix * context.positionDiffV;
        result = {{uvw.x, uvw.y, uvw.z, 0.0f}, {du.x, du.y, du.z, 0.0f}, {dv.x, dv.y, dv.z, 0.0f}};
    };
    for (const auto& context : points().contexts) {
        UVWSample full, plain;
        generator->evalUVWDerivs(*context, &full);
        bare(*context, plain);
        if (full.uvw.x != plain.uvw.x || full.dv.y != plain.dv.y) fail("place2d");
    }
    measure("place2d/miss", [generator](const OmbrixContext& context) {
        UVWSample result;
        generator->evalUVWDerivs(context, &result);
        benchmark::DoNotOptimize(result);
    });
    measure("place2d/bare arithmetic", [bare](const OmbrixContext& context) {
        UVWSample result;
        bare(context, result);
        benchmark::DoNotOptimize(result);
    });
    measure("place2d/hit", [generator](const OmbrixContext&) {
        UVWSample result;
        generator->evalUVW(*points().contexts[0], &result);
        benchmark::DoNotOptimize(result);
    });
    ratios.push_back({"place2d", "place2d/miss", "place2d/bare arithmetic", 1.5, true});
}

#ifdef NEZAIVA_LIBNOISE
// Both are asked for three octaves at the position. The texture does what its peer does not: a memo, a
// generator's coordinates with derivatives, twelve inputs that could be textures, two colours and the
// post-processing.
void comparePeer(TextureInterface* color)
{
    static const auto peer = [] {
        auto made = std::make_unique<noise::module::Perlin>();
        made->SetOctaveCount(3);
        made->SetNoiseQuality(noise::QUALITY_STD);
        return made;
    }();
    for (const Spread spread : {Spread::Random, Spread::Tile}) {
        const std::string where = spread == Spread::Tile ? " (tile)" : " (random)";
        const auto peerThere = "perlin, peer" + where, textureThere = "perlin, at the position" + where;
        measure(
            peerThere,
            [](const OmbrixContext& context) {
                const Vector& p = context.shadePoint;
                benchmark::DoNotOptimize(peer->GetValue(static_cast<double>(p.x), static_cast<double>(p.y),
                                                        static_cast<double>(p.z)));
            },
            spread);
        measure(
            textureThere,
            [color](const OmbrixContext& context) {
                AColor result;
                benchmark::DoNotOptimize(color->evalColor(&result, context));
                benchmark::DoNotOptimize(result);
            },
            spread);
        ratios.push_back({"peer over perlin" + where, peerThere, textureThere, 2.0, false});
    }
}
#endif

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    Node place("UVWGenMayaPlace2dTexture");
    place.put("repeat_u", 3.0f).put("repeat_v", 2.0f).put("offset_u", 0.25f);
    comparePlace(place);

    struct Kind {
        const char* name;
        int type;
        KernelAt kernel;
    };
    std::vector<std::unique_ptr<Node>> textures;
    for (const Kind& kind : {Kind{"perlin", 0, perlinAt},
                             {"billow", 1, billowAt},
                             {"wave", 2, cosineAt},
                             {"wispy", 3, wispyAt}}) {
        textures.push_back(std::make_unique<Node>("TexNoiseMaya"));
        textures.back()->connect("uvwgen", *place.base());
        textures.back()->put("noise_type", kind.type);
        compareTexture(kind.name, *textures.back(), place, kind.kernel);
    }
    // Every number written, so that each input is a constant texture of the host.
    textures.push_back(std::make_unique<Node>("TexNoiseMaya"));
    Node& written = *textures.back();
    written.connect("uvwgen", *place.base());
    written.put("noise_type", 0).put("amplitude", 1.0f).put("ratio", 0.707f).put("threshold", 0.0f);
    written.put("frequency", 8.0f).put("frequency_ratio", 2.0f).put("implode", 0.0f);
    compareTexture("perlin, all inputs written", written, place, perlinAt);
    textures.push_back(std::make_unique<Node>("TexSimplexNoise"));
    textures.back()->connect("uvwgen", *place.base());
    textures.back()->put("scale", 4.0f);
    compareTexture("simplex", *textures.back(), place, simplexAt);
#ifdef NEZAIVA_LIBNOISE
    static PositionGenerator atPosition;
    textures.push_back(std::make_unique<Node>("TexNoiseMaya"));
    textures.back()->connect("uvwgen", atPosition);
    textures.back()->put("noise_type", 0);
    comparePeer(textures.back()->texture());
#endif

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.showRatios();
    benchmark::Shutdown();
    return 0;
}
