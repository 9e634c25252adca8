#include "host/errors/errors.h"
#include "host/image/image.h"
#include "support/file_size_limit.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <functional>

using namespace ombrix;

namespace {

Image noise(int size, int channels)
{
    Image image;
    image.width = image.height = size;
    image.channels = channels;
    std::uint32_t x = 1;
    for (int i = 0; i < size * size * channels; ++i) {
        x = x * 1664525u + 1013904223u;
        image.pixels.push_back(static_cast<float>(x >> 8) / 16777216.0f);
    }
    return image;
}

// The message of the WorkError that the work ends in; "" when it ends well.
std::string failureOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const WorkError& error) {
        return error.what();
    }
    return "";
}

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

const char* const kNames[] = {"a.exr", "a.png", "a.jpg", "a.tif", "a.hdr", "a.bmp", "a.webp", "a.sgi"};

} // namespace

TEST(ImageFailures, NothingButTheFileIsLeftAfterSuccess)
{
    for (const char* name : kNames) {
        const TemporaryFolder folder;
        writeImage(folder / name, noise(8, 4), {});
        EXPECT_EQ(folder.names(), std::set<std::string>{name});
    }
}

TEST(ImageFailures, AFullDiskNamesTheFileAndLeavesNothing)
{
    for (const char* name : kNames) {
        const TemporaryFolder folder;
        std::string message = failureOf([&] { writeImage(folder / name, noise(256, 3), {}); });
        EXPECT_EQ(message, "");
        std::filesystem::remove(folder / name);
        {
            const support::FileSizeLimit limit(10000);
            message = failureOf([&] { writeImage(folder / name, noise(256, 3), {}); });
        }
        EXPECT_TRUE(holds(message, (folder / name).string())) << message;
        EXPECT_TRUE(folder.names().empty()) << name;
    }
}

TEST(ImageFailures, AFullDiskAtTheLastByteIsNoticed)
{
    for (const char* name : kNames) {
        const TemporaryFolder folder;
        writeImage(folder / name, noise(64, 3), {});
        const std::string whole = bytesOf(folder / name);
        std::filesystem::remove(folder / name);
        std::string message;
        {
            const support::FileSizeLimit limit(whole.size() - 1);
            message = failureOf([&] { writeImage(folder / name, noise(64, 3), {}); });
        }
        EXPECT_TRUE(holds(message, name)) << name;
        EXPECT_TRUE(folder.names().empty()) << name;
    }
}

TEST(ImageFailures, AFailureKeepsTheOlderFile)
{
    const TemporaryFolder folder;
    writeBytes(folder / "a.png", "older");
    {
        const support::FileSizeLimit limit(1000);
        EXPECT_NE(failureOf([&] { writeImage(folder / "a.png", noise(256, 3), {}); }), "");
    }
    EXPECT_EQ(bytesOf(folder / "a.png"), "older");
    EXPECT_EQ(folder.names().size(), 1u);
}

TEST(ImageFailures, TheCheckBeforeWorkFindsWhatWritingWould)
{
    const TemporaryFolder folder;
    writeBytes(folder / "plain", "");
    std::filesystem::create_directory(folder / "folder.png");
    const auto check = [&](const std::string& name) {
        return failureOf([&] { checkImageCanBeWritten(folder / name); });
    };
    EXPECT_EQ(check("a.png"), "");
    EXPECT_TRUE(holds(check("a.look"), ".look"));
    EXPECT_TRUE(holds(check("a.look"), "use .exr, .png"));
    EXPECT_TRUE(holds(check("a"), "extension"));
    EXPECT_TRUE(holds(check("nowhere/a.png"), "does not exist"));
    EXPECT_TRUE(holds(check("plain/a.png"), "plain"));
    EXPECT_TRUE(holds(check("folder.png"), "is a folder"));
    EXPECT_EQ(folder.names(), (std::set<std::string>{"plain", "folder.png"}));
}

TEST(ImageFailures, UnreadableFilesAreNamedWithTheReason)
{
    const TemporaryFolder folder;
    writeBytes(folder / "empty.png", "");
    writeBytes(folder / "text.png", "this is no picture");
    const auto read = [&](const std::string& name) {
        const std::string message = failureOf([&] { readImage(folder / name, ColorSpace::Auto); });
        EXPECT_TRUE(holds(message, (folder / name).string())) << message;
        EXPECT_EQ(message.find('\n'), std::string::npos) << message;
        return message;
    };
    EXPECT_TRUE(holds(read("missing.png"), "No such file"));
    EXPECT_TRUE(holds(read("empty.png"), "empty"));
    EXPECT_NE(read("text.png"), "");
    EXPECT_TRUE(holds(failureOf([&] { readImage(folder.path(), ColorSpace::Auto); }), "is a folder"));
}

TEST(ImageFailures, AFileCutShortIsAnErrorWithoutOtherTalk)
{
    for (const char* name : kNames) {
        for (const double part : {0.3, 0.95}) {
            const TemporaryFolder folder;
            writeImage(folder / name, noise(128, 3), {});
            const std::string whole = bytesOf(folder / name);
            writeBytes(folder / name,
                       whole.substr(0, static_cast<std::size_t>(static_cast<double>(whole.size()) * part)));
            testing::internal::CaptureStderr();
            const std::string message = failureOf([&] { readImage(folder / name, ColorSpace::Auto); });
            EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << name;
            EXPECT_TRUE(holds(message, (folder / name).string())) << name << " at " << part;
        }
    }
}

TEST(ImageFailures, ADamagedPngIsAnErrorWithoutOtherTalk)
{
    const TemporaryFolder folder;
    writeImage(folder / "a.png", noise(64, 3), {});
    std::string bytes = bytesOf(folder / "a.png");
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x10);
    writeBytes(folder / "a.png", bytes);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(holds(failureOf([&] { readImage(folder / "a.png", ColorSpace::Auto); }), "check sum"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
