// The names of a render's files.
#pragma once

#include <optional>
#include <string>
#include <vector>

// A run of whole frames, both ends included.
struct FrameRange {
    int first = 0, last = 0;
};

// Reads "A-B"; the ends may be negative, as in "-5--1". Nothing when the text is none, or B lies before A.
std::optional<FrameRange> parseFrameRange(const std::string& text);

struct PictureSize {
    int width = 0, height = 0;
};

// Reads "WxH", each 1 to kLargestPictureSide.
std::optional<PictureSize> parsePictureSize(const std::string& text);

// Whether a file's name has a place for the frame's number: "%d", "%04d" or a run of "#".
bool hasFramePattern(const std::string& file);

// The name with the frame's number: in its place, "#" and "%04d" filled up with zeros, else before the
// extension with four digits, "look.0007.png".
std::string fileOfFrame(const std::string& file, int frame);

// "look.normal.png" of "look.png" and "normal".
std::string withNameBeforeExtension(const std::string& file, const std::string& name);
