#include "host/image/image.h"
#include "host/image/image_library.h"
#include "host/image/srgb.h"
#include "host/scene/scene.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

constexpr float kHalfMax = 65504.0f;

[[noreturn]] void fail(const fs::path& file, const std::string& reason)
{
    throw WorkError{"cannot write the image " + file.string() + ": " + reason};
}

std::string systemReason()
{
    return std::generic_category().message(errno);
}

std::unique_ptr<OIIO::ImageOutput> writerFor(const fs::path& file)
{
    prepareImageLibrary();
    if (!file.has_extension())
        fail(file, "its name needs an extension that tells the format, such as .exr or .png");
    auto writer = OIIO::ImageOutput::create(file.string());
    if (!writer) {
        static_cast<void>(OIIO::geterror());
        fail(file, "no image format that can be written has the extension \"" + file.extension().string() +
                       "\"; use .exr, .png, .jpg, .tif or .hdr");
    }
    return writer;
}

// Where the bytes end up: a link stays, and what it points to is replaced or made.
fs::path finalPlace(const fs::path& file)
{
    constexpr int kMaxLinks = 40; // as the system's own look-up
    fs::path place = file;
    std::error_code error;
    for (int i = 0; i < kMaxLinks && fs::is_symlink(place, error); ++i)
        place = place.parent_path() / fs::read_symlink(place, error);
    return place;
}

// Formats that are written into memory, so that every failure to store the bytes is seen here: JPEG's
// library would end the process, PNG's goes on. The writers of others want a file of their own.
bool writesIntoMemory(const OIIO::ImageOutput& writer)
{
    constexpr const char* kFormats[] = {"openexr", "png", "jpeg", "hdr", "webp"};
    const std::string name = writer.format_name();
    return writer.supports("ioproxy") &&
           std::any_of(std::begin(kFormats), std::end(kFormats), [&](const char* f) { return name == f; });
}

// A new file beside the final one, gone at the end unless it took that one's place. The name keeps the
// extension, by which the image library chooses the format.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& file) : requested(file), target(finalPlace(file))
    {
        static std::atomic<unsigned> count{0};
        const std::string unique = std::to_string(::getpid()) + "-" + std::to_string(count++);
        name = target.parent_path() /
               ("." + target.stem().string() + ".tmp-" + unique + target.extension().string());
        descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0) failToCreate();
    }
    ~TemporaryFile()
    {
        if (descriptor >= 0) ::close(descriptor);
        if (!name.empty()) ::unlink(name.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const fs::path& path() const { return name; }
    void write(const std::vector<unsigned char>& bytes)
    {
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) fail(requested, systemReason());
            done += static_cast<std::size_t>(count);
        }
    }
    void moveIntoPlace()
    {
        const int closed = ::close(descriptor);
        descriptor = -1;
        if (closed != 0 || ::rename(name.c_str(), target.c_str()) != 0) fail(requested, systemReason());
        name.clear();
    }

private:
    [[noreturn]] void failToCreate() const
    {
        const int code = errno;
        const fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
        std::error_code error;
        if (!fs::exists(folder, error)) fail(requested, "the folder " + folder.string() + " does not exist");
        if (!fs::is_directory(folder, error)) fail(requested, folder.string() + " is not a folder");
        fail(requested, std::generic_category().message(code));
    }

    fs::path requested, target, name;
    int descriptor = -1;
};

void checkTarget(const fs::path& file)
{
    std::error_code error;
    if (fs::is_directory(file, error)) fail(file, "it is a folder");
    if (fs::exists(file, error) && ::access(file.c_str(), W_OK) != 0) fail(file, systemReason());
}

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

// Formats that write to a file themselves do not tell of every failure; reading the file back does.
void checkReadsBack(const fs::path& file, const fs::path& written)
{
    try {
        readImage(written, ColorSpace::Linear);
    } catch (const WorkError&) {
        fail(file, "the file did not come out whole (is the disk full?)");
    }
}

} // namespace

void checkImageCanBeWritten(const fs::path& file)
{
    writerFor(file);
    checkTarget(file);
    const TemporaryFile probe(file);
}

void writeImage(const fs::path& file, const Image& image, const ImageAttributes& attributes)
{
    const auto writer = writerFor(file);
    checkTarget(file);
    try {
        TemporaryFile temporary(file);
        if (writesIntoMemory(*writer)) {
            std::vector<unsigned char> bytes;
            const std::string reason = encode(*writer, file.string(), image, attributes, &bytes);
            if (!reason.empty()) fail(file, reason);
            temporary.write(bytes);
        } else {
            const std::string reason = encode(*writer, temporary.path().string(), image, attributes, nullptr);
            if (!reason.empty()) fail(file, reason);
            checkReadsBack(file, temporary.path());
        }
        temporary.moveIntoPlace();
    } catch (const std::bad_alloc&) {
        fail(file, "there is not enough memory for it");
    }
}

} // namespace ombrix
