#include "kernels/noises/volume/volume_billow_body.h"

namespace nezaiva {

constinit const VolumeKernels<BillowVolume> billowVolumeAvx2 = kBillowVolume;

} // namespace nezaiva
