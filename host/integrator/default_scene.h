// What a scene without an object of its own shows: its one texture, or its one material, on the shader
// ball in a small studio.
#pragma once

#include "host/scene/scene.h"

#include <string>

namespace ombrix {

// Reports what keeps the scene from being a picture: an object that the scene gives no form is an error, a
// second camera a warning that tells which one is used.
void checkForPicture(const Scene& scene, Diagnostics& diagnostics);

// Adds the studio to a scene that has no geometry and no node but exactly one texture, or one material,
// that no other plugin reads. Lights and a camera of the scene's own stay and stand in for the studio's.
// Returns a note for the user when the scene has nothing to show, else an empty text. Call before
// renderBegin.
std::string addDefaultObjects(Scene& scene, Diagnostics& diagnostics);

} // namespace ombrix
