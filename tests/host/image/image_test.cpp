#include "host/image/image.h"

#include "host/image/srgb.h"
#include "support/temporary_folder.h"
#include "support/tolerances.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <vector>

using namespace ombrix;

namespace {

Image imageOf(int width, int height, int channels, std::vector<float> pixels)
{
    Image image;
    image.width = width;
    image.height = height;
    image.channels = channels;
    image.pixels = std::move(pixels);
    return image;
}

void expectPixel(const Image& image, int x, int y, const std::vector<float>& expected, double tolerance)
{
    ASSERT_EQ(image.channels, 4);
    for (std::size_t c = 0; c < 4; ++c)
        EXPECT_NEAR(image.pixel(x, y)[c], expected[c], tolerance)
            << "pixel " << x << " " << y << " channel " << c;
}

} // namespace

TEST(Image, PngHoldsSrgbEncodedBytes)
{
    const TemporaryFolder folder;
    writeImage(folder / "a.png", imageOf(2, 1, 3, {0.18f, 0.5f, 1.0f, 0.0f, -3.0f, 7.0f}), {});
    // 255 * 0.46135613 = 117.6, 255 * 0.73535698 = 187.5: rounded to 118 and 188.
    const Image stored = readImage(folder / "a.png", ColorSpace::Linear);
    EXPECT_EQ(stored.width, 2);
    EXPECT_EQ(stored.height, 1);
    expectPixel(stored, 0, 0, {118.0f / 255, 188.0f / 255, 1.0f, 1.0f}, 1e-7);
    expectPixel(stored, 1, 0, {0.0f, 0.0f, 1.0f, 1.0f}, 1e-7);
    const Image decoded = readImage(folder / "a.png", ColorSpace::Auto);
    expectPixel(decoded, 0, 0, {srgbDecode(118.0f / 255), srgbDecode(188.0f / 255), 1.0f, 1.0f}, 1e-7);
}

TEST(Image, EveryByteValueSurvivesPng)
{
    const TemporaryFolder folder;
    Image image = imageOf(256, 1, 1, std::vector<float>(256));
    for (int i = 0; i < 256; ++i)
        image.pixels[static_cast<std::size_t>(i)] = srgbDecode(static_cast<float>(i) / 255.0f);
    writeImage(folder / "a.png", image, {});
    const Image back = readImage(folder / "a.png", ColorSpace::Linear);
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(std::lround(back.pixel(i, 0)[1] * 255.0f), i);
}

TEST(Image, RowZeroIsTheTopInEveryFormat)
{
    const TemporaryFolder folder;
    for (const char* name :
         {"a.png", "a.exr", "a.tif", "a.hdr", "a.bmp", "a.tga", "a.webp", "a.sgi", "a.ppm"}) {
        writeImage(folder / name, imageOf(1, 2, 3, {1, 1, 1, 0, 0, 0}), {});
        const Image back = readImage(folder / name, ColorSpace::Auto);
        EXPECT_NEAR(back.pixel(0, 0)[0], 1.0f, 0.02f) << name;
        EXPECT_NEAR(back.pixel(0, 1)[0], 0.0f, 0.02f) << name;
    }
}

TEST(Image, PngAndItsKinHoldStraightAlpha)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.png", "a.tif", "a.tga"}) {
        writeImage(folder / name, imageOf(1, 1, 4, {0.25f, 0.1f, 0.0f, 0.5f}), {});
        // Straight colours 0.5, 0.2, 0: sRGB 0.735357 and 0.484529, bytes 188 and 124; alpha byte 128.
        const float r = srgbDecode(188.0f / 255), g = srgbDecode(124.0f / 255), a = 128.0f / 255;
        expectPixel(readImage(folder / name, ColorSpace::Auto, AlphaKind::Straight), 0, 0, {r, g, 0, a},
                    1e-6);
        expectPixel(readImage(folder / name, ColorSpace::Auto), 0, 0, {r * a, g * a, 0, a}, 1e-6);
    }
}

TEST(Image, ExrHoldsPremultipliedHalves)
{
    const TemporaryFolder folder;
    writeImage(folder / "a.exr", imageOf(2, 1, 4, {0.5f, -2.0f, 1000.0f, 0.25f, 1e6f, NAN, INFINITY, 0.0f}),
               {});
    const Image back = readImage(folder / "a.exr", ColorSpace::Auto);
    expectPixel(back, 0, 0, {0.5f, -2.0f, 1000.0f, 0.25f}, 0.0);
    EXPECT_EQ(back.pixel(1, 0)[0], 65504.0f); // the largest half
    EXPECT_TRUE(std::isnan(back.pixel(1, 0)[1]));
    EXPECT_TRUE(std::isinf(back.pixel(1, 0)[2]));
    const Image straight = readImage(folder / "a.exr", ColorSpace::Auto, AlphaKind::Straight);
    expectPixel(straight, 0, 0, {2.0f, -8.0f, 4000.0f, 0.25f}, 0.0);
    EXPECT_EQ(straight.pixel(1, 0)[0], 65504.0f); // alpha 0: as stored
}

TEST(Image, DataKeepsAllBitsAndNoCurve)
{
    const TemporaryFolder folder;
    Image image = imageOf(1, 1, 3, {0.1f, 123456.789f, -1e-20f});
    image.isData = true;
    for (const char* name : {"a.exr", "a.tif"}) {
        writeImage(folder / name, image, {});
        const Image back = readImage(folder / name, ColorSpace::Auto);
        for (int c = 0; c < 3; ++c)
            EXPECT_PRED2(tolerance::sameBits, back.pixel(0, 0)[c], image.pixels[static_cast<std::size_t>(c)]);
    }
    writeImage(folder / "a.png", image, {});
    expectPixel(readImage(folder / "a.png", ColorSpace::Linear), 0, 0, {26.0f / 255, 1.0f, 0.0f, 1.0f}, 1e-7);
}

TEST(Image, GreySpreadsWhereAFormatWantsColour)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.hdr", "a.webp", "a.gif", "a.exr", "a.jpg"}) {
        writeImage(folder / name, imageOf(8, 8, 1, std::vector<float>(64, 0.5f)), {});
        expectPixel(readImage(folder / name, ColorSpace::Auto), 3, 3, {0.5f, 0.5f, 0.5f, 1.0f}, 0.01);
    }
}

TEST(Image, AFormatWithoutAlphaGetsThePictureOverBlack)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.jpg", "a.hdr", "a.ppm"}) {
        std::vector<float> pixels;
        for (int i = 0; i < 64; ++i)
            pixels.insert(pixels.end(), {0.25f, 0.25f, 0.25f, 0.5f});
        writeImage(folder / name, imageOf(8, 8, 4, pixels), {});
        expectPixel(readImage(folder / name, ColorSpace::Srgb), 3, 3,
                    std::string(name) == "a.hdr"
                        ? std::vector<float>{srgbDecode(0.25f), srgbDecode(0.25f), srgbDecode(0.25f), 1.0f}
                        : std::vector<float>{0.25f, 0.25f, 0.25f, 1.0f},
                    0.01);
    }
}

TEST(Image, ANaNBecomesBlackInBytes)
{
    const TemporaryFolder folder;
    writeImage(folder / "a.png", imageOf(1, 1, 3, {NAN, INFINITY, -INFINITY}), {});
    expectPixel(readImage(folder / "a.png", ColorSpace::Linear), 0, 0, {0.0f, 1.0f, 0.0f, 1.0f}, 0.0);
}

TEST(Image, NoFileTellsWhenItWasWritten)
{
    const TemporaryFolder folder;
    std::time_t now = std::time(nullptr);
    char year[8];
    std::strftime(year, sizeof year, "%Y:", std::localtime(&now));
    for (const char* name : {"a.exr", "a.png", "a.tif", "a.jpg", "a.hdr"}) {
        writeImage(folder / name, imageOf(8, 8, 3, std::vector<float>(192, 0.5f)), {});
        EXPECT_EQ(bytesOf(folder / name).find(year), std::string::npos) << name;
    }
}

TEST(Image, AttributesStandInTheHeader)
{
    const TemporaryFolder folder;
    for (const char* name : {"a.png", "a.exr"}) {
        writeImage(folder / name, imageOf(1, 1, 3, {0, 0, 0}), {{"nezaivaScene", "look_seventeen"}});
        const std::string bytes = bytesOf(folder / name);
        EXPECT_NE(bytes.find("nezaivaScene"), std::string::npos) << name;
        EXPECT_NE(bytes.find("look_seventeen"), std::string::npos) << name;
    }
}

TEST(Image, ALinkStaysAndItsTargetIsWritten)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "there");
    std::filesystem::create_symlink("there/real.png", folder / "link.png");
    writeImage(folder / "link.png", imageOf(1, 1, 1, {1.0f}), {});
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / "there/real.png"));
}
