// The smallest plug-in library: one texture, its colour times a number.
#include <ombrix/ombrix.h>

using namespace OUtils;

namespace {

class OutsideTexture : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    static constexpr Identity kIdentity{
        990000001, "OutsideTexture", "A color times a number [gpuSupport=(none)]", {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("color", &OutsideTexture::color, Color{0.25f, 0.5f, 0.75f}, "The color");
        p("gain", &OutsideTexture::gain, 2.0f, "What the color is multiplied by");
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
    PluginKindDesc<OutsideTexture> desc;
};

} // namespace

extern "C" __attribute__((visibility("default"))) PluginLibDesc* getLibDesc()
{
    static OutsideLibrary library;
    return &library;
}
