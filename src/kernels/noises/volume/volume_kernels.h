// The two sets of volume noise kernels; called through volume_noise.h only. Plain declarations: the
// sources compiled for AVX2 include this.
#pragma once

#include "kernels/noises/volume/volume_noise.h"
#include "kernels/noises/volume/volume_tables.h"

namespace nezaiva {

float perlin3dBase(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float z,
                   float time);
float perlin2dBase(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time);
float billow3dBase(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z,
                   float time);
float billow2dBase(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float time);
float cosine3dBase(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& point,
                   float time);
float cosine2dBase(const VolumeTables& tables, const CosineVolume& noise, float x, float y, float time);

float perlin3dAvx2(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float z,
                   float time);
float perlin2dAvx2(const VolumeTables& tables, const PerlinVolume& noise, float x, float y, float time);
float billow3dAvx2(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float z,
                   float time);
float billow2dAvx2(const VolumeTables& tables, const BillowVolume& noise, float x, float y, float time);
float cosine3dAvx2(const VolumeTables& tables, const CosineVolume& noise, const VolumePoint& point,
                   float time);
float cosine2dAvx2(const VolumeTables& tables, const CosineVolume& noise, float x, float y, float time);

} // namespace nezaiva
