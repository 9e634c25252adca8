// PointLight, DistantLight and DomeLight. A light of intensity 1 makes a white diffuse surface that faces
// it as bright as its color; a point light does so at distance 1.

#include "host/builtin/builtin_metadata.h"
#include "host/builtin/frame_values.h"
#include "host/builtin/parameter_values.h"
#include "host/image/image.h"
#include "host/integrator/environment_map.h"
#include "host/integrator/scene_interfaces.h"
#include "host/plugins/builtin_desc.h"
#include "host/scene/contents_check.h"

#include <memory>

namespace ombrix {

namespace {

using namespace OUtils;

constexpr const char* kColorDescription = "The light's color";

// Color and intensity, which all lights have, and the way in which the renderer finds them.
class Light : public Offers<OmbrixPlugin, SceneLightInterface> {
public:
    using Offers::Offers;

    LightDescription describe() override { return description; }

protected:
    template <class Table>
    static void parameters(Table& p, const char* colorText, const char* intensityText)
    {
        p("color", &Light::color, Color{1.0f, 1.0f, 1.0f}, colorText);
        p("intensity", &Light::intensity, 1.0f, intensityText, "minValue=(0)");
    }

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
        ombrix::warn(renderer, "light", *this, text);
    }
    static float usable(float value) { return value > 0.0f && std::isfinite(value) ? value : 0.0f; }

    LightDescription description;

private:
    Color3f color;
    float intensity = 0.0f;
};

class PointLight final : public Light {
public:
    using Light::Light;

    static constexpr Identity kIdentity{
        3300000105, "PointLight", "A light that shines from a point [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("position", &PointLight::position, Color{0.0f, 3.0f, 0.0f}, "Where it stands, [x, y, z]",
          kPointMetadata);
        Light::parameters(
            p, kColorDescription,
            "Multiplies color. The light falls with the square of the distance; it is 1 at distance 1");
        p("radius", &PointLight::radius, 0.0f,
          "Radius of the ball that gives the light; above 0 it softens shadows",
          "quantityType=(distance), minValue=(0)");
    }

    void frameBegin(OmbrixRenderer* renderer) override
    {
        begin(renderer, LightDescription::Kind::Point);
        const FrameData frame = frameOf(renderer);
        description.position = relativeTo(frame.sceneOrigin, position.at(frame.time));
        description.radius = usable(radius);
        if (description.radius != radius)
            warn(renderer, "its radius is negative or not finite; that counts as 0");
        if (isFinite(description.position)) return;
        description.power = {};
        warn(renderer, "its position is not finite; it gives no light");
    }

private:
    TimedPoint position;
    float radius = 0.0f;
};

class DistantLight final : public Offers<Light, ContentsCheckInterface> {
public:
    using Offers::Offers;

    static constexpr Identity kIdentity{
        3300000106, "DistantLight", "A light from far away, as the sun's [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        p("direction", &DistantLight::direction, Color{-0.4f, -1.0f, -0.6f},
          "Where the light goes to, [x, y, z]", kDirectionMetadata);
        Light::parameters(p, kColorDescription, "Multiplies color");
        p("angle", &DistantLight::angle, 0.0f,
          "Apparent diameter of the light, that of the sun is 0.53; above 0 it softens shadows",
          "units=(degrees), minValue=(0), maxValue=(180)");
    }

    std::optional<ContentsProblem> findProblem() override
    {
        for (const double time : sampleTimes({&direction}))
            if (!hasLength(directionAt(time)))
                return ContentsProblem{"direction",
                                       "it has no length; write where the light goes to, [x, y, z]"};
        return {};
    }
    void frameBegin(OmbrixRenderer* renderer) override
    {
        begin(renderer, LightDescription::Kind::Distant);
        description.direction = directionAt(frameOf(renderer).time);
        description.halfAngle = radians(0.5f * std::min(usable(angle), 180.0f));
        // An animated direction may pass through zero; the light is out for that moment.
        if (hasLength(description.direction)) return;
        description.power = {};
        warn(renderer, "its direction has no length in this frame; it gives no light");
    }

private:
    Vector directionAt(double time) const { return normalizedOr(direction.at(time), Vector{}); }
    static bool hasLength(const Vector& v) { return dot(v, v) > 0.0f; }

    TimedPoint direction;
    float angle = 0.0f;
};

class DomeLight final : public Light {
public:
    using Light::Light;

    static constexpr Identity kIdentity{
        3300000107, "DomeLight", "Light from all around, even or of an image [gpuSupport=(none)]", {}};

    template <class Table>
    static void parameters(Table& p)
    {
        Light::parameters(p, "The light's color; multiplies the image", "Multiplies color and image");
        p("file", &DomeLight::file, "",
          "A latitude-longitude image of the surroundings. Its middle lies towards -z, its right half "
          "towards +x",
          kFileMetadata);
        p("rotate", &DomeLight::rotate, 0.0f,
          "Turns the image about the y axis, counter-clockwise seen from above", "units=(degrees)");
        p("visible", &DomeLight::visible, false,
          "Whether the camera sees the dome. Otherwise the background is empty, with alpha 0");
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

BuiltinDesc<PointLight> pointLightDesc;
BuiltinDesc<DistantLight> distantLightDesc;
BuiltinDesc<DomeLight> domeLightDesc;

} // namespace

} // namespace ombrix
