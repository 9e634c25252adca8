#include "kernels/noises/volume/volume_perlin_body.h"

namespace nezaiva {

constinit const VolumeKernels<PerlinVolume> perlinVolumeBase = kPerlinVolume;

} // namespace nezaiva
