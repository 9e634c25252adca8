#include "host/geometry/obj_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace ombrix;

class ObjReader : public testing::Test {
protected:
    std::filesystem::path write(const std::string& text)
    {
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }
    void TearDown() override { std::filesystem::remove(file); }
    std::string messageOf(const std::string& text)
    {
        try {
            readObj(write(text));
        } catch (const MeshFileError& error) {
            return error.message;
        }
        return "";
    }

    const std::filesystem::path file =
        std::filesystem::temp_directory_path() /
        (std::string("nezaiva_obj_") + testing::UnitTest::GetInstance()->current_test_info()->name() +
         ".obj");
};

constexpr const char* kQuad = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                              "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n";

TEST_F(ObjReader, SplitsPolygonsAndKeepsCoordinatesByCorner)
{
    const MeshData mesh = readObj(write(std::string(kQuad) + "f 1/2/1 2/3/1 3/4/1 4/1/1\n"));
    EXPECT_EQ(mesh.positions.size(), 4u);
    ASSERT_EQ(mesh.triangles.size(), 2u);
    const MapChannel* uvs = mesh.channel(1);
    ASSERT_NE(uvs, nullptr);
    EXPECT_EQ(uvs->name, "map1");
    // Every corner's coordinate is that of the next position around, as the file pairs them.
    for (std::size_t t = 0; t < 2; ++t)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_EQ(uvs->corners[t][c], (mesh.triangles[t][c] + 1) % 4);
    EXPECT_EQ(mesh.normalCorners.size(), 2u);
    EXPECT_EQ(mesh.bounds.upper.x, 1.0f);
}

TEST_F(ObjReader, GathersAllShapes)
{
    const MeshData mesh =
        readObj(write("o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\no b\nv 0 0 1\nf 1 2 4\ng c\nf -1 -2 -3\n"));
    EXPECT_EQ(mesh.triangles.size(), 3u);
    EXPECT_TRUE(mesh.normals.empty());
    EXPECT_TRUE(mesh.channels.empty());
}

TEST_F(ObjReader, TakesNormalsOnlyWhenEveryCornerHasOne)
{
    const MeshData mesh = readObj(write(std::string(kQuad) + "f 1//1 2//1 3//1\nf 1 3 4\n"));
    EXPECT_TRUE(mesh.normals.empty());
    EXPECT_TRUE(mesh.normalCorners.empty());
}

TEST_F(ObjReader, CornersWithoutCoordinateHoldNone)
{
    const MeshData mesh = readObj(write(std::string(kQuad) + "f 1/1 2/2 3/3\nf 1 3 4\n"));
    ASSERT_NE(mesh.channel(1), nullptr);
    EXPECT_EQ(mesh.channel(1)->corners[1][0], kNoValue);
}

TEST_F(ObjReader, NamesTheFileAndTheReason)
{
    try {
        readObj("no/such/file.obj");
        FAIL();
    } catch (const MeshFileError& error) {
        EXPECT_EQ(error.message, "cannot read mesh \"no/such/file.obj\": No such file or directory");
        EXPECT_TRUE(error.unreadable);
    }
    EXPECT_NE(messageOf("").find("it has no positions"), std::string::npos);
    EXPECT_NE(messageOf("v 0 0 0\nv 1 0 0\nv 0 1 0\n").find("it has no faces"), std::string::npos);
    EXPECT_EQ(messageOf("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n"),
              file.string() + ":4: there is no position 9; the file has 3");
    EXPECT_NE(messageOf("this is no mesh\n\x01\x02\xff").find(file.string()), std::string::npos);
}

TEST_F(ObjReader, BadIndicesNeverReadOutside)
{
    for (const char* faces :
         {"f 0 1 2\n", "f -9 1 2\n", "f 1/9 2/9 3/9\n", "f 1//7 2//7 3//7\n", "f 1\n", "f 1 2\n",
          "f 1 2 3 99\n", "f 999999999999 2 3\n", "f a b c\n", "f 1/ 2/ 3/\n"}) {
        SCOPED_TRACE(faces);
        try {
            const MeshData mesh = readObj(write(std::string("v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\n") + faces));
            EXPECT_EQ(findMeshProblem(mesh), "");
        } catch (const MeshFileError& error) {
            EXPECT_TRUE(error.message.starts_with(file.string() + ":5: ")) << error.message;
        }
    }
}

} // namespace
