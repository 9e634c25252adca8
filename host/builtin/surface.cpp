// Surface: the diffuse material. It reads its textures; the renderer's lighting does the rest.

#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"

#include <ombrix/plugin.h>

namespace ombrix {

namespace {

using namespace OUtils;

constexpr AColor kDefaultDiffuse{0.5f, 0.5f, 0.5f, 1.0f};
constexpr AColor kDefaultEmission{0.0f, 0.0f, 0.0f, 1.0f};
constexpr AColor kDefaultOpacity{1.0f, 1.0f, 1.0f, 1.0f};

class SurfaceParams : public OmbrixParameterListDesc {
public:
    SurfaceParams()
    {
        addParamTexture("diffuse", kDefaultDiffuse, -1, "The share of the light that is scattered, 0 to 1",
                        "startRollout=(Surface)");
        addParamTexture("emission", kDefaultEmission, -1, "The light that the surface gives off by itself",
                        nullptr);
        addParamTexture("opacity", kDefaultOpacity, -1, "0 lets everything through, 1 nothing",
                        "startRollout=(<EndRollout>)");
    }
};

Color colorOr(TextureInterface* input, const AColor& fallback, const OmbrixContext& context)
{
    AColor color = fallback;
    if (input) input->evalColor(&color, context);
    return {color.r, color.g, color.b};
}

// 0 to 1; a number that is none counts as opaque.
float clampedOpacity(float opacity)
{
    return opacity < 1.0f ? (opacity > 0.0f ? opacity : 0.0f) : 1.0f;
}

class Surface : public OmbrixMaterial, public SurfaceMaterialInterface {
public:
    explicit Surface(OmbrixPluginDesc* desc) : OmbrixMaterial(desc)
    {
        paramList->setParamCache("diffuse", &diffuse);
        paramList->setParamCache("emission", &emission);
        paramList->setParamCache("opacity", &opacity);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kSurfaceMaterialId) return static_cast<SurfaceMaterialInterface*>(this);
        return OmbrixMaterial::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixMaterial::frameBegin(renderer);
        lighting = findInterface<SurfaceLightingInterface>(renderer, kSurfaceLightingId);
        opaque = !opacity || isPlainAndFull();
    }

    bool isOpaque() override { return opaque; }

    void shade(ShadeRequest& request, const OmbrixContext& context) override
    {
        const Color o = colorOr(opacity, kDefaultOpacity, context);
        SurfaceSample sample;
        sample.opacity = {clampedOpacity(o.r), clampedOpacity(o.g), clampedOpacity(o.b)};
        sample.diffuse = colorOr(diffuse, kDefaultDiffuse, context);
        sample.emission = colorOr(emission, kDefaultEmission, context);
        if (lighting)
            lighting->shadeSurface(context, sample, &request.result);
        else
            fillUnlit(sample, &request.result);
    }
    // The scattering is told to the lighting with the shade; there is no sampler to lend.
    BSDFSampler* getBSDF(const OmbrixContext& /*context*/) override { return nullptr; }
    void releaseBSDF(BSDFSampler* /*sampler*/, const OmbrixContext& /*context*/) override {}

private:
    // Whether the scene wrote a plain colour of 1 or above, which needs no evaluation.
    bool isPlainAndFull()
    {
        OmbrixPluginParameter* parameter = paramList->getParam("opacity");
        if (!parameter || parameter->getType() == ParameterType::Plugin) return false;
        AColor lower, upper;
        opacity->evalColorBounds(&lower, &upper);
        return lower.r >= 1.0f && lower.g >= 1.0f && lower.b >= 1.0f;
    }

    static void fillUnlit(const SurfaceSample& s, ShadeResult* result)
    {
        const Color& o = s.opacity;
        const float coverage = mean(o);
        result->color = {s.emission.r * o.r, s.emission.g * o.g, s.emission.b * o.b, coverage};
        result->transparency = {1.0f - o.r, 1.0f - o.g, 1.0f - o.b, 1.0f - coverage};
        result->alpha = {o.r, o.g, o.b, coverage};
        result->alphaTransparency = result->transparency;
    }

    TextureInterface* diffuse = nullptr;
    TextureInterface* emission = nullptr;
    TextureInterface* opacity = nullptr;

    SurfaceLightingInterface* lighting = nullptr;
    bool opaque = true;
};

BuiltinDesc<Surface, SurfaceParams>
    surfaceDesc({3300000104,
                 "Surface",
                 "A diffuse surface, with emission and opacity [gpuSupport=(none)]",
                 {EXT_MATERIAL, EXT_BSDF}});

} // namespace

} // namespace ombrix
