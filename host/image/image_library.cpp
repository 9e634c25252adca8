#include "host/image/image_library.h"

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
