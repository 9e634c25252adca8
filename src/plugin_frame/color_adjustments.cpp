// The GPU text of CommonTexture's post-processing.

#include "plugin_frame/common_texture.h"

namespace nezaiva {

namespace {

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
        auto* texture = interfaceOf<TextureInterface>(parameter);
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
        return parameter ? interfaceOf<RTTexInterface>(parameter) : nullptr;
    }

private:
    template <class Interface>
    Interface* interfaceOf(OmbrixPluginParameter* parameter) const
    {
        if (parameter->getType() != ParameterType::Plugin) return nullptr;
        return find<Interface>(parameter->getPlugin(-1, time));
    }

    OmbrixPluginInterface& owner;
    double time;
};

} // namespace

int CommonTexture::writeColorAdjustments(SourceText& text)
{
    const ParameterReader parameters(*this, frameTime);
    text.color(parameters.noUVWColor("nouvw_color"));

    const auto writeFlags = [&] {
        if (invert) text.line("invert_color\n");
        if (invert_alpha) text.line("invert_alpha\n");
        if (alpha_from_intensity) text.source.printf("alpha_from_intensity %i\n", alpha_from_intensity);
    };
    const auto writeGain = [&](const char* name, GpuOperator operation) {
        PluginInterface* texture = parameters.sourceOf(name);
        if (!texture) return;
        text.endSlot();
        text.input(texture, "", "");
        text.endSlot();
        text.op(operation);
    };

    // The two modes differ in the order of inversion and gain.
    if (compatibility_with == kCompatibleWithMaya) {
        text.line("compatibility_with 1\n");
        writeFlags();
    }
    writeGain("color_mult", GpuOperator::MultiplyColors);
    writeGain("color_offset", GpuOperator::AddColors);
    writeGain("alpha_mult", GpuOperator::MultiplyAlphas);
    writeGain("alpha_offset", GpuOperator::AddAlphas);
    if (compatibility_with == kCompatibleWithMax) writeFlags();
    return 1;
}

} // namespace nezaiva
