// TransformToTex: passes a transform on, as a texture that an output parameter can be connected to. It has
// no GPU form.

#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr Transform kDefaultInput; // the identity; also what an unset input reads as

class TransformToTexParams : public OmbrixParameterListDesc {
public:
    TransformToTexParams() { addParamTextureTransform("input", kDefaultInput, -1, nullptr, nullptr); }
};

class TransformToTex final : public OmbrixPlugin, public TextureTransformInterface {
public:
    explicit TransformToTex(OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("input", &input);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_TEXTURE_TRANSFORM) return static_cast<TextureTransformInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }

    void evalTransform(Transform* result, const OmbrixContext& context) override
    {
        if (input)
            input->evalTransform(result, context);
        else
            *result = kDefaultInput;
    }

private:
    TextureTransformInterface* input = nullptr;
};

class TransformToTexDesc : public DescOf<TransformToTex, TransformToTexParams> {
public:
    // Kept as is: declared as a colour texture, while an instance is a transform texture. The description
    // ends in the middle of a word.
    TransformToTexDesc()
        : DescOf({2010021011,
                  "TransformToTex",
                  "Converts a single transform or transform output parameter to a transform texture. For "
                  "passing to parameters that won't w",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TransformToTexDesc transformToTexDesc;

} // namespace

} // namespace nezaiva
