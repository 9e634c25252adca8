// TexPlusMinusAverage: the first, the sum, the difference or the average of a list of textures. Three lists
// and three outputs; the plugin itself shows the third.

#include "kernels/color/plus_minus_average.h"
#include "plugin_frame/kind_desc.h"
#include "textures_private/texmaya_private/tex_Maya/plus_minus_average_evaluators.h"

namespace nezaiva {

namespace {

class TexPlusMinusAverage final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2009021001,
        "TexPlusMinusAverage",
        "Performs add/sub/avg operation on a list of 1d, 2d or 3d textures [gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("operation", &TexPlusMinusAverage::operation, kSum,
          "0 - No operation; 1 - Sum; 2 - Subtract from first; 3 - Average",
          "enum=(0:No operation; 1:Sum; 2:Subtract from first; 3:Average)");
        p("input1D", &TexPlusMinusAverage::input1D, emptyList);
        p("input2D", &TexPlusMinusAverage::input2D, emptyList);
        p("input3D", &TexPlusMinusAverage::input3D, emptyList);
        p.output("output1D", &TexPlusMinusAverage::evaluator1D);
        p.output("output2D", &TexPlusMinusAverage::evaluator2D);
        p.output("output3D", &TexPlusMinusAverage::evaluator3D);
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
        input1D.resolve();
        input2D.resolve();
        input3D.resolve();
        evaluator1D.frameBegin();
        evaluator2D.frameBegin();
        evaluator3D.frameBegin();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return evaluator3D.evalColor(result, context);
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { evaluator3D.evalColorBounds(lower, upper); }
    int writeSource(SourceText& text) override { return evaluator3D.writeSource(text); }

private:
    int operation = 0;
    PluginListInput<TextureFloatInterface> input1D;
    PluginListInput<TextureInterface> input2D, input3D;
    TexPlusMinusAverage1d evaluator1D{input1D, operation};
    TexPlusMinusAverage3d evaluator2D{input2D, operation};
    TexPlusMinusAverage3d evaluator3D{input3D, operation};
};

using TexPlusMinusAverageParams = KindParams<TexPlusMinusAverage>;
using TexPlusMinusAverageDesc = KindDesc<TexPlusMinusAverage, TexPlusMinusAverageParams>;
TexPlusMinusAverageDesc texPlusMinusAverageDesc;

} // namespace

} // namespace nezaiva
