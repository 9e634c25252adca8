// What the two condition textures share: the choice, and the GPU operator that repeats it.
#pragma once

#include "plugin_frame/slot_text.h"

#include <ombrix/texture_interfaces.h>

namespace nezaiva {

// Consumes the slots condition, B, alpha of B, A, alpha of A.
inline constexpr int kConditionOperator = -948;

// The GPU's constants for unset inputs.
inline constexpr AColor kUnsetConditionSlot{0.0f, 0.0f, 0.0f, 0.0f};
inline constexpr AColor kUnsetInputSlot{1.0f, 1.0f, 1.0f, 1.0f};

// An unset condition chooses B, as a condition of exactly 0 does. All other values choose A, NaN too.
inline bool choosesA(TextureFloatInterface* condition, const OmbrixContext& context)
{
    return condition && condition->evalFloat(context) != 0.0f;
}

} // namespace nezaiva
