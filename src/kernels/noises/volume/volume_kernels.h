// The tables of volume noise kernels for either instruction set; called through volume_noise.h only.
#pragma once

#include "kernels/noises/volume/volume_noise.h"
#include "kernels/noises/volume/volume_tables.h"

namespace nezaiva {

template <class Noise>
struct VolumeKernels {
    float (*in3d)(const VolumeTables& tables, const Noise& noise, const VolumePoint& point, float time);
    float (*in2d)(const VolumeTables& tables, const Noise& noise, float x, float y, float time);
};
extern const VolumeKernels<PerlinVolume> perlinVolumeBase, perlinVolumeAvx2;
extern const VolumeKernels<BillowVolume> billowVolumeBase, billowVolumeAvx2;
extern const VolumeKernels<CosineVolume> cosineVolumeBase, cosineVolumeAvx2;

} // namespace nezaiva
