// A plugin kind for tests of scenes and probes: it has parameters of every declaration, and tells what the
// host does with it. Include it in one file of a test program only.
#pragma once

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/parameter_values.h"
#include "host/plugins/builtin_desc.h"

#include <ombrix/exception_msg.h>
#include <ombrix/world_interfaces.h>

#include <string>
#include <vector>

namespace support {

// Every call of every witness' life, "NAME.renderBegin" and so on, and "NAME.deleted".
inline std::vector<std::string> witnessCalls;

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

class Witness final : public OUtils::Offers<OUtils::OmbrixTexture, OUtils::RTTexInterface> {
public:
    using Offers::Offers;
    ~Witness() override { tell("deleted"); }

    static constexpr OUtils::Identity kIdentity{
        90001, "Witness", "Tells what happens [gpuSupport=(none)]", {OUtils::EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        using namespace OUtils;
        p("flag", unbound<int>, false);
        p("mode", unbound<int>, 0, "What to do", "enum=(0:Plain; 1:Billow; 2:Wave), startRollout=(Looks)");
        p("count", unbound<int>, 3, nullptr, "minValue=(0), maxValue=(9)");
        p("amount", &Witness::amount, 0.1f, nullptr, "units=(radians), quantityType=(angle)");
        p("tint", unbound<Color3f>, Color{0.5f, 0.25f, 1.0f});
        p("text", &Witness::text, "");
        p("file", unbound<CharString>, "", nullptr, ombrix::kFileMetadata);
        p("matrix", unbound<TraceTransform>, TransformDefault{});
        p("ints", unbound<PtrArray<int>>, emptyList);
        p("floats", unbound<PtrArray<float>>, emptyList);
        p("input", unbound<ColorInput>, noDefault);
        p("weight", unbound<FloatInput>, 1.0f);
        p("choice", unbound<IntInput>, 0, nullptr, "enum=(0:off; 1:on)");
        p("vectors", unbound<ombrix::TimedVectors>, emptyList, nullptr, ombrix::kThreeElementsMetadata);
        p("object", unbound<PluginInput<WorldMatrixInterface>>, noDefault);
        p("objects", unbound<PluginListInput<WorldMatrixInterface>>, emptyList);
        p("layers", unbound<PluginListInput<TextureInterface>>, emptyList, nullptr,
          "enable=(::mode=1, ::flag=1; ::mode=2), displayName=(Layers); startRollout=(<EndRollout>)");
        p.output("out_amount", &Witness::output);
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
        Offers::frameBegin(renderer);
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

private:
    void tell(const char* call)
    {
        witnessCalls.push_back(std::string(getPluginName() ? getPluginName() : "?") + "." + call);
    }

    float amount = 0.0f;
    OUtils::CharString text;
    WitnessOutput output;
};

// The witness' parameters, and an output that no object answers.
class WitnessParams : public OUtils::KindParams<Witness> {
public:
    WitnessParams() { addOutputParamTextureFloat("out_silent", nullptr, nullptr); }
};

class Needy final : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;

    static constexpr OUtils::Identity kIdentity{90002, "Needy", "Needs a file [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("file", OUtils::unbound<OUtils::CharString>, "", nullptr, ombrix::kRequiredFileMetadata);
    }
};

// An object of the scene that refers on to what it looks like, as a Node does.
class Holder final : public OUtils::OmbrixPlugin {
public:
    using OmbrixPlugin::OmbrixPlugin;

    static constexpr OUtils::Identity kIdentity{90003, "Holder", "Holds a look [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("look", OUtils::unbound<OUtils::PluginInput<OUtils::TextureInterface>>, OUtils::noDefault);
    }
};

inline ombrix::BuiltinDesc<Witness, WitnessParams> witnessDesc;
inline ombrix::BuiltinDesc<Needy> needyDesc;
inline ombrix::BuiltinDesc<Holder> holderDesc;

} // namespace support
