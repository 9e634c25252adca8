// The parameters of TexNoiseMaya.
#pragma once

#include "plugin_frame/mapped_texture.h"

namespace nezaiva {

// The declared default of implode_center is also what an unset input reads as.
inline constexpr AColor kDefaultImplodeCenter{0.5f, 0.5f, 0.5f, 1.0f};

class TexNoiseMayaParams : public MappedTextureParams {
public:
    TexNoiseMayaParams();
};

} // namespace nezaiva
