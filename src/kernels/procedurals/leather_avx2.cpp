#include "kernels/procedurals/leather_blobs_body.h"
#include "kernels/procedurals/leather_features_body.h"

namespace nezaiva {

constinit const LeatherBlobKernels leatherBlobsAvx2 = kLeatherBlobsOnLanes;
constinit const LeatherFeatureKernels leatherFeaturesAvx2 = kLeatherFeaturesOnLanes;

} // namespace nezaiva
