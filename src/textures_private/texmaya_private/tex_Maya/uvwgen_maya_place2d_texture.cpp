// UVWGenMayaPlace2dTexture: Maya's 2D placement node as a UVW generator.
//
// It takes the surface's mapping, or that of another generator, and places it. The result is a whole
// transform, kept per thread for the shading point: nearby look-ups cost one matrix product.

#include "kernels/placement/place2d.h"
#include "kernels/placement/place2d_gpu.h"
#include "numeric/cell_index.h"
#include "plugin_frame/kind_desc.h"
#include "plugin_frame/mapped_surface.h"
#include "plugin_frame/noise_interface.h"
#include "plugin_frame/source_text.h"
#include "plugin_frame/thread_memo.h"

#include <cmath>
#include <new>

namespace nezaiva {

namespace {

constexpr int kNoiseOctaves = 6;
constexpr float kNoisePersistence = 0.606f;
constexpr float kNoiseLacunarity = 1.5f;

// A number of the placement: a plain value that can be animated, and a texture that goes before it.
struct PlaceNumber {
    const char* name;
    const char* textureName;
    float PlaceSample::*field;
    const char* text;
    const char* metadata; // of the plain value
};

// In the order of declaration; the flags stand after the first kNumbersBeforeFlags.
constexpr PlaceNumber kPlaceNumbers[kPlaceFieldCount] = {
    {"coverage_u", "coverage_u_tex", &PlaceSample::coverage_u, "U values are remapped to 1.0/coverage_u",
     "gpuSupport=(full)"},
    {"coverage_v", "coverage_v_tex", &PlaceSample::coverage_v, "V values are remapped to 1.0/coverage_v",
     "gpuSupport=(full)"},
    {"translate_frame_u", "translate_frame_u_tex", &PlaceSample::translate_frame_u,
     "Translate the frame in U direction after applying rotate_frame (and before wrap, coverage, clamp)",
     "gpuSupport=(full)"},
    {"translate_frame_v", "translate_frame_v_tex", &PlaceSample::translate_frame_v,
     "Translate the frame in V direction after applying rotate_frame (and before wrap, coverage, clamp)",
     "gpuSupport=(full)"},
    {"rotate_frame", "rotate_frame_tex", &PlaceSample::rotate_frame,
     "Rotate the frame after applying UV noise", "units=(radians), gpuSupport=(full)"},
    {"repeat_u", "repeat_u_tex", &PlaceSample::repeat_u, "Multiplier for U values", "gpuSupport=(full)"},
    {"repeat_v", "repeat_v_tex", &PlaceSample::repeat_v, "Multiplier for V values", "gpuSupport=(full)"},
    {"offset_u", "offset_u_tex", &PlaceSample::offset_u,
     "Offset added to U before mirroring (after wrap, coverage, clamp)", "gpuSupport=(full)"},
    {"offset_v", "offset_v_tex", &PlaceSample::offset_v,
     "Offset added to V before mirroring (after wrap, coverage, clamp)", "gpuSupport=(full)"},
    {"rotate_uv", "rotate_uv_tex", &PlaceSample::rotate_uv, "Rotate the UVs after mirroring",
     "units=(radians), gpuSupport=(full)"},
    {"noise_u", "noise_u_tex", &PlaceSample::noise_u, "Noise magnitude multiplier in U direction",
     "gpuSupport=(none)"},
    {"noise_v", "noise_v_tex", &PlaceSample::noise_v, "Noise magnitude multiplier in V direction",
     "gpuSupport=(none)"},
};
constexpr int kNumbersBeforeFlags = 5;

using PlaceCacheEntry = MemoEntry<PlaceTransform, 256>;
static_assert(sizeof(PlaceCacheEntry) == 256);
using PlaceCache = ThreadMemo<PlaceCacheEntry>;

class UVWGenMayaPlace2dTexture final : public Offers<OmbrixUVWGen, GpuTexture> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        2008041904,
        "UVWGenMayaPlace2dTexture",
        "UVW generator plugin. Uses one of the map channels from a mesh plugin and optionally transforms the "
        "UVs.Provides additional placement parameters compared to UVWGenChannel. [gpuSupport=(partial)]",
        {EXT_UVWGEN}};

    template <class Table>
    static void parameters(Table& p)
    {
        constexpr PlaceSample kDefaults;
        const auto numbers = [&p, kDefaults](int first, int end) {
            for (int i = first; i < end; ++i) {
                const PlaceNumber& number = kPlaceNumbers[i];
                p(number.name, within(&UVWGenMayaPlace2dTexture::constants, number.field),
                  kDefaults.*number.field, number.text, number.metadata);
                const auto texture = [i](auto& placement) -> FloatInput& { return placement.textures[i]; };
                p(number.textureName, texture, noDefault, number.text, "gpuSupport=(none)");
            }
        };
        p("uvw_channel", &UVWGenMayaPlace2dTexture::uvw_channel, 1,
          "Index of the mapping channel to use (from GeomStaticMesh::map_channels).", "gpuSupport=(full)");
        p("uvw_channel_tex", &UVWGenMayaPlace2dTexture::uvw_channel_tex, noDefault,
          "Used when more than one mesh has UV linking specified for this 2d placement. If present will "
          "override uvw_channel.",
          "gpuSupport=(none)");
        p("uvwgen", &UVWGenMayaPlace2dTexture::uvwgen, noDefault,
          "Optional UVWGen from which the initial uvw coordinates will be taken, instead of the surface "
          "point",
          "gpuSupport=(full)");
        numbers(0, kNumbersBeforeFlags);
        p("mirror_u", &UVWGenMayaPlace2dTexture::mirror_u, false,
          "If true, every other tile outside the [0;1] range will be mirrored in U", "gpuSupport=(full)");
        p("mirror_v", &UVWGenMayaPlace2dTexture::mirror_v, false,
          "If true, every other tile outside the [0;1] range will be mirrored in V", "gpuSupport=(full)");
        p("wrap_u", &UVWGenMayaPlace2dTexture::wrap_u, true,
          "If true, U values outside the [0;1] range will wrap back to [0;1]", "gpuSupport=(full)");
        p("wrap_v", &UVWGenMayaPlace2dTexture::wrap_v, true,
          "If true, V values outside the [0;1] range will wrap back to [0;1]", "gpuSupport=(full)");
        p("stagger", &UVWGenMayaPlace2dTexture::stagger, false,
          "If true, tiles in the V direction will add +0.5 to the U value for a 'staggering' effect",
          "gpuSupport=(full)");
        p("clamp_u", &UVWGenMayaPlace2dTexture::clamp_u, false,
          "Clamp the 'U' coordinate when accessing texture coordinate outside the [0,1] range",
          "gpuSupport=(full)");
        p("clamp_v", &UVWGenMayaPlace2dTexture::clamp_v, false,
          "Clamp the 'V' coordinate when accessing texture coordinate outside the [0,1] range",
          "gpuSupport=(full)");
        numbers(kNumbersBeforeFlags, kPlaceFieldCount);
        p("nsamples", &UVWGenMayaPlace2dTexture::nsamples, 1,
          "The number of parameter samples to take for motion blur. 0 means the global value. 1 means motion "
          "blur should be disabled for this plugin.",
          "gpuSupport=(none)");
        p("uv_set_name", &UVWGenMayaPlace2dTexture::uv_set_name, "",
          "The name of the uv channel that should be used.", "gpuSupport=(none)");
    }

    void renderBegin(OmbrixRenderer* renderer) override;
    void renderEnd(OmbrixRenderer* renderer) override;
    void frameBegin(OmbrixRenderer* renderer) override;
    void frameEnd(OmbrixRenderer* renderer) override;

    int evalUVW(const OmbrixContext& context, UVWSample* result) override;
    int evalUVWDerivs(const OmbrixContext& context, UVWSample* result) override;
    int evalUVWTransform(const OmbrixContext& context, Transform* result) override;
    // Kept as is: the channel as it stands, nothing of the placement.
    int evalUVWForChannel(MappedSurface* surface, const OmbrixContext& context, UVWSample* result) override
    {
        return surface ? surface->getLocalUVW(context, uvw_channel, result) : 0;
    }

    int writeSource(SourceText& text) override;

private:
    void writeParameterBlock(SourceText& text);
    void readMotionSamples(const FrameData& frame);
    PlaceTransform inputTransform(const OmbrixContext& context) const;
    PlaceSample constantsWithTextures(const OmbrixContext& context) const;
    PlaceSample sampleInMotion(const OmbrixContext& context) const;
    PlaceTransform runChain(const OmbrixContext& context) const;
    // The place of the context: the memo's, or where there is none, made in own.
    const PlaceTransform& lookUp(const OmbrixContext& context, PlaceTransform& own);

    int uvw_channel = 0;
    IntInput uvw_channel_tex;
    UVWGenInput uvwgen;
    PlaceSample constants;
    FloatInput textures[kPlaceFieldCount];
    int mirror_u = 0, mirror_v = 0, wrap_u = 0, wrap_v = 0, stagger = 0, clamp_u = 0, clamp_v = 0;
    int nsamples = 0;
    CharString uv_set_name;

    // Of the frame.
    int uvSetHandle = 0; // the id of uv_set_name; 0 without a name
    HostVector<PlaceSample> motionSamples;
    bool allConstant = false;
    PlaceFlags flags;
    PlaceMatrices staticMatrices;

    // The uploaded block of the frame's GPU data.
    ParameterBlockStore* gpuBlockStore = nullptr;
    int gpuParamsId = -1;
    int gpuParamsReady = 0;

    // Of the render.
    PlaceCache threadCache;
    NoiseInterface* noise = nullptr;
    NoiseParams noiseParams;
};

void UVWGenMayaPlace2dTexture::renderBegin(OmbrixRenderer* renderer)
{
    OmbrixUVWGen::renderBegin(renderer);
    threadCache.build(renderer->getThreadCount());
    noise = acquireSharedNoise(*renderer);
    noiseParams.persistence = kNoisePersistence;
    noiseParams.lacunarity = kNoiseLacunarity;
    noiseParams.octaves = kNoiseOctaves;
}

void UVWGenMayaPlace2dTexture::renderEnd(OmbrixRenderer* renderer)
{
    threadCache.clear();
    releaseSharedNoise(noise, *renderer);
    noise = nullptr;
    OmbrixUVWGen::renderEnd(renderer);
}

void UVWGenMayaPlace2dTexture::frameBegin(OmbrixRenderer* renderer)
{
    OmbrixUVWGen::frameBegin(renderer);
    if (threadCache.empty()) threadCache.build(renderer->getThreadCount());
    threadCache.reset();
    uvwgen.resolve();
    uvSetHandle = renderer->getMapChannelNames()->getNameId(uv_set_name.str());

    const FrameData& frame = renderer->getFrameData();
    if (!frame.motionBlur)
        nsamples = 1;
    else if (nsamples == 0)
        nsamples = frame.geometrySamples;
    if (nsamples < 1) nsamples = 1;
    if (nsamples > 1) readMotionSamples(frame);

    flags = {{wrap_u != 0, wrap_v != 0},
             {clamp_u != 0, clamp_v != 0},
             {mirror_u != 0, mirror_v != 0},
             stagger != 0};
    staticMatrices = placeMatrices(constants);
    allConstant = true;
    for (const FloatInput& texture : textures)
        if (texture) allConstant = false;
}

void UVWGenMayaPlace2dTexture::readMotionSamples(const FrameData& frame)
{
    motionSamples.assign(static_cast<std::size_t>(nsamples), PlaceSample{});
    for (int i = 0; i < nsamples; ++i) {
        const double time =
            static_cast<double>(i) / (nsamples - 1) * (frame.intervalEnd - frame.intervalStart) +
            frame.intervalStart;
        PlaceSample& sample = motionSamples[static_cast<std::size_t>(i)];
        for (int field = 0; field < kPlaceFieldCount; ++field)
            if (OmbrixPluginParameter* parameter = getParameter(kPlaceNumbers[field].name))
                sample.*kPlaceFields[field] = parameter->getFloat(-1, time);
    }
    // Kept as is: an animated constant wins over a connected texture.
    for (std::size_t i = 0; i + 1 < motionSamples.size(); ++i)
        for (int field = 0; field < kPlaceFieldCount; ++field)
            if (motionSamples[i].*kPlaceFields[field] != motionSamples[i + 1].*kPlaceFields[field])
                textures[field].texture = nullptr;
}

void UVWGenMayaPlace2dTexture::frameEnd(OmbrixRenderer* renderer)
{
    motionSamples.clear();
    motionSamples.shrink_to_fit();
    if (gpuBlockStore) gpuBlockStore->freeBlock(gpuParamsId);
    gpuBlockStore = nullptr;
    gpuParamsId = -1;
    gpuParamsReady = 0;
    OmbrixUVWGen::frameEnd(renderer);
}

// Without a surface the input is the identity, and still valid.
PlaceTransform UVWGenMayaPlace2dTexture::inputTransform(const OmbrixContext& context) const
{
    PlaceTransform input;
    if (uvwgen) {
        input.valid = uvwgen->evalUVWTransform(context, &input.map) != 0;
        return input;
    }
    MappedSurface* surface = mappedSurface(context);
    if (!surface) return input;
    if (uvSetHandle != 0 && surface->getLocalUVWTransformByName(context, uvSetHandle, &input.map) != -1)
        return input;
    const int channel = uvw_channel_tex ? uvw_channel_tex(context) : uvw_channel;
    input.valid = surface->getLocalUVWTransform(context, channel, &input.map) != 0;
    return input;
}

PlaceSample UVWGenMayaPlace2dTexture::constantsWithTextures(const OmbrixContext& context) const
{
    PlaceSample sample = constants;
    for (int field = 0; field < kPlaceFieldCount; ++field)
        if (textures[field]) sample.*kPlaceFields[field] = textures[field](context);
    return sample;
}

PlaceSample UVWGenMayaPlace2dTexture::sampleInMotion(const OmbrixContext& context) const
{
    const double t = (nsamples - 1) * context.rayTime;
    int i = cellIndex(std::floor(t));
    if (i > nsamples - 2) i = nsamples - 2;
    if (i < 0) i = 0;
    const auto f = static_cast<float>(t - i);
    const PlaceSample& before = motionSamples[static_cast<std::size_t>(i)];
    const PlaceSample& after = motionSamples[static_cast<std::size_t>(i) + 1];
    PlaceSample sample;
    for (int field = 0; field < kPlaceFieldCount; ++field) {
        float from = before.*kPlaceFields[field];
        float to = after.*kPlaceFields[field];
        if (textures[field]) from = to = textures[field](context);
        sample.*kPlaceFields[field] = from * (1.0f - f) + to * f;
    }
    return sample;
}

PlaceTransform UVWGenMayaPlace2dTexture::runChain(const OmbrixContext& context) const
{
    const PlaceTransform input = inputTransform(context);
    if (!input.valid) return input;
    if (nsamples == 1 && allConstant) return placed(input, constants, staticMatrices, flags, noiseParams);
    const PlaceSample sample = nsamples == 1 ? constantsWithTextures(context) : sampleInMotion(context);
    return placed(input, sample, placeMatrices(sample), flags, noiseParams);
}

const PlaceTransform& UVWGenMayaPlace2dTexture::lookUp(const OmbrixContext& context, PlaceTransform& own)
{
    return threadCache.getOr(context, noUVWCache, own, [&] { return runChain(context); });
}

int UVWGenMayaPlace2dTexture::evalUVW(const OmbrixContext& context, UVWSample* result)
{
    PlaceTransform own;
    const PlaceTransform& place = lookUp(context, own);
    const Vector d = context.shadePoint - context.referencePoint;
    result->uvw = asVector4(place.map.matrix * d + place.map.offset);
    return place.valid;
}

int UVWGenMayaPlace2dTexture::evalUVWDerivs(const OmbrixContext& context, UVWSample* result)
{
    PlaceTransform own;
    const PlaceTransform& place = lookUp(context, own);
    const Vector d = context.shadePoint - context.referencePoint;
    result->uvw = asVector4(place.map.matrix * d + place.map.offset);
    result->du = asVector4(place.map.matrix * context.positionDiffU);
    result->dv = asVector4(place.map.matrix * context.positionDiffV);
    return place.valid;
}

int UVWGenMayaPlace2dTexture::evalUVWTransform(const OmbrixContext& context, Transform* result)
{
    PlaceTransform own;
    const PlaceTransform& place = lookUp(context, own);
    *result = place.map;
    return place.valid;
}

// The GPU takes the single values: no texture, no motion sample and no noise reaches the matrix.
int UVWGenMayaPlace2dTexture::writeSource(SourceText& text)
{
    if (!paramList) return 0;
    const Transform place = gpuPlacement(constants);
    const auto& [c0, c1, c2] = place.matrix.columns;
    const Vector& offset = place.offset;
    text.operands({c0.x, c0.y, c0.z, c1.x, c1.y, c1.z, c2.x, c2.y, c2.z, offset.x, offset.y, offset.z});
    if (uv_set_name.empty())
        text.source.printf("map_channel %i\n", uvw_channel);
    else
        text.source.printf("map_channel_id %i\n", uvSetHandle);
    text.input(uvwgen, "", text.tag);
    text.line("uvwGenMayaPlace2dTexture\n");
    writeParameterBlock(text);
    return 1;
}

// The block is uploaded once a frame; the store that took it frees it at the frame's end.
void UVWGenMayaPlace2dTexture::writeParameterBlock(SourceText& text)
{
    ParameterBlockStore* store = text.data.getBlockStore();
    if (!store) return;
    if (!gpuParamsReady) {
        gpuBlockStore = store;
        const UVParams block = uvParams(constants, flags);
        store->upload(this, &block, sizeof block);
        gpuParamsId = store->finishUpload(this);
        gpuParamsReady = 1;
    }
    text.source.printf("uvParamsPtr_id %i\n", gpuParamsId);
}

using UVWGenMayaPlace2dTextureParams = KindParams<UVWGenMayaPlace2dTexture>;
using UVWGenMayaPlace2dTextureDesc = KindDesc<UVWGenMayaPlace2dTexture, UVWGenMayaPlace2dTextureParams>;
UVWGenMayaPlace2dTextureDesc uvwgenMayaPlace2dTextureDesc;

} // namespace

} // namespace nezaiva
