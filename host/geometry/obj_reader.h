// Meshes from OBJ files.
#pragma once

#include "host/geometry/mesh_data.h"

#include <filesystem>

namespace ombrix {

// The mesh of a file could not be made.
struct MeshFileError {
    std::string message; // names the file, the line if there is one at fault ("a.obj:5: "), and the reason
    bool unreadable = false; // the file itself, not what stands in it
};

// Reads all shapes of an OBJ file as one mesh. Polygons become triangles, texture coordinates map channel
// 1 with the name "map1". Normals are taken when every corner has one. Throws MeshFileError.
MeshData readObj(const std::filesystem::path& file);

} // namespace ombrix
