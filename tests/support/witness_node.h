// A plugin kind for tests of scenes and probes: it has parameters of every declaration, and tells what the
// host does with it. Include it in one file of a test program only.
#pragma once

#include "host/builtin/builtin_metadata.h"
#include "host/plugins/registry.h"

#include <ombrix/exception_msg.h>
#include <ombrix/plugin.h>

#include <string>
#include <vector>

namespace support {

// Every call of every witness' life, "NAME.renderBegin" and so on, and "NAME.deleted".
inline std::vector<std::string> witnessCalls;

class WitnessParams : public OUtils::OmbrixParameterListDesc {
public:
    WitnessParams()
    {
        addParamBool("flag", false, -1, nullptr, nullptr);
        addParamInt("mode", 0, -1, "What to do", "enum=(0:Plain; 1:Billow; 2:Wave), startRollout=(Looks)");
        addParamInt("count", 3, -1, nullptr, "minValue=(0), maxValue=(9)");
        addParamFloat("amount", 0.1f, -1, nullptr, "units=(radians), quantityType=(angle)");
        addParamColor("tint", {0.5f, 0.25f, 1.0f}, -1, nullptr, nullptr);
        addParamString("text", "", -1, nullptr, nullptr);
        addParamString("file", "", -1, nullptr, ombrix::kFileMetadata);
        addParamTransform("matrix", 0, {}, -1, nullptr, nullptr);
        addParamInt("ints", 0, 0, nullptr, nullptr);
        addParamFloat("floats", 0.0f, 0, nullptr, nullptr);
        addParamTexture("input", -1, nullptr, nullptr);
        addParamTextureFloat("weight", 1.0f, -1, nullptr, nullptr);
        addParamTextureInt("choice", 0, -1, nullptr, "enum=(0:off; 1:on)");
        addParamTextureVector("vectors", {}, 0, nullptr, ombrix::kThreeElementsMetadata);
        addParamPlugin("object", OUtils::EXT_WORLD_MATRIX, -1, nullptr, nullptr);
        addParamPlugin("objects", OUtils::EXT_WORLD_MATRIX, 0, nullptr, nullptr);
        addParamPlugin(
            "layers", OUtils::EXT_TEXTURE, 0, nullptr,
            "enable=(::mode=1, ::flag=1; ::mode=2), displayName=(Layers); startRollout=(<EndRollout>)");
        addOutputParamTextureFloat("out_amount", nullptr, nullptr);
        addOutputParamTextureFloat("out_silent", nullptr, nullptr);
    }
};

// The amount as a float texture.
class WitnessOutput : public OUtils::PluginBase, public OUtils::TextureFloatInterface {
public:
    using PluginBase::releaseInterface;
    using TextureFloatInterface::releaseInterface;
    OUtils::PluginBase* getPlugin() override { return this; }
    float evalFloat(const OUtils::OmbrixContext&) override { return amount; }
    void evalFloatBounds(float* lower, float*) override { *lower = amount; } // upper stays unwritten

    float amount = 0.0f;
};

class Witness : public OUtils::OmbrixTexture, public OUtils::RTTexInterface {
public:
    explicit Witness(OUtils::OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("amount", &amount);
        paramList->setParamCache("text", &text);
        paramList->setParamCache("object", &object);
        paramList->setParamCache("objects", &objects);
        paramList->setOutputParamCache("out_amount", &output);
    }
    ~Witness() override { tell("deleted"); }

    OUtils::PluginBase* getPlugin() override { return this; }
    OUtils::PluginInterface* getInterface(OUtils::InterfaceId id) override
    {
        if (id == OUtils::EXT_RTTEX) return static_cast<OUtils::RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }
    // Adds a bitmap of a white and a dark blue pixel, with a hash when it is asked as "hashed".
    int getSource(const char* name, const char* tag, const char* descriptor, OUtils::ShaderSource& source,
                  OUtils::OCLData& data) override
    {
        OUtils::PtrArray<int> pixels(2);
        pixels[0] = -1;
        pixels[1] = 1;
        const int index = data.addBitmapFile(pixels, nullptr, 0, 2, 1, 1.0f, getPluginName(), 1);
        if (std::string(name) == "hashed") data.setBitmapHash(index, 4000000000u);
        source.printf("bitmap %d [%s] [%s] [%s]", index, name, tag, descriptor);
        return 1;
    }

    OUtils::AColor* evalColor(OUtils::AColor* result, const OUtils::OmbrixContext& context) override
    {
        if (std::string(text.str()) == "throw at a point") throw OUtils::ExceptionMsg("no color today");
        *result = {static_cast<float>(context.sampleStamp),
                   static_cast<float>(context.threadRecord->threadIndex),
                   static_cast<float>(context.shadeFlags), static_cast<float>(context.filteringEnabled())};
        return result;
    }
    void evalColorBounds(OUtils::AColor* lower, OUtils::AColor*) override { lower->g = amount; }

    void renderBegin(OUtils::OmbrixRenderer* renderer) override
    {
        tell("renderBegin");
        renderer->getLogger()->warning("%s begins", getPluginName());
        renderer->getProgress()->setText("preparing");
    }
    void frameBegin(OUtils::OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        tell("frameBegin");
        output.amount = amount;
        if (std::string(text.str()) == "throw") throw OUtils::ExceptionMsg("no %s today", getPluginName());
        if (!text.empty()) renderer->getLogger()->error("%s", text.str());
    }
    void frameEnd(OUtils::OmbrixRenderer*) override { tell("frameEnd"); }
    void renderEnd(OUtils::OmbrixRenderer* renderer) override
    {
        tell("renderEnd");
        renderer->getLogger()->log(OUtils::LogLevel::Info, "all done");
    }

    OUtils::PluginBase* object = nullptr;
    OUtils::OmbrixPluginList objects;

private:
    void tell(const char* call)
    {
        witnessCalls.push_back(std::string(getPluginName() ? getPluginName() : "?") + "." + call);
    }

    float amount = 0.0f;
    OUtils::CharString text;
    WitnessOutput output;
};

class NeedyParams : public OUtils::OmbrixParameterListDesc {
public:
    NeedyParams() { addParamString("file", "", -1, nullptr, ombrix::kRequiredFileMetadata); }
};
class Needy : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;
};

// An object of the scene that refers on to what it looks like, as a Node does.
class HolderParams : public OUtils::OmbrixParameterListDesc {
public:
    HolderParams() { addParamPlugin("look", OUtils::EXT_TEXTURE, -1, nullptr, nullptr); }
};
class Holder : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;
};

inline ombrix::BuiltinDesc<Witness, WitnessParams>
    witnessDesc({90001, "Witness", "Tells what happens [gpuSupport=(none)]", {OUtils::EXT_TEXTURE}});
inline ombrix::BuiltinDesc<Needy, NeedyParams>
    needyDesc({90002, "Needy", "Needs a file [gpuSupport=(none)]", {}});
inline ombrix::BuiltinDesc<Holder, HolderParams>
    holderDesc({90003, "Holder", "Holds a look [gpuSupport=(none)]", {}});

} // namespace support
