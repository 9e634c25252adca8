// What the renderer measures, against light that can be worked out by hand.

#include "host/integrator/environment_map.h"
#include "host/integrator/light_sampling.h"
#include "rendered_scene.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>

namespace {

using namespace ombrix;

// A convex body of albedo a under an even dome: whatever it scatters leaves, so all of it looks like a.
TEST(PathTracer, AConvexBodyInAFurnaceShowsItsAlbedo)
{
    RenderedScene scene(ball(R"("diffuse": [0.8, 0.5, 0.2])"));
    const Image image = scene.image(32, 32, 4);
    EXPECT_NEAR(meanOf(image, 0, 12, 12, 20, 20), 0.8, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 1, 12, 12, 20, 20), 0.5, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 2, 12, 12, 20, 20), 0.2, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 3, 12, 12, 20, 20), 1.0, tolerance::kSum);
    EXPECT_EQ(image.pixel(0, 0)[3], 0.0f);
    EXPECT_EQ(image.pixel(0, 0)[0], 0.0f);
}

TEST(PathTracer, ScaledAndMirroredBodiesShowTheSame)
{
    RenderedScene scene(ball(R"("diffuse": 0.5)", R"("transform": {"scale": [-1, 0.5, 2]})"));
    const Image image = scene.image(32, 32, 16);
    EXPECT_NEAR(meanOf(image, 0, 13, 13, 19, 19), 0.5, 2e-3);
}

TEST(PathTracer, NormalsOfMirroredBodiesPointOutwards)
{
    RenderedScene scene(ball("", R"("transform": {"scale": [-1, 1, 1]})"));
    EXPECT_GT(scene.image(32, 32, 4, Layer::Normal).pixel(16, 16)[2], 0.8f);
}

// Inside a closed ball that glows by e, each scattering adds the albedo's share once: e (1 + a).
TEST(PathTracer, InsideAGlowingBallOneScatteringAddsItsShare)
{
    RenderedScene scene(ball(R"("diffuse": 0.5, "emission": [1, 2, 3])") +
                        R"(, "camera": {"type": "Camera", "params": {"position": [0, 0, 0.5]}})");
    const Image image = scene.image(16, 16, 4);
    EXPECT_NEAR(meanOf(image, 0, 0, 0, 16, 16), 1.5, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 2, 0, 0, 16, 16), 4.5, tolerance::kSum);
}

TEST(PathTracer, APointLightLightsByItsDistance)
{
    RenderedScene scene(floorFromAbove(R"("diffuse": 0.5)") +
                        R"(, "light": {"type": "PointLight", "params":
                           {"position": [0, 4, 0], "color": [1, 0.5, 0], "intensity": 8}})");
    const Image image = scene.image(8, 8, 4);
    // 0.5 * 8 / 4^2; the picture is a third of a unit wide, where the light falls by less than 1 %.
    EXPECT_NEAR(meanOf(image, 0, 3, 3, 5, 5), 0.25, 1e-3);
    EXPECT_NEAR(meanOf(image, 1, 3, 3, 5, 5), 0.125, 1e-3);
    EXPECT_EQ(image.pixel(3, 3)[2], 0.0f);
}

TEST(PathTracer, BothSidesOfASurfaceAreLitAlike)
{
    const std::string light = R"(, "light": {"type": "DistantLight", "params": {"direction": [0, -1, 0]}})";
    RenderedScene up(floorFromAbove(R"("diffuse": 0.5)") + light);
    std::string turned = floorFromAbove(R"("diffuse": 0.5)") + light;
    turned.replace(turned.find("[100, 1, 100]"), 13, "[100, -1, 100]");
    RenderedScene down(turned);
    EXPECT_NEAR(meanOf(up.image(4, 4, 1), 0, 0, 0, 4, 4), 0.5, tolerance::kSum);
    EXPECT_NEAR(meanOf(down.image(4, 4, 1), 0, 0, 0, 4, 4), 0.5, tolerance::kSum);
}

TEST(PathTracer, OpacityLetsThroughAndGivesAlpha)
{
    RenderedScene scene(ball(R"("diffuse": 0, "emission": 1, "opacity": 0.25)"));
    const Image image = scene.image(32, 32, 4);
    // The front covers a quarter, the back a quarter of the rest.
    EXPECT_NEAR(meanOf(image, 3, 13, 13, 19, 19), 0.4375, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 0, 13, 13, 19, 19), 0.4375, tolerance::kSum);
}

TEST(PathTracer, ShadowsTakeTheColorOfWhatLetsLightThrough)
{
    RenderedScene scene(
        floorFromAbove(R"("diffuse": 1)") +
        R"(, "pane_look": {"type": "Surface", "params": {"diffuse": 0, "opacity": [0, 0.5, 1]}},
                           "pane": {"type": "Node", "params": {"geometry": "mesh", "material": "pane_look",
                           "transform": {"translate": [0, 20, 0]}}},
                           "light": {"type": "DistantLight", "params": {"direction": [0, -1, 0]}})");
    const Image image = scene.image(4, 4, 1);
    EXPECT_NEAR(meanOf(image, 0, 0, 0, 4, 4), 1.0, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 1, 0, 0, 4, 4), 0.5, tolerance::kSum);
    EXPECT_NEAR(meanOf(image, 2, 0, 0, 4, 4), 0.0, tolerance::kSum);
}

TEST(PathTracer, ADomeShowsOnlyWhenItIsVisible)
{
    const std::string dome =
        R"(, "dome": {"type": "DomeLight", "params": {"color": [0.2, 0.4, 0.6], "visible": )";
    const Image hidden = RenderedScene(ball("") + dome + "false}}").image(16, 16, 2);
    const Image shown = RenderedScene(ball("") + dome + "true}}").image(16, 16, 2);
    EXPECT_EQ(hidden.pixel(0, 0)[3], 0.0f);
    EXPECT_NEAR(shown.pixel(0, 0)[3], 1.0f, 1e-6f);
    EXPECT_NEAR(shown.pixel(0, 0)[1], 0.4f, 1e-6f);
    EXPECT_NEAR(shown.pixel(8, 8)[2], hidden.pixel(8, 8)[2], 1e-6f);
}

// A floor under an uneven dome, against an even sum over the hemisphere: the direct light and the
// scattered rays share the dome without losing or doubling anything.
TEST(PathTracer, AnUnevenDomeLightsAsBruteForceSays)
{
    Image sky;
    sky.width = 16;
    sky.height = 8;
    std::mt19937 random(5);
    std::uniform_real_distribution<float> number(0.0f, 1.0f);
    for (int i = 0; i < 16 * 8; ++i) {
        const float value = i == 3 * 16 + 4 ? 40.0f : number(random);
        sky.pixels.insert(sky.pixels.end(), {value, value, value, 1.0f});
    }
    const auto file = std::filesystem::temp_directory_path() / "nezaiva_uneven_dome.hdr";
    Image opaque = sky;
    opaque.channels = 3;
    opaque.pixels.clear();
    for (std::size_t i = 0; i < sky.pixels.size(); i += 4)
        opaque.pixels.insert(opaque.pixels.end(), &sky.pixels[i], &sky.pixels[i] + 3);
    writeImage(file, opaque, {});
    const Image read = readImage(file, ColorSpace::Linear); // as the format rounds it

    const EnvironmentMap map(read.width, read.height, read.pixels.data());
    double expected = 0;
    const int n = 800;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const double y = (j + 0.5) / n, r = std::sqrt(1 - y * y), a = 2 * M_PI * (i + 0.5) / n;
            const Vector direction{static_cast<float>(r * std::cos(a)), static_cast<float>(y),
                                   static_cast<float>(r * std::sin(a))};
            expected += static_cast<double>(map.radiance(direction).r) * y * 2.0 / (n * n);
        }
    }
    RenderedScene scene(floorFromAbove(R"("diffuse": 1)") +
                        R"(, "dome": {"type": "DomeLight", "params": {"file": ")" + file.string() + R"("}})");
    const Image image = scene.image(32, 32, 64);
    std::filesystem::remove(file);
    EXPECT_NEAR(meanOf(image, 0, 0, 0, 32, 32), expected, 0.01 * expected);
}

TEST(PathTracer, SamplesThatAreNotFiniteCountAsBlackAndAreTold)
{
    RenderedScene scene(ball(R"("emission": ["nan", 0, 0])"));
    const Image image = scene.image(16, 16, 2);
    for (const float number : image.pixels)
        ASSERT_TRUE(std::isfinite(number));
    EXPECT_GT(scene.statistics.rays.notFinite, 0u);
}

TEST(PathTracer, LayersHoldWhatTheirNamesSay)
{
    RenderedScene scene(floorFromAbove(R"("diffuse": [0.1, 0.2, 0.3])"));
    const Film film =
        scene.film(8, 8, 4, {Layer::Depth, Layer::Normal, Layer::Uv, Layer::Albedo, Layer::Alpha});
    EXPECT_NEAR(film.image(Layer::Depth).pixel(2, 6)[0], 10.0f, 1e-4f);
    EXPECT_NEAR(film.image(Layer::Normal).pixel(2, 6)[1], 1.0f, 1e-5f);
    EXPECT_NEAR(film.image(Layer::Albedo).pixel(2, 6)[2], 0.3f, 1e-6f);
    EXPECT_EQ(film.image(Layer::Alpha).channels, 1);
    EXPECT_NEAR(film.image(Layer::Alpha).pixel(2, 6)[0], 1.0f, 1e-6f);
    // u grows to the right, v upwards in the picture, both 0.5 in the middle.
    const Image uv = film.image(Layer::Uv);
    EXPECT_GT(uv.pixel(6, 4)[0], uv.pixel(1, 4)[0]);
    EXPECT_GT(uv.pixel(4, 1)[1], uv.pixel(4, 6)[1]);
    EXPECT_NEAR(meanOf(uv, 0, 0, 0, 8, 8), 0.5, 1e-3);
    EXPECT_NEAR(meanOf(uv, 1, 0, 0, 8, 8), 0.5, 1e-3);
}

TEST(PathTracer, TheAlbedoOfWhatIsMetLaterDoesNotShow)
{
    RenderedScene scene(floorFromAbove(R"("diffuse": [0.1, 0.2, 0.3])") +
                        R"(, "other": {"type": "Surface", "params": {"diffuse": 0.9}},
                           "above": {"type": "Node", "params": {"geometry": "mesh", "material": "other",
                           "transform": {"translate": [0, 20, 0], "scale": [100, 1, 100]}}})");
    const Image albedo = scene.image(8, 8, 4, Layer::Albedo);
    EXPECT_NEAR(meanOf(albedo, 0, 0, 0, 8, 8), 0.1, 1e-6);
}

TEST(PathTracer, LayerNamesLeadToTheirLayersAndBack)
{
    EXPECT_EQ(layerNames(), "beauty, alpha, normal, depth, uv, albedo");
    for (const char* name : {"beauty", "alpha", "normal", "depth", "uv", "albedo"})
        EXPECT_STREQ(layerName(*layerNamed(name)), name);
    EXPECT_FALSE(layerNamed("Beauty"));
    EXPECT_FALSE(layerNamed(""));
}

} // namespace
