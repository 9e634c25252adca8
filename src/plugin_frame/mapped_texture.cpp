#include "plugin_frame/mapped_texture.h"

#include "kernels/placement/gradient_transform.h"
#include "kernels/placement/sector_jitter.h"
#include "numeric/cell_index.h"
#include "plugin_frame/mapped_surface.h"

#include <atomic>
#include <cmath>

namespace nezaiva {

namespace {

// Without wrapping, coordinates beyond this are not on the texture.
constexpr float kWrapLimit = 1.000001f;
constexpr int kUVNoiseLevelLimit = 64;
constexpr const char* kNoGeneratorWarning =
    "[CommonMappedTexture] No uvw generator specified. Plugin name '%s'.\n";

void scale(Vector4& vector, float x, float y)
{
    vector.x *= x;
    vector.y *= y;
}

bool outsideWrapRange(float coordinate)
{
    return coordinate < -kWrapLimit || coordinate > kWrapLimit;
}

// max(0, a, b) - min(0, a, b)
float widthOf(float a, float b)
{
    float upper = 0.0f, lower = 0.0f;
    if (a > upper) upper = a;
    if (b > upper) upper = b;
    if (a < lower) lower = a;
    if (b < lower) lower = b;
    return upper - lower;
}

Vector4 footprint(const Vector4& du, const Vector4& dv)
{
    const float z = widthOf(du.z, dv.z);
    return {widthOf(du.x, dv.x), widthOf(du.y, dv.y), z, z};
}

// The jittered sector is shared between render threads; the fields themselves are plain floats that
// parameters are written into.
float loadShared(float& field)
{
    return std::atomic_ref<float>(field).load(std::memory_order_relaxed);
}
void storeShared(float& field, float value)
{
    std::atomic_ref<float>(field).store(value, std::memory_order_relaxed);
}

} // namespace

MappedTexture::MappedTexture(OmbrixPluginDesc* desc, std::uint32_t flags)
    : Offers(desc, flags | kFetchesNoise)
{
}

void MappedTexture::renderBegin(OmbrixRenderer* newRenderer)
{
    CommonTexture::renderBegin(newRenderer);
    renderer = newRenderer;
}

void MappedTexture::renderEnd(OmbrixRenderer* endingRenderer)
{
    CommonTexture::renderEnd(endingRenderer);
    renderer = nullptr;
    uvwMemo.clear();
}

void MappedTexture::frameBegin(OmbrixRenderer* frameRenderer)
{
    CommonTexture::frameBegin(frameRenderer);
    noiseParams.frequency = 1.0f / uv_noise_size;
    uvwgen.resolve();
    if (uvwgen) return;
    if (RendererLogger* logger = frameRenderer->getLogger())
        logger->warning(kNoGeneratorWarning, getPluginName() ? getPluginName() : "");
    if (uvwMemo.empty()) uvwMemo.build(frameRenderer->getThreadCount());
    uvwMemo.reset();
}

AColor* MappedTexture::evalRawColor(AColor* result, const OmbrixContext& context, bool* valid)
{
    UVWSample sample;
    *valid = buildSample(context, true, sample);
    if (!*valid) {
        *result = AColor{};
        return result;
    }
    if (context.filteringEnabled() == 0) return evalTexture(result, context, sample);
    return evalTextureFiltered(result, context, sample, sample.du, sample.dv);
}

void MappedTexture::getRawBounds(AColor* lower, AColor* upper)
{
    getTextureBounds(lower, upper);
}

AColor* MappedTexture::evalRawGradient(AColor* result, const OmbrixContext& context, bool* valid)
{
    UVWSample sample;
    *valid = buildSample(context, true, sample);
    if (!*valid) {
        *result = AColor{};
        return result;
    }
    evalGradientFiltered(result, context, sample, sample.du, sample.dv);
    Transform transform;
    if (uvwgen && uvwgen->evalUVWTransform(context, &transform))
        *result = gradientInPointSpace(*result, transform.matrix);
    return result;
}

AColor* MappedTexture::evalTextureFiltered(AColor* result, const OmbrixContext& context,
                                           const UVWSample& sample, const Vector4& du, const Vector4& dv)
{
    return evalTextureWidth(result, context, sample, footprint(du, dv));
}

AColor* MappedTexture::evalTextureWidth(AColor* result, const OmbrixContext& context, const UVWSample& sample,
                                        const Vector4& /*width*/)
{
    return evalTexture(result, context, sample);
}

AColor* MappedTexture::evalGradientFiltered(AColor* result, const OmbrixContext& context,
                                            const UVWSample& sample, const Vector4& du, const Vector4& dv)
{
    return evalGradientWidth(result, context, sample, footprint(du, dv));
}

AColor* MappedTexture::evalGradientWidth(AColor* result, const OmbrixContext& /*context*/,
                                         const UVWSample& /*sample*/, const Vector4& /*width*/)
{
    *result = AColor{};
    return result;
}

int MappedTexture::writeSource(SourceText& /*text*/)
{
    return 0;
}

bool MappedTexture::buildSample(const OmbrixContext& context, bool withDerivatives, UVWSample& sample)
{
    const bool mapped = uvwgen ? mapFromGenerator(context, withDerivatives, sample)
                               : mapFromSurface(context, withDerivatives, sample);
    if (!mapped) return false;
    if (placement_type == kPlaceCrop) crop(sample);
    if (placement_type == kPlaceSector && !placeInSector(sample)) return false;
    if (uv_noise_on) addUVNoise(sample);
    return true;
}

bool MappedTexture::mapFromGenerator(const OmbrixContext& context, bool withDerivatives, UVWSample& sample)
{
    const int valid =
        withDerivatives ? uvwgen->evalUVWDerivs(context, &sample) : uvwgen->evalUVW(context, &sample);
    if (!valid) return false;
    if (wrap) return true;
    return !outsideWrapRange(sample.uvw.x) && !outsideWrapRange(sample.uvw.y) &&
           !outsideWrapRange(sample.uvw.z);
}

bool MappedTexture::mapFromSurface(const OmbrixContext& context, bool withDerivatives, UVWSample& sample)
{
    UVWMap found;
    UVWCacheEntry* entry = uvwMemo.entryFor(context, noUVWCache);
    if (entry && entry->sampleStamp == context.sampleStamp) {
        found = entry->value;
    } else {
        // What a surface answers is kept, that there is none is not.
        MappedSurface* surface = mappedSurface(context);
        if (!surface) return false;
        found.valid = surface->getLocalUVWTransform(context, -1, &found.map) != 0;
        if (entry) {
            entry->value = found;
            entry->sampleStamp = context.sampleStamp;
        }
    }
    if (!found.valid) return false;
    const Transform& transform = found.map;
    const Vector d = context.shadePoint - context.referencePoint;
    sample.uvw = asVector4(transform.matrix * d + transform.offset);
    if (withDerivatives) {
        sample.du = asVector4(transform.matrix * context.positionDiffU);
        sample.dv = asVector4(transform.matrix * context.positionDiffV);
    }
    return true;
}

void MappedTexture::crop(UVWSample& sample) const
{
    sample.uvw.x = (sample.uvw.x + u / w) * w;
    sample.uvw.y = (sample.uvw.y + ((1.0f - v) - h) / h) * h;
    scale(sample.du, w, h);
    scale(sample.dv, w, h);
}

// Kept as is: a jittered sector is written into the plugin's own fields and stays there for later samples,
// on all threads, until the parameters are written again.
bool MappedTexture::placeInSector(UVWSample& sample)
{
    float& coordinateU = sample.uvw.x;
    float& coordinateV = sample.uvw.y;
    const std::int32_t tileIndexU = cellIndex(std::floor(coordinateU));
    const std::int32_t tileIndexV = cellIndex(std::floor(coordinateV));
    if (tile_u) coordinateU -= static_cast<float>(tileIndexU);
    if (tile_v) coordinateV -= static_cast<float>(tileIndexV);

    // Without jitter both numbers are 0 and write nothing, but where the size is no number.
    if (jitter != 0.0f || !std::isfinite(w) || !std::isfinite(h)) {
        const SectorJitter random = sectorJitter(tileIndexU, tileIndexV);
        const float jitteredU = random.first * jitter * (1.0f - w);
        const float jitteredV = random.second * jitter * (1.0f - h);
        if (jitteredU != 0.0f) storeShared(u, jitteredU);
        if (jitteredV != 0.0f) storeShared(v, jitteredV);
    }

    const float sectorU = loadShared(u);
    const float sectorV = loadShared(v);
    if (coordinateU < sectorU || coordinateU > w + sectorU) return false;
    if (coordinateV > 1.0f - sectorV || coordinateV < (1.0f - h) - sectorV) return false;
    coordinateU = (coordinateU - sectorU) / w;
    coordinateV = (coordinateV - ((1.0f - h) - sectorV)) / h;
    scale(sample.du, 1.0f / w, 1.0f / h);
    scale(sample.dv, 1.0f / w, 1.0f / h);
    return true;
}

void MappedTexture::addUVNoise(UVWSample& sample) const
{
    const float time = uv_noise_animate ? un_noise_phase : 0.0f;
    const auto displacement = [&](float coordinate) {
        float sum = 0.0f, frequency = 1.0f, levels = uv_noise_levels;
        const auto noiseHere = [&] {
            return static_cast<float>(sharedNoise->noise(noiseParams, 0.0,
                                                         static_cast<double>(coordinate * frequency),
                                                         static_cast<double>(time * frequency)));
        };
        for (int i = 0; i < kUVNoiseLevelLimit && levels >= 1.0f; ++i) {
            sum += noiseHere() * uv_noise_amount / frequency;
            levels -= 1.0f;
            frequency *= 2.0f;
        }
        // Kept as is: the last, fractional level leaves out the amount.
        if (levels > 0.0f) sum += levels * noiseHere() / frequency;
        return std::fabs(sum / 25.0f);
    };
    float coordinateU = sample.uvw.x + displacement(sample.uvw.y);
    float coordinateV = sample.uvw.y + displacement(coordinateU);
    if (coordinateU > 1.0f) coordinateU -= std::floor(coordinateU);
    if (coordinateV > 1.0f) coordinateV -= std::floor(coordinateV);
    sample.uvw.x = coordinateU;
    sample.uvw.y = coordinateV;
}

} // namespace nezaiva
