// What a scene without an object of its own shows: its one texture, or its one material, on the shader
// ball in a small studio.
#pragma once

#include "host/scene/scene.h"

#include <string>

namespace ombrix {

// Adds the studio to a scene that has no geometry and no node but exactly one texture, or one material,
// that no other plugin reads. Lights and a camera of the scene's own stay and stand in for the studio's.
// Returns a note for the user when the scene has nothing to show, else an empty text. Call before
// renderBegin.
std::string addDefaultObjects(Scene& scene, Diagnostics& diagnostics);

} // namespace ombrix
