// PointLight, DistantLight and DomeLight. A light of intensity 1 makes a white diffuse surface that faces
// it as bright as its color; a point light does so at distance 1.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/parameter_values.h"
#include "host/image/image.h"
#include "host/integrator/environment_map.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/registry.h"
#include "host/scene/contents_check.h"

#include <memory>

namespace ombrix {

namespace {

using namespace OUtils;

constexpr Color kWhite{1.0f, 1.0f, 1.0f};

Vector relativeTo(const VectorD& origin, const Vector& point)
{
    return {static_cast<float>(static_cast<double>(point.x) - origin.x),
            static_cast<float>(static_cast<double>(point.y) - origin.y),
            static_cast<float>(static_cast<double>(point.z) - origin.z)};
}

// Color and intensity, which all lights have, and the way in which the renderer finds them.
class Light : public OmbrixPlugin, public SceneLightInterface {
public:
    explicit Light(OmbrixPluginDesc* desc) : OmbrixPlugin(desc)
    {
        paramList->setParamCache("color", &color);
        paramList->setParamCache("intensity", &intensity);
    }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kSceneLightId) return static_cast<SceneLightInterface*>(this);
        return OmbrixPlugin::getInterface(id);
    }
    LightDescription describe() override { return description; }

protected:
    // What the bound fields say; numbers that are negative or not finite count as 0.
    void begin(OmbrixRenderer* renderer, LightDescription::Kind kind)
    {
        OmbrixPlugin::frameBegin(renderer);
        description = {};
        description.kind = kind;
        const Color power = color * intensity;
        description.power = {usable(power.r), usable(power.g), usable(power.b)};
        if (description.power.r != power.r || description.power.g != power.g ||
            description.power.b != power.b)
            warn(renderer, "its color times its intensity is negative or not finite; that counts as 0");
    }
    void warn(OmbrixRenderer* renderer, const char* text) const
    {
        const char* name = getPluginName();
        if (RendererLogger* logger = renderer ? renderer->getLogger() : nullptr)
            logger->warning("light \"%s\": %s", name ? name : "", text);
    }
    static float usable(float value) { return value > 0.0f && std::isfinite(value) ? value : 0.0f; }

    LightDescription description;

private:
    Color3f color = kWhite;
    float intensity = 1.0f;
};

class PointLightParams : public OmbrixParameterListDesc {
public:
    PointLightParams()
    {
        addParamColor("position", Color{0.0f, 3.0f, 0.0f}, -1, "Where it stands, [x, y, z]", kPointMetadata);
        addParamColor("color", kWhite, -1, "The light's color", nullptr);
        addParamFloat(
            "intensity", 1.0f, -1,
            "Multiplies color. The light falls with the square of the distance; it is 1 at distance 1",
            "minValue=(0)");
        addParamFloat("radius", 0.0f, -1,
                      "Radius of the ball that gives the light; above 0 it softens shadows",
                      "quantityType=(distance), minValue=(0)");
    }
};

class PointLight : public Light {
public:
    explicit PointLight(OmbrixPluginDesc* desc) : Light(desc) { paramList->setParamCache("radius", &radius); }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        begin(renderer, LightDescription::Kind::Point);
        const FrameData frame = renderer ? renderer->getFrameData() : FrameData{};
        description.position = relativeTo(frame.sceneOrigin, readPoint(*paramList, "position", frame.time));
        description.radius = usable(radius);
        if (description.radius != radius)
            warn(renderer, "its radius is negative or not finite; that counts as 0");
        if (isFinite(description.position)) return;
        description.power = {};
        warn(renderer, "its position is not finite; it gives no light");
    }

private:
    float radius = 0.0f;
};

class DistantLightParams : public OmbrixParameterListDesc {
public:
    DistantLightParams()
    {
        addParamColor("direction", Color{-0.4f, -1.0f, -0.6f}, -1, "Where the light goes to, [x, y, z]",
                      kDirectionMetadata);
        addParamColor("color", kWhite, -1, "The light's color", nullptr);
        addParamFloat("intensity", 1.0f, -1, "Multiplies color", "minValue=(0)");
        addParamFloat("angle", 0.0f, -1,
                      "Apparent diameter of the light, that of the sun is 0.53; above 0 it softens shadows",
                      "units=(degrees), minValue=(0), maxValue=(180)");
    }
};

class DistantLight : public Light, public ContentsCheckInterface {
public:
    explicit DistantLight(OmbrixPluginDesc* desc) : Light(desc) { paramList->setParamCache("angle", &angle); }

    PluginBase* getPlugin() override { return this; }
    PluginInterface* getInterface(InterfaceId id) override
    {
        if (id == kContentsCheckId) return static_cast<ContentsCheckInterface*>(this);
        return Light::getInterface(id);
    }
    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes(*paramList, {"direction"}))
            if (!hasLength(directionAt(time)))
                return ContentsProblem{"direction",
                                       "it has no length; write where the light goes to, [x, y, z]"};
        return {};
    }
    void frameBegin(OmbrixRenderer* renderer) override
    {
        begin(renderer, LightDescription::Kind::Distant);
        const double time = renderer ? renderer->getFrameData().time : FrameData{}.time;
        description.direction = directionAt(time);
        description.halfAngle = radians(0.5f * std::min(usable(angle), 180.0f));
        // An animated direction may pass through zero; the light is out for that moment.
        if (hasLength(description.direction)) return;
        description.power = {};
        warn(renderer, "its direction has no length in this frame; it gives no light");
    }

private:
    Vector directionAt(double time)
    {
        return normalizedOr(readPoint(*paramList, "direction", time), Vector{});
    }
    static bool hasLength(const Vector& direction) { return dot(direction, direction) > 0.0f; }

    float angle = 0.0f;
};

class DomeLightParams : public OmbrixParameterListDesc {
public:
    DomeLightParams()
    {
        addParamColor("color", kWhite, -1, "The light's color; multiplies the image", nullptr);
        addParamFloat("intensity", 1.0f, -1, "Multiplies color and image", "minValue=(0)");
        addParamString(
            "file", "", -1,
            "A latitude-longitude image of the surroundings. Its middle lies towards -z, its right half "
            "towards +x",
            kFileMetadata);
        addParamFloat("rotate", 0.0f, -1,
                      "Turns the image about the y axis, counter-clockwise seen from above",
                      "units=(degrees)");
        addParamBool("visible", false, -1,
                     "Whether the camera sees the dome. Otherwise the background is empty, with alpha 0",
                     nullptr);
    }
};

class DomeLight : public Light {
public:
    explicit DomeLight(OmbrixPluginDesc* desc) : Light(desc)
    {
        paramList->setParamCache("file", &file);
        paramList->setParamCache("rotate", &rotate);
        paramList->setParamCache("visible", &visible);
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        begin(renderer, LightDescription::Kind::Dome);
        description.turn = std::isfinite(rotate) ? radians(std::remainder(rotate, 360.0f)) : 0.0f;
        description.visible = visible != 0;
        if (!map || loadedFile != file.str()) load();
        description.map = map.get();
    }

private:
    // Throws WorkError: a picture without the surroundings that it was to have would mislead.
    void load()
    {
        map.reset();
        loadedFile = file.str();
        if (loadedFile.empty()) return;
        const Image image = readImage(loadedFile, ColorSpace::Auto);
        map = std::make_unique<EnvironmentMap>(image.width, image.height, image.pixels.data());
    }

    CharString file;
    float rotate = 0.0f;
    int visible = 0;

    std::unique_ptr<EnvironmentMap> map;
    std::string loadedFile;
};

BuiltinDesc<PointLight, PointLightParams>
    pointLightDesc({3300000105, "PointLight", "A light that shines from a point [gpuSupport=(none)]", {}});
BuiltinDesc<DistantLight, DistantLightParams> distantLightDesc(
    {3300000106, "DistantLight", "A light from far away, as the sun's [gpuSupport=(none)]", {}});
BuiltinDesc<DomeLight, DomeLightParams> domeLightDesc(
    {3300000107, "DomeLight", "Light from all around, even or of an image [gpuSupport=(none)]", {}});

} // namespace

} // namespace ombrix
