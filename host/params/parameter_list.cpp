// The values of one instance, by name.
#include "host/memory/allocator.h"
#include "host/params/list_values.h"

namespace OUtils {
namespace {

using ombrix::FieldType;
using ombrix::HostParameter;
using ombrix::ParameterValue;
using ombrix::Value;

// One element of a parameter that is not the host's own; nullopt for a type that cannot be read.
std::optional<Value> readElement(OmbrixPluginParameter& parameter, int index, double time)
{
    switch (parameter.getType()) {
    case ParameterType::Int:
        return parameter.getInt(index, time);
    case ParameterType::Bool:
        return parameter.getInt(index, time) != 0;
    case ParameterType::Float:
        return parameter.getFloat(index, time);
    case ParameterType::Double:
        return static_cast<float>(parameter.getDouble(index, time));
    case ParameterType::Vector:
        return parameter.getVector(index, time);
    case ParameterType::Color: {
        const AColor color = parameter.getColor(index, time);
        return Color{color.r, color.g, color.b};
    }
    case ParameterType::AColor:
        return parameter.getColor(index, time);
    case ParameterType::Transform:
        return parameter.getTransform(index, time);
    case ParameterType::String: {
        const char* text = parameter.getString(index, time);
        return std::string(text ? text : "");
    }
    case ParameterType::Plugin:
        return ombrix::PluginReference{parameter.getPlugin(index, time), nullptr};
    case ParameterType::Matrix:
        break;
    }
    return std::nullopt;
}

// What a parameter of another maker gives at a time, through its virtual readings alone.
std::optional<ParameterValue> readForeign(OmbrixPluginParameter& parameter, int declaredCount, double time)
{
    const int count = parameter.getCount(time);
    if ((count < 0) != (declaredCount < 0)) return std::nullopt;
    ParameterValue read;
    read.samples.emplace_back();
    for (int index = count < 0 ? -1 : 0; index < (count < 0 ? 0 : count); ++index) {
        std::optional<Value> element = readElement(parameter, index, time);
        if (!element) return std::nullopt;
        read.samples[0].push_back(std::move(*element));
    }
    return read;
}

} // namespace

OmbrixParameterList::Values::Values(const OmbrixParameterListDesc::Declarations& declarations)
    : declared(declarations)
{
    for (const ombrix::ParameterDeclaration& declaration : declared.all)
        parameters.emplace_back(declaration);
}

std::optional<std::size_t>
OmbrixParameterList::Values::indexOf(const ombrix::ParameterDeclaration* declaration) const
{
    for (std::size_t i = 0; i < declared.all.size(); ++i)
        if (&declared.all[i] == declaration) return i;
    return std::nullopt;
}

HostParameter* OmbrixParameterList::Values::findInput(const char* name)
{
    const auto index = indexOf(name ? declared.findInput(name) : nullptr);
    return index ? &parameters[*index] : nullptr;
}

OmbrixParameterList::~OmbrixParameterList()
{
    delete held;
}

OmbrixPluginParameter* OmbrixParameterList::getParam(const char* name)
{
    return held->findInput(name);
}

int OmbrixParameterList::setParameter(OmbrixPluginParameter* parameter)
{
    HostParameter* target = parameter ? held->findInput(parameter->getName()) : nullptr;
    if (!target) return 0;
    if (const auto* own = dynamic_cast<HostParameter*>(parameter)) {
        std::optional<ParameterValue> value = own->value();
        if (value && !ombrix::adaptToDeclaration(target->declaration(), *value)) return 0;
        target->write(std::move(value));
        return 1;
    }
    std::optional<ParameterValue> value = readForeign(*parameter, target->declaration().count, held->time);
    if (!value || !ombrix::adaptToDeclaration(target->declaration(), *value)) return 0;
    target->write(std::move(value));
    return 1;
}

int OmbrixParameterList::enumParams(EnumParamsCallback& callback)
{
    int calls = 0;
    for (HostParameter& parameter : held->parameters) {
        if (ombrix::isOutput(parameter.declaration().kind)) continue;
        ++calls;
        if (callback.processParam(&parameter) == 0) break;
    }
    return calls;
}

} // namespace OUtils

namespace ombrix {

bool unsetParameter(OUtils::OmbrixParameterList& list, std::string_view name)
{
    HostParameter* parameter = list.values().findInput(std::string(name).c_str());
    if (parameter) parameter->write(std::nullopt);
    return parameter != nullptr;
}

OUtils::PluginInterface* boundOutput(OUtils::OmbrixParameterList& list, std::string_view name)
{
    const auto& values = list.values();
    const auto index = values.indexOf(values.declared.findOutput(name));
    for (const BoundOutput& bound : values.outputs)
        if (index == bound.parameter) return bound.output;
    return nullptr;
}

} // namespace ombrix
