#include "host/image/formats/image_library.h"
#include "host/image/formats/png_check.h"
#include "host/image/srgb.h"

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

// A header that claims more than this is taken for damage rather than for a reason to fill the memory.
constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;

[[noreturn]] void fail(const std::string& reason)
{
    throw ImageProblem{reason};
}

// The file as it is stored: all channels, and where its pixels stand in the whole picture.
struct StoredImage {
    OIIO::ImageSpec spec;
    std::vector<float> values;
    bool straightAlpha = false;
};

void checkReadable(const fs::path& file)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (error) fail(error.message());
    if (fs::is_directory(status)) fail("it is a folder");
    std::ifstream stream(file, std::ios::binary);
    if (!stream) fail(std::generic_category().message(errno));
    std::uint8_t first = 0;
    if (!stream.read(reinterpret_cast<char*>(&first), 1)) fail("the file is empty");
    if (first != 0x89) return;
    std::vector<std::uint8_t> bytes{first};
    bytes.insert(bytes.end(), std::istreambuf_iterator<char>(stream), {});
    const std::string damage = findPngDamage(bytes);
    if (!damage.empty()) fail(damage);
}

StoredImage readStored(const fs::path& file)
{
    prepareImageLibrary();
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1);
    const auto input = OIIO::ImageInput::open(file.string(), &wishes);
    if (!input) fail(firstLine(OIIO::geterror(), "no image format takes it"));

    StoredImage stored;
    stored.spec = input->spec();
    const OIIO::ImageSpec& spec = stored.spec;
    if (spec.deep) fail("deep images are not supported");
    const std::int64_t pixels = static_cast<std::int64_t>(spec.width) * spec.height;
    const std::int64_t wholePixels = static_cast<std::int64_t>(spec.full_width) * spec.full_height;
    if (spec.nchannels < 1 || pixels < 1 || wholePixels < 1) fail("it holds no pixels");
    if (std::max(pixels, wholePixels) > kMaxPixels || spec.depth > 1)
        fail("it is too large (" + std::to_string(spec.full_width) + " x " +
             std::to_string(spec.full_height) + " pixels)");

    stored.values.resize(static_cast<std::size_t>(pixels) * static_cast<std::size_t>(spec.nchannels));
    const bool read = input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::FLOAT, stored.values.data());
    // Some formats fill the rest of a file that is cut short and say so in a message alone.
    const std::string message = input->geterror();
    if (!read || !message.empty()) fail(firstLine(message, "the file is cut short or damaged"));
    stored.straightAlpha = spec.get_int_attribute("oiio:UnassociatedAlpha") != 0;
    return stored;
}

// Which stored channels make red, green, blue and alpha; alpha -1 for none.
struct ChannelChoice {
    int color[3] = {0, 0, 0};
    int alpha = -1;
};

ChannelChoice chooseChannels(const OIIO::ImageSpec& spec)
{
    ChannelChoice choice;
    choice.alpha = spec.alpha_channel < spec.nchannels ? spec.alpha_channel : -1;
    const int colors = spec.nchannels - (choice.alpha >= 0 ? 1 : 0);
    if (colors >= 3 && choice.alpha != 0)
        for (int c = 0; c < 3; ++c)
            choice.color[c] = c;
    constexpr const char* kNames[3] = {"R", "G", "B"};
    int named[3] = {-1, -1, -1};
    for (int c = 0; c < spec.nchannels; ++c)
        for (int k = 0; k < 3; ++k)
            if (spec.channel_name(c) == kNames[k]) named[k] = c;
    if (named[0] >= 0 && named[1] >= 0 && named[2] >= 0) std::copy(named, named + 3, choice.color);
    return choice;
}

// Stored colours to linear ones. Integer formats come from a table: they have at most 65536 values.
class Decoder {
public:
    Decoder(const OIIO::TypeDesc& format, ColorSpace colorSpace)
        : decodes(colorSpace == ColorSpace::Srgb ||
                  (colorSpace == ColorSpace::Auto && !format.is_floating_point()))
    {
        if (!decodes || format.is_floating_point()) return;
        steps = format.size() == 1 ? 255.0f : 65535.0f;
        table.resize(static_cast<std::size_t>(steps) + 1);
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = srgbDecode(static_cast<float>(i) / steps);
    }
    float operator()(float stored) const
    {
        if (!decodes) return stored;
        if (table.empty()) return srgbDecode(stored);
        return table[static_cast<std::size_t>(std::lround(std::clamp(stored, 0.0f, 1.0f) * steps))];
    }

private:
    bool decodes;
    float steps = 0.0f;
    std::vector<float> table;
};

void convertPixel(const float* values, const ChannelChoice& choice, const Decoder& decode,
                  bool storedStraight, AlphaKind wanted, float* result)
{
    const float alpha = choice.alpha >= 0 ? values[choice.alpha] : 1.0f;
    for (int c = 0; c < 3; ++c) {
        float color = decode(values[choice.color[c]]);
        if (storedStraight && wanted == AlphaKind::Premultiplied) color *= alpha;
        if (!storedStraight && wanted == AlphaKind::Straight && alpha > 0.0f) color /= alpha;
        result[c] = color;
    }
    result[3] = alpha;
}

// A file may hold a part of its picture; the rest is black and transparent.
Image wholePicture(const StoredImage& stored, ColorSpace colorSpace, AlphaKind alpha)
{
    const OIIO::ImageSpec& spec = stored.spec;
    Image image;
    image.width = spec.full_width;
    image.height = spec.full_height;
    image.channels = 4;
    image.alpha = alpha;
    image.pixels.assign(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4,
                        0.0f);
    const ChannelChoice choice = chooseChannels(spec);
    const Decoder decode(spec.format, colorSpace);
    const std::size_t pixelSize = static_cast<std::size_t>(spec.nchannels);
    const float* values = stored.values.data();
    for (int row = 0; row < spec.height; ++row) {
        const int y = spec.y - spec.full_y + row;
        for (int column = 0; column < spec.width; ++column, values += pixelSize) {
            const int x = spec.x - spec.full_x + column;
            if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
            convertPixel(values, choice, decode, stored.straightAlpha, alpha, image.pixel(x, y));
        }
    }
    return image;
}

} // namespace

Image decodeImage(const fs::path& file, ColorSpace colorSpace, AlphaKind alpha)
{
    checkReadable(file);
    return wholePicture(readStored(file), colorSpace, alpha);
}

} // namespace ombrix
