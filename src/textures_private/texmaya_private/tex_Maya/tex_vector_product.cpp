// TexVectorProduct: dot, cross and matrix products of vectors that are given, and given back, as colours.
// It has no GPU form.

#include "kernels/color/ranges.h"
#include "kernels/color/vector_product.h"
#include "plugin_frame/kind_desc.h"

namespace nezaiva {

namespace {

// Kept as is: the product of an operation outside the enumeration.
constexpr Vector kUnknownProduct{1.0f, 0.0f, 0.0f};

Vector vectorOf(const AColor& color)
{
    return {color.r, color.g, color.b};
}

AColor colorOf(const Vector& vector)
{
    return {vector.x, vector.y, vector.z, 1.0f};
}

class TexVectorProduct final : public OmbrixTexture {
public:
    using OmbrixTexture::OmbrixTexture;

    // Kept as is: the description ends in the middle of its tag.
    static constexpr Identity kIdentity{
        2008082702,
        "TexVectorProduct",
        "Performas a vector operation between two textures like TexVectorOp, but the inputs and "
        "output are colors [gpuSupport=(no",
        {EXT_TEXTURE}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("operation", &TexVectorProduct::operation, kDotProduct,
          "Operation (0 - No operation, 1 - Dot Product, 2 - Cross Product, 3 - Vector Matrix Product, 4 - "
          "Point Matrix Product)",
          "enum=(0:No operation; 1:Dot Product; 2:Cross Product; 3:Vector Matrix Product; 4:Point Matrix "
          "Product)");
        p("input1", &TexVectorProduct::input1, noDefault);
        p("input2", &TexVectorProduct::input2, noDefault);
        p("transform", &TexVectorProduct::transform, Transform{});
        p("normalize", &TexVectorProduct::normalize, false,
          "When this is true the output vector will be normalized (in case of dot product, the input "
          "vectors are normalized before the operation)");
        p.output("color", itself);
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        const Vector a = vectorOf(input1(context));
        const Vector b = vectorOf(input2(context));
        const VectorProductInputs in{a, b, transform(context)};
        *result = colorOf(vectorProduct(in, operation, normalize != 0, kUnknownProduct));
        return result;
    }

    void evalColorBounds(AColor* lower, AColor* upper) override
    {
        if (normalize && operation != kPointMatrixProduct) {
            *lower = {-1.0f, -1.0f, -1.0f, 1.0f};
            *upper = {1.0f, 1.0f, 1.0f, 1.0f};
            return;
        }
        switch (operation) {
        case kNoOperation: {
            const ColorRange bounds = input1.bounds();
            *lower = withAlpha(rgbOf(bounds.lower), 1.0f);
            *upper = withAlpha(rgbOf(bounds.upper), 1.0f);
            break;
        }
        case kDotProduct:
        case kCrossProduct:
            boundsOfPairs(lower, upper);
            break;
        case kVectorMatrixProduct:
        case kPointMatrixProduct:
            *lower = kUnboundedBelow;
            *upper = kUnboundedAbove;
            break;
        default:
            *lower = *upper = colorOf(kUnknownProduct);
            break;
        }
    }

private:
    // Kept as is: the pairs are whole vectors. A product of a corner that mixes channels of both bounds can
    // lie outside.
    void boundsOfPairs(AColor* lower, AColor* upper)
    {
        const ColorRange a = input1.bounds();
        const ColorRange b = input2.bounds();
        bool first = true;
        for (const AColor& endOfA : {a.lower, a.upper})
            for (const AColor& endOfB : {b.lower, b.upper}) {
                const VectorProductInputs pair{vectorOf(endOfA), vectorOf(endOfB), Transform{}};
                const AColor product = colorOf(vectorProduct(pair, operation, false, kUnknownProduct));
                *lower = first ? product : lesserChannels(*lower, product);
                *upper = first ? product : greaterChannels(*upper, product);
                first = false;
            }
    }

    int operation = 0;
    ColorInput input1, input2; // unset they are zero
    TransformInput transform;
    int normalize = 0;
};

using TexVectorProductParams = KindParams<TexVectorProduct>;
using TexVectorProductDesc = KindDesc<TexVectorProduct, TexVectorProductParams>;
TexVectorProductDesc texVectorProductDesc;

} // namespace

} // namespace nezaiva
