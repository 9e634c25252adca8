// Values that are well-formed each by itself and make no sense together: errors of the file, with their
// place.

#include "support/scene_texts.h"

using namespace ombrix;

namespace {

constexpr const char* kTriangle = R"("positions": [[0,0,0],[1,0,0],[0,1,0]], )";

class ContentsTest : public support::SceneTest {
protected:
    void expectMeshRefused(const std::string& params, const std::string& line)
    {
        expectRefused(R"("m": {"type": "Mesh", "params": {)" + params + "}}", "/plugins/m/params" + line);
    }
};

TEST_F(ContentsTest, MeshListsMustFitOneAnother)
{
    const std::string t = kTriangle, faces = t + R"("faces": [[0,1,2]], )";
    expectMeshRefused(t + R"("faces": [0,1,7])",
                      "/faces: triangle 0 refers to position 7, but there are 3 (indices count from 0)");
    expectMeshRefused(t + R"("faces": [0,1,-2])",
                      "/faces: triangle 0 refers to position -2, but there are 3 (indices count from 0)");
    expectMeshRefused(
        t + R"("faces": [0,1])",
        "/faces: faces holds 2 indices, which is no multiple of 3; write other faces than triangles "
        "in lists of their own, [[0, 1, 2, 3], [4, 5, 6]]");
    expectMeshRefused(t + R"("faces": [[0,1,2],[0,1]])", "/faces: face 1 has 2 corners; a face needs 3");
    expectMeshRefused(t + R"("faces": [[]])", "/faces: face 0 has 0 corners; a face needs 3");
    expectMeshRefused(t + R"("faces": [])", "/faces: it has no faces");
    expectMeshRefused(R"("positions": [[0,0,0]])", ": \"faces\" of \"m\": it has no faces");
    expectMeshRefused(R"("positions": [], "faces": [0,1,2])", "/positions: it has no positions");
    expectMeshRefused(R"("positions": [[0,0,0],[1,0,0],["nan",1,0]], "faces": [0,1,2])",
                      "/positions: position 2 is not a finite number");
    expectMeshRefused(faces + R"("uvs": [[0,0]], "uv_faces": [[0,0]])",
                      "/uv_faces: uv_faces holds 2 indices, but the faces have 3 corners");
    expectMeshRefused(faces + R"("uvs": [[0,0]])",
                      "/uvs: there are 1 uvs for 3 positions and 3 corners; give one for each, or uv_faces");
    expectMeshRefused(
        faces + R"("uvs": [[0,0]], "uv_faces": [[0,0,4]])",
        "/uv_faces: triangle 0 refers to coordinate of map channel 1 4, but there are 1 (indices "
        "count from 0)");
    expectMeshRefused(faces + R"("uv_faces": [[0,0,4]])",
                      "/uv_faces: it picks out of uvs, and there are none; give uvs too");
    EXPECT_TRUE(
        parse(support::sceneText(R"("m": {"type": "Mesh", "params": {)" + t + R"("faces": [0,1,2]}})")));
}

TEST_F(ContentsTest, MeshIsCheckedAtEveryTime)
{
    expectMeshRefused(std::string(kTriangle) + R"("faces": {"times": [0, 5], "values": [[0,1,2], [0,1,3]]})",
                      "/faces: triangle 0 refers to position 3, but there are 3 (indices count from 0)");
    expectMeshRefused(R"("faces": [0,1,2], "positions": {"times": [0, 5],
                         "values": [[[0,0,0],[1,0,0],[0,1,0]], [[0,0,0],[1,0,0]]]})",
                      "/faces: triangle 0 refers to position 2, but there are 2 (indices count from 0)");
}

TEST_F(ContentsTest, ShapeOutsideTheEnumerationIsRefused)
{
    EXPECT_FALSE(parse(support::sceneText(R"("m": {"type": "Mesh", "params": {"shape": 99}})")));
    EXPECT_EQ(lines.back(), "error: look.json: /plugins/m/params/shape: there is no shape of number 99");
}

TEST_F(ContentsTest, MapChannelsMustFitTheMesh)
{
    const auto mesh = [](const std::string& channel) {
        return R"("more": {"type": "MapChannel", "params": {)" + channel +
               R"(}}, "m": {"type": "Mesh", "params": {)" + kTriangle +
               R"("faces": [0,1,2], "map_channels": ["more"]}})";
    };
    expectRefused(
        mesh(R"("values": [[0,0,0]])"),
        "/plugins/m/params/map_channels: map channel \"more\": it has 1 values for 3 positions; give one "
        "for each, or faces");
    expectRefused(
        mesh(R"("values": [[0,0,0]], "faces": [0,0,1])"),
        "/plugins/m/params/map_channels: triangle 0 refers to coordinate of map channel 2 1, but there "
        "are 1 (indices count from 0)");
    expectRefused(mesh(R"("channel": -1, "values": [[0,0,0],[1,0,0],[0,1,0]])"),
                  "/plugins/more/params/channel: takes 0 or above, not -1");
    expectRefused(
        R"("c": {"type": "ColorValue"}, "m": {"type": "Mesh", "params": {"shape": "cube", "map_channels": ["c"]}})",
        "/plugins/m/params/map_channels: takes plugins of the type MapChannel");
}

TEST_F(ContentsTest, SetThatMakesNoSenseWritesNothing)
{
    const auto scene = parse(support::sceneText(
        R"("more": {"type": "MapChannel", "params": {"values": [[0,0,0],[1,0,0],[0,1,0]]}},
           "m": {"type": "Mesh", "params": {"positions": [[0,0,0],[1,0,0],[0,1,0]], "faces": [0,1,2],
                                            "map_channels": ["more"]}})"));
    ASSERT_TRUE(scene);
    const auto refused = [&](const char* changes) -> std::string {
        Diagnostics diagnostics("p");
        if (scene->set(nlohmann::json::parse(changes), "/set", diagnostics)) return "taken";
        EXPECT_EQ(diagnostics.lines().size(), 1u);
        return diagnostics.lines().at(0);
    };
    EXPECT_EQ(
        refused(R"({"m": {"faces": [0, 1, 5]}})"),
        "error: p: /set/m/faces: triangle 0 refers to position 5, but there are 3 (indices count from 0)");
    EXPECT_EQ(refused(R"({"m": {"positions": [[0, 0, 0], [1, 0, 0]]}})"),
              "error: p: /set/m: \"faces\" of \"m\": triangle 0 refers to position 2, but there are 2 "
              "(indices count "
              "from 0)");
    EXPECT_EQ(
        refused(R"({"more": {"values": []}})"),
        "error: p: /set: \"map_channels\" of \"m\": map channel \"more\": it has 0 values for 3 positions; "
        "give one for each, or faces");
    EXPECT_EQ(refused(R"({"m": {"uvs": [[0, 0]], "faces": null}})"),
              "error: p: /set/m/faces: it has no faces");
    EXPECT_EQ(scene->find("m")->life->getParameter("faces")->getCount(0), 3);
    EXPECT_EQ(scene->find("m")->life->getParameter("uvs")->getCount(0), 0);
    EXPECT_EQ(refused(R"({"m": {"faces": [2, 1, 0]}})"), "taken");
    EXPECT_EQ(scene->find("m")->life->getParameter("faces")->getInt(0, 0.0), 2);
}

TEST_F(ContentsTest, FieldOfViewLiesBetweenNothingAndHalfARound)
{
    for (const char* fov : {"400", "180", "0", "-3", "\"nan\"", "\"inf\""}) {
        EXPECT_FALSE(parse(
            support::sceneText(R"("c": {"type": "Camera", "params": {"fov": )" + std::string(fov) + "}}")));
        ASSERT_EQ(lines.size(), 1u) << fov;
        EXPECT_TRUE(lines[0].starts_with(
            "error: look.json: /plugins/c/params/fov: takes an angle above 0 and below 180 degrees, not "))
            << lines[0];
    }
    EXPECT_FALSE(parse(support::sceneText(
        R"("c": {"type": "Camera", "params": {"fov": {"times": [0, 1], "values": [40, 400]}}})")));
    for (const char* fov : {"0.01", "40", "179.9"})
        EXPECT_TRUE(parse(
            support::sceneText(R"("c": {"type": "Camera", "params": {"fov": )" + std::string(fov) + "}}")));
    EXPECT_TRUE(parse(support::sceneText(R"("c": {"type": "Camera"})")));
}

TEST_F(ContentsTest, DistantLightNeedsADirection)
{
    for (const char* direction : {"[0, 0, 0]", "[\"nan\", 0, 0]", "[\"inf\", 1, 0]"})
        expectRefused(
            R"("l": {"type": "DistantLight", "params": {"direction": )" + std::string(direction) + "}}",
            "/plugins/l/params/direction: it has no length; write where the light goes to, [x, y, z]");
    EXPECT_TRUE(parse(support::sceneText(R"("l": {"type": "DistantLight"})")));
}

} // namespace
