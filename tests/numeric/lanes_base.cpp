#include "numeric/lanes_body.h"

namespace nezaiva {
constinit const LanesUnderTest lanesUnderTestBase = kLanesUnderTest;
} // namespace nezaiva
