#include "kernels/procedurals/cloth_body.h"

namespace nezaiva {

constinit const ClothKernels clothAvx2 = kClothOnLanes;

} // namespace nezaiva
