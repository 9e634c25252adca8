#include "kind_life.h"

#include "loaded_library.h"
#include "support/heap_hooks.h"

#include "host/params/host_parameters.h"

#include <cstdio>
#include <limits>

namespace conformance {
namespace {

using namespace OUtils;
using ombrix::Declaration;
using ombrix::ParameterDeclaration;
using support::interfaceOf;

// Collects names with numbers behind them, a line each.
class Shown {
public:
    Shown& line(const std::string& label)
    {
        text += "\n" + label;
        return *this;
    }
    Shown& add(std::initializer_list<float> numbers)
    {
        for (float number : numbers) {
            char digits[32];
            std::snprintf(digits, sizeof digits, " %.9g", static_cast<double>(number));
            text += digits;
        }
        return *this;
    }
    Shown& add(int number)
    {
        text += " " + std::to_string(number);
        return *this;
    }
    Shown& add(const AColor& c) { return add({c.r, c.g, c.b, c.a}); }
    Shown& add(const Vector& v) { return add({v.x, v.y, v.z}); }
    Shown& add(const Vector4& v) { return add({v.x, v.y, v.z, v.w}); }
    Shown& add(const Transform& t)
    {
        for (const Vector& column : t.matrix.columns)
            add(column);
        return add(t.offset);
    }

    std::string text;
};

// A result that no evaluation gives; what stays shows.
constexpr float kUnwritten = 77.0f;
constexpr AColor kUnwrittenColor{kUnwritten, kUnwritten, kUnwritten, kUnwritten};

void show(Shown& shown, TextureInterface* texture, const OmbrixContext& context)
{
    if (!texture) return;
    AColor color = kUnwrittenColor, lower = kUnwrittenColor, upper = kUnwrittenColor;
    AColor gradient = kUnwrittenColor;
    EXPECT_EQ(texture->evalColor(&color, context), &color);
    EXPECT_EQ(texture->evalColorGradient(&gradient, context), &gradient);
    texture->evalColorBounds(&lower, &upper);
    shown.line("color").add(color).line("gradient").add(gradient);
    shown.line("bounds").add(lower).add(upper);
}

void show(Shown& shown, TextureFloatInterface* texture, const OmbrixContext& context)
{
    if (!texture) return;
    AColor gradient = kUnwrittenColor;
    float lower = kUnwritten, upper = kUnwritten;
    shown.line("float").add({texture->evalFloat(context)});
    EXPECT_EQ(texture->evalFloatGradient(&gradient, context), &gradient);
    texture->evalFloatBounds(&lower, &upper);
    shown.line("float gradient").add(gradient).line("float bounds").add({lower, upper});
}

void show(Shown& shown, UVWGenInterface* generator, const OmbrixContext& context)
{
    if (!generator) return;
    UVWSample sample, derivatives;
    Transform transform;
    shown.line("uvw").add(generator->evalUVW(context, &sample)).add(sample.uvw);
    shown.line("derivatives").add(generator->evalUVWDerivs(context, &derivatives));
    shown.add(derivatives.uvw).add(derivatives.du).add(derivatives.dv);
    shown.line("transform").add(generator->evalUVWTransform(context, &transform)).add(transform);
    EXPECT_EQ(generator->evalUVWForChannel(nullptr, context, &sample), 0);
}

void show(Shown& shown, MaterialInterface* material, BSDFInterface* bsdf, const OmbrixContext& context)
{
    if (material) {
        ShadeRequest request;
        material->shade(request, context);
        for (const ShadeResult& result : {request.result, request.transparentHit})
            shown.line("shade").add(result.color).add(result.transparency).add(result.alpha);
    }
    if (bsdf) bsdf->releaseBSDF(bsdf->getBSDF(context), context);
}

// Everything that an instance answers at a point.
void showAll(Shown& shown, PluginBase* plugin, const OmbrixContext& context)
{
    show(shown, interfaceOf<TextureInterface>(plugin, EXT_TEXTURE), context);
    show(shown, interfaceOf<TextureFloatInterface>(plugin, EXT_TEXTURE_FLOAT), context);
    show(shown, interfaceOf<UVWGenInterface>(plugin, EXT_UVWGEN), context);
    show(shown, interfaceOf<MaterialInterface>(plugin, EXT_MATERIAL),
         interfaceOf<BSDFInterface>(plugin, EXT_BSDF), context);
    if (auto* texture = interfaceOf<TextureIntInterface>(plugin, EXT_TEXTURE_INT))
        shown.line("int").add(texture->evalInt(context));
    if (auto* texture = interfaceOf<TextureVectorInterface>(plugin, EXT_TEXTURE_VECTOR)) {
        Vector vector, lower, upper;
        texture->evalVector(&vector, context);
        texture->evalVectorBounds(&lower, &upper);
        shown.line("vector").add(vector).add(lower).add(upper);
    }
    if (auto* texture = interfaceOf<TextureTransformInterface>(plugin, EXT_TEXTURE_TRANSFORM)) {
        Transform transform;
        texture->evalTransform(&transform, context);
        shown.line("transform").add(transform);
    }
}

// The objects that answer the output parameters.
std::vector<PluginInterface*> outputsOf(OmbrixPluginInterface& host,
                                        const std::vector<ParameterDeclaration>& declared)
{
    std::vector<PluginInterface*> outputs;
    for (const ParameterDeclaration& declaration : declared)
        if (ombrix::isOutput(declaration.kind))
            if (PluginInterface* bound = ombrix::boundOutput(*host.paramList, declaration.name))
                outputs.push_back(bound);
    return outputs;
}

void showOutput(Shown& shown, PluginInterface* output, const OmbrixContext& context)
{
    show(shown, dynamic_cast<TextureInterface*>(output), context);
    show(shown, dynamic_cast<TextureFloatInterface*>(output), context);
    if (auto* texture = dynamic_cast<TextureIntInterface*>(output))
        shown.line("int").add(texture->evalInt(context));
}

class PointContext final : public support::TestContext {
public:
    PointContext(const ShadedPoint& point, int stamp)
    {
        filtering = point.filtering;
        threadRecord->threadIndex = point.threadIndex;
        shadeFlags = point.shadeFlags;
        sampleStamp = stamp;
        surfaceObject = point.surface;
        shadePoint = referencePoint = point.shadePoint;
        positionDiffU = point.diff;
        positionDiffV = {-point.diff.y, point.diff.x, point.diff.z};
        normal = geometricNormal = {0.0f, 0.6f, 0.8f};
        for (float& width : filterWidths)
            width = point.diff.x;
        rayDepth = point.rayDepth;
    }
};

} // namespace

std::vector<ParameterDeclaration> declarationsOf(PluginDesc* desc)
{
    struct Host final : AcceptingHost {
        int addParameters(PluginDesc*, OmbrixParameterListDesc* parameters) override
        {
            const auto& all = parameters->declarations().all;
            received.assign(all.begin(), all.end());
            return 1;
        }
        std::vector<ParameterDeclaration> received;
    } host;
    desc->registerPlugin(&host);
    return host.received;
}

std::vector<ShadedPoint> ordinaryPoints(PluginBase* surface)
{
    std::vector<ShadedPoint> points(7);
    points[1].shadePoint = {};
    points[2].shadePoint = {-3.7f, 20.3f, 1e4f};
    points[2].filtering = 1;
    points[3].surface = surface;
    points[3].rayDepth = 3;
    points[4].surface = surface;
    points[4].shadeFlags = rawTextureLookup;
    points[4].filtering = 1;
    points[5].shadeFlags = noUVWCache | noTexCache;
    points[5].surface = surface;
    points[6].diff = {};
    points[6].filtering = 1;
    return points;
}

std::vector<ShadedPoint> brokenPoints(PluginBase* surface)
{
    using Limits = std::numeric_limits<float>;
    std::vector<ShadedPoint> points;
    for (float number : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(),
                         -Limits::max(), 3e9f, Limits::denorm_min()}) {
        ShadedPoint point;
        point.shadePoint = {number, number, number};
        point.diff = {number, number, number};
        points.push_back(point);
        point.surface = surface;
        point.filtering = 1;
        points.push_back(point);
        point.shadePoint = {0.25f, number, 0.5f};
        point.shadeFlags = noUVWCache | noTexCache;
        points.push_back(point);
    }
    return points;
}

KindLife::KindLife(PluginDesc* descriptor) : desc(descriptor), declared(declarationsOf(descriptor))
{
    inputOf.resize(declared.size());
    plugin = desc->newPlugin(nullptr);
    if (plugin) host = interfaceOf<OmbrixPluginInterface>(plugin, EXT_OMBRIX_PLUGIN);
}

KindLife::~KindLife()
{
    desc->deletePlugin(plugin);
}

void KindLife::write(std::size_t parameter, ombrix::Value value)
{
    const ParameterDeclaration& declaration = declared[parameter];
    ombrix::ParameterValue values{{}, {{value}}};
    if (declaration.count == 0) values.samples[0].push_back(value);
    ombrix::HostParameter written(declaration, std::move(values));
    EXPECT_EQ(host->setParameter(&written), 1) << desc->getName() << "." << declaration.name;
}

EveryInput* KindLife::inputFor(std::size_t parameter, float level)
{
    const ParameterDeclaration& declaration = declared[parameter];
    const InterfaceId needed = declaration.kind == Declaration::Plugin
                                   ? declaration.requiredInterface
                                   : ombrix::textureInterfaceOf(declaration.kind);
    if (needed == 0) return nullptr;
    if (!inputOf[parameter]) {
        EveryInput& made = inputs.emplace_back(level);
        if (!made.getInterface(needed)) {
            inputs.pop_back();
            return nullptr;
        }
        inputOf[parameter] = &made;
        write(parameter, ombrix::PluginReference{&made, nullptr});
    }
    inputOf[parameter]->level = level;
    return inputOf[parameter];
}

void KindLife::connectAll(float level, float spread)
{
    for (std::size_t i = 0; i < declared.size(); ++i)
        if (!ombrix::isOutput(declared[i].kind)) inputFor(i, level + spread * static_cast<float>(i));
}

bool KindLife::setLevel(std::size_t parameter, float level)
{
    switch (declared[parameter].kind) {
    case Declaration::Float:
        write(parameter, level);
        return true;
    case Declaration::Color:
        write(parameter, Color{level, level, level});
        return true;
    case Declaration::Transform: {
        const auto wide = static_cast<double>(level);
        TraceTransform transform{{}, {wide, wide, wide}};
        for (Vector& column : transform.matrix.columns)
            column = {level, level, level};
        write(parameter, transform);
        return true;
    }
    case Declaration::OutputTexture:
    case Declaration::OutputTextureFloat:
    case Declaration::TextureInt:
        return false;
    default:
        return inputFor(parameter, level) != nullptr;
    }
}

void KindLife::begin()
{
    host->renderBegin(&renderer);
}

void KindLife::end()
{
    host->renderEnd(&renderer);
}

std::string KindLife::evaluations(const std::vector<ShadedPoint>& points)
{
    Shown shown;
    const std::vector<PluginInterface*> outputs = outputsOf(*host, declared);
    // Ends at the point that it began with, so that the next frame's first point is the last one known.
    for (std::size_t i = 0; i <= points.size(); ++i) {
        const std::size_t place = i % points.size();
        const PointContext context(points[place], static_cast<int>(place) + 1);
        shown.line("point").add(context.sampleStamp);
        showAll(shown, plugin, context);
        for (PluginInterface* output : outputs)
            showOutput(shown, output, context);
    }
    return shown.text + "\n";
}

std::vector<RTTexInterface*> KindLife::gpuTextures() const
{
    std::vector<RTTexInterface*> all{interfaceOf<RTTexInterface>(plugin, EXT_RTTEX)};
    for (PluginInterface* output : outputsOf(*host, declared))
        all.push_back(dynamic_cast<RTTexInterface*>(output));
    std::erase(all, nullptr);
    return all;
}

std::string KindLife::sources(support::TextKind kind) const
{
    std::string text;
    for (RTTexInterface* texture : gpuTextures()) {
        const support::WrittenSource written = support::sourceOf(texture, "MaterialDescriptor", kind);
        text += "source " + std::to_string(written.answer) + "\n" + written.text;
    }
    return text;
}

std::string KindLife::frame(const std::vector<ShadedPoint>& points, support::TextKind kind)
{
    host->frameBegin(&renderer);
    std::string shown;
    {
        const support::ExhaustedHeap none(0);
        shown = evaluations(points);
        EXPECT_EQ(support::ExhaustedHeap::refusals, 0) << desc->getName() << " allocates in an evaluation";
    }
    shown += sources(kind);
    host->frameEnd(&renderer);
    return shown;
}

std::string KindLife::render(const std::vector<ShadedPoint>& points, support::TextKind kind)
{
    begin();
    std::string shown = frame(points, kind) + "next frame\n" + frame(points, kind);
    end();
    return shown;
}

} // namespace conformance
