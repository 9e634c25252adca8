// TexPlusMinusAverage: the first, the sum, the difference or the average of a list of textures. Three lists
// and three outputs; the plugin itself shows the third.

#include "kernels/color/plus_minus_average.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/plus_minus_average_evaluators.h"

namespace nezaiva {

namespace {

class TexPlusMinusAverageParams : public OmbrixParameterListDesc {
public:
    TexPlusMinusAverageParams()
    {
        addParamInt("operation", kSum, -1, "0 - No operation; 1 - Sum; 2 - Subtract from first; 3 - Average",
                    "enum=(0:No operation; 1:Sum; 2:Subtract from first; 3:Average)");
        addParamPlugin("input1D", EXT_TEXTURE_FLOAT, 0, nullptr, nullptr);
        addParamPlugin("input2D", EXT_TEXTURE, 0, nullptr, nullptr);
        addParamPlugin("input3D", EXT_TEXTURE, 0, nullptr, nullptr);
        addOutputParamTextureFloat("output1D", nullptr, nullptr);
        addOutputParamTexture("output2D", nullptr, nullptr);
        addOutputParamTexture("output3D", nullptr, nullptr);
    }
};

class TexPlusMinusAverage final : public OmbrixTexture, public RTTexInterface {
public:
    explicit TexPlusMinusAverage(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("operation", &operation);
        paramList->setParamCache("input1D", &input1D);
        paramList->setParamCache("input2D", &input2D);
        paramList->setParamCache("input3D", &input3D);
        paramList->setOutputParamCache("output1D", static_cast<TextureFloatInterface*>(&evaluator1D));
        paramList->setOutputParamCache("output2D", static_cast<TextureInterface*>(&evaluator2D));
        paramList->setOutputParamCache("output3D", static_cast<TextureInterface*>(&evaluator3D));
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixTexture::getInterface(id);
    }

    void renderBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::renderBegin(renderer);
        evaluator1D.renderBegin(renderer);
        evaluator2D.renderBegin(renderer);
        evaluator3D.renderBegin(renderer);
    }
    void renderEnd(OmbrixRenderer* renderer) override
    {
        evaluator1D.renderEnd();
        evaluator2D.renderEnd();
        evaluator3D.renderEnd();
        OmbrixTexture::renderEnd(renderer);
    }
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        evaluator1D.frameBegin();
        evaluator2D.frameBegin();
        evaluator3D.frameBegin();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return evaluator3D.evalColor(result, context);
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { evaluator3D.evalColorBounds(lower, upper); }
    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override
    {
        return evaluator3D.getSource(name, tag, descriptor, source, data);
    }

private:
    int operation = 0;
    OmbrixPluginList input1D, input2D, input3D;
    TexPlusMinusAverage1d evaluator1D{&input1D, &operation};
    TexPlusMinusAverage3d evaluator2D{&input2D, &operation};
    TexPlusMinusAverage3d evaluator3D{&input3D, &operation};
};

class TexPlusMinusAverageDesc : public DescOf<TexPlusMinusAverage, TexPlusMinusAverageParams> {
public:
    TexPlusMinusAverageDesc()
        : DescOf({2009021001,
                  "TexPlusMinusAverage",
                  "Performs add/sub/avg operation on a list of 1d, 2d or 3d textures [gpuSupport=(full)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexPlusMinusAverageDesc texPlusMinusAverageDesc;

} // namespace

} // namespace nezaiva
