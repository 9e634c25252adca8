#include "host/probe/probe_operations.h"

#include "host/errors/errors.h"
#include "host/probe/probe_context.h"
#include "host/report/plugin_report.h"
#include "host/scene/scene_object.h"

#include <ombrix/material_interfaces.h>
#include <ombrix/texture_interfaces.h>

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

using OUtils::AColor;
using OUtils::OmbrixContext;
using OUtils::PluginInterface;

// What a plugin leaves unwritten in bounds shows as this number.
constexpr float kUnwritten = 77.0f;

// Asks once for each context.
using AskAtPoint = OutputJson (*)(PluginInterface& asked, const OmbrixContext& context);
// Asks once, whatever the contexts.
using AskOnce = OutputJson (*)(PluginInterface& asked, const RequestSpec& request, const ProbeFrame& frame);

// What an operation looks at beside the plugin and its output.
enum class Looks { AtContexts, AtNothing, AtTime, AtSourceKeys };

struct Operation {
    const char* name;
    OUtils::InterfaceId interface;
    Looks looks;
    AskAtPoint atPoint;
    AskOnce once;
};

template <class Interface>
Interface& as(PluginInterface& asked)
{
    return static_cast<Interface&>(asked);
}

OutputJson firstThree(const OUtils::Vector4& v)
{
    return toJson(OUtils::Vector{v.x, v.y, v.z});
}

OutputJson askColor(PluginInterface& asked, const OmbrixContext& context)
{
    AColor color;
    as<OUtils::TextureInterface>(asked).evalColor(&color, context);
    return toJson(color);
}

OutputJson askColorGradient(PluginInterface& asked, const OmbrixContext& context)
{
    AColor gradient;
    as<OUtils::TextureInterface>(asked).evalColorGradient(&gradient, context);
    return toJson(gradient);
}

OutputJson askFloat(PluginInterface& asked, const OmbrixContext& context)
{
    return toJson(as<OUtils::TextureFloatInterface>(asked).evalFloat(context));
}

OutputJson askFloatGradient(PluginInterface& asked, const OmbrixContext& context)
{
    AColor gradient;
    as<OUtils::TextureFloatInterface>(asked).evalFloatGradient(&gradient, context);
    return toJson(gradient);
}

OutputJson askInt(PluginInterface& asked, const OmbrixContext& context)
{
    return as<OUtils::TextureIntInterface>(asked).evalInt(context);
}

OutputJson askVector(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::Vector vector;
    as<OUtils::TextureVectorInterface>(asked).evalVector(&vector, context);
    return toJson(vector);
}

OutputJson askTransform(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::Transform transform;
    as<OUtils::TextureTransformInterface>(asked).evalTransform(&transform, context);
    return toJson(transform);
}

OutputJson askUVW(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::UVWSample sample;
    OutputJson answer;
    answer["valid"] = as<OUtils::UVWGenInterface>(asked).evalUVW(context, &sample) ? 1 : 0;
    answer["uvw"] = firstThree(sample.uvw);
    return answer;
}

OutputJson askUVWDerivs(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::UVWSample sample;
    OutputJson answer;
    answer["valid"] = as<OUtils::UVWGenInterface>(asked).evalUVWDerivs(context, &sample) ? 1 : 0;
    answer["uvw"] = firstThree(sample.uvw);
    answer["du"] = firstThree(sample.du);
    answer["dv"] = firstThree(sample.dv);
    return answer;
}

OutputJson askUVWTransform(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::Transform transform;
    OutputJson answer;
    answer["valid"] = as<OUtils::UVWGenInterface>(asked).evalUVWTransform(context, &transform) ? 1 : 0;
    answer["columns"] = toJson(transform.matrix);
    answer["offset"] = toJson(transform.offset);
    return answer;
}

OutputJson shadeJson(const OUtils::ShadeResult& result)
{
    OutputJson answer;
    answer["color"] = toJson(result.color);
    answer["transparency"] = toJson(result.transparency);
    answer["alpha"] = toJson(result.alpha);
    answer["alpha_transparency"] = toJson(result.alphaTransparency);
    return answer;
}

OutputJson askShade(PluginInterface& asked, const OmbrixContext& context)
{
    OUtils::ShadeRequest request;
    as<OUtils::MaterialInterface>(asked).shade(request, context);
    OutputJson answer = shadeJson(request.result);
    answer["other"] = shadeJson(request.transparentHit);
    return answer;
}

OutputJson askColorBounds(PluginInterface& asked, const RequestSpec&, const ProbeFrame&)
{
    AColor lower{kUnwritten, kUnwritten, kUnwritten, kUnwritten}, upper = lower;
    as<OUtils::TextureInterface>(asked).evalColorBounds(&lower, &upper);
    return OutputJson::array({toJson(lower), toJson(upper)});
}

OutputJson askFloatBounds(PluginInterface& asked, const RequestSpec&, const ProbeFrame&)
{
    float lower = kUnwritten, upper = kUnwritten;
    as<OUtils::TextureFloatInterface>(asked).evalFloatBounds(&lower, &upper);
    return OutputJson::array({toJson(lower), toJson(upper)});
}

OutputJson bitmapsJson(const HostOCLData& data, bool pixels)
{
    OutputJson bitmaps = OutputJson::array();
    for (std::size_t i = 0; i < data.bitmaps().size(); ++i) {
        const GpuBitmap& bitmap = data.bitmaps()[i];
        OutputJson entry;
        entry["index"] = i;
        entry["width"] = bitmap.width;
        entry["height"] = bitmap.height;
        entry["name"] = bitmap.name;
        entry["hash"] = bitmap.hash ? OutputJson(*bitmap.hash) : OutputJson(nullptr);
        if (pixels) entry["pixels"] = bitmap.pixels;
        bitmaps.push_back(std::move(entry));
    }
    return bitmaps;
}

OutputJson askSource(PluginInterface& asked, const RequestSpec& request, const ProbeFrame& frame)
{
    HostShaderSource source;
    OutputJson answer;
    answer["returned"] = as<OUtils::RTTexInterface>(asked).getSource(
        request.name.c_str(), request.tag.c_str(), request.descriptor.c_str(), source, frame.gpuData);
    answer["text"] = source.text;
    answer["bitmaps"] = bitmapsJson(frame.gpuData, request.pixels);
    return answer;
}

// An operation without a function is of an interface that the contract between host and library does not
// have yet; no plugin offers it.
constexpr Operation kOperations[] = {
    {"color", OUtils::EXT_TEXTURE, Looks::AtContexts, askColor, nullptr},
    {"color_bounds", OUtils::EXT_TEXTURE, Looks::AtNothing, nullptr, askColorBounds},
    {"color_gradient", OUtils::EXT_TEXTURE, Looks::AtContexts, askColorGradient, nullptr},
    {"float", OUtils::EXT_TEXTURE_FLOAT, Looks::AtContexts, askFloat, nullptr},
    {"float_bounds", OUtils::EXT_TEXTURE_FLOAT, Looks::AtNothing, nullptr, askFloatBounds},
    {"float_gradient", OUtils::EXT_TEXTURE_FLOAT, Looks::AtContexts, askFloatGradient, nullptr},
    {"fluid_color", OUtils::EXT_MAYA_FLUID_TEXTURE, Looks::AtContexts, nullptr, nullptr},
    {"fluid_color_range", OUtils::EXT_MAYA_FLUID_TEXTURE, Looks::AtTime, nullptr, nullptr},
    {"fluid_float", OUtils::EXT_MAYA_FLUID_TEXTURE, Looks::AtContexts, nullptr, nullptr},
    {"fluid_float_range", OUtils::EXT_MAYA_FLUID_TEXTURE, Looks::AtTime, nullptr, nullptr},
    {"fluid_grid_size", OUtils::EXT_MAYA_FLUID_TEXTURE, Looks::AtTime, nullptr, nullptr},
    {"int", OUtils::EXT_TEXTURE_INT, Looks::AtContexts, askInt, nullptr},
    {"shade", OUtils::EXT_MATERIAL, Looks::AtContexts, askShade, nullptr},
    {"source", OUtils::EXT_RTTEX, Looks::AtSourceKeys, nullptr, askSource},
    {"transform", OUtils::EXT_TEXTURE_TRANSFORM, Looks::AtContexts, askTransform, nullptr},
    {"uvw", OUtils::EXT_UVWGEN, Looks::AtContexts, askUVW, nullptr},
    {"uvw_derivs", OUtils::EXT_UVWGEN, Looks::AtContexts, askUVWDerivs, nullptr},
    {"uvw_transform", OUtils::EXT_UVWGEN, Looks::AtContexts, askUVWTransform, nullptr},
    {"vector", OUtils::EXT_TEXTURE_VECTOR, Looks::AtContexts, askVector, nullptr},
};
constexpr const char* kInterfacesOperation = "interfaces";

const Operation* findOperation(std::string_view name)
{
    for (const Operation& operation : kOperations)
        if (name == operation.name) return &operation;
    return nullptr;
}

OutputJson failure(const std::string& text)
{
    OutputJson answer;
    answer["error"] = text;
    return answer;
}

OutputJson unknownOperation(const std::string& name)
{
    std::vector<std::string> names = {kInterfacesOperation};
    for (const Operation& operation : kOperations)
        names.emplace_back(operation.name);
    return failure(fmt::format("no operation is named \"{}\"{}", name,
                               suggestOrList(name, names, "the operations are")));
}

// The plugin or the output that a request asks; null with a problem otherwise.
SceneObject askedObject(const RequestSpec& request, const Scene& scene, std::string& problem)
{
    if (const PluginInstance* plugin = scene.find(request.plugin)) {
        if (!request.output) return {plugin, nullptr};
        return resolveOutput(*plugin, *request.output, problem);
    }
    const std::size_t dot = request.plugin.rfind('.');
    if (dot != std::string::npos && scene.find(request.plugin.substr(0, dot))) {
        problem = fmt::format(
            "no plugin is named \"{0}\"; for an output write \"plugin\": \"{1}\", \"output\": \"{2}\"",
            request.plugin, request.plugin.substr(0, dot), request.plugin.substr(dot + 1));
        return {};
    }
    std::vector<std::string> names;
    for (const PluginInstance& known : scene.instances())
        names.push_back(known.name);
    problem = fmt::format("no plugin is named \"{}\"{}", request.plugin,
                          suggestOrList(request.plugin, names, "the plugins are"));
    return {};
}

} // namespace

StampSource::StampSource(const ProbeFile& probe)
{
    for (const FrameSpec& frame : probe.frames)
        for (const RequestSpec& request : frame.requests)
            for (const ContextSpec& context : request.contexts)
                if (context.stamp && *context.stamp >= kFirst && *context.stamp <= kLast)
                    taken.push_back(*context.stamp);
    std::sort(taken.begin(), taken.end());
}

std::int32_t StampSource::next()
{
    while (upcoming <= kLast && std::binary_search(taken.begin(), taken.end(), upcoming))
        ++upcoming;
    if (upcoming > kLast)
        throw WorkError{
            "a probe has room for 899,001 contexts without a \"stamp\"; give stamps, or split it"};
    return upcoming++;
}

std::optional<std::vector<std::string>> keysOfOperation(const std::string& name)
{
    using Keys = std::vector<std::string>;
    if (name == kInterfacesOperation) return Keys{};
    const Operation* operation = findOperation(name);
    if (!operation) return {};
    switch (operation->looks) {
    case Looks::AtContexts:
        return Keys{"contexts"};
    case Looks::AtTime:
        return Keys{"time"};
    case Looks::AtSourceKeys:
        return Keys{"name", "tag", "descriptor", "pixels"};
    case Looks::AtNothing:
        break;
    }
    return Keys{};
}

OutputJson answerRequest(const RequestSpec& request, const ProbeFrame& frame)
{
    if (!request.problem.text.empty()) return failure(request.problem.path + ": " + request.problem.text);
    std::string problem;
    const SceneObject object = askedObject(request, frame.scene, problem);
    if (!object.instance) return failure(problem);
    OutputJson answer;
    answer["values"] = OutputJson::array();
    if (request.operation == kInterfacesOperation) {
        answer["values"].push_back(
            interfaceNames([&](OUtils::InterfaceId id) { return object.getInterface(id); }));
        return answer;
    }
    const Operation* operation = findOperation(request.operation);
    if (!operation) return unknownOperation(request.operation);
    PluginInterface* asked = object.getInterface(operation->interface);
    if (!asked || (!operation->atPoint && !operation->once))
        return failure(fmt::format("{} \"{}{}{}\" offers no {}", object.instance->kind->desc->getName(),
                                   request.plugin, request.output ? "." : "", request.output.value_or(""),
                                   interfaceName(operation->interface)));
    if (operation->once) {
        answer["values"].push_back(operation->once(*asked, request, frame));
        return answer;
    }
    for (const ContextSpec& spec : request.contexts) {
        const std::int32_t stamp = spec.stamp ? *spec.stamp : frame.stamps.next();
        const ProbeContext point(spec, stamp, frame.names);
        answer["values"].push_back(operation->atPoint(*asked, point.context()));
    }
    return answer;
}

} // namespace ombrix
