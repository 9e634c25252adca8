// What decoding and encoding share about the image library; for the files of this folder alone.
#pragma once

#include "host/image/image_formats.h"

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix {

// Sets the image library up once: it starts no threads of its own.
void prepareImageLibrary();

// The first line of one of its messages, without blanks at the end; fallback when it says nothing.
std::string firstLine(const std::string& libraryMessage, const char* fallback);

// The operations of ImageFormats.
Image decodeImage(const std::filesystem::path& file, ColorSpace colorSpace, AlphaKind alpha);
std::vector<unsigned char> encodeImage(const std::filesystem::path& file, const Image& image,
                                       const ImageAttributes& attributes);
void checkImageName(const std::filesystem::path& file);

} // namespace ombrix
