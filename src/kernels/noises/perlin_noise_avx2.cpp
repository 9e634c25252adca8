#include "kernels/noises/perlin_body.h"

namespace nezaiva {

constinit const PerlinKernels perlinAvx2 = kPerlinKernels;

} // namespace nezaiva
