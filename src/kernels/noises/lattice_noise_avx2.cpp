#include "kernels/noises/lattice_body.h"

namespace nezaiva {

constinit const LatticeKernels latticeAvx2 = kLatticeKernels;

} // namespace nezaiva
