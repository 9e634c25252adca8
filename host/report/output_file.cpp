#include "host/report/output_file.h"

#include "host/scene/scene.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <unistd.h>

namespace ombrix {

namespace {

// The reason of a failure, "" for none.
std::string writeThrough(const std::filesystem::path& file, std::string_view text)
{
    std::FILE* stream = std::fopen(file.c_str(), "wb");
    if (!stream) return std::strerror(errno);
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stream) == text.size() && std::fflush(stream) == 0;
    const int reason = errno;
    const bool closed = std::fclose(stream) == 0;
    if (written && closed) return {};
    return std::strerror(written ? errno : reason);
}

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& reason)
{
    throw WorkError{fmt::format("cannot write {}: {}", file.string(), reason)};
}

} // namespace

void writeTextFile(const std::filesystem::path& file, std::string_view text)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (std::filesystem::is_directory(status)) fail(file, "it is a folder");
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        if (const std::string reason = writeThrough(file, text); !reason.empty()) fail(file, reason);
        return;
    }
    std::filesystem::path target = file;
    if (std::filesystem::is_symlink(file, error)) target = std::filesystem::canonical(file, error);
    if (target.empty()) target = file;
    std::filesystem::path temporary = target;
    temporary += fmt::format(".{}.tmp", ::getpid());
    std::string reason = writeThrough(temporary, text);
    if (reason.empty()) {
        if (std::filesystem::exists(status))
            std::filesystem::permissions(temporary, status.permissions(), error);
        std::filesystem::rename(temporary, target, error);
        if (!error) return;
        reason = error.message();
    }
    std::filesystem::remove(temporary, error);
    fail(file, reason);
}

} // namespace ombrix
