#include "kernels/placement/place2d_gpu.h"

#include <cmath>

namespace nezaiva {

namespace {

constexpr Vector kCentre{0.5f, 0.5f, 0.0f};

// The transform that applies inner first.
Transform composed(const Transform& outer, const Transform& inner)
{
    Transform result;
    for (int i = 0; i < 3; ++i)
        result.matrix.columns[i] = outer.matrix * inner.matrix.columns[i];
    result.offset = outer.matrix * inner.offset + outer.offset;
    return result;
}

Transform translation(float u, float v)
{
    Transform result;
    result.offset = {u, v, 0.0f};
    return result;
}

Transform rotationAboutCentre(float angle)
{
    const float sine = std::sin(angle);
    const float cosine = std::cos(angle);
    Transform result;
    result.matrix = {{{cosine, sine, 0.0f}, {-sine, cosine, 0.0f}, {0.0f, 0.0f, 1.0f}}};
    result.offset = kCentre - result.matrix * kCentre;
    return result;
}

Transform scaling(float u, float v)
{
    Transform result;
    result.matrix = {{{u, 0.0f, 0.0f}, {0.0f, v, 0.0f}, {0.0f, 0.0f, 1.0f}}};
    return result;
}

} // namespace

UVParams uvParams(const PlaceSample& sample, const PlaceFlags& flags)
{
    UVParams block{};
    block.coverage_u = sample.coverage_u;
    block.coverage_v = sample.coverage_v;
    block.noise_u = sample.noise_u;
    block.noise_v = sample.noise_v;
    block.offset_u = sample.offset_u;
    block.offset_v = sample.offset_v;
    block.repeat_u = sample.repeat_u;
    block.repeat_v = sample.repeat_v;
    block.rotate_frame = sample.rotate_frame;
    block.rotate_uv = sample.rotate_uv;
    block.translate_frame_u = sample.translate_frame_u;
    block.translate_frame_v = sample.translate_frame_v;
    const bool bits[] = {flags.wrap[0],   flags.wrap[1],  flags.mirror[0],
                         flags.mirror[1], flags.clamp[0], flags.clamp[1]};
    for (std::uint32_t bit = 0; bit < 6; ++bit)
        if (bits[bit]) block.flags |= 1u << bit;
    block.stagger = flags.stagger;
    return block;
}

Transform gpuPlacement(const PlaceSample& sample)
{
    Transform result = rotationAboutCentre(sample.rotate_frame);
    result = composed(translation(-sample.translate_frame_u, -sample.translate_frame_v), result);
    result = composed(scaling(sample.repeat_u, sample.repeat_v), result);
    result = composed(translation(sample.offset_u, sample.offset_v), result);
    return composed(rotationAboutCentre(sample.rotate_uv), result);
}

} // namespace nezaiva
