// Where the pictures' code meets the image library. The library and what it pulls in take a quarter of a
// second to load, which most commands have no use for. So the files of formats/, which alone know it, make
// a shared object of their own beside libombrix.so, and libombrix opens that when the first picture is
// read, written or checked.
#pragma once

#include "host/image/image.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

// Why a picture could not be read or written, without the file's name. This alone comes out of the shared
// object as an exception, besides std::bad_alloc.
struct ImageProblem {
    std::string reason;
};

// What the shared object offers. All operations may be called by several threads at once.
class ImageFormats {
public:
    // As readImage; throws ImageProblem.
    virtual Image decode(const std::filesystem::path& file, ColorSpace colorSpace, AlphaKind alpha) const = 0;
    // The bytes of a file in the format of the name's extension. Reads and writes nothing of that name.
    // Throws ImageProblem.
    virtual std::vector<unsigned char> encode(const std::filesystem::path& file, const Image& image,
                                              const ImageAttributes& attributes) const = 0;
    // Throws the ImageProblem of a name from whose extension no format follows that can be written.
    virtual void checkName(const std::filesystem::path& file) const = 0;

protected:
    ~ImageFormats() = default;
};

// The file of the shared object, and the one function that it exports: const ImageFormats* (), never null.
inline constexpr const char* kImageLibraryFile = "libombrix_image.so";
inline constexpr const char* kGetImageFormatsName = "ombrixImageFormats";

// Opens the shared object at the first call, which may come from any thread; it stays open until the
// process ends. Throws WorkError when it is not there or cannot be opened; the next call tries again.
const ImageFormats& imageFormats();

} // namespace ombrix
