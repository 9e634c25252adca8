// The smallest plug-in library: one texture, its colour times a number.
#include <ombrix/ombrix.h>

using namespace OUtils;

namespace {

class OutsideParams : public OmbrixParameterListDesc {
public:
    OutsideParams()
    {
        addParamColor("color", Color{0.25f, 0.5f, 0.75f}, -1, "The color", nullptr);
        addParamFloat("gain", 2.0f, -1, "What the color is multiplied by", nullptr);
    }
};

class OutsideTexture : public OmbrixTexture {
public:
    explicit OutsideTexture(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("color", &color);
        paramList->setParamCache("gain", &gain);
    }
    AColor* evalColor(AColor* result, const OmbrixContext& /*context*/) override
    {
        *result = {color.r * gain, color.g * gain, color.b * gain, 1.0f};
        return result;
    }
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        *lower = *upper = {color.r * gain, color.g * gain, color.b * gain, 1.0f};
    }

private:
    Color3f color;
    float gain = 0.0f;
};

class OutsideDesc : public OmbrixPluginDesc {
public:
    OutsideDesc() { parameterDesc = &parameters; }
    PluginId getPluginID() override { return 990000001; }
    PluginBase* newPlugin(OmbrixPluginHost* /*host*/) override { return new OutsideTexture(this); }
    void deletePlugin(PluginBase* plugin) override { delete plugin; }
    int supportsInterface(InterfaceId id) override { return id == EXT_OMBRIX_PLUGIN || id == EXT_TEXTURE; }
    const char* getName() override { return "OutsideTexture"; }
    void registerPlugin(OmbrixPluginHost* host) override
    {
        if (!host) return;
        host->addPlugin(this);
        parameters.registerParameters(host, this);
    }
    void unregisterPlugin(OmbrixPluginHost* host) override
    {
        if (host) host->removePlugin(this);
    }
    const char* getDescription() override { return "A color times a number [gpuSupport=(none)]"; }

private:
    OutsideParams parameters;
};

class OutsideLibrary : public PluginLibDesc {
public:
    const char* getName() override { return "outside"; }
    const char* getDescription() override { return "A library built against the installed headers"; }
    int enumPlugins(EnumPluginsCallback* callback) override
    {
        if (callback) callback->processPlugin(&desc);
        return 1;
    }

private:
    OutsideDesc desc;
};

} // namespace

extern "C" __attribute__((visibility("default"))) PluginLibDesc* getLibDesc()
{
    static OutsideLibrary library;
    return &library;
}
