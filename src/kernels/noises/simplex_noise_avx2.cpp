#include "kernels/noises/simplex_body.h"

namespace nezaiva {

constinit const SimplexKernels simplexAvx2 = kSimplexKernels;

} // namespace nezaiva
