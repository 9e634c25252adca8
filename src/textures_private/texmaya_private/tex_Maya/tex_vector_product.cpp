// TexVectorProduct: dot, cross and matrix products of vectors that are given, and given back, as colours.

#include "kernels/color/vector_product.h"
#include "plugin_frame/plugin_desc_of.h"
#include "textures_private/texmaya_private/tex_Maya/inputs.h"

namespace nezaiva {

namespace {

constexpr Transform kIdentity;
constexpr float kUnbounded = 1e18f;

class TexVectorProductParams : public OmbrixParameterListDesc {
public:
    TexVectorProductParams()
    {
        addParamInt("operation", kDotProduct, -1,
                    "Operation (0 - No operation, 1 - Dot Product, 2 - Cross Product, 3 - Vector Matrix "
                    "Product, 4 - Point Matrix Product)",
                    "enum=(0:No operation; 1:Dot Product; 2:Cross Product; 3:Vector Matrix Product; 4:Point "
                    "Matrix Product)");
        addParamTexture("input1", -1, nullptr, nullptr);
        addParamTexture("input2", -1, nullptr, nullptr);
        addParamTextureTransform("transform", kIdentity, -1, nullptr, nullptr);
        addParamBool("normalize", false, -1,
                     "When this is true the output vector will be normalized (in case of dot product, the "
                     "input vectors are normalized before the operation)",
                     nullptr);
        addOutputParamTexture("color", nullptr, nullptr);
    }
};

Vector vectorOf(const AColor& color)
{
    return {color.r, color.g, color.b};
}

AColor colorOf(const Vector& vector)
{
    return {vector.x, vector.y, vector.z, 1.0f};
}

AColor least(const AColor& a, const AColor& b)
{
    return withAlpha(eachChannel([](float x, float y) { return std::min(x, y); }, a, b), 1.0f);
}

AColor greatest(const AColor& a, const AColor& b)
{
    return withAlpha(eachChannel([](float x, float y) { return std::max(x, y); }, a, b), 1.0f);
}

class TexVectorProduct final : public OmbrixTexture {
public:
    explicit TexVectorProduct(OmbrixPluginDesc* desc) : OmbrixTexture(desc)
    {
        paramList->setParamCache("operation", &operation);
        paramList->setParamCache("input1", &input1);
        paramList->setParamCache("input2", &input2);
        paramList->setParamCache("transform", &transform);
        paramList->setParamCache("normalize", &normalize);
        paramList->setOutputParamCache("color", static_cast<TextureInterface*>(this));
    }

    AColor* evalColor(AColor* result, const OmbrixContext& context) override
    {
        VectorProductInputs in{defaultInput, defaultInput, defaultTransform};
        if (input1) in.input1 = vectorOf(colorOr(input1, {}, context));
        if (input2) in.input2 = vectorOf(colorOr(input2, {}, context));
        if (transform) transform->evalTransform(&in.transform, context);
        *result = colorOf(vectorProduct(in, operation, normalize != 0, defaultResult));
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
            const ColorRange bounds = rangeOr(input1, unsetRange());
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
            *lower = {-kUnbounded, -kUnbounded, -kUnbounded, -kUnbounded};
            *upper = {kUnbounded, kUnbounded, kUnbounded, kUnbounded};
            break;
        default:
            *lower = *upper = colorOf(defaultResult);
            break;
        }
    }

private:
    ColorRange unsetRange() const { return {colorOf(defaultInput), colorOf(defaultInput)}; }

    // Kept as is: the pairs are whole vectors. A product of a corner that mixes channels of both bounds can
    // lie outside.
    void boundsOfPairs(AColor* lower, AColor* upper)
    {
        const ColorRange a = rangeOr(input1, unsetRange());
        const ColorRange b = rangeOr(input2, unsetRange());
        bool first = true;
        for (const AColor& endOfA : {a.lower, a.upper})
            for (const AColor& endOfB : {b.lower, b.upper}) {
                const VectorProductInputs pair{vectorOf(endOfA), vectorOf(endOfB), defaultTransform};
                const AColor product = colorOf(vectorProduct(pair, operation, false, defaultResult));
                *lower = first ? product : least(*lower, product);
                *upper = first ? product : greatest(*upper, product);
                first = false;
            }
    }

    int operation = 0;
    TextureInterface* input1 = nullptr;
    TextureInterface* input2 = nullptr;
    TextureTransformInterface* transform = nullptr;
    int normalize = 0;
    const Vector defaultInput;
    const Vector defaultResult{1.0f, 0.0f, 0.0f};
    const Transform defaultTransform;
};

class TexVectorProductDesc : public DescOf<TexVectorProduct, TexVectorProductParams> {
public:
    TexVectorProductDesc()
        : DescOf({2008082702,
                  "TexVectorProduct",
                  "Performas a vector operation between two textures like TexVectorOp, but the inputs and "
                  "output are colors [gpuSupport=(no",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexVectorProductDesc texVectorProductDesc;

} // namespace

} // namespace nezaiva
