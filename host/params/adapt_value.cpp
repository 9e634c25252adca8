// What the declarations can hold.
#include "host/params/value.h"

#include <algorithm>

namespace ombrix {
namespace {

bool toBool(Value& value)
{
    if (const int* number = std::get_if<int>(&value)) value = *number != 0;
    return std::holds_alternative<bool>(value);
}

bool toInt(Value& value)
{
    if (const bool* flag = std::get_if<bool>(&value)) value = *flag ? 1 : 0;
    return std::holds_alternative<int>(value);
}

bool toFloat(Value& value)
{
    if (toInt(value)) value = static_cast<float>(std::get<int>(value));
    return std::holds_alternative<float>(value);
}

bool toColor(Value& value)
{
    if (const auto* color = std::get_if<OUtils::AColor>(&value))
        value = OUtils::Color{color->r, color->g, color->b};
    return std::holds_alternative<OUtils::Color>(value);
}

bool toReference(Value& value)
{
    if (std::holds_alternative<std::monostate>(value)) value = PluginReference{};
    return std::holds_alternative<PluginReference>(value);
}

// A reference that resolves to the interface, a cleared one, or null.
bool toTyped(Value& value, OUtils::InterfaceId id)
{
    if (!toReference(value)) return false;
    const auto& reference = std::get<PluginReference>(value);
    const bool cleared = !reference.plugin && !reference.output;
    return cleared || interfaceOf(reference, id) != nullptr;
}

bool isColor(const Value& value)
{
    return std::holds_alternative<OUtils::Color>(value) || std::holds_alternative<OUtils::AColor>(value);
}

bool adaptElement(Declaration kind, Value& value)
{
    const OUtils::InterfaceId id = textureInterfaceOf(kind);
    switch (kind) {
    case Declaration::Bool:
        return toBool(value);
    case Declaration::Int:
        return toInt(value);
    case Declaration::Float:
        return toFloat(value);
    case Declaration::Color:
        return toColor(value);
    case Declaration::String:
        return std::holds_alternative<std::string>(value);
    case Declaration::Plugin:
        return toReference(value);
    case Declaration::Transform:
        return std::holds_alternative<OUtils::TraceTransform>(value);
    case Declaration::Texture:
        return isColor(value) || toTyped(value, id);
    case Declaration::TextureFloat:
        return toFloat(value) || toTyped(value, id);
    case Declaration::TextureInt:
        return toInt(value) || toTyped(value, id);
    case Declaration::TextureTransform:
        return std::holds_alternative<OUtils::TraceTransform>(value) || toTyped(value, id);
    case Declaration::TextureVector:
        return std::holds_alternative<OUtils::Vector>(value) || toTyped(value, id);
    case Declaration::OutputTexture:
    case Declaration::OutputTextureFloat:
        return false;
    }
    return false;
}

// Calls visit with every element of every sample until it gives false.
template <class Visit>
bool allElements(ParameterValue& value, const Visit& visit)
{
    for (std::vector<Value>& sample : value.samples)
        for (Value& element : sample)
            if (!visit(element)) return false;
    return true;
}

// A texture whose colours do not all have alpha gets it everywhere, so that they interpolate.
void unifyColors(ParameterValue& value)
{
    bool withAlpha = false;
    allElements(value, [&](Value& element) {
        withAlpha = withAlpha || std::holds_alternative<OUtils::AColor>(element);
        return true;
    });
    if (!withAlpha) return;
    allElements(value, [](Value& element) {
        if (const auto* color = std::get_if<OUtils::Color>(&element))
            element = OUtils::AColor{color->r, color->g, color->b, 1.0f};
        return true;
    });
}

bool wellFormed(const ParameterValue& value, bool single)
{
    const std::size_t expected = value.times.empty() ? 1 : value.times.size();
    if (value.samples.size() != expected) return false;
    for (std::size_t i = 1; i < value.times.size(); ++i)
        if (!(value.times[i - 1] < value.times[i])) return false;
    return !single || std::all_of(value.samples.begin(), value.samples.end(),
                                  [](const auto& sample) { return sample.size() == 1; });
}

} // namespace

bool adaptToDeclaration(const ParameterDeclaration& declaration, ParameterValue& value)
{
    if (!wellFormed(value, declaration.count < 0)) return false;
    if (!allElements(value, [&](Value& element) { return adaptElement(declaration.kind, element); }))
        return false;
    if (declaration.kind == Declaration::Texture) unifyColors(value);
    return value.times.empty() || allElements(value, [](Value& element) {
               return !std::holds_alternative<PluginReference>(element);
           });
}

OUtils::PluginInterface* interfaceOf(const PluginReference& reference, OUtils::InterfaceId id)
{
    if (reference.output) return reference.output->getInterfaceID() == id ? reference.output : nullptr;
    return reference.plugin ? reference.plugin->getInterface(id) : nullptr;
}

} // namespace ombrix
