#include "textures_private/texmaya_private/tex_Maya/uvwgen_maya_place2d_texture_params.h"

#include "kernels/placement/place2d.h"

namespace nezaiva {

UVWGenMayaPlace2dTextureParams::UVWGenMayaPlace2dTextureParams()
{
    // A parameter that is missing from a list reads as these too.
    constexpr PlaceSample kDefaults;
    addParamInt("uvw_channel", 1, -1,
                "Index of the mapping channel to use (from GeomStaticMesh::map_channels).",
                "gpuSupport=(full)");
    addParamTextureInt("uvw_channel_tex", -1,
                       "Used when more than one mesh has UV linking specified for this 2d placement. If "
                       "present will override uvw_channel.",
                       "gpuSupport=(none)");
    addParamPlugin(
        "uvwgen", EXT_UVWGEN, -1,
        "Optional UVWGen from which the initial uvw coordinates will be taken, instead of the surface point",
        "gpuSupport=(full)");
    addParamFloat("coverage_u", kDefaults.coverage_u, -1, "U values are remapped to 1.0/coverage_u",
                  "gpuSupport=(full)");
    addParamTextureFloat("coverage_u_tex", -1, "U values are remapped to 1.0/coverage_u",
                         "gpuSupport=(none)");
    addParamFloat("coverage_v", kDefaults.coverage_v, -1, "V values are remapped to 1.0/coverage_v",
                  "gpuSupport=(full)");
    addParamTextureFloat("coverage_v_tex", -1, "V values are remapped to 1.0/coverage_v",
                         "gpuSupport=(none)");
    addParamFloat(
        "translate_frame_u", kDefaults.translate_frame_u, -1,
        "Translate the frame in U direction after applying rotate_frame (and before wrap, coverage, clamp)",
        "gpuSupport=(full)");
    addParamTextureFloat(
        "translate_frame_u_tex", -1,
        "Translate the frame in U direction after applying rotate_frame (and before wrap, coverage, clamp)",
        "gpuSupport=(none)");
    addParamFloat(
        "translate_frame_v", kDefaults.translate_frame_v, -1,
        "Translate the frame in V direction after applying rotate_frame (and before wrap, coverage, clamp)",
        "gpuSupport=(full)");
    addParamTextureFloat(
        "translate_frame_v_tex", -1,
        "Translate the frame in V direction after applying rotate_frame (and before wrap, coverage, clamp)",
        "gpuSupport=(none)");
    addParamFloat("rotate_frame", kDefaults.rotate_frame, -1, "Rotate the frame after applying UV noise",
                  "units=(radians), gpuSupport=(full)");
    addParamTextureFloat("rotate_frame_tex", -1, "Rotate the frame after applying UV noise",
                         "gpuSupport=(none)");
    addParamBool("mirror_u", false, -1,
                 "If true, every other tile outside the [0;1] range will be mirrored in U",
                 "gpuSupport=(full)");
    addParamBool("mirror_v", false, -1,
                 "If true, every other tile outside the [0;1] range will be mirrored in V",
                 "gpuSupport=(full)");
    addParamBool("wrap_u", true, -1, "If true, U values outside the [0;1] range will wrap back to [0;1]",
                 "gpuSupport=(full)");
    addParamBool("wrap_v", true, -1, "If true, V values outside the [0;1] range will wrap back to [0;1]",
                 "gpuSupport=(full)");
    addParamBool("stagger", false, -1,
                 "If true, tiles in the V direction will add +0.5 to the U value for a 'staggering' effect",
                 "gpuSupport=(full)");
    addParamBool("clamp_u", false, -1,
                 "Clamp the 'U' coordinate when accessing texture coordinate outside the [0,1] range",
                 "gpuSupport=(full)");
    addParamBool("clamp_v", false, -1,
                 "Clamp the 'V' coordinate when accessing texture coordinate outside the [0,1] range",
                 "gpuSupport=(full)");
    addParamFloat("repeat_u", kDefaults.repeat_u, -1, "Multiplier for U values", "gpuSupport=(full)");
    addParamTextureFloat("repeat_u_tex", -1, "Multiplier for U values", "gpuSupport=(none)");
    addParamFloat("repeat_v", kDefaults.repeat_v, -1, "Multiplier for V values", "gpuSupport=(full)");
    addParamTextureFloat("repeat_v_tex", -1, "Multiplier for V values", "gpuSupport=(none)");
    addParamFloat("offset_u", kDefaults.offset_u, -1,
                  "Offset added to U before mirroring (after wrap, coverage, clamp)", "gpuSupport=(full)");
    addParamTextureFloat("offset_u_tex", -1,
                         "Offset added to U before mirroring (after wrap, coverage, clamp)",
                         "gpuSupport=(none)");
    addParamFloat("offset_v", kDefaults.offset_v, -1,
                  "Offset added to V before mirroring (after wrap, coverage, clamp)", "gpuSupport=(full)");
    addParamTextureFloat("offset_v_tex", -1,
                         "Offset added to V before mirroring (after wrap, coverage, clamp)",
                         "gpuSupport=(none)");
    addParamFloat("rotate_uv", kDefaults.rotate_uv, -1, "Rotate the UVs after mirroring",
                  "units=(radians), gpuSupport=(full)");
    addParamTextureFloat("rotate_uv_tex", -1, "Rotate the UVs after mirroring", "gpuSupport=(none)");
    addParamFloat("noise_u", kDefaults.noise_u, -1, "Noise magnitude multiplier in U direction",
                  "gpuSupport=(none)");
    addParamTextureFloat("noise_u_tex", -1, "Noise magnitude multiplier in U direction", "gpuSupport=(none)");
    addParamFloat("noise_v", kDefaults.noise_v, -1, "Noise magnitude multiplier in V direction",
                  "gpuSupport=(none)");
    addParamTextureFloat("noise_v_tex", -1, "Noise magnitude multiplier in V direction", "gpuSupport=(none)");
    addParamInt("nsamples", 1, -1,
                "The number of parameter samples to take for motion blur. 0 means the global value. 1 means "
                "motion blur should be disabled for this plugin.",
                "gpuSupport=(none)");
    addParamString("uv_set_name", "", -1, "The name of the uv channel that should be used.",
                   "gpuSupport=(none)");
}

} // namespace nezaiva
