// UVWGenMayaPlace2dTexture: Maya's 2D placement node as a UVW generator.
//
// It takes the surface's mapping, or that of another generator, and places it. The result is a whole
// transform, kept per thread for the shading point: nearby look-ups cost one matrix product.

#include "kernels/placement/place2d.h"
#include "kernels/placement/place2d_gpu.h"
#include "numeric/cell_index.h"
#include "plugin_frame/gpu_text.h"
#include "plugin_frame/noise_interface.h"
#include "plugin_frame/plugin_desc_of.h"
#include "plugin_frame/thread_memo.h"
#include "textures_private/texmaya_private/tex_Maya/uvwgen_maya_place2d_texture_params.h"

#include <cmath>
#include <new>

namespace nezaiva {

namespace {

constexpr int kNoiseOctaves = 6;
constexpr float kNoisePersistence = 0.606f;
constexpr float kNoiseLacunarity = 1.5f;

// The names of the twelve numbers, in the order of kPlaceFields.
constexpr const char* kPlaceNames[kPlaceFieldCount] = {
    "coverage_u", "coverage_v", "translate_frame_u", "translate_frame_v", "rotate_frame", "repeat_u",
    "repeat_v",   "offset_u",   "offset_v",          "rotate_uv",         "noise_u",      "noise_v"};

// A thread's transform for a stamp.
struct alignas(256) PlaceCacheEntry {
    std::int32_t sampleStamp = 0;
    PlaceTransform place;
    std::uint32_t word = 0; // only ever reset
};
static_assert(sizeof(PlaceCacheEntry) == 256);
using PlaceCache = ThreadMemo<PlaceCacheEntry>;

Vector4 asVector4(const Vector& v)
{
    return {v.x, v.y, v.z, 0.0f};
}

class UVWGenMayaPlace2dTexture final : public OmbrixUVWGen, public RTTexInterface {
public:
    explicit UVWGenMayaPlace2dTexture(OmbrixPluginDesc* desc) : OmbrixUVWGen(desc) { bindParameters(); }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_RTTEX) return static_cast<RTTexInterface*>(this);
        return OmbrixUVWGen::getInterface(id);
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

    int getSource(const char* name, const char* tag, const char* descriptor, ShaderSource& source,
                  OCLData& data) override;

private:
    void bindParameters();
    void writeParameterBlock(ShaderSource& source, OCLData& data);
    void readMotionSamples(const FrameData& frame);
    PlaceTransform inputTransform(const OmbrixContext& context) const;
    PlaceSample constantsWithTextures(const OmbrixContext& context) const;
    PlaceSample sampleInMotion(const OmbrixContext& context) const;
    PlaceTransform runChain(const OmbrixContext& context) const;
    // The place of the context: the memo's, or where there is none, made in own.
    const PlaceTransform& lookUp(const OmbrixContext& context, PlaceTransform& own);

    int uvw_channel = 0;
    TextureIntInterface* uvw_channel_tex = nullptr;
    PluginBase* uvwgen = nullptr;
    PlaceSample constants;
    TextureFloatInterface* textures[kPlaceFieldCount] = {};
    int mirror_u = 0, mirror_v = 0, wrap_u = 0, wrap_v = 0, stagger = 0, clamp_u = 0, clamp_v = 0;
    int nsamples = 0;
    CharString uv_set_name;

    // Of the frame.
    UVWGenInterface* uvwgenInterface = nullptr;
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
    uvwgenInterface = uvwgen ? static_cast<UVWGenInterface*>(uvwgen->getInterface(EXT_UVWGEN)) : nullptr;
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
    for (const TextureFloatInterface* texture : textures)
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
            if (OmbrixPluginParameter* parameter = getParameter(kPlaceNames[field]))
                sample.*kPlaceFields[field] = parameter->getFloat(-1, time);
    }
    // Kept as is: an animated constant wins over a connected texture.
    for (std::size_t i = 0; i + 1 < motionSamples.size(); ++i)
        for (int field = 0; field < kPlaceFieldCount; ++field)
            if (motionSamples[i].*kPlaceFields[field] != motionSamples[i + 1].*kPlaceFields[field])
                textures[field] = nullptr;
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
    if (uvwgenInterface) {
        input.valid = uvwgenInterface->evalUVWTransform(context, &input.map) != 0;
        return input;
    }
    auto* surface = context.surfaceObject
                        ? static_cast<MappedSurface*>(context.surfaceObject->getInterface(EXT_MAPPED_SURFACE))
                        : nullptr;
    if (!surface) return input;
    if (uvSetHandle != 0 && surface->getLocalUVWTransformByName(context, uvSetHandle, &input.map) != -1)
        return input;
    const int channel = uvw_channel_tex ? uvw_channel_tex->evalInt(context) : uvw_channel;
    input.valid = surface->getLocalUVWTransform(context, channel, &input.map) != 0;
    return input;
}

PlaceSample UVWGenMayaPlace2dTexture::constantsWithTextures(const OmbrixContext& context) const
{
    PlaceSample sample = constants;
    for (int field = 0; field < kPlaceFieldCount; ++field)
        if (textures[field]) sample.*kPlaceFields[field] = textures[field]->evalFloat(context);
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
        if (textures[field]) from = to = textures[field]->evalFloat(context);
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
    PlaceCacheEntry* entry = threadCache.entryFor(context, noUVWCache);
    if (!entry) return *new (&own) PlaceTransform(runChain(context));
    if (entry->sampleStamp == context.sampleStamp) return entry->place;
    new (&entry->place) PlaceTransform(runChain(context)); // made in its place: no copy
    entry->sampleStamp = context.sampleStamp;
    return entry->place;
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
int UVWGenMayaPlace2dTexture::getSource(const char* /*name*/, const char* tag, const char* descriptor,
                                        ShaderSource& source, OCLData& data)
{
    if (!isMaterialDescriptor(descriptor) || !paramList) return 0;
    const Transform place = gpuPlacement(constants);
    const auto& [c0, c1, c2] = place.matrix.columns;
    const Vector& offset = place.offset;
    const auto number = [](float value) { return static_cast<double>(value); };
    source.append("uvw_transform ");
    source.printf("%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f,%f\n", number(c0.x), number(c0.y), number(c0.z),
                  number(c1.x), number(c1.y), number(c1.z), number(c2.x), number(c2.y), number(c2.z),
                  number(offset.x), number(offset.y), number(offset.z));
    if (uv_set_name.empty())
        source.printf("map_channel %i\n", uvw_channel);
    else
        source.printf("map_channel_id %i\n", uvSetHandle);
    RTTexInterface::getRTTexSource(uvwgenInterface, "", tag, descriptor, source, data);
    source.append("uvwGenMayaPlace2dTexture\n");
    writeParameterBlock(source, data);
    return 1;
}

void UVWGenMayaPlace2dTexture::writeParameterBlock(ShaderSource& source, OCLData& data)
{
    ParameterBlockStore* store = data.getBlockStore();
    if (!store) return;
    gpuBlockStore = store;
    if (!gpuParamsReady) {
        const UVParams block = uvParams(constants, flags);
        store->upload(this, &block, sizeof block);
        gpuParamsId = store->finishUpload(this);
        gpuParamsReady = 1;
    }
    source.printf("uvParamsPtr_id %i\n", gpuParamsId);
}

void UVWGenMayaPlace2dTexture::bindParameters()
{
    paramList->setParamCache("uvw_channel", &uvw_channel);
    paramList->setParamCache("uvw_channel_tex", &uvw_channel_tex);
    paramList->setParamCache("uvwgen", &uvwgen);
    paramList->setParamCache("coverage_u", &constants.coverage_u);
    paramList->setParamCache("coverage_u_tex", &textures[0]);
    paramList->setParamCache("coverage_v", &constants.coverage_v);
    paramList->setParamCache("coverage_v_tex", &textures[1]);
    paramList->setParamCache("translate_frame_u", &constants.translate_frame_u);
    paramList->setParamCache("translate_frame_u_tex", &textures[2]);
    paramList->setParamCache("translate_frame_v", &constants.translate_frame_v);
    paramList->setParamCache("translate_frame_v_tex", &textures[3]);
    paramList->setParamCache("rotate_frame", &constants.rotate_frame);
    paramList->setParamCache("rotate_frame_tex", &textures[4]);
    paramList->setParamCache("mirror_u", &mirror_u);
    paramList->setParamCache("mirror_v", &mirror_v);
    paramList->setParamCache("wrap_u", &wrap_u);
    paramList->setParamCache("wrap_v", &wrap_v);
    paramList->setParamCache("stagger", &stagger);
    paramList->setParamCache("clamp_u", &clamp_u);
    paramList->setParamCache("clamp_v", &clamp_v);
    paramList->setParamCache("repeat_u", &constants.repeat_u);
    paramList->setParamCache("repeat_u_tex", &textures[5]);
    paramList->setParamCache("repeat_v", &constants.repeat_v);
    paramList->setParamCache("repeat_v_tex", &textures[6]);
    paramList->setParamCache("offset_u", &constants.offset_u);
    paramList->setParamCache("offset_u_tex", &textures[7]);
    paramList->setParamCache("offset_v", &constants.offset_v);
    paramList->setParamCache("offset_v_tex", &textures[8]);
    paramList->setParamCache("rotate_uv", &constants.rotate_uv);
    paramList->setParamCache("rotate_uv_tex", &textures[9]);
    paramList->setParamCache("noise_u", &constants.noise_u);
    paramList->setParamCache("noise_u_tex", &textures[10]);
    paramList->setParamCache("noise_v", &constants.noise_v);
    paramList->setParamCache("noise_v_tex", &textures[11]);
    paramList->setParamCache("nsamples", &nsamples);
    paramList->setParamCache("uv_set_name", &uv_set_name);
}

class UVWGenMayaPlace2dTextureDesc : public DescOf<UVWGenMayaPlace2dTexture, UVWGenMayaPlace2dTextureParams> {
public:
    UVWGenMayaPlace2dTextureDesc()
        : DescOf({2008041904,
                  "UVWGenMayaPlace2dTexture",
                  "UVW generator plugin. Uses one of the map channels from a mesh plugin and optionally "
                  "transforms the UVs.Provides additional placement parameters compared to UVWGenChannel. "
                  "[gpuSupport=(partial)]",
                  {EXT_OMBRIX_PLUGIN, EXT_UVWGEN}})
    {
    }
};
UVWGenMayaPlace2dTextureDesc uvwgenMayaPlace2dTextureDesc;

} // namespace

} // namespace nezaiva
