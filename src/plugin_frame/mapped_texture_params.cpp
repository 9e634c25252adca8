#include "plugin_frame/mapped_texture.h"

namespace nezaiva {

MappedTextureParams::MappedTextureParams(std::uint32_t flags)
{
    constexpr const char* kInSector = "enable=(::placement_type=1; ::placement_type=2), gpuSupport=(partial)";
    constexpr const char* kPlacedOnly = "enable=(::placement_type=2), gpuSupport=(partial)";

    uvwgen = addParamPlugin("uvwgen", EXT_UVWGEN, -1, "The uvw generator for the texture",
                            "startRollout=(Mapped), gpuSupport=(full)");
    if (flags & kDeclaresTile)
        tile = addParamInt("tile", 1, -1,
                           "0: not tiling; 1: tile in UV; 2: tile in U; 3: tile in V; 4: tile in UV, but not "
                           "filter tiling;",
                           "enum=(0:No tiling;1:Tile in UV;2:Tile in U;3:Tile in V;4:Tile in UV, but no "
                           "filter tiling), gpuSupport=(partial)");
    if (flags & kDeclaresWrap)
        wrap =
            addParamBool("wrap", true, -1, "If true UVWs outside [-1;1] will wrap back to the valid range.",
                         "gpuSupport=(partial)");
    placement_type =
        addParamInt("placement_type", 0, -1,
                    "The way the valid portion of the texture is applied: 0 - the whole texture is valid, "
                    "1 - crop, 2 -place",
                    "enum=(0:Whole texture is valid;1:Crop;2:Place), gpuSupport=(partial)");
    u = addParamFloat("u", 0.0f, -1, "U coordinate of the valid texture sector", kInSector);
    v = addParamFloat("v", 0.0f, -1, "V coordinate of the valid texture sector", kInSector);
    w = addParamFloat("w", 1.0f, -1, "Width of the valid texture sector", kInSector);
    h = addParamFloat("h", 1.0f, -1, "Height of the valid texture sector", kInSector);
    jitter = addParamFloat("jitter", 0.0f, -1, "Amount of random placement variation",
                           "enable=(::placement_type=2), gpuSupport=(none)");
    tile_u = addParamBool("tile_u", false, -1, "If true there is horizontal tiling", kPlacedOnly);
    tile_v = addParamBool("tile_v", false, -1, "If true there is vertical tiling", kPlacedOnly);
    uv_noise_on = addParamBool("uv_noise_on", false, -1, "If true the noise is enabled.",
                               "displayName=(UV noise on), gpuSupport=(none)");
    uv_noise_animate =
        addParamBool("uv_noise_animate", false, -1,
                     "If true the noise is animated. Use \"UV noise phase\" to animate the noise.",
                     "enable=(::uv_noise_on=1), displayName=(Animate UV noise), gpuSupport=(none)");
    uv_noise_amount =
        addParamFloat("uv_noise_amount", 1.0f, -1, "UV noise amount",
                      "enable=(::uv_noise_on=1), displayName=(UV noise amount), gpuSupport=(none)");
    uv_noise_levels =
        addParamFloat("uv_noise_levels", 1.0f, -1, "UV noise iterations",
                      "enable=(::uv_noise_on=1), displayName=(UV noise levels), gpuSupport=(none)");
    uv_noise_size = addParamFloat("uv_noise_size", 1.0f, -1, "UV noise size",
                                  "enable=(::uv_noise_on=1), displayName=(UV noise size), gpuSupport=(none)");
    // Kept as is: scenes know the phase under this name, not as uv_noise_phase.
    un_noise_phase = addParamFloat("un_noise_phase", 0.0f, -1, "UV noise phase",
                                   "enable=(::uv_noise_on=1, ::uv_noise_animate=1), displayName=(UV noise "
                                   "phase); startRollout=(<EndRollout>), gpuSupport=(none)");
}

} // namespace nezaiva
