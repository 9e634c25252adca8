#include "apps/nezaiva/frame_files.h"

#include "host/renderer/setting_limits.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>

namespace {

// The whole text as a number.
std::optional<int> wholeNumber(const std::string& text)
{
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc() || stopped != end) return {};
    return number;
}

// A place for the frame's number within a name, and how many digits it asks for.
struct Pattern {
    std::size_t begin = 0, length = 0;
    int digits = 1;
};

std::optional<Pattern> findPattern(const std::string& file)
{
    // A folder's name is left alone.
    const std::size_t slash = file.rfind('/');
    const std::size_t nameBegin = slash == std::string::npos ? 0 : slash + 1;
    const std::size_t hashes = file.find('#', nameBegin);
    if (hashes != std::string::npos) {
        std::size_t end = hashes;
        while (end < file.size() && file[end] == '#')
            ++end;
        return Pattern{hashes, end - hashes, static_cast<int>(end - hashes)};
    }
    for (std::size_t percent = file.find('%', nameBegin); percent != std::string::npos;
         percent = file.find('%', percent + 1)) {
        std::size_t end = percent + 1;
        while (end < file.size() && file[end] >= '0' && file[end] <= '9')
            ++end;
        if (end >= file.size() || file[end] != 'd' || end - percent > 3) continue;
        const int digits = wholeNumber(file.substr(percent + 1, end - percent - 1)).value_or(1);
        return Pattern{percent, end + 1 - percent, digits};
    }
    return {};
}

} // namespace

std::optional<FrameRange> parseFrameRange(const std::string& text)
{
    // The dash between the ends follows a digit; one in front belongs to a number.
    const std::size_t dash = text.find('-', 1);
    if (dash == std::string::npos) return {};
    const auto first = wholeNumber(text.substr(0, dash)), last = wholeNumber(text.substr(dash + 1));
    if (!first || !last || *last < *first) return {};
    return FrameRange{*first, *last};
}

std::optional<PictureSize> parsePictureSize(const std::string& text)
{
    const std::size_t cross = text.find_first_of("xX");
    if (cross == std::string::npos) return {};
    const auto width = wholeNumber(text.substr(0, cross)), height = wholeNumber(text.substr(cross + 1));
    if (!width || !height || *width < 1 || *height < 1 || *width > ombrix::kLargestPictureSide ||
        *height > ombrix::kLargestPictureSide)
        return {};
    return PictureSize{*width, *height};
}

bool hasFramePattern(const std::string& file)
{
    return findPattern(file).has_value();
}

std::string fileOfFrame(const std::string& file, int frame)
{
    const std::optional<Pattern> pattern = findPattern(file);
    if (!pattern) return withNameBeforeExtension(file, fmt::format("{:04}", frame));
    std::string named = file;
    return named.replace(pattern->begin, pattern->length, fmt::format("{:0{}}", frame, pattern->digits));
}

std::string withNameBeforeExtension(const std::string& file, const std::string& name)
{
    const std::filesystem::path path(file);
    return (path.parent_path() / (path.stem().string() + "." + name + path.extension().string())).string();
}
