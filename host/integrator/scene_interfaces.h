// How the renderer finds what it renders: the interfaces of the host's own scene kinds. The ids are the
// host's own and no part of the contract with plug-in libraries. All of it is valid between frameBegin
// and frameEnd.
#pragma once

#include "host/geometry/mesh_data.h"

#include <ombrix/context.h>
#include <ombrix/material_interfaces.h>
#include <ombrix/plugin_base.h>

#include <optional>
#include <span>

namespace ombrix {

class EnvironmentMap;

// What is instanced.
class SceneNodeInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4203;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    virtual bool isVisible() = 0;
    virtual const MeshData* getMesh() = 0;                // null: nothing to show
    virtual OUtils::MaterialInterface* getMaterial() = 0; // null: the default grey
    // Local to world, relative to the scene origin, evenly spread over the shutter interval; at least one.
    virtual std::span<const Transform> getTransforms() = 0;
};

// What a material tells beside MaterialInterface. A material without it counts as one that may let light
// through.
class SurfaceMaterialInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4204;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // Whether no point of it lets anything through.
    virtual bool isOpaque() = 0;
};

// A diffuse surface's inputs at a point.
struct SurfaceSample {
    Color diffuse{0.5f, 0.5f, 0.5f};
    Color emission;
    Color opacity{1.0f, 1.0f, 1.0f};
};

// Offered by the renderer while it renders: lights a point for a material. A renderer without it leaves
// surfaces unlit.
class SurfaceLightingInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4207;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // Fills the record with what leaves the context's point towards the eye. Call on the context's thread.
    virtual void shadeSurface(const OUtils::OmbrixContext& context, const SurfaceSample& surface,
                              OUtils::ShadeResult* result) = 0;
};

// A light. power is color times intensity: the radiance that a white diffuse surface facing the light
// reflects, of a point light at distance 1. A dome's is its radiance, times that of its image.
struct LightDescription {
    enum class Kind { Point, Distant, Dome };

    Kind kind = Kind::Dome;
    Color power{1.0f, 1.0f, 1.0f};
    Vector position;                     // relative to the scene origin
    Vector direction{0.0f, -1.0f, 0.0f}; // that the light travels in, unit length
    float radius = 0.0f;                 // of the ball that a point light is
    float halfAngle = 0.0f;              // of the cone that a distant light comes from, in radians
    const EnvironmentMap* map = nullptr; // of a dome; null: white all over
    float turn = 0.0f;                   // of a dome about +y, in radians
    bool visible = false;                // whether the camera sees a dome
};

class SceneLightInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4205;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    virtual LightDescription describe() = 0;
};

// A camera's place. What the scene left unset is absent, and found by framing what is visible.
struct CameraPose {
    std::optional<Vector> position, target; // relative to the scene origin
    Vector up{0.0f, 1.0f, 0.0f};
    float fov = 40.0f; // horizontal, in degrees
};

class SceneCameraInterface : public OUtils::PluginInterface {
public:
    static constexpr OUtils::InterfaceId kId = 0x4F4D4206;
    OUtils::InterfaceId getInterfaceID() override { return kId; }

    // Evenly spread over the shutter interval; at least one.
    virtual std::span<const CameraPose> getPoses() = 0;
};

} // namespace ombrix
