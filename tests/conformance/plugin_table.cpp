#include "plugin_table.h"

namespace conformance {

using namespace OUtils;

const std::vector<PluginRow>& pluginTable()
{
    static const std::vector<PluginRow> table = {
        {"TexColorCondition",
         2015101514,
         {EXT_TEXTURE},
         {EXT_TEXTURE, EXT_RTTEX},
         "Output either color A or B depending on condition [gpuSupport=(full)]",
         texColorConditionDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_color_condition"},
        {"TexFloatCondition",
         2017022418,
         {EXT_TEXTURE_FLOAT},
         {EXT_TEXTURE_FLOAT, EXT_RTTEX},
         "Output either float A or B depending on condition [gpuSupport=(full)]",
         texFloatConditionDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_float_condition"},
        {"TexColorConstant",
         2015101513,
         {EXT_TEXTURE},
         {EXT_TEXTURE, EXT_RTTEX},
         "Yield a constant color [gpuSupport=(full)]",
         texColorConstantDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_color_constant"},
        {"TexFloatConstant",
         2017022517,
         {EXT_TEXTURE_FLOAT},
         {EXT_TEXTURE_FLOAT},
         "Yield a constant float value [gpuSupport=(none)]",
         texFloatConstantDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_float_constant"},
        {"TexColorLogic",
         2015101517,
         {EXT_TEXTURE_FLOAT},
         {EXT_TEXTURE_FLOAT, EXT_RTTEX},
         "Compare colors [gpuSupport=(full)]",
         texColorLogicDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_color_logic"},
        {"TexFloatLogic",
         2017022713,
         {EXT_TEXTURE_FLOAT},
         {EXT_TEXTURE_FLOAT, EXT_RTTEX},
         "Compare numbers [gpuSupport=(full)]",
         texFloatLogicDeclarations,
         "textures_private/texmaya_private/tex_Maya/tex_float_logic"},
        {"TexSimplexNoise",
         2015092818,
         {EXT_TEXTURE},
         {EXT_TEXTURE, EXT_RTTEX},
         "Implements the Maya simplex noise procedural texture [gpuSupport=(none)]",
         texSimplexNoiseDeclarations,
         "textures_private/texmaya_private/noises/tex_simplex_noise"},
        {"UVWGenMayaPlace2dTexture",
         2008041904,
         {EXT_UVWGEN},
         {EXT_UVWGEN, EXT_RTTEX},
         "UVW generator plugin. Uses one of the map channels from a mesh plugin and optionally transforms "
         "the "
         "UVs.Provides additional placement parameters compared to UVWGenChannel. [gpuSupport=(partial)]",
         uvwGenMayaPlace2dTextureDeclarations,
         "textures_private/texmaya_private/tex_Maya/uvwgen_maya_place2d_texture"},
        {"TexNoiseMaya",
         2011050401,
         {EXT_TEXTURE},
         {EXT_TEXTURE, EXT_RTTEX},
         "Ombrix implementation of the Maya procedural noise texture [gpuSupport=(partial)]",
         texNoiseMayaDeclarations,
         "textures_private/texmaya_private/noises/tex_noise_maya",
         EXT_TEXTURE},
    };
    return table;
}

} // namespace conformance
