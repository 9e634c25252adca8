// The GPU text of CommonTexture's post-processing.

#include "plugin_frame/common_texture.h"

#include <ombrix/gpu_source.h>

namespace nezaiva {

namespace {

constexpr int kMultiplyColorsOperator = -980;
constexpr int kAddColorsOperator = -979;
constexpr int kMultiplyAlphasOperator = -982;
constexpr int kAddAlphasOperator = -981;

// The parameters are read from the list, where a plain value shows as such.
class ParameterReader {
public:
    ParameterReader(OmbrixPluginInterface& plugin, double atTime) : owner(plugin), time(atTime) {}

    AColor noUVWColor(const char* name) const
    {
        OmbrixPluginParameter* parameter = owner.getParameter(name);
        if (!parameter) return kNoUVWColor;
        const ParameterType type = parameter->getType();
        if (type == ParameterType::Color || type == ParameterType::AColor) {
            AColor color = parameter->getColor(-1, time);
            if (type == ParameterType::Color) color.a = 1.0f;
            return color;
        }
        auto* texture = static_cast<TextureInterface*>(interfaceOf(parameter, EXT_TEXTURE));
        if (!texture) return kNoUVWColor;
        AColor lower{0.0f, 0.0f, 0.0f, 1.0f};
        AColor upper{1.0f, 1.0f, 1.0f, 1.0f};
        texture->evalColorBounds(&lower, &upper);
        return {(lower.r + upper.r) * 0.5f, (lower.g + upper.g) * 0.5f, (lower.b + upper.b) * 0.5f,
                (lower.a + upper.a) * 0.5f};
    }

    // The interface that writes the source of what a parameter refers to; null for a plain value and for
    // a plugin without a GPU form, which have no effect on the GPU.
    PluginInterface* sourceOf(const char* name) const
    {
        OmbrixPluginParameter* parameter = owner.getParameter(name);
        return parameter ? interfaceOf(parameter, EXT_RTTEX) : nullptr;
    }

private:
    PluginInterface* interfaceOf(OmbrixPluginParameter* parameter, InterfaceId id) const
    {
        if (parameter->getType() != ParameterType::Plugin) return nullptr;
        PluginBase* plugin = parameter->getPlugin(-1, time);
        return plugin ? plugin->getInterface(id) : nullptr;
    }

    OmbrixPluginInterface& owner;
    double time;
};

} // namespace

int CommonTexture::writeColorAdjustments(const char* descriptor, ShaderSource& source, OCLData& data)
{
    const ParameterReader parameters(*this, frameTime);
    const AColor fallback = parameters.noUVWColor("nouvw_color");
    source.printf("color %f %f %f %f\n", static_cast<double>(fallback.r), static_cast<double>(fallback.g),
                  static_cast<double>(fallback.b), static_cast<double>(fallback.a));

    const auto writeFlags = [&] {
        if (invert) source.append("invert_color\n");
        if (invert_alpha) source.append("invert_alpha\n");
        if (alpha_from_intensity) source.printf("alpha_from_intensity %i\n", alpha_from_intensity);
    };
    const auto writeGain = [&](const char* name, int operation) {
        PluginInterface* texture = parameters.sourceOf(name);
        if (!texture) return;
        source.append("subtex\n");
        RTTexInterface::getRTTexSource(texture, "", "", descriptor, source, data);
        source.append("subtex\n");
        source.printf("bitmap %i\n", operation);
    };

    // The two modes differ in the order of inversion and gain.
    if (compatibility_with == kCompatibleWithMaya) {
        source.append("compatibility_with 1\n");
        writeFlags();
    }
    writeGain("color_mult", kMultiplyColorsOperator);
    writeGain("color_offset", kAddColorsOperator);
    writeGain("alpha_mult", kMultiplyAlphasOperator);
    writeGain("alpha_offset", kAddAlphasOperator);
    if (compatibility_with == kCompatibleWithMax) writeFlags();
    return 1;
}

} // namespace nezaiva
