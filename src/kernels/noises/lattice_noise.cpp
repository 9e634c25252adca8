#include "kernels/noises/lattice_noise.h"

#include "kernels/noises/lattice_body.h"
#include "numeric/simd_dispatch.h"

namespace nezaiva {

constinit const LatticeKernels latticeBase = kLatticeKernels;

float latticeNoise2(const NoiseTables& tables, double x, double y)
{
    return chosen(latticeBase, latticeAvx2).noise2(tables, x, y);
}

float latticeNoise3(const NoiseTables& tables, double x, double y, double z)
{
    return chosen(latticeBase, latticeAvx2).noise3(tables, x, y, z);
}

float latticeNoise4(const NoiseTables& tables, double x, double y, double z, double w, std::int32_t period)
{
    return chosen(latticeBase, latticeAvx2).noise4(tables, x, y, z, w, period);
}

float latticeNoise2(double x, double y)
{
    return latticeNoise2(activeNoiseTables(), x, y);
}

float latticeNoise3(double x, double y, double z)
{
    return latticeNoise3(activeNoiseTables(), x, y, z);
}

float latticeNoise4(double x, double y, double z, double w, std::int32_t period)
{
    return latticeNoise4(activeNoiseTables(), x, y, z, w, period);
}

} // namespace nezaiva
