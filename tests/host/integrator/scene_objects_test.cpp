// The kinds of a scene: what they say of bad input, and what stands in for what is missing.

#include "host/errors/errors.h"
#include "host/geometry/geometry_interfaces.h"
#include "rendered_scene.h"

#include <ombrix/mapping_interfaces.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace ombrix;

std::string meshWith(const std::string& params)
{
    return R"("mesh": {"type": "Mesh", "params": {)" + params + R"(}},
              "node": {"type": "Node", "params": {"geometry": "mesh"}})";
}

const MeshData* meshOf(const RenderedScene& scene)
{
    return OUtils::find<MeshGeometryInterface>(scene.scene->find("mesh")->plugin)->getMesh();
}

constexpr const char* kSquare = R"("positions": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]], )";

TEST(Mesh, ListsMakeTriangles)
{
    RenderedScene scene(meshWith(std::string(kSquare) + R"("faces": [0,1,2, 0,2,3])"));
    ASSERT_NE(meshOf(scene), nullptr);
    EXPECT_EQ(meshOf(scene)->triangles.size(), 2u);
    EXPECT_EQ(meshOf(scene)->channel(-1), nullptr);
    EXPECT_TRUE(scene.frameLog.empty());
}

TEST(Mesh, FacesOfAnySizeStandInListsOrEndWithAMark)
{
    const std::vector<Corners> expected = {{0, 1, 2}, {0, 2, 3}, {0, 1, 2}};
    for (const char* faces : {"[[0,1,2,3], [0,1,2]]", "[0,1,2,3,-1, 0,1,2,-1]", "[0,1,2,3,-1, 0,1,2]"}) {
        RenderedScene scene(meshWith(std::string(kSquare) + R"("faces": )" + faces));
        ASSERT_NE(meshOf(scene), nullptr) << faces;
        EXPECT_EQ(meshOf(scene)->triangles, expected) << faces;
    }
}

TEST(Mesh, CoordinatesOfTwoNumbersHaveNoDepth)
{
    RenderedScene scene(
        meshWith(std::string(kSquare) +
                 R"("faces": [[0,1,2]], "uvs": [[0.5,0.25],[1,0],[1,1]], "uv_faces": [[0,1,2]])"));
    ASSERT_NE(meshOf(scene), nullptr);
    EXPECT_EQ(meshOf(scene)->channel(1)->values[0].y, 0.25f);
    EXPECT_EQ(meshOf(scene)->channel(1)->values[0].z, 0.0f);
}

TEST(Mesh, CoordinatesComeByPositionByCornerOrByTheirOwnFaces)
{
    const std::string faces = R"("faces": [[0,1,2,3]], )";
    RenderedScene byPosition(meshWith(kSquare + faces + R"("uvs": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]])"));
    EXPECT_EQ(meshOf(byPosition)->channel(1)->corners[1], (Corners{0, 2, 3}));
    RenderedScene byOwnFaces(
        meshWith(kSquare + faces + R"("uvs": [[0,0,0],[1,0,0]], "uv_faces": [0,1,1,-1])"));
    EXPECT_EQ(meshOf(byOwnFaces)->channel(1)->corners[1], (Corners{0, 1, kNoValue}));
    RenderedScene byCorner(
        meshWith(std::string(kSquare) +
                 R"("faces": [0,1,2, 0,2,3], "uvs": [[0,0,0],[1,0,0],[1,1,0],[5,0,0],[6,1,0],[7,1,0]])"));
    EXPECT_EQ(meshOf(byCorner)->channel(1)->corners[1], (Corners{3, 4, 5}));
    EXPECT_EQ(meshOf(byCorner)->channel(1)->name, "map1");
}

TEST(Mesh, FurtherChannelsHaveNumbersAndNames)
{
    RenderedScene scene(
        R"("more": {"type": "MapChannel", "params": {"channel": 5, "name": "dirt",
            "values": [[0,0,0],[2,0,0],[2,2,0],[0,2,0]]}},
           "mesh": {"type": "Mesh", "params": {"positions": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]],
            "faces": [0,1,2, 0,2,3], "map_channels": ["more"]}},
           "node": {"type": "Node", "params": {"geometry": "mesh"}})");
    ASSERT_NE(meshOf(scene), nullptr);
    EXPECT_EQ(meshOf(scene)->channelNamed("dirt")->number, 5);
    // A texture asks the surface by the name's id, or by the number.
    auto* surface = OUtils::find<OUtils::MappedSurface>(scene.scene->find("node")->plugin);
    HostContext context;
    context.barycentric[0] = 0.5f;
    context.barycentric[1] = 0.5f;
    const int id = scene.renderer->getMapChannelNames()->getNameId("dirt");
    Vector value;
    EXPECT_EQ(surface->getMapChannelValue(context, id, &value), 5);
    EXPECT_FLOAT_EQ(value.x, 1.0f);
    EXPECT_EQ(surface->getMapChannelValue(context, id + 1000, &value), -1);
    Transform map;
    EXPECT_EQ(surface->getLocalUVWTransform(context, 5, &map), 1);
    EXPECT_FLOAT_EQ(map.offset.x, 1.0f);
    EXPECT_FLOAT_EQ(map.matrix.columns[0].x, 2.0f);
    map.offset.x = 9.0f;
    EXPECT_EQ(surface->getLocalUVWTransform(context, 3, &map), 0);
    EXPECT_EQ(map.offset.x, 9.0f);
    EXPECT_EQ(surface->getMapChannelMissing(context, 3), 1.0f);
    context.faceIndex = 77;
    EXPECT_EQ(surface->getLocalUVWTransform(context, 5, &map), 0);
    context.faceIndex = -1;
    EXPECT_EQ(surface->getLocalUVWTransform(context, -1, &map), 0);
}

TEST(Mesh, OneWithoutAFormIsToldAndNotShown)
{
    for (const char* params : {"", R"("shape": "none")", R"("smooth_angle": 3)"}) {
        RenderedScene scene(meshWith(params));
        EXPECT_EQ(meshOf(scene), nullptr);
        const std::string text = "there is nothing to show; give it a file, a shape, or positions and faces";
        ASSERT_EQ(scene.frameLog.size(), 1u) << params;
        EXPECT_EQ(scene.frameLog[0].level, OUtils::LogLevel::Warning);
        EXPECT_EQ(scene.frameLog[0].text, "mesh \"mesh\": " + text);
        Diagnostics diagnostics("test");
        checkForPicture(*scene.scene, diagnostics);
        EXPECT_EQ(diagnostics.lines(), std::vector<std::string>{"error: test: /plugins/mesh: " + text});
        EXPECT_EQ(scene.image(4, 4, 1).pixel(2, 2)[3], 0.0f);
    }
}

TEST(Camera, OfSeveralTheFirstOneTakesThePictureAndAWarningSaysSo)
{
    const std::string eye =
        R"(, "eye": {"type": "Camera", "params": {"position": [0, 0, 3], "target": [0, 0, 0]}})";
    const std::string more =
        R"(, "far": {"type": "Camera", "params": {"position": [0, 0, 9]}}, "x": {"type": "Camera"})";
    RenderedScene one(ball("") + eye), three(ball("") + eye + more);
    Diagnostics none("test"), told("test");
    checkForPicture(*one.scene, none);
    EXPECT_TRUE(none.lines().empty());
    checkForPicture(*three.scene, told);
    EXPECT_EQ(told.lines(),
              std::vector<std::string>{"warning: test: /plugins/eye: the picture is taken by this "
                                       "Camera; \"far\", \"x\" are not used"});
    EXPECT_NEAR(three.world(10, 10)->camera().ray(5, 5, 0).origin.z, 3.0f, 1e-6f);
}

TEST(Mesh, GeometryWithoutSizeIsHarmless)
{
    for (const char* params : {R"("positions": [[1,1,1],[1,1,1],[1,1,1]], "faces": [0,1,2])",
                               R"("positions": [[0,0,0],[1,1,1],[2,2,2]], "faces": [0,1,2])",
                               R"("positions": [[0,0,0],[1e30,0,0],[0,1e30,0]], "faces": [0,1,2])",
                               R"("positions": [[0,0,0],[1e-30,0,0],[0,1e-30,0]], "faces": [0,1,2],
                                  "uvs": [[0,0,0],[0,0,0],[0,0,0]])"}) {
        SCOPED_TRACE(params);
        RenderedScene scene(meshWith(params));
        for (const float number : scene.image(8, 8, 2).pixels)
            ASSERT_TRUE(std::isfinite(number));
    }
}

TEST(Node, ATransformThatFlattensIsToldAndNotShown)
{
    for (const char* transform : {R"({"scale": [1, 0, 1]})", R"({"translate": ["nan", 0, 0]})"}) {
        RenderedScene scene(ball("", std::string(R"("transform": )") + transform));
        ASSERT_EQ(scene.frameLog.size(), 1u);
        EXPECT_EQ(scene.frameLog[0].text,
                  "node \"node\": its transform flattens it or is not finite; it is not shown");
        EXPECT_EQ(scene.image(4, 4, 1).pixel(2, 2)[3], 0.0f);
    }
}

TEST(Node, IsShownOnlyWhenVisibleAndInGreyWithoutMaterial)
{
    EXPECT_EQ(RenderedScene(ball("", R"("visible": false)")).image(8, 8, 1).pixel(4, 4)[3], 0.0f);
    RenderedScene grey(meshWith(R"("shape": "sphere")"));
    EXPECT_NEAR(grey.image(8, 8, 4).pixel(4, 4)[0], 0.5f, 1e-5f);
}

TEST(Node, WhatIsNoMaterialOrGeometryIsTold)
{
    RenderedScene scene(R"("c": {"type": "ColorValue"}, "m": {"type": "Mesh", "params": {"shape": "cube"}},
                           "node": {"type": "Node", "params": {"geometry": "m", "material": "c"}},
                           "other": {"type": "Node", "params": {"geometry": "c"}})");
    ASSERT_EQ(scene.frameLog.size(), 2u);
    EXPECT_EQ(scene.image(4, 4, 1).pixel(2, 2)[3], 1.0f);
}

TEST(Lights, BadNumbersGiveNoLight)
{
    for (const char* light :
         {R"("type": "PointLight", "params": {"intensity": "nan"})",
          R"("type": "PointLight", "params": {"position": ["inf", 0, 0]})",
          R"("type": "PointLight", "params": {"intensity": -3})",
          R"("type": "DistantLight", "params": {"intensity": "inf"})",
          R"("type": "DomeLight", "params": {"color": ["nan", "nan", "nan"], "rotate": "nan"})"}) {
        SCOPED_TRACE(light);
        RenderedScene scene(ball("") + R"(, "light": {)" + light + "}");
        EXPECT_EQ(scene.image(8, 8, 2).pixel(4, 4)[0], 0.0f);
        EXPECT_EQ(scene.statistics.rays.notFinite, 0u);
        EXPECT_FALSE(scene.frameLog.empty()) << "it is told";
        for (const LogLine& line : scene.frameLog)
            EXPECT_TRUE(line.text.starts_with("light \"light\": its ")) << line.text;
    }
    EXPECT_TRUE(RenderedScene(ball("") + R"(, "light": {"type": "PointLight"})").frameLog.empty());
}

TEST(Lights, SurroundingsThatCannotBeReadFailTheWork)
{
    const std::filesystem::path file = std::filesystem::temp_directory_path() / "nezaiva_no_picture.png";
    std::ofstream(file) << "no picture";
    PluginRegistry registry;
    Diagnostics diagnostics("test");
    const auto scene =
        Scene::parse(R"({"ombrix_scene": 1, "plugins": {"sky": {"type": "DomeLight", "params": {"file": ")" +
                         file.string() + R"("}}}})",
                     ".", registry, diagnostics);
    ASSERT_TRUE(scene);
    HostRenderer renderer(scene->settings(), 1, nullptr);
    RenderLife render(*scene, renderer);
    try {
        const FrameLife frame(render, 1.0);
        ADD_FAILURE() << "it began";
    } catch (const WorkError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("DomeLight \"sky\": cannot read the image "))
            << error.what();
    }
    std::filesystem::remove(file);
}

TEST(DefaultScene, OneTextureIsShownOnTheShaderBall)
{
    RenderedScene scene(R"("in": {"type": "ColorValue", "params": {"value": [0, 0, 1]}},
                           "root": {"type": "ColorToFloat", "params": {"input": "in", "channel": "blue"}},
                           "look": {"type": "FloatsToColor", "params": {"green": "root"}})");
    EXPECT_EQ(scene.note, "");
    const Image image = scene.image(64, 36, 4, Layer::Albedo);
    EXPECT_NEAR(image.pixel(32, 15)[1], 1.0f, 1e-5f);
    EXPECT_NEAR(image.pixel(32, 15)[0], 0.0f, 1e-5f);
    EXPECT_NEAR(image.pixel(2, 2)[0], image.pixel(2, 2)[1], 1e-5f);
}

TEST(DefaultScene, AFloatTextureIsShownInGreyAndAMaterialAsItIs)
{
    RenderedScene grey(R"("f": {"type": "FloatValue", "params": {"value": 0.3}})");
    EXPECT_NEAR(grey.image(64, 36, 2, Layer::Albedo).pixel(32, 15)[2], 0.3f, 1e-5f);
    RenderedScene material(R"("m": {"type": "Surface", "params": {"diffuse": [0.1, 0.6, 0.2]}})");
    EXPECT_NEAR(material.image(64, 36, 2, Layer::Albedo).pixel(32, 15)[1], 0.6f, 1e-5f);
}

TEST(DefaultScene, SaysWhyThereIsNothingToShow)
{
    EXPECT_EQ(RenderedScene("").note,
              "the scene has nothing to show: give it a Mesh and a Node, or a texture");
    const std::string two = RenderedScene(R"("a": {"type": "ColorValue"}, "b": {"type": "FloatValue"})").note;
    EXPECT_NE(two.find("2 textures that nothing reads (\"a\", \"b\")"), std::string::npos) << two;
    EXPECT_EQ(RenderedScene(ball("") + R"(, "spare": {"type": "ColorValue"})").note, "");
}

TEST(DefaultScene, TheScenesOwnLightsAndCameraStay)
{
    RenderedScene scene(R"("c": {"type": "ColorValue"}, "studio_key": {"type": "DomeLight"},
                           "eye": {"type": "Camera", "params": {"position": [0, 1, 3], "target": [0, 1, 0]}})");
    const auto world = scene.world(10, 10);
    EXPECT_EQ(world->lights().size(), 1u);
    EXPECT_NEAR(world->camera().ray(5, 5, 0).origin.z, 3.0f, 1e-6f);
}

} // namespace
