#include "kernels/noises/volume/volume_perlin_body.h"

namespace nezaiva {

constinit const VolumeKernels<PerlinVolume> perlinVolumeAvx2 = kPerlinVolume;

} // namespace nezaiva
