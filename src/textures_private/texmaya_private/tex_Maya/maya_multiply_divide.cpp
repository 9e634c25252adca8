// MayaMultiplyDivide: the product, the quotient or the power of two colours, channel by channel.

#include "kernels/color/multiply_divide.h"
#include "kernels/color/ranges.h"
#include "plugin_frame/depth_memo.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/source_text.h"

namespace nezaiva {

namespace {

// Kept as is: on the GPU an unset colour is black, not white.
constexpr const char* kUnsetSlot = "color 0.0 0.0 0.0 0.0\n";

// Does the work of the plugin, and answers its output parameter. The fields are the plugin's.
class MultiplyDivideTex : public Offers<PluginBase, TextureInterface, GpuTexture> {
public:
    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        *result = memo.getOr(context, [&] {
            const Color a = color1.rgb(context);
            const Color b = color2.rgb(context);
            return withAlpha(multiplyDivide(a, b, operation), 1.0f);
        });
        return result;
    }

    // Kept as is: nothing guards the bounds against a division by zero, and an operation outside the
    // enumeration leaves red, green and blue unwritten.
    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (const ChannelFormula formula = multiplyDivideFormula(operation)) {
            const ColorRange a = color1.bounds();
            const ColorRange b = color2.bounds();
            *lower = withAlpha(leastOfPairs(formula, a, b), 1.0f);
            *upper = withAlpha(greatestOfPairs(formula, a, b), 1.0f);
        }
        lower->a = upper->a = 1.0f;
    }

    int writeSource(SourceText& text) override
    {
        text.slotOr(color1, kUnsetSlot);
        text.slotOr(color2, kUnsetSlot);
        text.op(GpuOperator::MultiplyDivide);
        text.operands({static_cast<float>(operation)});
        return 1;
    }

    ColorInput color1, color2;
    int operation = 0;
    DepthMemo memo;
};

class MultiplyDivide final : public Offers<OmbrixTexture, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2006072902,
        "MayaMultiplyDivide",
        "Provides multiplication/division of two input textures. Subset of TexAColorOp. "
        "[gpuSupport=(full)]",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        const auto work = [](auto field) { return within(&MultiplyDivide::tex, field); };
        p("color1", work(&MultiplyDivideTex::color1), kWhite, "First color");
        p("color2", work(&MultiplyDivideTex::color2), kWhite, "Second color");
        p("operation", work(&MultiplyDivideTex::operation), kProduct,
          "Operation (1 - multiply, 2 - divide, 3 - power)", "enum=(1:Multiply; 2:Divide; 3:Power)");
        p.output("color", &MultiplyDivide::tex, "The resulting color");
    }

    void renderBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::renderBegin(renderer);
        tex.memo.build(renderer->getThreadCount());
    }
    void renderEnd(OmbrixRenderer* renderer) override
    {
        tex.memo.clear();
        OmbrixTexture::renderEnd(renderer);
    }
    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixTexture::frameBegin(renderer);
        tex.memo.reset();
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        return tex.evalColor(result, context);
    }
    void evalColorBounds(AColor* lower, AColor* upper) override { tex.evalColorBounds(lower, upper); }
    int writeSource(SourceText& text) override { return tex.writeSource(text); }

private:
    MultiplyDivideTex tex;
};

using MultiplyDivideParams = KindParams<MultiplyDivide>;
using MultiplyDivideDesc = KindDesc<MultiplyDivide, MultiplyDivideParams>;
MultiplyDivideDesc multiplyDivideDesc;

} // namespace

} // namespace nezaiva
