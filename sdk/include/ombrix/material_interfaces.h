// Materials: shading a point, and the sampler of its scattering function.
#pragma once

#include <ombrix/context.h>
#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

namespace OUtils {

// The result of a shade. color is what leaves the point towards the eye, transparency the factor of what
// comes from behind; the two alphas are the same for the alpha channel.
struct ShadeResult {
    AColor color;
    AColor transparency;
    AColor alpha;
    AColor alphaTransparency;
};

// What a material is asked with, beside the context: the record to fill, and the one for transparent
// hits, which a material fills when the point lets the ray through unseen.
struct ShadeRequest {
    ShadeResult result;
    ShadeResult transparentHit;
};

class BSDFSampler;

class MaterialInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_MATERIAL;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_MATERIAL"; }

    virtual void shade(ShadeRequest& request, const OmbrixContext& context) = 0;
};

class BSDFInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_BSDF;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_BSDF"; }

    // A sampler for this point, owned by the material and given back to it on the same thread before
    // the next point; or null.
    virtual BSDFSampler* getBSDF(const OmbrixContext& context) = 0;
    // Takes a sampler of getBSDF back; null does nothing.
    virtual void releaseBSDF(BSDFSampler* sampler, const OmbrixContext& context) = 0;
};

} // namespace OUtils
