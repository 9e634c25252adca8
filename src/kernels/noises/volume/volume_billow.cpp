#include "kernels/noises/volume/volume_billow_body.h"

namespace nezaiva {

constinit const VolumeKernels<BillowVolume> billowVolumeBase = kBillowVolume;

} // namespace nezaiva
