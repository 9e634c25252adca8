// The parameters of UVWGenMayaPlace2dTexture.
#pragma once

#include <ombrix/parameters.h>

namespace nezaiva {

using namespace OUtils;

class UVWGenMayaPlace2dTextureParams : public OmbrixParameterListDesc {
public:
    UVWGenMayaPlace2dTextureParams();
};

} // namespace nezaiva
