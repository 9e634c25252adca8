// What reading and writing share about the image library; for the files of this folder alone.
#pragma once

#include "host/scene/scene.h"

#include <filesystem>
#include <string>

namespace ombrix {

// Sets the image library up once: it starts no threads of its own.
void prepareImageLibrary();

// The first line of one of its messages, without blanks at the end; fallback when it says nothing.
std::string firstLine(const std::string& libraryMessage, const char* fallback);

} // namespace ombrix
