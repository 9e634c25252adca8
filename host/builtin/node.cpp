// Node: an instance of a geometry in the world, with its material. It is the object that textures meet as
// the surface and the instance of a hit.

#include "host/builtin/parameter_values.h"
#include "host/geometry/geometry_interfaces.h"
#include "host/geometry/mesh_surface.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"

#include <ombrix/world_interfaces.h>

#include <cstring>

namespace ombrix {

namespace {

using namespace OUtils;

class NodeParams : public OmbrixParameterListDesc {
public:
    NodeParams()
    {
        addParamPlugin("geometry", EXT_OMBRIX_PLUGIN, -1, "What is shown: a Mesh", nullptr);
        addParamPlugin("material", EXT_MATERIAL, -1, "Its look; a middle grey when left out", nullptr);
        addParamTransform(
            "transform", 1, Transform{}, -1,
            "From the geometry's space to the world. Animated values move it within the shutter", nullptr);
        addParamBool("visible", true, -1, "Whether it is rendered", nullptr);
        addParamString("user_attributes", "", -1,
                       "Values for textures that ask by name: \"name=value;name=value\"", nullptr);
    }
};

// The transform relative to the scene origin, rounded once, after the subtraction.
Transform relativeTo(const VectorD& origin, const TraceTransform& transform)
{
    return {transform.matrix,
            {static_cast<float>(transform.offset.x - origin.x),
             static_cast<float>(transform.offset.y - origin.y),
             static_cast<float>(transform.offset.z - origin.z)}};
}

bool isUsable(const Transform& transform)
{
    for (const Vector& column : transform.matrix.columns)
        if (!isFinite(column)) return false;
    const float volume = determinant(transform.matrix);
    return isFinite(transform.offset) && std::isfinite(volume) && volume != 0.0f;
}

class Node : public OmbrixPlugin,
             public SceneNodeInterface,
             public MappedSurface,
             public WorldMatrixInterface {
public:
    explicit Node(OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("geometry", &geometry);
        paramList->setParamCache("material", &material);
        paramList->setParamCache("transform", &transform);
        paramList->setParamCache("visible", &visible);
        paramList->setParamCache("user_attributes", &user_attributes);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == EXT_MAPPED_SURFACE) return mesh ? static_cast<MappedSurface*>(this) : nullptr;
        if (id == EXT_WORLD_MATRIX) return static_cast<WorldMatrixInterface*>(this);
        if (id == kSceneNodeId) return static_cast<SceneNodeInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        findParts(renderer);
        readTransforms(renderer ? renderer->getFrameData() : FrameData{});
        usable = true;
        for (const Transform& sample : transforms)
            usable = usable && isUsable(sample);
        if (!usable && mesh && visible)
            warn(renderer, "its transform flattens it or is not finite; it is not shown");
        findChannelIds(renderer);
    }
    void frameEnd(OmbrixRenderer* /*renderer*/) override
    {
        mesh = nullptr;
        materialInterface = nullptr;
        channelIds.clear();
    }

    bool isVisible() override { return visible != 0 && usable; }
    const MeshData* getMesh() override { return mesh; }
    MaterialInterface* getMaterial() override { return materialInterface; }
    std::span<const Transform> getTransforms() override { return transforms; }

    void getWorldTransform(const OmbrixContext& context, TraceTransform* result) override
    {
        const Transform now = transformAt(transforms, static_cast<float>(context.rayTime));
        result->matrix = now.matrix;
        result->offset = {static_cast<double>(now.offset.x), static_cast<double>(now.offset.y),
                          static_cast<double>(now.offset.z)};
    }

    int getLocalUVWTransform(const OmbrixContext& context, int channel, Transform* result) override
    {
        const MapChannel* found = channelOf(context, channel);
        if (!found) return 0;
        *result = hitTransform(*found, context);
        return 1;
    }
    int getLocalUVW(const OmbrixContext& context, int channel, UVWSample* result) override
    {
        const MapChannel* found = channelOf(context, channel);
        if (!found) return 0;
        const Transform map = hitTransform(*found, context);
        const Vector du = map.matrix * context.positionDiffU, dv = map.matrix * context.positionDiffV;
        result->uvw = {map.offset.x, map.offset.y, map.offset.z, 0.0f};
        result->du = {du.x, du.y, du.z, 0.0f};
        result->dv = {dv.x, dv.y, dv.z, 0.0f};
        return 1;
    }
    int getLocalUVWTransformByName(const OmbrixContext& context, int nameId, Transform* result) override
    {
        const MapChannel* found = isHit(context) ? channelOfName(nameId) : nullptr;
        if (!found) return -1;
        *result = hitTransform(*found, context);
        return 1;
    }
    int getMapChannelValue(const OmbrixContext& context, int nameId, Vector* result) override
    {
        const MapChannel* found = isHit(context) ? channelOfName(nameId) : nullptr;
        if (!found) return -1;
        *result = channelValue(*found, static_cast<std::size_t>(context.faceIndex), context.barycentric);
        return found->number;
    }
    void getMapChannelByIndex(const OmbrixContext& context, int index, Vector* result) override
    {
        const MapChannel* found = channelOf(context, index);
        *result = found
                      ? channelValue(*found, static_cast<std::size_t>(context.faceIndex), context.barycentric)
                      : Vector{};
    }
    float getMapChannelMissing(const OmbrixContext& context, int index) override
    {
        const MapChannel* found = channelOf(context, index);
        return found ? missingWeight(*found, static_cast<std::size_t>(context.faceIndex), context.barycentric)
                     : 1.0f;
    }

private:
    struct ChannelId {
        int nameId;
        const MapChannel* channel;
    };

    void findParts(OmbrixRenderer* renderer)
    {
        auto* source = findInterface<MeshGeometryInterface>(geometry, kMeshGeometryId);
        if (geometry && !source) warn(renderer, "its geometry is none that can be rendered; give it a Mesh");
        mesh = source ? source->getMesh() : nullptr;
        materialInterface = findInterface<MaterialInterface>(material, EXT_MATERIAL);
        if (material && !materialInterface)
            warn(renderer, "its material is none; give it a Surface. It is shown in grey");
    }

    // One transform, or one for each time sample of the shutter when the scene animates it.
    void readTransforms(const FrameData& frame)
    {
        transforms.clear();
        const bool moving =
            frame.motionBlur && frame.geometrySamples > 1 && isAnimated(*paramList, "transform");
        if (!moving) {
            transforms.push_back(relativeTo(frame.sceneOrigin, transform));
            return;
        }
        OmbrixPluginParameter* parameter = paramList->getParam("transform");
        for (int i = 0; i < frame.geometrySamples; ++i) {
            const double t = static_cast<double>(i) / (frame.geometrySamples - 1);
            const double time = frame.intervalStart + (frame.intervalEnd - frame.intervalStart) * t;
            transforms.push_back(relativeTo(frame.sceneOrigin, parameter->getTransform(-1, time)));
        }
    }

    void findChannelIds(OmbrixRenderer* renderer)
    {
        channelIds.clear();
        MapChannelNames* names = renderer ? renderer->getMapChannelNames() : nullptr;
        if (!mesh || !names) return;
        for (const MapChannel& channel : mesh->channels)
            if (!channel.name.empty())
                channelIds.push_back({names->getNameId(channel.name.c_str()), &channel});
    }

    // Whether the context's hit lies on this mesh.
    bool isHit(const OmbrixContext& context) const
    {
        return mesh && context.faceIndex >= 0 &&
               static_cast<std::size_t>(context.faceIndex) < mesh->triangles.size();
    }
    const MapChannel* channelOf(const OmbrixContext& context, int number) const
    {
        return isHit(context) ? mesh->channel(number) : nullptr;
    }
    const MapChannel* channelOfName(int nameId) const
    {
        for (const ChannelId& known : channelIds)
            if (known.nameId == nameId) return known.channel;
        return nullptr;
    }
    Transform hitTransform(const MapChannel& channel, const OmbrixContext& context) const
    {
        const auto triangle = static_cast<std::size_t>(context.faceIndex);
        const Transform now = transformAt(transforms, static_cast<float>(context.rayTime));
        return channelTransform(channel, triangle, context.barycentric, worldTriangle(*mesh, now, triangle));
    }

    void warn(OmbrixRenderer* renderer, const char* text)
    {
        const char* name = getPluginName();
        if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
            logger->warning("node \"%s\": %s", name ? name : "", text);
    }

    PluginBase* geometry = nullptr;
    PluginBase* material = nullptr;
    TraceTransform transform;
    int visible = 1;
    CharString user_attributes;

    const MeshData* mesh = nullptr;
    MaterialInterface* materialInterface = nullptr;
    std::vector<Transform> transforms{Transform{}};
    std::vector<ChannelId> channelIds;
    bool usable = true;
};

BuiltinDesc<Node, NodeParams> nodeDesc({3300000103,
                                        "Node",
                                        "An object of the scene: a geometry with a material, in its place "
                                        "[gpuSupport=(none)]",
                                        {EXT_WORLD_MATRIX}});

} // namespace

} // namespace ombrix
