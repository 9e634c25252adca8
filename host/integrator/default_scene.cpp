#include "host/integrator/default_scene.h"

#include "host/geometry/geometry_interfaces.h"
#include "host/integrator/scene_interfaces.h"
#include "host/params/host_parameters.h"
#include "host/scene/contents_check.h"
#include "host/scene/json_values.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <set>

namespace ombrix {

namespace {

using nlohmann::json;
using OUtils::PluginBase;

// Gathers the plugins that an instance refers to.
struct ReferenceCollector final : OUtils::EnumParamsCallback {
    std::set<PluginBase*>& found;
    explicit ReferenceCollector(std::set<PluginBase*>& into) : found(into) {}

    int processParam(OUtils::OmbrixPluginParameter* parameter) override
    {
        const auto* known = dynamic_cast<HostParameter*>(parameter);
        if (!known || !known->value()) return 1;
        for (const std::vector<Value>& sample : known->value()->samples)
            for (const Value& element : sample)
                if (const auto* reference = std::get_if<PluginReference>(&element))
                    found.insert(reference->plugin);
        return 1;
    }
};

template <class Interface>
bool offers(const PluginInstance& instance)
{
    return OUtils::find<Interface>(instance.plugin) != nullptr;
}

std::set<PluginBase*> referredPlugins(const Scene& scene)
{
    std::set<PluginBase*> found;
    ReferenceCollector collector(found);
    for (const PluginInstance& instance : scene.instances())
        if (instance.life && instance.life->paramList) instance.life->paramList->enumParams(collector);
    return found;
}

bool hasObjects(const Scene& scene)
{
    for (const PluginInstance& instance : scene.instances())
        if (offers<SceneNodeInterface>(instance) || offers<MeshGeometryInterface>(instance)) return true;
    return false;
}

bool isShowable(const PluginInstance& instance)
{
    return offers<OUtils::TextureInterface>(instance) || offers<OUtils::TextureFloatInterface>(instance) ||
           offers<OUtils::MaterialInterface>(instance);
}

class Studio {
public:
    Studio(Scene& ofScene, Diagnostics& reports) : scene(ofScene), diagnostics(reports) {}

    void build(const PluginInstance& shown)
    {
        bool lit = false, viewed = false;
        for (const PluginInstance& instance : scene.instances()) {
            lit = lit || offers<SceneLightInterface>(instance);
            viewed = viewed || offers<SceneCameraInterface>(instance);
        }
        const std::string look = materialFor(shown);
        addObject("ball", "shaderball_shell", look, {{"translate", {0.0, 1.35, 0.0}}});
        addObject("foot", "shaderball_base", addMaterial("foot_surface", {0.16, 0.16, 0.165}),
                  {{"translate", {0.0, 1.35, 0.0}}});
        addObject("backdrop", "backdrop", addMaterial("backdrop_surface", {0.4, 0.4, 0.41}),
                  {{"translate", {0.0, 0.0, 0.0}}});
        if (!lit) addLights();
        if (!viewed)
            add("camera", "Camera",
                {{"position", {0.0, 2.55, 7.1}}, {"target", {0.0, 1.1, 0.0}}, {"fov", 38.0}});
    }

private:
    // The name of a new plugin, which no other has.
    std::string add(const std::string& wanted, const std::string& type, const json& params)
    {
        std::string name = "studio_" + wanted;
        while (scene.find(name))
            name += '_';
        scene.add(name, type, params, diagnostics);
        return name;
    }

    std::string addMaterial(const std::string& name, const json& diffuse)
    {
        return add(name, "Surface", {{"diffuse", diffuse}});
    }

    // A material as it is, a texture as the diffuse input of one.
    std::string materialFor(const PluginInstance& shown)
    {
        if (offers<OUtils::MaterialInterface>(shown)) return shown.name;
        if (offers<OUtils::TextureInterface>(shown)) return addMaterial("surface", shown.name);
        const std::string grey =
            add("grey", "FloatsToColor", {{"red", shown.name}, {"green", shown.name}, {"blue", shown.name}});
        return addMaterial("surface", grey);
    }

    void addObject(const std::string& name, const std::string& shape, const std::string& material,
                   const json& transform)
    {
        const std::string mesh = add(name + "_mesh", "Mesh", {{"shape", shape}});
        add(name, "Node", {{"geometry", mesh}, {"material", material}, {"transform", transform}});
    }

    void addLights()
    {
        add("key", "PointLight",
            {{"position", {-4.6, 6.2, 5.2}},
             {"radius", 1.6},
             {"color", {1.0, 0.97, 0.92}},
             {"intensity", 84.0}});
        add("rim", "PointLight",
            {{"position", {5.5, 4.2, -1.2}},
             {"radius", 1.2},
             {"color", {0.85, 0.93, 1.0}},
             {"intensity", 16.0}});
        add("fill", "DomeLight", {{"color", {0.93, 0.97, 1.0}}, {"intensity", 0.2}});
    }

    Scene& scene;
    Diagnostics& diagnostics;
};

// Of several cameras the first one takes the picture.
void tellCamera(const Scene& scene, Diagnostics& diagnostics)
{
    std::vector<std::string> names;
    for (const PluginInstance& instance : scene.instances())
        if (offers<SceneCameraInterface>(instance)) names.push_back(instance.name);
    if (names.size() < 2) return;
    const std::string used = names.front();
    names.erase(names.begin());
    diagnostics.warning("/plugins" + pointerStep(used),
                        fmt::format("the picture is taken by this Camera; \"{}\" {} not used",
                                    fmt::join(names, "\", \""), names.size() == 1 ? "is" : "are"));
}

} // namespace

void checkForPicture(const Scene& scene, Diagnostics& diagnostics)
{
    for (const PluginInstance& instance : scene.instances()) {
        ContentsCheckInterface* check = contentsCheckOf(instance);
        const std::string lack = check ? check->findLack() : std::string();
        if (!lack.empty()) diagnostics.error("/plugins" + pointerStep(instance.name), lack);
    }
    tellCamera(scene, diagnostics);
}

std::string addDefaultObjects(Scene& scene, Diagnostics& diagnostics)
{
    if (hasObjects(scene)) return {};
    const std::set<PluginBase*> referred = referredPlugins(scene);
    std::vector<const PluginInstance*> roots;
    std::vector<std::string> names;
    for (const PluginInstance& instance : scene.instances()) {
        if (referred.contains(instance.plugin) || !isShowable(instance)) continue;
        roots.push_back(&instance);
        names.push_back(instance.name);
    }
    if (roots.size() == 1) {
        Studio(scene, diagnostics).build(*roots.front());
        return {};
    }
    if (roots.empty()) return "the scene has nothing to show: give it a Mesh and a Node, or a texture";
    return fmt::format(
        "the scene has no Mesh and Node, and {} textures that nothing reads (\"{}\"): one alone would "
        "be shown on the shader ball",
        roots.size(), fmt::join(names, "\", \""));
}

} // namespace ombrix
