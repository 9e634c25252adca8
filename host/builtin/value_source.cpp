#include "host/builtin/value_source.h"

#include "host/gpu/host_gpu.h"

#include <cstring>
#include <string_view>

namespace ombrix {

namespace {

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

bool ValueSource::isNone() const
{
    if (!isWritten()) return false;
    const std::vector<Value>& sample = parameter->value()->samples.front();
    return sample.empty() || std::holds_alternative<std::monostate>(sample.front());
}

int ValueSource::write(double time, const char* name, const char* tag, const char* descriptor,
                       const std::string& unsetText, OUtils::ShaderSource& source) const
{
    if (!descriptor || std::strcmp(descriptor, kMaterialDescriptor) != 0) return 0;
    source.append(isWritten() ? filledIn(at(time), name ? name : "", tag ? tag : "").c_str()
                              : unsetText.c_str());
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
