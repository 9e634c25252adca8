// A test program of its own: what it tries can be seen once in a process.

#include "host/image/image.h"
#include "host/image/image_formats.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace ombrix;

namespace {

bool isMapped(const std::string& library)
{
    return bytesOf("/proc/self/maps").find(library) != std::string::npos;
}

TEST(ImageFormats, AreLoadedByTheFirstPictureAndByManyThreadsAtOnce)
{
    const TemporaryFolder folder;
    writeBytes(folder / "red.ppm", "P3 1 1 255 255 0 0\n");
    EXPECT_FALSE(isMapped(kImageLibraryFile));
    EXPECT_FALSE(isMapped("libOpenImageIO"));
    std::vector<Image> read(8);
    std::vector<std::thread> threads;
    for (Image& image : read)
        threads.emplace_back([&] { image = readImage(folder / "red.ppm", ColorSpace::Linear); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Image& image : read)
        EXPECT_EQ(image.pixels, (std::vector<float>{1.0f, 0.0f, 0.0f, 1.0f}));
    EXPECT_TRUE(isMapped(kImageLibraryFile));
    EXPECT_TRUE(isMapped("libOpenImageIO"));
}

} // namespace
