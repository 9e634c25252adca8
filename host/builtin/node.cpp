// Node: an instance of a geometry in the world, with its material. It is the object that textures meet as
// the surface and the instance of a hit.

#include "host/builtin/frame_values.h"
#include "host/builtin/mapping.h"
#include "host/builtin/parameter_values.h"
#include "host/geometry/geometry_interfaces.h"
#include "host/geometry/mesh_surface.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/builtin_desc.h"

#include <ombrix/world_interfaces.h>

namespace ombrix {

namespace {

using namespace OUtils;

bool isUsable(const Transform& transform)
{
    for (const Vector& column : transform.matrix.columns)
        if (!isFinite(column)) return false;
    const float volume = determinant(transform.matrix);
    return isFinite(transform.offset) && std::isfinite(volume) && volume != 0.0f;
}

class Node final : public Offers<OmbrixPlugin, MappedSurface, WorldMatrixInterface, SceneNodeInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        3300000103,
        "Node",
        "An object of the scene: a geometry with a material, in its place [gpuSupport=(none)]",
        {EXT_WORLD_MATRIX}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("geometry", &Node::geometry, noDefault, "What is shown: a Mesh");
        p("material", &Node::material, noDefault, "Its look; a middle grey when left out");
        p("transform", &Node::transform, TransformDefault{1, {}},
          "From the geometry's space to the world. Animated values move it within the shutter");
        p("visible", &Node::visible, true, "Whether it is rendered");
        p("user_attributes", unbound<CharString>, "",
          "Values for textures that ask by name: \"name=value;name=value\"");
    }

    // It is a mapped surface while it has a mesh.
    PluginInterface* getInterface(InterfaceId id) override
    {
        return id == MappedSurface::kId && !mesh ? nullptr : Offers::getInterface(id);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        OmbrixPlugin::frameBegin(renderer);
        findParts(renderer);
        readTransforms(frameOf(renderer));
        usable = true;
        for (const Transform& sample : transforms)
            usable = usable && isUsable(sample);
        if (!usable && mesh && visible)
            warn(renderer, "node", *this, "its transform flattens it or is not finite; it is not shown");
        findChannelIds(renderer);
    }
    void frameEnd(OmbrixRenderer* /*renderer*/) override
    {
        mesh = nullptr;
        material.found = nullptr;
        channelIds.clear();
    }

    bool isVisible() override { return visible != 0 && usable; }
    const MeshData* getMesh() override { return mesh; }
    MaterialInterface* getMaterial() override { return material; }
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
        result->uvw = padded(map.offset);
        result->du = padded(map.matrix * context.positionDiffU);
        result->dv = padded(map.matrix * context.positionDiffV);
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
        auto* source = find<MeshGeometryInterface>(geometry.plugin);
        if (geometry.plugin && !source)
            warn(renderer, "node", *this, "its geometry is none that can be rendered; give it a Mesh");
        mesh = source ? source->getMesh() : nullptr;
        material.resolve();
        if (material.plugin && !material)
            warn(renderer, "node", *this, "its material is none; give it a Surface. It is shown in grey");
    }

    // One transform, or one for each time sample of the shutter when the scene animates it.
    void readTransforms(const FrameData& frame)
    {
        transforms.clear();
        for (const double time : shutterTimes(frame, transform.isAnimated()))
            transforms.push_back(relativeTo(frame.sceneOrigin, transform.at(time)));
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

    PluginInput<OmbrixPluginInterface> geometry; // of any kind, which is warned of where it is no mesh
    PluginInput<MaterialInterface> material;
    TimedTransform transform;
    int visible = 0;

    const MeshData* mesh = nullptr;
    std::vector<Transform> transforms{Transform{}};
    std::vector<ChannelId> channelIds;
    bool usable = true;
};

BuiltinDesc<Node> nodeDesc;

} // namespace

} // namespace ombrix
