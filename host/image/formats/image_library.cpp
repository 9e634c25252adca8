#include "host/image/formats/image_library.h"

#include <OpenImageIO/imageio.h>

namespace ombrix {

void prepareImageLibrary()
{
    static const bool prepared = [] {
        OIIO::attribute("threads", 1);
        OIIO::attribute("exr_threads", -1);
        return true;
    }();
    static_cast<void>(prepared);
}

std::string firstLine(const std::string& libraryMessage, const char* fallback)
{
    std::string line = libraryMessage.substr(0, libraryMessage.find('\n'));
    while (!line.empty() && (line.back() == ' ' || line.back() == '\r' || line.back() == '.'))
        line.pop_back();
    return line.empty() ? fallback : line;
}

} // namespace ombrix

namespace {

class OpenImageFormats final : public ombrix::ImageFormats {
public:
    ombrix::Image decode(const std::filesystem::path& file, ombrix::ColorSpace colorSpace,
                         ombrix::AlphaKind alpha) const override
    {
        return ombrix::decodeImage(file, colorSpace, alpha);
    }
    std::vector<unsigned char> encode(const std::filesystem::path& file, const ombrix::Image& image,
                                      const ombrix::ImageAttributes& attributes) const override
    {
        return ombrix::encodeImage(file, image, attributes);
    }
    void checkName(const std::filesystem::path& file) const override { ombrix::checkImageName(file); }
};

} // namespace

extern "C" __attribute__((visibility("default"))) const ombrix::ImageFormats* ombrixImageFormats()
{
    static const OpenImageFormats formats;
    return &formats;
}
