// The interfaces through which plugins read one another. All evaluations are const in effect, run on any
// number of render threads at once, take no lock and allocate nothing. They never fail.
#pragma once

#include <ombrix/context.h>
#include <ombrix/plugin_base.h>
#include <ombrix/types.h>

namespace OUtils {

class TextureInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_TEXTURE;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_TEXTURE"; }

    // Writes the colour at the context's point and returns result.
    virtual AColor* evalColor(AColor* result, const OmbrixContext& context) = 0;
    // Writes the bounds of all colours that evalColor can give, without a context.
    virtual void evalColorBounds(AColor* lower, AColor* upper) = 0;
    // Writes the gradient over the shading position (x, y, z; the fourth is padding); returns result.
    virtual AColor* evalColorGradient(AColor* result, const OmbrixContext& /*context*/)
    {
        *result = AColor{};
        return result;
    }
};

class TextureFloatInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_TEXTURE_FLOAT;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_TEXTURE_FLOAT"; }

    virtual float evalFloat(const OmbrixContext& context) = 0;
    virtual void evalFloatBounds(float* lower, float* upper) = 0;
    virtual AColor* evalFloatGradient(AColor* result, const OmbrixContext& /*context*/)
    {
        *result = AColor{};
        return result;
    }
};

class TextureIntInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_TEXTURE_INT;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_TEXTURE_INT"; }

    virtual int evalInt(const OmbrixContext& context) = 0;
};

class TextureTransformInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_TEXTURE_TRANSFORM;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_TEXTURE_TRANSFORM"; }

    virtual void evalTransform(Transform* result, const OmbrixContext& context) = 0;
};

class TextureVectorInterface : public PluginInterface {
public:
    static constexpr InterfaceId kId = EXT_TEXTURE_VECTOR;
    InterfaceId getInterfaceID() override { return kId; }
    const char* getInterfaceName() override { return "EXT_TEXTURE_VECTOR"; }

    virtual void evalVector(Vector* result, const OmbrixContext& context) = 0;
    virtual void evalVectorBounds(Vector* lower, Vector* upper) = 0;
};

} // namespace OUtils
