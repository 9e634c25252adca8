#include "kernels/noises/volume/volume_cosine_few.h"

namespace nezaiva {

constinit const VolumeKernels<CosineVolume> cosineVolumeBase = kCosineVolume;

} // namespace nezaiva
