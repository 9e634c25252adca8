#include "numeric/lanes_body.h"

namespace nezaiva {
constinit const LanesUnderTest lanesUnderTestAvx2 = kLanesUnderTest;
} // namespace nezaiva
