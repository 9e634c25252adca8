// TexDistanceBetween: the distance of two points that are given as colours, each under a transform of its
// own.

#include "numeric/vector_math.h"
#include "plugin_frame/fallbacks.h"
#include "plugin_frame/plugin_desc_of.h"

namespace nezaiva {

namespace {

constexpr AColor kUnsetPoint{0.0f, 0.0f, 0.0f, 0.0f};
constexpr Transform kIdentity; // declared, and what an unset transform reads as
constexpr float kUnbounded = 1e18f;

class TexDistanceBetweenParams : public OmbrixParameterListDesc {
public:
    TexDistanceBetweenParams()
    {
        addParamTexture("point1", -1, nullptr, nullptr);
        addParamTexture("point2", -1, nullptr, nullptr);
        addParamTextureTransform("transform1", kIdentity, -1, nullptr, nullptr);
        addParamTextureTransform("transform2", kIdentity, -1, nullptr, nullptr);
        addOutputParamTextureFloat("distance", nullptr, nullptr);
    }
};

class TexDistanceBetween final : public OmbrixTextureFloat {
public:
    explicit TexDistanceBetween(OmbrixPluginDesc* desc) : OmbrixTextureFloat(desc)
    {
        paramList->setParamCache("point1", &point1);
        paramList->setParamCache("point2", &point2);
        paramList->setParamCache("transform1", &transform1);
        paramList->setParamCache("transform2", &transform2);
        paramList->setOutputParamCache("distance", static_cast<TextureFloatInterface*>(this));
    }

    float evalFloat(const OmbrixContext& context) override
    {
        const Vector a = placedPoint(point1, transform1, context);
        const Vector b = placedPoint(point2, transform2, context);
        return lengthOf(a - b);
    }

    // Kept as is: a distance is never negative, and the lower bound is.
    void evalFloatBounds(float* lower, float* upper) override
    {
        *lower = -kUnbounded;
        *upper = kUnbounded;
    }

private:
    static Vector placedPoint(TextureInterface* point, TextureTransformInterface* transform,
                              const OmbrixContext& context)
    {
        const AColor color = colorOr(point, kUnsetPoint, context);
        Transform placement = kIdentity;
        if (transform) transform->evalTransform(&placement, context);
        return transformedPoint(placement, {color.r, color.g, color.b});
    }

    TextureInterface* point1 = nullptr;
    TextureInterface* point2 = nullptr;
    TextureTransformInterface* transform1 = nullptr;
    TextureTransformInterface* transform2 = nullptr;
};

class TexDistanceBetweenDesc : public DescOf<TexDistanceBetween, TexDistanceBetweenParams> {
public:
    TexDistanceBetweenDesc()
        : DescOf({2008082801,
                  "TexDistanceBetween",
                  "Outputs the distance between points specified by two input textures [gpuSupport=(none)]",
                  {EXT_OMBRIX_PLUGIN, EXT_TEXTURE}})
    {
    }
};
TexDistanceBetweenDesc texDistanceBetweenDesc;

} // namespace

} // namespace nezaiva
