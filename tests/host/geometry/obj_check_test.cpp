#include "host/geometry/obj_check.h"

#include <gtest/gtest.h>

namespace {

using namespace ombrix;

std::string faultOf(const std::string& text)
{
    const ObjFault fault = findObjFault(text);
    return fault.line == 0 ? fault.text : std::to_string(fault.line) + ": " + fault.text;
}

constexpr const char* kTriangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";

TEST(ObjCheck, TakesWhatFilesHold)
{
    for (const char* text :
         {"", "# nothing\n", "v 0 0 0\r\nv +1 -0.5e-3 .5 1.0\r\nv 1e-400 0 0 0.1 0.2 0.3\r\nf 1 2 3\r\n",
          "f 1 2 3\nv 0 0 0\nv 1 0 0\nv 0 1 0\n", // faces may come first
          "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0\nvt 0 0 0\nvn 0 0 1\nf 1/1/1 2/-2/-1 -1//1 # a face\n",
          "\tv  0\t0 0\nv 1 0 0\nv 0 1 0\n  f 1 2 3", "mtllib a b c\no\ng x y\ns off\nl 1 2\ncurv zzz\n"})
        EXPECT_EQ(faultOf(text), "") << text;
}

TEST(ObjCheck, TellsTheFirstLineAtFault)
{
    const std::pair<const char*, const char*> cases[] = {
        {"v 0 0\n", "4: a position needs 3 numbers, here are 2"},
        {"v\n", "4: a position needs 3 numbers, here are 0"},
        {"vn 1\n", "4: a normal needs 3 numbers, here is 1"},
        {"vt\n", "4: a texture coordinate needs 1 number, here are 0"},
        {"v 0 x 0\n", "4: \"x\" is no finite number"},
        {"v 0 nan 0\n", "4: \"nan\" is no finite number"},
        {"v 0 1e39 0\n", "4: \"1e39\" is no finite number"},
        {"v 0 1e999 0\n", "4: \"1e999\" is no finite number"},
        {"v 0 1,5 0\n", "4: \"1,5\" is no finite number"},
        {"\n\nf 1 2\n", "6: a face needs 3 corners or more, here are 2"},
        {"f\n", "4: a face needs 3 corners or more, here are 0"},
        {"f 1 2 9\nf 0 0 0\n", "4: there is no position 9; the file has 3"},
        {"f 1 2 -4\n", "4: there is no position -4; the file has 3 up to here"},
        {"f 1 2 0\n", "4: indices count from 1, or from -1 backwards; 0 is none"},
        {"f a b c\n", "4: \"a\" is no index of a position"},
        {"f 1.5 2 3\n", "4: \"1.5\" is no index of a position"},
        {"f /1 2 3\n", "4: the index of a position is missing"},
        {"f 1/ 2/ 3/\n", "4: the index of a texture coordinate is missing"},
        {"f 1// 2// 3//\n", "4: the index of a normal is missing"},
        {"f 1/1 2/1 3/1\n", "4: there is no texture coordinate 1; the file has 0"},
        {"f 1//2 2//2 3//2\n", "4: there is no normal 2; the file has 0"},
        {"vt 0\nvn 0 0 1\nf 1/1/1/1 2 3\n", "6: \"1/1/1/1\" is no corner; write POSITION/COORDINATE/NORMAL"},
        {"f 1 2 -9223372036854775808\n",
         "4: there is no position -9223372036854775808; the file has 3 up to here"},
        {"f 1 2 99999999999999999999\n", "4: there is no position 99999999999999999999; the file has 3"},
        {"f 1 2 \\\n3\n", "4: \"\\\" is no index of a position"},
    };
    for (const auto& [text, fault] : cases)
        EXPECT_EQ(faultOf(std::string(kTriangle) + text), fault) << text;
}

} // namespace
