// A plugin kind with a parameter of every declaration, as a plug-in library would write it.
#pragma once

#include "host/params/host_parameters.h"

#include <ombrix/ombrix.h>

#include <initializer_list>
#include <optional>
#include <string>

namespace sample {

using namespace OUtils;

inline const Transform kMoved{{{{2, 0, 0}, {0, 3, 0}, {0, 0, 4}}}, {5, 6, 7}};

class Params : public OmbrixParameterListDesc {
public:
    Params()
    {
        flagIndex = addParamBool("flag", true, -1, "A flag", "gpuSupport=(full)");
        numberIndex = addParamInt("number", 7, -1, nullptr, nullptr);
        addParamFloat("amount", 0.25f, -1, nullptr, nullptr);
        addParamColor("tint", Color{0.1f, 0.2f, 0.3f}, -1, nullptr, nullptr);
        addParamString("text", "unset", -1, nullptr, nullptr);
        addParamPlugin("object", EXT_UVWGEN, -1, nullptr, nullptr);
        addParamTransform("place", 1, kMoved, -1, nullptr, nullptr);
        colorIndex = addParamTexture("color", AColor{0.5f, 0.6f, 0.7f, 0.8f}, -1, nullptr, nullptr);
        addParamTexture("plain_color", Color{0.5f, 0.6f, 0.7f}, -1, nullptr, nullptr);
        addParamTexture("no_default", -1, nullptr, nullptr);
        addParamTextureFloat("height", 1.0f, -1, nullptr, nullptr);
        addParamTextureFloat("free_height", -1, nullptr, nullptr);
        addParamTextureInt("index", 3, -1, nullptr, nullptr);
        addParamTextureInt("free_index", -1, nullptr, nullptr);
        addParamTextureTransform("frame", Transform{}, -1, nullptr, nullptr);
        addParamTextureVector("direction", Vector{1, 2, 3}, -1, nullptr, nullptr);
        addOutputParamTexture("color", nullptr, nullptr); // the name stands twice
        addOutputParamTextureFloat("out_alpha", nullptr, nullptr);
        numbersIndex = addParamInt("numbers", 0, 0, nullptr, nullptr);
        addParamFloat("floats", 0.0f, 0, nullptr, nullptr);
        addParamPlugin("objects", EXT_TEXTURE, 0, nullptr, nullptr);
    }
    int flagIndex, numberIndex, colorIndex, numbersIndex;
};

// A float texture that lives in another plugin, as the outputs of textures do. It finds itself in its
// holder, unless that is set to another object, or to null.
class AlphaOutput : public PluginBase, public TextureFloatInterface {
public:
    PluginBase* getPlugin() override { return holder; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        return id == EXT_TEXTURE_FLOAT ? static_cast<TextureFloatInterface*>(this)
                                       : PluginBase::getInterface(id);
    }
    float evalFloat(const OmbrixContext& /*context*/) override { return 0.75f; }
    void evalFloatBounds(float* lower, float* upper) override { *lower = *upper = 0.75f; }

    PluginBase* holder = this;
};

class Desc : public OmbrixPluginDesc {
public:
    Desc() { parameterDesc = &params; }
    PluginId getPluginID() override { return 1; }
    PluginBase* newPlugin(OmbrixPluginHost* /*host*/) override;
    void deletePlugin(PluginBase* plugin) override { delete plugin; }
    int supportsInterface(InterfaceId id) override { return id == EXT_TEXTURE; }
    const char* getName() override { return "Sample"; }
    const char* getDescription() override { return "A sample"; }

    Params params;
};

class Instance : public OmbrixTexture {
public:
    explicit Instance(Desc& desc) : OmbrixTexture(&desc)
    {
        paramList->setParamCacheByIndex(desc.params.flagIndex, &flag, 0);
        paramList->setParamCacheByIndex(desc.params.numberIndex, &number, 0);
        paramList->setParamCache("amount", &amount);
        paramList->setParamCache("tint", &tint);
        paramList->setParamCache("text", &text);
        paramList->setParamCache("object", &object);
        paramList->setParamCache("place", &place);
        paramList->setParamCacheByIndex(desc.params.colorIndex, &color, 0);
        paramList->setParamCache("no_default", &noDefault);
        paramList->setParamCache("height", &height);
        paramList->setParamCache("index", &index);
        paramList->setParamCache("frame", &frame);
        paramList->setParamCache("direction", &direction);
        paramList->setParamCacheByIndex(desc.params.numbersIndex, &numbers, 0);
        paramList->setParamCache("floats", &floats);
        paramList->setParamCache("objects", &objects);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
        paramList->setOutputParamCache("out_alpha", &alpha);
    }
    AColor* evalColor(AColor* result, const OmbrixContext& /*context*/) override
    {
        *result = {1, 2, 3, 4};
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { *lower = *upper = {1, 2, 3, 4}; }

    int flag = 0, number = 0;
    float amount = 0.0f;
    Color3f tint;
    CharString text;
    PluginBase* object = nullptr;
    TraceTransform place;
    TextureInterface *color = nullptr, *noDefault = nullptr;
    TextureFloatInterface* height = nullptr;
    TextureIntInterface* index = nullptr;
    TextureTransformInterface* frame = nullptr;
    TextureVectorInterface* direction = nullptr;
    PtrArray<int> numbers;
    PtrArray<float> floats;
    OmbrixPluginList objects;
    AlphaOutput alpha;
};

inline PluginBase* Desc::newPlugin(OmbrixPluginHost* /*host*/)
{
    return new Instance(*this);
}

// A renderer that tells a time and nothing else.
class TimeOnly : public OmbrixRenderer {
public:
    explicit TimeOnly(double time) { frame.time = time; }
    int getThreadCount() override { return 1; }
    RendererLogger* getLogger() override { return nullptr; }
    ProgressDisplay* getProgress() override { return nullptr; }
    MapChannelNames* getMapChannelNames() override { return nullptr; }
    const FrameData& getFrameData() override { return frame; }
    const SequenceData& getSequenceData() override { return sequence; }

    FrameData frame;
    SequenceData sequence;
};

inline ombrix::ParameterValue single(ombrix::Value value)
{
    return {{}, {{std::move(value)}}};
}
inline ombrix::ParameterValue list(std::vector<ombrix::Value> values)
{
    return {{}, {std::move(values)}};
}
inline ombrix::Value reference(PluginBase* plugin, PluginInterface* output = nullptr)
{
    return ombrix::PluginReference{plugin, output};
}

// Writes as a host does: through a parameter of its own.
inline int set(Instance& instance, const char* name, std::optional<ombrix::ParameterValue> value)
{
    const auto* declaration = instance.pluginDesc->parameterDesc->declarations().findInput(name);
    if (!declaration) return -1;
    ombrix::HostParameter parameter(*declaration, std::move(value));
    return instance.setParameter(&parameter);
}
inline int set(Instance& instance, const char* name, ombrix::Value value)
{
    return set(instance, name, single(std::move(value)));
}

inline void frame(Instance& instance, double time = 1.0)
{
    TimeOnly renderer(time);
    instance.frameBegin(&renderer);
}

} // namespace sample
