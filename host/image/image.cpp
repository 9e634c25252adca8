#include "host/image/image.h"

#include "host/errors/errors.h"
#include "host/files/output_file.h"
#include "host/image/image_formats.h"

#include <fmt/format.h>

#include <new>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

// verb: "read" or "write".
[[noreturn]] void fail(const char* verb, const fs::path& file, const std::string& reason)
{
    throw WorkError{fmt::format("cannot {} the image {}: {}", verb, file.string(), reason)};
}

// Does what may end in an ImageProblem, and names the file then.
template <class Work>
auto namingTheFile(const char* verb, const fs::path& file, const Work& work)
{
    try {
        return work();
    } catch (const ImageProblem& problem) {
        fail(verb, file, problem.reason);
    } catch (const std::bad_alloc&) {
        fail(verb, file, "there is not enough memory for it");
    }
}

} // namespace

Image readImage(const fs::path& file, ColorSpace colorSpace, AlphaKind alpha)
{
    const ImageFormats& formats = imageFormats();
    return namingTheFile("read", file, [&] { return formats.decode(file, colorSpace, alpha); });
}

void writeImage(const fs::path& file, const Image& image, const ImageAttributes& attributes)
{
    const ImageFormats& formats = imageFormats();
    const std::vector<unsigned char> bytes =
        namingTheFile("write", file, [&] { return formats.encode(file, image, attributes); });
    writeOutputFile(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

void checkImageCanBeWritten(const fs::path& file)
{
    const ImageFormats& formats = imageFormats();
    namingTheFile("write", file, [&] { formats.checkName(file); });
    checkOutputFile(file);
}

} // namespace ombrix
