// Pictures in memory and in files. The one place that knows the image library.
#pragma once

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace ombrix {

// Whether colours are multiplied by alpha.
enum class AlphaKind { Premultiplied, Straight };

// Interleaved floats, row 0 at the top, scene-linear. channels: 1 grey, 3 colour, 4 colour with alpha,
// premultiplied unless alpha says otherwise.
struct Image {
    int width = 0, height = 0, channels = 4;
    std::vector<float> pixels;
    AlphaKind alpha = AlphaKind::Premultiplied;
    // Numbers rather than colours (depths, positions): EXR keeps all 32 bits of them, and no format
    // encodes them to sRGB.
    bool isData = false;

    float* pixel(int x, int y)
    {
        return pixels.data() +
               (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) *
                   static_cast<std::size_t>(channels);
    }
    const float* pixel(int x, int y) const { return const_cast<Image*>(this)->pixel(x, y); }
};

// Text attributes written into a file's header, where the format has a place for them.
using ImageAttributes = std::map<std::string, std::string>;

// Writes a picture in the format of the file name's extension: floats as they are for EXR and HDR (half
// for EXR colours, held within a half's finite range; all 32 bits for grey), sRGB-encoded 8 bits for PNG,
// JPEG, TIFF and the like. Alpha is stored premultiplied in float formats, straight in others; a format
// without alpha gets the colours as they stand, which shows premultiplied ones over black. The file
// appears whole or not at all: it is written beside its place under a temporary name and renamed; a
// failure leaves nothing behind and an older file as it was. Throws WorkError.
void writeImage(const std::filesystem::path& file, const Image& image, const ImageAttributes& attributes);
// Fails as writeImage would, before any work is done: unknown extension, folder missing or not writable.
void checkImageCanBeWritten(const std::filesystem::path& file);

enum class ColorSpace { Auto, Linear, Srgb };

// Reads a picture as 4 floats a pixel (alpha 1 where the file has none; a grey file gives grey), decoded
// to linear. Auto decodes integer formats from sRGB and takes float formats as they are; alpha is never
// decoded. Straight alpha: colours are divided by alpha where it is above 0, or as stored in a file that
// holds straight colours. A file that is missing, cut short, broken or no picture throws WorkError.
Image readImage(const std::filesystem::path& file, ColorSpace colorSpace,
                AlphaKind alpha = AlphaKind::Premultiplied);

} // namespace ombrix
