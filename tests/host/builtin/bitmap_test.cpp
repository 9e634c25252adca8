#include "host/bake/unit_square_surface.h"
#include "host/context/host_context.h"
#include "host/errors/errors.h"
#include "host/gpu/host_gpu.h"
#include "host/image/image.h"
#include "host/image/srgb.h"
#include "host/scene/scene_life.h"
#include "support/temporary_folder.h"
#include "support/understood_source.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>

using namespace ombrix;
using OUtils::AColor;

namespace {

// Two by two texels, as bytes: red, green above; blue, half-transparent white below.
class BitmapTest : public testing::Test {
protected:
    BitmapTest()
    {
        Image image;
        image.width = image.height = 2;
        image.alpha = AlphaKind::Straight;
        image.pixels = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1, 1, 1, 1, 0.5f};
        writeImage(folder / "four.png", image, {});
    }

    // Begins a scene of one bitmap "b" with further parameters as JSON members, and further plugins.
    void begin(const std::string& parameters, const std::string& plugins = "")
    {
        Diagnostics diagnostics("test");
        scene = Scene::parse(R"({"ombrix_scene": 1, "plugins": {"b": {"type": "Bitmap", "params": {)" +
                                 parameters + "}}" + plugins + "}}",
                             folder.path(), registry, diagnostics);
        if (!scene) {
            errors = diagnostics.lines();
            return;
        }
        renderer = std::make_unique<HostRenderer>(scene->settings(), 1, nullptr);
        renderLife = std::make_unique<RenderLife>(*scene, *renderer);
        frameLife = std::make_unique<FrameLife>(*renderLife, 1.0);
    }
    OUtils::PluginInterface* interfaceOf(const char* name, OUtils::InterfaceId id)
    {
        return scene->find(name)->plugin->getInterface(id);
    }
    AColor colorAt(float u, float v, float footprint = 0.0f)
    {
        HostContext context;
        UnitSquareSurface surface;
        context.surfaceObject = &surface;
        context.referencePoint = context.shadePoint = {u, v, 0.0f};
        context.positionDiffU = {footprint, 0.0f, 0.0f};
        context.filtering = footprint > 0.0f;
        AColor color{7, 7, 7, 7};
        static_cast<OUtils::TextureInterface*>(interfaceOf("b", OUtils::EXT_TEXTURE))
            ->evalColor(&color, context);
        return color;
    }

    TemporaryFolder folder;
    PluginRegistry registry;
    std::unique_ptr<Scene> scene;
    std::unique_ptr<HostRenderer> renderer;
    std::unique_ptr<RenderLife> renderLife;
    std::unique_ptr<FrameLife> frameLife;
    std::vector<std::string> errors;
};

void expectColor(const AColor& color, float r, float g, float b, float a)
{
    EXPECT_NEAR(color.r, r, 1e-6);
    EXPECT_NEAR(color.g, g, 1e-6);
    EXPECT_NEAR(color.b, b, 1e-6);
    EXPECT_NEAR(color.a, a, 1e-6);
}

} // namespace

TEST_F(BitmapTest, URunsRightAndVRunsUp)
{
    begin(R"("file": "four.png", "filter": "nearest")");
    expectColor(colorAt(0.25f, 0.75f), 1, 0, 0, 1);
    expectColor(colorAt(0.75f, 0.75f), 0, 1, 0, 1);
    expectColor(colorAt(0.25f, 0.25f), 0, 0, 1, 1);
    expectColor(colorAt(0.75f, 0.25f), 1, 1, 1, 128.0f / 255);
}

TEST_F(BitmapTest, FiltersAsItIsTold)
{
    begin(R"("file": "four.png", "filter": "bilinear", "wrap": "clamp")");
    expectColor(colorAt(0.5f, 0.75f), 0.5f, 0.5f, 0, 1);
    expectColor(colorAt(0.5f, 0.75f, 1.0f), 0.5f, 0.5f, 0, 1);
}

TEST_F(BitmapTest, MipmapsBlurAFarLook)
{
    begin(R"("file": "four.png", "wrap": "clamp")");
    expectColor(colorAt(0.25f, 0.75f), 1, 0, 0, 1);
    // A step of the whole square is two texels: level 1, the mean of all.
    expectColor(colorAt(0.25f, 0.75f, 1.0f), 0.5f, 0.5f, 0.5f, (3 + 128.0f / 255) / 4);
}

TEST_F(BitmapTest, BlackOutsideIsTransparent)
{
    begin(R"("file": "four.png", "wrap": "black")");
    expectColor(colorAt(1.75f, 0.75f), 0, 0, 0, 0);
}

TEST_F(BitmapTest, ColorSpaceChangesColorsAndNotAlpha)
{
    Image image;
    image.width = image.height = 1;
    image.alpha = AlphaKind::Straight;
    image.pixels = {0.5f, 0.5f, 0.5f, 0.5f};
    writeImage(folder / "grey.png", image, {}); // bytes 188, alpha 128
    begin(R"("file": "grey.png")");
    expectColor(colorAt(0.5f, 0.5f), srgbDecode(188.0f / 255), srgbDecode(188.0f / 255),
                srgbDecode(188.0f / 255), 128.0f / 255);
    frameLife.reset();
    Diagnostics diagnostics("test");
    ASSERT_TRUE(scene->set(nlohmann::json::parse(R"({"b": {"color_space": "linear"}})"), "", diagnostics));
    frameLife = std::make_unique<FrameLife>(*renderLife, 2.0);
    expectColor(colorAt(0.5f, 0.5f), 188.0f / 255, 188.0f / 255, 188.0f / 255, 128.0f / 255);
}

TEST_F(BitmapTest, FloatFilesAreTakenAsTheyAre)
{
    Image image;
    image.width = image.height = 1;
    image.pixels = {3.0f, 0.5f, 0.25f, 0.5f};
    writeImage(folder / "a.exr", image, {});
    begin(R"("file": "a.exr")");
    expectColor(colorAt(0.5f, 0.5f), 6.0f, 1.0f, 0.5f, 0.5f);
}

TEST_F(BitmapTest, WithoutCoordinatesItIsTransparentBlack)
{
    begin(R"("file": "four.png")");
    HostContext context;
    AColor color{7, 7, 7, 7};
    static_cast<OUtils::TextureInterface*>(interfaceOf("b", OUtils::EXT_TEXTURE))->evalColor(&color, context);
    expectColor(color, 0, 0, 0, 0);
    expectColor(colorAt(NAN, 0.5f), 0, 0, 0, 0);
    expectColor(colorAt(0.5f, INFINITY), 0, 0, 0, 0);
}

TEST_F(BitmapTest, AGeneratorGivesTheCoordinates)
{
    begin(R"("file": "four.png", "filter": "nearest", "uvwgen": "g")",
          R"(, "g": {"type": "UVWValue", "params": {"uvw": [0.75, 0.25, 0]}})");
    expectColor(colorAt(0.25f, 0.75f), 1, 1, 1, 128.0f / 255);
}

TEST_F(BitmapTest, AnInvalidGeneratorIsTransparentBlack)
{
    begin(R"("file": "four.png", "uvwgen": "g")",
          R"(, "g": {"type": "UVWValue", "params": {"uvw": [0.75, 0.25, 0], "valid": false}})");
    expectColor(colorAt(0.25f, 0.75f), 0, 0, 0, 0);
}

TEST_F(BitmapTest, BoundsHoldThePictureAndTransparentBlack)
{
    begin(R"("file": "four.png")");
    AColor lower{7, 7, 7, 7}, upper{7, 7, 7, 7};
    static_cast<OUtils::TextureInterface*>(interfaceOf("b", OUtils::EXT_TEXTURE))
        ->evalColorBounds(&lower, &upper);
    expectColor(lower, 0, 0, 0, 0);
    expectColor(upper, 1, 1, 1, 1);
}

TEST_F(BitmapTest, SourceIsTheCoordinatesAndTheWholePictureOnce)
{
    begin(R"("file": "four.png", "uvwgen": "g")",
          R"(, "g": {"type": "UVWValue", "params": {"source": "place {name}\n"}},
               "c": {"type": "Bitmap", "params": {"file": "four.png"}})");
    auto* texture = static_cast<OUtils::RTTexInterface*>(interfaceOf("b", OUtils::EXT_RTTEX));
    auto* other = static_cast<OUtils::RTTexInterface*>(interfaceOf("c", OUtils::EXT_RTTEX));
    HostOCLData data(renderer.get(), true);
    HostShaderSource source;
    EXPECT_EQ(texture->getSource("", "", "Nothing", source, data), 0);
    EXPECT_EQ(source.text, "");
    EXPECT_EQ(texture->getSource("", "", "MaterialDescriptor", source, data), 1);
    EXPECT_EQ(source.text, "place uvw\nbitmap 0\n");
    HostShaderSource otherSource;
    EXPECT_EQ(other->getSource("", "", "MaterialDescriptor", otherSource, data), 1);
    EXPECT_EQ(otherSource.text, "bitmap 0\n");
    support::expectUnderstood(otherSource.text);
    ASSERT_EQ(data.bitmaps().size(), 1u);
    const std::vector<std::uint32_t> expected{0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0x80FFFFFFu};
    EXPECT_EQ(data.bitmaps()[0].pixels, expected);
}

TEST_F(BitmapTest, AMissingFileIsAnErrorOfTheScene)
{
    begin(R"("file": "nowhere.png")");
    ASSERT_FALSE(errors.empty());
    EXPECT_NE(errors[0].find("/plugins/b/params/file"), std::string::npos) << errors[0];
    EXPECT_NE(errors[0].find("nowhere.png"), std::string::npos);
}

TEST_F(BitmapTest, NoFileIsAnErrorOfTheScene)
{
    begin("");
    ASSERT_FALSE(errors.empty());
    EXPECT_NE(errors[0].find("file"), std::string::npos) << errors[0];
}

TEST_F(BitmapTest, ABrokenFileFailsTheWork)
{
    writeBytes(folder / "broken.png", bytesOf(folder / "four.png").substr(0, 40));
    try {
        begin(R"("file": "broken.png")");
        FAIL() << "it began";
    } catch (const WorkError& error) {
        const std::string message = error.what();
        EXPECT_TRUE(message.starts_with("Bitmap \"b\": cannot read the image ")) << message;
        EXPECT_NE(message.find("broken.png"), std::string::npos);
        EXPECT_NE(message.find("cut short"), std::string::npos) << message;
    }
}
