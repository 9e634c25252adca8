// Reads the "settings" of a scene file.
#pragma once

#include "host/renderer/host_renderer.h"
#include "host/scene/json_values.h"

namespace ombrix {

// What the file does not give keeps its default. Unknown keys and wrong values are reported.
SceneSettings readSettings(const JsonPlace& place);

} // namespace ombrix
