#include "host/params/value.h"

namespace ombrix {

const char* declarationName(Declaration declaration)
{
    switch (declaration) {
    case Declaration::Bool: return "addParamBool";
    case Declaration::Int: return "addParamInt";
    case Declaration::Float: return "addParamFloat";
    case Declaration::Color: return "addParamColor";
    case Declaration::String: return "addParamString";
    case Declaration::Plugin: return "addParamPlugin";
    case Declaration::Transform: return "addParamTransform";
    case Declaration::Texture: return "addParamTexture";
    case Declaration::TextureFloat: return "addParamTextureFloat";
    case Declaration::TextureInt: return "addParamTextureInt";
    case Declaration::TextureTransform: return "addParamTextureTransform";
    case Declaration::TextureVector: return "addParamTextureVector";
    case Declaration::OutputTexture: return "addOutputParamTexture";
    case Declaration::OutputTextureFloat: return "addOutputParamTextureFloat";
    }
    return "";
}

OUtils::InterfaceId textureInterfaceOf(Declaration declaration)
{
    switch (declaration) {
    case Declaration::Texture: return OUtils::EXT_TEXTURE;
    case Declaration::TextureFloat: return OUtils::EXT_TEXTURE_FLOAT;
    case Declaration::TextureInt: return OUtils::EXT_TEXTURE_INT;
    case Declaration::TextureTransform: return OUtils::EXT_TEXTURE_TRANSFORM;
    case Declaration::TextureVector: return OUtils::EXT_TEXTURE_VECTOR;
    default: return 0;
    }
}

} // namespace ombrix
