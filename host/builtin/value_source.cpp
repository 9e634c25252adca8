#include "host/builtin/value_source.h"

#include "host/builtin/builtin_metadata.h"
#include "host/gpu/host_gpu.h"
#include "host/params/host_parameters.h"

#include <cstring>
#include <string_view>

namespace ombrix {

namespace {

constexpr const char* kSourceParameter = "source";
constexpr const char* kMaterialDescriptor = "MaterialDescriptor";

// The text with every {name} and {tag} replaced. What is put in is not searched again.
std::string filledIn(std::string_view pattern, std::string_view name, std::string_view tag)
{
    constexpr std::string_view kName = "{name}", kTag = "{tag}";
    std::string text;
    while (!pattern.empty()) {
        if (pattern.starts_with(kName)) {
            text += name;
            pattern.remove_prefix(kName.size());
        } else if (pattern.starts_with(kTag)) {
            text += tag;
            pattern.remove_prefix(kTag.size());
        } else {
            text += pattern.front();
            pattern.remove_prefix(1);
        }
    }
    return text;
}

} // namespace

void declareSource(OUtils::OmbrixParameterListDesc& parameters)
{
    parameters.addParamString(kSourceParameter, "", -1,
                              "The GPU text, {name} and {tag} replaced; unset, the value of a color or a "
                              "float as a constant; null, none",
                              kNullableMetadata);
}

SourceKind sourceKindOf(OUtils::OmbrixParameterList& list)
{
    const auto* parameter = dynamic_cast<HostParameter*>(list.getParam(kSourceParameter));
    if (!parameter || !parameter->value()) return SourceKind::Unset;
    const std::vector<Value>& sample = parameter->value()->samples.front();
    const bool none = sample.empty() || std::holds_alternative<std::monostate>(sample.front());
    return none ? SourceKind::None : SourceKind::Text;
}

int writeValueSource(OUtils::OmbrixParameterList& list, double time, const char* name, const char* tag,
                     const char* descriptor, const std::string& unsetText, OUtils::ShaderSource& source)
{
    if (!descriptor || std::strcmp(descriptor, kMaterialDescriptor) != 0) return 0;
    if (sourceKindOf(list) == SourceKind::Unset) {
        source.append(unsetText.c_str());
        return 1;
    }
    const std::string text = list.getParam(kSourceParameter)->getString(-1, time);
    source.append(filledIn(text, name ? name : "", tag ? tag : "").c_str());
    return 1;
}

std::string constantColorText(const OUtils::AColor& color)
{
    HostShaderSource text;
    text.printf("color %f %f %f %f\n", static_cast<double>(color.r), static_cast<double>(color.g),
                static_cast<double>(color.b), static_cast<double>(color.a));
    return text.text;
}

} // namespace ombrix
