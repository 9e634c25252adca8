#include "host/params/host_parameters.h"

namespace ombrix {
namespace {

using OUtils::ParameterType;

// Holds one output, so that whoever is given a plugin finds the output in it.
class OutputHolder : public OUtils::PluginBase {
public:
    explicit OutputHolder(OUtils::PluginInterface* what) : output(what) {}
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        return output->getInterfaceID() == id ? output : PluginBase::getInterface(id);
    }

    OUtils::PluginInterface* const output;
};

ParameterType plainType(Declaration kind)
{
    switch (kind) {
    case Declaration::Bool:
        return ParameterType::Bool;
    case Declaration::Int:
        return ParameterType::Int;
    case Declaration::Float:
        return ParameterType::Float;
    case Declaration::Color:
        return ParameterType::Color;
    case Declaration::String:
        return ParameterType::String;
    case Declaration::Transform:
        return ParameterType::Transform;
    default:
        return ParameterType::Plugin;
    }
}

ParameterType typeOf(const Value& value)
{
    struct Types {
        ParameterType operator()(std::monostate) const { return ParameterType::Plugin; }
        ParameterType operator()(bool) const { return ParameterType::Bool; }
        ParameterType operator()(int) const { return ParameterType::Int; }
        ParameterType operator()(float) const { return ParameterType::Float; }
        ParameterType operator()(const OUtils::Color&) const { return ParameterType::Color; }
        ParameterType operator()(const OUtils::AColor&) const { return ParameterType::AColor; }
        ParameterType operator()(const OUtils::Vector&) const { return ParameterType::Vector; }
        ParameterType operator()(const OUtils::TraceTransform&) const { return ParameterType::Transform; }
        ParameterType operator()(const std::string&) const { return ParameterType::String; }
        ParameterType operator()(const PluginReference&) const { return ParameterType::Plugin; }
    };
    return std::visit(Types{}, value);
}

} // namespace

HostParameter::HostParameter(const ParameterDeclaration& declaration, std::optional<ParameterValue> value)
    : declared(declaration), written(std::move(value))
{
}

const char* HostParameter::getName()
{
    return declared.name.c_str();
}

ParameterType HostParameter::getType()
{
    if (!isTextureInput(declared.kind)) return plainType(declared.kind);
    if (written)
        for (const std::vector<Value>& sample : written->samples)
            if (!sample.empty()) return typeOf(sample.front()); // one type at all times
    return typeOf(declared.defaultValue);
}

int HostParameter::getCount(double time)
{
    if (declared.count < 0) return -1;
    return written ? static_cast<int>(heldSample(*written, time).size()) : 0;
}

int HostParameter::getInt(int index, double time)
{
    const Value value = element(index, time);
    if (const bool* flag = std::get_if<bool>(&value)) return *flag ? 1 : 0;
    const int* number = std::get_if<int>(&value);
    return number ? *number : 0;
}

float HostParameter::getFloat(int index, double time)
{
    const Value value = element(index, time);
    const float* number = std::get_if<float>(&value);
    return number ? *number : 0.0f;
}

double HostParameter::getDouble(int /*index*/, double /*time*/)
{
    return 0.0; // no declaration is of this type
}

OUtils::Vector HostParameter::getVector(int index, double time)
{
    const Value value = element(index, time);
    const auto* vector = std::get_if<OUtils::Vector>(&value);
    return vector ? *vector : OUtils::Vector{};
}

OUtils::AColor HostParameter::getColor(int index, double time)
{
    const Value value = element(index, time);
    if (const auto* color = std::get_if<OUtils::Color>(&value)) return {color->r, color->g, color->b, 1.0f};
    const auto* color = std::get_if<OUtils::AColor>(&value);
    return color ? *color : OUtils::AColor{};
}

OUtils::TraceTransform HostParameter::getTransform(int index, double time)
{
    const Value value = element(index, time);
    if (const auto* transform = std::get_if<OUtils::TraceTransform>(&value)) return *transform;
    OUtils::TraceTransform zero;
    zero.matrix = {{{}, {}, {}}};
    return zero;
}

const char* HostParameter::getString(int index, double time)
{
    const Value* value = nullptr;
    if (written) {
        const std::vector<Value>& held = heldSample(*written, time);
        const int place = declared.count < 0 && index == -1 ? 0 : declared.count < 0 ? -1 : index;
        if (place >= 0 && static_cast<std::size_t>(place) < held.size())
            value = &held[static_cast<std::size_t>(place)];
    } else if (declared.count < 0 && index == -1) {
        value = &declared.defaultValue;
    }
    const auto* text = value ? std::get_if<std::string>(value) : nullptr;
    return text ? text->c_str() : "";
}

OUtils::PluginBase* HostParameter::getPlugin(int index, double time)
{
    const Value value = element(index, time);
    const auto* reference = std::get_if<PluginReference>(&value);
    if (!reference) return nullptr;
    OUtils::PluginInterface* output = reference->output;
    if (!output) return reference->plugin;
    OUtils::PluginBase* holder = output->getPlugin();
    if (holder && holder->getInterface(output->getInterfaceID()) == output) return holder;
    for (const auto& made : outputHolders)
        if (static_cast<OutputHolder*>(made.get())->output == output) return made.get();
    return outputHolders.emplace_back(std::make_unique<OutputHolder>(output)).get();
}

void HostParameter::write(std::optional<ParameterValue> value)
{
    written = std::move(value);
}

Value HostParameter::element(int index, double time) const
{
    if (declared.count < 0) {
        if (index != -1) return {};
        return written ? elementAt(*written, 0, time) : declared.defaultValue;
    }
    if (index < 0 || !written) return {};
    return elementAt(*written, static_cast<std::size_t>(index), time);
}

} // namespace ombrix
