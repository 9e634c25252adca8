#include "host/errors/errors.h"
#include "host/files/output_file.h"
#include "support/file_size_limit.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <thread>

using namespace ombrix;
namespace fs = std::filesystem;

namespace {

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

std::string failureToWrite(const fs::path& file, const std::string& bytes = "x")
{
    return failureOf([&] { writeOutputFile(file, bytes); });
}

TEST(OutputFile, ReplacesAFileAndLeavesNothingBeside)
{
    const TemporaryFolder folder;
    writeOutputFile(folder / "a.json", "one");
    EXPECT_EQ(bytesOf(folder / "a.json"), "one");
    writeOutputFile(folder / "a.json", std::string("t\0o", 3));
    EXPECT_EQ(bytesOf(folder / "a.json"), std::string("t\0o", 3));
    writeOutputFile(folder / "a.json", "");
    EXPECT_EQ(bytesOf(folder / "a.json"), "");
    EXPECT_EQ(folder.names(), std::set<std::string>{"a.json"});
}

TEST(OutputFile, TheOlderFileIsTheReadersUntilTheNewOneIsWhole)
{
    const TemporaryFolder folder;
    writeBytes(folder / "a", "older");
    std::ifstream reader(folder / "a");
    writeOutputFile(folder / "a", "newer");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "older");
    EXPECT_EQ(bytesOf(folder / "a"), "newer");
}

TEST(OutputFile, AFullDiskLeavesNothingAndTheOlderFileAsItWas)
{
    const TemporaryFolder folder;
    writeBytes(folder / "older", "older");
    std::string made, replaced;
    {
        const support::FileSizeLimit limit(999);
        made = failureToWrite(folder / "a", std::string(1000, 'x'));
        replaced = failureToWrite(folder / "older", std::string(1000, 'x'));
    }
    EXPECT_EQ(made, "cannot write " + (folder / "a").string() + ": File too large");
    EXPECT_EQ(replaced, "cannot write " + (folder / "older").string() + ": File too large");
    EXPECT_EQ(bytesOf(folder / "older"), "older");
    EXPECT_EQ(folder.names(), std::set<std::string>{"older"});
}

TEST(OutputFile, FailuresNameTheFileAndTheReason)
{
    const TemporaryFolder folder;
    writeBytes(folder / "plain", "");
    fs::create_symlink("circle", folder / "circle");
    const std::string at = "cannot write " + folder.path().string();
    EXPECT_EQ(failureToWrite(folder / "no/a.json"),
              at + "/no/a.json: the folder " + folder.path().string() + "/no does not exist");
    EXPECT_EQ(failureToWrite(folder / "plain/a.json"),
              at + "/plain/a.json: " + folder.path().string() + "/plain is not a folder");
    EXPECT_EQ(failureToWrite(folder.path()), at + ": it is a folder");
    EXPECT_EQ(failureToWrite(folder / "circle"), at + "/circle: Too many levels of symbolic links");
    EXPECT_EQ(failureToWrite("/dev/full"), "cannot write /dev/full: No space left on device");
    EXPECT_EQ(folder.names(), (std::set<std::string>{"plain", "circle"}));
}

TEST(OutputFile, TheCheckBeforehandFindsWhatWritingWould)
{
    const TemporaryFolder folder;
    writeBytes(folder / "older", "older");
    const auto failureOfCheck = [&](const fs::path& file) {
        return failureOf([&] { checkOutputFile(file); });
    };
    EXPECT_EQ(failureOfCheck(folder / "a"), "");
    EXPECT_EQ(failureOfCheck(folder / "older"), "");
    EXPECT_EQ(failureOfCheck("/dev/null"), "");
    EXPECT_EQ(failureOfCheck(folder / "no/a.json"), failureToWrite(folder / "no/a.json"));
    EXPECT_EQ(failureOfCheck(folder.path()), failureToWrite(folder.path()));
    EXPECT_EQ(bytesOf(folder / "older"), "older");
    EXPECT_EQ(folder.names(), std::set<std::string>{"older"});
}

TEST(OutputFile, KeepsAnOlderFilesPermissions)
{
    const TemporaryFolder folder;
    writeBytes(folder / "a", "old");
    for (const int mode : {0640, 0664, 0755}) {
        ::chmod((folder / "a").c_str(), static_cast<mode_t>(mode));
        writeOutputFile(folder / "a", "new");
        EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(mode));
    }
}

TEST(OutputFile, ANewFileHasThePermissionsThatTheProcessGives)
{
    const TemporaryFolder folder;
    const mode_t earlier = ::umask(027);
    writeOutputFile(folder / "a", "new");
    ::umask(earlier);
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0640));
}

TEST(OutputFile, LinksStayAndTheirEndIsWritten)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "there");
    writeBytes(folder / "there/a", "old");
    fs::create_symlink("there/a", folder / "link");
    fs::create_symlink(folder / "link", folder / "link of link");
    fs::create_symlink("there/new", folder / "link to nothing");
    writeOutputFile(folder / "link of link", "one");
    writeOutputFile(folder / "link to nothing", "two");
    EXPECT_EQ(bytesOf(folder / "there/a"), "one");
    EXPECT_EQ(bytesOf(folder / "there/new"), "two");
    for (const char* link : {"link", "link of link", "link to nothing"})
        EXPECT_TRUE(fs::is_symlink(folder / link)) << link;
    EXPECT_FALSE(fs::is_symlink(folder / "there/a"));
}

TEST(OutputFile, APipeIsWrittenDirectly)
{
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::string read;
    std::thread reader([&] { read = bytesOf(folder / "pipe"); });
    const std::string bytes(100000, 'x'); // more than a pipe holds
    writeOutputFile(folder / "pipe", bytes);
    reader.join();
    EXPECT_EQ(read, bytes);
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(folder.names(), std::set<std::string>{"pipe"});
}

TEST(OutputFile, TheLongestNamesAreWritten)
{
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    writeOutputFile(folder / name, "x");
    EXPECT_EQ(bytesOf(folder / name), "x");
}

} // namespace
