// Surface: the diffuse material. It reads its textures; the renderer's lighting does the rest.

#include "host/integrator/scene_interfaces.h"
#include "host/plugins/builtin_desc.h"

namespace ombrix {

namespace {

using namespace OUtils;

// What a texture leaves unwritten is as it is unset.
Color colorOf(const ColorInput& input, const OmbrixContext& context)
{
    AColor color = input.unset;
    input.evalColor(&color, context);
    return {color.r, color.g, color.b};
}

// 0 to 1; a number that is none counts as opaque.
float clampedOpacity(float opacity)
{
    return opacity < 1.0f ? (opacity > 0.0f ? opacity : 0.0f) : 1.0f;
}

class Surface final : public Offers<OmbrixMaterial, SurfaceMaterialInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{3300000104,
                                        "Surface",
                                        "A diffuse surface, with emission and opacity [gpuSupport=(none)]",
                                        {EXT_MATERIAL, EXT_BSDF}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("diffuse", &Surface::diffuse, AColor{0.5f, 0.5f, 0.5f, 1.0f},
          "The share of the light that is scattered, 0 to 1", "startRollout=(Surface)");
        p("emission", &Surface::emission, AColor{0.0f, 0.0f, 0.0f, 1.0f},
          "The light that the surface gives off by itself");
        p("opacity", &Surface::opacity, AColor{1.0f, 1.0f, 1.0f, 1.0f},
          "0 lets everything through, 1 nothing", "startRollout=(<EndRollout>)");
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixMaterial::frameBegin(renderer);
        lighting = find<SurfaceLightingInterface>(renderer);
        opaque = !opacity || isPlainAndFull();
    }

    bool isOpaque() override { return opaque; }

    void shade(ShadeRequest& request, const OmbrixContext& context) override
    {
        const Color o = colorOf(opacity, context);
        SurfaceSample sample;
        sample.opacity = {clampedOpacity(o.r), clampedOpacity(o.g), clampedOpacity(o.b)};
        sample.diffuse = colorOf(diffuse, context);
        sample.emission = colorOf(emission, context);
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

    ColorInput diffuse, emission, opacity;

    SurfaceLightingInterface* lighting = nullptr;
    bool opaque = true;
};

BuiltinDesc<Surface> surfaceDesc;

} // namespace

} // namespace ombrix
