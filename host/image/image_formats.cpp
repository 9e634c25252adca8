#include "host/image/image_formats.h"

#include "host/errors/errors.h"

#include <fmt/format.h>

#include <dlfcn.h>

#include <system_error>

namespace ombrix {

namespace {

namespace fs = std::filesystem;

// Beside the library that this function stands in.
fs::path pathOfSharedObject()
{
    Dl_info own{};
    if (::dladdr(reinterpret_cast<void*>(&pathOfSharedObject), &own) == 0 || !own.dli_fname)
        return kImageLibraryFile;
    std::error_code error;
    const fs::path runtime = fs::canonical(own.dli_fname, error);
    return (error ? fs::path(own.dli_fname) : runtime).parent_path() / kImageLibraryFile;
}

const ImageFormats& openFormats()
{
    const fs::path file = pathOfSharedObject();
    const auto fail = [&](const std::string& reason) {
        throw WorkError{fmt::format("images can be neither read nor written: {} (it belongs to the program "
                                    "and stands beside libombrix.so)",
                                    reason)};
    };
    void* handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) fail(::dlerror());
    void* entry = ::dlsym(handle, kGetImageFormatsName);
    if (!entry) fail(fmt::format("{} has no {}", file.string(), kGetImageFormatsName));
    return *reinterpret_cast<const ImageFormats* (*)()>(entry)();
}

} // namespace

const ImageFormats& imageFormats()
{
    static const ImageFormats& formats = openFormats();
    return formats;
}

} // namespace ombrix
