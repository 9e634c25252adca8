// The scene as rays see it: meshes, and instances of them that may move. The one place that knows Embree.
#pragma once

#include "host/geometry/mesh_data.h"

#include <cstdint>
#include <memory>
#include <span>

namespace ombrix {

struct Ray {
    Vector origin;
    float near = 0.0f; // distances in lengths of the direction
    Vector direction;
    float far = 1e30f;
    float time = 0.0f; // place within the shutter interval, 0 to 1
};

inline constexpr std::uint32_t kNoHit = 0xFFFFFFFFu;

struct RayHit {
    std::uint32_t instance = kNoHit;
    std::uint32_t triangle = 0;
    float u = 0.0f, v = 0.0f; // weights of the triangle's second and third corner
    float distance = 0.0f;
};

class RayScene {
public:
    RayScene();
    ~RayScene();
    RayScene(RayScene&&) noexcept;
    RayScene& operator=(RayScene&&) noexcept;

    // An instance of a mesh, and its index, which rises from 0. samples: the local-to-world transforms,
    // evenly spread over the shutter interval; between them, columns and offset are interpolated. None
    // may be singular. The mesh has no problem and must live until commit; equal addresses share memory.
    std::uint32_t addInstance(const MeshData& mesh, std::span<const Transform> samples);
    // Builds everything. Rays may be shot from any number of threads after it.
    void commit();

    // The nearest hit within near and far, else an instance of kNoHit.
    RayHit intersect(const Ray& ray) const;
    // Whether anything lies within near and far.
    bool occluded(const Ray& ray) const;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ombrix
