#include "host/report/output_file.h"
#include "host/scene/scene.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace ombrix;

namespace {

TEST(OutputFile, ReplacesAFileAndLeavesNothingBeside)
{
    const TemporaryFolder folder;
    writeTextFile(folder / "a.json", "one");
    writeTextFile(folder / "a.json", "two");
    EXPECT_EQ(bytesOf(folder / "a.json"), "two");
    EXPECT_EQ(folder.names(), std::set<std::string>{"a.json"});
}

TEST(OutputFile, FailureKeepsTheOlderFile)
{
    const TemporaryFolder folder;
    EXPECT_THROW(writeTextFile(folder / "no" / "a.json", "x"), WorkError);
    EXPECT_THROW(writeTextFile(folder.path(), "x"), WorkError);
    EXPECT_THROW(writeTextFile("/dev/full", "x"), WorkError);
    EXPECT_TRUE(folder.names().empty());
}

TEST(OutputFile, KeepsPermissionsAndLinks)
{
    const TemporaryFolder folder;
    writeBytes(folder / "a", "old");
    ::chmod((folder / "a").c_str(), 0640);
    std::filesystem::create_symlink(folder / "a", folder / "link");
    writeTextFile(folder / "link", "new");
    EXPECT_EQ(bytesOf(folder / "a"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(std::filesystem::status(folder / "a").permissions(), std::filesystem::perms(0640));
}

} // namespace
