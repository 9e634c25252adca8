// The lattice noises of each instruction set; called through lattice_noise.h only.
#pragma once

#include "kernels/noises/random_tables.h"

#include <cstdint>

namespace nezaiva {

float latticeNoise2Baseline(const NoiseTables& tables, double x, double y);
float latticeNoise3Baseline(const NoiseTables& tables, double x, double y, double z);
float latticeNoise4Baseline(const NoiseTables& tables, double x, double y, double z, double w,
                            std::int32_t period);

// For coordinates of any size: the kernels leave to them what is too large for the grid of lattice_place.h.
float latticeNoise2Anywhere(const NoiseTables& tables, double x, double y);
float latticeNoise3Anywhere(const NoiseTables& tables, double x, double y, double z);

float latticeNoise2Avx2(const NoiseTables& tables, double x, double y);
float latticeNoise3Avx2(const NoiseTables& tables, double x, double y, double z);
float latticeNoise4Avx2(const NoiseTables& tables, double x, double y, double z, double w,
                        std::int32_t period);

} // namespace nezaiva
