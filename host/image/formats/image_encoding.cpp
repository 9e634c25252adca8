#include "host/image/formats/image_library.h"
#include "host/image/srgb.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

constexpr float kHalfMax = 65504.0f;

[[noreturn]] void fail(const std::string& reason)
{
    throw ImageProblem{reason};
}

std::unique_ptr<OIIO::ImageOutput> writerFor(const fs::path& file)
{
    prepareImageLibrary();
    if (!file.has_extension())
        fail("its name needs an extension that tells the format, such as .exr or .png");
    auto writer = OIIO::ImageOutput::create(file.string());
    if (!writer) {
        static_cast<void>(OIIO::geterror());
        fail("no image format that can be written has the extension \"" + file.extension().string() +
             "\"; use .exr, .png, .jpg, .tif or .hdr");
    }
    return writer;
}

// Formats that are written through the image library's own sink in memory. JPEG's library would end the
// process over a file that cannot grow.
bool writesIntoMemory(const OIIO::ImageOutput& writer)
{
    constexpr const char* kFormats[] = {"openexr", "png", "jpeg", "hdr", "webp"};
    const std::string name = writer.format_name();
    return writer.supports("ioproxy") &&
           std::any_of(std::begin(kFormats), std::end(kFormats), [&](const char* f) { return name == f; });
}

// A file without a place in any folder, for the formats whose writers want a file's name.
class NamelessFile {
public:
    NamelessFile() : descriptor(::memfd_create("image", MFD_CLOEXEC))
    {
        if (descriptor < 0) failToStore();
    }
    ~NamelessFile() { ::close(descriptor); }
    NamelessFile(const NamelessFile&) = delete;
    NamelessFile& operator=(const NamelessFile&) = delete;

    std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor); }
    std::vector<unsigned char> bytes() const
    {
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) failToStore();
        std::vector<unsigned char> read(static_cast<std::size_t>(status.st_size));
        for (std::size_t done = 0; done < read.size();) {
            const ssize_t count =
                ::pread(descriptor, read.data() + done, read.size() - done, static_cast<off_t>(done));
            if (count <= 0) failToStore();
            done += static_cast<std::size_t>(count);
        }
        return read;
    }

private:
    [[noreturn]] static void failToStore() { fail(std::generic_category().message(errno)); }

    int descriptor;
};

OIIO::TypeDesc storageFor(const OIIO::ImageOutput& writer, const Image& image)
{
    const std::string format = writer.format_name();
    const bool allBits = image.isData || image.channels == 1;
    if (format == "openexr") return allBits ? OIIO::TypeDesc::FLOAT : OIIO::TypeDesc::HALF;
    if (format == "hdr" || format == "zfile") return OIIO::TypeDesc::FLOAT;
    if (format == "tiff" && image.isData) return OIIO::TypeDesc::FLOAT;
    return OIIO::TypeDesc::UINT8;
}

// The picture's pixel as a file wants it. Grey spreads, a missing alpha is 1; without a place for alpha
// the colours stay as they are, which shows premultiplied ones over black.
void storedPixel(const Image& image, const float* from, int channels, AlphaKind wanted, float* to)
{
    for (int c = 0; c < std::min(channels, 3); ++c)
        to[c] = image.channels == 1 ? from[0] : from[c];
    if (channels < 4) return;
    to[3] = image.channels == 4 ? from[3] : 1.0f;
    if (wanted == image.alpha) return;
    for (int c = 0; c < 3; ++c) {
        if (wanted == AlphaKind::Premultiplied)
            to[c] *= to[3];
        else if (to[3] > 0.0f)
            to[c] /= to[3];
    }
}

std::uint8_t toByte(float value)
{
    // Written so that a NaN becomes 0.
    const float held = value > 0.0f ? (value < 1.0f ? value : 1.0f) : 0.0f;
    return static_cast<std::uint8_t>(std::lround(held * 255.0f));
}

std::vector<std::uint8_t> bytePixels(const Image& image, int channels)
{
    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    std::vector<std::uint8_t> bytes(count * static_cast<std::size_t>(channels));
    const float* source = image.pixels.data();
    std::uint8_t* result = bytes.data();
    for (std::size_t i = 0; i < count; ++i, source += image.channels, result += channels) {
        float values[4];
        storedPixel(image, source, channels, AlphaKind::Straight, values);
        for (int c = 0; c < channels; ++c)
            result[c] = toByte(image.isData || c == 3 ? values[c] : srgbEncode(values[c]));
    }
    return bytes;
}

std::vector<float> floatPixels(const Image& image, int channels, bool half)
{
    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    std::vector<float> values(count * static_cast<std::size_t>(channels));
    const float* source = image.pixels.data();
    float* result = values.data();
    for (std::size_t i = 0; i < count; ++i, source += image.channels, result += channels)
        storedPixel(image, source, channels, AlphaKind::Premultiplied, result);
    if (half)
        for (float& value : values)
            if (std::isfinite(value)) value = std::clamp(value, -kHalfMax, kHalfMax);
    return values;
}

OIIO::ImageSpec specFor(const Image& image, int channels, const OIIO::TypeDesc& storage,
                        const ImageAttributes& attributes)
{
    OIIO::ImageSpec spec(image.width, image.height, channels, storage);
    const bool bytes = storage == OIIO::TypeDesc::UINT8;
    if (bytes && channels == 4) spec.attribute("oiio:UnassociatedAlpha", 1);
    spec.attribute("DateTime", "");       // equal pictures make equal files
    spec.attribute("tiff:write_exif", 0); // the writer fails over an empty list of camera data
    if (bytes && !image.isData) spec.attribute("oiio:ColorSpace", "sRGB");
    for (const auto& [key, text] : attributes)
        spec.attribute(key, text);
    return spec;
}

// The numbers of channels to try: the picture's own first, then what pickier formats take.
std::vector<int> channelChoices(const OIIO::ImageOutput& writer, int channels)
{
    std::vector<int> choices;
    if (channels < 4 || writer.supports("alpha")) choices.push_back(channels);
    for (const int other : {3, 4})
        if (other != channels) choices.push_back(other);
    return choices;
}

// Opens, writes and closes; "" or the library's reason. bytes: takes what formats write that can write
// into memory; else null, and the file of the name is written.
std::string encode(OIIO::ImageOutput& writer, const std::string& name, const Image& image,
                   const ImageAttributes& attributes, std::vector<unsigned char>* bytes)
{
    const OIIO::TypeDesc storage = storageFor(writer, image);
    std::string reason;
    for (const int channels : channelChoices(writer, image.channels)) {
        std::unique_ptr<OIIO::Filesystem::IOVecOutput> memory;
        if (bytes) {
            bytes->clear();
            memory = std::make_unique<OIIO::Filesystem::IOVecOutput>(*bytes);
            writer.set_ioproxy(memory.get());
        }
        if (!writer.open(name, specFor(image, channels, storage, attributes))) {
            const std::string message = firstLine(writer.geterror(), "the format does not take it");
            if (reason.empty()) reason = message;
            continue;
        }
        const bool written =
            storage == OIIO::TypeDesc::UINT8
                ? writer.write_image(storage, bytePixels(image, channels).data())
                : writer.write_image(OIIO::TypeDesc::FLOAT,
                                     floatPixels(image, channels, storage == OIIO::TypeDesc::HALF).data());
        const bool closed = writer.close();
        const std::string message = writer.geterror();
        if (written && closed && message.empty()) return "";
        return firstLine(message, "the format's writer failed");
    }
    return reason;
}

// Writers of files do not tell of every failure; reading the file back does.
bool readsBack(const OIIO::ImageOutput& writer, const std::string& name)
{
    const auto reader = OIIO::ImageInput::create(writer.format_name());
    OIIO::ImageSpec spec;
    if (!reader || !reader->open(name, spec)) return false;
    std::vector<float> values(spec.image_pixels() * static_cast<std::size_t>(spec.nchannels));
    return reader->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, values.data()) &&
           !reader->has_error();
}

} // namespace

void checkImageName(const fs::path& file)
{
    writerFor(file);
}

std::vector<unsigned char> encodeImage(const fs::path& file, const Image& image,
                                       const ImageAttributes& attributes)
{
    const auto writer = writerFor(file);
    if (writesIntoMemory(*writer)) {
        std::vector<unsigned char> bytes;
        const std::string reason = encode(*writer, file.string(), image, attributes, &bytes);
        if (!reason.empty()) fail(reason);
        return bytes;
    }
    const NamelessFile stored;
    const std::string reason = encode(*writer, stored.name(), image, attributes, nullptr);
    if (!reason.empty()) fail(reason);
    if (!readsBack(*writer, stored.name())) fail("it did not come out whole (is there memory for it?)");
    return stored.bytes();
}

} // namespace ombrix
